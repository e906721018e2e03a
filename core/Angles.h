// Degrees and radians: the one conversion the whole program uses.
//
// The factor is the one the plotter has always converted with, a hair above
// pi/180 (below 1e-15 relative); it is kept so that courses, distances and
// projected positions agree with old results to the last digit.
#pragma once

namespace ombra {

constexpr double kDegToRad = 0.017453292519944444;
constexpr double kRadToDeg = 57.29577951307855;

}  // namespace ombra
