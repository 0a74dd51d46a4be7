// Order defaults: factory values by asset class, the saved values over them, and what a bad
// saved value leaves behind.
#include <gtest/gtest.h>

#include <string>

#include "qvox/order/COrderBarProperties.h"
#include "qvox/platform/Platform.h"
#include "qvox/platform/Registry.h"
#include "qvox/platform/WinError.h"

namespace qvox {
namespace {

using C = COrderBarProperties;

class Defaults : public ::testing::Test {
  protected:
    // The values of one key, written raw.
    void Put(const char* path, const char* name, DWORD type, const void* data, DWORD size) {
        HKEY key = nullptr;
        ASSERT_EQ(RegCreateKeyExA(HKEY_CURRENT_USER, path, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                                  &key, nullptr),
                  ERROR_SUCCESS);
        ASSERT_EQ(RegSetValueExA(key, name, 0, type, static_cast<const BYTE*>(data), size),
                  ERROR_SUCCESS);
        RegCloseKey(key);
    }
    void PutText(const char* path, const char* name, const std::string& text) {
        Put(path, name, REG_SZ, text.c_str(), static_cast<DWORD>(text.size() + 1));
    }
    void PutNumber(const char* path, const char* name, DWORD number) {
        Put(path, name, REG_DWORD, &number, 4);
    }

    static constexpr const char* kEquities = "Software\\Test\\Order Entry\\EquitiesSettings";
    static constexpr const char* kFutures = "Software\\Test\\Order Entry\\FuturesSettings";
    ScopedPlatformServices services_{
        {nullptr, nullptr, nullptr,
         std::make_shared<FixedPlatformDirectories>("/nonexistent", "Software\\Test"),
         SqliteRegistryStore::InMemory()}};
};

TEST_F(Defaults, FactoryValuesByAssetClass) {
    // equitiesOnly: m_Short82 is set; options: m_OpenClose is 'O'.
    // clang-format off
    const struct { ULONG category; LONG quantity; bool equitiesOnly, options, pegAndShow; } rows[] = {
        {2, 500, true, false, true}, {3, 5, false, true, true}, {8, 5, false, true, true},
        {0, 1, false, false, false}, {12, 1, false, false, false}};
    // clang-format on
    for (const auto& row : rows) {
        C order;
        order.LoadDefaults(row.category, true);
        EXPECT_TRUE(order.m_Duration == "Day" && order.m_OrderType == "Limit" &&
                    order.m_Route == "Intelligent" && order.m_AutoPrice3 == "");
        EXPECT_EQ(order.m_Quantity, row.quantity) << row.category;
        EXPECT_EQ(order.m_QuantityType, static_cast<SHORT>('#'));
        EXPECT_EQ(order.m_Short82.valid, row.equitiesOnly) << row.category;
        EXPECT_EQ(order.m_OpenClose == static_cast<SHORT>('O'), row.options) << row.category;
        EXPECT_EQ(order.m_PegValue == "BEST", row.pegAndShow) << row.category;
        EXPECT_EQ(order.m_ShowQuantity == 100, row.pegAndShow) << row.category;
        EXPECT_EQ(order.m_DiscretionaryAmount == 0.05, row.pegAndShow) << row.category;
    }
    C other;
    other.m_Quantity = 7;
    other.LoadDefaults(5, true);
    EXPECT_EQ(other.m_Quantity.value, 7);
    EXPECT_FALSE(other.m_Duration.IsValid());
}

TEST_F(Defaults, SavedValuesOnlyWithOverwrite) {
    PutText(kFutures, "DefQty", "3");
    PutText(kFutures, "DefDuration", "GTC");
    C order;
    order.m_Quantity = 7;
    order.LoadFuturesDefaults(false);
    EXPECT_EQ(order.m_Quantity.value, 7);
    EXPECT_EQ(order.m_Duration.GetText(), "Day");
    order.LoadFuturesDefaults(true);
    EXPECT_EQ(order.m_Quantity.value, 3);
    EXPECT_EQ(order.m_Duration.GetText(), "GTC");

    // The quantity type decides which quantity is read.
    PutNumber(kEquities, "QtyType", 36);
    PutNumber(kEquities, "QtyDollar", 250);
    PutText(kEquities, "DefQty", "900");
    order.LoadEquitiesDefaults(true);
    EXPECT_EQ(order.m_QuantityType.value, 36);
    EXPECT_EQ(order.m_Quantity.value, 250);
}

TEST_F(Defaults, BadSavedValuesLeaveTheFactoryValues) {
    PutText(kEquities, "DefDuration", std::string(100, 'x'));  // too long for the buffer
    Put(kEquities, "DefType", REG_SZ, "Market", 6);            // no terminator
    PutNumber(kEquities, "DefRoute", 5);                       // a number, not a text
    Put(kEquities, "QtyType", REG_DWORD, "\x24\x00", 2);       // two bytes only
    Put(kEquities, "DefQty", REG_EXPAND_SZ, "%QTY%", 6);       // taken, not expanded
    C order;
    order.LoadEquitiesDefaults(true);
    EXPECT_TRUE(order.m_Duration == "Day" && order.m_OrderType == "Limit");
    EXPECT_EQ(order.m_Route.GetText(), "Intelligent");
    EXPECT_TRUE(order.m_QuantityType == '#' && order.m_Quantity == 0);

    PutText(kEquities, "DefDuration", std::string(99, 'y'));
    order.LoadEquitiesDefaults(true);
    EXPECT_EQ(order.m_Duration.GetText(), std::string(99, 'y').c_str());
}

TEST_F(Defaults, SaveThenLoadRoundTrips) {
    C saved;
    saved.m_Duration = "GTC";
    saved.m_Route = "ARCX";
    saved.m_OrderType = "Market";
    saved.m_Quantity = 1200;
    saved.m_QuantityType = static_cast<SHORT>('#');
    saved.SaveDefaults(kEquities);
    C loaded;
    loaded.LoadEquitiesDefaults(true);
    EXPECT_TRUE(loaded.m_Duration == "GTC" && loaded.m_Route == "ARCX");
    EXPECT_TRUE(loaded.m_OrderType == "Market" && loaded.m_Quantity == 1200);

    // A negative quantity type is written with its sign and read back as its low 16 bits.
    saved.m_QuantityType = static_cast<SHORT>(-2);
    saved.SaveDefaults(kEquities);
    loaded.LoadEquitiesDefaults(true);
    EXPECT_EQ(loaded.m_QuantityType.value, -2);
}

TEST_F(Defaults, AdvancedSwitches) {
    C order;
    order.m_Peg = static_cast<SHORT>(1);
    order.m_AllOrNone = static_cast<SHORT>(1);
    order.LoadAdvanceDefaults(0, false);
    EXPECT_EQ(order.m_Peg.value, 1);
    EXPECT_EQ(order.m_AllOrNone.value, 1);
    EXPECT_EQ(order.m_ShowOnly, static_cast<SHORT>(0));
    order.LoadAdvanceDefaults(2, true);
    EXPECT_EQ(order.m_Peg.value, 1);
    EXPECT_EQ(order.m_AllOrNone.value, 0);
    order.LoadAdvanceDefaults(12, true);
    EXPECT_EQ(order.m_Peg.value, 0);
}

}  // namespace
}  // namespace qvox
