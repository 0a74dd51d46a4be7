// Order identifiers, and GMT/local time under installed zone rules and a fixed "now".
#include <gtest/gtest.h>

#include <memory>
#include <tuple>
#include <utility>

#include "qvox/platform/Platform.h"
#include "qvox/platform/SystemTimeService.h"
#include "qvox/vocabulary/OrderIDManipulation.h"
#include "qvox/vocabulary/OrderTime.h"

namespace qvox {
namespace {

using Ids = OrderIDManipulation;

TEST(OrderIds, FormatsAndCuts) {
    EXPECT_STREQ(Ids::FormatLocalOrderID(7), "0000000007");
    EXPECT_STREQ(Ids::FormatLocalOrderID(4294967295u), "4294967295");
    EXPECT_EQ(Ids::FormatLocalOrderID(0).GetLength(), 10);
    // The tag cut to nine characters, the low byte of the prefix, and no NUL for a prefix of 0.
    // clang-format off
    for (const auto& [prefix, tag, id] : {std::tuple{SHORT{'A'}, "ABCDEFGHIJKL", "AABCDEFGHI0000000042"},
                                          {SHORT{'A'}, "", "A0000000042"}, {SHORT{0x141}, nullptr, "A0000000042"}, {SHORT{0}, "T", "T0000000042"}})
        EXPECT_STREQ(Ids::FormatClientOrderID(prefix, tag, 42), id);
    // clang-format on
    const CString fresh = Ids::FormatClientOrderID('Z', "TAG", 0);
    EXPECT_TRUE(fresh.GetLength() == 14 && fresh.Right(10) != "0000000000");

    // clang-format off
    // Above 10 the cut starts at length - 10 and runs to the terminator; 10 and below keep all.
    const struct { const char* id; ULONG length; const char* local; } locals[] = {
        {"AABCDEFGHI0000000042", 0xFFFFFFFFu, "0000000042"}, {"0000000042", 0xFFFFFFFFu, "0000000042"},
        {"42", 0xFFFFFFFFu, "42"}, {"AABCDEFGHI0000000042", 15, "EFGHI0000000042"},
        {"ABCDEFGHIJKLMNOP", 10, "ABCDEFGHIJKLMNOP"}, {"ABCDEFGHIJKLMNOP", 3, "ABCDEFGHIJKLMNOP"},
        {"ABCDEFGHIJKLMNOP", 0, "ABCDEFGHIJKLMNOP"}, {"ABCDEFGHIJKLMNOP", 20, "KLMNOP"},
        {"short", 99, ""}, {nullptr, 5, ""}};
    const struct { const char* id; ULONG length; const char* shown; } shown[] = {
        {"1234567890", 0xFFFFFFFFu, "12-3456-7890"}, {"12345678", 0xFFFFFFFFu, "1234-5678"},
        {"123", 0xFFFFFFFFu, "123"}, {"1234", 0xFFFFFFFFu, "1234"}, {"12345", 0xFFFFFFFFu, "1-2345"},
        {"", 0xFFFFFFFFu, ""}, {"1234567890", 5, "1-2345"}, {nullptr, 3, ""}};
    // clang-format on
    for (const auto& l : locals) {
        EXPECT_STREQ(Ids::ClientToLocalOrderID(l.id, l.length), l.local) << l.length;
    }
    EXPECT_STREQ(Ids::ClientToLocalOrderID(CString("XY0000000042")), "0000000042");
    for (const auto& s : shown)
        EXPECT_STREQ(Ids::FormatOrderID(s.id, s.length), s.shown);
    EXPECT_STREQ(Ids::FormatOrderID(CString("1234567890")), "12-3456-7890");
    EXPECT_NE(CreateLocalOrderID(), CreateLocalOrderID());
}

SYSTEMTIME Change(WORD month, WORD week, WORD weekday, WORD hour) {
    return SYSTEMTIME{0, month, weekday, week, hour};
}

// Installs a zone rule and a fixed "now" (15 March 2025, 10:00 local) for one test.
class ZoneTime : public ::testing::Test {
  protected:
    void Install(LONG bias, LONG daylightBias, SYSTEMTIME standard, SYSTEMTIME daylight) {
        const TIME_ZONE_INFORMATION rule{bias, standard, 0, daylight, daylightBias};
        PlatformServices services;
        services.time = std::make_shared<FixedTimeService>(rule, SYSTEMTIME{2025, 3, 0, 15, 10});
        scoped_.reset();  // the previous rule goes back first, then the new one comes in
        scoped_ = std::make_unique<ScopedPlatformServices>(services);
    }
    static double Gmt(int y, int mo, int d, int h, int mi) {
        return COleDateTime(y, mo, d, h, mi, 0).m_dt;
    }
    // Minutes that GMTtoLocalTime takes off.
    static double ShiftOf(double gmt) {
        const COleDateTime local(GMTtoLocalTime(gmt));
        return (COleDateTime(gmt) - local).GetTotalMinutes();
    }

