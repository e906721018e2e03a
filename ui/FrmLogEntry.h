// FrmLogEntry: one entry of the day's log. The navigation snapshot (where
// the vessel was, its course and speed, the next waypoint with its range
// and bearing) is shown and cannot be changed; the log reading, wind,
// barometer and narrative are the navigator's to type, and are taken as
// typed. Modal; only OK copies the five fields back into the entry.
#pragma once
#include <QDialog>
#include <QLabel>
#include <QLineEdit>

#include "logbook/LogEntry.h"
#include "platform/api/DateTime.h"

namespace ombra {

class FrmLogEntry : public QDialog {
    Q_OBJECT
public:
    FrmLogEntry(QWidget* owner, const LogEntry& entry, const DateTime& when);
    // "OK" after OK; anything else otherwise.
    const QString& Result() const { return result_; }
    // The five fields as typed, into `entry`.
    void CopyBack(LogEntry& entry) const;

    QLabel *LabLatitude, *LabLongitude, *LabSpeed, *LabCourse, *LabRange, *LabBearing, *LabWaypoint;
    QLineEdit *TxtLogReading, *TxtWindSpeed, *TxtWindDirection, *TxtBarometer, *TxtNarrative;

private:
    QString result_ = "Cancel";
};

// Shows the window for `entry`; true (and the fields copied) on OK.
bool ShowFrmLogEntry(QWidget* owner, LogEntry& entry, const DateTime& when);

}  // namespace ombra
