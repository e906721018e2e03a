// The stream display over a scripted chart: the grid's cells, arrows and
// region selections, the grid kept and dropped, the point query, the gate
// of the stream window, installing regions, and the window's date texts.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <set>

#include "core/Registry.h"
#include "platform/fake/ManualClock.h"
#include "platform/fake/MemorySettings.h"
#include "platform/fake/RecordingCanvas.h"
#include "platform/fake/ScriptedDialogs.h"
#include "tests/platform/tidestream/TideRigs.h"
#include "tests/support/TestSupport.h"
#include "tests/tides/FakeTideStream.h"
#include "tides/TideDisplay.h"

using namespace ombra;
using namespace ombra::test;

namespace {

// A chart where a canvas pixel (x, y) lies at 52N - 0.004 y, 2W + 0.004 x,
// chart pixels are twice the canvas's plus a scroll, and land is a set of
// canvas pixels.
struct ChartHostFake : TideHost {
    std::set<std::pair<int, int>> land;
    int scrollX = 0;
    std::string key = "chart|128";
    std::vector<std::string> status;
    int regionsChanged = 0;
    static LatLong At(int x, int y) { return Deg(52 - 0.004 * y, -2 + 0.004 * x); }
    bool ScreenToTidePoint(int x, int y, LatLong& pos) override {
        pos = At(x, y);
        return true;
    }
    bool IsPointSea(const LatLong& pos) override {
        for (auto [x, y] : land)
            if (At(x, y) == pos) return false;
        return true;
    }
    ChartPoint ScreenToChart(ChartPoint s) override { return {s.x * 2 + scrollX, s.y * 2}; }
    ChartPoint ChartToScreen(ChartPoint c) override { return {(c.x - scrollX) / 2, c.y / 2}; }
    std::string ViewKey() override { return key; }
    void SetStatus(const std::string& text) override { status.push_back(text); }
    void TideRegionsChanged() override { ++regionsChanged; }
};

struct DisplayRig {
    TempDir dir;
    ScriptedDialogs dialogs;
    MemorySettings store;
    Registry registry{store, "Tarnel"};
    ErrorReporter errors{dialogs, "Ombra"};
    ManualClock clock;
    FakeTideStream stream;
    Tides tides{stream, errors};
    ChartHostFake host;
    TideDisplay display{tides, dialogs, clock, registry, errors, host};
    // Region01 2W-1.5W with a stream of 1200 mm/s towards 045; Region02
    // 1.5W-1W, where the stream is still. Both 51N-52N.
    DisplayRig() {
        stream.regions["Region01.Hdr"] = {E7(-1.5), E7(-2), E7(52), E7(51), 0, 1200, 450};
        stream.regions["Region02.Hdr"] = {E7(-1.0), E7(-1.5), E7(52), E7(51), 0, 0, 900};
        WriteFile(dir / "Region01.Hdr", "");
        WriteFile(dir / "Region02.Hdr", "");
        tides.SetDataPath(dir.path() + "/");
        tides.ListTideRegions();
        clock.now = DateTime{2026, 11, 25, 14, 30, 0, 0};
    }
};

}  // namespace

TEST(TideGrid, SeaCellsOfTheRegionsGetArrowsLandStillWaterAndNoRegionNone) {
    DisplayRig rig;
    rig.host.land = {{75, 75}};
    // Cell centres x 25..275 (lon 1.9W..0.9W), y 25..125 (lat 51.9N..51.5N).
    RecordingCanvas canvas(270, 120);
    rig.tides.TideTime = DateTime{2026, 6, 1, 9, 0, 0, 0}.Serial();
    rig.display.CalcTideGrid(canvas);
    EXPECT_EQ(rig.display.GridColumns(), (270 - 20) / 50 + 2);
    EXPECT_EQ(rig.display.GridRows(), (120 - 20) / 50 + 2);
    // Region01's three columns less the land cell; Region02's water is
    // still; the last column lies in no region.
    std::set<std::pair<int, int>> cells;
    for (const TideGridCell& c : rig.display.Cells()) {
        cells.insert({c.column, c.row});
        EXPECT_FLOAT_EQ(c.Drift, float(1200 * kTideMmsToKnots));
        EXPECT_FLOAT_EQ(c.Set, 45.0f);
    }
    std::set<std::pair<int, int>> want;
    for (int col = 1; col <= 3; ++col)
        for (int row = 1; row <= 3; ++row)
            if (!(col == 2 && row == 2)) want.insert({col, row});
    EXPECT_EQ(cells, want);
    // One selection per region entered: Region01, Region02, then none;
    // every cell of a region predicted, land and no region not at all.
    EXPECT_EQ(rig.stream.selections - 1 /* the listing's */ - 1, 3);
    EXPECT_EQ(rig.stream.predictions, 8 + 6);
    EXPECT_EQ(rig.stream.lastHour, 9);
    // Each arrow: a shaft and two head strokes, and its rate.
    EXPECT_EQ(canvas.Of("Line").size(), 3 * 8);
    EXPECT_EQ(canvas.Of("Text").size(), 8u);
}

