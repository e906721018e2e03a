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

// GLL warns when it has run this long (seconds) without a VTG.
constexpr int32_t kVTGWatchSeconds = 300;

DecodeResult Named(const char* name) {
    DecodeResult r;
    r.decoder = name;
    return r;
}
}  // namespace

const NmeaDecoder::Route* NmeaDecoder::FindRoute(std::string_view id) {
    using D = NmeaDecoder;
    static const Route kRoutes[] = {
        {"GGA", 16, 6, &D::DecodeGGA, &D::NoFixIn, ByGGA, true, false},
        {"GLL", 8, 4, &D::DecodeGLL, &D::NoFixIn, ByGLL, true, false},
        {"RMC", 13, 2, &D::DecodeRMCRouted, &D::RMCWithoutStatus, Always, true, false},
        {"VTG", 10, 2, &D::DecodeVTG, &D::VTGWithoutCourse, ByGGAOrGLL, false, false},
        {"GSV", 21, 2, &D::DecodeGSV, nullptr, Always, false, false},
        {"HDT", 4, 2, &D::DecodeHDT, nullptr, ByGyroOnGPS, false, true},
        {"HDG", 7, 1, &D::DecodeHDG, nullptr, ByGyroOnGPS, false, true},
        {"VHW", 10, 2, &D::DecodeVHW, nullptr, ByGyroOnGPS, false, true},
    };
    for (const Route& r : kRoutes)
        if (id == r.id) return &r;
    return nullptr;
}

DecodeResult NmeaDecoder::Run(const Route& route, const NmeaFields& fields, const std::string& sentence) {
    if (fields.count >= route.minField) return (this->*route.decode)(fields, sentence);
    return route.onShort ? (this->*route.onShort)() : DecodeResult{};
}

template <typename F>
void NmeaDecoder::Step(DecodeResult& r, F&& statement) {
    try {
        statement();
    } catch (...) {
        r.faults.push_back(ErrorReporter::CurrentFaultDescription());
    }
}

int32_t NmeaDecoder::NowSeconds() const { return int32_t(RoundEven(clock_.Timer())); }

void NmeaDecoder::InvalidFix() {
    LastBadTime = NowSeconds();
    Fix.Status = 0;
}

void NmeaDecoder::GoodFixNow() {
    LastGoodTime = NowSeconds();
    Fix.Stamp = clock_.Timer();
}

DecodeResult NmeaDecoder::NoFixIn() {
    FixReceiving = true;
    InvalidFix();
    DecodeResult r;
    r.changed = kFixChanged | kReception;
    return r;
}

DecodeResult NmeaDecoder::RMCWithoutStatus() {
    VTGSeen = false;
    VTGWatchStart = 0;
    FixReceiving = true;
    DecodeResult r;
    r.changed = kReception;
    return r;
}

DecodeResult NmeaDecoder::VTGWithoutCourse() {
    VTGSeen = true;
    DecodeResult r;
    r.changed = kReception;
    return r;
}

DecodeResult NmeaDecoder::DecodeGGA(const NmeaFields& f, const std::string& s) {
    if (!IsNumeric(f[6]) || Val(f[6]) <= 0.0) return NoFixIn();
    DecodeResult r = Named("DecodeGGA");
    r.changed = kFixChanged | kGGAChanged | kReception;
    FixReceiving = true;
    LastGGA = s;
    Fix.Diff = Val(f[6]) > 1.0;
    if (IsNumeric(f[2]) || IsNumeric(f[4])) {
        Step(r, [&] { Fix.Pos.Lat = NmeaLatLong(f[2], f[3]); });
        Step(r, [&] { Fix.Pos.Long = NmeaLatLong(f[4], f[5]); });
    }
    double t;
    if (NmeaTime(f[1], t)) {
        Fix.Time = t;
        GGA.Time = t;
    }
    Step(r, [&] { GGA.Satellites = CInt16(Val(f[7])); });
    GGA.HDOP = Val(f[8]);
    GGA.Altitude = Val(f[9]);
    GGA.AltitudeUnit = f[10];
    GGA.GeoidHeight = Val(f[11]);
    GGA.GeoidUnit = f[12];
    GGA.DiffAge = Val(f[13]);
    GGA.DiffStation = f[14];
    GoodFixNow();
    if (!VTGSeen && VTGWatchStart == 0) VTGWatchStart = LastGoodTime;
    Fix.Status = 1;
    return r;
}

