// The tides' side of the main window: the Tides menu (Options, Install
// Tidal Data, View Tides), the stream window and the chart pop-up's
// "Tidal Stream" at the point clicked. QtShell owns one of these once
// FrmMain exists.
#pragma once
#include <QPointer>

#include "ui/FrmTideStream.h"

#include "platform/api/Geo.h"

class QMenu;

namespace ombra {

class FrmMain;
class Plotter;

class TideCommands {
public:
    TideCommands(FrmMain& main, Plotter& plotter);
    void Bind();
    // Tides > Options: the dialog, and the choice stored on OK.
    void Options();
    // Tides > View Tides: the stream window, when there is a region.
    void ViewTides();
    // The chart pop-up's entry, for the point of the last right click.
    void AddPopupEntries(QMenu& popup);
    void NoteClick(bool onPlan, const LatLong& pos);
    FrmTideStream* Window() const { return window_.data(); }

private:
    FrmMain& main_;
    Plotter& p_;
    QPointer<FrmTideStream> window_;
    bool clickOnPlan_ = false;
    LatLong click_;
};

}  // namespace ombra
