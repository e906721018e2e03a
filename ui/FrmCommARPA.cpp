#include "ui/FrmCommARPA.h"

#include <QFormLayout>
#include <QVBoxLayout>

#include "platform/qt/QtServices.h"

namespace ombra {

FrmCommARPA::FrmCommARPA(QWidget* owner, const ArpaDialogValues& v, std::function<void(int16_t, int32_t)> testPort)
    : QDialog(owner) {
    setObjectName("FrmCommARPA");
    setWindowTitle(" ARPA Settings");
    setModal(true);
    auto* top = new QVBoxLayout(this);
    ChkARPAEnable = NamedCheck(this, top, "ChkARPAEnable", "Enable ARPA Input", v.Enable);
    auto* form = new QFormLayout;
    top->addLayout(form);
    port_ = AddPortRows(this, form, {"TxtARPAPort", "Comm Port for ARPA", "TxtARPADevice", "TxtARPABaudRate"}, v.Port,
                        v.Device, v.BaudRate);
    TxtARPAPort = port_.port;
    TxtARPADevice = port_.device;
    TxtARPABaudRate = port_.baud;
    TxtARPADelay = new QLineEdit(Q(v.Delay), this);
    TxtARPADelay->setObjectName("TxtARPADelay");
    form->addRow("Timeout (Seconds)", TxtARPADelay);
    ChkARPANames = NamedCheck(this, top, "ChkARPANames", "ARPA Target Names", v.Names);
    ComTestPort = TestPortButton(this, port_, std::move(testPort));
    OkCancel buttons = AddOkCancel(this, top, {ComTestPort});
    ComOK = buttons.ok;
    ComCancel = buttons.cancel;
    ConnectOkCancel(this, buttons, &result_);
}

ArpaDialogValues FrmCommARPA::Values() const {
    ArpaDialogValues v;
    v.Enable = ChkARPAEnable->isChecked();
    v.Port = S(TxtARPAPort->text());
    v.Device = S(TxtARPADevice->text());
    v.BaudRate = S(TxtARPABaudRate->currentText());
    v.Delay = S(TxtARPADelay->text());
    v.Names = ChkARPANames->isChecked();
    return v;
}

}  // namespace ombra
