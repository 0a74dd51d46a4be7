// qvox templates: the conditional-order templates of a root directory (list), one template's
// tree as the application shows it (show), and a judgement of every field of template files
// against the rules, with what the user would be told (lint).
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <iomanip>
#include <memory>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include "Commands.h"
#include "TemplateFile.h"
#include "qvox/QVOXUtil.h"

namespace qvox::tool {
namespace {

struct TemplatesOptions {
    std::string root;
    std::int64_t category = 0;
    bool categoryGiven = false;
    std::string kind;
    std::string file;
    std::vector<std::string> files;
};

// Single-byte platform text for the terminal, which wants UTF-8.
std::string Out(const CString& text) {
    return Cp1252ToUtf8(text.view());
}

std::string Quoted(const CString& text) {
    return "\"" + Out(text) + "\"";
}

std::string FileName(const CString& path) {
    const std::string text = Out(path);
    const std::size_t cut = text.find_last_of("\\/");
    return cut == std::string::npos ? text : text.substr(cut + 1);
}

std::string Count(int count, const char* thing) {
    return std::to_string(count) + " " + thing + (count == 1 ? "" : "s");
}

int OrderCount(CQVOXConditionalOrdersTemplate& item) {
    int orders = 0;
    for (int c = 0; c < item.GetCount(); ++c)
        orders += item.GetAt(c)->GetCount();
    return orders;
}

bool IsElement(const IUnknownPtr& node) {
    return static_cast<bool>(IXmlElementPtr(node));
}

// ---- list ----

// A list that loads like the application's but never writes: old templates are brought up to
// date in memory only, and the versions they had on disk are remembered.
template <typename Base>
class ReadOnlyList : public Base {
  public:
    using Base::Base;
    bool Upgrade() override {
        m_OnDisk.clear();
        for (int i = 0; i < this->GetCount(); ++i)
            m_OnDisk.push_back(this->GetAt(i)->GetVersion());
        this->CQVOXConditionalOrdersTemplates::Upgrade();
        return false;
    }
    std::vector<CString> m_OnDisk;
};

template <typename List>
bool ListFolder(LONG category, std::ostream& out) {
    ReadOnlyList<List> list(category);
    std::error_code error;
    if (!std::filesystem::is_directory(NativePath(list.GetFolder().view()), error)) return false;
    list.Load();
    out << NativePath(list.GetFolder().view()) << ": " << Count(list.GetCount(), "template")
        << '\n';
    for (int i = 0; i < list.GetCount(); ++i) {
        CQVOXConditionalOrdersTemplate* item = list.GetAt(i);
        std::string version = Out(item->GetVersion());
        const CString& onDisk = list.m_OnDisk[static_cast<std::size_t>(i)];
        if (onDisk != item->GetVersion()) version += " (file: " + Out(onDisk) + ")";
        out << "  " << std::left << std::setw(36) << Quoted(item->GetName()) << ' ' << std::setw(4)
            << Out(item->GetType()) << " version " << std::setw(3) << version << ' ' << std::right
            << std::setw(10) << Count(OrderCount(*item), "order") << "  " << FileName(item->m_Path)
            << '\n';
    }
    return true;
}

int RunList(const TemplatesOptions& options, std::ostream& out, std::ostream& err) {
    if (!options.root.empty()) {
        std::error_code error;
        if (!std::filesystem::is_directory(options.root, error)) {
            err << "qvox: no folder '" << options.root << "'\n";
            return kExitUsage;
        }
        SetPlatformServices({.directories = std::make_shared<FixedPlatformDirectories>(
                                 options.root, "Software\\QVOX")});
    }
    std::vector<LONG> categories = {0, 2, 3, 12};
    if (options.categoryGiven) categories = {static_cast<LONG>(options.category)};
    bool any = false;
    for (const LONG category : categories) {
        if (options.kind != "OSO") any |= ListFolder<CQVOXCOTOCOTemplates>(category, out);
        if (options.kind != "OCO") any |= ListFolder<CQVOXCOTOSOTemplates>(category, out);
    }
    if (!any) {
        char root[1024] = {};
        GetKelvarRootDir(root, sizeof root);
        out << "no template folders under " << root << '\n';
    }
    return kExitOk;
}

// ---- show ----

const char* const kFieldOrder[] = {"Type",     "Action", "Quantity", "Price",
                                   "Duration", "Route",  "Advanced"};

// One line: name, words and value in columns, without trailing blanks.
void ShowLine(std::ostream& out, const std::string& indent, const std::string& name,
              const std::string& words, const std::string& value) {
    std::ostringstream line;
    line << indent << std::left << std::setw(9) << name << ' ' << std::setw(24) << words << value;
    std::string text = line.str();
    text.erase(text.find_last_not_of(' ') + 1);
    out << text << '\n';
}

void ShowField(std::ostream& out, const std::string& indent, CQVOXCOTField& field) {
    CQVOXCOTField::SQVOXCOTFAttributes a;
    field.GetAttributes(a);
    std::string words = a.Usage;
    for (const std::string* word : {&a.Operation, &a.Location}) {
        if (!word->empty()) words += " " + *word;
    }
    std::string value = field.GetCount() == 0 ? Out(field.GetValue().TextOrEmpty()) : "";
    if (!a.MinValue.empty() || !a.MaxValue.empty())
        value += "  [" + Cp1252ToUtf8(a.MinValue) + ", " + Cp1252ToUtf8(a.MaxValue) + "]";
    ShowLine(out, indent, Out(field.GetName()), Cp1252ToUtf8(words), value);
    for (auto& [name, child] : field.m_Fields)
        ShowField(out, indent + "  ", *child);
}

void Show(CQVOXConditionalOrdersTemplate& item, std::ostream& out) {
    out << Out(item.GetName()) << '\n';
    out << "  kind         " << Out(item.GetType()) << '\n';
    if (!item.GetID().IsEmpty()) out << "  id           " << Out(item.GetID()) << '\n';
    out << "  version      " << Out(item.GetVersion()) << '\n';
    out << "  description  " << Out(item.GetDescription()) << '\n';
    if (!item.GetAction().IsEmpty()) out << "  action       " << Out(item.GetAction()) << '\n';
    CQVOXXMLDOMHelper& document = item.m_Document;
    const IUnknownPtr children = document.GetChildNodes(item.GetProperties()->m_Element);
    for (LONG i = 0; i < document.GetLength(children); ++i) {
        const IUnknownPtr node = document.GetItem(children, i);
        if (document.GetNodeName(node) != "Property") continue;
        out << "  property     "
            << Out(document.GetAttributeValueFromElement("Name", node).TextOrEmpty()) << " = "
            << Out(document.GetElementValue(node).TextOrEmpty()) << '\n';
    }
    for (int c = 0; c < item.GetCount(); ++c) {
        CQVOXCOTCollection* collection = item.GetAt(c);
        out << "  collection " << Quoted(collection->GetName());
        if (!collection->GetType().IsEmpty()) out << " (" << Out(collection->GetType()) << ')';
        out << '\n';
        for (int o = 0; o < collection->GetCount(); ++o) {
            CQVOXCOTOrder* order = collection->GetAt(o);
            if (!IsElement(order->m_Element)) {
                out << "    (" << Out(document.GetNodeName(order->m_Element))
                    << ", read as an order without fields)\n";
                continue;
            }
            out << "    order " << Quoted(order->GetName()) << '\n';
            for (const char* name : kFieldOrder) {
                if (CQVOXCOTField* field = order->GetAt(name)) {
                    ShowField(out, "      ", *field);
                } else {
                    ShowLine(out, "      ", name, "(missing)", "");
                }
            }
            for (auto& [name, field] : order->m_Fields) {
                if (std::find_if(std::begin(kFieldOrder), std::end(kFieldOrder),
                                 [&](const char* known) { return name == known; }) ==
                    std::end(kFieldOrder))
                    ShowField(out, "      ", *field);
            }
        }
    }
}

int RunShow(const TemplatesOptions& options, std::ostream& out, std::ostream& err) {
    OpenedTemplate opened = Open(options.file);
    if (opened.result != Opened::Ok) {
        err << "qvox: " << options.file << ": " << Why(opened) << '\n';
        return opened.result == Opened::Unreadable ? kExitUsage : kExitBadData;
    }
    Show(*opened.item, out);
    return kExitOk;
}

// ---- lint ----

// Judges one template the way generation would, without generating: every finding is added to
// the template's error text as generation would add it, and printed with its place.
class Linter {
  public:
    Linter(const std::string& file, CQVOXConditionalOrdersTemplate& item, std::ostream& out)
        : m_file(file), m_item(item), m_out(out) {}

