// The library's one route store, seen from a process of its own: started once by whichever of
// many threads comes first, it serves the free functions and writes its file when the process
// exits, while the platform services it needs are still there.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <latch>
#include <thread>
#include <vector>

#include "qvox/routes/RouteManager.h"
#include "qvox/vocabulary/COXUtil.h"
#include "routes/RouteTestSupport.h"

namespace qvox {
namespace {

namespace fs = std::filesystem;
using testing::Bytes;
using namespace std::string_literals;

// What the threads of the child see; false at the first wrong answer.
bool FreeFunctionsAnswer() {
    CStringList list;
    list.AddTail("stale");
    GetRouteInfoList(list, 2, false);
    CStringList none;
    GetRouteInfoList(none, 1, false);
    const char* second = COXUtil::GetOrderRouteItem(1, 2);
    return GetRoute("NSDQ", "") == "Nasdaq" && GetRoute(" ALLC ", "x") == "Allocated" &&
           GetRoute("", "B1") == "Intelligent/B1" && GetRoute("ZZZZ", nullptr) == "ZZZZ" &&
           GetRoute(" ARCA\t", "G") == "Arca/G" &&
           std::string_view(GetRouteCodeFromDisplayValue(" Nasdaq ", 2)) == "NSDQ" &&
           std::string_view(GetRouteCodeFromDisplayValue("Intelligent", 2)).empty() &&
           std::string_view(GetRouteCodeFromDisplayValue("Nasdaq", 0)).empty() &&
           list.GetCount() == 3 && list.GetHead() == "Intelligent" && none.IsEmpty() &&
           COXUtil::GetOrderRouteCount(2) == 3 && COXUtil::GetOrderRouteCount(1) == 0 &&
           std::string_view(COXUtil::GetOrderRouteItem(0, 2)) == "Intelligent" &&
           second != nullptr && std::string_view(second) == "Arca" &&
           // The item is the store's own text, the same on every call.
           second == COXUtil::GetOrderRouteItem(1, 2) &&
           COXUtil::GetOrderRouteItem(3, 2) == nullptr &&
           COXUtil::GetOrderRouteItem(0, 1) == nullptr;
}

TEST(RouteStore, StartsOnceAndWritesItsFileAtExit) {
    // The child is this program run anew, so that nothing of the platform exists in it before
    // the first route call: its directory comes from QVOX_ROOT, inherited.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    if (std::getenv("QVOX_ROUTE_STORE_ROOT") == nullptr) {
        const fs::path root =
            fs::temp_directory_path() / ("qvox-route-store-" + std::to_string(::getpid()));
        ::setenv("QVOX_ROUTE_STORE_ROOT", root.c_str(), 1);
        ::setenv("QVOX_ROOT", root.c_str(), 1);
        fs::remove_all(root);
        fs::create_directories(root / "Program");
        Bytes cache;
        cache.U32(7)
            .U32(3)
            .Str("ARCA")
            .Str("Arca")
            .Str("NSDQ")
            .Str("Nasdaq")
            .Str("QAX")
            .Str("QA-x")
            .U32(0)
            .U32(0)
            .U32(0)
            .U32(0)
            .U32(1)
            .Raw(
                "\xFF\xFE\xFF\x02"
                "M\0L\0"
                "\x02"
                "ml"s)
            .U32(0)
            .U32(0);
        std::ofstream(root / "Program" / "Routes.rlst", std::ios::binary) << cache.str();
    }
    const fs::path root = std::getenv("QVOX_ROUTE_STORE_ROOT");

    const auto child = [] {
        constexpr int kThreads = 8;
        std::latch start(kThreads);
        std::vector<int> answers(kThreads, 0);
        std::vector<std::thread> threads;
        for (int i = 0; i < kThreads; ++i) {
            threads.emplace_back([&, i] {
                start.arrive_and_wait();
                answers[static_cast<std::size_t>(i)] = FreeFunctionsAnswer() ? 1 : 0;
            });
        }
        for (std::thread& thread : threads)
            thread.join();
        // This thread's copies of the services end before the statics do.
        if (!FreeFunctionsAnswer()) std::exit(4);
        // exit, not _Exit: the statics end, the route store among them.
        std::exit(std::count(answers.begin(), answers.end(), 1) == kThreads ? 0 : 3);
    };
    EXPECT_EXIT(child(), ::testing::ExitedWithCode(0), "");

    // The file as the store wrote it: version 1, the test-only route gone, the wide text narrow.
    std::ifstream in(root / "Program" / "Routes.rlst", std::ios::binary);
    Bytes expected;
    expected.U32(1)
        .U32(2)
        .Str("ARCA")
        .Str("Arca")
        .Str("NSDQ")
        .Str("Nasdaq")
        .U32(0)
        .U32(0)
        .U32(0)
        .U32(0)
        .U32(1)
        .Str("ML")
        .Str("ml")
        .U32(0)
        .U32(0);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in), {}), expected.str());
    fs::remove_all(root);
}

}  // namespace
}  // namespace qvox
