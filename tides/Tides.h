// Tides: the one gateway to the tidal stream model (TideStream). It keeps
// the list of installed regions, finds the region for a position and turns
// the program's positions and dates into the model's integers and the
// model's integers into a set in degrees true and a drift in knots.
//
// Regions are pairs of files "<name>.Hdr" / "<name>.Hrm" in the tide data
// folder ("<data>\Dat\"); only names that begin with "REGION" in any case
// count, and a name keeps its case. The list is rebuilt at start-up and
// after regions are installed; its order is the order of the folder (names
// compared without regard to case), which decides between overlapping
// boxes: the first box that holds a point answers, even where its model has
// no stream there.
//
// Every prediction is asked for `TideTime`, the program's local time as the
// navigator gave it; whoever sets it leaves it set.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "core/ErrorReport.h"
#include "platform/api/Geo.h"
#include "platform/api/TideStream.h"

namespace ombra {

struct TideRegion {
    std::string Name;  // base file name, text before the first ".", case kept
    float LatMax = 0.0f, LatMin = 0.0f;    // seconds of arc
    float LongMax = 0.0f, LongMin = 0.0f;  // seconds of arc
};

// The model's units: positions in 1e-7 degree.
int32_t ToTideUnits(double secondsOfArc);
float FromTideUnits(int32_t value);

class Tides {
public:
    Tides(TideStream& stream, ErrorReporter& errors) : stream_(stream), errors_(errors) {}

    // The tide data folder, with its trailing separator.
    void SetDataPath(const std::string& folder) { dataPath_ = folder; }
    const std::string& TideDataPath() const { return dataPath_; }

    // Rebuilds the list from the tide data folder. A region the model
    // refuses (a truncated or inconsistent pair) is left out of the list
    // and reported with the model's reason; an empty or missing folder
    // gives an empty list.
    void ListTideRegions();
    // Upper bound of the list: real regions are 1..count, entry 0 is blank.
    int16_t TideRegionCount() const { return int16_t(regions_.size() - 1); }
    const std::vector<TideRegion>& TideRegions() const { return regions_; }
    // The first region whose box (edges inclusive) holds the position, 0 if
    // none.
    int16_t FindTideRegion(const LatLong& pos) const;

    // The stream at `pos` at TideTime: `set` degrees true, `drift` knots.
    // False, with both 0, where the model cannot predict.
    bool GetTide(const LatLong& pos, float& drift, float& set);

    // The instant every prediction is asked for (a date serial).
    double TideTime = 0.0;

    // The model itself, for the stream grid, which keeps its selection from
    // cell to cell instead of selecting the region before every cell.
    TideStream& stream() { return stream_; }
    // Selects region `index` in the model (0 selects the blank name, which
    // fails every prediction).
    void SelectRegion(int16_t index);

private:
    TideStream& stream_;
    ErrorReporter& errors_;
    std::string dataPath_;
    std::vector<TideRegion> regions_{TideRegion{}};
};

// Splits a date serial into the six parts the model takes.
struct TideInstant {
    int32_t day = 0, month = 0, year = 0, hour = 0, minute = 0, second = 0;
};
TideInstant SplitTideTime(double serial);

}  // namespace ombra