    int Errors() const { return m_errors; }

    void Run() {
        if (m_item.GetCount() == 0) Warn("no collections: the template makes no orders");
        CheckRounding();
        for (int c = 0; c < m_item.GetCount(); ++c) {
            m_collection = m_item.GetAt(c);
            if (m_collection->GetCount() == 0) Warn("an empty collection makes no orders");
            for (int o = 0; o < m_collection->GetCount(); ++o)
                CheckOrder(m_collection->GetAt(o), o);
        }
        m_collection = nullptr;
    }

  private:
    std::string Place(CQVOXCOTOrder* order, CQVOXCOTField* field) const {
        std::string place = m_file + ":";
        if (m_collection != nullptr)
            place += " collection " + Quoted(m_collection->GetName()) + ",";
        if (order != nullptr) place += " order " + Quoted(order->GetName()) + ",";
        if (field != nullptr) place += " field " + Quoted(field->GetName()) + ",";
        place.back() = ':';
        return place;
    }

    // A finding as generation would report it: "text (detail)", named by its place; an illegal
    // combination also lists the legal ones in the user's message.
    void Error(const CString& text, const CString& detail, CQVOXCOTOrder* order,
               CQVOXCOTField* field) {
        ++m_errors;
        m_out << Place(order, field) << " error: " << Out(text) << " (" << Out(detail) << ")\n";
        if (text == kCOTErrorInvalidCombination) {
            m_item.AddAttributeCombinationError(detail, order, field);
        } else {
            m_item.AddError(text, detail, order, field);
        }
    }

