// CFileStatus: what the platform tells about a file, read by CFile::GetStatus. Times are
// nanoseconds since 1970-01-01 UTC, so that two readings of one unchanged file compare equal and
// any later write compares different; a zero record means "no file".
#pragma once

#include "qvox/platform/CString.h"
#include "qvox/platform/WinTypes.h"

namespace qvox {

struct CFileStatus {
    enum Attribute : BYTE { normal = 0x00, readOnly = 0x01, directory = 0x10 };

    LONGLONG m_ctime = 0;  // last change of the file's status (Linux keeps no creation time)
    LONGLONG m_mtime = 0;  // last modification
    LONGLONG m_atime = 0;  // last access
    ULONGLONG m_size = 0;  // bytes
    BYTE m_attribute = normal;
    CString m_szFullName;  // the path as it was asked for

    friend bool operator==(const CFileStatus&, const CFileStatus&) = default;
};

}  // namespace qvox
