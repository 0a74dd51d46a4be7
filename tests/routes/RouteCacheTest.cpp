// The cache file Routes.rlst: its bytes, and what a damaged, foreign or hostile file leaves in
// the lists.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>

#include <chrono>

#include "qvox/routes/RouteManager.h"
#include "routes/RouteTestSupport.h"

namespace qvox {
namespace {

namespace fs = std::filesystem;
using testing::Bytes;
using namespace std::string_literals;

class RouteCache : public testing::RouteRoot {
  protected:
    static std::vector<CString> Items(RouteManager& manager, ULONG category, bool multiLeg) {
        CStringList list;
        manager.GetRoutelist(list, category, multiLeg);
        std::vector<CString> items;
        for (POSITION pos = list.GetHeadPosition(); pos != nullptr;)
            items.push_back(list.GetNext(pos));
        return items;
    }
    // The eight counts of a file with no routes.
    static Bytes& EmptyBlocks(Bytes& bytes, int blocks = 8) {
        for (int i = 0; i < blocks; ++i)
            bytes.U32(0);
        return bytes;
    }
};

TEST_F(RouteCache, EmptyManagerWritesThirtySixBytesOnce) {
    {
        RouteManager manager;
        manager.Uninit();  // not started: writes nothing
        EXPECT_FALSE(fs::exists(Cache()));
        manager.Init();
        EXPECT_TRUE(manager.IsInitialized());
        manager.Uninit();
        EXPECT_FALSE(manager.IsInitialized());
        Bytes expected;
        EXPECT_EQ(ReadCache(), EmptyBlocks(expected.U32(1)).str());
        EXPECT_EQ(ReadCache().size(), 36u);
        WriteCache("kept");
    }  // the destructor does not write the emptied lists again
    EXPECT_EQ(ReadCache(), "kept");
    EXPECT_EQ(std::distance(fs::directory_iterator(root_ / "Program"), {}), 1);
}

TEST_F(RouteCache, ReadsEveryFormAndWritesThePlainOne) {
    const std::string longDisplay(300, 'L');
    Bytes file;
    file.U32(2)  // a later version reads like 1
        .U32(3)
        .Str("NSDQ")
        .Str("NSDQ")
        .Str("QA1")
        .Str("QA-Test")
        .Str("NSDQ")
        .Str("second")
        .U32(1)
        .Raw(
            "\xFF\xFE\xFF\x03"
            "A\0R\0C\0"
            "\xFF\xFE\xFF\x03"
            "\xAC\x20x\0y\0"s)
        .U32(1)
        .Str("GLBX")
        .Raw("\xFF\x2C\x01" + longDisplay)
        .U32(0xFFFFFFFF)  // a count below 0: no entries
        .U32(0)
        .U32(1)
        .Str("MLEG")
        .Str("Multi")
        .U32(0)
        .U32(1)
        .Str("FXML")
        .Str("Fx multi");
    WriteCache(file.str());
    RouteManager manager;
    manager.Init();
    EXPECT_EQ(manager.GetDisplayValue("NSDQ"), "NSDQ");   // the first of two entries stays
    EXPECT_EQ(manager.GetDisplayValue("QA1"), "QA1");     // testing is off: dropped
    EXPECT_EQ(manager.GetDisplayValue("ARC"), "\x80xy");  // wide text in the code page
    EXPECT_EQ(manager.GetDisplayValue("GLBX").GetLength(), 300);
    manager.Uninit();

    Bytes written;
    written.U32(1)
        .U32(1)
        .Raw("\x04NSDQ\x04NSDQ")  // a block with the single route "NSDQ"
        .U32(1)
        .Str("ARC")
        .Str("\x80xy")
        .U32(1)
        .Str("GLBX")
        .Raw("\xFF\x2C\x01" + longDisplay)
        .U32(0)
        .U32(0)
        .U32(1)
        .Str("MLEG")
        .Str("Multi")
        .U32(0)
        .U32(1)
        .Str("FXML")
        .Str("Fx multi");
    EXPECT_EQ(ReadCache(), written.str());

    SetTesting(1);
    WriteCache(file.str());
    manager.Init();
    EXPECT_EQ(manager.GetDisplayValue("QA1"), "QA-Test");
}

TEST_F(RouteCache, DamagedAndHostileFilesLoadWhatWasRead) {
    const auto loaded = [this](const std::string& bytes) {
        WriteCache(bytes);
        RouteManager manager;
        manager.Init();
        std::vector<CString> shown = Items(manager, 2, false);
        for (const CString& item : Items(manager, 0, false))
            shown.push_back(item);
        return shown;
    };
    using V = std::vector<CString>;
    Bytes good;
    good.U32(1).U32(2).Str("A").Str("a").Str("B").Str("b").U32(0).U32(1).Str("F").Str("f");
    EXPECT_EQ(loaded(good.str()), (V{"Intelligent", "a", "b", "Intelligent", "f"}));
    // Cut inside the second entry's display: the first entry stays, later blocks are empty.
    EXPECT_EQ(loaded(good.str().substr(0, 15)), (V{"Intelligent", "a", "Intelligent"}));
    EXPECT_EQ(loaded(""), (V{"Intelligent", "Intelligent"}));
    Bytes versionZero;
    versionZero.U32(0).U32(1).Str("A").Str("a");
    EXPECT_EQ(loaded(versionZero.str()), (V{"Intelligent", "Intelligent"}));
    EXPECT_EQ(loaded("this is not a route cache, but some text file of the user's\n"),
              (V{"Intelligent", "Intelligent"}));

    // Counts and lengths that claim more than the file holds cost nothing.
    const auto start = std::chrono::steady_clock::now();
    for (std::uint32_t count : {0x7FFFFFFFu, 0x80000000u}) {
        Bytes hostile;
        hostile.U32(1).U32(count).Str("A").Str("a");
        while (hostile.str().size() < 40)
            hostile.Raw("\xFF");
        EXPECT_EQ(loaded(hostile.str()).size(), count == 0x80000000u ? 2u : 3u) << count;
    }
    Bytes hugeString;
    hugeString.U32(1).U32(1).Raw(
        "\xFF\xFF\xFF\xFF\xFF\xFF\xFF"
        "\xFF\xFF\xFF\xFF\xFF\xFF\x3F");
    EXPECT_EQ(loaded(hugeString.str()), (V{"Intelligent", "Intelligent"}));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
}

TEST_F(RouteCache, NoFolderOrAFailedWriteKeepsTheOldFile) {
    Bytes old;
    old.U32(1).U32(1).Str("OLD").Str("old");
    EXPECT_EQ(EmptyBlocks(old, 7).str().size(), 44u);
    WriteCache(old.str());
    // A write that fails part way, under a file size limit in a child process.
    const auto saveUnderLimit = [&] {
        Bytes big;
        big.U32(1).U32(1).Str("NEW").Str(std::string(200, 'n'));
        WriteCache(EmptyBlocks(big, 7).str());
        RouteManager manager;
        manager.Init();
        WriteCache(old.str());
        ::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{64, 64};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        manager.Uninit();
        std::_Exit(ReadCache() == old.str() ? 0 : 1);
    };
    EXPECT_EXIT(saveUnderLimit(), ::testing::ExitedWithCode(0), "");
    EXPECT_EQ(ReadCache(), old.str());
    EXPECT_EQ(std::distance(fs::directory_iterator(root_ / "Program"), {}), 1);  // no leftovers

    // No Program folder: nothing is read or written.
    fs::remove_all(root_ / "Program");
    RouteManager manager;
    manager.Init();
    manager.Uninit();
    EXPECT_FALSE(fs::exists(root_ / "Program"));
}

}  // namespace
}  // namespace qvox
