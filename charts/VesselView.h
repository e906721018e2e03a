// VesselView: what the chart view needs to know of the vessel to draw it.
//
// The instruments module owns the vessel; the view only reads this small
// record through VesselSource, once a redraw, so neither module reaches
// into the other. Angles are degrees true (clockwise from north), speeds
// knots, the position WGS84 in seconds of arc.
//
//   class VesselFromInstruments : public VesselSource {
//       bool GetVesselView(VesselView& v) override {
//           v.Active = vessel.VesselActive(); v.Pos = vessel.Pos.Wgs84; ...
//           return true;
//       }
//   };
#pragma once
#include <string>

#include "core/Types.h"

namespace ombra {

struct VesselView {
    bool Active = false;        // modes DR, GPS, GPS lost, FILE DR: drawn and centred on at opening
    LatLong Pos;                // WGS84
    double Heading = -1.0;      // degrees true; -1 unknown (the course over ground is drawn instead)
    double COG = 0.0;           // degrees true
    double SOG = 0.0;           // knots
    bool Predictor = false;     // draw the predictor line
    float PredictorTime = 5.0f; // minutes along COG at SOG
    std::string Name;
    bool NameDisplay = false;
    Rgb Colour = MakeRgb(0, 160, 0);  // the mode's colour (green GPS, blue DR, red lost)
};

class VesselSource {
public:
    virtual ~VesselSource() = default;
    // False when there is no vessel to draw.
    virtual bool GetVesselView(VesselView& view) = 0;
};

}  // namespace ombra
