// The alarm windows and commands in the program's own windows: each alarm
// raised by the vessel cycle comes up as a modeless window on top, its
// button hands the answer to the alarms, and the next update acts on it.
// The anchor entries of the chart pop-up and the man-overboard command are
// reached as the navigator reaches them.
#include <gtest/gtest.h>

#include <QMenu>
#include <QToolBar>

#include "tests/alarms/FixFeed.h"
#include "tests/charts/ChartFixture.h"
#include "tests/ui/UiFixture.h"
#include "ui/AlarmCommands.h"
#include "ui/ChartArea.h"
#include "ui/FrmAlarm.h"
#include "ui/FrmMain.h"

using namespace ombra;
using test::P;

namespace {

// The program's shell and windows over a plotter with a scripted GPS port
// and scripted questions.
struct WithWindows {
    QtDialogs shellDialogs{true};
    QtShell shell{shellDialogs, true};
    WithWindows() { test::App(); }
};
struct Bridge : WithWindows, test::Sailing {
    Bridge() : Sailing(shell) { shell.SetPlotter(&plotter); }
    void At(const LatLong& p) {
        Sailing::At(p);
        QApplication::processEvents();
    }
    FrmAlarm* Window(AlarmForm form) { return shell.Alarms()->Window(form); }
    void Click(AlarmForm form, const char* button) {
        for (QPushButton* b : Window(form)->Buttons)
            if (b->text() == button) b->click();
    }
};

}  // namespace

TEST(AlarmWindows, EachAlarmIsAModelessWindowOnTopAndItsButtonIsTheAnswer) {
    struct Case {
        AlarmForm form;
        const char* control;
        const char* caption;
        const char* button;
        void (*raise)(Bridge&);
        bool (*answered)(Bridge&);  // what the next update did with the answer
    } cases[] = {
        {AlarmForm::Arrival, "FrmAlarmWP", "Waypoint Arrival", "No",
         [](Bridge& b) {
             b.Steer("Buoy", 2, 0.5f);
             b.At(P(1.7));
         },
         [](Bridge& b) { return b.plotter.instruments().leg.Armed == 0 && b.plotter.instruments().leg.Kind == 1; }},
        {AlarmForm::CrossTrack, "FrmAlarmXTE", "XTE Alarm", "OK",
         [](Bridge& b) {
             b.Steer("Far", 30, 0.5f);
             b.At(P(1, 0.6));
         },
         [](Bridge& b) { return !b.plotter.alarms().XTEAlarmShowing && b.plotter.alarms().XTEAlarmTripped; }},
        {AlarmForm::Anchor, "FrmAlarmAnchor", "Anchor Alarm", "OK",
         [](Bridge& b) {
             b.plotter.alarms().SetAnchor();
             b.plotter.alarms().FixAnchorRadius(P(0.1));
             b.At(P(0.3));
         },
         [](Bridge& b) { return !b.plotter.alarms().AnchorShowing && b.plotter.alarms().AnchorTripped; }},
        {AlarmForm::Boundary, "FrmAlarmBoundary", "Vessel Entry", "OK",
         [](Bridge& b) {
             b.Area("Range", 1, 3, 0);
             b.At(P(2));
         },
         [](Bridge& b) { return b.plotter.nav().boundaries.At(1)->VesselEntryLatch != 0; }},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.control);
        Bridge b;
        ASSERT_TRUE(b.Start());
        b.At(P(0));
        c.raise(b);
        FrmAlarm* w = b.Window(c.form);
        ASSERT_TRUE(w->isVisible());
        EXPECT_EQ(w->objectName(), c.control);
        EXPECT_FALSE(w->isModal());
        EXPECT_TRUE(w->windowFlags() & Qt::WindowStaysOnTopHint);
        EXPECT_EQ(w->windowTitle(), c.caption);
        EXPECT_EQ(w->LabMsg->text().toStdString(), b.plotter.alarms().Window(c.form).Message);
        EXPECT_FALSE(w->LabMsg->text().isEmpty());
        EXPECT_TRUE(b.shell.Main()->isEnabled());  // the main window runs on behind it
        b.Click(c.form, c.button);
        EXPECT_FALSE(w->isVisible());
        if (c.form != AlarmForm::Boundary) {
            EXPECT_EQ(b.plotter.alarms().Window(c.form).Tag, c.button);
        }
        b.At(b.plotter.instruments().vessel.vessel.Pos);
        EXPECT_TRUE(c.answered(b));
        EXPECT_FALSE(w->isVisible());
    }
}

