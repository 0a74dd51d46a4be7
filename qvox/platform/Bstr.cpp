#include "qvox/platform/Bstr.h"

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "qvox/platform/CodePage.h"

namespace qvox {
namespace {

std::atomic<std::ptrdiff_t> g_live{0};

// The prefix states the length in bytes as 32 bits; the block holds prefix, units and terminator.
constexpr std::size_t kPrefix = sizeof(std::uint32_t);
constexpr UINT kMaxUnits = (std::numeric_limits<std::uint32_t>::max() - kPrefix - 2) / 2;

std::uint32_t PrefixOf(BSTR text) {
    std::uint32_t bytes = 0;
    std::memcpy(&bytes, reinterpret_cast<const unsigned char*>(text) - kPrefix, kPrefix);
    return bytes;
}

}  // namespace

BSTR SysAllocStringLen(const OLECHAR* text, UINT length) {
    if (length > kMaxUnits) return nullptr;
    const std::size_t bytes = static_cast<std::size_t>(length) * sizeof(OLECHAR);
    // malloc gives alignment for the prefix and the 16-bit units behind it.
    auto* block = static_cast<unsigned char*>(std::malloc(kPrefix + bytes + sizeof(OLECHAR)));
    if (!block) return nullptr;
    const auto prefix = static_cast<std::uint32_t>(bytes);
    std::memcpy(block, &prefix, kPrefix);
    auto* units = reinterpret_cast<OLECHAR*>(block + kPrefix);
    if (text) {
        std::memcpy(units, text, bytes);
    } else {
        std::memset(units, 0, bytes);
    }
    units[length] = u'\0';
    g_live.fetch_add(1, std::memory_order_relaxed);
    return units;
}

BSTR SysAllocString(const OLECHAR* text) {
    if (!text) return nullptr;
    return SysAllocStringLen(text, static_cast<UINT>(std::char_traits<OLECHAR>::length(text)));
}

void SysFreeString(BSTR text) {
    if (!text) return;
    g_live.fetch_sub(1, std::memory_order_relaxed);
    std::free(reinterpret_cast<unsigned char*>(text) - kPrefix);
}

UINT SysStringLen(BSTR text) {
    return text ? static_cast<UINT>(PrefixOf(text) / sizeof(OLECHAR)) : 0u;
}

UINT SysStringByteLen(BSTR text) {
    return text ? PrefixOf(text) : 0;
}

BSTR SysAllocStringFromCp1252(std::string_view text) {
    if (text.size() > kMaxUnits) return nullptr;
    BSTR result = SysAllocStringLen(nullptr, static_cast<UINT>(text.size()));
    if (!result) return nullptr;
    for (std::size_t i = 0; i < text.size(); ++i) {
        result[i] = Cp1252ToUnicode(static_cast<unsigned char>(text[i]));
    }
    return result;
}

std::string Cp1252FromBstr(BSTR text) {
    return Utf16ToCp1252(BstrView(text));
}

std::ptrdiff_t LiveBstrCount() {
    return g_live.load(std::memory_order_relaxed);
}

// ---- _bstr_t ----

namespace {

BSTR CheckedCopy(std::string_view text) {
    BSTR result = SysAllocStringFromCp1252(text);
    if (!result) _com_issue_error(E_OUTOFMEMORY);
    return result;
}

BSTR CheckedCopy(std::u16string_view text) {
    BSTR result = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    if (!result) _com_issue_error(E_OUTOFMEMORY);
    return result;
}

}  // namespace

_bstr_t::_bstr_t(const char* text) : m_text(text ? CheckedCopy(std::string_view(text)) : nullptr) {}

_bstr_t::_bstr_t(const CString& text) : m_text(CheckedCopy(text.view())) {}

_bstr_t::_bstr_t(std::string_view text) : m_text(CheckedCopy(text)) {}

_bstr_t::_bstr_t(const OLECHAR* text)
    : m_text(text ? CheckedCopy(std::u16string_view(text)) : nullptr) {}

_bstr_t::_bstr_t(BSTR text, bool copy) {
    if (!copy) {
        m_text = text;
    } else if (text) {
        m_text = CheckedCopy(BstrView(text));
    }
}

_bstr_t::_bstr_t(const _bstr_t& other)
    : m_text(other.m_text ? CheckedCopy(other.view()) : nullptr) {}

_bstr_t& _bstr_t::operator=(const _bstr_t& other) {
    if (this != &other) {
        BSTR fresh = other.m_text ? CheckedCopy(other.view()) : nullptr;
        SysFreeString(m_text);
        m_text = fresh;
    }
    return *this;
}

_bstr_t& _bstr_t::operator=(_bstr_t&& other) noexcept {
    if (this != &other) {
        SysFreeString(m_text);
        m_text = std::exchange(other.m_text, nullptr);
    }
    return *this;
}

BSTR _bstr_t::copy() const {
    return m_text ? CheckedCopy(view()) : nullptr;
}

BSTR* _bstr_t::GetAddress() noexcept {
    SysFreeString(m_text);
    m_text = nullptr;
    return &m_text;
}

void _bstr_t::Attach(BSTR text) noexcept {
    if (text == m_text) return;
    SysFreeString(m_text);
    m_text = text;
}

CString _bstr_t::ToCString() const {
    return CString(Cp1252FromBstr(m_text));
}

}  // namespace qvox
