// FrmTideStream, "Tidal Stream Info": the date and hour of the streams to
// show over the chart. The spin buttons step the date a day and the time an
// hour; OK checks both texts, asks for the grid at that instant and closes.
// The window floats over the main window and leaves the grid shown when it
// is cancelled.
#pragma once
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>

namespace ombra {

class Plotter;

class FrmTideStream : public QDialog {
    Q_OBJECT
public:
    FrmTideStream(QWidget* owner, Plotter& plotter);

    QLineEdit *txt_Date, *txt_Time;
    QToolButton *DateSpinUp, *DateSpinDown, *TimeSpinUp, *TimeSpinDown;
    QPushButton *ComOK, *ComCancel;

    // The date a day on (or back), the time an hour on (or back).
    void DateSpin(int days);
    void TimeSpin(int hours);
    // OK: false, with the box shown, when a text is not a date or a time.
    bool Confirm();

private:
    Plotter& p_;
};

}  // namespace ombra
