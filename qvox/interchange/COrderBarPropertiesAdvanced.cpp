// COrderBarProperties: the advanced options string, written for the server and read back. The
// two directions are deliberately not mirror images; the reader understands more than the
// writer says, and some words the writer uses do not come back.
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "qvox/order/COrderBarProperties.h"
#include "qvox/platform/COleDateTime.h"
#include "qvox/platform/CRuntime.h"
#include "qvox/platform/TimeService.h"
#include "qvox/vocabulary/COXStringForDisplay.h"
#include "qvox/vocabulary/COXUtil.h"
#include "qvox/vocabulary/OrderTime.h"

namespace qvox {
namespace {

using C = COrderBarProperties;

// To the nearest whole number, halves away from zero; saturated to 32 bits, NaN as 0.
LONG RoundHalfAway(double value) {
    if (std::isnan(value)) return 0;
    const double rounded = std::round(value);
    if (rounded >= 2147483647.0) return 2147483647;
    if (rounded <= -2147483648.0) return -2147483647 - 1;
    return static_cast<LONG>(rounded);
}

bool IsSet(const ValidDataT<SHORT>& flag) {
    return flag.valid && flag.value == 1;
}

void SetFlag(ValidDataT<SHORT>& flag) {
    flag = static_cast<SHORT>(1);
}

bool IsOptionCategory(const ValidDataT<LONG>& category) {
    return category.value == 3 || category.value == 8;
}

// The clock work of one reading or writing. Today's local date and the zone rule come from the
// time service once, when the first time item needs them, and serve every item after it.
class Clock {
  public:
    // Today's local date at a time of day; hours and minutes beyond their range run on into the
    // following days rather than failing. The time is added as one count of seconds, which
    // gives the same value as the calendar fields would.
    COleDateTime TodayAt(int hour, int minute, int second) {
        if (!today_) {
            SYSTEMTIME now;
            GetLocalTime(&now);
            today_.emplace(now.wYear, now.wMonth, now.wDay, 0, 0, 0);
            if (today_->GetStatus() != COleDateTime::valid) today_.emplace(2000, 1, 1, 0, 0, 0);
        }
        const double seconds = hour * 3600.0 + minute * 60.0 + second;
        return *today_ + COleDateTimeSpan(seconds / 86400.0);
    }
    ZoneRule& Zone() {
        if (!zone_) zone_.emplace();
        return *zone_;
    }

