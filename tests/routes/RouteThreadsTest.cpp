// Many threads on one route manager while the platform's lists come in: every answer is one the
// lists could give at some moment, each category is fetched until it loads and never after, and
// ThreadSanitizer (scripts/test --tsan) sees no race, also while the lists restart and copies are
// taken.
#include <gtest/gtest.h>

#include "routes/RouteTestSupport.h"

namespace qvox {
namespace {

using namespace testing;

class RouteThreads : public RouteRoot {
  protected:
    // 600 rounds of lookups in each of eight threads, with beside() repeated in one more until
    // they end; the number of answers that no state of the lists gives.
    int Run(const std::function<void()>& beside) {
        static const std::tuple<const char*, const char*, LONG> routes[] = {
            {"ARCA", "Arca", 2}, {"NSDQ", "Nasdaq", 2}, {"GLBX", "Globex", 0},
            {"FXC", "Fx", 12},   {"CBOE", "Cboe", 3},   {"ML", "Legs", 8}};
        std::atomic<int> wrong{0}, running{8};
        Together(9, [&](int t) {
            for (int round = t; t == 8 ? running > 0 : round < t + 600; ++round) {
                if (t == 8) {
                    beside();
                    continue;
                }
                const auto& [code, display, category] = routes[round % 6];
                const CString shown = manager_.GetDisplayValue(code);
                const CString found = manager_.GetCode(display, category);
                const auto list = ListOf(manager_, static_cast<ULONG>(category), round % 2);
                wrong += (shown == display || shown == code) && (found == code || found == "") &&
                                 list.size() <= 3
                             ? 0
                             : 1;
            }
            if (t < 8) --running;
        });
        return wrong;
    }

    RouteManager manager_;
};

TEST_F(RouteThreads, LookupsWhileCategoriesAreFetched) {
    // Forty empty answers each before the lists come.
    FakeRouteServer& server = Serve({{2, "ARCA,Arca,,NSDQ,Nasdaq,,"},
                                     {0, "GLBX,Globex,,"},
                                     {12, "FXC,Fx,,"},
                                     {3, "CBOE,Cboe,,ML,Legs,MultiLeg,"}},
                                    40);
    manager_.Init();
    EXPECT_EQ(Run([] { std::this_thread::yield(); }), 0);
    // Never asked again once loaded; options ask for two lists a time, the second counting.
    for (std::size_t category : {2u, 0u, 12u})
        EXPECT_EQ(server.calls[category], 41) << category;
    EXPECT_EQ(server.calls[3], 42);

    // Init empties the lists and makes every category ask again; a copy takes them whole (and,
    // started, writes the file when it ends).
    bool restart = false;
    EXPECT_EQ(Run([&] {
                  if ((restart = !restart)) {
                      manager_.Init();
                  } else {
                      RouteManager copy(manager_);
                      EXPECT_TRUE(copy.GetDisplayValue("GLBX") == "Globex" ||
                                  copy.GetDisplayValue("GLBX") == "GLBX");
                  }
              }),
              0);
}

}  // namespace
}  // namespace qvox
