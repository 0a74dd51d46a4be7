// Locale information and number formatting with the shapes of the platform's locale functions.
// What a locale says comes from the locale service installed through the platform registration
// point (Platform.h); the built-in service answers "." and "," for every locale.
#pragma once

#include <string>
#include <utility>

#include "qvox/platform/WinTypes.h"

namespace qvox {

inline constexpr LCID LOCALE_USER_DEFAULT = 0x0400;
inline constexpr LCID LOCALE_SYSTEM_DEFAULT = 0x0800;

inline constexpr LCTYPE LOCALE_SDECIMAL = 0x0000000E;
inline constexpr LCTYPE LOCALE_STHOUSAND = 0x0000000F;
inline constexpr LCTYPE LOCALE_SGROUPING = 0x00000010;
inline constexpr LCTYPE LOCALE_IDIGITS = 0x00000011;
inline constexpr LCTYPE LOCALE_ILZERO = 0x00000012;
inline constexpr LCTYPE LOCALE_INEGNUMBER = 0x00001010;
inline constexpr DWORD LOCALE_NOUSEROVERRIDE = 0x80000000;

// Explicit fields for GetNumberFormatA.
struct NUMBERFMTA {
    UINT NumDigits;    // digits after the decimal separator, 0 to 9
    UINT LeadingZero;  // 1: "0.5", 0: ".5"
    UINT Grouping;     // group sizes as decimal digits, most significant first: 3, 32, 30, 9
    const char* lpDecimalSep;   // must not be null
    const char* lpThousandSep;  // must not be null
    UINT NegativeOrder;         // 0 "(1.1)", 1 "-1.1", 2 "- 1.1", 3 "1.1-", 4 "1.1 -"
};

// How one locale writes numbers.
struct NumberConventions {
    std::string decimalSeparator = ".";
    std::string thousandSeparator = ",";
    UINT grouping = 3;  // in the form of NUMBERFMTA::Grouping
    UINT digits = 2;
    UINT leadingZero = 1;
    UINT negativeOrder = 1;
};

// Where locale data comes from. An application installs its own to follow the user's settings.
class ILocaleService {
  public:
    virtual ~ILocaleService() = default;
    // The conventions of a locale id; LOCALE_SYSTEM_DEFAULT and LOCALE_USER_DEFAULT stand for the
    // machine's and the user's locale. Must answer for every id.
    virtual NumberConventions Numbers(LCID locale) const = 0;
};

// A service that gives the same conventions for the system and for the user, whatever the id.
class FixedLocaleService final : public ILocaleService {
  public:
    FixedLocaleService() = default;
    explicit FixedLocaleService(NumberConventions conventions)
        : conventions_(std::move(conventions)) {}
    NumberConventions Numbers(LCID) const override { return conventions_; }

  private:
    NumberConventions conventions_;
};

// Copies one locale field as text into data. The result counts the characters written with the
// terminator; with cchData 0 it is the size needed and nothing is written. Fails with 0 and sets
// the last error: ERROR_INVALID_FLAGS for an unknown field, ERROR_INSUFFICIENT_BUFFER when the
// text does not fit, ERROR_INVALID_PARAMETER for a null buffer or a negative size.
int GetLocaleInfoA(LCID locale, LCTYPE type, LPSTR data, int cchData);

// Formats the number text value ("-" first if negative, digits, at most one ".") with the given
// fields, or with the locale's conventions when format is null. Rounds half away from zero to
// NumDigits digits; a value that rounds to zero carries no sign. Returns as GetLocaleInfoA.
// Fails with 0: ERROR_INVALID_PARAMETER for a malformed value, a null separator, a field out of
// range; ERROR_INVALID_FLAGS for flags other than 0 with explicit fields (LOCALE_NOUSEROVERRIDE
// alone is allowed without); ERROR_INSUFFICIENT_BUFFER when the text does not fit. The output is
// left untouched on failure.
int GetNumberFormatA(LCID locale, DWORD flags, LPCSTR value, const NUMBERFMTA* format, LPSTR out,
                     int cchNumber);

}  // namespace qvox
