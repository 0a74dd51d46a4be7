#include "qvox/platform/PlatformDirectories.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "qvox/platform/Platform.h"

namespace qvox {
namespace {

std::string FromEnvironment(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? std::string(value) : std::string();
}

std::string WithoutTrailingSeparators(std::string path) {
    while (path.size() > 1 && (path.back() == '/' || path.back() == '\\'))
        path.pop_back();
    return path;
}

}  // namespace

std::string DefaultPlatformDirectories::RootDirectory() const {
    if (std::string root = FromEnvironment("QVOX_ROOT"); !root.empty()) {
        return WithoutTrailingSeparators(std::move(root));
    }
    if (std::string data = FromEnvironment("XDG_DATA_HOME"); !data.empty()) {
        return WithoutTrailingSeparators(std::move(data)) + "/qvox";
    }
    if (std::string home = FromEnvironment("HOME"); !home.empty()) {
        return WithoutTrailingSeparators(std::move(home)) + "/.local/share/qvox";
    }
    return ".";
}

CString DefaultPlatformDirectories::RegistryRootKey(int) const {
    return CString("Software\\QVOX");
}

DWORD GetKelvarRootDir(char* buffer, DWORD size) {
    // Asked at unload too, when this thread's cached copy of the services may already be gone:
    // take the services in force directly. No caller asks often.
    const std::string root = GetPlatformServices().directories->RootDirectory();
    if (buffer != nullptr && size > 0) {
        const std::size_t length = std::min<std::size_t>(root.size(), size - 1);
        std::memcpy(buffer, root.data(), length);
        buffer[length] = '\0';
    }
    return static_cast<DWORD>(root.size());
}

CString QVGetRegistryRootKey(int which) {
    return CurrentPlatformDirectories()->RegistryRootKey(which);
}

}  // namespace qvox
