#include "qvox/platform/CodePage.h"

#include <array>
#include <type_traits>

namespace qvox {

namespace {

// Unicode of every byte, eight bytes a row; the row's first byte is in the comment.
constexpr std::array<char16_t, 256> kToUnicode = {
    0x0000, 0x0001, 0x0002, 0x0003, 0x0004, 0x0005, 0x0006, 0x0007,  // 00
    0x0008, 0x0009, 0x000A, 0x000B, 0x000C, 0x000D, 0x000E, 0x000F,  // 08
    0x0010, 0x0011, 0x0012, 0x0013, 0x0014, 0x0015, 0x0016, 0x0017,  // 10
    0x0018, 0x0019, 0x001A, 0x001B, 0x001C, 0x001D, 0x001E, 0x001F,  // 18
    0x0020, 0x0021, 0x0022, 0x0023, 0x0024, 0x0025, 0x0026, 0x0027,  // 20
    0x0028, 0x0029, 0x002A, 0x002B, 0x002C, 0x002D, 0x002E, 0x002F,  // 28
    0x0030, 0x0031, 0x0032, 0x0033, 0x0034, 0x0035, 0x0036, 0x0037,  // 30
    0x0038, 0x0039, 0x003A, 0x003B, 0x003C, 0x003D, 0x003E, 0x003F,  // 38
    0x0040, 0x0041, 0x0042, 0x0043, 0x0044, 0x0045, 0x0046, 0x0047,  // 40
    0x0048, 0x0049, 0x004A, 0x004B, 0x004C, 0x004D, 0x004E, 0x004F,  // 48
    0x0050, 0x0051, 0x0052, 0x0053, 0x0054, 0x0055, 0x0056, 0x0057,  // 50
    0x0058, 0x0059, 0x005A, 0x005B, 0x005C, 0x005D, 0x005E, 0x005F,  // 58
    0x0060, 0x0061, 0x0062, 0x0063, 0x0064, 0x0065, 0x0066, 0x0067,  // 60
    0x0068, 0x0069, 0x006A, 0x006B, 0x006C, 0x006D, 0x006E, 0x006F,  // 68
    0x0070, 0x0071, 0x0072, 0x0073, 0x0074, 0x0075, 0x0076, 0x0077,  // 70
    0x0078, 0x0079, 0x007A, 0x007B, 0x007C, 0x007D, 0x007E, 0x007F,  // 78
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,  // 80
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,  // 88
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,  // 90
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,  // 98
    0x00A0, 0x00A1, 0x00A2, 0x00A3, 0x00A4, 0x00A5, 0x00A6, 0x00A7,  // A0
    0x00A8, 0x00A9, 0x00AA, 0x00AB, 0x00AC, 0x00AD, 0x00AE, 0x00AF,  // A8
    0x00B0, 0x00B1, 0x00B2, 0x00B3, 0x00B4, 0x00B5, 0x00B6, 0x00B7,  // B0
    0x00B8, 0x00B9, 0x00BA, 0x00BB, 0x00BC, 0x00BD, 0x00BE, 0x00BF,  // B8
    0x00C0, 0x00C1, 0x00C2, 0x00C3, 0x00C4, 0x00C5, 0x00C6, 0x00C7,  // C0
    0x00C8, 0x00C9, 0x00CA, 0x00CB, 0x00CC, 0x00CD, 0x00CE, 0x00CF,  // C8
    0x00D0, 0x00D1, 0x00D2, 0x00D3, 0x00D4, 0x00D5, 0x00D6, 0x00D7,  // D0
    0x00D8, 0x00D9, 0x00DA, 0x00DB, 0x00DC, 0x00DD, 0x00DE, 0x00DF,  // D8
    0x00E0, 0x00E1, 0x00E2, 0x00E3, 0x00E4, 0x00E5, 0x00E6, 0x00E7,  // E0
    0x00E8, 0x00E9, 0x00EA, 0x00EB, 0x00EC, 0x00ED, 0x00EE, 0x00EF,  // E8
    0x00F0, 0x00F1, 0x00F2, 0x00F3, 0x00F4, 0x00F5, 0x00F6, 0x00F7,  // F0
    0x00F8, 0x00F9, 0x00FA, 0x00FB, 0x00FC, 0x00FD, 0x00FE, 0x00FF,  // F8
};

constexpr bool IsHighSurrogate(char32_t u) {
    return u >= 0xD800 && u <= 0xDBFF;
}
constexpr bool IsLowSurrogate(char32_t u) {
    return u >= 0xDC00 && u <= 0xDFFF;
}

char ToByte(char32_t code) noexcept {
    const int byte = UnicodeToCp1252(code);
    return byte < 0 ? '?' : static_cast<char>(byte);
}

template <typename Unit>
std::string FromUtf16(std::basic_string_view<Unit> text) {
    // One byte a unit at most: write in place, and cut what surrogate pairs left over.
    std::string out(text.size(), '\0');
    std::size_t written = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto unit = static_cast<char32_t>(text[i]);
        if (unit < 0x80) {
            out[written++] = static_cast<char>(unit);
            continue;
        }
        // No character beyond the BMP is in the code page, so a pair is one '?' like a lone half.
        if (IsHighSurrogate(unit) && i + 1 < text.size() &&
            IsLowSurrogate(static_cast<char32_t>(text[i + 1])))
            ++i;
        out[written++] = ToByte(unit);
    }
    out.resize(written);
    return out;
}

constexpr char32_t kReplacement = 0xFFFD;

// The characters of UTF-8 text, one at a time. Each ill-formed sequence (stray continuation,
// truncated or overlong sequence, surrogate, value above U+10FFFF) gives one kReplacement, found
// at the first byte that cannot belong: the allowed range of the second byte shuts out overlong
// forms, surrogates and values above U+10FFFF, and the byte that broke a sequence is read again.
template <typename Sink>
void DecodeUtf8(std::string_view text, Sink&& sink) {
    std::size_t i = 0;
    while (i < text.size()) {
        const auto lead = static_cast<unsigned char>(text[i++]);
        if (lead < 0x80) {
            sink(static_cast<char32_t>(lead));
            continue;
        }
        int more = 0;
        char32_t code = 0;
        unsigned char low = 0x80;
        unsigned char high = 0xBF;
        if (lead >= 0xC2 && lead <= 0xDF) {
            more = 1;
            code = lead & 0x1Fu;
        } else if (lead >= 0xE0 && lead <= 0xEF) {
            more = 2;
            code = lead & 0x0Fu;
            if (lead == 0xE0) low = 0xA0;
            if (lead == 0xED) high = 0x9F;
        } else if (lead >= 0xF0 && lead <= 0xF4) {
            more = 3;
            code = lead & 0x07u;
            if (lead == 0xF0) low = 0x90;
            if (lead == 0xF4) high = 0x8F;
        } else {
            sink(kReplacement);
            continue;
        }
        bool complete = true;
        for (; more > 0; --more) {
            if (i >= text.size()) {
                complete = false;
                break;
            }
            const auto next = static_cast<unsigned char>(text[i]);
            if (next < low || next > high) {
                complete = false;
                break;
            }
            code = (code << 6) | static_cast<char32_t>(next & 0x3F);
            ++i;
            low = 0x80;
            high = 0xBF;
        }
        sink(complete ? code : kReplacement);
    }
}

}  // namespace

