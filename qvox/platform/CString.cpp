#include "qvox/platform/CString.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <ostream>

#include "qvox/platform/CodePage.h"

namespace qvox {

namespace {

constexpr std::string_view kWhiteSpace = " \t\n\v\f\r";

char FoldLower(char c) noexcept {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}
char FoldUpper(char c) noexcept {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
}

std::string_view ViewOf(const char* text) noexcept {
    return text == nullptr ? std::string_view() : std::string_view(text);
}

int Sign(int compared) noexcept {
    return compared < 0 ? -1 : compared > 0 ? 1 : 0;
}

std::size_t Clamp(int value, std::size_t high) noexcept {
    if (value <= 0) return 0;
    return std::min(static_cast<std::size_t>(value), high);
}

}  // namespace

CString::CString(const char* text) : s_(ViewOf(text)) {}

CString::CString(const char* text, int length) {
    if (text != nullptr && length > 0) s_.assign(text, static_cast<std::size_t>(length));
}

CString::CString(char ch, int repeat) {
    if (repeat > 0) s_.assign(static_cast<std::size_t>(repeat), ch);
}

CString& CString::operator=(const char* text) {
    // assign() copes with a text that points into s_ itself.
    s_.assign(ViewOf(text));
    return *this;
}

CString& CString::operator=(char ch) {
    s_.assign(1, ch);
    return *this;
}

char CString::GetAt(int index) const noexcept {
    return (*this)[index];
}

void CString::SetAt(int index, char ch) noexcept {
    if (index >= 0 && static_cast<std::size_t>(index) < s_.size())
        s_[static_cast<std::size_t>(index)] = ch;
}

CString CString::Left(int count) const {
    return CString(s_.substr(0, Clamp(count, s_.size())));
}

CString CString::Right(int count) const {
    const std::size_t n = Clamp(count, s_.size());
    return CString(s_.substr(s_.size() - n));
}

CString CString::Mid(int first) const {
    const std::size_t from = Clamp(first, s_.size());
    return CString(s_.substr(from));
}

CString CString::Mid(int first, int count) const {
    const std::size_t from = Clamp(first, s_.size());
    return CString(s_.substr(from, Clamp(count, s_.size() - from)));
}

int CString::Find(char ch, int start) const noexcept {
    const std::size_t at = s_.find(ch, start < 0 ? 0 : static_cast<std::size_t>(start));
    return at == std::string::npos ? -1 : static_cast<int>(at);
}

int CString::Find(const char* sub, int start) const noexcept {
    if (sub == nullptr) return -1;
    const std::size_t from = start < 0 ? 0 : static_cast<std::size_t>(start);
    if (from > s_.size()) return -1;
    const std::size_t at = s_.find(sub, from);
    return at == std::string::npos ? -1 : static_cast<int>(at);
}

int CString::ReverseFind(char ch) const noexcept {
    const std::size_t at = s_.rfind(ch);
    return at == std::string::npos ? -1 : static_cast<int>(at);
}

int CString::FindOneOf(const char* set) const noexcept {
    const std::string_view chars = ViewOf(set);
    if (chars.empty()) return -1;
    const std::size_t at = s_.find_first_of(chars);
    return at == std::string::npos ? -1 : static_cast<int>(at);
}

CString& CString::TrimLeft(const char* set) {
    if (set == nullptr) return *this;
    s_.erase(0, std::min(s_.find_first_not_of(set), s_.size()));
    return *this;
}

CString& CString::TrimRight(const char* set) {
    if (set == nullptr) return *this;
    const std::size_t last = s_.find_last_not_of(set);
    s_.erase(last == std::string::npos ? 0 : last + 1);
    return *this;
}

CString& CString::Trim(const char* set) {
    return TrimRight(set).TrimLeft(set);
}
CString& CString::Trim() {
    return Trim(kWhiteSpace.data());
}
CString& CString::TrimLeft() {
    return TrimLeft(kWhiteSpace.data());
}
CString& CString::TrimRight() {
    return TrimRight(kWhiteSpace.data());
}

CString& CString::Trim(char ch) {
    const char set[2] = {ch, '\0'};
    // A NUL trims nothing, as a set it is empty.
    return Trim(set);
}

CString& CString::TrimLeft(char ch) {
    const char set[2] = {ch, '\0'};
    return TrimLeft(set);
}

CString& CString::TrimRight(char ch) {
    const char set[2] = {ch, '\0'};
    return TrimRight(set);
}

CString& CString::MakeUpper() noexcept {
    for (char& c : s_)
        c = FoldUpper(c);
    return *this;
}

CString& CString::MakeLower() noexcept {
    for (char& c : s_)
        c = FoldLower(c);
    return *this;
}

CString& CString::MakeReverse() noexcept {
    std::reverse(s_.begin(), s_.end());
    return *this;
}

int CString::Remove(char ch) {
    const auto end = std::remove(s_.begin(), s_.end(), ch);
    const auto removed = static_cast<int>(s_.end() - end);
    s_.erase(end, s_.end());
    return removed;
}

int CString::Replace(char oldCh, char newCh) noexcept {
    if (oldCh == newCh) return 0;
    int count = 0;
    for (char& c : s_) {
        if (c == oldCh) {
            c = newCh;
            ++count;
        }
    }
    return count;
}

int CString::Replace(const char* oldText, const char* newText) {
    const std::string_view from = ViewOf(oldText);
    const std::string_view to = ViewOf(newText);
    if (from.empty()) return 0;
    std::size_t at = s_.find(from);
    if (at == std::string::npos) return 0;
    // Built aside: either text may point into s_.
    std::string result;
    result.reserve(s_.size());
    std::size_t done = 0;
    int count = 0;
    for (; at != std::string::npos; at = s_.find(from, done)) {
        result.append(s_, done, at - done);
        result.append(to);
        done = at + from.size();
        ++count;
    }
    result.append(s_, done);
    s_.swap(result);
    return count;
}

int CString::Insert(int index, char ch) {
    s_.insert(Clamp(index, s_.size()), 1, ch);
    return GetLength();
}

int CString::Insert(int index, const char* text) {
    const std::string piece(ViewOf(text));  // a copy, as text may point into s_
    s_.insert(Clamp(index, s_.size()), piece);
    return GetLength();
}

int CString::Delete(int index, int count) {
    const std::size_t from = Clamp(index, s_.size());
    s_.erase(from, Clamp(count, s_.size() - from));
    return GetLength();
}

int CString::CompareView(std::string_view other) const noexcept {
    return Sign(std::string_view(s_).compare(other));
}

int CString::Compare(const char* other) const noexcept {
    return CompareView(ViewOf(other));
}

int CString::CompareNoCase(const char* other) const noexcept {
    const std::string_view b = ViewOf(other);
    const std::size_t n = std::min(s_.size(), b.size());
    for (std::size_t k = 0; k < n; ++k) {
        const auto x = static_cast<unsigned char>(FoldLower(s_[k]));
        const auto y = static_cast<unsigned char>(FoldLower(b[k]));
        if (x != y) return x < y ? -1 : 1;
    }
    return s_.size() < b.size() ? -1 : s_.size() > b.size() ? 1 : 0;
}

CString CString::SpanIncluding(const char* set) const {
    return CString(s_.substr(0, std::min(s_.find_first_not_of(ViewOf(set)), s_.size())));
}

CString CString::SpanExcluding(const char* set) const {
    return CString(s_.substr(0, std::min(s_.find_first_of(ViewOf(set)), s_.size())));
}

CString CString::Tokenize(const char* delims, int& start) const {
    if (start >= 0 && static_cast<std::size_t>(start) < s_.size()) {
        const auto from = static_cast<std::size_t>(start);
        const std::string_view set = ViewOf(delims);
        if (set.empty()) {
            // The platform leaves start where it was here, and a caller's loop never ends; moving
            // past the end lets the next call report the end.
            start = GetLength() + 1;
            return CString(s_.substr(from));
        }
        const std::size_t first = s_.find_first_not_of(set, from);
        if (first != std::string::npos) {
            const std::size_t end = std::min(s_.find_first_of(set, first), s_.size());
            start = static_cast<int>(end + 1);
            return CString(s_.substr(first, end - first));
        }
    }
    start = -1;
    return CString();
}

char* CString::GetBuffer(int minLength) {
    if (minLength > 0 && static_cast<std::size_t>(minLength) > s_.size())
        s_.resize(static_cast<std::size_t>(minLength));
    return s_.data();
}

char* CString::GetBufferSetLength(int newLength) {
    s_.resize(newLength > 0 ? static_cast<std::size_t>(newLength) : 0);
    return s_.data();
}

void CString::ReleaseBuffer(int newLength) noexcept {
    if (newLength < 0) {
        s_.resize(std::min(s_.find('\0'), s_.size()));
    } else if (static_cast<std::size_t>(newLength) < s_.size()) {
        s_.resize(static_cast<std::size_t>(newLength));
    }
}

CString& CString::operator+=(const char* text) {
    s_.append(ViewOf(text));
    return *this;
}

CString operator+(const CString& a, const CString& b) {
    std::string s;
    s.reserve(a.s_.size() + b.s_.size());
    s.append(a.s_).append(b.s_);
    return CString(std::move(s));
}

CString operator+(const CString& a, const char* b) {
    CString s(a);
    s += b;
    return s;
}

CString operator+(const char* a, const CString& b) {
    std::string s(ViewOf(a));
    s.append(b.s_);
    return CString(std::move(s));
}

CString operator+(const CString& a, char b) {
    CString s(a);
    s += b;
    return s;
}

CString operator+(char a, const CString& b) {
    std::string s(1, a);
    s.append(b.s_);
    return CString(std::move(s));
}

std::ostream& operator<<(std::ostream& os, const CString& s) {
    return os.write(s.GetString(), static_cast<std::streamsize>(s.GetLength()));
}

void CString::FormatList(std::string& out, const char* format,
                         std::initializer_list<format_detail::Arg> args) {
    format_detail::FormatTo(out, ViewOf(format), args.begin(), args.size());
}

void CString::FormatList(std::string& out, std::string_view format,
                         std::initializer_list<format_detail::Arg> args) {
    format_detail::FormatTo(out, format, args.begin(), args.size());
}

// Formatting.
//
// Conversions follow the platform's C runtime: "l" is 32 bits, "ll" and "I64" 64, "h" 16 and
// "hh" 8, and an integer is reduced to the width of its conversion before it is written, so that
// "%d" of 0xFFFFFFFFu gives -1 and "%x" of -1 gives ffffffff. An argument wider than 32 bits is
// never cut by a conversion without a size ("%d", "%ld", "%zd"), since on the platform it would
// have shifted every later argument instead. "%p" writes the address in upper-case hex digits,
// zero-filled to the width of a pointer, without "0x"; "%a" writes 13 hex digits unless told a
// precision; the 0 flag fills "%s" and "%c" with zeros as the platform does.
//
// Where the argument does not suit its conversion the outcome is fixed, never undefined:
//   integer to %f %e %g %a     converted to double
//   double to %d %u %x %o %c   cut toward zero; NaN or beyond 64 bits gives 0
//   number to %s               the number as text (shortest round-trip form for a double)
//   text to any conversion     written as %s would write it, with the same flags and width
//   text to %p                 the address of its bytes
//   null text                  "(null)"
//   missing argument           the conversion writes nothing; extra arguments are ignored
//   %n                         takes its argument and writes nothing anywhere
//   unknown conversion         copied through as it stands, taking no argument
// Widths and precisions above 65535 are taken as 65535. Infinities and NaNs are written "inf" and
// "nan" (upper case for %F %E %G %A) with their sign, and filled with spaces, never zeros.
//
// Floating numbers go through std::to_chars rather than snprintf, whose decimal point follows
// the process locale; integers go through snprintf, which writes them the same in any locale.
//
// {fmt}'s printf was weighed as a replacement and kept out: it throws on a mismatched or missing
// argument ("%d" of a double or of text, "%s" of a number, "%n", "%I64d", an unknown conversion)
// where these outcomes are fixed, and it differs on "%.0d" of 0, a negative '*' precision, "%#g",
// "%a", a zero-filled "%s" and "%p".
namespace format_detail {

namespace {

constexpr int kMaxField = 65535;

struct Directive {
    bool minus = false;
    bool plus = false;
    bool space = false;
    bool hash = false;
    bool zero = false;
    int width = 0;
    int precision = -1;  // -1: none given
    int bits = 0;        // integer width from the size prefix; 0 follows the argument
    bool wide = false;   // %lc, %wc, %C: the argument is a code point
    char conv = 0;
};

// Room for any conversion up to a precision of about 180; longer ones go to the heap.
struct Scratch {
    char stack[512];
    std::string heap;

