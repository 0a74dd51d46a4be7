// Recently used lists: what Add keeps, how the stored text reads back, and that every list
// writes itself when it ends.
#include "qvox/services/CQVMRUItems.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "qvox/platform/Platform.h"
#include "qvox/platform/Registry.h"

namespace qvox {
namespace {

constexpr const char* kKey = "Software\\Test\\Order Entry\\EquitiesSettings";

class MRU : public ::testing::Test {
  protected:
    static PlatformServices Services() {
        PlatformServices services;
        services.directories =
            std::make_shared<FixedPlatformDirectories>("/nonexistent", "Software\\Test");
        services.settings = SqliteRegistryStore::InMemory();
        return services;
    }

    static void Put(const std::string& text, DWORD type = REG_SZ, bool terminated = true) {
        HKEY key = nullptr;
        ASSERT_EQ(RegCreateKeyExA(HKEY_CURRENT_USER, kKey, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                                  &key, nullptr),
                  ERROR_SUCCESS);
        ASSERT_EQ(RegSetValueExA(key, "LocateBrokerMRU", 0, type,
                                 reinterpret_cast<const BYTE*>(text.c_str()),
                                 static_cast<DWORD>(text.size() + (terminated ? 1 : 0))),
                  ERROR_SUCCESS);
        RegCloseKey(key);
    }

    // The stored value with its type, or "<none>".
    static std::string Stored(const char* path = kKey, const char* name = "LocateBrokerMRU") {
        HKEY key = nullptr;
        if (RegOpenKeyExA(HKEY_CURRENT_USER, path, 0, KEY_READ, &key) != ERROR_SUCCESS) {
            return "<none>";
        }
        char buffer[512] = {};
        DWORD type = 0;
        DWORD size = sizeof buffer;
        const LSTATUS status =
            RegQueryValueExA(key, name, nullptr, &type, reinterpret_cast<BYTE*>(buffer), &size);
        RegCloseKey(key);
        if (status != ERROR_SUCCESS) return "<none>";
        EXPECT_EQ(type, REG_SZ);
        EXPECT_EQ(size, std::strlen(buffer) + 1);  // the terminator counted
        return buffer;
    }

    static std::vector<CString> Items(CQVMRUItems& list) {
        std::vector<CString> items{"stale"};
        list.GetMRUItems(items);
        return items;
    }

    ScopedPlatformServices services_{Services()};
};

TEST_F(MRU, AddMovesToTheEndAndDropsTheOldest) {
    CQVMRUItems list;
    list.SetMRUNumber(3);
    for (const char* item : {"A", "B", "C", "D"})
        list.Add(item);
    EXPECT_EQ(Items(list), (std::vector<CString>{"B", "C", "D"}));
    list.Add("C");
    EXPECT_EQ(Items(list), (std::vector<CString>{"B", "D", "C"}));
    list.Add("c");  // case counts
    EXPECT_EQ(Items(list), (std::vector<CString>{"D", "C", "c"}));
    // A lower limit takes one item per Add, not down to the limit.
    list.SetMRUNumber(1);
    list.Add("E");
    EXPECT_EQ(Items(list), (std::vector<CString>{"C", "c", "E"}));
    list.SetMRUNumber(0);
    CQVMRUItems empty;
    empty.SetMRUNumber(0);
    empty.Add("X");
    EXPECT_EQ(Items(empty), (std::vector<CString>{"X"}));
}

TEST_F(MRU, StoredTextReadsUpToTheLastComma) {
    const struct {
        std::string stored;
        std::vector<CString> items;
    } cases[] = {
        {"ABCD,EFGH,", {"ABCD", "EFGH"}},
        {"A,B", {"A"}},
        {",A,", {}},
        {"A,,B,", {"A"}},
        {"", {}},
        {std::string(98, 'x') + ",", {CString(std::string(98, 'x'))}},
        {std::string(99, 'x') + ",", {}},  // 100 characters: too long for the buffer
    };
    for (const auto& c : cases) {
        Put(c.stored);
        CQVShortAwayMRU list;
        EXPECT_EQ(Items(list), c.items) << c.stored;
    }
    // Not a text, or a text without its terminator: nothing.
    Put("A,", REG_DWORD);
    EXPECT_TRUE(Items(*std::make_unique<CQVShortAwayMRU>()).empty());
    Put("A,", REG_EXPAND_SZ);
    EXPECT_EQ(Items(*std::make_unique<CQVShortAwayMRU>()), std::vector<CString>{"A"});
    Put("A,", REG_SZ, false);
    EXPECT_TRUE(Items(*std::make_unique<CQVShortAwayMRU>()).empty());
    // A second read appends the same items again.
    Put("A,");
    CQVMRUItems twice(kKey, "LocateBrokerMRU");
    twice.ReadMRUFromReg();
    EXPECT_EQ(Items(twice), (std::vector<CString>{"A", "A"}));
}

TEST_F(MRU, EveryListSavesWhenItEnds) {
    Put(std::string(120, 'x') + ",");
    {
        CQVShortAwayMRU list;  // reads nothing from a value that is too long...
        list.Add("GSCO");
        list.Add("MS,CO");
    }
    EXPECT_EQ(Stored(), "GSCO,MS,CO,");  // ...and replaces it; commas are not escaped
    {
        CQVShortAwayMRU list;
        EXPECT_EQ(Items(list), (std::vector<CString>{"GSCO", "MS", "CO"}));
        CQVShortAwayMRU copy(list);
        copy.Add("UBS");
        // The copy ends first, then the list that nothing changed: the last one wins.
    }
    EXPECT_EQ(Stored(), "GSCO,MS,CO,");
    { CQVMRUItems emptied(kKey, "Other"); }
    EXPECT_EQ(Stored(kKey, "Other"), "");  // an empty list is the empty text, not deleted
    {
        CQVMRUItems unnamed;  // empty location and name: the root's default value
        unnamed.Add("Z");
    }
    EXPECT_EQ(Stored("", ""), "Z,");
}

}  // namespace
}  // namespace qvox
