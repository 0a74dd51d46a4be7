#include "qvox/templates/CQVOXCOTNodes.h"

#include <utility>

#include "qvox/platform/Bstr.h"
#include "qvox/platform/CodePage.h"

namespace qvox {
namespace {

CString AttributeText(CQVOXXMLDOMHelper& document, const char* name, const IUnknownPtr& element) {
    return document.GetAttributeValueFromElement(name, element).TextOrEmpty();
}

// Calls visit(node) for each non-null child node of element, in document order.
template <typename Visit>
void ForEachChild(CQVOXXMLDOMHelper& document, const IUnknownPtr& element, Visit&& visit) {
    const IUnknownPtr children = document.GetChildNodes(element);
    const LONG count = document.GetLength(children);
    for (LONG i = 0; i < count; ++i) {
        IUnknownPtr node = document.GetItem(children, i);
        if (node) visit(std::move(node));
    }
}

std::string StringOf(const char* text) {
    return text == nullptr ? std::string() : std::string(text);
}

// Slots of CQVOXCOTKeptTexts::m_Words.
enum Word : int { kName = 0, kUsage = 1, kOperation = 2, kLocation = 3, kType = 1 };

// The attribute name of element as text, kept in slot of kept.
CString KeptWord(CQVOXCOTKeptTexts& kept, CQVOXXMLDOMHelper& document, const IUnknownPtr& element,
                 Word slot, const char* name) {
    if (!kept.Follow(document, element)) return AttributeText(document, name, element);
    std::optional<CString>& word = kept.m_Words[slot];
    if (!word) word = AttributeText(document, name, element);
    return *word;
}

}  // namespace

// ---- CQVOXCOTKeptTexts ----

bool CQVOXCOTKeptTexts::Follow(CQVOXXMLDOMHelper& document, const IUnknownPtr& element) {
    const bool sameElement = m_From.GetInterfacePtr() == element.GetInterfacePtr();
    // No content anywhere has changed since the last look at this element: the slots stand.
    const ULONGLONG latest = CQVOXXMLDOMHelper::GetLatestRevision();
    if (m_Revision != 0 && sameElement && latest == m_Latest) return true;
    m_Latest = latest;
    const ULONGLONG now = document.GetRevision(element);
    if (now == 0) {
        m_Revision = 0;
        return false;
    }
    if (now != m_Revision || !sameElement) {
        for (std::optional<CString>& word : m_Words)
            word.reset();
        m_Value.reset();
        m_Named.clear();
        m_From = element;
        m_Revision = now;
    }
    return true;
}

// ---- CQVOXCOTProperties ----

CQVOXCOTProperties::CQVOXCOTProperties(const CQVOXXMLDOMHelper& document, IUnknownPtr element)
    : m_Document(document), m_Element(std::move(element)) {}

CQVOXCOTProperties::~CQVOXCOTProperties() = default;

_variant_t CQVOXCOTProperties::GetProperty(const char* name) {
    _variant_t result;
    if (name == nullptr) return result;
    const bool keep = m_Kept.Follow(m_Document, m_Element);
    if (keep) {
        for (const auto& [kept, value] : m_Kept.m_Named) {
            if (kept == name) return value;
        }
    }
    const std::u16string wanted = Cp1252ToUtf16(name);
    const IUnknownPtr children = m_Document.GetChildNodes(m_Element);
    const LONG count = m_Document.GetLength(children);
    for (LONG i = 0; i < count && result.IsEmpty(); ++i) {
        const IUnknownPtr node = m_Document.GetItem(children, i);
        if (m_Document.GetNodeName(node) != "Property") continue;
        const _variant_t key = m_Document.GetAttributeValueFromElement("Name", node);
        if (key.vt != VT_BSTR || BstrView(key.bstrVal) != wanted) continue;
        result = m_Document.GetElementValue(node);
    }
    if (keep) m_Kept.m_Named.emplace_back(name, result);
    return result;
}

// ---- CQVOXCOTCollection ----

CQVOXCOTCollection::CQVOXCOTCollection(const CQVOXXMLDOMHelper& document, IUnknownPtr element)
    : m_Document(document), m_Element(std::move(element)) {}

CQVOXCOTCollection::~CQVOXCOTCollection() = default;

CString CQVOXCOTCollection::GetName() {
    return KeptWord(m_Kept, m_Document, m_Element, kName, "Name");
}

CString CQVOXCOTCollection::GetType() {
    return KeptWord(m_Kept, m_Document, m_Element, kType, "Type");
}

bool CQVOXCOTCollection::IsBracket() {
    return GetType() == "Bracket";
}

int CQVOXCOTCollection::GetCount() {
    LoadOnAccess();
    return static_cast<int>(m_Orders.size());
}

CQVOXCOTOrder* CQVOXCOTCollection::GetAt(int index) {
    LoadOnAccess();
    if (index < 0 || static_cast<std::size_t>(index) >= m_Orders.size()) return nullptr;
    return m_Orders[static_cast<std::size_t>(index)].get();
}

void CQVOXCOTCollection::Clear() {
    LoadOnAccess();
    m_Orders.clear();
}

void CQVOXCOTCollection::LoadOnAccess() {
    if (!m_Orders.empty()) return;
    ForEachChild(m_Document, m_Element, [this](IUnknownPtr node) {
        m_Orders.push_back(std::make_unique<CQVOXCOTOrder>(m_Document, std::move(node), this));
    });
}

// ---- CQVOXCOTOrder ----

CQVOXCOTOrder::CQVOXCOTOrder(const CQVOXXMLDOMHelper& document, IUnknownPtr element,
                             CQVOXCOTCollection* parent)
    : m_Document(document), m_Parent(parent), m_Element(std::move(element)) {}

CQVOXCOTOrder::~CQVOXCOTOrder() = default;

CString CQVOXCOTOrder::GetName() {
    return KeptWord(m_Kept, m_Document, m_Element, kName, "Name");
}

int CQVOXCOTOrder::GetCount() {
    LoadOnAccess();
    return static_cast<int>(m_Fields.size());
}

CQVOXCOTField* CQVOXCOTOrder::GetAt(const char* name) {
    if (name == nullptr) return nullptr;
    LoadOnAccess();
    const auto found = m_Fields.find(name);
    return found == m_Fields.end() ? nullptr : found->second.get();
}

void CQVOXCOTOrder::Clear() {
    m_Fields.clear();
}

void CQVOXCOTOrder::LoadOnAccess() {
    if (!m_Fields.empty()) return;
    ForEachChild(m_Document, m_Element, [this](IUnknownPtr node) {
        auto field = std::make_unique<CQVOXCOTField>(m_Document, std::move(node));
        // The first field of a name wins; a later one is dropped here.
        m_Fields.try_emplace(field->GetName().str(), std::move(field));
    });
}

// ---- CQVOXCOTField ----

CQVOXCOTField::SQVOXCOTFAttributes::SQVOXCOTFAttributes(const char* name, const char* usage,
                                                        const char* operation, const char* location,
                                                        const char* minValue, const char* maxValue,
                                                        bool isChildField)
    : Name(StringOf(name)),
      Usage(StringOf(usage)),
      Operation(StringOf(operation)),
      Location(StringOf(location)),
      MinValue(StringOf(minValue)),
      MaxValue(StringOf(maxValue)),
      IsChildField(isChildField) {}

std::string CQVOXCOTField::SQVOXCOTFAttributes::Key() const {
    std::string key;
    key.reserve(Name.size() + Usage.size() + Operation.size() + Location.size() + 3);
    key.append(Name).append(1, ' ').append(Usage).append(1, ' ');
    key.append(Operation).append(1, ' ').append(Location);
    return key;
}

CQVOXCOTField::CQVOXCOTField(const CQVOXXMLDOMHelper& document, IUnknownPtr element)
    : m_Document(document), m_Element(std::move(element)) {}

CQVOXCOTField::~CQVOXCOTField() = default;

CString CQVOXCOTField::GetName() {
    return KeptWord(m_Kept, m_Document, m_Element, kName, "Name");
}

CString CQVOXCOTField::GetUsage() {
    return KeptWord(m_Kept, m_Document, m_Element, kUsage, "Usage");
}

CString CQVOXCOTField::GetOperation() {
    return KeptWord(m_Kept, m_Document, m_Element, kOperation, "Operation");
}

CString CQVOXCOTField::GetLocation() {
    return KeptWord(m_Kept, m_Document, m_Element, kLocation, "Location");
}

_variant_t CQVOXCOTField::GetMinValue() {
    return m_Document.GetAttributeValueFromElement("MinValue", m_Element);
}

_variant_t CQVOXCOTField::GetMaxValue() {
    return m_Document.GetAttributeValueFromElement("MaxValue", m_Element);
}

_variant_t CQVOXCOTField::GetValue() {
    if (!m_Kept.Follow(m_Document, m_Element)) return m_Document.GetElementValue(m_Element);
    if (!m_Kept.m_Value) m_Kept.m_Value = m_Document.GetElementValue(m_Element);
    return *m_Kept.m_Value;
}

void CQVOXCOTField::SetValue(const _variant_t& value) {
    _variant_t text;
    ThrowIfFailed(VariantChangeType(&text, &value, 0, VT_BSTR));
    m_Document.SetElementText(m_Element, text.TextOrEmpty());
}

void CQVOXCOTField::SetLocation(const CString& location) {
    m_Document.AddAttribute(m_Element, "Location", location);
}

void CQVOXCOTField::GetAttributes(SQVOXCOTFAttributes& attributes) {
    attributes.Name = GetName().str();
    attributes.Usage = GetUsage().str();
    attributes.Operation = GetOperation().str();
    attributes.Location = GetLocation().str();
    attributes.MinValue = GetMinValue().TextOrEmpty().str();
    attributes.MaxValue = GetMaxValue().TextOrEmpty().str();
    attributes.IsChildField = m_IsChildField;
}

int CQVOXCOTField::GetCount() {
    LoadOnAccess();
    return static_cast<int>(m_Fields.size());
}

CQVOXCOTField* CQVOXCOTField::GetAt(const char* name) {
    if (name == nullptr) return nullptr;
    LoadOnAccess();
    const auto found = m_Fields.find(name);
    return found == m_Fields.end() ? nullptr : found->second.get();
}

void CQVOXCOTField::Clear() {
    m_Fields.clear();
}

void CQVOXCOTField::LoadOnAccess() {
    if (!m_Fields.empty()) return;
    ForEachChild(m_Document, m_Element, [this](IUnknownPtr node) {
        auto field = std::make_unique<CQVOXCOTField>(m_Document, std::move(node));
        field->SetChildField(true);
        std::string name = field->GetName().str();
        // The field's own text node, and anything else without a Name, is no child field.
        if (!name.empty()) m_Fields.try_emplace(std::move(name), std::move(field));
    });
}

}  // namespace qvox
