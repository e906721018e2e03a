#include "platform/tidestream/HarmonicTideStream.h"

#include <cmath>
#include <cstring>
#include <filesystem>

#include "core/Paths.h"

namespace ombra {
namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kRad = kPi / 180.0;
constexpr uintmax_t kMaxHarmonicsBytes = uintmax_t(1) << 30;

std::string FromBuffer(const char* buf) {
    if (!buf) return {};
    return std::string(buf, strnlen(buf, TideStream::NameBufferSize));
}

bool IsLeap(int y) { return (y % 4 == 0 && y % 100 != 0) || y % 400 == 0; }

int DaysInMonth(int y, int m) {
    static const int days[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return m == 2 && IsLeap(y) ? 29 : days[m - 1];
}

bool BareName(const std::string& n) {
    if (n.find_first_of("/\\") != std::string::npos || n == "." || n == "..") return false;
    const size_t dot = n.find('.');
    const std::string stem = n.substr(0, dot);
    return stem.find_first_not_of(" \t") != std::string::npos;
}

std::optional<std::string> ReadLimited(const std::string& path, uintmax_t limit, std::string* error) {
    std::error_code ec;
    const std::string real = ResolvePath(path);
    const uintmax_t size = std::filesystem::file_size(real, ec);
    if (ec) {
        *error = "cannot open " + path;
        return std::nullopt;
    }
    if (size > limit) {
        *error = path + " is too large to be a tide region file";
        return std::nullopt;
    }
    return ReadWholeFile(real, error);
}

std::shared_ptr<const HarmonicTideStream::Compiled> Compile(tide::RegionData data) {
    auto c = std::make_shared<HarmonicTideStream::Compiled>();
    const size_t k = data.constituents.size();
    for (const std::string& name : data.constituents) c->table.push_back(*tide::FindConstituent(name));
    c->coef.resize(data.harmonics.size() * 4);
    for (size_t i = 0; i < data.harmonics.size(); ++i) {
        const tide::NodeHarmonic& h = data.harmonics[i];
        float* o = &c->coef[i * 4];
        o[0] = float(h.eastAmp * std::cos(h.eastPhase * kRad));
        o[1] = float(h.eastAmp * std::sin(h.eastPhase * kRad));
        o[2] = float(h.northAmp * std::cos(h.northPhase * kRad));
        o[3] = float(h.northAmp * std::sin(h.northPhase * kRad));
    }
    (void)k;
    data.harmonics.clear();
    data.harmonics.shrink_to_fit();
    c->data = std::move(data);
    return c;
}

}  // namespace

int32_t HarmonicTideStream::WrapperSetPath(char* path) {
    folder_ = FromBuffer(path);
    if (!folder_.empty() && folder_.back() != '/' && folder_.back() != '\\') folder_.push_back('/');
    cache_.clear();
    selected_ = nullptr;
    selectedKey_.clear();
    return 0;
}

int32_t HarmonicTideStream::WrapperSetDataFileName(char* headerName, char* harmonicsName) {
    std::string hdr = FromBuffer(headerName), hrm = FromBuffer(harmonicsName);
    std::string key = hdr;
    key.push_back('\0');
    key += hrm;
    if (selected_ && key == selectedKey_) return selected_->region ? 0 : 1;
    selectedKey_ = key;
    auto it = cache_.find(key);
    if (it == cache_.end()) {
        Entry e;
        if (!BareName(hdr) || !BareName(hrm)) {
            e.error = "no tide region named (\"" + hdr + "\", \"" + hrm + "\")";
        } else {
            std::string err;
            auto h = ReadLimited(folder_ + hdr, tide::kMaxHeaderBytes, &err);
            auto m = h ? ReadLimited(folder_ + hrm, kMaxHarmonicsBytes, &err) : std::nullopt;
            if (h && m) {
                auto data = tide::ParseRegion(*h, *m, &err);
                if (data) e.region = Compile(std::move(*data));
                else e.error = "tide region " + hdr + " refused: " + err;
            } else {
                e.error = "tide region " + hdr + ": " + err;
            }
        }
        it = cache_.emplace(key, std::move(e)).first;
    }
    selected_ = &it->second;
    error_ = selected_->error;
    return selected_->region ? 0 : 1;
}

int32_t HarmonicTideStream::WrapperModelDomain(int32_t& longMax, int32_t& longMin, int32_t& latMax,
                                               int32_t& latMin) {
    if (!selected_ || !selected_->region) {
        longMax = longMin = latMax = latMin = 0;
        return 1;
    }
    const tide::RegionData& r = selected_->region->data;
    auto to = [](double deg) { return int32_t(std::lround(deg * 1e7)); };
    longMax = to(r.east);
    longMin = to(r.west);
    latMax = to(r.north);
    latMin = to(r.south);
    return 0;
}

const tide::NodeCorrection* HarmonicTideStream::Corrections(int year) {
    if (corrections_.empty() || year != correctionYear_) {
        const double start = tide::DaysFromJ2000(year, 1, 1, 0, 0, 0);
        const double end = tide::DaysFromJ2000(year + 1, 1, 1, 0, 0, 0);
        const tide::Nodal n = tide::NodalAt(tide::ArgsAt((start + end) / 2));
        const auto& table = tide::Table();
        corrections_.resize(table.size());
        for (size_t i = 0; i < table.size(); ++i) corrections_[i] = tide::NodeFactor(int(i), n);
        correctionYear_ = year;
    }
    return corrections_.data();
}

int32_t HarmonicTideStream::WrapperDoPrediction(int32_t& points, int32_t& lat, int32_t& lon,
                                                int32_t day, int32_t month, int32_t year,
                                                int32_t hour, int32_t minute, int32_t second,
                                                int32_t /*reserved*/, int32_t& out1, int32_t& out2,
                                                int32_t& out3, int32_t& out4, int32_t& out5) {
    out1 = out2 = out3 = out4 = out5 = 0;
    if (!selected_ || !selected_->region) return kTideNoRegion;
    if (points < 1 || year < 1700 || year > 2299 || month < 1 || month > 12 || day < 1 ||
        day > DaysInMonth(year, month) || hour < 0 || hour > 23 || minute < 0 || minute > 59 ||
        second < 0 || second > 59)
        return kTideBadInput;
    const Compiled& c = *selected_->region;
    const tide::RegionData& r = c.data;
    const double la = lat * 1e-7, lo = lon * 1e-7;
    if (!(la >= r.south && la <= r.north && lo >= r.west && lo <= r.east)) return kTideOutsideBox;

    // The nodes round the point and their weights.
    struct Weighted {
        size_t node;
        double w;
    };
    Weighted near[4];
    const Weighted* nodes = near;
    size_t count = 0;
    std::vector<Weighted> many;
    if (r.layout == tide::Layout::Grid) {
        const double fy = (la - r.south) / (r.north - r.south) * (r.rows - 1);
        const double fx = (lo - r.west) / (r.east - r.west) * (r.cols - 1);
        const int r0 = std::min(int(fy), r.rows - 2), c0 = std::min(int(fx), r.cols - 2);
        const double ty = fy - r0, tx = fx - c0;
        const Weighted corners[4] = {
            {size_t(r0) * size_t(r.cols) + size_t(c0), (1 - ty) * (1 - tx)},
            {size_t(r0) * size_t(r.cols) + size_t(c0) + 1, (1 - ty) * tx},
            {size_t(r0 + 1) * size_t(r.cols) + size_t(c0), ty * (1 - tx)},
            {size_t(r0 + 1) * size_t(r.cols) + size_t(c0) + 1, ty * tx},
        };
        double sea = 0;
        for (const Weighted& k : corners)
            if (r.sea[k.node] && k.w > 0) {
                near[count++] = k;
                sea += k.w;
            }
        // Within half a cell of the coast's water side the stream is the
        // water nodes' alone; nearer the land nodes there is none.
        if (sea < 0.5) return kTideNoWater;
        for (size_t i = 0; i < count; ++i) near[i].w /= sea;
    } else {
        const double radius2 = r.radiusNm * r.radiusNm;
        const double cosLat = std::cos(la * kRad);
        double total = 0;
        for (size_t i = 0; i < r.stations.size(); ++i) {
            if (!r.sea[i]) continue;
            const double dy = (la - r.stations[i].lat) * 60.0;
            const double dx = (lo - r.stations[i].lon) * 60.0 * cosLat;
            const double d2 = dx * dx + dy * dy;
            if (d2 > radius2) continue;
            if (d2 < 1e-12) {  // on the station: its own stream
                many.assign(1, {i, 1.0});
                total = 1;
                break;
            }
            many.push_back({i, 1.0 / d2});
            total += 1.0 / d2;
        }
        if (many.empty()) return kTideNoWater;
        for (Weighted& k : many) k.w /= total;
        nodes = many.data();
        count = many.size();
    }

    // The constituents' arguments at the instant, on the region's clock.
    const double d = tide::DaysFromJ2000(year, month, day, hour, minute, second) -
                     r.timeOffsetMinutes / 1440.0;
    const tide::AstroArgs args = tide::ArgsAt(d);
    const tide::NodeCorrection* corr = Corrections(year);
    const size_t k = c.table.size();
    double fc[tide::kMaxConstituents], fs[tide::kMaxConstituents];
    for (size_t i = 0; i < k; ++i) {
        const int t = c.table[i];
        const double a = (tide::EquilibriumArg(t, args) + corr[t].u) * kRad;
        fc[i] = corr[t].f * std::cos(a);
        fs[i] = corr[t].f * std::sin(a);
    }
    double east = 0, north = 0;
    for (size_t n = 0; n < count; ++n) {
        const float* o = &c.coef[nodes[n].node * k * 4];
        double e = 0, no = 0;
        for (size_t i = 0; i < k; ++i, o += 4) {
            e += o[0] * fc[i] + o[1] * fs[i];
            no += o[2] * fc[i] + o[3] * fs[i];
        }
        east += nodes[n].w * e;
        north += nodes[n].w * no;
    }
    const double speed = std::hypot(east, north) * 1000.0;
    long dir = 0;
    if (speed > 0) {
        double deg = std::atan2(east, north) / kRad;
        if (deg < 0) deg += 360;
        dir = std::lround(deg * 10) % 3600;
    }
    out1 = int32_t(std::lround(east * 1000.0));
    out2 = int32_t(std::lround(north * 1000.0));
    out3 = int32_t(count);
    out4 = int32_t(std::lround(speed));
    out5 = int32_t(dir);
    return kTideOk;
}

}  // namespace ombra
