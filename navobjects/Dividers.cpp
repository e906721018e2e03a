#include "navobjects/Dividers.h"

#include <algorithm>
#include <cmath>

#include "core/ErrorReport.h"
#include "core/Format.h"
#include "core/Options.h"
#include "core/Registry.h"
#include "core/Units.h"
#include "navmath/RLGC.h"
#include "navobjects/CommonWP.h"
#include "navobjects/NavChart.h"
#include "navobjects/NavHost.h"

namespace ombra {

std::string MeasureLabel(double course, double distance, int16_t angleUnit, double variation, const Units& units,
                         const char* rangeFormat, const char* suffix) {
    // Compass mode shows magnetic here: dividers know no deviation.
    return LegLabel(course, distance, angleUnit == 0 ? 0 : 1, variation, 0.0, units, rangeFormat, suffix);
}

void DrawEndCircles(Canvas& c, NavChart& chart, const NavPoint& p) {
    c.SetBrush({0, BrushStyle::Null});
    for (size_t k = 0; k < p.InPlan.size() && k < p.Pixel.size(); ++k) {
        if (!p.InPlan[k]) continue;
        ChartPoint s = chart.ToScreen(p.Pixel[k]);
        c.Ellipse({s.x - 3, s.y - 3, s.x + 4, s.y + 4});
    }
}

// ---- Dividers ---------------------------------------------------------------

void Dividers::Set(NavPoint& p, const LatLong& pos) {
    p.Wgs84 = pos;
    ctx_.chart.PrepareNavPoint(p);
}

int16_t Dividers::Begin(const LatLong& a) {
    Divider d;
    Set(d.A, a);
    Set(d.B, a);
    d.State = 1;
    List.push_back(std::move(d));
    Selected = int16_t(List.size());
    return Selected;
}

void Dividers::Follow(const LatLong& b) {
    if (Selected < 1 || Selected > int16_t(List.size()) || List[size_t(Selected - 1)].State != 1) return;
    Set(List[size_t(Selected - 1)].B, b);
    ctx_.chart.Redraw();
}

void Dividers::Finish(const LatLong& b) {
    if (Selected < 1 || Selected > int16_t(List.size())) return;
    Divider& d = List[size_t(Selected - 1)];
    Set(d.B, b);
    d.State = 2;
    ctx_.chart.Redraw();
}

void Dividers::Cancel() {
    if (Selected >= 1 && Selected <= int16_t(List.size()) && List[size_t(Selected - 1)].State == 1) Delete(Selected);
}

void Dividers::Delete(int16_t index) {
    if (index < 1 || index > int16_t(List.size())) return;
    List.erase(List.begin() + index - 1);
    Selected = 0;
    ctx_.chart.Redraw();
}

void Dividers::MoveTo(int16_t index, const LatLong& a) {
    if (index < 1 || index > int16_t(List.size())) return;
    Divider& d = List[size_t(index - 1)];
    LatLong shift{a.Long - d.A.Wgs84.Long, a.Lat - d.A.Wgs84.Lat};
    Set(d.A, a);
    Set(d.B, LatLong{d.B.Wgs84.Long + shift.Long, d.B.Wgs84.Lat + shift.Lat});
    ctx_.chart.Redraw();
}

void Dividers::PrepareNavPoints() {
    for (Divider& d : List) {
        ctx_.chart.PrepareNavPoint(d.A);
        ctx_.chart.PrepareNavPoint(d.B);
    }
}

std::string Dividers::Label(const Divider& d) {
    double course, distance;
    CourseDistanceGC(d.A.Wgs84, d.B.Wgs84, course, distance);
    return MeasureLabel(course, distance, ctx_.units.AngleUnit, ctx_.host.Variation(d.A.Wgs84), ctx_.units,
                        LoadDisplayOptions(ctx_.reg).RangeFormat(), " GC");
}

void Dividers::DrawDividers(Canvas& c) {
    ctx_.errors.Guard("DrawDividers", [&] {
        if (!ctx_.chart.ChartOpen()) return;
        for (const Divider& d : List) {
            if (d.State == 0) continue;
            c.SetPen({ctx_.chart.LabelColour(), 1, PenStyle::Solid});
            double course, distance;
            CourseDistanceGC(d.A.Wgs84, d.B.Wgs84, course, distance);
            if (distance > 0.0) ctx_.chart.DrawGreatCircle(c, d.A, d.B, course, distance, Label(d));
            DrawEndCircles(c, ctx_.chart, d.A);
            DrawEndCircles(c, ctx_.chart, d.B);
        }
    });
}

// ---- Vectors ----------------------------------------------------------------

void Vectors::Set(NavPoint& p, const LatLong& pos) {
    p.Wgs84 = pos;
    ctx_.chart.PrepareNavPoint(p);
}

int16_t Vectors::Begin(const LatLong& from, bool greatCircle) {
    Vector v;
    Set(v.From, from);
    Set(v.To, from);
    v.GreatCircle = greatCircle ? -1 : 0;
    v.State = 1;
    List.push_back(std::move(v));
    Selected = int16_t(List.size());
    return Selected;
}

void Vectors::Follow(const LatLong& to) {
    if (Selected < 1 || Selected > int16_t(List.size()) || List[size_t(Selected - 1)].State != 1) return;
    Set(List[size_t(Selected - 1)].To, to);
    ctx_.chart.Redraw();
}

void Vectors::Finish(const LatLong& to) {
    if (Selected < 1 || Selected > int16_t(List.size())) return;
    Vector& v = List[size_t(Selected - 1)];
    Set(v.To, to);
    v.State = 2;
    ctx_.chart.Redraw();
}

void Vectors::Cancel() {
    if (Selected >= 1 && Selected <= int16_t(List.size()) && List[size_t(Selected - 1)].State == 1) Delete(Selected);
}

void Vectors::Delete(int16_t index) {
    if (index < 1 || index > int16_t(List.size())) return;
    List.erase(List.begin() + index - 1);
    Selected = 0;
    ctx_.chart.Redraw();
}

void Vectors::MoveTo(int16_t index, const LatLong& from) {
    if (index < 1 || index > int16_t(List.size())) return;
    Vector& v = List[size_t(index - 1)];
    LatLong shift{from.Long - v.From.Wgs84.Long, from.Lat - v.From.Wgs84.Lat};
    Set(v.From, from);
    Set(v.To, LatLong{v.To.Wgs84.Long + shift.Long, v.To.Wgs84.Lat + shift.Lat});
    ctx_.chart.Redraw();
}

void Vectors::ToggleKind(int16_t index) {
    if (index < 1 || index > int16_t(List.size())) return;
    Vector& v = List[size_t(index - 1)];
    v.GreatCircle = v.GreatCircle ? 0 : -1;
    ctx_.chart.Redraw();
}

void Vectors::PrepareNavPoints() {
    for (Vector& v : List) {
        ctx_.chart.PrepareNavPoint(v.From);
        ctx_.chart.PrepareNavPoint(v.To);
    }
}

std::string Vectors::Label(const Vector& v) {
    double course, distance;
    if (v.GreatCircle) CourseDistanceGC(v.From.Wgs84, v.To.Wgs84, course, distance);
    else CourseDistanceRL(v.From.Wgs84, v.To.Wgs84, course, distance);
    return MeasureLabel(course, distance, ctx_.units.AngleUnit, ctx_.host.Variation(v.From.Wgs84), ctx_.units,
                        LoadDisplayOptions(ctx_.reg).RangeFormat(), v.GreatCircle ? " GC" : " RL");
}

void Vectors::WriteLabel(Canvas& c, const Vector& v) {
    size_t panels = std::min({v.From.InPlan.size(), v.From.Pixel.size(), v.To.InPlan.size(), v.To.Pixel.size()});
    for (size_t k = 0; k < panels; ++k) {
        if (!v.From.InPlan[k] || !v.To.InPlan[k]) continue;
        ChartPoint a = ctx_.chart.ToScreen(v.From.Pixel[k]), b = ctx_.chart.ToScreen(v.To.Pixel[k]);
        const std::string text = Label(v);
        ChartPoint mid{int32_t((int64_t(a.x) + b.x) / 2), int32_t((int64_t(a.y) + b.y) / 2)};
        c.Text({mid.x - c.TextWidth(text) / 2, mid.y - c.TextHeight() - 2}, text);
        return;
    }
}

void Vectors::DrawVectors(Canvas& c, bool onlySelected) {
    ctx_.errors.Guard("DrawVectors", [&] {
        if (!ctx_.chart.ChartOpen()) return;
        for (size_t i = 0; i < List.size(); ++i) {
            const Vector& v = List[i];
            if (v.State == 0 || (onlySelected && Selected != int16_t(i + 1))) continue;
            c.SetPen({ctx_.chart.LabelColour(), 1, PenStyle::Solid});
            c.SetTextColour(ctx_.chart.LabelColour());
            double course, distance;
            if (v.GreatCircle) {
                CourseDistanceGC(v.From.Wgs84, v.To.Wgs84, course, distance);
                if (distance > 0.0) ctx_.chart.DrawGreatCircle(c, v.From, v.To, course, distance, "");
            } else {
                ctx_.chart.DrawPlainRhumbLine(c, v.From, v.To, "");
            }
            // The label is written over the chart on a transparent
            // background, beside the middle of the line, not in a box.
            if (ctx_.chart.LabelOverride() != 2) WriteLabel(c, v);
            DrawEndCircles(c, ctx_.chart, v.From);
            DrawEndCircles(c, ctx_.chart, v.To);
        }
    });
}

}  // namespace ombra
