// GMT and local time for the dates of the advanced options. The offset is worked out for the
// year of the date itself from the zone rule the platform gives (GetTimeZoneInformation), so a
// winter date read in summer still gets standard time.
#pragma once

#include "qvox/platform/COleDateTime.h"
#include "qvox/platform/TimeService.h"

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

// The zone rule read once, for code that converts several dates in one go (the functions above
// read it afresh on every call). The change dates of a year are worked out when the first date
// of that year comes, and kept.
class ZoneRule {
  public:
    // The rule of the time service in force.
    ZoneRule();
    explicit ZoneRule(const TIME_ZONE_INFORMATION& zone);

    // As GMTtoLocalTime and LocalTimeToGMT, with this rule.
    void ToLocal(COleDateTime& date);
    void ToGmt(COleDateTime& date);

  private:
    // The offset (GMT = local + offset) in force at date, which is GMT when fromGmt.
    const COleDateTimeSpan& OffsetAt(const COleDateTime& date, bool fromGmt);

    TIME_ZONE_INFORMATION zone_;
    bool changes_ = false;  // both change dates can be read
    // Bias, and Bias + DaylightBias, in minutes as spans.
    COleDateTimeSpan standardOffset_;
    COleDateTimeSpan daylightOffset_;
    int year_ = 0;  // the year of the change dates below; 0 before the first
    // The changes into standard and into daylight time, in local clock time and in GMT.
    COleDateTime standard_, daylight_, standardGmt_, daylightGmt_;
};

}  // namespace qvox
