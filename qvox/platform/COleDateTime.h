// COleDateTime: a moment as days since midnight, 30 December 1899, in a double, the time of day
// being the fraction, with a status. Before that day the whole part counts days backward while
// the fraction still counts time forward: -1.25 is 29 December 1899, 06:00. All arithmetic goes
// through a linear scale, so spans add correctly on both sides of day 0. Valid dates run from
// the year 100 to 9999; calendar fields are rounded to the nearest second.
#pragma once

#include "qvox/platform/CString.h"
#include "qvox/platform/TimeService.h"
#include "qvox/platform/WinTypes.h"

namespace qvox {

using DATE = double;

// A length of time in days (fractions for the time of day); may be negative.
class COleDateTimeSpan {
  public:
    enum DateTimeSpanStatus : int { valid = 0, invalid = 1, null = 2 };

    COleDateTimeSpan() = default;
    explicit COleDateTimeSpan(double days) : m_span(days) {}
    COleDateTimeSpan(LONG days, int hours, int minutes, int seconds);

    double GetTotalDays() const { return m_span; }
    double GetTotalHours() const { return m_span * 24.0; }
    double GetTotalMinutes() const { return m_span * 1440.0; }
    double GetTotalSeconds() const { return m_span * 86400.0; }
    DateTimeSpanStatus GetStatus() const { return m_status; }
    void SetStatus(DateTimeSpanStatus status) { m_status = status; }

    COleDateTimeSpan operator-() const;
    COleDateTimeSpan operator+(const COleDateTimeSpan& other) const;
    COleDateTimeSpan operator-(const COleDateTimeSpan& other) const;
    bool operator==(const COleDateTimeSpan& other) const { return m_span == other.m_span; }
    bool operator<(const COleDateTimeSpan& other) const { return m_span < other.m_span; }

    double m_span = 0.0;
    DateTimeSpanStatus m_status = valid;
};

class COleDateTime {
  public:
    enum DateTimeStatus : int { error = -1, valid = 0, invalid = 1, null = 2 };

    // 30 December 1899, 00:00, valid.
    COleDateTime() = default;
    // The value as it is; invalid when it is not finite or outside the years 100 to 9999.
    COleDateTime(DATE value);  // NOLINT: implicit as on the platform
    // The calendar moment; invalid (value 0) when any field is out of range.
    COleDateTime(int year, int month, int day, int hour, int minute, int second);

    // The present moment in local time, from the platform's time service.
    static COleDateTime GetCurrentTime();

    DateTimeStatus GetStatus() const { return m_status; }
    void SetStatus(DateTimeStatus status) { m_status = status; }
    operator DATE() const { return m_dt; }  // NOLINT

    // 0 on success; 1, with the status invalid, when a field is out of range.
    int SetDateTime(int year, int month, int day, int hour, int minute, int second);
    int SetDate(int year, int month, int day) { return SetDateTime(year, month, day, 0, 0, 0); }
    // The time of day on 30 December 1899.
    int SetTime(int hour, int minute, int second) {
        return SetDateTime(1899, 12, 30, hour, minute, second);
    }

    // Calendar fields; -1 when the date is not valid. GetDayOfWeek gives 1 for Sunday.
    int GetYear() const;
    int GetMonth() const;
    int GetDay() const;
    int GetHour() const;
    int GetMinute() const;
    int GetSecond() const;
    int GetDayOfWeek() const;
    int GetDayOfYear() const;

    // All calendar fields at once (wDayOfWeek 0 for Sunday); false, writing nothing, when the
    // date is not valid.
    bool GetAsSystemTime(SYSTEMTIME& fields) const;

    // Moves along the time line; an invalid date or span gives an invalid result, and so does a
    // result outside the valid years.
    COleDateTime operator+(const COleDateTimeSpan& span) const;
    COleDateTime operator-(const COleDateTimeSpan& span) const;
    COleDateTime& operator+=(const COleDateTimeSpan& span) { return *this = *this + span; }
    COleDateTime& operator-=(const COleDateTimeSpan& span) { return *this = *this - span; }
    // The span between two dates; invalid if either is.
    COleDateTimeSpan operator-(const COleDateTime& other) const;

    // Ordered along the time line, not by the raw value (which runs backward before day 0).
    bool operator==(const COleDateTime& other) const;
    bool operator<(const COleDateTime& other) const;
    bool operator<=(const COleDateTime& other) const { return !(other < *this); }
    bool operator>(const COleDateTime& other) const { return other < *this; }
    bool operator>=(const COleDateTime& other) const { return !(*this < other); }

    // strftime-style: %Y %y %m %d %H %I %M %S %p %j %a %A %b %B %%; other characters are copied.
    // "" for a date that is not valid.
    CString Format(const char* format) const;
    // Reads "YYYY-MM-DD", "MM/DD/YYYY" or "HH:MM[:SS]", a date optionally followed by a time.
    // False, with the status invalid, for anything else.
    bool ParseDateTime(const char* text);

    DATE m_dt = 0.0;
    DateTimeStatus m_status = valid;
};

// Calendar helpers shared with the zone rules.
bool IsLeapYear(int year);
int DaysInMonth(int year, int month);
// 0 for Sunday; for any proleptic Gregorian date.
int DayOfWeek(int year, int month, int day);

}  // namespace qvox
