// FrmTideOptions, "Tide Options": whether the console's tide values come
// from the stream model. OK stores the choice; Cancel leaves it.
#pragma once
#include <QCheckBox>
#include <QDialog>
#include <QPushButton>

namespace ombra {

class FrmTideOptions : public QDialog {
    Q_OBJECT
public:
    FrmTideOptions(QWidget* owner, bool useProudman);
    QString Result() const { return result_; }

    QCheckBox* ChkUseProudman;
    QPushButton *ComOK, *ComCancel;

private:
    QString result_ = "Cancel";
};

}  // namespace ombra
