// The AIS targets module against a table of its own: closest approach
// checked by running both vessels forward, the alarm's once-per-target
// rule, the console's rows and the list's order.
#include <gtest/gtest.h>

#include <cmath>

#include "core/Registry.h"
#include "navmath/RLGC.h"
#include "targets/Ais.h"
#include "tests/support/Rig.h"

using namespace ombra;

namespace {

const LatLong kOwn{-5 * 3600.0, 50 * 3600.0};

struct TableHost : AisHost {
    std::vector<AisTarget> table;  // slot i+1
    bool ownActive = true;
    OwnMotion own{kOwn, 0.0, 10.0};
    int shown = 0, hidden = 0;
    std::string lastText;
    int pick = -1;
    std::vector<std::string> picked;
    int16_t TargetCount() override { return int16_t(table.size()); }
    bool Target(int16_t i, AisTarget& t) override {
        if (i < 1 || size_t(i) > table.size() || table[size_t(i) - 1].Latitude == 0.0) return false;
        t = table[size_t(i) - 1];
        return true;
    }
    void ClearTargets() override { table.clear(); }
    bool OwnVessel(OwnMotion& o) override {
        o = own;
        return ownActive;
    }
    int ListPick(const std::string&, const std::vector<std::string>& items, const std::string&) override {
        picked = items;
        return pick;
    }
    void ShowCpaAlarm(const std::string&, const std::string& text, bool) override {
        ++shown;
        lastText = text;
    }
    void HideCpaAlarm() override { ++hidden; }
    void ConsoleChanged() override {}
    void Redraw() override {}
};

// A target `range` miles from the own vessel on `bearing`, steering
// `course` at `speed` knots.
AisTarget Vessel(const char* mmsi, const char* name, double bearing, double range, double course, double speed) {
    AisTarget t = BlankAisTarget();
    SetAisText(t.MMSI, mmsi);
    SetAisText(t.Name, name);
    LatLong p = DeadReckon(kOwn, bearing, range);
    t.Latitude = p.Lat / 3600.0;
    t.Longitude = p.Long / 3600.0;
    t.Course = course;
    t.Speed = speed;
    return t;
}

// The closest approach found by running both vessels forward a second at a
// time for three hours, the distance by the rhumb line between them.
struct Sampled {
    double distance, minutes;
};
Sampled RunForward(const OwnMotion& own, const AisTarget& t) {
    Sampled best{1e9, 0};
    const LatLong start{t.Longitude * 3600.0, t.Latitude * 3600.0};
    for (int s = 0; s <= 3 * 3600; ++s) {
        double h = s / 3600.0, course, distance;
        LatLong a = DeadReckon(own.Pos, own.COG, own.SOG * h);
        LatLong b = t.Speed > 0 ? DeadReckon(start, t.Course, t.Speed * h) : start;
        CourseDistanceRL(a, b, course, distance);
        if (distance < best.distance) best = {distance, s / 60.0};
    }
    return best;
}

}  // namespace

