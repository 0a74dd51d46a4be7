#include "qvox/vocabulary/OrderTime.h"

#include <algorithm>

namespace qvox {
namespace {

bool Readable(const SYSTEMTIME& change) {
    return change.wMonth >= 1 && change.wMonth <= 12 && change.wDay >= 1 && change.wDay <= 5 &&
           change.wDayOfWeek <= 6 && change.wHour <= 23 && change.wMinute <= 59 &&
           change.wSecond <= 59;
}

// The moment of a change in a year, in local clock time: the week-th such weekday of the month,
// week 5 being the last even in a month that has only four. The day of week 1 to 4 is at least
// the 7th, so the weekday is always found within the month.
COleDateTime ChangeDate(const SYSTEMTIME& change, int year) {
    const int month = change.wMonth;
    int day = std::min(7 * change.wDay, DaysInMonth(year, month));
    day -= (DayOfWeek(year, month, day) - change.wDayOfWeek + 7) % 7;
    return COleDateTime(year, month, day, change.wHour, change.wMinute, change.wSecond);
}

TIME_ZONE_INFORMATION CurrentZone() {
    TIME_ZONE_INFORMATION zone;
    GetTimeZoneInformation(&zone);
    return zone;
}

}  // namespace

ZoneRule::ZoneRule() : ZoneRule(CurrentZone()) {}

ZoneRule::ZoneRule(const TIME_ZONE_INFORMATION& zone)
    : zone_(zone),
      changes_(zone.StandardDate.wMonth != 0 && zone.DaylightDate.wMonth != 0 &&
               Readable(zone.StandardDate) && Readable(zone.DaylightDate)),
      standardOffset_(0, 0, zone.Bias, 0),
      daylightOffset_(0, 0, zone.Bias + zone.DaylightBias, 0) {}

const COleDateTimeSpan& ZoneRule::OffsetAt(const COleDateTime& date, bool fromGmt) {
    if (!changes_) return standardOffset_;
    const int year = date.GetYear();
    if (year != year_) {
        standard_ = ChangeDate(zone_.StandardDate, year);
        daylight_ = ChangeDate(zone_.DaylightDate, year);
        // In GMT the change into standard time happens in daylight time, and the other way.
        standardGmt_ = standard_ + daylightOffset_;
        daylightGmt_ = daylight_ + standardOffset_;
        year_ = year;
    }
    const COleDateTime& end = fromGmt ? standardGmt_ : standard_;
    const COleDateTime& start = fromGmt ? daylightGmt_ : daylight_;
    // Where daylight time spans the turn of the year, it holds outside the standard season.
    const bool daylight =
        end < start ? (date <= end || date > start) : (date > start && date <= end);
    return daylight ? daylightOffset_ : standardOffset_;
}

void ZoneRule::ToLocal(COleDateTime& date) {
    if (date.GetStatus() != COleDateTime::valid) return;
    date -= OffsetAt(date, true);
}

void ZoneRule::ToGmt(COleDateTime& date) {
    if (date.GetStatus() != COleDateTime::valid) return;
    date += OffsetAt(date, false);
}

void GMTtoLocalTime(COleDateTime& date) {
    if (date.GetStatus() != COleDateTime::valid) return;
    ZoneRule().ToLocal(date);
}

double GMTtoLocalTime(double date) {
    COleDateTime value(date);
    if (value.GetStatus() != COleDateTime::valid) return date;
    GMTtoLocalTime(value);
    return value.m_dt;
}

void LocalTimeToGMT(COleDateTime& date) {
    if (date.GetStatus() != COleDateTime::valid) return;
    ZoneRule().ToGmt(date);
}

bool IsTodayIncluded(double date) {
    const COleDateTime value(date);
    if (value.GetStatus() != COleDateTime::valid) return false;
    SYSTEMTIME now;
    GetLocalTime(&now);
    return value.GetYear() == now.wYear && value.GetMonth() == now.wMonth &&
           value.GetDay() == now.wDay;
}

}  // namespace qvox
