// CQVOXConditionalOrdersTemplate: a conditional-order template, an XML file that describes a
// group of orders relative to one order the user holds (the key order): one-cancels-other
// siblings (kind "OCO", CQVOXCOTOCOTemplate) or one-sends-other children (kind "OSO",
// CQVOXCOTOSOTemplate).
//
// The file:
//
//     <QVXML>
//       <Template ID="7" Name="Two Targets" Description="..." Type="OSO" Action="..." Version="3">
//         <Property Name="BRQ">100</Property>
//         <Collection Name="First" Type="Bracket">
//           <Order Name="Target 1">
//             <Field Name="Type" Usage="Exact" Operation="=" Location="Value">Limit</Field>
//             <Field Name="Price" Usage="Offset" Operation="~" Location="Key">50</Field>
//             ...
//           </Order>
//         </Collection>
//       </Template>
//     </QVXML>
//
// Template is the first element of that name anywhere in the document; Property elements are
// its direct children; Collection elements are found at any depth, in document order. Any child
// node of a Collection is an order, any child node of an order a field, whatever its tag; a
// field's child nodes with a Name are its child fields (Price's Limit and Stop). Names, words
// and values compare exactly, case included; a missing attribute or text reads as empty.
//
// The template owns its tree of nodes (CQVOXCOTNodes.h), built level by level on first access
// and deleted by Clear, Load and the destructor. Texts are read from the document on every
// call.
//
// Errors of a generation are collected as text and given to the user by GetErrorMessage.
//
// Generation (Generate, UpdateFields, EndGenerate) expands one order into the template's group
// of orders; its members are defined in CQVOXConditionalOrdersTemplateGenerate.cpp.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "qvox/platform/CFileStatus.h"
#include "qvox/platform/CString.h"
#include "qvox/platform/ComPtr.h"
#include "qvox/platform/Variant.h"
#include "qvox/platform/WinTypes.h"
#include "qvox/templates/CQVOXCOTNodes.h"
#include "qvox/templates/CQVOXXMLDOMHelper.h"

namespace qvox {

class COrderBarProperties;
struct SQVOXTBRQCollection;

class CQVOXConditionalOrdersTemplate {
  public:
    using SQVOXCOTFAttributes = CQVOXCOTField::SQVOXCOTFAttributes;

    // One generated order in bracket rounding.
    struct SQVOXTBRQCalcHelper {
        COrderBarProperties* m_Order = nullptr;  // not owned
        double m_Quantity = 0.0;                 // its quantity before rounding
    };

    virtual ~CQVOXConditionalOrdersTemplate();

    // ---- Generation (defined with the generation engine) ----

    // A new template of the same class holding a deep copy of this one (default construction,
    // then operator=), owned by the caller; null when memory runs out.
    virtual CQVOXConditionalOrdersTemplate* Clone() = 0;
    // Applies the template to order, the key order: true when every template order became an
    // order, linked to order as the kind demands. position is the platform's position object
    // (may be null), last the symbol's last trade price. On false, GetErrorMessage tells why.
    // The base class's body only prepares a generation (resets the error texts and the
    // bracket rounding state) and always answers true; the derived classes call it first.
    virtual bool Generate(COrderBarProperties& order, IUnknownPtr position, double last) = 0;
    // Fills target, a copy of key, from one template order: its seven fields in the order
    // Type, Action, Quantity, Price, Duration, Route, Advanced. absolutePrices: prices as
    // numbers ("OCO"), or as offsets for the server to resolve ("OSO").
    virtual bool UpdateFields(CQVOXCOTOrder* node, COrderBarProperties& target,
                              COrderBarProperties& key, IUnknownPtr position, double last,
                              bool absolutePrices);

    // ---- Field attribute rules ----

    // Whether key is the combination key of a row of this class's table, compared exactly.
    // Always false in the base class, which has no table.
    virtual bool IsAttributeCombinationValid(const char* key);
    // This class's table of legal combinations, in its published order; null in the base
    // class.
    virtual const SQVOXCOTFAttributes* GetValidFieldAttributes();
    // Its rows: 115 for "OCO", 117 for "OSO", 0 in the base class.
    virtual int GetValidFieldAttributesCount();

    // Appends a line to the error text: "[Order = "<order>" : Field = "<field>"] - <text>"
    // when both are given, the text alone otherwise.
    void AddError(const CString& text, CQVOXCOTOrder* order = nullptr,
                  CQVOXCOTField* field = nullptr);
    // The same with "<text> (<detail>)".
    void AddError(const CString& text, const CString& detail, CQVOXCOTOrder* order,
                  CQVOXCOTField* field);
    // "Invalid attribute combination (<key>)" for the field, a blank line, "Valid attribute
    // combinations:", then the key of every row of the table for the field's Name.
    void AddAttributeCombinationError(const CString& key, CQVOXCOTOrder* order,
                                      CQVOXCOTField* field);
    // Replaces the verbose error, which then hides the collected ones.
    void AddVerboseError(const CString& text);
    // The text for the user: the verbose error alone when there is one, otherwise a heading
    // naming the kind and the template followed by the collected lines. With clear, every
    // error text is emptied afterwards.
    CString GetErrorMessage(bool clear);

    // ---- The file ----

