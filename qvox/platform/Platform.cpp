#include "qvox/platform/Platform.h"

#include <atomic>
#include <cstdint>
#include <mutex>
#include <utility>

#include "qvox/platform/SystemTimeService.h"

namespace qvox {
namespace {

std::mutex g_services_mutex;
// Bumped by every installation, so that a thread can tell whether its snapshot is current
// without taking the lock: the services are asked on hot paths (every time of an order string).
std::atomic<std::uint64_t> g_generation{1};

PlatformServices WithDefaults(PlatformServices services) {
    if (!services.locale) services.locale = std::make_shared<const FixedLocaleService>();
    if (!services.minMove) services.minMove = std::make_shared<const PlainMinMoveService>();
    if (!services.time) services.time = std::make_shared<const SystemTimeService>();
    if (!services.directories) {
        services.directories = std::make_shared<const DefaultPlatformDirectories>();
    }
    if (!services.settings) {
        // Opened on first use: a program that never reads a setting never touches the file.
        services.settings = std::make_shared<SqliteRegistryStore>(
            std::filesystem::path(services.directories->RootDirectory()) / "settings.db");
    }
    if (!services.objects) services.objects = std::make_shared<const LibraryPlatformObjects>();
    return services;
}

PlatformServices& Installed() {
    static PlatformServices services = WithDefaults({});
    return services;
}

}  // namespace

PlatformServices GetPlatformServices() {
    std::lock_guard<std::mutex> lock(g_services_mutex);
    return Installed();
}

void SetPlatformServices(PlatformServices services) {
    services = WithDefaults(std::move(services));
    std::lock_guard<std::mutex> lock(g_services_mutex);
    // The old services are released outside the lock, when `services` goes out of scope.
    std::swap(Installed(), services);
    g_generation.fetch_add(1, std::memory_order_release);
}

namespace {

// This thread's copy of the services in force. It keeps the services it holds alive until the
// thread next asks after a change, or ends.
const PlatformServices& Snapshot() {
    struct Cached {
        std::uint64_t generation = 0;
        PlatformServices services;
    };
    thread_local Cached cached;
    if (cached.generation != g_generation.load(std::memory_order_acquire)) {
        std::lock_guard<std::mutex> lock(g_services_mutex);
        cached.services = Installed();
        cached.generation = g_generation.load(std::memory_order_relaxed);
    }
    return cached.services;
}

}  // namespace

std::shared_ptr<const ILocaleService> CurrentLocaleService() {
    return Snapshot().locale;
}

std::shared_ptr<const IMinMoveService> CurrentMinMoveService() {
    return Snapshot().minMove;
}

std::shared_ptr<const ITimeService> CurrentTimeService() {
    return Snapshot().time;
}

std::shared_ptr<const IPlatformDirectories> CurrentPlatformDirectories() {
    return Snapshot().directories;
}

std::shared_ptr<IRegistryStore> CurrentSettingsStore() {
    return Snapshot().settings;
}

std::shared_ptr<const IPlatformObjects> CurrentPlatformObjects() {
    return Snapshot().objects;
}

ScopedPlatformServices::ScopedPlatformServices(PlatformServices services)
    : saved_(GetPlatformServices()) {
    SetPlatformServices(std::move(services));
}

ScopedPlatformServices::~ScopedPlatformServices() {
    SetPlatformServices(std::move(saved_));
}

}  // namespace qvox
