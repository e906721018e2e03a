#include "core/Fault.h"
#include "core/Val.h"
#include "navmath/RLGC.h"
#include "navobjects/Route.h"

namespace ombra {

double Route::TotalDistance() const {
    double d = 0.0;
    for (size_t i = 0; i + 1 < Legs.size() && i + 1 < Points.size(); ++i) d += Legs[i].Distance;
    return d;
}

void ComputeLeg(Route& r, size_t i) {
    if (i >= r.Legs.size()) return;
    if (i + 1 >= r.Points.size()) {
        r.Legs[i].Distance = 0.0;
        r.Legs[i].Course = 0.0;
        return;
    }
    CourseDistance(r.Legs[i].IsGreatCircle, r.Points[i].Position.Wgs84, r.Points[i + 1].Position.Wgs84,
                   r.Legs[i].Course, r.Legs[i].Distance);
}

void ComputeLegs(Route& r) {
    r.Legs.resize(r.Points.size());
    for (size_t i = 0; i < r.Legs.size(); ++i) ComputeLeg(r, i);
}

std::string RouteFileText(const std::string& versionLine, const std::string& dbName, const std::vector<Route>& routes) {
    TextRecordWriter w;
    w.Str(versionLine).EndLine();
    w.Str(dbName).EndLine();
    for (const Route& r : routes) {
        if (!r.Used()) {
            w.Str("").Num(0).Str("").Num(0).Num(0).Bool(false).Num(0).EndLine();
            continue;
        }
        w.Str(r.Name).Num(r.Number).Str(r.Description).Num(int16_t(r.Points.size())).Num(r.Display).Bool(r.ShowLegText).Num(r.Colour).EndLine();
        for (size_t i = 0; i < r.Points.size(); ++i) {
            WriteWaypointFields(w, r.Points[i]);
            w.Num(i < r.Legs.size() ? r.Legs[i].IsGreatCircle : int16_t(0)).EndLine();
        }
    }
    return w.Text();
}

ReadOutcome ReadRouteFile(const std::string& text, std::string& name, std::vector<Route>& routes, StoreForm* formOut) {
    routes.clear();
    return ReadStoreFile(
        text, name, "routes",
        [&routes](TextRecordReader& r, StoreForm form, int* at) {
            const bool hasColour = form == StoreForm::V218 || form == StoreForm::Current;
            const bool flagsInline = form == StoreForm::Current;
            Route rt;
            {
                RecordLine h(r, hasColour ? 7 : 6, at);
                rt.Name = h.Str();
                rt.Number = h.Int16();
                rt.Description = h.Str();
                rt.PointCount = h.Int16();
                rt.Display = int16_t(h.Num() != 0 ? -1 : 0);
                rt.ShowLegText = h.Bool();
                if (hasColour) rt.Colour = h.Int16();
                if (rt.PointCount < 0)
                    throw Fault(faults::SubscriptOutOfRange,
                                "Line " + std::to_string(h.Line()) + " gives a route a negative number of points");
            }
            if (rt.Colour < 0 || rt.Colour > 16) rt.Colour = 0;
            rt.Points.reserve(size_t(rt.PointCount));
            rt.Legs.resize(size_t(rt.PointCount));
            for (int16_t i = 0; i < rt.PointCount; ++i) {
                Waypoint wp;
                RecordLine pl(r, flagsInline ? 12 : 11, at);
                ReadWaypointFields(pl, wp);
                if (flagsInline) rt.Legs[size_t(i)].IsGreatCircle = pl.Int16();
                rt.Points.push_back(std::move(wp));
            }
            if (!flagsInline)
                for (int16_t i = 0; i < rt.PointCount; ++i) {
                    RecordLine fl(r, 1, at);
                    rt.Legs[size_t(i)].IsGreatCircle = fl.Int16();
                }
            routes.push_back(std::move(rt));
        },
        formOut);
}

}  // namespace ombra
