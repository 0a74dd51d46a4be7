// The per-thread last-error code that the platform's functions set when they fail.
#pragma once

#include "qvox/platform/WinTypes.h"

namespace qvox {

inline constexpr DWORD ERROR_SUCCESS = 0;
inline constexpr DWORD ERROR_INVALID_PARAMETER = 87;
inline constexpr DWORD ERROR_INSUFFICIENT_BUFFER = 122;
inline constexpr DWORD ERROR_INVALID_FLAGS = 1004;

// The code of this thread's last failure; ERROR_SUCCESS until one is set.
DWORD GetLastError();
void SetLastError(DWORD code);

}  // namespace qvox
