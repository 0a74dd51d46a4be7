#include "qvox/vocabulary/OrderTime.h"

#include "qvox/platform/TimeService.h"

namespace qvox {
namespace {

bool Readable(const SYSTEMTIME& change) {
    return change.wMonth >= 1 && change.wMonth <= 12 && change.wDay >= 1 && change.wDay <= 5 &&
           change.wDayOfWeek <= 6 && change.wHour <= 23 && change.wMinute <= 59 &&
           change.wSecond <= 59;
}

// The moment of a change in a year, in local clock time: the week-th such weekday of the month,
// week 5 being the last even in a month that has only four.
COleDateTime ChangeDate(const SYSTEMTIME& change, int year) {
    int day = 7 * change.wDay;
    if (day > 31) day = 31;
    COleDateTime date;
    while (day > 0 && date.SetDateTime(year, change.wMonth, day, change.wHour, change.wMinute,
                                       change.wSecond) != 0) {
        --day;
    }
    while (day > 1 && date.GetDayOfWeek() - 1 != change.wDayOfWeek) {
        --day;
        date.SetDateTime(year, change.wMonth, day, change.wHour, change.wMinute, change.wSecond);
    }
    return date;
}

// The offset in minutes (GMT = local + offset) in force at date, which is GMT when fromGmt.
LONG OffsetAt(const COleDateTime& date, bool fromGmt) {
    TIME_ZONE_INFORMATION zone;
    GetTimeZoneInformation(&zone);
    if (zone.StandardDate.wMonth == 0 || zone.DaylightDate.wMonth == 0 ||
        !Readable(zone.StandardDate) || !Readable(zone.DaylightDate)) {
        return zone.Bias;
    }
    const int year = date.GetYear();
    COleDateTime end = ChangeDate(zone.StandardDate, year);
    COleDateTime start = ChangeDate(zone.DaylightDate, year);
    if (fromGmt) {
        end += COleDateTimeSpan(0, 0, zone.Bias + zone.DaylightBias, 0);
        start += COleDateTimeSpan(0, 0, zone.Bias, 0);
    }
    // Where daylight time spans the turn of the year, it holds outside the standard season.
    const bool daylight =
        end < start ? (date <= end || date > start) : (date > start && date <= end);
    return daylight ? zone.Bias + zone.DaylightBias : zone.Bias;
}

}  // namespace

void GMTtoLocalTime(COleDateTime& date) {
    if (date.GetStatus() != COleDateTime::valid) return;
    date -= COleDateTimeSpan(0, 0, OffsetAt(date, true), 0);
}

double GMTtoLocalTime(double date) {
    COleDateTime value(date);
    if (value.GetStatus() != COleDateTime::valid) return date;
    GMTtoLocalTime(value);
    return value.m_dt;
}

void LocalTimeToGMT(COleDateTime& date) {
    if (date.GetStatus() != COleDateTime::valid) return;
    date += COleDateTimeSpan(0, 0, OffsetAt(date, false), 0);
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
