// CString: single-byte text in the platform's code page (Windows-1252) with the member names and
// the clamping rules of the platform's string class. Nothing here consults the C locale: case
// folding is ASCII-only, white space is " \t\n\v\f\r", and Format writes "." as the decimal point.
//
// Positions and lengths are `int`, as on the platform. Every member is defined for every argument:
// where the platform would assert, the member clamps or does nothing, as its comment says.
#pragma once

#include <algorithm>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iosfwd>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "qvox/platform/WinTypes.h"

namespace qvox {

class CString;

// The argument list of CString::Format: each argument reduced to the little that a conversion
// needs, so that one non-template formatter serves every call and no C varargs are involved.
namespace format_detail {

struct Arg {
    enum class Kind : std::uint8_t { Signed, Unsigned, Double, Text, Pointer };
    Kind kind = Kind::Signed;
    std::uint8_t bytes = 4;  // size of the integer as the caller passed it
    std::int64_t i = 0;      // Signed
    std::uint64_t u = 0;     // Unsigned, Pointer (the address)
    double d = 0.0;          // Double
    const char* text = nullptr;
    std::size_t length = std::string_view::npos;  // Text: npos when NUL-terminated
};

template <typename>
inline constexpr bool kUnsupported = false;

// Wide text would otherwise pass as a pointer and print its address.
template <typename T>
inline constexpr bool kIsWideChar =
    std::is_same_v<std::remove_cv_t<T>, wchar_t> || std::is_same_v<std::remove_cv_t<T>, char8_t> ||
    std::is_same_v<std::remove_cv_t<T>, char16_t> || std::is_same_v<std::remove_cv_t<T>, char32_t>;

template <typename T>
Arg MakeArg(const T& value) {
    using U = std::remove_cvref_t<T>;
    Arg a;
    if constexpr (std::is_same_v<U, CString>) {
        return MakeArg(value.view());
    } else if constexpr (std::is_same_v<U, std::string> || std::is_same_v<U, std::string_view>) {
        const std::string_view v(value);
        a.kind = Arg::Kind::Text;
        a.text = v.data();
        a.length = v.size();
    } else if constexpr (std::is_array_v<U> &&
                         std::is_same_v<std::remove_cv_t<std::remove_extent_t<U>>, char>) {
        // A char array ends at its first NUL or at its end, whichever comes first.
        const std::string_view v(value, std::extent_v<U>);
        a.kind = Arg::Kind::Text;
        a.text = value;
        a.length = std::min(v.find('\0'), v.size());
    } else if constexpr (std::is_same_v<U, const char*> || std::is_same_v<U, char*> ||
                         std::is_same_v<U, std::nullptr_t>) {
        a.kind = Arg::Kind::Text;
        a.text = value;
    } else if constexpr (std::is_same_v<U, bool>) {
        a.i = value ? 1 : 0;  // promoted to int, as it would be through varargs
    } else if constexpr (std::is_enum_v<U>) {
        return MakeArg(static_cast<std::underlying_type_t<U>>(value));
    } else if constexpr (std::is_integral_v<U> && std::is_signed_v<U>) {
        a.i = value;
        a.bytes = static_cast<std::uint8_t>(sizeof(U));
    } else if constexpr (std::is_integral_v<U>) {
        a.kind = Arg::Kind::Unsigned;
        a.u = value;
        a.bytes = static_cast<std::uint8_t>(sizeof(U));
    } else if constexpr (std::is_floating_point_v<U>) {
        a.kind = Arg::Kind::Double;
        a.d = static_cast<double>(value);
    } else if constexpr (std::is_array_v<U>) {
        static_assert(!kIsWideChar<std::remove_extent_t<U>>, "convert wide text to Cp1252 first");
        return MakeArg(&value[0]);
    } else if constexpr (std::is_pointer_v<U> && !std::is_function_v<std::remove_pointer_t<U>>) {
        static_assert(!kIsWideChar<std::remove_pointer_t<U>>, "convert wide text to Cp1252 first");
        a.kind = Arg::Kind::Pointer;
        a.u = reinterpret_cast<std::uintptr_t>(value);
        a.bytes = static_cast<std::uint8_t>(sizeof(void*));
    } else {
        static_assert(kUnsupported<U>, "Format takes numbers, enumerations, pointers and text");
    }
    return a;
}

// Appends the formatted text to out; out must not be the storage of any text argument.
void FormatTo(std::string& out, std::string_view format, const Arg* args, std::size_t count);

}  // namespace format_detail

class CString {
  public:
    CString() = default;
    // A null text gives the empty string.
    CString(const char* text);  // NOLINT(google-explicit-constructor): implicit as on the platform
    // Copies length bytes, NULs included; a null text or a negative length gives the empty string.
    CString(const char* text, int length);
    CString(std::string text) noexcept : s_(std::move(text)) {}  // NOLINT
    CString(std::string_view text) : s_(text) {}                 // NOLINT
    // ch repeated; a repeat count below 1 gives the empty string.
    explicit CString(char ch, int repeat = 1);

