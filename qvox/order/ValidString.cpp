#include "qvox/order/ValidString.h"

#include <cwchar>
#include <string_view>
#include <utility>

#include "qvox/platform/CodePage.h"

namespace qvox {
namespace {

CString FromWide(const wchar_t* text, std::size_t length) {
    if (text == nullptr) return CString();
    return CString(WideToCp1252(std::wstring_view(text, length)));
}

std::size_t WideLength(const wchar_t* text) {
    return text == nullptr ? 0 : std::wcslen(text);
}

}  // namespace

ValidString::ValidString(const wchar_t* text)
    : m_text(FromWide(text, WideLength(text))), m_valid(true) {}

ValidString::ValidString(const unsigned char* text)
    : m_text(reinterpret_cast<const char*>(text)), m_valid(true) {}

ValidString::ValidString(const wchar_t* text, int length)
    : m_text(FromWide(text, length < 0 ? 0 : static_cast<std::size_t>(length))), m_valid(true) {}

const CString& ValidString::operator=(const CString& text) {
    m_text = text;
    m_valid = true;
    return m_text;
}

const CString& ValidString::operator=(CString&& text) {
    m_text = std::move(text);
    m_valid = true;
    return m_text;
}

const CString& ValidString::operator=(std::string_view text) {
    m_text.SetString(text);
    m_valid = true;
    return m_text;
}

const CString& ValidString::operator=(const char* text) {
    m_text = text;
    m_valid = true;
    return m_text;
}

const CString& ValidString::operator=(wchar_t* text) {
    return *this = static_cast<const wchar_t*>(text);
}

const CString& ValidString::operator=(const wchar_t* text) {
    m_text = FromWide(text, WideLength(text));
    m_valid = true;
    return m_text;
}

CArchive& operator<<(CArchive& ar, ValidString value) {
    if (ar.IsLoading()) throw CArchiveException(CArchiveException::readOnly, ar.m_strFileName);
    ar << static_cast<DWORD>(value.IsValid() ? 1 : 0);
    if (value.IsValid()) ar << value.GetText();
    return ar;
}

CArchive& operator>>(CArchive& ar, ValidString& value) {
    if (ar.IsStoring()) throw CArchiveException(CArchiveException::writeOnly, ar.m_strFileName);
    DWORD mark = 0;
    ar >> mark;
    if (mark == 0) return ar;
    CString text;
    ar >> text;
    value = text;
    return ar;
}

}  // namespace qvox
