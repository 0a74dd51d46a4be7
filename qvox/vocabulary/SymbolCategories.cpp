#include "qvox/vocabulary/SymbolCategories.h"

#include <cstddef>

#include "qvox/vocabulary/COXUtil.h"

namespace qvox {
namespace {

// One row a category; the last row answers for every category not listed.
struct CategoryRow {
    LONG category;
    LONG translated;
    LONG options;
    int assetClass;
    EOXAccCategory account;
    const char* code;
};

// clang-format off
constexpr CategoryRow kCategories[] = {
    {0, 1, 1, 4, AccCategoryFutures, "FU"},
    {1, 2, 254, 2, AccCategoryNone, ""},
    {2, 2, 3, 1, AccCategoryEquities, "EQ"},
    {3, 2, 3, 2, AccCategoryOptions, "OP"},
    {4, 2, 8, 0, AccCategoryNone, ""},
    {8, 2, 8, 2, AccCategoryOptions, "OP"},
    {12, 8, 254, 8, AccCategoryForex, "FX"},
    {-1, 2, 254, 0, AccCategoryNone, ""},
};
// clang-format on

const CategoryRow& RowOf(LONG category) {
    constexpr std::size_t kOther = std::size(kCategories) - 1;
    for (std::size_t i = 0; i < kOther; ++i) {
        if (kCategories[i].category == category) return kCategories[i];
    }
    return kCategories[kOther];
}

// ASCII only: the codes are two letters.
bool EqualNoCase(const char* a, const char* b) {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
    for (; *a != '\0' && *b != '\0'; ++a, ++b) {
        if (lower(*a) != lower(*b)) return false;
    }
    return *a == *b;
}

}  // namespace

ULONG GetSymbolCategoryFromCode(const char* code) {
    if (code == nullptr) return 0;
    for (const CategoryRow& row : kCategories) {
        // 8 shares "OP" with 3; the first row wins, and "FU" (0) is the fallback anyway.
        if (row.code[0] != '\0' && EqualNoCase(code, row.code)) {
            return static_cast<ULONG>(row.category);
        }
    }
    return 0;
}

const char* GetSymbolCodeFromCategory(ULONG category) {
    // A category beyond the 32-bit signed range is no category: it must not wrap onto one.
    if (category > 0x7FFFFFFFu) return "";
    return RowOf(static_cast<LONG>(category)).code;
}

LONG TranslateCategory(LONG category) {
    return RowOf(category).translated;
}
LONG GetOptionCategory(LONG category) {
    return RowOf(category).options;
}
int GetAssetClassFromCategory(LONG category) {
    return RowOf(category).assetClass;
}

EOXAccCategory COXUtil::GetAccCatFromSymbolCat(ULONG category) {
    if (category > 0x7FFFFFFFu) return AccCategoryNone;
    return RowOf(static_cast<LONG>(category)).account;
}

ULONG COXUtil::GetSymbolCatFromAccCat(EOXAccCategory account) {
    switch (account) {
        case AccCategoryFutures:
            return 0;
        case AccCategoryEquities:
            return 2;
        case AccCategoryOptions:
            return 3;
        case AccCategoryForex:
            return 12;
        default:
            return 254;
    }
}

}  // namespace qvox
