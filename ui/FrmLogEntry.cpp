#include "ui/FrmLogEntry.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "core/Format.h"
#include "platform/qt/QtServices.h"
#include "ui/DialogParts.h"

namespace ombra {

namespace {
QLabel* ReadOnly(QWidget* parent, const char* name, const std::string& text) {
    auto* l = new QLabel(Q(text), parent);
    l->setObjectName(name);
    l->setFrameStyle(QFrame::Panel | QFrame::Sunken);
    l->setMinimumWidth(140);
    return l;
}
QLineEdit* Editable(QWidget* parent, const char* name, const std::string& text) {
    auto* t = new QLineEdit(Q(text), parent);
    t->setObjectName(name);
    return t;
}
}  // namespace

FrmLogEntry::FrmLogEntry(QWidget* owner, const LogEntry& e, const DateTime& when) : QDialog(owner) {
    setObjectName("FrmLogEntry");
    DateTime day{when.year, when.month, when.day, 0, 0, 0, 0};
    setWindowTitle(Q("Log Entry: " + FormatDate(day, "General Date") + " " + FormatDate(when, "Short Time")));

    LabLatitude = ReadOnly(this, "LabLatitude", e.Latitude);
    LabLongitude = ReadOnly(this, "LabLongitude", e.Longitude);
    LabCourse = ReadOnly(this, "LabCourse", e.Course);
    LabSpeed = ReadOnly(this, "LabSpeed", e.Speed);
    LabWaypoint = ReadOnly(this, "LabWaypoint", e.NextWaypoint);
    LabRange = ReadOnly(this, "LabRange", e.Range);
    LabBearing = ReadOnly(this, "LabBearing", e.Bearing);
    TxtLogReading = Editable(this, "TxtLogReading", e.LogReading);
    TxtWindSpeed = Editable(this, "TxtWindSpeed", e.WindSpeed);
    TxtWindDirection = Editable(this, "TxtWindDirection", e.WindDirection);
    TxtBarometer = Editable(this, "TxtBarometer", e.Barometer);
    TxtNarrative = Editable(this, "TxtNarrative", e.Narrative);
    TxtNarrative->setMinimumWidth(360);

    auto* top = new QVBoxLayout(this);
    auto* row = new QHBoxLayout;
    auto* nav = new QGroupBox("Navigation", this);
    auto* navForm = new QFormLayout(nav);
    navForm->addRow("Latitude", LabLatitude);
    navForm->addRow("Longitude", LabLongitude);
    navForm->addRow("Course", LabCourse);
    navForm->addRow("Speed", LabSpeed);
    navForm->addRow("Next Waypoint", LabWaypoint);
    navForm->addRow("Range", LabRange);
    navForm->addRow("Bearing", LabBearing);
    auto* obs = new QGroupBox("Observations", this);
    auto* obsForm = new QFormLayout(obs);
    obsForm->addRow("Log Reading", TxtLogReading);
    obsForm->addRow("Wind Speed", TxtWindSpeed);
    obsForm->addRow("Wind Direction", TxtWindDirection);
    obsForm->addRow("Barometer", TxtBarometer);
    row->addWidget(nav);
    row->addWidget(obs, 1);
    top->addLayout(row);
    auto* narrative = new QFormLayout;
    narrative->addRow("Narrative", TxtNarrative);
    top->addLayout(narrative);
    OkCancel b = AddOkCancel(this, top);
    ConnectOkCancel(this, b, &result_);
    TxtLogReading->setFocus();
}

void FrmLogEntry::CopyBack(LogEntry& e) const {
    e.LogReading = S(TxtLogReading->text());
    e.WindSpeed = S(TxtWindSpeed->text());
    e.WindDirection = S(TxtWindDirection->text());
    e.Barometer = S(TxtBarometer->text());
    e.Narrative = S(TxtNarrative->text());
}

bool ShowFrmLogEntry(QWidget* owner, LogEntry& entry, const DateTime& when) {
    FrmLogEntry dlg(owner, entry, when);
    dlg.exec();
    if (dlg.Result() != "OK") return false;
    dlg.CopyBack(entry);
    return true;
}

}  // namespace ombra