    std::unique_ptr<ScopedPlatformServices> scoped_;
};

// The shift GMTtoLocalTime makes under each rule, at the change moments among others.
TEST_F(ZoneTime, ShiftsByRuleAndAtTheExactChangeMoments) {
    // New York: daylight from the second Sunday of March, 2:00, to the first Sunday of November,
    // 2:00; in 2025 the changes are 9 March 07:00 GMT and 2 November 06:00 GMT. Sydney: daylight
    // from the first Sunday of October, 2:00, to the first Sunday of April, 3:00; in 2025 it ends
    // 5 April 16:00 GMT and starts 4 October 16:00 GMT. A rule with month 0, or one that cannot
    // be read, has no daylight time. Week 5 of February 2026 (four Sundays) is the 22nd.
    // clang-format off
    const struct Rule { LONG bias, daylightBias; SYSTEMTIME standard, daylight; } newYork{300, -60, Change(11, 1, 0, 2), Change(3, 2, 0, 2)},
        sydney{-600, -60, Change(4, 1, 0, 3), Change(10, 1, 0, 2)},
        noDaylight{-540, -60, Change(0, 0, 0, 0), Change(3, 2, 0, 2)},
        nonsense{60, -60, Change(13, 9, 8, 2), Change(3, 2, 0, 2)},
        weekFive{0, -60, Change(10, 5, 0, 2), Change(2, 5, 0, 2)};
    const struct { const Rule* rule; double gmt; double shift; } cases[] = {
        {&newYork, Gmt(2025, 7, 1, 12, 0), 240}, {&newYork, Gmt(2025, 1, 15, 12, 0), 300},
        {&newYork, Gmt(2025, 3, 9, 7, 0), 300}, {&newYork, Gmt(2025, 3, 9, 7, 1), 240},
        {&newYork, Gmt(2025, 11, 2, 6, 0), 240}, {&newYork, Gmt(2025, 11, 2, 6, 1), 300},
        {&newYork, Gmt(1890, 7, 1, 12, 0), 240},  // before day 0, the rule for its own year
        {&sydney, Gmt(2025, 1, 15, 0, 0), -660}, {&sydney, Gmt(2025, 7, 1, 0, 0), -600},
        {&sydney, Gmt(2025, 4, 5, 16, 0), -660}, {&sydney, Gmt(2025, 4, 5, 16, 1), -600},
        {&sydney, Gmt(2025, 10, 4, 16, 0), -600}, {&sydney, Gmt(2025, 10, 4, 16, 1), -660},
        {&noDaylight, Gmt(2025, 7, 1, 0, 0), -540}, {&nonsense, Gmt(2025, 7, 1, 0, 0), 60},
        {&weekFive, Gmt(2026, 2, 22, 1, 59), 0}, {&weekFive, Gmt(2026, 2, 22, 2, 1), -60},
    };
    // clang-format on
    for (const auto& c : cases) {
        Install(c.rule->bias, c.rule->daylightBias, c.rule->standard, c.rule->daylight);
        EXPECT_NEAR(ShiftOf(c.gmt), c.shift, 1e-6) << COleDateTime(c.gmt).Format("%Y-%m-%d %H:%M");
    }

    // Local to GMT compares the change dates in local clock time.
    Install(300, -60, Change(11, 1, 0, 2), Change(3, 2, 0, 2));
    COleDateTime summer(2025, 7, 1, 8, 0, 0);
    LocalTimeToGMT(summer);
    EXPECT_EQ(summer.GetHour(), 12);
    COleDateTime atStart(2025, 3, 9, 2, 0, 0);  // exactly at the change: still standard
    LocalTimeToGMT(atStart);
    EXPECT_EQ(atStart.GetHour(), 7);

    // One rule read once serves dates of several years, each with its own change dates: daylight
    // time began on 9 March 2025 and on 8 March 2026.
    ZoneRule rule;
    for (const auto& [gmt, hour] : {std::pair{Gmt(2026, 3, 8, 8, 0), 4},
                                    {Gmt(2025, 3, 8, 8, 0), 3},
                                    {Gmt(2026, 3, 7, 8, 0), 3}}) {
        COleDateTime local(gmt);
        rule.ToLocal(local);
        EXPECT_EQ(local.GetHour(), hour) << COleDateTime(gmt).Format("%Y-%m-%d");
    }

    COleDateTime invalid(2958466.0);
    GMTtoLocalTime(invalid);
    EXPECT_EQ(invalid.GetStatus(), COleDateTime::invalid);
    EXPECT_EQ(invalid.m_dt, 2958466.0);
    EXPECT_EQ(GMTtoLocalTime(-1e9), -1e9);
}

TEST_F(ZoneTime, TodayIsTheLocalCalendarDay) {
    Install(0, 0, Change(0, 0, 0, 0), Change(0, 0, 0, 0));
    EXPECT_TRUE(IsTodayIncluded(COleDateTime(2025, 3, 15, 23, 59, 0).m_dt) &&
                IsTodayIncluded(COleDateTime(2025, 3, 15, 0, 0, 0).m_dt));
    EXPECT_FALSE(IsTodayIncluded(COleDateTime(2025, 3, 14, 23, 59, 0).m_dt) ||
                 IsTodayIncluded(COleDateTime(2024, 3, 15, 12, 0, 0).m_dt) ||
                 IsTodayIncluded(1e12));
    EXPECT_EQ(COleDateTime::GetCurrentTime().GetDay(), 15);
}

}  // namespace
}  // namespace qvox
