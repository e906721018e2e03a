#include "instruments/NmeaDecoder.h"

#include "core/ErrorReport.h"
#include "core/Rounding.h"
#include "core/Val.h"
#include "platform/api/Clock.h"

namespace ombra {

namespace {
bool Always(const CommSettings&) { return true; }
bool ByGGA(const CommSettings& s) { return s.NMEA_GGA; }
bool ByGLL(const CommSettings& s) { return s.NMEA_GLL; }
bool ByGGAOrGLL(const CommSettings& s) { return s.NMEA_GGA || s.NMEA_GLL; }
bool ByGyroOnGPS(const CommSettings& s) { return s.GyroUseGPSPort; }
}  // namespace

const NmeaDecoder::Route NmeaDecoder::kRoutes[] = {
    {"GGA", 16, &NmeaDecoder::DecodeGGA, ByGGA, true},
    {"GLL", 8, &NmeaDecoder::DecodeGLL, ByGLL, true},
    {"RMC", 13, &NmeaDecoder::DecodeRMCRouted, Always, true},
    {"VTG", 10, &NmeaDecoder::DecodeVTG, ByGGAOrGLL, false},
    {"GSV", 21, &NmeaDecoder::DecodeGSV, Always, false},
    {"HDT", 4, &NmeaDecoder::DecodeHDT, ByGyroOnGPS, false},
    {"HDG", 7, &NmeaDecoder::DecodeHDG, ByGyroOnGPS, false},
    {"VHW", 10, &NmeaDecoder::DecodeVHW, ByGyroOnGPS, false},
};

template <typename F>
void NmeaDecoder::Step(const char* name, F&& statement) {
    try {
        statement();
    } catch (...) {
        errors_.ReportError(name);
    }
}

DecodeOutcome NmeaDecoder::Decode(std::string_view id, const std::string& sentence) {
    DecodeOutcome out;
    for (const Route& r : kRoutes) {
        if (id != r.id) continue;
        out.known = true;
        if (!r.allowed(settings_)) return out;
        (this->*r.decode)(sentence);
        out.accepted = true;
        out.position = r.position;
        return out;
    }
    return out;
}

DecodeOutcome NmeaDecoder::DecodeHeading(std::string_view id, const std::string& sentence) {
    DecodeOutcome out;
    for (const Route& r : kRoutes) {
        if (id != r.id || r.allowed != ByGyroOnGPS) continue;
        out.known = out.accepted = true;
        (this->*r.decode)(sentence);
        return out;
    }
    return out;
}

int32_t NmeaDecoder::NowSeconds() { return int32_t(RoundEven(clock_.Timer())); }

void NmeaDecoder::InvalidFix() {
    LastBadTime = NowSeconds();
    Fix.Status = 0;
}

void NmeaDecoder::DecodeGGA(const std::string& s) {
    const char* N = "DecodeGGA";
    NmeaFields f = SplitFields(s, 16);
    FixReceiving = true;
    if (!IsNumeric(f[6]) || Val(f[6]) <= 0.0) {
        InvalidFix();
        return;
    }
    LastGGA = s;
    Fix.Diff = Val(f[6]) > 1.0;
    if (IsNumeric(f[2]) || IsNumeric(f[4])) {
        Step(N, [&] { Fix.Pos.Lat = NmeaLatLong(f[2], f[3]); });
        Step(N, [&] { Fix.Pos.Long = NmeaLatLong(f[4], f[5]); });
    }
    double t;
    if (NmeaTime(f[1], t)) {
        Fix.Time = t;
        GGA.Time = t;
    }
    Step(N, [&] { GGA.Satellites = CInt16(Val(f[7])); });
    GGA.HDOP = Val(f[8]);
    GGA.Altitude = Val(f[9]);
    GGA.AltitudeUnit = f[10];
    GGA.GeoidHeight = Val(f[11]);
    GGA.GeoidUnit = f[12];
    GGA.DiffAge = Val(f[13]);
    GGA.DiffStation = f[14];
    LastGoodTime = NowSeconds();
    Fix.Stamp = clock_.Timer();
    if (!VTGSeen && VTGWatchStart == 0) VTGWatchStart = LastGoodTime;
    Fix.Status = 1;
}

void NmeaDecoder::DecodeGLL(const std::string& s) {
    const char* N = "DecodeGLL";
    NmeaFields f = SplitFields(s, 8);
    FixReceiving = true;
    if (f.count == 8) {
        if (f[6] != "A") {
            InvalidFix();
            return;
        }
    } else if (f[1].empty() || f[2].empty() || f[3].empty() || f[4].empty()) {
        InvalidFix();
        return;
    }
    Step(N, [&] { Fix.Pos.Lat = NmeaLatLong(f[1], f[2]); });
    Step(N, [&] { Fix.Pos.Long = NmeaLatLong(f[3], f[4]); });
    double t;
    if (f[5].size() >= 6 && NmeaTime(f[5], t)) Fix.Time = t;
    LastGoodTime = NowSeconds();
    Fix.Stamp = clock_.Timer();
    if (!VTGSeen) {
        if (VTGWatchStart == 0) {
            VTGWatchStart = LastGoodTime;
        } else if (AgeOf(LastGoodTime, VTGWatchStart) > 300) {
            errors_.dialogs().MsgBox("You are not recieving VTG sentences, your COG and SOG values are not accurate.",
                                     mb::OKOnly | mb::Critical, errors_.ProductName());
        }
    }
    Fix.Status = 1;
}

void NmeaDecoder::DecodeRMC(const std::string& s, bool UsePosition) {
    const char* N = "DecodeRMC";
    VTGSeen = false;
    VTGWatchStart = 0;
    NmeaFields f = SplitFields(s, 13);
    FixReceiving = true;
    if (UsePosition) {
        if (f[2] == "A") {
            if (IsNumeric(f[3])) Step(N, [&] { Fix.Pos.Lat = NmeaLatLong(f[3], f[4]); });
            if (IsNumeric(f[5])) Step(N, [&] { Fix.Pos.Long = NmeaLatLong(f[5], f[6]); });
            LastGoodTime = NowSeconds();
            Fix.Stamp = clock_.Timer();
            Fix.Status = 1;
        } else if (f[2] == "V") {
            InvalidFix();
        }
    }
    if (f[2] == "V" || f[2] == "A") {
        double t;
        if (NmeaTime(f[1], t)) Fix.Time = t;
        if (NmeaDate(f[9], t)) Fix.Date = t;
    }
    if (f[2] == "A") {
        if (IsNumeric(f[7])) Fix.Speed = float(Val(f[7]));
        if (IsNumeric(f[8])) Step(N, [&] { Fix.Course = CInt16(Val(f[8])); });
    }
}

void NmeaDecoder::DecodeVTG(const std::string& s) {
    NmeaFields f = SplitFields(s, 10);
    VTGSeen = true;
    if (f[2] == "T" && IsNumeric(f[1])) Step("DecodeVTG", [&] { Fix.Course = CInt16(Val(f[1])); });
    if (f[6] == "N" && IsNumeric(f[5])) Fix.Speed = float(Val(f[5]));
}

void NmeaDecoder::DecodeHDT(const std::string& s) {
    NmeaFields f = SplitFields(s, 4);
    if (f[2] == "T" && IsNumeric(f[1])) Heading.Heading = float(Val(f[1]));
}

void NmeaDecoder::DecodeHDG(const std::string& s) {
    const char* N = "DecodeHDG";
    NmeaFields f = SplitFields(s, 7);
    if (IsNumeric(f[2])) {
        Heading.Deviation = float(Val(f[2]));
        if (f[3] == "W") Heading.Deviation = -Heading.Deviation;
    }
    if (IsNumeric(f[4])) {
        Heading.Variation = float(Val(f[4]));
        if (f[5] == "W") Heading.Variation = -Heading.Variation;
    }
    if (IsNumeric(f[1])) {
        Step(N, [&] { Heading.HeadingMag = CInt16(Val(f[1])); });
        Heading.Heading = float(Heading.HeadingMag) + Heading.Variation;
        Step(N, [&] { Heading.HeadingMag = CInt16(float(Heading.HeadingMag) + Heading.Deviation); });
    }
}

void NmeaDecoder::DecodeVHW(const std::string& s) {
    NmeaFields f = SplitFields(s, 10);
    if (f[2] == "T" && IsNumeric(f[1])) Heading.Heading = float(Val(f[1]));
    if (f[4] == "M" && IsNumeric(f[3])) Step("DecodeVHW", [&] { Heading.HeadingMag = CInt16(Val(f[3])); });
    if (f[6] == "N" && IsNumeric(f[5])) Heading.WaterSpeed = float(Val(f[5]));
    if (f[8] == "K" && IsNumeric(f[7])) Heading.WaterSpeedKmh = float(Val(f[7]));
}

void NmeaDecoder::DecodeGSV(const std::string& s) {
    const char* N = "DecodeGSV";
    NmeaFields f = SplitFields(s, 21);
    if (!IsNumeric(f[1]) || !IsNumeric(f[2])) return;
    double m = Val(f[2]);
    if (m < 1.0 || m > 3.0) return;
    int msg = int(RoundEven(m));
    if (msg < 1 || msg > 3) return;
    if (IsNumeric(f[3])) Step(N, [&] { Sats.SatsInView = CInt16(Val(f[3])); });
    for (int sat = 0; sat < 4; ++sat) {
        SatRow& row = Sats.Sat[size_t((msg - 1) * 4 + sat)];
        int16_t* cells[4] = {&row.PRN, &row.Elevation, &row.Azimuth, &row.SNR};
        for (int k = 0; k < 4; ++k) {
            const std::string& v = f[size_t(4 + 4 * sat + k)];
            if (IsNumeric(v)) Step(N, [&] { *cells[k] = CInt16(Val(v)); });
        }
    }
}

void NmeaDecoder::TakeOwnVessel(const OwnVesselReport& r) {
    FixReceiving = true;
    Fix.Pos.Lat = r.Latitude * 3600.0;
    Fix.Pos.Long = r.Longitude * 3600.0;
    if (r.FixQuality > 0) {
        Fix.Status = 1;
        Fix.Diff = r.FixQuality == 2;
    } else {
        Fix.Status = 0;
    }
    LastGoodTime = NowSeconds();
    Fix.Stamp = clock_.Timer();
    Fix.Speed = float(r.Speed);
    Step("DecodeAIVDO", [&] { Fix.Course = CInt16(r.Course); });
    if (settings_.GyroUseGPSPort) Heading.Heading = float(r.Heading);
}

void NmeaDecoder::ClearFix() {
    Fix = GPSFix{};
    FixReceiving = false;
    VTGSeen = false;
}

void NmeaDecoder::GetGPSFix(GPSFix& out) {
    if (!FixReceiving) {
        out.Status = -1;
        return;
    }
    int32_t now = NowSeconds();
    if (Fix.Status == 1) {
        if (AgeOf(now, LastGoodTime) < settings_.GPSDelay) {
            out = Fix;
            return;
        }
        if (double(settings_.GPSDelay) / 2.0 > double(AgeOf(now, LastBadTime))) {
            Fix.Status = 0;
            out = Fix;
            return;
        }
    } else if (AgeOf(now, LastBadTime) < settings_.GPSDelay) {
        out = Fix;
        return;
    }
    Fix.Status = -1;
    FixReceiving = false;
}

}  // namespace ombra
