// AlarmCommands: the alarms' side of the main window.
//
// It holds the four alarm windows (FrmAlarm), which the shell shows and
// takes down for the alarms module, and sounds the desktop's bell with
// them. It binds man overboard to the Vessel menu ("Man &Overboard",
// Ctrl+M) and to the MOB button of the Nav toolbar, adds the anchor entries
// (the pop-up MAnchor: set, alarm radius, clear) to the chart pop-up, and
// runs the alarm-radius tool: while it is on, the anchor circle follows the
// mouse, and a click fixes the radius.
#pragma once
#include <QPointer>
#include <array>
#include <string>

#include "alarms/AlarmForm.h"
#include "core/Types.h"

class QMenu;
class QToolBar;

namespace ombra {

class FrmMain;
class FrmAlarm;
class Plotter;

class AlarmCommands {
public:
    AlarmCommands(FrmMain& main, Plotter& plotter);
    ~AlarmCommands();

    void Bind();
    // The shell's ShowAlarm and HideAlarm.
    void Show(AlarmForm form, const std::string& caption, const std::string& text, bool beep);
    void Hide(AlarmForm form);
    // The window of a form (created on first use).
    FrmAlarm* Window(AlarmForm form);
    // The anchor entries of the chart pop-up.
    void AddAnchorEntries(QMenu& popup);
    // The chart's mouse while the alarm-radius tool is on; true when taken.
    bool ChartClick(bool onPlan, const LatLong& pos, int button);
    void ChartMove(bool onPlan, const LatLong& pos);


private:
    bool RadiusToolOn() const;
    FrmMain& main_;
    Plotter& plotter_;
    std::array<QPointer<FrmAlarm>, 5> windows_;
};

}  // namespace ombra
