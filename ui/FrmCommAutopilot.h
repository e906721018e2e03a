// FrmCommAutopilot: which sentences the NMEA burst carries ("Autopilot
// Settings"). OK rebuilds the bit set from the controls alone; Cancel
// leaves it as it was (instruments/InstrumentDialogs.h).
#pragma once
#include <QButtonGroup>
#include <QCheckBox>
#include <QDialog>
#include <QPushButton>

#include "instruments/InstrumentDialogs.h"

namespace ombra {

class FrmCommAutopilot : public QDialog {
    Q_OBJECT
public:
    FrmCommAutopilot(QWidget* owner, const AutopilotDialogValues& values);
    AutopilotDialogValues Values() const;
    QString Result() const { return result_; }

    QCheckBox *ChkRMC, *ChkGLL, *ChkVTG, *ChkGGA, *ChkRMB, *ChkBWC, *ChkBOD, *ChkXTE;
    QButtonGroup* OptAPx;  // OptAPB, OptAPA, OptAP
    QCheckBox *ChkForceNMEA15, *ChkAPChecksums, *ChkWPL;
    QPushButton *ComOK, *ComCancel;

private:
    QString result_ = "Cancel";
};

}  // namespace ombra
