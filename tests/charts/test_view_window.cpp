// The chart view of the running window under the offscreen platform, as a
// navigator uses it: the vessel placed and dragged by hand, the View menu's
// label entries, the options that change what the view shows, the cursor's
// position on the information line, and the view kept from one start to
// the next.
#include <gtest/gtest.h>

#include <QApplication>
#include <QMenu>
#include <QMouseEvent>

#include "core/GenFuncs.h"
#include "core/Val.h"
#include "navobjects/MouseTools.h"
#include "platform/fake/ManualClock.h"
#include "platform/qt/QtServices.h"
#include "plotter/Plotter.h"
#include "tests/charts/ChartFixture.h"
#include "ui/ChartArea.h"
#include "ui/FrmMain.h"
#include "ui/QtShell.h"

namespace ombra::test {
namespace {

QApplication& App() {
    static int argc = 1;
    static char name[] = "test";
    static char* argv[] = {name, nullptr};
    static QApplication* app = new QApplication(argc, argv);  // kept to the end of the process
    return *app;
}

LatLong DM(int latDeg, double latMin, int lonDeg, double lonMin) {
    return {(lonDeg < 0 ? -1 : 1) * (std::abs(lonDeg) * 3600.0 + lonMin * 60.0), latDeg * 3600.0 + latMin * 60.0};
}

// A plotter in its window over a settings store that outlives it (so a
// second start reads what the first one left), with the test chart open.
struct ViewWindow {
    TempDir& dir;
    MemorySettings& store;
    ScriptedDialogs dialogs;
    QtDialogs windowDialogs{true};
    ManualClock clock;
    NoEvents events;
    QtShell shell{windowDialogs, true};
    Plotter plotter{{store, dialogs, clock, events, shell}};
    ViewWindow(TempDir& d, MemorySettings& s, const FixtureChart& chart = DefaultFixture(), bool install = true)
        : dir(d), store(s) {
        App();
        shell.SetPlotter(&plotter);
        clock.now = DateTime{2026, 11, 25, 10, 0, 0, 0};
        EXPECT_TRUE(plotter.Start("NOSPLASH", dir / "ombra", dir / "home", dir / "none"));
        std::string why;
        // This home has no variation model: its one message comes now, not
        // in the middle of a question a test answers.
        plotter.magVar().MagneticVariation(DM(50, 0, -12, 0));
        if (install) EXPECT_TRUE(InstallFixtureChart(plotter.charts(), plotter.charts().Root(), chart, "20240601", &why)) << why;
        Settle();
    }
    // A second of the main timer.
    void Second() {
        for (int i = 0; i < 10; ++i) {
            plotter.Tick();
            clock.Advance(0.1);
        }
    }
    void Open() {
        plotter.OpenChartNumber("1234A");
        ASSERT_TRUE(plotter.charts().Charts.ChartIsOpen());
        plotter.charts().View.CentreOnPosition(DM(50, 0, -12, 0));
        Settle();
    }
    void Settle() {
        for (int i = 0; i < 5; ++i) QApplication::processEvents();
    }
    FrmMain& Main() { return *shell.Main(); }
    ChartArea& Area() { return *Main().findChild<ChartArea*>("PicNavCanvas"); }
    QAction* Action(const char* control) { return Main().Action(control); }
    QPointF ScreenOf(const LatLong& p) {
        Display& v = plotter.charts().View;
        NavPoint np = v.LocatePosition(p);
        size_t plan = size_t(std::max<int16_t>(v.DisplayedPlan, 0));
        EXPECT_TRUE(np.In(plan));
        ChartPoint s = v.ChartToScreen(np.Pixel[plan]);
        return QPointF(s.x, s.y);
    }
    void Mouse(QEvent::Type type, QPointF at, Qt::MouseButton button = Qt::LeftButton) {
        Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::MouseButtons(button);
        if (type == QEvent::MouseMove) held = Qt::LeftButton;
        QMouseEvent e(type, at, Area().mapToGlobal(at), type == QEvent::MouseMove ? Qt::NoButton : button, held,
                      Qt::NoModifier);
        QApplication::sendEvent(&Area(), &e);
    }
    void Hover(QPointF at) {
        QMouseEvent e(QEvent::MouseMove, at, Area().mapToGlobal(at), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(&Area(), &e);
    }
    const Vessel& V() { return plotter.instruments().vessel.vessel; }
    bool AskedLast(const std::string& text) const { return !dialogs.asked.empty() && dialogs.asked.back().text == text; }
};

// Within a pixel or two of the chart (3 seconds of arc a pixel here).
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

