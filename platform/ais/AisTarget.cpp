#include "platform/ais/AisTarget.h"

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <iterator>

#include "core/Format.h"
#include "platform/ais/AisLegends.h"
#include "platform/ais/AisMessage.h"

namespace ombra {

namespace {

constexpr const char* kNotAvailable = "N/A";

// The position fixing device, short enough for the 16-character field.
const char* ShortEpfd(unsigned code) {
    static const char* const names[] = {"Undefined", "GPS",      "GLONASS",  "GPS/GLONASS", "Loran-C", "Chayka",
                                        "Integrated", "Surveyed", "Galileo"};
    if (code < std::size(names)) return names[code];
    return code == 15 ? "Internal GNSS" : "Reserved";
}

// A position sent in 1/perDegree of a degree; 91 and 181 degrees, or
// anything beyond the poles and the antimeridian, is "not available".
bool SetPosition(AisTarget& t, const AisMessage& m, double perDegree) {
    const int64_t lat = m.Raw("lat", INT64_MAX), lon = m.Raw("lon", INT64_MAX);
    if (std::llabs(lat) > int64_t(90 * perDegree) || std::llabs(lon) > int64_t(180 * perDegree)) return false;
    t.Latitude = double(lat) / perDegree;
    t.Longitude = double(lon) / perDegree;
    return true;
}

// Speed over ground in 0.1 knot: 1023 not available, 1022 means 102.2 or more.
void SetSpeedTenths(AisTarget& t, int64_t raw) {
    if (raw >= 1023) {
        t.Speed = -1.0;
        SetAisText(t.SOG, kNotAvailable);
        return;
    }
    t.Speed = double(raw) / 10.0;
    SetAisText(t.SOG, raw == 1022 ? std::string(">102 kn") : Format(t.Speed, "0.0") + " kn");
}

// Speed in whole knots, `notAvailable` and up meaning not available.
void SetSpeedKnots(AisTarget& t, int64_t raw, int64_t notAvailable) {
    if (raw >= notAvailable) {
        t.Speed = -1.0;
        SetAisText(t.SOG, kNotAvailable);
        return;
    }
    t.Speed = double(raw);
    SetAisText(t.SOG, Format(t.Speed, "0") + " kn");
}

// Course over ground in `perDegree` steps; a full circle or more is not available.
void SetCourse(AisTarget& t, int64_t raw, int perDegree) {
    if (raw < 0 || raw >= 360 * perDegree) {
        t.Course = -1.0;
        SetAisText(t.COG, kNotAvailable);
        return;
    }
    t.Course = double(raw) / perDegree;
    SetAisText(t.COG, Format(t.Course, perDegree == 1 ? "0" : "0.0"));
}

void SetHeading(AisTarget& t, int64_t raw) {
    if (raw < 0 || raw >= 360) {
        t.Heading = -1.0;
        SetAisText(t.Gyro, kNotAvailable);
        return;
    }
    t.Heading = double(raw);
    SetAisText(t.Gyro, Format(t.Heading, "0"));
}

// Rate of turn: the indicator is 4.733 x sqrt(degrees a minute), signed,
// + to starboard; +-127 turning faster than the indicator shows, -128 none.
void SetTurn(AisTarget& t, int64_t raw) {
    if (raw == -128) {
        SetAisText(t.ROT, kNotAvailable);
    } else if (raw == 127 || raw == -127) {
        SetAisText(t.ROT, raw > 0 ? "Fast R" : "Fast L");
    } else {
        const double r = double(raw) / 4.733;
        const double rate = raw < 0 ? -r * r : r * r;
        const std::string text = Format(std::fabs(rate), "0");
        SetAisText(t.ROT, text == "0" ? text : (rate > 0 ? "+" : "-") + text);
    }
}

void SetAccuracy(AisTarget& t, const AisMessage& m) { SetAisText(t.Accuracy, m.Raw("accuracy") ? "High" : "Low"); }

// Length and width from the distances of the position reference point to
// bow, stern, port and starboard, in metres; zero is "not available".
void SetDimensions(AisTarget& t, const AisMessage& m) {
    const int64_t length = m.Raw("to_bow") + m.Raw("to_stern");
    const int64_t width = m.Raw("to_port") + m.Raw("to_starboard");
    SetAisText(t.Length, length > 0 ? Format(double(length), "0") + " m" : std::string());
    SetAisText(t.Width, width > 0 ? Format(double(width), "0") + " m" : std::string());
}

// Identity texts keep what was known when a report leaves them blank.
template <size_t N>
void SetIdentity(char (&field)[N], const std::string& text) {
    if (!text.empty()) SetAisText(field, text);
}

// The ETA as "dd/mm hh:mm": day 0, month 0, hour 24 and minute 60 are
// "not available" and show as dashes; all four unavailable is a blank.
std::string EtaText(int64_t month, int64_t day, int64_t hour, int64_t minute) {
    const bool dateKnown = month >= 1 && month <= 12 && day >= 1 && day <= 31;
    const bool timeKnown = hour < 24 && minute < 60;
    if (!dateKnown && !timeKnown) return std::string();
    char buf[24];
    std::snprintf(buf, sizeof buf, "%s %s",
                  dateKnown ? (Format(double(day), "00") + "/" + Format(double(month), "00")).c_str() : "--/--",
                  timeKnown ? (Format(double(hour), "00") + ":" + Format(double(minute), "00")).c_str() : "--:--");
    return buf;
}

void ClassAPosition(const AisMessage& m, AisTarget& t, AisApplied& a) {
    a.position = SetPosition(t, m, 600000.0);
    SetSpeedTenths(t, m.Raw("speed"));
    SetCourse(t, m.Raw("course"), 10);
    SetHeading(t, m.Raw("heading"));
    SetAisText(t.Status, AisNavStatusText(unsigned(m.Raw("status"))));
    SetTurn(t, m.Raw("turn"));
    SetAccuracy(t, m);
}

void ClassBPosition(const AisMessage& m, AisTarget& t, AisApplied& a) {
    a.position = SetPosition(t, m, 600000.0);
    SetSpeedTenths(t, m.Raw("speed"));
    SetCourse(t, m.Raw("course"), 10);
    SetHeading(t, m.Raw("heading"));
    SetAccuracy(t, m);
}

void ClassBExtended(const AisMessage& m, AisTarget& t, AisApplied& a) {
    ClassBPosition(m, t, a);
    SetIdentity(t.Name, m.Text("shipname"));
    SetAisText(t.Type, AisShipTypeText(unsigned(m.Raw("shiptype"))));
    SetDimensions(t, m);
    SetAisText(t.Nav, ShortEpfd(unsigned(m.Raw("epfd"))));
}

void BaseStation(const AisMessage& m, AisTarget& t, AisApplied& a) {
    a.position = SetPosition(t, m, 600000.0);
    SetAisText(t.Type, "Base station");
    SetAisText(t.Nav, ShortEpfd(unsigned(m.Raw("epfd"))));
    SetAccuracy(t, m);
}

void UtcResponse(const AisMessage& m, AisTarget& t, AisApplied& a) {
    a.position = SetPosition(t, m, 600000.0);
    SetAisText(t.Nav, ShortEpfd(unsigned(m.Raw("epfd"))));
    SetAccuracy(t, m);
}

void StaticVoyage(const AisMessage& m, AisTarget& t, AisApplied&) {
    if (const int64_t imo = m.Raw("imo")) SetAisText(t.IMO, std::to_string(imo));
    SetIdentity(t.CallSign, m.Text("callsign"));
    SetIdentity(t.Name, m.Text("shipname"));
    SetAisText(t.Type, AisShipTypeText(unsigned(m.Raw("shiptype"))));
    SetDimensions(t, m);
    SetAisText(t.Nav, ShortEpfd(unsigned(m.Raw("epfd"))));
    const int64_t draught = m.Raw("draught");
    SetAisText(t.Draft, draught > 0 ? Format(double(draught) / 10.0, "0.0") + " m" : std::string());
    SetAisText(t.Destination, m.Text("destination"));
    SetAisText(t.ETA, EtaText(m.Raw("month"), m.Raw("day"), m.Raw("hour"), m.Raw("minute")));
}

void SarAircraft(const AisMessage& m, AisTarget& t, AisApplied& a) {
    a.position = SetPosition(t, m, 600000.0);
    SetSpeedKnots(t, m.Raw("speed"), 1023);
    SetCourse(t, m.Raw("course"), 10);
    t.Heading = -1.0;
    SetAisText(t.Type, "SAR aircraft");
    SetAccuracy(t, m);
}

void AidToNavigation(const AisMessage& m, AisTarget& t, AisApplied& a) {
    a.position = SetPosition(t, m, 600000.0);
    SetIdentity(t.Name, m.Text("name"));
    std::string type = AisAidTypeText(unsigned(m.Raw("aid_type")));
    if (m.Raw("virtual_aid")) type += " (virtual)";
    SetAisText(t.Type, type);
    SetDimensions(t, m);
    SetAisText(t.Nav, ShortEpfd(unsigned(m.Raw("epfd"))));
    SetAccuracy(t, m);
}

void StaticData(const AisMessage& m, AisTarget& t, AisApplied&) {
    if (m.part == 0) {
        SetIdentity(t.Name, m.Text("shipname"));
        return;
    }
    SetAisText(t.Type, AisShipTypeText(unsigned(m.Raw("shiptype"))));
    SetIdentity(t.CallSign, m.Text("callsign"));
    if (!m.Find("mothership_mmsi")) SetDimensions(t, m);
}

void LongRange(const AisMessage& m, AisTarget& t, AisApplied& a) {
    a.position = SetPosition(t, m, 600.0);
    SetSpeedKnots(t, m.Raw("speed"), 63);
    SetCourse(t, m.Raw("course"), 1);
    SetAisText(t.Status, AisNavStatusText(unsigned(m.Raw("status"))));
    SetAccuracy(t, m);
}

struct Updater {
    int type;
    void (*apply)(const AisMessage&, AisTarget&, AisApplied&);
};

constexpr Updater kUpdaters[] = {
    {1, ClassAPosition}, {2, ClassAPosition}, {3, ClassAPosition}, {4, BaseStation},
    {5, StaticVoyage},   {9, SarAircraft},    {11, UtcResponse},   {18, ClassBPosition},
    {19, ClassBExtended}, {21, AidToNavigation}, {24, StaticData}, {27, LongRange},
};

}  // namespace

AisTarget BlankAisTarget() {
    AisTarget t{};
    SetAisText(t.MMSI, "");
    SetAisText(t.IMO, "");
    SetAisText(t.CallSign, "");
    SetAisText(t.Name, "");
    t.Speed = t.Course = t.Heading = -1.0;
    SetAisText(t.Type, "");
    SetAisText(t.Status, "");
    SetAisText(t.Update, "");
    SetAisText(t.Accuracy, "");
    SetAisText(t.Nav, "");
    SetAisText(t.Length, "");
    SetAisText(t.Width, "");
    SetAisText(t.SOG, "");
    SetAisText(t.COG, "");
    SetAisText(t.Gyro, "");
    SetAisText(t.ROT, "");
    SetAisText(t.Draft, "");
    SetAisText(t.Destination, "");
    SetAisText(t.ETA, "");
    return t;
}

AisApplied ApplyAisMessage(const AisMessage& m, AisTarget& t, std::string_view updateTime) {
    AisApplied a;
    for (const Updater& u : kUpdaters) {
        if (u.type != m.type) continue;
        a.describes = true;
        char mmsi[16];
        std::snprintf(mmsi, sizeof mmsi, "%09u", unsigned(m.mmsi));
        SetAisText(t.MMSI, mmsi);
        u.apply(m, t, a);
        SetAisText(t.Update, updateTime);
        break;
    }
    return a;
}

}  // namespace ombra
