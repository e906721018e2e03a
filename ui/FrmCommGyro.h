// FrmCommGyro: where the heading comes from ("Gyro Settings"): no gyro
// (the course over ground), heading sentences on the GPS port, or a port
// of their own. Exactly one choice is on after OK.
#pragma once
#include <QButtonGroup>
#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <functional>

#include "instruments/InstrumentDialogs.h"
#include "ui/DialogParts.h"

namespace ombra {

class FrmCommGyro : public QDialog {
    Q_OBJECT
public:
    FrmCommGyro(QWidget* owner, const GyroDialogValues& values, std::function<void(int16_t, int32_t)> testPort);
    GyroDialogValues Values() const;
    QString Result() const { return result_; }

    QButtonGroup* OptGyro;  // OptNoGyro, OptUseGPSPort, OptUseGyroPort
    QLineEdit *TxtGyroPort, *TxtGyroDevice;
    QComboBox* TxtGyroBaudRate;
    QPushButton *ComTestPort, *ComOK, *ComCancel;

private:
    void ChoiceChanged();
    PortRows port_{};
    QString result_ = "Cancel";
};

}  // namespace ombra
