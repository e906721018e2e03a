#include "tides/Tides.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "core/Paths.h"
#include "platform/api/DateTime.h"

namespace ombra {

namespace {

using NameBuffer = char[TideStream::NameBufferSize];

// Copies `text` into a fixed name buffer, cut to fit with its NUL.
void Fill(NameBuffer& buf, const std::string& text) {
    std::memset(buf, 0, sizeof buf);
    std::memcpy(buf, text.data(), std::min(text.size(), sizeof buf - 1));
}

std::string Upper(std::string s) {
    for (char& c : s) c = char(std::toupper(static_cast<unsigned char>(c)));
    return s;
}

// The ".Hdr" files of the folder, in the folder's order (names compared
// without regard to case, as the file system the data comes from lists
// them).
std::vector<std::string> HeaderFiles(const std::string& folder) {
    std::vector<std::string> names;
    std::error_code ec;
    const std::string real = ResolvePath(folder);
    for (std::filesystem::directory_iterator it(real, ec), end; !ec && it != end; it.increment(ec)) {
        std::error_code fec;
        if (!it->is_regular_file(fec)) continue;
        std::string name = it->path().filename().string();
        if (name.size() >= 4 && Upper(name.substr(name.size() - 4)) == ".HDR") names.push_back(name);
    }
    std::sort(names.begin(), names.end(), [](const std::string& a, const std::string& b) {
        const std::string ua = Upper(a), ub = Upper(b);
        return ua != ub ? ua < ub : a < b;
    });
    return names;
}

}  // namespace

int32_t ToTideUnits(double secondsOfArc) {
    const double v = secondsOfArc * 10000000.0 / 3600.0;
    if (!(v > -2147483648.0 && v < 2147483647.0)) return v > 0 ? INT32_MAX : INT32_MIN;
    return int32_t(std::lrint(v));
}

float FromTideUnits(int32_t value) { return float(double(value) * 3600.0 / 10000000.0); }

TideInstant SplitTideTime(double serial) {
    double whole = std::trunc(serial);
    long long secs = std::llround(std::fabs(serial - whole) * 86400.0);
    if (secs >= 86400) {
        secs -= 86400;
        whole += serial >= 0 ? 1 : -1;
    }
    TideInstant t;
    int y = 0, m = 0, d = 0;
    calendar::CivilFromDays((long long)whole + calendar::kSerialEpoch, y, m, d);
    t.year = y;
    t.month = m;
    t.day = d;
    t.hour = int32_t(secs / 3600);
    t.minute = int32_t(secs / 60 % 60);
    t.second = int32_t(secs % 60);
    return t;
}

void Tides::ListTideRegions() {
    errors_.Guard("ListTideRegions", [&] {
        NameBuffer path;
        Fill(path, dataPath_);
        stream_.WrapperSetPath(path);
        regions_.assign(1, TideRegion{});
        for (const std::string& file : HeaderFiles(dataPath_)) {
            if (Upper(file).rfind("REGION", 0) != 0) continue;
            TideRegion r;
            r.Name = file.substr(0, file.find('.'));
            NameBuffer hdr, hrm;
            Fill(hdr, r.Name + ".Hdr");
            Fill(hrm, r.Name + ".Hrm");
            if (stream_.WrapperSetDataFileName(hdr, hrm) != 0) {
                // The model refused the pair: a region that cannot answer
                // would hide the regions behind it, so it is left out.
                errors_.ReportError("ListTideRegions", stream_.LastError().empty()
                                                           ? "Tide region " + r.Name + " cannot be read."
                                                           : stream_.LastError());
                continue;
            }
            int32_t longMax = 0, longMin = 0, latMax = 0, latMin = 0;
            stream_.WrapperModelDomain(longMax, longMin, latMax, latMin);
            r.LongMax = FromTideUnits(longMax);
            r.LongMin = FromTideUnits(longMin);
            r.LatMax = FromTideUnits(latMax);
            r.LatMin = FromTideUnits(latMin);
            regions_.push_back(std::move(r));
        }
    });
}

int16_t Tides::FindTideRegion(const LatLong& pos) const {
    const float lat = float(pos.Lat), lon = float(pos.Long);
    for (std::size_t i = 1; i < regions_.size(); ++i) {
        const TideRegion& r = regions_[i];
        if (lat <= r.LatMax && lat >= r.LatMin && lon <= r.LongMax && lon >= r.LongMin) return int16_t(i);
    }
    return 0;
}

void Tides::SelectRegion(int16_t index) {
    const std::string& name = index > 0 && std::size_t(index) < regions_.size() ? regions_[index].Name : regions_[0].Name;
    NameBuffer hdr, hrm;
    Fill(hdr, name + ".Hdr");
    Fill(hrm, name + ".Hrm");
    stream_.WrapperSetDataFileName(hdr, hrm);
}

bool Tides::GetTide(const LatLong& pos, float& drift, float& set) {
    bool ok = false;
    const bool ran = errors_.Guard("GetTide", [&] {
        // The region is selected before every prediction; the blank entry
        // selects the name ".Hdr", which the model fails.
        SelectRegion(FindTideRegion(pos));
        const TideInstant t = SplitTideTime(TideTime);
        int32_t points = 1, lat = ToTideUnits(pos.Lat), lon = ToTideUnits(pos.Long);
        int32_t out1, out2, out3, out4 = 0, out5 = 0;
        const int32_t result = stream_.WrapperDoPrediction(points, lat, lon, t.day, t.month, t.year, t.hour,
                                                           t.minute, t.second, 0, out1, out2, out3, out4, out5);
        if (result >= 1) {
            drift = 0.0f;
            set = 0.0f;
            return;
        }
        set = float(out5 / 10.0);
        // Millimetres a second read as km/h (x 3600 / 1e6), and 0.54 for
        // km/h to knots: the round figure, not 1 / 1.852.
        drift = float(out4 / 1000000.0 * 3600.0 * 0.54);
        ok = true;
    });
    if (!ran) {
        drift = 0.0f;
        set = 0.0f;
    }
    return ok;
}

}  // namespace ombra