DecodeResult NmeaDecoder::DecodeGLL(const NmeaFields& f, const std::string&) {
    // The status form (NMEA 2.x) counts 8 fields; the older form has none.
    const bool statusForm = f.count == 8;
    if (statusForm ? f[6] != "A" : (f[1].empty() || f[2].empty() || f[3].empty() || f[4].empty())) return NoFixIn();
    DecodeResult r = Named("DecodeGLL");
    r.changed = kFixChanged | kReception;
    FixReceiving = true;
    Step(r, [&] { Fix.Pos.Lat = NmeaLatLong(f[1], f[2]); });
    Step(r, [&] { Fix.Pos.Long = NmeaLatLong(f[3], f[4]); });
    double t;
    if (f[5].size() >= 6 && NmeaTime(f[5], t)) Fix.Time = t;
    GoodFixNow();
    if (!VTGSeen) {
        if (VTGWatchStart == 0)
            VTGWatchStart = LastGoodTime;
        else if (AgeOf(LastGoodTime, VTGWatchStart) > kVTGWatchSeconds)
            r.vtgMissing = true;
    }
    Fix.Status = 1;
    return r;
}

DecodeResult NmeaDecoder::DecodeRMC(const NmeaFields& f, bool usePosition) {
    DecodeResult r = RMCWithoutStatus();
    r.decoder = "DecodeRMC";
    const bool valid = f[2] == "A", void_ = f[2] == "V";
    if (usePosition && valid) {
        if (IsNumeric(f[3])) Step(r, [&] { Fix.Pos.Lat = NmeaLatLong(f[3], f[4]); });
        if (IsNumeric(f[5])) Step(r, [&] { Fix.Pos.Long = NmeaLatLong(f[5], f[6]); });
        GoodFixNow();
        Fix.Status = 1;
    } else if (usePosition && void_) {
        InvalidFix();
    }
    if (valid || void_) {
        r.changed |= kFixChanged;
        double t;
        if (NmeaTime(f[1], t)) Fix.Time = t;
        if (NmeaDate(f[9], t)) Fix.Date = t;
    }
    if (valid) {
        r.changed |= kCourseSpeed;
        if (IsNumeric(f[7])) Fix.Speed = float(Val(f[7]));
        if (IsNumeric(f[8])) Step(r, [&] { Fix.Course = CInt16(Val(f[8])); });
    }
    return r;
}

DecodeResult NmeaDecoder::DecodeVTG(const NmeaFields& f, const std::string&) {
    DecodeResult r = VTGWithoutCourse();
    r.decoder = "DecodeVTG";
    r.changed |= kCourseSpeed;
    if (f[2] == "T" && IsNumeric(f[1])) Step(r, [&] { Fix.Course = CInt16(Val(f[1])); });
    if (f[6] == "N" && IsNumeric(f[5])) Fix.Speed = float(Val(f[5]));
    return r;
}

DecodeResult NmeaDecoder::DecodeHDT(const NmeaFields& f, const std::string&) {
    DecodeResult r = Named("DecodeHDT");
    if (f[2] == "T" && IsNumeric(f[1])) {
        Heading.Heading = float(Val(f[1]));
        r.changed = kHeadingChanged;
    }
    return r;
}

DecodeResult NmeaDecoder::DecodeHDG(const NmeaFields& f, const std::string&) {
    DecodeResult r = Named("DecodeHDG");
    r.changed = kHeadingChanged;
    if (IsNumeric(f[2])) {
        Heading.Deviation = float(Val(f[2]));
        if (f[3] == "W") Heading.Deviation = -Heading.Deviation;
    }
    if (IsNumeric(f[4])) {
        Heading.Variation = float(Val(f[4]));
        if (f[5] == "W") Heading.Variation = -Heading.Variation;
    }
    if (IsNumeric(f[1])) {
        Step(r, [&] { Heading.HeadingMag = CInt16(Val(f[1])); });
        Heading.Heading = float(Heading.HeadingMag) + Heading.Variation;
        Step(r, [&] { Heading.HeadingMag = CInt16(float(Heading.HeadingMag) + Heading.Deviation); });
    }
    return r;
}

