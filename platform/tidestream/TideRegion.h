// Tide region files: a text header (RegionNN.Hdr) naming the region, its
// box, its clock, its constituents and its nodes, and a binary harmonics
// file (RegionNN.Hrm) holding per node the east and north velocity
// amplitude and phase of each constituent. docs/tide-region-format.md
// describes both. The reader takes any bytes: what is not a whole,
// consistent region is refused with a message saying why.
#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ombra::tide {

enum class Layout { Grid, Stations };

struct Station {
    double lat = 0, lon = 0;
    std::string name;
};

// One constituent at one node: amplitudes in m/s, phases in degrees, the
// Greenwich phase lags referred to the region's clock.
struct NodeHarmonic {
    float eastAmp = 0, eastPhase = 0, northAmp = 0, northPhase = 0;
};

struct RegionData {
    std::string name;
    double south = 0, west = 0, north = 0, east = 0;  // degrees
    int timeOffsetMinutes = 0;  // the harmonics' clock, minutes ahead of UTC
    std::vector<std::string> constituents;
    Layout layout = Layout::Grid;
    int rows = 0, cols = 0;           // a grid: rows south to north, columns west to east
    std::vector<Station> stations;    // scattered stations
    double radiusNm = 0;              // stations answer within this distance
    std::vector<uint8_t> sea;         // per node: 1 water, 0 land
    std::vector<NodeHarmonic> harmonics;  // node-major: node * constituents + k

    size_t NodeCount() const {
        return layout == Layout::Grid ? size_t(rows) * size_t(cols) : stations.size();
    }
};

// Limits a region may not pass, so that no file makes the reader allocate
// without bound.
inline constexpr size_t kMaxNodes = 4'000'000;
inline constexpr size_t kMaxConstituents = 64;
inline constexpr size_t kMaxHeaderBytes = 16 << 20;
inline constexpr float kMaxAmplitude = 20.0f;  // m/s

// Reads a region from the bytes of its two files; nothing, and `error` says
// why, when they are not a whole, consistent region.
std::optional<RegionData> ParseRegion(std::string_view header, std::string_view harmonics,
                                      std::string* error);

// The two files' bytes for a region (which must be consistent).
std::string HeaderText(const RegionData& r);
std::string HarmonicsBytes(const RegionData& r);
// Writes both files beside each other, each saved atomically.
bool SaveRegion(const RegionData& r, std::string_view folder, std::string_view baseName,
                std::string* error);

}  // namespace ombra::tide
