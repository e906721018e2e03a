#include "ui/FrmCommGyro.h"

#include <QFormLayout>
#include <QVBoxLayout>

#include "platform/qt/QtServices.h"

namespace ombra {

FrmCommGyro::FrmCommGyro(QWidget* owner, const GyroDialogValues& v, std::function<void(int16_t, int32_t)> testPort)
    : QDialog(owner) {
    setObjectName("FrmCommGyro");
    setWindowTitle("Gyro Settings");
    setModal(true);
    auto* top = new QVBoxLayout(this);
    OptGyro = RadioGroup(this, top, {"OptNoGyro", "OptUseGPSPort", "OptUseGyroPort"},
                         {"No Gyro, use the Course Over Ground", "Use Gyro data from GPS port, if available",
                          "Use a seperate port for Gyro data"},
                         v.Choice);
    auto* form = new QFormLayout;
    top->addLayout(form);
    port_ = AddPortRows(this, form, {"TxtGyroPort", "Comm Port for Gyro", "TxtGyroDevice", "TxtGyroBaudRate"}, v.Port,
                        v.Device, v.BaudRate);
    TxtGyroPort = port_.port;
    TxtGyroDevice = port_.device;
    TxtGyroBaudRate = port_.baud;
    ComTestPort = TestPortButton(this, port_, std::move(testPort));
    OkCancel buttons = AddOkCancel(this, top, {ComTestPort});
    ComOK = buttons.ok;
    ComCancel = buttons.cancel;
    connect(OptGyro, &QButtonGroup::idClicked, this, [this](int) { ChoiceChanged(); });
    ConnectOkCancel(this, buttons, &result_);
    ChoiceChanged();
}

// The port rows and the tester are for a gyro on a port of its own.
void FrmCommGyro::ChoiceChanged() {
    bool own = OptGyro->checkedId() == 2;
    port_.SetEnabled(own);
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
