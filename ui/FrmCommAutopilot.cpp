#include "ui/FrmCommAutopilot.h"

#include <QGroupBox>
#include <QVBoxLayout>

#include "ui/DialogParts.h"

namespace ombra {

FrmCommAutopilot::FrmCommAutopilot(QWidget* owner, const AutopilotDialogValues& v) : QDialog(owner) {
    setObjectName("FrmCommAutopilot");
    setWindowTitle("Autopilot Settings");
    setModal(true);
    auto* top = new QVBoxLayout(this);
    ChkRMC = NamedCheck(this, top, "ChkRMC", "RMC (GPS / Transit Data)", v.RMC);
    ChkGLL = NamedCheck(this, top, "ChkGLL", "GLL (Geographic Position Lat / Lon)", v.GLL);
    ChkVTG = NamedCheck(this, top, "ChkVTG", "VTG (Course / Speed Over Ground)", v.VTG);
    ChkGGA = NamedCheck(this, top, "ChkGGA", "GGA (GPS Fix Data)", v.GGA);
    ChkRMB = NamedCheck(this, top, "ChkRMB", "RMB (Navigation Information)", v.RMB);
    ChkBWC = NamedCheck(this, top, "ChkBWC", "BWC / BWR (Bearing / Distance to Waypoint)", v.BWC);
    ChkBOD = NamedCheck(this, top, "ChkBOD", "BOD (Bearing - Origin to Destination)", v.BOD);
    ChkXTE = NamedCheck(this, top, "ChkXTE", "XTE (Cross Track Error - Measured)", v.XTE);
    ChkWPL = NamedCheck(this, top, "ChkWPL", "WPL (Waypoint Location - Origin/Destination)", v.WPL);
    auto* ap = new QGroupBox(this);
    OptAPx = RadioGroup(ap, new QVBoxLayout(ap), {"OptAPB", "OptAPA", "OptAP"},
                        {"APB (Autopilot Sentence \"B\")", "APA (Autopilot Sentence \"A\")",
                         "None (No Autopilot \"APx\" Sentence)"},
                        v.APSentence);
    top->addWidget(ap);
    ChkForceNMEA15 = NamedCheck(this, top, "ChkForceNMEA15", "Force NMEA V1.5 Sentence Format", v.ForceNMEA15);
    ChkAPChecksums = NamedCheck(this, top, "ChkAPChecksums", "Enable Checksums", v.APChecksums);
    OkCancel buttons = AddOkCancel(this, top);
    ComOK = buttons.ok;
    ComCancel = buttons.cancel;
    ConnectOkCancel(this, buttons, &result_);
}

AutopilotDialogValues FrmCommAutopilot::Values() const {
    AutopilotDialogValues v;
    v.RMC = ChkRMC->isChecked();
    v.GLL = ChkGLL->isChecked();
    v.VTG = ChkVTG->isChecked();
    v.GGA = ChkGGA->isChecked();
    v.RMB = ChkRMB->isChecked();
    v.BWC = ChkBWC->isChecked();
    v.BOD = ChkBOD->isChecked();
    v.XTE = ChkXTE->isChecked();
    v.APSentence = OptAPx->checkedId() < 0 ? 2 : OptAPx->checkedId();
    v.ForceNMEA15 = ChkForceNMEA15->isChecked();
    v.APChecksums = ChkAPChecksums->isChecked();
    v.WPL = ChkWPL->isChecked();
    return v;
}

}  // namespace ombra
