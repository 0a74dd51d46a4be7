// Unicode between its forms, whole-file reads and writes, file status, and folder walks.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "qvox/platform/CFile.h"
#include "qvox/platform/CFileFind.h"
#include "qvox/platform/CodePage.h"
#include "qvox/platform/WholeFile.h"

namespace qvox {
namespace {

TEST(Unicode, FormsRoundTripAndIllFormedTextIsReplaced) {
    const std::string text = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80";  // a, é, €, an emoji
    EXPECT_EQ(Utf8ToUtf16(text), u"a\u00E9\u20AC\U0001F600");
    EXPECT_EQ(Utf16ToUtf8(Utf8ToUtf16(text)), text);
    EXPECT_EQ(Utf8ToWide(text), L"a\u00E9\u20AC\U0001F600");
    EXPECT_EQ(WideToUtf8(Utf8ToWide(text)), text);
    struct Case {
        std::string utf8;
        std::u16string utf16;
    };
    const Case cases[] = {
        {"\x80", u"\uFFFD"},                                // stray continuation
        {"\xC0\xAF", u"\uFFFD\uFFFD"},                      // overlong
        {"\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD"},            // a surrogate
        {"\xE2\x82", u"\uFFFD"},                            // cut short at the end
        {"\xE2\x82x", u"\uFFFDx"},                          // cut short, then a character
        {"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},  // above U+10FFFF
    };
    for (const Case& c : cases)
        EXPECT_EQ(Utf8ToUtf16(c.utf8), c.utf16);
    EXPECT_EQ(Utf16ToUtf8(std::u16string(1, u'\xD800') + u"x"), "\xEF\xBF\xBDx");
    EXPECT_EQ(WideToUtf8(std::wstring(1, static_cast<wchar_t>(0x110000))), "\xEF\xBF\xBD");
}

class Files : public ::testing::Test {
  protected:
    void SetUp() override {
        std::string pattern = (std::filesystem::temp_directory_path() / "qvox-XXXXXX").string();
        ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
        root = pattern;
    }
    void TearDown() override { std::filesystem::remove_all(root); }
    std::string Make(const std::string& name, const std::string& bytes) const {
        std::ofstream(root / name, std::ios::binary) << bytes;
        return (root / name).string();
    }
    std::filesystem::path root;
};

TEST_F(Files, WholeFileReadsAndWrites) {
    std::string out = "stale";
    EXPECT_EQ(ReadWholeFile(Make("ok", "12345"), 5, out), ReadWholeFileResult::Ok);
    EXPECT_EQ(out, "12345");
    EXPECT_EQ(ReadWholeFile((root / "ok").string(), 4, out), ReadWholeFileResult::TooLarge);
    EXPECT_TRUE(out.empty());
    EXPECT_EQ(ReadWholeFile((root / "none").string(), 9, out), ReadWholeFileResult::Missing);
    EXPECT_EQ(ReadWholeFile(root.string(), 9, out), ReadWholeFileResult::NotAFile);
    ASSERT_EQ(::mkfifo((root / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(ReadWholeFile((root / "pipe").string(), 9, out), ReadWholeFileResult::NotAFile);

    // A replaced file keeps its permissions; the temporary file never stays.
    const std::string path = Make("kept", "old");
    ::chmod(path.c_str(), 0640);
    ASSERT_TRUE(WriteWholeFile(path, "new"));
    ASSERT_EQ(ReadWholeFile(path, 9, out), ReadWholeFileResult::Ok);
    EXPECT_EQ(out, "new");
    struct stat info {};
    ASSERT_EQ(::stat(path.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0640u);
    EXPECT_FALSE(WriteWholeFile((root / "no" / "such").string(), "x"));
    EXPECT_FALSE(WriteWholeFile(root.string() + "/", "x"));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(root),
                            std::filesystem::directory_iterator()),
              3);
}

TEST_F(Files, StatusAndFolderWalks) {
    CFileStatus status;
    EXPECT_FALSE(CFile::GetStatus((root / "none").c_str(), status));
    EXPECT_EQ(status, CFileStatus());
    const std::string file = Make("B.xml", "12");
    ASSERT_TRUE(CFile::GetStatus(file.c_str(), status));
    EXPECT_EQ(status.m_size, 2u);
    EXPECT_NE(status.m_mtime, 0);
    EXPECT_EQ(status.m_szFullName, file);
    ASSERT_TRUE(CFile::GetStatus(root.c_str(), status));
    EXPECT_EQ(status.m_attribute & CFileStatus::directory, CFileStatus::directory);

    Make("a.XML", "");
    Make("c.xmlx", "");
    Make("notes.txt", "");
    EXPECT_EQ(CreateDirectoryA((root.string() + "\\d.xml").c_str(), nullptr), TRUE);
    EXPECT_EQ(CreateDirectoryA((root / "d.xml").c_str(), nullptr), FALSE);  // there already
    EXPECT_EQ(CreateDirectoryA((root / "x" / "y").c_str(), nullptr), FALSE);
    CFileFind finder;
    std::string seen;
    for (bool more = finder.FindFile((root.string() + "\\*.xml").c_str()); more;) {
        more = finder.FindNextFile();
        seen += finder.GetFileName().str() + (finder.IsDirectory() ? "/ " : " ");
    }
    EXPECT_EQ(seen, "a.XML B.xml d.xml/ ");
    EXPECT_EQ(finder.GetFilePath(), root.string() + "\\d.xml");
    EXPECT_FALSE(finder.FindFile((root / "none" / "*").c_str()));
    EXPECT_EQ(finder.GetFileName(), "");

    const std::pair<const char*, const char*> matches[] = {
        {"abc", "a?c"},          {"abc", "*"}, {"abc", "*.*"},     {"a.b.c", "*.c"},
        {"ABC.xml", "abc*.XML"}, {"", "*"},    {"aXbXc", "a*b*c"},
    };
    for (const auto& [name, pattern] : matches)
        EXPECT_TRUE(MatchesWildcard(name, pattern)) << name << " " << pattern;
    const std::pair<const char*, const char*> misses[] = {
        {"abc", "a?"}, {"ab", "a?c"}, {"abc.xmlx", "*.xml"}, {"abcd", "a*c"}, {"", "?"},
    };
    for (const auto& [name, pattern] : misses)
        EXPECT_FALSE(MatchesWildcard(name, pattern)) << name << " " << pattern;
}

}  // namespace
}  // namespace qvox
