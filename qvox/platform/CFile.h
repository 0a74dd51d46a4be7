// CFile: a binary file with the platform's call shapes, and CMemFile, the same over memory.
// Paths written with '\' are taken with '/' in their place.
#pragma once

#include <cstdio>
#include <exception>
#include <utility>
#include <vector>

#include "qvox/platform/CFileStatus.h"
#include "qvox/platform/CString.h"
#include "qvox/platform/WinTypes.h"

namespace qvox {

// What a failed file operation raises: its cause and the file's path.
class CFileException : public std::exception {
  public:
    enum Cause : int {
        none = 0,
        genericException = 1,
        fileNotFound = 2,
        badPath = 3,
        accessDenied = 5,
        endOfFile = 14,
        diskFull = 13,
    };
    CFileException(int cause, CString fileName) : m_cause(cause), m_strFileName(fileName) {}
    const char* what() const noexcept override { return "file exception"; }

    int m_cause;
    CString m_strFileName;
};

class CFile {
  public:
    enum OpenFlags : UINT {
        modeRead = 0x0000,
        modeWrite = 0x0001,
        modeReadWrite = 0x0002,
        shareDenyNone = 0x0040,
        shareDenyWrite = 0x0020,
        shareExclusive = 0x0010,
        modeNoTruncate = 0x1000,
        modeCreate = 0x2000,
        typeBinary = 0x8000,
    };

    CFile() = default;
    virtual ~CFile();
    CFile(const CFile&) = delete;
    CFile& operator=(const CFile&) = delete;

    // Opens path with the flags; false (nothing open) if the file cannot be opened as asked.
    // modeCreate makes the file, emptying it unless modeNoTruncate is given.
    virtual bool Open(const char* path, UINT flags);
    // Up to count bytes; fewer at the end of the file. 0 when nothing is open.
    virtual UINT Read(void* buffer, UINT count);
    // All count bytes, or CFileException (diskFull, or accessDenied when not open for writing).
    virtual void Write(const void* buffer, UINT count);
    virtual void Flush();
    virtual void Close();
    // The file's length in bytes; 0 when nothing is open.
    virtual ULONGLONG GetLength() const;
    bool IsOpen() const { return file_ != nullptr; }
    const CString& GetFilePath() const { return path_; }

    // The status of the file or folder at path into status; false, with status untouched, when
    // there is nothing there or it cannot be looked at.
    static bool GetStatus(const char* path, CFileStatus& status);

  protected:
    CString path_;

  private:
    std::FILE* file_ = nullptr;
    bool writable_ = false;
};

// A file held in memory, growing as it is written; reads start at the beginning.
class CMemFile : public CFile {
  public:
    CMemFile() = default;
    explicit CMemFile(std::vector<BYTE> data) : data_(std::move(data)) {}

    bool Open(const char*, UINT) override { return true; }
    UINT Read(void* buffer, UINT count) override;
    void Write(const void* buffer, UINT count) override;
    void Flush() override {}
    void Close() override {}
    ULONGLONG GetLength() const override { return data_.size(); }

    // Where the next read or write happens.
    void SeekToBegin() { position_ = 0; }
    const std::vector<BYTE>& Data() const { return data_; }

  private:
    std::vector<BYTE> data_;
    std::size_t position_ = 0;
};

}  // namespace qvox
