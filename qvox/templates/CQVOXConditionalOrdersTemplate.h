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
// of orders. Its members are defined by concern: the frame in
// CQVOXConditionalOrdersTemplateGenerate.cpp, the plain field updates in ...Fields.cpp, prices in
// ...Prices.cpp, quantities and bracket rounding in ...Quantities.cpp.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "qvox/platform/CFileStatus.h"
#include "qvox/platform/COleDateTime.h"
#include "qvox/platform/CString.h"
#include "qvox/platform/CTLProperties.h"
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

    // ---- Generation ----

    // Results of DoAllBracketOrdersTotal.
    enum : LONG {
        BracketTotalOk = 0,                    // all brackets agree and add up
        BracketTotalUsageMismatch = 0x80,      // a Quantity has another Usage than the first
        BracketTotalLocationMismatch = 0x200,  // a Quantity has another Location than the first
        BracketTotalValueMismatch = 0x400,     // the total isn't the one wanted
    };

    // A new template of the same class holding a deep copy of this one (default construction,
    // then operator=), owned by the caller; null when memory runs out.
    virtual CQVOXConditionalOrdersTemplate* Clone() = 0;
    // Applies the template to order, the key order: true when every template order became an
    // order, linked to order as the kind demands ("OCO": order itself is the first target and
    // the others join its one-cancels-all chain; "OSO": new orders in one chain that order sends
    // when it fills). position is the platform's position object (may be null), last the
    // symbol's last trade price. Every field reads a private copy of order, never order itself.
    // On false, GetErrorMessage tells why: an "OSO" order is then unchanged, an "OCO" order
    // keeps what was done before the failing template order. Orders that the chain refuses (a
    // bracket order behind a plain one) and orders of a failed generation are deleted before
    // Generate returns; nothing of a generation stays in the template but its error texts.
    // The base class's body only prepares a generation (resets the error texts and the
    // bracket rounding state) and always answers true; the derived classes call it first.
    // Raises _com_error when a platform object (the position, the preferences) fails a call.
    virtual bool Generate(COrderBarProperties& order, IUnknownPtr position, double last) = 0;
    // Fills target, a copy of key, from one template order: its seven fields in the order
    // Type, Action, Quantity, Price, Duration, Route, Advanced, stopping at the first that
    // fails. absolutePrices: prices as numbers ("OCO"), or as offsets for the server to resolve
    // ("OSO"). Whatever the result, a trailing target loses its auto prices, the stop trigger
    // is set from the preferences, and with bracket rounding the target is registered for it.
    virtual bool UpdateFields(CQVOXCOTOrder* node, COrderBarProperties& target,
                              COrderBarProperties& key, IUnknownPtr position, double last,
                              bool absolutePrices);

    // The five updates without arithmetic. Each gives false with no text when node has no
    // field of its name, and with the texts of the rules when the field is illegal or its value
    // unusable; a failed update leaves target as it was.
    // "Type": Exact = Value only, the value "Limit", "Stop Market" or "Stop Limit".
    bool UpdateFieldType(CQVOXCOTOrder* node, COrderBarProperties& target, COrderBarProperties& key,
                         IUnknownPtr position, double last);
    // "Action": the side from the key, the position or an action word, or its inverse.
    bool UpdateFieldAction(CQVOXCOTOrder* node, COrderBarProperties& target,
                           COrderBarProperties& key, IUnknownPtr position, double last);
    // "Route", "Duration", "Advanced": Key keeps the copy's own; Value sets the field's text.
    bool UpdateFieldRoute(CQVOXCOTOrder* node, COrderBarProperties& target,
                          COrderBarProperties& key, IUnknownPtr position, double last);
    bool UpdateFieldDuration(CQVOXCOTOrder* node, COrderBarProperties& target,
                             COrderBarProperties& key, IUnknownPtr position, double last);
    bool UpdateFieldAdvanced(CQVOXCOTOrder* node, COrderBarProperties& target,
                             COrderBarProperties& key, IUnknownPtr position, double last);
    // "Quantity": target's lots from the key, the position or the value; quantity gets the
    // result before truncation to whole lots. last isn't used.
    bool UpdateFieldQuantity(CQVOXCOTOrder* node, COrderBarProperties& target,
                             COrderBarProperties& key, IUnknownPtr position, double last,
                             double& quantity);
    // "Price" of node, alone or through its child fields "Limit" and "Stop" (a field that
    // refers to the other is computed after it; two that don't, Stop first).
    bool UpdateFieldPrice(CQVOXCOTOrder* node, COrderBarProperties& target,
                          COrderBarProperties& key, IUnknownPtr position, double last,
                          bool absolutePrices);
    // One price field: its base by Location, the amount by Usage, the side by Operation.
    bool UpdateFieldPrice(CQVOXCOTField* field, CQVOXCOTOrder* node, COrderBarProperties& target,
                          COrderBarProperties& key, IUnknownPtr position, double last,
                          bool absolutePrices);
    // Writes amount (negated for "-"; the empty operation counts as "+") into the limit or the
    // stop price: as amount + base on the grid, or as an auto-price offset in moves. False, with
    // nothing written, for another operation.
    bool UpdateFieldPriceOperation(CQVOXCOTField* field, const char* operation, double amount,
                                   double base, COrderBarProperties& target,
                                   COrderBarProperties& key, bool absolutePrices);

    // Inspects the Quantity fields of all bracket collections: all of one Usage and one
    // Location, and the first orders of the brackets adding up to total. On BracketTotalOk,
    // usage and location get the words found; sum (may be null) gets the sum in every case.
    LONG DoAllBracketOrdersTotal(LONG total, CString& usage, CString& location, LONG* sum);

    // An action word of a template ("Buy To Open", "Buy To Close", "Sell To Open", "Sell To
    // Close", and with allowEntryExit "Entry" and "Exit", whose side follows the position's
    // sign) to a side code of category; a word matches every literal it begins. False, side
    // untouched, for any other word.
    static bool ConvertValueToAction(const char* value, LONG category, LONG positionQuantity,
                                     SHORT& side, bool allowEntryExit);
    // The same four literals to the word shown for category. False, word untouched, otherwise.
    static bool ConvertValueToAction(const char* value, LONG category, CString& word);
    // "<duration>" or, with a valid date, "<duration>:<mm/dd/yyyy>".
    static void ConvertDurationAndDateTimeToString(CString& text, const CString& duration,
                                                   const COleDateTime& date);
    // The inverse: the word before the first ":", the date after it (invalid and zero when it
    // doesn't read); without a ":" the whole text and the present moment.
    static void ConvertStringToDurationAndDateTime(const CString& text, CString& duration,
                                                   COleDateTime& date);
    // price snapped down to a whole minimum move of order's grid (m_PriceScale, m_MinMove),
    // after rounding half up at one digit below the grid; moves (may be null) gets the number
    // of moves. A price not above 0, a grid of no move, or a price too large for the grid in
    // 32-bit steps comes back unchanged, moves untouched.
    static double GetClosestPrice(double price, const COrderBarProperties& order, int* moves);
    // Moves to price units (toMoves false) or back, one move being a piece of scale times
    // minMove; options (categories 3 and 8) move by single pieces.
    static double ApplyMinMoveConversion(double value, bool toMoves, int category, double minMove,
                                         char scale);
    // The stop and if-touched trigger words of a finished order from the user's preferences of
    // its category; an order that is neither loses the mark of the field.
    static void UpdateStopTrigger(COrderBarProperties& order);
    // The user's order preferences of category, through the platform's root object; empty
    // without a root object or a preferences service.
    static CTLProperties GetOXPrefs(LONG category);
    // m_Quantity of shares to lots of lotSize (at least 2), truncating.
    static void ConvertQuantityToLots(COrderBarProperties& order, LONG lotSize);
    // m_Quantity of lots to shares, for a quantity counted in shares ('#').
    static void ConvertLotsToQuantity(COrderBarProperties& order, LONG lotSize);

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

    // Rounds the quantities of the bracket groups at the end of a generation to whole lots of
    // "BRQ", carrying the remainder from bracket to bracket, so that with a known total the
    // brackets add up to it. True when there was nothing to round (no groups, or a "BRQ" that
    // isn't a positive whole number) or the rounding succeeded; false, with no lots changed,
    // when some order of a bracket isn't a percentage. Its arguments aren't used.
    virtual bool EndGenerate(COrderBarProperties& order, IUnknownPtr position, double last);
    // Registers target, made from node, for bracket rounding; the group of node's bracket
    // collection exists from its first order of the type "BRQT" on.
    void AddBRQItem(CQVOXCOTOrder* node, COrderBarProperties& target, double quantity);
    // lots on every order of items.
    void UpdateQuantityInProperties(LONG lots, std::vector<SQVOXTBRQCalcHelper>& items);
    // Whether field writes the limit price of order (a "Limit" order, or the child "Limit"),
    // and the stop price (a "Stop Market" order, or the child "Stop").
    bool AllowLimitPriceModification(CQVOXCOTField* field, COrderBarProperties& order);
    bool AllowStopPriceModification(CQVOXCOTField* field, COrderBarProperties& order);

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
