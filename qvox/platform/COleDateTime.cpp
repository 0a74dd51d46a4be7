#include "qvox/platform/COleDateTime.h"

#include <cmath>
#include <cstdint>
#include <cstdio>

#include "qvox/platform/Platform.h"

namespace qvox {
namespace {

constexpr double kSecondsPerDay = 86400.0;
// The valid range: 1 January 100, 00:00 to 31 December 9999, 23:59:59.
constexpr double kMinDate = -657434.0;
constexpr double kMaxDate = 2958465.99999;
// Days from 1 January 1970 back to the platform's day 0, 30 December 1899.
constexpr std::int64_t kEpochOffset = 25569;

// Days since 1 January 1970 of a proleptic Gregorian date.
std::int64_t DaysFromCivil(std::int64_t y, unsigned m, unsigned d) {
    y -= m <= 2;
    const std::int64_t era = (y >= 0 ? y : y - 399) / 400;
    const auto yoe = static_cast<unsigned>(y - era * 400);
    const unsigned doy = (153 * (m > 2 ? m - 3 : m + 9) + 2) / 5 + d - 1;
    const unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + static_cast<std::int64_t>(doe) - 719468;
}

struct Civil {
    int year;
    int month;
    int day;
};

Civil CivilFromDays(std::int64_t z) {
    z += 719468;
    const std::int64_t era = (z >= 0 ? z : z - 146096) / 146097;
    const auto doe = static_cast<unsigned>(z - era * 146097);
    const unsigned yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    const std::int64_t y = static_cast<std::int64_t>(yoe) + era * 400;
    const unsigned doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const unsigned mp = (5 * doy + 2) / 153;
    const unsigned d = doy - (153 * mp + 2) / 5 + 1;
    const unsigned m = mp < 10 ? mp + 3 : mp - 9;
    return {static_cast<int>(y + (m <= 2)), static_cast<int>(m), static_cast<int>(d)};
}

bool InRange(double dt) {
    return std::isfinite(dt) && dt >= kMinDate && dt <= kMaxDate;
}

// The stored value on a linear scale: the whole part counts days, the fraction time forward.
double ToLinear(double dt) {
    if (dt >= 0.0) return dt;
    const double whole = std::trunc(dt);
    return whole + (whole - dt);
}

double FromLinear(double linear) {
    if (linear >= 0.0) return linear;
    const double day = std::floor(linear);
    const double time = linear - day;
    return day - time;
}

struct Fields {
    Civil date;
    int hour;
    int minute;
    int second;
    std::int64_t dayNumber;  // days since 30 December 1899
};

// The calendar fields of a valid value, rounded to the nearest second.
Fields Split(double dt) {
    const auto seconds = static_cast<std::int64_t>(std::llround(ToLinear(dt) * kSecondsPerDay));
    std::int64_t day = seconds / 86400;
    std::int64_t rest = seconds % 86400;
    if (rest < 0) {
        rest += 86400;
        --day;
    }
    Fields f{};
    f.dayNumber = day;
    f.date = CivilFromDays(day - kEpochOffset);
    f.hour = static_cast<int>(rest / 3600);
    f.minute = static_cast<int>(rest / 60 % 60);
    f.second = static_cast<int>(rest % 60);
    return f;
}

constexpr const char* kDayNames[] = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                     "Thursday", "Friday", "Saturday"};
constexpr const char* kMonthNames[] = {"January",   "February", "March",    "April",
                                       "May",       "June",     "July",     "August",
                                       "September", "October",  "November", "December"};

}  // namespace