    // Vessel > Place Vessel from mode None: the tool and its prompt, then a click.
    QAction* place = w.Action("MPlaceVessel");
    ASSERT_NE(place, nullptr);
    ASSERT_TRUE(place->isEnabled());
    place->trigger();
    EXPECT_EQ(w.plotter.globals().CurrentTool, ToolVessel);
    EXPECT_EQ(w.Main().InfoPanelText(1), "Single Click on chart to place Vessel");
    w.Mouse(QEvent::MouseButtonPress, w.ScreenOf(p1));
    w.Mouse(QEvent::MouseButtonRelease, w.ScreenOf(p1));
    EXPECT_EQ(w.V().Mode, 1);
    ExpectAt(w.V().Pos, p1);
    EXPECT_EQ(w.plotter.globals().CurrentTool, ToolPointer);
    EXPECT_EQ(w.Main().InfoPanelText(1), "");

    // Dragged: the vessel follows the mouse, the dead reckoning waits, and
    // the drop asks; No puts it back, Yes leaves it.
    struct Drag {
        int reply;
        LatLong to, ends;
    };
    for (Drag d : {Drag{mb::No, p2, p1}, Drag{mb::Yes, p2, p2}}) {
        w.dialogs.replies = {d.reply};
        LatLong from = w.V().Pos;
        w.Mouse(QEvent::MouseButtonPress, w.ScreenOf(from));
        EXPECT_EQ(w.plotter.globals().CurrentTool, ToolVessel);
        LatLong centre = w.plotter.charts().View.ViewCentre();
        w.Mouse(QEvent::MouseMove, w.ScreenOf(d.to));
        ExpectAt(w.V().Pos, d.to);
        w.plotter.Tick();
        ExpectAt(w.V().Pos, d.to);
        w.Mouse(QEvent::MouseButtonRelease, w.ScreenOf(d.to));
        EXPECT_TRUE(w.AskedLast("Do you wish to move this Vessel."));
        ExpectAt(w.V().Pos, d.ends);
        EXPECT_EQ(w.plotter.charts().View.ViewCentre(), centre);  // the chart itself was not dragged
        EXPECT_EQ(w.plotter.globals().CurrentTool, ToolPointer);
    }

    // FILE DR: leaving it is asked first, from the menu and the pop-up alike.
    MouseTools& tools = w.plotter.nav().tools;
    Hit here;
    here.Position = p3;
    w.plotter.instruments().vessel.SetVesselMode(5);
    w.dialogs.replies = {mb::No};
    place->trigger();
    EXPECT_TRUE(w.AskedLast("Do you wish to cancel FILE DR mode."));
    EXPECT_EQ(w.plotter.globals().CurrentTool, ToolPointer);
    EXPECT_EQ(w.V().Mode, 5);
    bool offered = false;
    for (const PopupEntry& e : tools.Popup(here)) offered |= e.Command == "placevessel";
    ASSERT_TRUE(offered);
    w.dialogs.replies = {mb::Yes};
    tools.RunPopup(here, "placevessel");
    EXPECT_EQ(w.V().Mode, 1);
    ExpectAt(w.V().Pos, p3);

