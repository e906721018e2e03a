// The instruments' side of the main window: the console panel beside the
// chart, the GPS menu's commands and settings dialogs, the lost-GPS notice
// and the satellite window. QtShell owns one of these once FrmMain exists.
#pragma once
#include <QPointer>

namespace ombra {

class ConsolePanel;
class FrmLostGPS;
class FrmMain;
class FrmSatInfo;
class Plotter;

class InstrumentCommands {
public:
    InstrumentCommands(FrmMain& main, Plotter& plotter);
    void Bind();
    void ShowCommDialog(int which);
    void ShowLostGPS(bool up);
    void RefreshSatInfo();
    void ConsoleChanged();
    void SetGPSMenuState(bool on);

    void GPSSettings();
    void GyroSettings();
    void AutopilotSettings();
    void SatelliteInfo();
    void VesselProperties();
    void ConsoleOptions();
    void TestPort(int16_t port, int32_t baud);

private:
    FrmMain& main_;
    Plotter& p_;
    ConsolePanel* console_ = nullptr;
    QPointer<FrmLostGPS> lost_;
    QPointer<FrmSatInfo> sats_;
};

}  // namespace ombra
