#include "ui/FrmCommTest.h"

#include <QVBoxLayout>

#include "instruments/Comm.h"
#include "platform/qt/QtServices.h"

namespace ombra {

FrmCommTest::FrmCommTest(QWidget* owner, Comm& comm) : QDialog(owner), comm_(comm) {
    setObjectName("FrmCommTest");
    setWindowTitle("Test Port Settings");
    auto* top = new QVBoxLayout(this);
    Display = new QListWidget(this);
    Display->setObjectName("Display");
    Display->setFont(QFont("DejaVu Sans Mono", 9));
    top->addWidget(Display);
    ComOK = new QPushButton("OK", this);
    ComOK->setObjectName("ComOK");
    top->addWidget(ComOK);
    connect(ComOK, &QPushButton::clicked, this, &QDialog::accept);
    Timer1.setInterval(100);
    connect(&Timer1, &QTimer::timeout, this, &FrmCommTest::Timer1_Timer);
    resize(560, 360);
}

FrmCommTest::~FrmCommTest() {
    Timer1.stop();
    comm_.CloseTestPort();
}

bool FrmCommTest::Load() {
    if (!comm_.OpenTestPort()) return false;
    Timer1.start();
    return true;
}

void FrmCommTest::Timer1_Timer() {
    if (busy_ || !comm_.TestPortOpen) return;
    busy_ = true;
    for (const std::string& line : comm_.ReadTestPort()) {
        Display->addItem(QString::fromLatin1(line.data(), qsizetype(line.size())));
        if (Display->count() > 1000) delete Display->takeItem(0);
    }
    Display->scrollToBottom();
    busy_ = false;
}

}  // namespace ombra
