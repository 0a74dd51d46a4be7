#include "qvox/templates/CQVOXXMLDOMHelper.h"

#include <cwchar>
#include <new>
#include <string>

#include "qvox/platform/Bstr.h"
#include "qvox/platform/CodePage.h"
#include "qvox/templates/XmlDom.h"

namespace qvox {
namespace {

std::string Utf8(const CString& text) {
    return Cp1252ToUtf8(text.view());
}

// A text variant of UTF-8 text; E_OUTOFMEMORY raised when memory runs out.
_variant_t TextVariant(std::string_view utf8) {
    const std::u16string units = Utf8ToUtf16(utf8);
    BSTR text = SysAllocStringLen(units.data(), static_cast<UINT>(units.size()));
    if (text == nullptr) _com_issue_error(E_OUTOFMEMORY);
    VARIANT value;
    value.vt = VT_BSTR;
    value.bstrVal = text;
    _variant_t result;
    result.Attach(value);
    return result;
}

IUnknownPtr AsHandle(IUnknown* object) {
    return IUnknownPtr(object);
}

}  // namespace

CQVOXXMLDOMHelper::CQVOXXMLDOMHelper(IUnknownPtr document) : m_Document(std::move(document)) {
    if (!m_Document) m_Document = AsHandle(CreateXmlDocument().GetInterfacePtr());
}

CQVOXXMLDOMHelper::~CQVOXXMLDOMHelper() = default;

CQVOXXMLDOMHelper& CQVOXXMLDOMHelper::operator=(IUnknownPtr document) {
    m_Document = std::move(document);
    return *this;
}

bool CQVOXXMLDOMHelper::Load(const CString& path) {
    const IXmlDocumentPtr document = CreateXmlDocument();
    m_Document = AsHandle(document.GetInterfacePtr());
    bool loaded = false;
    return SUCCEEDED(document->Load(path.view(), &loaded)) && loaded;
}

bool CQVOXXMLDOMHelper::Load(const wchar_t* text) {
    const IXmlDocumentPtr document(m_Document);
    if (!document || text == nullptr) return false;
    // A text of more characters than the document may hold bytes is refused unread.
    const std::size_t length = std::wcslen(text);
    const std::string utf8 =
        length > kXmlMaxDocumentBytes ? std::string() : WideToUtf8(std::wstring_view(text, length));
    bool loaded = false;
    return SUCCEEDED(document->LoadXml(utf8, &loaded)) && loaded;
}

bool CQVOXXMLDOMHelper::Save(const CString& path) {
    const IXmlDocumentPtr document(m_Document);
    return document && SUCCEEDED(document->Save(path.view()));
}

bool CQVOXXMLDOMHelper::Save(wchar_t** text) {
    const IXmlDocumentPtr document(m_Document);
    if (!document || text == nullptr) return false;
    std::string utf8;
    if (FAILED(document->GetXml(&utf8))) return false;
    const std::wstring wide = Utf8ToWide(utf8);
    auto* copy = new (std::nothrow) wchar_t[wide.size() + 1];
    if (copy == nullptr) _com_issue_error(E_OUTOFMEMORY);
    wide.copy(copy, wide.size());
    copy[wide.size()] = L'\0';
    *text = copy;
    return true;
}

IUnknownPtr CQVOXXMLDOMHelper::GetElements(const CString& name) {
    const IXmlDocumentPtr document(m_Document);
    if (!document) return nullptr;
    IXmlNodeListPtr list;
    document->GetElementsByTagName(Utf8(name), &list);
    return AsHandle(list.GetInterfacePtr());
}

IUnknownPtr CQVOXXMLDOMHelper::GetElements(const CString& name, IUnknownPtr element) {
    const IXmlElementPtr parent(element);
    if (!parent) return nullptr;
    IXmlNodeListPtr list;
    parent->GetElementsByTagName(Utf8(name), &list);
    return AsHandle(list.GetInterfacePtr());
}

IUnknownPtr CQVOXXMLDOMHelper::GetElement(const CString& name) {
    return GetItem(GetElements(name), 0);
}

_variant_t CQVOXXMLDOMHelper::GetElementValue(IUnknownPtr node) {
    const IXmlNodePtr item(node);
    if (!item) return _variant_t();
    std::string text;
    ThrowIfFailed(item->GetText(&text));
    return TextVariant(text);
}

IUnknownPtr CQVOXXMLDOMHelper::GetAttribute(const CString& name, IUnknownPtr element) {
    const IXmlElementPtr owner(element);
    if (!owner) return nullptr;
    IXmlAttributePtr attribute;
    owner->GetAttributeNode(Utf8(name), &attribute);
    return AsHandle(attribute.GetInterfacePtr());
}

_variant_t CQVOXXMLDOMHelper::GetAttributeValueFromElement(const CString& name,
                                                           IUnknownPtr element) {
    const IXmlAttributePtr attribute(GetAttribute(name, element));
    if (!attribute) return _variant_t();
    std::string value;
    ThrowIfFailed(attribute->GetValue(&value));
    return TextVariant(value);
}

_variant_t CQVOXXMLDOMHelper::GetAttributeValue(const CString& elementName,
                                                const CString& attributeName) {
    return GetAttributeValueFromElement(attributeName, GetElement(elementName));
}

IUnknownPtr CQVOXXMLDOMHelper::AddElement(IUnknownPtr parent, const CString& name) {
    const IXmlDocumentPtr document(m_Document);
    if (!document) _com_issue_error(E_POINTER);
    IXmlElementPtr element;
    document->CreateElement(Utf8(name), &element);
    if (!element) return nullptr;
    const IXmlNodePtr target = parent ? IXmlNodePtr(parent) : IXmlNodePtr(document);
    if (!target) _com_issue_error(E_POINTER);
    if (FAILED(target->AppendChild(element))) return nullptr;
    return AsHandle(element.GetInterfacePtr());
}

void CQVOXXMLDOMHelper::AddAttribute(IUnknownPtr element, const CString& name,
                                     const CString& value) {
    const IXmlDocumentPtr document(m_Document);
    const IXmlElementPtr owner(element);
    if (!document || !owner) _com_issue_error(E_POINTER);
    const std::string utf8Name = Utf8(name);
    IXmlAttributePtr attribute;
    owner->GetAttributeNode(utf8Name, &attribute);
    if (!attribute) document->CreateAttribute(utf8Name, &attribute);
    if (!attribute) _com_issue_error(E_POINTER);
    ThrowIfFailed(attribute->PutValue(Utf8(value)));
    owner->SetAttributeNode(attribute);
}

void CQVOXXMLDOMHelper::SetElementText(IUnknownPtr element, const CString& text) {
    const IXmlElementPtr owner(element);
    if (!owner) _com_issue_error(E_POINTER);
    ThrowIfFailed(owner->PutText(Utf8(text)));
}

IUnknownPtr CQVOXXMLDOMHelper::GetChildNodes(IUnknownPtr node) {
    const IXmlNodePtr parent(node);
    if (!parent) return nullptr;
    IXmlNodeListPtr list;
    parent->GetChildNodes(&list);
    return AsHandle(list.GetInterfacePtr());
}

LONG CQVOXXMLDOMHelper::GetLength(IUnknownPtr list) {
    const IXmlNodeListPtr nodes(list);
    LONG length = 0;
    if (nodes) nodes->GetLength(&length);
    return length;
}

IUnknownPtr CQVOXXMLDOMHelper::GetItem(IUnknownPtr list, LONG index) {
    const IXmlNodeListPtr nodes(list);
    if (!nodes) return nullptr;
    IXmlNodePtr item;
    nodes->GetItem(index, &item);
    return AsHandle(item.GetInterfacePtr());
}

CString CQVOXXMLDOMHelper::GetNodeName(IUnknownPtr node) {
    const IXmlNodePtr item(node);
    if (!item) return CString();
    std::string name;
    if (FAILED(item->GetNodeName(&name))) return CString();
    return CString(Utf8ToCp1252(name));
}

ULONGLONG CQVOXXMLDOMHelper::GetRevision(IUnknownPtr node) {
    const IXmlNodePtr item(node);
    return item ? item->GetRevision() : 0;
}

ULONGLONG CQVOXXMLDOMHelper::GetLatestRevision() {
    return XmlLatestRevision();
}

}  // namespace qvox
