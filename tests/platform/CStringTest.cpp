#include "qvox/platform/CString.h"

#include <gtest/gtest.h>

#include "common/DecimalCommaLocale.h"

#include <climits>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

namespace qvox {
namespace {

template <typename... Args>
CString F(const char* format, const Args&... args) {
    CString s;
    s.Format(format, args...);
    return s;
}

TEST(CString, ConstructionNeverYieldsNull) {
    EXPECT_STREQ(CString(static_cast<const char*>(nullptr)), "");
    EXPECT_STREQ(CString(), "");
    EXPECT_EQ(CString("a\0b", 3).GetLength(), 3);
    EXPECT_TRUE(CString("abc", -1).IsEmpty());
    EXPECT_TRUE(CString(nullptr, 5).IsEmpty());
    EXPECT_EQ(CString('x', 3), "xxx");
    EXPECT_TRUE(CString('x', -2).IsEmpty());
    CString s = "abc";
    s = static_cast<const char*>(nullptr);
    s += static_cast<const char*>(nullptr);
    EXPECT_STREQ(s, "");
    const CString a = "a";
    EXPECT_EQ(a + "b" + 'c' + CString("d") + std::string("e"), "abcde");
    EXPECT_EQ('x' + a, "xa");
}

TEST(CString, ExtractionTrimAndSpansClampEveryArgument) {
    const CString s = "abcdef";
    // clang-format off
    const struct { CString got; const char* expected; } cases[] = {
        {s.Left(-1), ""}, {s.Left(3), "abc"}, {s.Left(99), "abcdef"}, {s.Right(-5), ""},
        {s.Right(2), "ef"}, {s.Right(99), "abcdef"}, {s.Mid(-2), "abcdef"}, {s.Mid(6), ""},
        {s.Mid(7), ""}, {s.Mid(2, 2), "cd"}, {s.Mid(-1, 3), "abc"}, {s.Mid(4, 99), "ef"},
        {s.Mid(2, -1), ""}, {s.Mid(1, INT_MAX), "bcdef"}, {s.Mid(INT_MAX, INT_MAX), ""},
        // Trimming: fixed white space (a no-break space is none), characters and sets.
        {CString(" \t\v\f\r\n x y \n").Trim(), "x y"}, {CString("\xA0x\xA0").Trim(), "\xA0x\xA0"}, {CString(" \t ").Trim(), ""},
        {CString("xxaxx").TrimLeft('x'), "axx"}, {CString("axyyx").TrimRight("xy"), "a"}, {CString(".-a-.").Trim(".-"), "a"},
        {CString(" a ").Trim(static_cast<const char*>(nullptr)), " a "}, {CString(" a ").TrimRight('\0'), " a "},
        // Spans of a set; a null set counts as empty.
        {CString("123abc").SpanIncluding("0123456789"), "123"}, {CString("ab;c").SpanExcluding(";,"), "ab"},
        {CString("ab").SpanIncluding(nullptr), ""}, {CString("ab").SpanExcluding(nullptr), "ab"},
    };
    // clang-format on
    for (const auto& c : cases)
        EXPECT_EQ(c.got.str(), c.expected);
    EXPECT_EQ(s.GetAt(-1), '\0');
    EXPECT_EQ(s[6], '\0');
    EXPECT_EQ(s[std::size_t{5}], 'f');
    CString t = s;
    t.SetAt(6, 'x');
    t.SetAt(-1, 'x');
    t.SetAt(0, 'A');
    EXPECT_EQ(t, "Abcdef");
}

TEST(CString, SearchReturnsMinusOneOutsideTheText) {
    const CString s = "abcabc";
    // clang-format off
    const struct { int got, expected; } cases[] = {
        {s.Find('c'), 2}, {s.Find('c', 3), 5}, {s.Find('a', -5), 0}, {s.Find('a', 99), -1},
        {s.Find("ca"), 2}, {s.Find("", 6), 6}, {s.Find("", 7), -1}, {s.Find(static_cast<const char*>(nullptr)), -1},
        {s.ReverseFind('b'), 4}, {s.ReverseFind('z'), -1}, {s.FindOneOf("zyc"), 2}, {s.FindOneOf(""), -1},
        {s.FindOneOf(nullptr), -1},
    };
    // clang-format on
    for (std::size_t i = 0; i < std::size(cases); ++i)
        EXPECT_EQ(cases[i].got, cases[i].expected) << "case " << i;
}

TEST(CString, CaseAndComparisonAreAsciiAndUnsigned) {
    EXPECT_EQ(CString("aZ\xE9\xC9").MakeUpper(), "AZ\xE9\xC9");
    EXPECT_EQ(CString("aZ\xE9\xC9").MakeLower(), "az\xE9\xC9");
    EXPECT_EQ(CString("ABC").CompareNoCase("abc"), 0);
    EXPECT_EQ(CString("a").CompareNoCase("B"), -1);
    EXPECT_NE(CString("\xE9").CompareNoCase("\xC9"), 0);
    EXPECT_TRUE(CString("\x80").Compare("a") == 1 && CString("ab").Compare("abc") == -1);
    EXPECT_EQ(CString("").Compare(nullptr), 0);
    EXPECT_TRUE(CString("\xFF") > "a");
    EXPECT_TRUE(CString() == static_cast<const char*>(nullptr));
}

TEST(CString, EditingCountsAndClamps) {
    CString s = "banana";
    EXPECT_TRUE(s.Remove('a') == 3 && s == "bnn");
    s = "aaaa";
    EXPECT_TRUE(s.Replace("aa", "b") == 2 && s == "bb");
    EXPECT_EQ(s.Replace('b', 'b'), 0);
    EXPECT_EQ(s.Replace("", "x"), 0);
    EXPECT_EQ(s.Replace(nullptr, "x"), 0);
    EXPECT_EQ(s.Replace("b", nullptr), 2);
    EXPECT_TRUE(s.IsEmpty());
    s = "abab";
    EXPECT_TRUE(s.Replace(s.GetString(), "x") == 1 && s == "x");  // the old text is the string

    s = "abc";
    EXPECT_EQ(s.Insert(-3, 'x'), 4);
    EXPECT_EQ(s.Insert(99, "yz"), 6);
    EXPECT_EQ(s.Insert(1, nullptr), 6);
    EXPECT_EQ(s.Insert(2, s.GetString()), 12);
    EXPECT_EQ(s, "xaxabcyzbcyz");
    EXPECT_EQ(s.Delete(2, 4), 8);
    EXPECT_EQ(s.Delete(-1, 2), 6);
    EXPECT_EQ(s.Delete(4, 99), 4);
    EXPECT_EQ(s.Delete(99), 4);
    EXPECT_EQ(s.Delete(1, -1), 4);
    EXPECT_EQ(s, "yzbc");
}

TEST(CString, Tokens) {
    const CString s = "  a,,bc ;d;";
    CString all;
    int start = 0;
    for (CString t = s.Tokenize(", ;", start); start != -1; t = s.Tokenize(", ;", start))
        all += t + "|";
    EXPECT_EQ(all, "a|bc|d|");

    start = 2;
    EXPECT_EQ(s.Tokenize("", start), "a,,bc ;d;");
    EXPECT_EQ(s.Tokenize("", start), "");  // the rest was one token: the end follows
    EXPECT_EQ(start, -1);
    EXPECT_TRUE(s.Tokenize(",", start) == "" && start == -1);
}

TEST(CString, BufferRoundTrips) {
    CString s = "ab";
    char* p = s.GetBuffer(10);
    EXPECT_EQ(std::string(p, 2), "ab");
    std::strcpy(p, "0123456789");
    s.ReleaseBuffer();
    EXPECT_EQ(s, "0123456789");
    std::memcpy(s.GetBufferSetLength(3), "xyz", 3);
    s.ReleaseBuffer(99);  // past the end: the length set stays
    EXPECT_EQ(s, "xyz");
    s.GetBuffer()[1] = '\0';
    s.ReleaseBuffer();
    EXPECT_EQ(s, "x");
}

// Each row is one conversion; the argument type is what the row is about.
TEST(CStringFormat, ConversionsFollowThePlatformRuntime) {
    // clang-format off
    const struct { CString got; const char* expected; } cases[] = {
        // Integer widths: l is 32 bits, narrower sizes cut, wider arguments are never cut.
        {F("%d|%u|%x|%o", 0xFFFFFFFFu, -1, -1, -1), "-1|4294967295|ffffffff|37777777777"},
        {F("%ld|%lu|%hd|%hhu|%hhd", 7u, -1, 70000, 0x1FF, 200), "7|4294967295|4464|255|-56"},
        {F("%lld|%lld|%I64d|%I64u", -1, 0xFFFFFFFFu, INT64_MIN, UINT64_MAX), "-1|4294967295|-9223372036854775808|18446744073709551615"},
        {F("%d|%u|%zu", std::int64_t{1} << 40, std::uint64_t{5}, std::size_t{9}), "1099511627776|5|9"},
        {F("%d|%u|%d", static_cast<signed char>(-1), static_cast<signed char>(-1), true), "-1|4294967295|1"},
        // Flags, width, precision, '*'.
        {F("%#x|%#X|%#o|%+d|% d|%05d|%.0d|%-4d|%.3d", 255, 255, 8, 5, 5, -42, 0, 3, 7), "0xff|0XFF|010|+5| 5|-0042||3   |007"},
        {F("%*d|%-*d|%*d|%.*f|%.*f", 4, 1, 3, 2, -3, 3, 2, 3.14159, -1, 0.5), "   1|2  |3  |3.14|0.500000"},
        // Floating conversions, written with "." whatever the locale.
        {F("%f|%.2f|%10.3e|%g|%g|%G", 1.5, 2.675, 12345.678, 0.0001, 1e-5, 1e20), "1.500000|2.67| 1.235e+04|0.0001|1e-05|1E+20"},
        {F("%#g|%#.3g|%#.0f|%#.0e|%+08.2f|%-8.1f|", 1.0, 100.0, 2.0, 3.0, -3.5, 0.25), "1.00000|100.|2.|3.e+00|-0003.50|0.2     |"},
        {F("%a|%A|%.1a|%a", 1.0, -0.5, 1.0, 0.0), "0x1.0000000000000p+0|-0X1.0000000000000P-1|0x1.0p+0|0x0.0000000000000p+0"},
        {F("%f|%5.1f|%-5f|%F|%05f", INFINITY, -INFINITY, NAN, INFINITY, INFINITY), "inf| -inf|nan  |INF|  inf"},
        // Text and characters.
        {F("%s|%5s|%-5s|%05s|%.2s|%s", "abc", "ab", "ab", "ab", "abcdef", nullptr), "abc|   ab|ab   |000ab|ab|(null)"},
        {F("%s|%s|%s|%.3s", CString("cs"), std::string("st"), std::string_view("svXX", 2), static_cast<const char*>(nullptr)), "cs|st|sv|(nu"},
        {F("%c%c%3c%-2c|", 'A', 0x142, 'x', 'y'), "AB  xy |"},
        {F("%lc%C%lc%wc", 0x20AC, 0xBD, 0x4E2D, u'\u2122'), "\x80\xBD?\x99"},
        {F("%p|%4p", reinterpret_cast<void*>(0x1234), static_cast<int*>(nullptr)), sizeof(void*) == 8 ? "0000000000001234|0000000000000000" : "00001234|00000000"},
        // Mismatched arguments have fixed outcomes.
        {F("%f|%e|%d|%u|%x", 7, 2u, 3.9, -2.5, -1.0), "7.000000|2.000000e+00|3|4294967294|ffffffff"},
        {F("%d|%d|%d|%lld", NAN, 1e300, -1e300, 5e9), "0|0|0|5000000000"},
        {F("%s|%s|%s|%4s", 42, -7LL, 0.1, 2.5), "42|-7|0.1| 2.5"},
        {F("%d|%5x|%f|%c", "t", "ab", "cd", "ef"), "t|   ab|cd|ef"},
        // Missing and extra arguments, %n, unknown conversions, a '%' at the end.
        {F("%d-%d-%s", 1), "1--"}, {F("%d", 1, 2, "extra"), "1"}, {F("%n%d", 5, 6), "6"},
        {F("%y|%5k|%%|%-3%|%d|%", 9), "%y|%5k|%|%|9|%"}, {F("%*d", 3), ""}, {F(nullptr, 1), ""},
    };
    // clang-format on
    for (const auto& c : cases)
        EXPECT_EQ(c.got.str(), c.expected);
}

TEST(CStringFormat, ArgumentsAndFormatsOfEveryOrigin) {
    // A char array is read up to its end when it has no NUL, and never beyond.
    const char unterminated[4] = {'a', 'b', 'c', 'd'};
    EXPECT_EQ(F("%s", unterminated), "abcd");
    // A bare pointer with a precision is read no further than the precision.
    const auto heap = std::make_unique<char[]>(3);
    std::memcpy(heap.get(), "xyz", 3);
    EXPECT_EQ(F("%.3s", static_cast<const char*>(heap.get())), "xyz");

    // The library builds formats at run time, and formats a string with itself.
    CString format;
    format.Format("%%.%df", 3);
    EXPECT_EQ(F(format, 1.0 / 3), "0.333");
    CString s;
    s.Format(std::string("%.1f"), 0.25);
    EXPECT_EQ(s, "0.2");
    s = "ab";
    s.Format("%s-%s", s, s);
    EXPECT_EQ(s, "ab-ab");
    s.AppendFormat("%s%d", s, 1);
    EXPECT_EQ(s, "ab-abab-ab1");

    enum class Side : std::int8_t { Sell = -1 };
    EXPECT_EQ(F("%d|%.300f", Side::Sell, 1.0).GetLength(), 2 + 1 + 302);
    EXPECT_EQ(F("%99999d", 1).GetLength(), 65535);
}

TEST(CStringFormat, DecimalPointIgnoresTheProcessLocale) {
    const testing::DecimalCommaLocale comma;
    QVOX_EXPECT_DECIMAL_COMMA(comma);
    EXPECT_EQ(F("%.2f|%g|%e|%s", 1.5, 0.25, 2.0, 0.5), "1.50|0.25|2.000000e+00|0.5");
}

}  // namespace
}  // namespace qvox
