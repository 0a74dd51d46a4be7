// The Windows zone rule derived from the tz database, and the replaceable time service.
#include <gtest/gtest.h>

#include <array>
#include <memory>

#include "qvox/platform/Platform.h"
#include "qvox/platform/SystemTimeService.h"
#include "qvox/platform/Uuid.h"

namespace qvox {
namespace {

// Month, week, weekday and hour of a change; its minute is always 0.
using Change = std::array<int, 4>;

void ExpectChange(const SYSTEMTIME& date, const Change& expected, const char* zone) {
    EXPECT_EQ((Change{date.wMonth, date.wDay, date.wDayOfWeek, date.wHour}), expected) << zone;
    EXPECT_EQ(date.wMinute, 0) << zone;
}

TEST(ZoneRules, DerivedFromTheTzDatabase) {
    // 1 July 2025 12:00 UTC and 15 January 2025 12:00 UTC.
    constexpr double kJuly = 1751371200000.0;
    constexpr double kJanuary = 1736942400000.0;
    // clang-format off
    const struct { const char* zone; LONG bias, daylightBias; Change daylight, standard; DWORD julyId; } zones[] = {
        {"America/New_York", 300, -60, {3, 2, 0, 2}, {11, 1, 0, 2}, TIME_ZONE_ID_DAYLIGHT},
        {"Europe/London", 0, -60, {3, 5, 0, 1}, {10, 5, 0, 2}, TIME_ZONE_ID_DAYLIGHT},
        {"Australia/Sydney", -600, -60, {10, 1, 0, 2}, {4, 1, 0, 3}, TIME_ZONE_ID_STANDARD},
        {"Asia/Tokyo", -540, 0, {0, 0, 0, 0}, {0, 0, 0, 0}, TIME_ZONE_ID_UNKNOWN},
    };
    // clang-format on
    for (const auto& z : zones) {
        TIME_ZONE_INFORMATION info;
        DWORD id = TIME_ZONE_ID_INVALID;
        ASSERT_TRUE(DeriveTimeZoneInformation(z.zone, kJuly, &info, &id)) << z.zone;
        EXPECT_EQ(info.Bias, z.bias) << z.zone;
        EXPECT_EQ(info.DaylightBias, z.daylightBias) << z.zone;
        ExpectChange(info.DaylightDate, z.daylight, z.zone);
        ExpectChange(info.StandardDate, z.standard, z.zone);
        EXPECT_EQ(id, z.julyId) << z.zone;
        // Half a year on, the rule is the same and the other half of it is in force.
        TIME_ZONE_INFORMATION winter;
        ASSERT_TRUE(DeriveTimeZoneInformation(z.zone, kJanuary, &winter, &id));
        EXPECT_EQ(winter.Bias, info.Bias);
        EXPECT_EQ(winter.DaylightDate.wMonth, info.DaylightDate.wMonth);
        if (z.julyId != TIME_ZONE_ID_UNKNOWN) {
            EXPECT_EQ(id, z.julyId == TIME_ZONE_ID_DAYLIGHT ? TIME_ZONE_ID_STANDARD
                                                            : TIME_ZONE_ID_DAYLIGHT);
        }
    }
    TIME_ZONE_INFORMATION untouched;
    untouched.Bias = 77;
    EXPECT_FALSE(DeriveTimeZoneInformation("Nowhere/Atlantis", kJuly, &untouched, nullptr));
    EXPECT_EQ(untouched.Bias, 77);
}

TEST(ZoneRules, ServicesThroughTheRegistrationPoint) {
    PlatformServices services;
    services.time = std::make_shared<FixedTimeService>(
        TIME_ZONE_INFORMATION{-60, {}, 0, {}, 0}, SYSTEMTIME{2030, 5, 0, 17}, TIME_ZONE_ID_UNKNOWN);
    {
        const ScopedPlatformServices scoped(services);
        TIME_ZONE_INFORMATION read;
        EXPECT_TRUE(GetTimeZoneInformation(&read) == TIME_ZONE_ID_UNKNOWN && read.Bias == -60);
    }
    // The built-in service answers again, from the machine's own zone and clock.
    TIME_ZONE_INFORMATION system;
    EXPECT_NE(GetTimeZoneInformation(&system), TIME_ZONE_ID_INVALID);
    EXPECT_EQ(GetTimeZoneInformation(nullptr), TIME_ZONE_ID_INVALID);
    SYSTEMTIME local;
    GetLocalTime(&local);
    EXPECT_GE(local.wYear, 2024);
    GetLocalTime(nullptr);
}

TEST(Uuid, RandomVersionFour) {
    UUID a{}, b{};
    EXPECT_EQ(UuidCreate(&a), RPC_S_OK);
    EXPECT_EQ(UuidCreate(&b), RPC_S_OK);
    EXPECT_EQ(a.Data3 >> 12, 4);         // the version in the standard byte order
    EXPECT_EQ(a.Data4[0] & 0xC0, 0x80);  // the variant
    EXPECT_FALSE(a.Data1 == b.Data1 && a.Data2 == b.Data2 && a.Data3 == b.Data3);
    EXPECT_EQ(UuidCreate(nullptr), RPC_S_INVALID_ARG);
}

}  // namespace
}  // namespace qvox
