// The alarms as a navigator meets them: a plotter on fake services whose
// GPS port is fed a fix a second, with routes and boundaries made through
// the stores, and a shell that records each alarm window shown and taken
// down (and, when told to, presses a button at once). Nothing here sets an
// alarm's flags: every alarm comes from the vessel cycle.
#include <gtest/gtest.h>

#include <map>

#include "core/Val.h"
#include "plotter/WindowlessShell.h"
#include "tests/alarms/FixFeed.h"

using namespace ombra;
using test::P;

namespace {

struct Shown {
    AlarmForm form;
    std::string caption, text;
    bool beep;
};

struct AlarmShell : WindowlessShell {
    std::vector<Shown> shown;
    std::vector<AlarmForm> hidden;
    std::map<AlarmForm, std::string> answers;  // pressed at once when set
    std::map<int, std::string> panels;
    void SetInfoPanel(int panel, const std::string& text) override { panels[panel] = text; }
    std::string ShowAlarm(AlarmForm form, const std::string& caption, const std::string& text, bool beep) override {
        shown.push_back({form, caption, text, beep});
        auto a = answers.find(form);
        return a == answers.end() ? std::string() : a->second;
    }
    void HideAlarm(AlarmForm form) override { hidden.push_back(form); }
    std::vector<std::pair<LogEntryKind, std::string>> logged;  // kind and narrative
    void LogEntryAdded(LogEntryKind kind, const LogEntry& e) override { logged.push_back({kind, e.Narrative}); }
    size_t Count(AlarmForm form) const {
        size_t n = 0;
        for (const Shown& s : shown) n += s.form == form;
        return n;
    }
};

struct WithShell {
    AlarmShell shell;
};
struct Passage : WithShell, test::Sailing {
    Passage() : Sailing(shell) {}
    void Start() { ASSERT_TRUE(Sailing::Start()); }
};

const char* kNext = "\nDo you wish to activate the next waypoint in this route.";
const char* kLast = "\nDo you wish to de-activate this waypoint.";

}  // namespace

// The range test reads the console's range row, in the unit it is shown in,
// against the point's range in nautical miles (0.5 here).
TEST(ArrivalAlarm, RangeIsTheConsoleNumberAgainstTheRangeInMiles) {
    struct Case {
        const char* unit;
        double short_;  // miles short of the point
        const char* text;  // "" no alarm
    } cases[] = {
        {"NauticalMiles", 0.6, ""},
        {"NauticalMiles", 0.4, "You are now within 0.50NM of WP1."},
        {"Kilometres", 0.4, ""},  // 0.74 Km on the console
        {"Kilometres", 0.25, "You are now within 0.93Km of WP1."},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.unit) + " " + std::to_string(c.short_));
        Passage h;
        h.Set("UnitsDistance", c.unit);
        h.Start();
        h.SailRoute({8, 16});
        ASSERT_EQ(h.PointName(1), "WP1");
        h.At(P(8 - c.short_));
        if (*c.text == 0) {
            EXPECT_EQ(h.shell.Count(AlarmForm::Arrival), 0u) << h.Row(4);
            continue;
        }
        ASSERT_EQ(h.shell.Count(AlarmForm::Arrival), 1u) << h.Row(4);
        const Shown& s = h.shell.shown.back();
        EXPECT_EQ(s.caption, "Waypoint Arrival");
        EXPECT_EQ(s.text, std::string(c.text) + kNext);
        EXPECT_TRUE(s.beep);
        EXPECT_TRUE(h.plotter.alarms().Window(AlarmForm::Arrival).Visible);
    }
}

TEST(ArrivalAlarm, PassedPerpendicularCountsNinetyDegreesAndMore) {
    struct Case { double bearing, leg; bool passed; } cases[] = {
        {180.0, 90.0, true}, {179.9, 90.0, false}, {0.0, 90.0, true}, {350.0, 10.0, false}, {100.0, 280.0, true},
    };
    for (const Case& c : cases)
        EXPECT_EQ(Alarms::PassedPerpendicular(c.bearing, c.leg), c.passed) << c.bearing << " against " << c.leg;

    // Abeam of the point a mile off, well outside its range.
    Passage h;
    h.Set("XTEAlarmStatus", "False");
    h.Start();
    h.SailRoute({8, 16});
    h.At(P(7.5, 1.0));
    EXPECT_EQ(h.shell.Count(AlarmForm::Arrival), 0u);
    h.At(P(8.1, 1.0));
    ASSERT_EQ(h.shell.Count(AlarmForm::Arrival), 1u);
    EXPECT_EQ(h.shell.shown.back().text, std::string("You have passed the perpendicular for WP1.") + kNext);
    EXPECT_NE(h.Leg().PassedPerpendicular, 0);
}

