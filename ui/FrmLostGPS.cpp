#include "ui/FrmLostGPS.h"

#include <QVBoxLayout>

namespace ombra {

FrmLostGPS::FrmLostGPS(QWidget* owner) : QDialog(owner) {
    setObjectName("FrmLostGPS");
    setWindowTitle("GPS");
    setWindowModality(Qt::WindowModal);
    auto* top = new QVBoxLayout(this);
    LabMsg = new QLabel(
        "The GPS position has been lost.\n"
        "The vessel is now shown by dead reckoning from the last fix.",
        this);
    LabMsg->setObjectName("LabMsg");
    QFont f = LabMsg->font();
    f.setBold(true);
    LabMsg->setFont(f);
    LabMsg->setStyleSheet("color: #ff0000");
    top->addWidget(LabMsg);
    ComOK = new QPushButton("OK", this);
    ComOK->setObjectName("ComOK");
    top->addWidget(ComOK);
    connect(ComOK, &QPushButton::clicked, this, &QDialog::hide);
}

void FrmLostGPS::ShowNotice() {
    show();
    raise();
    activateWindow();
}

void FrmLostGPS::TakeDown() { hide(); }

}  // namespace ombra
