// The cache file Routes.rlst: its bytes, what a damaged or hostile file leaves in the lists, a
// failed write, and the library's own store writing it when the process exits.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>

#include <chrono>
#include <cstdlib>

#include "qvox/vocabulary/COXUtil.h"
#include "routes/RouteTestSupport.h"

namespace qvox {
namespace {

using namespace testing;
using namespace std::string_literals;

class RouteCache : public RouteRoot {};

TEST_F(RouteCache, WritesThePlainFormOnceAndReadsEveryForm) {
    {
        RouteManager manager;
        manager.Uninit();  // not started: nothing
        EXPECT_FALSE(fs::exists(Cache()));
        manager.Init();
        manager.Uninit();
        EXPECT_EQ(ReadCache(), "\1\0\0\0"s + std::string(32, '\0'));  // 36 bytes
        WriteCache("kept");
    }  // the destructor does not write the emptied lists again
    EXPECT_EQ(ReadCache(), "kept");

    const std::string wide =
        "\xFF\xFE\xFF\x03"
        "A\0R\0C\0"
        "\xFF\xFE\xFF\x03"
        "\xAC\x20x\0y\0"s;
    const std::string longText = "\xFF\x2C\x01" + std::string(300, 'L');
    WriteCache(U32(2) + U32(3) + "\4NSDQ\4NSDQ\3QA1\7QA-Test\4NSDQ\6second" + U32(1) + wide +
               U32(1) + "\4GLBX" + longText + U32(0xFFFFFFFF) +
               CacheBytes(0, {{}, {{"ML", "Multi"}}, {}, {}}).substr(4));
    RouteManager manager;
    manager.Init();  // version 2 reads like 1; testing is off
    EXPECT_EQ(manager.GetDisplayValue("QA1"), "QA1");
    manager.Uninit();
    EXPECT_EQ(ReadCache(), U32(1) + U32(1) + "\x04NSDQ\x04NSDQ" + U32(1) + "\3ARC\3\x80xy" +
                               U32(1) + "\4GLBX" + longText + U32(0) + U32(0) + U32(1) +
                               "\2ML\5Multi" + U32(0) + U32(0));

    SetTesting(1);
    WriteCache(CacheBytes(1, {{{"QA1", "QA-Test"}, {"XX", "XX-Kept"}}}));
    manager.Init();
    EXPECT_EQ(manager.GetDisplayValue("QA1"), "QA-Test");
    EXPECT_EQ(manager.GetDisplayValue("XX"), "XX-Kept");  // only the platform's are dropped
}

TEST_F(RouteCache, DamagedAndHostileFilesLoadWhatWasRead) {
    const std::string good = CacheBytes(1, {{{"A", "a"}, {"B", "b"}}, {}, {{"F", "f"}}});
    const std::string pad(40, '\xFF');
    const std::pair<std::string, Items> cases[] = {
        {good, {"Intelligent", "a", "b", "Intelligent", "f"}},
        {good.substr(0, 15), {"Intelligent", "a", "Intelligent"}},  // cut inside an entry
        {"", {"Intelligent", "Intelligent"}},
        {CacheBytes(0, {{{"A", "a"}}}), {"Intelligent", "Intelligent"}},
        {"some text file of the user's\n", {"Intelligent", "Intelligent"}},
        // Counts and lengths that claim more than the file holds cost nothing.
        {(U32(1) + U32(0x7FFFFFFF) + "\1A\1a" + pad).substr(0, 40),
         {"Intelligent", "a", "Intelligent"}},
        {(U32(1) + U32(0x80000000) + "\1A\1a" + pad).substr(0, 40), {"Intelligent", "Intelligent"}},
        {U32(1) + U32(1) + "\xFF\xFF\xFF" + pad.substr(0, 10) + "\x3F",
         {"Intelligent", "Intelligent"}},
    };
    const auto start = std::chrono::steady_clock::now();
    for (const auto& [bytes, items] : cases) {
        WriteCache(bytes);
        RouteManager manager;
        manager.Init();
        Items shown = ListOf(manager, 2, false);
        for (const CString& item : ListOf(manager, 0, false))
            shown.push_back(item);
        EXPECT_EQ(shown, items) << bytes.size();
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
}

TEST_F(RouteCache, AFailedWriteOrNoFolderKeepsWhatIsThere) {
    const std::string old = CacheBytes(1, {{{"OLD", "old"}}});
    WriteCache(old);
    const auto saveUnderLimit = [&] {
        WriteCache(CacheBytes(1, {{{"NEW", std::string(200, 'n')}}}));
        RouteManager manager;
        manager.Init();
        WriteCache(old);
        ::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{64, 64};  // the write fails part way
        ::setrlimit(RLIMIT_FSIZE, &limit);
        manager.Uninit();
        std::_Exit(ReadCache() == old ? 0 : 1);
    };
    EXPECT_EXIT(saveUnderLimit(), ::testing::ExitedWithCode(0), "");
    EXPECT_EQ(ReadCache(), old);
    EXPECT_EQ(std::distance(fs::directory_iterator(root_ / "Program"), {}), 1);  // no leftovers

    fs::remove_all(root_ / "Program");
    RouteManager manager;
    manager.Init();
    manager.Uninit();
    EXPECT_FALSE(fs::exists(root_ / "Program"));
}

// What the threads of the child process see of the library's store.
bool FreeFunctionsAnswer() {
    CStringList list;
    list.AddTail("stale");  // emptied first
    GetRouteInfoList(list, 2, false);
    const char* arca = COXUtil::GetOrderRouteItem(1, 2);
    return GetRoute("NSDQ", "") == "Nasdaq" && GetRoute(" ALLC ", "x") == "Allocated" &&
           GetRoute("", "B1") == "Intelligent/B1" && GetRoute(" ARCA\t", "G") == "Arca/G" &&
           std::string_view(GetRouteCodeFromDisplayValue(" Nasdaq ", 2)) == "NSDQ" &&
           *GetRouteCodeFromDisplayValue("Nasdaq", 0) == '\0' && list.GetCount() == 3 &&
           COXUtil::GetOrderRouteCount(2) == 3 && COXUtil::GetOrderRouteCount(1) == 0 &&
           std::string_view(COXUtil::GetOrderRouteItem(0, 2)) == "Intelligent" &&
           std::string_view(arca) == "Arca" && arca == COXUtil::GetOrderRouteItem(1, 2) &&
           COXUtil::GetOrderRouteItem(3, 2) == nullptr;
}

TEST(RouteStore, StartsOnceAndWritesItsFileAtExit) {
    // The child is this program run anew, so that nothing of the platform exists in it before
    // the first route call; its root directory comes from QVOX_ROOT, inherited.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    if (std::getenv("QVOX_ROUTE_STORE_ROOT") == nullptr) {
        const fs::path root =
            fs::temp_directory_path() / ("qvox-store-" + std::to_string(::getpid()));
        ::setenv("QVOX_ROUTE_STORE_ROOT", root.c_str(), 1);
        ::setenv("QVOX_ROOT", root.c_str(), 1);
        fs::create_directories(root / "Program");
        std::ofstream(root / "Program" / "Routes.rlst", std::ios::binary)
            << CacheBytes(7, {{{"ARCA", "Arca"}, {"NSDQ", "Nasdaq"}, {"QAX", "QA-x"}}});
    }
    const fs::path root = std::getenv("QVOX_ROUTE_STORE_ROOT");
    const auto child = [] {
        std::atomic<int> right{0};
        Together(8, [&](int) { right += FreeFunctionsAnswer() ? 1 : 0; });
        // This thread's copies of the services end before the statics; exit ends those too.
        std::exit(right == 8 && FreeFunctionsAnswer() ? 0 : 3);
    };
    EXPECT_EXIT(child(), ::testing::ExitedWithCode(0), "");
    std::ifstream in(root / "Program" / "Routes.rlst", std::ios::binary);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in), {}),
              CacheBytes(1, {{{"ARCA", "Arca"}, {"NSDQ", "Nasdaq"}}}));
    fs::remove_all(root);
}

}  // namespace
}  // namespace qvox
