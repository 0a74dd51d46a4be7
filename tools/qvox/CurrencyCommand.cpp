// qvox currency: an amount as the currency formatter shows it, with the symbol of the
// currency's country and the user's number conventions.
#include <charconv>
#include <memory>
#include <optional>
#include <ostream>
#include <string>

#include "Commands.h"
#include "qvox/QVOXUtil.h"

namespace qvox::tool {
namespace {

struct CurrencyOptions {
    std::string amount;
    std::string currency = "USD";
    int decimals = 2;
    bool minus = false;
    bool fixed = false;
    std::optional<std::string> userLocale;
};

std::optional<double> ParseAmount(const std::string& text) {
    double value = 0;
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value);
    if (text.empty() || result.ec != std::errc() || result.ptr != end) return std::nullopt;
    return value;
}

int Run(const CurrencyOptions& options, std::ostream& out, std::ostream& err) {
    const std::optional<double> amount = ParseAmount(options.amount);
    if (!amount) {
        err << "qvox: the amount must be a number such as 1234.5, not '" << options.amount << "'\n";
        return kExitUsage;
    }
    // The helper reads an unknown code as the dollar; a person typing one means something else.
    CString code(options.currency);
    code.MakeUpper();
    code.Remove(' ');
    bool known = false;
    for (const QVOXCurrency& row : g_QVOXCurrencies)
        known = known || code == row.isoCode;
    if (!known) {
        std::string codes;
        for (const QVOXCurrency& row : g_QVOXCurrencies)
            codes += std::string(codes.empty() ? "" : " ") + row.isoCode;
        err << "qvox: unknown currency '" << options.currency << "' (one of " << codes << ")\n";
        return kExitUsage;
    }

    std::unique_ptr<ScopedPlatformServices> user;
    if (options.userLocale) {
        PlatformServices services = GetPlatformServices();
        services.locale = std::make_shared<IcuLocaleService>(*options.userLocale);
        user = std::make_unique<ScopedPlatformServices>(services);
    }
    using H = CQVOXCurrencyHelper;
    const auto locale = static_cast<ULONG>(H::QVOXLocalIDFromISOCode(code));
    const CString formatted = H::QVOXFormatCurrency(
        *amount, options.decimals, options.fixed ? H::kDefaultFormat : locale, options.minus);
    out << "currency  " << code.GetString() << " (locale " << locale << ", "
        << Cp1252ToUtf8(H::QVOXCountryFromLocaleID(locale).view()) << ", symbol "
        << Cp1252ToUtf8(H::QVOXCountrySymbolFromLocaleID(locale).view()) << ")\n"
        << "format    "
        << (options.fixed ? std::string("fixed: $, '.' and ',', negative in parentheses")
                          : "the user's conventions" +
                                (options.userLocale ? " (" + *options.userLocale + ")"
                                                    : std::string(" (built in: '.' and ',')")))
        << '\n'
        << "amount    " << Cp1252ToUtf8(formatted.view()) << '\n';
    return kExitOk;
}

}  // namespace

void AddCurrencyCommand(CLI::App& app, Action& action) {
    auto options = std::make_shared<CurrencyOptions>();
    CLI::App* currency = app.add_subcommand(
        "currency", "Show an amount of money as the currency formatter gives it");
    currency->add_option("amount", options->amount, "The amount (put -- before a negative one)")
        ->required();
    currency->add_option("-c,--currency", options->currency, "ISO code: USD, EUR, GBP, JPY, ...");
    currency->add_option("-d,--decimals", options->decimals, "Digits after the decimal separator");
    currency->add_flag("-m,--minus", options->minus,
                       "A minus sign before the symbol for a negative amount");
    currency->add_flag("--fixed", options->fixed,
                       "The fixed format ('$', '.' and ','), whatever the currency");
    currency->add_option("-u,--user-locale", options->userLocale,
                         "Take the user's conventions from ICU for this locale (de_DE, en_GB, "
                         "...; '' for the environment's)");
    currency->callback([options, &action] {
        action = [options](std::ostream& out, std::ostream& err) {
            return Run(*options, out, err);
        };
    });
}

}  // namespace qvox::tool
