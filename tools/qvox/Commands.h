// Subcommands of the qvox program. Each registers its options on the application and returns the
// action to run once the command line has been parsed.
#pragma once

#include <functional>
#include <iosfwd>

#include <CLI/CLI.hpp>

namespace qvox::tool {

// Exit codes shared by every subcommand.
inline constexpr int kExitOk = 0;
inline constexpr int kExitBadData = 1;  // a data file was read, some of its lines were refused
inline constexpr int kExitUsage = 2;    // the command line cannot be carried out

using Action = std::function<int(std::ostream& out, std::ostream& err)>;

// "qvox price": piece text, decimal text and fraction text of a price, or the pieces of a text.
void AddPriceCommand(CLI::App& app, Action& action);

// "qvox adv": the fields an advanced options string sets, its display words, the string written
// back.
void AddAdvCommand(CLI::App& app, Action& action);

// "qvox order": the property table the platform receives for an order written in JSON, or the
// exchange written back as JSON.
void AddOrderCommand(CLI::App& app, Action& action);

// "qvox routes": the route list a ticket offers for a platform list text, or a Routes.rlst.
void AddRoutesCommand(CLI::App& app, Action& action);

// "qvox currency": an amount as the currency formatter gives it.
void AddCurrencyCommand(CLI::App& app, Action& action);

// "qvox templates": list the templates of a root's folders, show one, lint template files.
void AddTemplatesCommand(CLI::App& app, Action& action);

// "qvox generate": the group of orders a template makes of a key order.
void AddGenerateCommand(CLI::App& app, Action& action);

}  // namespace qvox::tool
