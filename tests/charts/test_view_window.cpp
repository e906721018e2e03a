// The chart view of the running window (offscreen) as a navigator uses it:
// the vessel placed and dragged by hand, labels and course texts, the
// options that change what the view shows, the cursor's position on the
// information line, the zoom area, and the view kept from start to start.
#include <gtest/gtest.h>

#include <QApplication>
#include <QMenu>
#include <QMouseEvent>

#include "core/GenFuncs.h"
#include "navobjects/MouseTools.h"
#include "platform/fake/ManualClock.h"
#include "platform/fake/RecordingCanvas.h"
#include "platform/qt/QtServices.h"
#include "plotter/Plotter.h"
#include "tests/charts/ChartFixture.h"
#include "ui/ChartArea.h"
#include "ui/FrmMain.h"
#include "ui/QtShell.h"
#include "tests/support/QtApp.h"

namespace ombra::test {
namespace {

LatLong DM(int latDeg, double latMin, int lonDeg, double lonMin) {
    return {(lonDeg < 0 ? -1 : 1) * (std::abs(lonDeg) * 3600.0 + lonMin * 60.0), latDeg * 3600.0 + latMin * 60.0};
}

// A plotter in its window, over a store that may outlive it, with the test
// chart installed (and opened by Open, centred on 50° N 12° W).
struct ViewWindow {
    TempDir& dir;
    MemorySettings& store;
    ScriptedDialogs dialogs;
    QtDialogs windowDialogs{true};
    ManualClock clock;
    NoEvents events;
    QtShell shell{windowDialogs, true};
    Plotter plotter{{store, dialogs, clock, events, shell}};
    ViewWindow(TempDir& d, MemorySettings& s, FixtureChart chart = DefaultFixture(), bool install = true) : dir(d), store(s) {
        App();
        shell.SetPlotter(&plotter);
        EXPECT_TRUE(plotter.Start("NOSPLASH", dir / "ombra", dir / "home", dir / "none"));
        // No variation model here: its one message now, not amid a test's questions.
        plotter.magVar().MagneticVariation(DM(50, 0, -12, 0));
        std::string why;
        if (install) {
            EXPECT_TRUE(InstallFixtureChart(plotter.charts(), plotter.charts().Root(), chart, "20240601", &why)) << why;
        }
    }
    void Open() {
        plotter.OpenChartNumber("1234A");
        plotter.charts().View.CentreOnPosition(DM(50, 0, -12, 0));
        Settle();
    }
    void Settle() { for (int i = 0; i < 5; ++i) QApplication::processEvents(); }
    FrmMain& Main() { return *shell.Main(); }
    ChartArea& Area() { return *Main().findChild<ChartArea*>("PicNavCanvas"); }
    QAction* Action(const char* control) { return Main().Action(control); }
    QPointF ScreenOf(const LatLong& p) {
        Display& v = plotter.charts().View;
        ChartPoint s = v.ChartToScreen(v.LocatePosition(p).Pixel[0]);
        return QPointF(s.x, s.y);
    }
    // Press, Move (button held), Release or hover (NoButton) at a point.
    void Mouse(QEvent::Type type, QPointF at, Qt::MouseButtons held = Qt::LeftButton) {
        Qt::MouseButton b = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
        QMouseEvent e(type, at, Area().mapToGlobal(at), b, type == QEvent::MouseButtonRelease ? Qt::NoButton : held,
                      Qt::NoModifier);
        QApplication::sendEvent(&Area(), &e);
    }
    const Vessel& V() { return plotter.instruments().vessel.vessel; }
    std::string LastAsked() const { return dialogs.asked.empty() ? "" : dialogs.asked.back().text; }
    void Options(const std::function<void(OptionsValues&)>& edit) {
        OptionsValues o = LoadOptions(plotter.registry(), plotter.units());
        edit(o);
        plotter.ApplyOptions(o);
    }
    bool DeadReckon(const char* speed) {
        VesselDialogValues v = LoadVesselDialog(plotter.instruments().vessel, plotter.units());
        v.DR = true, v.Course = "90", v.Speed = speed;
        return plotter.ApplyVesselDialog(v);
    }
};

// Within a pixel or two of the chart (about 3 seconds of arc a pixel).
void ExpectAt(const LatLong& got, const LatLong& want) {
    EXPECT_NEAR(got.Lat, want.Lat, 8.0);
    EXPECT_NEAR(got.Long, want.Long, 8.0);
}

TEST(VesselTool, PlacedFromTheMenuDraggedAndPlacedFromThePopUp) {
    TempDir dir;
    MemorySettings store;
    ViewWindow w(dir, store);
    w.Open();
    const LatLong p1 = DM(50, 2, -12, 3), p2 = DM(49, 58, -11, 56), p3 = DM(50, 4, -12, 6);
    QAction* place = w.Action("MPlaceVessel");
    ASSERT_TRUE(place && place->isEnabled());
    place->trigger();  // from mode None: the tool, its prompt, then a click
    EXPECT_EQ(w.plotter.globals().CurrentTool, ToolVessel);
    EXPECT_EQ(w.Main().InfoPanelText(1), "Single Click on chart to place Vessel");
    w.Mouse(QEvent::MouseButtonPress, w.ScreenOf(p1));
    w.Mouse(QEvent::MouseButtonRelease, w.ScreenOf(p1));
    EXPECT_EQ(w.V().Mode, 1);
    ExpectAt(w.V().Pos, p1);
    EXPECT_EQ(w.plotter.globals().CurrentTool, ToolPointer);
    // A click on it asks nothing; dragged, it follows the mouse, dead
    // reckoning waits, the drop asks; No puts it back.
    size_t asked = w.dialogs.asked.size();
    w.Mouse(QEvent::MouseButtonPress, w.ScreenOf(p1));
    w.Mouse(QEvent::MouseButtonRelease, w.ScreenOf(p1));
    EXPECT_EQ(w.dialogs.asked.size(), asked);
    ExpectAt(w.V().Pos, p1);
    for (auto [reply, ends] : {std::pair{mb::No, p1}, std::pair{mb::Yes, p2}}) {
        w.dialogs.replies = {reply};
        LatLong centre = w.plotter.charts().View.ViewCentre();
        w.Mouse(QEvent::MouseButtonPress, w.ScreenOf(w.V().Pos));
        w.Mouse(QEvent::MouseMove, w.ScreenOf(p2));
        w.plotter.Tick();
        ExpectAt(w.V().Pos, p2);
        w.Mouse(QEvent::MouseButtonRelease, w.ScreenOf(p2));
        EXPECT_EQ(w.LastAsked(), "Do you wish to move this Vessel.");
        ExpectAt(w.V().Pos, ends);
        EXPECT_EQ(w.plotter.charts().View.ViewCentre(), centre);  // the chart was not dragged
    }
    // FILE DR: leaving it is asked first, from the menu and the pop-up alike.
    MouseTools& tools = w.plotter.nav().tools;
    Hit here;
    here.Position = p3;
    w.plotter.instruments().vessel.SetVesselMode(5);
    w.dialogs.replies = {mb::No};
    place->trigger();
    EXPECT_EQ(w.LastAsked(), "Do you wish to cancel FILE DR mode.");
    EXPECT_EQ(w.plotter.globals().CurrentTool, ToolPointer);
    auto offered = [&] {
        bool found = false;
        for (const PopupEntry& e : tools.Popup(here)) found |= e.Command == "placevessel";
        return found;
    };
    ASSERT_TRUE(offered());
    w.dialogs.replies = {mb::Yes};
    tools.RunPopup(here, "placevessel");
    EXPECT_EQ(w.V().Mode, 1);
    ExpectAt(w.V().Pos, p3);
    // A GPS mode places the vessel itself: no entry, no tool.
    w.plotter.instruments().vessel.vessel.Mode = 2;
    emit w.Main().findChild<QMenu*>("MVessel")->aboutToShow();
    EXPECT_FALSE(place->isEnabled());
    EXPECT_FALSE(offered());
    // Dead reckoning chosen from None starts on the chart, the tool ready.
    w.plotter.instruments().vessel.SetVesselMode(0);
    ASSERT_TRUE(w.DeadReckon("6"));
    ExpectAt(w.V().Pos, w.plotter.charts().View.ViewCentre());
    EXPECT_EQ(w.plotter.globals().CurrentTool, ToolVessel);
}

// View > Labels rules rhumb lines and great circles; one leg reads one
// course in the route window and on the chart (a magnetic 359.6 is 000);
// ranges follow RangeDP; a vector's label is never boxed.
TEST(ViewMenu, LabelsCoursesAndRangesOnTheChart) {
    TempDir dir;
    MemorySettings store;
    ViewWindow w(dir, store);
    w.Open();
    w.dialogs.texts = {"Routes", "R001"};
    Routes& routes = w.plotter.nav().routes;
    routes.NewRouteDB();
    int16_t r = routes.NewRoute();
    for (LatLong p : {DM(49, 57, -12, 0), DM(50, 3, -12, 0), DM(50, 3, -11, 52)}) routes.AddRoutePoint(r, p);
    routes.SwapLegKind(r, 2);  // due north, rhumb line; then east, great circle
    w.plotter.nav().vectors.Begin(DM(49, 58, -11, 58), false);
    w.plotter.nav().vectors.Finish(DM(49, 58, -11, 53));
    struct Case {
        const char* menu;
        bool showLegText;
        int16_t angleUnit;
        float variation;
        const char* rangeDP;
        const char* course;  // leg 1 as shown; "" no leg labels
    };
    for (Case c : {Case{"MLabelsDefault", true, 1, 0.4f, "3", "000"}, Case{"MLabelsDefault", false, 0, 0.f, "3", ""},
                   Case{"MLabelsOn", false, 1, -0.6f, "2", "001"}, Case{"MLabelsOn", false, 2, 0.4f, "2", "002"},
                   Case{"MLabelsOff", true, 0, 0.f, "3", ""}}) {
        SCOPED_TRACE(std::string(c.menu) + " " + c.course);
        w.Action(c.menu)->trigger();
        EXPECT_TRUE(w.Action(c.menu)->isChecked());
        w.plotter.units().AngleUnit = c.angleUnit;
        w.plotter.deviation().DeviationTable.fill(2.0f);
        w.plotter.registry().SaveSetting(Key::RangeDP, c.rangeDP);
        routes.At(r)->ShowLegText = c.showLegText;
        for (Waypoint& p : routes.At(r)->Points) p.MagVar = c.variation;
        RecordingCanvas canvas(2000, 2000);
        w.plotter.charts().View.RedrawNavCanvas(canvas);
        std::vector<std::string> legs, vector;
        for (const auto& t : canvas.Of("Text"))
            if (t.text.ends_with(" RL") || t.text.ends_with(" GC")) (t.text.starts_with("090") && t.text.ends_with("RL") ? vector : legs).push_back(t.text);
        EXPECT_EQ(vector.size(), std::string(c.menu) == "MLabelsOff" ? 0u : 1u);
        EXPECT_EQ(canvas.Of("Rectangle").size(), legs.size());  // boxes for the legs only
        if (!*c.course) {
            EXPECT_TRUE(legs.empty());
            continue;
        }
        ASSERT_EQ(legs.size(), 2u);
        EXPECT_TRUE(legs[0].starts_with(c.course)) << legs[0];
        EXPECT_TRUE(routes.LegRows(r)[0].Bearing.starts_with(c.course)) << routes.LegRows(r)[0].Bearing;
        for (const std::string& l : legs) {
            size_t nm = l.find(" NM");
            EXPECT_EQ(int(nm - l.rfind('.', nm) - 1), c.rangeDP[0] - '0') << l;
        }
    }
    w.Action("MRtIconsOff")->trigger();
    EXPECT_TRUE(w.plotter.nav().ctx.chart.RouteIconsOff());
    w.Action("MRtIconsDefault")->trigger();
    EXPECT_FALSE(w.plotter.nav().ctx.chart.RouteIconsOff());
}

// OK in Program Options shows the unit-dependent readouts in the new units
// at once; the cursor's position follows the mouse on the information line
// with or without a vessel, unless the active position display is off, in
// the chart's datum (" *": this plan has no shift) or in WGS84. Zoomed out,
// the area the full chart would show is outlined about the cursor while
// ZoomRect is on, and a double click zooms in to it.
TEST(ProgramOptions, ReadoutsCursorAndZoomAreaFollowTheOptionsAtOnce) {
    FixtureChart noShift = DefaultFixture();
    noShift.Plans[0].Shift = false;
    for (auto [active, wgs84, vessel, zoomRect] :
         {std::tuple{true, false, false, true}, {true, true, true, false}, {false, true, false, true}}) {
        TempDir dir;
        MemorySettings store;
        ViewWindow w(dir, store, noShift);
        w.Open();
        if (vessel) {
            ASSERT_TRUE(w.DeadReckon("6"));
        }
        w.plotter.nav().tools.End();
        w.Options([&](OptionsValues& o) { o.ActiveCoordDisplay = active, o.ForceWGS84 = wgs84, o.ShowZoomRect = zoomRect; });
        Display& view = w.plotter.charts().View;
        auto under = [&](QPointF at) {
            LatLong pos;
            EXPECT_TRUE(view.ScreenToPosition({int32_t(at.x()), int32_t(at.y())}, pos));
            return pos;
        };
        const QPointF at = w.ScreenOf(DM(50, 3, -12, 2));
        w.Mouse(QEvent::MouseMove, at, Qt::NoButton);
        LatLong shown = wgs84 ? under(at) : view.LocatePosition(under(at)).Local;
        std::string lat, lon, mark = wgs84 ? "" : " *";
        LatLongText(lat, lon, &shown, 1, 1);
        EXPECT_EQ(w.Main().InfoPanelText(3).toStdString(), active ? lat + mark + "  " + lon + mark : "");
        if (vessel) {
            const Console& con = w.plotter.instruments().console;
            EXPECT_EQ(con.LabVessel[3], "6.0 Kts");
            EXPECT_TRUE(con.LabCursor[3].ends_with(" NM RL")) << con.LabCursor[3];
            w.Options([](OptionsValues& o) { o.SpeedUnit = 2, o.DistanceUnit = 2; });
            EXPECT_EQ(con.LabVessel[3], "11.1 K/H");
            EXPECT_TRUE(con.LabCursor[3].ends_with(" Km RL")) << con.LabCursor[3];
        }
        view.SetPixelSize(32);  // a quarter: the full chart's view is a quarter of this one across
        w.Settle();
        const QPointF middle(w.Area().width() / 2 + 60, w.Area().height() / 2 + 40);  // off the vessel
        const LatLong target = under(middle);
        w.Mouse(QEvent::MouseMove, middle, Qt::NoButton);
        QImage shot = w.Area().grab().toImage();
        const int left = int(middle.x()) - w.Area().width() / 8;
        int differs = 0;
        for (int y = int(middle.y()) - 20; y <= int(middle.y()) + 20; ++y)
            differs += ((shot.pixel(left, y) ^ w.Area().Store().pixel(left, y)) & 0xFFFFFF) != 0;
        EXPECT_EQ(differs > 20, zoomRect) << differs;
        w.Mouse(QEvent::MouseButtonDblClick, middle);
        EXPECT_EQ(view.PixelSize, 128);
        ExpectAt(view.ViewCentre(), target);
    }
}

// The chart, centre and zoom left at exit come back when the next start
// reopens the last chart.
TEST(LastView, TheViewLeftAtExitIsTheViewAtTheNextStart) {
    TempDir dir;
    MemorySettings store;
    store.Write("Vestrane", "Tarnel", "AutoStartupGPS", "1");
    store.Write("Vestrane", "Tarnel", "AutoStartupChart", "True");
    const LatLong where = DM(50, 4, -12, 9);
    {
        ViewWindow w(dir, store);
        w.Open();
        w.plotter.charts().View.SetPixelSize(256);
        w.plotter.charts().View.CentreOnPosition(where);
        w.Main().close();
        ASSERT_TRUE(w.plotter.Exited());
    }
    ViewWindow again(dir, store, DefaultFixture(), false);
    ASSERT_TRUE(again.plotter.charts().Charts.ChartIsOpen());
    EXPECT_EQ(again.plotter.charts().View.PixelSize, 256);
    ExpectAt(again.plotter.charts().View.ViewCentre(), where);
    // With no chart open, dead reckoning from None starts where that view was.
    again.plotter.CloseChart();
    ASSERT_TRUE(again.DeadReckon("5"));
    ExpectAt(again.V().Pos, where);
}

}  // namespace
}  // namespace ombra::test
