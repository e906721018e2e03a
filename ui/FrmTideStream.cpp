#include "ui/FrmTideStream.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>
#include <cmath>

#include "core/Format.h"
#include "platform/qt/QtServices.h"
#include "plotter/Plotter.h"
#include "tides/TideDisplay.h"
#include "ui/DialogParts.h"

namespace ombra {

namespace {
QToolButton* Arrow(QWidget* parent, const char* name, Qt::ArrowType dir) {
    auto* b = new QToolButton(parent);
    b->setObjectName(name);
    b->setArrowType(dir);
    b->setAutoRepeat(true);
    return b;
}
QWidget* SpinRow(QWidget* parent, QLineEdit* edit, QToolButton* up, QToolButton* down) {
    auto* w = new QWidget(parent);
    auto* h = new QHBoxLayout(w);
    h->setContentsMargins(0, 0, 0, 0);
    h->addWidget(edit);
    auto* arrows = new QVBoxLayout;
    arrows->setSpacing(0);
    arrows->addWidget(up);
    arrows->addWidget(down);
    h->addLayout(arrows);
    return w;
}
}  // namespace

FrmTideStream::FrmTideStream(QWidget* owner, Plotter& plotter) : QDialog(owner), p_(plotter) {
    setObjectName("FrmTideStream");
    setWindowTitle("Tidal Stream Info");
    setModal(false);
    auto* top = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    top->addLayout(form);
    txt_Date = new QLineEdit(this);
    txt_Date->setObjectName("txt_Date");
    txt_Time = new QLineEdit(this);
    txt_Time->setObjectName("txt_Time");
    DateSpinUp = Arrow(this, "DateSpinUp", Qt::UpArrow);
    DateSpinDown = Arrow(this, "DateSpinDown", Qt::DownArrow);
    TimeSpinUp = Arrow(this, "TimeSpinUp", Qt::UpArrow);
    TimeSpinDown = Arrow(this, "TimeSpinDown", Qt::DownArrow);
    form->addRow("Date", SpinRow(this, txt_Date, DateSpinUp, DateSpinDown));
    form->addRow("Time", SpinRow(this, txt_Time, TimeSpinUp, TimeSpinDown));
    OkCancel buttons = AddOkCancel(this, top);
    ComOK = buttons.ok;
    ComCancel = buttons.cancel;

    // The instant of the grid last shown, else now.
    const double last = p_.tideDisplay().GridTime();
    const DateTime when = last != 0.0 ? DateTime::FromSerial(last) : p_.services().clock.Now();
    txt_Date->setText(Q(FormatDate(when, "Short Date")));
    txt_Time->setText(Q(FormatDate(when, "Short Time")));

    connect(DateSpinUp, &QToolButton::clicked, this, [this] { DateSpin(1); });
    connect(DateSpinDown, &QToolButton::clicked, this, [this] { DateSpin(-1); });
    connect(TimeSpinUp, &QToolButton::clicked, this, [this] { TimeSpin(1); });
    connect(TimeSpinDown, &QToolButton::clicked, this, [this] { TimeSpin(-1); });
    connect(ComOK, &QPushButton::clicked, this, [this] {
        if (Confirm()) accept();
    });
    connect(ComCancel, &QPushButton::clicked, this, &QDialog::reject);
}

void FrmTideStream::DateSpin(int days) {
    double day = 0.0;
    if (!ParseTideDate(S(txt_Date->text()), day)) return;
    txt_Date->setText(Q(FormatDate(DateTime::FromSerial(day + days), "Short Date")));
}

void FrmTideStream::TimeSpin(int hours) {
    double fraction = 0.0;
    if (!ParseTideClock(S(txt_Time->text()), fraction)) return;
    double next = fraction + hours / 24.0;
    next -= std::floor(next);  // the time of day alone: it wraps at midnight
    txt_Time->setText(Q(FormatDate(DateTime::FromSerial(next), "Short Time")));
}

bool FrmTideStream::Confirm() {
    Dialogs& dialogs = p_.services().dialogs;
    double day = 0.0, fraction = 0.0;
    if (!ParseTideDate(S(txt_Date->text()), day)) {
        dialogs.MsgBox("The prediction date entry is not a recognised date format", mb::OKOnly | mb::Exclamation,
                       "Invalid Date");
        return false;
    }
    if (!ParseTideClock(S(txt_Time->text()), fraction)) {
        dialogs.MsgBox("The prediction time entry is not a recognised time format", mb::OKOnly | mb::Exclamation,
                       "Invalid Time");
        return false;
    }
    p_.ShowTideStreams(day + fraction);
    return true;
}

}  // namespace ombra
