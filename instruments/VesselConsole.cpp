// The vessel's console rows, the autoscroll check and the course to steer:
// the parts of the vessel module that turn numbers into what the navigator
// reads.
#include <cmath>

#include "core/Angles.h"
#include "core/ErrorReport.h"
#include "core/Format.h"
#include "core/GenFuncs.h"
#include "core/Registry.h"
#include "core/Rounding.h"
#include "core/Units.h"
#include "core/Val.h"
#include "instruments/Vessel.h"
#include "navmath/RLGC.h"
#include "platform/api/Clock.h"
#include "platform/api/Dialogs.h"

namespace ombra {

namespace {

}  // namespace

std::string VesselModule::AngleText(double trueDegrees) const {
    double a = trueDegrees;
    if (c_.units.AngleUnit != 0) a = Fold360(a - double(c_.hooks.VariationAt(vessel.Pos)));
    // A compass course is the magnetic one plus the card's deviation for it.
    if (c_.units.AngleUnit == 2) a = Fold360(a + double(c_.hooks.CompassDeviation(float(a))));
    return Format(a, "000.0") + " " + c_.units.UnitText(UnitKind::Angle);
}

void VesselModule::UpdateVesselConsole() {
    Console& con = c_.console;
    Units& u = c_.units;
    const Vessel& v = vessel;
    if (!VesselActive()) {
        con.LabVessel.fill("N/A");
    } else {
        LatLongText(con.LabVessel[0], con.LabVessel[1], &v.Pos, 1, 1);
        con.LabVessel[2] = AngleText(v.CourseWater);
        con.LabVessel[3] = u.ToDisplay(UnitKind::Speed, float(v.SpeedWater), "0.0") + " " + u.UnitText(UnitKind::Speed);
        con.LabVessel[4] = AngleText(v.COG);
        con.LabVessel[5] = u.ToDisplay(UnitKind::Speed, float(v.SOG), "0.0") + " " + u.UnitText(UnitKind::Speed);
        con.LabVessel[6] = v.Heading < 0.0 ? "N/A" : AngleText(v.Heading);
    }
    // The leg as seen from where the vessel is now.
    ActiveLeg& leg = c_.leg;
    if (leg.Kind != 0) {
        bool gc = c_.registry.IsTrue(Key::CoDist2);
        leg.GreatCircle = gc ? 1 : 0;
        if (v.Pos == leg.To) {
            leg.DistanceTo = leg.BearingTo = leg.LegCourse = 0.0;
        } else {
            double d = 0.0;
            CourseDistance(leg.GreatCircle, v.Pos, leg.To, leg.BearingTo, leg.DistanceTo);
            CourseDistance(leg.GreatCircle, leg.From, leg.To, leg.LegCourse, d);
        }
        UpdateWaypointConsole();
    }
}

void VesselModule::UpdateWaypointConsole() {
    Console& con = c_.console;
    Units& u = c_.units;
    const ActiveLeg& leg = c_.leg;
    if (leg.Kind == 0) {
        con.WaypointNotAvailable();
        return;
    }
    auto& row = con.LabWP;
    const char* kind = leg.GreatCircle ? " GC" : " RL";
    const std::string rangeFormat = c_.registry.GetNumber(Key::RangeDP) == 2.0 ? "0.00" : "0.000";
    con.WPFrameCaption = "Active Waypoint";
    row[0] = leg.Name;
    LatLongText(row[1], row[2], &leg.To, 1, 1);
    row[3] = AngleText(leg.BearingTo) + kind;
    row[4] = u.ToDisplay(UnitKind::Distance, float(leg.DistanceTo), rangeFormat) + " " + u.UnitText(UnitKind::Distance) + kind;

    double vmg = 0.0;
    if (VesselActive()) {
        double diff = RoundEven(leg.BearingTo - vessel.COG);
        vmg = vessel.SOG * std::cos(diff * kDegToRad);
        row[5] = u.ToDisplay(UnitKind::Speed, float(vmg), "##0.00") + " " + u.UnitText(UnitKind::Speed);
    } else {
        row[5] = "N/A";
    }
    if (!(Val(row[5]) > 0.0) || !(vmg > 0.0)) {
        row[6] = row[7] = row[8] = "N/A";
    } else {
        float minutes = float(leg.DistanceTo / vmg * 60.0);
        double days = std::floor(double(minutes) / 1440.0);
        if (days < 1.0) days = 0.0;
        double rest = double(minutes) - days * 1440.0;
        double hours = std::floor(rest / 60.0);
        double mins = std::floor(rest - hours * 60.0);
        row[6] = Format(days, "0") + "d " + Format(hours, "00") + "h " + Format(mins, "00") + "m";
        DateTime eta = DateTime::FromSerial(c_.clock.Now().Serial() + double(minutes) / 1440.0);
        row[7] = FormatDate(eta, "Short Time");
        row[8] = FormatDate(eta, "Short Date");
    }
    CrossTrack x = CrossTrackOf(leg.LegCourse, leg.BearingTo, leg.DistanceTo);
    row[9] = u.ToDisplay(UnitKind::Distance, float(x.distance), "0.00") + " " + u.UnitText(UnitKind::Distance);
    row[10] = x.mark;

    // With the present set and drift, by the planner's test of the stream.
    double cts = 0.0;
    row[11] = VesselActive() && c_.hooks.CourseToSteerLeg(cts) ? AngleText(cts) : "N/A";
}

void VesselModule::UpdateCursorConsole() {
    LatLong cursor;
    if (!c_.hooks.CursorPosition(cursor)) return;
    Console& con = c_.console;
    LatLongText(con.LabCursor[0], con.LabCursor[1], &cursor, 1, 1);
    if (!VesselActive()) {
        con.LabCursor[2] = con.LabCursor[3] = "N/A";
        return;
    }
    bool gc = c_.registry.IsTrue(Key::CoDist1);
    double course = 0.0, distance = 0.0;
    CourseDistance(gc ? 1 : 0, vessel.Pos, cursor, course, distance);
    const char* kind = gc ? " GC" : " RL";
    const std::string rangeFormat = c_.registry.GetNumber(Key::RangeDP) == 2.0 ? "0.00" : "0.000";
    con.LabCursor[2] = AngleText(course) + kind;
    con.LabCursor[3] = c_.units.ToDisplay(UnitKind::Distance, float(distance), rangeFormat) + " " +
                       c_.units.UnitText(UnitKind::Distance) + kind;
}

void VesselModule::UpdateTideConsole() {
    double set = 0.0, drift = 0.0;
    Console& con = c_.console;
    if (!c_.hooks.TideAtVessel(set, drift)) {
        con.LabTide.fill("N/A");
        return;
    }
    con.LabTide[0] = AngleText(set);
    con.LabTide[1] = c_.units.ToDisplay(UnitKind::Speed, float(drift), "0.0") + " " + c_.units.UnitText(UnitKind::Speed);
}

// The view keeps AutoscrollTime minutes of the vessel's run ahead of her.
// Along the course, the view reaches from its centre to its edge over
// `reach` pixels; when the run ahead would pass that, each move of the
// chart would be followed by another within moments, so the time is cut
// to what the view holds (whole minutes), or turned off when that is not
// even one minute. When the point ahead (or the vessel) leaves the view,
// the chart moves so that the vessel sits near the trailing edge and the
// view ahead holds the whole run.
void VesselModule::AutoscrollCheck() {
    c_.errors.Guard("AutoscrollCheck", [&] {
        if (!(AutoscrollTime > 0.0f) || !VesselActive()) return;
        ScrollView view;
        if (!c_.chart.GetScrollView(vessel.Pos, view) || !(view.PixelsPerNM > 0.0) || view.Width <= 0 || view.Height <= 0) return;
        double speed = vessel.SOG;
        if (!(speed > 0.05)) return;
        double sx = std::sin(vessel.COG * kDegToRad), sy = -std::cos(vessel.COG * kDegToRad);
        double halfW = view.Width / 2.0, halfH = view.Height / 2.0;
        double reach = std::min(std::fabs(sx) > 1e-9 ? halfW / std::fabs(sx) : 1e300,
                                std::fabs(sy) > 1e-9 ? halfH / std::fabs(sy) : 1e300);
        double pixelsPerMinute = speed / 60.0 * view.PixelsPerNM;
        double ahead = double(AutoscrollTime) * pixelsPerMinute;
        Dialogs& dlg = c_.errors.dialogs();
        if (ahead > reach) {
            double best = std::floor(reach / pixelsPerMinute);
            if (best < 1.0) {
                AutoscrollTime = 0.0f;
                c_.registry.SaveSetting(Key::AutoscrollTime, "0");
                dlg.MsgBox("The Autoscroll option has been turned off\nbecause you are moving too fast",
                           mb::OKOnly | mb::Information, c_.errors.ProductName());
                return;
            }
            AutoscrollTime = float(best);
            c_.registry.SaveSetting(Key::AutoscrollTime, Format(best, "0"));
            dlg.MsgBox(
                "The current Autoscroll time is too large for\nyour current chart scale & vessel speed\n"
                "(The display would redraw too frequently\nThe Autoscroll time has been changed to\n"
                "the current optimum setting of " +
                    Format(best, "0") + " minutes.",
                mb::OKOnly | mb::Information, c_.errors.ProductName());
            ahead = best * pixelsPerMinute;
        }
        auto inside = [&](double x, double y) { return x >= 0.0 && y >= 0.0 && x < view.Width && y < view.Height; };
        double ax = view.VesselX + sx * ahead, ay = view.VesselY + sy * ahead;
        if (inside(view.VesselX, view.VesselY) && inside(ax, ay)) return;
        double toCentre = reach * 0.8 / view.PixelsPerNM;  // nautical miles
        c_.chart.CentreChartAt(DeadReckon(vessel.Pos, vessel.COG, toCentre, 3600.0));
    });
}

void VesselModule::CourseToSteerCommand() {
    c_.errors.Guard("CourseToSteer", [&] {
        Dialogs& dlg = c_.errors.dialogs();
        const std::string& title = c_.errors.ProductName();
        const ActiveLeg& leg = c_.leg;
        if (leg.Kind == 0) {
            dlg.MsgBox("There is no active waypoint.", mb::OKOnly | mb::Information, title);
            return;
        }
        double set = 0.0, drift = 0.0;
        c_.hooks.TideAtVessel(set, drift);
        double speed = vessel.SpeedWater > 0.0 ? vessel.SpeedWater : vessel.SOG;
        std::string question = "Do you wish to use these values:\n\nTide Set " + Format(set, "000") + " °T\nTide Drift " +
                               Format(drift, "0.0") + " Kts\nVessel Speed " + Format(speed, "0.0") + " Kts";
        if (dlg.MsgBox(question, mb::YesNo | mb::Question, title) == mb::No) {
            std::string t = Format(set, "000");
            if (!dlg.InputBox("Tide Set (°T)", title, t)) return;
            set = Val(t);
            t = Format(drift, "0.0");
            if (!dlg.InputBox("Tide Drift (Kts)", title, t)) return;
            drift = Val(t);
            t = Format(speed, "0.0");
            if (!dlg.InputBox("Vessel Speed (Kts)", title, t)) return;
            speed = Val(t);
        }
        if (!(speed > 0.0)) {
            dlg.MsgBox("Cannot calculate course to steer without\na vessel speed.", mb::OKOnly | mb::Exclamation, title);
            return;
        }
        double cts = 0.0;
        std::string answer = "Waypoint: " + leg.Name + "\n";
        if (CourseToSteer(leg.BearingTo, speed, set, drift, cts))
            answer += "Course to steer:   " + Format(cts, "000") + " °T";
        else
            answer += "Cannot make this course";
        dlg.MsgBox(answer, mb::OKOnly | mb::Information, title);
    });
}

}  // namespace ombra