  private:
    std::optional<COleDateTime> today_;
    std::optional<ZoneRule> zone_;
};

// The writer appends numbers as printf would ("%d", "%u", "%f", "%.2d"), without parsing a
// format for each item.
void AppendInt(std::string& out, long long value) {
    char digits[24];
    const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    out.append(digits, end);
}

// "%f" of value into digits, which has room for any double; returns the end of the text.
char* Fixed6(char* digits, std::size_t size, double value) {
    // Whole amounts, the usual ones, skip the general conversion; -0 keeps its sign through it.
    if (value == std::trunc(value) && std::fabs(value) < 1e15 && !std::signbit(value)) {
        char* end = std::to_chars(digits, digits + size, static_cast<long long>(value)).ptr;
        std::memcpy(end, ".000000", 7);
        return end + 7;
    }
    return std::to_chars(digits, digits + size, value, std::chars_format::fixed, 6).ptr;
}

void AppendFixed6(std::string& out, double value) {
    char digits[400];
    out.append(digits, Fixed6(digits, sizeof digits, value));
}

void AppendTwoDigits(std::string& out, int value) {
    if (value >= 0 && value < 10) out += '0';
    AppendInt(out, value);
}

void AppendText(std::string& out, const CString& text) {
    out.append(text.view());
}

// The time of day of a stored date, moved to GMT when asked. Only the GMT move needs today's
// date, which decides between standard and daylight time.
void AppendTime(std::string& out, const char* tag, double stored, bool toGmt, Clock& clock) {
    SYSTEMTIME fields;  // an invalid stored date writes 00:00:00
    COleDateTime(stored).GetAsSystemTime(fields);
    if (toGmt) {
        COleDateTime when = clock.TodayAt(fields.wHour, fields.wMinute, fields.wSecond);
        clock.Zone().ToGmt(when);
        when.GetAsSystemTime(fields);
    }
    const int hour = fields.wHour;
    const int minute = fields.wMinute;
    const int second = fields.wSecond;
    out += tag;
    out += '=';
    AppendTwoDigits(out, hour);
    out += ':';
    AppendTwoDigits(out, minute);
    out += ':';
    AppendTwoDigits(out, second);
    out += ';';
}

// The word of an auto price: "JON;", "IMP2;" or in price units "IMPD0.020000;"; nothing for the
// kinds that are never sent.
void AppendAutoPriceWord(std::string& out, EOXAutoPrice kind, double offset, bool bDollars,
                         double pieceValue) {
    const auto moves = [&](const char* code, double amount) {
        out += code;
        if (bDollars) {
            out += 'D';
            AppendFixed6(out, amount * pieceValue);
        } else {
            AppendInt(out, RoundHalfAway(amount));
        }
        out += ';';
    };
    switch (kind) {
        case AutoPriceJoin:
            out += "JON;";
            break;
        case AutoPriceImprove:
            moves("IMP", offset);
            break;
        case AutoPriceSplit:
            out += "SPL;";
            break;
        case AutoPriceShave:
            moves("SHV", offset);
            break;
        case AutoPriceHitTake:
            out += "HTK;";
            break;
        case AutoPriceHitTakePlus:
            moves("HTP", offset);
            break;
        case AutoPriceOffsetStop:
            moves("STP", std::fabs(offset));
            break;
        case AutoPriceOffsetIfTouched:
            moves("LIT", std::fabs(offset));
            break;
        default:
            break;
    }
}

}  // namespace

CString C::GetAutoPriceStringForServer(EOXAutoPrice kind, double offset, bool bDollars) const {
    std::string word;
    AppendAutoPriceWord(word, kind, offset, bDollars, m_PieceValue.value);
    return CString(std::move(word));
}

CString C::GetAdvancePropertyAsString(bool bToGMT, ULONG omitFlags) const {
    const bool options = IsOptionCategory(m_SymbolCategory);
    const double pieceValue = m_PieceValue.value;
    std::string out;
    out.reserve(128);
    const auto tagged = [&out](const char* tag, const CString& value) {
        out += tag;
        AppendText(out, value);
        out += ';';
    };

    static constexpr struct {
        ValidDataT<SHORT> C::*flag;
        const char* item;
    } kFlags[] = {{&C::m_AllOrNone, "AON;"},      {&C::m_ECNSweep, "NOW;"},
                  {&C::m_SubscriberOnly, "SUB;"}, {&C::m_STA, "STA;"},
                  {&C::m_NonDisplay, "NON;"},     {&C::m_BuyOnMinus, "BMS;"},
                  {&C::m_ShortExempt, "SEX;"}};
    for (const auto& f : kFlags) {
        if (IsSet(this->*f.flag)) out += f.item;
    }
    if (IsSet(m_ShowOnly)) {
        out += "SHWQTY=";
        AppendInt(out, static_cast<ULONG>(m_ShowQuantity.value));
        out += ';';
    }
    if (m_Tag.valid) {
        out += "TAG=";
        AppendInt(out, static_cast<ULONG>(m_Tag.value));
        out += ';';
    }
    if (IsSet(m_Discretionary)) {
        out += "DSCPR=";
        AppendFixed6(out, m_DiscretionaryAmount.value);
        out += ';';
    }
    if (IsSet(m_Peg)) {
        tagged("PEGVAL=", m_PegValue.GetText());
        out += "PEGINC=NONE;";
    }
    if (!m_StopTrigger.GetText().IsEmpty()) tagged("STPTRG=", m_StopTrigger.GetText());
    if (!m_OSOParentTag.GetText().IsEmpty()) tagged("OSP=", m_OSOParentTag.GetText());

    const bool childByOverride = m_OrderCategoryOverride.valid &&
                                 (m_OrderCategoryOverride.value & COXOrderCategoryX::OSOChild) != 0;
    if (!m_OSOTag.GetText().IsEmpty() || childByOverride) {
        if (m_OSOParent == nullptr && m_OSOTag.GetText().IsEmpty()) {
            out += "OSO=PARENT1;";
        } else {
            tagged("OSO=", m_OSOTag.GetText());
        }
    }
    if (m_Locate.IsValid()) tagged("LOC=", m_Locate.GetText());
    if (m_LocateTag.IsValid()) tagged("LOCTAG=", m_LocateTag.GetText());
    if (!m_OCAGroupTag.GetText().IsEmpty()) {
        tagged(m_Bracket.IsSetAndTrue() ? "BRK=" : "OCA=", m_OCAGroupTag.GetText());
    }

    if ((omitFlags & AdvStringOmitTrailing) == 0 && m_TrailType.valid) {
        const double amount = m_TrailAmount.value;
        switch (m_TrailType.value) {
            case 1:
            case 3:
                if (options) {
                    out += "TRL=D";
                    AppendFixed6(out, m_TrailType.value == 1 ? amount * pieceValue : amount);
                } else {
                    out += "TRL=";
                    AppendInt(out, RoundHalfAway(amount));
                }
                out += ';';
                break;
            case 2:
                out += "TRL=";
                AppendFixed6(out, amount);
                out += "%;";
                break;
            default:
                break;
        }
    }
    if ((omitFlags & AdvStringOmitTail) != 0) return CString(std::move(out));

    Clock clock;
    if (IsSet(m_ActivationRule) && m_ActivationTime.valid) {
        AppendTime(out, "TIM", m_ActivationTime.value, bToGMT, clock);
    }
    if (m_ExpirationTime.valid) AppendTime(out, "EXP", m_ExpirationTime.value, bToGMT, clock);
    if (m_Condition.IsValid() && !m_Condition.GetText().IsEmpty()) {
        tagged("CND=", m_Condition.GetText());
    }
    if (m_IfTouchedType.valid && (m_IfTouchedType.value == 1 || m_IfTouchedType.value == 2)) {
        out += m_IfTouchedType.value == 1 ? "MIT=" : "LIT=";
        const CString& autoPrice = m_LITAutoPrice.GetText();
        if ((omitFlags & AdvStringOmitAutoPrice) == 0 && m_LITAutoPrice.IsValid() &&
            !autoPrice.IsEmpty() && COXUtil::CanSendAutoprice(autoPrice)) {
            const double offset = m_LITAutoPriceOffset.valid ? m_LITAutoPriceOffset.value : 0.0;
            const std::size_t start = out.size();
            AppendAutoPriceWord(out, COXUtil::AutoPriceStrToEnum(autoPrice), offset, options,
                                pieceValue);
            if (out.size() > start) out.pop_back();  // the word's ';' gives way to the trigger
        } else {
            AppendFixed6(out, m_IfTouchedPrice.value);
        }
        out += '(';
        AppendText(out, m_IfTouchedTrigger.GetText());
        out += ");";
    }
    if ((omitFlags & AdvStringOmitAutoPrice) != 0) return CString(std::move(out));

    // One side's auto price: "LMT="/"STP=" with its word, or a DLT item for an offset from the
    // primary order. A text that passes as sendable but has no word (such as "Custom Price")
    // writes nothing, so that no item is left without its ';'.
    const auto side = [&](const CString& text, double offset, const char* tag) {
        const EOXAutoPrice kind = COXUtil::AutoPriceStrToEnum(text);
        if (kind == AutoPriceOffsetPrimary) {
            if (options) {
                out += "DLT=D";
                AppendFixed6(out, offset * pieceValue);
            } else {
                out += "DLT=";
                AppendInt(out, RoundHalfAway(offset));
            }
            out += ';';
            return;
        }
        const std::size_t start = out.size();
        out += tag;
        const std::size_t wordStart = out.size();
        AppendAutoPriceWord(out, kind, offset, options, pieceValue);
        if (out.size() == wordStart) out.resize(start);
    };
    const CString& type = m_OrderType.GetText();
    if (!m_AutoPrice.GetText().IsEmpty() && type != "Stop Market" && type != "Market" &&
        COXUtil::CanSendAutoprice(m_AutoPrice.GetText())) {
        side(m_AutoPrice.GetText(), AtoF(m_AutoPriceIncrement.GetText().view()), "LMT=");
    }
    if (!m_StopAutoPrice.GetText().IsEmpty() && type != "Limit" && type != "Market" &&
        COXUtil::CanSendAutoprice(m_StopAutoPrice.GetText())) {
        side(m_StopAutoPrice.GetText(), m_StopAutoPriceOffset.value, "STP=");
    }
    return CString(std::move(out));
}

namespace {

// The working text of the reader, which shrinks from the left.
class Cursor {
  public:
    explicit Cursor(std::string_view text) : rest_(text) {}
    bool Empty() const { return rest_.empty(); }
    // The text up to delimiter, taken out with it; empty, with nothing taken, when it is missing.
    std::string_view CutTo(char delimiter) {
        // Items are a few bytes long: a plain loop beats a library search call here.
        for (std::size_t at = 0; at < rest_.size(); ++at) {
            if (rest_[at] == delimiter) return Take(at);
        }
        return {};
    }
    std::string_view Value() { return CutTo(';'); }
    // The next tag, ended by the first ';' or '='; false when neither is left.
    bool NextTag(std::string_view& tag) {
        for (std::size_t at = 0; at < rest_.size(); ++at) {
            if (rest_[at] == ';' || rest_[at] == '=') {
                tag = Take(at);
                return true;
            }
        }
        return false;
    }

