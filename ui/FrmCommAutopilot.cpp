#include "ui/FrmCommAutopilot.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QRadioButton>
#include <QVBoxLayout>

namespace ombra {

FrmCommAutopilot::FrmCommAutopilot(QWidget* owner, const AutopilotDialogValues& v) : QDialog(owner) {
    setObjectName("FrmCommAutopilot");
    setWindowTitle("Autopilot Settings");
    setModal(true);
    auto* top = new QVBoxLayout(this);
    auto check = [&](const char* name, const char* caption, bool on) {
        auto* c = new QCheckBox(caption, this);
        c->setObjectName(name);
        c->setChecked(on);
        top->addWidget(c);
        return c;
    };
    ChkRMC = check("ChkRMC", "RMC (GPS / Transit Data)", v.RMC);
    ChkGLL = check("ChkGLL", "GLL (Geographic Position Lat / Lon)", v.GLL);
    ChkVTG = check("ChkVTG", "VTG (Course / Speed Over Ground)", v.VTG);
    ChkGGA = check("ChkGGA", "GGA (GPS Fix Data)", v.GGA);
    ChkRMB = check("ChkRMB", "RMB (Navigation Information)", v.RMB);
    ChkBWC = check("ChkBWC", "BWC / BWR (Bearing / Distance to Waypoint)", v.BWC);
    ChkBOD = check("ChkBOD", "BOD (Bearing - Origin to Destination)", v.BOD);
    ChkXTE = check("ChkXTE", "XTE (Cross Track Error - Measured)", v.XTE);
    ChkWPL = check("ChkWPL", "WPL (Waypoint Location - Origin/Destination)", v.WPL);
    auto* ap = new QGroupBox(this);
    auto* al = new QVBoxLayout(ap);
    OptAPx = new QButtonGroup(ap);
    const char* names[] = {"OptAPB", "OptAPA", "OptAP"};
    const char* captions[] = {"APB (Autopilot Sentence \"B\")", "APA (Autopilot Sentence \"A\")",
                              "None (No Autopilot \"APx\" Sentence)"};
    for (int i = 0; i < 3; ++i) {
        auto* r = new QRadioButton(captions[i], ap);
        r->setObjectName(names[i]);
        OptAPx->addButton(r, i);
        al->addWidget(r);
    }
    if (auto* b = OptAPx->button(v.APSentence)) b->setChecked(true);
    top->addWidget(ap);
    ChkForceNMEA15 = check("ChkForceNMEA15", "Force NMEA V1.5 Sentence Format", v.ForceNMEA15);
    ChkAPChecksums = check("ChkAPChecksums", "Enable Checksums", v.APChecksums);
    auto* buttons = new QHBoxLayout;
    top->addLayout(buttons);
    ComOK = new QPushButton("OK", this);
    ComOK->setObjectName("ComOK");
    ComCancel = new QPushButton("Cancel", this);
    ComCancel->setObjectName("ComCancel");
    buttons->addStretch(1);
    buttons->addWidget(ComOK);
    buttons->addWidget(ComCancel);
    connect(ComOK, &QPushButton::clicked, this, [this] {
        result_ = "OK";
        accept();
    });
    connect(ComCancel, &QPushButton::clicked, this, &QDialog::reject);
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
