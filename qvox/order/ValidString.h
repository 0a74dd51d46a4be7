// ValidString: a text with a mark that says whether anybody has set it. Without the mark the
// text means "not specified" (it may hold a default); the exchange with the server skips it and
// a copy does not carry it. Assigning one ValidString to another is a merge: a source without
// the mark changes nothing.
#pragma once

#include <string_view>

#include "qvox/platform/CArchive.h"
#include "qvox/platform/CString.h"

namespace qvox {

class ValidString {
  public:
    // Empty, without the mark.
    ValidString() = default;
    // The text of the argument, with the mark. A null pointer gives the empty text.
    ValidString(const CString& text) : m_text(text), m_valid(true) {}  // NOLINT
    ValidString(const char* text) : m_text(text), m_valid(true) {}     // NOLINT
    ValidString(const wchar_t* text);                                  // NOLINT
    ValidString(const unsigned char* text);                            // NOLINT
    // ch repeated count times (none for a count below 1), with the mark.
    ValidString(char ch, int count) : m_text(ch, count), m_valid(true) {}
    // The first length characters (none for a negative length), with the mark.
    ValidString(const char* text, int length) : m_text(text, length), m_valid(true) {}
    ValidString(const wchar_t* text, int length);
    // An exact copy: text and mark, also a text whose mark is off.
    ValidString(const ValidString&) = default;
    virtual ~ValidString() = default;

    // The text replaced, with the mark.
    const CString& operator=(const CString& text);
    const CString& operator=(CString&& text);
    const CString& operator=(std::string_view text);
    const CString& operator=(const char* text);
    const CString& operator=(wchar_t* text);
    const CString& operator=(const wchar_t* text);
    // The merge: a marked source replaces text and sets the mark; an unmarked one changes nothing.
    // Inline: copying a record merges every text field, most of them unmarked.
    ValidString& operator=(const ValidString& other) {
        if (other.m_valid) {
            m_text = other.m_text;
            m_valid = true;
        }
        return *this;
    }

    // Stores a default: the text replaced, the mark off.
    void SetDefault(const CString& text) {
        m_text = text;
        m_valid = false;
    }
    // The mark off; the text stays.
    void Invalid() { m_valid = false; }
    bool IsValid() const { return m_valid; }
    // The text, whatever the mark says.
    const CString& GetText() const { return m_text; }

    // The text from a printf-style format, with the mark.
    template <typename... Args>
    void Format(const char* format, const Args&... args) {
        m_text.Format(format, args...);
        m_valid = true;
    }

    // A copy of the text, whatever the mark says.
    operator CString() const { return m_text; }  // NOLINT

    // Without the mark never equal to a text; otherwise compared case-sensitively.
    bool operator==(const CString& text) const { return m_valid && m_text == text; }
    bool operator==(const char* text) const { return m_valid && m_text == CString(text); }
    bool operator!=(const CString& text) const { return !(*this == text); }
    bool operator!=(const char* text) const { return !(*this == text); }
    // Two unmarked values are equal; a marked and an unmarked one are not; two marked ones
    // compare their texts.
    bool operator==(const ValidString& other) const {
        if (m_valid != other.m_valid) return false;
        return !m_valid || m_text == other.m_text;
    }
    bool operator!=(const ValidString& other) const { return !(*this == other); }

  private:
    CString m_text;
    bool m_valid = false;
};

// Writes the mark as a DWORD (1 or 0) and, when it is on, the text as a counted string.
// CArchiveException readOnly on an archive that loads.
CArchive& operator<<(CArchive& ar, ValidString value);
// Reads the mark; a zero mark leaves the target untouched, text and mark. Any other mark is
// followed by the text, which replaces the target's and sets the mark. CArchiveException
// writeOnly on an archive that stores, endOfFile on short input.
CArchive& operator>>(CArchive& ar, ValidString& value);

}  // namespace qvox
