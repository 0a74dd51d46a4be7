// The user's time zone and the present moment, as the Windows calls give them. The zone rule is
// the Windows form: a bias in minutes with GMT = local + bias, and the two yearly changes, each as
// month, week of the month (1 to 5, 5 meaning the last), weekday and local clock time.
#pragma once

#include "qvox/platform/WinTypes.h"

namespace qvox {

struct SYSTEMTIME {
    WORD wYear = 0;
    WORD wMonth = 0;      // 1 to 12; 0 in a zone rule that has no such change
    WORD wDayOfWeek = 0;  // 0 is Sunday
    WORD wDay = 0;        // day of the month; in a zone rule the week of the month, 1 to 5
    WORD wHour = 0;
    WORD wMinute = 0;
    WORD wSecond = 0;
    WORD wMilliseconds = 0;
};

struct TIME_ZONE_INFORMATION {
    LONG Bias = 0;            // minutes; GMT = local standard time + Bias
    SYSTEMTIME StandardDate;  // the change into standard time, in daylight clock time
    LONG StandardBias = 0;
    SYSTEMTIME DaylightDate;  // the change into daylight time, in standard clock time
    LONG DaylightBias = 0;    // minutes that daylight time adds to Bias (-60 for one hour ahead)
};
using LPTIME_ZONE_INFORMATION = TIME_ZONE_INFORMATION*;

inline constexpr DWORD TIME_ZONE_ID_UNKNOWN = 0;   // the zone has no daylight time
inline constexpr DWORD TIME_ZONE_ID_STANDARD = 1;  // standard time is in force now
inline constexpr DWORD TIME_ZONE_ID_DAYLIGHT = 2;  // daylight time is in force now
inline constexpr DWORD TIME_ZONE_ID_INVALID = 0xFFFFFFFFu;

// What the platform knows of the clock: installed through Platform.h.
class ITimeService {
  public:
    virtual ~ITimeService() = default;
    // Writes the rule of the user's zone and says which half of it is in force now.
    virtual DWORD GetTimeZoneInformation(TIME_ZONE_INFORMATION* info) const = 0;
    // The present moment as local calendar fields.
    virtual void GetLocalTime(SYSTEMTIME* now) const = 0;
};

// Through the installed service. A null argument gives TIME_ZONE_ID_INVALID and writes nothing.
DWORD GetTimeZoneInformation(LPTIME_ZONE_INFORMATION info);
// Through the installed service. A null argument is ignored.
void GetLocalTime(SYSTEMTIME* now);

}  // namespace qvox
