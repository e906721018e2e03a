#include "platform/tidestream/TideRegion.h"

#include <cctype>
#include <charconv>
#include <cmath>
#include <cstring>
#include <set>

#include "core/Paths.h"
#include "platform/tidestream/TideAstronomy.h"

namespace ombra::tide {
namespace {

constexpr std::string_view kHeaderMagic = "OMBRA TIDE REGION 1";
constexpr char kHrmMagic[8] = {'O', 'M', 'B', 'R', 'A', 'H', 'R', 'M'};
constexpr size_t kHrmHead = 20;

std::string_view Trim(std::string_view s) {
    while (!s.empty() && (s.front() == ' ' || s.front() == '\t' || s.front() == '\r')) s.remove_prefix(1);
    while (!s.empty() && (s.back() == ' ' || s.back() == '\t' || s.back() == '\r')) s.remove_suffix(1);
    return s;
}

bool SameText(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i)
        if (std::tolower(static_cast<unsigned char>(a[i])) != std::tolower(static_cast<unsigned char>(b[i])))
            return false;
    return true;
}

// Splits on blanks, at most `max` words; the last word takes the rest.
std::vector<std::string_view> Words(std::string_view s, size_t max = 1000) {
    std::vector<std::string_view> out;
    s = Trim(s);
    while (!s.empty()) {
        if (out.size() + 1 == max) {
            out.push_back(s);
            break;
        }
        size_t e = s.find_first_of(" \t");
        out.push_back(s.substr(0, e));
        if (e == std::string_view::npos) break;
        s = Trim(s.substr(e));
    }
    return out;
}

bool Number(std::string_view w, double& v) {
    if (!w.empty() && w.front() == '+') w.remove_prefix(1);
    auto [p, ec] = std::from_chars(w.data(), w.data() + w.size(), v);
    return ec == std::errc() && p == w.data() + w.size() && std::isfinite(v);
}

bool Integer(std::string_view w, long& v) {
    if (!w.empty() && w.front() == '+') w.remove_prefix(1);
    auto [p, ec] = std::from_chars(w.data(), w.data() + w.size(), v);
    return ec == std::errc() && p == w.data() + w.size();
}

uint32_t U32(std::string_view b, size_t at) {
    const auto* p = reinterpret_cast<const unsigned char*>(b.data() + at);
    return uint32_t(p[0]) | uint32_t(p[1]) << 8 | uint32_t(p[2]) << 16 | uint32_t(p[3]) << 24;
}

float F32(std::string_view b, size_t at) {
    const uint32_t u = U32(b, at);
    float f;
    std::memcpy(&f, &u, 4);
    return f;
}

void PutU32(std::string& s, uint32_t v) {
    for (int i = 0; i < 4; ++i) s.push_back(char((v >> (8 * i)) & 0xFF));
}

void PutF32(std::string& s, float f) {
    uint32_t u;
    std::memcpy(&u, &f, 4);
    PutU32(s, u);
}

bool Fail(std::string* error, std::string why) {
    if (error) *error = std::move(why);
    return false;
}

bool ParseHeader(std::string_view text, RegionData& r, std::string* error) {
    if (text.size() > kMaxHeaderBytes) return Fail(error, "header file is too large");
    bool sawMagic = false, sawBox = false, sawLayout = false, sawGrid = false, sawRadius = false;
    size_t lineNo = 0;
    while (!text.empty()) {
        size_t e = text.find('\n');
        std::string_view line = Trim(text.substr(0, e));
        text = e == std::string_view::npos ? std::string_view() : text.substr(e + 1);
        ++lineNo;
        const std::string where = "header line " + std::to_string(lineNo) + ": ";
        if (!sawMagic) {
            if (line != kHeaderMagic) return Fail(error, "not a tide region header (first line must be \"" + std::string(kHeaderMagic) + "\")");
            sawMagic = true;
            continue;
        }
        if (line.empty() || line.front() == '#') continue;
        const size_t eq = line.find('=');
        if (eq == std::string_view::npos) return Fail(error, where + "no '=' in the line");
        const std::string_view key = Trim(line.substr(0, eq));
        const std::string_view value = Trim(line.substr(eq + 1));
        const auto w = Words(value);
        if (SameText(key, "Name")) {
            r.name = std::string(value);
        } else if (SameText(key, "Box")) {
            if (w.size() != 4 || !Number(w[0], r.south) || !Number(w[1], r.west) ||
                !Number(w[2], r.north) || !Number(w[3], r.east))
                return Fail(error, where + "Box wants four numbers: south west north east");
            sawBox = true;
        } else if (SameText(key, "TimeOffset")) {
            long v;
            if (w.size() != 1 || !Integer(w[0], v) || v < -24 * 60 || v > 24 * 60)
                return Fail(error, where + "TimeOffset wants whole minutes between -1440 and 1440");
            r.timeOffsetMinutes = int(v);
        } else if (SameText(key, "Constituents")) {
            r.constituents.clear();
            std::set<int> seen;
            for (auto c : w) {
                auto i = FindConstituent(c);
                if (!i) return Fail(error, where + "unknown constituent " + std::string(c));
                if (!seen.insert(*i).second) return Fail(error, where + "constituent " + std::string(c) + " given twice");
                r.constituents.push_back(Table()[size_t(*i)].name);
            }
            if (r.constituents.empty() || r.constituents.size() > kMaxConstituents)
                return Fail(error, where + "between 1 and 64 constituents are needed");
        } else if (SameText(key, "Layout")) {
            if (SameText(value, "Grid")) r.layout = Layout::Grid;
            else if (SameText(value, "Stations")) r.layout = Layout::Stations;
            else return Fail(error, where + "Layout is Grid or Stations");
            sawLayout = true;
        } else if (SameText(key, "Grid")) {
            long rows, cols;
            if (w.size() != 2 || !Integer(w[0], rows) || !Integer(w[1], cols) || rows < 2 ||
                cols < 2 || rows > long(kMaxNodes) || cols > long(kMaxNodes) ||
                size_t(rows) * size_t(cols) > kMaxNodes)
                return Fail(error, where + "Grid wants rows and columns, each 2 or more, at most 4000000 nodes");
            r.rows = int(rows);
            r.cols = int(cols);
            sawGrid = true;
        } else if (SameText(key, "Radius")) {
            if (w.size() != 1 || !Number(w[0], r.radiusNm) || r.radiusNm <= 0 || r.radiusNm > 500)
                return Fail(error, where + "Radius wants nautical miles above 0, at most 500");
            sawRadius = true;
        } else if (SameText(key, "Station")) {
            const auto sw = Words(value, 3);
            Station s;
            if (sw.size() < 2 || !Number(sw[0], s.lat) || !Number(sw[1], s.lon) ||
                std::fabs(s.lat) > 90 || std::fabs(s.lon) > 180)
                return Fail(error, where + "Station wants latitude and longitude in degrees, then a name");
            if (sw.size() == 3) s.name = std::string(sw[2]);
            if (r.stations.size() >= kMaxNodes) return Fail(error, where + "too many stations");
            r.stations.push_back(std::move(s));
        } else {
            return Fail(error, where + "unknown key " + std::string(key));
        }
    }
    if (!sawMagic) return Fail(error, "header file is empty");
    if (Trim(r.name).empty()) return Fail(error, "header names no region (Name=)");
    if (!sawBox) return Fail(error, "header gives no Box");
    if (!(r.south >= -90 && r.north <= 90 && r.south < r.north && r.west >= -180 &&
          r.east <= 180 && r.west < r.east))
        return Fail(error, "Box is not south < north within +-90 and west < east within +-180");
    if (r.constituents.empty()) return Fail(error, "header gives no Constituents");
    if (!sawLayout) return Fail(error, "header gives no Layout");
    if (r.layout == Layout::Grid) {
        if (!sawGrid) return Fail(error, "a grid region needs Grid=rows columns");
        if (!r.stations.empty()) return Fail(error, "a grid region has no Station lines");
    } else {
        if (r.stations.empty()) return Fail(error, "a station region needs Station lines");
        if (!sawRadius) return Fail(error, "a station region needs Radius=");
    }
    return true;
}

}  // namespace

