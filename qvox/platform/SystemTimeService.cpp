#include "qvox/platform/SystemTimeService.h"

#include <unicode/basictz.h>
#include <unicode/dtrule.h>
#include <unicode/timezone.h>
#include <unicode/tzrule.h>

#include <time.h>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <string>
#include <string_view>

#include "qvox/platform/COleDateTime.h"
#include "qvox/platform/Platform.h"

namespace qvox {
namespace {

constexpr int kMillisPerMinute = 60000;
constexpr int kMillisPerDay = 86400000;

WORD Word(int value) {
    return static_cast<WORD>(value);
}

// The Windows week of the month (1 to 5, 5 the last) and weekday of a yearly rule. The tz
// database also knows rules that Windows cannot state ("first Sunday on or after the 10th", a
// fixed day of the month); they become the nearest week, which lands on the same day in most
// years, and on a day within the same week otherwise.
void WeekAndWeekday(const icu::DateTimeRule& rule, int year, SYSTEMTIME& date) {
    const int month = rule.getRuleMonth() + 1;
    // Month lengths of a common year: a rule that reaches the end of February counts as "last".
    const int length = DaysInMonth(2001, month);
    const int dayOfMonth = rule.getRuleDayOfMonth();
    int week = 1;
    int weekday = rule.getRuleDayOfWeek() - 1;  // ICU counts Sunday as 1
    switch (rule.getDateRuleType()) {
        case icu::DateTimeRule::DOW: {
            const int n = rule.getRuleWeekInMonth();
            week = n < 0 || n > 5 ? 5 : (n == 0 ? 1 : n);
            break;
        }
        case icu::DateTimeRule::DOW_GEQ_DOM:
            week = dayOfMonth + 6 >= length ? 5 : (dayOfMonth + 6) / 7;
            break;
        case icu::DateTimeRule::DOW_LEQ_DOM:
            week = dayOfMonth >= length ? 5 : (dayOfMonth / 7 < 1 ? 1 : dayOfMonth / 7);
            break;
        case icu::DateTimeRule::DOM:
        default:
            weekday = DayOfWeek(year, month, dayOfMonth < 1 ? 1 : dayOfMonth);
            week = dayOfMonth + 7 > length ? 5 : (dayOfMonth - 1) / 7 + 1;
            break;
    }
    date.wMonth = Word(month);
    date.wDay = Word(week);
    date.wDayOfWeek = Word(weekday < 0 || weekday > 6 ? 0 : weekday);
}

// The local clock time just before a change: standard time before daylight time starts,
// daylight time before it ends.
void ClockTime(const icu::DateTimeRule& rule, int rawOffset, int savings, bool intoDaylight,
               SYSTEMTIME& date) {
    int millis = rule.getRuleMillisInDay();
    switch (rule.getTimeRuleType()) {
        case icu::DateTimeRule::UTC_TIME:
            millis += rawOffset + (intoDaylight ? 0 : savings);
            break;
        case icu::DateTimeRule::STANDARD_TIME:
            millis += intoDaylight ? 0 : savings;
            break;
        case icu::DateTimeRule::WALL_TIME:
        default:
            break;
    }
    // A change at 24:00 or past midnight in another clock stays on its rule's day.
    millis = ((millis % kMillisPerDay) + kMillisPerDay) % kMillisPerDay;
    date.wHour = Word(millis / 3600000);
    date.wMinute = Word(millis / kMillisPerMinute % 60);
    date.wSecond = Word(millis / 1000 % 60);
    date.wMilliseconds = 0;
}

bool Derive(const icu::TimeZone& zone, double utcMillis, TIME_ZONE_INFORMATION& info, DWORD& id) {
    const auto* basic = dynamic_cast<const icu::BasicTimeZone*>(&zone);
    TIME_ZONE_INFORMATION result;
    if (basic == nullptr) {
        result.Bias = -zone.getRawOffset() / kMillisPerMinute;
        info = result;
        id = TIME_ZONE_ID_UNKNOWN;
        return true;
    }
    icu::InitialTimeZoneRule* initial = nullptr;
    icu::AnnualTimeZoneRule* standard = nullptr;
    icu::AnnualTimeZoneRule* daylight = nullptr;
    UErrorCode status = U_ZERO_ERROR;
    basic->getSimpleRulesNear(utcMillis, initial, standard, daylight, status);
    const std::unique_ptr<icu::InitialTimeZoneRule> ownInitial(initial);
    const std::unique_ptr<icu::AnnualTimeZoneRule> ownStandard(standard);
    const std::unique_ptr<icu::AnnualTimeZoneRule> ownDaylight(daylight);
    if (U_FAILURE(status) || initial == nullptr) return false;

    if (standard == nullptr || daylight == nullptr) {
        // No daylight time near this moment: the offset in force is the standard one.
        result.Bias = -(initial->getRawOffset() + initial->getDSTSavings()) / kMillisPerMinute;
        info = result;
        id = TIME_ZONE_ID_UNKNOWN;
        return true;
    }
    // Of the two yearly rules, the one with a saving starts daylight time.
    if (standard->getDSTSavings() != 0) std::swap(standard, daylight);
    const int raw = daylight->getRawOffset();
    const int savings = daylight->getDSTSavings();
    result.Bias = -raw / kMillisPerMinute;
    result.DaylightBias = -savings / kMillisPerMinute;
    const std::time_t seconds = static_cast<std::time_t>(utcMillis / 1000.0);
    std::tm utc{};
    gmtime_r(&seconds, &utc);
    const int year = utc.tm_year + 1900;
    WeekAndWeekday(*daylight->getRule(), year, result.DaylightDate);
    ClockTime(*daylight->getRule(), raw, savings, true, result.DaylightDate);
    WeekAndWeekday(*standard->getRule(), year, result.StandardDate);
    ClockTime(*standard->getRule(), raw, savings, false, result.StandardDate);

    int32_t rawNow = 0;
    int32_t dstNow = 0;
    status = U_ZERO_ERROR;
    zone.getOffset(utcMillis, false, rawNow, dstNow, status);
    info = result;
    id = U_SUCCESS(status) && dstNow != 0 ? TIME_ZONE_ID_DAYLIGHT : TIME_ZONE_ID_STANDARD;
    return true;
}

double NowUtcMillis() {
    using namespace std::chrono;
    return static_cast<double>(
        duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count());
}

// The TZ variable as it is kept in the cache; "\x01unset" when there is none.
std::string_view TzVariable() {
    const char* tz = std::getenv("TZ");
    return tz == nullptr ? std::string_view("\x01unset") : std::string_view(tz);
}

}  // namespace

bool DeriveTimeZoneInformation(const char* zoneId, double utcMillis, TIME_ZONE_INFORMATION* info,
                               DWORD* id) {
    if (info == nullptr) return false;
    std::unique_ptr<icu::TimeZone> zone;
    if (zoneId == nullptr) {
        zone.reset(icu::TimeZone::detectHostTimeZone());
    } else {
        zone.reset(icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(zoneId)));
        icu::UnicodeString found;
        // ICU answers an unknown id with its "Etc/Unknown" zone rather than a failure.
        if (zone == nullptr || zone->getID(found) == icu::UnicodeString(UCAL_UNKNOWN_ZONE_ID)) {
            return false;
        }
    }
    if (zone == nullptr) return false;
    DWORD which = TIME_ZONE_ID_UNKNOWN;
    if (!Derive(*zone, utcMillis, *info, which)) return false;
    if (id != nullptr) *id = which;
    return true;
}

