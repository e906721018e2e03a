#include "ui/DialogParts.h"

#include <QHBoxLayout>
#include <QPixmap>
#include <QRadioButton>

#include "core/Val.h"
#include "instruments/InstrumentDialogs.h"
#include "navobjects/CommonWP.h"
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

void PortRows::SetEnabled(bool on) const {
    port->setEnabled(on);
    device->setEnabled(on);
    baud->setEnabled(on);
}

PortRows AddPortRows(QWidget* parent, QFormLayout* form, const PortNames& names, const std::string& port,
                     const std::string& device, const std::string& baud) {
    PortRows rows{};
    rows.port = new QLineEdit(Q(port), parent);
    rows.port->setObjectName(names.port);
    form->addRow(names.portCaption, rows.port);
    rows.device = new QLineEdit(Q(device), parent);
    rows.device->setObjectName(names.device);
    form->addRow("Device", rows.device);
    rows.baud = BaudRateCombo(parent, names.baud, baud);
    form->addRow("Baud Rate", rows.baud);
    return rows;
}

QPushButton* TestPortButton(QWidget* parent, const PortRows& rows, std::function<void(int16_t, int32_t)> testPort) {
    auto* b = new QPushButton("Test Port Settings", parent);
    b->setObjectName("ComTestPort");
    QObject::connect(b, &QPushButton::clicked, parent, [rows, testPort] {
        if (testPort) testPort(int16_t(Val(S(rows.port->text()))), int32_t(Val(S(rows.baud->currentText()))));
    });
    return b;
}

OkCancel AddOkCancel(QWidget* parent, QBoxLayout* into, std::initializer_list<QPushButton*> leading) {
    OkCancel b{};
    b.ok = new QPushButton("OK", parent);
    b.ok->setObjectName("ComOK");
    b.cancel = new QPushButton("Cancel", parent);
    b.cancel->setObjectName("ComCancel");
    auto* row = new QHBoxLayout;
    for (QPushButton* l : leading) row->addWidget(l);
    row->addStretch(1);
    row->addWidget(b.ok);
    row->addWidget(b.cancel);
    into->addLayout(row);
    return b;
}

void ConnectOkCancel(QDialog* dialog, const OkCancel& buttons, QString* result) {
    QObject::connect(buttons.ok, &QPushButton::clicked, dialog, [dialog, result] {
        if (result) *result = "OK";
        dialog->accept();
    });
    QObject::connect(buttons.cancel, &QPushButton::clicked, dialog, &QDialog::reject);
}

QCheckBox* NamedCheck(QWidget* parent, QLayout* into, const char* name, const QString& caption, bool on) {
    auto* c = new QCheckBox(caption, parent);
    c->setObjectName(name);
    c->setChecked(on);
    if (into) into->addWidget(c);
    return c;
}

QButtonGroup* RadioGroup(QWidget* parent, QLayout* into, const QStringList& names, const QStringList& captions,
                         int checked) {
    auto* group = new QButtonGroup(parent);
    for (int i = 0; i < captions.size(); ++i) {
        auto* r = new QRadioButton(captions[i], parent);
        if (i < names.size()) r->setObjectName(names[i]);
        group->addButton(r, i);
        into->addWidget(r);
    }
    if (QAbstractButton* b = group->button(checked)) b->setChecked(true);
    return group;
}

QComboBox* ColourCombo(QWidget* parent, const char* name, int colour) {
    auto* c = new QComboBox(parent);
    c->setObjectName(name);
    for (int i = 0; i < kColourCount; ++i) {
        QPixmap swatch(16, 12);
        Rgb rgb = TableColour(int16_t(i));
        swatch.fill(QColor(int((rgb >> 16) & 255), int((rgb >> 8) & 255), int(rgb & 255)));
        c->addItem(QIcon(swatch), kColourNames[i]);
    }
    c->setCurrentIndex(colour >= 0 && colour < kColourCount ? colour : 0);
    return c;
}

}  // namespace ombra