std::optional<RegionData> ParseRegion(std::string_view header, std::string_view harmonics,
                                      std::string* error) {
    RegionData r;
    if (!ParseHeader(header, r, error)) return std::nullopt;
    const size_t nodes = r.NodeCount();
    const size_t k = r.constituents.size();
    if (harmonics.size() < kHrmHead || std::memcmp(harmonics.data(), kHrmMagic, 8) != 0) {
        Fail(error, "harmonics file is not a tide harmonics file (too short or wrong magic)");
        return std::nullopt;
    }
    if (U32(harmonics, 8) != 1) {
        Fail(error, "harmonics file version " + std::to_string(U32(harmonics, 8)) + " is not known");
        return std::nullopt;
    }
    if (U32(harmonics, 12) != nodes || U32(harmonics, 16) != k) {
        Fail(error, "harmonics file holds " + std::to_string(U32(harmonics, 12)) + " nodes of " +
                        std::to_string(U32(harmonics, 16)) + " constituents; the header says " +
                        std::to_string(nodes) + " of " + std::to_string(k));
        return std::nullopt;
    }
    const size_t record = 4 + 16 * k;
    if ((harmonics.size() - kHrmHead) != nodes * record) {
        Fail(error, "harmonics file is " + std::to_string(harmonics.size()) + " bytes, " +
                        std::to_string(kHrmHead + nodes * record) + " expected (truncated or padded)");
        return std::nullopt;
    }
    r.sea.resize(nodes);
    r.harmonics.resize(nodes * k);
    size_t at = kHrmHead;
    for (size_t n = 0; n < nodes; ++n) {
        const uint32_t flags = U32(harmonics, at);
        at += 4;
        if (flags > 1) {
            Fail(error, "node " + std::to_string(n) + " has unknown flags");
            return std::nullopt;
        }
        r.sea[n] = uint8_t(flags);
        for (size_t c = 0; c < k; ++c, at += 16) {
            NodeHarmonic& h = r.harmonics[n * k + c];
            h.eastAmp = F32(harmonics, at);
            h.eastPhase = F32(harmonics, at + 4);
            h.northAmp = F32(harmonics, at + 8);
            h.northPhase = F32(harmonics, at + 12);
            const bool ampsOk = h.eastAmp >= 0 && h.eastAmp <= kMaxAmplitude && h.northAmp >= 0 &&
                                h.northAmp <= kMaxAmplitude;
            const bool phasesOk = std::fabs(h.eastPhase) <= 3600 && std::fabs(h.northPhase) <= 3600;
            if (!ampsOk || !phasesOk) {
                Fail(error, "node " + std::to_string(n) + ", constituent " + r.constituents[c] +
                                ": amplitude or phase out of range");
                return std::nullopt;
            }
        }
    }
    return r;
}

