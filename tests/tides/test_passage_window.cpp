// The passage tab as a navigator reaches it: the route list's Properties
// opens the route window over a whole plotter with a chart and a tide
// region; the tab plans the route, lists the legs and draws the track;
// best departure lists 24 rows and a pick among them plans that departure.
#include <gtest/gtest.h>

#include <QApplication>
#include <QMouseEvent>
#include <QTimer>
#include <filesystem>
#include <functional>

#include "core/Format.h"
#include "instruments/Vessel.h"
#include "platform/fake/ManualClock.h"
#include "platform/fake/MemorySettings.h"
#include "platform/fake/RecordingCanvas.h"
#include "platform/fake/ScriptedDialogs.h"
#include "platform/qt/QtServices.h"
#include "plotter/Plotter.h"
#include "tests/charts/ChartFixture.h"
#include "tests/support/QtApp.h"
#include "tests/tides/PassageRig.h"
#include "ui/FrmMain.h"
#include "ui/FrmRoute.h"
#include "ui/FrmRoutesDB.h"
#include "ui/QtShell.h"

namespace ombra::test {
namespace {

LatLong DM(int latDeg, double latMin, int lonDeg, double lonMin) {
    const double lat = std::abs(latDeg) + latMin / 60.0, lon = std::abs(lonDeg) + lonMin / 60.0;
    return LatLong{(lonDeg < 0 ? -lon : lon) * 3600.0, (latDeg < 0 ? -lat : lat) * 3600.0};
}

// Runs `act` on the route window once it is the modal dialog up.
void WhenRouteWindowUp(std::function<void(FrmRoute*)> act, int tries = 3000) {
    QTimer::singleShot(10, [act, tries] {
        if (auto* f = qobject_cast<FrmRoute*>(QApplication::activeModalWidget())) return act(f);
        if (tries > 0) WhenRouteWindowUp(act, tries - 1);
    });
}

struct Desk {
    TempDir dir;
    MemorySettings store;
    ScriptedDialogs dialogs;
    QtDialogs windowDialogs{true};
    ManualClock clock;
    NoEvents events;
    QtShell shell{windowDialogs, true};
    Plotter plotter{{store, dialogs, clock, events, shell}};

