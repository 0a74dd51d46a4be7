// Template folders: where they lie, what a load takes and passes over, the upgrade of old
// stock-option files, change detection and ownership.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <string>

#include "TemplateTestSupport.h"
#include "qvox/templates/CQVOXConditionalOrdersTemplates.h"

namespace qvox {
namespace {

using test::Field;
using test::ScopedRoot;
using test::TempFolder;
using test::TemplateFile;

std::string Folder(const std::string& category, const std::string& kind) {
    return "Templates/Conditional Orders/" + category + "/" + kind + "/";
}

std::string StopOrder(const std::string& price) {
    return "<Collection><Order Name=\"S\">" + Field("Type", "Exact", "=", "Value", "Stop Market") +
           price + "</Order></Collection>";
}

TEST(TemplateFolders, FoldersByKindAndCategory) {
    TempFolder root;
    ScopedRoot scope(root);
    CQVOXCOTOSOTemplates oso;
    oso.Load();  // a clean machine: the whole path is made, and nothing is found
    EXPECT_TRUE(std::filesystem::is_directory(root.path() / Folder("Futures", "OSO")));
    EXPECT_EQ(oso.GetCount(), 0);
    EXPECT_TRUE(oso.HaveFilesChanged());
    const std::pair<LONG, const char*> folders[] = {
        {0, "Futures"}, {1, "Stocks"}, {2, "Stocks"},  {3, "Stock Options"},
        {4, "Stocks"},  {12, "Forex"}, {254, "Stocks"}};
    for (const auto& [category, name] : folders) {
        CQVOXCOTOCOTemplates oco(category);
        EXPECT_EQ(oco.GetCategory(), category);
        EXPECT_EQ(oco.GetFolder(), CString(root.path().string() +
                                           "\\Templates\\Conditional "
                                           "Orders\\" +
                                           name + "\\OCO"));
    }
    oso.SetDirectory("Mine");
    oso.SetCategory(12);
    oso.Load();
    EXPECT_TRUE(std::filesystem::is_directory(root.path() / Folder("Forex", "Mine")));
}

TEST(TemplateFolders, LoadTakesItsKindInNameOrderAndPassesOverTheRest) {
    TempFolder root;
    ScopedRoot scope(root);
    const std::string folder = Folder("Stocks", "OSO");
    root.Write(folder + "b.xml", TemplateFile("OSO", "Beta", ""));
    root.Write(folder + "a.XML", TemplateFile("OSO", "Alpha", ""));
    root.Write(folder + "c.xml", TemplateFile("OSO", "Alpha", ""));
    root.Write(folder + "other kind.xml", TemplateFile("OCO", "Gamma", ""));
    root.Write(folder + "broken.xml", "<QVXML><Template Type='OSO'>");
    root.Write(folder + "empty.xml", "");
    root.Write(folder + "notes.txt", TemplateFile("OSO", "Delta", ""));
    std::filesystem::create_directories(root.path() / folder / "sub.xml");
    const std::string locked = root.Write(folder + "locked.xml", TemplateFile("OSO", "Locked", ""));
    ::chmod(locked.c_str(), 0);
    const bool lockedIsReadable = ::access(locked.c_str(), R_OK) == 0;  // when run as root

    CQVOXCOTOSOTemplates oso(2);
    oso.Load();
    ASSERT_EQ(oso.GetCount(), lockedIsReadable ? 4 : 3);
    EXPECT_EQ(oso.GetAt(0)->GetName(), "Alpha");
    EXPECT_EQ(oso.GetAt(1)->GetName(), "Beta");
    EXPECT_EQ(oso.GetAt(99), nullptr);
    // Two files carry the name Alpha: the first in name order wins.
    ASSERT_NE(oso.Find("Alpha"), nullptr);
    EXPECT_TRUE(oso.Find("Alpha")->m_Path.view().ends_with("a.XML"));
    EXPECT_EQ(oso.Find("alpha"), nullptr);
    EXPECT_FALSE(oso.HaveFilesChanged());
    // A new file is not noticed; a changed or deleted one is.
    root.Write(folder + "d.xml", TemplateFile("OSO", "New", ""));
    EXPECT_FALSE(oso.HaveFilesChanged());
    std::filesystem::remove(root.path() / folder / "b.xml");
    EXPECT_TRUE(oso.HaveFilesChanged());

    // The list owns what it holds; a template added for the caller is the caller's.
    CQVOXConditionalOrdersTemplate* added = oso.AddTemplate(true);
    EXPECT_EQ(oso.GetAt(oso.GetCount() - 1), added);
    EXPECT_EQ(added->m_TemplateType, "OSO");
    const std::unique_ptr<CQVOXConditionalOrdersTemplate> mine(oso.AddTemplate(false));
    EXPECT_EQ(oso.GetAt(oso.GetCount() - 1), added);
    CQVOXCOTOSOTemplates moved(std::move(oso));
    EXPECT_EQ(moved.GetAt(moved.GetCount() - 1), added);
    moved.Clear();
    EXPECT_EQ(moved.GetCount(), 0);
}

TEST(TemplateFolders, UpgradeOfOldStockOptionTemplates) {
    TempFolder root;
    ScopedRoot scope(root);
    const std::string options = Folder("Stock Options", "OCO");
    const std::string plainStop = StopOrder(Field("Price", "Offset", "~", "Key", "4"));
    const std::string childStop = StopOrder("<Field Name=\"Price\" Usage=\"Explicit\">" +
                                            Field("Limit", "Offset", "-", "Price.Stop", "3") +
                                            Field("Stop", "Offset", "~", "Key", "2") + "</Field>");
    const std::string old = root.Write(options + "old.xml", TemplateFile("OCO", "Old", plainStop));
    const std::string child =
        root.Write(options + "child.xml", TemplateFile("OCO", "Child", childStop));
    const std::string current =
        root.Write(options + "current.xml", TemplateFile("OCO", "Current", plainStop, "3"));
    const std::string noVersion =
        root.Write(options + "none.xml", TemplateFile("OCO", "None", plainStop, ""));
    const std::string percent = root.Write(
        options + "percent.xml",
        TemplateFile("OCO", "Percent", StopOrder(Field("Price", "Percentage", "~", "Key", "4"))));
    const std::string stocks =
        root.Write(Folder("Stocks", "OCO") + "old.xml", TemplateFile("OCO", "Old", plainStop));
    const auto stop = [](CQVOXConditionalOrdersTemplate* t, const char* part) {
        CQVOXCOTField* price = t->GetAt(0)->GetAt(0)->GetAt("Price");
        return (part != nullptr ? price->GetAt(part) : price)->GetValue().TextOrEmpty();
    };

    CQVOXCOTOCOTemplates list(3);
    list.Load();
    ASSERT_EQ(list.GetCount(), 5);
    EXPECT_EQ(stop(list.Find("Old"), nullptr), "20");
    EXPECT_EQ(list.Find("Old")->GetVersion(), "3");
    EXPECT_EQ(stop(list.Find("Child"), "Stop"), "10");
    EXPECT_EQ(stop(list.Find("Child"), "Limit"), "3");
    EXPECT_EQ(stop(list.Find("Current"), nullptr), "4");
    EXPECT_EQ(stop(list.Find("None"), nullptr), "4");
    EXPECT_EQ(list.Find("Percent")->GetVersion(), "1");  // no offset stop: left at its version
    EXPECT_NE(TempFolder::Read(old).find("Version=\"3\""), std::string::npos);
    EXPECT_NE(TempFolder::Read(old).find(">20</Field>"), std::string::npos);
    // Every file of the list is saved, the ones that needed nothing too.
    EXPECT_NE(TempFolder::Read(current).find("encoding=\"UTF-8\""), std::string::npos);
    list.Load();
    EXPECT_EQ(stop(list.Find("Old"), nullptr), "20");  // done once only

    CQVOXCOTOCOTemplates stockList(2);
    stockList.Load();
    ASSERT_EQ(stockList.GetCount(), 1);
    EXPECT_EQ(stop(stockList.GetAt(0), nullptr), "4");
    EXPECT_EQ(TempFolder::Read(stocks), TemplateFile("OCO", "Old", plainStop));
}

}  // namespace
}  // namespace qvox
