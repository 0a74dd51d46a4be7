// The XML document object model behind CQVOXXMLDOMHelper: documents, elements, attributes, other
// nodes and node lists as counted objects, over libxml2. Only CQVOXXMLDOMHelper and the tests
// speak to these interfaces; everything else goes through the helper.
//
// Texts cross these interfaces as UTF-8. Names are compared exactly, byte for byte, with an
// element's or attribute's qualified name ("prefix:name" when it has a prefix).
//
// What a document accepts (Load, LoadXml): well-formed XML 1.0 with well-formed namespaces, and
// nothing else. Two root elements, duplicated attributes, a bare "&" or "<" in an attribute
// value, an undeclared prefix or an undeclared entity make it refuse the text. Nothing is ever
// fetched: no network, no external DTD, no external entity. Within that, a document is refused
// when loading it could cost more than its size warrants or would need what isn't fetched:
//   - more than kXmlMaxDocumentBytes of input (of the file, and of its text as UTF-8);
//   - elements nested deeper than kXmlMaxDepth;
//   - a start tag of more than kXmlMaxAttributes attributes;
//   - a DTD declaring a parameter entity, an external entity or an entity whose replacement
//     holds markup (only entities of plain text are taken), or a reference to an entity the
//     document doesn't declare;
//   - entities whose replacements would take the document's text beyond kXmlMaxExpandedUnits;
//   - a file in UCS-4 or EBCDIC (files in UTF-8, UTF-16 and the encodings an XML declaration
//     can name for ASCII-compatible bytes are read), or with bytes its encoding doesn't have.
// Internal entities are not substituted in the tree: a reference stays a node of its own, and
// reading text goes through its replacement text.
//
// White space: a text node that holds nothing but blanks (space, tab, line feed, carriage
// return) is not kept, so the blanks that indent a file never count as nodes; the text of an
// element is read with the blanks at its two ends removed.
//
// Ownership: every node object keeps the tree it belongs to alive, so a node outlives the
// document object that handed it out, and a document that loads new content leaves the nodes of
// its old content working (they then belong to the old content only). A node that is taken out
// of its tree (its parent's text replaced, its attribute replaced) while someone still holds it
// stays valid until the last holder lets go; nothing in the model is ever freed under a holder.
// No operation recurses with the depth of a tree.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "qvox/platform/ComBase.h"
#include "qvox/platform/ComPtr.h"
#include "qvox/platform/WinTypes.h"

namespace qvox {

// Input beyond this many bytes is refused before it is parsed.
inline constexpr std::size_t kXmlMaxDocumentBytes = 4u * 1024u * 1024u;
// Elements nested deeper than this are refused (the parser's own bound).
inline constexpr int kXmlMaxDepth = 256;
// A start tag with more attributes than this is refused unparsed: the parser compares every
// attribute of a tag with all the others, a cost that grows with the square of their number.
inline constexpr std::size_t kXmlMaxAttributes = 64;
// A bound on the text of a document with its entities replaced, counted in bytes of text plus
// one for every node; a document beyond it is refused.
inline constexpr std::size_t kXmlMaxExpandedUnits = 8u * 1024u * 1024u;

enum class XmlNodeType : int {
    Other = 0,
    Element = 1,
    Attribute = 2,
    Text = 3,
    CData = 4,
    EntityReference = 5,
    ProcessingInstruction = 7,
    Comment = 8,
    Document = 9,
    DocumentType = 10,
};

class IXmlNodeList;

// Status codes of the model beyond the common ones: every operation answers E_POINTER for a
// null out-parameter and E_OUTOFMEMORY when memory runs out, and leaves its out-parameter null
// (or empty) on any failure.

// Any node, the document included.
class IXmlNode : public IUnknown {
  public:
    using Base = IUnknown;
    static constexpr IID kIID{
        0x51CBB279, 0x22A2, 0x47DE, {0x86, 0x28, 0xAC, 0xC2, 0x93, 0xE4, 0x12, 0x4A}};

    virtual XmlNodeType GetNodeType() = 0;
    // An element's or attribute's qualified name, a processing instruction's target, an entity
    // reference's entity, the doctype's name; "#text", "#cdata-section", "#comment",
    // "#document" for the others.
    virtual HRESULT GetNodeName(std::string* name) = 0;
    // Element and document: the text of every text and CDATA node below, entity references
    // replaced, in document order, blanks at both ends removed. Attribute: its value. Other
    // nodes: their own content. The doctype: empty.
    virtual HRESULT GetText(std::string* text) = 0;
    // Element: every child goes, and text (when not empty) becomes its one child. Attribute:
    // its value. Text, CDATA, comment, processing instruction: their content. E_INVALIDARG for
    // text that XML 1.0 cannot hold (control characters other than tab, line feed and carriage
    // return; U+FFFE, U+FFFF; "--" in a comment; "?>" in a processing instruction); E_FAIL for
    // the document, the doctype and entity references, which have no text of their own to set.
    virtual HRESULT PutText(std::string_view text) = 0;
    // The children of an element or of the document, as they stand now; an empty list for any
    // other node.
    virtual HRESULT GetChildNodes(IXmlNodeList** children) = 0;
    // Moves child to the end of this node's children (taking it from where it stood).
    // E_INVALIDARG when child is not a node of this same document's content, is this node or
    // one of its ancestors, is a kind that cannot be a child here (an attribute, a document, a
    // doctype; anything but an element, comment or processing instruction below the document),
    // or is a second root element; E_FAIL when this node cannot have children.
    virtual HRESULT AppendChild(IXmlNode* child) = 0;
    // A number for the present state of the content this node belongs to: it changes with every
    // change of that content (a text, an attribute, a child), and no two states, of this content
    // or any other, share one. Never 0, so that 0 can stand for "unknown" elsewhere.
    virtual ULONGLONG GetRevision() = 0;