    void Warn(const std::string& text, CQVOXCOTOrder* order = nullptr,
              CQVOXCOTField* field = nullptr) {
        m_out << Place(order, field) << " warning: " << text << '\n';
    }

    static bool Converts(const _variant_t& value, VARTYPE type) {
        _variant_t converted;
        return SUCCEEDED(VariantChangeType(&converted, &value, 0, type));
    }

    // The combination of field against the template's table; true when it is legal.
    bool CheckCombination(CQVOXCOTOrder* order, CQVOXCOTField* field) {
        CQVOXCOTField::SQVOXCOTFAttributes attributes;
        field->GetAttributes(attributes);
        if (m_item.IsAttributeCombinationValid(attributes.Key().c_str())) return true;
        Error(kCOTErrorInvalidCombination, CString(attributes.Key()), order, field);
        return false;
    }

    void CheckNumber(CQVOXCOTOrder* order, CQVOXCOTField* field, VARTYPE type) {
        const _variant_t value = field->GetValue();
        if (!Converts(value, type)) Error(kCOTErrorInvalidValue, value.TextOrEmpty(), order, field);
    }

    void CheckOrder(CQVOXCOTOrder* order, int index) {
        if (!IsElement(order->m_Element)) {
            ++m_errors;
            m_out << m_file << ": collection " << Quoted(m_collection->GetName()) << ", node "
                  << index + 1 << " (" << Out(m_item.m_Document.GetNodeName(order->m_Element))
                  << "): error: every node in a collection is an order; this one has no "
                     "fields, and generation stops at it without a message\n";
            return;
        }
        CheckDuplicates(order);
        for (const char* name : g_COTOrderFields) {
            CQVOXCOTField* field = order->GetAt(name);
            if (field == nullptr) {
                ++m_errors;
                m_out << Place(order, nullptr) << " error: no field " << Quoted(name)
                      << ": the order can't be generated, and generation stops at it without "
                         "a message\n";
                continue;
            }
            if (!CheckCombination(order, field)) continue;
            CheckValue(order, field);
        }
        for (auto& [name, field] : order->m_Fields) {
            if (std::none_of(std::begin(g_COTOrderFields), std::end(g_COTOrderFields),
                             [&](const char* known) { return name == known; }))
                Warn("this field is not used by generation", order, field.get());
        }
    }