    CString(const CString&) = default;
    CString(CString&&) noexcept = default;
    CString& operator=(const CString&) = default;
    CString& operator=(CString&&) noexcept = default;
    // A null text empties the string.
    CString& operator=(const char* text);
    CString& operator=(char ch);

    // Never null, always NUL-terminated; valid until the string is next changed.
    operator const char*() const noexcept { return s_.c_str(); }  // NOLINT
    const char* GetString() const noexcept { return s_.c_str(); }
    std::string_view view() const noexcept { return s_; }
    const std::string& str() const noexcept { return s_; }

    // The text replaced by a copy of text, in the string's own storage.
    void SetString(std::string_view text) { s_.assign(text); }

    int GetLength() const noexcept { return static_cast<int>(s_.size()); }
    bool IsEmpty() const noexcept { return s_.empty(); }
    void Empty() noexcept { s_.clear(); }

    // The byte at index; '\0' when index is out of range.
    char GetAt(int index) const noexcept;
    // Out of range: nothing happens.
    void SetAt(int index, char ch) noexcept;
    // As GetAt. A template so that no index type is ambiguous with the built-in subscript of the
    // const char* conversion.
    template <typename I>
    requires std::is_integral_v<I>
    char operator[](I index) const noexcept {
        if constexpr (std::is_signed_v<I>) {
            if (index < 0) return '\0';
        }
        if (static_cast<std::uint64_t>(index) >= s_.size()) return '\0';
        return s_[static_cast<std::size_t>(index)];
    }

    // Counts clamp to 0..GetLength(); a first position past the end gives the empty string.
    CString Left(int count) const;
    CString Right(int count) const;
    CString Mid(int first) const;
    CString Mid(int first, int count) const;

    // Index of the first match at or after start, or -1. A negative start counts as 0; a start
    // past the end gives -1. The empty text matches at start; a null text never matches.
    int Find(char ch, int start = 0) const noexcept;
    int Find(const char* sub, int start = 0) const noexcept;
    // Index of the last ch, or -1.
    int ReverseFind(char ch) const noexcept;
    // Index of the first byte that is in set, or -1 (also for a null or empty set).
    int FindOneOf(const char* set) const noexcept;

    // White space is " \t\n\v\f\r"; a null set removes nothing.
    CString& Trim();
    CString& Trim(char ch);
    CString& Trim(const char* set);
    CString& TrimLeft();
    CString& TrimLeft(char ch);
    CString& TrimLeft(const char* set);
    CString& TrimRight();
    CString& TrimRight(char ch);
    CString& TrimRight(const char* set);

    // ASCII letters only; bytes 0x80-0xFF are left as they are.
    CString& MakeUpper() noexcept;
    CString& MakeLower() noexcept;
    CString& MakeReverse() noexcept;

    // Number of bytes removed or replaced. Replacing a char by itself reports 0; a null or empty
    // old text replaces nothing and a null new text counts as empty. Matches do not overlap.
    int Remove(char ch);
    int Replace(char oldCh, char newCh) noexcept;
    int Replace(const char* oldText, const char* newText);

