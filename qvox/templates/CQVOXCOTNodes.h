// The nodes of a conditional-order template's tree: the template's properties, its collections,
// the orders of a collection, the fields of an order and the child fields of a field.
//
// Each node holds the DOM node it stands for and a helper over the template's document. Texts
// are read from the document and kept until the document changes (its revision moves) or the
// node stands for another element, so that a generation, which reads every field of every order
// each time, doesn't go to the document for the same words again. The tree of children is built
// by each level at its first GetCount or GetAt (and again at each access while it has no
// children). A level owns its children: Clear and the destructor delete them, and every pointer
// GetAt handed out dies with them.
//
// Copies: a collection, an order or a field owns its children, so none of them can be copied or
// assigned (the template's Copy, operator= and Clone are the copies). Properties own nothing and
// copy freely: a copy reads the same node.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "qvox/platform/CString.h"
#include "qvox/platform/ComPtr.h"
#include "qvox/platform/Variant.h"
#include "qvox/templates/CQVOXXMLDOMHelper.h"

namespace qvox {

class CQVOXCOTCollection;
class CQVOXCOTField;
class CQVOXCOTOrder;

// The texts a node has read from its element: each slot filled at its first read, all of them
// forgotten when the element or its document is no longer the one they were read from.
class CQVOXCOTKeptTexts {
  public:
    // Whether the slots may be used for element: false when its revision is unknown (then
    // nothing is kept); otherwise true, with the slots emptied first when they were read from
    // another element or another revision.
    bool Follow(CQVOXXMLDOMHelper& document, const IUnknownPtr& element);

    std::optional<CString> m_Words[4];
    std::optional<_variant_t> m_Value;
    std::vector<std::pair<std::string, _variant_t>> m_Named;

  private:
    IUnknownPtr m_From;
    ULONGLONG m_Revision = 0;  // of m_From's content when the slots were filled; 0: none
    ULONGLONG m_Latest = 0;    // the latest revision of all at the last look
};

// The template's properties: the Property children of its Template element.
class CQVOXCOTProperties {
  public:
    // element is the Template element.
    CQVOXCOTProperties(const CQVOXXMLDOMHelper& document, IUnknownPtr element);
    virtual ~CQVOXCOTProperties();

    // The text of the first direct child of Template whose node name is exactly "Property" and
    // whose Name attribute equals name exactly. The empty variant when there is none, and for a
    // null name; the empty text for a property written without one (it still exists).
    _variant_t GetProperty(const char* name);

    CQVOXXMLDOMHelper m_Document;
    IUnknownPtr m_Element;

  private:
    CQVOXCOTKeptTexts m_Kept;
};

// A Collection element: one template order per child node.
class CQVOXCOTCollection {
  public:
    CQVOXCOTCollection(const CQVOXXMLDOMHelper& document, IUnknownPtr element);
    virtual ~CQVOXCOTCollection();
    CQVOXCOTCollection(const CQVOXCOTCollection&) = delete;
    CQVOXCOTCollection& operator=(const CQVOXCOTCollection&) = delete;

    // The Name and Type attributes; the empty text when missing.
    CString GetName();
    CString GetType();
    // Type is "Bracket": the orders of this collection are bracket orders.
    bool IsBracket();
    // The number of template orders: every child node of the element, whatever its kind.
    int GetCount();
    // The order at index, or null when index isn't below the count.
    CQVOXCOTOrder* GetAt(int index);
    // Deletes the orders (after building them, as every access does).
    void Clear();

    CQVOXXMLDOMHelper m_Document;
    IUnknownPtr m_Element;
    std::vector<std::unique_ptr<CQVOXCOTOrder>> m_Orders;

  protected:
    void LoadOnAccess();

  private:
    CQVOXCOTKeptTexts m_Kept;
};

// A field of an order, or a child field of a field (Price's Limit and Stop).
class CQVOXCOTField {
  public:
    // The attributes of one field as plain text: the record the validity tables are made of.
    struct SQVOXCOTFAttributes {
        SQVOXCOTFAttributes() = default;
        // The seven values in order; a null text leaves its string empty.
        SQVOXCOTFAttributes(const char* name, const char* usage, const char* operation,
                            const char* location, const char* minValue, const char* maxValue,
                            bool isChildField);

        // The combination key: Name, Usage, Operation and Location joined by one blank each,
        // an empty attribute leaving its place empty ("Price Explicit  ").
        std::string Key() const;

        std::string Name;
        std::string Usage;
        std::string Operation;
        std::string Location;
        std::string MinValue;
        std::string MaxValue;
        bool IsChildField = false;
    };

    CQVOXCOTField(const CQVOXXMLDOMHelper& document, IUnknownPtr element);
    virtual ~CQVOXCOTField();
    CQVOXCOTField(const CQVOXCOTField&) = delete;
    CQVOXCOTField& operator=(const CQVOXCOTField&) = delete;

    // The attributes as text; the empty text when missing.
    CString GetName();
    CString GetUsage();
    CString GetOperation();
    CString GetLocation();
    // The MinValue and MaxValue attributes; the empty variant when missing.
    _variant_t GetMinValue();
    _variant_t GetMaxValue();
    // The element's text, as a text variant (a field with child fields: their texts joined).
    _variant_t GetValue();
    // Writes value, turned into text, as the element's whole content (child fields included).
    // Raises _com_error when the value has no text form (an object, an array).
    void SetValue(const _variant_t& value);
    // Writes the Location attribute.
    void SetLocation(const CString& location);
    // Fills attributes with the four words, MinValue and MaxValue as text, and IsChildField.
    void GetAttributes(SQVOXCOTFAttributes& attributes);

    bool IsChildField() const { return m_IsChildField; }
    void SetChildField(bool isChildField) { m_IsChildField = isChildField; }

    // The child fields: child nodes with a non-empty Name, the first of each name.
    int GetCount();
    // The child field of that name, or null (also for a null name).
    CQVOXCOTField* GetAt(const char* name);
    void Clear();

    CQVOXXMLDOMHelper m_Document;
    std::map<std::string, std::unique_ptr<CQVOXCOTField>> m_Fields;
    IUnknownPtr m_Element;
    bool m_IsChildField = false;

  protected:
    void LoadOnAccess();

  private:
    CQVOXCOTKeptTexts m_Kept;
};

// A template order: one field per child node, by Name, the first of each name.
class CQVOXCOTOrder {
  public:
    CQVOXCOTOrder(const CQVOXXMLDOMHelper& document, IUnknownPtr element,
                  CQVOXCOTCollection* parent);
    virtual ~CQVOXCOTOrder();
    CQVOXCOTOrder(const CQVOXCOTOrder&) = delete;
    CQVOXCOTOrder& operator=(const CQVOXCOTOrder&) = delete;

    // The Name attribute; the empty text when missing.
    CString GetName();
    // The collection the order belongs to (not owned).
    CQVOXCOTCollection* GetParent() const { return m_Parent; }
    // The number of fields, a child node without a Name counting once under the empty name.
    int GetCount();
    // The field of that name, or null (also for a null name).
    CQVOXCOTField* GetAt(const char* name);
    void Clear();

    CQVOXXMLDOMHelper m_Document;
    CQVOXCOTCollection* m_Parent;
    IUnknownPtr m_Element;
    std::map<std::string, std::unique_ptr<CQVOXCOTField>> m_Fields;

  protected:
    void LoadOnAccess();

  private:
    CQVOXCOTKeptTexts m_Kept;
};

}  // namespace qvox