char16_t Cp1252ToUnicode(unsigned char byte) noexcept {
    return kToUnicode[byte];
}

int UnicodeToCp1252(char32_t code) noexcept {
    if (code < kToUnicode.size() && kToUnicode[code] == code) return static_cast<int>(code);
    for (std::size_t b = 0x80; b < 0xA0; ++b) {
        if (kToUnicode[b] == code) return static_cast<int>(b);
    }
    return -1;
}

std::u16string Cp1252ToUtf16(std::string_view text) {
    std::u16string out(text.size(), u'\0');
    for (std::size_t i = 0; i < text.size(); ++i)
        out[i] = kToUnicode[static_cast<unsigned char>(text[i])];
    return out;
}

std::string Utf16ToCp1252(std::u16string_view text) {
    return FromUtf16(text);
}

std::wstring Cp1252ToWide(std::string_view text) {
    std::wstring out(text.size(), L'\0');
    for (std::size_t i = 0; i < text.size(); ++i)
        out[i] = static_cast<wchar_t>(kToUnicode[static_cast<unsigned char>(text[i])]);
    return out;
}

std::string WideToCp1252(std::wstring_view text) {
    if constexpr (sizeof(wchar_t) == 2) {
        return FromUtf16(text);
    } else {
        std::string out;
        out.reserve(text.size());
        // A negative wchar_t becomes a value above U+10FFFF, which no byte maps to.
        for (const wchar_t unit : text)
            out += ToByte(static_cast<char32_t>(unit));
        return out;
    }
}

