#include "qvox/platform/Platform.h"

#include <mutex>
#include <utility>

namespace qvox {
namespace {

std::mutex g_services_mutex;

PlatformServices WithDefaults(PlatformServices services) {
    if (!services.locale) services.locale = std::make_shared<const FixedLocaleService>();
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
}

std::shared_ptr<const ILocaleService> CurrentLocaleService() {
    std::lock_guard<std::mutex> lock(g_services_mutex);
    return Installed().locale;
}

ScopedPlatformServices::ScopedPlatformServices(PlatformServices services)
    : saved_(GetPlatformServices()) {
    SetPlatformServices(std::move(services));
}

ScopedPlatformServices::~ScopedPlatformServices() {
    SetPlatformServices(std::move(saved_));
}

}  // namespace qvox
