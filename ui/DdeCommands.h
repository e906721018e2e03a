// DdeCommands: the DDE menu and the targets' entry of the chart pop-up.
//
//   Vessel > DDE > Online        the link on line or off (ticked while on)
//   Vessel > DDE > Find Target... every target, to pick one for the console
//   Vessel > DDE > Options...    FrmCommDDE
//   chart pop-up "Targets Found..." the targets under the click
//
// A picked target becomes the console's and the chart is centred on it.
#pragma once
#include "core/Types.h"

class QMenu;

namespace ombra {

class FrmMain;
class Plotter;

class DdeCommands {
public:
    DdeCommands(FrmMain& main, Plotter& plotter);
    void Bind();
    // The pop-up's entry for a click at `screen` (view pixels); none when
    // no target is there.
    void AddTargetEntries(QMenu& popup, ChartPoint screen);
    // FrmFindTarget over the targets at `screen` (all of them when `all`).
    void FindTarget(ChartPoint screen, bool all);
    void Options();
    void ToggleOnline();

private:
    void ShowOnline();
    FrmMain& main_;
    Plotter& plotter_;
};

}  // namespace ombra
