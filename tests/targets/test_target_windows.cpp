// The radar and tracked targets in the program's windows: their symbols on
// the rendered chart where the table puts them, the ARPA settings dialog
// from the Vessel > GPS menu, and centring on a target from the Vessel menu.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QListWidget>
#include <QTimer>
#include <filesystem>
#include <functional>

#include "navmath/RLGC.h"
#include "tests/charts/ChartFixture.h"
#include "tests/targets/RadarFeed.h"
#include "tests/ui/UiFixture.h"
#include "ui/ChartArea.h"
#include "ui/FrmCommARPA.h"
#include "ui/FrmList.h"
#include "ui/FrmMain.h"

using namespace ombra;
using test::P;

namespace {

struct WithWindows {
    QtDialogs shellDialogs{true};
    QtShell shell{shellDialogs, true};
    WithWindows() { test::App(); }
};

struct Bridge : test::RadarSailing<WithWindows> {
    Bridge() { shell.SetPlotter(&plotter); }
    void At(const LatLong& p) {
        Sailing::At(p);
        QApplication::processEvents();
    }
    // A chart over 49°54'N..50°06'N, 5°12'W..4°48'W, opened and centred on P(0).
    void Chart() {
        test::FixtureChart chart;
        chart.Plans.push_back({50.1, 49.9, -5.2, -4.8, 0, 0, chart.Width, chart.Height, "Plan", "25000"});
        std::string why;
        ASSERT_TRUE(test::InstallFixtureChart(plotter.charts(), plotter.charts().Root(), chart, "20240601", &why)) << why;
        ASSERT_TRUE(plotter.charts().Charts.NewChart("1234A"));
        At(P(0));
        ASSERT_TRUE(plotter.charts().View.CentreOnPosition(P(0)));
    }
    ChartPoint Screen(const LatLong& p) {
        NavPoint np = plotter.charts().View.LocatePosition(p);
        const int plan = np.FirstPlanShown();
        return plan < 0 ? ChartPoint{-1000, -1000} : plotter.charts().View.ChartToScreen(np.Pixel[size_t(plan)]);
    }
    // Pixels of `colour` within `radius` of a screen point, on a fresh redraw.
    int Pixels(ChartPoint at, Rgb colour, int radius) {
        auto* area = dynamic_cast<ChartArea*>(shell.Main()->ChartWidget());
        area->Redraw();
        const QImage& img = area->Store();
        int n = 0;
        for (int y = at.y - radius; y <= at.y + radius; ++y)
            for (int x = at.x - radius; x <= at.x + radius; ++x)
                n += img.valid(x, y) && (img.pixel(x, y) & 0xFFFFFF) == colour;
        return n;
    }
};

// Acts on the next modal window of type W once it is up.
template <class W>
void WhenUp(std::function<void(W*)> act, int tries = 3000) {
    QTimer::singleShot(10, [act, tries] {
        if (W* w = qobject_cast<W*>(QApplication::activeModalWidget())) return act(w);
        if (tries > 0) WhenUp<W>(act, tries - 1);
    });
}

}  // namespace

// The symbols lie where range and bearing from own ship put them (a run
// along the rhumb line, independent of the placement's geodesic), and
// nowhere else; a freed slot is drawn no more.
TEST(TargetWindows, ArpaAndTrackedSymbolsAtTheirPositions) {
    Bridge b;
    ASSERT_TRUE(b.Start());
    b.Chart();
    const LatLong own = b.plotter.instruments().vessel.vessel.Pos;
    struct Target { const char* number; double range, bearing; } targets[] = {{"01", 1.5, 60.0}, {"02", 2.5, 200.0}};
    for (const Target& t : targets) {
        char range[16], bearing[16];
        std::snprintf(range, sizeof range, "%.2f", t.range);
        std::snprintf(bearing, sizeof bearing, "%05.1f", t.bearing);
        b.Radar(Bridge::Ttm(t.number, range, "N", "", "T", bearing));
    }
    b.At(P(0));
    for (const Target& t : targets) {
        const ChartPoint at = b.Screen(DeadReckon(own, t.bearing, t.range));
        EXPECT_GT(b.Pixels(at, Arpa::kColour, 8), 20) << t.number;
    }
    EXPECT_EQ(b.Pixels(b.Screen(DeadReckon(own, 300.0, 2.0)), Arpa::kColour, 8), 0) << "nothing where no target is";
    b.Radar(Bridge::Ttm("02", "2.5", "N", "", "L"));
    b.At(P(0));
    EXPECT_EQ(b.Pixels(b.Screen(DeadReckon(own, 200.0, 2.5)), Arpa::kColour, 8), 0) << "lost";

    // A tracked vessel from the service's file.
    const LatLong tracked = P(-2, 1.5);
    namespace fs = std::filesystem;
    const fs::path path(b.plotter.tracked().FilePath());
    fs::create_directories(path.parent_path());
    char text[160];
    std::snprintf(text, sizeof text, "VESSEL ID: PILOT\nLATITUDE: %.6f\nLONGITUDE: %.6f\nHEADING: 90\nDATE/TIME: 23/11/2026 10:00\n",
                  tracked.Lat / 3600.0, tracked.Long / 3600.0);
    test::WriteFile(path.string(), text);
    b.At(P(0));
    EXPECT_GT(b.Pixels(b.Screen(tracked), Tracked::kColour, 8), 20);

    // "Targets Found..." under a symbol lists that target alone, nothing
    // where none is drawn, every one when asked for all; a pick becomes the
    // console's target and the chart is centred on it.
    TargetFinder& finder = b.plotter.targetFinder();
    const LatLong radar = DeadReckon(own, 60.0, 1.5);
    const struct {
        LatLong at;
        const char* kind;
        int index;
    } under[] = {{radar, "ARPA", 0}, {tracked, "Tracked", 0}};
    for (const auto& u : under) {
        const std::vector<FoundTarget> found = finder.FindTargets(b.Screen(u.at), false);
        ASSERT_EQ(found.size(), 1u) << u.kind;
        EXPECT_EQ(found[0].kind, u.kind);
        EXPECT_EQ(found[0].index, u.index);
    }
    EXPECT_TRUE(finder.FindTargets(b.Screen(DeadReckon(own, 300.0, 2.0)), false).empty());
    EXPECT_EQ(finder.FindTargets({0, 0}, true).size(), 2u);
    finder.SelectTarget(finder.FindTargets(b.Screen(radar), false).at(0));
    EXPECT_EQ(b.plotter.arpa().ActiveTarget, 0);
    const LatLong centre = b.plotter.charts().View.ViewCentre();
    EXPECT_NEAR(centre.Lat, radar.Lat, 10.0);
    EXPECT_NEAR(centre.Long, radar.Long, 15.0);
}

