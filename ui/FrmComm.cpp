#include "ui/FrmComm.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QRadioButton>
#include <QVBoxLayout>

#include "core/Val.h"
#include "platform/qt/QtServices.h"

namespace ombra {

QComboBox* BaudRateCombo(QWidget* parent, const char* name, const std::string& rate) {
    auto* c = new QComboBox(parent);
    c->setObjectName(name);
    c->setEditable(true);
    for (const char* r : kBaudRates) c->addItem(r);
    c->setCurrentText(Q(rate));
    return c;
}

FrmComm::FrmComm(QWidget* owner, const GPSDialogValues& v, std::function<bool()> confirmAutopilot,
                 std::function<void(int16_t, int32_t)> testPort)
    : QDialog(owner) {
    setObjectName("FrmComm");
    setWindowTitle("GPS Settings");
    setModal(true);
    auto* top = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    top->addLayout(form);
    TxtGPSPort = new QLineEdit(Q(v.Port), this);
    TxtGPSPort->setObjectName("TxtGPSPort");
    form->addRow("Comm Port for GPS", TxtGPSPort);
    TxtGPSDevice = new QLineEdit(Q(v.Device), this);
    TxtGPSDevice->setObjectName("TxtGPSDevice");
    TxtGPSDevice->setToolTip("/dev/ttyUSB0, tcp://host:port, udp://:port or file://log.nmea");
    form->addRow("Device", TxtGPSDevice);
    TxtGPSBaudRate = BaudRateCombo(this, "TxtGPSBaudRate", v.BaudRate);
    form->addRow("Baud Rate", TxtGPSBaudRate);
    TxtGPSDelay = new QLineEdit(Q(v.Delay), this);
    TxtGPSDelay->setObjectName("TxtGPSDelay");
    form->addRow("Timeout (Seconds)", TxtGPSDelay);
    TxtWPMode = new QComboBox(this);
    TxtWPMode->setObjectName("TxtWPMode");
    for (const char* m : kWPModes) TxtWPMode->addItem(m);
    TxtWPMode->setCurrentIndex(v.WPMode);
    form->addRow("Waypoint Format", TxtWPMode);

    auto* sentences = new QGroupBox("Position Sentence", this);
    auto* sl = new QVBoxLayout(sentences);
    OptSentence = new QButtonGroup(sentences);
    const char* names[] = {"OptGGA", "OptGLL", "OptRMC", "OptAIVDO"};
    const char* captions[] = {"GGA / VTG", "GLL / VTG", "RMC", "AIVDO (AIS)"};
    for (int i = 0; i < 4; ++i) {
        auto* r = new QRadioButton(captions[i], sentences);
        r->setObjectName(names[i]);
        OptSentence->addButton(r, i);
        sl->addWidget(r);
    }
    if (auto* b = OptSentence->button(v.PositionSentence)) b->setChecked(true);
    top->addWidget(sentences);

    auto check = [&](const char* name, const char* caption, bool on) {
        auto* c = new QCheckBox(caption, this);
        c->setObjectName(name);
        c->setChecked(on);
        top->addWidget(c);
        return c;
    };
    chkChecksums = check("chkChecksums", "Reject sentences with bad checksums", v.Checksums);
    ChkDiffGPS = check("ChkDiffGPS", "Differential GPS", v.DiffGPS);
    ChkAutoPilot = check("ChkAutoPilot", "Autopilot output", v.AutoPilot);
    ChkAutoAdvance = check("ChkAutoAdvance", "Advance to the next route point automatically", v.AutoAdvance);
    connect(ChkAutoPilot, &QCheckBox::clicked, this, [this, confirmAutopilot](bool on) {
        if (on && confirmAutopilot && !confirmAutopilot()) ChkAutoPilot->setChecked(false);
    });

    auto* buttons = new QHBoxLayout;
    top->addLayout(buttons);
    ComTestPort = new QPushButton("Test Port Settings", this);
    ComTestPort->setObjectName("ComTestPort");
    ComOK = new QPushButton("OK", this);
    ComOK->setObjectName("ComOK");
    ComOK->setDefault(true);
    ComCancel = new QPushButton("Cancel", this);
    ComCancel->setObjectName("ComCancel");
    buttons->addWidget(ComTestPort);
    buttons->addStretch(1);
    buttons->addWidget(ComOK);
    buttons->addWidget(ComCancel);
    connect(ComTestPort, &QPushButton::clicked, this, [this, testPort] {
        if (testPort) testPort(int16_t(Val(S(TxtGPSPort->text()))), int32_t(Val(S(TxtGPSBaudRate->currentText()))));
    });
    connect(ComOK, &QPushButton::clicked, this, [this] {
        result_ = "OK";
        accept();
    });
    connect(ComCancel, &QPushButton::clicked, this, &QDialog::reject);
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