    char* Get(std::size_t size) {
        if (size <= sizeof(stack)) return stack;
        if (heap.size() < size) heap.resize(size);
        return heap.data();
    }
};

int SaturatedField(std::int64_t value) {
    return static_cast<int>(std::min<std::int64_t>(value, kMaxField));
}

// The integer of a '*' field. Text and pointers give none, and the field stays unset.
bool StarValue(const Arg& a, std::int64_t& value) {
    switch (a.kind) {
        case Arg::Kind::Signed:
            value = a.i;
            return true;
        case Arg::Kind::Unsigned:
            value = static_cast<std::int64_t>(std::min<std::uint64_t>(a.u, INT64_MAX));
            return true;
        case Arg::Kind::Double:
            value = std::isfinite(a.d) ? static_cast<std::int64_t>(
                                             std::clamp(a.d, -double(kMaxField), double(kMaxField)))
                                       : 0;
            return true;
        default:
            return false;
    }
}

int ReadNumber(std::string_view f, std::size_t& i) {
    std::int64_t n = 0;
    for (; i < f.size() && f[i] >= '0' && f[i] <= '9'; ++i)
        n = std::min<std::int64_t>(n * 10 + (f[i] - '0'), kMaxField);
    return static_cast<int>(n);
}

// Reads the conversion that follows a '%' at i; returns the index after it, or npos when the
// format ends inside it. Arguments of '*' fields are taken from next.
std::size_t ParseDirective(std::string_view f, std::size_t i, Directive& s, const Arg* args,
                           std::size_t count, std::size_t& next) {
    for (; i < f.size(); ++i) {
        const char c = f[i];
        if (c == '-') {
            s.minus = true;
        } else if (c == '+') {
            s.plus = true;
        } else if (c == ' ') {
            s.space = true;
        } else if (c == '#') {
            s.hash = true;
        } else if (c == '0') {
            s.zero = true;
        } else {
            break;
        }
    }
    std::int64_t star = 0;
    if (i < f.size() && f[i] == '*') {
        ++i;
        if (next < count && StarValue(args[next++], star)) {
            if (star < 0) {
                s.minus = true;
                star = star == INT64_MIN ? INT64_MAX : -star;
            }
            s.width = SaturatedField(star);
        }
    } else {
        s.width = ReadNumber(f, i);
    }
    if (i < f.size() && f[i] == '.') {
        ++i;
        if (i < f.size() && f[i] == '*') {
            ++i;
            if (next < count && StarValue(args[next++], star) && star >= 0)
                s.precision = SaturatedField(star);
        } else {
            s.precision = ReadNumber(f, i);
        }
    }
    if (i < f.size()) {
        const std::string_view rest = f.substr(i);
        if (rest.starts_with("hh")) {
            s.bits = 8;
            i += 2;
        } else if (rest.starts_with("ll") || rest.starts_with("I64")) {
            s.bits = 64;
            i += rest[0] == 'I' ? 3u : 2u;
        } else if (rest.starts_with("I32")) {
            i += 3;
        } else if (rest[0] == 'h') {
            s.bits = 16;
            ++i;
        } else if (rest[0] == 'j' || rest[0] == 'q') {
            s.bits = 64;
            ++i;
        } else if (rest[0] == 'l' || rest[0] == 'w') {
            s.wide = true;
            ++i;
        } else if (rest[0] == 'L' || rest[0] == 'z' || rest[0] == 't' || rest[0] == 'I') {
            ++i;
        }
    }
    if (i >= f.size()) return std::string_view::npos;
    s.conv = f[i];
    return i + 1;
}

void Pad(std::string& out, std::size_t count, char fill) {
    out.append(count, fill);
}

// Text in a field: cut to the precision, then filled out to the width.
void PutText(std::string& out, const Directive& s, std::string_view text) {
    const auto width = static_cast<std::size_t>(s.width);
    if (text.size() >= width) {
        out.append(text);
    } else if (s.minus) {
        out.append(text);
        Pad(out, width - text.size(), ' ');
    } else {
        Pad(out, width - text.size(), s.zero ? '0' : ' ');
        out.append(text);
    }
}

std::string_view HexAddress(char* buf, std::uint64_t value) {
    constexpr std::size_t digits = sizeof(void*) * 2;
    for (std::size_t k = digits; k-- > 0; value >>= 4)
        buf[k] = "0123456789ABCDEF"[value & 0xF];
    return {buf, digits};
}

// An integer argument as 64 bits, extended from its own width by its own signedness.
struct IntBits {
    std::uint64_t bits = 0;
    int argBits = 32;
};

IntBits ToInt(const Arg& a) {
    switch (a.kind) {
        case Arg::Kind::Signed:
            return {static_cast<std::uint64_t>(a.i), a.bytes * 8};
        case Arg::Kind::Unsigned:
        case Arg::Kind::Pointer:
            return {a.u, a.bytes * 8};
        case Arg::Kind::Double: {
            // -2^63 <= d < 2^63, false for NaN.
            if (!(a.d >= -9223372036854775808.0 && a.d < 9223372036854775808.0)) return {};
            const auto t = static_cast<std::int64_t>(a.d);
            return {static_cast<std::uint64_t>(t), t >= INT32_MIN && t <= INT32_MAX ? 32 : 64};
        }
        case Arg::Kind::Text:
            break;
    }
    return {};
}

std::uint64_t Mask(int bits) {
    return bits >= 64 ? ~0ULL : (1ULL << bits) - 1;
}

// The number that %s writes for a non-text argument.
std::string_view NumberText(const Arg& a, char* buf, std::size_t size) {
    std::to_chars_result r{buf, {}};
    switch (a.kind) {
        case Arg::Kind::Signed:
            r = std::to_chars(buf, buf + size, a.i);
            break;
        case Arg::Kind::Unsigned:
            r = std::to_chars(buf, buf + size, a.u);
            break;
        case Arg::Kind::Double:
            r = std::to_chars(buf, buf + size, a.d);
            break;
        case Arg::Kind::Pointer:
            return HexAddress(buf, a.u);
        case Arg::Kind::Text:
            break;
    }
    return {buf, static_cast<std::size_t>(r.ptr - buf)};
}

void PutString(std::string& out, const Directive& s, const Arg& a, Scratch& scratch) {
    std::string_view text;
    if (a.kind != Arg::Kind::Text) {
        text = NumberText(a, scratch.stack, sizeof(scratch.stack));
    } else if (a.text == nullptr) {
        text = "(null)";
    } else if (a.length != std::string_view::npos) {
        text = std::string_view(a.text, a.length);
    } else {
        // A precision bounds the read: the text need not be terminated within it.
        std::size_t n = 0;
        const auto limit = s.precision < 0 ? SIZE_MAX : static_cast<std::size_t>(s.precision);
        while (n < limit && a.text[n] != '\0')
            ++n;
        text = std::string_view(a.text, n);
    }
    if (s.precision >= 0) text = text.substr(0, static_cast<std::size_t>(s.precision));
    PutText(out, s, text);
}

void PutChar(std::string& out, const Directive& s, const Arg& a) {
    const IntBits v = ToInt(a);
    char c = static_cast<char>(v.bits & 0xFF);
    if (s.wide || s.conv == 'C') {
        const std::uint64_t code = v.bits & Mask(v.argBits);
        const int mapped = code > 0x10FFFF ? -1 : UnicodeToCp1252(static_cast<char32_t>(code));
        c = mapped < 0 ? '?' : static_cast<char>(mapped);
    }
    Directive plain = s;
    plain.precision = -1;
    PutText(out, plain, std::string_view(&c, 1));
}

void PutInteger(std::string& out, const Directive& s, const Arg& a, Scratch& scratch) {
    const IntBits v = ToInt(a);
    const int bits = s.bits != 0 ? s.bits : std::max(32, v.argBits);
    std::uint64_t value = v.bits & Mask(bits);
    const bool isSigned = s.conv == 'd' || s.conv == 'i';
    if (isSigned && bits < 64 && ((value >> (bits - 1)) & 1) != 0) value |= ~Mask(bits);

    char pattern[48];
    char* p = pattern;
    *p++ = '%';
    if (s.minus) *p++ = '-';
    if (s.plus) *p++ = '+';
    if (s.space) *p++ = ' ';
    if (s.hash) *p++ = '#';
    if (s.zero) *p++ = '0';
    p = std::to_chars(p, pattern + 16, s.width).ptr;
    if (s.precision >= 0) {
        *p++ = '.';
        p = std::to_chars(p, pattern + 24, s.precision).ptr;
    }
    *p++ = 'l';
    *p++ = 'l';
    *p++ = isSigned ? 'd' : s.conv;
    *p = '\0';

    const auto print = [&](char* buf, std::size_t size) {
        return isSigned ? std::snprintf(buf, size, pattern, static_cast<long long>(value))
                        : std::snprintf(buf, size, pattern, static_cast<unsigned long long>(value));
    };
    int n = print(scratch.stack, sizeof(scratch.stack));
    if (n < 0) return;
    char* buf = scratch.stack;
    if (static_cast<std::size_t>(n) >= sizeof(scratch.stack)) {
        buf = scratch.Get(static_cast<std::size_t>(n) + 1);
        n = print(buf, static_cast<std::size_t>(n) + 1);
        if (n < 0) return;
    }
    out.append(buf, static_cast<std::size_t>(n));
}

void PutPointer(std::string& out, const Directive& s, const Arg& a, Scratch& scratch) {
    std::uint64_t address = 0;
    if (a.kind == Arg::Kind::Text) {
        address = reinterpret_cast<std::uintptr_t>(a.text);
    } else {
        const IntBits v = ToInt(a);
        address = v.bits & Mask(v.argBits);
    }
    Directive plain = s;
    plain.precision = -1;
    PutText(out, plain, HexAddress(scratch.stack, address));
}

std::string_view ToChars(Scratch& scratch, double value, std::chars_format fmt, int precision) {
    // 309 integer digits of the largest double, point, sign and exponent around the places.
    const std::size_t size = static_cast<std::size_t>(precision) + 330;
    char* buf = scratch.Get(size);
    const auto r = std::to_chars(buf, buf + size, value, fmt, precision);
    return {buf, static_cast<std::size_t>(r.ptr - buf)};
}

void PutFloat(std::string& out, const Directive& s, double value, Scratch& scratch) {
    const bool upper = s.conv >= 'A' && s.conv <= 'Z';
    const char conv = FoldLower(s.conv);
    const char sign = std::signbit(value) ? '-' : s.plus ? '+' : s.space ? ' ' : '\0';
    const double magnitude = std::fabs(value);
    const bool finite = std::isfinite(magnitude);
    std::string_view prefix;
    std::string_view body;
    std::size_t point = std::string_view::npos;  // where '#' adds a point the digits lack

    if (!finite) {
        body = std::isnan(magnitude) ? "nan" : "inf";
    } else if (conv == 'f') {
        body = ToChars(scratch, magnitude, std::chars_format::fixed,
                       s.precision < 0 ? 6 : s.precision);
        if (s.hash && s.precision == 0) point = body.size();
    } else if (conv == 'e') {
        body = ToChars(scratch, magnitude, std::chars_format::scientific,
                       s.precision < 0 ? 6 : s.precision);
        if (s.hash && s.precision == 0) point = body.find('e');
    } else if (conv == 'a') {
        prefix = "0x";
        body =
            ToChars(scratch, magnitude, std::chars_format::hex, s.precision < 0 ? 13 : s.precision);
        if (s.hash && s.precision == 0) point = body.find('p');
    } else {
        const int places = s.precision < 0 ? 6 : s.precision == 0 ? 1 : s.precision;
        if (!s.hash) {
            body = ToChars(scratch, magnitude, std::chars_format::general, places);
        } else {
            // "%#g" keeps its trailing zeros, which to_chars has no switch for: choose the style
            // from the exponent as %g does and write it with that style's own precision.
            body = ToChars(scratch, magnitude, std::chars_format::scientific, places - 1);
            const std::size_t e = body.find('e');
            int exponent = 0;
            std::size_t from = e + 1;
            if (body[from] == '+') ++from;
            (void)std::from_chars(body.data() + from, body.data() + body.size(), exponent);
            if (exponent < places && exponent >= -4) {
                body = ToChars(scratch, magnitude, std::chars_format::fixed, places - 1 - exponent);
                if (body.find('.') == std::string_view::npos) point = body.size();
            } else if (body.find('.') == std::string_view::npos) {
                point = body.find('e');
            }
        }
    }

    std::size_t length = (sign != '\0' ? 1 : 0) + prefix.size() + body.size() +
                         (point != std::string_view::npos ? 1 : 0);
    const auto width = static_cast<std::size_t>(s.width);
    const std::size_t fill = width > length ? width - length : 0;
    if (!s.minus && !(s.zero && finite)) Pad(out, fill, ' ');
    if (sign != '\0') out += sign;
    if (!prefix.empty()) out.append(upper ? "0X" : "0x");
    if (!s.minus && s.zero && finite) Pad(out, fill, '0');
    const std::size_t start = out.size();
    if (point == std::string_view::npos) {
        out.append(body);
    } else {
        out.append(body.substr(0, point)).append(1, '.').append(body.substr(point));
    }
    if (upper) {
        for (std::size_t k = start; k < out.size(); ++k)
            out[k] = FoldUpper(out[k]);
    }
    if (s.minus) Pad(out, fill, ' ');
}

double ToDouble(const Arg& a) {
    switch (a.kind) {
        case Arg::Kind::Signed:
            return static_cast<double>(a.i);
        case Arg::Kind::Unsigned:
        case Arg::Kind::Pointer:
            return static_cast<double>(a.u);
        case Arg::Kind::Double:
            return a.d;
        case Arg::Kind::Text:
            break;
    }
    return 0.0;
}

bool IsKnown(char conv) {
    return conv != '\0' &&
           std::string_view("diuxXocCsSfFeEgGaApn%").find(conv) != std::string_view::npos;
}

}  // namespace

void FormatTo(std::string& out, std::string_view format, const Arg* args, std::size_t count) {
    Scratch scratch;
    std::size_t next = 0;
    std::size_t i = 0;
    while (i < format.size()) {
        const std::size_t percent = format.find('%', i);
        if (percent == std::string_view::npos) {
            out.append(format.substr(i));
            break;
        }
        out.append(format.substr(i, percent - i));
        Directive s;
        const std::size_t before = next;
        const std::size_t end = ParseDirective(format, percent + 1, s, args, count, next);
        if (end == std::string_view::npos) {
            out.append(format.substr(percent));
            break;
        }
        i = end;
        if (!IsKnown(s.conv) || s.conv == '%') {
            out.append(s.conv == '%' ? std::string_view("%")
                                     : format.substr(percent, end - percent));
            next = before;
            continue;
        }
        if (next >= count) continue;
        const Arg& a = args[next++];
        const char conv = s.conv;
        if (conv == 'n') continue;
        if (conv == 'p') {
            PutPointer(out, s, a, scratch);
        } else if (a.kind == Arg::Kind::Text || conv == 's' || conv == 'S') {
            PutString(out, s, a, scratch);
        } else if (conv == 'c' || conv == 'C') {
            PutChar(out, s, a);
        } else if (std::string_view("diuxXo").find(conv) != std::string_view::npos) {
            PutInteger(out, s, a, scratch);
        } else {
            PutFloat(out, s, ToDouble(a), scratch);
        }
    }
}

}  // namespace format_detail

}  // namespace qvox
