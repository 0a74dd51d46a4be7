// Lookups over the code tables. They run for every cell of an order grid, so each compares in
// place: trimming narrows a view, squeezing walks both texts past their spaces, and nothing is
// copied (GetIntegerValue aside, whose copy of a short number stays in the string's own buffer).
#include "qvox/vocabulary/Lookups.h"

#include <cstddef>
#include <iterator>
#include <string>
#include <string_view>

#include "qvox/platform/CRuntime.h"
#include "qvox/vocabulary/OrderEnums.h"

namespace qvox {
namespace {

constexpr const char kEmpty[] = "";
// The trigger lookups' answer for an unknown code: the first row's text without its bracket.
constexpr const char kSingleTradeTick[] = "Single Trade Tick";
// The white space that trimming cuts, the same set as CString::Trim.
constexpr std::string_view kWhiteSpace = " \t\n\v\f\r";

std::string_view Trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(kWhiteSpace);
    if (first == std::string_view::npos) return {};
    const std::size_t last = text.find_last_not_of(kWhiteSpace);
    return text.substr(first, last - first + 1);
}

// A null text has no view; callers answer it with their fallback before they get here.
std::string_view TrimmedView(const char* text) {
    return Trimmed(std::string_view(text));
}

constexpr char Fold(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

bool EqualNoCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (Fold(a[i]) != Fold(b[i])) return false;
    }
    return true;
}

// Compares text with its spaces skipped against row, whose spaces are skipped too when
// SqueezeRow is set; byte for byte, or with ASCII letters folded when NoCase is set.
template <bool NoCase, bool SqueezeRow>
bool SqueezedEqual(std::string_view text, std::string_view row) {
    std::size_t i = 0;
    std::size_t j = 0;
    for (;;) {
        while (i < text.size() && text[i] == ' ')
            ++i;
        if constexpr (SqueezeRow) {
            while (j < row.size() && row[j] == ' ')
                ++j;
        }
        if (i == text.size() || j == row.size()) return i == text.size() && j == row.size();
        const bool same = NoCase ? Fold(text[i]) == Fold(row[j]) : text[i] == row[j];
        if (!same) return false;
        ++i;
        ++j;
    }
}

// The first row that match accepts, or null.
template <class Row, std::size_t N, class Match>
const Row* FindRow(const Row (&rows)[N], Match match) {
    for (const Row& row : rows) {
        if (match(row)) return &row;
    }
    return nullptr;
}

// The text of the row with code, or "".
template <class Row, std::size_t N, class Code>
const char* TextOfCode(const Row (&rows)[N], Code code) {
    const Row* row = FindRow(rows, [code](const Row& r) { return r.code == code; });
    return row != nullptr ? row->text : kEmpty;
}

// Code to text over the trigger table given; an empty code stands for the first row's "STT".
const char* TriggerFromCode(const STR2STRMAP (&rows)[12], const CString& code) {
    const std::string_view wanted = code.IsEmpty() ? std::string_view(rows[0].code) : code.view();
    const STR2STRMAP* row =
        FindRow(rows, [wanted](const STR2STRMAP& r) { return EqualNoCase(wanted, r.code); });
    return row != nullptr ? row->text : kSingleTradeTick;
}

// Text to code over the trigger table given; unknown and empty texts give "STT".
const char* TriggerCodeFromValue(const STR2STRMAP (&rows)[12], const CString& text) {
    const std::string_view wanted = text.view();
    const STR2STRMAP* row =
        FindRow(rows, [wanted](const STR2STRMAP& r) { return EqualNoCase(wanted, r.text); });
    return row != nullptr ? row->code : rows[0].code;
}

}  // namespace

const char* GetTIF(const char* code) {
    if (code == nullptr) return kEmpty;
    const std::string_view wanted = TrimmedView(code);
    auto match = [wanted](const STR2STRMAP& r) { return wanted == r.code; };
    const STR2STRMAP* row = FindRow(g_TimeLimit, match);
    if (row == nullptr) row = FindRow(g_FuturesTimeLimit, match);
    return row != nullptr ? row->text : kEmpty;
}

const char* GetTIFCodeFromDisplay(const char* text) {
    if (text == nullptr) return kEmpty;
    const std::string_view wanted = TrimmedView(text);
    const STR2STRMAP* row = FindRow(g_TimeLimit, [wanted](const STR2STRMAP& r) {
        return SqueezedEqual<true, true>(wanted, r.text);
    });
    // The futures rows are matched with case, so that "MOC" finds the odd "OCO" row while a
    // "moc" typed by a user does not.
    if (row == nullptr) {
        row = FindRow(g_FuturesTimeLimit, [wanted](const STR2STRMAP& r) {
            return SqueezedEqual<false, false>(wanted, r.text);
        });
    }
    return row != nullptr ? row->code : kEmpty;
}

