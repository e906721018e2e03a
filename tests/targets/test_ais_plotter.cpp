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