    Desk() {
        App();
        shell.SetPlotter(&plotter);
        store.Write("Vestrane", "Tarnel", "AutoStartupGPS", "1");
    }
    bool Start() {
        clock.now = DateTime{2026, 6, 1, 9, 0, 0};
        if (!plotter.Start("NOSPLASH", dir / "ombra", dir / "home", dir / "none")) return false;
        shell.Main()->MainTimer.stop();
        std::string why;
        if (!InstallFixtureChart(plotter.charts(), plotter.charts().Root(), DefaultFixture(), "20240601", &why))
            return false;
        plotter.OpenChartNumber("1234A");
        plotter.charts().View.CentreOnPosition(DM(50, 0, -12, 0));
        // A semidiurnal stream over the chart, setting north-east.
        tide::RegionData region = UniformGrid({"M2"}, {Towards(45, 0.9, 100)});
        region.south = 49.5, region.north = 50.5, region.west = -12.5, region.east = -11.5;
        std::filesystem::create_directories(plotter.tides().TideDataPath());
        if (!tide::SaveRegion(region, plotter.tides().TideDataPath(), "Region01", &why)) return false;
        plotter.tides().ListTideRegions();
        dialogs.texts = {"Passages", "Out and back"};
        NavObjects& nav = plotter.nav();
        nav.routes.NewRouteDB();
        const int16_t r = nav.routes.NewRoute();
        for (LatLong p : {DM(49, 52, -12, 15), DM(50, 0, -12, 0), DM(50, 8, -11, 45)}) nav.routes.AddRoutePoint(r, p);
        QApplication::processEvents();
        dialogs.asked.clear();
        return plotter.tides().TideRegionCount() == 1 && nav.routes.Count() == 1;
    }
    // The route window opened from the route list, `act` run while it is up.
    bool InRouteWindow(std::function<void(FrmRoute*)> act) {
        shell.Main()->Action("MRoutesView")->trigger();
        auto* list = shell.Main()->findChild<FrmRoutesDB*>("FrmRoutesDB");
        if (!list) return false;
        list->PicRoutes->selectRow(0);
        bool up = false;
        WhenRouteWindowUp([&](FrmRoute* f) {
            up = true;
            act(f);
            f->ComOK->click();
        });
        list->ComProperties->click();
        list->close();
        return up;
    }
    // The passage track's polylines on the chart (more than a leg's two ends).
    size_t TrackLines() {
        RecordingCanvas c(plotter.charts().View.View().Width, plotter.charts().View.View().Height);
        plotter.charts().View.RedrawNavCanvas(c);
        size_t n = 0;
        for (const auto& call : c.calls) n += call.op == "Polyline" && call.points.size() > 2;
        return n;
    }
};

void ReleaseOnRow(QTableWidget* t, int row) {
    const QRect r = t->visualRect(t->model()->index(row, 0));
    QMouseEvent up(QEvent::MouseButtonRelease, QPointF(r.center()), t->viewport()->mapToGlobal(QPointF(r.center())),
                   Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(t->viewport(), &up);
}

TEST(PassageWindow, PlansListsAndPicksTheBestDeparture) {
    Desk d;
    ASSERT_TRUE(d.Start());
    const std::string shots = ::testing::TempDir();
    bool done = d.InRouteWindow([&](FrmRoute* f) {
        f->SSTab1->setCurrentWidget(f->PassageTab);
        f->resize(1000, 560);
        f->TxtSetSpeed->clear();
        f->OptCalcBasis[1]->setChecked(true);
        f->TxtStartDate->setText("01/06/2026");
        f->TxtStartTime->clear();
        // The checks come first, their texts crossed on purpose.
        f->CommCalcRoute->click();
        f->TxtStartTime->setText("10:00");
        f->CommCalcRoute->click();
        EXPECT_EQ(d.dialogs.asked.size(), 2u);
        for (size_t i = 0; i < d.dialogs.asked.size() && i < 2; ++i)
            EXPECT_EQ(d.dialogs.asked[i].text, i == 0 ? "Must enter a date" : "Must enter a Speed");

        f->TxtSetSpeed->setText("5");
        f->CommCalcRoute->click();
        ASSERT_EQ(d.plotter.passage().PassageState(), 1);
        ASSERT_EQ(f->PicPassage->rowCount(), 2);
        EXPECT_EQ(f->PicPassage->horizontalHeaderItem(1)->text(), "CTS (°T)");
        EXPECT_EQ(f->PicPassage->item(0, 0)->text(), "1 - 2");
        EXPECT_NE(f->TxtArrDate->text(), "N/A");
        EXPECT_FALSE(f->TxtTotTime->text().isEmpty());
        EXPECT_EQ(d.TrackLines(), 2u) << "each leg's track on the chart";
        f->grab().save(QString::fromStdString(shots + "/passage-plan.png"));
        QApplication::processEvents();
        d.shell.Main()->ChartWidget()->grab().save(QString::fromStdString(shots + "/passage-chart.png"));

        f->ChkBestDepTime->setChecked(true);
        f->CommCalcRoute->click();
        ASSERT_EQ(d.plotter.passage().PassageState(), 2);
        ASSERT_EQ(f->PicPassage->rowCount(), 24);
        EXPECT_EQ(f->PicPassage->item(12, 0)->text(), "01/06/2026  10:00");
        EXPECT_EQ(d.TrackLines(), 0u) << "no track while the table stands";
        const int best = d.plotter.passage().BestRow;
        if (best > 0) {
            EXPECT_EQ(f->PicPassage->currentRow(), best - 1);
        }
        f->grab().save(QString::fromStdString(shots + "/passage-best.png"));

        ReleaseOnRow(f->PicPassage, 4);
        EXPECT_EQ(d.plotter.passage().PassageState(), 1);
        EXPECT_FALSE(f->ChkBestDepTime->isChecked());
        EXPECT_TRUE(f->OptCalcBasis[1]->isChecked());
        EXPECT_EQ(f->TxtStartTime->text(), "02:00");
        EXPECT_EQ(f->PicPassage->rowCount(), 2);
        EXPECT_EQ(f->PicPassage->item(0, 2)->text().left(10), "01/06/2026");
        EXPECT_EQ(d.plotter.passage().BestRow, 0);
        f->grab().save(QString::fromStdString(shots + "/passage-picked.png"));
    });
    ASSERT_TRUE(done);
    // Leaving the route window drops the plan and its track.
    EXPECT_EQ(d.plotter.passage().PassageState(), 0);
    EXPECT_EQ(d.TrackLines(), 0u);
}

TEST(PassageWindow, FromTheVesselAndTheConsoleSteerRow) {
    Desk d;
    ASSERT_TRUE(d.Start());
    VesselModule& vessel = d.plotter.instruments().vessel;
    vessel.SetVesselMode(kModeDR);
    vessel.vessel.Pos = DM(49, 56, -12, 12);
    bool done = d.InRouteWindow([&](FrmRoute* f) {
        // The second point made the destination, as the navigator does it.
        f->PicRoutePts->selectRow(1);
        f->ComActivate->click();
        ASSERT_EQ(d.plotter.nav().routes.ActivePoint, 2);
        f->SSTab1->setCurrentWidget(f->PassageTab);
        f->TxtSetSpeed->setText("6");
        f->ChkUseCurrVesPos->setChecked(true);
        f->CommCalcRoute->click();
        ASSERT_EQ(f->PicPassage->rowCount(), 2);
        EXPECT_EQ(f->PicPassage->item(0, 0)->text(), "Vessel - 2");
        EXPECT_EQ(f->PicPassage->item(1, 0)->text(), "2 - 3");
    });
    ASSERT_TRUE(done);
    // The console steers the leg in whole degrees: the bearing itself with
    // the stream model off (and no stream set by hand), another course
    // once the model's stream across the leg is allowed for.
    vessel.vessel.SpeedWater = 6.0;
    d.plotter.tideDisplay().SetUseProudman(false);
    vessel.UpdateWaypointConsole();
    const ActiveLeg& leg = d.plotter.instruments().leg;
    ASSERT_EQ(leg.Kind, 2);
    const double whole = std::fmod(std::nearbyint(leg.BearingTo), 360.0);
    const std::string slack = Format(whole, "000.0") + " °T";
    EXPECT_EQ(d.plotter.instruments().console.LabWP[11], slack);
    d.plotter.tideDisplay().SetUseProudman(true);
    vessel.UpdateWaypointConsole();
    float drift = 0, set = 0;
    d.plotter.tides().TideTime = d.clock.Now().Serial();
    ASSERT_TRUE(d.plotter.tides().GetTide(vessel.vessel.Pos, drift, set));
    ASSERT_GT(drift * std::fabs(std::sin((set - leg.BearingTo) * M_PI / 180)), 0.2) << set << " " << drift;
    EXPECT_NE(d.plotter.instruments().console.LabWP[11], slack);
}

}  // namespace
}  // namespace ombra::test
