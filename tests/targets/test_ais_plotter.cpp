// The AIS targets in the whole plotter: the demo log played through a
// file port puts its vessels on the rendered chart and in the console;
// targets age out on either source; static data reaches the list; the
// closest-approach alarm reaches the shell's alarm window.
#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <thread>

#include "navmath/RLGC.h"
#include "platform/chartlib/ImageCanvas.h"
#include "platform/comms/ScriptedComms.h"
#include "platform/fake/ManualClock.h"
#include "platform/fake/MemorySettings.h"
#include "platform/fake/ScriptedDialogs.h"
#include "plotter/Plotter.h"
#include "plotter/WindowlessShell.h"
#include "tests/charts/ChartFixture.h"
#include "tests/support/TestSupport.h"

using namespace ombra;

namespace {

struct AlarmShell : WindowlessShell {
    int shown = 0, hidden = 0;
    std::string text;
    std::string ShowAlarm(AlarmForm form, const std::string&, const std::string& t, bool) override {
        if (form == AlarmForm::Cpa) ++shown, text = t;
        return {};
    }
    void HideAlarm(AlarmForm form) override { hidden += form == AlarmForm::Cpa; }
};

struct Harness {
    test::TempDir dir;
    MemorySettings store;
    ScriptedDialogs dialogs;
    ManualClock clock;
    NoEvents events;
    AlarmShell shell;
    ScriptedComms scripted;
    std::unique_ptr<Plotter> plotter;
    explicit Harness(bool realPorts) {
        Set("AutoStartupGPS", "2");
        Set("GPSPort", "1");
        Set("AISEnable", "True");
        clock.now = DateTime{2026, 11, 23, 10, 0, 0, 0};
        realPorts_ = realPorts;
    }
    void Set(const char* key, const std::string& value) { store.Write("Vestrane", "Tarnel", key, value); }
    bool Start() {
        plotter = std::make_unique<Plotter>(PlotterServices{store, dialogs, clock, events, shell, realPorts_ ? nullptr : &scripted});
        return plotter->Start("NOSPLASH", dir / "ombra", dir / "home", "");
    }
    void Ticks(int n) {
        for (int i = 0; i < n; ++i) {
            plotter->Tick();
            clock.Advance(0.1);
        }
    }
    bool realPorts_ = false;
};

std::string Fix(int second, const LatLong& p) {
    char body[128];
    std::snprintf(body, sizeof body, "GPGGA,10%02d%02d,%02d%07.4f,N,%03d%07.4f,W,1,08,0.9,5.0,M,50.0,M,,", second / 60 % 60,
                  second % 60, int(p.Lat / 3600), std::fmod(p.Lat / 60.0, 60.0), int(-p.Long / 3600),
                  std::fmod(-p.Long / 60.0, 60.0));
    unsigned char sum = 0;
    for (const char* c = body; *c; ++c) sum ^= static_cast<unsigned char>(*c);
    char out[160];
    std::snprintf(out, sizeof out, "$%s*%02X\r\n", body, sum);
    return out;
}

bool NearColour(const Image& img, ChartPoint p, Rgb colour, int radius) {
    for (int dy = -radius; dy <= radius; ++dy)
        for (int dx = -radius; dx <= radius; ++dx) {
            int x = p.x + dx, y = p.y + dy;
            if (x >= 0 && y >= 0 && x < img.width && y < img.height && (img.at(x, y) & 0xFFFFFF) == colour) return true;
        }
    return false;
}

}  // namespace

