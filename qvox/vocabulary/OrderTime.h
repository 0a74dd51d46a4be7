// GMT and local time for the dates of the advanced options. The offset is worked out for the
// year of the date itself from the zone rule the platform gives (GetTimeZoneInformation), so a
// winter date read in summer still gets standard time.
#pragma once

#include "qvox/platform/COleDateTime.h"

namespace qvox {

// A GMT date to local time. An invalid date stays as it is. A rule whose change dates cannot be
// read (month 0 or above 12, week outside 1 to 5, weekday above 6) counts as a zone without
// daylight time: the offset is Bias.
void GMTtoLocalTime(COleDateTime& date);
double GMTtoLocalTime(double date);
// A local date to GMT, by the same rule with the change dates in local clock time.
void LocalTimeToGMT(COleDateTime& date);
// Whether the date falls on today's local calendar day; the time of day plays no part.
bool IsTodayIncluded(double date);

}  // namespace qvox
