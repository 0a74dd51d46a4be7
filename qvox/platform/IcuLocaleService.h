// A locale service (Locale.h) that answers from ICU's locale data: the user's own number and
// currency conventions for LOCALE_USER_DEFAULT and LOCALE_SYSTEM_DEFAULT, and each real locale's
// own for its Windows locale id. The library's built-in service keeps "." and "," for every
// locale; an application that wants its users' conventions installs this one:
//
//     qvox::PlatformServices services;
//     services.locale = std::make_shared<qvox::IcuLocaleService>();  // or ("de_CH")
//     qvox::SetPlatformServices(services);
//
// Texts that the library formats in the system's conventions for display (a price's decimal
// display text) then follow the user's separators too.
#pragma once

#include <string>

#include "qvox/platform/Locale.h"

namespace qvox {

class IcuLocaleService final : public ILocaleService {
  public:
    // userLocale is an ICU locale name ("de_CH", "en_GB"); empty takes ICU's default locale,
    // which follows the environment (LC_ALL, LC_MESSAGES, LANG).
    explicit IcuLocaleService(std::string userLocale = {});

    // The user's locale for the two default ids; a real id's own locale; for an id that names no
    // locale with a country, the built-in conventions.
    NumberConventions Numbers(LCID locale) const override;
    // The same locales; nothing for an id that names no locale with a country.
    std::optional<CurrencyConventions> Currency(LCID locale) const override;

    // The ICU name this service took for the user ("en_US_POSIX" in a plain C environment).
    const std::string& UserLocale() const { return m_userLocale; }

  private:
    std::string m_userLocale;
};

}  // namespace qvox
