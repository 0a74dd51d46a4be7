// The template's field attribute rules: its table of legal combinations, the test, and the
// error texts a generation collects for the user.
#include <array>

#include "qvox/templates/CQVOXCOTFieldRules.h"
#include "qvox/templates/CQVOXConditionalOrdersTemplate.h"

namespace qvox {
namespace {

using Attributes = CQVOXCOTField::SQVOXCOTFAttributes;

template <std::size_t Count>
struct Table {
    std::array<Attributes, Count> rows;
    std::array<std::string, Count> keys;  // each row's combination key, made once
};

template <std::size_t Count>
Table<Count> BuildTable(bool oso) {
    Table<Count> table;
    std::size_t at = 0;
    for (const COTFieldRule& rule : g_COTFieldRules) {
        if (rule.osoOnly && !oso) continue;
        table.rows[at] = Attributes(rule.name, rule.usage, rule.operation, rule.location, nullptr,
                                    nullptr, false);
        table.keys[at] = table.rows[at].Key();
        ++at;
    }
    return table;
}

const Table<kCOTOCORuleCount>& OCOTable() {
    static const Table<kCOTOCORuleCount> table = BuildTable<kCOTOCORuleCount>(false);
    return table;
}

const Table<kCOTOSORuleCount>& OSOTable() {
    static const Table<kCOTOSORuleCount> table = BuildTable<kCOTOSORuleCount>(true);
    return table;
}

// The keys of a table the records of which start at rows, or null for a table not ours.
const std::string* KeysOf(const Attributes* rows) {
    if (rows == OCOTable().rows.data()) return OCOTable().keys.data();
    if (rows == OSOTable().rows.data()) return OSOTable().keys.data();
    return nullptr;
}

}  // namespace

static_assert(std::size(g_COTFieldRules) == kCOTOSORuleCount);

const CQVOXCOTField::SQVOXCOTFAttributes* COTOCOFieldAttributes() {
    return OCOTable().rows.data();
}

const CQVOXCOTField::SQVOXCOTFAttributes* COTOSOFieldAttributes() {
    return OSOTable().rows.data();
}

bool IsCOTCombinationInTable(const CQVOXCOTField::SQVOXCOTFAttributes* table, int count,
                             const char* key) {
    if (table == nullptr || count < 1 || key == nullptr) return false;
    const std::string_view wanted(key);
    const std::string* keys = KeysOf(table);
    for (int i = 0; i < count; ++i) {
        const auto at = static_cast<std::size_t>(i);
        if (keys != nullptr ? keys[at] == wanted : table[at].Key() == wanted) return true;
    }
    return false;
}

// ---- The template's rules ----

bool CQVOXConditionalOrdersTemplate::IsAttributeCombinationValid(const char* key) {
    return IsCOTCombinationInTable(GetValidFieldAttributes(), GetValidFieldAttributesCount(), key);
}

const CQVOXCOTField::SQVOXCOTFAttributes*
CQVOXConditionalOrdersTemplate::GetValidFieldAttributes() {
    return nullptr;
}

int CQVOXConditionalOrdersTemplate::GetValidFieldAttributesCount() {
    return 0;
}

const CQVOXCOTField::SQVOXCOTFAttributes* CQVOXCOTOCOTemplate::GetValidFieldAttributes() {
    return COTOCOFieldAttributes();
}

int CQVOXCOTOCOTemplate::GetValidFieldAttributesCount() {
    return static_cast<int>(kCOTOCORuleCount);
}

const CQVOXCOTField::SQVOXCOTFAttributes* CQVOXCOTOSOTemplate::GetValidFieldAttributes() {
    return COTOSOFieldAttributes();
}

int CQVOXCOTOSOTemplate::GetValidFieldAttributesCount() {
    return static_cast<int>(kCOTOSORuleCount);
}

// ---- Error texts ----

void CQVOXConditionalOrdersTemplate::AddError(const CString& text, CQVOXCOTOrder* order,
                                              CQVOXCOTField* field) {
    if (order != nullptr && field != nullptr) {
        m_ErrorText.AppendFormat("[Order = \"%s\" : Field = \"%s\"] - %s\n", order->GetName(),
                                 field->GetName(), text);
    } else {
        m_ErrorText.AppendFormat("%s\n", text);
    }
}

void CQVOXConditionalOrdersTemplate::AddError(const CString& text, const CString& detail,
                                              CQVOXCOTOrder* order, CQVOXCOTField* field) {
    CString full;
    full.Format("%s (%s)", text, detail);
    AddError(full, order, field);
}

void CQVOXConditionalOrdersTemplate::AddAttributeCombinationError(const CString& key,
                                                                  CQVOXCOTOrder* order,
                                                                  CQVOXCOTField* field) {
    AddError(kCOTErrorInvalidCombination, key, order, field);
    AddError("");
    AddError("Valid attribute combinations:");
    const CString name = field != nullptr ? field->GetName() : CString();
    const SQVOXCOTFAttributes* table = GetValidFieldAttributes();
    const int count = table != nullptr ? GetValidFieldAttributesCount() : 0;
    for (int i = 0; i < count; ++i) {
        const SQVOXCOTFAttributes& row = table[static_cast<std::size_t>(i)];
        if (row.Name == name.view()) AddError(CString(row.Key()));
    }
}

void CQVOXConditionalOrdersTemplate::AddVerboseError(const CString& text) {
    m_VerboseError = text;
    m_HasVerboseError = true;
}

CString CQVOXConditionalOrdersTemplate::GetErrorMessage(bool clear) {
    CString message;
    if (m_HasVerboseError) {
        message = m_VerboseError;
    } else {
        message.Format("The %s template selected is invalid.  The following errors occurred:\n\n",
                       GetType());
        message.AppendFormat("Template = \"%s\":\n\n", GetName());
        message += m_ErrorText;
    }
    if (clear) {
        m_ErrorText.Empty();
        m_VerboseError.Empty();
        m_HasVerboseError = false;
    }
    return message;
}

}  // namespace qvox
