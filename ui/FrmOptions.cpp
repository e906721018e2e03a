#include "ui/FrmOptions.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QRadioButton>
#include <QTabWidget>
#include <QVBoxLayout>

#include "core/Units.h"
#include "platform/qt/QtServices.h"
#include "ui/DialogParts.h"

namespace ombra {

namespace {
// A titled box of radio buttons named <name>_0, <name>_1, ... with ids in
// caption order; the box and the group are named `name` too.
QButtonGroup* Options(QWidget* parent, QLayout* into, const char* name, const QString& title,
                      std::initializer_list<const char*> captions) {
    auto* box = new QGroupBox(title, parent);
    box->setObjectName(name);
    QStringList names, texts;
    for (const char* c : captions) {
        names << QString("%1_%2").arg(name).arg(names.size());
        texts << QString::fromUtf8(c);
    }
    QButtonGroup* group = RadioGroup(box, new QVBoxLayout(box), names, texts);
    group->setObjectName(name);
    into->addWidget(box);
    return group;
}

QComboBox* LabelCombo(QWidget* parent, const char* name) {
    auto* c = new QComboBox(parent);
    c->setObjectName(name);
    for (const char* t : kLabelOptions) c->addItem(t);
    return c;
}

void Set(QButtonGroup* g, int id) {
    if (QAbstractButton* b = g->button(id)) b->setChecked(true);
}
}  // namespace

FrmOptions::FrmOptions(QWidget* owner, const OptionsValues& v) : QDialog(owner) {
    setObjectName("FrmOptions");
    setWindowTitle("Options");
    setModal(true);
    auto* top = new QVBoxLayout(this);
    auto* tabs = new QTabWidget(this);
    // Every tab in sight: the dialog widens to the tab bar, at any font size.
    tabs->setUsesScrollButtons(false);
    tabs->setElideMode(Qt::ElideNone);
    top->addWidget(tabs);
    BuildDisplayTab(tabs);
    BuildAlarmsTab(tabs);
    BuildCourseTab(tabs);
    BuildStartupTab(tabs);

    OkCancel buttons = AddOkCancel(this, top);
    ComOK = buttons.ok;
    ComCancel = buttons.cancel;
    connect(ComOK, &QPushButton::clicked, this, [this] {
        result_ = "OK";
        hide();
        accept();
    });
    connect(ComCancel, &QPushButton::clicked, this, [this] {
        result_ = "Cancel";
        hide();
        reject();
    });
    Fill(v);
    connect(OptDistance, &QButtonGroup::idClicked, this, [this](int id) { DistanceUnitChanged(id); });
}

// Units, what the chart shows and the default labels of new objects.
void FrmOptions::BuildDisplayTab(QTabWidget* tabs) {
    auto* display = new QWidget(tabs);
    auto* dl = new QVBoxLayout(display);
    auto* unitsRow = new QHBoxLayout;
    dl->addLayout(unitsRow);
    OptDistance = Options(display, unitsRow, "OptDistance", "Distance", {"&Nautical Miles", "&Statute Miles", "&Kilometres"});
    OptSpeed = Options(display, unitsRow, "OptSpeed", "Speed", {"K&nots", "&MPH", "&KPH"});
    OptAngle = Options(display, unitsRow, "OptAngle", "Bearings", {"&True", "&Magnetic", "&Compass"});
    auto* showRow = new QHBoxLayout;
    dl->addLayout(showRow);
    auto* checks = new QVBoxLayout;
    showRow->addLayout(checks);
    ChkShowZoomRect = NamedCheck(display, checks, "ChkShowZoomRect", "Show zoom area rectangle");
    ChkActiveCoordDisplay = NamedCheck(display, checks, "ChkActiveCoordDisplay", "Active position display");
    OptRangeDP = Options(display, showRow, "OptRangeDP", "Range decimal places", {"3 places", "2 places"});
    auto* labels = new QGroupBox("Default labels", display);
    auto* ll = new QGridLayout(labels);
    ComboDefWaypointLabel = LabelCombo(labels, "ComboDefWaypointLabel");
    ComboDefRouteLabel = LabelCombo(labels, "ComboDefRouteLabel");
    ComboDefBoundaryLabel = LabelCombo(labels, "ComboDefBoundaryLabel");
    ll->addWidget(new QLabel("Waypoints", labels), 0, 0);
    ll->addWidget(ComboDefWaypointLabel, 0, 1);
    ll->addWidget(new QLabel("Routes", labels), 1, 0);
    ll->addWidget(ComboDefRouteLabel, 1, 1);
    ll->addWidget(new QLabel("Boundaries", labels), 2, 0);
    ll->addWidget(ComboDefBoundaryLabel, 2, 1);
    dl->addWidget(labels);
    tabs->addTab(display, "Display");
}

// The arrival, cross-track and predictor alarms, ranges with their unit.
void FrmOptions::BuildAlarmsTab(QTabWidget* tabs) {
    auto* alarms = new QWidget(tabs);
    auto* al = new QGridLayout(alarms);
    auto edit = [&](const char* name) {
        auto* e = new QLineEdit(alarms);
        e->setObjectName(name);
        return e;
    };
    auto label = [&](const char* name) {
        auto* l = new QLabel(alarms);
        l->setObjectName(name);
        return l;
    };
    ChkWaypointArrival = NamedCheck(alarms, nullptr, "ChkWaypointArrival", "Waypoint arrival alarm");
    TxtWPAlarmRange = edit("TxtWPAlarmRange");
    LabWPAlarmRangeUnits = label("LabWPAlarmRangeUnits");
    ChKXTE = NamedCheck(alarms, nullptr, "ChKXTE", "Cross track error alarm");
    TxtXTEAlarmRange = edit("TxtXTEAlarmRange");
    LabXTEAlarmRangeUnits = label("LabXTEAlarmRangeUnits");
    ChkPredictorTriggers =
        NamedCheck(alarms, nullptr, "ChkPredictorTriggers", "Boundary alarms triggered by the predictor line");
    al->addWidget(ChkWaypointArrival, 0, 0);
    al->addWidget(TxtWPAlarmRange, 0, 1);
    al->addWidget(LabWPAlarmRangeUnits, 0, 2);
    al->addWidget(ChKXTE, 1, 0);
    al->addWidget(TxtXTEAlarmRange, 1, 1);
    al->addWidget(LabXTEAlarmRangeUnits, 1, 2);
    al->addWidget(ChkPredictorTriggers, 2, 0, 1, 3);
    ChkSilentAlarms = NamedCheck(alarms, nullptr, "ChkSilentAlarms", "Silent alarms: windows without the bell (night passages)");
    al->addWidget(ChkSilentAlarms, 3, 0, 1, 3);
    al->setRowStretch(4, 1);
    tabs->addTab(alarms, "Alarms");
}

// Rhumb line or great circle, for each kind of course and distance.
void FrmOptions::BuildCourseTab(QTabWidget* tabs) {
    auto* rl = new QWidget(tabs);
    auto* rll = new QGridLayout(rl);
    auto pair = [&](const char* name, const char* title, int row, int col) {
        auto* holder = new QVBoxLayout;
        auto* g = Options(rl, holder, name, title, {"Rhumb Line", "Great Circle"});
        rll->addLayout(holder, row, col);
        return g;
    };
    OptVesselCursor = pair("OptVesselCursor", "Vessel to cursor", 0, 0);
    OptVesselWaypoint = pair("OptVesselWaypoint", "Vessel to active waypoint", 0, 1);
    OptRBL = pair("OptRBL", "Range bearing lines", 1, 0);
    OptRoutesDefault = pair("OptRoutesDefault", "Dividers and routes default", 1, 1);
    tabs->addTab(rl, "Rhumb Line / Great Circle");
}

// What happens at start-up: the GPS, the chart, the datum, autoscroll.
void FrmOptions::BuildStartupTab(QTabWidget* tabs) {
    auto* st = new QWidget(tabs);
    auto* sl = new QGridLayout(st);
    ComboGPSStartOpt = new QComboBox(st);
    ComboGPSStartOpt->setObjectName("ComboGPSStartOpt");
    for (const char* t : kGPSStartOptions) ComboGPSStartOpt->addItem(t);
    ChkAutoChart = NamedCheck(st, nullptr, "ChkAutoChart", "Automatic chart selection on startup");
    ChkForceWGS84 = NamedCheck(st, nullptr, "ChkForceWGS84", "Display all coordinates in WGS-84 Datum");
    TxtAutoscroll = new QLineEdit(st);
    TxtAutoscroll->setObjectName("TxtAutoscroll");
    sl->addWidget(new QLabel("GPS at start-up", st), 0, 0);
    sl->addWidget(ComboGPSStartOpt, 0, 1);
    sl->addWidget(ChkAutoChart, 1, 0, 1, 2);
    sl->addWidget(ChkForceWGS84, 2, 0, 1, 2);
    sl->addWidget(new QLabel("Autoscroll (minutes, 0 off)", st), 3, 0);
    sl->addWidget(TxtAutoscroll, 3, 1);
    sl->setRowStretch(4, 1);
    tabs->addTab(st, "Start-up");
}

void FrmOptions::Fill(const OptionsValues& v) {
    Set(OptDistance, v.DistanceUnit);
    Set(OptSpeed, v.SpeedUnit);
    Set(OptAngle, v.AngleUnit);
    Set(OptRangeDP, v.RangeDP == 2 ? 1 : 0);
    ChkShowZoomRect->setChecked(v.ShowZoomRect);
    ChkActiveCoordDisplay->setChecked(v.ActiveCoordDisplay);
    QButtonGroup* gc[4] = {OptVesselCursor, OptVesselWaypoint, OptRBL, OptRoutesDefault};
    for (int i = 0; i < 4; ++i) Set(gc[i], v.GreatCircle[i] ? 1 : 0);
    ComboDefWaypointLabel->setCurrentIndex(v.DefWaypointLabel);
    ComboDefRouteLabel->setCurrentIndex(v.DefRouteLabel);
    ComboDefBoundaryLabel->setCurrentIndex(v.DefBoundaryLabel);
    ChkWaypointArrival->setChecked(v.WaypointArrival);
    TxtWPAlarmRange->setText(Q(v.WPAlarmRangeText));
    ChKXTE->setChecked(v.XTE);
    TxtXTEAlarmRange->setText(Q(v.XTEAlarmRangeText));
    ChkPredictorTriggers->setChecked(v.PredictorTriggers);
    ChkSilentAlarms->setChecked(v.SilentAlarms);
    TxtAutoscroll->setText(Q(v.AutoscrollText));
    ComboGPSStartOpt->setCurrentIndex(v.GPSStartOpt);
    ChkAutoChart->setChecked(v.AutoChart);
    ChkForceWGS84->setChecked(v.ForceWGS84);
    shownUnit_ = v.DistanceUnit;
    Units u;
    u.DistanceUnit = int16_t(shownUnit_);
    LabWPAlarmRangeUnits->setText(Q(u.UnitText(UnitKind::Distance)));
    LabXTEAlarmRangeUnits->setText(Q(u.UnitText(UnitKind::Distance)));
}

// The ranges keep their distance when the unit changes: the text is read in
// the old unit and shown again in the new one, and the labels follow.
void FrmOptions::DistanceUnitChanged(int unit) {
    if (unit == shownUnit_) return;
    for (QLineEdit* t : {TxtWPAlarmRange, TxtXTEAlarmRange}) {
        std::string nm = StoredRangeFromText(S(t->text()), int16_t(shownUnit_));
        t->setText(Q(RangeTextForUnit(nm, int16_t(unit))));
    }
    shownUnit_ = unit;
    Units u;
    u.DistanceUnit = int16_t(unit);
    LabWPAlarmRangeUnits->setText(Q(u.UnitText(UnitKind::Distance)));
    LabXTEAlarmRangeUnits->setText(Q(u.UnitText(UnitKind::Distance)));
}

OptionsValues FrmOptions::Values() const {
    OptionsValues v;
    v.DistanceUnit = int16_t(std::max(0, OptDistance->checkedId()));
    v.SpeedUnit = int16_t(std::max(0, OptSpeed->checkedId()));
    v.AngleUnit = int16_t(std::max(0, OptAngle->checkedId()));
    v.RangeDP = OptRangeDP->checkedId() == 1 ? 2 : 3;
    v.ShowZoomRect = ChkShowZoomRect->isChecked();
    v.ActiveCoordDisplay = ChkActiveCoordDisplay->isChecked();
    const QButtonGroup* gc[4] = {OptVesselCursor, OptVesselWaypoint, OptRBL, OptRoutesDefault};
    for (int i = 0; i < 4; ++i) v.GreatCircle[i] = gc[i]->checkedId() == 1;
    v.DefWaypointLabel = int16_t(ComboDefWaypointLabel->currentIndex());
    v.DefRouteLabel = int16_t(ComboDefRouteLabel->currentIndex());
    v.DefBoundaryLabel = int16_t(ComboDefBoundaryLabel->currentIndex());
    v.WaypointArrival = ChkWaypointArrival->isChecked();
    v.WPAlarmRangeText = S(TxtWPAlarmRange->text());
    v.XTE = ChKXTE->isChecked();
    v.XTEAlarmRangeText = S(TxtXTEAlarmRange->text());
    v.PredictorTriggers = ChkPredictorTriggers->isChecked();
    v.SilentAlarms = ChkSilentAlarms->isChecked();
    v.AutoscrollText = S(TxtAutoscroll->text());
    v.GPSStartOpt = int16_t(ComboGPSStartOpt->currentIndex());
    v.AutoChart = ChkAutoChart->isChecked();
    v.ForceWGS84 = ChkForceWGS84->isChecked();
    return v;
}

}  // namespace ombra
