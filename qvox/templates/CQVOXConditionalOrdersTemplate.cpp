// The template's file and tree: Create, Load, Save, the Template's attributes and properties,
// the collections, and the copies. The field rules are in
// CQVOXConditionalOrdersTemplateRules.cpp, generation in
// CQVOXConditionalOrdersTemplateGenerate.cpp.
#include "qvox/templates/CQVOXConditionalOrdersTemplate.h"

#include <memory>
#include <new>
#include <utility>

#include "qvox/platform/CFile.h"
#include "qvox/templates/CQVOXCOTFieldRules.h"

namespace qvox {
namespace {

constexpr char kTemplateElement[] = "Template";

// A deep copy of source of its own class, or null when memory runs out.
template <typename T>
CQVOXConditionalOrdersTemplate* CloneOf(const T& source) {
    try {
        auto clone = std::make_unique<T>();
        *clone = source;
        return clone.release();
    } catch (const std::bad_alloc&) {
        return nullptr;
    } catch (const _com_error& e) {
        if (e.Error() == E_OUTOFMEMORY) return nullptr;
        throw;
    }
}

}  // namespace

CQVOXConditionalOrdersTemplate::CQVOXConditionalOrdersTemplate() = default;

CQVOXConditionalOrdersTemplate::CQVOXConditionalOrdersTemplate(
    const CQVOXConditionalOrdersTemplate& source)
    : m_TemplateType(source.m_TemplateType) {
    // The kind first, so that the type test of the load inside Copy is the source's own.
    Copy(source);
}

CQVOXConditionalOrdersTemplate::~CQVOXConditionalOrdersTemplate() = default;

CQVOXConditionalOrdersTemplate& CQVOXConditionalOrdersTemplate::operator=(
    const CQVOXConditionalOrdersTemplate& source) {
    if (this != &source) Copy(source);
    return *this;
}

void CQVOXConditionalOrdersTemplate::Copy(const CQVOXConditionalOrdersTemplate& source) {
    CQVOXXMLDOMHelper document(source.m_Document);
    wchar_t* text = nullptr;
    if (!document.Save(&text) || text == nullptr) return;
    const std::unique_ptr<wchar_t[]> owned(text);
    if (owned[0] == L'\0') return;
    // A document of this template's own, whoever else held the old one.
    Clear();
    m_Document = CQVOXXMLDOMHelper();
    Load(static_cast<const wchar_t*>(owned.get()));
    m_TemplateType = source.m_TemplateType;
    m_Path = source.m_Path;
    m_FileStatus = source.m_FileStatus;
}

void CQVOXConditionalOrdersTemplate::Create(const char* name, const char* description,
                                            const char* action) {
    const IUnknownPtr root = m_Document.AddElement(nullptr, "QVXML");
    const IUnknownPtr element = m_Document.AddElement(root, kTemplateElement);
    m_Document.AddAttribute(element, "Name", name);
    m_Document.AddAttribute(element, "Description", description);
    m_Document.AddAttribute(element, "Action", action);
    m_Document.AddAttribute(element, "Type", m_TemplateType);
    m_Document.AddAttribute(element, "Version", "1");
}

bool CQVOXConditionalOrdersTemplate::Load(const char* path) {
    Clear();
    if (path != nullptr) m_Path = path;
    const bool loaded = m_Document.Load(m_Path) && GetType() == m_TemplateType;
    if (loaded) {
        m_Properties = std::make_unique<CQVOXCOTProperties>(
            m_Document, m_Document.GetElement(kTemplateElement));
    }
    TakeFileStatus();
    return loaded;
}

bool CQVOXConditionalOrdersTemplate::Load(const wchar_t* xmlText) {
    Clear();
    const bool loaded = m_Document.Load(xmlText) && GetType() == m_TemplateType;
    if (loaded) {
        m_Properties = std::make_unique<CQVOXCOTProperties>(
            m_Document, m_Document.GetElement(kTemplateElement));
    }
    return loaded;
}

bool CQVOXConditionalOrdersTemplate::Save(const char* path) {
    if (path != nullptr) m_Path = path;
    const bool saved = m_Document.Save(m_Path);
    TakeFileStatus();
    return saved;
}

bool CQVOXConditionalOrdersTemplate::Save(wchar_t** xmlText) {
    return m_Document.Save(xmlText);
}

void CQVOXConditionalOrdersTemplate::Clear() {
    m_Collections.clear();
    m_Properties.reset();
    m_FileStatus = CFileStatus();
}

void CQVOXConditionalOrdersTemplate::TakeFileStatus() {
    CFileStatus status;
    m_FileStatus = CFile::GetStatus(m_Path, status) ? status : CFileStatus();
}

CString CQVOXConditionalOrdersTemplate::GetID() {
    return m_Document.GetAttributeValue(kTemplateElement, "ID").TextOrEmpty();
}

CString CQVOXConditionalOrdersTemplate::GetName() {
    return m_Document.GetAttributeValue(kTemplateElement, "Name").TextOrEmpty();
}

CString CQVOXConditionalOrdersTemplate::GetType() {
    return m_Document.GetAttributeValue(kTemplateElement, "Type").TextOrEmpty();
}

CString CQVOXConditionalOrdersTemplate::GetVersion() {
    return m_Document.GetAttributeValue(kTemplateElement, "Version").TextOrEmpty();
}

CString CQVOXConditionalOrdersTemplate::GetDescription() {
    return m_Document.GetAttributeValue(kTemplateElement, "Description").TextOrEmpty();
}

CString CQVOXConditionalOrdersTemplate::GetAction() {
    CString action = m_Document.GetAttributeValue(kTemplateElement, "Action").TextOrEmpty();
    if (action.IsEmpty() && m_Properties)
        action = m_Properties->GetProperty(kCOTPropertyAction).TextOrEmpty();
    return action;
}

void CQVOXConditionalOrdersTemplate::SetVersion(const CString& version) {
    const IUnknownPtr element = m_Document.GetElement(kTemplateElement);
    if (m_Document.GetAttribute("Version", element))
        m_Document.AddAttribute(element, "Version", version);
}

void CQVOXConditionalOrdersTemplate::LoadCollectionsOnAccess() {
    if (!m_Collections.empty()) return;
    const IUnknownPtr list = m_Document.GetElements("Collection");
    const LONG count = m_Document.GetLength(list);
    for (LONG i = 0; i < count; ++i) {
        IUnknownPtr element = m_Document.GetItem(list, i);
        if (element)
            m_Collections.push_back(
                std::make_unique<CQVOXCOTCollection>(m_Document, std::move(element)));
    }
}

int CQVOXConditionalOrdersTemplate::GetCount() {
    LoadCollectionsOnAccess();
    return static_cast<int>(m_Collections.size());
}

CQVOXCOTCollection* CQVOXConditionalOrdersTemplate::GetAt(int index) {
    LoadCollectionsOnAccess();
    if (index < 0 || static_cast<std::size_t>(index) >= m_Collections.size()) return nullptr;
    return m_Collections[static_cast<std::size_t>(index)].get();
}

bool CQVOXConditionalOrdersTemplate::ContainsBracketOrders() {
    LoadCollectionsOnAccess();
    for (const auto& collection : m_Collections) {
        if (collection->IsBracket()) return true;
    }
    return false;
}

bool CQVOXConditionalOrdersTemplate::IsMultiPriceFieldTemplate() {
    LoadCollectionsOnAccess();
    for (const auto& collection : m_Collections) {
        const int orders = collection->GetCount();
        for (int i = 0; i < orders; ++i) {
            CQVOXCOTField* price = collection->GetAt(i)->GetAt(kCOTFieldPrice);
            if (price != nullptr && price->GetCount() > 0) return true;
        }
    }
    return false;
}

bool CQVOXConditionalOrdersTemplate::HasFileChanged() {
    CFileStatus now;
    if (!CFile::GetStatus(m_Path, now)) return true;
    return now.m_mtime != m_FileStatus.m_mtime;
}

// ---- The two kinds ----

CQVOXCOTOCOTemplate::CQVOXCOTOCOTemplate() {
    m_TemplateType = kCOTKindOCO;
}

CQVOXConditionalOrdersTemplate* CQVOXCOTOCOTemplate::Clone() {
    return CloneOf(*this);
}

CQVOXCOTOSOTemplate::CQVOXCOTOSOTemplate() {
    m_TemplateType = kCOTKindOSO;
}

CQVOXConditionalOrdersTemplate* CQVOXCOTOSOTemplate::Clone() {
    return CloneOf(*this);
}

}  // namespace qvox
