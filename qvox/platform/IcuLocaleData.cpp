#include "qvox/platform/IcuLocaleData.h"

#include <unicode/dcfmtsym.h>
#include <unicode/decimfmt.h>
#include <unicode/locid.h>
#include <unicode/normalizer2.h>
#include <unicode/numfmt.h>
#include <unicode/ucurr.h>
#include <unicode/uloc.h>
#include <unicode/unistr.h>

#include <map>
#include <memory>
#include <mutex>
#include <optional>

#include "qvox/platform/CodePage.h"

namespace qvox::icudata {
namespace {

std::wstring ToWide(const icu::UnicodeString& text) {
    std::wstring wide;
    for (int32_t i = 0; i < text.length(); i = text.moveIndex32(i, 1)) {
        const UChar32 code = text.char32At(i);
        if constexpr (sizeof(wchar_t) >= 4) {
            wide += static_cast<wchar_t>(code);
        } else if (code > 0xFFFF) {
            wide += static_cast<wchar_t>(0xD7C0 + (code >> 10));
            wide += static_cast<wchar_t>(0xDC00 + (code & 0x3FF));
        } else {
            wide += static_cast<wchar_t>(code);
        }
    }
    return wide;
}

bool IsBlank(UChar32 code) {
    return code == u' ' || code == 0x00A0 || code == 0x202F;
}

// One side of an ICU number pattern reduced to the letters of the order tables: '$' for the
// currency sign, 'N' for the number, '-', '(', ')' and ' ' as they stand. Quoted text and other
// literals play no part in an order.
std::string Skeleton(const icu::UnicodeString& side) {
    std::string skeleton;
    bool quoted = false;
    for (int32_t i = 0; i < side.length(); i = side.moveIndex32(i, 1)) {
        const UChar32 code = side.char32At(i);
        if (code == u'\'') {
            quoted = !quoted;
            continue;
        }
        if (quoted) continue;
        char letter = '\0';
        if (code == 0x00A4) {
            letter = '$';
        } else if (code == u'#' || code == u'@' || code == u',' || code == u'.' ||
                   (code >= u'0' && code <= u'9')) {
            letter = 'N';
        } else if (code == u'-' || code == u'(' || code == u')') {
            letter = static_cast<char>(code);
        } else if (IsBlank(code)) {
            letter = ' ';
        }
        if (letter == '\0') continue;
        // "¤¤" and "#,##0.00" are one sign and one number.
        const bool repeats = !skeleton.empty() && skeleton.back() == letter;
        if (!(repeats && (letter == '$' || letter == 'N'))) skeleton += letter;
    }
    return skeleton;
}

// The positive and negative sides of a pattern; a pattern without a negative side puts a minus in
// front of the positive one.
std::pair<std::string, std::string> Sides(const icu::UnicodeString& pattern) {
    bool quoted = false;
    for (int32_t i = 0; i < pattern.length(); ++i) {
        if (pattern[i] == u'\'') quoted = !quoted;
        if (pattern[i] == u';' && !quoted) {
            return {Skeleton(pattern.tempSubString(0, i)), Skeleton(pattern.tempSubString(i + 1))};
        }
    }
    const std::string positive = Skeleton(pattern);
    return {positive, "-" + positive};
}

template <std::size_t N>
std::optional<UINT> OrderOf(const std::string& skeleton, const std::string_view (&orders)[N]) {
    for (std::size_t i = 0; i < N; ++i) {
        if (orders[i] == skeleton) return static_cast<UINT>(i);
    }
    return std::nullopt;
}

bool SymbolFirst(const std::string& skeleton) {
    return skeleton.find('$') < skeleton.find('N');
}

// A DecimalFormat's grouping in the form of NUMBERFMTA::Grouping: 3, 32 for 12,34,567, 0 for
// none.
UINT GroupingOf(const icu::DecimalFormat& format) {
    const int32_t primary = format.isGroupingUsed() ? format.getGroupingSize() : 0;
    const int32_t secondary = format.getSecondaryGroupingSize();
    if (primary <= 0 || primary > 9) return 0;
    if (secondary <= 0 || secondary > 9 || secondary == primary) {
        return static_cast<UINT>(primary);
    }
    return static_cast<UINT>(primary * 10 + secondary);
}

LocaleData Compute(const std::string& name) {
    const icu::Locale locale = name.empty() ? icu::Locale::getDefault() : icu::Locale(name.c_str());
    LocaleData data;
    UErrorCode status = U_ZERO_ERROR;
    const icu::DecimalFormatSymbols symbols(locale, status);
    if (U_FAILURE(status)) return data;
    using Symbol = icu::DecimalFormatSymbols;
    const auto symbolText = [&](Symbol::ENumberFormatSymbol which) {
        return ToWide(symbols.getSymbol(which));
    };

    NumberConventions& numbers = data.numbers;
    numbers.decimalSeparator = FoldToCp1252(symbolText(Symbol::kDecimalSeparatorSymbol));
    numbers.thousandSeparator = FoldToCp1252(symbolText(Symbol::kGroupingSeparatorSymbol));
    status = U_ZERO_ERROR;
    std::unique_ptr<icu::NumberFormat> plain(icu::NumberFormat::createInstance(locale, status));
    if (const auto* decimal = dynamic_cast<const icu::DecimalFormat*>(plain.get())) {
        numbers.grouping = GroupingOf(*decimal);
        numbers.leadingZero = decimal->getMinimumIntegerDigits() > 0 ? 1 : 0;
        icu::UnicodeString pattern;
        decimal->toPattern(pattern);
        numbers.negativeOrder = OrderOf(Sides(pattern).second, kNumberNegativeOrders).value_or(1);
    }
    // ICU's number patterns show up to three digits rather than a fixed count, so the number of
    // digits keeps the platform's usual 2.

    CurrencyConventions& currency = data.currency;
    currency.symbol = symbolText(Symbol::kCurrencySymbol);
    currency.decimalSeparator = symbolText(Symbol::kMonetarySeparatorSymbol);
    currency.thousandSeparator = symbolText(Symbol::kMonetaryGroupingSeparatorSymbol);
    UChar iso[4] = {};
    status = U_ZERO_ERROR;
    ucurr_forLocale(locale.getName(), iso, 4, &status);
    currency.internationalSymbol = U_SUCCESS(status) ? ToWide(icu::UnicodeString(iso)) : L"";
    icu::UnicodeString country;
    locale.getDisplayCountry(icu::Locale::getEnglish(), country);
    currency.englishCountry = ToWide(country);
    status = U_ZERO_ERROR;
    std::unique_ptr<icu::NumberFormat> money(
        icu::NumberFormat::createCurrencyInstance(locale, status));
    if (const auto* decimal = dynamic_cast<const icu::DecimalFormat*>(money.get())) {
        currency.grouping = GroupingOf(*decimal);
        currency.digits = static_cast<UINT>(decimal->getMaximumFractionDigits());
        icu::UnicodeString pattern;
        decimal->toPattern(pattern);
        const auto [positive, negative] = Sides(pattern);
        const bool first = SymbolFirst(positive);
        currency.positiveOrder = OrderOf(positive, kCurrencyPositiveOrders).value_or(first ? 0 : 1);
        currency.negativeOrder = OrderOf(negative, kCurrencyNegativeOrders).value_or(first ? 1 : 5);
    }
    if (iso[0] != 0) {
        status = U_ZERO_ERROR;
        const int32_t digits = ucurr_getDefaultFractionDigits(iso, &status);
        if (U_SUCCESS(status) && digits >= 0 && digits <= 9) {
            currency.digits = static_cast<UINT>(digits);
        }
    }
    return data;
}

}  // namespace

std::string LocaleNameOf(LCID id) {
    char name[ULOC_FULLNAME_CAPACITY] = {};
    UErrorCode status = U_ZERO_ERROR;
    const int32_t length = uloc_getLocaleForLCID(id, name, sizeof name, &status);
    if (U_FAILURE(status) || status == U_STRING_NOT_TERMINATED_WARNING || length <= 0) return {};
    char country[ULOC_COUNTRY_CAPACITY] = {};
    status = U_ZERO_ERROR;
    if (uloc_getCountry(name, country, sizeof country, &status) <= 0 || U_FAILURE(status)) {
        return {};
    }
    return name;
}

LocaleData DataOf(const std::string& name) {
    // ICU builds its formatters slowly; a locale's data never changes within a run.
    static std::mutex mutex;
    static std::map<std::string, LocaleData> cache;
    {
        const std::lock_guard<std::mutex> lock(mutex);
        if (const auto found = cache.find(name); found != cache.end()) return found->second;
    }
    LocaleData data = Compute(name);
    const std::lock_guard<std::mutex> lock(mutex);
    return cache.emplace(name, std::move(data)).first->second;
}

std::string FoldToCp1252(std::wstring_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t code = static_cast<char32_t>(text[i]);
        if constexpr (sizeof(wchar_t) == 2) {
            if (code >= 0xD800 && code < 0xDC00 && i + 1 < text.size()) {
                const auto low = static_cast<char32_t>(text[i + 1]);
                if (low >= 0xDC00 && low < 0xE000) {
                    code = 0x10000 + ((code - 0xD800) << 10) + (low - 0xDC00);
                    ++i;
                }
            }
        }
        if (const int byte = UnicodeToCp1252(code); byte >= 0) {
            out += static_cast<char>(byte);
            continue;
        }
        std::string folded = "?";
        UErrorCode status = U_ZERO_ERROR;
        const icu::Normalizer2* nfkc = icu::Normalizer2::getNFKCInstance(status);
        if (U_SUCCESS(status) && code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF)) {
            const icu::UnicodeString form =
                nfkc->normalize(icu::UnicodeString(static_cast<UChar32>(code)), status);
            std::string bytes;
            for (int32_t j = 0; U_SUCCESS(status) && j < form.length();
                 j = form.moveIndex32(j, 1)) {
                const int mapped = UnicodeToCp1252(static_cast<char32_t>(form.char32At(j)));
                if (mapped < 0) {
                    bytes.clear();
                    break;
                }
                bytes += static_cast<char>(mapped);
            }
            if (!bytes.empty()) folded = bytes;
        }
        out += folded;
    }
    return out;
}

}  // namespace qvox::icudata
