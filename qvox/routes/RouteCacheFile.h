// The route cache file Routes.rlst: the route lists of the last run, so that a run in which the
// platform gives no list still has them. It lies at the platform's root directory, in
// "\Program\Routes.rlst", and has the platform's archive layout, little-endian, with no header:
//
//   version   4 bytes, 1 when written; 0 means no blocks follow, any other value eight blocks
//   blocks    equities, options, futures, forex, then the four multi-leg lists in the same order
//   block     a 32-bit count n (0 or below: no entries), then n times the code and the display
//             as counted strings, in ascending order of the code
//
// A counted string is written with a length of 1 byte below 255, else 0xFF and 2 bytes below
// 0xFFFE, else 0xFF, 0xFFFF and 4 bytes; then that many bytes of single-byte text. A reader also
// takes the wide form (0xFF, 0xFFFE, a length in characters, UTF-16 little-endian).
#pragma once

#include <map>
#include <string_view>

#include "qvox/platform/CArchive.h"
#include "qvox/platform/CString.h"
#include "qvox/platform/WinTypes.h"

namespace qvox {

// Codes in plain byte order (bytes compare as unsigned, as the platform's string compare does).
struct RouteCodeOrder {
    using is_transparent = void;
    bool operator()(std::string_view a, std::string_view b) const noexcept { return a < b; }
    bool operator()(const CString& a, const CString& b) const noexcept {
        return a.view() < b.view();
    }
    bool operator()(const CString& a, std::string_view b) const noexcept { return a.view() < b; }
    bool operator()(std::string_view a, const CString& b) const noexcept { return a < b.view(); }
};

// One route list: code to display, one entry per code.
using RouteMap = std::map<CString, CString, RouteCodeOrder>;

// The version that the library writes.
inline constexpr DWORD kRouteCacheVersion = 1;

// The blocks in the order of the file.
inline constexpr int kRouteCacheBlocks = 8;
inline constexpr const char* kRouteCacheBlockNames[kRouteCacheBlocks] = {
    "equities",           "options",           "futures",           "forex",
    "equities multi-leg", "options multi-leg", "futures multi-leg", "forex multi-leg"};

// Reads one block, handing each entry to onEntry(code, display) as soon as it is read, so that a
// block cut short still delivers what came before the cut. A count beyond the input costs
// nothing: reading ends with CArchiveException (endOfFile) where the input does.
template <class OnEntry>
void ReadRouteBlock(CArchive& ar, OnEntry&& onEntry) {
    LONG count = 0;
    ar >> count;
    for (LONG i = 0; i < count; ++i) {
        CString code;
        CString display;
        ar >> code >> display;
        onEntry(code, display);
    }
}

// Writes one block: the count, then every entry in the map's order.
void WriteRouteBlock(CArchive& ar, const RouteMap& routes);

// Where the cache lies: GetKelvarRootDir (a buffer of 260 bytes) without its trailing
// separators, then "\Program\Routes.rlst". Empty when the root directory does not fit the
// buffer, so that a cut path never names some other file.
CString RouteCachePath();

}  // namespace qvox