    // The index clamps to 0..GetLength(); a null text inserts nothing. Returns the new length.
    int Insert(int index, char ch);
    int Insert(int index, const char* text);
    // Removes up to count bytes from index (clamped); returns the new length.
    int Delete(int index, int count = 1);

    // <0, 0 or >0, comparing bytes as unsigned values; a null text compares as empty.
    // CompareNoCase folds ASCII letters to lower case first.
    int Compare(const char* other) const noexcept;
    int CompareNoCase(const char* other) const noexcept;

    // The leading run of bytes in set / not in set. A null set counts as empty.
    CString SpanIncluding(const char* set) const;
    CString SpanExcluding(const char* set) const;

    // The next token at or after start, skipping leading delimiters; start moves past the token's
    // end. When no token is left the result is empty and start becomes -1; a negative start stays
    // at -1. A null or empty delimiter set gives the rest of the string as one token.
    CString Tokenize(const char* delims, int& start) const;

    // A writable buffer of at least minLength bytes plus a NUL, holding the current text. The
    // length is unspecified until ReleaseBuffer, which cuts the text at its first NUL (newLength
    // -1) or at newLength (clamped to the buffer). GetBufferSetLength sets the length to newLength.
    char* GetBuffer(int minLength = 0);
    char* GetBufferSetLength(int newLength);
    void ReleaseBuffer(int newLength = -1) noexcept;

    // printf-style formatting with the platform's rules, type-safe: see FormatTo in CString.cpp
    // for what each conversion does with each argument type. A null format gives the empty text.
    // The arguments may include this string itself.
    template <typename... Args>
    void Format(const char* format, const Args&... args) {
        std::string out;
        FormatList(out, format, {format_detail::MakeArg(args)...});
        s_.swap(out);
    }
    template <typename... Args>
    void Format(std::string_view format, const Args&... args) {
        std::string out;
        FormatList(out, format, {format_detail::MakeArg(args)...});
        s_.swap(out);
    }
    template <typename... Args>
    void AppendFormat(const char* format, const Args&... args) {
        std::string out;
        FormatList(out, format, {format_detail::MakeArg(args)...});
        s_ += out;
    }
    template <typename... Args>
    void AppendFormat(std::string_view format, const Args&... args) {
        std::string out;
        FormatList(out, format, {format_detail::MakeArg(args)...});
        s_ += out;
    }

    CString& operator+=(const CString& other) {
        s_ += other.s_;
        return *this;
    }
    // A null text appends nothing.
    CString& operator+=(const char* text);
    CString& operator+=(char ch) {
        s_ += ch;
        return *this;
    }

    friend CString operator+(const CString& a, const CString& b);
    friend CString operator+(const CString& a, const char* b);
    friend CString operator+(const char* a, const CString& b);
    friend CString operator+(const CString& a, char b);
    friend CString operator+(char a, const CString& b);

    // Overloads for const char* keep comparisons with literals away from the built-in pointer
    // comparison that the implicit conversion would otherwise offer; a null text equals "".
    friend bool operator==(const CString& a, const CString& b) noexcept { return a.s_ == b.s_; }
    friend bool operator==(const CString& a, const char* b) noexcept { return a.Compare(b) == 0; }
    friend std::strong_ordering operator<=>(const CString& a, const CString& b) noexcept {
        return a.CompareView(b.s_) <=> 0;
    }
    friend std::strong_ordering operator<=>(const CString& a, const char* b) noexcept {
        return a.Compare(b) <=> 0;
    }

  private:
    int CompareView(std::string_view other) const noexcept;
    static void FormatList(std::string& out, const char* format,
                           std::initializer_list<format_detail::Arg> args);
    static void FormatList(std::string& out, std::string_view format,
                           std::initializer_list<format_detail::Arg> args);

    std::string s_;
};

// Writes the bytes as they are.
std::ostream& operator<<(std::ostream& os, const CString& s);

}  // namespace qvox
