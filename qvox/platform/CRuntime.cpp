#include "qvox/platform/CRuntime.h"

#include <charconv>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>

#if defined(__GLIBC__)
#include <locale.h>
#endif

namespace qvox {
namespace {

constexpr bool IsSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

double ParseCLocale(const char* text) {
#if defined(__GLIBC__)
    // An application may switch LC_NUMERIC to a locale with a decimal comma; price text never
    // follows it.
    static const locale_t c_locale = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(nullptr));
    if (c_locale != static_cast<locale_t>(nullptr)) return strtod_l(text, nullptr, c_locale);
#endif
    const char* p = text;
    while (IsSpace(*p))
        ++p;
    bool negative = false;
    if (*p == '+' || *p == '-') negative = *p++ == '-';
    if (*p == '+' || *p == '-') return 0.0;
    double value = 0.0;
    const char* end = p;
    while (*end != '\0')
        ++end;
    const auto result = std::from_chars(p, end, value);
    if (result.ec == std::errc::result_out_of_range) return negative ? -HUGE_VAL : HUGE_VAL;
    if (result.ec != std::errc()) return 0.0;
    return negative ? -value : value;
}

}  // namespace

std::int32_t AtoI(const char* text) {
    return text == nullptr ? 0 : AtoI(std::string_view(text));
}

double AtoF(const char* text) {
    return text == nullptr ? 0.0 : ParseCLocale(text);
}

double AtoF(std::string_view text) {
    // The common case, a plain decimal number, is read directly; from_chars rounds exactly as
    // strtod does. Anything else (white space, '+', hexadecimal, inf, out of range) takes the
    // full reader.
    const std::size_t digit = !text.empty() && text[0] == '-' ? 1 : 0;
    // Up to 15 digits and nothing else, the usual amount, are a whole number that a double holds
    // exactly.
    if (digit < text.size() && text.size() - digit <= 15) {
        std::int64_t whole = 0;
        std::size_t at = digit;
        while (at < text.size() && text[at] >= '0' && text[at] <= '9')
            whole = whole * 10 + (text[at++] - '0');
        if (at == text.size()) {
            const auto value = static_cast<double>(whole);
            return digit == 1 ? -value : value;
        }
    }
    if (digit < text.size() && ((text[digit] >= '0' && text[digit] <= '9') || text[digit] == '.') &&
        !(text[digit] == '0' && digit + 1 < text.size() && (text[digit + 1] | 0x20) == 'x')) {
        double value = 0.0;
        const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
        if (result.ec == std::errc()) return value;
    }
    // strtod needs a terminated text; a short copy keeps the read inside the view.
    char small[64];
    if (text.size() < sizeof small) {
        text.copy(small, text.size());
        small[text.size()] = '\0';
        return ParseCLocale(small);
    }
    return ParseCLocale(std::string(text).c_str());
}

}  // namespace qvox
