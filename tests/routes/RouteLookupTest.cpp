// Lookups over the route lists: which list answers first, the default route, and the lists a
// ticket offers per category.
#include <gtest/gtest.h>

#include "qvox/routes/RouteManager.h"
#include "routes/RouteTestSupport.h"

namespace qvox {
namespace {

using testing::Bytes;
using V = std::vector<CString>;

class RouteLookup : public testing::RouteRoot {
  protected:
    // Lists as a cache file gives them; with no platform to ask, they are final.
    void SetUp() override {
        Bytes cache;
        cache.U32(1)
            .U32(3)
            .Str("ARCA")
            .Str("Arca")
            .Str("BOTH")
            .Str("Equities")
            .Str("SAME")
            .Str("Twin")
            .U32(3)
            .Str("BOTH")
            .Str("Options")
            .Str("CBOE")
            .Str("Cboe")
            .Str("TWIN")
            .Str("Twin")
            .U32(2)
            .Str("GLBX")
            .Str("Globex")
            .Str("GLB2")
            .Str("Globex")
            .U32(0)
            .U32(1)
            .Str("EQML")
            .Str("Equity legs")
            .U32(2)
            .Str("OML1")
            .Str("Legs 1")
            .Str("OML2")
            .Str("Legs 2")
            .U32(0)
            .U32(0);
        WriteCache(cache.str());
        manager_.Init();
    }

    V List(ULONG category, bool multiLeg, V start = {}) {
        CStringList list;
        for (const CString& item : start)
            list.AddTail(item);
        manager_.GetRoutelist(list, category, multiLeg);
        V items;
        for (POSITION pos = list.GetHeadPosition(); pos != nullptr;)
            items.push_back(list.GetNext(pos));
        return items;
    }

    RouteManager manager_;
};

TEST_F(RouteLookup, DisplayAndCode) {
    EXPECT_EQ(manager_.GetDisplayValue(""), "Intelligent");
    EXPECT_EQ(manager_.GetDisplayValue("BOTH"), "Equities");  // equities before options
    EXPECT_EQ(manager_.GetDisplayValue("GLBX"), "Globex");    // known to futures alone
    EXPECT_EQ(manager_.GetDisplayValue("EQML"), "EQML");      // multi-leg lists are not asked
    EXPECT_EQ(manager_.GetDisplayValue("ZZZZ"), "ZZZZ");
    EXPECT_EQ(manager_.GetDisplayValue("arca"), "arca");

    const struct {
        const char* display;
        LONG category;
        const char* code;
    } cases[] = {
        {"Intelligent", 2, ""}, {"Intelligent", 99, ""}, {"intelligent", 2, ""},
        {"Arca", 2, "ARCA"},    {"Options", 3, "BOTH"},  {"Options", 8, "BOTH"},
        {"Options", 2, ""},     {"Globex", 0, "GLB2"},  // the first in code order
        {"Twin", 2, "SAME"},    {"Twin", 3, "TWIN"},     {"Arca", 1, ""},
        {"Legs 1", 3, ""},      {"ZZZZ", 2, ""},         {"Globex", 12, ""},
    };
    for (const auto& c : cases)
        EXPECT_EQ(manager_.GetCode(c.display, c.category), c.code) << c.display << c.category;
}

TEST_F(RouteLookup, ListsByCategory) {
    EXPECT_EQ(List(2, false), (V{"Intelligent", "Arca", "Equities", "Twin"}));
    EXPECT_EQ(List(2, true), (V{"Intelligent", "Equity legs"}));
    EXPECT_EQ(List(0, true), (V{"Intelligent"}));
    EXPECT_EQ(List(8, false), (V{"Intelligent", "Options", "Cboe", "Twin"}));
    EXPECT_EQ(List(3, true), (V{"Intelligent", "Legs 1", "Legs 2"}));  // two routes keep it
    EXPECT_EQ(List(1, false, {"kept"}), (V{"kept"}));                  // no list for the category
    EXPECT_EQ(List(12, false), (V{"Intelligent"}));
    // The list is appended to, not emptied; the count that drops the default is the list's.
    EXPECT_EQ(List(2, false, {"x"}), (V{"x", "Intelligent", "Arca", "Equities", "Twin"}));
}

TEST_F(RouteLookup, OptionsMultiLegDropsTheDefaultForOneRouteOrNone) {
    // The rule counts the whole list, an item the caller had in it too.
    const struct {
        std::uint32_t count;
        std::string block;
        V alone;
        V afterAnItem;
    } cases[] = {
        {0, "", V{}, V{"x"}},
        {1, "\x02O1\x02L1", V{"L1"}, V{"x", "Intelligent", "L1"}},
        {2, "\x02O1\x02L1\x02O2\x02L2", V{"Intelligent", "L1", "L2"},
         V{"x", "Intelligent", "L1", "L2"}},
    };
    for (const auto& c : cases) {
        Bytes cache;
        cache.U32(1).U32(0).U32(0).U32(0).U32(0).U32(0).U32(c.count).Raw(c.block).U32(0).U32(0);
        WriteCache(cache.str());
        manager_.Init();
        EXPECT_EQ(List(3, true), c.alone) << c.block.size();
        EXPECT_EQ(List(8, true, {"x"}), c.afterAnItem) << c.block.size();
    }
}

TEST_F(RouteLookup, CopiesAreIndependent) {
    RouteManager copy(manager_);
    EXPECT_TRUE(copy.IsInitialized());
    EXPECT_EQ(copy.GetDisplayValue("ARCA"), "Arca");
    RouteManager assigned;
    assigned = copy;
    copy.Uninit();  // writes the file and empties only the copy
    EXPECT_EQ(copy.GetDisplayValue("ARCA"), "ARCA");
    EXPECT_EQ(assigned.GetDisplayValue("ARCA"), "Arca");
    EXPECT_EQ(manager_.GetDisplayValue("GLBX"), "Globex");
}

}  // namespace
}  // namespace qvox
