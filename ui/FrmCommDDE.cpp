#include "ui/FrmCommDDE.h"

#include <QFormLayout>
#include <QVBoxLayout>

#include "core/Format.h"
#include "core/Val.h"
#include "platform/qt/QtServices.h"
#include "ui/DialogParts.h"

namespace ombra {

namespace {
QLineEdit* Box(QWidget* parent, const char* name, const std::string& text) {
    auto* e = new QLineEdit(Q(text), parent);
    e->setObjectName(name);
    return e;
}
}  // namespace

FrmCommDDE::FrmCommDDE(QWidget* owner, const DdeSettings& s) : QDialog(owner) {
    setObjectName("FrmCommDDE");
    setWindowTitle("DDE Options");
    setModal(true);
    auto* top = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    top->addLayout(form);
    txtInterval = Box(this, "txtInterval", NumberText(s.Interval));
    form->addRow("Update Interval:", txtInterval);
    chkDDELabels = NamedCheck(this, nullptr, "chkDDELabels", "Target Labels", s.Labels);
    form->addRow(chkDDELabels);
    chkPredictors = NamedCheck(this, nullptr, "chkPredictors", "Target Predictors", s.Predictors);
    txtPTime = Box(this, "txtPTime", NumberText(s.PTime));
    form->addRow(chkPredictors, txtPTime);
    chkParseErrors = NamedCheck(this, nullptr, "chkParseErrors", "Parse Errors", s.ParseErrors);
    form->addRow(chkParseErrors);
    txtActiveTarget = Box(this, "txtActiveTarget", std::to_string(s.ActiveTarget));
    form->addRow("Active Target:", txtActiveTarget);
    txtPort = Box(this, "txtPort", std::to_string(s.Port));
    txtPort->setToolTip("The link listens on 127.0.0.1 at this port, for programs on this computer only");
    form->addRow("Link Port (this computer only):", txtPort);
    OkCancel buttons = AddOkCancel(this, top);
    ComOK = buttons.ok;
    ComCancel = buttons.cancel;
    ConnectOkCancel(this, buttons, &result_);
    connect(chkPredictors, &QCheckBox::toggled, txtPTime, &QWidget::setEnabled);
    txtPTime->setEnabled(s.Predictors);
}

DdeSettings FrmCommDDE::Values() const {
    DdeSettings s;
    s.Interval = Val(S(txtInterval->text()));
    s.Labels = chkDDELabels->isChecked();
    s.Predictors = chkPredictors->isChecked();
    s.PTime = Val(S(txtPTime->text()));
    s.ParseErrors = chkParseErrors->isChecked();
    s.ActiveTarget = int(Val(S(txtActiveTarget->text())));
    const double port = Val(S(txtPort->text()));
    s.Port = port >= 1 && port <= 65535 ? uint16_t(port) : 0;
    return s;
}

}  // namespace ombra
