#include "qvox/platform/CArchive.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <string>

#include "qvox/platform/CodePage.h"

namespace qvox {

CArchive::CArchive(CFile* file, UINT mode)
    : m_strFileName(file != nullptr ? file->GetFilePath() : CString()), file_(file), mode_(mode) {}

void CArchive::RequireStoring() const {
    if (!IsStoring()) throw CArchiveException(CArchiveException::readOnly, m_strFileName);
}

void CArchive::RequireLoading() const {
    if (!IsLoading()) throw CArchiveException(CArchiveException::writeOnly, m_strFileName);
}

UINT CArchive::Read(void* buffer, UINT count) {
    RequireLoading();
    if (file_ == nullptr) return 0;
    // A file may hand out less than asked before its end; keep asking until it gives nothing.
    auto* bytes = static_cast<BYTE*>(buffer);
    UINT done = 0;
    while (done < count) {
        const UINT got = file_->Read(bytes + done, count - done);
        if (got == 0) break;
        done += got;
    }
    return done;
}

void CArchive::Write(const void* buffer, UINT count) {
    RequireStoring();
    if (count == 0) return;
    if (file_ == nullptr)
        throw CArchiveException(CArchiveException::genericException, m_strFileName);
    file_->Write(buffer, count);
}

void CArchive::EnsureRead(void* buffer, UINT count) {
    if (Read(buffer, count) != count) {
        throw CArchiveException(CArchiveException::endOfFile, m_strFileName);
    }
}

void CArchive::Flush() {
    if (IsStoring() && file_ != nullptr) file_->Flush();
}

void CArchive::Close() {
    Flush();
    file_ = nullptr;
}

template <class U>
void CArchive::PutLittleEndian(U value) {
    BYTE bytes[sizeof(U)];
    for (std::size_t i = 0; i < sizeof(U); ++i) {
        bytes[i] = static_cast<BYTE>(value >> (8 * i));
    }
    Write(bytes, sizeof(U));
}

template <class U>
U CArchive::GetLittleEndian() {
    BYTE bytes[sizeof(U)];
    EnsureRead(bytes, sizeof(U));
    U value = 0;
    for (std::size_t i = 0; i < sizeof(U); ++i) {
        value = static_cast<U>(value | static_cast<U>(static_cast<U>(bytes[i]) << (8 * i)));
    }
    return value;
}

CArchive& CArchive::operator<<(BYTE value) {
    Write(&value, 1);
    return *this;
}
CArchive& CArchive::operator<<(char value) {
    return *this << static_cast<BYTE>(value);
}
CArchive& CArchive::operator<<(bool value) {
    return *this << static_cast<BYTE>(value ? 1 : 0);
}
CArchive& CArchive::operator<<(WORD value) {
    PutLittleEndian(value);
    return *this;
}
CArchive& CArchive::operator<<(SHORT value) {
    return *this << static_cast<WORD>(value);
}
CArchive& CArchive::operator<<(DWORD value) {
    PutLittleEndian(value);
    return *this;
}
CArchive& CArchive::operator<<(LONG value) {
    return *this << static_cast<DWORD>(value);
}
CArchive& CArchive::operator<<(ULONGLONG value) {
    PutLittleEndian(value);
    return *this;
}
CArchive& CArchive::operator<<(LONGLONG value) {
    return *this << static_cast<ULONGLONG>(value);
}
CArchive& CArchive::operator<<(float value) {
    return *this << std::bit_cast<DWORD>(value);
}
CArchive& CArchive::operator<<(double value) {
    return *this << std::bit_cast<ULONGLONG>(value);
}

CArchive& CArchive::operator<<(const CString& value) {
    RequireStoring();
    const auto length = static_cast<ULONGLONG>(value.GetLength());
    AfxWriteStringLength(*this, length, false);
    Write(value.GetString(), static_cast<UINT>(length));
    return *this;
}

CArchive& CArchive::operator<<(const char* value) {
    return *this << CString(value);
}

CArchive& CArchive::operator>>(BYTE& value) {
    value = GetLittleEndian<BYTE>();
    return *this;
}
CArchive& CArchive::operator>>(char& value) {
    value = static_cast<char>(GetLittleEndian<BYTE>());
    return *this;
}
CArchive& CArchive::operator>>(bool& value) {
    value = GetLittleEndian<BYTE>() != 0;
    return *this;
}
CArchive& CArchive::operator>>(WORD& value) {
    value = GetLittleEndian<WORD>();
    return *this;
}
CArchive& CArchive::operator>>(SHORT& value) {
    value = static_cast<SHORT>(GetLittleEndian<WORD>());
    return *this;
}
CArchive& CArchive::operator>>(DWORD& value) {
    value = GetLittleEndian<DWORD>();
    return *this;
}
CArchive& CArchive::operator>>(LONG& value) {
    value = static_cast<LONG>(GetLittleEndian<DWORD>());
    return *this;
}
CArchive& CArchive::operator>>(ULONGLONG& value) {
    value = GetLittleEndian<ULONGLONG>();
    return *this;
}
CArchive& CArchive::operator>>(LONGLONG& value) {
    value = static_cast<LONGLONG>(GetLittleEndian<ULONGLONG>());
    return *this;
}
CArchive& CArchive::operator>>(float& value) {
    value = std::bit_cast<float>(GetLittleEndian<DWORD>());
    return *this;
}
CArchive& CArchive::operator>>(double& value) {
    value = std::bit_cast<double>(GetLittleEndian<ULONGLONG>());
    return *this;
}

CArchive& CArchive::operator>>(CString& value) {
    RequireLoading();
    int charSize = 1;
    const ULONGLONG length = AfxReadStringLength(*this, charSize);
    // The length comes from the input: read in slices, so that a damaged length ends in
    // endOfFile instead of one enormous allocation.
    constexpr ULONGLONG kSlice = 64 * 1024;
    std::string bytes;
    ULONGLONG remaining = length * static_cast<ULONGLONG>(charSize);
    if (length > (~0ull) / 2) throw CArchiveException(CArchiveException::endOfFile, m_strFileName);
    while (remaining > 0) {
        const auto slice = static_cast<UINT>(std::min(remaining, kSlice));
        const std::size_t at = bytes.size();
        bytes.resize(at + slice);
        EnsureRead(bytes.data() + at, slice);
        remaining -= slice;
    }
    if (charSize == 1) {
        value = CString(std::move(bytes));
        return *this;
    }
    std::u16string wide(static_cast<std::size_t>(length), u'\0');
    for (std::size_t i = 0; i < wide.size(); ++i) {
        wide[i] = static_cast<char16_t>(static_cast<BYTE>(bytes[2 * i]) |
                                        (static_cast<BYTE>(bytes[2 * i + 1]) << 8));
    }
    value = CString(Utf16ToCp1252(wide));
    return *this;
}

void CArchive::WriteCount(DWORD count) {
    if (count < 0xFFFF) {
        *this << static_cast<WORD>(count);
    } else {
        *this << static_cast<WORD>(0xFFFF) << count;
    }
}

DWORD CArchive::ReadCount() {
    WORD small = 0;
    *this >> small;
    if (small != 0xFFFF) return small;
    DWORD large = 0;
    *this >> large;
    return large;
}

void AfxWriteStringLength(CArchive& ar, ULONGLONG length, bool unicode) {
    if (unicode) ar << static_cast<BYTE>(0xFF) << static_cast<WORD>(0xFFFE);
    if (length < 0xFF) {
        ar << static_cast<BYTE>(length);
    } else if (length < 0xFFFE) {
        ar << static_cast<BYTE>(0xFF) << static_cast<WORD>(length);
    } else if (length < 0xFFFFFFFFull) {
        ar << static_cast<BYTE>(0xFF) << static_cast<WORD>(0xFFFF) << static_cast<DWORD>(length);
    } else {
        ar << static_cast<BYTE>(0xFF) << static_cast<WORD>(0xFFFF)
           << static_cast<DWORD>(0xFFFFFFFFu) << length;
    }
}

ULONGLONG AfxReadStringLength(CArchive& ar, int& charSize) {
    charSize = 1;
    BYTE byteLength = 0;
    ar >> byteLength;
    if (byteLength < 0xFF) return byteLength;
    WORD wordLength = 0;
    ar >> wordLength;
    if (wordLength == 0xFFFE) {
        // The wide marker: the length follows in the same steps.
        charSize = 2;
        ar >> byteLength;
        if (byteLength < 0xFF) return byteLength;
        ar >> wordLength;
    }
    if (wordLength < 0xFFFF) return wordLength;
    DWORD dwordLength = 0;
    ar >> dwordLength;
    if (dwordLength < 0xFFFFFFFFu) return dwordLength;
    ULONGLONG longLength = 0;
    ar >> longLength;
    return longLength;
}

}  // namespace qvox
