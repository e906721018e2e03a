// FrmDeviation: the deviation card, "Deviation Details".
//
// One entry at a time: TxtHeading shows the magnetic heading (0, 10, ...
// 360) and TxtCorrection its correction, + for W and - for E. SpinButton1's
// arrows step ten degrees up or down, storing the correction shown before
// the move. Every change of the correction goes into a working copy of the
// card and redraws the curve (PicCurve). OK takes the working card into use
// and saves "deviate.dat"; Cancel drops it.
//
// TxtCorrection lets through only digits, a sign and a point (and the
// editing keys), as every numeric box of the plotter does.
#pragma once
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>

#include "charts/DeviationCurve.h"

namespace ombra {

class FrmDeviation : public QDialog {
    Q_OBJECT
public:
    FrmDeviation(QWidget* owner, Deviation& deviation);

    QLabel *LabHeading, *LabCorrection, *LabHint;
    QLineEdit *TxtHeading, *TxtCorrection;
    QWidget* SpinButton1;
    QToolButton *SpinUp, *SpinDown;  // the two arrows of SpinButton1
    QWidget* PicCurve;
    QPushButton *ComOK, *ComCancel;

    // The arrows' actions.
    void SpinButton1_SpinUp();
    void SpinButton1_SpinDown();
    void ComOK_Click();

    const DeviationCard& WorkingTable() const { return working_; }
    int CurrentEntry() const { return entry_; }
    // The key filter of TxtCorrection.
    static bool CorrectionKeyPasses(QChar c);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void ShowEntry();
    void StoreCorrection();

    Deviation& deviation_;
    DeviationCard working_;
    int entry_ = 0;
    bool showing_ = false;
};

}  // namespace ombra