// The window's answer is read at the update after it is given.
TEST(ArrivalAlarm, AnswersOnARoute) {
    struct Case {
        const char* answer;  // "" never answered
        const char* legAfter;
        bool armed;
    } cases[] = {{"Yes", "WP2", true}, {"No", "WP1", false}, {"", "WP1", true}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.answer);
        Passage h;
        h.Start();
        h.SailRoute({8, 16});
        h.At(P(7.8));
        ASSERT_EQ(h.shell.Count(AlarmForm::Arrival), 1u);
        if (*c.answer) h.plotter.alarms().Press(AlarmForm::Arrival, c.answer);  // the window's button
        h.At(P(7.9));
        h.At(P(8.0));
        EXPECT_EQ(h.Leg().Name, c.legAfter);
        EXPECT_EQ(h.Leg().Armed != 0, c.armed);
        // Unanswered, the alarm sounds at every update; answered, it is gone.
        EXPECT_EQ(h.shell.Count(AlarmForm::Arrival), *c.answer ? 1u : 3u);
        EXPECT_EQ(h.plotter.alarms().Window(AlarmForm::Arrival).Visible, *c.answer == 0);
    }
}

// A shell that presses at once (a scripted replay) answers like the button.
TEST(ArrivalAlarm, AdvanceModeMovesOnSilentlyButTheLastPointAsks) {
    Passage h;
    h.Set("AutopilotAdvance", "1");
    h.Start();
    h.SailRoute({4, 8, 12});
    h.At(P(3.8));
    EXPECT_EQ(h.Leg().Name, "WP2");
    h.At(P(7.8));
    EXPECT_EQ(h.Leg().Name, "WP3");
    EXPECT_EQ(h.shell.Count(AlarmForm::Arrival), 0u);
    h.shell.answers[AlarmForm::Arrival] = "Yes";
    h.At(P(11.8));
    ASSERT_EQ(h.shell.Count(AlarmForm::Arrival), 1u);
    EXPECT_EQ(h.shell.shown.back().text, std::string("You are now within 0.50NM of WP3.") + kLast);
    EXPECT_EQ(h.Leg().Kind, 2);  // the answer is taken at the next update
    h.At(P(11.9));
    EXPECT_EQ(h.Leg().Kind, 0);
    EXPECT_EQ(h.plotter.nav().routes.ActiveRoute, 0);
}

// Off track by half a mile against a range of 0.3: the alarm, answered,
// stays silent until the vessel is back within range, then re-arms.
TEST(XteAlarm, ReArmsOnlyAfterComingBackWithinRange) {
    struct Case { const char* status; bool on; } cases[] = {{"True", true}, {"false", true}, {"False", false}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.status);
        Passage h;
        h.Set("XTEAlarmStatus", c.status);
        h.Start();
        h.SailRoute({20});
        h.At(P(4, 0.5));
        if (!c.on) {
            EXPECT_EQ(h.shell.Count(AlarmForm::CrossTrack), 0u);
            continue;
        }
        ASSERT_EQ(h.shell.Count(AlarmForm::CrossTrack), 1u);
        EXPECT_EQ(h.shell.shown.back().caption, "XTE Alarm");
        EXPECT_NEAR(Val(h.Row(9)), 0.5, 0.03);
        EXPECT_EQ(h.shell.shown.back().text, "You are " + h.Row(9) + " off track.");
        h.At(P(4.2, 0.5));
        EXPECT_EQ(h.shell.Count(AlarmForm::CrossTrack), 2u);  // unanswered: again
        h.plotter.alarms().Press(AlarmForm::CrossTrack, "OK");
        for (double n : {4.4, 4.6}) h.At(P(n, 0.5));
        EXPECT_EQ(h.shell.Count(AlarmForm::CrossTrack), 2u);
        h.At(P(4.8, 0.1));  // back within range
        EXPECT_EQ(h.shell.Count(AlarmForm::CrossTrack), 2u);
        h.At(P(5.0, 0.5));
        EXPECT_EQ(h.shell.Count(AlarmForm::CrossTrack), 3u);
        // Back on track while the window is up takes it down.
        h.At(P(5.2, 0.0));
        EXPECT_FALSE(h.plotter.alarms().Window(AlarmForm::CrossTrack).Visible);
        EXPECT_FALSE(h.plotter.alarms().XTEAlarmTripped);
    }
}