TEST(AisInThePlotter, TheDemoLogThroughAFilePortPutsItsVesselsOnTheChartAndInTheConsole) {
    Harness h(true);
    h.Set("ComPort1", std::string("file://") + OMBRA_SOURCE_DIR + "/data/demo/ombra-demo.nmea?rate=50&loop=0");
    h.Set("AISUseGPSPort", "True");
    h.Set("AISLabels", "True");
    ASSERT_TRUE(h.Start());
    ChartModule& charts = h.plotter->charts();
    std::string why;
    ASSERT_TRUE(test::InstallFixtureChart(charts, charts.Root(), test::DefaultFixture(), "20240601", &why)) << why;
    ASSERT_TRUE(charts.Charts.NewChart("1234A"));
    charts.View.SetViewSize(1000, 800);
    ASSERT_TRUE(charts.View.CentreOnPosition(LatLong{-12 * 3600.0, 50 * 3600.0}));

    // The demo has four stations; wait (in real time: the file plays at its
    // own pace) until every one has a position.
    Ais& ais = h.plotter->aisTargets();
    auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (ais.Rows(AisSort::Slot).size() < 4 && std::chrono::steady_clock::now() < deadline) {
        h.Ticks(1);
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    std::vector<AisRow> rows = ais.Rows(AisSort::Slot);
    ASSERT_EQ(rows.size(), 4u);
    ASSERT_TRUE(h.plotter->VesselActive());

    Image img(1000, 800);
    chartlib::ImageCanvas canvas(img);
    charts.View.RedrawNavCanvas(canvas);
    int seen = 0;
    for (const AisRow& r : rows) {
        SCOPED_TRACE(r.Name);
        NavPoint np = charts.View.LocatePosition(r.Pos);
        int plan = np.FirstPlanShown();
        ASSERT_GE(plan, 0);
        const ChartPoint s = charts.View.ChartToScreen(np.Pixel[size_t(plan)]);
        if (s.x < 0 || s.y < 0 || s.x >= img.width || s.y >= img.height) continue;
        ++seen;
        const Rgb colour = r.Heading >= 0 ? MakeRgb(255, 255, 0) : r.Course >= 0 ? MakeRgb(0, 255, 255) : MakeRgb(255, 0, 255);
        EXPECT_TRUE(NearColour(img, s, colour, 8)) << s.x << "," << s.y;
        // The pop-up finds it there.
        EXPECT_EQ(h.plotter->AisTargetAt({s.x + 2, s.y - 1}), r.Index);
        EXPECT_EQ(ais.PopupCaption(r.Index), "AIS - " + r.Name);
    }
    EXPECT_EQ(seen, 4) << "the demo's vessels are all about the island";

    // Chosen from the chart, the target fills the console at the next cycle.
    const AisRow& first = rows.front();
    ais.SetActiveTarget(first.Index);
    h.Ticks(10);
    const Console& con = h.plotter->instruments().console;
    EXPECT_TRUE(con.AISFrameOn);
    EXPECT_EQ(con.LabAIS[0], first.MMSI);
    EXPECT_EQ(con.LabAIS[3].empty() ? con.LabAIS[0] : con.LabAIS[3], first.Name);
    EXPECT_NE(con.LabAIS[7], "N/A");
    EXPECT_NE(con.LabAIS[20], "");
}

TEST(AisInThePlotter, StaticDataReachesTheListAndTargetsAgeOutOnEitherSource) {
    struct Case {
        const char* what;
        bool gpsPort;
    } cases[] = {{"a port of its own", false}, {"the GPS port", true}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Harness h(false);
        h.Set("AISPort", "2");
        h.Set("AISUseGPSPort", c.gpsPort ? "True" : "False");
        h.Set("AISTimeout", "120");
        ASSERT_TRUE(h.Start());
        const int16_t port = c.gpsPort ? 1 : 2;
        const LatLong own{-1.5 * 3600.0, 50.7 * 3600.0};
        for (const char* s : {"!AIVDM,2,1,3,A,53P7@hP29E44l48?401<D61LU@<P000000000016<PD5:5GfNB4kmE20CD53,0*2D\r\n",
                              "!AIVDM,2,2,3,A,kP000000000,2*1C\r\n", "!AIVDM,1,1,,A,13P7@hP2QTwrug0M4FP725b`0000,0*76\r\n",
                              "!AIVDM,1,1,,A,B3P7@tP0=ovODP7@`E0pCwg5h000,0*37\r\n",
                              "!AIVDM,1,1,,A,H3P7@tPh5aV0@5U<000000000000,0*18\r\n",
                              "!AIVDM,1,1,,A,H3P7@tTU123ijkl=<JIq00104220,0*4D\r\n"})
            h.scripted.Feed(port, s);
        int second = 0;
        for (; second < 3; ++second) {
            h.scripted.Feed(1, Fix(second, own));
            h.Ticks(10);
        }
        std::vector<AisRow> rows = h.plotter->aisTargets().Rows(AisSort::Name);
        ASSERT_EQ(rows.size(), 2u);
        EXPECT_EQ(rows[0].Name, "LAZY DAYS");
        EXPECT_EQ(rows[0].CallSign, "MLZY9");
        EXPECT_EQ(rows[0].Type, "Pleasure Craft");
        EXPECT_EQ(rows[0].Length, "12 m");
        EXPECT_EQ(rows[1].Name, "SEA WITCH");
        EXPECT_EQ(rows[1].CallSign, "MABC1");
        EXPECT_EQ(rows[1].Type, "Cargo - all ships of this type");
        EXPECT_EQ(rows[1].Status, "Under way using engine");
        EXPECT_EQ(rows[1].Destination, "SOUTHAMPTON");
        EXPECT_EQ(rows[1].ETA, "15/05 14:30");
        EXPECT_EQ(rows[1].Width, "15 m");
        EXPECT_TRUE(rows[0].Approach.Known);

        // The console keeps its target across the loss: "N/A" once it has aged out.
        h.plotter->aisTargets().SetActiveTarget(rows[1].Index);
        for (; second < 100; ++second) {
            h.scripted.Feed(1, Fix(second, own));
            h.Ticks(10);
        }
        EXPECT_EQ(h.plotter->aisTargets().Rows(AisSort::Slot).size(), 2u) << "heard 100 s ago: kept";
        for (; second < 125; ++second) {
            h.scripted.Feed(1, Fix(second, own));
            h.Ticks(10);
        }
        EXPECT_TRUE(h.plotter->aisTargets().Rows(AisSort::Slot).empty());
        EXPECT_EQ(h.plotter->aisTargets().ActiveTarget, rows[1].Index);
        EXPECT_EQ(h.plotter->instruments().console.LabAIS[0], "N/A");
    }
}

TEST(AisInThePlotter, TheCpaAlarmGoesToTheAlarmWindowOnceAndComesDown) {
    Harness h(false);
    h.Set("AISPort", "2");
    h.Set("AISCpaAlarm", "True");
    h.Set("AISCpaRange", "1");
    h.Set("AISCpaTime", "60");
    ASSERT_TRUE(h.Start());
    // Own vessel stopped on the track of the Class B station (5.5 kn east),
    // under four miles ahead of it.
    const LatLong own = DeadReckon(LatLong{-1.25 * 3600.0, 50.75 * 3600.0}, 90.0, 1.0);
    h.scripted.Feed(2, "!AIVDM,1,1,,A,B3P7@tP0=ovODP7@`E0pCwg5h000,0*37\r\n");
    for (int s = 0; s < 5; ++s) {
        h.scripted.Feed(1, Fix(s, own));
        h.Ticks(10);
    }
    EXPECT_EQ(h.shell.shown, 1);
    EXPECT_NE(h.shell.text.find("235000050"), std::string::npos) << h.shell.text;
    h.plotter->aisTargets().AcknowledgeCpaAlarm();
    EXPECT_EQ(h.shell.hidden, 1);
    for (int s = 5; s < 10; ++s) {
        h.scripted.Feed(1, Fix(s, own));
        h.Ticks(10);
    }
    EXPECT_EQ(h.shell.shown, 1);
}
