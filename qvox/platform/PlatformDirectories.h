// Where the platform keeps its files and the user's settings: its root directory, and the key
// below HKEY_CURRENT_USER under which the applications keep their settings.
#pragma once

#include <string>

#include "qvox/platform/CString.h"
#include "qvox/platform/WinTypes.h"

namespace qvox {

class IPlatformDirectories {
  public:
    virtual ~IPlatformDirectories() = default;
    // The root directory, without a trailing separator.
    virtual std::string RootDirectory() const = 0;
    // The root key path of the user's settings below HKEY_CURRENT_USER, without a backslash at
    // either end. which is the platform's selector; its applications ask for 1.
    virtual CString RegistryRootKey(int which) const = 0;
};

// Out of the box: the root directory is $QVOX_ROOT, else $XDG_DATA_HOME/qvox, else
// $HOME/.local/share/qvox, else the current directory; the settings key is "Software\QVOX" for
// every selector.
class DefaultPlatformDirectories final : public IPlatformDirectories {
  public:
    std::string RootDirectory() const override;
    CString RegistryRootKey(int which) const override;
};

// A given root directory and settings key, for an application that knows its own or a test.
class FixedPlatformDirectories final : public IPlatformDirectories {
  public:
    FixedPlatformDirectories(std::string root, CString registryRootKey)
        : m_root(std::move(root)), m_key(std::move(registryRootKey)) {}
    std::string RootDirectory() const override { return m_root; }
    CString RegistryRootKey(int) const override { return m_key; }

  private:
    std::string m_root;
    CString m_key;
};

// The platform's calls. The root directory into buffer, cut to size - 1 characters and always
// terminated (nothing with size 0); returns the length of the whole text.
DWORD GetKelvarRootDir(char* buffer, DWORD size);
// The settings key path of the directories service in force.
CString QVGetRegistryRootKey(int which);

}  // namespace qvox
