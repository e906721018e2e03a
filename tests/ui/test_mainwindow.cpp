#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QMenuBar>
#include <QRadioButton>
#include <QSettings>
#include <cstdlib>

#include "core/Paths.h"
#include "platform/fake/ManualClock.h"
#include "platform/fake/MemorySettings.h"
#include "platform/qt/QtServices.h"
#include "plotter/Plotter.h"
#include "tests/support/TestSupport.h"
#include "tests/ui/UiFixture.h"
#include "ui/FrmMain.h"
#include "ui/FrmOptions.h"
#include "ui/MenuTree.h"
#include "ui/QtShell.h"

using namespace ombra;

namespace {
using test::App;
using test::Window;

QStringList Captions(QMenu* menu) {
    QStringList out;
    for (QAction* a : menu->actions())
        if (!a->isSeparator()) out << a->text();
    return out;
}
}  // namespace

TEST(FrmMain, StartsWithItsCaptionMenusStatusBarAndTimer) {
    Window w;
    ASSERT_TRUE(w.Start());
    FrmMain* m = w.shell.Main();
    ASSERT_NE(m, nullptr);
    EXPECT_EQ(m->windowTitle(), "Vestrane Tarnel");
    EXPECT_TRUE(m->isVisible());
    EXPECT_TRUE(m->MainTimer.isActive());
    EXPECT_EQ(m->MainTimer.interval(), 100);

    QStringList tops;
    for (QAction* a : m->menuBar()->actions()) tops << a->text();
    EXPECT_EQ(tops, QStringList({"&Chart", "Ve&ssel", "&View", "&General", "&Run", "&WayPoints", "&Routes",
                                 "&Boundaries", "&Logs", "&Tides", "Tools", "&Help"}));
    auto* chart = m->findChild<QMenu*>("MChart");
    ASSERT_NE(chart, nullptr);
    EXPECT_EQ(Captions(chart), QStringList({"Chart &Manager", "&Print", "E&xit"}));
    auto* print = m->findChild<QMenu*>("MChart_Print");
    ASSERT_NE(print, nullptr);
    EXPECT_EQ(Captions(print).size(), 9);
    EXPECT_FALSE(m->Action("MPrintTileCompleteChart")->isVisible());  // TileCompleteChart is 0
    auto* gps = m->findChild<QMenu*>("MGPS");
    ASSERT_NE(gps, nullptr);
    EXPECT_EQ(gps->title(), "&GPS ");
    EXPECT_EQ(Captions(m->findChild<QMenu*>("MWayPtsAdd")), QStringList({"By &Mouse", "By &Keyboard", "By &GPS"}));
    EXPECT_EQ(Captions(m->findChild<QMenu*>("MPalette")), QStringList({"&Day", "&Twilight", "&Night"}));
    EXPECT_FALSE(m->Action("MRunEbbline")->isVisible());  // not installed here
    EXPECT_TRUE(m->Action("MOptions")->isEnabled());
    EXPECT_TRUE(m->Action("MExit")->isEnabled());

    // One tick puts the clock on panel 5.
    w.clock.SetTime(21, 7, 30);
    w.plotter.Tick();
    EXPECT_EQ(m->InfoPanelText(5), "21:07");
    m->SetWarnings("CHART NOT WGS84");
    EXPECT_TRUE(m->findChild<QLabel*>("SBarWarnings")->isVisibleTo(m));
    m->SetWarnings("");
    EXPECT_FALSE(m->findChild<QLabel*>("SBarWarnings")->isVisibleTo(m));
}

TEST(FrmMain, ClosingStoresThePlacementAndRunsTheExitSequence) {
    Window w;
    ASSERT_TRUE(w.Start());
    FrmMain* m = w.shell.Main();
    m->showNormal();
    m->setGeometry(40, 50, 900, 700);
    m->close();
    EXPECT_TRUE(w.plotter.Exited());
    EXPECT_TRUE(w.shell.Ended());
    EXPECT_FALSE(m->MainTimer.isActive());
    EXPECT_EQ(w.plotter.registry().GetSetting(Key::WindowState), "0");
    EXPECT_EQ(w.plotter.registry().GetSetting(Key::WindowWidth), "900");
    EXPECT_EQ(w.plotter.registry().GetSetting(Key::WindowHeight), "700");
}

