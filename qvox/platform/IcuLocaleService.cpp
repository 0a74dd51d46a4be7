#include "qvox/platform/IcuLocaleService.h"

#include <unicode/locid.h>

#include <utility>

#include "qvox/platform/IcuLocaleData.h"

namespace qvox {
namespace {

bool IsDefaultId(LCID locale) {
    return locale == LOCALE_USER_DEFAULT || locale == LOCALE_SYSTEM_DEFAULT;
}

}  // namespace

IcuLocaleService::IcuLocaleService(std::string userLocale)
    : m_userLocale(userLocale.empty() ? std::string(icu::Locale::getDefault().getName())
                                      : std::move(userLocale)) {}

NumberConventions IcuLocaleService::Numbers(LCID locale) const {
    if (IsDefaultId(locale)) return icudata::DataOf(m_userLocale).numbers;
    const std::string name = icudata::LocaleNameOf(locale);
    return name.empty() ? NumberConventions{} : icudata::DataOf(name).numbers;
}

std::optional<CurrencyConventions> IcuLocaleService::Currency(LCID locale) const {
    if (IsDefaultId(locale)) return icudata::DataOf(m_userLocale).currency;
    const std::string name = icudata::LocaleNameOf(locale);
    if (name.empty()) return std::nullopt;
    return icudata::DataOf(name).currency;
}

}  // namespace qvox
