// FrmCommAIS ("AIS Settings"): where AIS comes from (a port of its own or
// the GPS port), whether names are written on the chart, how long a silent
// target stays, "Clear ALL", and the closest-approach alarm with its range
// and time limits. Ticking "Use AIS data from GPS port" disables the port
// rows and the tester.
#pragma once
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <functional>

#include "targets/AisDialog.h"
#include "ui/DialogParts.h"

namespace ombra {

class FrmCommAIS : public QDialog {
    Q_OBJECT
public:
    FrmCommAIS(QWidget* owner, const AisDialogValues& values, std::function<void(int16_t, int32_t)> testPort,
               std::function<void()> clearTargets);
    AisDialogValues Values() const;
    QString Result() const { return result_; }

    QCheckBox *ChkAISEnable, *ChkAISUseGPSPort, *ChkAISNames, *ChkCpaAlarm;
    QLineEdit *TxtAISPort, *TxtAISDevice, *TxtTargetTimeout, *TxtCpaRange, *TxtCpaTime;
    QComboBox* TxtAISBaudRate;
    QPushButton *ComTestPort, *ClearTargets, *ComOK, *ComCancel;

private:
    void SourceChanged();
    PortRows port_{};
    QString result_ = "Cancel";
};

}  // namespace ombra
