// The route lists as the platform gives them: the list text, the rules on what goes in, when a
// category counts as loaded, and what a failing platform leaves behind.
#include <gtest/gtest.h>

#include <thread>

#include "qvox/routes/RouteManager.h"
#include "routes/RouteTestSupport.h"

namespace qvox {
namespace {

using testing::Bytes;
using testing::FakeRouteServer;
using V = std::vector<CString>;

class RoutePlatform : public testing::RouteRoot {
  protected:
    RoutePlatform() { server_ = MakeComObject<FakeRouteServer>(); }

    V List(ULONG category, bool multiLeg) {
        CStringList list;
        manager_.GetRoutelist(list, category, multiLeg);
        V items;
        for (POSITION pos = list.GetHeadPosition(); pos != nullptr;)
            items.push_back(list.GetNext(pos));
        return items;
    }
    // Starts the manager on the server's texts.
    void Start() {
        Serve(server_);
        manager_.Init();
    }

    _com_ptr_t<FakeRouteServer> server_;
    RouteManager manager_;
};

TEST_F(RoutePlatform, ListTextIntoTheLists) {
    server_->texts = {
        {2,
         "ARCA,ARCX,,NSDQ,NSDQ,MultiLeg,ARCA,Second,,XX-Hidden,XX-H,,QA-T,QA-Test,,"
         "MID,Has QA- and XX-,,"},
        {0, "A,B,C"},
        {12, "no comma"},
        {3, "CBOE,Cboe,,ML,Legs,MultiLeg,MX,Legs too,multileg,"},
    };
    Start();
    EXPECT_EQ(List(2, false), (V{"Intelligent", "ARCX", "Has QA- and XX-", "NSDQ"}));
    EXPECT_EQ(List(2, true), (V{"Intelligent"}));  // equities multi-leg come from the file only
    EXPECT_EQ(List(0, false), (V{"Intelligent", "B"}));  // a last field without its comma
    EXPECT_EQ(List(12, false), (V{"Intelligent"}));
    EXPECT_EQ(List(8, false), (V{"Intelligent", "Cboe", "Legs", "Legs too"}));
    EXPECT_EQ(List(3, true), (V{"Legs"}));  // the kind is compared exactly
    EXPECT_EQ(manager_.GetDisplayValue("XX-Hidden"), "XX-Hidden");
    EXPECT_EQ(manager_.GetCode("Legs", 8), "ML");
    // Every category answered once, options with category 3 for both of their lists.
    EXPECT_EQ(server_->calls[2] + server_->calls[0] + server_->calls[12], 3);
    EXPECT_EQ(server_->calls[3], 2);
    EXPECT_EQ(server_->calls[8], 0);

    // Testing keeps "QA-" routes from now on, never "XX-" ones.
    SetTesting(1);
    manager_.Init();
    EXPECT_EQ(manager_.GetCode("QA-Test", 2), "QA-T");
    EXPECT_EQ(manager_.GetCode("XX-H", 2), "");

    // The lists go to the file, the options' multi-leg list among them.
    manager_.Uninit();
    Bytes expected;
    expected.U32(1)
        .U32(4)
        .Str("ARCA")
        .Str("ARCX")
        .Str("MID")
        .Str("Has QA- and XX-")
        .Str("NSDQ")
        .Str("NSDQ")
        .Str("QA-T")
        .Str("QA-Test")
        .U32(3)
        .Str("CBOE")
        .Str("Cboe")
        .Str("ML")
        .Str("Legs")
        .Str("MX")
        .Str("Legs too")
        .U32(1)
        .Str("A")
        .Str("B")
        .U32(0)
        .U32(0)
        .U32(1)
        .Str("ML")
        .Str("Legs")
        .U32(0)
        .U32(0);
    EXPECT_EQ(ReadCache(), expected.str());
}

TEST_F(RoutePlatform, EmptyAnswersAreAskedAgainAndLeaveTheFilesLists) {
    Bytes cache;
    cache.U32(1).U32(1).Str("OLD").Str("From file");
    for (int i = 0; i < 7; ++i)
        cache.U32(0);
    WriteCache(cache.str());
    server_->texts = {{2, "NEW,From server,,"}};
    server_->emptyAnswers = 2;
    Start();
    EXPECT_EQ(manager_.GetDisplayValue("OLD"), "From file");    // first request: empty
    EXPECT_EQ(manager_.GetCode("From file", 2), "OLD");         // second: empty again
    EXPECT_EQ(manager_.GetDisplayValue("NEW"), "From server");  // third: the list
    EXPECT_EQ(manager_.GetDisplayValue("OLD"), "OLD");          // replaced, and not asked again
    EXPECT_EQ(server_->calls[2], 3);
    EXPECT_EQ(server_->calls[0], 4);  // the futures have no list: asked at every lookup
}

TEST_F(RoutePlatform, WithoutRootOrRouteListTheFileServes) {
    Bytes cache;
    cache.U32(1).U32(1).Str("OLD").Str("From file");
    for (int i = 0; i < 7; ++i)
        cache.U32(0);
    WriteCache(cache.str());
    manager_.Init();  // the built-in platform has no root object
    EXPECT_EQ(manager_.GetDisplayValue("OLD"), "From file");
    server_->withoutRouteList = true;
    server_->texts = {{2, "NEW,From server,,"}};
    Start();
    EXPECT_EQ(manager_.GetDisplayValue("OLD"), "From file");
    server_->withoutRouteList = false;
    EXPECT_EQ(manager_.GetDisplayValue("OLD"), "From file");  // loaded: not asked again
    EXPECT_EQ(server_->calls[2], 0);
}

TEST_F(RoutePlatform, AFailingCallReachesTheCallerWithTheLockReleased) {
    server_->texts = {{2, "NEW,From server,,"}, {0, "F,Futures,,"}};
    server_->failure = E_ACCESSDENIED;
    Start();
    for (int i = 0; i < 2; ++i) {
        try {
            manager_.GetDisplayValue("NEW");
            ADD_FAILURE() << "no exception";
        } catch (const _com_error& error) {
            EXPECT_EQ(error.Error(), E_ACCESSDENIED);
        }
    }
    EXPECT_EQ(manager_.GetDisplayValue(""), "Intelligent");  // asks nothing
    CStringList list;
    EXPECT_THROW(manager_.GetRoutelist(list, 0, false), _com_error);
    EXPECT_TRUE(list.IsEmpty());
    // The flags stayed: asked on every use; the first failure ends the refresh.
    EXPECT_EQ(server_->calls[2], 2);
    EXPECT_EQ(server_->calls[0], 1);
    // Another thread gets the lock, and the next answer loads the lists.
    server_->failure = S_OK;
    std::thread([this] { EXPECT_EQ(manager_.GetDisplayValue("F"), "Futures"); }).join();
    EXPECT_EQ(manager_.GetCode("From server", 2), "NEW");
}

}  // namespace
}  // namespace qvox
