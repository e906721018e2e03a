#include "ui/FrmChartErrors.h"

#include <QPushButton>
#include <QVBoxLayout>

#include "platform/qt/QtServices.h"

namespace ombra {

FrmChartErrors::FrmChartErrors(QWidget* owner) : QDialog(owner) {
    setObjectName("FrmChartErrors");
    setWindowTitle("Chart Errors");
    auto* v = new QVBoxLayout(this);
    LstErrors = new QListWidget(this);
    LstErrors->setObjectName("LstErrors");
    LstErrors->setMinimumSize(420, 180);
    v->addWidget(LstErrors);
    auto* ok = new QPushButton("OK", this);
    ok->setObjectName("ComOK");
    connect(ok, &QPushButton::clicked, this, &QDialog::hide);
    v->addWidget(ok, 0, Qt::AlignRight);
}

void FrmChartErrors::SetErrors(const std::vector<std::string>& errors) {
    LstErrors->clear();
    for (const std::string& e : errors) LstErrors->addItem(Q(e));
}

}  // namespace ombra
