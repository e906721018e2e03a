#include "ui/FrmComm.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QVBoxLayout>

#include "platform/qt/QtServices.h"
#include "ui/DialogParts.h"

namespace ombra {

FrmComm::FrmComm(QWidget* owner, const GPSDialogValues& v, std::function<bool()> confirmAutopilot,
                 std::function<void(int16_t, int32_t)> testPort)
    : QDialog(owner) {
    setObjectName("FrmComm");
    setWindowTitle("GPS Settings");
    setModal(true);
    auto* top = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    top->addLayout(form);
    PortRows port = AddPortRows(this, form, {"TxtGPSPort", "Comm Port for GPS", "TxtGPSDevice", "TxtGPSBaudRate"},
                                v.Port, v.Device, v.BaudRate);
    TxtGPSPort = port.port;
    TxtGPSDevice = port.device;
    TxtGPSDevice->setToolTip("/dev/ttyUSB0, tcp://host:port, udp://:port or file://log.nmea");
    TxtGPSBaudRate = port.baud;
    TxtGPSDelay = new QLineEdit(Q(v.Delay), this);
    TxtGPSDelay->setObjectName("TxtGPSDelay");
    form->addRow("Timeout (Seconds)", TxtGPSDelay);
    TxtWPMode = new QComboBox(this);
    TxtWPMode->setObjectName("TxtWPMode");
    for (const char* m : kWPModes) TxtWPMode->addItem(m);
    TxtWPMode->setCurrentIndex(v.WPMode);
    form->addRow("Waypoint Format", TxtWPMode);

    auto* sentences = new QGroupBox("Position Sentence", this);
    OptSentence = RadioGroup(sentences, new QVBoxLayout(sentences), {"OptGGA", "OptGLL", "OptRMC", "OptAIVDO"},
                             {"GGA / VTG", "GLL / VTG", "RMC", "AIVDO (AIS)"}, v.PositionSentence);
    top->addWidget(sentences);

    chkChecksums = NamedCheck(this, top, "chkChecksums", "Reject sentences with bad checksums", v.Checksums);
    ChkDiffGPS = NamedCheck(this, top, "ChkDiffGPS", "Differential GPS", v.DiffGPS);
    ChkAutoPilot = NamedCheck(this, top, "ChkAutoPilot", "Autopilot output", v.AutoPilot);
    ChkAutoAdvance =
        NamedCheck(this, top, "ChkAutoAdvance", "Advance to the next route point automatically", v.AutoAdvance);
    connect(ChkAutoPilot, &QCheckBox::clicked, this, [this, confirmAutopilot](bool on) {
        if (on && confirmAutopilot && !confirmAutopilot()) ChkAutoPilot->setChecked(false);
    });

    ComTestPort = TestPortButton(this, port, std::move(testPort));
    OkCancel buttons = AddOkCancel(this, top, {ComTestPort});
    ComOK = buttons.ok;
    ComOK->setDefault(true);
    ComCancel = buttons.cancel;
    ConnectOkCancel(this, buttons, &result_);
}

GPSDialogValues FrmComm::Values() const {
    GPSDialogValues v;
    v.Port = S(TxtGPSPort->text());
    v.Device = S(TxtGPSDevice->text());
    v.BaudRate = S(TxtGPSBaudRate->currentText());
    v.Delay = S(TxtGPSDelay->text());
    v.WPMode = int16_t(TxtWPMode->currentIndex());
    v.PositionSentence = OptSentence->checkedId() < 0 ? 0 : OptSentence->checkedId();
    v.Checksums = chkChecksums->isChecked();
    v.DiffGPS = ChkDiffGPS->isChecked();
    v.AutoPilot = ChkAutoPilot->isChecked();
    v.AutoAdvance = ChkAutoAdvance->isChecked();
    return v;
}

}  // namespace ombra
