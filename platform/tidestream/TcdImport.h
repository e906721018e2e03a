// Tide regions from a harmonic database in the .tcd format (XTide's, read
// through libtcd): the tidal-current reference stations inside a box become
// a region of scattered stations.
//
// A station's stream runs along its flood direction, negative towards the
// ebb: each constituent (and the mean current, as Z0) becomes an east and a
// north component. Phases given as epochs on a station's time meridian are
// turned into Greenwich lags; the region's clock is the first usable
// station's standard time (no summer time). Stations that cannot make a
// velocity are skipped and counted; where several share a position (the
// depth bins of a current survey) the shallowest stands for the surface.
#pragma once
#include <optional>
#include <string>
#include <vector>

#include "platform/tidestream/TideRegion.h"

namespace ombra::tide {

struct TcdImportReport {
    int used = 0;
    int subordinate = 0;   // offsets from another station
    int heightOnly = 0;    // tide heights, not currents
    int hydraulic = 0;     // knots squared
    int noDirection = 0;   // no flood direction
    int deeperBin = 0;     // another bin at the same place is shallower
    std::vector<std::string> droppedConstituents;  // carried but unknown to the model
};

struct TcdBox {
    double south, west, north, east;
};

std::optional<RegionData> RegionFromTcd(const std::string& tcdPath, const TcdBox& box,
                                        const std::string& name, double radiusNm,
                                        TcdImportReport& report, std::string* error);

// Depth of a bin named "... (Depth 15.3ft) ...", in feet (metres converted);
// 0 when the name gives none.
double DepthInName(const std::string& name);

}  // namespace ombra::tide
