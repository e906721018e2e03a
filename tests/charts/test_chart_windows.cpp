// The chart windows under Qt's offscreen platform: the chart view paints
// the chart and follows the mouse; the Chart Manager installs and removes;
// Chart Details and Notes show the chart's facts.
#include <gtest/gtest.h>

#include <QApplication>
#include <QMouseEvent>
#include <QWheelEvent>

#include "tests/charts/ChartFixture.h"
#include "ui/ChartArea.h"
#include "ui/FrmChartDetails.h"
#include "ui/FrmChartManager.h"
#include "ui/FrmNotes.h"

namespace ombra::test {
namespace {

QApplication& App() {
    static int argc = 1;
    static char name[] = "test";
    static char* argv[] = {name, nullptr};
    static QApplication* app = new QApplication(argc, argv);  // kept to the end of the process
    return *app;
}

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

}  // namespace
}  // namespace ombra::test
