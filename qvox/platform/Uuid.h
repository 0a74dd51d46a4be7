// UuidCreate: a new random UUID (version 4), backed by libuuid.
#pragma once

#include "qvox/platform/WinTypes.h"

namespace qvox {

struct UUID {
    DWORD Data1;
    WORD Data2;
    WORD Data3;
    BYTE Data4[8];
};

using RPC_STATUS = LONG;
inline constexpr RPC_STATUS RPC_S_OK = 0;
inline constexpr RPC_STATUS RPC_S_INVALID_ARG = 87;

// Fills uuid from 16 random bytes, the first three fields read big-endian as the standard byte
// order has them. RPC_S_INVALID_ARG, writing nothing, for a null argument.
RPC_STATUS UuidCreate(UUID* uuid);

}  // namespace qvox