TEST(TideGrid, NarrowCanvasGivesNoGrid) {
    for (auto [w, h] : {std::pair{19, 600}, std::pair{600, 19}, std::pair{0, 0}}) {
        DisplayRig rig;
        RecordingCanvas canvas(w, h);
        rig.display.CalcTideGrid(canvas);
        EXPECT_TRUE(rig.display.Cells().empty()) << w << "x" << h;
        EXPECT_EQ(rig.stream.predictions, 0);
        EXPECT_TRUE(canvas.calls.empty());
    }
}

TEST(TideGrid, TheArrowPointsWhereTheStreamRunsAndThickensAboveTwoKnots) {
    const struct {
        float set, drift;
        int width;
        ChartPoint tip;
    } cases[] = {
        {0.0f, 1.0f, 1, {100, 80}},   {90.0f, 2.0f, 1, {120, 100}},
        {180.0f, 2.01f, 2, {100, 120}}, {270.0f, 3.5f, 2, {80, 100}},
        {45.0f, 0.5f, 1, {114, 86}},
    };
    for (const auto& c : cases) {
        RecordingCanvas canvas;
        TideGridCell cell;
        cell.Set = c.set;
        cell.Drift = c.drift;
        TideDisplay::DrawTideArrow(canvas, cell, {100, 100});
        auto lines = canvas.Of("Line");
        ASSERT_EQ(lines.size(), 3u) << c.set;
        EXPECT_EQ(lines[0].points[0], (ChartPoint{100, 100}));
        EXPECT_EQ(lines[0].points[1], c.tip) << c.set;
        EXPECT_EQ(lines[0].pen.colour, MakeRgb(255, 0, 0));
        EXPECT_EQ(lines[0].pen.width, c.width) << c.drift;
        // The head strokes leave the tip backwards, a third of the shaft long.
        for (size_t k = 1; k < 3; ++k) {
            EXPECT_EQ(lines[k].points[0], c.tip);
            const double back = std::hypot(lines[k].points[1].x - 100.0, lines[k].points[1].y - 100.0);
            EXPECT_NEAR(back, 20 - 20 / 3.0 * std::cos(M_PI / 6), 1.0);
        }
        auto text = canvas.Of("Text");
        ASSERT_EQ(text.size(), 1u);
        char rate[16];
        std::snprintf(rate, sizeof rate, "%.2f", c.drift);
        EXPECT_EQ(text[0].text, rate);
    }
    RecordingCanvas none;
    TideDisplay::DrawTideArrow(none, TideGridCell{}, {10, 10});
    EXPECT_TRUE(none.calls.empty());
}

TEST(TideGrid, KeptAcrossRedrawsMovedWithTheChartDroppedAtANewChartOrZoom) {
    DisplayRig rig;
    const double when = DateTime{2026, 12, 1, 6, 0, 0, 0}.Serial();
    rig.display.RequestGrid(when);
    EXPECT_EQ(rig.tides.TideTime, when);
    RecordingCanvas first(170, 70);
    rig.display.DrawLayer(first);  // the grid is worked out at the redraw
    const size_t arrows = first.Of("Text").size();
    ASSERT_GT(arrows, 0u);
    EXPECT_EQ(rig.display.GridTime(), when);
    const int predicted = rig.stream.predictions;

    rig.host.scrollX = 20;  // the chart scrolled 10 canvas pixels left
    RecordingCanvas again(170, 70);
    rig.display.DrawLayer(again);
    EXPECT_EQ(rig.stream.predictions, predicted);  // drawn from the kept grid
    ASSERT_EQ(again.Of("Line").size(), first.Of("Line").size());
    EXPECT_EQ(again.Of("Line")[0].points[0].x, first.Of("Line")[0].points[0].x - 10);

    rig.host.key = "chart|256";
    RecordingCanvas zoomed(170, 70);
    rig.display.DrawLayer(zoomed);
    EXPECT_TRUE(zoomed.calls.empty());
    EXPECT_TRUE(rig.display.Cells().empty());
}

