// qvox adv: what an advanced options string sets in an order, its display words, and the string
// the order writes back.
#include <fstream>
#include <memory>
#include <ostream>
#include <string>

#include "Commands.h"
#include "qvox/QVOXUtil.h"

namespace qvox::tool {
namespace {

struct AdvOptions {
    std::string text;
    std::string file;
    int category = 2;
    double pieceValue = 0.01;
    std::string orderType = "Limit";
    bool gmt = false;
};

template <class T>
void Print(std::ostream& out, const char* name, const ValidDataT<T>& field) {
    if (field.valid) out << "  " << name << " = " << field.value << '\n';
}

void Print(std::ostream& out, const char* name, const ValidString& field) {
    if (field.IsValid()) out << "  " << name << " = \"" << field.GetText().GetString() << "\"\n";
}

void PrintTime(std::ostream& out, const char* name, const ValidDataT<double>& field) {
    if (field.valid) {
        out << "  " << name << " = "
            << COleDateTime(field.value).Format("%Y-%m-%d %H:%M:%S").GetString() << " (local)\n";
    }
}

void Describe(const AdvOptions& options, const std::string& text, std::ostream& out) {
    COrderBarProperties order;
    order.m_SymbolCategory = options.category;
    order.m_PieceValue = options.pieceValue;
    order.m_OrderType = CString(options.orderType);
    order.SetAdvancePropertyFromString(CString(text), options.gmt);

    out << "string   " << text << '\n' << "fields\n";
    Print(out, "m_AllOrNone", order.m_AllOrNone);
    Print(out, "m_ECNSweep", order.m_ECNSweep);
    Print(out, "m_SubscriberOnly", order.m_SubscriberOnly);
    Print(out, "m_STA", order.m_STA);
    Print(out, "m_NonDisplay", order.m_NonDisplay);
    Print(out, "m_BuyOnMinus", order.m_BuyOnMinus);
    Print(out, "m_ShortExempt", order.m_ShortExempt);
    Print(out, "m_ShowOnly", order.m_ShowOnly);
    Print(out, "m_ShowQuantity", order.m_ShowQuantity);
    Print(out, "m_Tag", order.m_Tag);
    Print(out, "m_Discretionary", order.m_Discretionary);
    Print(out, "m_DiscretionaryAmount", order.m_DiscretionaryAmount);
    Print(out, "m_Peg", order.m_Peg);
    Print(out, "m_PegValue", order.m_PegValue);
    Print(out, "m_StopTrigger", order.m_StopTrigger);
    Print(out, "m_OSOParentTag", order.m_OSOParentTag);
    Print(out, "m_OSOTag", order.m_OSOTag);
    Print(out, "m_Locate", order.m_Locate);
    Print(out, "m_LocateTag", order.m_LocateTag);
    Print(out, "m_OCAGroupTag", order.m_OCAGroupTag);
    Print(out, "m_Bracket", order.m_Bracket);
    Print(out, "m_TrailType", order.m_TrailType);
    Print(out, "m_TrailAmount", order.m_TrailAmount);
    Print(out, "m_ActivationRule", order.m_ActivationRule);
    PrintTime(out, "m_ActivationTime", order.m_ActivationTime);
    PrintTime(out, "m_ExpirationTime", order.m_ExpirationTime);
    Print(out, "m_Condition", order.m_Condition);
    Print(out, "m_IfTouchedType", order.m_IfTouchedType);
    Print(out, "m_IfTouchedPrice", order.m_IfTouchedPrice);
    Print(out, "m_IfTouchedTrigger", order.m_IfTouchedTrigger);
    Print(out, "m_LITAutoPrice", order.m_LITAutoPrice);
    Print(out, "m_LITAutoPriceOffset", order.m_LITAutoPriceOffset);
    Print(out, "m_AutoPrice", order.m_AutoPrice);
    Print(out, "m_AutoPriceIncrement", order.m_AutoPriceIncrement);
    Print(out, "m_StopAutoPrice", order.m_StopAutoPrice);
    Print(out, "m_StopAutoPriceOffset", order.m_StopAutoPriceOffset);
    out << "display  " << COXStringForDisplay::AdvancedOrderString(CString(text)).GetString()
        << '\n'
        << "written  " << order.GetAdvancePropertyAsString(options.gmt, 0).GetString() << "\n";
}

int RunFile(const AdvOptions& options, std::ostream& out, std::ostream& err) {
    std::ifstream in(options.file);
    if (!in) {
        err << "qvox: cannot read advanced string file '" << options.file << "'\n";
        return kExitUsage;
    }
    std::string line;
    bool first = true;
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (line.empty() || line[0] == '#') continue;
        if (!first) out << '\n';
        first = false;
        Describe(options, line, out);
    }
    return kExitOk;
}

}  // namespace

void AddAdvCommand(CLI::App& app, Action& action) {
    auto options = std::make_shared<AdvOptions>();
    CLI::App* adv = app.add_subcommand(
        "adv",
        "Read an advanced options string: the fields it sets, its display words, and the "
        "string the order writes back");
    adv->add_option("string", options->text, "The advanced options string, e.g. 'AON;TAG=7;'");
    adv->add_option("-f,--file", options->file,
                    "File of advanced strings, one a line ('#' comments)");
    adv->add_option("-c,--category", options->category,
                    "Symbol category: 0 futures, 2 equities, 3 and 8 options, 12 forex")
        ->check(CLI::IsMember({0, 1, 2, 3, 4, 8, 12}));
    adv->add_option("-p,--piece-value", options->pieceValue,
                    "Worth of one piece in price units (divides the D forms)")
        ->check(CLI::PositiveNumber);
    adv->add_option("-t,--order-type", options->orderType,
                    "Order type word the order has before reading (decides the side of DLT)")
        ->check(CLI::IsMember({"Limit", "Market", "Stop Limit", "Stop Market"}));
    adv->add_flag("-g,--gmt", options->gmt, "The string's times are GMT (read and written)");
    action = [options](std::ostream& out, std::ostream& err) {
        if (!options->file.empty()) {
            if (!options->text.empty()) {
                err << "qvox: give either a string or --file, not both\n";
                return kExitUsage;
            }
            return RunFile(*options, out, err);
        }
        if (options->text.empty()) {
            err << "qvox: give an advanced options string, or --file\n";
            return kExitUsage;
        }
        Describe(*options, options->text, out);
        return kExitOk;
    };
}

}  // namespace qvox::tool
