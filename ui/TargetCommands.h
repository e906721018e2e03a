// TargetCommands: the radar and tracked targets' side of the main window.
//
// Vessel > GPS > "A&RPA Settings" opens FrmCommARPA (so does a failed ARPA
// port, through the shell); Vessel > "Centre on A&RPA Target..." and
// "Centre on &Tracked Target..." pick a target from a list, make it the
// console's and zoom the chart to it. The console's ARPA frame shows while
// ARPA input is on, the tracking frame once a vessel has been read.
#pragma once

namespace ombra {

class FrmMain;
class Plotter;

class TargetCommands {
public:
    TargetCommands(FrmMain& main, Plotter& plotter) : main_(main), p_(plotter) {}
    void Bind();
    void ArpaSettings();
    // The console's target frames shown or hidden by what there is to show.
    void ConsoleChanged();

private:
    FrmMain& main_;
    Plotter& p_;
};

}  // namespace ombra