TEST(AlarmWindows, TheAnchorPopupAndTheRadiusFollowingTheMouse) {
    Bridge b;
    ASSERT_TRUE(b.Start());
    b.At(P(0));
    AlarmCommands* cmds = b.shell.Alarms();
    auto popup = [&](QMenu& menu) {
        cmds->AddAnchorEntries(menu);
        return menu.findChild<QMenu*>("MAnchor");
    };
    QMenu first;
    QMenu* anchor = popup(first);
    ASSERT_NE(anchor, nullptr);
    auto action = [](QMenu* m, const char* name) { return m->findChild<QAction*>(name); };
    ASSERT_NE(action(anchor, "MAnchorSet"), nullptr);
    EXPECT_TRUE(action(anchor, "MAnchorSet")->isEnabled());
    EXPECT_FALSE(action(anchor, "MAnchorRadius")->isEnabled());  // no anchor yet
    EXPECT_FALSE(action(anchor, "MAnchorClear")->isEnabled());
    action(anchor, "MAnchorSet")->trigger();
    Alarms& a = b.plotter.alarms();
    EXPECT_TRUE(a.AnchorSet);
    EXPECT_EQ(a.AnchorPos, b.plotter.instruments().vessel.vessel.Pos);
    EXPECT_EQ(b.plotter.globals().CurrentTool, ToolAlarmRadius);
    EXPECT_EQ(b.shell.Main()->InfoPanelText(1), "Single Click to Set Alarm Radius");

    // The chart's mouse: the circle follows the cursor, a click fixes it.
    auto* area = dynamic_cast<ChartArea*>(b.shell.Main()->ChartWidget());
    ASSERT_NE(area, nullptr);
    area->OnMouseMove({10, 10}, true, P(0.25));
    EXPECT_NEAR(a.AnchorRadius, 0.25, 0.01);
    area->OnMouseMove({10, 20}, true, P(0.15));
    EXPECT_NEAR(a.AnchorRadius, 0.15, 0.01);
    EXPECT_TRUE(area->OnClick({10, 20}, true, P(0.2), 1, false));
    EXPECT_NEAR(a.AnchorRadius, 0.2, 0.01);
    EXPECT_EQ(b.plotter.globals().CurrentTool, ToolPointer);
    area->OnMouseMove({10, 30}, true, P(0.5));  // the tool is off: the radius stays
    EXPECT_NEAR(a.AnchorRadius, 0.2, 0.01);

    QMenu second;
    anchor = popup(second);
    EXPECT_TRUE(action(anchor, "MAnchorRadius")->isEnabled());
    action(anchor, "MAnchorClear")->trigger();
    EXPECT_FALSE(a.AnchorSet);
}

TEST(AlarmWindows, ManOverboardFromTheMenuKeyAndToolbar) {
    Bridge b;
    ASSERT_TRUE(b.Start());
    b.At(P(0));
    FrmMain* m = b.shell.Main();
    QAction* menu = m->Action("MManOverboard");
    ASSERT_NE(menu, nullptr);
    EXPECT_TRUE(menu->isEnabled());
    EXPECT_EQ(menu->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_M));
    auto* bar = m->findChild<QToolBar*>("NavToolbar");
    ASSERT_NE(bar, nullptr);
    QAction* button = bar->findChild<QAction*>("ToolManOverboard");
    ASSERT_NE(button, nullptr);

    struct Step { QAction* command; int reply; bool setAfter; } steps[] = {
        {menu, 0, true}, {button, mb::No, true}, {button, mb::Yes, false}, {button, 0, true}};
    for (const Step& s : steps) {
        if (s.reply) b.dialogs.replies = {s.reply};
        s.command->trigger();
        EXPECT_EQ(b.plotter.alarms().MobSet, s.setAfter);
        EXPECT_EQ(b.plotter.instruments().leg.Name, s.setAfter ? "MOB" : "");
    }
}

// The anchor circle and the man-overboard mark are layers of the chart.
TEST(AlarmWindows, TheAnchorCircleAndTheMobMarkAreDrawnOnTheChart) {
    Bridge b;
    ASSERT_TRUE(b.Start());
    test::FixtureChart chart;
    chart.Plans.push_back({50.1, 49.9, -5.2, -4.8, 0, 0, chart.Width, chart.Height, "Plan", "25000"});
    std::string why;
    ASSERT_TRUE(test::InstallFixtureChart(b.plotter.charts(), b.plotter.charts().Root(), chart, "20240601", &why)) << why;
    ASSERT_TRUE(b.plotter.charts().Charts.NewChart("1234A"));
    b.At(P(0));
    ASSERT_TRUE(b.plotter.charts().View.CentreOnPosition(P(0)));
    auto* area = dynamic_cast<ChartArea*>(b.shell.Main()->ChartWidget());
    ASSERT_NE(area, nullptr);
    auto red = [&] {
        area->Redraw();
        const QImage& img = area->Store();
        int n = 0;
        for (int y = 0; y < img.height(); ++y)
            for (int x = 0; x < img.width(); ++x) n += img.pixel(x, y) == qRgb(220, 0, 0);
        return n;
    };
    const int plain = red();
    Alarms& a = b.plotter.alarms();
    a.SetAnchor();
    a.FixAnchorRadius(P(0.3));
    const int anchored = red();
    EXPECT_GT(anchored, plain + 60);
    a.ClearAnchor();
    a.ManOverboard();
    b.At(P(0.1));
    EXPECT_GT(red(), plain + 10);
    EXPECT_LT(red(), anchored);
}
