#include "core/Fault.h"
#include "navobjects/Boundary.h"

namespace ombra {

const char* const kBoundaryAlarmModes[2] = {"Alarm On VesselEntry", "Alarm On Vessel Exit"};

std::vector<LatLong> Boundary::Ring() const {
    std::vector<LatLong> ring;
    ring.reserve(Marks.size());
    for (const Waypoint& m : Marks) ring.push_back(m.Position.Wgs84);
    return ring;
}

std::string BoundaryFileText(const std::string& versionLine, const std::string& dbName,
                             const std::vector<Boundary>& slots) {
    TextRecordWriter w;
    w.Str(versionLine).EndLine();
    w.Str(dbName).EndLine();
    for (const Boundary& b : slots) {
        if (!b.Used()) {
            w.Str("").Num(0).Str("").Num(0).Num(0).Num(0).Num(0).Num(0).Num(0).EndLine();
            continue;
        }
        w.Str(b.Name)
            .Num(b.Number)
            .Str(b.Description)
            .Num(int16_t(b.Marks.size()))
            .Num(b.Display)
            .Num(b.Filled)
            .Num(b.AlarmOnExit)
            .Num(b.Colour)
            .Num(b.Pattern)
            .EndLine();
        for (const Waypoint& m : b.Marks) {
            WriteWaypointFields(w, m);
            w.EndLine();
        }
    }
    return w.Text();
}

ReadOutcome ReadBoundaryFile(const std::string& text, std::string& name, std::vector<Boundary>& slots,
                             StoreForm* formOut) {
    slots.clear();
    return ReadStoreFile(
        text, name, "boundaries",
        [&slots](TextRecordReader& r, StoreForm form, int* at) {
            // 2.18 counts with the present form here: only routes changed at 2.18.
            const bool full = form == StoreForm::V218 || form == StoreForm::Current;
            Boundary b;
            {
                RecordLine h(r, full ? 9 : 7, at);
                b.Name = h.Str();
                b.Number = h.Int16();
                b.Description = h.Str();
                b.MarkCount = h.Int16();
                b.Display = int16_t(h.Num() != 0 ? -1 : 0);
                b.Filled = int16_t(h.Num() != 0 ? -1 : 0);
                b.AlarmOnExit = h.Int16();
                if (full) {
                    b.Colour = h.Int16();
                    b.Pattern = h.Int16();
                }
                if (b.MarkCount < 0)
                    throw Fault(faults::SubscriptOutOfRange,
                                "Line " + std::to_string(h.Line()) + " gives a boundary a negative number of marks");
            }
            b.Marks.reserve(size_t(b.MarkCount));
            for (int16_t i = 0; i < b.MarkCount; ++i) {
                Waypoint m;
                RecordLine ml(r, 11, at);
                ReadWaypointFields(ml, m);
                b.Marks.push_back(std::move(m));
            }
            slots.push_back(std::move(b));
        },
        formOut);
}

}  // namespace ombra