// Program Options write the switches; the alarms follow at once.
TEST(XteAlarm, ProgramOptionsTakeEffectAtOnce) {
    Passage h;
    h.Start();
    h.SailRoute({20});
    OptionsValues v = LoadOptions(h.plotter.registry(), h.plotter.units());
    v.XTE = false;
    v.SilentAlarms = true;
    h.plotter.ApplyOptions(v);
    h.At(P(4, 0.5));
    EXPECT_EQ(h.shell.Count(AlarmForm::CrossTrack), 0u);
    v.XTE = true;
    h.plotter.ApplyOptions(v);
    h.At(P(4.2, 0.5));
    ASSERT_EQ(h.shell.Count(AlarmForm::CrossTrack), 1u);
    EXPECT_FALSE(h.shell.shown.back().beep);
}

TEST(AnchorAlarm, DragAndReturn) {
    for (bool silent : {false, true}) {
        SCOPED_TRACE(silent);
        Passage h;
        if (silent) h.Set("AlarmSilent", "True");
        h.Start();
        h.At(P(0), 0.0, 0.0);
        Alarms& a = h.plotter.alarms();
        a.SetAnchor();  // the pop-up's "Set Anchor", then the radius tool's click
        a.FixAnchorRadius(P(0.1));

        h.At(P(0.05), 0.0, 0.0);
        EXPECT_EQ(h.shell.Count(AlarmForm::Anchor), 0u);
        h.At(P(-0.2), 180.0, 1.0);
        ASSERT_EQ(h.shell.Count(AlarmForm::Anchor), 1u);
        EXPECT_EQ(h.shell.shown.back().caption, "Anchor Alarm");
        EXPECT_EQ(h.shell.shown.back().text, "You have moved outside the area of your anchor alarm");
        EXPECT_EQ(h.shell.shown.back().beep, !silent);
        h.At(P(-0.25), 180.0, 1.0);
        EXPECT_EQ(h.shell.Count(AlarmForm::Anchor), 2u);
        a.Press(AlarmForm::Anchor, "OK");
        h.At(P(-0.3), 180.0, 1.0);
        EXPECT_EQ(h.shell.Count(AlarmForm::Anchor), 2u);
        h.At(P(0.0), 0.0, 1.0);  // back inside: armed again
        h.At(P(-0.2), 180.0, 1.0);
        EXPECT_EQ(h.shell.Count(AlarmForm::Anchor), 3u);
        a.ClearAnchor();
        EXPECT_FALSE(a.Window(AlarmForm::Anchor).Visible);
        h.At(P(-0.5), 180.0, 1.0);
        EXPECT_EQ(h.shell.Count(AlarmForm::Anchor), 3u);
    }
}

// A route from inside a harbour (alarm on exit) through a shoal (alarm on
// entry), with a predictor a mile long: each of the four events sounds once
// when answered at once, in the order the vessel meets them.
TEST(BoundaryAlarm, ARouteThroughTwoAreasWithThePredictor) {
    Passage h;
    h.Set("VesselPredictor", "True");
    h.Set("VesselPredictorTime", "6");
    h.Set("PredictorAlarmStatus", "True");
    h.Start();
    h.Area("Harbour", -0.5, 1.5, 1);
    h.Area("Shoal", 4.0, 6.0, 0);
    h.SailRoute({9});
    h.shell.answers[AlarmForm::Boundary] = "OK";
    for (int i = 1; i <= 70; ++i) h.At(P(i * 0.1), 0.0, 10.0);
    std::vector<std::string> events;
    for (const Shown& s : h.shell.shown)
        if (s.form == AlarmForm::Boundary) events.push_back(s.caption + ": " + s.text);
    EXPECT_EQ(events, (std::vector<std::string>{
                          "Predictor Exit: Your predictor line has left boundary alarm Harbour",
                          "Vessel Exit: You have left boundary alarm Harbour",
                          "Predictor Entry: Your predictor line has entered boundary alarm Shoal",
                          "Vessel Entry: You have entered boundary alarm Shoal",
                      }));
    EXPECT_EQ(h.Leg().Name, "WP1");  // the route's leg runs through both
}

