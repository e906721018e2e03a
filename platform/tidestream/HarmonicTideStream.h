// Ombra's tidal stream model: the TideStream service over region files.
//
// A region is read once, the first time it is selected, and kept (with the
// reason when it was refused) until the data folder is declared again, so
// selecting it before every prediction costs a string comparison. The
// stream at a point is the sum over the region's constituents of
// f * A * cos(V + u - g) for the east and north components, with V the
// equilibrium argument at the instant and f, u the node factor and nodal
// phase for the middle of its year, interpolated bilinearly between the
// four grid nodes round the point (water nodes only), or weighted by the
// inverse square of distance over the stations within the region's radius.
#pragma once
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/api/TideStream.h"
#include "platform/tidestream/TideAstronomy.h"
#include "platform/tidestream/TideRegion.h"

namespace ombra {

// Why a prediction could not be made (the results of WrapperDoPrediction).
enum TideFailure : int32_t {
    kTideOk = 0,
    kTideNoRegion = 1,        // none selected, or the selected region was refused
    kTideBadInput = 2,        // a date, time or position that does not exist
    kTideOutsideBox = 3,      // the point lies outside the region's box
    kTideNoWater = 4,         // land on the grid, or no station within the radius
};

class HarmonicTideStream final : public TideStream {
public:
    int32_t WrapperSetPath(char* path) override;
    int32_t WrapperSetDataFileName(char* headerName, char* harmonicsName) override;
    int32_t WrapperModelDomain(int32_t& longMax, int32_t& longMin, int32_t& latMax,
                               int32_t& latMin) override;
    int32_t WrapperDoPrediction(int32_t& points, int32_t& lat, int32_t& lon, int32_t day,
                                int32_t month, int32_t year, int32_t hour, int32_t minute,
                                int32_t second, int32_t reserved, int32_t& out1, int32_t& out2,
                                int32_t& out3, int32_t& out4, int32_t& out5) override;

    // Why the selected region was refused; empty when it was read.
    std::string LastError() const override { return error_; }

    // A compiled region, kept in memory.
    struct Compiled {
        tide::RegionData data;
        std::vector<int> table;      // index in tide::Table() per constituent
        std::vector<float> coef;     // per node, per constituent: A cos g, A sin g east, north
    };

private:
    struct Entry {
        std::shared_ptr<const Compiled> region;  // null when refused
        std::string error;
    };
    const tide::NodeCorrection* Corrections(int year);

    std::string folder_;
    std::map<std::string, Entry> cache_;
    std::string selectedKey_;
    const Entry* selected_ = nullptr;
    std::string error_;
    int correctionYear_ = 0;
    std::vector<tide::NodeCorrection> corrections_;
};

}  // namespace ombra
