// The navigation objects as a navigator reaches them: a whole plotter
// behind its main window, a chart open, the vessel dead-reckoning off the
// chart's middle, and the menus, lists, property windows and the chart's
// pop-up driven as a person would drive them. Questions of the plotter are
// scripted and recorded; the windows' own modal dialogs are answered by
// the test once they are up.
#include <gtest/gtest.h>

#include <QApplication>
#include <QFileDialog>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QTimer>
#include <functional>

#include "core/GenFuncs.h"
#include "core/Paths.h"
#include "instruments/Vessel.h"
#include "platform/comms/ScriptedComms.h"
#include "platform/fake/ManualClock.h"
#include "platform/fake/MemorySettings.h"
#include "platform/fake/ScriptedDialogs.h"
#include "platform/qt/QtServices.h"
#include "plotter/Plotter.h"
#include "tests/charts/ChartFixture.h"
#include "tests/navobjects/NavFixture.h"
#include "ui/FrmBoundary.h"
#include "ui/FrmComm.h"
#include "ui/FrmMain.h"
#include "ui/FrmRoute.h"
#include "ui/FrmRoutesDB.h"
#include "ui/FrmWayPoint.h"
#include "ui/FrmWayPointDB.h"
#include "ui/QtShell.h"
#include "tests/support/QtApp.h"

namespace ombra::test {
namespace {

using ombra::test::App;

// Bumped as each test's plotter goes, so that a wait left over from one
// never acts on the windows of the next.
int generation = 0;

// Runs `act` on the window of type W once it is the active modal dialog
// (or, for a menu, the open pop-up); gives up after about thirty seconds,
// long enough for a machine loaded by a parallel build.
template <class W>
void WhenUp(std::function<void(W*)> act, int tries = 3000, int gen = -1) {
    if (gen < 0) gen = generation;
    QTimer::singleShot(10, [act, tries, gen] {
        if (gen != generation) return;
        QWidget* up = std::is_base_of_v<QMenu, W> ? QApplication::activePopupWidget() : QApplication::activeModalWidget();
        if (W* w = qobject_cast<W*>(up)) {
            act(w);
            return;
        }
        if (tries > 0) WhenUp<W>(act, tries - 1, gen);
    });
}

const char* kAutopilotQuestion =
    "Autopilot output is enabled.\nActivating a waypoint may cause a significant course change.\n"
    "Are you sure you wish to continue.";

// A plotter on the default test chart (49°50'N-50°10'N, 12°20'W-11°40'W)
// with a waypoint database "Marks" of two waypoints, a route database
// "Passages" with one route of three points and a boundary database
// "Areas" with one boundary of three marks.
struct Navigator {
    TempDir dir;
    MemorySettings store;
    ScriptedDialogs dialogs;
    QtDialogs windowDialogs{true};
    ManualClock clock;
    NoEvents events;
    ScriptedComms comms;
    QtShell shell{windowDialogs, true};
    Plotter plotter{{store, dialogs, clock, events, shell, &comms}};
    NavObjects& nav = plotter.nav();
    const LatLong vesselAt = DM(49, 57, -12, 5);

