// The tides in the program's windows, as the navigator reaches them: the
// Tides menu's stream window drawing its arrows over the chart (red at sea,
// none on the land), its two validation boxes and spin buttons, the
// options, installing, and the chart pop-up's stream at a point.
#include <gtest/gtest.h>

#include <QApplication>
#include <QMenu>
#include <QTimer>
#include <cstdlib>
#include <filesystem>

#include "charts/DemoChart.h"
#include "platform/fake/ManualClock.h"
#include "platform/fake/MemorySettings.h"
#include "platform/fake/ScriptedDialogs.h"
#include "platform/qt/QtServices.h"
#include "plotter/Plotter.h"
#include "tests/charts/ChartFixture.h"
#include "tests/platform/tidestream/TideRigs.h"
#include "tests/support/QtApp.h"
#include "tests/support/TestSupport.h"
#include "ui/ChartArea.h"
#include "ui/FrmMain.h"
#include "ui/FrmTideOptions.h"
#include "ui/FrmTideStream.h"
#include "ui/QtShell.h"
#include "ui/TideCommands.h"

namespace ombra::test {
namespace {

// The test chart (sea over 49°50'N-50°10'N, 12°20'W-11°40'W) with a square
// of land in its middle, chart pixels 400-600 across and 300-500 down, and
// a region of a steady stream towards the north-east over all of it.
FixtureChart ChartWithLand() {
    FixtureChart c = DefaultFixture();
    const double n = 50 + 10 / 60.0, s = 49 + 50 / 60.0, w = -12 - 20 / 60.0, e = -12 + 20 / 60.0;
    FixturePlan land{n - (n - s) * 300 / 800, n - (n - s) * 500 / 800, w + (e - w) * 0.4, w + (e - w) * 0.6,
                     400, 300, 600, 500, "Land"};
    land.Colour = 2;
    c.Plans.push_back(land);
    return c;
}

struct TideWindow {
    TempDir dir;
    MemorySettings store;
    ScriptedDialogs dialogs;
    QtDialogs windowDialogs{true};
    ManualClock clock;
    NoEvents events;
    QtShell shell{windowDialogs, true};
    Plotter plotter{{store, dialogs, clock, events, shell}};
    TideWindow() {
        App();
        shell.SetPlotter(&plotter);
        clock.now = DateTime{2026, 11, 25, 9, 30, 0, 0};
        std::filesystem::create_directories(dir / "home/Dat");
        auto r = UniformGrid({"Z0"}, {{0.6f, 0, 0.6f, 0}});
        r.south = 49.8;
        r.north = 50.2;
        r.west = -12.4;
        r.east = -11.6;
        std::string why;
        EXPECT_TRUE(tide::SaveRegion(r, dir / "home/Dat", "Region01", &why)) << why;
        EXPECT_TRUE(plotter.Start("NOSPLASH", dir / "ombra", dir / "home", dir / "none"));
        plotter.magVar().MagneticVariation(LatLong{-12 * 3600.0, 50 * 3600.0});
        EXPECT_TRUE(InstallFixtureChart(plotter.charts(), plotter.charts().Root(), ChartWithLand(), "20240601", &why))
            << why;
        dialogs.asked.clear();
    }
    FrmMain& Main() { return *shell.Main(); }
    ChartArea& Area() { return *Main().findChild<ChartArea*>("PicNavCanvas"); }
    void Settle() {
        for (int i = 0; i < 5; ++i) QApplication::processEvents();
    }
};

// Red pixels of the chart's store inside a screen rectangle.
int RedIn(const QImage& img, int x0, int y0, int x1, int y1) {
    int n = 0;
    for (int y = std::max(0, y0); y < std::min(img.height(), y1); ++y)
        for (int x = std::max(0, x0); x < std::min(img.width(), x1); ++x) n += (img.pixel(x, y) & 0xFFFFFF) == 0xFF0000;
    return n;
}

}  // namespace

TEST(TideWindows, TheStreamWindowFillsArrowsAtSeaAndNoneOnLand) {
    TideWindow w;
    w.plotter.OpenChartNumber("1234A");
    w.plotter.charts().View.CentreOnPosition(LatLong{-12 * 3600.0, 50 * 3600.0});
    w.Settle();
    EXPECT_EQ(RedIn(w.Area().Store(), 0, 0, 10000, 10000), 0);

    w.Main().Action("MTidesView")->trigger();
    FrmTideStream* frm = w.shell.Tides()->Window();
    ASSERT_NE(frm, nullptr);
    EXPECT_TRUE(frm->isVisible());
    EXPECT_EQ(frm->windowTitle(), "Tidal Stream Info");
    EXPECT_EQ(frm->txt_Date->text(), "25/11/2026");
    EXPECT_EQ(frm->txt_Time->text(), "09:30");
    // The spin buttons: a day and an hour either way, across midnight.
    frm->DateSpinUp->click();
    frm->DateSpinUp->click();
    frm->DateSpinDown->click();
    EXPECT_EQ(frm->txt_Date->text(), "26/11/2026");
    frm->txt_Time->setText("23:15");
    frm->TimeSpinUp->click();
    EXPECT_EQ(frm->txt_Time->text(), "00:15");
    frm->TimeSpinDown->click();
    frm->TimeSpinDown->click();
    EXPECT_EQ(frm->txt_Time->text(), "22:15");

    // Texts the calendar and the clock do not have stop at their boxes.
    const struct {
        const char *date, *time, *title, *text;
    } bad[] = {
        {"31/02/2026", "12:00", "Invalid Date", "The prediction date entry is not a recognised date format"},
        {"26/11/2026", "25:00", "Invalid Time", "The prediction time entry is not a recognised time format"},
    };
    for (const auto& b : bad) {
        w.dialogs.asked.clear();
        frm->txt_Date->setText(b.date);
        frm->txt_Time->setText(b.time);
        frm->ComOK->click();
        ASSERT_EQ(w.dialogs.asked.size(), 1u);
        EXPECT_EQ(w.dialogs.asked[0].title, b.title);
        EXPECT_EQ(w.dialogs.asked[0].text, b.text);
        EXPECT_TRUE(frm->isVisible());
    }

    frm->txt_Date->setText("26/11/2026");
    frm->txt_Time->setText("22:15");
    frm->ComOK->click();
    w.Settle();
    EXPECT_EQ(w.shell.Tides()->Window(), nullptr);  // closed on OK
    const TideDisplay& grid = w.plotter.tideDisplay();
    EXPECT_EQ(grid.GridTime(), DateTime(2026, 11, 26, 22, 15, 0, 0).Serial());
    ASSERT_FALSE(grid.Cells().empty());
    const QImage shot = w.Area().Store();
    if (const char* grabs = std::getenv("OMBRA_GRAB_DIR")) shot.save(QString("%1/tide-grid.png").arg(grabs));
    // The land square on screen, less the reach of an arrow from the sea
    // cells round it.
    Display& view = w.plotter.charts().View;
    const ChartPoint nw = view.ChartToScreen({400, 300}), se = view.ChartToScreen({600, 500});
    const int reach = kTideGridPitch / 2 + kTideArrowLength + 2;
    EXPECT_EQ(RedIn(shot, nw.x + reach, nw.y + reach, se.x - reach, se.y - reach), 0);
    EXPECT_GT(RedIn(shot, 0, 0, shot.width(), nw.y), 20 * 20);  // the sea north of it
    for (const TideGridCell& c : grid.Cells()) {
        const ChartPoint at = view.ChartToScreen(c.chartPixel);
        EXPECT_FALSE(at.x > nw.x && at.x < se.x && at.y > nw.y && at.y < se.y) << at.x << "," << at.y;
    }
    // The grid is drawn again at the next redraw, without predicting.
    w.plotter.RequestChartRedraw();
    w.Settle();
    EXPECT_EQ(RedIn(w.Area().Store(), 0, 0, 10000, 10000), RedIn(shot, 0, 0, 10000, 10000));
    // A new zoom drops it.
    view.PixelZoomIn();
    w.Area().update();
    w.plotter.RequestChartRedraw();
    w.Settle();
    EXPECT_TRUE(grid.Cells().empty());
    EXPECT_EQ(RedIn(w.Area().Store(), 0, 0, 10000, 10000), 0);
}

TEST(TideWindows, OptionsPopupAndInstallFromTheMenus) {
    TideWindow w;
    w.plotter.OpenChartNumber("1234A");
    w.Settle();
    // Tides > Options: the box shows the setting, OK stores it.
    QTimer::singleShot(0, [] {
        auto* dlg = qobject_cast<FrmTideOptions*>(QApplication::activeModalWidget());
        ASSERT_NE(dlg, nullptr);
        EXPECT_EQ(dlg->windowTitle(), "Tide Options");
        EXPECT_TRUE(dlg->ChkUseProudman->isChecked());
        EXPECT_EQ(dlg->ChkUseProudman->text(), "Use Proudman data to update tide information");
        dlg->ChkUseProudman->setChecked(false);
        dlg->ComOK->click();
    });
    w.Main().Action("MTidesOptions")->trigger();
    EXPECT_FALSE(w.plotter.tideDisplay().UseProudman());

    // The chart pop-up: the stream at the point right-clicked, now.
    TideCommands* tides = w.shell.Tides();
    tides->NoteClick(true, LatLong{-12.2 * 3600, 50.1 * 3600});
    QMenu popup;
    tides->AddPopupEntries(popup);
    QAction* at = popup.findChild<QAction*>("MTidalStream");
    ASSERT_NE(at, nullptr);
    ASSERT_TRUE(at->isEnabled());
    at->trigger();
    ASSERT_EQ(w.dialogs.asked.size(), 1u);
    EXPECT_EQ(w.dialogs.asked[0].title, "Tidal Stream");
    EXPECT_EQ(w.dialogs.asked[0].text.rfind("The Tidal Stream at this point now is ", 0), 0u);
    EXPECT_NE(w.dialogs.asked[0].text.find(" Kts at 45 Deg T"), std::string::npos) << w.dialogs.asked[0].text;

    // Tides > Install Tidal Data from a folder of region pairs.
    TempDir disc;
    std::string why;
    ASSERT_TRUE(tide::SaveRegion(UniformGrid({"M2"}, {{1, 0, 1, 90}}), disc.path(), "Region02", &why)) << why;
    w.dialogs.asked.clear();
    w.dialogs.texts = {disc.path()};
    w.Main().Action("MTidesInstall")->trigger();
    ASSERT_FALSE(w.dialogs.asked.empty());
    EXPECT_EQ(w.dialogs.asked.back().text, "Proudman Region(s) Installed");
    EXPECT_EQ(w.plotter.tides().TideRegionCount(), 2);
}

TEST(TideWindows, NoRegionNoStreamWindow) {
    TideWindow w;
    std::filesystem::remove(w.dir / "home/Dat/Region01.Hdr");
    w.plotter.tides().ListTideRegions();
    w.Main().Action("MTidesView")->trigger();
    EXPECT_EQ(w.shell.Tides()->Window(), nullptr);
    ASSERT_EQ(w.dialogs.asked.size(), 1u);
    EXPECT_EQ(w.dialogs.asked[0].text, "No Tidal Stream Data");
}

// The demo: the demo chart and the streams the demo set-up installs round
// its island. Arrows fill the water round the island, every one of them at
// a position the island's own geography calls sea, and none on the island.
TEST(TideWindows, TheDemoStreamsRunRoundTheIslandAndNotOverIt) {
    TideWindow w;
    RunResult run = ombra::test::Run({CliPath(), "tide", "make-demo", "--out", w.dir / "home/Dat/Region01"});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    run = ombra::test::Run({CliPath(), "chart", "make-demo", "--root", w.plotter.charts().Root()});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    w.plotter.tides().ListTideRegions();
    ASSERT_EQ(w.plotter.tides().TideRegionCount(), 1);
    w.plotter.OpenChartNumber(DemoChart::Number);
    Display& view = w.plotter.charts().View;
    view.CentreOnPosition(DemoChart::IslandCentre());
    w.Settle();

    w.Main().Action("MTidesView")->trigger();
    FrmTideStream* frm = w.shell.Tides()->Window();
    ASSERT_NE(frm, nullptr);
    frm->txt_Date->setText("23/11/2026");
    frm->txt_Time->setText("10:00");
    frm->ComOK->click();
    w.Settle();

    const std::vector<TideGridCell>& cells = w.plotter.tideDisplay().Cells();
    ASSERT_GT(cells.size(), 20u);
    for (const TideGridCell& c : cells) {
        EXPECT_GE(DemoChart::DepthAt(c.pos), 0.0) << c.pos.Lat / 3600 << "," << c.pos.Long / 3600;
        EXPECT_GT(c.Drift, 0.0f);
    }
    const QImage shot = w.Area().Store();
    if (const char* grabs = std::getenv("OMBRA_GRAB_DIR")) shot.save(QString("%1/tide-demo.png").arg(grabs));
    EXPECT_GT(RedIn(shot, 0, 0, shot.width(), shot.height()), 20 * 20);
    // The island is about 2.5 miles across: its middle, a few hundred
    // pixels of land at this scale, carries no arrow.
    const NavPoint centre = view.LocatePosition(DemoChart::IslandCentre());
    ASSERT_TRUE(centre.In(0));
    const ChartPoint at = view.ChartToScreen(centre.Pixel[0]);
    EXPECT_EQ(RedIn(shot, at.x - 60, at.y - 60, at.x + 60, at.y + 60), 0);
}

}  // namespace ombra::test
