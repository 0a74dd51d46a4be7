// Dates as days since 30 December 1899: fields, the backward whole part before day 0, and spans
// along the time line.
#include "qvox/platform/COleDateTime.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>

namespace qvox {
namespace {

TEST(COleDateTime, FieldsOnBothSidesOfDayZero) {
    // clang-format off
    const struct { double dt; int y, mo, d, h, mi, s, dow; } cases[] = {
        {0.0, 1899, 12, 30, 0, 0, 0, 7},   {1.5, 1899, 12, 31, 12, 0, 0, 1},
        {-1.25, 1899, 12, 29, 6, 0, 0, 6}, {-1.75, 1899, 12, 29, 18, 0, 0, 6},
        {-0.5, 1899, 12, 30, 12, 0, 0, 7}, {36526.0, 2000, 1, 1, 0, 0, 0, 7},
        {45658.999999, 2025, 1, 2, 0, 0, 0, 5},  // rounds to the next second, not 23:59:59
        {2958465.0, 9999, 12, 31, 0, 0, 0, 6}, {-657434.0, 100, 1, 1, 0, 0, 0, 6},
    };
    // clang-format on
    for (const auto& c : cases) {
        const COleDateTime date(c.dt);
        ASSERT_EQ(date.GetStatus(), COleDateTime::valid) << c.dt;
        const std::array<int, 7> fields{date.GetYear(),     date.GetMonth(),  date.GetDay(),
                                        date.GetHour(),     date.GetMinute(), date.GetSecond(),
                                        date.GetDayOfWeek()};
        EXPECT_EQ(fields, (std::array<int, 7>{c.y, c.mo, c.d, c.h, c.mi, c.s, c.dow})) << c.dt;
        // Built back from its fields, the date has the same place on the time line.
        const COleDateTime rebuilt(c.y, c.mo, c.d, c.h, c.mi, c.s);
        EXPECT_NEAR((rebuilt - date).GetTotalSeconds(), 0.0, 0.5) << c.dt;
    }
    for (double bad : {double(NAN), double(INFINITY), 2958466.0, -657435.0}) {
        const COleDateTime date(bad);
        EXPECT_TRUE(date.GetStatus() == COleDateTime::invalid && date.GetYear() == -1) << bad;
    }
    COleDateTime date;
    EXPECT_TRUE(date.SetDateTime(2023, 2, 29, 0, 0, 0) == 1 &&
                date.GetStatus() == COleDateTime::invalid);
    EXPECT_EQ(date.SetDateTime(2024, 2, 29, 23, 59, 59), 0);
    EXPECT_EQ(COleDateTime(99, 12, 31, 0, 0, 0).GetStatus(), COleDateTime::invalid);
}

TEST(COleDateTime, SpansFollowTheTimeLine) {
    // Across day 0 and entirely before it, minutes add as on a clock.
    const COleDateTime before(1899, 12, 29, 23, 30, 0);
    const COleDateTime after = before + COleDateTimeSpan(0, 1, 0, 0);
    EXPECT_TRUE(after.GetDay() == 30 && after.GetHour() == 0 && after.GetMinute() == 30);
    EXPECT_NEAR(after.m_dt, 30.0 / 1440.0, 1e-9);
    const COleDateTime early(1850, 6, 1, 10, 0, 0);
    const COleDateTime later = early - COleDateTimeSpan(0, 0, 300, 0);
    EXPECT_TRUE(later.GetHour() == 5 && later.GetDay() == 1);
    EXPECT_NEAR((early - later).GetTotalMinutes(), 300.0, 1e-6);
    EXPECT_TRUE(later < early);
    EXPECT_TRUE(COleDateTime(-1.75) > COleDateTime(-1.25));  // 18:00 after 06:00 the same day

    COleDateTime invalid(NAN);
    EXPECT_EQ((invalid + COleDateTimeSpan(1.0)).GetStatus(), COleDateTime::invalid);
    EXPECT_EQ((COleDateTime(2958465.5) + COleDateTimeSpan(1.0)).GetStatus(), COleDateTime::invalid);
    EXPECT_EQ((invalid - early).GetStatus(), COleDateTimeSpan::invalid);
}

TEST(COleDateTime, FormatAndParse) {
    const COleDateTime date(2024, 3, 9, 14, 5, 7);
    EXPECT_STREQ(date.Format("%Y-%m-%d %H:%M:%S %p %a %B %j %%"),
                 "2024-03-09 14:05:07 PM Sat March 069 %");
    EXPECT_STREQ(COleDateTime(NAN).Format("%Y"), "");

    // clang-format off
    const struct { const char* text; bool ok; int y, mo, d, h, mi, s; } parses[] = {
        {"2024-03-09 14:05:07", true, 2024, 3, 9, 14, 5, 7}, {"03/09/2024", true, 2024, 3, 9, 0, 0, 0},
        {"09:30", true, 1899, 12, 30, 9, 30, 0}, {" 2024-03-09 09:30 ", true, 2024, 3, 9, 9, 30, 0},
        {"2024-02-30", false, 0, 0, 0, 0, 0, 0}, {"24:00", false, 0, 0, 0, 0, 0, 0},
        {"tomorrow", false, 0, 0, 0, 0, 0, 0}, {"2024-03-09 9", false, 0, 0, 0, 0, 0, 0},
        {"", false, 0, 0, 0, 0, 0, 0}, {nullptr, false, 0, 0, 0, 0, 0, 0},
    };
    // clang-format on
    for (const auto& p : parses) {
        COleDateTime parsed;
        EXPECT_EQ(parsed.ParseDateTime(p.text), p.ok) << (p.text ? p.text : "null");
        if (!p.ok) {
            EXPECT_EQ(parsed.GetStatus(), COleDateTime::invalid);
            continue;
        }
        EXPECT_TRUE(parsed == COleDateTime(p.y, p.mo, p.d, p.h, p.mi, p.s)) << p.text;
    }
}

}  // namespace
}  // namespace qvox
