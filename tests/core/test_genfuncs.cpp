#include <gtest/gtest.h>

#include "core/GenFuncs.h"
#include "core/Val.h"
#include "platform/fake/ScriptedDialogs.h"

using namespace ombra;

TEST(ParseLatLong, AcceptsAndConvertsToSecondsOfArc) {
    struct Case { const char* lat; const char* lon; double wantLat, wantLon; } cases[] = {
        {"51 28.57 N", "2 36.6 W", 51 * 3600 + 28.57 * 60, -(2 * 3600 + 36.6 * 60)},
        {"51° 28,57´ N", "2° 36,6' W", 51 * 3600 + 28.57 * 60, -(2 * 3600 + 36.6 * 60)},
        {"51°28,57´ N", "2°36,6´ W", 51 * 3600 + 28.57 * 60, -(2 * 3600 + 36.6 * 60)},
        {"  0 0 s", "0 0 e", 0, 0},
        {"33 59.999 S", "151 12.5 E", -(33 * 3600 + 59.999 * 60), 151 * 3600 + 12.5 * 60},
        {"95 10 N", "200 0 W", 95 * 3600 + 600, -200 * 3600.0},  // no upper limit on degrees here
        {"50° 07.250 ´N *", "11° 58.000 ´W *", 50 * 3600 + 7.25 * 60, -(11 * 3600 + 58.0 * 60)},
        {"50 7.25 n *", "11 58 w", 50 * 3600 + 7.25 * 60, -(11 * 3600 + 58.0 * 60)},
    };
    for (auto& c : cases) {
        ScriptedDialogs d;
        std::string lat = c.lat, lon = c.lon;
        ASSERT_TRUE(ParseLatLong(lat, lon, d, "Tarnel")) << c.lat << " / " << c.lon;
        EXPECT_NEAR(Val(lat), c.wantLat, 1e-6) << c.lat;
        EXPECT_NEAR(Val(lon), c.wantLon, 1e-6) << c.lon;
        EXPECT_TRUE(d.asked.empty());
    }
}

TEST(ParseLatLong, RejectsWithTheOneMessage) {
    struct Case { const char* lat; const char* lon; } cases[] = {
        {"51 28.57", "2 36.6 W"},    // no hemisphere
        {"51 60.0 N", "2 36.6 W"},   // minutes must be below 60
        {"51 -1 N", "2 36.6 W"},     // and not negative
        {"51N", "2 36.6 W"},         // no blanks
        {"51 N", "2 36.6 W"},        // one blank only
        {"5l 28 N", "2 36.6 W"},     // degrees not numeric
        {"51 2x N", "2 36.6 W"},     // minutes not numeric
        {"51 28.57 N", "2 36.6 S"},  // a latitude letter on the longitude
        {"51 28.57 E", "2 36.6 W"},
        {"", ""},
        {"51 28.57 N", "2 36.6 W*"},
    };
    for (auto& c : cases) {
        ScriptedDialogs d;
        std::string lat = c.lat, lon = c.lon;
        EXPECT_FALSE(ParseLatLong(lat, lon, d, "Tarnel")) << c.lat << " / " << c.lon;
        ASSERT_EQ(d.asked.size(), 1u);
        EXPECT_EQ(d.asked[0].text,
                  "Invalid Latitude and/or Longitude\n\nCorrect Format:\n\n51 28.57 N\n2 36.6 W\n\n"
                  "i.e Degrees space minutes space N, S, E, or W.");
        EXPECT_EQ(d.asked[0].title, "Tarnel");
        EXPECT_EQ(d.asked[0].style, mb::OKOnly | mb::Exclamation);
        EXPECT_EQ(lat, c.lat);  // a rejected text is left as typed
    }
}

TEST(LatLongText, FormatsAndMarksPositionsOutsideTheShownDatum) {
    LatLong p{-(11 * 3600 + 58 * 60 + 3.0), 50 * 3600 + 7 * 60 + 15.0};
    std::string lat, lon;
    LatLongText(lat, lon, &p, 0, 1, true);
    EXPECT_EQ(lat, "50° 07.250 ´N");
    EXPECT_EQ(lon, "11° 58.050 ´W");
    LatLongText(lat, lon, nullptr, 0, 1, true);
    EXPECT_EQ(lat, "0° 00.000 ´N");
    EXPECT_EQ(lon, "0° 00.000 ´E");
    struct Mark { int16_t mode, valid; bool shift; bool marked; } marks[] = {
        {1, 0, true, true}, {1, 1, true, false}, {0, 0, false, true}, {0, 1, true, false}, {2, 0, false, false}};
    for (auto& m : marks) {
        LatLongText(lat, lon, &p, m.mode, m.valid, m.shift);
        EXPECT_EQ(lat.ends_with(" *"), m.marked);
        EXPECT_EQ(lon.ends_with(" *"), m.marked);
    }
    // What is shown parses back to the same minutes.
    LatLongText(lat, lon, &p, 1, 0, true);
    ScriptedDialogs d;
    ASSERT_TRUE(ParseLatLong(lat, lon, d, "Tarnel"));
    EXPECT_NEAR(Val(lat), p.Lat, 0.06);
    EXPECT_NEAR(Val(lon), p.Long, 0.06);
    // South and the equator.
    LatLong s{0.0, -(33 * 3600 + 30.0)};
    LatLongText(lat, lon, &s, 0, 1, true);
    EXPECT_EQ(lat, "33° 00.500 ´S");
    EXPECT_EQ(lon, "0° 00.000 ´E");
}

TEST(GenFuncs, QuestionsUseTheirExactTexts) {
    ScriptedDialogs d;
    d.replies = {mb::Yes, mb::No, mb::Yes, mb::Yes, mb::No, mb::Yes};
    EXPECT_TRUE(ConfirmDelete(DeleteKind::Route, d, "Tarnel"));
    EXPECT_FALSE(ConfirmDelete(DeleteKind::Waypoint, d, "Tarnel"));
    EXPECT_TRUE(ConfirmDelete(DeleteKind::Other, d, "Tarnel"));
    EXPECT_TRUE(ConfirmMove(MoveKind::BoundaryMark, d, "Tarnel"));
    EXPECT_FALSE(ConfirmMove(MoveKind::Waypoint, d, "Tarnel"));
    EXPECT_TRUE(ConfirmMove(MoveKind::Vessel, d, "Tarnel"));
    const char* want[] = {"Confirm deletion of route.", "Confirm deletion of waypoint.", "Confirm deletion.",
                          "Do you wish to move this Boundary Mark.", "Do you wish to move this Waypoint.",
                          "Do you wish to move this Vessel."};
    ASSERT_EQ(d.asked.size(), 6u);
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(d.asked[size_t(i)].text, want[i]);
        EXPECT_EQ(d.asked[size_t(i)].style & 15, mb::YesNo);
    }
    int a = 1, b = 2;
    SwapValues(a, b);
    EXPECT_EQ(a, 2);
    std::string x = "x", y = "y";
    SwapValues(x, y);
    EXPECT_EQ(x, "y");
}
