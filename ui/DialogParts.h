// DialogParts: the pieces the plotter's dialogs share, so that a port
// chooser, a row of OK and Cancel or a set of named radio buttons looks and
// behaves the same in every window that has one.
//
// Every control is named (setObjectName) as the dialogs have always named
// it, so tests and the help text find it by that name. Each builder makes
// its controls children of `parent`; the layouts passed in take them.
//
//   auto port = AddPortRows(this, form, {"TxtGyroPort", "Comm Port for Gyro", "TxtGyroDevice",
//                                        "TxtGyroBaudRate"}, values.Port, values.Device, values.BaudRate);
//   OkCancel b = AddOkCancel(this, top, {testButton});
#pragma once
#include <QBoxLayout>
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QStringList>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <string>

namespace ombra {

// A combo box of the baud rates, editable, showing `rate`: a rate not in
// the list is shown as typed, so an unusual stored rate is never lost.
QComboBox* BaudRateCombo(QWidget* parent, const char* name, const std::string& rate);

// The names and caption of a port's rows.
struct PortNames {
    const char* port;         // the port number's edit box
    const char* portCaption;  // its row caption, "Comm Port for GPS"
    const char* device;       // the device's edit box
    const char* baud;         // the baud rate combo box
};

// The port-selection rows of a port dialog: the port number, the device
// behind it and the baud rate, added to `form` in that order.
struct PortRows {
    QLineEdit* port;
    QLineEdit* device;
    QComboBox* baud;
    void SetEnabled(bool on) const;
};
PortRows AddPortRows(QWidget* parent, QFormLayout* form, const PortNames& names, const std::string& port,
                     const std::string& device, const std::string& baud);

// "Test Port Settings" (named "ComTestPort"): on a click `testPort` gets
// the port number and rate as typed (numeric prefixes; 0 for text). A null
// `testPort` makes the button do nothing.
QPushButton* TestPortButton(QWidget* parent, const PortRows& rows, std::function<void(int16_t, int32_t)> testPort);

// The closing row: the `leading` buttons on the left, then OK ("ComOK")
// and Cancel ("ComCancel") on the right, added to `into`.
struct OkCancel {
    QPushButton* ok;
    QPushButton* cancel;
};
OkCancel AddOkCancel(QWidget* parent, QBoxLayout* into, std::initializer_list<QPushButton*> leading = {});
// The usual meaning of the row: OK sets `*result` to "OK" and accepts,
// Cancel rejects and leaves `*result` as it was.
void ConnectOkCancel(QDialog* dialog, const OkCancel& buttons, QString* result);

// A check box named `name`, ticked when `on`, added to `into` (when not null).
QCheckBox* NamedCheck(QWidget* parent, QLayout* into, const char* name, const QString& caption, bool on = false);

// Radio buttons in a group, one per caption, named by `names` (as many as
// the captions), with ids 0, 1, ... in order and added to `into`. The button
// with id `checked` is ticked; an id out of range ticks none.
QButtonGroup* RadioGroup(QWidget* parent, QLayout* into, const QStringList& names, const QStringList& captions,
                         int checked = -1);

// The colour chooser of routes and boundaries: the table's colours with a
// swatch each, showing `colour` (the first colour when out of range).
QComboBox* ColourCombo(QWidget* parent, const char* name, int colour);

}  // namespace ombra