TEST(TidePoint, TheStreamNowInItsBoxOrNothing) {
    DisplayRig rig;
    rig.display.ShowTideAtPoint(Deg(51.5, -1.75));
    ASSERT_EQ(rig.dialogs.asked.size(), 1u);
    EXPECT_EQ(rig.dialogs.asked[0].title, "Tidal Stream");
    char want[96];
    std::snprintf(want, sizeof want, "The Tidal Stream at this point now is %.1f Kts at 45 Deg T", 1200 * 0.001944);
    EXPECT_EQ(rig.dialogs.asked[0].text, want);
    EXPECT_EQ(rig.stream.lastDay, 25);
    EXPECT_EQ(rig.stream.lastHour, 14);
    EXPECT_EQ(rig.stream.lastMinute, 30);
    rig.display.ShowTideAtPoint(Deg(10, 10));  // no region
    EXPECT_EQ(rig.dialogs.asked.size(), 1u);
}

TEST(TideConsole, TheModelsLastAnswerStandsWhereItHasNone) {
    DisplayRig rig;
    EXPECT_TRUE(rig.display.UseProudman());  // on unless turned off
    double set = -1, drift = -1;
    EXPECT_FALSE(rig.display.UpdateConsoleTide(Deg(10, 10), set, drift));
    EXPECT_TRUE(rig.display.UpdateConsoleTide(Deg(51.5, -1.75), set, drift));
    EXPECT_DOUBLE_EQ(set, 45.0);
    EXPECT_NEAR(drift, 1200 * 0.001944, 1e-6);
    set = drift = -1;
    EXPECT_TRUE(rig.display.UpdateConsoleTide(Deg(10, 10), set, drift));
    EXPECT_DOUBLE_EQ(set, 45.0);
    rig.display.SetUseProudman(false);
    EXPECT_FALSE(rig.display.UseProudman());
}

TEST(TideStreamGate, NoRegionNoWindow) {
    DisplayRig rig;
    EXPECT_TRUE(rig.display.ShowTideStreamDialog());
    EXPECT_TRUE(rig.dialogs.asked.empty());
    std::filesystem::remove(rig.dir / "Region01.Hdr");
    std::filesystem::remove(rig.dir / "Region02.Hdr");
    rig.tides.ListTideRegions();
    EXPECT_FALSE(rig.display.ShowTideStreamDialog());
    ASSERT_EQ(rig.dialogs.asked.size(), 1u);
    EXPECT_EQ(rig.dialogs.asked[0].text, "No Tidal Stream Data");
    EXPECT_EQ(rig.dialogs.asked[0].style & 0xF0, mb::Exclamation);
}

namespace {

struct InstallRig {
    TempDir home, disc;
    ScriptedDialogs dialogs;
    MemorySettings store;
    Registry registry{store, "Tarnel"};
    ErrorReporter errors{dialogs, "Ombra"};
    ManualClock clock;
    HarmonicTideStream stream;
    Tides tides{stream, errors};
    ChartHostFake host;
    TideDisplay display{tides, dialogs, clock, registry, errors, host};
    InstallRig() {
        tides.SetDataPath(home / "Dat/");
        tides.ListTideRegions();
    }
    std::vector<std::string> Texts() const {
        std::vector<std::string> t;
        for (const auto& a : dialogs.asked) t.push_back(a.kind + ":" + a.text.substr(0, a.text.find('\n')));
        return t;
    }
};

}  // namespace

