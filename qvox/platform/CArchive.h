// CArchive: the platform's binary archive over a CFile. Numbers are little-endian at their exact
// width; a CString is a counted string whose length takes 1, 3 or 7 bytes (see
// AfxWriteStringLength). Misuse and short input raise CArchiveException, by value.
#pragma once

#include <exception>

#include "qvox/platform/CFile.h"
#include "qvox/platform/CString.h"
#include "qvox/platform/WinTypes.h"

namespace qvox {

class CArchiveException : public std::exception {
  public:
    enum Cause : int {
        none = 0,
        genericException = 1,
        readOnly = 2,   // a write on an archive that loads
        endOfFile = 3,  // input ended inside a value
        writeOnly = 4,  // a read on an archive that stores
        badIndex = 5,
        badClass = 6,
        badSchema = 7,
    };
    CArchiveException(int cause, CString fileName) : m_cause(cause), m_strFileName(fileName) {}
    const char* what() const noexcept override { return "archive exception"; }

    int m_cause;
    CString m_strFileName;
};

class CArchive {
  public:
    enum Mode : UINT { store = 0, load = 1 };

    // The file must outlive the archive. m_strFileName starts as the file's path.
    CArchive(CFile* file, UINT mode);
    CArchive(const CArchive&) = delete;
    CArchive& operator=(const CArchive&) = delete;

    bool IsLoading() const { return (mode_ & load) != 0; }
    bool IsStoring() const { return (mode_ & load) == 0; }
    CFile* GetFile() const { return file_; }

    // Up to count bytes; fewer only at the end of the input. writeOnly on a storing archive.
    UINT Read(void* buffer, UINT count);
    // readOnly on a loading archive.
    void Write(const void* buffer, UINT count);
    // Exactly count bytes, or endOfFile.
    void EnsureRead(void* buffer, UINT count);
    void Flush();
    void Close();

    CArchive& operator<<(BYTE value);
    CArchive& operator<<(char value);
    CArchive& operator<<(bool value);  // one byte, 0 or 1
    CArchive& operator<<(WORD value);
    CArchive& operator<<(SHORT value);
    CArchive& operator<<(DWORD value);
    CArchive& operator<<(LONG value);
    CArchive& operator<<(ULONGLONG value);
    CArchive& operator<<(LONGLONG value);
    CArchive& operator<<(float value);
    CArchive& operator<<(double value);
    CArchive& operator<<(const CString& value);  // the narrow counted string
    CArchive& operator<<(const char* value);     // as a CString; null is ""

    CArchive& operator>>(BYTE& value);
    CArchive& operator>>(char& value);
    CArchive& operator>>(bool& value);  // any byte but 0 is true
    CArchive& operator>>(WORD& value);
    CArchive& operator>>(SHORT& value);
    CArchive& operator>>(DWORD& value);
    CArchive& operator>>(LONG& value);
    CArchive& operator>>(ULONGLONG& value);
    CArchive& operator>>(LONGLONG& value);
    CArchive& operator>>(float& value);
    CArchive& operator>>(double& value);
    // Either form of the counted string; a wide one is read as UTF-16 and turned into the
    // single-byte code page.
    CArchive& operator>>(CString& value);

    // The object counts of collections: a WORD, or 0xFFFF and a DWORD.
    void WriteCount(DWORD count);
    DWORD ReadCount();

    CString m_strFileName;

  private:
    void RequireStoring() const;
    void RequireLoading() const;
    template <class U>
    void PutLittleEndian(U value);
    template <class U>
    U GetLittleEndian();

    CFile* file_;
    UINT mode_;
};

// Writes the length of a counted string: below 255 as one byte; else 0xFF and a WORD below
// 0xFFFE; else 0xFF, 0xFFFF and a DWORD below 0xFFFFFFFF; else 0xFF, 0xFFFF, 0xFFFFFFFF and a
// ULONGLONG. A wide string is preceded by 0xFF, 0xFFFE.
void AfxWriteStringLength(CArchive& ar, ULONGLONG length, bool unicode);
// Reads such a length; charSize becomes 1 for the narrow form, 2 for the wide one.
ULONGLONG AfxReadStringLength(CArchive& ar, int& charSize);

}  // namespace qvox
