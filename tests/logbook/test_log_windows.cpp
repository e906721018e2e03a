// The log's windows as the navigator reaches them: the Logs menu, the
// day's window with its grids and header, and the entry window.
#include <gtest/gtest.h>

#include <QApplication>
#include <QGroupBox>
#include <QHeaderView>
#include <QTimer>
#include <QToolBar>
#include <cstdlib>

#include "core/Paths.h"
#include "tests/ui/UiFixture.h"
#include "ui/FrmLog.h"
#include "ui/FrmLogEntry.h"
#include "ui/FrmMain.h"
#include "ui/LogCommands.h"

using namespace ombra;

namespace {
// Answers the next entry window: fills the narrative and presses OK, or Cancel.
void AnswerEntry(const QString& narrative, bool ok, QString* caption = nullptr, QString* waypoint = nullptr) {
    QTimer::singleShot(0, [=] {
        auto* dlg = qobject_cast<FrmLogEntry*>(QApplication::activeModalWidget());
        ASSERT_NE(dlg, nullptr);
        if (caption) *caption = dlg->windowTitle();
        if (waypoint) *waypoint = dlg->LabWaypoint->text();
        dlg->TxtNarrative->setText(narrative);
        dlg->TxtBarometer->setText("1012");
        (ok ? dlg->findChild<QPushButton*>("ComOK") : dlg->findChild<QPushButton*>("ComCancel"))->click();
    });
}
bool Enabled(FrmMain* m, const char* name) { return m->Action(name)->isEnabled(); }
}  // namespace