    // Builds the skeleton in the held document: QVXML, Template in it, then the attributes
    // Name, Description, Action, Type (this class's kind) and Version "1". Null texts count as
    // empty. Raises _com_error(E_POINTER) on a document that already has a root element.
    void Create(const char* name, const char* description, const char* action);
    // Clears the template, then loads the file at path (m_Path when null; a given path becomes
    // m_Path). True when the file is well-formed XML whose Template has this class's Type; the
    // properties then exist. In every case m_FileStatus is the file's status afterwards (zero
    // when there is no file).
    bool Load(const char* path);
    bool Load(std::nullptr_t) { return Load(static_cast<const char*>(nullptr)); }
    // The same from text in memory; m_Path stays, m_FileStatus stays zero.
    bool Load(const wchar_t* xmlText);
    // Writes the document to path (m_Path when null; a given path becomes m_Path), whole or not
    // at all, then takes the file's status. The result is that of the write.
    bool Save(const char* path);
    bool Save(std::nullptr_t) { return Save(static_cast<const char*>(nullptr)); }
    // The document's text as a new wide string the caller frees with delete[].
    bool Save(wchar_t** xmlText);
    // Deletes the collections and the properties and zeroes m_FileStatus; the document stays.
    void Clear();

    // Attributes of the Template element; the empty text when missing.
    CString GetID();
    CString GetName();
    CString GetType();
    CString GetVersion();
    CString GetDescription();
    // The Action attribute, or when it is empty the Property named "Action".
    CString GetAction();
    // Sets the Version attribute when the Template has one; otherwise nothing happens.
    void SetVersion(const CString& version);

    // The properties; null until a file has loaded.
    CQVOXCOTProperties* GetProperties() { return m_Properties.get(); }
    // The collections.
    int GetCount();
    // The collection at index; null when index isn't below the count.
    CQVOXCOTCollection* GetAt(int index);
    // Some collection has Type "Bracket".
    bool ContainsBracketOrders();
    // Some order's Price field has child fields.
    bool IsMultiPriceFieldTemplate();
    // The file at m_Path is gone or unreadable, or its modification time differs from the one
    // taken at the last Load or Save.
    bool HasFileChanged();

    // A deep copy through the text: source's document as text, loaded into a document of this
    // template's own (as Load(text) does, type test included); then m_TemplateType, m_Path and
    // m_FileStatus are copied. When source gives no text nothing changes. Error texts and
    // rounding state are not copied.
    void Copy(const CQVOXConditionalOrdersTemplate& source);
    // Copy, except for self-assignment, which does nothing.
    CQVOXConditionalOrdersTemplate& operator=(const CQVOXConditionalOrdersTemplate& source);

    // ---- State ----

    CQVOXXMLDOMHelper m_Document;
    CString m_TemplateType;    // "OCO" or "OSO", set by the derived class
    CString m_Path;            // the file of the last Load or Save
    CFileStatus m_FileStatus;  // the file's status at that moment; zero when there is none
    CString m_ErrorText;       // collected error lines
    CString m_VerboseError;    // an error that hides the collected ones
    bool m_HasVerboseError = false;
    std::unique_ptr<CQVOXCOTProperties> m_Properties;
    std::vector<std::unique_ptr<CQVOXCOTCollection>> m_Collections;
    // Bracket rounding of the generation in progress.
    std::vector<SQVOXTBRQCollection> m_BRQGroups;
    bool m_BRQEnabled = false;
    bool m_BRQTotalKnown = false;
    LONG m_BRQTotal = 0;

  protected:
    CQVOXConditionalOrdersTemplate();
    // A deep copy of source (Copy), of source's kind.
    CQVOXConditionalOrdersTemplate(const CQVOXConditionalOrdersTemplate& source);

    // Rounds the quantities of the bracket groups at the end of a generation; true when there
    // was nothing to round or the rounding succeeded.
    virtual bool EndGenerate(COrderBarProperties& order, IUnknownPtr position, double last);

    // Builds m_Collections from every Collection element of the document when it is empty.
    void LoadCollectionsOnAccess();

  private:
    // m_FileStatus from the file at m_Path; zero when there is none.
    void TakeFileStatus();
};

// One bracket collection in rounding.
struct SQVOXTBRQCollection {
    // Orders generated from the collection, from the anchor on.
    std::vector<CQVOXConditionalOrdersTemplate::SQVOXTBRQCalcHelper> m_Items;
    // The first template order of the collection whose generated type is BRQT.
    CQVOXCOTOrder* m_KeyOrder = nullptr;
    CQVOXCOTCollection* m_Collection = nullptr;
};

// Kind "OCO": the generated orders join the key order's one-cancels-all group.
class CQVOXCOTOCOTemplate : public CQVOXConditionalOrdersTemplate {
  public:
    CQVOXCOTOCOTemplate();
    CQVOXCOTOCOTemplate(const CQVOXCOTOCOTemplate& source) = default;
    CQVOXCOTOCOTemplate& operator=(const CQVOXCOTOCOTemplate& source) = default;

    CQVOXConditionalOrdersTemplate* Clone() override;
    bool Generate(COrderBarProperties& order, IUnknownPtr position, double last) override;
    const SQVOXCOTFAttributes* GetValidFieldAttributes() override;
    int GetValidFieldAttributesCount() override;
};

// Kind "OSO": the generated orders become children the key order sends when it fills.
class CQVOXCOTOSOTemplate : public CQVOXConditionalOrdersTemplate {
  public:
    CQVOXCOTOSOTemplate();
    CQVOXCOTOSOTemplate(const CQVOXCOTOSOTemplate& source) = default;
    CQVOXCOTOSOTemplate& operator=(const CQVOXCOTOSOTemplate& source) = default;

    CQVOXConditionalOrdersTemplate* Clone() override;
    bool Generate(COrderBarProperties& order, IUnknownPtr position, double last) override;
    const SQVOXCOTFAttributes* GetValidFieldAttributes() override;
    int GetValidFieldAttributesCount() override;
};

}  // namespace qvox