// Vessel > GPS > ARPA Settings: the dialog shows the settings and OK keeps
// what was typed; the next connection reads the new port.
TEST(TargetWindows, ArpaSettingsFromTheGpsMenu) {
    Bridge b;
    ASSERT_TRUE(b.Start());
    QAction* settings = b.shell.Main()->Action("MARPASettings");
    ASSERT_NE(settings, nullptr);
    bool up = false;
    WhenUp<FrmCommARPA>([&up](FrmCommARPA* d) {
        up = true;
        EXPECT_EQ(d->windowTitle(), " ARPA Settings");
        EXPECT_TRUE(d->ChkARPAEnable->isChecked());
        EXPECT_EQ(d->TxtARPAPort->text(), "2");
        d->ChkARPANames->setChecked(true);
        d->TxtARPADelay->setText("45");
        d->TxtARPAPort->setText("3");
        d->TxtARPABaudRate->setCurrentText("115200");  // out of range: the default
        d->ComOK->click();
    });
    settings->trigger();
    ASSERT_TRUE(up);
    const Arpa& arpa = b.plotter.arpa();
    EXPECT_TRUE(arpa.Settings.Labels);
    EXPECT_EQ(arpa.Settings.Delay, 45);
    EXPECT_EQ(b.plotter.instruments().settings.ARPAPort, 3);
    EXPECT_EQ(b.plotter.registry().GetSetting(Key::ARPABaudRate), "4800");
    EXPECT_EQ(b.plotter.registry().GetSetting(Key::ARPALabels), "1");
}

// Vessel > Centre on ARPA Target / Centre on Tracked Target: the list of
// targets, and the one chosen fills the console and is centred.
TEST(TargetWindows, CentreOnATargetFromTheVesselMenu) {
    Bridge b;
    ASSERT_TRUE(b.Start());
    b.Chart();
    b.Radar(Bridge::Ttm("05", "3.0", "N", "TUG", "T", "090.0"));
    b.Radar(Bridge::Ttm("09", "1.0", "N", "", "T", "180.0"));
    b.At(P(0));
    std::vector<std::string> rows;
    WhenUp<FrmList>([&rows](FrmList* f) {
        for (int i = 0; i < f->LstItems->count(); ++i) rows.push_back(f->LstItems->item(i)->text().toStdString());
        f->LstItems->setCurrentRow(1);
        f->ComAction->click();
    });
    b.shell.Main()->Action("MCentreArpaTarget")->trigger();
    EXPECT_EQ(rows, (std::vector<std::string>{"TUG - 0004", "T#09 - 0008"}));
    const Console& con = b.plotter.instruments().console;
    EXPECT_EQ(con.LabARPA[0], "T#09");
    EXPECT_NE(con.LabARPA[2].find("1.00"), std::string::npos) << con.LabARPA[2];
    const LatLong target = b.plotter.arpa().Targets[8].Point.Wgs84;
    const LatLong centre = b.plotter.charts().View.ViewCentre();
    EXPECT_NEAR(centre.Lat, target.Lat, 5.0);
    EXPECT_NEAR(centre.Long, target.Long, 5.0);

    namespace fs = std::filesystem;
    const fs::path path(b.plotter.tracked().FilePath());
    fs::create_directories(path.parent_path());
    test::WriteFile(path.string(), "VESSEL ID: PILOT\nLATITUDE: 50.05\nLONGITUDE: -4.9\nSPEED: 4\nHEADING: 10\n");
    b.At(P(0));
    rows.clear();
    WhenUp<FrmList>([&rows](FrmList* f) {
        for (int i = 0; i < f->LstItems->count(); ++i) rows.push_back(f->LstItems->item(i)->text().toStdString());
        f->LstItems->setCurrentRow(1);
        f->ComAction->click();
    });
    b.shell.Main()->Action("MCentreTrackedTarget")->trigger();
    EXPECT_EQ(rows, (std::vector<std::string>{"Default Vessel", "PILOT - 0"}));
    EXPECT_EQ(con.LabTarget[0], "PILOT");
    EXPECT_NEAR(b.plotter.charts().View.ViewCentre().Lat, 50.05 * 3600.0, 5.0);
}
