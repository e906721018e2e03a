#include "instruments/NmeaOutput.h"

#include <cmath>

#include "core/Format.h"
#include "core/Rounding.h"
#include "core/Units.h"
#include "core/Val.h"
#include "instruments/ActiveLeg.h"
#include "instruments/Comm.h"
#include "instruments/Console.h"
#include "instruments/NmeaDecoder.h"
#include "instruments/NmeaText.h"
#include "instruments/Vessel.h"
#include "platform/api/Dialogs.h"

namespace ombra {

namespace {

std::string TwoDigits(int v) {
    char b[8];
    std::snprintf(b, sizeof b, "%02d", ((v % 100) + 100) % 100);
    return b;
}

std::string HHMMSS(double serial) {
    DateTime t = DateTime::FromSerial(serial);
    return TwoDigits(t.hour) + TwoDigits(t.minute) + TwoDigits(t.second);
}

std::string DDMMYY(double serial) {
    DateTime d = DateTime::FromSerial(serial);
    return TwoDigits(d.day) + TwoDigits(d.month) + TwoDigits(d.year % 100);
}

// The three characters an identifier is taken from: from character 6 when
// character 3 is "." or "-" (a route prefix: "R3.WP012" gives "012"),
// otherwise from character 3 ("WP012" gives "012").
std::string IdPart(const std::string& name) {
    size_t from = name.size() >= 3 && (name[2] == '.' || name[2] == '-') ? 5 : 2;
    return from < name.size() ? name.substr(from, 3) : std::string();
}

}  // namespace

void WaypointIds(const std::string& FromName, const std::string& Name, bool v15, std::string& OriginId,
                 std::string& DestId) {
    if (v15) {
        OriginId = FromName.size() >= 3 ? Format(Val(IdPart(FromName)), "000") : "001";
        // The test is on the origin's name here too, as it always was.
        DestId = FromName.size() >= 3 ? Format(Val(IdPart(Name)), "000") : "002";
    } else {
        OriginId = FromName != "000" && FromName.size() >= 5 ? IdPart(FromName) : "001";
        DestId = Name.size() >= 5 ? IdPart(Name) : "002";
    }
}

void NmeaOut::NmeaPosition(const LatLong& pos) {
    auto one = [&](double value, const char* degPicture, std::string& text) {
        double a = std::fabs(value) / 3600.0;
        double D = std::floor(a);
        float M = float((a - D) * 60.0);
        text = Replace(Format(D, degPicture), ",", ".") + Replace(Format(M, v15_ ? "00.00" : "00.000"), ",", ".");
    };
    one(pos.Lat, "00", LatText);
    NS = pos.Lat < 0.0 ? "S" : "N";
    one(pos.Long, "000", LonText);
    EW = pos.Long < 0.0 ? "W" : "E";
}

void NmeaOut::End(std::string& burst, const std::string& sentence) const {
    std::string s = sentence;
    if (settings_.AutopilotSettings & 1024) s += "*" + NmeaChecksum(s);
    burst += "$" + s + "\r\n";
}

NmeaOut::LegText NmeaOut::LegFields() {
    LegText t;
    const auto& row = console_.LabWP;
    float x = float(Val(row[9]));
    units_.FromDisplay(UnitKind::Distance, x);
    t.XTE = Replace(Format(x, "0.00"), ",", ".");
    t.Side = !row[10].empty() && row[10][0] == 'R' ? "R" : "L";
    t.Arrived = !(Val(row[4]) > double(leg_.AlarmRange)) ? "A" : "V";
    t.Perpendicular = leg_.PassedPerpendicular ? "A" : "V";
    WaypointIds(leg_.FromName, leg_.Name, v15_, t.OriginId, t.DestId);
    t.VMG = v15_ ? std::string() : Replace(Format(Val(row[5]), "0.00"), ",", ".");
    NmeaPosition(leg_.To);
    t.DestLat = LatText;
    t.DestLon = LonText;
    return t;
}

std::string NmeaOut::BuildBurst(int16_t status) {
    const int32_t bits = settings_.AutopilotSettings;
    v15_ = (bits & 512) != 0;
    const std::string Status = status == 1 ? "A" : "V";
    const char* Fmt = v15_ ? "000.0" : "0.0";
    auto F = [&](double x) { return Replace(Format(x, Fmt), ",", "."); };
    auto Mag = [&](double x, double variation) {
        int32_t whole = CLng32(x - variation + 360.0) % 360;
        return F(double(whole));
    };
    auto Mag0 = [&](double x, double variation) {  // APx: always "0.0"
        int32_t whole = CLng32(x - variation + 360.0) % 360;
        return Replace(Format(double(whole), "0.0"), ",", ".");
    };
    const Vessel& v = vessel_;
    const double variation = double(hooks_.VariationAt(v.Pos));

    NmeaPosition(v.Pos);
    const std::string VesselLat = LatText, VesselLon = LonText;

    const bool leg = leg_.Kind != 0;
    const LegText t = leg ? LegFields() : LegText{};
    const std::string &XTE = t.XTE, &Side = t.Side, &Arrived = t.Arrived, &Perpendicular = t.Perpendicular,
                      &OriginId = t.OriginId, &DestId = t.DestId, &VMG = t.VMG, &DestLat = t.DestLat, &DestLon = t.DestLon;

    std::string burst;
    if (bits & 4)
        End(burst, "GPVTG," + F(v.COG) + ",T," + Mag(v.COG, variation) + ",M," + F(v.SOG) + ",N," +
                       F(v.SOG / 0.53995680809021) + ",K");
    if (bits & 1)
        End(burst, "GPRMC," + HHMMSS(v.FixTime) + "," + Status + "," + VesselLat + "," + NS + "," + VesselLon + "," + EW +
                       "," + F(v.SOG) + "," + F(v.COG) + "," + DDMMYY(v.FixDate) + "," + F(std::fabs(variation)) + "," +
                       (variation < 0.0 ? "W" : "E"));
    if ((bits & 16) && leg)
        End(burst, "GPRMB," + Status + "," + XTE + "," + Side + "," + OriginId + "," + DestId + "," + DestLat + "," + NS +
                       "," + DestLon + "," + EW + "," + F(leg_.DistanceTo) + "," + F(leg_.BearingTo) + "," + VMG + "," +
                       Arrived);
    if ((bits & 4096) && leg) {
        NmeaPosition(leg_.From);
        End(burst, "GPWPL," + LatText + "," + NS + "," + LonText + "," + EW + "," + OriginId);
        NmeaPosition(leg_.To);
        End(burst, "GPWPL," + LatText + "," + NS + "," + LonText + "," + EW + "," + DestId);
    }
    if (bits & 2)
        End(burst, "GPGLL," + VesselLat + "," + NS + "," + VesselLon + "," + EW +
                       (v15_ ? std::string() : "," + HHMMSS(v.FixTime) + "," + Status));
    if (bits & 8) {
        const std::string& g = decoder_.LastGGA;
        const size_t L = g.size();
        if (L > 10) {
            std::string text = g[L - 5] == '*' ? g.substr(5, L - 10) : g.substr(5, L - 7);
            End(burst, "GPGGA" + text);
        }
    }
    if ((bits & 128) && leg) End(burst, "GPXTE," + Status + ",A," + XTE + "," + Side + ",N");
    if ((bits & 64) && leg)
        End(burst, "GPBOD," + F(leg_.LegCourse) + ",T," + Mag(leg_.LegCourse, double(leg_.LegVariation)) + ",M," + DestId +
                       "," + OriginId);
    if ((bits & 32) && leg)
        End(burst, std::string(leg_.GreatCircle ? "GPBWC" : "GPBWR") + "," + HHMMSS(v.FixTime) + "," + DestLat + "," + NS +
                       "," + DestLon + "," + EW + "," + F(leg_.BearingTo) + ",T," + Mag(leg_.BearingTo, variation) + ",M," +
                       F(leg_.DistanceTo) + ",N," + DestId);
    if ((bits & (256 | 2048)) && leg) {
        bool apb = (bits & 256) != 0;
        std::string s = std::string(apb ? "GPAPB" : "GPAPA") + "," + Status + ",A," + XTE + "," + Side + ",N," + Arrived + "," +
                        Perpendicular + "," + Mag0(leg_.LegCourse, double(leg_.LegVariation)) + ",M," + DestId;
        if (apb) s += "," + Mag0(leg_.BearingTo, variation) + ",M,,";
        End(burst, s);
    }
    return burst;
}

void NmeaOut::NmeaOutput(int16_t status) {
    // One attempt at the port a burst; a closed port that will not open
    // takes nothing of it.
    if (!comm_.OpenForOutput()) return;
    std::string burst = BuildBurst(status);
    // Each sentence is written as soon as it is built: one write a line.
    size_t at = 0;
    while (at < burst.size()) {
        size_t end = burst.find("\r\n", at);
        end = end == std::string::npos ? burst.size() : end + 2;
        comm_.SendToPort(burst.substr(at, end - at));
        at = end;
    }
}

bool ConfirmActivateWithAutopilot(bool AutopilotActive, Dialogs& dialogs, const std::string& productName) {
    if (!AutopilotActive) return true;
    return dialogs.MsgBox(
               "Autopilot output is enabled.\nActivating a waypoint may cause a significant course change.\n"
               "Are you sure you wish to continue.",
               mb::YesNo | mb::Question, productName) == mb::Yes;
}

bool ConfirmAutopilotOn(bool legActive, Dialogs& dialogs, const std::string& productName) {
    if (!legActive) return true;
    return dialogs.MsgBox(
               "There is an active waypoint.\nActivating autopilot output may cause a significant course change.\n"
               "Are you sure you wish to continue.",
               mb::YesNo | mb::Question, productName) == mb::Yes;
}

}  // namespace ombra
