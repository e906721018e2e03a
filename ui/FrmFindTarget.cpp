#include "ui/FrmFindTarget.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace ombra {

FrmFindTarget::FrmFindTarget(QWidget* owner, const QStringList& rows) : QDialog(owner) {
    setObjectName("FrmFindTarget");
    setWindowTitle("Targets Found...");
    setModal(true);
    auto* top = new QVBoxLayout(this);
    lstTargets = new QListWidget(this);
    lstTargets->setObjectName("lstTargets");
    lstTargets->addItems(rows);
    if (!rows.isEmpty()) lstTargets->setCurrentRow(0);
    top->addWidget(lstTargets);
    auto* row = new QHBoxLayout;
    row->addStretch(1);
    cmdOK = new QPushButton("Select", this);
    cmdOK->setObjectName("cmdOK");
    cmdOK->setDefault(true);
    cmdCancel = new QPushButton("Cancel", this);
    cmdCancel->setObjectName("cmdCancel");
    row->addWidget(cmdOK);
    row->addWidget(cmdCancel);
    top->addLayout(row);
    connect(cmdOK, &QPushButton::clicked, this, [this] { Select(); });
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(lstTargets, &QListWidget::itemDoubleClicked, this, [this] { Select(); });
}

void FrmFindTarget::Select() {
    picked_ = lstTargets->currentRow();
    if (picked_ < 0) return;
    accept();
}

}  // namespace ombra
