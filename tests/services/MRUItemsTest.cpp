// Recently used lists: what Add keeps, how the stored text reads back, and that every list
// writes itself when it ends.
#include "qvox/services/CQVMRUItems.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "qvox/platform/Platform.h"
#include "qvox/platform/Registry.h"
#include "qvox/platform/RegistryStore.h"

namespace qvox {
namespace {

using Items = std::vector<CString>;
constexpr const char* kKey = "Software\\Test\\Order Entry\\EquitiesSettings";

class MRU : public ::testing::Test {
  protected:
    void Put(const std::string& text, DWORD type = REG_SZ, DWORD terminator = 1) {
        bool created = false;
        store_->CreateKey(kKey, created);
        store_->SetValue(kKey, "LocateBrokerMRU", type, reinterpret_cast<const BYTE*>(text.c_str()),
                         static_cast<DWORD>(text.size()) + terminator);
    }
    // The stored text; "<bad>" unless a REG_SZ with its terminator.
    std::string Stored(const char* path = kKey, const char* name = "LocateBrokerMRU") {
        RegistryValue value;
        store_->QueryValue(path, name, value);
        const std::string text(value.data.begin(), value.data.end());
        return value.type == REG_SZ && text.find('\0') == text.size() - 1 ? text.c_str() : "<bad>";
    }
    static Items ItemsOf(CQVMRUItems&& list) {
        Items items{"stale"};
        list.GetMRUItems(items);
        return items;
    }

    std::shared_ptr<SqliteRegistryStore> store_ = SqliteRegistryStore::InMemory();
    ScopedPlatformServices services_{[this] {
        PlatformServices services;
        services.directories =
            std::make_shared<FixedPlatformDirectories>("/none", "Software\\Test");
        services.settings = store_;
        return services;
    }()};
};

TEST_F(MRU, AddMovesToTheEndAndDropsTheOldest) {
    CQVMRUItems list;
    list.SetMRUNumber(3);
    const auto added = [&list](const char* item) {
        list.Add(item);
        Items items;
        list.GetMRUItems(items);
        return items;
    };
    for (const char* item : {"A", "B", "C"})
        added(item);
    EXPECT_EQ(added("D"), (Items{"B", "C", "D"}));
    EXPECT_EQ(added("C"), (Items{"B", "D", "C"}));
    EXPECT_EQ(added("c"), (Items{"D", "C", "c"}));  // case counts
    list.SetMRUNumber(1);                           // a lower limit takes one item per Add
    EXPECT_EQ(added("E"), (Items{"C", "c", "E"}));
    list.SetMRUNumber(0);
    EXPECT_EQ(added("C"), (Items{"E", "C"}));
}

TEST_F(MRU, StoredTextReadsUpToTheLastComma) {
    const std::string x98(98, 'x');
    // clang-format off
    const struct { std::string stored; Items items; DWORD type = REG_SZ; DWORD terminator = 1; }
    cases[] = {{"ABCD,EFGH,", {"ABCD", "EFGH"}}, {"A,B", {"A"}}, {",A,", {}}, {"A,,B,", {"A"}},
               {"", {}}, {x98 + ",", {CString(x98)}}, {x98 + "x,", {}},  // 100: too long
               {"A,", {"A"}, REG_EXPAND_SZ}, {"A,", {}, REG_DWORD}, {"A,", {}, REG_SZ, 0}};
    // clang-format on
    for (const auto& c : cases) {
        Put(c.stored, c.type, c.terminator);
        EXPECT_EQ(ItemsOf(CQVShortAwayMRU()), c.items) << c.stored << c.type << c.terminator;
    }
    Put("A,");
    CQVMRUItems twice(kKey, "LocateBrokerMRU");
    twice.ReadMRUFromReg();  // appends the same items again
    EXPECT_EQ(ItemsOf(std::move(twice)), (Items{"A", "A"}));
}

TEST_F(MRU, EveryListSavesWhenItEnds) {
    Put(std::string(120, 'x') + ",");
    {
        CQVShortAwayMRU list;  // reads nothing from a value too long, and replaces it
        list.Add("GSCO");
        list.Add("MS,CO");
        CQVShortAwayMRU copy(list);
        copy.Add("UBS");
    }  // the copy ends first, the list last: the last one wins
    EXPECT_EQ(Stored(), "GSCO,MS,CO,");
    EXPECT_EQ(ItemsOf(CQVShortAwayMRU()), (Items{"GSCO", "MS", "CO"}));  // commas not escaped
    { CQVMRUItems emptied(kKey, "Other"); }
    EXPECT_EQ(Stored(kKey, "Other"), "");  // the empty text, not deleted
    CQVMRUItems().Add("Z");                // no location, no name: the root's default value
    EXPECT_EQ(Stored("", ""), "Z,");
}

}  // namespace
}  // namespace qvox
