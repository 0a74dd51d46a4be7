// The route cache loader on any bytes: it keeps what it could read and raises nothing but the
// archive's end-of-input, however large the counts and lengths the bytes claim; and what it kept
// stores and loads back to the same bytes.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "FuzzCheck.h"
#include "qvox/platform/CArchive.h"
#include "qvox/platform/Platform.h"
#include "qvox/platform/Registry.h"
#include "qvox/routes/RouteManager.h"

namespace qvox {

class RouteManagerAccess {
  public:
    // Loads bytes into a manager that was never started, so that it writes no file.
    static void Load(RouteManager& manager, const std::vector<BYTE>& bytes) {
        CMemFile file(bytes);
        CArchive ar(&file, CArchive::load);
        try {
            manager.Serialize(ar);
        } catch (const CArchiveException& e) {
            fuzz::Require(e.m_cause == CArchiveException::endOfFile);
        }
    }
    static std::vector<BYTE> Store(RouteManager& manager) {
        CMemFile file;
        {
            CArchive ar(&file, CArchive::store);
            manager.Serialize(ar);
        }
        return file.Data();
    }
};

}  // namespace qvox

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace qvox;
    // No root directory to write to; the test-route setting in memory, on for odd first bytes.
    static const bool installed = [] {
        PlatformServices services;
        services.directories =
            std::make_shared<FixedPlatformDirectories>("/nonexistent", "Software\\Fuzz");
        services.settings = SqliteRegistryStore::InMemory();
        SetPlatformServices(services);
        return true;
    }();
    (void)installed;
    const DWORD testing = size > 0 ? data[0] & 1u : 0u;
    HKEY key = nullptr;
    RegCreateKeyExA(HKEY_CURRENT_USER, "Software\\Fuzz\\Order Entry\\Settings", 0, nullptr, 0,
                    KEY_ALL_ACCESS, nullptr, &key, nullptr);
    RegSetValueExA(key, "Test Route", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&testing), 4);
    RegCloseKey(key);

    RouteManager first;
    RouteManagerAccess::Load(first, std::vector<BYTE>(data, data + size));
    const std::vector<BYTE> stored = RouteManagerAccess::Store(first);
    fuzz::Require(stored.size() >= 36);
    RouteManager second;
    RouteManagerAccess::Load(second, stored);
    fuzz::Require(RouteManagerAccess::Store(second) == stored);
    return 0;
}
