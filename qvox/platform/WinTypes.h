// The fixed-width integer names of the platform's interface. On the platform a `long` is 32 bits;
// here it may be 64, so every name that the interface spells with `long` maps to an exact width.
#pragma once

#include <cstdint>

namespace qvox {

using BOOL = std::int32_t;
using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using LONG = std::int32_t;
using ULONG = std::uint32_t;
using INT = std::int32_t;
using UINT = std::uint32_t;
using SHORT = std::int16_t;
using USHORT = std::uint16_t;
using LONGLONG = std::int64_t;
using ULONGLONG = std::uint64_t;
using LCID = DWORD;
using LCTYPE = DWORD;
using LPSTR = char*;
using LPCSTR = const char*;

inline constexpr BOOL TRUE = 1;
inline constexpr BOOL FALSE = 0;

static_assert(sizeof(BOOL) == 4 && sizeof(WORD) == 2 && sizeof(DWORD) == 4);
static_assert(sizeof(LONG) == 4 && sizeof(ULONG) == 4 && sizeof(UINT) == 4 && sizeof(SHORT) == 2);

// 32-bit arithmetic that wraps on overflow, as the platform's integers do. Signed overflow is
// undefined in C++, so the work is done in unsigned arithmetic and converted back (modular since
// C++20).
namespace wrap32 {

constexpr std::int32_t add(std::int32_t a, std::int32_t b) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}
constexpr std::int32_t sub(std::int32_t a, std::int32_t b) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}
constexpr std::int32_t mul(std::int32_t a, std::int32_t b) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) * static_cast<std::uint32_t>(b));
}
constexpr std::int32_t neg(std::int32_t a) {
    return static_cast<std::int32_t>(0u - static_cast<std::uint32_t>(a));
}
// |a| as an unsigned number, so that the magnitude of INT32_MIN (2^31) is representable.
constexpr std::uint32_t magnitude(std::int32_t a) {
    return a < 0 ? 0u - static_cast<std::uint32_t>(a) : static_cast<std::uint32_t>(a);
}

}  // namespace wrap32
}  // namespace qvox
