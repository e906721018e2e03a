// ActiveLeg: the one destination the vessel steers to, and the leg to it.
//
// Filled by route activation (a waypoint, or a point of a route), kept
// current by the vessel cycle (distance and bearing from the vessel, the
// leg's course), shown on the console, sent in the NMEA burst and watched
// by the arrival and cross-track alarms. Kind 0 means no leg; the other
// fields then mean nothing.
//
// Units: positions in seconds of arc, distances in nautical miles, courses
// and bearings in degrees true, AlarmRange in nautical miles (always
// positive here). FromName is empty when the leg starts at the vessel.
// LegVariation is carried for the BOD sentence's magnetic leg course; no
// routine assigns it by name, so it reads as copied into the record,
// normally 0.
//
//   ActiveLeg leg;  leg.Kind = 1;  leg.Name = "WP12";
//   leg.To = LatLong{-11.9 * 3600, 49.95 * 3600};  leg.From = vessel.Pos;
#pragma once
#include <cstdint>
#include <string>

#include "core/Types.h"

namespace ombra {

struct ActiveLeg {
    std::string Name;              // destination's name, without a route prefix
    std::string FromName;          // the leg's start; empty: the vessel
    int16_t Kind = 0;              // 0 none, 1 waypoint, 2 route point
    LatLong To;                    // destination (the chart view keeps its pixels)
    double DistanceTo = 0.0;       // vessel to To, nautical miles, RL or GC
    double BearingTo = 0.0;        // vessel to To, degrees true
    double LegCourse = 0.0;        // From to To, degrees true
    LatLong From;                  // the leg's start
    float LegVariation = 0.0f;     // variation applied to LegCourse
    float AlarmRange = 0.0f;       // arrival range, nautical miles
    int16_t Armed = 0;             // the arrival alarm applies
    int16_t PassedPerpendicular = 0;
    int16_t GreatCircle = 0;       // the distance was taken as a great circle (CoDist2)
};

}  // namespace ombra