TEST(TideInstall, RegionPairsAreCopiedAndListed) {
    InstallRig rig;
    std::string why;
    ASSERT_TRUE(tide::SaveRegion(UniformGrid({"M2"}, {{1, 0, 1, 90}}), rig.disc.path(), "Region07", &why)) << why;
    ASSERT_TRUE(tide::SaveRegion(UniformGrid({"M2"}, {{1, 0, 1, 90}}), rig.disc.path(), "Channel", &why)) << why;
    rig.dialogs.texts = {rig.disc.path()};
    rig.display.InstallTideSet(nullptr);
    EXPECT_EQ(rig.Texts(), (std::vector<std::string>{
                               "MsgBox:If your Proudman Tidal Data is on a removable disc",
                               "Folder:Select the Disc and Folder for the Proudman Tidal Region(s).",
                               "MsgBox:Proudman Region(s) Installed"}));
    // Every pair is copied; only the regions are listed.
    for (const char* f : {"Region07.Hdr", "Region07.Hrm", "Channel.Hdr", "Channel.Hrm"})
        EXPECT_EQ(ReadFile(rig.home / "Dat/" + f), ReadFile(rig.disc / f)) << f;
    ASSERT_EQ(rig.tides.TideRegionCount(), 1);
    EXPECT_EQ(rig.tides.TideRegions()[1].Name, "Region07");
    EXPECT_EQ(rig.host.status, (std::vector<std::string>{"Copying Proudman files", ""}));
    EXPECT_EQ(rig.host.regionsChanged, 1);
}

TEST(TideInstall, NothingThereOrCancelled) {
    InstallRig rig;
    WriteFile(rig.disc / "readme.txt", "no tides here");
    rig.dialogs.texts = {rig.disc.path()};
    rig.display.InstallTideSet(nullptr);
    ASSERT_EQ(rig.dialogs.asked.size(), 3u);
    EXPECT_EQ(rig.dialogs.asked[2].text, "No Proudman Tidal Data was found");
    EXPECT_EQ(rig.dialogs.asked[2].style & 0xF0, mb::Critical);
    rig.dialogs.asked.clear();
    rig.dialogs.texts = {"\x18"};
    rig.display.InstallTideSet(nullptr);
    EXPECT_EQ(rig.dialogs.asked.size(), 2u);  // the note and the browser alone
    EXPECT_EQ(rig.host.regionsChanged, 0);
}

TEST(TideInstall, AHarmonicDatabaseBecomesTheNextFreeRegion) {
    const char* tcd = "/usr/share/xtide/harmonics-dwf-20191229-free.tcd";
    if (!std::filesystem::exists(tcd)) GTEST_SKIP() << tcd << " is absent: install xtide-data";
    InstallRig rig;
    std::string why;
    std::filesystem::create_directories(rig.home / "Dat");
    ASSERT_TRUE(tide::SaveRegion(UniformGrid({"M2"}, {{1, 0, 1, 90}}), rig.home / "Dat", "Region01", &why)) << why;
    rig.tides.ListTideRegions();
    std::filesystem::create_symlink(tcd, rig.disc / "harmonics.tcd");
    rig.dialogs.texts = {rig.disc.path()};
    const double box[4] = {40.4, -74.3, 40.9, -73.7};  // the chart in view: New York harbour
    rig.display.InstallTideSet(box);
    ASSERT_EQ(rig.tides.TideRegionCount(), 2) << rig.Texts().back();
    const TideRegion& r = rig.tides.TideRegions()[2];
    EXPECT_EQ(r.Name, "Region02");
    EXPECT_GE(r.LatMin, 40.4f * 3600 - 1);
    EXPECT_LE(r.LatMax, 40.9f * 3600 + 1);
    EXPECT_EQ(rig.Texts().back(), "MsgBox:Proudman Region(s) Installed");
}

TEST(TideStreamTexts, DatesAndTimesTheCalendarHas) {
    const struct {
        const char* text;
        bool date, time;
    } cases[] = {
        {"25/11/2026", true, false}, {"1/3/2026", true, false},   {"29/02/2028", true, false},
        {"31/02/2026", false, false}, {"29/02/2027", false, false}, {"00/01/2026", false, false},
        {"25/13/2026", false, false}, {"25/11/26", false, false},   {"14:05", false, true},
        {"9:05", false, true},       {"23:59:59", false, true},    {"24:00", false, false},
        {"12:60", false, false},     {"12:5", false, false},       {"noon", false, false},
        {"", false, false},
    };
    for (const auto& c : cases) {
        double v = 0;
        EXPECT_EQ(ParseTideDate(c.text, v), c.date) << c.text;
        EXPECT_EQ(ParseTideClock(c.text, v), c.time) << c.text;
    }
    double day = 0, time = 0;
    ASSERT_TRUE(ParseTideDate("1/3/2026", day));
    ASSERT_TRUE(ParseTideClock("18:30", time));
    const DateTime t = DateTime::FromSerial(day + time);
    EXPECT_EQ((std::vector<int>{t.year, t.month, t.day, t.hour, t.minute}), (std::vector<int>{2026, 3, 1, 18, 30}));
}
