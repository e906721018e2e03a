// The chart windows under Qt's offscreen platform: the chart view paints
// the chart and follows the mouse; the Chart Manager installs and removes;
// Chart Details and Notes show the chart's facts.
#include <gtest/gtest.h>

#include <QApplication>
#include <QMouseEvent>
#include <QWheelEvent>

#include <QMenu>
#include <fstream>

#include "core/Val.h"
#include "platform/fake/ManualClock.h"
#include "platform/qt/QtServices.h"
#include "plotter/Plotter.h"
#include "tests/charts/ChartFixture.h"
#include "ui/ChartArea.h"
#include "ui/FrmMain.h"
#include "ui/QtShell.h"
#include "ui/FrmChartDetails.h"
#include "ui/FrmChartManager.h"
#include "ui/FrmNotes.h"
#include "ui/FrmOptions.h"
#include "tests/support/QtApp.h"

namespace ombra::test {
namespace {

using ombra::test::App;

TEST(ChartWindows, ChartAreaPaintsAndDrags) {
    App();
    ChartWorld w;
    ASSERT_TRUE(w.Install(DefaultFixture()));
    ChartArea area(w.charts);
    // The window's side of the chart host, as the shell passes it on.
    w.host.redraw = [&] { area.RequestRedraw(); };
    w.host.painted = [&] { area.update(); };
    area.resize(400, 300);
    area.show();
    QApplication::processEvents();
    ASSERT_TRUE(w.charts.Charts.NewChart("1234A"));
    w.charts.View.ShowHiRes();
    w.charts.View.CentreOnPosition(LatLong{-12 * 3600.0, 50 * 3600.0});
    QApplication::processEvents();  // the coalesced redraw
    ASSERT_EQ(area.Store().size(), QSize(400, 300));
    EXPECT_EQ(area.Store().pixel(200, 150) & 0xFFFFFF, MakeRgb(255, 255, 255));  // plan 0's colour
    std::vector<bool> onChart;
    area.OnMouseMove = [&](ChartPoint, bool on, const LatLong&) { onChart.push_back(on); };
    LatLong before = w.charts.View.ViewCentre();
    for (auto [type, x, button, buttons] : {std::tuple{QEvent::MouseButtonPress, 100, Qt::LeftButton, Qt::LeftButton},
                                            std::tuple{QEvent::MouseMove, 160, Qt::NoButton, Qt::LeftButton},
                                            std::tuple{QEvent::MouseButtonRelease, 160, Qt::LeftButton, Qt::NoButton}}) {
        QMouseEvent e(type, QPointF(x, 100), QPointF(x, 100), button, buttons, Qt::NoModifier);
        QApplication::sendEvent(&area, &e);
    }
    EXPECT_LT(w.charts.View.ViewCentre().Long, before.Long);
    ASSERT_EQ(onChart.size(), 1u);
    EXPECT_TRUE(onChart[0]);
    QWheelEvent wheel(QPointF(200, 150), QPointF(200, 150), QPoint(), QPoint(0, 120), Qt::NoButton, Qt::ControlModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(&area, &wheel);
    EXPECT_EQ(w.charts.View.PixelSize, 256);
}

TEST(ChartWindows, ChartManagerInstallsAndRemoves) {
    App();
    ChartWorld w;
    FrmChartManager frm(w.charts, w.dialogs, w.product);
    EXPECT_EQ(frm.LstCharts->rowCount(), 0);
    auto done = frm.InstallFiles({SharedData("kap/SAMPLE1.KAP"), "/nonexistent/x.kap"});
    EXPECT_EQ(done, std::vector<std::string>{"9801"});
    ASSERT_EQ(frm.LstCharts->rowCount(), 1);
    EXPECT_EQ(frm.LstCharts->item(0, 0)->text(), "9801");
    EXPECT_EQ(frm.LstCharts->item(0, 2)->text(), "1:25000");
    EXPECT_EQ(frm.LstCharts->item(0, 5)->text(), "Present");
    ASSERT_FALSE(w.Messages().empty());
    EXPECT_NE(w.Messages().back().find("x.kap"), std::string::npos);
    std::string opened;
    frm.OpenChart = [&](const std::string& n) { opened = n; };
    frm.LstCharts->selectRow(0);
    frm.OpenSelected();
    EXPECT_EQ(opened, "9801");
    w.dialogs.replies = {mb::No, mb::Yes};
    EXPECT_FALSE(frm.RemoveSelected());
    EXPECT_EQ(frm.LstCharts->rowCount(), 1);
    EXPECT_TRUE(frm.RemoveSelected());
    EXPECT_EQ(frm.LstCharts->rowCount(), 0);
    EXPECT_EQ(w.dialogs.asked.back().text, "Remove chart 9801 from this system?");
}

TEST(ChartWindows, DetailsAndNotes) {
    App();
    ChartWorld w;
    FixtureChart c = DefaultFixture();
    c.Plans[0].Shift = false;
    c.Plans.push_back({50.05, 49.95, -12.1, -11.9, 700, 500, 950, 760, "Inset", "12500", true, 3});
    ASSERT_TRUE(w.Install(c));
    w.charts.View.SetViewSize(300, 200);
    ASSERT_TRUE(w.charts.Charts.NewChart("1234A"));
    w.charts.View.SelectPlan(0);
    FrmChartDetails d(w.charts);
    EXPECT_EQ(d.LabNumber->text(), "1234A");
    EXPECT_EQ(d.LabScale->text(), "1:50000");
    EXPECT_EQ(d.LabDatum->text(), "World Geodetic System 1984");
    EXPECT_EQ(d.LabCountry->text(), "United Kingdom");
    EXPECT_EQ(d.LabEdition->text(), "01/06/2024");
    EXPECT_EQ(d.LabShiftLat->text(), "N/A");
    EXPECT_EQ(d.LabShiftSource->text(), "No shift data available, satellite positions cannot be accurately related to this chart.");
    EXPECT_EQ(d.TxtWarnings->toPlainText(), "Test warnings");
    EXPECT_EQ(d.CboPlan->count(), 2);
    d.CboPlan->setCurrentIndex(1);
    EXPECT_EQ(d.LabScale->text(), "1:12500");
    EXPECT_EQ(d.LabShiftLat->text(), "0.0000 minutes of latitude North");
    EXPECT_EQ(d.LabShiftSource->text(), "ARCS Dataset");
    FrmNotes n(w.charts);
    EXPECT_NE(n.TxtNotes->toPlainText().indexOf("no notes"), -1);
}


// A whole plotter behind its main window, its chart module's questions
// scripted and recorded, with charts installed under its chart root.
struct PlotterWindow {
    TempDir dir;
    MemorySettings store;
    ScriptedDialogs dialogs;
    QtDialogs windowDialogs{true};
    ManualClock clock;
    NoEvents events;
    QtShell shell{windowDialogs, true};
    Plotter plotter{{store, dialogs, clock, events, shell}};
    PlotterWindow() {
        App();
        shell.SetPlotter(&plotter);
    }
    bool Start() { return plotter.Start("NOSPLASH", dir / "ombra", dir / "home", dir / "none"); }
    bool Install(const FixtureChart& c, const std::string& date = "20240601") {
        std::string why;
        bool ok = InstallFixtureChart(plotter.charts(), plotter.charts().Root(), c, date, &why);
        EXPECT_TRUE(ok) << why;
        return ok;
    }
    FrmMain& Main() { return *shell.Main(); }
    QAction* Action(const char* control) { return shell.Main()->Action(control); }
    std::string OpenNumber() { return Trim(plotter.charts().State.Header.ChartNumber); }
    std::string LastMessage() const { return dialogs.asked.empty() ? "" : dialogs.asked.back().text; }
};

// Three charts about 50N 12W: the test chart at 1:50000, a wider one at
// 1:100000 and a closer one at 1:25000.
void InstallScaleLadder(PlotterWindow& w) {
    FixtureChart wide;
    wide.Number = "1000";
    wide.Plans.push_back({50.5, 49.5, -13, -11, 0, 0, wide.Width, wide.Height, "Wide", "100000"});
    FixtureChart close;
    close.Number = "2000";
    close.Plans.push_back({50.05, 49.95, -12.1, -11.9, 0, 0, close.Width, close.Height, "Close", "25000"});
    ASSERT_TRUE(w.Install(DefaultFixture()));
    ASSERT_TRUE(w.Install(wide));
    ASSERT_TRUE(w.Install(close));
}

TEST(ChartCommands, ScaleStepsHaveMenuEntriesAndKeysBesideThePixelZoom) {
    PlotterWindow w;
    ASSERT_TRUE(w.Start());
    InstallScaleLadder(w);
    ASSERT_TRUE(w.plotter.charts().Charts.NewChart("1234A"));
    LatLong centre{-12 * 3600.0, 50 * 3600.0};
    ASSERT_TRUE(w.plotter.charts().View.CentreOnPosition(centre));
    QAction* in = w.Action("MZoomInChart");
    QAction* out = w.Action("MZoomOutChart");
    ASSERT_NE(in, nullptr);
    ASSERT_NE(out, nullptr);
    EXPECT_TRUE(in->isEnabled());
    EXPECT_TRUE(out->isEnabled());
    EXPECT_FALSE(in->shortcut().isEmpty());
    EXPECT_FALSE(out->shortcut().isEmpty());
    EXPECT_NE(in->shortcut(), out->shortcut());
    for (QAction* a : {in, out})
        for (const char* pixelKey : {"+", "-", "="}) EXPECT_NE(a->shortcut(), QKeySequence(pixelKey));
    struct Step {
        QAction* action;
        const char* opens;
    };
    for (Step s : {Step{out, "1000"}, Step{in, "1234A"}, Step{in, "2000"}, Step{out, "1234A"}}) {
        s.action->trigger();
        EXPECT_EQ(w.OpenNumber(), s.opens);
        LatLong at = w.plotter.charts().View.ViewCentre();
        EXPECT_NEAR(at.Lat, centre.Lat, 30) << s.opens;  // the same place, within a chart pixel or two
        EXPECT_NEAR(at.Long, centre.Long, 30) << s.opens;
    }
    w.Action("MZoomInChart")->trigger();
    w.Action("MZoomInChart")->trigger();  // nothing closer than 1:25000
    EXPECT_EQ(w.OpenNumber(), "2000");
    EXPECT_EQ(w.LastMessage(), "There are no charts of a suitable scale curently installed.");
}

// The quick check runs on the chart in view from the Chart Manager and the
// checksums of the selected chart are validated there.
TEST(ChartCommands, ChartManagerRunsTheQuickCheckAndTheChecksumValidation) {
    App();
    ChartWorld w;
    ASSERT_TRUE(w.Install(DefaultFixture()));
    FrmChartManager frm(w.charts, w.dialogs, w.product);
    ASSERT_NE(frm.ComQuickCheck, nullptr);
    ASSERT_NE(frm.ComValidate, nullptr);
    frm.ComQuickCheck->click();
    EXPECT_EQ(w.Messages().back(), "Please select a Chart using the &Chart menu");
    ASSERT_TRUE(w.charts.Charts.NewChart("1234A"));
    frm.ComQuickCheck->click();
    EXPECT_EQ(w.Messages().back(), "Quick check of chart completed successfully");
    EXPECT_EQ(w.dialogs.asked.back().title, w.product);

    frm.LstCharts->selectRow(0);
    frm.ComValidate->click();
    EXPECT_EQ(w.Messages().back(), "Chart 1234A data is valid.");
    EXPECT_EQ(frm.LabStatus->text(), "Validating file checksums.");

    // A wrong issue date, answered Yes: the chart needs updating.
    SetIssueDate(w.HeaderPath("1234A"), "20200101");
    w.dialogs.replies = {mb::Yes};
    frm.ComQuickCheck->click();
    EXPECT_EQ(w.Messages().back(), "Chart needs to be updated.");

    // A damaged raster fails the validation.
    std::string chr = w.HeaderPath("1234A");
    chr.replace(chr.size() - 3, 3, "CHR");
    {
        std::fstream f(chr, std::ios::in | std::ios::out | std::ios::binary);
        ASSERT_TRUE(f.good());
        f.seekg(0, std::ios::end);
        auto size = f.tellg();
        ASSERT_GT(size, 64);
        f.seekp(size / 2);
        char bytes[16];
        for (char& b : bytes) b = char(0x5A);
        f.write(bytes, sizeof bytes);
    }
    frm.ComValidate->click();
    EXPECT_EQ(w.Messages().back(), "Chart 1234A data is invalid.\nReload from chart CD.");
}

TEST(ChartCommands, AutoScrollIsACommandThatFollowsTheProgramOptions) {
    PlotterWindow w;
    ASSERT_TRUE(w.Start());
    QAction* a = w.Action("MAutoScroll");
    ASSERT_NE(a, nullptr);
    EXPECT_TRUE(a->isEnabled());
    EXPECT_TRUE(a->isCheckable());
    auto& vessel = w.plotter.instruments().vessel;
    auto menuShown = [&] { emit w.Main().findChild<QMenu*>("MVessel")->aboutToShow(); };
    menuShown();
    EXPECT_FALSE(a->isChecked());
    a->trigger();
    EXPECT_GT(vessel.AutoscrollTime, 0.0f);
    EXPECT_GT(Val(w.plotter.registry().GetSetting(Key::AutoscrollTime)), 0.0);
    a->trigger();
    EXPECT_EQ(vessel.AutoscrollTime, 0.0f);
    EXPECT_EQ(Val(w.plotter.registry().GetSetting(Key::AutoscrollTime)), 0.0);
    // Set in Program Options: the entry shows it, and off then on keeps its time.
    OptionsValues o = LoadOptions(w.plotter.registry(), w.plotter.units());
    o.AutoscrollText = "12";
    w.plotter.ApplyOptions(o);
    menuShown();
    EXPECT_TRUE(a->isChecked());
    a->trigger();
    EXPECT_FALSE(a->isChecked());
    a->trigger();
    EXPECT_TRUE(a->isChecked());
    EXPECT_EQ(vessel.AutoscrollTime, 12.0f);
}

// The chart opened at start-up (the last chart) shows its readable full
// raster; View > Hi Res Chart after the zoomed-out one paints the chart at
// once, not an empty view.
TEST(ChartCommands, StartUpChartIsReadableAndHiResPaintsAtOnce) {
    PlotterWindow w;
    ASSERT_TRUE(w.Start());
    ASSERT_TRUE(w.Install(DefaultFixture()));
    auto* area = w.Main().findChild<ChartArea*>("PicNavCanvas");
    ASSERT_NE(area, nullptr);
    auto centreColour = [&] {
        for (int i = 0; i < 5; ++i) QApplication::processEvents();
        const QImage& img = area->Store();
        return img.isNull() ? 0u : img.pixel(img.width() / 2, img.height() / 2) & 0xFFFFFFu;
    };
    w.plotter.OpenChartNumber("1234A");
    ASSERT_TRUE(w.plotter.charts().Charts.ChartIsOpen());
    EXPECT_FALSE(w.plotter.charts().View.ShowingLoRes());
    EXPECT_FALSE(w.plotter.charts().View.WarningSet(2));
    EXPECT_EQ(w.plotter.charts().View.PixelSize, 128);
    w.Action("MLoRes")->trigger();
    EXPECT_TRUE(w.plotter.charts().View.WarningSet(2));
    w.Action("MHiRes")->trigger();
    EXPECT_FALSE(w.plotter.charts().View.ShowingLoRes());
    EXPECT_EQ(centreColour(), MakeRgb(255, 255, 255));  // plan 0's colour, not the empty view's grey
    // Straight from the starting view of an open (the zoomed-out raster at
    // its top-left corner) to the full raster.
    ASSERT_TRUE(w.plotter.charts().Charts.NewChart("1234A"));
    ASSERT_TRUE(w.plotter.charts().View.ShowingLoRes());
    w.Action("MHiRes")->trigger();
    EXPECT_EQ(centreColour(), MakeRgb(255, 255, 255));
}

// The plain wheel zooms about the cursor, the chart point under it staying
// put; Shift with the wheel pans.
TEST(ChartWindows, WheelZoomsAboutTheCursorAndShiftWheelPans) {
    App();
    ChartWorld w;
    ASSERT_TRUE(w.Install(DefaultFixture()));
    ChartArea area(w.charts);
    area.resize(400, 300);
    ASSERT_TRUE(w.charts.Charts.NewChart("1234A"));
    w.charts.View.ShowHiRes();
    w.charts.View.CentreOnPosition(LatLong{-12 * 3600.0, 50 * 3600.0});
    struct Case {
        Qt::KeyboardModifiers mods;
        int delta;
        int16_t pixelSize;
        bool pans;
    };
    for (Case c : {Case{Qt::NoModifier, 120, 256, false}, Case{Qt::NoModifier, -120, 128, false},
                   Case{Qt::ShiftModifier, 120, 128, true}, Case{Qt::ControlModifier, -120, 64, false}}) {
        QPointF cursor(100, 80);
        ChartPoint under = w.charts.View.ScreenToChart({100, 80});
        LatLong centre = w.charts.View.ViewCentre();
        QWheelEvent wheel(cursor, cursor, QPoint(), QPoint(0, c.delta), Qt::NoButton, c.mods, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&area, &wheel);
        EXPECT_EQ(w.charts.View.PixelSize, c.pixelSize) << c.delta;
        LatLong after = w.charts.View.ViewCentre();
        bool moved = std::abs(after.Lat - centre.Lat) > 1 || std::abs(after.Long - centre.Long) > 1;
        if (c.pans) {
            EXPECT_TRUE(moved);
        } else {
            ChartPoint now = w.charts.View.ScreenToChart({100, 80});
            EXPECT_NEAR(now.x, under.x, 2) << c.delta;
            EXPECT_NEAR(now.y, under.y, 2) << c.delta;
        }
    }
}

}  // namespace
}  // namespace ombra::test
