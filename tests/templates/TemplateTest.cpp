// Template files and their tree: reading the published example, odd but legal shapes, creating
// and saving, deep copies, and noticing a changed file.
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>

#include "TemplateTestSupport.h"
#include "qvox/platform/CodePage.h"
#include "qvox/templates/CQVOXCOTFieldRules.h"
#include "qvox/templates/CQVOXConditionalOrdersTemplate.h"

namespace qvox {
namespace {

using test::Field;
using test::TempFolder;
using test::TemplateFile;

std::string Order(const std::string& name, const std::string& type, const std::string& price) {
    return "<Order Name=\"" + name + "\">" + Field("Type", "Exact", "=", "Value", type) +
           Field("Action", "Inverse", "=", "Key") +
           Field("Quantity", "Percentage", "=", "Key", "50") + price +
           Field("Duration", "Exact", "=", "Key") + Field("Route", "Exact", "=", "Key") +
           Field("Advanced", "Exact", "=", "Key") + "</Order>";
}

// Two brackets, half the quantity each, rounded to 100.
const std::string kTwoTargets =
    "<QVXML><Template ID=\"7\" Name=\"Two Targets\" Description=\"Two brackets, half each\" "
    "Type=\"OSO\" Action=\"Buy To Open\" Version=\"3\">"
    "<Property Name=\"BRQ\">100</Property><Property Name=\"BRQT\">Limit</Property>"
    "<Collection Name=\"First\" Type=\"Bracket\">" +
    Order("Target 1", "Limit", Field("Price", "Offset", "~", "Key", "50")) +
    Order("Stop 1", "Stop Market", Field("Price", "Offset", "~", "Key", "20")) +
    "</Collection><Collection Name=\"Second\" Type=\"Bracket\">" +
    Order("Target 2", "Limit", Field("Price", "Offset", "~", "Key", "100")) +
    Order("Stop 2", "Stop Market", Field("Price", "Offset", "~", "Key", "20")) +
    "</Collection></Template></QVXML>";

std::wstring Wide(const std::string& text) {
    return Utf8ToWide(text);
}

TEST(Template, ReadsThePublishedExampleAsATree) {
    TempFolder folder;
    const std::string path = folder.Write("two.xml", kTwoTargets);
    CQVOXCOTOSOTemplate oso;
    ASSERT_TRUE(oso.Load(path.c_str()));
    EXPECT_EQ(oso.GetID(), "7");
    EXPECT_EQ(oso.GetName(), "Two Targets");
    EXPECT_EQ(oso.GetDescription(), "Two brackets, half each");
    EXPECT_EQ(oso.GetType(), "OSO");
    EXPECT_EQ(oso.GetAction(), "Buy To Open");
    EXPECT_EQ(oso.GetVersion(), "3");
    ASSERT_NE(oso.GetProperties(), nullptr);
    EXPECT_EQ(oso.GetProperties()->GetProperty("BRQ").TextOrEmpty(), "100");
    EXPECT_EQ(oso.GetProperties()->GetProperty("BRQT").TextOrEmpty(), "Limit");
    EXPECT_TRUE(oso.GetProperties()->GetProperty("brq").IsEmpty());
    EXPECT_TRUE(oso.GetProperties()->GetProperty(nullptr).IsEmpty());
    EXPECT_TRUE(oso.ContainsBracketOrders());
    EXPECT_FALSE(oso.IsMultiPriceFieldTemplate());
    ASSERT_EQ(oso.GetCount(), 2);
    EXPECT_EQ(oso.GetAt(2), nullptr);
    EXPECT_EQ(oso.GetAt(-1), nullptr);
    CQVOXCOTCollection* second = oso.GetAt(1);
    EXPECT_EQ(second->GetName(), "Second");
    EXPECT_TRUE(second->IsBracket());
    ASSERT_EQ(second->GetCount(), 2);
    CQVOXCOTOrder* target = second->GetAt(0);
    EXPECT_EQ(target->GetName(), "Target 2");
    EXPECT_EQ(target->GetParent(), second);
    EXPECT_EQ(target->GetCount(), 7);
    EXPECT_EQ(target->GetAt(nullptr), nullptr);
    EXPECT_EQ(target->GetAt("price"), nullptr);
    CQVOXCOTField* price = target->GetAt("Price");
    ASSERT_NE(price, nullptr);
    CQVOXCOTField::SQVOXCOTFAttributes attributes;
    price->GetAttributes(attributes);
    EXPECT_EQ(attributes.Key(), "Price Offset ~ Key");
    EXPECT_FALSE(attributes.IsChildField);
    EXPECT_EQ(price->GetValue().TextOrEmpty(), "100");
    EXPECT_TRUE(price->GetMinValue().IsEmpty());
    EXPECT_EQ(price->GetCount(), 0);
    EXPECT_EQ(target->GetAt("Action")->GetValue().TextOrEmpty(), "");

    // The same file in a template of the other kind: refused, yet the path and the file's
    // status are taken.
    CQVOXCOTOCOTemplate oco;
    EXPECT_FALSE(oco.Load(path.c_str()));
    EXPECT_EQ(oco.m_Path, path);
    EXPECT_NE(oco.m_FileStatus.m_mtime, 0);
    EXPECT_EQ(oco.GetProperties(), nullptr);
    EXPECT_FALSE(oco.Load((folder / "missing.xml").c_str()));
    EXPECT_EQ(oco.m_FileStatus, CFileStatus());
}

TEST(Template, OddButLegalShapes) {
    const std::string stopLimit = "<Field Name=\"Price\" Usage=\"Explicit\">" +
                                  Field("Stop", "Offset", "~", "Key", "20") +
                                  Field("Limit", "Offset", "-", "Price.Stop", "5") + "</Field>";
    const std::string body =
        "<Property Name=\"Action\">Sell To Close</Property><Property Name=\"Empty\"/>"
        "<Wrapper><Collection Name=\"Nested\">" +
        Order("Twice", "Limit", Field("Price", "Offset", "+", "Last", "1")) +
        "</Collection></Wrapper><Collection Name=\"Empty\"/>"
        "<Collection Name=\"Plain\" Type=\"bracket\"><Order Name=\"Dup\">" +
        Field("Type", "Exact", "=", "Value", "Limit") +
        Field("Type", "Exact", "=", "Value", "Stop") + stopLimit +
        "<!-- a note --></Order></Collection>";
    CQVOXCOTOCOTemplate oco;
    ASSERT_TRUE(oco.Load(Wide(TemplateFile("OCO", "Odd", body)).c_str()));
    EXPECT_EQ(oco.GetID(), "");
    EXPECT_EQ(oco.GetAction(), "Sell To Close");  // Action is empty: the property answers
    const _variant_t empty = oco.GetProperties()->GetProperty("Empty");
    EXPECT_EQ(empty.vt, VT_BSTR);  // a property without text still exists
    ASSERT_EQ(oco.GetCount(), 3);  // found at any depth, in document order
    EXPECT_EQ(oco.GetAt(0)->GetName(), "Nested");
    EXPECT_EQ(oco.GetAt(1)->GetCount(), 0);
    EXPECT_EQ(oco.GetAt(1)->GetAt(0), nullptr);
    EXPECT_FALSE(oco.ContainsBracketOrders());  // "bracket" is not "Bracket"
    CQVOXCOTOrder* dup = oco.GetAt(2)->GetAt(0);
    // The first Type wins; the comment is a field of no name.
    EXPECT_EQ(dup->GetAt("Type")->GetValue().TextOrEmpty(), "Limit");
    EXPECT_EQ(dup->GetCount(), 3);
    EXPECT_NE(dup->GetAt(""), nullptr);
    EXPECT_TRUE(oco.IsMultiPriceFieldTemplate());
    CQVOXCOTField* price = dup->GetAt("Price");
    ASSERT_EQ(price->GetCount(), 2);
    CQVOXCOTField* limit = price->GetAt("Limit");
    ASSERT_NE(limit, nullptr);
    EXPECT_TRUE(limit->IsChildField());
    EXPECT_EQ(limit->GetLocation(), "Price.Stop");
    EXPECT_EQ(price->GetValue().TextOrEmpty(), "205");
    limit->SetLocation("Key");
    limit->SetValue(_variant_t(7.5));
    EXPECT_EQ(limit->GetLocation(), "Key");
    EXPECT_EQ(limit->GetValue().TextOrEmpty(), "7.5");
    // Writing the parent's value takes its children out of the document; the tree keeps them.
    price->SetValue(_variant_t("3"));
    EXPECT_EQ(price->GetValue().TextOrEmpty(), "3");
    EXPECT_EQ(limit->GetValue().TextOrEmpty(), "7.5");
}

TEST(Template, CreateSaveAndLoadBack) {
    TempFolder folder;
    CQVOXCOTOCOTemplate oco;
    oco.Create("Bracket", nullptr, "Buy");
    EXPECT_EQ(oco.GetProperties(), nullptr);
    EXPECT_EQ(oco.GetID(), "");
    EXPECT_EQ(oco.GetCount(), 0);
    EXPECT_FALSE(oco.Save(nullptr));  // no path yet
    const std::string path = folder / "b.xml";
    ASSERT_TRUE(oco.Save(path.c_str()));
    EXPECT_EQ(TempFolder::Read(path),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<QVXML>\n  <Template Name=\"Bracket\" "
              "Description=\"\" Action=\"Buy\" Type=\"OCO\" Version=\"1\"/>\n</QVXML>\n");
    EXPECT_NE(oco.m_FileStatus.m_mtime, 0);
    // A second skeleton can't go into a document that has its root.
    EXPECT_THROW(oco.Create("Again", "", ""), _com_error);

    CQVOXCOTOCOTemplate back;
    back.m_Path = path.c_str();
    ASSERT_TRUE(back.Load(nullptr));
    EXPECT_EQ(back.GetName(), "Bracket");
    back.SetVersion("2");
    EXPECT_EQ(back.GetVersion(), "2");
    CQVOXCOTOSOTemplate bare;
    ASSERT_TRUE(bare.Load(L"<Template Type='OSO'/>"));
    bare.SetVersion("2");  // no Version attribute: nothing happens
    EXPECT_EQ(bare.GetVersion(), "");
    EXPECT_FALSE(bare.Load(L"<Other Type='OSO'/>"));
}

TEST(Template, CopiesAreDeep) {
    TempFolder folder;
    CQVOXCOTOSOTemplate source;
    ASSERT_TRUE(source.Load(folder.Write("two.xml", kTwoTargets).c_str()));
    source.AddError("an error");
    CQVOXCOTOSOTemplate copy;
    copy = source;
    ASSERT_EQ(copy.GetCount(), 2);
    EXPECT_EQ(copy.m_Path, source.m_Path);
    EXPECT_EQ(copy.m_FileStatus, source.m_FileStatus);
    EXPECT_TRUE(copy.m_ErrorText.IsEmpty());
    copy.GetAt(0)->GetAt(0)->GetAt("Price")->SetValue(_variant_t("99"));
    EXPECT_EQ(source.GetAt(0)->GetAt(0)->GetAt("Price")->GetValue().TextOrEmpty(), "50");
    copy = copy;
    EXPECT_EQ(copy.GetAt(0)->GetAt(0)->GetAt("Price")->GetValue().TextOrEmpty(), "99");

    const std::unique_ptr<CQVOXConditionalOrdersTemplate> clone(source.Clone());
    ASSERT_NE(dynamic_cast<CQVOXCOTOSOTemplate*>(clone.get()), nullptr);
    EXPECT_EQ(clone->GetName(), "Two Targets");
    EXPECT_NE(clone->GetProperties(), nullptr);
    const CQVOXCOTOSOTemplate constructed(source);
    EXPECT_EQ(CQVOXCOTOSOTemplate(constructed).GetAt(1)->GetName(), "Second");

    // A source with no text changes nothing; one of the other kind fails the load but still
    // passes on its kind, path and status.
    CQVOXCOTOCOTemplate empty;
    copy.Copy(empty);
    EXPECT_EQ(copy.GetName(), "Two Targets");
    CQVOXCOTOCOTemplate other;
    other.Copy(source);
    EXPECT_EQ(other.GetProperties(), nullptr);
    EXPECT_EQ(other.m_TemplateType, "OSO");
    EXPECT_EQ(other.GetName(), "Two Targets");
}

TEST(Template, NoticesAChangedOrMissingFile) {
    TempFolder folder;
    const std::string path = folder.Write("t.xml", TemplateFile("OCO", "T", ""));
    CQVOXCOTOCOTemplate oco;
    ASSERT_TRUE(oco.Load(path.c_str()));
    EXPECT_FALSE(oco.HasFileChanged());
    std::filesystem::last_write_time(
        path, std::filesystem::last_write_time(path) + std::chrono::seconds(1));
    EXPECT_TRUE(oco.HasFileChanged());
    ASSERT_TRUE(oco.Save(nullptr));
    EXPECT_FALSE(oco.HasFileChanged());
    std::filesystem::remove(path);
    EXPECT_TRUE(oco.HasFileChanged());
}

}  // namespace
}  // namespace qvox
