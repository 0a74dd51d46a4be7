// The platform's single-byte code page, Windows-1252, and its conversions to and from Unicode.
// Every byte has a character: the five bytes the code page leaves undefined (0x81, 0x8D, 0x8F,
// 0x90, 0x9D) stand for the C1 controls of the same value, so single-byte text survives a round
// trip through Unicode unchanged. Characters outside the code page become '?', with no best-fit
// guessing.
#pragma once

#include <string>
#include <string_view>

namespace qvox {

// The Unicode character of one byte; never fails.
char16_t Cp1252ToUnicode(unsigned char byte) noexcept;

// The byte of one character, or -1 when the code page has none (surrogates and values above
// U+10FFFF included).
int UnicodeToCp1252(char32_t code) noexcept;

// One UTF-16 unit per byte.
std::u16string Cp1252ToUtf16(std::string_view text);

// One byte per character: an unmappable character gives '?', a surrogate pair one '?', and an
// unpaired surrogate '?'.
std::string Utf16ToCp1252(std::u16string_view text);

// As the UTF-16 pair above; wchar_t holds UTF-32 where it is 32 bits and UTF-16 where it is 16.
// A 32-bit value that is no character (a surrogate, above U+10FFFF) gives '?'.
std::wstring Cp1252ToWide(std::string_view text);
std::string WideToCp1252(std::wstring_view text);

// Bytes 0x80-0xFF become two or three UTF-8 bytes.
std::string Cp1252ToUtf8(std::string_view text);

// Each ill-formed UTF-8 sequence (stray continuation, truncated or overlong sequence, surrogate,
// value above U+10FFFF) gives one '?' per maximal invalid prefix, and decoding resumes at the
// next byte that could start a character. Never reads past the end of text.
std::string Utf8ToCp1252(std::string_view text);

// Between the Unicode forms, for text that is not held in the code page (XML documents). An
// ill-formed sequence (in UTF-8 as above; an unpaired surrogate or a value above U+10FFFF in
// UTF-16 or wchar_t) becomes U+FFFD, the replacement character. Never reads past the end.
std::u16string Utf8ToUtf16(std::string_view text);
std::string Utf16ToUtf8(std::u16string_view text);
std::wstring Utf8ToWide(std::string_view text);
std::string WideToUtf8(std::wstring_view text);

}  // namespace qvox
