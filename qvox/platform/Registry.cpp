#include "qvox/platform/Registry.h"

#include <cstring>
#include <memory>
#include <string>
#include <utility>

#include "qvox/platform/Platform.h"
#include "qvox/platform/WinError.h"

namespace qvox {

struct RegistryKey {
    // Null for HKEY_CURRENT_USER, which reaches the store in force at each call; an opened key
    // keeps the store it was opened in.
    std::shared_ptr<IRegistryStore> store;
    std::string path;
    REGSAM sam = KEY_ALL_ACCESS;
};

namespace {

RegistryKey g_currentUser;

constexpr LONG kSuccess = static_cast<LONG>(ERROR_SUCCESS);
constexpr LONG kInvalidParameter = static_cast<LONG>(ERROR_INVALID_PARAMETER);

std::shared_ptr<IRegistryStore> StoreOf(const RegistryKey& key) {
    return key.store ? key.store : CurrentSettingsStore();
}

// key's path joined with subKey; ERROR_BAD_PATHNAME for a leading backslash or an empty name.
LONG JoinPath(const RegistryKey& key, const char* subKey, std::string& path) {
    path = key.path;
    std::string_view rest = subKey != nullptr ? std::string_view(subKey) : std::string_view();
    if (!rest.empty() && rest.back() == '\\') rest.remove_suffix(1);
    if (rest.empty()) return kSuccess;
    if (rest.front() == '\\' || rest.find("\\\\") != std::string_view::npos) {
        return ERROR_BAD_PATHNAME;
    }
    if (!path.empty()) path += '\\';
    path += rest;
    return kSuccess;
}

std::string_view NameOf(const char* name) {
    return name != nullptr ? std::string_view(name) : std::string_view();
}

LONG Open(HKEY key, const char* subKey, REGSAM sam, PHKEY result, bool create, DWORD* disposition) {
    if (result == nullptr) return kInvalidParameter;
    *result = nullptr;
    if (key == nullptr) return ERROR_INVALID_HANDLE;
    if (create && (key->sam & KEY_CREATE_SUB_KEY) == 0) return ERROR_ACCESS_DENIED;
    auto opened = std::make_unique<RegistryKey>();
    opened->store = StoreOf(*key);
    opened->sam = sam;
    if (const LONG joined = JoinPath(*key, subKey, opened->path); joined != kSuccess) {
        return joined;
    }
    bool created = false;
    const LONG status = create ? opened->store->CreateKey(opened->path, created)
                               : opened->store->OpenKey(opened->path);
    if (status != kSuccess) return status;
    if (disposition != nullptr) {
        *disposition = created ? REG_CREATED_NEW_KEY : REG_OPENED_EXISTING_KEY;
    }
    *result = opened.release();
    return kSuccess;
}

}  // namespace

const HKEY HKEY_CURRENT_USER = &g_currentUser;

LSTATUS RegOpenKeyExA(HKEY key, const char* subKey, DWORD, REGSAM sam, PHKEY result) {
    return Open(key, subKey, sam, result, false, nullptr);
}

LSTATUS RegCreateKeyExA(HKEY key, const char* subKey, DWORD reserved, char*, DWORD, REGSAM sam,
                        const void*, PHKEY result, DWORD* disposition) {
    if (subKey == nullptr || reserved != 0) {
        if (result != nullptr) *result = nullptr;
        return kInvalidParameter;
    }
    return Open(key, subKey, sam, result, true, disposition);
}

LSTATUS RegQueryValueExA(HKEY key, const char* name, DWORD* reserved, DWORD* type, BYTE* data,
                         DWORD* cbData) {
    if (key == nullptr) return ERROR_INVALID_HANDLE;
    if (reserved != nullptr || (data != nullptr && cbData == nullptr)) return kInvalidParameter;
    if ((key->sam & KEY_QUERY_VALUE) == 0) return ERROR_ACCESS_DENIED;
    RegistryValue value;
    if (const LONG status = StoreOf(*key)->QueryValue(key->path, NameOf(name), value);
        status != kSuccess) {
        return status;
    }
    if (type != nullptr) *type = value.type;
    if (cbData == nullptr) return kSuccess;
    const auto size = static_cast<DWORD>(value.data.size());
    LONG status = kSuccess;
    if (data != nullptr) {
        if (*cbData < size) {
            status = ERROR_MORE_DATA;
        } else if (size > 0) {
            std::memcpy(data, value.data.data(), size);
        }
    }
    *cbData = size;
    return status;
}

LSTATUS RegSetValueExA(HKEY key, const char* name, DWORD reserved, DWORD type, const BYTE* data,
                       DWORD cbData) {
    if (key == nullptr) return ERROR_INVALID_HANDLE;
    if (reserved != 0 || (data == nullptr && cbData != 0)) return kInvalidParameter;
    if ((key->sam & KEY_SET_VALUE) == 0) return ERROR_ACCESS_DENIED;
    return StoreOf(*key)->SetValue(key->path, NameOf(name), type, data, cbData);
}

LSTATUS RegCloseKey(HKEY key) {
    if (key == nullptr) return ERROR_INVALID_HANDLE;
    if (key != HKEY_CURRENT_USER) delete key;
    return kSuccess;
}

}  // namespace qvox
