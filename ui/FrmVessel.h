// FrmVessel: the vessel's properties ("Vessel Properties"): name and its
// display, the predictor, track recording, and dead reckoning with the
// course and speed to reckon by and a stream set by hand. OK hands the
// values to the caller's apply step (ApplyVesselDialog), which checks them
// and may ask about leaving GPS or FILE DR; the dialog stays open when it
// refuses.
#pragma once
#include <QCheckBox>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <functional>

#include "instruments/InstrumentDialogs.h"

namespace ombra {

class FrmVessel : public QDialog {
    Q_OBJECT
public:
    FrmVessel(QWidget* owner, const VesselDialogValues& values, std::function<bool(const VesselDialogValues&)> apply);
    VesselDialogValues Values() const;

    QLineEdit *TxtName, *TxtPredictorTime, *TxtCourse, *TxtSpeed, *TxtTideSet, *TxtTideDrift;
    QLineEdit *TxtTrackTime, *TxtTrackCourse, *TxtTrackDistance;
    QCheckBox *ChkNameDisplay, *ChkPredictor, *ChkDR, *ChkTrackOn, *ChkTrackTime, *ChkTrackCourse, *ChkTrackDistance,
        *ChkTrackDisplay;
    QPushButton *ComOK, *ComCancel;
};

}  // namespace ombra