DecodeResult NmeaDecoder::DecodeVHW(const NmeaFields& f, const std::string&) {
    DecodeResult r = Named("DecodeVHW");
    r.changed = kHeadingChanged;
    if (f[2] == "T" && IsNumeric(f[1])) Heading.Heading = float(Val(f[1]));
    if (f[4] == "M" && IsNumeric(f[3])) Step(r, [&] { Heading.HeadingMag = CInt16(Val(f[3])); });
    if (f[6] == "N" && IsNumeric(f[5])) Heading.WaterSpeed = float(Val(f[5]));
    if (f[8] == "K" && IsNumeric(f[7])) Heading.WaterSpeedKmh = float(Val(f[7]));
    return r;
}

DecodeResult NmeaDecoder::DecodeGSV(const NmeaFields& f, const std::string&) {
    DecodeResult r = Named("DecodeGSV");
    if (!IsNumeric(f[1]) || !IsNumeric(f[2])) return r;
    double m = Val(f[2]);
    if (m < 1.0 || m > 3.0) return r;
    int msg = int(RoundEven(m));
    if (msg < 1 || msg > 3) return r;
    r.changed = kSatellites;
    if (IsNumeric(f[3])) Step(r, [&] { Sats.SatsInView = CInt16(Val(f[3])); });
    for (int sat = 0; sat < 4; ++sat) {
        SatRow& row = Sats.Sat[size_t((msg - 1) * 4 + sat)];
        int16_t* cells[4] = {&row.PRN, &row.Elevation, &row.Azimuth, &row.SNR};
        for (int k = 0; k < 4; ++k) {
            const std::string& v = f[size_t(4 + 4 * sat + k)];
            if (IsNumeric(v)) Step(r, [&] { *cells[k] = CInt16(Val(v)); });
        }
    }
    return r;
}

DecodeResult NmeaDecoder::TakeOwnVessel(const OwnVesselReport& own) {
    DecodeResult r = Named("DecodeAIVDO");
    r.changed = kFixChanged | kCourseSpeed | kReception;
    FixReceiving = true;
    Fix.Pos.Lat = own.Latitude * 3600.0;
    Fix.Pos.Long = own.Longitude * 3600.0;
    if (own.FixQuality > 0) {
        Fix.Status = 1;
        Fix.Diff = own.FixQuality == 2;
    } else {
        Fix.Status = 0;
    }
    GoodFixNow();
    Fix.Speed = float(own.Speed);
    Step(r, [&] { Fix.Course = CInt16(own.Course); });
    if (settings_.GyroUseGPSPort) {
        Heading.Heading = float(own.Heading);
        r.changed |= kHeadingChanged;
    }
    return r;
}

void NmeaDecoder::ClearFix() {
    Fix = GPSFix{};
    FixReceiving = false;
    VTGSeen = false;
}

bool NmeaDecoder::AgeFix() {
    if (!FixReceiving) return false;
    const int32_t now = NowSeconds();
    if (Fix.Status == 1) {
        if (AgeOf(now, LastGoodTime) < settings_.GPSDelay) return false;
        // An invalid fix within the last half delay spoils a stale good one.
        if (double(settings_.GPSDelay) / 2.0 > double(AgeOf(now, LastBadTime))) {
            Fix.Status = 0;
            return false;
        }
    } else if (AgeOf(now, LastBadTime) < settings_.GPSDelay) {
        return false;
    }
    Fix.Status = -1;
    FixReceiving = false;
    return true;
}

void NmeaDecoder::GetGPSFix(GPSFix& out) const {
    if (!FixReceiving) {
        out.Status = -1;
        return;
    }
    out = Fix;
}

}  // namespace ombra
