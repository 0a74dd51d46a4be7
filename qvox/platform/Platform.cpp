#include "qvox/platform/Platform.h"

#include <mutex>
#include <utility>

#include "qvox/platform/SystemTimeService.h"

namespace qvox {
namespace {

std::mutex g_services_mutex;

PlatformServices WithDefaults(PlatformServices services) {
    if (!services.locale) services.locale = std::make_shared<const FixedLocaleService>();
    if (!services.minMove) services.minMove = std::make_shared<const PlainMinMoveService>();
    if (!services.time) services.time = std::make_shared<const SystemTimeService>();
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

std::shared_ptr<const IMinMoveService> CurrentMinMoveService() {
    std::lock_guard<std::mutex> lock(g_services_mutex);
    return Installed().minMove;
}

std::shared_ptr<const ITimeService> CurrentTimeService() {
    std::lock_guard<std::mutex> lock(g_services_mutex);
    return Installed().time;
}

ScopedPlatformServices::ScopedPlatformServices(PlatformServices services)
    : saved_(GetPlatformServices()) {
    SetPlatformServices(std::move(services));
}

ScopedPlatformServices::~ScopedPlatformServices() {
    SetPlatformServices(std::move(saved_));
}

}  // namespace qvox
