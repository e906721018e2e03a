// FrmCommDDE: the data-source link's options ("DDE Options"): how often
// the chart is redrawn during a transfer, the targets' labels and
// predictors, whether parse errors are questioned, the console's target,
// and the loopback port the link listens on.
#pragma once
#include <QCheckBox>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>

#include "targets/Dde.h"

namespace ombra {

class FrmCommDDE : public QDialog {
    Q_OBJECT
public:
    FrmCommDDE(QWidget* owner, const DdeSettings& settings);
    // The boxes as typed; numbers read by their numeric prefix.
    DdeSettings Values() const;
    QString Result() const { return result_; }

    QLineEdit *txtInterval, *txtPTime, *txtActiveTarget, *txtPort;
    QCheckBox *chkDDELabels, *chkPredictors, *chkParseErrors;
    QPushButton *ComOK, *ComCancel;

private:
    QString result_ = "Cancel";
};

}  // namespace ombra
