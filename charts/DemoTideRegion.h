// DemoTideRegion: the tidal streams round the island of the demo chart, a
// region of the stream model worked out by calculation rather than taken from
// a survey, so that the demonstration has streams to show and to plan with
// (ombra-cli tide make-demo writes it; tools/demo-setup.sh installs it).
//
// The grid covers the demo chart edge to edge with a node every quarter
// minute of latitude and of longitude; a node is land where the chart has
// land or drying ground (DemoChart::DepthAt below 0). The stream is
// semi-diurnal and rotary, turning clockwise: in open water the M2 ellipse
// has a major axis of 0.77 m/s (1.5 knots) towards 060° and 240° and a minor
// axis of 0.26 m/s, and S2 the same shape a third as strong, 49° behind
// (springs two days after new and full moon). Over that open-sea stream:
//  - shoal water slows it, by d / (d + 2) of the chart's depth d in metres;
//  - off the two headlands of the harbour bay it runs up to 2.5 times as
//    strong (a race a third of a mile off each point);
//  - the bay is sheltered: at its mouth the stream is 0.15 of the open one;
//  - the tide wave travels east: phases lag 0.8° more each mile eastward.
// Times are UTC (the region's clock offset is 0). The same region, to the
// byte, every time.
#pragma once
#include "platform/tidestream/TideRegion.h"

namespace ombra {

tide::RegionData DemoTideRegion();

}  // namespace ombra
