// Field attribute rules: the two tables, the combination test, and the text the user is given.
#include <gtest/gtest.h>

#include <string>

#include "TemplateTestSupport.h"
#include "qvox/platform/CodePage.h"
#include "qvox/templates/CQVOXCOTFieldRules.h"
#include "qvox/templates/CQVOXConditionalOrdersTemplate.h"

namespace qvox {
namespace {

using test::Field;
using test::TemplateFile;

// A template of neither kind: no table of its own.
class Bare final : public CQVOXConditionalOrdersTemplate {
  public:
    CQVOXConditionalOrdersTemplate* Clone() override { return nullptr; }
    bool Generate(COrderBarProperties&, IUnknownPtr, double) override { return true; }
};

TEST(FieldRules, TablesInTheirPublishedOrder) {
    CQVOXCOTOCOTemplate oco;
    CQVOXCOTOSOTemplate oso;
    Bare bare;
    ASSERT_EQ(oco.GetValidFieldAttributesCount(), 115);
    ASSERT_EQ(oso.GetValidFieldAttributesCount(), 117);
    EXPECT_EQ(bare.GetValidFieldAttributesCount(), 0);
    EXPECT_EQ(bare.GetValidFieldAttributes(), nullptr);
    EXPECT_FALSE(bare.IsAttributeCombinationValid("Type Exact = Value"));
    const auto* ocoRows = oco.GetValidFieldAttributes();
    const auto* osoRows = oso.GetValidFieldAttributes();
    EXPECT_EQ(osoRows[0].Key(), "Type Exact = Value");
    EXPECT_EQ(osoRows[2].Key(), "Action Exact = Key");
    EXPECT_EQ(osoRows[46].Key(), "Price Explicit  ");
    EXPECT_EQ(osoRows[116].Key(), "Advanced Exact = Key");
    EXPECT_EQ(ocoRows[2].Key(), "Action Exact = Position");
    EXPECT_EQ(ocoRows[114].Key(), "Advanced Exact = Key");
    // The "OCO" table is the "OSO" table without its two rows of the key order's action.
    int o = 0;
    for (int s = 0; s < 117; ++s) {
        if (s == 2 || s == 4) continue;
        EXPECT_EQ(ocoRows[o].Key(), osoRows[s].Key());
        EXPECT_TRUE(ocoRows[o].MinValue.empty() && ocoRows[o].MaxValue.empty());
        EXPECT_FALSE(ocoRows[o++].IsChildField);
    }
}

TEST(FieldRules, TheCombinationTest) {
    struct Case {
        const char* key;
        bool oco;
        bool oso;
    };
    const Case cases[] = {
        {"Type Exact = Value", true, true},
        {"Action Exact = Key", false, true},
        {"Action Inverse = Key", false, true},
        {"Action Inverse = Position", true, true},
        {"Price Explicit  ", true, true},
        {"Price Explicit = ", false, false},  // an Operation where the row has none
        {"Price Exact = Key", false, false},
        {"Price Percentage ~ Last", false, false},
        {"Limit Offset ~ Price.Stop", true, true},
        {"Stop Offset ~ Price.Stop", false, false},
        {"Quantity Inverse = Key", false, false},
        {"Type exact = Value", false, false},  // case counts
        {"Type Exact = Value ", false, false},
        {"", false, false},
    };
    CQVOXCOTOCOTemplate oco;
    CQVOXCOTOSOTemplate oso;
    for (const Case& c : cases) {
        EXPECT_EQ(oco.IsAttributeCombinationValid(c.key), c.oco) << c.key;
        EXPECT_EQ(oso.IsAttributeCombinationValid(c.key), c.oso) << c.key;
    }
    EXPECT_FALSE(oso.IsAttributeCombinationValid(nullptr));
}

TEST(FieldRules, TheMessageTheUserIsGiven) {
    const std::string body = "<Collection Name=\"C\"><Order Name=\"Target 1\">" +
                             Field("Action", "Exact", "=", "Key") +
                             Field("Price", "Exact", "=", "Key", "50") + "</Order></Collection>";
    CQVOXCOTOCOTemplate oco;
    ASSERT_TRUE(oco.Load(Utf8ToWide(TemplateFile("OCO", "Two Targets", body)).c_str()));
    CQVOXCOTOrder* order = oco.GetAt(0)->GetAt(0);
    CQVOXCOTField* action = order->GetAt("Action");
    CQVOXCOTField::SQVOXCOTFAttributes attributes;
    action->GetAttributes(attributes);
    ASSERT_FALSE(oco.IsAttributeCombinationValid(attributes.Key().c_str()));
    oco.AddAttributeCombinationError(attributes.Key(), order, action);
    const CString expected =
        "The OCO template selected is invalid.  The following errors occurred:\n\n"
        "Template = \"Two Targets\":\n\n"
        "[Order = \"Target 1\" : Field = \"Action\"] - Invalid attribute combination "
        "(Action Exact = Key)\n"
        "\n"
        "Valid attribute combinations:\n"
        "Action Exact = Value\n"
        "Action Exact = Position\n"
        "Action Inverse = Position\n";
    EXPECT_EQ(oco.GetErrorMessage(false), expected);
    EXPECT_EQ(oco.GetErrorMessage(false), expected);

    // Twenty-eight rows for Price.
    oco.GetErrorMessage(true);
    oco.AddAttributeCombinationError("Price Exact = Key", order, order->GetAt("Price"));
    const CString price = oco.GetErrorMessage(true);
    int lines = 0;
    for (int at = price.Find("\nPrice "); at >= 0; at = price.Find("\nPrice ", at + 1))
        ++lines;
    EXPECT_EQ(lines, 28);
    EXPECT_GE(price.Find("Valid attribute combinations:\nPrice Offset + Key\n"), 0);
    EXPECT_EQ(price.Right(45), "Price Percentage ~ Position\nPrice Explicit  \n");

    // Cleared: the heading alone. A verbose error hides the collected lines until cleared.
    const CString heading = oco.GetErrorMessage(false);
    EXPECT_EQ(heading,
              "The OCO template selected is invalid.  The following errors occurred:\n\n"
              "Template = \"Two Targets\":\n\n");
    oco.AddError("Invalid Value", "Market", order, action);
    oco.AddError("alone", order, nullptr);
    oco.AddVerboseError("first");
    oco.AddVerboseError("There is no position for the active symbol in the selected account.");
    EXPECT_EQ(oco.GetErrorMessage(true),
              "There is no position for the active symbol in the selected account.");
    oco.AddError("Invalid Value", "Market", order, action);
    oco.AddError("alone", order, nullptr);
    EXPECT_EQ(oco.GetErrorMessage(true),
              heading +
                  "[Order = \"Target 1\" : Field = \"Action\"] - Invalid Value (Market)\n"
                  "alone\n");
}

}  // namespace
}  // namespace qvox
