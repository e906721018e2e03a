// FrmLostGPS: the notice that the GPS fix has been lost and the vessel is
// dead-reckoned. The vessel cycle asks for it (CheckLostGPS) and takes it
// down again when the fix returns; its only button, ComOK, hides it. It
// is shown window-modal but without a nested event loop, so the timer
// keeps polling the ports behind it and can take it down.
#pragma once
#include <QDialog>
#include <QLabel>
#include <QPushButton>

namespace ombra {

class FrmLostGPS : public QDialog {
    Q_OBJECT
public:
    explicit FrmLostGPS(QWidget* owner);
    void ShowNotice();
    void TakeDown();

    QLabel* LabMsg;
    QPushButton* ComOK;
};

}  // namespace ombra
