#include "qvox/platform/CodePage.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>

namespace qvox {
namespace {

std::string AllBytes() {
    std::string all(256, '\0');
    for (int b = 0; b < 256; ++b)
        all[static_cast<std::size_t>(b)] = static_cast<char>(b);
    return all;
}

TEST(CodePage, TableAgainstKnownCharacters) {
    // clang-format off
    const struct { unsigned char byte; char16_t code; } rows[] = {
        {0x41, u'A'}, {0x80, u'\u20AC'}, {0x81, u'\u0081'}, {0x8D, u'\u008D'}, {0x8F, u'\u008F'},
        {0x90, u'\u0090'}, {0x9D, u'\u009D'}, {0x99, u'\u2122'}, {0x9F, u'\u0178'},
        {0xA0, u'\u00A0'}, {0xBC, u'\u00BC'}, {0xBD, u'\u00BD'}, {0xFF, u'\u00FF'},
    };
    // clang-format on
    for (const auto& r : rows) {
        EXPECT_EQ(Cp1252ToUnicode(r.byte), r.code) << int{r.byte};
        EXPECT_EQ(UnicodeToCp1252(r.code), r.byte) << int{r.byte};
    }
    int moved = 0;
    for (int b = 0; b < 256; ++b) {
        const char16_t u = Cp1252ToUnicode(static_cast<unsigned char>(b));
        EXPECT_EQ(UnicodeToCp1252(u), b);
        moved += u != b;
    }
    EXPECT_EQ(moved, 27);
    for (const char32_t code :
         {U'\u0080', U'\u0100', char32_t{0xD800}, U'\uFFFD', char32_t{0x110000}})
        EXPECT_EQ(UnicodeToCp1252(code), -1) << static_cast<unsigned>(code);

    // Every byte through each encoding and back.
    const std::string all = AllBytes();
    EXPECT_EQ(Utf16ToCp1252(Cp1252ToUtf16(all)), all);
    EXPECT_EQ(WideToCp1252(Cp1252ToWide(all)), all);
    EXPECT_EQ(Utf8ToCp1252(Cp1252ToUtf8(all)), all);
    // The fraction marks of the price scale texts.
    EXPECT_EQ(Cp1252ToUtf8("1/10 and \xBC of 10th \xBD"), "1/10 and \u00BC of 10th \u00BD");
    EXPECT_EQ(Cp1252ToUtf16("\xBC\xBD\x80"), u"\u00BC\u00BD\u20AC");
    EXPECT_EQ(Cp1252ToWide("\xBD"), L"\u00BD");
}

TEST(CodePage, UnmappableAndBrokenUnicodeBecomesQuestionMarks) {
    EXPECT_EQ(Utf16ToCp1252(u"a\U0001F600b\u4E2D\u20AC"), "a?b?\x80");
    const char16_t lone[] = {0xD800, u'x', 0xDC00, 0xD83D};
    EXPECT_EQ(Utf16ToCp1252(std::u16string_view(lone, 4)), "?x??");
    const wchar_t wide[] = {L'\u2122', static_cast<wchar_t>(0xDC00), L'y'};
    EXPECT_EQ(WideToCp1252(std::wstring_view(wide, 3)), "\x99?y");

    // clang-format off
    const struct { const char* utf8; const char* expected; } rows[] = {
        {"a\xC2\xBD" "b", "a\xBD" "b"}, {"\xE2\x82\xAC\xC5\x93", "\x80\x9C"},
        {"\xF0\x9F\x98\x80", "?"},          // valid, but not in the code page
        {"\xEF\xBB\xBF", "?"},              // a byte-order mark is a character like any other
        {"\x80\xBF", "??"},                 // continuation bytes without a lead
        {"\xC3(", "?("},                    // lead cut short
        {"\xE2\x82", "?"},                  // truncated at the end
        {"\xC0\xAF\xC1\xBF", "????"},       // overlong two-byte forms
        {"\xE0\x80\xAF", "???"},            // overlong three-byte form
        {"\xED\xA0\x80", "???"},            // surrogate
        {"\xF4\x90\x80\x80", "????"},       // above U+10FFFF
        {"\xF8\x88\x80\x80\x80", "?????"},  // five-byte form
        {"\xFF\xFE", "??"},
    };
    // clang-format on
    for (const auto& r : rows)
        EXPECT_EQ(Utf8ToCp1252(r.utf8), r.expected) << r.utf8;

    // A sequence cut by the end of an exactly sized buffer is not read past.
    const auto cut = std::make_unique<char[]>(2);
    std::memcpy(cut.get(), "\xE2\x82", 2);
    EXPECT_EQ(Utf8ToCp1252(std::string_view(cut.get(), 2)), "?");
}

}  // namespace
}  // namespace qvox
