// FrmCommTest: a live view of a port ("Test Port Settings"). It opens the
// port chosen in the dialog that called it (Comm::TestPort, TestBaudRate),
// reads it every 100 ms on Timer1 and appends each line to the list
// Display, and closes the port again when it is closed. The last 1000
// lines are kept.
#pragma once
#include <QDialog>
#include <QListWidget>
#include <QPushButton>
#include <QTimer>

namespace ombra {

class Comm;

class FrmCommTest : public QDialog {
    Q_OBJECT
public:
    FrmCommTest(QWidget* owner, Comm& comm);
    ~FrmCommTest() override;
    // Opens the port; false (after the message) when it cannot be.
    bool Load();
    // One tick of Timer1 (public for tests).
    void Timer1_Timer();

    QListWidget* Display;
    QPushButton* ComOK;
    QTimer Timer1;

private:
    Comm& comm_;
    bool busy_ = false;
};

}  // namespace ombra
