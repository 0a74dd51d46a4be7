// COXUtil: trade symbols and the split of a quantity over several orders.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <string>

#include "qvox/vocabulary/COXUtil.h"

namespace qvox {

bool COXUtil::ConvertToTradeSymbolForFutures(const char* symbol, ULONG& start, ULONG& length) {
    if (symbol == nullptr) return false;
    const std::size_t size = std::strlen(symbol);
    std::size_t end = std::strcspn(symbol, ".-=");
    // A leading "@" marks a continuous contract; it is cut only from a real contract name, so
    // "@ESH09" loses it and the root "@ES" keeps it.
    const bool cutPrefix = symbol[0] == '@' && end >= 5;
    // ".P" belongs to the symbol; reading end + 1 is safe, at worst it is the terminator.
    if (end < size && symbol[end] == '.' && symbol[end + 1] == 'P') end += 2;
    if (!cutPrefix && end >= size) return false;
    start = cutPrefix ? 1 : 0;
    length = static_cast<ULONG>(end) - start;
    return true;
}

bool COXUtil::ConvertToTradeSymbolForEquities(const char* symbol, ULONG& start, ULONG& length) {
    // "US:" is followed by one marker character ("US:$XYZ"), which goes too. "US:" alone still
    // counts: its length wraps to 0xFFFFFFFF, which no buffer is large enough for, and its
    // substring is empty.
    if (symbol == nullptr || std::strncmp(symbol, "US:", 3) != 0) return false;
    start = 4;
    length = static_cast<ULONG>(std::strlen(symbol)) - 4u;
    return true;
}

namespace {

// The part of symbol that start and length name, cut at its terminator: a start beyond it
// gives the empty text.
CString Substring(const char* symbol, ULONG start, ULONG length) {
    const std::size_t size = std::strlen(symbol);
    if (start >= size) return CString();
    return CString(symbol + start, static_cast<int>(std::min<std::size_t>(length, size - start)));
}

}  // namespace

CString COXUtil::ConvertToTradeSymbolForFutures(const char* symbol) {
    ULONG start = 0;
    ULONG length = 0;
    if (!ConvertToTradeSymbolForFutures(symbol, start, length)) return CString(symbol);
    return Substring(symbol, start, length);
}

CString COXUtil::ConvertToTradeSymbolForEquities(const char* symbol) {
    ULONG start = 0;
    ULONG length = 0;
    if (!ConvertToTradeSymbolForEquities(symbol, start, length)) return CString(symbol);
    return Substring(symbol, start, length);
}

const char* COXUtil::ConvertToTradeSymbol(const char* symbol, ULONG category, char* out,
                                          ULONG outSize) {
    ULONG start = 0;
    ULONG length = 0;
    bool found = false;
    if (category == 0) {
        found = ConvertToTradeSymbolForFutures(symbol, start, length);
    } else if (category == 2) {
        found = ConvertToTradeSymbolForEquities(symbol, start, length);
    }
    if (!found || out == nullptr || length >= outSize) return symbol;
    // A length below outSize lies within the symbol: both rules only ever shorten it.
    std::memmove(out, symbol + start, length);
    out[length] = '\0';
    return out;
}

CString& COXUtil::ConvertToTradeSymbol(CString& symbol, ULONG category) {
    // The buffer form with the string's own room, its length and the terminator: the trade
    // symbol is never longer, and "US:" (whose length wraps) stays as it is.
    const ULONG room = static_cast<ULONG>(symbol.GetLength()) + 1u;
    std::string out(room, '\0');
    if (ConvertToTradeSymbol(symbol, category, out.data(), room) == out.data()) {
        symbol = CString(out.c_str());
    }
    return symbol;
}

CString COXUtil::ConvertToTradeSymbol(const char* symbol, ULONG category) {
    CString text(symbol);
    ConvertToTradeSymbol(text, category);
    return text;
}

bool COXUtil::BreakQty(int total, int count, ULONG category, CUIntArray& out) {
    const std::int64_t lot = category == 2 ? 100 : 1;
    if (total < 0) return false;
    if (count > 1 && total < lot * count) return false;
    out.RemoveAll();
    if (count <= 0) return true;

    // Every part but the last is a whole number of lots; what they leave is carried on, and the
    // last part takes the rest.
    const double share = static_cast<double>(total) / count;
    double carry = 0.0;
    for (int i = 0; i < count; ++i) {
        double part = share + carry;
        if (i + 1 < count) {
            const double whole =
                std::trunc(part / static_cast<double>(lot)) * static_cast<double>(lot);
            carry = part - whole;
            part = whole;
        }
        double rounded = std::floor(part);
        if (part - rounded > 0.5) rounded += 1.0;
        out.Add(static_cast<UINT>(rounded));
    }
    return true;
}

}  // namespace qvox
