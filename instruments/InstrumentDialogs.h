// What the instrument dialogs show and what their OK does, without a
// window: the Qt forms (ui/FrmComm*, ui/FrmVessel) fill their controls from
// these records and hand them back, so every rule is here and testable.
//
//   GPS settings (FrmComm)        port, rate, timeout, waypoint format, the
//                                 position sentence, checksums, autopilot
//   Gyro settings (FrmCommGyro)   one of three heading sources, its port
//   Autopilot (FrmCommAutopilot)  the sentence bit set, rebuilt from nothing
//   Vessel properties (FrmVessel) name, predictor, track, dead reckoning
//
// Changes are written to the settings on OK and take effect in memory at
// once, except a changed port, which is used when the GPS is next started.
// Each port dialog also edits the device behind its port number (the port
// table: ComPort1..ComPort8).
#pragma once
#include <cstdint>
#include <string>

namespace ombra {

class Dialogs;
class Registry;
class Units;
struct CommSettings;
class VesselModule;
class InstrumentHooks;

// Baud rates offered, as the lists show them.
extern const char* const kBaudRates[7];
// Waypoint formats of WPMode 0..3.
extern const char* const kWPModes[4];

// The device text of a port number ("" outside 1..8), and storing one.
std::string PortDevice(const Registry& reg, int16_t port);
void SavePortDevice(Registry& reg, int16_t port, const std::string& device);

struct GPSDialogValues {
    std::string Port, BaudRate, Delay, Device;
    int16_t WPMode = 0;
    int PositionSentence = 0;  // 0 GGA / VTG, 1 GLL / VTG, 2 RMC, 3 AIVDO (AIS)
    bool Checksums = false, DiffGPS = false, AutoPilot = false, AutoAdvance = false;
};
GPSDialogValues LoadGPSDialog(const Registry& reg, const CommSettings& s);
void SaveGPSDialog(Registry& reg, CommSettings& s, const GPSDialogValues& v);

struct GyroDialogValues {
    int Choice = 0;  // 0 OptNoGyro, 1 OptUseGPSPort, 2 OptUseGyroPort
    std::string Port, BaudRate, Device;
};
GyroDialogValues LoadGyroDialog(const Registry& reg, const CommSettings& s);
void SaveGyroDialog(Registry& reg, CommSettings& s, const GyroDialogValues& v);

// The autopilot dialog's controls, bit by bit (see NmeaOutput.h).
struct AutopilotDialogValues {
    bool RMC = false, GLL = false, VTG = false, GGA = false, RMB = false, BWC = false, BOD = false, XTE = false;
    int APSentence = 0;  // 0 OptAPB, 1 OptAPA, 2 OptAP (none)
    bool ForceNMEA15 = false, APChecksums = false, WPL = false;
};
AutopilotDialogValues AutopilotFromBits(int32_t bits);
int32_t AutopilotBits(const AutopilotDialogValues& v);

struct VesselDialogValues {
    std::string Name;
    bool NameDisplay = false;
    bool Predictor = false;
    std::string PredictorTime;  // minutes, 1..60
    bool TrackMode = true, TrackTimeMode = true, TrackCourseMode = true, TrackDistanceMode = false, TrackDisplay = true;
    std::string TrackTimeInterval, TrackCourseChange, TrackDistance;
    bool DR = false;             // dead reckoning chosen
    std::string Course, Speed;   // the DR course (display angle unit) and speed (display unit)
    std::string TideSet, TideDrift;  // a stream set by hand: degrees true, knots
};
VesselDialogValues LoadVesselDialog(const VesselModule& vessel, const Units& units);
// Validates, asks about leaving GPS or FILE DR, stores the keys and
// applies. False (with the reason shown) when the dialog is to stay open.
bool ApplyVesselDialog(VesselModule& vessel, Registry& reg, const Units& units, InstrumentHooks& hooks,
                       Dialogs& dialogs, const std::string& productName, const VesselDialogValues& v);

}  // namespace ombra