    void CheckDuplicates(CQVOXCOTOrder* order) {
        CQVOXXMLDOMHelper& document = m_item.m_Document;
        const IUnknownPtr children = document.GetChildNodes(order->m_Element);
        std::vector<CString> seen;
        for (LONG i = 0; i < document.GetLength(children); ++i) {
            const CString name =
                document.GetAttributeValueFromElement("Name", document.GetItem(children, i))
                    .TextOrEmpty();
            if (std::find(seen.begin(), seen.end(), name) != seen.end()) {
                Warn("a second field " + Quoted(name) + " is ignored: the first one counts", order);
            }
            seen.push_back(name);
        }
    }

    void CheckValue(CQVOXCOTOrder* order, CQVOXCOTField* field) {
        const CString name = field->GetName();
        const CString value = field->GetValue().TextOrEmpty();
        const CString location = field->GetLocation();
        if (name == kCOTFieldType) {
            if (value != "Limit" && value != "Stop Market" && value != "Stop Limit")
                Error(kCOTErrorInvalidValue, value, order, field);
        } else if (name == kCOTFieldAction) {
            if (location == kCOTLocationValue && !IsActionWord(value))
                Error(kCOTErrorInvalidValue, value, order, field);
        } else if (name == kCOTFieldQuantity) {
            // The value is read as the base at "Value" (a whole number), and as a per cent or a
            // count of moves; an exact quantity from the key or the position reads no value.
            if (location == kCOTLocationValue) {
                CheckNumber(order, field, VT_I4);
            } else if (field->GetUsage() != kCOTUsageExact) {
                CheckNumber(order, field, VT_R8);
            }
        } else if (name == kCOTFieldPrice) {
            CheckPrice(order, field);
        }
    }

    // The four words of an action; a word matches a literal it starts.
    static bool IsActionWord(const CString& word) {
        for (const char* literal :
             {"Buy To Open", "Buy To Close", "Sell To Open", "Sell To Close"}) {
            if (std::strncmp(literal, word, static_cast<std::size_t>(word.GetLength())) == 0)
                return true;
        }
        return false;
    }

    void CheckPrice(CQVOXCOTOrder* order, CQVOXCOTField* price) {
        if (price->GetCount() == 0) {
            if (price->GetUsage() == kCOTUsageExplicit) {
                Error(kCOTErrorMissingExplicit, price->GetUsage(), order, price);
            } else {
                CheckNumber(order, price, VT_R8);
            }
            return;
        }
        CQVOXCOTField* limit = price->GetAt(kCOTFieldLimit);
        CQVOXCOTField* stop = price->GetAt(kCOTFieldStop);
        if (limit != nullptr && !CheckCombination(order, limit)) return;
        if (stop != nullptr && !CheckCombination(order, stop)) return;
        const bool limitRefers = limit != nullptr && limit->GetLocation() == kCOTLocationPriceStop;
        const bool stopRefers = stop != nullptr && stop->GetLocation() == kCOTLocationPriceLimit;
        if (limitRefers && stopRefers) {
            Error(kCOTErrorCircularReference, limit->GetLocation(), order, limit);
            Error(kCOTErrorCircularReference, stop->GetLocation(), order, stop);
            return;
        }
        if (limitRefers && stop == nullptr)
            Error(kCOTErrorInvalidReference, limit->GetLocation(), order, limit);
        if (stopRefers && limit == nullptr)
            Error(kCOTErrorInvalidReference, stop->GetLocation(), order, stop);
        for (CQVOXCOTField* child : {stop, limit}) {
            if (child != nullptr) CheckNumber(order, child, VT_R8);
        }
        if (limit == nullptr && stop == nullptr)
            Warn("Price has child fields but neither Limit nor Stop: no price is set", order,
                 price);
    }

