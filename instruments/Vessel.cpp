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
constexpr int16_t kToolDragVessel = 8;

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
            case 3:
                vessel.Mode = 3;
                break;
            case 2: {
                GPSFix f{};
                c_.decoder.GetGPSFix(f);
                StatusByDiff(f.Diff);
                vessel.Mode = 2;
                break;
            }
            case 4:
                vessel.Mode = 4;
                break;
            case 1:
            case 5:
                SetStatus(mode == 1 ? "DR" : "FILE DR", kStatusBlue);
                c_.hooks.SetInfoLine(1, "");
                c_.hooks.SetInfoLine(2, "");
                vessel.Mode = mode;
                break;
            case 0:
                c_.hooks.EndTrackingAids();
                if (VesselActive()) {
                    if (vessel.TrackMode) c_.hooks.CloseTrack();
                    vessel.COG = vessel.SOG = vessel.CourseWater = vessel.SpeedWater = 0.0;
                    vessel.DRStart = 0.0f;
                    vessel.Pos = LatLong{};
                    vessel.FixTime = vessel.FixDate = 0.0;
                }
                vessel.Mode = 0;
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
        c_.chart.CentreOnVessel();
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
    GPSFix Fix{};
    std::string prefix;
    double age = 0.0;
    bool reached = false;
    c_.errors.Guard("UpdateVesselPos", [&] { reached = ModeWork(Fix, prefix, age); });
    if (reached) {
        c_.errors.Guard("UpdateVesselPos", [&] { SetAgeLine(prefix, age); });
        EndOfCycle();
        c_.errors.Guard("CheckLostGPS", [&] { CheckLostGPS(); });
    }
    c_.hooks.ConsoleChanged();
    return Fix.Status;
}

bool VesselModule::ModeWork(GPSFix& Fix, std::string& prefix, double& age) {
    Vessel& v = vessel;
    double set = 0.0, drift = 0.0;
    bool tide = c_.hooks.TideAtVessel(set, drift);
    const double now = c_.clock.Timer();

    // The position file's presence alone switches to FILE DR, in any mode.
    if (v.Mode != 5 && FileExists(PositionFilePath())) {
        v.Name = "ldshgfyutf856987tg";
        LastFileDataStamp = "0";
        SetVesselMode(5);
    }

    switch (v.Mode) {
        case 1: {
            if (c_.globals.CurrentTool == kToolDragVessel) {
                c_.console.AgeLine.clear();
                return false;
            }
            float T = float(now);
            if (T < v.DRStart) {
                v.Pos = DeadReckon(v.DRBase, v.COG, v.SOG, double(T) + 86400.0 - double(v.DRStart));
                v.DRBase = v.Pos;
                v.DRStart = T;
            } else {
                v.Pos = DeadReckon(v.DRBase, v.COG, v.SOG, double(T) - double(v.DRStart));
            }
            age = now - double(v.DRStart);
            prefix = "DR Mode Age : ";
            c_.chart.PrepareVesselPoint(v.Pos);
            if (tide) GroundFromWater(set, drift);
            return true;
        }
        case 3: {
            c_.decoder.GetGPSFix(Fix);
            c_.console.AgeLine.clear();
            if (Fix.Status != 1) {
                SetStatus(Fix.Status == -1 ? "No GPS Signal" : "Poor GPS signal", kStatusRed);
                c_.hooks.SetInfoLine(1, "Connecting to GPS, please wait.");
                c_.hooks.SetBusyCursor(true);
                ++ConnectTries;
                if (ConnectTries >= 20) {
                    std::string q = Fix.Status == -1 ? "No GPS signal is being recieved,\nDo you wish to keep trying."
                                                     : "No valid GPS position is being recieved,\nDo you wish to keep trying.";
                    ConnectTries = 0;
                    if (c_.errors.dialogs().MsgBox(q, mb::YesNo | mb::Question, c_.errors.ProductName()) == mb::No)
                        c_.comm.StopGPS();
                }
                return false;
            }
            StatusByDiff(Fix.Diff);
            c_.hooks.SetInfoLine(1, "");
            c_.hooks.SetBusyCursor(false);
            ConnectTries = 0;
            v.Pos = Fix.Pos;
            c_.chart.PrepareVesselPoint(v.Pos);
            v.COG = Fix.Course;
            v.SOG = Fix.Speed;
            v.Heading = c_.settings.GyroUseCOG ? v.COG : double(c_.decoder.Heading.Heading);
            v.FixTime = Fix.Time;
            v.FixDate = Fix.Date;
            ShownDiff = Fix.Diff ? 1 : 0;
            v.Mode = 2;
            prefix.clear();
            age = 0.0;
            ChartChoice();
            return true;
        }
        case 2: {
            c_.decoder.GetGPSFix(Fix);
            HeadingData hd = GetHeadingData();
            if (Fix.Status != 1) {
                v.DRBase = v.Pos;
                v.DRStart = float(now - 10.0);
                if (Fix.Status == -1)
                    c_.hooks.LogEvent(3, "Lost GPS signal.");
                else
                    c_.hooks.LogEvent(4, "Poor GPS signal.");
                SetStatus(Fix.Status == -1 ? "No GPS Signal" : "Poor GPS signal", kStatusRed);
                c_.hooks.SetInfoLine(2, "");
                c_.console.AgeLine.clear();
                v.Mode = 4;
                return false;
            }
            if (std::fabs(v.COG - double(Fix.Course)) > double(v.TrackCourseChange) && v.TrackMode && v.TrackCourseMode)
                c_.hooks.AddTrackPoint();
            v.Pos = Fix.Pos;
            v.COG = Fix.Course;
            v.SOG = Fix.Speed;
            v.Heading = c_.settings.GyroUseCOG ? v.COG : double(hd.Heading);
            c_.chart.PrepareVesselPoint(v.Pos);
            v.FixTime = Fix.Time;
            v.FixDate = Fix.Date;
            if (tide) WaterFromGround(set, drift);
            if (ShownDiff != (Fix.Diff ? 1 : 0)) {
                StatusByDiff(Fix.Diff);
                ShownDiff = Fix.Diff ? 1 : 0;
            }
            age = now - Fix.Stamp;
            prefix = "Position Age : ";
            return true;
        }
        case 4: {
            c_.decoder.GetGPSFix(Fix);
            if (Fix.Status != 1) {
                if (!LostGPSShown) LostGPSWanted = 1;
                SetStatus(Fix.Status == -1 ? "No GPS Signal" : "Poor GPS signal", kStatusRed);
                if (c_.globals.CurrentTool == kToolDragVessel) {
                    c_.console.AgeLine.clear();
                    return false;
                }
                v.Pos = DeadReckon(v.DRBase, v.COG, v.SOG, Elapsed(now, v.DRStart));
                c_.chart.PrepareVesselPoint(v.Pos);
                age = now - double(v.DRStart);
                prefix = "DR Mode Age : ";
                return true;
            }
            if (LostGPSShown) LostGPSWanted = 2;
            StatusByDiff(Fix.Diff);
            ShownDiff = Fix.Diff ? 1 : 0;
            v.Pos = Fix.Pos;
            v.COG = Fix.Course;
            v.SOG = Fix.Speed;
            v.FixTime = Fix.Time;
            v.FixDate = Fix.Date;
            c_.chart.PrepareVesselPoint(v.Pos);
            v.Mode = 2;
            c_.console.AgeLine.clear();
            age = 0.0;
            return true;
        }
        case 5: {
            std::string path = PositionFilePath();
            int16_t got = 0;
            if (FileExists(path)) {
                std::string stamp = FileStampText(path);
                if (stamp != LastFileDataStamp) {
                    LastFileDataStamp = stamp;
                    c_.registry.SaveSetting(Key::LastFileDataStamp, stamp);
                    got = ReadPositionFile(path, c_.clock, c_.errors, v.DRBase, v.DRStart, v.Name, v.COG, v.SOG);
                    if (got == 2) c_.hooks.LogEvent(8, v.Name);
                }
            }
            v.Pos = DeadReckon(v.DRBase, v.COG, v.SOG, Elapsed(now, v.DRStart));
            prefix = "DR Mode Age : ";
            age = now - double(v.DRStart);
            c_.chart.PrepareVesselPoint(v.Pos);
            if (got == 2) ChartChoice();
            if (tide) WaterFromGround(set, drift);
            return true;
        }
        default:
            // None: nothing moves and nothing is active to check.
            c_.console.AgeLine.clear();
            return false;
    }
}

