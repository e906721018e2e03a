#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/ErrorReport.h"
#include "core/Fault.h"
#include "core/MainLoop.h"
#include "platform/fake/ManualClock.h"
#include "platform/fake/ScriptedDialogs.h"

using namespace ombra;

namespace {
// Records the steps of each tick; the GPS may report a fix on chosen ticks.
struct Steps : TickSteps {
    TickFlags flags;
    std::vector<std::string> log;
    bool fixNext = false;
    bool active = false;
    MainLoop* loop = nullptr;
    bool reenter = false;
    TickFlags Flags() override { return flags; }
    bool ReadGPSPort() override {
        log.push_back("gps");
        if (reenter && loop) loop->MainTimer_Timer();  // a tick arriving while one runs
        bool f = fixNext;
        fixNext = false;
        return f;
    }
    void ReadGyroPort() override { log.push_back("gyro"); }
    void ReadAISPort() override { log.push_back("ais"); }
    void AisTimeout(double s) override { log.push_back("aistimeout " + std::to_string(int(s))); }
    void ReadARPAPort() override { log.push_back("arpa"); }
    void PollTrackingFile() override { log.push_back("tracking"); }
    bool UpdateVesselPos() override { log.push_back("vessel"); return true; }
    bool VesselActive() override { return active; }
    void UpdateTargetConsoles() override { log.push_back("consoles"); }
    void NmeaOutput(bool newFix) override { log.push_back(newFix ? "nmea fix" : "nmea"); }
    void AutoscrollCheck() override { log.push_back("scroll"); }
    void ShowClock(const std::string& t) override { log.push_back("clock " + t); }
    int Count(const std::string& s) const {
        int n = 0;
        for (auto& l : log) n += l == s;
        return n;
    }
};
}  // namespace

TEST(MainLoop, StepsRunInOrderAndOnlyWhenTheirSettingsSaySo) {
    struct Case { TickFlags flags; std::vector<std::string> polls; } cases[] = {
        {{false, false, false, 300, false}, {"gps", "tracking"}},
        {{true, false, true, 120, true}, {"gps", "gyro", "ais", "aistimeout 120", "arpa", "tracking"}},
        {{false, true, true, 300, false}, {"gps", "tracking"}},  // AIS on the GPS port: no poll, no ageing
        {{false, false, true, 300, false}, {"gps", "ais", "aistimeout 300", "tracking"}},
    };
    for (auto& c : cases) {
        ManualClock clock;
        clock.SetTime(10, 0, 0);
        Steps s;
        s.flags = c.flags;
        MainLoop loop(clock, s);
        loop.VesselTime = clock.Timer();
        loop.MainTimer_Timer();
        std::vector<std::string> want = c.polls;
        want.push_back("clock 10:00");
        EXPECT_EQ(s.log, want);
        EXPECT_FALSE(loop.Busy);
    }
}

TEST(MainLoop, ANestedTickReturnsAtOnceAndLeavesBusySet) {
    ManualClock clock;
    Steps s;
    MainLoop loop(clock, s);
    s.loop = &loop;
    s.reenter = true;
    loop.MainTimer_Timer();
    EXPECT_EQ(s.Count("gps"), 1);  // the nested tick did nothing
    EXPECT_FALSE(loop.Busy);
    loop.Busy = true;
    s.log.clear();
    loop.MainTimer_Timer();
    EXPECT_TRUE(s.log.empty());
    EXPECT_TRUE(loop.Busy);
}

TEST(MainLoop, CadencesOfVesselNmeaAndAutoscroll) {
    ManualClock clock;
    clock.SetTime(12, 0, 0);
    Steps s;
    s.active = true;
    MainLoop loop(clock, s);
    loop.VesselTime = clock.Timer();
    // 10 seconds of ticks at 100 ms with a fix every 0.5 s.
    for (int i = 0; i < 100; ++i) {
        s.fixNext = (i % 5 == 0);
        loop.MainTimer_Timer();
        clock.Advance(0.1);
    }
    EXPECT_EQ(s.Count("vessel"), 20);           // on every fix
    EXPECT_EQ(s.Count("consoles"), 20);
    EXPECT_EQ(s.Count("nmea fix"), 5);          // at most every 2 s (the first at once)
    EXPECT_EQ(s.Count("scroll"), 2);            // at most every 5 s
    EXPECT_EQ(s.Count("tracking"), 100);
}