const char* GetType(const char* code) {
    if (code == nullptr) return kEmpty;
    const std::string_view wanted = TrimmedView(code);
    auto match = [wanted](const STR2STRMAP& r) { return EqualNoCase(wanted, r.code); };
    const STR2STRMAP* row = FindRow(g_OrderType, match);
    if (row == nullptr) row = FindRow(g_FutureOrderType, match);
    return row != nullptr ? row->text : kEmpty;
}

const char* GetOrderTypeCodeFromDisplayValue(const char* text) {
    if (text == nullptr) return kEmpty;
    const std::string_view wanted = TrimmedView(text);
    auto match = [wanted](const STR2STRMAP& r) { return EqualNoCase(wanted, r.text); };
    const STR2STRMAP* row = FindRow(g_OrderType, match);
    if (row == nullptr) row = FindRow(g_FutureOrderType, match);
    return row != nullptr ? row->code : kEmpty;
}

const char* GetRouteCodeFromCode(const char* code) {
    if (code == nullptr) return kEmpty;
    const std::string_view wanted = TrimmedView(code);
    auto match = [wanted](const STR2STRMAP& r) { return EqualNoCase(wanted, r.code); };
    const STR2STRMAP* row = FindRow(g_Route, match);
    if (row == nullptr) row = FindRow(g_OptionsRoute, match);
    return row != nullptr ? row->code : kEmpty;
}

const char* GetStopTriggerFromCode(CString code) {
    return TriggerFromCode(g_StopTriggerType, code);
}

const char* GetStopTriggerCodeFromValue(CString text) {
    return TriggerCodeFromValue(g_StopTriggerType, text);
}

const char* GetConditionTriggerFromCode(CString code) {
    return TriggerFromCode(g_ConditionTriggerType, code);
}

const char* GetConditionTriggerCodeFromValue(CString text) {
    return TriggerCodeFromValue(g_ConditionTriggerType, text);
}

const char* GetFuturesIncString(int code) {
    return TextOfCode(g_PriceFuturesIncrements, code);
}

const char* GetOptionsIncString(int code) {
    return TextOfCode(g_PriceOptionsIncrements, code);
}

const char* GetLifeSpanFromCode(int code) {
    return TextOfCode(g_StageLifeSpan, code);
}

int GetLifeSpanCode(const char* text) {
    if (text == nullptr) return -1;
    const std::string_view wanted = TrimmedView(text);
    const INT2STR* row =
        FindRow(g_StageLifeSpan, [wanted](const INT2STR& r) { return wanted == r.text; });
    return row != nullptr ? row->code : -1;
}

const char* GetQuantityRoundString(int code) {
    return TextOfCode(g_QtyRound, code);
}

int GetQtyRoundFromCode(const char* text) {
    if (text == nullptr) return 0;
    const std::string_view wanted = TrimmedView(text);
    const INT2STR* row =
        FindRow(g_QtyRound, [wanted](const INT2STR& r) { return wanted == r.text; });
    return row != nullptr ? row->code : 0;
}

const char* GetPegString(const CString& text) {
    const std::string_view wanted = text.view();
    const STR2STRMAP* row = FindRow(
        c_szPegValue, [wanted](const STR2STRMAP& r) { return EqualNoCase(wanted, r.text); });
    return row != nullptr ? row->code : kEmpty;
}

const STR2STRMAP* GetRoute(bool flat) {
    return flat ? g_RouteForFlatTicketing : g_Route;
}

int GetRouteCount(bool flat) {
    return static_cast<int>(flat ? std::size(g_RouteForFlatTicketing) : std::size(g_Route));
}

const char* GetSide(char code, int present) {
    return present != 0 ? TextOfCode(g_OrderSidePresent, code) : TextOfCode(g_OrderSidePast, code);
}

char GetSideCodeFromDisplayValue(const char* text, LONG exact) {
    if (text == nullptr) return 0;
    const std::string_view wanted = TrimmedView(text);
    auto match = [wanted](const CHAR2STRMAP& r) {
        return SqueezedEqual<true, true>(wanted, r.text);
    };
    const CHAR2STRMAP* row = FindRow(g_OrderSidePresent, match);
    if (row == nullptr) row = FindRow(g_OrderSidePast, match);
    if (row == nullptr) return 0;
    if (exact != 0) return row->code;
    switch (row->code) {
        case 'T':
            return 'S';
        case 'C':
            return 'B';
        default:
            return row->code;
    }
}

