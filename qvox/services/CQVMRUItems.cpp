#include "qvox/services/CQVMRUItems.h"

#include <algorithm>
#include <array>

#include "qvox/platform/PlatformDirectories.h"
#include "qvox/platform/Registry.h"

namespace qvox {
namespace {

constexpr REGSAM kReadAccess = 0x20019;
constexpr REGSAM kWriteAccess = 0x2001F;
// What a stored list is read into; a longer value is not read at all.
constexpr DWORD kReadBuffer = 100;

}  // namespace

CQVMRUItems::CQVMRUItems() = default;

CQVMRUItems::CQVMRUItems(CString const& location, CString const& value)
    : m_RegistryLocation(location), m_RegistryValue(value) {
    ReadMRUFromReg();
}

CQVMRUItems::~CQVMRUItems() {
    Save();
}

void CQVMRUItems::SetMRUNumber(int number) {
    m_MRUNumber = number;
}

void CQVMRUItems::SetRegistryLocation(CString const& location) {
    m_RegistryLocation = location;
}

void CQVMRUItems::SetRegistryValue(CString const& value) {
    m_RegistryValue = value;
}

void CQVMRUItems::ReadMRUFromReg() {
    HKEY key = nullptr;
    if (RegOpenKeyExA(HKEY_CURRENT_USER, m_RegistryLocation, 0, kReadAccess, &key) !=
        ERROR_SUCCESS) {
        return;
    }
    std::array<char, kReadBuffer> buffer{};
    DWORD type = REG_NONE;
    DWORD size = kReadBuffer;
    const LSTATUS status = RegQueryValueExA(key, m_RegistryValue, nullptr, &type,
                                            reinterpret_cast<BYTE*>(buffer.data()), &size);
    RegCloseKey(key);
    if (status != ERROR_SUCCESS || (type != REG_SZ && type != REG_EXPAND_SZ) || size == 0 ||
        buffer[size - 1] != '\0') {
        return;
    }
    CString text(buffer.data());
    // An empty item, or text with no comma behind it, ends the list.
    for (int comma = text.Find(','); comma > 0; comma = text.Find(',')) {
        m_Items.push_back(text.Left(comma));
        text = text.Mid(comma + 1);
    }
}

void CQVMRUItems::GetMRUItems(std::vector<CString>& items) {
    items = m_Items;
}

void CQVMRUItems::Add(CString const& item) {
    const auto same = std::find_if(m_Items.begin(), m_Items.end(),
                                   [&](const CString& held) { return held.view() == item.view(); });
    if (same != m_Items.end()) m_Items.erase(same);
    if (!m_Items.empty() && static_cast<long long>(m_Items.size()) >= m_MRUNumber) {
        m_Items.erase(m_Items.begin());
    }
    m_Items.push_back(item);
}

void CQVMRUItems::Save() {
    HKEY key = nullptr;
    if (RegCreateKeyExA(HKEY_CURRENT_USER, m_RegistryLocation, 0, nullptr, 0, kWriteAccess, nullptr,
                        &key, nullptr) != ERROR_SUCCESS) {
        return;
    }
    CString stored;
    for (const CString& item : m_Items) {
        stored += item;
        stored += ',';
    }
    RegSetValueExA(key, m_RegistryValue, 0, REG_SZ,
                   reinterpret_cast<const BYTE*>(stored.GetString()),
                   static_cast<DWORD>(stored.GetLength()) + 1);
    RegCloseKey(key);
}

CQVShortAwayMRU::CQVShortAwayMRU() {
    SetRegistryLocation(QVGetRegistryRootKey(1) + "\\Order Entry\\EquitiesSettings");
    SetRegistryValue("LocateBrokerMRU");
    ReadMRUFromReg();
}

CQVShortAwayMRU::~CQVShortAwayMRU() = default;

}  // namespace qvox
