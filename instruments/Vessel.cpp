#include "instruments/Vessel.h"

#include <cmath>

#include "core/Angles.h"
#include "core/ErrorReport.h"
#include "core/Format.h"
#include "core/GenFuncs.h"
#include "core/Paths.h"
#include "core/Registry.h"
#include "core/Startup.h"
#include "core/Units.h"
#include "core/Val.h"
#include "instruments/PositionFile.h"
#include "navmath/RLGC.h"
#include "platform/api/Clock.h"
#include "platform/api/Dialogs.h"

namespace ombra {

namespace {

}  // namespace

void VesselModule::LoadVesselSettings() {
    c_.errors.Guard("LoadVesselSettings", [&] {
        const Registry& r = c_.registry;
        vessel = Vessel{};
        vessel.Name = r.GetSetting(Key::VesselName);
        vessel.NameDisplay = r.IsTrue(Key::VesselNameDisplay);
        vessel.TrackMode = r.IsTrue(Key::VesselTrackMode);
        vessel.TrackTimeMode = r.IsTrue(Key::VesselTrackTimeMode);
        vessel.TrackTimeInterval = float(r.GetNumber(Key::VesselTrackTimeInterval));
        vessel.TrackCourseMode = r.IsTrue(Key::VesselTrackCourseMode);
        vessel.TrackCourseChange = float(r.GetNumber(Key::VesselTrackCourseChange));
        vessel.TrackDistanceMode = r.IsTrue(Key::VesselTrackDistanceMode);
        vessel.TrackDistance = float(r.GetNumber(Key::VesselTrackDistance));
        vessel.TrackDisplay = r.IsTrue(Key::VesselTrackDisplay);
        double colour = r.GetNumber(Key::VesselTrackColour);
        double style = r.GetNumber(Key::VesselTrackLineStyle);
        vessel.TrackColour = int16_t(colour >= -32768 && colour <= 32767 ? colour : 10);
        vessel.TrackLineStyle = int16_t(style >= -32768 && style <= 32767 ? style : 2);
        vessel.Predictor = r.IsTrue(Key::VesselPredictor);
        vessel.PredictorTime = float(r.GetNumber(Key::VesselPredictorTime));
        AutoscrollTime = float(r.GetNumber(Key::AutoscrollTime));
        vessel.Heading = -1.0;
    });
}

void VesselModule::ReadLastFileDataStamp() { LastFileDataStamp = c_.registry.GetSetting(Key::LastFileDataStamp); }

std::string VesselModule::PositionFilePath() const { return NativePath(c_.globals.AppPath + "FileData\\Position.dat"); }

void VesselModule::SetStatus(const std::string& text, Rgb colour) {
    c_.console.StatusText = text;
    c_.console.StatusColour = colour;
}

void VesselModule::StatusByDiff(bool diff) {
    if (diff)
        SetStatus("DIFF GPS", kStatusBrightGreen);
    else
        SetStatus("RAW GPS", kStatusGreen);
}

void VesselModule::SetVesselMode(int16_t mode) {
    c_.errors.Guard("SetVesselMode", [&] {
        switch (mode) {
            case kModeConnecting:
            case kModeGPSLost:
                vessel.Mode = mode;
                break;
            case kModeGPS:
                StatusByDiff(ReadFix().Diff);
                vessel.Mode = kModeGPS;
                break;
            case kModeDR:
            case kModeFileDR:
                SetStatus(mode == kModeDR ? "DR" : "FILE DR", kStatusBlue);
                c_.hooks.SetInfoLine(InfoPanel::Prompt, "");
                c_.hooks.SetInfoLine(InfoPanel::Detail, "");
                c_.hooks.SetBusyCursor(false);  // dead reckoning may follow connecting
                vessel.Mode = mode;
                break;
            case kModeNone:
                c_.hooks.EndTrackingAids();
                if (VesselActive()) {
                    if (vessel.TrackMode) c_.hooks.CloseTrack(Snapshot());
                    vessel.COG = vessel.SOG = vessel.CourseWater = vessel.SpeedWater = 0.0;
                    vessel.DRStart = 0.0f;
                    vessel.Pos = LatLong{};
                    vessel.FixTime = vessel.FixDate = 0.0;
                }
                vessel.Mode = kModeNone;
                // Whatever the connecting showed goes with it: the prompt,
                // the hourglass and the count of tries.
                c_.hooks.SetInfoLine(InfoPanel::Prompt, "");
                c_.hooks.SetBusyCursor(false);
                ConnectTries = 0;
                c_.console.AllNotAvailable();
                c_.console.AgeLine.clear();
                SetStatus("Off Line", 0);
                break;
            default:
                return;
        }
        c_.hooks.ConsoleChanged();
    });
}

VesselSnapshot VesselModule::Snapshot() const {
    VesselSnapshot s;
    s.Pos = vessel.Pos;
    s.COG = vessel.COG;
    s.SOG = vessel.SOG;
    s.Heading = vessel.Heading;
    s.Mode = vessel.Mode;
    s.Active = VesselActive();
    s.Predictor = vessel.Predictor;
    s.Time = c_.clock.Timer();
    return s;
}

GPSFix VesselModule::ReadFix() {
    GPSFix fix{};
    if (!c_.decoder.AgeFix()) c_.decoder.GetGPSFix(fix);
    return fix;
}

double VesselModule::Elapsed(double now, double since) const {
    double d = now - since;
    return d < 0.0 ? d + 86400.0 : d;
}

void VesselModule::WaterFromGround(double set, double drift) {
    double x = vessel.SOG * std::sin(vessel.COG * kDegToRad) - drift * std::sin(set * kDegToRad);
    double y = vessel.SOG * std::cos(vessel.COG * kDegToRad) - drift * std::cos(set * kDegToRad);
    vessel.SpeedWater = std::sqrt(x * x + y * y);
    vessel.CourseWater = Fold360(std::atan2(x, y) / kDegToRad);
}

void VesselModule::GroundFromWater(double set, double drift) {
    double x = vessel.SpeedWater * std::sin(vessel.CourseWater * kDegToRad) + drift * std::sin(set * kDegToRad);
    double y = vessel.SpeedWater * std::cos(vessel.CourseWater * kDegToRad) + drift * std::cos(set * kDegToRad);
    vessel.SOG = std::sqrt(x * x + y * y);
    vessel.COG = Fold360(std::atan2(x, y) / kDegToRad);
}

void VesselModule::ChartChoice() {
    if (c_.registry.GetSetting(Key::AutoStartupChart) == "False")
        c_.chart.CentreOnVessel(vessel.Pos);
    else
        c_.chart.OpenBestChartAt(vessel.Pos);
}

void VesselModule::SetAgeLine(const std::string& prefix, double age) {
    age += 86400.0;
    if (age >= 86400.0) age -= 86400.0;
    std::string& line = c_.console.AgeLine;
    if (age == 0.0)
        line.clear();
    else if (age < 60.0)
        line = prefix + Format(age, "0.0") + " secs";
    else if (age < 3600.0)
        line = prefix + Format(age / 60.0, "0.0") + " mins";
    else if (age < 86400.0)
        line = prefix + Format(age / 3600.0, "0.0") + " hours";
    else
        line = prefix + Format(age / 86400.0, "0.0") + " days";
}

HeadingData VesselModule::GetHeadingData() {
    c_.hooks.ArpaHeadingAgeCheck();
    return c_.decoder.Heading;
}

int16_t VesselModule::UpdateVesselPos() {
    Cycle c;
    bool reached = false;
    c_.errors.Guard("UpdateVesselPos", [&] { reached = ModeWork(c); });
    if (reached) {
        c_.errors.Guard("UpdateVesselPos", [&] { SetAgeLine(c.prefix, c.age); });
        EndOfCycle();
        c_.errors.Guard("CheckLostGPS", [&] { CheckLostGPS(); });
    }
    c_.hooks.ConsoleChanged();
    return c.fix.Status;
}

bool VesselModule::ModeWork(Cycle& c) {
    c.tide = c_.hooks.TideAtVessel(c.set, c.drift);
    c.now = c_.clock.Timer();

    // The position file's presence alone switches to FILE DR, in any mode.
    if (vessel.Mode != kModeFileDR && FileExists(PositionFilePath())) {
        vessel.Name = "ldshgfyutf856987tg";
        LastFileDataStamp = "0";
        SetVesselMode(kModeFileDR);
    }

    switch (vessel.Mode) {
        case kModeDR: return CycleDR(c);
        case kModeGPS: return CycleGPS(c);
        case kModeConnecting: return CycleConnecting(c);
        case kModeGPSLost: return CycleGPSLost(c);
        case kModeFileDR: return CycleFileDR(c);
        default: return CycleNone(c);
    }
}

// None: nothing moves and nothing is active to check.
bool VesselModule::CycleNone(Cycle&) {
    c_.console.AgeLine.clear();
    return false;
}

bool VesselModule::CycleDR(Cycle& c) {
    Vessel& v = vessel;
    if (c_.chart.VesselBeingDragged()) {
        c_.console.AgeLine.clear();
        return false;
    }
    // The clock as the base's time is kept (single precision); at midnight
    // the base moves on so the track shows no jump.
    const float T = float(c.now);
    if (T < v.DRStart) {
        v.Pos = DeadReckon(v.DRBase, v.COG, v.SOG, double(T) + 86400.0 - double(v.DRStart));
        v.DRBase = v.Pos;
        v.DRStart = T;
    } else {
        v.Pos = DeadReckon(v.DRBase, v.COG, v.SOG, double(T) - double(v.DRStart));
    }
    c.age = c.now - double(v.DRStart);
    c.prefix = "DR Mode Age : ";
    c_.chart.PrepareVesselPoint(v.Pos);
    if (c.tide) GroundFromWater(c.set, c.drift);
    return true;
}

void VesselModule::StillConnecting(int16_t status) {
    constexpr int16_t kTriesBeforeAsking = 20;
    const bool none = status == kFixNoData;
    SetStatus(none ? "No GPS Signal" : "Poor GPS signal", kStatusRed);
    c_.hooks.SetInfoLine(InfoPanel::Prompt, "Connecting to GPS, please wait.");
    c_.hooks.SetBusyCursor(true);
    if (++ConnectTries < kTriesBeforeAsking) return;
    std::string q = none ? "No GPS signal is being recieved,\nDo you wish to keep trying."
                         : "No valid GPS position is being recieved,\nDo you wish to keep trying.";
    ConnectTries = 0;
    if (c_.errors.dialogs().MsgBox(q, mb::YesNo | mb::Question, c_.errors.ProductName()) == mb::No) c_.comm.StopGPS();
}

void VesselModule::TakeFix(const GPSFix& fix) {
    vessel.Pos = fix.Pos;
    vessel.COG = fix.Course;
    vessel.SOG = fix.Speed;
    vessel.FixTime = fix.Time;
    vessel.FixDate = fix.Date;
}

bool VesselModule::CycleConnecting(Cycle& c) {
    c.fix = ReadFix();
    c_.console.AgeLine.clear();
    if (c.fix.Status != kFixGood) {
        StillConnecting(c.fix.Status);
        return false;
    }
    StatusByDiff(c.fix.Diff);
    c_.hooks.SetInfoLine(InfoPanel::Prompt, "");
    c_.hooks.SetBusyCursor(false);
    ConnectTries = 0;
    TakeFix(c.fix);
    c_.chart.PrepareVesselPoint(vessel.Pos);
    vessel.Heading = c_.settings.GyroUseCOG ? vessel.COG : double(c_.decoder.Heading.Heading);
    ShownDiff = c.fix.Diff ? 1 : 0;
    vessel.Mode = kModeGPS;
    c.prefix.clear();
    c.age = 0.0;
    ChartChoice();
    return true;
}

bool VesselModule::CycleGPS(Cycle& c) {
    Vessel& v = vessel;
    c.fix = ReadFix();
    HeadingData hd = GetHeadingData();
    if (c.fix.Status != kFixGood) {
        // Lost: dead reckoning from ten seconds back.
        v.DRBase = v.Pos;
        v.DRStart = float(c.now - 10.0);
        const bool none = c.fix.Status == kFixNoData;
        if (none)
            c_.hooks.LogEvent(LogCode::LostGPS, "Lost GPS signal.");
        else
            c_.hooks.LogEvent(LogCode::PoorGPS, "Poor GPS signal.");
        SetStatus(none ? "No GPS Signal" : "Poor GPS signal", kStatusRed);
        c_.hooks.SetInfoLine(InfoPanel::Detail, "");
        c_.console.AgeLine.clear();
        v.Mode = kModeGPSLost;
        return false;
    }
    if (std::fabs(v.COG - double(c.fix.Course)) > double(v.TrackCourseChange) && v.TrackMode && v.TrackCourseMode)
        c_.hooks.AddTrackPoint(Snapshot());
    TakeFix(c.fix);
    v.Heading = c_.settings.GyroUseCOG ? v.COG : double(hd.Heading);
    c_.chart.PrepareVesselPoint(v.Pos);
    if (c.tide) WaterFromGround(c.set, c.drift);
    if (ShownDiff != (c.fix.Diff ? 1 : 0)) {
        StatusByDiff(c.fix.Diff);
        ShownDiff = c.fix.Diff ? 1 : 0;
    }
    c.age = c.now - c.fix.Stamp;
    c.prefix = "Position Age : ";
    return true;
}

bool VesselModule::CycleGPSLost(Cycle& c) {
    Vessel& v = vessel;
    c.fix = ReadFix();
    if (c.fix.Status != kFixGood) {
        if (!LostGPSShown) LostGPSWanted = 1;
        SetStatus(c.fix.Status == kFixNoData ? "No GPS Signal" : "Poor GPS signal", kStatusRed);
        if (c_.chart.VesselBeingDragged()) {
            c_.console.AgeLine.clear();
            return false;
        }
        v.Pos = DeadReckon(v.DRBase, v.COG, v.SOG, Elapsed(c.now, v.DRStart));
        c_.chart.PrepareVesselPoint(v.Pos);
        c.age = c.now - double(v.DRStart);
        c.prefix = "DR Mode Age : ";
        return true;
    }
    // The fix is back.
    c_.hooks.LogEvent(LogCode::RegainedGPS, "Regained GPS signal.");
    if (LostGPSShown) LostGPSWanted = 2;
    StatusByDiff(c.fix.Diff);
    ShownDiff = c.fix.Diff ? 1 : 0;
    TakeFix(c.fix);
    c_.chart.PrepareVesselPoint(v.Pos);
    v.Mode = kModeGPS;
    c_.console.AgeLine.clear();
    c.age = 0.0;
    return true;
}

bool VesselModule::CycleFileDR(Cycle& c) {
    Vessel& v = vessel;
    std::string path = PositionFilePath();
    int16_t got = 0;
    if (FileExists(path)) {
        std::string stamp = FileStampText(path);
        if (stamp != LastFileDataStamp) {
            LastFileDataStamp = stamp;
            c_.registry.SaveSetting(Key::LastFileDataStamp, stamp);
            got = ReadPositionFile(path, c_.clock, c_.errors, v.DRBase, v.DRStart, v.Name, v.COG, v.SOG);
            if (got == 2) c_.hooks.LogEvent(LogCode::NewFileVessel, v.Name);
        }
    }
    v.Pos = DeadReckon(v.DRBase, v.COG, v.SOG, Elapsed(c.now, v.DRStart));
    c.prefix = "DR Mode Age : ";
    c.age = c.now - double(v.DRStart);
    c_.chart.PrepareVesselPoint(v.Pos);
    if (got == 2) ChartChoice();
    if (c.tide) WaterFromGround(c.set, c.drift);
    return true;
}

void VesselModule::EndOfCycle() {
    InstrumentHooks& h = c_.hooks;
    ErrorReporter& e = c_.errors;
    e.Guard("UpdateVesselPos", [&] { UpdateVesselConsole(); });
    const VesselSnapshot v = Snapshot();
    e.Guard("UpdateVesselPos", [&] { h.AutoLog(v); });
    e.Guard("UpdateVesselPos", [&] { h.RefreshTargets(v); });
    if (v.Active) e.Guard("UpdateVesselPos", [&] { h.TrackCheck(v); });
    e.Guard("UpdateVesselPos", [&] { h.ManOverboardReadout(v); });
    e.Guard("UpdateVesselPos", [&] { h.RedrawVessel(v); });
    e.Guard("CheckBoundaries", [&] { h.CheckBoundaries(v); });
    e.Guard("CheckAnchorAlarm", [&] { h.CheckAnchorAlarm(v); });
    if (c_.leg.Kind != 0) {
        e.Guard("CheckArrivalAlarm", [&] { h.CheckArrivalAlarm(v); });
        if (c_.leg.Kind != 0) e.Guard("CheckXTEAlarm", [&] { h.CheckXTEAlarm(v); });
    }
    e.Guard("UpdateVesselPos", [&] {
        UpdateCursorConsole();
        UpdateWaypointConsole();
    });
    e.Guard("UpdateVesselPos", [&] {
        h.RefreshAutoscrollMarker(v);
        h.UpdateLogRunningRecord(v);
    });
    e.Guard("UpdateVesselPos", [&] { UpdateTideConsole(); });
    e.Guard("UpdateVesselPos", [&] { h.RefreshSatInfo(v); });
}


void VesselModule::EnterDR(double courseTrue, double speed) {
    c_.errors.Guard("EnterDR", [&] {
        LatLong here = vessel.Pos;
        double heading = vessel.Heading;
        if (vessel.Mode == kModeGPS || vessel.Mode == kModeConnecting || vessel.Mode == kModeGPSLost) c_.comm.StopGPS();
        vessel.Pos = here;
        vessel.Heading = heading;
        SetVesselMode(kModeDR);
        vessel.DRBase = here;
        vessel.DRStart = float(c_.clock.Timer());
        vessel.CourseWater = Fold360(courseTrue);
        vessel.SpeedWater = speed;
        double set = 0.0, drift = 0.0;
        if (c_.hooks.TideAtVessel(set, drift)) {
            GroundFromWater(set, drift);
        } else {
            vessel.COG = vessel.CourseWater;
            vessel.SOG = vessel.SpeedWater;
        }
    });
}

bool VesselModule::PlaceVessel(const LatLong& pos) {
    if (vessel.Mode == kModeGPS || vessel.Mode == kModeConnecting || vessel.Mode == kModeGPSLost) return false;
    c_.errors.Guard("PlaceVessel", [&] {
        if (vessel.Mode != kModeDR) SetVesselMode(kModeDR);
        vessel.Pos = pos;
        vessel.DRBase = pos;
        vessel.DRStart = float(c_.clock.Timer());
        UpdateVesselConsole();
        c_.chart.PrepareVesselPoint(pos);
        c_.hooks.ConsoleChanged();
    });
    return true;
}

void VesselModule::CheckLostGPS() {
    if (LostGPSWanted == 1) {
        LostGPSWanted = 0;
        if (!LostGPSShown) {
            LostGPSShown = 1;
            c_.hooks.ShowLostGPS(true);
        }
    } else if (LostGPSWanted == 2) {
        LostGPSWanted = 0;
        LostGPSShown = 0;
        c_.hooks.ShowLostGPS(false);
    }
}

}  // namespace ombra