    // A GPS mode places the vessel itself: no entry, no tool.
    w.plotter.instruments().vessel.vessel.Mode = 2;
    emit w.Main().findChild<QMenu*>("MVessel")->aboutToShow();
    EXPECT_FALSE(place->isEnabled());
    for (const PopupEntry& e : tools.Popup(here)) EXPECT_NE(e.Command, "placevessel");
}

// Dead reckoning chosen in Vessel Properties from mode None starts on the
// chart in view, with the vessel tool ready to put it where it is.
TEST(VesselTool, DeadReckoningFromNoneStartsOnTheChart) {
    TempDir dir;
    MemorySettings store;
    ViewWindow w(dir, store);
    w.Open();
    VesselDialogValues v = LoadVesselDialog(w.plotter.instruments().vessel, w.plotter.units());
    v.DR = true;
    v.Course = "90";
    v.Speed = "6";
    ASSERT_TRUE(w.plotter.ApplyVesselDialog(v));
    EXPECT_EQ(w.V().Mode, 1);
    ExpectAt(w.V().Pos, w.plotter.charts().View.ViewCentre());
    EXPECT_EQ(w.plotter.globals().CurrentTool, ToolVessel);
}

TEST(ViewMenu, LabelsAndRouteIconsAreLiveAndTicked) {
    TempDir dir;
    MemorySettings store;
    ViewWindow w(dir, store);
    struct Case {
        const char* control;
        int16_t labelMode;
        bool iconsOff;
    };
    for (Case c : {Case{"MLabelsOn", 1, false}, Case{"MRtIconsOff", 1, true}, Case{"MLabelsOff", 2, true},
                   Case{"MRtIconsDefault", 2, false}, Case{"MLabelsDefault", 0, false}}) {
        SCOPED_TRACE(c.control);
        QAction* a = w.Action(c.control);
        ASSERT_NE(a, nullptr);
        ASSERT_TRUE(a->isEnabled());
        a->trigger();
        EXPECT_TRUE(a->isChecked());
        EXPECT_EQ(w.plotter.nav().ctx.chart.LabelOverride(), c.labelMode);
        EXPECT_EQ(w.plotter.nav().ctx.chart.RouteIconsOff(), c.iconsOff);
        EXPECT_EQ(w.Action(c.labelMode == 1 ? "MLabelsOn" : c.labelMode == 2 ? "MLabelsOff" : "MLabelsDefault")->isChecked(),
                  true);
    }
}

// OK in Program Options shows the unit-dependent readouts in the new units
// at once, without waiting for a vessel cycle.
TEST(ProgramOptions, OkShowsTheReadoutsInTheNewUnitsAtOnce) {
    TempDir dir;
    MemorySettings store;
    ViewWindow w(dir, store);
    w.Open();
    VesselDialogValues v = LoadVesselDialog(w.plotter.instruments().vessel, w.plotter.units());
    v.DR = true;
    v.Course = "90";
    v.Speed = "6";
    ASSERT_TRUE(w.plotter.ApplyVesselDialog(v));
    w.plotter.nav().tools.End();
    w.Hover(w.ScreenOf(DM(50, 3, -12, 2)));
    w.Second();
    const Console& con = w.plotter.instruments().console;
    EXPECT_EQ(con.LabVessel[3], "6.0 Kts");
    EXPECT_TRUE(con.LabCursor[3].ends_with(" NM RL")) << con.LabCursor[3];
    OptionsValues o = LoadOptions(w.plotter.registry(), w.plotter.units());
    o.SpeedUnit = 2;
    o.DistanceUnit = 2;
    w.plotter.ApplyOptions(o);
    EXPECT_EQ(con.LabVessel[3], "11.1 K/H");
    EXPECT_TRUE(con.LabCursor[3].ends_with(" Km RL")) << con.LabCursor[3];
}

// The cursor's position shows on the information line as the mouse moves,
// with no vessel at all, unless the active position display is off; in the
// chart's datum, or in WGS84 when all coordinates are to be in WGS84.
TEST(CursorReadout, TheInformationLineFollowsTheCursorWithOrWithoutAVessel) {
    FixtureChart noShift = DefaultFixture();
    noShift.Plans[0].Shift = false;
    struct Case {
        bool activeCoord, forceWGS84;
        bool shown;
        bool datumMark;  // " *": the plan cannot relate WGS84 to its datum
    };
    for (Case c : {Case{true, false, true, true}, Case{true, true, true, false}, Case{false, true, false, false}}) {
        SCOPED_TRACE(std::to_string(c.activeCoord) + std::to_string(c.forceWGS84));
        TempDir dir;
        MemorySettings store;
        ViewWindow w(dir, store, noShift);
        w.Open();
        OptionsValues o = LoadOptions(w.plotter.registry(), w.plotter.units());
        o.ActiveCoordDisplay = c.activeCoord;
        o.ForceWGS84 = c.forceWGS84;
        w.plotter.ApplyOptions(o);
        ASSERT_FALSE(w.plotter.VesselActive());
        const QPointF screen = w.ScreenOf(DM(50, 3, -12, 2));
        w.Hover(screen);
        QString text = w.Main().InfoPanelText(3);
        if (!c.shown) {
            EXPECT_TRUE(text.isEmpty()) << text.toStdString();
            continue;
        }
        LatLong under;
        ASSERT_TRUE(w.plotter.charts().View.ScreenToPosition({int32_t(screen.x()), int32_t(screen.y())}, under));
        std::string lat, lon;
        // In the chart's datum: the plan's own reading of that place.
        LatLong shown = c.forceWGS84 ? under : w.plotter.charts().View.LocatePosition(under).Local;
        LatLongText(lat, lon, &shown, 1, 1);
        const std::string mark = c.datumMark ? " *" : "";
        EXPECT_EQ(text.toStdString(), lat + mark + "  " + lon + mark);
        EXPECT_EQ(text.endsWith("*"), c.datumMark) << text.toStdString();
    }
}

// The chart, centre and zoom left at exit come back at the next start that
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
    EXPECT_EQ(Trim(again.plotter.charts().State.Header.ChartNumber), "1234A");
    EXPECT_EQ(again.plotter.charts().View.PixelSize, 256);
    ExpectAt(again.plotter.charts().View.ViewCentre(), where);
}

}  // namespace
}  // namespace ombra::test

