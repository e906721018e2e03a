// The AIS windows as the navigator reaches them: the Vessel > GPS menu's
// AIS Settings, target list and centring, the chart pop-up's target entry,
// the console's AIS frame and the closest-approach alarm window.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QTimer>

#include "navmath/RLGC.h"
#include "tests/alarms/FixFeed.h"
#include "tests/ui/UiFixture.h"
#include "ui/AisCommands.h"
#include "ui/AlarmCommands.h"
#include "ui/FrmAisTargets.h"
#include "ui/FrmAlarm.h"
#include "ui/FrmCommAIS.h"
#include "ui/FrmMain.h"

using namespace ombra;

namespace {

struct WithWindows {
    QtDialogs shellDialogs{true};
    QtShell shell{shellDialogs, true};
    WithWindows() { test::App(); }
};
// Own vessel a mile east of a Class B station (5.5 kn east) and a Class A
// with its static data further off.
struct Traffic : WithWindows, test::Sailing {
    const LatLong own = DeadReckon(LatLong{-1.25 * 3600.0, 50.75 * 3600.0}, 90.0, 1.0);
    Traffic() : Sailing(shell) {
        shell.SetPlotter(&plotter);
        Set("AISEnable", "True");
        Set("AISPort", "2");
    }
    void Second() {
        At(own, 0.0, 0.0);
        QApplication::processEvents();
    }
    void Hear() {
        for (const char* s : {"!AIVDM,2,1,3,A,53P7@hP29E44l48?401<D61LU@<P000000000016<PD5:5GfNB4kmE20CD53,0*2D\r\n",
                              "!AIVDM,2,2,3,A,kP000000000,2*1C\r\n", "!AIVDM,1,1,,A,13P7@hP2QTwrug0M4FP725b`0000,0*76\r\n",
                              "!AIVDM,1,1,,A,B3P7@tP0=ovODP7@`E0pCwg5h000,0*37\r\n"})
            comms.Feed(2, s);
        Second();
    }
};

}  // namespace

TEST(AisWindows, TheTargetListFromTheMenuSortsAndCentres) {
    Traffic t;
    ASSERT_TRUE(t.Start());
    t.Hear();
    FrmMain* m = t.shell.Main();
    for (const char* entry : {"MAISSettings", "MAISTargets", "MAISCentre"}) ASSERT_NE(m->Action(entry), nullptr) << entry;
    m->Action("MAISTargets")->trigger();
    auto* list = m->findChild<FrmAisTargets*>("FrmAisTargets");
    ASSERT_NE(list, nullptr);
    EXPECT_TRUE(list->isVisible());
    EXPECT_FALSE(list->isModal());
    ASSERT_EQ(list->LstTargets->rowCount(), 2);
    // By CPA, the closest first: the Class B on a collision course.
    EXPECT_EQ(list->Sort(), AisSort::Cpa);
    EXPECT_EQ(list->LstTargets->item(0, FrmAisTargets::MMSI)->text(), "235000050");
    EXPECT_EQ(list->LstTargets->item(1, FrmAisTargets::Name)->text(), "SEA WITCH");
    EXPECT_EQ(list->LstTargets->item(1, FrmAisTargets::Destination)->text(), "SOUTHAMPTON");
    EXPECT_EQ(list->LstTargets->item(1, FrmAisTargets::CallSign)->text(), "MABC1");
    // The Name heading sorts by name: the MMSI stands for the nameless one.
    emit list->LstTargets->horizontalHeader()->sectionClicked(FrmAisTargets::Name);
    EXPECT_EQ(list->LstTargets->item(0, FrmAisTargets::Name)->text(), "235000050");
    emit list->LstTargets->horizontalHeader()->sectionClicked(FrmAisTargets::Name);
    // Centre: no chart is open, so nothing moves and the console stays as it was.
    list->LstTargets->selectRow(1);
    list->ComCentre->click();
    EXPECT_EQ(t.plotter.aisTargets().ActiveTarget, -1);
}

TEST(AisWindows, ThePopupEntryShowsTheTargetInTheConsoleFrame) {
    Traffic t;
    ASSERT_TRUE(t.Start());
    t.Hear();
    auto* frame = t.shell.Main()->findChild<QGroupBox*>("FrameAIS");
    ASSERT_NE(frame, nullptr);
    EXPECT_FALSE(frame->isVisibleTo(t.shell.Main()));
    // What the pop-up's entry does for a target under the mouse.
    std::vector<AisRow> rows = t.plotter.aisTargets().Rows(AisSort::Name);
    ASSERT_EQ(rows.size(), 2u);
    QMenu popup;
    t.shell.Ais()->AddPopupEntries(popup, {-500, -500});
    EXPECT_TRUE(popup.actions().isEmpty()) << "nothing drawn there, no entry";
    t.plotter.aisTargets().SetActiveTarget(rows[1].Index);
    t.Second();
    EXPECT_TRUE(frame->isVisibleTo(t.shell.Main()));
    auto* mmsi = t.shell.Main()->findChild<QLabel*>("LabAIS_0");
    ASSERT_NE(mmsi, nullptr);
    EXPECT_EQ(mmsi->text(), "235000002");
    EXPECT_EQ(t.shell.Main()->findChild<QLabel*>("LabAIS_18")->text(), "SOUTHAMPTON");
}

TEST(AisWindows, SettingsFromTheMenuAndTheCpaAlarmWindow) {
    Traffic t;
    ASSERT_TRUE(t.Start());
    // The dialog from the menu: tick the alarm with limits that catch the
    // Class B (0 miles in about 40 minutes), OK.
    QTimer::singleShot(0, [] {
        auto* dlg = qobject_cast<FrmCommAIS*>(QApplication::activeModalWidget());
        if (!dlg) return;
        for (QWidget* w : std::vector<QWidget*>{dlg->TxtAISPort, dlg->TxtAISBaudRate, dlg->ComTestPort})
            EXPECT_TRUE(w->isEnabled());
        dlg->ChkAISUseGPSPort->setChecked(true);
        for (QWidget* w : std::vector<QWidget*>{dlg->TxtAISPort, dlg->TxtAISBaudRate, dlg->ComTestPort})
            EXPECT_FALSE(w->isEnabled());
        dlg->ChkAISUseGPSPort->setChecked(false);
        EXPECT_FALSE(dlg->ChkCpaAlarm->isChecked()) << "off by default";
        dlg->ChkCpaAlarm->setChecked(true);
        dlg->TxtCpaRange->setText("0.5");
        dlg->TxtCpaTime->setText("60");
        dlg->ComOK->click();
    });
    t.shell.Main()->Action("MAISSettings")->trigger();
    EXPECT_TRUE(t.plotter.aisTargets().Settings.CpaAlarm);
    EXPECT_EQ(t.plotter.registry().GetSetting(Key::AISCpaTime), "60.0");
    t.Hear();
    FrmAlarm* w = t.shell.Alarms()->Window(AlarmForm::Cpa);
    ASSERT_NE(w, nullptr);
    EXPECT_EQ(w->objectName(), "FrmAlarmCPA");
    EXPECT_TRUE(w->isVisible());
    EXPECT_FALSE(w->isModal());
    EXPECT_NE(w->LabMsg->text().indexOf("235000050"), -1);
    w->Buttons.front()->click();
    EXPECT_FALSE(w->isVisible());
    t.Second();
    EXPECT_FALSE(w->isVisible()) << "once per target";
}
