// qvox: the command-line face of the order-utility library.
#include <iostream>

#include "Commands.h"

int main(int argc, char** argv) {
    CLI::App app{"qvox - prices and orders of the trading platform, from the command line"};
    app.require_subcommand(1);
    app.footer(
        "Exit codes: 0 done, 1 some lines of a data file were refused, 2 the command line "
        "cannot be carried out.");
    qvox::tool::Action action;
    qvox::tool::AddGenerateCommand(app, action);
    qvox::tool::AddPriceCommand(app, action);
    qvox::tool::AddAdvCommand(app, action);
    qvox::tool::AddOrderCommand(app, action);
    qvox::tool::AddRoutesCommand(app, action);
    qvox::tool::AddCurrencyCommand(app, action);
    qvox::tool::AddTemplatesCommand(app, action);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& e) {
        if (e.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) return app.exit(e);
        std::cerr << "qvox: " << e.what() << "\nRun 'qvox --help' for usage.\n";
        return qvox::tool::kExitUsage;
    }
    return action ? action(std::cout, std::cerr) : qvox::tool::kExitUsage;
}
