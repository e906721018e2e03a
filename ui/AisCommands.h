// AisCommands: the AIS entries of the Vessel > GPS menu ("AIS Settings",
// "AIS Targets", "Centre on AIS Target...") and the chart pop-up's entry
// for the target under the mouse ("AIS - " and its name), which shows it
// in the console.
#pragma once
#include <QMenu>
#include <QPointer>

#include "platform/api/Geo.h"

namespace ombra {

class FrmMain;
class Plotter;
class FrmAisTargets;

class AisCommands {
public:
    AisCommands(FrmMain& main, Plotter& plotter) : main_(main), p_(plotter) {}
    ~AisCommands();
    void Bind();
    void Settings();
    // The target list, opened (or brought up) modeless.
    FrmAisTargets* Targets();
    // The pop-up entry for the target at a view pixel, if there is one.
    void AddPopupEntries(QMenu& popup, ChartPoint at);

private:
    FrmMain& main_;
    Plotter& p_;
    QPointer<FrmAisTargets> list_;
};

}  // namespace ombra