TEST(FrmMain, MaximisedKeepsOnlyItsStateAndMinimisedNothing) {
    Window w;
    ASSERT_TRUE(w.Start());
    w.plotter.registry().SaveSetting(Key::WindowWidth, "640");
    w.plotter.Close(2, 0, 0, 1920, 1080);
    EXPECT_EQ(w.plotter.registry().GetSetting(Key::WindowState), "2");
    EXPECT_EQ(w.plotter.registry().GetSetting(Key::WindowWidth), "640");
    Window v;
    ASSERT_TRUE(v.Start());
    int writes = v.store.writes;
    v.plotter.Close(1, 0, 0, 10, 10);
    EXPECT_EQ(v.store.writes, writes);
}

TEST(FrmOptions, TypedRangesFollowTheChosenUnitAndAreStoredInNauticalMiles) {
    App();
    MemorySettings store;
    std::string product = "Tarnel";
    Registry reg(store, product);
    Units units;
    FrmOptions dlg(nullptr, LoadOptions(reg, units));
    EXPECT_EQ(dlg.TxtWPAlarmRange->text(), "0.50");
    EXPECT_EQ(dlg.LabWPAlarmRangeUnits->text(), "NM");
    EXPECT_EQ(dlg.findChild<QRadioButton*>("OptDistance_2")->text(), "&Kilometres");
    EXPECT_EQ(dlg.ChkForceWGS84->text(), "Display all coordinates in WGS-84 Datum");
    EXPECT_EQ(dlg.ComboGPSStartOpt->itemText(1), "Do Not Start GPS");
    dlg.findChild<QRadioButton*>("OptDistance_2")->click();
    EXPECT_EQ(dlg.LabWPAlarmRangeUnits->text(), "Km");
    EXPECT_EQ(dlg.LabXTEAlarmRangeUnits->text(), "Km");
    EXPECT_EQ(dlg.TxtWPAlarmRange->text(), "0.93");  // the same half mile, in kilometres
    dlg.TxtWPAlarmRange->setText("1,852");
    dlg.findChild<QRadioButton*>("OptVesselWaypoint_1")->click();
    dlg.ComOK->click();
    EXPECT_EQ(dlg.Result(), "OK");
    OptionsValues v = dlg.Values();
    SaveOptions(reg, units, v);
    EXPECT_NEAR(std::stod(reg.GetSetting(Key::WaypointAlarmRange)), 1.0, 1e-6);
    EXPECT_EQ(reg.GetSetting(Key::UnitsDistance), "Kilometres");
    EXPECT_EQ(reg.GetSetting(Key::CoDist2), "True");
    EXPECT_EQ(reg.GetSetting(Key::CoDist1), "False");

    FrmOptions cancelled(nullptr, LoadOptions(reg, units));
    cancelled.ComCancel->click();
    EXPECT_EQ(cancelled.Result(), "Cancel");
}

TEST(Program, AnUnattendedRunWritesAScreenshotAndLeavesCleanly) {
    test::TempDir home;
    const char* bin = std::getenv("OMBRA_BIN");
    ASSERT_NE(bin, nullptr);
    std::string shot = home / "shot.png";
    setenv("OMBRA_HOME", home.path().c_str(), 1);
    test::RunResult r = test::Run({bin, "--screenshot", shot, "--after", "1.2"});
    unsetenv("OMBRA_HOME");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    QImage img(QString::fromStdString(shot));
    ASSERT_FALSE(img.isNull());
    EXPECT_EQ(img.width(), 1280);
    EXPECT_EQ(img.height(), 800);
    // The settings went to OMBRA_HOME, and the exit sequence stored the placement.
    QSettings ini(QString::fromStdString(home / "Vestrane.ini"), QSettings::IniFormat);
    EXPECT_EQ(ini.value("Tarnel/WindowState").toString(), "0");
    EXPECT_EQ(ini.value("Tarnel/UserDataPath").toString().toStdString(), home.path() + "/");
    EXPECT_TRUE(FolderExists(home / "dat"));
}
