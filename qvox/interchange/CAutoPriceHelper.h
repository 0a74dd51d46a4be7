// CAutoPriceHelper: turns one auto price rule (join the bid, improve by an offset, offset from
// the parent's price...) and the market into a price. Offsets and the tick are in price units.
#pragma once

#include "qvox/platform/CString.h"
#include "qvox/vocabulary/OrderEnums.h"

namespace qvox {

class CAutoPriceHelper {
  public:
    // Store the scale code (kept, read by nothing), the tick and the rule. The word is read as a
    // server word first ("IMP"), then as a display word ("Improve"); unknown words are no rule.
    // The limit rule keeps the absolute offset for the stop and if-touched offsets (14, 15).
    void SetLimitAutoPrice(char scale, const CString& word, double offset, double tick);
    void SetStopAutoPrice(char scale, const CString& word, double offset, double tick);
    void SetIfTouchAutoPrice(char scale, const CString& word, double offset, double tick);

    // The price of each rule for a side ('B' and 'C' buy, anything else sells). bMarketBased
    // goes false only for an offset from the primary (parent) order.
    double GetLimitPrice(char side, double ask, double bid, double last, double parent, double stop,
                         double ifTouched, bool& bMarketBased) const;
    double GetStopPrice(char side, double ask, double bid, double last, double parent,
                        bool& bMarketBased) const;
    double GetIfTouchPrice(char side, double ask, double bid, double last, double parent,
                           bool& bMarketBased) const;

    char m_ScaleCode = 'm';
    EOXAutoPrice m_LimitKind = AutoPriceNone;
    EOXAutoPrice m_IfTouchKind = AutoPriceNone;
    EOXAutoPrice m_StopKind = AutoPriceNone;
    double m_IfTouchOffset = 0.0;
    double m_StopOffset = 0.0;
    double m_LimitOffset = 0.0;
    // One price step. A helper that no Set call has reached has no step: the rules that round to
    // it then give their price unrounded, as they do for any step of 0.
    double m_Tick = 0.0;

  protected:
    // True for the rules that take an offset: 2, 4, 6 and 10 to 21.
    static bool IsOffsetNeeded(EOXAutoPrice kind);
    // A short label of a rule ("Imp", "Offset from Parent"...); "" outside 1 to 21.
    static CString GetAutoString(EOXAutoPrice kind);
    // The calculation. Offset from last (12) is taken from the last price, rounded like the
    // offsets from bid and ask; the server-only rules 16 to 21 and no rule give 0.0.
    double GetAutoPrice(EOXAutoPrice kind, double offset, char side, double ask, double bid,
                        double last, double parent, double stop, double ifTouched, bool bNegate,
                        bool& bMarketBased) const;
};

// Whether an auto price word takes an offset: false for "Join", "Split", "Hit/Take" and "".
bool IsAutopriceOffsetNeeded(const CString& word);

}  // namespace qvox
