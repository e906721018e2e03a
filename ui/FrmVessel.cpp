#include "ui/FrmVessel.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QVBoxLayout>

#include "platform/qt/QtServices.h"
#include "ui/DialogParts.h"

namespace ombra {

FrmVessel::FrmVessel(QWidget* owner, const VesselDialogValues& v, std::function<bool(const VesselDialogValues&)> apply)
    : QDialog(owner) {
    setObjectName("FrmVessel");
    setWindowTitle("Vessel Properties");
    setModal(true);
    auto* top = new QVBoxLayout(this);
    auto edit = [&](const char* name, const std::string& text) {
        auto* e = new QLineEdit(Q(text), this);
        e->setObjectName(name);
        return e;
    };
    auto check = [&](const char* name, const char* caption, bool on) {
        return NamedCheck(this, nullptr, name, caption, on);
    };
    auto* general = new QGroupBox("Vessel", this);
    auto* gf = new QFormLayout(general);
    TxtName = edit("TxtName", v.Name);
    gf->addRow("Name", TxtName);
    ChkNameDisplay = check("ChkNameDisplay", "Show the name on the chart", v.NameDisplay);
    gf->addRow(ChkNameDisplay);
    ChkPredictor = check("ChkPredictor", "Predictor line", v.Predictor);
    TxtPredictorTime = edit("TxtPredictorTime", v.PredictorTime);
    gf->addRow(ChkPredictor, TxtPredictorTime);
    top->addWidget(general);

    auto* dr = new QGroupBox("Dead Reckoning", this);
    auto* df = new QFormLayout(dr);
    ChkDR = check("ChkDR", "Dead reckoning mode", v.DR);
    df->addRow(ChkDR);
    TxtCourse = edit("TxtCourse", v.Course);
    df->addRow("Course", TxtCourse);
    TxtSpeed = edit("TxtSpeed", v.Speed);
    df->addRow("Speed", TxtSpeed);
    TxtTideSet = edit("TxtTideSet", v.TideSet);
    df->addRow("Tidal set", TxtTideSet);
    TxtTideDrift = edit("TxtTideDrift", v.TideDrift);
    df->addRow("Tidal drift", TxtTideDrift);
    top->addWidget(dr);

    auto* track = new QGroupBox("Track", this);
    auto* tf = new QFormLayout(track);
    ChkTrackOn = check("ChkTrackOn", "Record the track", v.TrackMode);
    tf->addRow(ChkTrackOn);
    ChkTrackTime = check("ChkTrackTime", "A point every (minutes)", v.TrackTimeMode);
    TxtTrackTime = edit("TxtTrackTime", v.TrackTimeInterval);
    tf->addRow(ChkTrackTime, TxtTrackTime);
    ChkTrackCourse = check("ChkTrackCourse", "A point on a course change of (degrees)", v.TrackCourseMode);
    TxtTrackCourse = edit("TxtTrackCourse", v.TrackCourseChange);
    tf->addRow(ChkTrackCourse, TxtTrackCourse);
    ChkTrackDistance = check("ChkTrackDistance", "A point every (miles)", v.TrackDistanceMode);
    TxtTrackDistance = edit("TxtTrackDistance", v.TrackDistance);
    tf->addRow(ChkTrackDistance, TxtTrackDistance);
    ChkTrackDisplay = check("ChkTrackDisplay", "Show the track", v.TrackDisplay);
    tf->addRow(ChkTrackDisplay);
    top->addWidget(track);

    OkCancel buttons = AddOkCancel(this, top);
    ComOK = buttons.ok;
    ComCancel = buttons.cancel;
    connect(ComOK, &QPushButton::clicked, this, [this, apply] {
        if (!apply || apply(Values())) accept();
    });
    connect(ComCancel, &QPushButton::clicked, this, &QDialog::reject);
}

VesselDialogValues FrmVessel::Values() const {
    VesselDialogValues v;
    v.Name = S(TxtName->text());
    v.NameDisplay = ChkNameDisplay->isChecked();
    v.Predictor = ChkPredictor->isChecked();
    v.PredictorTime = S(TxtPredictorTime->text());
    v.DR = ChkDR->isChecked();
    v.Course = S(TxtCourse->text());
    v.Speed = S(TxtSpeed->text());
    v.TideSet = S(TxtTideSet->text());
    v.TideDrift = S(TxtTideDrift->text());
    v.TrackMode = ChkTrackOn->isChecked();
    v.TrackTimeMode = ChkTrackTime->isChecked();
    v.TrackTimeInterval = S(TxtTrackTime->text());
    v.TrackCourseMode = ChkTrackCourse->isChecked();
    v.TrackCourseChange = S(TxtTrackCourse->text());
    v.TrackDistanceMode = ChkTrackDistance->isChecked();
    v.TrackDistance = S(TxtTrackDistance->text());
    v.TrackDisplay = ChkTrackDisplay->isChecked();
    return v;
}

}  // namespace ombra
