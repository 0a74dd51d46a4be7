// The one registration point for the services that the platform, not this library, provides.
// Every service has a built-in default that works out of the box; an application installs its
// own, and a test installs fakes for its own duration with ScopedPlatformServices.
#pragma once

#include <memory>

#include "qvox/platform/Locale.h"
#include "qvox/platform/MinMove.h"
#include "qvox/platform/PlatformDirectories.h"
#include "qvox/platform/PlatformObjects.h"
#include "qvox/platform/RegistryStore.h"
#include "qvox/platform/TimeService.h"

namespace qvox {

struct PlatformServices {
    // A null entry means the built-in service. Name the entries you set:
    // ScopedPlatformServices scope({.settings = store});
    std::shared_ptr<const ILocaleService> locale = nullptr;    // "." and "," for every locale
    std::shared_ptr<const IMinMoveService> minMove = nullptr;  // no min move differs by price level
    std::shared_ptr<const ITimeService> time = nullptr;        // the machine's zone and clock
    // $QVOX_ROOT or a per-user data directory; settings below "Software\QVOX"
    std::shared_ptr<const IPlatformDirectories> directories = nullptr;
    // an SQLite file "settings.db" in the root directory of `directories`
    std::shared_ptr<IRegistryStore> settings = nullptr;
    // the library's own property objects and collections; no root object
    std::shared_ptr<const IPlatformObjects> objects = nullptr;
};

// The services in force. Never holds a null entry.
PlatformServices GetPlatformServices();

// Installs services for the whole process; null entries get the built-in defaults. Safe to call
// while other threads use the services: a caller keeps what it fetched until it is done.
void SetPlatformServices(PlatformServices services);

// The locale service in force.
std::shared_ptr<const ILocaleService> CurrentLocaleService();
// The min move service in force.
std::shared_ptr<const IMinMoveService> CurrentMinMoveService();
// The time service in force.
std::shared_ptr<const ITimeService> CurrentTimeService();
// The directories in force.
std::shared_ptr<const IPlatformDirectories> CurrentPlatformDirectories();
// The settings store in force.
std::shared_ptr<IRegistryStore> CurrentSettingsStore();
// The platform's object service in force.
std::shared_ptr<const IPlatformObjects> CurrentPlatformObjects();

// Installs services for its lifetime and restores the previous ones when it ends.
class ScopedPlatformServices {
  public:
    explicit ScopedPlatformServices(PlatformServices services);
    ~ScopedPlatformServices();
    ScopedPlatformServices(const ScopedPlatformServices&) = delete;
    ScopedPlatformServices& operator=(const ScopedPlatformServices&) = delete;

  private:
    PlatformServices saved_;
};

}  // namespace qvox
