// COXUtil: texts and codes to enumerations, and the auto price increments.
#include "qvox/vocabulary/COXUtil.h"

#include <cstring>
#include <iterator>

#include "qvox/platform/CRuntime.h"
#include "qvox/price/Helper.h"
#include "qvox/price/PriceIncrements.h"
#include "qvox/vocabulary/CodeTables.h"

namespace qvox {
namespace {

template <class Enum>
struct TextRow {
    const char* text;
    Enum value;
};

// The value of the first row whose text equals text exactly, or 0.
template <class Enum, std::size_t N>
Enum Find(const TextRow<Enum> (&rows)[N], const char* text) {
    if (text == nullptr) return static_cast<Enum>(0);
    for (const TextRow<Enum>& row : rows) {
        if (std::strcmp(row.text, text) == 0) return row.value;
    }
    return static_cast<Enum>(0);
}

// clang-format off
constexpr TextRow<EMVOrderAction> kActions[] = {
    {"Buy", OrderActionBuy}, {"Buy to Open", OrderActionBuy},
    {"Sell Short", OrderActionSellShort}, {"Sell to Open", OrderActionSellShort},
    {"Sell", OrderActionSell}, {"Sell to Close", OrderActionSell},
    {"Buy to Cover", OrderActionBuyToCover}, {"Buy to Close", OrderActionBuyToCover}};

constexpr TextRow<EMVOrderType> kTypes[] = {
    {"Limit", OrderTypeLimit}, {"Market", OrderTypeMarket},
    {"Stop Limit", OrderTypeStopLimit}, {"Stop Market", OrderTypeStopMarket}};

constexpr TextRow<EnumTrailingStop> kTrailing[] = {{"Pts", TrailingPoints},
                                                   {"%", TrailingPercent}};

constexpr TextRow<EOXAutoPrice> kStopAutoPrices[] = {
    {"Offset from Bid", AutoPriceOffsetBid}, {"Offset from Ask", AutoPriceOffsetAsk},
    {"Offset from Last", AutoPriceOffsetLast}, {"Offset from Primary", AutoPriceOffsetPrimary}};

constexpr TextRow<StageOrderLifeSpan> kLifeSpans[] = {
    {"Persist", StageOrderLifeSpanPersist}, {"Clear upon send", StageOrderLifeSpanClearUponSend}};

constexpr TextRow<EOXAutoPrice> kAutoPrices[] = {
    {"Join", AutoPriceJoin}, {"Improve", AutoPriceImprove}, {"Split", AutoPriceSplit},
    {"Shave", AutoPriceShave}, {"Hit/Take", AutoPriceHitTake},
    {"Hit/Take+", AutoPriceHitTakePlus}, {"Bid", AutoPriceBid}, {"Ask", AutoPriceAsk},
    {"Last", AutoPriceLast}, {"Offset from Bid", AutoPriceOffsetBid},
    {"Offset from Ask", AutoPriceOffsetAsk}, {"Offset from Last", AutoPriceOffsetLast},
    {"Offset from Primary", AutoPriceOffsetPrimary},
    {"Offset from Stop Price", AutoPriceOffsetStop},
    {"Offset from If Touched Price", AutoPriceOffsetIfTouched}};

// What the server writes. Bid, Ask, Last and the market offsets have no code: they are worked
// out on this side and sent as a plain price.
constexpr TextRow<EOXAutoPrice> kServerAutoPrices[] = {
    {"JON", AutoPriceJoin}, {"IMP", AutoPriceImprove}, {"SPL", AutoPriceSplit},
    {"SHV", AutoPriceShave}, {"HTK", AutoPriceHitTake}, {"HTP", AutoPriceHitTakePlus},
    {"DLT", AutoPriceOffsetPrimary}, {"STP", AutoPriceOffsetStop},
    {"LIT", AutoPriceOffsetIfTouched}, {"IMPD", AutoPriceImproveD}, {"SHVD", AutoPriceShaveD},
    {"HTPD", AutoPriceHitTakePlusD}, {"DLTD", AutoPriceOffsetPrimaryD},
    {"STPD", AutoPriceOffsetStopD}, {"LITD", AutoPriceOffsetIfTouchedD}};
// clang-format on

// The setting of the first row whose text is exactly text, or 0.
template <std::size_t N>
int SettingOfText(const INT2STRMAP (&rows)[N], const char* text) {
    for (const INT2STRMAP& row : rows) {
        if (std::strcmp(row.text, text) == 0) return row.code;
    }
    return 0;
}

}  // namespace

EMVOrderAction COXUtil::OrderActionStrToEnum(const char* text) {
    return Find(kActions, text);
}
EMVOrderType COXUtil::OrderTypeStrToEnum(const char* text) {
    return Find(kTypes, text);
}
EnumTrailingStop COXUtil::TrailingStrToEnum(const char* text) {
    return Find(kTrailing, text);
}
EOXAutoPrice COXUtil::StopAPStrToEnum(const char* text) {
    return Find(kStopAutoPrices, text);
}

StageOrderLifeSpan COXUtil::StagedOrderLifeSpanStrToEnum(const char* text) {
    return Find(kLifeSpans, text);
}

EOXAutoPrice COXUtil::AutoPriceStrToEnum(const char* text) {
    return Find(kAutoPrices, text);
}

EOXAutoPrice COXUtil::ServerAutoPriceStrToEnum(const char* text) {
    return Find(kServerAutoPrices, text);
}

bool COXUtil::CanSendAutoprice(const char* text) {
    const EOXAutoPrice autoPrice = AutoPriceStrToEnum(text);
    return autoPrice < AutoPriceBid || autoPrice > AutoPriceOffsetLast;
}

EOXConnectionState COXUtil::Convert(ULONG state) {
    return state <= 2 ? static_cast<EOXConnectionState>(state) : ConnectionStateOther;
}

double COXUtil::GetAutoPriceIncrement(int setting, ULONG category) {
    switch (category) {
        case SymbolCategoryFuture:
            return GetFutIncFromSetting(setting);
        case SymbolCategoryStock:
            return GetEqIncFromSetting(setting);
        case SymbolCategoryStockOption:
        case SymbolCategoryOtherOption:
            return GetOptIncFromSetting(setting, OptionThresholdPenny);
        default:
            return 0.0;
    }
}

double COXUtil::GetAutoPriceIncrement(int setting, ULONG category, char code) {
    if (Helper::IsBaseCodeDecimal(code) != 0) return GetAutoPriceIncrement(setting, category);
    return GetAutoPriceIncrementFraction(setting, category);
}

double COXUtil::GetAutoPriceIncrementFraction(int setting, ULONG) {
    // Setting n is 1/2^n for 2 to 8; everything else is a half.
    if (setting < 2 || setting > 8) return 0.5;
    return 1.0 / static_cast<double>(1u << static_cast<unsigned>(setting));
}

int COXUtil::AutoPriceIncrementStrToEnum(const char* text, ULONG category) {
    if (text == nullptr) return 0;
    switch (category) {
        case SymbolCategoryFuture:
            return SettingOfText(g_PriceFuturesIncrements, text);
        case SymbolCategoryStock: {
            // Money compares by value, so "0.1", ".10" and "0.10" are one setting.
            const double value = AtoF(text);
            for (const INT2STRMAP& row : g_PriceIncrements) {
                if (AtoF(row.text) == value) return row.code;
            }
            return 0;
        }
        case SymbolCategoryStockOption:
        case SymbolCategoryOtherOption:
            return SettingOfText(g_PriceOptionsIncrements, text);
        default:
            return 0;
    }
}

}  // namespace qvox
