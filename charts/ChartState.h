// ChartState: the open chart, as every chart module reads it.
//
// Chart (opening, zoom) writes it; Display and the drawing of legs read it.
// CurrentChartPath is the path of the raster in view (".LOR" right after
// opening, ".CHR" at high resolution) and is empty when no chart is open.
#pragma once
#include <string>
#include <vector>

#include "charts/ChartCat.h"
#include "charts/ChartHeader.h"

namespace ombra {

struct ChartState {
    std::string Root;              // the chart root (MainDataPath)
    std::string CurrentChartPath;  // raster in view; "" when none is open
    std::string HeaderPath;        // the open chart's ".HDR"
    ChartHeader Header;            // the open chart's header, plans and outlines
    ChartCatEntry Catalogue;       // its catalogue record
    std::vector<std::string> Notes;  // its notes: the chart's, then each plan's
    int16_t CurrentPlan = 0;
    LatLong ViewCentre;            // WGS84, kept while moving between charts
    bool IsOpen() const { return !CurrentChartPath.empty(); }
};

}  // namespace ombra