std::string Cp1252ToUtf8(std::string_view text) {
    std::string out;
    out.reserve(text.size() + text.size() / 4);
    for (const char c : text) {
        const char16_t u = kToUnicode[static_cast<unsigned char>(c)];
        if (u < 0x80) {
            out += c;
        } else if (u < 0x800) {
            out += static_cast<char>(0xC0 | (u >> 6));
            out += static_cast<char>(0x80 | (u & 0x3F));
        } else {
            out += static_cast<char>(0xE0 | (u >> 12));
            out += static_cast<char>(0x80 | ((u >> 6) & 0x3F));
            out += static_cast<char>(0x80 | (u & 0x3F));
        }
    }
    return out;
}

std::string Utf8ToCp1252(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    // The replacement character is not in the code page, so an ill-formed sequence is one '?'.
    DecodeUtf8(text, [&](char32_t code) { out += ToByte(code); });
    return out;
}

namespace {

void AppendUtf8(std::string& out, char32_t code) {
    if (code >= 0xD800 && code <= 0xDFFF) code = kReplacement;
    if (code > 0x10FFFF) code = kReplacement;
    if (code < 0x80) {
        out += static_cast<char>(code);
    } else if (code < 0x800) {
        out += static_cast<char>(0xC0 | (code >> 6));
        out += static_cast<char>(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        out += static_cast<char>(0xE0 | (code >> 12));
        out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (code & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (code >> 18));
        out += static_cast<char>(0x80 | ((code >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (code & 0x3F));
    }
}

template <typename Unit>
void AppendUtf16(std::basic_string<Unit>& out, char32_t code) {
    if (code < 0x10000) {
        out += static_cast<Unit>(code);
    } else {
        code -= 0x10000;
        out += static_cast<Unit>(0xD800 + (code >> 10));
        out += static_cast<Unit>(0xDC00 + (code & 0x3FF));
    }
}

// UTF-16 units to characters; an unpaired surrogate gives kReplacement.
template <typename Unit>
std::string Utf16UnitsToUtf8(std::basic_string_view<Unit> text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        auto unit = static_cast<char32_t>(static_cast<std::make_unsigned_t<Unit>>(text[i]));
        if (IsHighSurrogate(unit) && i + 1 < text.size() &&
            IsLowSurrogate(static_cast<char32_t>(text[i + 1]))) {
            unit = 0x10000 + ((unit - 0xD800) << 10) + (static_cast<char32_t>(text[++i]) - 0xDC00);
        }
        AppendUtf8(out, unit);
    }
    return out;
}

}  // namespace

std::u16string Utf8ToUtf16(std::string_view text) {
    std::u16string out;
    out.reserve(text.size());
    DecodeUtf8(text, [&out](char32_t code) { AppendUtf16(out, code); });
    return out;
}

std::string Utf16ToUtf8(std::u16string_view text) {
    return Utf16UnitsToUtf8(text);
}

std::wstring Utf8ToWide(std::string_view text) {
    std::wstring out;
    out.reserve(text.size());
    if constexpr (sizeof(wchar_t) == 2) {
        DecodeUtf8(text, [&out](char32_t code) { AppendUtf16(out, code); });
    } else {
        DecodeUtf8(text, [&out](char32_t code) { out += static_cast<wchar_t>(code); });
    }
    return out;
}

std::string WideToUtf8(std::wstring_view text) {
    if constexpr (sizeof(wchar_t) == 2) {
        return Utf16UnitsToUtf8(text);
    } else {
        std::string out;
        out.reserve(text.size());
        // A negative wchar_t becomes a value above U+10FFFF, which is replaced.
        for (const wchar_t unit : text)
            AppendUtf8(out,
                       static_cast<char32_t>(static_cast<std::make_unsigned_t<wchar_t>>(unit)));
        return out;
    }
}

}  // namespace qvox
