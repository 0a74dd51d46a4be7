// COrderBarProperties: what a new order of a symbol category starts from. Factory values are
// fixed here; the user's own are kept in the settings, one key for each asset class.
#include <array>
#include <cstring>
#include <string>

#include "qvox/order/COrderBarProperties.h"
#include "qvox/platform/CRuntime.h"
#include "qvox/platform/PlatformDirectories.h"
#include "qvox/platform/Registry.h"
#include "qvox/platform/WinError.h"

namespace qvox {

using C = COrderBarProperties;

namespace {

constexpr SHORT kQuantityInShares = '#';

// What an asset class starts from; a field that the class does not set has no entry.
struct AssetDefaults {
    const char* keySuffix;
    LONG quantity;
    bool short82;     // m_Short82 0
    bool opens;       // m_OpenClose 'O'
    bool pegAndShow;  // m_PegValue "BEST", m_ShowQuantity 100, m_DiscretionaryAmount 0.05
};

constexpr AssetDefaults kEquities{"\\Order Entry\\EquitiesSettings", 500, true, false, true};
constexpr AssetDefaults kOptions{"\\Order Entry\\OptionsSettings", 5, false, true, true};
constexpr AssetDefaults kFutures{"\\Order Entry\\FuturesSettings", 1, false, false, false};
constexpr AssetDefaults kForex{"\\Order Entry\\ForexesSettings", 1, false, false, false};

bool Marked(const ValidString& field) {
    return field.IsValid();
}
template <class T>
bool Marked(const ValidDataT<T>& field) {
    return field.valid;
}

// Settings values are read into a buffer of this size; longer strings are not taken.
constexpr DWORD kValueBuffer = 100;

// A REG_SZ or REG_EXPAND_SZ value that fits the buffer and ends with its terminator; one with
// no data reads as an empty text. False for anything else.
bool ReadText(HKEY key, const char* name, std::string& text) {
    std::array<char, kValueBuffer> buffer{};
    DWORD type = REG_NONE;
    DWORD size = kValueBuffer;
    if (RegQueryValueExA(key, name, nullptr, &type, reinterpret_cast<BYTE*>(buffer.data()),
                         &size) != ERROR_SUCCESS ||
        (type != REG_SZ && type != REG_EXPAND_SZ)) {
        return false;
    }
    if (size == 0) {
        text.clear();
        return true;
    }
    if (buffer[size - 1] != '\0') return false;
    text = buffer.data();  // up to the first terminator
    return true;
}

// A REG_DWORD value of four bytes.
bool ReadNumber(HKEY key, const char* name, DWORD& number) {
    BYTE bytes[4] = {};
    DWORD type = REG_NONE;
    DWORD size = sizeof(bytes);
    if (RegQueryValueExA(key, name, nullptr, &type, bytes, &size) != ERROR_SUCCESS ||
        type != REG_DWORD || size != sizeof(bytes)) {
        return false;
    }
    number = static_cast<DWORD>(bytes[0]) | static_cast<DWORD>(bytes[1]) << 8 |
             static_cast<DWORD>(bytes[2]) << 16 | static_cast<DWORD>(bytes[3]) << 24;
    return true;
}

void WriteText(HKEY key, const char* name, const CString& text) {
    RegSetValueExA(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.GetString()),
                   static_cast<DWORD>(text.GetLength()) + 1);
}

void WriteNumber(HKEY key, const char* name, DWORD number) {
    const BYTE bytes[4] = {static_cast<BYTE>(number), static_cast<BYTE>(number >> 8),
                           static_cast<BYTE>(number >> 16), static_cast<BYTE>(number >> 24)};
    RegSetValueExA(key, name, 0, REG_DWORD, bytes, sizeof(bytes));
}

}  // namespace