// An entry alarm sounds until its OK, stays silent while the vessel is
// inside, and sounds again on the next entry; a hidden boundary, or one
// being edited, raises nothing.
TEST(BoundaryAlarm, EntryLatchAndTheBoundariesNotWatched) {
    struct Case { const char* name; bool hide, edit; size_t first; } cases[] = {
        {"shown", false, false, 2}, {"hidden", true, false, 0}, {"being edited", false, true, 0}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Passage h;
        h.Start();
        int16_t slot = h.Area("Range", 1.0, 2.0, 0);
        if (c.hide) h.plotter.nav().boundaries.DisplayBoundary(slot);
        if (c.edit) h.plotter.nav().boundaries.EditingBoundary = slot;
        h.At(P(0));
        h.At(P(1.5));
        h.At(P(1.6));
        EXPECT_EQ(h.shell.Count(AlarmForm::Boundary), c.first);
        if (!c.first) continue;
        EXPECT_EQ(h.plotter.alarms().Window(AlarmForm::Boundary).Caption, "Vessel Entry");
        h.plotter.alarms().Press(AlarmForm::Boundary, "OK");
        EXPECT_NE(h.plotter.nav().boundaries.At(slot)->VesselEntryLatch, 0);
        h.At(P(1.7));
        EXPECT_EQ(h.shell.Count(AlarmForm::Boundary), 2u);
        h.At(P(3.0));
        h.At(P(1.5));
        EXPECT_EQ(h.shell.Count(AlarmForm::Boundary), 3u);
    }
}

TEST(ManOverboard, SetAtTheVesselAndClearedOnlyWhenConfirmed) {
    Passage h;
    h.Start();
    h.SailRoute({8, 16});
    h.At(P(2.0));
    const LatLong here = h.plotter.instruments().vessel.vessel.Pos;
    h.plotter.alarms().ManOverboard();  // the menu command, key or toolbar button
    const ActiveLeg& leg = h.Leg();
    EXPECT_EQ(leg.Name, "MOB");
    EXPECT_EQ(leg.Kind, 1);
    EXPECT_EQ(leg.To, here);
    EXPECT_EQ(leg.Armed, 0);
    EXPECT_EQ(h.plotter.nav().routes.ActiveRoute, 0);
    EXPECT_TRUE(h.plotter.alarms().MobSet);
    ASSERT_FALSE(h.shell.logged.empty());
    EXPECT_EQ(h.shell.logged.back(), std::make_pair(LogEntryKind::ManOverboard, std::string("Man overboard condition.")));
    // Away and back to the mark: no arrival alarm on this leg.
    h.At(P(3.0), 0.0, 6.0);
    EXPECT_EQ(h.shell.panels[2].rfind("MOB 180°T 1.00 NM", 0), 0u) << h.shell.panels[2];
    h.At(P(2.0), 180.0, 6.0);
    EXPECT_EQ(h.shell.Count(AlarmForm::Arrival), 0u);
    EXPECT_EQ(h.Leg().Name, "MOB");

    // Clearing asks first (the menu's No and Yes are tried in the window tests).
    h.dialogs.replies = {mb::Yes};
    h.plotter.alarms().ManOverboard();
    EXPECT_EQ(h.dialogs.asked.back().text, "Confirm clearing of Man overboard condition");
    EXPECT_FALSE(h.plotter.alarms().MobSet);
    EXPECT_EQ(h.Leg().Kind, 0);
    EXPECT_EQ(h.shell.logged.back(),
              std::make_pair(LogEntryKind::ManOverboardCleared, std::string("Man overboard condition cleared.")));
}

// Start-up and a new vessel take every alarm window down.
TEST(AlarmWindows, ANewVesselClearsThem) {
    Passage h;
    h.Start();
    h.SailRoute({8});
    h.At(P(7.8));
    h.At(P(3, 0.6));
    Alarms& a = h.plotter.alarms();
    ASSERT_TRUE(a.Window(AlarmForm::Arrival).Visible || a.Window(AlarmForm::CrossTrack).Visible);
    VesselDialogValues v = LoadVesselDialog(h.plotter.instruments().vessel, h.plotter.units());
    v.Name = "Second Wind";
    ASSERT_TRUE(h.plotter.ApplyVesselDialog(v));
    for (AlarmForm f : {AlarmForm::Arrival, AlarmForm::CrossTrack, AlarmForm::Anchor, AlarmForm::Boundary})
        EXPECT_FALSE(a.Window(f).Visible) << int(f);
    EXPECT_FALSE(a.WaypointAlarmShowing);
    EXPECT_FALSE(a.XTEAlarmTripped);
}
