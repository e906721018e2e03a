// FrmOptions: the tabbed Options dialog. It is filled from OptionsValues,
// run modally, and read back by the caller unless its result is "Cancel".
// Controls carry their names (OptDistance, TxtWPAlarmRange, ...), so tests
// and the help text can find them.
#pragma once
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>

#include "core/Options.h"

namespace ombra {

class FrmOptions : public QDialog {
    Q_OBJECT
public:
    FrmOptions(QWidget* owner, const OptionsValues& values);
    OptionsValues Values() const;
    QString Result() const { return result_; }

    QButtonGroup *OptDistance, *OptSpeed, *OptAngle, *OptRangeDP;
    QButtonGroup *OptVesselCursor, *OptVesselWaypoint, *OptRBL, *OptRoutesDefault;
    QCheckBox *ChkShowZoomRect, *ChkActiveCoordDisplay;
    QComboBox *ComboDefWaypointLabel, *ComboDefRouteLabel, *ComboDefBoundaryLabel;
    QCheckBox *ChkWaypointArrival, *ChKXTE, *ChkPredictorTriggers, *ChkSilentAlarms;
    QLineEdit *TxtWPAlarmRange, *TxtXTEAlarmRange, *TxtAutoscroll;
    QLabel *LabWPAlarmRangeUnits, *LabXTEAlarmRangeUnits;
    QComboBox* ComboGPSStartOpt;
    QCheckBox *ChkAutoChart, *ChkForceWGS84;
    QPushButton *ComOK, *ComCancel;

private:
    // One builder a tab, in tab order.
    void BuildDisplayTab(QTabWidget* tabs);
    void BuildAlarmsTab(QTabWidget* tabs);
    void BuildCourseTab(QTabWidget* tabs);
    void BuildStartupTab(QTabWidget* tabs);
    // Shows `values` in the controls.
    void Fill(const OptionsValues& values);
    void DistanceUnitChanged(int unit);
    QString result_ = "Cancel";
    int shownUnit_ = 0;
};

}  // namespace ombra