  protected:
    ~IXmlNode() = default;
};

// A fixed list of nodes.
class IXmlNodeList : public IUnknown {
  public:
    using Base = IUnknown;
    static constexpr IID kIID{
        0x7623B8E2, 0x1CFE, 0x413A, {0xB3, 0xB3, 0x19, 0x51, 0x1A, 0x7C, 0x4B, 0xCE}};
    virtual HRESULT GetLength(LONG* length) = 0;
    // The node at index (from 0), counted; S_FALSE with a null node outside the list.
    virtual HRESULT GetItem(LONG index, IXmlNode** node) = 0;

  protected:
    ~IXmlNodeList() = default;
};

class IXmlAttribute : public IXmlNode {
  public:
    using Base = IXmlNode;
    static constexpr IID kIID{
        0x6663F540, 0x97ED, 0x4565, {0x9C, 0x84, 0x5C, 0x42, 0xFC, 0x58, 0x9E, 0x6E}};
    // The value, entity references replaced (GetText).
    virtual HRESULT GetValue(std::string* value) = 0;
    // The value, taken literally (PutText).
    virtual HRESULT PutValue(std::string_view value) = 0;

  protected:
    ~IXmlAttribute() = default;
};

class IXmlElement : public IXmlNode {
  public:
    using Base = IXmlNode;
    static constexpr IID kIID{
        0x2637D039, 0x053D, 0x4B20, {0xAA, 0x9C, 0x6A, 0x48, 0x7A, 0xD5, 0x68, 0x76}};
    // Every element below this one (not itself) with that name, in document order. The list
    // is worked out when it is first read and does not follow later changes.
    virtual HRESULT GetElementsByTagName(std::string_view name, IXmlNodeList** list) = 0;
    // The attribute of that name, counted; S_FALSE with a null attribute when there is none.
    virtual HRESULT GetAttributeNode(std::string_view name, IXmlAttribute** attribute) = 0;
    // Attaches attribute to this element, in place of one of the same name, which leaves.
    // E_INVALIDARG when it belongs to another document's content or to another element.
    virtual HRESULT SetAttributeNode(IXmlAttribute* attribute) = 0;

  protected:
    ~IXmlElement() = default;
};

class IXmlDocument : public IXmlNode {
  public:
    using Base = IXmlNode;
    static constexpr IID kIID{
        0xBB213474, 0x15B4, 0x4827, {0x93, 0xDC, 0x0F, 0x61, 0x66, 0x4C, 0x37, 0x9D}};
    // Replaces the content by the file at path, its encoding told by its byte order mark or
    // its declaration (UTF-8 when neither). *loaded says whether the file was read and
    // accepted; when it was not, the document is left empty. The status reports only a failure
    // of the model itself (memory).
    virtual HRESULT Load(std::string_view path, bool* loaded) = 0;
    // The same from UTF-8 text in memory; an encoding the text declares is not looked at.
    virtual HRESULT LoadXml(std::string_view text, bool* loaded) = 0;
    // Writes the document to path, UTF-8 with a declaration, indented: the whole file or, on
    // failure (E_FAIL), nothing, the file at path left as it was.
    virtual HRESULT Save(std::string_view path) = 0;
    // The document as UTF-8 text without a declaration, indented; empty for an empty document.
    virtual HRESULT GetXml(std::string* text) = 0;
    // As IXmlElement's, over the whole document.
    virtual HRESULT GetElementsByTagName(std::string_view name, IXmlNodeList** list) = 0;
    // A new element or attribute of this document, belonging to no parent yet. E_INVALIDARG
    // for a name that is not an XML name without a colon.
    virtual HRESULT CreateElement(std::string_view name, IXmlElement** element) = 0;
    virtual HRESULT CreateAttribute(std::string_view name, IXmlAttribute** attribute) = 0;
    // The root element, counted; S_FALSE with null when there is none.
    virtual HRESULT GetDocumentElement(IXmlElement** element) = 0;

  protected:
    ~IXmlDocument() = default;
};

using IXmlNodePtr = _com_ptr_t<IXmlNode>;
using IXmlNodeListPtr = _com_ptr_t<IXmlNodeList>;
using IXmlAttributePtr = _com_ptr_t<IXmlAttribute>;
using IXmlElementPtr = _com_ptr_t<IXmlElement>;
using IXmlDocumentPtr = _com_ptr_t<IXmlDocument>;

// A new empty document, counted. Raises _com_error(E_OUTOFMEMORY) when memory runs out.
IXmlDocumentPtr CreateXmlDocument();

// The last revision (IXmlNode::GetRevision) that any content has taken: while it stays, no
// content anywhere has changed.
ULONGLONG XmlLatestRevision();

}  // namespace qvox
