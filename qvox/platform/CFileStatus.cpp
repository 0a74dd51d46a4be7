#include "qvox/platform/CFileStatus.h"

#include <sys/stat.h>
#include <unistd.h>

#include "qvox/platform/CFile.h"
#include "qvox/platform/WholeFile.h"

namespace qvox {
namespace {

LONGLONG Nanoseconds(const struct timespec& time) {
    return static_cast<LONGLONG>(time.tv_sec) * 1000000000LL + static_cast<LONGLONG>(time.tv_nsec);
}

}  // namespace

bool CFile::GetStatus(const char* path, CFileStatus& status) {
    if (path == nullptr || *path == '\0') return false;
    const std::string native = NativePath(path);
    struct stat info {};
    if (::stat(native.c_str(), &info) != 0) return false;
    status.m_ctime = Nanoseconds(info.st_ctim);
    status.m_mtime = Nanoseconds(info.st_mtim);
    status.m_atime = Nanoseconds(info.st_atim);
    status.m_size = static_cast<ULONGLONG>(info.st_size);
    unsigned attribute = CFileStatus::normal;
    if (S_ISDIR(info.st_mode)) attribute |= CFileStatus::directory;
    if (::access(native.c_str(), W_OK) != 0) attribute |= CFileStatus::readOnly;
    status.m_attribute = static_cast<BYTE>(attribute);
    status.m_szFullName = CString(path);
    return true;
}

}  // namespace qvox