void VesselModule::EndOfCycle() {
    InstrumentHooks& h = c_.hooks;
    ErrorReporter& e = c_.errors;
    e.Guard("UpdateVesselPos", [&] { UpdateVesselConsole(); });
    e.Guard("UpdateVesselPos", [&] { h.AutoLog(); });
    e.Guard("UpdateVesselPos", [&] { h.RefreshTargets(); });
    if (VesselActive()) e.Guard("UpdateVesselPos", [&] { h.TrackCheck(); });
    e.Guard("UpdateVesselPos", [&] { h.ManOverboardReadout(); });
    e.Guard("UpdateVesselPos", [&] { h.RedrawVessel(); });
    e.Guard("CheckBoundaries", [&] { h.CheckBoundaries(vessel.Pos, vessel.Predictor); });
    e.Guard("CheckAnchorAlarm", [&] { h.CheckAnchorAlarm(vessel.Pos); });
    if (c_.leg.Kind != 0) {
        e.Guard("CheckArrivalAlarm", [&] { h.CheckArrivalAlarm(); });
        if (c_.leg.Kind != 0) e.Guard("CheckXTEAlarm", [&] { h.CheckXTEAlarm(); });
    }
    e.Guard("UpdateVesselPos", [&] {
        UpdateCursorConsole();
        UpdateWaypointConsole();
    });
    e.Guard("UpdateVesselPos", [&] {
        h.RefreshAutoscrollMarker();
        h.UpdateLogRunningRecord();
    });
    e.Guard("UpdateVesselPos", [&] { UpdateTideConsole(); });
    e.Guard("UpdateVesselPos", [&] { h.RefreshSatInfo(); });
}

double VesselModule::ClockNow() const { return c_.clock.Timer(); }

void VesselModule::EnterDR(double courseTrue, double speed) {
    c_.errors.Guard("EnterDR", [&] {
        LatLong here = vessel.Pos;
        double heading = vessel.Heading;
        if (vessel.Mode == 2 || vessel.Mode == 3 || vessel.Mode == 4) c_.comm.StopGPS();
        vessel.Pos = here;
        vessel.Heading = heading;
        SetVesselMode(1);
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
