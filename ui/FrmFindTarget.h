// FrmFindTarget: "Targets Found...": the targets under a click (or all of
// them), one row each; Select, or a double click, picks the row.
#pragma once
#include <QDialog>
#include <QListWidget>
#include <QPushButton>
#include <QStringList>

namespace ombra {

class FrmFindTarget : public QDialog {
    Q_OBJECT
public:
    FrmFindTarget(QWidget* owner, const QStringList& rows);
    // The row picked; -1 when cancelled.
    int Picked() const { return picked_; }

    QListWidget* lstTargets;
    QPushButton *cmdOK, *cmdCancel;

private:
    void Select();
    int picked_ = -1;
};

}  // namespace ombra
