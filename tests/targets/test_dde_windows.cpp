// The data-source link's targets as the navigator reaches them: the DDE
// menu (on line, options, find), the chart pop-up over a target, the
// console frame, and the targets drawn on the chart.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QTimer>

#include "platform/fake/ManualClock.h"
#include "platform/fake/MemorySettings.h"
#include "platform/fake/ScriptedDialogs.h"
#include "platform/qt/QtServices.h"
#include "plotter/Plotter.h"
#include "tests/charts/ChartFixture.h"
#include "tests/support/QtApp.h"
#include "tests/support/TestSupport.h"
#include "tests/targets/FakeLink.h"
#include "ui/ChartArea.h"
#include "ui/DdeCommands.h"
#include "ui/FrmCommDDE.h"
#include "ui/FrmFindTarget.h"
#include "ui/FrmMain.h"
#include "ui/QtShell.h"

using namespace ombra;

namespace {

// Acts on the modal window of type W once it is up.
template <class W>
void WhenUp(std::function<void(W*)> act, int tries = 3000) {
    QTimer::singleShot(10, [act, tries] {
        if (W* w = qobject_cast<W*>(QApplication::activeModalWidget())) return act(w);
        if (tries > 0) WhenUp<W>(act, tries - 1);
    });
}

struct Bridge {
    test::TempDir dir;
    MemorySettings store;
    ScriptedDialogs dialogs;
    QtDialogs windowDialogs{true};
    ManualClock clock;
    NoEvents events;
    test::FakeLink link;
    QtShell shell{windowDialogs, true};
    Plotter plotter{{store, dialogs, clock, events, shell, nullptr, nullptr, nullptr, &link}};
    Bridge() {
        test::App();
        shell.SetPlotter(&plotter);
        clock.now = DateTime{2026, 11, 23, 10, 0, 0, 0};
    }
    bool Start() { return plotter.Start("NOSPLASH", dir / "ombra", dir / "home", ""); }
    void Ticks(int n = 1) {
        for (int i = 0; i < n; ++i) {
            plotter.Tick();
            clock.Advance(0.1);
        }
        QApplication::processEvents();
    }
    QAction* Action(const char* name) { return shell.Main()->Action(name); }
    // A chart round 50°N 5°W with the view centred there.
    void OpenChart() {
        test::FixtureChart chart;
        chart.Plans.push_back({50.1, 49.9, -5.2, -4.8, 0, 0, chart.Width, chart.Height, "Plan", "25000"});
        std::string why;
        ASSERT_TRUE(test::InstallFixtureChart(plotter.charts(), plotter.charts().Root(), chart, "20240601", &why)) << why;
        ASSERT_TRUE(plotter.charts().Charts.NewChart("1234A"));
        ASSERT_TRUE(plotter.charts().View.CentreOnPosition({-5.0 * 3600, 50.0 * 3600}));
    }
    void Transfer(const std::vector<std::string>& positions) {
        link.Open();
        link.Send("BEGINTRANS");
        for (const std::string& p : positions) link.Send(p);
        Ticks();
    }
};

}  // namespace

TEST(DdeWindows, OnlineAndOptionsFromTheMenu) {
    Bridge b;
    ASSERT_TRUE(b.Start());
    QAction* online = b.Action("mnuDDEOnline");
    ASSERT_NE(online, nullptr);
    EXPECT_FALSE(online->isChecked());
    EXPECT_FALSE(b.shell.Main()->findChild<QWidget*>("FrameDDE")->isVisibleTo(b.shell.Main()));
    online->trigger();
    EXPECT_TRUE(b.link.listening);
    EXPECT_EQ(b.link.Port(), 5533);
    EXPECT_TRUE(online->isChecked());
    EXPECT_EQ(b.plotter.registry().GetSetting(Key::DDEOnline), "True");
    EXPECT_TRUE(b.shell.Main()->findChild<QWidget*>("FrameDDE")->isVisibleTo(b.shell.Main()));

    // The options: what is typed is kept, and the link moves to the new port.
    WhenUp<FrmCommDDE>([](FrmCommDDE* d) {
        EXPECT_EQ(d->txtInterval->text(), "5");
        d->txtInterval->setText("3");
        d->chkPredictors->setChecked(true);
        d->txtPTime->setText("6");
        d->chkDDELabels->setChecked(false);
        d->txtPort->setText("6000");
        d->ComOK->click();
    });
    b.Action("mnuDDEOptions")->trigger();
    const DdeSettings& s = b.plotter.dde().Settings();
    EXPECT_DOUBLE_EQ(s.Interval, 3);
    EXPECT_TRUE(s.Predictors);
    EXPECT_DOUBLE_EQ(s.PTime, 6);
    EXPECT_FALSE(s.Labels);
    EXPECT_EQ(b.link.Port(), 6000);
    EXPECT_EQ(b.plotter.registry().GetSetting(Key::DDEPort), "6000");
    EXPECT_EQ(b.plotter.registry().GetSetting(Key::DDEPredictors), "True");

    // A port another program holds: the navigator is told, the link is off.
    b.link.busyPort = 6001;
    WhenUp<FrmCommDDE>([](FrmCommDDE* d) {
        d->txtPort->setText("6001");
        d->ComOK->click();
    });
    b.Action("mnuDDEOptions")->trigger();
    EXPECT_FALSE(b.link.listening);
    EXPECT_FALSE(online->isChecked());
    EXPECT_EQ(b.dialogs.asked.back().text, "The DDE link could not be put on line:\nin use");

    WhenUp<FrmCommDDE>([](FrmCommDDE* d) { d->ComCancel->click(); });
    b.Action("mnuDDEOptions")->trigger();
    EXPECT_DOUBLE_EQ(b.plotter.dde().Settings().Interval, 3);
}

