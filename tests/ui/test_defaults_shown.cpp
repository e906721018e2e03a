// What a navigator sees on a first run: the plotter starts on an empty
// settings store and each settings window is opened the way its menu opens
// it. Every named control of every window is checked against the table:
// a control with no row, or a row with no control, fails as surely as a
// wrong value.
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QTimer>
#include <map>
#include <string>

#include "instruments/InstrumentDialogs.h"
#include "plotter/Plotter.h"
#include "tests/ui/UiFixture.h"
#include "ui/FrmComm.h"
#include "ui/FrmCommAutopilot.h"
#include "ui/FrmCommGyro.h"
#include "ui/FrmConsole.h"
#include "ui/FrmMain.h"
#include "ui/FrmOptions.h"
#include "ui/FrmVessel.h"

using namespace ombra;

namespace {

// A plotter started with nothing stored.
struct FirstRun : test::Window {
    bool started = Start();
};

// What each named control shows: a tick box "[x]" or "[ ]", a radio
// button "(o)" or "( )", the text of an edit box, a combo box or a named
// label; " (disabled)" follows a control the user cannot change.
using Shown = std::map<std::string, std::string>;

Shown ShownBy(const QWidget* window) {
    Shown out;
    for (const QWidget* c : window->findChildren<QWidget*>()) {
        std::string name = c->objectName().toStdString();
        if (name.empty() || name.starts_with("qt_")) continue;
        std::string v;
        if (auto* b = qobject_cast<const QCheckBox*>(c)) v = b->isChecked() ? "[x]" : "[ ]";
        else if (auto* r = qobject_cast<const QRadioButton*>(c)) v = r->isChecked() ? "(o)" : "( )";
        else if (auto* k = qobject_cast<const QComboBox*>(c)) v = k->currentText().toStdString();
        else if (auto* e = qobject_cast<const QLineEdit*>(c)) v = e->text().toStdString();
        else if (auto* l = qobject_cast<const QLabel*>(c)) v = l->text().toStdString();
        else continue;  // group boxes, tables and buttons show no setting
        if (!c->isEnabled()) v += " (disabled)";
        out[name] = v;
    }
    return out;
}

void ExpectShown(const Shown& shown, const Shown& want, const char* window) {
    for (const auto& [name, value] : want) {
        auto it = shown.find(name);
        if (it == shown.end()) {
            ADD_FAILURE() << window << " has no control " << name;
            continue;
        }
        EXPECT_EQ(it->second, value) << window << " " << name;
    }
    for (const auto& [name, value] : shown)
        EXPECT_TRUE(want.count(name)) << window << " shows " << name << " = \"" << value << "\" with no expected value";
}
}  // namespace

TEST(FirstRunDefaults, TheOptionsDialogShowsTheFactorySettingsOnEveryTab) {
    FirstRun run;
    ASSERT_TRUE(run.started);
    // The dialog is opened as the Options menu opens it, read while it is up
    // and cancelled.
    Shown shown;
    bool seen = false;
    QTimer::singleShot(0, [&] {
        auto* dlg = run.shell.Main()->findChild<FrmOptions*>("FrmOptions");
        if (!dlg) return;
        seen = true;
        shown = ShownBy(dlg);
        dlg->ComCancel->click();
    });
    run.shell.RunOptions();
    ASSERT_TRUE(seen);
    const Shown want = {
        // Display: units, what the chart shows, labels of new objects.
        {"OptDistance_0", "(o)"}, {"OptDistance_1", "( )"}, {"OptDistance_2", "( )"},
        {"OptSpeed_0", "(o)"}, {"OptSpeed_1", "( )"}, {"OptSpeed_2", "( )"},
        {"OptAngle_0", "(o)"}, {"OptAngle_1", "( )"}, {"OptAngle_2", "( )"},
        {"ChkShowZoomRect", "[x]"}, {"ChkActiveCoordDisplay", "[x]"},
        {"OptRangeDP_0", "(o)"}, {"OptRangeDP_1", "( )"},
        {"ComboDefWaypointLabel", "Name Only"}, {"ComboDefRouteLabel", "Name Only"},
        {"ComboDefBoundaryLabel", "No Label"},
        // Alarms: ranges in nautical miles, as the unit above says.
        {"ChkWaypointArrival", "[x]"}, {"TxtWPAlarmRange", "0.50"}, {"LabWPAlarmRangeUnits", "NM"},
        {"ChKXTE", "[x]"}, {"TxtXTEAlarmRange", "0.30"}, {"LabXTEAlarmRangeUnits", "NM"},
        {"ChkPredictorTriggers", "[ ]"}, {"ChkSilentAlarms", "[ ]"},
        // Rhumb line everywhere.
        {"OptVesselCursor_0", "(o)"}, {"OptVesselCursor_1", "( )"},
        {"OptVesselWaypoint_0", "(o)"}, {"OptVesselWaypoint_1", "( )"},
        {"OptRBL_0", "(o)"}, {"OptRBL_1", "( )"},
        {"OptRoutesDefault_0", "(o)"}, {"OptRoutesDefault_1", "( )"},
        // Start-up.
        {"ComboGPSStartOpt", "Prompt For GPS Mode"}, {"ChkAutoChart", "[ ]"}, {"ChkForceWGS84", "[ ]"},
        {"TxtAutoscroll", "0"},
    };
    ExpectShown(shown, want, "FrmOptions");
}