  private:
    // The first `at` characters, taken out with the delimiter behind them.
    std::string_view Take(std::size_t at) {
        const std::string_view piece = rest_.substr(0, at);
        rest_.remove_prefix(at + 1);
        return piece;
    }
    std::string_view rest_;
};

// An auto price word and the number behind it ("IMPD0.02" is "IMPD" and "0.02").
struct Word {
    std::string_view word;
    std::string_view number;
    bool hasNumber;
};

bool StartsNumber(char c) {
    return (c >= '0' && c <= '9') || c == '.';
}

Word SplitWord(std::string_view operand) {
    for (std::size_t at = 0; at < operand.size(); ++at) {
        if (StartsNumber(operand[at])) return {operand.substr(0, at), operand.substr(at), true};
    }
    return {operand, {}, false};
}

struct WordMeaning {
    std::string_view word;
    EOXAutoPrice kind;
    bool hasOffset;
    bool inDollars;
};

// The words of the limit side; the stop side knows the first nine, the if-touched operand the
// first nine and the two "LMT" forms.
constexpr WordMeaning kWords[] = {
    {"JON", AutoPriceJoin, false, false},           {"IMP", AutoPriceImprove, true, false},
    {"IMPD", AutoPriceImprove, true, true},         {"SPL", AutoPriceSplit, false, false},
    {"SHV", AutoPriceShave, true, false},           {"SHVD", AutoPriceShave, true, true},
    {"HTK", AutoPriceHitTake, false, false},        {"HTP", AutoPriceHitTakePlus, true, false},
    {"HTPD", AutoPriceHitTakePlus, true, true},     {"STP", AutoPriceOffsetStop, true, false},
    {"STPD", AutoPriceOffsetStop, true, true},      {"LIT", AutoPriceOffsetIfTouched, true, false},
    {"LITD", AutoPriceOffsetIfTouched, true, true},
};
constexpr WordMeaning kIfTouchedPrimary[] = {
    {"LMT", AutoPriceOffsetPrimary, true, false},
    {"LMTD", AutoPriceOffsetPrimary, true, true},
};

enum class WordSet { limit, stop, ifTouched };

const WordMeaning* Meaning(std::string_view word, WordSet set) {
    const std::size_t known = set == WordSet::limit ? std::size(kWords) : 9;
    for (std::size_t i = 0; i < known; ++i) {
        if (kWords[i].word == word) return &kWords[i];
    }
    if (set == WordSet::ifTouched) {
        for (const WordMeaning& m : kIfTouchedPrimary) {
            if (m.word == word) return &m;
        }
    }
    return nullptr;
}

// The piece value that divides a price-unit amount back into moves. A record without one
// would divide by zero; its amounts are taken as they are written instead.
double Divisor(double pieceValue) {
    return pieceValue != 0.0 && std::isfinite(pieceValue) ? pieceValue : 1.0;
}

// The divisor of the trailing amount and the if-touched offset, with its floor for piece values
// too small to be real.
double FlooredDivisor(double pieceValue) {
    return !(pieceValue >= 1e-14) || !std::isfinite(pieceValue) ? 0.01 : pieceValue;
}

// "%f" of value into a text field.
void SetSixDecimals(ValidString& field, double value) {
    char digits[400];
    field = std::string_view(
        digits, static_cast<std::size_t>(Fixed6(digits, sizeof digits, value) - digits));
}

enum class Tag {
    unknown,
    AON,
    NOW,
    SUB,
    STA,
    NON,
    BMS,
    SEX,
    SHWQTY,
    TAG,
    LOC,
    LOCTAG,
    DSCPR,
    PEGVAL,
    TRL,
    TIM,
    EXP,
    CND,
    MIT,
    LIT,
    LMT,
    STP,
    DLT,
    DLTD,
    STPTRG,
    OSP,
    OSO,
    OCA,
    BRK
};

constexpr std::uint32_t Key(const char (&tag)[4]) {
    return static_cast<std::uint32_t>(static_cast<unsigned char>(tag[0])) << 16 |
           static_cast<std::uint32_t>(static_cast<unsigned char>(tag[1])) << 8 |
           static_cast<unsigned char>(tag[2]);
}

// The tag's meaning; exact, case counts. Most tags have three letters, which are told apart in
// one switch.
Tag Classify(std::string_view tag) {
    if (tag.size() == 3) {
        switch (Key({tag[0], tag[1], tag[2], '\0'})) {
            case Key("AON"):
                return Tag::AON;
            case Key("NOW"):
                return Tag::NOW;
            case Key("SUB"):
                return Tag::SUB;
            case Key("STA"):
                return Tag::STA;
            case Key("NON"):
                return Tag::NON;
            case Key("BMS"):
                return Tag::BMS;
            case Key("SEX"):
                return Tag::SEX;
            case Key("TAG"):
                return Tag::TAG;
            case Key("LOC"):
                return Tag::LOC;
            case Key("TRL"):
                return Tag::TRL;
            case Key("TIM"):
                return Tag::TIM;
            case Key("EXP"):
                return Tag::EXP;
            case Key("CND"):
                return Tag::CND;
            case Key("MIT"):
                return Tag::MIT;
            case Key("LIT"):
                return Tag::LIT;
            case Key("LMT"):
                return Tag::LMT;
            case Key("STP"):
                return Tag::STP;
            case Key("DLT"):
                return Tag::DLT;
            case Key("OSP"):
                return Tag::OSP;
            case Key("OSO"):
                return Tag::OSO;
            case Key("OCA"):
                return Tag::OCA;
            case Key("BRK"):
                return Tag::BRK;
            default:
                return Tag::unknown;
        }
    }
    if (tag == "SHWQTY") return Tag::SHWQTY;
    if (tag == "PEGVAL") return Tag::PEGVAL;
    if (tag == "DSCPR") return Tag::DSCPR;
    if (tag == "LOCTAG") return Tag::LOCTAG;
    if (tag == "STPTRG") return Tag::STPTRG;
    if (tag == "DLTD") return Tag::DLTD;
    return Tag::unknown;
}

}  // namespace

void C::SetAdvancePropertyFromString(const CString& text, bool bFromGMT) {
    // Only these fields are cleared by the absence of their tag; values stay, marks go.
    for (ValidDataT<SHORT>* flag :
         {&m_AllOrNone, &m_ECNSweep, &m_SubscriberOnly, &m_STA, &m_NonDisplay, &m_BuyOnMinus,
          &m_ShortExempt, &m_ShowOnly, &m_Discretionary, &m_Peg}) {
        flag->valid = false;
    }
    m_ShowQuantity.valid = false;
    m_DiscretionaryAmount.valid = false;
    m_PegValue.Invalid();
    m_Locate.Invalid();
    m_LocateTag.Invalid();

    // The text may be one of this record's own fields, which the reading changes: then it
    // works on a copy.
    const auto textAddress = reinterpret_cast<std::uintptr_t>(&text);
    const auto self = reinterpret_cast<std::uintptr_t>(this);
    const bool ownField = textAddress >= self && textAddress < self + sizeof(*this);
    const CString copy = ownField ? text : CString();
    Cursor cursor(ownField ? copy.view() : text.view());
    const double pieceValue = m_PieceValue.value;

    Clock clock;
    const auto readTime = [&]() {
        const int hour = AtoI(cursor.CutTo(':'));
        const int minute = AtoI(cursor.CutTo(':'));
        const int second = AtoI(cursor.Value());
        COleDateTime when = clock.TodayAt(hour, minute, second);
        if (bFromGMT) clock.Zone().ToLocal(when);
        return when.m_dt;
    };
    const auto autoPriceSide = [&](std::string_view value, WordSet set, ValidString& autoPrice,
                                   auto&& storeOffset) {
        const Word split = SplitWord(value);
        const WordMeaning* meaning = Meaning(split.word, set);
        if (meaning == nullptr) return;
        autoPrice = COXStringForDisplay::AutoPrice(meaning->kind);
        if (!meaning->hasOffset) return;
        const double d = split.hasNumber ? AtoF(split.number) : 0.0;
        storeOffset(meaning->inDollars ? d / Divisor(pieceValue) : d);
    };

    std::string_view name;
    while (!cursor.Empty() && cursor.NextTag(name)) {
        const Tag tag = Classify(name);
        if (tag == Tag::AON) {
            SetFlag(m_AllOrNone);
        } else if (tag == Tag::NOW) {
            SetFlag(m_ECNSweep);
        } else if (tag == Tag::SUB) {
            SetFlag(m_SubscriberOnly);
        } else if (tag == Tag::STA) {
            SetFlag(m_STA);
        } else if (tag == Tag::NON) {
            SetFlag(m_NonDisplay);
        } else if (tag == Tag::BMS) {
            SetFlag(m_BuyOnMinus);
        } else if (tag == Tag::SEX) {
            SetFlag(m_ShortExempt);
        } else if (tag == Tag::SHWQTY) {
            SetFlag(m_ShowOnly);
            m_ShowQuantity = AtoI(cursor.Value());
        } else if (tag == Tag::TAG) {
            m_Tag = AtoI(cursor.Value());
        } else if (tag == Tag::LOC) {
            m_Locate = cursor.Value();
        } else if (tag == Tag::LOCTAG) {
            m_LocateTag = cursor.Value();
        } else if (tag == Tag::DSCPR) {
            SetFlag(m_Discretionary);
            m_DiscretionaryAmount = AtoF(cursor.Value());
        } else if (tag == Tag::PEGVAL) {
            SetFlag(m_Peg);
            m_PegValue = cursor.Value();
            cursor.Value();  // where the writer puts "PEGINC=NONE;"
        } else if (tag == Tag::TRL) {
            std::string_view value = cursor.Value();
            m_TrailType = static_cast<SHORT>(1);
            if (!value.empty() && value.back() == '%') {
                m_TrailType = static_cast<SHORT>(2);
                m_TrailAmount = AtoF(value.substr(0, value.size() - 1));
            } else if (!value.empty() && value.front() == 'D') {
                while (!value.empty() && value.front() == 'D')
                    value.remove_prefix(1);
                m_TrailAmount = AtoF(value) / FlooredDivisor(pieceValue);
            } else {
                m_TrailAmount = static_cast<double>(AtoI(value));  // "TRL=;" is kind 1, amount 0
            }
        } else if (tag == Tag::TIM) {
            SetFlag(m_ActivationRule);
            m_ActivationTime = readTime();
        } else if (tag == Tag::EXP) {
            m_ExpirationTime = readTime();
        } else if (tag == Tag::CND) {
            m_Condition = cursor.Value();
        } else if (tag == Tag::MIT || tag == Tag::LIT) {
            const bool limit = tag == Tag::LIT;
            m_IfTouchedType = static_cast<SHORT>(limit ? 2 : 1);
            const std::string_view operand = cursor.CutTo('(');
            if (!limit) {
                m_IfTouchedPrice = AtoF(operand);
            } else if (!operand.empty() && StartsNumber(operand.front())) {
                m_IfTouchedPrice = AtoF(operand);
                m_LITAutoPrice = "";
            } else {
                const Word split = SplitWord(operand);
                if (const WordMeaning* meaning = Meaning(split.word, WordSet::ifTouched)) {
                    m_LITAutoPrice = COXStringForDisplay::AutoPrice(meaning->kind);
                    if (meaning->hasOffset) {
                        const double d = AtoF(split.number);
                        m_LITAutoPriceOffset =
                            meaning->inDollars ? d / FlooredDivisor(pieceValue) : d;
                    }
                }
            }
            m_IfTouchedTrigger = cursor.CutTo(')');
            cursor.Value();
        } else if (tag == Tag::LMT) {
            autoPriceSide(cursor.Value(), WordSet::limit, m_AutoPrice,
                          [this](double amount) { SetSixDecimals(m_AutoPriceIncrement, amount); });
        } else if (tag == Tag::STP) {
            m_StopAutoPriceOffset = 0.0;
            autoPriceSide(cursor.Value(), WordSet::stop, m_StopAutoPrice,
                          [this](double amount) { m_StopAutoPriceOffset = amount; });
        } else if (tag == Tag::DLT || tag == Tag::DLTD) {
            const std::string_view value = cursor.Value();
            const std::size_t at = value.find_first_of("-0123456789.");
            const double d = at == std::string_view::npos ? 0.0 : AtoF(value.substr(at));
            const double amount = tag == Tag::DLTD ? d / Divisor(pieceValue) : d;
            const char* word = COXStringForDisplay::AutoPrice(AutoPriceOffsetPrimary);
            if (m_OrderType == "Limit") {
                m_AutoPrice = word;
                SetSixDecimals(m_AutoPriceIncrement, amount);
            } else {
                m_StopAutoPrice = word;
                m_StopAutoPriceOffset = amount;
            }
        } else if (tag == Tag::STPTRG) {
            m_StopTrigger = cursor.Value();
        } else if (tag == Tag::OSP) {
            m_OSOParentTag = cursor.Value();
        } else if (tag == Tag::OSO) {
            m_OSOTag = cursor.Value();
        } else if (tag == Tag::OCA || tag == Tag::BRK) {
            m_OCAGroupTag = cursor.Value();
            m_Bracket = tag == Tag::BRK;
        }
        // Any other tag is dropped; what follows it is read as the next tag.
    }
}

}  // namespace qvox