std::string HeaderText(const RegionData& r) {
    auto num = [](double v) {
        char buf[40];
        auto [p, ec] = std::to_chars(buf, buf + sizeof buf, v);
        return std::string(buf, ec == std::errc() ? p : buf);
    };
    std::string s(kHeaderMagic);
    s += "\nName=" + r.name + "\nBox=" + num(r.south) + " " + num(r.west) + " " + num(r.north) +
         " " + num(r.east) + "\nTimeOffset=" + std::to_string(r.timeOffsetMinutes) + "\nConstituents=";
    for (size_t i = 0; i < r.constituents.size(); ++i) s += (i ? " " : "") + r.constituents[i];
    if (r.layout == Layout::Grid) {
        s += "\nLayout=Grid\nGrid=" + std::to_string(r.rows) + " " + std::to_string(r.cols) + "\n";
    } else {
        s += "\nLayout=Stations\nRadius=" + num(r.radiusNm) + "\n";
        for (const Station& st : r.stations)
            s += "Station=" + num(st.lat) + " " + num(st.lon) + (st.name.empty() ? "" : " " + st.name) + "\n";
    }
    return s;
}

std::string HarmonicsBytes(const RegionData& r) {
    const size_t nodes = r.NodeCount(), k = r.constituents.size();
    std::string s(kHrmMagic, 8);
    PutU32(s, 1);
    PutU32(s, uint32_t(nodes));
    PutU32(s, uint32_t(k));
    s.reserve(kHrmHead + nodes * (4 + 16 * k));
    for (size_t n = 0; n < nodes; ++n) {
        PutU32(s, n < r.sea.size() ? r.sea[n] : 0);
        for (size_t c = 0; c < k; ++c) {
            const size_t i = n * k + c;
            const NodeHarmonic h = i < r.harmonics.size() ? r.harmonics[i] : NodeHarmonic{};
            PutF32(s, h.eastAmp);
            PutF32(s, h.eastPhase);
            PutF32(s, h.northAmp);
            PutF32(s, h.northPhase);
        }
    }
    return s;
}

bool SaveRegion(const RegionData& r, std::string_view folder, std::string_view baseName,
                std::string* error) {
    const std::string base = WithTrailingSlash(folder) + std::string(baseName);
    return SaveFileAtomic(base + ".Hrm", HarmonicsBytes(r), error) &&
           SaveFileAtomic(base + ".Hdr", HeaderText(r), error);
}

}  // namespace ombra::tide
