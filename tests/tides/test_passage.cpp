// The passage planner through CalcRoute over tide regions written by the
// tests: legs under two miles, tides off, streams that cannot be stemmed,
// the tidal gain, the leg from the vessel, and best departure's rows.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "core/Format.h"
#include "tests/tides/PassageRig.h"

namespace ombra::test {
namespace {

// What the model's 1 m/s reads as in knots (millimetres a second read as
// km/h, times 0.54).
const float kOneMetreKnots = float(1000 / 1000000.0 * 3600.0 * 0.54);

TEST(PassageArithmetic, PassingTurningAndSumming) {
    const struct {
        double bearing, course;
        bool passed;
    } passing[] = {{0, 0, false}, {0, 90, true}, {10, 350, false}, {275, 5, true}, {89.9, 0, false}, {180, 359, true}};
    for (const auto& c : passing) EXPECT_EQ(HasPassed(c.bearing, c.course), c.passed) << c.bearing << " " << c.course;

    const struct {
        float set1, rate1, set2, rate2, set, rate;
    } sums[] = {
        {0, 0, 200, 1.5f, 200, 1.5f},          // nothing yet: the second stands
        {30, 1, 30, 0.5f, 30, 1.5f},           // the same set adds
        {30, 1, 210, 0.25f, 30, 0.75f},        // opposed, the first stronger
        {30, 1, 210, 1.5f, 210, 0.5f},         // opposed, the second stronger
        {0, 1, 90, 1, 45, 1.41421356f},        // at right angles
        {350, 1, 20, 1, 5, 1.93185165f},       // across north
        {10, 1, 300, 1, 335, 1.63830409f},     // the second to the left
        {0, 1, 3, 3, 2, 3.99897202f},          // 2.25 degrees kept as 2
    };
    for (const auto& c : sums) {
        float set = c.set1, rate = c.rate1;
        AddTide(set, rate, c.set2, c.rate2);
        EXPECT_EQ(set, c.set) << c.set1 << "+" << c.set2;
        EXPECT_NEAR(rate, c.rate, 1e-5) << c.set1 << "+" << c.set2;
    }

    const struct {
        double course;
        float run, set, tide;
        bool ok;
        double cts;  // the course to steer in whole degrees, when it can be made
    } stems[] = {
        {0, 0, 90, 0, false, 0},      // no run
        {0, 1, 90, 1, false, 0},      // abeam, tide equal to the run
        {0, 1, 90, 0.99f, true, 278},
        {0, 6, 90, 3, true, 330},     // set east: steer west of the course
        {0, 6, 270, 3, true, 30},
        {90, 5, 90, 2, true, 90},     // fair stream: the course itself
        {0, 1, 180, 1, false, 0},     // dead against, equal
        {0, 1, 180, 0.5f, true, 0},
        {0, 1, 170, 1.5f, false, 0},  // nearly against and stronger
    };
    for (const auto& c : stems) {
        double cts = -1;
        EXPECT_EQ(CanStem(c.course, c.run, c.set, c.tide, &cts), c.ok) << c.course << " " << c.set << " " << c.tide;
        if (c.ok) {
            EXPECT_EQ(cts, c.cts) << c.course << " " << c.set << " " << c.tide;
        }
    }

    const struct {
        long long minutes;
        const char* text;
    } spans[] = {{90, "00, 01, 30"}, {61, "00, 01, 01"}, {2 * 1440 + 59, "02, 00, 59"}, {1439, "00, 23, 59"}};
    for (const auto& s : spans) EXPECT_EQ(PassageSpanText(s.minutes), s.text) << s.minutes;
    EXPECT_EQ(PassageSpanText(-30).substr(0, 4), "00, ") << "a departure after the arrival has no days";
}

TEST(PassagePlan, TidesOffSteerTheCourseAndArriveAtDistanceOverSpeed) {
    const struct {
        std::vector<std::pair<double, double>> pts;
        float knots;
    } cases[] = {
        {{{50.2, -1.5}, {50.4, -1.3}, {50.45, -1.8}}, 6.0f},
        {{{50.9, -1.9}, {50.1, -1.1}}, 7.0f},
        {{{50.5, -1.5}, {50.51, -1.5}, {50.5, -1.52}}, 3.5f},  // legs under two miles
    };
    for (const auto& c : cases) {
        PassageRig rig;
        rig.Steady(45, 1.0);
        const Route route = PassageRig::MakeRoute(c.pts);
        ASSERT_FALSE(rig.Plan(route, rig.In(c.knots, false)));
        ASSERT_EQ(rig.passage.PassageState(), 1);
        EXPECT_GT(rig.stream.predictions, 0) << "the stream is asked for even with tides off";
        double t = rig.start;
        for (size_t i = 1; i < route.Points.size(); ++i) {
            const PassageLeg& l = rig.passage.Legs[i];
            EXPECT_EQ(float(l.CTS), float(route.Legs[i - 1].Course)) << "leg " << i;
            EXPECT_EQ(SecondsFrom(rig.start, l.Departure), SecondsFrom(rig.start, t)) << "leg " << i;
            t += std::nearbyint(route.Legs[i - 1].Distance / c.knots * 3600.0) / 86400.0;
            EXPECT_EQ(SecondsFrom(rig.start, l.Arrival), SecondsFrom(rig.start, t)) << "leg " << i;
            EXPECT_EQ(l.TideDrift, 0.0f);
            const auto& track = rig.passage.PassageTrack[i];
            ASSERT_EQ(track.size(), 2u);
            EXPECT_EQ(track[1].Lat, route.Points[i].Position.Wgs84.Lat);
        }
        EXPECT_EQ(rig.passage.TxtTidalGain, "0");
        EXPECT_EQ(rig.passage.TxtArrTime, FormatDate(DateTime::FromSerial(t), "hh:mm:ss"));
        const PassageTable table = rig.passage.ShowPassageResults(1, rig.units);
        EXPECT_EQ(table.rows.size(), route.Points.size() - 1);
    }
}

TEST(PassagePlan, ALegUnderTwoMilesIsWorkedInTenthsEachWithASample) {
    // Six knots with a fair stream: a tenth of a mile is one minute.
    for (double miles : {1.5, 1.9, 2.5, 4.0}) {
        PassageRig rig;
        rig.Steady(0, 1.0);
        ASSERT_FALSE(rig.Plan(PassageRig::North(miles), rig.In(6.0f)));
        const PassageLeg& l = rig.passage.Legs[1];
        const double minutes = (l.Arrival - l.Departure) * 1440.0;
        if (miles < 2.0) {
            EXPECT_NEAR(rig.stream.predictions, minutes, 1e-6) << miles << ": one sample a tenth";
        } else {
            EXPECT_LT(rig.stream.predictions, minutes) << miles << ": whole miles are stepped";
        }
        // Over the ground at 6 + 1.944 knots; the arrival lies up to two
        // tenths past the crossing.
        const double crossing = miles / (6.0 + kOneMetreKnots) * 60.0;
        EXPECT_GE(minutes, crossing - 1e-6) << miles;
        EXPECT_LE(minutes, crossing + 2.0 + 1e-6) << miles;
        EXPECT_EQ(l.TideSet, 0);
        EXPECT_GT(rig.passage.TidalGain, 0.0f);
    }
}

TEST(PassagePlan, AStreamThatCannotBeStemmedLeavesNoPlan) {
    const struct {
        double towards, speed;  // m/s
        const char* what;
    } cases[] = {
        {180, 1.0, "dead against, as strong as the vessel"},
        {180, 1.5, "dead against, stronger"},
        {90, 2.0, "abeam, twice the vessel's speed"},
    };
    for (const auto& c : cases) {
        PassageRig rig;
        rig.Steady(c.towards, c.speed);
        ASSERT_FALSE(rig.Plan(PassageRig::MakeRoute({{50.2, -1.5}, {50.25, -1.5}, {50.35, -1.5}}),
                              rig.In(kOneMetreKnots)));
        for (const std::string* t : {&rig.passage.TxtArrDate, &rig.passage.TxtArrTime, &rig.passage.TxtTotTime,
                                     &rig.passage.TxtTidalGain})
            EXPECT_EQ(*t, "N/A") << c.what;
        EXPECT_EQ(rig.passage.PassageState(), 0) << c.what;
    }
}

TEST(PassagePlan, TheTidalGainFollowsTheStreamAndTheCourseIsSetUpstream) {
    const struct {
        double towards;
        int gainSign;
        double ctsLow, ctsHigh;
    } cases[] = {{0, 1, 0, 0}, {180, -1, 0, 0}, {90, 0, 348, 352}, {270, 0, 8, 12}};
    for (const auto& c : cases) {
        PassageRig rig;
        rig.Steady(c.towards, 0.5);
        ASSERT_FALSE(rig.Plan(PassageRig::North(10), rig.In(6.0f)));
        const PassageLeg& l = rig.passage.Legs[1];
        const double off = std::remainder(l.CTS - (c.ctsLow + c.ctsHigh) / 2, 360.0);
        EXPECT_LE(std::fabs(off), (c.ctsHigh - c.ctsLow) / 2 + 0.01) << c.towards << ": " << l.CTS;
        EXPECT_EQ(l.TideSet, int(c.towards)) << c.towards;
        EXPECT_NEAR(l.TideDrift, kOneMetreKnots / 2, 0.05) << c.towards;
        if (c.gainSign > 0) {
            EXPECT_GT(rig.passage.TidalGain, 10.0f);
        } else if (c.gainSign < 0) {
            EXPECT_LT(rig.passage.TidalGain, -10.0f);
            EXPECT_EQ(rig.passage.TxtTidalGain[0], '-');
        }
        // The track ends at the point, and a cross stream bends it.
        const auto& track = rig.passage.PassageTrack[1];
        ASSERT_GT(track.size(), 10u);
        EXPECT_EQ(track.back().Lat, PassageRig::North(10).Points[1].Position.Wgs84.Lat);
        if (c.gainSign == 0) {
            EXPECT_NE(track[track.size() / 2].Long, track.front().Long);
        }
    }
}

TEST(PassagePlan, FromTheVesselTheLegsBeforeTheActivePointAreLeftOut) {
    PassageRig rig;
    rig.Steady(0, 0.3);
    const Route route = PassageRig::MakeRoute({{50.1, -1.5}, {50.3, -1.5}, {50.5, -1.4}, {50.6, -1.2}});
    PassageInputs in = rig.In(5.0f);
    in.useVesselPos = true;
    in.vesselActive = true;
    in.vesselPos = LatLong{-1.45 * 3600, 50.2 * 3600};
    PassageRefusal no = rig.Plan(route, in);
    EXPECT_EQ(no.text, "Cannot Calculate From Vessel Without an Active Route Point.");
    EXPECT_EQ(no.focus, "ChkUseCurrVesPos");

    in.activePoint = 3;
    ASSERT_FALSE(rig.Plan(route, in));
    EXPECT_EQ(rig.passage.Legs[1].CTS, -1.0);
    const PassageTable table = rig.passage.ShowPassageResults(1, rig.units);
    ASSERT_EQ(table.rows.size(), 2u);
    EXPECT_EQ(table.rows[0][0], "Vessel - 3");
    EXPECT_EQ(table.rows[1][0], "3 - 4");
    // The first leg leaves the vessel at the start, not the route's first point.
    const auto& track = rig.passage.PassageTrack[2];
    EXPECT_EQ(track.front().Lat, in.vesselPos.Lat);
}

TEST(BestDeparture, TwentyFourHourlyRowsAroundTheWantedTime) {
    PassageRig rig;
    rig.Steady(0, 0.5);
    PassageInputs in = rig.In(6.0f, false);
    in.bestDeparture = true;
    std::vector<int> gauge;
    ASSERT_FALSE(rig.passage.CalcRoute(PassageRig::North(8), in, rig.units, [&](int row) { gauge.push_back(row); }));
    EXPECT_EQ(rig.passage.PassageState(), 2);
    EXPECT_EQ(gauge.size(), 24u);
    EXPECT_EQ(SecondsFrom(rig.start, rig.passage.BestDepartureTime[13]), 0);
    for (int row = 1; row <= 24; ++row) {
        EXPECT_EQ(SecondsFrom(rig.start, rig.passage.BestDepartureTime[size_t(row)]), (row - 13) * 3600LL);
        EXPECT_EQ(rig.passage.BestDuration[size_t(row)], rig.passage.BestDuration[1]);
    }
    // All equal: row 1 is the quickest, and it never becomes the best row.
    EXPECT_EQ(rig.passage.BestRow, 0);
    EXPECT_EQ(rig.passage.TxtArrDate, "N/A");
    const PassageTable table = rig.passage.ShowPassageResults(2, rig.units);
    ASSERT_EQ(table.rows.size(), 24u);
    EXPECT_EQ(table.headings, (std::vector<std::string>{"Departure Time", "Arrival Time", "Duration (dd,hh,mm)"}));
    EXPECT_EQ(table.rows[12][0], "01/06/2026  10:00");
}

TEST(BestDeparture, TheEarliestOfEqualDurationsWinsAndRowOneNeverDoes) {
    // A twelve-hour stream: rows twelve hours apart meet the same stream,
    // so every quickest duration appears twice. Turning its phase an hour at
    // a time moves the quickest row through the first twelve.
    bool sawRowOne = false, sawLaterTie = false;
    for (int hour = 0; hour < 12; ++hour) {
        PassageRig rig;
        rig.Stream("S2", Towards(0, 1.2, hour * 30.0));
        PassageInputs in = rig.In(4.0f);
        in.bestDeparture = true;
        ASSERT_FALSE(rig.Plan(PassageRig::North(9), in));
        const auto& d = rig.passage.BestDuration;
        const auto quickest = std::min_element(d.begin() + 1, d.end());
        const int first = int(quickest - d.begin());
        EXPECT_EQ(std::count(d.begin() + 1, d.end(), *quickest), 2) << hour;
        if (first == 1) {
            sawRowOne = true;
            EXPECT_EQ(rig.passage.BestRow, 0) << hour;
        } else {
            sawLaterTie = true;
            EXPECT_EQ(rig.passage.BestRow, first) << hour;
        }
    }
    EXPECT_TRUE(sawRowOne);
    EXPECT_TRUE(sawLaterTie);
}

TEST(BestDeparture, AllRowsFailedSelectNoRow) {
    PassageRig rig;
    rig.Steady(180, 1.2);
    PassageInputs in = rig.In(kOneMetreKnots);
    in.bestDeparture = true;
    ASSERT_FALSE(rig.Plan(PassageRig::North(3), in));
    EXPECT_EQ(rig.passage.BestRow, 0);
    const PassageTable table = rig.passage.ShowPassageResults(2, rig.units);
    ASSERT_EQ(table.rows.size(), 24u);
    for (const auto& row : table.rows) {
        EXPECT_EQ(row[1], "N/A");
        EXPECT_EQ(row[2], "N/A");
    }
}

}  // namespace
}  // namespace ombra::test
