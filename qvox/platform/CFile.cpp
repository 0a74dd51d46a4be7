#include "qvox/platform/CFile.h"

#include <algorithm>
#include <cstring>
#include <string>

namespace qvox {
namespace {

std::string NativePath(const char* path) {
    std::string native = path == nullptr ? std::string() : std::string(path);
    std::replace(native.begin(), native.end(), '\\', '/');
    return native;
}

}  // namespace

CFile::~CFile() {
    if (file_ != nullptr) std::fclose(file_);
}

bool CFile::Open(const char* path, UINT flags) {
    Close();
    const std::string native = NativePath(path);
    if (native.empty()) return false;
    const bool write = (flags & (modeWrite | modeReadWrite)) != 0;
    const bool read = (flags & modeWrite) == 0;
    const char* mode = "rb";
    if (flags & modeCreate) {
        if (flags & modeNoTruncate) {
            // Create only when missing, keeping what is there.
            if (std::FILE* probe = std::fopen(native.c_str(), "rb")) {
                std::fclose(probe);
            } else if (std::FILE* created = std::fopen(native.c_str(), "wb")) {
                std::fclose(created);
            } else {
                return false;
            }
            mode = "r+b";
        } else {
            mode = read ? "w+b" : "wb";
        }
    } else if (write) {
        mode = "r+b";
    }
    file_ = std::fopen(native.c_str(), mode);
    if (file_ == nullptr) return false;
    path_ = CString(path);
    writable_ = write;
    return true;
}

UINT CFile::Read(void* buffer, UINT count) {
    if (file_ == nullptr || buffer == nullptr || count == 0) return 0;
    return static_cast<UINT>(std::fread(buffer, 1, count, file_));
}

void CFile::Write(const void* buffer, UINT count) {
    if (count == 0) return;
    if (file_ == nullptr || !writable_ || buffer == nullptr) {
        throw CFileException(CFileException::accessDenied, path_);
    }
    if (std::fwrite(buffer, 1, count, file_) != count) {
        throw CFileException(CFileException::diskFull, path_);
    }
}

void CFile::Flush() {
    if (file_ != nullptr && writable_ && std::fflush(file_) != 0) {
        throw CFileException(CFileException::diskFull, path_);
    }
}

void CFile::Close() {
    if (file_ == nullptr) return;
    std::FILE* file = std::exchange(file_, nullptr);
    const bool failed = std::fclose(file) != 0;
    if (failed && writable_) {
        writable_ = false;
        throw CFileException(CFileException::diskFull, path_);
    }
    writable_ = false;
}

ULONGLONG CFile::GetLength() const {
    if (file_ == nullptr) return 0;
    const long here = std::ftell(file_);
    if (here < 0 || std::fseek(file_, 0, SEEK_END) != 0) return 0;
    const long end = std::ftell(file_);
    std::fseek(file_, here, SEEK_SET);
    return end < 0 ? 0 : static_cast<ULONGLONG>(end);
}

UINT CMemFile::Read(void* buffer, UINT count) {
    if (buffer == nullptr || position_ >= data_.size()) return 0;
    const std::size_t n = std::min<std::size_t>(count, data_.size() - position_);
    std::memcpy(buffer, data_.data() + position_, n);
    position_ += n;
    return static_cast<UINT>(n);
}

void CMemFile::Write(const void* buffer, UINT count) {
    if (count == 0) return;
    if (buffer == nullptr) throw CFileException(CFileException::genericException, path_);
    const auto* bytes = static_cast<const BYTE*>(buffer);
    if (position_ + count > data_.size()) data_.resize(position_ + count);
    std::memcpy(data_.data() + position_, bytes, count);
    position_ += count;
}

}  // namespace qvox
