// FrmComm: the GPS settings dialog ("GPS Settings"). It is filled from
// GPSDialogValues and read back by the caller when its result is "OK";
// the rules of OK (what is stored, what takes effect when) are in
// instruments/InstrumentDialogs.h. The port's device (the port table
// entry behind the number) is edited here too. Turning ChkAutoPilot on
// asks the caller's confirmation first; "No" leaves the box clear.
#pragma once
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <functional>

#include "instruments/InstrumentDialogs.h"

namespace ombra {

class FrmComm : public QDialog {
    Q_OBJECT
public:
    // `confirmAutopilot` is asked when ChkAutoPilot is ticked; `testPort`
    // runs the port tester with the dialog's port and rate.
    FrmComm(QWidget* owner, const GPSDialogValues& values, std::function<bool()> confirmAutopilot,
            std::function<void(int16_t, int32_t)> testPort);
    GPSDialogValues Values() const;
    QString Result() const { return result_; }

    QLineEdit *TxtGPSPort, *TxtGPSDelay, *TxtGPSDevice;
    QComboBox *TxtGPSBaudRate, *TxtWPMode;
    QButtonGroup* OptSentence;  // OptGGA, OptGLL, OptRMC, OptAIVDO
    QCheckBox *chkChecksums, *ChkDiffGPS, *ChkAutoPilot, *ChkAutoAdvance;
    QPushButton *ComTestPort, *ComOK, *ComCancel;

private:
    QString result_ = "Cancel";
};

}  // namespace ombra
