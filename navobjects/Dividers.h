// Dividers and vectors: the navigator's measuring lines on the chart,
// never saved (closing the program loses them).
//
// A divider is a great-circle measure between two ends: drawn as the
// great circle with the label "045 °T 12.300 NM GC" (course "000", "°T",
// or "°M" with the variation at its first end taken off, the distance in
// the current unit). A vector (a range-bearing line, "RBL") is a rhumb
// line or a great circle by its own flag, labelled with " RL" or " GC"
// written straight over the chart (no box, so the chart shows around it).
// Each end has a small circle. While an end is being placed it follows
// the cursor.
//
//   dividers.Begin(a);  dividers.Follow(b);  dividers.Finish(b);
//   vectors.Add(a, b, /*greatCircle=*/false);
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "charts/NavPoint.h"
#include "navobjects/NavStore.h"

namespace ombra {

class Canvas;

struct Divider {
    NavPoint A, B;
    int16_t State = 0;   // 0 free, 1 placing its second end, 2 placed
};

struct Vector {
    NavPoint From, To;
    int16_t GreatCircle = 0;
    int16_t State = 0;   // as Divider
};

// The label of a measure: course, mark, distance, suffix (" GC", " RL").
std::string MeasureLabel(double course, double distance, int16_t angleUnit, double variation, const Units& units,
                         const char* rangeFormat, const char* suffix);

class Dividers {
public:
    explicit Dividers(NavContext& ctx) : ctx_(ctx) {}
    std::vector<Divider> List;
    int16_t Selected = 0;  // 1-based; 0 none

    // A new divider with its first end; the second follows the cursor.
    int16_t Begin(const LatLong& a);
    void Follow(const LatLong& b);
    void Finish(const LatLong& b);
    // Drops a divider whose second end was never placed.
    void Cancel();
    void Delete(int16_t index);
    // Moves the whole divider so that its first end lies at `a`.
    void MoveTo(int16_t index, const LatLong& a);
    void DrawDividers(Canvas& c);
    void PrepareNavPoints();
    // The divider's label as drawn.
    std::string Label(const Divider& d);

private:
    void Set(NavPoint& p, const LatLong& pos);
    NavContext& ctx_;
};

class Vectors {
public:
    explicit Vectors(NavContext& ctx) : ctx_(ctx) {}
    std::vector<Vector> List;
    int16_t Selected = 0;

    int16_t Begin(const LatLong& from, bool greatCircle);
    void Follow(const LatLong& to);
    void Finish(const LatLong& to);
    void Cancel();
    void Delete(int16_t index);
    void MoveTo(int16_t index, const LatLong& from);
    void ToggleKind(int16_t index);
    // With `onlySelected` (the move and placing tools) only the selected
    // vector is drawn.
    void DrawVectors(Canvas& c, bool onlySelected);
    void PrepareNavPoints();
    std::string Label(const Vector& v);

private:
    // The label text beside the middle of a vector (first panel showing both ends).
    void WriteLabel(Canvas& c, const Vector& v);
    void Set(NavPoint& p, const LatLong& pos);
    NavContext& ctx_;
};

// The small circle at an end: radius 3 pixels about each panel's point.
void DrawEndCircles(Canvas& c, NavChart& chart, const NavPoint& p);

}  // namespace ombra
