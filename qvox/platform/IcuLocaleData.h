// ICU's locale data in the shapes of the locale service (Locale.h): Windows locale ids mapped to
// ICU locales, and what such a locale says about numbers and money. Used by the locale services;
// an application reaches it through IcuLocaleService.
#pragma once

#include <string>
#include <string_view>

#include "qvox/platform/Locale.h"
#include "qvox/platform/WinTypes.h"

namespace qvox::icudata {

// Everything one locale says.
struct LocaleData {
    NumberConventions numbers;
    CurrencyConventions currency;
};

// ICU's name of the locale a Windows locale id stands for ("en_GB" for 2057). Empty when ICU
// knows no such id, or the id names a language without a country: such a locale has no money.
std::string LocaleNameOf(LCID id);

// What the locale of that ICU name says; "" is ICU's default locale, which it takes from the
// environment (LC_ALL, LC_MESSAGES, LANG). Worked out once per name and kept. Orders that ICU's
// patterns do not match are taken as symbol first (1 and 0) or behind the number (5 and 1).
LocaleData DataOf(const std::string& name);

// Unicode text in the single-byte code page. A character that the code page lacks is folded to
// its compatibility form (NFKC) when all of that form is in the code page (U+FFE5 gives U+00A5,
// U+202F a blank); otherwise it becomes '?'.
std::string FoldToCp1252(std::wstring_view text);

}  // namespace qvox::icudata
