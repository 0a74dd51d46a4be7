#include "qvox/interchange/CAutoPriceHelper.h"

#include <cmath>

#include "qvox/vocabulary/COXUtil.h"

namespace qvox {
namespace {

EOXAutoPrice KindOf(const CString& word) {
    const EOXAutoPrice server = COXUtil::ServerAutoPriceStrToEnum(word);
    return server != AutoPriceNone ? server : COXUtil::AutoPriceStrToEnum(word);
}

// Seven decimals, halves away from zero: keeps 2.0000000001 steps from becoming 3 under ceil.
double R(double v) {
    return std::round(v * 10000000.0) / 10000000.0;
}

}  // namespace

void CAutoPriceHelper::SetLimitAutoPrice(char scale, const CString& word, double offset,
                                         double tick) {
    m_ScaleCode = scale;
    m_Tick = tick;
    m_LimitKind = KindOf(word);
    const bool absolute =
        m_LimitKind == AutoPriceOffsetStop || m_LimitKind == AutoPriceOffsetIfTouched;
    m_LimitOffset = absolute ? std::fabs(offset) : offset;
}

void CAutoPriceHelper::SetStopAutoPrice(char scale, const CString& word, double offset,
                                        double tick) {
    m_ScaleCode = scale;
    m_Tick = tick;
    m_StopKind = KindOf(word);
    m_StopOffset = offset;
}

void CAutoPriceHelper::SetIfTouchAutoPrice(char scale, const CString& word, double offset,
                                           double tick) {
    m_ScaleCode = scale;
    m_Tick = tick;
    m_IfTouchKind = KindOf(word);
    m_IfTouchOffset = offset;
}

double CAutoPriceHelper::GetLimitPrice(char side, double ask, double bid, double last,
                                       double parent, double stop, double ifTouched,
                                       bool& bMarketBased) const {
    return GetAutoPrice(m_LimitKind, m_LimitOffset, side, ask, bid, last, parent, stop, ifTouched,
                        side != 'B' && side != 'C', bMarketBased);
}

double CAutoPriceHelper::GetStopPrice(char side, double ask, double bid, double last, double parent,
                                      bool& bMarketBased) const {
    return GetAutoPrice(m_StopKind, m_StopOffset, side, ask, bid, last, parent, 0.0, 0.0,
                        side != 'B' && side != 'C', bMarketBased);
}

double CAutoPriceHelper::GetIfTouchPrice(char side, double ask, double bid, double last,
                                         double parent, bool& bMarketBased) const {
    return GetAutoPrice(m_IfTouchKind, m_IfTouchOffset, side, ask, bid, last, parent, 0.0, 0.0,
                        side != 'B' && side != 'C', bMarketBased);
}

bool CAutoPriceHelper::IsOffsetNeeded(EOXAutoPrice kind) {
    return kind == AutoPriceImprove || kind == AutoPriceShave || kind == AutoPriceHitTakePlus ||
           (kind >= AutoPriceOffsetBid && kind <= AutoPriceOffsetIfTouchedD);
}

CString CAutoPriceHelper::GetAutoString(EOXAutoPrice kind) {
    switch (kind) {
        case AutoPriceJoin:
            return "Join";
        case AutoPriceImprove:
        case AutoPriceImproveD:
            return "Imp";
        case AutoPriceSplit:
            return "Split";
        case AutoPriceShave:
        case AutoPriceShaveD:
            return "Shv";
        case AutoPriceHitTake:
            return "HT";
        case AutoPriceHitTakePlus:
        case AutoPriceHitTakePlusD:
            return "HTP";
        case AutoPriceBid:
            return "Bid";
        case AutoPriceAsk:
            return "Ask";
        case AutoPriceLast:
            return "Last";
        case AutoPriceOffsetBid:
            return "Offset from Bid";
        case AutoPriceOffsetAsk:
            return "Offset from Ask";
        case AutoPriceOffsetLast:
            return "Offset from Last";
        case AutoPriceOffsetPrimary:
        case AutoPriceOffsetPrimaryD:
            return "Offset from Parent";
        case AutoPriceOffsetStop:
        case AutoPriceOffsetStopD:
            return "Offset from Stop";
        case AutoPriceOffsetIfTouched:
        case AutoPriceOffsetIfTouchedD:
            return "Offset from If Touched";
        default:
            return "";
    }
}

double CAutoPriceHelper::GetAutoPrice(EOXAutoPrice kind, double offset, char, double ask,
                                      double bid, double last, double parent, double stop,
                                      double ifTouched, bool bNegate, bool& bMarketBased) const {
    bMarketBased = true;
    const bool buying = !bNegate;
    const double t = m_Tick;
    // Without a usable step the price stays where the rule puts it.
    const bool canRound = t != 0.0 && std::isfinite(t);
    const auto up = [&](double x) { return canRound ? std::ceil(R(x / t)) * t : x; };
    const auto down = [&](double x) { return canRound ? std::floor(R(x / t)) * t : x; };
    const auto near = [&](double x) { return canRound ? R(x / t) * t : x; };
    const double o = offset;
    switch (kind) {
        case AutoPriceJoin:
            return buying ? bid : ask;
        case AutoPriceImprove:
            return buying ? up(bid + o) : down(ask - o);
        case AutoPriceSplit:
            return (ask + bid) * 0.5;
        case AutoPriceShave:
            return buying ? down(ask - o) : up(bid + o);
        case AutoPriceHitTake:
            return buying ? ask : bid;
        case AutoPriceHitTakePlus:
            return buying ? up(ask + o) : down(bid - o);
        case AutoPriceBid:
            return bid;
        case AutoPriceAsk:
            return ask;
        case AutoPriceLast:
            return last;
        case AutoPriceOffsetBid:
            return near(bid + o);
        case AutoPriceOffsetAsk:
            return near(ask + o);
        case AutoPriceOffsetLast:
            return near(last + o);
        case AutoPriceOffsetPrimary:
            bMarketBased = false;
            return (parent != 0.0 ? parent : last) + o;
        case AutoPriceOffsetStop:
            return buying ? stop + o : stop - o;
        case AutoPriceOffsetIfTouched:
            return ifTouched + o;
        default:
            return 0.0;
    }
}

bool IsAutopriceOffsetNeeded(const CString& word) {
    return !(word.IsEmpty() || word == "Join" || word == "Split" || word == "Hit/Take");
}

}  // namespace qvox
