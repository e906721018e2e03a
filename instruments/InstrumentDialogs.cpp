#include "instruments/InstrumentDialogs.h"

#include <cmath>

#include "core/Format.h"
#include "core/Registry.h"
#include "core/Rounding.h"
#include "core/Units.h"
#include "core/Val.h"
#include "instruments/CommSettings.h"
#include "instruments/Vessel.h"
#include "platform/api/Dialogs.h"

namespace ombra {

const char* const kBaudRates[7] = {"1200", "2400", "4800", "9600", "19200", "38400", "57600"};
const char* const kWPModes[4] = {"NMEA 0183", "FURUNO", "MAGELLAN", "LEICA"};

namespace {
int16_t PortNumber(const std::string& text) {
    double v = Val(text);
    return v >= 0.0 && v <= 255.0 ? int16_t(RoundEven(v)) : 0;
}
int32_t Rate(const std::string& text) {
    double v = Val(text);
    return v > 0.0 && v <= 4000000.0 ? int32_t(RoundEven(v)) : 4800;
}
}  // namespace

std::string PortDevice(const Registry& reg, int16_t port) {
    if (port < 1 || port > 8) return "";
    return reg.GetSetting(Key(int16_t(Key::ComPort1) + port - 1));
}

void SavePortDevice(Registry& reg, int16_t port, const std::string& device) {
    if (port < 1 || port > 8) return;
    reg.SaveSetting(Key(int16_t(Key::ComPort1) + port - 1), Trim(device));
}

GPSDialogValues LoadGPSDialog(const Registry& reg, const CommSettings& s) {
    GPSDialogValues v;
    v.Port = std::to_string(s.GPSPort);
    v.BaudRate = std::to_string(s.GPSBaudRate);
    v.Delay = std::to_string(s.GPSDelay);
    v.Device = PortDevice(reg, s.GPSPort);
    v.WPMode = s.WPMode;
    v.PositionSentence = s.NMEA_AIVDO ? 3 : s.NMEA_RMC ? 2 : s.NMEA_GLL ? 1 : 0;
    v.Checksums = s.Checksums;
    v.DiffGPS = s.DiffGPS;
    v.AutoPilot = s.AutopilotActive;
    v.AutoAdvance = s.AutopilotAdvance;
    return v;
}

void SaveGPSDialog(Registry& reg, CommSettings& s, const GPSDialogValues& v) {
    s.GPSPort = PortNumber(v.Port);
    s.GPSBaudRate = Rate(v.BaudRate);
    double delay = Val(v.Delay);
    s.GPSDelay = delay >= 1.0 && delay <= 86400.0 ? int32_t(RoundEven(delay)) : 20;
    s.WPMode = v.WPMode >= 0 && v.WPMode <= 3 ? v.WPMode : 0;
    s.NMEA_GGA = v.PositionSentence == 0;
    s.NMEA_GLL = v.PositionSentence == 1;
    s.NMEA_RMC = v.PositionSentence == 2;
    s.NMEA_AIVDO = v.PositionSentence == 3;
    s.Checksums = v.Checksums;
    s.DiffGPS = v.DiffGPS;
    s.AutopilotActive = v.AutoPilot;
    s.AutopilotAdvance = v.AutoAdvance;
    reg.SaveSetting(Key::GPSPort, std::to_string(s.GPSPort));
    reg.SaveSetting(Key::GPSBaudRate, std::to_string(s.GPSBaudRate));
    reg.SaveSetting(Key::GPSDelay, std::to_string(s.GPSDelay));
    reg.SaveSetting(Key::WPMode, std::to_string(s.WPMode));
    reg.SaveSetting(Key::NMEA_GGA, BoolText(s.NMEA_GGA));
    reg.SaveSetting(Key::NMEA_GLL, BoolText(s.NMEA_GLL));
    reg.SaveSetting(Key::NMEA_RMC, BoolText(s.NMEA_RMC));
    reg.SaveSetting(Key::NMEA_AIVDO, BoolText(s.NMEA_AIVDO));
    reg.SaveSetting(Key::Checksums, BoolText(s.Checksums));
    reg.SaveSetting(Key::DiffGPS, s.DiffGPS ? "1" : "0");
    reg.SaveSetting(Key::AutopilotActive, s.AutopilotActive ? "1" : "0");
    reg.SaveSetting(Key::AutopilotAdvance, s.AutopilotAdvance ? "1" : "0");
    SavePortDevice(reg, s.GPSPort, v.Device);
}

GyroDialogValues LoadGyroDialog(const Registry& reg, const CommSettings& s) {
    GyroDialogValues v;
    v.Choice = s.GyroUseGyroPort ? 2 : s.GyroUseGPSPort ? 1 : 0;
    v.Port = std::to_string(s.GyroPort);
    v.BaudRate = std::to_string(s.GyroBaudRate);
    v.Device = PortDevice(reg, s.GyroPort);
    return v;
}

void SaveGyroDialog(Registry& reg, CommSettings& s, const GyroDialogValues& v) {
    s.GyroUseCOG = v.Choice == 0;
    s.GyroUseGPSPort = v.Choice == 1;
    s.GyroUseGyroPort = v.Choice == 2;
    s.GyroPort = PortNumber(v.Port);
    s.GyroBaudRate = Rate(v.BaudRate);
    reg.SaveSetting(Key::GyroUseCOG, BoolText(s.GyroUseCOG));
    reg.SaveSetting(Key::GyroUseGPSPort, BoolText(s.GyroUseGPSPort));
    reg.SaveSetting(Key::GyroUseGyroPort, BoolText(s.GyroUseGyroPort));
    reg.SaveSetting(Key::GyroPort, std::to_string(s.GyroPort));
    reg.SaveSetting(Key::GyroBaudRate, std::to_string(s.GyroBaudRate));
    SavePortDevice(reg, s.GyroPort, v.Device);
}

AutopilotDialogValues AutopilotFromBits(int32_t b) {
    AutopilotDialogValues v;
    v.RMC = b & 1;
    v.GLL = b & 2;
    v.VTG = b & 4;
    v.GGA = b & 8;
    v.RMB = b & 16;
    v.BWC = b & 32;
    v.BOD = b & 64;
    v.XTE = b & 128;
    v.APSentence = (b & 256) ? 0 : (b & 2048) ? 1 : 2;
    v.ForceNMEA15 = b & 512;
    v.APChecksums = b & 1024;
    v.WPL = b & 4096;
    return v;
}

int32_t AutopilotBits(const AutopilotDialogValues& v) {
    int32_t b = 0;
    if (v.RMC) b += 1;
    if (v.GLL) b += 2;
    if (v.VTG) b += 4;
    if (v.GGA) b += 8;
    if (v.RMB) b += 16;
    if (v.BWC) b += 32;
    if (v.BOD) b += 64;
    if (v.XTE) b += 128;
    if (v.APSentence == 0) b += 256;
    if (v.ForceNMEA15) b += 512;
    if (v.APChecksums) b += 1024;
    if (v.APSentence == 1) b += 2048;
    if (v.WPL) b += 4096;
    return b;
}

VesselDialogValues LoadVesselDialog(const VesselModule& module, const Units& units) {
    const Vessel& ves = module.vessel;
    VesselDialogValues v;
    v.Name = ves.Name;
    v.NameDisplay = ves.NameDisplay;
    v.Predictor = ves.Predictor;
    v.PredictorTime = NumberText(ves.PredictorTime);
    v.TrackMode = ves.TrackMode;
    v.TrackTimeMode = ves.TrackTimeMode;
    v.TrackCourseMode = ves.TrackCourseMode;
    v.TrackDistanceMode = ves.TrackDistanceMode;
    v.TrackDisplay = ves.TrackDisplay;
    v.TrackTimeInterval = NumberText(ves.TrackTimeInterval);
    v.TrackCourseChange = NumberText(ves.TrackCourseChange);
    v.TrackDistance = NumberText(ves.TrackDistance);
    v.DR = ves.Mode == 1;
    v.Course = Format(ves.CourseWater, "0.0");
    v.Speed = units.ToDisplay(UnitKind::Speed, float(ves.SpeedWater), "0.0");
    v.TideSet = Format(module.UserTideSet, "0");
    v.TideDrift = Format(module.UserTideDrift, "0.0");
    return v;
}

bool ApplyVesselDialog(VesselModule& module, Registry& reg, const Units& units, InstrumentHooks& hooks, Dialogs& dialogs,
                       const std::string& productName, const VesselDialogValues& v) {
    double predictor = Val(v.PredictorTime);
    if (!(predictor >= 1.0 && predictor <= 60.0)) {
        dialogs.MsgBox("Predictor interval from 1 to 60 minutes.", mb::OKOnly | mb::Exclamation, productName);
        return false;
    }
    double course = Val(v.Course);
    if (v.DR && !(course >= 0.0 && course <= 360.0)) {
        dialogs.MsgBox("Vessel course should be between 0 and 360 degrees.", mb::OKOnly | mb::Exclamation, productName);
        return false;
    }
    double set = Val(v.TideSet);
    if (!(set >= 0.0 && set <= 360.0)) {
        dialogs.MsgBox("Tidal set should be between 0 and 360 degrees.", mb::OKOnly | mb::Exclamation, productName);
        return false;
    }
    Vessel& ves = module.vessel;
    bool enterDR = false;
    if (v.DR && ves.Mode != 1) {
        if (ves.Mode == 2 || ves.Mode == 3 || ves.Mode == 4) {
            if (dialogs.MsgBox("You are currently in GPS mode.\nConfirm change to dead reckoning mode.",
                               mb::YesNo | mb::Question, "Mode Change") != mb::Yes)
                return false;
        } else if (ves.Mode == 5) {
            if (dialogs.MsgBox("Do you wish to cancel FILE DR mode.", mb::YesNo | mb::Question, productName) != mb::Yes)
                return false;
        }
        enterDR = true;
    }
    module.UserTideSet = set;
    module.UserTideDrift = Val(v.TideDrift);
    ves.Name = v.Name;
    ves.NameDisplay = v.NameDisplay;
    ves.Predictor = v.Predictor;
    ves.PredictorTime = float(predictor);
    ves.TrackMode = v.TrackMode;
    ves.TrackTimeMode = v.TrackTimeMode;
    ves.TrackCourseMode = v.TrackCourseMode;
    ves.TrackDistanceMode = v.TrackDistanceMode;
    ves.TrackDisplay = v.TrackDisplay;
    ves.TrackTimeInterval = float(Val(v.TrackTimeInterval));
    ves.TrackCourseChange = float(Val(v.TrackCourseChange));
    ves.TrackDistance = float(Val(v.TrackDistance));
    reg.SaveSetting(Key::VesselName, ves.Name);
    reg.SaveSetting(Key::VesselNameDisplay, BoolText(ves.NameDisplay));
    reg.SaveSetting(Key::VesselPredictor, BoolText(ves.Predictor));
    reg.SaveSetting(Key::VesselPredictorTime, NumberText(ves.PredictorTime));
    reg.SaveSetting(Key::VesselTrackMode, BoolText(ves.TrackMode));
    reg.SaveSetting(Key::VesselTrackTimeMode, BoolText(ves.TrackTimeMode));
    reg.SaveSetting(Key::VesselTrackTimeInterval, NumberText(ves.TrackTimeInterval));
    reg.SaveSetting(Key::VesselTrackCourseMode, BoolText(ves.TrackCourseMode));
    reg.SaveSetting(Key::VesselTrackCourseChange, NumberText(ves.TrackCourseChange));
    reg.SaveSetting(Key::VesselTrackDistanceMode, BoolText(ves.TrackDistanceMode));
    reg.SaveSetting(Key::VesselTrackDistance, NumberText(ves.TrackDistance));
    reg.SaveSetting(Key::VesselTrackDisplay, BoolText(ves.TrackDisplay));
    if (v.DR) {
        // A course typed in magnetic or compass degrees is brought to true.
        double trueCourse = course;
        if (units.AngleUnit != 0) trueCourse = std::fmod(course + double(hooks.VariationAt(ves.Pos)) + 360.0, 360.0);
        float speed = float(Val(v.Speed));
        units.FromDisplay(UnitKind::Speed, speed);
        if (enterDR || ves.Mode == 1) module.EnterDR(trueCourse, double(speed));
    }
    return true;
}

}  // namespace ombra