TEST(MainLoop, WithoutFixesTheVesselStillUpdatesOnceASecond) {
    ManualClock clock;
    clock.SetTime(12, 0, 0);
    Steps s;
    s.active = false;  // no vessel mode: the inner block is skipped
    MainLoop loop(clock, s);
    loop.VesselTime = clock.Timer();
    for (int i = 0; i < 50; ++i) {
        loop.MainTimer_Timer();
        clock.Advance(0.1);
    }
    EXPECT_EQ(s.Count("vessel"), 4);  // at 1.0, 2.0, 3.0, 4.0 seconds
    EXPECT_EQ(s.Count("consoles"), 0);
    EXPECT_EQ(s.Count("nmea"), 0);
    EXPECT_NEAR(loop.VesselTime, 12 * 3600 + 4.0, 0.05);
}

TEST(MainLoop, EveryCadenceFiresOnTheFirstTickAfterMidnight) {
    ManualClock clock;
    clock.SetTime(23, 59, 59.0);
    Steps s;
    s.active = true;
    MainLoop loop(clock, s);
    s.fixNext = true;
    loop.MainTimer_Timer();  // first fix of the evening: all fire
    EXPECT_EQ(s.Count("nmea fix"), 1);
    EXPECT_EQ(s.Count("scroll"), 1);
    clock.Advance(0.5);
    s.fixNext = true;
    loop.MainTimer_Timer();  // 23:59:59.5, too soon for either
    EXPECT_EQ(s.Count("nmea fix") + s.Count("nmea"), 1);
    clock.Advance(0.6);      // 00:00:00.1: the clock wrapped to 0
    EXPECT_LT(clock.Timer(), 1.0);
    loop.MainTimer_Timer();  // no fix, yet |T - VesselTime| is nearly a day
    EXPECT_EQ(s.Count("vessel"), 3);
    EXPECT_EQ(s.Count("nmea fix") + s.Count("nmea"), 2);
    EXPECT_EQ(s.Count("scroll"), 2);
    EXPECT_EQ(s.log.back(), "clock 00:00");
}

TEST(MainLoop, AFaultEscapingAStepNeverStopsTheHeartbeat) {
    struct Throwing : Steps {
        bool ReadGPSPort() override { throw Fault(6, "Overflow"); }
    } s;
    ManualClock clock;
    MainLoop loop(clock, s);
    loop.MainTimer_Timer();
    EXPECT_FALSE(loop.Busy);
    loop.MainTimer_Timer();
    EXPECT_FALSE(loop.Busy);
}

TEST(ReportError, NamesTheProcedureAndShowsTheFaultAsItComes) {
    ScriptedDialogs d;
    std::string product = "Tarnel";
    ErrorReporter errors(d, product);
    int rounds = 0;
    for (int i = 0; i < 4; ++i) {
        errors.Guard("UpdateVesselPos", [&] {
            ++rounds;
            if (i % 2) throw Fault(11, "Division by zero");
        });
    }
    EXPECT_EQ(rounds, 4);
    ASSERT_EQ(d.asked.size(), 2u);  // once for each round that faulted
    EXPECT_EQ(d.asked[0].text, "Error in 'UpdateVesselPos'\nDivision by zero");
    EXPECT_EQ(d.asked[0].title, "Tarnel");
    EXPECT_EQ(d.asked[0].style, mb::OKOnly | mb::Exclamation);
    errors.Guard("ReadHeaderFile", [] { throw std::runtime_error("Datei nicht gefunden"); });
    EXPECT_EQ(d.asked.back().text, "Error in 'ReadHeaderFile'\nDatei nicht gefunden");
    errors.Guard("X", [] { throw 42; });
    EXPECT_EQ(d.asked.back().text, "Error in 'X'\nUnknown error");
}
