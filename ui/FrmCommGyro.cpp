#include "ui/FrmCommGyro.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QRadioButton>
#include <QVBoxLayout>

#include "core/Val.h"
#include "platform/qt/QtServices.h"
#include "ui/FrmComm.h"

namespace ombra {

FrmCommGyro::FrmCommGyro(QWidget* owner, const GyroDialogValues& v, std::function<void(int16_t, int32_t)> testPort)
    : QDialog(owner) {
    setObjectName("FrmCommGyro");
    setWindowTitle("Gyro Settings");
    setModal(true);
    auto* top = new QVBoxLayout(this);
    OptGyro = new QButtonGroup(this);
    const char* names[] = {"OptNoGyro", "OptUseGPSPort", "OptUseGyroPort"};
    const char* captions[] = {"No Gyro, use the Course Over Ground", "Use Gyro data from GPS port, if available",
                              "Use a seperate port for Gyro data"};
    for (int i = 0; i < 3; ++i) {
        auto* r = new QRadioButton(captions[i], this);
        r->setObjectName(names[i]);
        OptGyro->addButton(r, i);
        top->addWidget(r);
    }
    if (auto* b = OptGyro->button(v.Choice)) b->setChecked(true);
    auto* form = new QFormLayout;
    top->addLayout(form);
    TxtGyroPort = new QLineEdit(Q(v.Port), this);
    TxtGyroPort->setObjectName("TxtGyroPort");
    form->addRow("Comm Port for Gyro", TxtGyroPort);
    TxtGyroDevice = new QLineEdit(Q(v.Device), this);
    TxtGyroDevice->setObjectName("TxtGyroDevice");
    form->addRow("Device", TxtGyroDevice);
    TxtGyroBaudRate = BaudRateCombo(this, "TxtGyroBaudRate", v.BaudRate);
    form->addRow("Baud Rate", TxtGyroBaudRate);
    auto* buttons = new QHBoxLayout;
    top->addLayout(buttons);
    ComTestPort = new QPushButton("Test Port Settings", this);
    ComTestPort->setObjectName("ComTestPort");
    ComOK = new QPushButton("OK", this);
    ComOK->setObjectName("ComOK");
    ComCancel = new QPushButton("Cancel", this);
    ComCancel->setObjectName("ComCancel");
    buttons->addWidget(ComTestPort);
    buttons->addStretch(1);
    buttons->addWidget(ComOK);
    buttons->addWidget(ComCancel);
    connect(OptGyro, &QButtonGroup::idClicked, this, [this](int) { ChoiceChanged(); });
    connect(ComTestPort, &QPushButton::clicked, this, [this, testPort] {
        if (testPort) testPort(int16_t(Val(S(TxtGyroPort->text()))), int32_t(Val(S(TxtGyroBaudRate->currentText()))));
    });
    connect(ComOK, &QPushButton::clicked, this, [this] {
        result_ = "OK";
        accept();
    });
    connect(ComCancel, &QPushButton::clicked, this, &QDialog::reject);
    ChoiceChanged();
}

void FrmCommGyro::ChoiceChanged() {
    bool own = OptGyro->checkedId() == 2;
    TxtGyroPort->setEnabled(own);
    TxtGyroDevice->setEnabled(own);
    TxtGyroBaudRate->setEnabled(own);
    ComTestPort->setEnabled(own);
}

GyroDialogValues FrmCommGyro::Values() const {
    GyroDialogValues v;
    v.Choice = OptGyro->checkedId() < 0 ? 0 : OptGyro->checkedId();
    v.Port = S(TxtGyroPort->text());
    v.Device = S(TxtGyroDevice->text());
    v.BaudRate = S(TxtGyroBaudRate->currentText());
    return v;
}

}  // namespace ombra