TEST(LogWindows, TheLogsMenuTheDaysWindowAndItsEntries) {
    test::Window w;
    ASSERT_TRUE(w.Start());
    FrmMain* m = w.shell.Main();
    ASSERT_NE(m, nullptr);
    // No log yet today: nothing to view or write into.
    EXPECT_FALSE(Enabled(m, "MLogsView"));
    EXPECT_FALSE(Enabled(m, "MLogsEntry"));
    EXPECT_TRUE(Enabled(m, "MLogsNew"));
    EXPECT_TRUE(Enabled(m, "MLogsOpen"));

    m->Action("MLogsNew")->trigger();
    FrmLog* log = w.shell.Logs()->Window();
    ASSERT_NE(log, nullptr);
    EXPECT_TRUE(log->isVisible());
    EXPECT_EQ(log->windowTitle(), "Log: 23 November 2026 - Day Log");
    EXPECT_TRUE(Enabled(m, "MLogsView"));
    EXPECT_FALSE(Enabled(m, "MLogsNew"));
    EXPECT_EQ(log->ChkSaveTrack->text(), "Save track  file to disk");
    EXPECT_EQ(log->TxtAutoInterval->text(), "60");
    EXPECT_FALSE(log->TxtAutoInterval->isEnabled());
    log->ChkAutoLog->click();
    EXPECT_TRUE(log->TxtAutoInterval->isEnabled());
    EXPECT_NE(log->findChild<QGroupBox*>("FrameLocalPort"), nullptr);
    EXPECT_EQ(log->findChild<QGroupBox*>("FrameConstantPort")->title(), "Constant Port");
    // Headings and column widths from the column positions; widths follow the mouse.
    struct Col {
        QTableWidget* grid;
        int column;
        const char* heading;
        int width;
    } cols[] = {{log->PicLogEntry, 0, "Time", 60},          {log->PicLogEntry, 5, "Next Waypoint", 100},
                {log->PicLogEntry, 11, "Barometer", 80},    {log->PicForecast, 1, "Sea Area", 70},
                {log->PicForecast, 4, "Weather", 70}};
    // Widths keep the proportions of the column positions, at least as wide
    // as they, and the time fits its column whatever the font.
    const double scale = log->PicLogEntry->columnWidth(0) / 60.0;
    EXPECT_GE(scale, 1.0);
    EXPECT_GE(log->PicLogEntry->columnWidth(0), log->PicLogEntry->fontMetrics().horizontalAdvance("00:00:00"));
    for (const Col& c : cols) {
        EXPECT_EQ(c.grid->horizontalHeaderItem(c.column)->text(), c.heading);
        EXPECT_NEAR(c.grid->columnWidth(c.column), c.width * scale, 1.0) << c.heading;
        EXPECT_EQ(c.grid->horizontalHeader()->sectionResizeMode(c.column), QHeaderView::Interactive);
    }

    // An entry from the window, with a vessel under way.
    w.plotter.instruments().vessel.EnterDR(90.0, 6.0);
    w.plotter.Tick();
    QString caption, waypoint;
    AnswerEntry("Reefed, wind rising", true, &caption, &waypoint);
    log->ComNewLogEntry->click();
    EXPECT_EQ(caption, "Log Entry: 23/11/2026 12:00");
    EXPECT_EQ(waypoint, "None");
    ASSERT_EQ(log->PicLogEntry->rowCount(), 1);
    EXPECT_EQ(log->PicLogEntry->item(0, 12)->text(), "Reefed, wind rising");
    EXPECT_EQ(log->PicLogEntry->item(0, 11)->text(), "1012");
    // From the menu or the toolbar, cancelled: nothing added.
    AnswerEntry("never", false);
    m->Action("MLogsEntry")->trigger();
    EXPECT_EQ(log->PicLogEntry->rowCount(), 1);
    ASSERT_TRUE(m->NavToolbar()->actions().contains(m->Action("MLogsEntry")));
    // An automatic entry appears in the open window as it comes.
    w.plotter.AddLogEntry(LogEntryKind::PoorGPS);
    ASSERT_EQ(log->PicLogEntry->rowCount(), 2);
    EXPECT_EQ(log->PicLogEntry->item(1, 12)->text(), "Poor GPS signal.");
    // Edit the first, delete the second.
    log->PicLogEntry->selectRow(0);
    w.clock.Advance(3600.0);
    AnswerEntry("Reefed twice", true, &caption);
    log->ComEditLogEntry->click();
    EXPECT_EQ(caption, "Log Entry: 23/11/2026 12:00");  // the entry's time, not the clock's
    EXPECT_EQ(log->PicLogEntry->item(0, 12)->text(), "Reefed twice");

    // A forecast row takes the time, and its cells are typed in.
    log->ComNewForecast->click();
    ASSERT_EQ(log->PicForecast->rowCount(), 1);
    EXPECT_EQ(log->PicForecast->item(0, 0)->text(), "13:00");
    log->PicForecast->item(0, 1)->setText("Plymouth");
    EXPECT_EQ(w.plotter.logs().Day.Forecasts[0].SeaArea, "Plymouth");

    if (const char* shots = std::getenv("OMBRA_SHOTS")) log->grab().save(QString(shots) + "/FrmLog.png");
    log->PicLogEntry->selectRow(1);
    log->ComDeleteLogEntry->click();
    EXPECT_EQ(log->PicLogEntry->rowCount(), 1);

    // Cancel keeps the header as it was; OK copies and saves.
    log->TxtCurrPort->setText("Tarnel");
    log->ComCancel->click();
    EXPECT_EQ(w.plotter.logs().Day.Header.CurrentPort, "");
    m->Action("MLogsView")->trigger();
    log = w.shell.Logs()->Window();
    ASSERT_NE(log, nullptr);
    EXPECT_EQ(log->TxtCurrPort->text(), "");
    log->TxtCurrPort->setText("Tarnel");
    log->TxtPortTide[7]->setText("15:31");
    log->ComOK->click();
    const std::string file = test::ReadFile(NativePath(ResolvePath(w.plotter.logs().Folder() + "20261123.log")));
    EXPECT_EQ(file.substr(0, 30), "#2026-11-23#,\"Tarnel\",\"\"\r\n\"\",\"");
    EXPECT_NE(file.find("\"15:31\",\"\",\"\"\r\n1,1\r\n"), std::string::npos) << file;
    EXPECT_NE(file.find("\"Reefed twice\"\r\n\"13:00\"\r\n\"Plymouth\""), std::string::npos) << file;
    // The older day's list needs the vessel off line first.
    m->Action("MLogsOpen")->trigger();
    EXPECT_TRUE(w.plotter.logs().LogIsToday());
}

// "Save track  file to disk" is the navigator's choice until changed, not
// only for the run in which it was made.
TEST(LogWindows, TheSaveTrackSwitchIsKeptForTheNextStart) {
    test::Window w;
    ASSERT_TRUE(w.Start());
    w.shell.Main()->Action("MLogsNew")->trigger();
    FrmLog* log = w.shell.Logs()->Window();
    ASSERT_NE(log, nullptr);
    EXPECT_TRUE(log->ChkSaveTrack->isChecked());
    log->ChkSaveTrack->click();
    log->ComOK->click();
    EXPECT_FALSE(w.plotter.logs().SaveTrack);

    test::Window next;
    next.store.values = w.store.values;
    ASSERT_TRUE(next.Start());
    EXPECT_FALSE(next.plotter.logs().SaveTrack);
}