TEST(AisClosestApproach, AgreesWithBothVesselsRunForward) {
    struct Case {
        const char* what;
        double ownCog, ownSog, bearing, range, course, speed;
        bool closing;
    } cases[] = {
        {"crossing from starboard", 0, 10, 45, 4, 270, 10, true},
        {"crossing from port, passing astern", 0, 10, 300, 3, 90, 6, true},
        {"head-on, a little to starboard", 0, 10, 2, 6, 180, 12, true},
        {"overtaking from astern", 0, 10, 175, 1, 0, 15, true},
        {"overtaken ahead", 90, 14, 85, 2, 90, 5, true},
        {"diverging", 0, 10, 225, 2, 225, 8, false},
        {"stopped ahead", 0, 10, 3, 3, -1, 0, true},
        {"own vessel stopped", 0, 0, 90, 2, 280, 8, true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        OwnMotion own{kOwn, c.ownCog, c.ownSog};
        AisTarget t = Vessel("235000001", "X", c.bearing, c.range, c.course, c.speed);
        Cpa a = ClosestApproach(own, LatLong{t.Longitude * 3600.0, t.Latitude * 3600.0}, t.Course, t.Speed);
        Sampled s = RunForward(own, t);
        ASSERT_TRUE(a.Known);
        EXPECT_NEAR(a.Range, c.range, 0.01);
        EXPECT_NEAR(std::fmod(a.Bearing - c.bearing + 540.0, 360.0) - 180.0, 0.0, 0.5);
        EXPECT_NEAR(a.Distance, s.distance, 0.01);
        EXPECT_EQ(a.Closing(), c.closing);
        if (c.closing) EXPECT_NEAR(a.Minutes, s.minutes, 0.2);
        else EXPECT_LE(a.Minutes, 0.0);
    }
    // Without the target's speed, or with speed but no course, there is none.
    OwnMotion own{kOwn, 0, 10};
    EXPECT_FALSE(ClosestApproach(own, kOwn, 90, -1).Known);
    EXPECT_FALSE(ClosestApproach(own, kOwn, -1, 8).Known);
}

TEST(AisCpaAlarm, RaisedOncePerTargetUntilItLeavesTheLimits) {
    test::FakePlatform f;
    TableHost host;
    Ais ais(f.reg, host);
    ais.Settings.CpaAlarm = false;
    ais.Settings.CpaRange = 0.5;
    ais.Settings.CpaTime = 20;
    // Head-on, 0.2 miles to starboard, 6 miles off at 22 knots closing: 16 minutes.
    host.table.push_back(Vessel("235000001", "CLOSER", 2, 6, 180, 12));
    // Passing two miles off: never within the range.
    host.table.push_back(Vessel("235000002", "WIDE", 20, 6, 180, 12));
    ais.CheckCpaAlarm();
    EXPECT_EQ(host.shown, 0) << "off by default";

    ais.Settings.CpaAlarm = true;
    ais.CheckCpaAlarm();
    EXPECT_EQ(host.shown, 1);
    EXPECT_NE(host.lastText.find("CLOSER"), std::string::npos);
    EXPECT_EQ(host.lastText.find("WIDE"), std::string::npos);
    ais.CheckCpaAlarm();
    EXPECT_EQ(host.shown, 1) << "the same target is not raised again";
    ais.AcknowledgeCpaAlarm();
    EXPECT_EQ(host.hidden, 1);
    EXPECT_FALSE(ais.CpaAlarmShowing());
    ais.CheckCpaAlarm();
    EXPECT_EQ(host.shown, 1) << "acknowledged, still within: quiet";

    // The target alters away: it leaves the limits, then comes back.
    host.table[0].Course = 90;
    ais.CheckCpaAlarm();
    EXPECT_EQ(host.shown, 1);
    host.table[0].Course = 180;
    ais.CheckCpaAlarm();
    EXPECT_EQ(host.shown, 2);
    // Gone from the table: the window comes down by itself.
    host.table[0].Latitude = 0.0;
    ais.CheckCpaAlarm();
    EXPECT_EQ(host.hidden, 2);
    // Too far off in time: 16 minutes away against a limit of 10.
    host.table[0] = Vessel("235000001", "CLOSER", 2, 6, 180, 12);
    ais.Settings.CpaTime = 10;
    ais.CheckCpaAlarm();
    EXPECT_EQ(host.shown, 2);
    // Without the own vessel nothing is raised.
    ais.Settings.CpaTime = 20;
    host.ownActive = false;
    ais.CheckCpaAlarm();
    EXPECT_EQ(host.shown, 2);
}

TEST(AisConsoleAndList, RowsOfTheActiveTargetAndTheListClosestFirst) {
    test::FakePlatform f;
    TableHost host;
    Ais ais(f.reg, host);
    host.table.push_back(Vessel("235000001", "FAR", 10, 5, 180, 12));
    host.table.push_back(Vessel("235000002", "", 2, 6, 180, 12));  // blank name
    host.table.push_back(Vessel("235000003", "NO SPEED", 90, 1, -1, -1));
    host.table.push_back(Vessel("235000004", "NEAR", 1, 3, 180, 8));

    std::array<std::string, Ais::kConsoleRows> rows;
    rows.fill("");
    ais.UpdateConsole(rows);
    EXPECT_EQ(rows[0], "") << "no target chosen: nothing";
    ais.SetActiveTarget(2);
    ais.UpdateConsole(rows);
    EXPECT_EQ(rows[0], "235000002");
    EXPECT_EQ(rows[3], "");
    EXPECT_EQ(ais.PopupCaption(2), "AIS - 235000002");
    EXPECT_NE(rows[20], "N/A");
    EXPECT_NE(rows[21].find("min"), std::string::npos);
    ais.SetActiveTarget(3);
    ais.UpdateConsole(rows);
    EXPECT_EQ(rows[20], "N/A");
    host.table[2].Latitude = 0.0;  // lost
    ais.UpdateConsole(rows);
    for (const std::string& r : rows) EXPECT_EQ(r, "N/A");
    host.table[2] = Vessel("235000003", "NO SPEED", 90, 1, -1, -1);

    auto order = [&](AisSort by) {
        std::string s;
        for (const AisRow& r : ais.Rows(by)) s += std::to_string(r.Index);
        return s;
    };
    // CPA: 235000004 passes about 0.05 miles off, 235000002 0.2, FAR 0.87; no speed last.
    EXPECT_EQ(order(AisSort::Cpa), "4213");
    EXPECT_EQ(order(AisSort::Range), "4123");
    EXPECT_EQ(order(AisSort::Slot), "1234");
    EXPECT_EQ(order(AisSort::Name), "2143");
    std::vector<AisRow> byCpa = ais.Rows(AisSort::Cpa);
    for (size_t i = 1; i + 1 < byCpa.size(); ++i) EXPECT_LE(byCpa[i - 1].Approach.Distance, byCpa[i].Approach.Distance);
}
