// Many threads on one route manager while the platform's lists come in: every answer is one the
// lists could give at some moment, each category is fetched until it loads and never after, and
// ThreadSanitizer (scripts/test --tsan) sees no race.
#include <gtest/gtest.h>

#include <latch>
#include <thread>

#include "qvox/routes/RouteManager.h"
#include "routes/RouteTestSupport.h"

namespace qvox {
namespace {

using testing::FakeRouteServer;

class RouteThreads : public testing::RouteRoot {
  protected:
    RouteThreads() {
        server_ = MakeComObject<FakeRouteServer>();
        server_->texts = {{2, "ARCA,Arca,,NSDQ,Nasdaq,,"},
                          {0, "GLBX,Globex,,"},
                          {12, "FXC,Fx,,"},
                          {3, "CBOE,Cboe,,ML,Legs,MultiLeg,"}};
        server_->emptyAnswers = 40;  // each category is fetched many times before it loads
        Serve(server_);
        manager_.Init();
    }

    // One round of lookups; false at an answer that no state of the lists gives.
    bool Lookups(int round) {
        static const struct {
            const char* code;
            const char* display;
            LONG category;
        } routes[] = {{"ARCA", "Arca", 2}, {"NSDQ", "Nasdaq", 2}, {"GLBX", "Globex", 0},
                      {"FXC", "Fx", 12},   {"CBOE", "Cboe", 3},   {"ML", "Legs", 8}};
        const auto& route = routes[round % 6];
        const CString display = manager_.GetDisplayValue(route.code);
        const CString code = manager_.GetCode(route.display, route.category);
        CStringList list;
        manager_.GetRoutelist(list, static_cast<ULONG>(route.category), round % 2 == 0);
        return (display == route.display || display == route.code) &&
               (code == route.code || code.IsEmpty()) && list.GetCount() <= 3 &&
               manager_.IsInitialized();
    }

    static constexpr int kThreads = 8;
    static constexpr int kRounds = 600;
    _com_ptr_t<FakeRouteServer> server_;
    RouteManager manager_;
};

TEST_F(RouteThreads, LookupsWhileCategoriesAreFetched) {
    std::latch start(kThreads);
    std::atomic<int> wrong{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&, t] {
            start.arrive_and_wait();
            for (int round = t; round < t + kRounds; ++round)
                wrong += Lookups(round) ? 0 : 1;
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(wrong, 0);
    // Forty empty answers, then the list: never asked again once loaded. Options ask twice a
    // time (the regular list, then the multi-leg one whose answer counts).
    for (std::size_t category : {2u, 0u, 12u})
        EXPECT_EQ(server_->calls[category], 41) << category;
    EXPECT_EQ(server_->calls[3], 42);
    EXPECT_EQ(manager_.GetDisplayValue("NSDQ"), "Nasdaq");
}

TEST_F(RouteThreads, RestartsAndCopiesWhileOthersLookUp) {
    std::latch start(kThreads + 2);
    std::atomic<int> wrong{0};
    std::atomic<bool> done{false};
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&, t] {
            start.arrive_and_wait();
            for (int round = t; round < t + kRounds; ++round)
                wrong += Lookups(round) ? 0 : 1;
        });
    }
    // Init empties the lists and makes every category ask again; a copy takes the lists whole.
    std::thread restarter([&] {
        start.arrive_and_wait();
        while (!done) {
            manager_.Init();
            std::this_thread::yield();
        }
    });
    std::thread copier([&] {
        start.arrive_and_wait();
        while (!done) {
            RouteManager copy(manager_);  // started: it writes the file when it ends
            const CString shown = copy.GetDisplayValue("GLBX");
            wrong += shown == "Globex" || shown == "GLBX" ? 0 : 1;
        }
    });
    for (std::thread& thread : threads)
        thread.join();
    done = true;
    restarter.join();
    copier.join();
    EXPECT_EQ(wrong, 0);
}

}  // namespace
}  // namespace qvox