char GetOppositeAction(char side) {
    switch (side) {
        case 'B':
            return 'S';
        case 'S':
            return 'B';
        case 'C':
            return 'T';
        case 'T':
            return 'C';
        default:
            return 'B';
    }
}

const char* GetSideFromOptionSideString(CString text, char* openClose) {
    // What each row of g_OrderSideOptions means, in its order.
    struct Meaning {
        char openClose;
        const char* side;
    };
    static constexpr Meaning kMeanings[std::size(g_OrderSideOptions)] = {
        {'O', g_OrderSidePresent[0].text},  // Buy to Open
        {'C', g_OrderSidePresent[1].text},  // Sell to Close
        {'O', g_OrderSidePresent[1].text},  // Sell to Open
        {'C', g_OrderSidePresent[0].text},  // Buy to Close
    };
    const std::string_view wanted = text.view();
    for (std::size_t i = 0; i < std::size(g_OrderSideOptions); ++i) {
        if (SqueezedEqual<true, true>(wanted, g_OrderSideOptions[i])) {
            if (openClose != nullptr) *openClose = kMeanings[i].openClose;
            return kMeanings[i].side;
        }
    }
    return kEmpty;
}

CString GetOptionOrderTypeFromSide(CString side, char openClose, ULONG category) {
    if (category == SymbolCategoryFuture || category == SymbolCategoryStock ||
        category == SymbolCategoryForex) {
        return side;
    }
    const std::string_view text = side.view();
    const bool buy = text == g_OrderSidePresent[0].text || text == g_OrderSidePresent[3].text;
    const bool sell = text == g_OrderSidePresent[1].text || text == g_OrderSidePresent[2].text;
    if (openClose == 'C') {
        if (buy) return CString(g_OrderSideOptions[3]);   // Buy to Close
        if (sell) return CString(g_OrderSideOptions[1]);  // Sell to Close
    } else if (openClose == 'O') {
        if (buy) return CString(g_OrderSideOptions[0]);   // Buy to Open
        if (sell) return CString(g_OrderSideOptions[2]);  // Sell to Open
    }
    return side;
}

char CovertRegularSideToTradeServerSide(char side, ULONG category) {
    if (category == SymbolCategoryStock) return side;
    return side == 'B' || side == 'C' ? 'B' : 'S';
}

char CovertTradeServerSideToRegularSide(char side, ULONG category, char openClose) {
    if (category != SymbolCategoryStockOption && category != SymbolCategoryOtherOption) return side;
    if (openClose == 'C') return side == 'S' ? side : 'C';
    if (openClose == 'O') return side == 'B' ? side : 'T';
    return side;
}

int GetOrderTypeNumber(CString text) {
    const std::string_view code = GetOrderTypeCodeFromDisplayValue(text);
    std::string_view rest = strOrderString;
    for (int position = 0; !rest.empty(); ++position) {
        const std::size_t end = rest.find(';');
        if (rest.substr(0, end) == code) return position;
        if (end == std::string_view::npos) break;
        rest.remove_prefix(end + 1);
    }
    return -1;
}

int GetIntegerValue(const CString& text) {
    std::string digits;
    for (const char c : text.view()) {
        if (c != ',') digits += c;
    }
    return AtoI(std::string_view(digits));
}

void GetDurationInfoList(CStringList& list) {
    list.RemoveAll();
    for (const STR2STRMAP& row : g_TimeLimit)
        list.AddTail(row.text);
}

void GetDurationInfoList(CStringList& list, LONG category) {
    list.RemoveAll();
    auto append = [&list](const auto& rows) {
        for (const STR2STRMAP& row : rows)
            list.AddTail(row.text);
    };
    switch (category) {
        case 0:
            // The futures "MOC" duration is offered elsewhere on the ticket, not in this list.
            for (const STR2STRMAP& row : g_FuturesTimeLimit) {
                if (!EqualNoCase(row.text, "MOC")) list.AddTail(row.text);
            }
            break;
        case 2:
            append(g_TimeLimit);
            break;
        case 3:
            append(g_OptionsTimeLimit);
            break;
        case 12:
            append(g_ForexTimeLimit);
            break;
        default:
            break;
    }
}

}  // namespace qvox