// The factory values where bOverwrite allows, then the saved values where it allows.
static void LoadAssetDefaults(C& order, const AssetDefaults& asset, bool bOverwrite) {
    const auto fill = [bOverwrite](auto& field, const auto& value) {
        if (bOverwrite || !Marked(field)) field = value;
    };
    fill(order.m_Duration, "Day");
    fill(order.m_Quantity, asset.quantity);
    fill(order.m_QuantityType, kQuantityInShares);
    fill(order.m_OrderType, "Limit");
    fill(order.m_Route, "Intelligent");
    fill(order.m_AutoPrice, "");
    fill(order.m_StopAutoPrice, "");
    fill(order.m_AutoPrice3, "");
    if (asset.short82) fill(order.m_Short82, static_cast<SHORT>(0));
    if (asset.opens) fill(order.m_OpenClose, static_cast<SHORT>('O'));
    if (asset.pegAndShow) {
        fill(order.m_PegValue, "BEST");
        fill(order.m_ShowQuantity, 100);
        fill(order.m_DiscretionaryAmount, 0.05);
    }

    const CString path = QVGetRegistryRootKey(1) + asset.keySuffix;
    HKEY key = nullptr;
    if (RegOpenKeyExA(HKEY_CURRENT_USER, path, 0, KEY_READ, &key) != ERROR_SUCCESS) return;
    std::string text;
    DWORD number = 0;
    const auto readText = [&](ValidString& field, const char* name) {
        if ((bOverwrite || !field.IsValid()) && ReadText(key, name, text))
            field = std::string_view(text);
    };
    readText(order.m_Duration, "DefDuration");
    if ((bOverwrite || !order.m_QuantityType.valid) && ReadNumber(key, "QtyType", number)) {
        order.m_QuantityType = static_cast<SHORT>(static_cast<WORD>(number));
    }
    if (bOverwrite || !order.m_Quantity.valid) {
        // A quantity in shares is kept as text, any other (an amount of money) as a number.
        if (order.m_QuantityType == kQuantityInShares) {
            if (ReadText(key, "DefQty", text)) order.m_Quantity = AtoI(text.c_str());
        } else if (ReadNumber(key, "QtyDollar", number)) {
            order.m_Quantity = static_cast<LONG>(number);
        }
    }
    readText(order.m_OrderType, "DefType");
    readText(order.m_Route, "DefRoute");
    RegCloseKey(key);
}

void C::LoadDefaults(ULONG category, bool bOverwrite) {
    switch (category) {
        case 0:
            LoadFuturesDefaults(bOverwrite);
            break;
        case 2:
            LoadEquitiesDefaults(bOverwrite);
            break;
        case 3:
        case 8:
            LoadOptionsDefaults(bOverwrite);
            break;
        case 12:
            LoadForexDefaults(bOverwrite);
            break;
        default:
            break;
    }
}

void C::LoadEquitiesDefaults(bool bOverwrite) {
    LoadAssetDefaults(*this, kEquities, bOverwrite);
}

void C::LoadOptionsDefaults(bool bOverwrite) {
    LoadAssetDefaults(*this, kOptions, bOverwrite);
}

void C::LoadFuturesDefaults(bool bOverwrite) {
    LoadAssetDefaults(*this, kFutures, bOverwrite);
}

void C::LoadForexDefaults(bool bOverwrite) {
    LoadAssetDefaults(*this, kForex, bOverwrite);
}

void C::LoadAdvanceDefaults(ULONG category, bool bOverwrite) {
    switch (category) {
        case 0:
        case 12:
            LoadFuturesAdvancedSettingsDefaults(bOverwrite);
            break;
        case 2:
        case 3:
        case 8:
            LoadEquitiesAdvancedSettingsDefaults(bOverwrite);
            break;
        default:
            break;
    }
}

// The advanced switches off; with withPeg m_Peg too.
static void SwitchAdvancedOff(C& order, bool bOverwrite, bool withPeg) {
    for (ValidDataT<SHORT>* flag :
         {&order.m_AllOrNone, &order.m_ECNSweep, &order.m_NonDisplay, &order.m_BuyOnMinus,
          &order.m_ShortExempt, &order.m_ShowOnly, &order.m_Discretionary, &order.m_Peg}) {
        if (flag == &order.m_Peg && !withPeg) continue;
        if (bOverwrite || !flag->valid) *flag = static_cast<SHORT>(0);
    }
}

void C::LoadEquitiesAdvancedSettingsDefaults(bool bOverwrite) {
    SwitchAdvancedOff(*this, bOverwrite, false);
}

void C::LoadOptionsAdvancedSettingsDefaults(bool bOverwrite) {
    SwitchAdvancedOff(*this, bOverwrite, false);
}

void C::LoadFuturesAdvancedSettingsDefaults(bool bOverwrite) {
    SwitchAdvancedOff(*this, bOverwrite, true);
}

void C::LoadForexAdvancedSettingsDefaults(bool bOverwrite) {
    SwitchAdvancedOff(*this, bOverwrite, true);
}

void C::SaveDefaults(const char* keyPath) const {
    if (keyPath == nullptr) return;
    HKEY key = nullptr;
    if (RegCreateKeyExA(HKEY_CURRENT_USER, keyPath, 0, nullptr, REG_OPTION_NON_VOLATILE,
                        KEY_READ | KEY_WRITE, nullptr, &key, nullptr) != ERROR_SUCCESS) {
        return;
    }
    WriteText(key, "DefDuration", m_Duration.GetText());
    WriteText(key, "DefRoute", m_Route.GetText());
    WriteText(key, "DefType", m_OrderType.GetText());
    WriteText(key, "DefQty", CString(std::to_string(m_Quantity.value)));
    WriteNumber(key, "QtyType", static_cast<DWORD>(static_cast<LONG>(m_QuantityType.value)));
    RegCloseKey(key);
}

}  // namespace qvox
