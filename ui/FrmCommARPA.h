// FrmCommARPA (" ARPA Settings"): the radar's port, whether its targets are
// read and named on the chart, and how long a silence may last before the
// navigator is told.
#pragma once
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <functional>

#include "targets/Arpa.h"
#include "ui/DialogParts.h"

namespace ombra {

class FrmCommARPA : public QDialog {
    Q_OBJECT
public:
    FrmCommARPA(QWidget* owner, const ArpaDialogValues& values, std::function<void(int16_t, int32_t)> testPort);
    ArpaDialogValues Values() const;
    QString Result() const { return result_; }

    QCheckBox *ChkARPAEnable, *ChkARPANames;
    QLineEdit *TxtARPAPort, *TxtARPADevice, *TxtARPADelay;
    QComboBox* TxtARPABaudRate;
    QPushButton *ComTestPort, *ComOK, *ComCancel;

private:
    PortRows port_{};
    QString result_ = "Cancel";
};

}  // namespace ombra