    Navigator() {
        App();
        shell.SetPlotter(&plotter);
        store.Write("Vestrane", "Tarnel", "GPSPort", "1");
    }
    ~Navigator() { ++generation; }
    // Started with `cmd`, the chart open and the databases made; false on
    // any failure of the set-up.
    bool Start(bool vessel = true) {
        if (!plotter.Start("NOSPLASH", dir / "ombra", dir / "home", dir / "none")) return false;
        // The tick is the test's to give: none runs behind its back.
        Main().MainTimer.stop();
        std::string why;
        if (!InstallFixtureChart(plotter.charts(), plotter.charts().Root(), DefaultFixture(), "20240601", &why))
            return false;
        plotter.OpenChartNumber("1234A");
        if (!plotter.charts().State.IsOpen()) return false;
        plotter.charts().View.CentreOnPosition(DM(50, 0, -12, 0));
        QApplication::processEvents();
        dialogs.texts = {"Marks", "Passages", "Home run", "Areas", "Shoal"};
        nav.waypoints.NewWaypointDB();
        LatLong a = DM(50, 5, -12, 10), b = DM(49, 55, -11, 50);
        nav.waypoints.AddWaypoint(AddBy::Mouse, &a);
        nav.waypoints.AddWaypoint(AddBy::Mouse, &b);
        nav.routes.NewRouteDB();
        int16_t r = nav.routes.NewRoute();
        for (LatLong p : {DM(49, 55, -12, 15), DM(50, 0, -12, 0), DM(50, 5, -11, 45)}) nav.routes.AddRoutePoint(r, p);
        nav.boundaries.NewBoundaryDB();
        int16_t bd = nav.boundaries.NewBoundary();
        for (LatLong p : {DM(50, 1, -12, 1), DM(50, 1, -11, 59), DM(49, 59, -12, 0)}) nav.boundaries.AddBoundaryMark(bd, p);
        nav.boundaries.EndNewBoundary(bd);
        if (vessel) {
            plotter.instruments().vessel.SetVesselMode(kModeDR);
            plotter.instruments().vessel.vessel.Pos = vesselAt;
        }
        dialogs.asked.clear();
        return nav.waypoints.Count() == 2 && nav.routes.Count() == 1 && nav.boundaries.Count() == 1;
    }
    FrmMain& Main() { return *shell.Main(); }
    void Menu(const char* control) {
        QAction* a = Main().Action(control);
        ASSERT_NE(a, nullptr) << control;
        a->trigger();
    }
    template <class W>
    W* Window(const char* name) {
        return Main().findChild<W*>(name);
    }
    const ActiveLeg& Leg() { return plotter.instruments().leg; }
    // The message boxes asked since the set-up, word for word.
    std::vector<std::string> Asked() const {
        std::vector<std::string> out;
        for (const auto& a : dialogs.asked)
            if (a.kind == "MsgBox") out.push_back(a.text);
        return out;
    }
    // A right click on the chart at a position, and `command` of its pop-up.
    void PopupAt(const LatLong& pos, const QString& command) {
        NavPoint q = plotter.charts().View.LocatePosition(pos);
        int plan = q.FirstPlanShown();
        ASSERT_GE(plan, 0);
        ChartPoint s = plotter.charts().View.ChartToScreen(q.Pixel[size_t(plan)]);
        QWidget* chart = Main().ChartWidget();
        ASSERT_NE(chart, nullptr);
        bool found = false;
        WhenUp<QMenu>([&found, command](QMenu* m) {
            for (QAction* a : m->actions())
                if (a->text() == command) {
                    found = true;
                    // Chosen as a person chooses it, so that the menu closes.
                    m->setActiveAction(a);
                    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
                    QApplication::sendEvent(m, &enter);
                    return;
                }
            m->close();
        });
        QMouseEvent e(QEvent::MouseButtonPress, QPointF(s.x, s.y), chart->mapToGlobal(QPointF(s.x, s.y)),
                      Qt::RightButton, Qt::RightButton, Qt::NoModifier);
        QApplication::sendEvent(chart, &e);
        EXPECT_TRUE(found) << "no pop-up entry " << command.toStdString();
    }
};

// The route window of route 1, opened from the route list as a navigator
// opens it, with `act` run on it while it is up.
void InRouteWindow(Navigator& n, std::function<void(FrmRoute*)> act) {
    n.Menu("MRoutesView");
    auto* f = n.Window<FrmRoutesDB>("FrmRoutesDB");
    ASSERT_NE(f, nullptr);
    f->PicRoutes->selectRow(0);
    bool up = false;
    WhenUp<FrmRoute>([act, &up](FrmRoute* r) {
        up = true;
        act(r);
        r->ComOK->click();
    });
    f->ComProperties->click();
    f->close();
    EXPECT_TRUE(up);
}

// ---- Activation with the autopilot output on -----------------------------

struct ActivationPath {
    const char* name;
    int16_t kind;  // what the leg becomes: 1 waypoint, 2 route point
    void (*activate)(Navigator&);
};

const ActivationPath kActivationPaths[] = {
    {"waypoint list", 1,
     [](Navigator& n) {
         n.Menu("MWayPtsView");
         auto* f = n.Window<FrmWayPointDB>("FrmWayPointDB");
         ASSERT_NE(f, nullptr);
         f->PicWaypoints->selectRow(1);
         f->ComActivate->click();
         f->close();
     }},
    {"route list", 2,
     [](Navigator& n) {
         n.Menu("MRoutesView");
         auto* f = n.Window<FrmRoutesDB>("FrmRoutesDB");
         ASSERT_NE(f, nullptr);
         f->PicRoutes->selectRow(0);
         f->ComActivate->click();
         f->close();
     }},
    {"route window, second point", 2,
     [](Navigator& n) {
         InRouteWindow(n, [](FrmRoute* r) {
             r->PicRoutePts->selectRow(1);
             r->ComActivate->click();
         });
     }},
    {"chart pop-up on a waypoint", 1, [](Navigator& n) { n.PopupAt(DM(50, 5, -12, 10), "&Activate"); }},
    {"chart pop-up on a route point", 2, [](Navigator& n) { n.PopupAt(DM(50, 0, -12, 0), "&Activate"); }},
    {"command line", 2,
     [](Navigator& n) {
         n.nav.routes.SaveDB();
         WhenUp<FrmRoute>([](FrmRoute* r) { r->ComOK->click(); });  // shown once the route is active
         n.plotter.SelectCommandRoute("HOME RUN");
         n.plotter.ActivateCommandRoute("HOME RUN");
     }},
};

// With the output on, No leaves nothing active and Yes activates; with it
// off (reply 0) nothing is asked.
TEST(Navigator, EveryActivationAsksFirstWhileTheAutopilotOutputIsOn) {
    for (const ActivationPath& path : kActivationPaths) {
        for (int reply : {mb::No, mb::Yes, 0}) {
            SCOPED_TRACE(std::string(path.name) + (reply == mb::Yes ? ", Yes" : reply ? ", No" : ", output off"));
            Navigator n;
            ASSERT_TRUE(n.Start());
            n.plotter.instruments().settings.AutopilotActive = reply != 0;
            n.dialogs.replies = {reply ? reply : mb::No};
            path.activate(n);
            std::vector<std::string> asked = n.Asked();
            ASSERT_EQ(asked.size(), reply ? 1u : 0u);
            if (reply) {
                EXPECT_EQ(asked[0], kAutopilotQuestion);
            }
            if (reply) {
                EXPECT_EQ(n.dialogs.asked.back().style, mb::YesNo | mb::Question);
            }
            bool on = reply != mb::No;
            EXPECT_EQ(n.Leg().Kind, on ? path.kind : 0);
            EXPECT_EQ(n.nav.waypoints.ActiveIndex != 0, on && path.kind == 1);
            EXPECT_EQ(n.nav.routes.ActiveRoute != 0, on && path.kind == 2);
        }
    }
}

// Declined while another destination is active: the old one stays.
TEST(Navigator, ADeclinedActivationKeepsTheLegThatWasActive) {
    Navigator n;
    ASSERT_TRUE(n.Start());
    ASSERT_TRUE(n.nav.activation.ActivateRoute(1, 2));
    n.plotter.instruments().settings.AutopilotActive = true;
    n.dialogs.replies = {mb::No};
    n.PopupAt(DM(50, 5, -12, 10), "&Activate");
    EXPECT_EQ(n.Leg().Kind, 2);
    EXPECT_EQ(n.Leg().Name, "WP2");
    EXPECT_EQ(n.nav.routes.ActivePoint, 2);
    EXPECT_EQ(n.nav.waypoints.ActiveIndex, 0);
}

// Turning the autopilot output on while a leg is active asks the other
// question; No leaves the box clear and the setting off.
TEST(Navigator, TurningTheAutopilotOutputOnWithALegActiveAsks) {
    for (int reply : {mb::No, mb::Yes}) {
        SCOPED_TRACE(reply == mb::Yes ? "Yes" : "No");
        Navigator n;
        ASSERT_TRUE(n.Start());
        ASSERT_TRUE(n.nav.activation.ActivateWaypoint(1));
        n.dialogs.replies = {reply};
        bool ticked = false;
        WhenUp<FrmComm>([&ticked](FrmComm* f) {
            f->ChkAutoPilot->click();
            ticked = f->ChkAutoPilot->isChecked();
            f->ComOK->click();
        });
        n.Menu("MGPSSettings");
        std::vector<std::string> asked = n.Asked();
        ASSERT_EQ(asked.size(), 1u);
        EXPECT_EQ(asked[0],
                  "There is an active waypoint.\nActivating autopilot output may cause a significant course change.\n"
                  "Are you sure you wish to continue.");
        EXPECT_EQ(ticked, reply == mb::Yes);
        EXPECT_EQ(n.plotter.instruments().settings.AutopilotActive, reply == mb::Yes);
    }
}

// ---- Points typed in, or taken from the vessel ----------------------------

// What FrmWayPoint showed, and an answer typed into it.
struct PointDialog {
    std::string caption, dbName;
    LatLong shown;  // the position it opened at, as its fields read back
    bool seen = false;
};

// Answers the next FrmWayPoint: the name and, when given, a typed position.
void AnswerPointDialog(PointDialog& d, const char* name, const char* lat = nullptr, const char* lon = nullptr) {
    WhenUp<FrmWayPoint>([&d, name, lat, lon](FrmWayPoint* f) {
        d.seen = true;
        d.caption = f->windowTitle().toStdString();
        d.dbName = f->LabDbName->text().toStdString();
        std::string la = f->TxtLat->text().toStdString(), lo = f->TxtLon->text().toStdString();
        ScriptedDialogs quiet;
        if (ParseLatLong(la, lo, quiet, "")) d.shown = LatLong{std::stod(lo), std::stod(la)};
        f->TxtName->setText(name);
        if (lat) {
            f->TxtLat->setText(lat);
            emit f->TxtLat->textEdited(lat);
            f->TxtLon->setText(lon);
            emit f->TxtLon->textEdited(lon);
        }
        f->ComOK->click();
    });
}

TEST(Navigator, AWaypointByKeyboardStartsAtTheVesselOrTheChartCentre) {
    for (bool vessel : {true, false}) {
        SCOPED_TRACE(vessel ? "vessel active" : "no vessel");
        Navigator n;
        ASSERT_TRUE(n.Start(vessel));
        LatLong want = vessel ? n.vesselAt : n.plotter.charts().View.ViewCentre();
        PointDialog d;
        AnswerPointDialog(d, "Typed");
        n.Menu("MWayPtsAddKeyboard");
        ASSERT_TRUE(d.seen);
        EXPECT_EQ(d.caption, "New Waypoint");
        // The fields show minutes to three places: a few feet.
        EXPECT_NEAR(d.shown.Lat, want.Lat, 0.1);
        EXPECT_NEAR(d.shown.Long, want.Long, 0.1);
        ASSERT_EQ(n.nav.waypoints.Count(), 3);
        EXPECT_EQ(n.nav.waypoints.At(3)->Name, "Typed");
        EXPECT_NEAR(n.nav.waypoints.At(3)->Position.Wgs84.Lat, want.Lat, 1e-6);
        EXPECT_NEAR(n.nav.waypoints.At(3)->Position.Wgs84.Long, want.Long, 1e-6);
    }
}

// A route point added at the end by keyboard (a position typed in) or
// from the GPS (the vessel's), from the route window and from the pop-up
// of one of the route's legs.
TEST(Navigator, RoutePointsAreAddedByKeyboardOrFromTheGps) {
    struct Case {
        const char* name;
        bool gps, popup;
    } cases[] = {
        {"route window, keyboard", false, false},
        {"route window, GPS", true, false},
        {"leg pop-up, keyboard", false, true},
        {"leg pop-up, GPS", true, true},
    };
    const LatLong typed = DM(50, 10.5, -11, 41.25);
    const LatLong firstLegMiddle = DM(49, 57.5, -12, 7.5);
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Navigator n;
        ASSERT_TRUE(n.Start());
        PointDialog d;
        if (c.gps) AnswerPointDialog(d, "Fix");
        else AnswerPointDialog(d, "Typed", "50 10.5 N", "11 41.25 W");
        if (c.popup) {
            n.PopupAt(firstLegMiddle, c.gps ? "Append Point by GP&S" : "Append Point by &Keyboard");
        } else {
            InRouteWindow(n, [&c](FrmRoute* r) {
                auto* b = r->findChild<QPushButton*>(c.gps ? "ComAddGPS" : "ComAddKeyboard");
                ASSERT_NE(b, nullptr);
                b->click();
            });
        }
        ASSERT_TRUE(d.seen);
        EXPECT_EQ(d.caption, "New Routepoint");
        EXPECT_EQ(d.dbName, "Home run");
        const Route* r = n.nav.routes.At(1);
        ASSERT_EQ(r->Points.size(), 4u);
        const Waypoint& p = r->Points[3];
        EXPECT_EQ(p.Name, c.gps ? "Fix" : "Typed");
        EXPECT_EQ(p.Number, 4);
        LatLong want = c.gps ? n.vesselAt : typed;
        EXPECT_NEAR(p.Position.Wgs84.Lat, want.Lat, 1e-6);
        EXPECT_NEAR(p.Position.Wgs84.Long, want.Long, 1e-6);
        // The new leg is drawn and measured like the others.
        EXPECT_GT(r->Legs[2].Distance, 0.0);
    }
    // From the GPS with no vessel there is no position to take.
    Navigator n;
    ASSERT_TRUE(n.Start(false));
    n.PopupAt(firstLegMiddle, "Append Point by GP&S");
    EXPECT_EQ(n.nav.routes.At(1)->Points.size(), 3u);
    EXPECT_EQ(n.Asked(), std::vector<std::string>{"There is no vessel position to add: no vessel is active."});
}

// ---- The boundary window ------------------------------------------------

// A mark edited inside the boundary window stays only if the window is
// confirmed: Cancel and Esc put the marks back as they were.
TEST(Navigator, LeavingTheBoundaryWindowWithoutOkUndoesItsMarkEdits) {
    struct Case {
        const char* name;
        bool kept;
        void (*leave)(FrmBoundary*);
    } cases[] = {
        {"OK", true, [](FrmBoundary* f) { f->ComOK->click(); }},
        {"Cancel", false, [](FrmBoundary* f) { f->ComCancel->click(); }},
        {"Esc", false, [](FrmBoundary* f) { f->reject(); }},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Navigator n;
        ASSERT_TRUE(n.Start());
        const Waypoint before = n.nav.boundaries.At(1)->Marks[0];
        n.Menu("MBoundariesView");
        auto* list = n.Window<FrmBoundaryDB>("FrmBoundaryDB");
        ASSERT_NE(list, nullptr);
        list->PicBoundaries->selectRow(0);
        PointDialog d;
        WhenUp<FrmBoundary>([&d, &c](FrmBoundary* f) {
            AnswerPointDialog(d, "Moved mark", "50 2.0 N", "12 3.0 W");
            emit f->PicBoundaryMarks->cellDoubleClicked(0, 0);
            c.leave(f);
        });
        list->ComProperties->click();
        list->close();
        ASSERT_TRUE(d.seen);
        const Waypoint& now = n.nav.boundaries.At(1)->Marks[0];
        EXPECT_EQ(now.Name, c.kept ? "Moved mark" : before.Name);
        LatLong want = c.kept ? DM(50, 2, -12, 3) : before.Position.Wgs84;
        EXPECT_NEAR(now.Position.Wgs84.Lat, want.Lat, 1e-6);
        EXPECT_NEAR(now.Position.Wgs84.Long, want.Long, 1e-6);
        // The chart's pixels of the mark follow what is kept.
        EXPECT_EQ(now.Position.Pixel, n.plotter.charts().View.LocatePosition(want).Pixel);
    }
}

// ---- Databases changing under an active leg ------------------------------

// The console never steers to a point that is no longer on the chart: a
// GPX import asks before its databases replace the open ones, and any
// store that closes the database holding the destination ends the leg.
TEST(Navigator, AnImportOrAClosedDatabaseNeverLeavesTheConsoleSteeringToAPointNotShown) {
    struct Case {
        const char* name;
        int16_t kind;         // the destination before: 1 waypoint, 2 route point
        void (*act)(Navigator&);
        int reply;            // the answer to the question asked, if any
        int16_t kindAfter;
        const char *waypointDb, *routeDb;  // what is open afterwards
    } cases[] = {
        {"GPX import declined", 2, nullptr, mb::No, 2, "Marks", "Passages"},
        {"GPX import opened", 2, nullptr, mb::Yes, 0, "small", "small"},
        {"GPX import opened, waypoint active", 1, nullptr, mb::Yes, 0, "small", "small"},
        {"route database closed", 2, [](Navigator& n) { n.Menu("MRoutesClose"); }, mb::Yes, 0, "Marks", ""},
        {"waypoint database closed", 1, [](Navigator& n) { n.Menu("MWayPtsClose"); }, mb::Yes, 0, "", "Passages"},
        {"other store closed", 1, [](Navigator& n) { n.Menu("MRoutesClose"); }, mb::Yes, 1, "Marks", ""},
    };
    const std::string gpx = std::string(OMBRA_TEST_DATA) + "/navobjects/gpx/small.gpx";
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Navigator n;
        ASSERT_TRUE(n.Start());
        ASSERT_TRUE(n.nav.waypoints.SaveDB() && n.nav.routes.SaveDB());
        ASSERT_TRUE(c.kind == 1 ? n.nav.activation.ActivateWaypoint(2) : n.nav.activation.ActivateRoute(1, 2));
        n.dialogs.replies = {c.reply};
        if (c.act) {
            c.act(n);
        } else {
            bool chosen = false;
            WhenUp<QFileDialog>([&chosen, gpx](QFileDialog* d) {
                chosen = true;
                d->selectFile(QString::fromStdString(gpx));
                QMetaObject::invokeMethod(d, "accept");
            });
            n.Menu("MRoutesImportGPX");
            ASSERT_TRUE(chosen);
            // One question, naming what was made, before anything is opened.
            std::vector<std::string> asked = n.Asked();
            ASSERT_EQ(asked.size(), 1u);
            EXPECT_TRUE(Has(asked[0], "2 waypoints into \"small\"")) << asked[0];
            EXPECT_TRUE(Has(asked[0], "1 routes into \"small\"")) << asked[0];
            EXPECT_TRUE(Has(asked[0], "Open")) << asked[0];
            EXPECT_EQ(n.dialogs.asked.back().style, mb::YesNo | mb::Question);
            // Made either way.
            for (NavStore* st : std::initializer_list<NavStore*>{&n.nav.waypoints, &n.nav.routes}) {
                bool listed = false;
                for (const DBEntry& e : ReadIndex(st->IndexPath)) listed |= e.Name == "small";
                EXPECT_TRUE(listed);
            }
        }
        EXPECT_EQ(n.nav.waypoints.CurrentName, c.waypointDb);
        EXPECT_EQ(n.nav.routes.CurrentName, c.routeDb);
        EXPECT_EQ(n.Leg().Kind, c.kindAfter);
        EXPECT_EQ(n.nav.waypoints.ActiveIndex, c.kindAfter == 1 ? 2 : 0);
        EXPECT_EQ(n.nav.routes.ActiveRoute, c.kindAfter == 2 ? 1 : 0);
        EXPECT_EQ(n.plotter.instruments().console.WPFrameCaption, c.kindAfter ? "Active Waypoint" : "No Active Waypoint");
    }
}

}  // namespace
}  // namespace ombra::test