TEST(DdeWindows, TargetsDrawnFoundAndPickedIntoTheConsole) {
    Bridge b;
    ASSERT_TRUE(b.Start());
    b.OpenChart();
    auto* area = dynamic_cast<ChartArea*>(b.shell.Main()->ChartWidget());
    ASSERT_NE(area, nullptr);
    auto purple = [&](int x0, int y0, int x1, int y1) {
        area->Redraw();
        const QImage& img = area->Store();
        int n = 0;
        for (int y = std::max(0, y0); y < std::min(img.height(), y1); ++y)
            for (int x = std::max(0, x0); x < std::min(img.width(), x1); ++x) n += img.pixel(x, y) == qRgb(160, 0, 160);
        return n;
    };
    const QImage& first = (area->Redraw(), area->Store());
    const int w = first.width(), h = first.height();
    EXPECT_EQ(purple(0, 0, w, h), 0);

    // Two targets: one at the centre of the view, one a mile north, heading east.
    b.Transfer({"POSITION,4,50.0,-5.0,10,90,FERRY,0", "POSITION,9,50.0166667,-5.0,0,0,BUOY,0"});
    ASSERT_EQ(b.plotter.dde().NamedTargets(), (std::vector<int>{4, 9}));
    const ChartPoint c{w / 2, h / 2};
    EXPECT_GT(purple(c.x - 10, c.y - 10, c.x + 10, c.y + 10), 20) << "the ferry's symbol at the view's centre";
    EXPECT_GT(purple(c.x + 8, c.y - 3, c.x + 20, c.y + 3), 5) << "its heading line to the east";
    const int plain = purple(0, 0, w, h);
    const int east = purple(c.x + 25, c.y - 3, w, c.y + 3);
    b.plotter.dde().ApplySettings([&] {
        DdeSettings s = b.plotter.dde().Settings();
        s.Predictors = true;
        s.PTime = 6;  // a mile at ten knots
        return s;
    }());
    EXPECT_GT(purple(c.x + 25, c.y - 3, w, c.y + 3), east + 4) << "the predictor runs on east";
    EXPECT_GT(purple(0, 0, w, h), plain);

    // The pop-up over the ferry offers the targets found; away from any, nothing.
    QMenu over, away;
    b.shell.Dde()->AddTargetEntries(over, c);
    b.shell.Dde()->AddTargetEntries(away, {5, 5});
    EXPECT_NE(over.findChild<QAction*>("MTargetsFound"), nullptr);
    EXPECT_EQ(away.findChild<QAction*>("MTargetsFound"), nullptr);
    QStringList rows;
    WhenUp<FrmFindTarget>([&](FrmFindTarget* d) {
        for (int i = 0; i < d->lstTargets->count(); ++i) rows << d->lstTargets->item(i)->text();
        d->cmdOK->click();
    });
    over.findChild<QAction*>("MTargetsFound")->trigger();
    EXPECT_EQ(rows, QStringList{"DDE: FERRY - 4"});
    EXPECT_EQ(b.plotter.instruments().console.LabDDE[0], "FERRY");

    // DDE > Find Target lists them all; a double click picks.
    rows.clear();
    WhenUp<FrmFindTarget>([&](FrmFindTarget* d) {
        for (int i = 0; i < d->lstTargets->count(); ++i) rows << d->lstTargets->item(i)->text();
        d->lstTargets->setCurrentRow(1);
        emit d->lstTargets->itemDoubleClicked(d->lstTargets->item(1));
    });
    b.Action("mnuDDEFind")->trigger();
    EXPECT_EQ(rows, (QStringList{"DDE: FERRY - 4", "DDE: BUOY - 9"}));
    EXPECT_EQ(b.plotter.instruments().console.LabDDE[0], "BUOY");
    EXPECT_EQ(b.plotter.instruments().console.LabDDE[2], "0.0");
    EXPECT_EQ(b.plotter.dde().Settings().ActiveTarget, 9);
}