DWORD SystemTimeService::GetTimeZoneInformation(TIME_ZONE_INFORMATION* info) const {
    if (info == nullptr) return TIME_ZONE_ID_INVALID;
    std::lock_guard<std::mutex> lock(mutex_);
    // Compared in place: the variable is read on every call, and copied only when it changed.
    const std::string_view zone = TzVariable();
    // The coarse clock is ample for a check once a minute, and far cheaper to read.
    timespec ticks{};
    clock_gettime(CLOCK_MONOTONIC_COARSE, &ticks);
    const std::int64_t now = ticks.tv_sec;
    if (!cached_ || zone != zone_ || now - derivedAt_ > 60) {
        TIME_ZONE_INFORMATION derived;
        DWORD id = TIME_ZONE_ID_UNKNOWN;
        if (!DeriveTimeZoneInformation(nullptr, NowUtcMillis(), &derived, &id)) {
            // Without zone data the clock is taken as GMT.
            derived = TIME_ZONE_INFORMATION();
            id = TIME_ZONE_ID_UNKNOWN;
        }
        info_ = derived;
        id_ = id;
        zone_ = zone;
        derivedAt_ = now;
        cached_ = true;
    }
    *info = info_;
    return id_;
}

void SystemTimeService::GetLocalTime(SYSTEMTIME* now) const {
    if (now == nullptr) return;
    // The clock of the last timer tick, as the platform's own call reads it: a few milliseconds
    // coarse, and several times cheaper than the precise clock (the advanced options string asks
    // for the present moment whenever it reads a time).
    timespec clock{};
    clock_gettime(CLOCK_REALTIME_COARSE, &clock);
    const std::time_t seconds = clock.tv_sec;
    // The calendar fields change once a second; each thread keeps the last ones it worked out.
    // (localtime_r itself reads the zone once per process, until tzset is called.)
    thread_local std::time_t cachedSeconds = -1;
    thread_local std::tm cachedLocal{};
    if (seconds != cachedSeconds) {
        localtime_r(&seconds, &cachedLocal);
        cachedSeconds = seconds;
    }
    const std::tm& local = cachedLocal;
    const long millis = clock.tv_nsec / 1000000;
    now->wYear = Word(local.tm_year + 1900);
    now->wMonth = Word(local.tm_mon + 1);
    now->wDayOfWeek = Word(local.tm_wday);
    now->wDay = Word(local.tm_mday);
    now->wHour = Word(local.tm_hour);
    now->wMinute = Word(local.tm_min);
    now->wSecond = Word(local.tm_sec > 59 ? 59 : local.tm_sec);
    now->wMilliseconds = Word(static_cast<int>(millis < 0 || millis > 999 ? 0 : millis));
}

DWORD FixedTimeService::GetTimeZoneInformation(TIME_ZONE_INFORMATION* info) const {
    if (info == nullptr) return TIME_ZONE_ID_INVALID;
    *info = info_;
    return id_;
}

void FixedTimeService::GetLocalTime(SYSTEMTIME* now) const {
    if (now != nullptr) *now = now_;
}

DWORD GetTimeZoneInformation(LPTIME_ZONE_INFORMATION info) {
    if (info == nullptr) return TIME_ZONE_ID_INVALID;
    return CurrentTimeService()->GetTimeZoneInformation(info);
}

void GetLocalTime(SYSTEMTIME* now) {
    if (now != nullptr) CurrentTimeService()->GetLocalTime(now);
}

}  // namespace qvox
