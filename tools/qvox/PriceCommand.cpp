// qvox price: the three text forms of a price given in pieces, or the pieces of a piece text.
#include <algorithm>
#include <charconv>
#include <fstream>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>

#include "Commands.h"
#include "qvox/QVOXUtil.h"

namespace qvox::tool {
namespace {

struct PriceOptions {
    std::string code;
    std::string pieces;
    std::optional<std::string> text;
    std::string file;
    bool plus = false;
};

constexpr std::string_view kBlanks = " \t\r\n";

std::string_view Trim(std::string_view s) {
    const std::size_t first = s.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) return {};
    return s.substr(first, s.find_last_not_of(kBlanks) - first + 1);
}

// A base code on the command line is one letter; the library would quietly read anything else
// as m, which is not what a person typing a code means.
std::optional<char> ParseCode(std::string_view text) {
    if (text.size() != 1 || !Helper::IsValidBaseCode(text[0])) return std::nullopt;
    return text[0];
}

std::optional<LONG> ParsePieces(std::string_view text) {
    if (!text.empty() && text.front() == '+') text.remove_prefix(1);
    LONG value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (text.empty() || result.ec != std::errc() || result.ptr != text.data() + text.size()) {
        return std::nullopt;
    }
    return value;
}

void PrintCode(std::ostream& out, char code) {
    // Scale texts are single-byte platform text; the terminal wants UTF-8.
    const char* scale = Helper::GetPriceScaleString(basecode::ToLower(code));
    out << "code      " << code << " (" << Cp1252ToUtf8(scale) << ")\n";
}

void PrintPieces(std::ostream& out, char code, LONG pieces, bool plus) {
    char text[16];
    char decimal[32];
    Helper::Pieces2String(code, pieces, text, plus ? 1 : 0);
    Helper::Pieces2DecimalString(code, pieces, decimal, plus ? 1 : 0);
    const CString fraction = Helper::Num2Frac(Helper::Pieces2Decimal(pieces, code), code, 1);
    PrintCode(out, code);
    out << "pieces    " << pieces << '\n'
        << "text      " << text << '\n'
        << "decimal   " << decimal << '\n'
        << "fraction  " << static_cast<const char*>(fraction) << '\n';
}

void PrintText(std::ostream& out, char code, const std::string& text, bool plus) {
    const LONG pieces = Helper::String2Pieces(code, text.c_str());
    char readBack[16];
    Helper::Pieces2String(code, pieces, readBack, plus ? 1 : 0);
    PrintCode(out, code);
    out << "text      " << text << '\n'
        << "pieces    " << pieces << '\n'
        << "reads as  " << readBack << '\n';
}

// A price file has one request a line: "<code> pieces <number>" or "<code> text <piece text>".
// Blank lines and lines starting with '#' are skipped.
int RunFile(const PriceOptions& options, std::ostream& out, std::ostream& err) {
    std::ifstream in(options.file);
    if (!in) {
        err << "qvox: cannot read price file '" << options.file << "'\n";
        return kExitUsage;
    }
    int status = kExitOk;
    bool first = true;
    std::string line;
    for (int number = 1; std::getline(in, line); ++number) {
        const std::string_view content = Trim(line);
        if (content.empty() || content.front() == '#') continue;
        const auto refuse = [&](std::string_view why) {
            err << "qvox: " << options.file << ':' << number << ": " << why << '\n';
            status = kExitBadData;
        };
        const std::size_t codeEnd = content.find_first_of(kBlanks);
        const std::string_view rest = Trim(content.substr(std::min(codeEnd, content.size())));
        const std::size_t kindEnd = rest.find_first_of(kBlanks);
        const std::string_view kind = rest.substr(0, kindEnd);
        const std::string_view value = Trim(rest.substr(std::min(kindEnd, rest.size())));
        const std::optional<char> code = ParseCode(content.substr(0, codeEnd));
        if (!code) {
            refuse("the base code must be one letter a to z");
            continue;
        }
        if (kind == "pieces") {
            const std::optional<LONG> pieces = ParsePieces(value);
            if (!pieces) {
                refuse("pieces must be a whole number from -2147483648 to 2147483647");
                continue;
            }
            if (!first) out << '\n';
            PrintPieces(out, *code, *pieces, options.plus);
        } else if (kind == "text") {
            if (value.empty()) {
                refuse("a text request needs the text");
                continue;
            }
            if (!first) out << '\n';
            PrintText(out, *code, std::string(value), options.plus);
        } else {
            refuse("expected '<code> pieces <number>' or '<code> text <piece text>'");
            continue;
        }
        first = false;
    }
    return status;
}

int Run(const PriceOptions& options, std::ostream& out, std::ostream& err) {
    if (!options.file.empty()) {
        if (!options.code.empty() || options.text) {
            err << "qvox: --file takes no code, pieces or text\n";
            return kExitUsage;
        }
        return RunFile(options, out, err);
    }
    const std::optional<char> code = ParseCode(options.code);
    if (!code) {
        err << "qvox: the base code must be one letter a to z, not '" << options.code << "'\n";
        return kExitUsage;
    }
    if (options.text) {
        if (!options.pieces.empty()) {
            err << "qvox: give either pieces or --text, not both\n";
            return kExitUsage;
        }
        PrintText(out, *code, *options.text, options.plus);
        return kExitOk;
    }
    if (options.pieces.empty()) {
        err << "qvox: give the pieces of the price, or --text\n";
        return kExitUsage;
    }
    const std::optional<LONG> pieces = ParsePieces(options.pieces);
    if (!pieces) {
        err << "qvox: pieces must be a whole number from -2147483648 to 2147483647, not '"
            << options.pieces << "'\n";
        return kExitUsage;
    }
    PrintPieces(out, *code, *pieces, options.plus);
    return kExitOk;
}

}  // namespace

void AddPriceCommand(CLI::App& app, Action& action) {
    auto options = std::make_shared<PriceOptions>();
    CLI::App* price = app.add_subcommand(
        "price",
        "Show a price in pieces as piece text, decimal text and fraction text, or read a piece "
        "text into pieces");
    price->add_option("code", options->code, "Base code: a to e factors, f to z fractions");
    price->add_option("pieces", options->pieces,
                      "Price as a whole number of pieces (put -- before a negative number)");
    price->add_option("-t,--text", options->text, "Piece text to read, such as 103^25");
    price->add_option("-f,--file", options->file,
                      "File of requests, one a line: '<code> pieces <n>' or '<code> text <t>'");
    price->add_flag("-p,--plus", options->plus, "Write a sign also for positive prices");
    price->callback([options, &action] {
        action = [options](std::ostream& out, std::ostream& err) {
            return Run(*options, out, err);
        };
    });
}

}  // namespace qvox::tool
