// The built-in time service: the machine's own zone (the TZ variable, else the system zone) and
// clock. The zone rule comes from the tz database through ICU, turned into the Windows form;
// FixedTimeService is a rule and a moment given by the caller, for applications and tests.
#pragma once

#include <cstdint>
#include <mutex>
#include <string>

#include "qvox/platform/TimeService.h"

namespace qvox {

class SystemTimeService final : public ITimeService {
  public:
    // The rule in force around the present moment. Derived again when TZ changes and at least
    // once a minute, so that the answer about daylight time stays current.
    DWORD GetTimeZoneInformation(TIME_ZONE_INFORMATION* info) const override;
    // Local calendar fields of the present moment, to the last timer tick (a few milliseconds).
    void GetLocalTime(SYSTEMTIME* now) const override;

  private:
    mutable std::mutex mutex_;
    mutable bool cached_ = false;
    mutable std::string zone_;
    mutable std::int64_t derivedAt_ = 0;  // seconds of the monotonic clock
    mutable TIME_ZONE_INFORMATION info_;
    mutable DWORD id_ = TIME_ZONE_ID_UNKNOWN;
};

class FixedTimeService final : public ITimeService {
  public:
    FixedTimeService(const TIME_ZONE_INFORMATION& info, const SYSTEMTIME& now,
                     DWORD id = TIME_ZONE_ID_STANDARD)
        : info_(info), now_(now), id_(id) {}
    DWORD GetTimeZoneInformation(TIME_ZONE_INFORMATION* info) const override;
    void GetLocalTime(SYSTEMTIME* now) const override;

  private:
    TIME_ZONE_INFORMATION info_;
    SYSTEMTIME now_;
    DWORD id_;
};

// The Windows form of an IANA zone's rule ("America/New_York") in force at a moment, given in
// milliseconds since 1970 UTC; null zoneId means the machine's zone. Bias is minus the standard
// offset, DaylightBias minus the daylight saving; each change date is month, week of the month
// (5 for the last), weekday and the local clock time just before the change. A zone without
// daylight time has both months 0. False, with info untouched, for an unknown zone.
bool DeriveTimeZoneInformation(const char* zoneId, double utcMillis, TIME_ZONE_INFORMATION* info,
                               DWORD* id);

}  // namespace qvox
