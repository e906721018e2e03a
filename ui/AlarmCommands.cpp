#include "ui/AlarmCommands.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QToolBar>

#include "navobjects/MouseTools.h"
#include "platform/qt/QtServices.h"
#include "plotter/Plotter.h"
#include "ui/FrmAlarm.h"
#include "ui/FrmMain.h"

namespace ombra {

AlarmCommands::AlarmCommands(FrmMain& main, Plotter& plotter) : main_(main), plotter_(plotter) {}

AlarmCommands::~AlarmCommands() {
    for (auto& w : windows_) delete w.data();
}

void AlarmCommands::Bind() {
    main_.Bind("MManOverboard", [this] { plotter_.alarms().ManOverboard(); });
    QAction* mob = main_.Action("MManOverboard");
    if (mob) mob->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_M));
    QToolBar* bar = main_.NavToolbar();
    if (!bar->findChild<QAction*>("ToolManOverboard")) {
        QAction* button = bar->addAction("MOB");
        button->setObjectName("ToolManOverboard");
        button->setToolTip("Man Overboard (Ctrl+M)");
        if (QWidget* w = bar->widgetForAction(button))
            w->setStyleSheet("QToolButton { color: white; background: #c00000; font-weight: bold; padding: 2px 10px; }");
        QObject::connect(button, &QAction::triggered, bar, [this] { plotter_.alarms().ManOverboard(); });
    }
}

FrmAlarm* AlarmCommands::Window(AlarmForm form) {
    QPointer<FrmAlarm>& w = windows_[size_t(form)];
    if (!w) {
        w = new FrmAlarm(&main_, form);
        w->Pressed = [this, form](const std::string& caption) {
            if (form == AlarmForm::Cpa) plotter_.aisTargets().AcknowledgeCpaAlarm();
            else plotter_.alarms().Press(form, caption);
        };
    }
    return w;
}

void AlarmCommands::Show(AlarmForm form, const std::string& caption, const std::string& text, bool beep) {
    Window(form)->ShowAlarm(Q(caption), Q(text));
    if (beep) QApplication::beep();
}

void AlarmCommands::Hide(AlarmForm form) {
    if (FrmAlarm* w = windows_[size_t(form)]) w->hide();
}

void AlarmCommands::AddAnchorEntries(QMenu& popup) {
    Alarms& a = plotter_.alarms();
    QMenu* anchor = popup.addMenu("&Anchor Alarm");
    anchor->setObjectName("MAnchor");
    QAction* set = anchor->addAction("&Set Anchor", [&a] { a.SetAnchor(); });
    set->setObjectName("MAnchorSet");
    set->setEnabled(plotter_.VesselActive());
    QAction* radius = anchor->addAction("Alarm &Radius", [&a] { a.StartAnchorRadius(); });
    radius->setObjectName("MAnchorRadius");
    radius->setEnabled(a.AnchorSet);
    QAction* clear = anchor->addAction("&Clear Anchor", [&a] { a.ClearAnchor(); });
    clear->setObjectName("MAnchorClear");
    clear->setEnabled(a.AnchorSet);
}

bool AlarmCommands::RadiusToolOn() const { return plotter_.globals().CurrentTool == ToolAlarmRadius; }

bool AlarmCommands::ChartClick(bool onPlan, const LatLong& pos, int button) {
    if (!RadiusToolOn() || button != 1) return false;
    if (onPlan) plotter_.alarms().FixAnchorRadius(pos);
    return true;
}

void AlarmCommands::ChartMove(bool onPlan, const LatLong& pos) {
    if (RadiusToolOn() && onPlan) plotter_.alarms().SetAnchorRadius(pos);
}

}  // namespace ombra
