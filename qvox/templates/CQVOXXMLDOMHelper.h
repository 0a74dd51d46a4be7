// CQVOXXMLDOMHelper: the one door to XML. It holds a counted reference to a document (see
// XmlDom.h for what a document accepts and keeps) and offers the few operations the template
// classes need, by element and attribute name: no XPath, no namespaces.
//
// Nodes, node lists and the document pass through as opaque counted handles (IUnknownPtr),
// null meaning nothing. Each operation asks a handle for the interface it needs; a handle that
// doesn't offer it counts as null. Values come back as _variant_t: the empty variant when there
// is nothing (a null or unsuitable handle, a missing attribute), otherwise a text (VT_BSTR),
// which may be the empty text. Names and texts given as CString are single-byte
// (Windows-1252); values come back in full Unicode.
//
// Failures. Reads give empty results for what isn't there. GetElements, GetAttribute,
// AddElement (and the lookup and attachment inside AddAttribute) don't look at the model's
// status: a failure leaves their handle null. AddElement, AddAttribute and SetElementText raise
// _com_error(E_POINTER) when the document or the element isn't there; any other failing step
// raises _com_error with the model's status: E_OUTOFMEMORY when memory runs out, E_INVALIDARG
// for a text that XML cannot hold (control characters). Load and Save answer false for a file
// or text that cannot be read, parsed or written, and never raise for that.
//
// Several helpers may hold one document; it lives as long as any of them or any of its nodes.
#pragma once

#include <cstddef>

#include "qvox/platform/CString.h"
#include "qvox/platform/ComPtr.h"
#include "qvox/platform/Variant.h"
#include "qvox/platform/WinTypes.h"

namespace qvox {

class CQVOXXMLDOMHelper {
  public:
    // Holds document; with a null one, a new empty document.
    explicit CQVOXXMLDOMHelper(IUnknownPtr document = nullptr);
    // Copies and assignments hold the same document; nothing is copied.
    CQVOXXMLDOMHelper(const CQVOXXMLDOMHelper& other) = default;
    CQVOXXMLDOMHelper& operator=(const CQVOXXMLDOMHelper& other) = default;
    CQVOXXMLDOMHelper& operator=(IUnknownPtr document);
    virtual ~CQVOXXMLDOMHelper();

    IUnknownPtr GetDocument() const { return m_Document; }

    // Drops the held document, holds a new one and loads the file at path into it. True only
    // when the file was read and is well-formed XML; otherwise the new document is empty.
    bool Load(const CString& path);
    // Parses text into the held document, for every holder of it. True only when it is
    // well-formed XML; otherwise the document is left empty. A null text, or a document that
    // isn't there, gives false.
    bool Load(const wchar_t* text);
    // Writes the document to path (UTF-8), whole or not at all; false when it can't.
    bool Save(const CString& path);
    // The document's XML as a new wide string in *text, which the caller frees with delete[];
    // the empty string for an empty document. False (and *text untouched) when there is no
    // document or it can't be written.
    bool Save(wchar_t** text);

    // All elements of that name in the document, in document order: a node list handle.
    IUnknownPtr GetElements(const CString& name);
    // All descendants of that name under element.
    IUnknownPtr GetElements(const CString& name, IUnknownPtr element);
    // The first of GetElements(name), or null.
    IUnknownPtr GetElement(const CString& name);
    // The text of node and its descendants (see IXmlNode::GetText).
    _variant_t GetElementValue(IUnknownPtr node);
    // The attribute node of that name on element, or null.
    IUnknownPtr GetAttribute(const CString& name, IUnknownPtr element);
    // The value of the attribute of that name on element.
    _variant_t GetAttributeValueFromElement(const CString& name, IUnknownPtr element);
    // The value of the attribute on the first element of that name.
    _variant_t GetAttributeValue(const CString& elementName, const CString& attributeName);
    // A new element of that name appended to parent (the document itself when parent is
    // null): its handle, or null when it can't be made or appended.
    IUnknownPtr AddElement(IUnknownPtr parent, const CString& name);
    // Sets the attribute of that name on element to value, making it when it is missing; an
    // existing attribute is overwritten in place.
    void AddAttribute(IUnknownPtr element, const CString& name, const CString& value);
    // Replaces all content of element by text.
    void SetElementText(IUnknownPtr element, const CString& text);

    // The walks the template classes make over children.
    // The children of node (a node list handle), or null.
    IUnknownPtr GetChildNodes(IUnknownPtr node);
    // The length of a node list; 0 for null.
    LONG GetLength(IUnknownPtr list);
    // The item at index of a node list, or null.
    IUnknownPtr GetItem(IUnknownPtr list, LONG index);
    // The node's name (an element's tag name); empty for null.
    CString GetNodeName(IUnknownPtr node);
    // A number for the present state of the content node belongs to, which changes with every
    // change of it: texts read from node stand while it stays the same. 0 for null.
    ULONGLONG GetRevision(IUnknownPtr node);
    // The last revision any document's content has taken: while it stays, nothing has changed.
    static ULONGLONG GetLatestRevision();

    IUnknownPtr m_Document;
};

}  // namespace qvox