    // Bracket rounding needs a lot and percentages.
    void CheckRounding() {
        CQVOXCOTProperties* properties = m_item.GetProperties();
        const _variant_t lot = properties->GetProperty(kCOTPropertyBRQ);
        if (lot.IsEmpty()) return;
        _variant_t whole;
        if (FAILED(VariantChangeType(&whole, &lot, 0, VT_I4)) || whole.lVal < 1) {
            ++m_errors;
            m_out << m_file
                  << ": property BRQ: error: the lot of bracket rounding must be a "
                     "positive whole number, not "
                  << Quoted(lot.TextOrEmpty()) << '\n';
            m_item.AddError("BRQ must be a positive whole number", lot.TextOrEmpty(), nullptr,
                            nullptr);
        }
        for (int c = 0; c < m_item.GetCount(); ++c) {
            CQVOXCOTCollection* collection = m_item.GetAt(c);
            if (!collection->IsBracket()) continue;
            for (int o = 0; o < collection->GetCount(); ++o) {
                CQVOXCOTField* quantity = collection->GetAt(o)->GetAt(kCOTFieldQuantity);
                if (quantity == nullptr || quantity->GetUsage() == kCOTUsagePercentage) continue;
                ++m_errors;
                const CString text = kCOTErrorBracketPercentages;
                m_out << m_file << ": collection " << Quoted(collection->GetName())
                      << ": error: " << Out(text) << '\n';
                m_item.AddError(text);
                return;
            }
        }
    }

    std::string m_file;
    CQVOXConditionalOrdersTemplate& m_item;
    std::ostream& m_out;
    CQVOXCOTCollection* m_collection = nullptr;
    int m_errors = 0;
};

int RunLint(const TemplatesOptions& options, std::ostream& out, std::ostream& err) {
    int result = kExitOk;
    for (const std::string& file : options.files) {
        OpenedTemplate opened = Open(file);
        if (opened.result == Opened::Unreadable) {
            err << "qvox: " << file << ": " << Why(opened) << '\n';
            result = kExitUsage;
            continue;
        }
        if (opened.result != Opened::Ok) {
            out << file << ": error: " << Why(opened) << '\n';
            result = std::max(result, kExitBadData);
            continue;
        }
        CQVOXConditionalOrdersTemplate& item = *opened.item;
        Linter linter(file, item, out);
        linter.Run();
        if (linter.Errors() == 0) {
            out << file << ": ok (" << Out(item.GetType()) << ' ' << Quoted(item.GetName()) << ", "
                << Count(item.GetCount(), "collection") << ", " << Count(OrderCount(item), "order")
                << ")\n";
            continue;
        }
        result = std::max(result, kExitBadData);
        out << file << ": " << Count(linter.Errors(), "error") << "; the user is told:\n";
        std::istringstream message(Out(item.GetErrorMessage(true)));
        for (std::string line; std::getline(message, line);)
            out << (line.empty() ? "" : "    ") << line << '\n';
    }
    return result;
}

}  // namespace

void AddTemplatesCommand(CLI::App& app, Action& action) {
    auto options = std::make_shared<TemplatesOptions>();
    CLI::App* templates = app.add_subcommand(
        "templates", "Conditional-order templates: list a root's folders, show one, lint files");
    templates->require_subcommand(1);

    CLI::App* list = templates->add_subcommand(
        "list", "The templates of the folders under a root, with kind, version and orders");
    list->add_option("--root", options->root,
                     "Root directory holding Templates\\Conditional Orders (default: the "
                     "platform's, $QVOX_ROOT)");
    list->add_option("-c,--category", options->category,
                     "Symbol category: 0 futures, 2 stocks, 3 stock options, 12 forex (others "
                     "share the stocks folder)")
        ->check(
            CLI::Range(static_cast<std::int64_t>(INT32_MIN), static_cast<std::int64_t>(INT32_MAX)));
    list->add_option("-k,--kind", options->kind, "OCO or OSO")
        ->check(CLI::IsMember({"OCO", "OSO"}));
    list->callback([options, list, &action] {
        options->categoryGiven = list->count("--category") > 0;
        action = [options](std::ostream& out, std::ostream& err) {
            return RunList(*options, out, err);
        };
    });

    CLI::App* show =
        templates->add_subcommand("show", "A template's tree as the application shows it");
    show->add_option("file", options->file, "Template file")->required();
    show->callback([options, &action] {
        action = [options](std::ostream& out, std::ostream& err) {
            return RunShow(*options, out, err);
        };
    });

    CLI::App* lint = templates->add_subcommand(
        "lint", "Judge every field of template files against the rules (exit 1 on an error)");
    lint->add_option("files", options->files, "Template files")->required();
    lint->callback([options, &action] {
        action = [options](std::ostream& out, std::ostream& err) {
            return RunLint(*options, out, err);
        };
    });
}

}  // namespace qvox::tool