bool IsLeapYear(int year) {
    return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

int DaysInMonth(int year, int month) {
    static constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (month < 1 || month > 12) return 0;
    return month == 2 && IsLeapYear(year) ? 29 : kDays[month - 1];
}

int DayOfWeek(int year, int month, int day) {
    const std::int64_t days =
        DaysFromCivil(year, static_cast<unsigned>(month), static_cast<unsigned>(day));
    // 1 January 1970 was a Thursday.
    return static_cast<int>(((days % 7) + 7 + 4) % 7);
}

COleDateTimeSpan::COleDateTimeSpan(LONG days, int hours, int minutes, int seconds)
    : m_span(days + (hours + (minutes + seconds / 60.0) / 60.0) / 24.0) {}

COleDateTimeSpan COleDateTimeSpan::operator-() const {
    COleDateTimeSpan span(-m_span);
    span.m_status = m_status;
    return span;
}

COleDateTimeSpan COleDateTimeSpan::operator+(const COleDateTimeSpan& other) const {
    COleDateTimeSpan span(m_span + other.m_span);
    if (m_status != valid || other.m_status != valid) span.m_status = invalid;
    return span;
}

COleDateTimeSpan COleDateTimeSpan::operator-(const COleDateTimeSpan& other) const {
    return *this + (-other);
}

COleDateTime::COleDateTime(DATE value) : m_dt(value), m_status(InRange(value) ? valid : invalid) {}

COleDateTime::COleDateTime(int year, int month, int day, int hour, int minute, int second) {
    SetDateTime(year, month, day, hour, minute, second);
}

COleDateTime COleDateTime::GetCurrentTime() {
    SYSTEMTIME now;
    GetLocalTime(&now);
    return COleDateTime(now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond);
}

int COleDateTime::SetDateTime(int year, int month, int day, int hour, int minute, int second) {
    if (year < 100 || year > 9999 || month < 1 || month > 12 || day < 1 ||
        day > DaysInMonth(year, month) || hour < 0 || hour > 23 || minute < 0 || minute > 59 ||
        second < 0 || second > 59) {
        m_dt = 0.0;
        m_status = invalid;
        return 1;
    }
    const std::int64_t days =
        DaysFromCivil(year, static_cast<unsigned>(month), static_cast<unsigned>(day)) +
        kEpochOffset;
    const double time = (hour * 3600 + minute * 60 + second) / kSecondsPerDay;
    m_dt = FromLinear(static_cast<double>(days) + time);
    m_status = valid;
    return 0;
}

int COleDateTime::GetYear() const {
    return m_status == valid ? Split(m_dt).date.year : -1;
}
int COleDateTime::GetMonth() const {
    return m_status == valid ? Split(m_dt).date.month : -1;
}
int COleDateTime::GetDay() const {
    return m_status == valid ? Split(m_dt).date.day : -1;
}
int COleDateTime::GetHour() const {
    return m_status == valid ? Split(m_dt).hour : -1;
}
int COleDateTime::GetMinute() const {
    return m_status == valid ? Split(m_dt).minute : -1;
}
int COleDateTime::GetSecond() const {
    return m_status == valid ? Split(m_dt).second : -1;
}

int COleDateTime::GetDayOfWeek() const {
    if (m_status != valid) return -1;
    const Civil c = Split(m_dt).date;
    return DayOfWeek(c.year, c.month, c.day) + 1;
}

int COleDateTime::GetDayOfYear() const {
    if (m_status != valid) return -1;
    const Civil c = Split(m_dt).date;
    int day = c.day;
    for (int m = 1; m < c.month; ++m)
        day += DaysInMonth(c.year, m);
    return day;
}

bool COleDateTime::GetAsSystemTime(SYSTEMTIME& fields) const {
    if (m_status != valid) return false;
    const Fields f = Split(m_dt);
    fields.wYear = static_cast<WORD>(f.date.year);
    fields.wMonth = static_cast<WORD>(f.date.month);
    fields.wDay = static_cast<WORD>(f.date.day);
    fields.wDayOfWeek = static_cast<WORD>(DayOfWeek(f.date.year, f.date.month, f.date.day));
    fields.wHour = static_cast<WORD>(f.hour);
    fields.wMinute = static_cast<WORD>(f.minute);
    fields.wSecond = static_cast<WORD>(f.second);
    fields.wMilliseconds = 0;
    return true;
}

COleDateTime COleDateTime::operator+(const COleDateTimeSpan& span) const {
    COleDateTime result;
    if (m_status != valid || span.m_status != COleDateTimeSpan::valid) {
        result.m_dt = m_dt;
        result.m_status = invalid;
        return result;
    }
    result.m_dt = FromLinear(ToLinear(m_dt) + span.m_span);
    result.m_status = InRange(result.m_dt) ? valid : invalid;
    return result;
}

COleDateTime COleDateTime::operator-(const COleDateTimeSpan& span) const {
    return *this + (-span);
}

COleDateTimeSpan COleDateTime::operator-(const COleDateTime& other) const {
    COleDateTimeSpan span(ToLinear(m_dt) - ToLinear(other.m_dt));
    if (m_status != valid || other.m_status != valid) span.m_status = COleDateTimeSpan::invalid;
    return span;
}

bool COleDateTime::operator==(const COleDateTime& other) const {
    return m_status == other.m_status && ToLinear(m_dt) == ToLinear(other.m_dt);
}

bool COleDateTime::operator<(const COleDateTime& other) const {
    return ToLinear(m_dt) < ToLinear(other.m_dt);
}

CString COleDateTime::Format(const char* format) const {
    CString out;
    if (m_status != valid || format == nullptr) return out;
    const Fields f = Split(m_dt);
    const int weekday = DayOfWeek(f.date.year, f.date.month, f.date.day);
    for (const char* p = format; *p != '\0'; ++p) {
        if (*p != '%' || p[1] == '\0') {
            out += *p;
            continue;
        }
        switch (*++p) {
            case 'Y':
                out.AppendFormat("%04d", f.date.year);
                break;
            case 'y':
                out.AppendFormat("%02d", f.date.year % 100);
                break;
            case 'm':
                out.AppendFormat("%02d", f.date.month);
                break;
            case 'd':
                out.AppendFormat("%02d", f.date.day);
                break;
            case 'H':
                out.AppendFormat("%02d", f.hour);
                break;
            case 'I':
                out.AppendFormat("%02d", f.hour % 12 == 0 ? 12 : f.hour % 12);
                break;
            case 'M':
                out.AppendFormat("%02d", f.minute);
                break;
            case 'S':
                out.AppendFormat("%02d", f.second);
                break;
            case 'p':
                out += f.hour < 12 ? "AM" : "PM";
                break;
            case 'j':
                out.AppendFormat("%03d", GetDayOfYear());
                break;
            case 'A':
                out += kDayNames[weekday];
                break;
            case 'a':
                out += CString(kDayNames[weekday], 3);
                break;
            case 'B':
                out += kMonthNames[f.date.month - 1];
                break;
            case 'b':
                out += CString(kMonthNames[f.date.month - 1], 3);
                break;
            case '%':
                out += '%';
                break;
            default:
                out += '%';
                out += *p;
                break;
        }
    }
    return out;
}

bool COleDateTime::ParseDateTime(const char* text) {
    const auto fail = [this] {
        m_dt = 0.0;
        m_status = invalid;
        return false;
    };
    if (text == nullptr) return fail();
    int a = 0, b = 0, c = 0, h = 0, mi = 0, s = 0, used = 0;
    int year = 1899, month = 12, day = 30;
    const char* rest = text;
    while (*rest == ' ')
        ++rest;
    if (std::sscanf(rest, "%4d-%2d-%2d%n", &a, &b, &c, &used) == 3 && used >= 8) {
        year = a, month = b, day = c;
        rest += used;
    } else if (std::sscanf(rest, "%2d/%2d/%4d%n", &a, &b, &c, &used) == 3 && used >= 8) {
        month = a, day = b, year = c;
        rest += used;
    } else if (!(std::sscanf(rest, "%2d:%2d", &a, &b) == 2)) {
        return fail();
    }
    while (*rest == ' ')
        ++rest;
    if (*rest != '\0') {
        used = 0;
        const int n = std::sscanf(rest, "%2d:%2d%n:%2d%n", &h, &mi, &used, &s, &used);
        if (n < 2) return fail();
        rest += used;
        while (*rest == ' ')
            ++rest;
        if (*rest != '\0') return fail();
    }
    return SetDateTime(year, month, day, h, mi, s) == 0 || fail();
}

}  // namespace qvox
