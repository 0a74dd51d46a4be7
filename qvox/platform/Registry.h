// The user's settings as the platform's applications know them: keys below HKEY_CURRENT_USER
// with named values of type REG_SZ, REG_EXPAND_SZ or REG_DWORD, reached through the registry
// calls' own shapes. Behind them stands a settings store (RegistryStore.h) that the platform
// installs; by default an SQLite database file under the platform's root directory, which every
// application of the platform shares at once.
//
// Key paths are compared without regard to ASCII case, as the registry does, and so are value
// names. A path is a list of names between single backslashes; a path that starts with a
// backslash or holds an empty name is refused (a trailing backslash is ignored).
#pragma once

#include "qvox/platform/WinError.h"
#include "qvox/platform/WinTypes.h"

namespace qvox {

// An open key. Callers hold it only through HKEY and give it back with RegCloseKey.
struct RegistryKey;
using HKEY = RegistryKey*;
using PHKEY = HKEY*;
using REGSAM = DWORD;
using LSTATUS = LONG;

// The root of the user's settings. Never closed.
extern const HKEY HKEY_CURRENT_USER;

// Value types.
inline constexpr DWORD REG_NONE = 0;
inline constexpr DWORD REG_SZ = 1;
inline constexpr DWORD REG_EXPAND_SZ = 2;
inline constexpr DWORD REG_BINARY = 3;
inline constexpr DWORD REG_DWORD = 4;

// Access rights. Reading values needs KEY_QUERY_VALUE, writing them KEY_SET_VALUE; opening a
// key below an open key needs no right of the parent, creating one needs KEY_CREATE_SUB_KEY.
inline constexpr REGSAM KEY_QUERY_VALUE = 0x0001;
inline constexpr REGSAM KEY_SET_VALUE = 0x0002;
inline constexpr REGSAM KEY_CREATE_SUB_KEY = 0x0004;
inline constexpr REGSAM KEY_ENUMERATE_SUB_KEYS = 0x0008;
inline constexpr REGSAM KEY_NOTIFY = 0x0010;
inline constexpr REGSAM KEY_CREATE_LINK = 0x0020;
inline constexpr REGSAM KEY_WOW64_64KEY = 0x0100;
inline constexpr REGSAM KEY_WOW64_32KEY = 0x0200;
inline constexpr REGSAM READ_CONTROL = 0x00020000;
inline constexpr REGSAM KEY_READ = 0x00020019;
inline constexpr REGSAM KEY_WRITE = 0x00020006;
inline constexpr REGSAM KEY_EXECUTE = KEY_READ;
inline constexpr REGSAM KEY_ALL_ACCESS = 0x000F003F;

// Dispositions of RegCreateKeyExA.
inline constexpr DWORD REG_CREATED_NEW_KEY = 1;
inline constexpr DWORD REG_OPENED_EXISTING_KEY = 2;
inline constexpr DWORD REG_OPTION_NON_VOLATILE = 0;

// Results besides ERROR_SUCCESS and ERROR_INVALID_PARAMETER (WinError.h).
inline constexpr LSTATUS ERROR_FILE_NOT_FOUND = 2;       // no such key or value
inline constexpr LSTATUS ERROR_ACCESS_DENIED = 5;        // the key was not opened for that
inline constexpr LSTATUS ERROR_INVALID_HANDLE = 6;       // not an open key
inline constexpr LSTATUS ERROR_BAD_PATHNAME = 161;       // a path with an empty name
inline constexpr LSTATUS ERROR_MORE_DATA = 234;          // the buffer is too small
inline constexpr LSTATUS ERROR_CANTREAD = 1012;          // the store could not be read
inline constexpr LSTATUS ERROR_CANTWRITE = 1013;         // the store could not be written
inline constexpr LSTATUS ERROR_REGISTRY_CORRUPT = 1015;  // the store is damaged or foreign
inline constexpr LSTATUS ERROR_LOCK_VIOLATION = 33;      // the store stayed locked too long

// Opens subKey below key (null or "" opens key itself again) with the rights of sam. The
// handle written to *result must be closed with RegCloseKey.
LSTATUS RegOpenKeyExA(HKEY key, const char* subKey, DWORD options, REGSAM sam, PHKEY result);
// Opens subKey below key, creating it and every missing key above it. disposition, when not
// null, says whether the key was new. lpClass and security are not kept.
LSTATUS RegCreateKeyExA(HKEY key, const char* subKey, DWORD reserved, char* lpClass, DWORD options,
                        REGSAM sam, const void* security, PHKEY result, DWORD* disposition);
// Reads the value called name (null or "" for the key's default value). type, data and
// cbData may each be null. With data null and cbData not null, *cbData becomes the size of the
// value. With a buffer smaller than the value: ERROR_MORE_DATA, nothing copied, *cbData the
// size needed. The bytes come back as they were written, a string's terminator included when
// the writer wrote one.
LSTATUS RegQueryValueExA(HKEY key, const char* name, DWORD* reserved, DWORD* type, BYTE* data,
                         DWORD* cbData);
// Writes cbData bytes of data as the value called name, with its type, replacing what was
// there. The bytes are kept as given (a REG_SZ needs its terminator counted in cbData).
LSTATUS RegSetValueExA(HKEY key, const char* name, DWORD reserved, DWORD type, const BYTE* data,
                       DWORD cbData);
// Gives the handle back. Closing HKEY_CURRENT_USER does nothing.
LSTATUS RegCloseKey(HKEY key);

}  // namespace qvox
