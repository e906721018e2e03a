// The windows of the navigation objects under Qt's offscreen platform:
// what they show and what their buttons do to the stores.
#include <QApplication>
#include <QTableWidget>

#include "platform/qt/QtServices.h"
#include "tests/navobjects/NavFixture.h"
#include "ui/FrmBoundary.h"
#include "ui/FrmRoute.h"
#include "ui/FrmWayPoint.h"
#include "ui/FrmWayPointDB.h"
#include "tests/support/QtApp.h"

namespace ombra::test {
namespace {

using ombra::test::App;

struct Windows : NavSet {
    void SetUp() override {
        App();
        NavSet::SetUp();
    }
};

TEST_F(Windows, WayPointDialogTakesTypedValuesAndRefusesABadPosition) {
    WaypointDialogRequest req{"Edit Way Point", "Database:", "Marks", nav.waypoints.NewRecord(4)};
    req.Record.Position.Wgs84 = DM(50, 1, -5, 2);
    FrmWayPoint f(nullptr, nav.symbols, w.units, w.dialogs, w.globals.ProductName, req);
    EXPECT_EQ(f.windowTitle(), "Edit Way Point");
    EXPECT_EQ(f.LabDbName->text(), "Marks");
    ASSERT_EQ(f.ListIcons->count(), 37);
    EXPECT_EQ(f.ListIcons->item(36)->text(), "Man Overboard");
    EXPECT_EQ(f.TxtRange->text(), "0.500");
    f.TxtName->setText("Pier head, east");
    f.ListIcons->setCurrentRow(3);
    f.ComboLabel->setCurrentIndex(3);
    f.TxtRange->setText("0,2");
    f.ChkShowRange->setChecked(true);
    // A typed position that is not one keeps the dialog open.
    f.TxtLat->setText("north");
    emit f.TxtLat->textEdited("north");
    f.ComOK->click();
    EXPECT_EQ(f.result(), 0);
    EXPECT_TRUE(Has(w.Messages().back(), "Invalid Latitude and/or Longitude"));
    f.TxtLat->setText("50 10.5 N");
    f.ComOK->click();
    EXPECT_EQ(f.result(), int(QDialog::Accepted));
    EXPECT_EQ(req.Record.Name, "Pier head, east");
    EXPECT_EQ(req.Record.Icon, 3);
    EXPECT_EQ(req.Record.LabelMode, 3);
    EXPECT_FLOAT_EQ(req.Record.AlarmRange, -0.2f);
    EXPECT_DOUBLE_EQ(req.Record.Position.Wgs84.Lat, (50 * 60 + 10.5) * 60);
}

TEST_F(Windows, WaypointListButtonsFollowTheRow) {
    LatLong a = DM(50, 1, -5, 0), b = DM(50, 2, -5, 0);
    nav.waypoints.AddWaypoint(AddBy::Mouse, &a);
    nav.waypoints.AddWaypoint(AddBy::Mouse, &b);
    FrmWayPointDB f(nullptr, nav.waypoints, nav.activation, w.chart);
    ASSERT_EQ(f.PicWaypoints->rowCount(), 2);
    EXPECT_EQ(f.PicWaypoints->item(1, 0)->text(), "002");
    EXPECT_EQ(f.PicWaypoints->horizontalHeaderItem(3)->text(), "Longitude");
    EXPECT_FALSE(f.ComDelete->isEnabled());
    f.PicWaypoints->selectRow(1);
    EXPECT_TRUE(f.ComDelete->isEnabled());
    EXPECT_EQ(f.ComActivate->text(), "&Activate");
    nav.waypoints.ActiveIndex = 2;
    f.Refill();
    EXPECT_EQ(f.ComActivate->text(), "&De-activate");
    f.OptChart->setChecked(true);
    EXPECT_EQ(f.PicWaypoints->item(0, 2)->text(), "50° 00.967 ´N");
    w.dialogs.replies.push_back(mb::Yes);
    f.ComDelete->click();
    EXPECT_EQ(f.PicWaypoints->rowCount(), 1);
}

TEST_F(Windows, RouteWindowSwapsALegOnItsKindCell) {
    w.dialogs.texts.push_back("R001");
    int16_t r = nav.routes.NewRoute();
    for (int i = 0; i < 3; ++i) nav.routes.AddRoutePoint(r, DM(50, 10 * i, -5, 0));
    FrmRoute f(nullptr, nav.routes, nav.activation, w.chart, w.units, r);
    ASSERT_EQ(f.PicLegs->rowCount(), 2);
    EXPECT_EQ(f.PicLegs->item(1, 1)->text(), "RL");
    emit f.PicLegs->cellClicked(1, 1);
    EXPECT_EQ(nav.routes.At(r)->Legs[1].IsGreatCircle, -1);
    EXPECT_EQ(f.PicLegs->item(1, 1)->text(), "GC");
    f.TxtName->setText("Home run");
    f.ComboColour->setCurrentIndex(12);
    f.ChkLegText->setChecked(true);
    f.ComOK->click();
    EXPECT_EQ(nav.routes.At(r)->Name, "Home run");
    EXPECT_EQ(nav.routes.At(r)->Colour, 12);
    EXPECT_TRUE(nav.routes.At(r)->ShowLegText);
}

TEST_F(Windows, BoundaryWindowStoresItsFlags) {
    w.dialogs.texts.push_back("BA001");
    int16_t b = nav.boundaries.NewBoundary();
    for (int i = 0; i < 3; ++i) nav.boundaries.AddBoundaryMark(b, DM(50, i, -5, i % 2));
    FrmBoundary f(nullptr, nav.boundaries, w.chart, b);
    EXPECT_EQ(f.windowTitle(), "Boundary 001");
    EXPECT_EQ(f.PicBoundaryMarks->rowCount(), 3);
    f.ChkFilled->setChecked(true);
    f.OptExit->setChecked(true);
    f.ComboPattern->setCurrentIndex(4);
    f.ComOK->click();
    EXPECT_EQ(nav.boundaries.At(b)->Filled, -1);
    EXPECT_EQ(nav.boundaries.At(b)->AlarmOnExit, 1);
    EXPECT_EQ(nav.boundaries.At(b)->Pattern, 4);
}

}  // namespace
}  // namespace ombra::test
