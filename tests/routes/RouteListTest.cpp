// The route lists as the platform gives them: the list text and the rules on what goes in, the
// lookups over the lists, when a category counts as loaded, and a failing platform.
#include <gtest/gtest.h>

#include <thread>

#include "routes/RouteTestSupport.h"

namespace qvox {
namespace {

using namespace testing;

class RouteList : public RouteRoot {
  protected:
    RouteManager manager_;
};

TEST_F(RouteList, ListTextIntoTheListsAndTheFile) {
    // clang-format off
    FakeRouteServer& server = Serve({
        {2, "ARCA,ARCX,,NSDQ,NSDQ,MultiLeg,ARCA,Second,,XX-Hidden,XX-H,,QA-T,QA-Test,,MID,Has QA- and XX-,,"},
        {0, "A,B,C"},  // a last field without its comma reads as empty
        {12, "no comma"}, {3, "CBOE,Cboe,,ML,Legs,MultiLeg,MX,Legs too,multileg,"}});
    // clang-format on
    manager_.Init();
    EXPECT_EQ(ListOf(manager_, 2, false),
              (Items{"Intelligent", "ARCX", "Has QA- and XX-", "NSDQ"}));
    EXPECT_EQ(ListOf(manager_, 2, true), (Items{"Intelligent"}));  // from the file only
    EXPECT_EQ(ListOf(manager_, 0, false), (Items{"Intelligent", "B"}));
    EXPECT_EQ(ListOf(manager_, 12, false), (Items{"Intelligent"}));
    EXPECT_EQ(ListOf(manager_, 8, false), (Items{"Intelligent", "Cboe", "Legs", "Legs too"}));
    EXPECT_EQ(ListOf(manager_, 3, true), (Items{"Legs"}));  // the kind is compared exactly
    EXPECT_EQ(ListOf(manager_, 1, false, {"kept"}), (Items{"kept"}));
    // Each category answered once; options with category 3 for both of their lists.
    EXPECT_EQ(server.calls[2] + server.calls[0] + server.calls[12] + server.calls[8], 3);
    EXPECT_EQ(server.calls[3], 2);

    SetTesting(1);  // "QA-" routes from now on, never "XX-" ones
    manager_.Init();
    EXPECT_EQ(manager_.GetCode("QA-Test", 2) + manager_.GetCode("XX-H", 2), "QA-T");
    manager_.Uninit();
    // clang-format off
    EXPECT_EQ(ReadCache(), CacheBytes(1, {
        {{"ARCA", "ARCX"}, {"MID", "Has QA- and XX-"}, {"NSDQ", "NSDQ"}, {"QA-T", "QA-Test"}},
        {{"CBOE", "Cboe"}, {"ML", "Legs"}, {"MX", "Legs too"}}, {{"A", "B"}}, {}, {}, {{"ML", "Legs"}}}));
    // clang-format on
}

TEST_F(RouteList, Lookups) {
    Serve({{2, "ARCA,Arca,,BOTH,Equities,,SAME,Twin,,"},
           {3, "BOTH,Options,,CBOE,Cboe,,TWIN,Twin,,O1,L1,MultiLeg,O2,L2,MultiLeg,"},
           {0, "GLBX,Globex,,GLB2,Globex,,"}});
    manager_.Init();
    // Equities before options; a code no list knows is its own display.
    EXPECT_EQ(manager_.GetDisplayValue("") + "|" + manager_.GetDisplayValue("BOTH") + "|" +
                  manager_.GetDisplayValue("GLBX") + "|" + manager_.GetDisplayValue("arca"),
              "Intelligent|Equities|Globex|arca");
    // clang-format off
    const struct { const char* display; LONG category; const char* code; } codes[] = {
        {"Intelligent", 99, ""}, {"intelligent", 2, ""}, {"Arca", 2, "ARCA"}, {"Options", 8, "BOTH"},
        {"Options", 2, ""}, {"Globex", 0, "GLB2"},  // the first in code order
        {"Twin", 3, "TWIN"}, {"Arca", 1, ""}, {"ZZZZ", 2, ""}};
    // clang-format on
    for (const auto& c : codes)
        EXPECT_EQ(manager_.GetCode(c.display, c.category), c.code) << c.display << c.category;
    // Options multi-leg with two routes keep the default; the rule is the options' alone.
    EXPECT_EQ(ListOf(manager_, 8, true), (Items{"Intelligent", "L1", "L2"}));
    EXPECT_EQ(ListOf(manager_, 0, true, {"x"}), (Items{"x", "Intelligent"}));

    RouteManager copy(manager_);  // lists and a lock of its own
    RouteManager assigned;
    assigned = copy;
    copy.Uninit();
    EXPECT_EQ(copy.GetDisplayValue("ARCA") + assigned.GetDisplayValue("ARCA"), "ARCAArca");
}

TEST_F(RouteList, WhenTheFileServesAndWhenThePlatformIsAskedAgain) {
    WriteCache(CacheBytes(1, {{{"OLD", "From file"}}}));
    manager_.Init();  // the built-in platform has no root object: loaded from the file
    EXPECT_EQ(manager_.GetDisplayValue("OLD"), "From file");
    FakeRouteServer& lacking = Serve({{2, "NEW,From server,,"}});
    lacking.withoutRouteList = true;
    EXPECT_EQ(manager_.GetDisplayValue("OLD"), "From file");  // not asked again
    manager_.Init();
    EXPECT_EQ(manager_.GetDisplayValue("OLD"), "From file");  // no route list: loaded too
    EXPECT_EQ(lacking.calls[2], 0);

    // Empty answers leave the file's lists and are asked again at every lookup.
    FakeRouteServer& server = Serve({{2, "NEW,From server,,"}}, 2);
    manager_.Init();
    EXPECT_EQ(manager_.GetDisplayValue("OLD") + manager_.GetCode("From file", 2), "From fileOLD");
    EXPECT_EQ(manager_.GetDisplayValue("OLD"), "OLD");  // the third answer replaced the list
    EXPECT_EQ(server.calls[2] + server.calls[0], 6);    // no futures list: asked every time

    // A failing call reaches the caller; lists and flags stay, the lock is released.
    server.failure = E_ACCESSDENIED;
    manager_.Init();
    HRESULT failed = S_OK;
    try {
        manager_.GetDisplayValue("NEW");
    } catch (const _com_error& error) {
        failed = error.Error();
    }
    EXPECT_EQ(failed, E_ACCESSDENIED);
    EXPECT_EQ(manager_.GetDisplayValue(""), "Intelligent");  // asks nothing
    EXPECT_THROW(ListOf(manager_, 2, false), _com_error);
    server.failure = S_OK;
    std::thread([this] { EXPECT_EQ(manager_.GetDisplayValue("NEW"), "From server"); }).join();
}

}  // namespace
}  // namespace qvox