TEST(FirstRunDefaults, ThePortAndVesselWindowsShowTheFactorySettings) {
    FirstRun run;
    ASSERT_TRUE(run.started);
    Plotter& p = run.plotter;
    Instruments& ins = p.instruments();
    struct Window {
        const char* name;
        std::unique_ptr<QDialog> dialog;
        Shown want;
    } windows[] = {
        {"FrmComm",
         std::make_unique<FrmComm>(nullptr, LoadGPSDialog(p.registry(), ins.settings), nullptr, nullptr),
         {{"TxtGPSPort", "1"}, {"TxtGPSDevice", "/dev/ttyS0"}, {"TxtGPSBaudRate", "4800"}, {"TxtGPSDelay", "20"},
          {"TxtWPMode", "NMEA 0183"}, {"OptGGA", "(o)"}, {"OptGLL", "( )"}, {"OptRMC", "( )"}, {"OptAIVDO", "( )"},
          {"chkChecksums", "[ ]"}, {"ChkDiffGPS", "[ ]"}, {"ChkAutoPilot", "[ ]"}, {"ChkAutoAdvance", "[ ]"}}},
        // Heading from the GPS port: the gyro's own port cannot be changed.
        {"FrmCommGyro",
         std::make_unique<FrmCommGyro>(nullptr, LoadGyroDialog(p.registry(), ins.settings), nullptr),
         {{"OptNoGyro", "( )"}, {"OptUseGPSPort", "(o)"}, {"OptUseGyroPort", "( )"},
          {"TxtGyroPort", "2 (disabled)"}, {"TxtGyroDevice", "/dev/ttyS1 (disabled)"},
          {"TxtGyroBaudRate", "4800 (disabled)"}}},
        // The eight sentences of the burst and APB; no WPL, forced format or checksums.
        {"FrmCommAutopilot",
         std::make_unique<FrmCommAutopilot>(nullptr, AutopilotFromBits(ins.settings.AutopilotSettings)),
         {{"ChkRMC", "[x]"}, {"ChkGLL", "[x]"}, {"ChkVTG", "[x]"}, {"ChkGGA", "[x]"}, {"ChkRMB", "[x]"},
          {"ChkBWC", "[x]"}, {"ChkBOD", "[x]"}, {"ChkXTE", "[x]"}, {"ChkWPL", "[ ]"},
          {"OptAPB", "(o)"}, {"OptAPA", "( )"}, {"OptAP", "( )"},
          {"ChkForceNMEA15", "[ ]"}, {"ChkAPChecksums", "[ ]"}}},
        {"FrmVessel",
         std::make_unique<FrmVessel>(nullptr, LoadVesselDialog(ins.vessel, p.units()), nullptr),
         {{"TxtName", "Vestrane"}, {"ChkNameDisplay", "[ ]"}, {"ChkPredictor", "[ ]"}, {"TxtPredictorTime", "5"},
          {"ChkDR", "[ ]"}, {"TxtCourse", "0.0"}, {"TxtSpeed", "0.0"}, {"TxtTideSet", "0"}, {"TxtTideDrift", "0.0"},
          {"ChkTrackOn", "[x]"}, {"ChkTrackTime", "[x]"}, {"TxtTrackTime", "5"}, {"ChkTrackCourse", "[x]"},
          {"TxtTrackCourse", "10"}, {"ChkTrackDistance", "[ ]"}, {"TxtTrackDistance", "5"},
          {"ChkTrackDisplay", "[x]"}}},
    };
    for (Window& w : windows) ExpectShown(ShownBy(w.dialog.get()), w.want, w.name);
}

TEST(FirstRunDefaults, TheConsoleOptionsShowTheConsoleAndEveryRow) {
    FirstRun run;
    ASSERT_TRUE(run.started);
    FrmConsole dlg(nullptr, run.plotter.instruments().console);
    Shown shown = ShownBy(&dlg);
    // Every row of every page is on; pages by name, rows counted (a row's
    // second line, the ETA date or the XTE side, has no box of its own).
    std::map<std::string, int> rowsOn;
    for (const auto& [name, value] : shown) {
        if (name == "ChkConsoleVisible") continue;
        EXPECT_EQ(value, "[x]") << name;
        rowsOn[name.substr(0, name.find('_'))] += value == "[x]";
    }
    EXPECT_EQ(shown["ChkConsoleVisible"], "[x]");
    const std::map<std::string, int> want = {{"ChkVessel", 7}, {"ChkCursor", 4}, {"ChkWaypoint", 10}, {"ChkTide", 2},
                                             {"ChkAIS", 22},   {"ChkARPA", 7},   {"ChkDDE", 4}};
    EXPECT_EQ(rowsOn, want);
}
