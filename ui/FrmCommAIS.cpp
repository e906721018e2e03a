#include "ui/FrmCommAIS.h"

#include <QFormLayout>
#include <QVBoxLayout>

#include "platform/qt/QtServices.h"

namespace ombra {

namespace {
QLineEdit* NamedEdit(QWidget* parent, const char* name, const std::string& text) {
    auto* e = new QLineEdit(Q(text), parent);
    e->setObjectName(name);
    return e;
}
}  // namespace

FrmCommAIS::FrmCommAIS(QWidget* owner, const AisDialogValues& v, std::function<void(int16_t, int32_t)> testPort,
                       std::function<void()> clearTargets)
    : QDialog(owner) {
    setObjectName("FrmCommAIS");
    setWindowTitle("AIS Settings");
    setModal(true);
    auto* top = new QVBoxLayout(this);
    ChkAISEnable = NamedCheck(this, top, "ChkAISEnable", "Enable AIS Input", v.Enable);
    ChkAISUseGPSPort = NamedCheck(this, top, "ChkAISUseGPSPort", "Use AIS data from GPS port", v.UseGPSPort);
    auto* form = new QFormLayout;
    top->addLayout(form);
    port_ = AddPortRows(this, form, {"TxtAISPort", "Comm Port for AIS", "TxtAISDevice", "TxtAISBaudRate"}, v.Port,
                        v.Device, v.BaudRate);
    TxtAISPort = port_.port;
    TxtAISDevice = port_.device;
    TxtAISBaudRate = port_.baud;
    ComTestPort = TestPortButton(this, port_, std::move(testPort));
    ChkAISNames = NamedCheck(this, top, "ChkAISNames", "Display Names", v.Names);
    auto* limits = new QFormLayout;
    top->addLayout(limits);
    TxtTargetTimeout = NamedEdit(this, "TxtTargetTimeout", v.Timeout);
    limits->addRow("Timeout (Seconds)", TxtTargetTimeout);
    ChkCpaAlarm = NamedCheck(this, top, "ChkCpaAlarm", "CPA Alarm", v.CpaAlarm);
    auto* cpa = new QFormLayout;
    top->addLayout(cpa);
    TxtCpaRange = NamedEdit(this, "TxtCpaRange", v.CpaRange);
    TxtCpaTime = NamedEdit(this, "TxtCpaTime", v.CpaTime);
    cpa->addRow("CPA Range (NM)", TxtCpaRange);
    cpa->addRow("TCPA Limit (Minutes)", TxtCpaTime);
    ClearTargets = new QPushButton("Clear ALL", this);
    ClearTargets->setObjectName("ClearTargets");
    connect(ClearTargets, &QPushButton::clicked, this, [clearTargets] {
        if (clearTargets) clearTargets();
    });
    OkCancel buttons = AddOkCancel(this, top, {ComTestPort, ClearTargets});
    ComOK = buttons.ok;
    ComCancel = buttons.cancel;
    connect(ChkAISUseGPSPort, &QCheckBox::toggled, this, [this](bool) { SourceChanged(); });
    connect(ChkCpaAlarm, &QCheckBox::toggled, this, [this](bool on) {
        TxtCpaRange->setEnabled(on);
        TxtCpaTime->setEnabled(on);
    });
    TxtCpaRange->setEnabled(v.CpaAlarm);
    TxtCpaTime->setEnabled(v.CpaAlarm);
    ConnectOkCancel(this, buttons, &result_);
    SourceChanged();
}

void FrmCommAIS::SourceChanged() {
    bool own = !ChkAISUseGPSPort->isChecked();
    port_.SetEnabled(own);
    ComTestPort->setEnabled(own);
}

AisDialogValues FrmCommAIS::Values() const {
    AisDialogValues v;
    v.Enable = ChkAISEnable->isChecked();
    v.UseGPSPort = ChkAISUseGPSPort->isChecked();
    v.Port = S(TxtAISPort->text());
    v.Device = S(TxtAISDevice->text());
    v.BaudRate = S(TxtAISBaudRate->currentText());
    v.Names = ChkAISNames->isChecked();
    v.Timeout = S(TxtTargetTimeout->text());
    v.CpaAlarm = ChkCpaAlarm->isChecked();
    v.CpaRange = S(TxtCpaRange->text());
    v.CpaTime = S(TxtCpaTime->text());
    return v;
}

}  // namespace ombra
