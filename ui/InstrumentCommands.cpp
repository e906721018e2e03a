#include "ui/InstrumentCommands.h"

#include "instruments/InstrumentDialogs.h"
#include "plotter/Plotter.h"
#include "ui/ConsolePanel.h"
#include "ui/FrmComm.h"
#include "ui/FrmCommAutopilot.h"
#include "ui/FrmCommGyro.h"
#include "ui/FrmCommTest.h"
#include "ui/FrmConsole.h"
#include "ui/FrmLostGPS.h"
#include "ui/FrmMain.h"
#include "ui/FrmSatInfo.h"
#include "ui/FrmVessel.h"

namespace ombra {

InstrumentCommands::InstrumentCommands(FrmMain& main, Plotter& plotter) : main_(main), p_(plotter) {
    console_ = new ConsolePanel(&main_, p_.instruments().console);
    main_.SetConsoleWidget(console_);
}

void InstrumentCommands::Bind() {
    main_.Bind("MGPSOn", [this] { p_.StartGPS(); });
    main_.Bind("MGPSOff", [this] { p_.StopGPS(); });
    main_.Bind("MGPSSettings", [this] { GPSSettings(); });
    main_.Bind("MGyroSettings", [this] { GyroSettings(); });
    main_.Bind("MAutopilotSettings", [this] { AutopilotSettings(); });
    main_.Bind("MSatInfo", [this] { SatelliteInfo(); });
    main_.Bind("MVesselProperties", [this] { VesselProperties(); });
    main_.Bind("MCourseToSteer", [this] { p_.instruments().vessel.CourseToSteerCommand(); });
    main_.Bind("MConsoleOptions", [this] { ConsoleOptions(); });
    main_.Bind("MConsole", [this] { console_->setVisible(!console_->isVisible()); });
    SetGPSMenuState(false);
}

// While connected the port settings stay as the connection opened them: a
// changed port takes effect when the GPS is next started.
void InstrumentCommands::SetGPSMenuState(bool on) {
    if (QAction* a = main_.Action("MGPSOn")) a->setEnabled(!on);
    if (QAction* a = main_.Action("MGPSOff")) a->setEnabled(on);
    if (QAction* a = main_.Action("MGPSSettings")) a->setEnabled(!on);
    if (QAction* a = main_.Action("MGyroSettings")) a->setEnabled(!on);
}

void InstrumentCommands::ShowCommDialog(int which) {
    switch (CommDialog(which)) {
        case CommDialog::GPS: GPSSettings(); break;
        case CommDialog::Gyro: GyroSettings(); break;
        case CommDialog::Autopilot: AutopilotSettings(); break;
        case CommDialog::SatInfo: SatelliteInfo(); break;
        default: break;
    }
}

void InstrumentCommands::TestPort(int16_t port, int32_t baud) {
    p_.instruments().comm.TestPort = port;
    p_.instruments().comm.TestBaudRate = baud;
    FrmCommTest t(&main_, p_.instruments().comm);
    if (t.Load()) t.exec();
}

void InstrumentCommands::GPSSettings() {
    auto& ins = p_.instruments();
    if (ins.comm.Connected()) return;
    FrmComm dlg(
        &main_, LoadGPSDialog(p_.registry(), ins.settings),
        [this] { return ConfirmAutopilotOn(p_.instruments().leg.Kind != 0, p_.services().dialogs, p_.globals().ProductName); },
        [this](int16_t port, int32_t baud) { TestPort(port, baud); });
    dlg.exec();
    if (dlg.Result() != "Cancel") SaveGPSDialog(p_.registry(), ins.settings, dlg.Values());
}

void InstrumentCommands::GyroSettings() {
    auto& ins = p_.instruments();
    if (ins.comm.Connected()) return;
    FrmCommGyro dlg(&main_, LoadGyroDialog(p_.registry(), ins.settings),
                    [this](int16_t port, int32_t baud) { TestPort(port, baud); });
    dlg.exec();
    if (dlg.Result() != "Cancel") SaveGyroDialog(p_.registry(), ins.settings, dlg.Values());
}

void InstrumentCommands::AutopilotSettings() {
    auto& s = p_.instruments().settings;
    FrmCommAutopilot dlg(&main_, AutopilotFromBits(s.AutopilotSettings));
    dlg.exec();
    if (dlg.Result() != "Cancel") {
        s.AutopilotSettings = AutopilotBits(dlg.Values());
        p_.registry().SaveSetting(Key::AutopilotSettings, std::to_string(s.AutopilotSettings));
    }
}

void InstrumentCommands::SatelliteInfo() {
    if (!sats_) {
        sats_ = new FrmSatInfo(&main_, p_.instruments().decoder.Sats, p_.instruments().decoder.GGA);
        sats_->setAttribute(Qt::WA_DeleteOnClose);
    }
    sats_->show();
    sats_->raise();
}

void InstrumentCommands::VesselProperties() {
    auto& ins = p_.instruments();
    FrmVessel dlg(&main_, LoadVesselDialog(ins.vessel, p_.units()), [this](const VesselDialogValues& v) {
        return p_.ApplyVesselDialog(v);
    });
    dlg.exec();
}

void InstrumentCommands::ConsoleOptions() {
    FrmConsole dlg(&main_, p_.instruments().console);
    dlg.exec();
    if (dlg.Result() != "Cancel") {
        dlg.Apply(p_.instruments().console);
        p_.instruments().console.SaveConsoleSettings(p_.registry());
        console_->Refresh();
    }
}

void InstrumentCommands::ShowLostGPS(bool up) {
    if (up) {
        if (!lost_) lost_ = new FrmLostGPS(&main_);
        lost_->ShowNotice();
    } else if (lost_) {
        lost_->TakeDown();
    }
}

void InstrumentCommands::RefreshSatInfo() {
    if (sats_ && sats_->isVisible()) sats_->Refresh();
}

void InstrumentCommands::ConsoleChanged() {
    if (console_) console_->Refresh();
}

}  // namespace ombra
