#include "qvox/platform/Uuid.h"

#include <uuid/uuid.h>

namespace qvox {

RPC_STATUS UuidCreate(UUID* uuid) {
    if (uuid == nullptr) return RPC_S_INVALID_ARG;
    uuid_t bytes;
    uuid_generate_random(bytes);
    uuid->Data1 = static_cast<DWORD>(bytes[0]) << 24 | static_cast<DWORD>(bytes[1]) << 16 |
                  static_cast<DWORD>(bytes[2]) << 8 | bytes[3];
    uuid->Data2 = static_cast<WORD>(bytes[4] << 8 | bytes[5]);
    uuid->Data3 = static_cast<WORD>(bytes[6] << 8 | bytes[7]);
    for (int i = 0; i < 8; ++i)
        uuid->Data4[i] = bytes[8 + i];
    return RPC_S_OK;
}

}  // namespace qvox