namespace ombra::test {
namespace {

// On a zoomed-out view the area that the full chart would show about the
// cursor is outlined while "Show zoom area rectangle" is on; a double click
// zooms in to it.
TEST(ZoomArea, OutlinedOnTheZoomedOutViewAndZoomedIntoByADoubleClick) {
    for (bool shown : {true, false}) {
        SCOPED_TRACE(shown);
        TempDir dir;
        MemorySettings store;
        ViewWindow w(dir, store);
        w.Open();
        OptionsValues o = LoadOptions(w.plotter.registry(), w.plotter.units());
        o.ShowZoomRect = shown;
        w.plotter.ApplyOptions(o);
        Display& view = w.plotter.charts().View;
        view.SetPixelSize(32);  // a quarter: the full chart's view is a quarter of this one across
        w.Settle();
        const QPointF at(w.Area().width() / 2.0, w.Area().height() / 2.0);
        LatLong under;
        ASSERT_TRUE(view.ScreenToPosition({int32_t(at.x()), int32_t(at.y())}, under));
        w.Hover(at);
        w.Settle();
        QImage shot = w.Area().grab().toImage();
        // The outline's left side, a quarter of the view's width wide about the cursor.
        const int left = int(at.x()) - w.Area().width() / 8;
        int differs = 0;
        for (int dy = -20; dy <= 20; ++dy)
            differs += (shot.pixel(left, int(at.y()) + dy) & 0xFFFFFF) != (w.Area().Store().pixel(left, int(at.y()) + dy) & 0xFFFFFF);
        EXPECT_EQ(differs > 20, shown) << differs;
        QMouseEvent dbl(QEvent::MouseButtonDblClick, at, w.Area().mapToGlobal(at), Qt::LeftButton, Qt::LeftButton,
                        Qt::NoModifier);
        QApplication::sendEvent(&w.Area(), &dbl);
        EXPECT_EQ(view.PixelSize, 128);
        ExpectAt(view.ViewCentre(), under);
    }
}

}  // namespace
}  // namespace ombra::test
