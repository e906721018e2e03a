#include "charts/Chart.h"

#include <fstream>

#include "core/ErrorReport.h"
#include "core/Paths.h"
#include "core/Registry.h"
#include "core/Tables.h"
#include "core/Val.h"
#include "platform/api/ChartLibrary.h"
#include "platform/api/Dialogs.h"

namespace ombra {

Chart::Chart(ChartLibrary& library, Dialogs& dialogs, ErrorReporter& errors, Registry& registry, const std::string& productName,
             ChartState& state, ChartCat& cat, ChartChecks& checks, Display& display, ChartHost& host)
    : lib_(library),
      dialogs_(dialogs),
      errors_(errors),
      registry_(registry),
      productName_(productName),
      state_(state),
      cat_(cat),
      checks_(checks),
      display_(display),
      host_(host) {}

std::string Chart::CatalogueSubFolder() const {
    std::string cdv = WithTrailingSlash(state_.Root) + "ReadMe.CDV";
    return FileExists(cdv) ? Trim(ReadCDInfo(cdv)) : "";
}

bool Chart::IsInstalled(const std::string& number) const {
    std::string rel = ChartHeaderPath(number);
    return !rel.empty() && FileExists(WithTrailingSlash(state_.Root) + rel);
}

bool Chart::NewChart(const std::string& chartNumber) {
    bool opened = false;
    bool busy = false;
    errors_.Guard("NewChart", [&] {
        std::string rel = ChartHeaderPath(chartNumber);
        if (rel.empty()) return;
        std::string headerPath = WithTrailingSlash(state_.Root) + rel;
        cat_.SetSubFolder(CatalogueSubFolder());
        if (!FileExists(headerPath)) {
            dialogs_.MsgBox("Cannot find " + headerPath, mb::Exclamation, productName_);
            return;
        }
        host_.ChartBusy(true);
        busy = true;
        int64_t offset = cat_.FindChartPointer(state_.Root, chartNumber, false);
        if (offset == 0) return;
        ChartCatEntry entry;
        if (!cat_.ReadChartCatEntry(state_.Root, offset, entry, true)) return;

        ChartHeader h;
        h.FirstPlan = entry.FirstPlan;
        switch (checks_.DisplayChecks(headerPath, entry)) {
        case 0: return;
        case 1: h.OutOfDate = true; break;
        default: h.OutOfDate = false; break;
        }
        if (!ReadHeaderFile(headerPath, h, errors_)) return;
        if (!ReadPlanFiles(headerPath, h, lib_, errors_)) return;

        std::vector<std::string> notes;
        for (int p = 0; p <= std::max<int>(0, h.PlanCount); ++p) {
            auto text = ReadWholeFile(ChartFilePath(headerPath, PlanExtension('N', p)));
            if (!text || text->size() > (4u << 20)) continue;
            size_t nl = text->find('\n');
            notes.push_back(nl == std::string::npos ? "" : text->substr(nl + 1));
        }

        int16_t layout[5] = {h.PlanCount, h.LayoutA, h.LayoutB, h.LayoutC, h.LayoutD};
        if (lib_.OpenChart(headerPath, layout, h.Reference3, h.LibraryTag) != 0) return;

        for (int p = h.FirstPlan; p <= h.PlanCount && size_t(p) < h.Plans.size(); ++p) {
            const std::vector<LatLong>* outline = PlanOutlineOf(entry, p);
            auto& o = h.Plans[size_t(p)].Outline;
            o.assign(1, PlanOutlinePoint{});
            if (!outline) continue;
            for (const LatLong& pos : *outline) {
                PlanOutlinePoint pt;
                pt.Pos = pos;
                lib_.GetPixelPt(0, int16_t(p), pos, pt.Pixel);
                o.push_back(pt);
            }
        }
        h.PlanNames = entry.PlanNames;

        state_.HeaderPath = headerPath;
        state_.CurrentChartPath = ChartFilePath(headerPath, "LOR");
        state_.Header = std::move(h);
        state_.Catalogue = std::move(entry);
        state_.Notes = std::move(notes);
        state_.CurrentPlan = state_.Header.FirstPlan;
        display_.DisplayedPlan = -1;

        registry_.SaveSetting(Key::LastChartNumber, state_.Header.ChartNumber);
        display_.StartView();
        opened = true;
    });
    if (busy) host_.ChartBusy(false);
    if (opened) host_.ChartOpened();
    return opened;
}

void Chart::ZoomChart(bool out) {
    errors_.Guard(out ? "ZoomOutChart" : "ZoomInChart", [&] {
        if (!state_.IsOpen()) return;
        const ChartHeader& h = state_.Header;
        int16_t plan = state_.CurrentPlan;
        if (plan < 0 || size_t(plan) >= h.Plans.size()) return;
        std::string scaleText = h.Plans[size_t(plan)].Scale;
        bool found = false;
        std::string best;
        double bestDiff = 0;
        LatLong centre = display_.ViewCentre();
        if (IsNumeric(scaleText)) {
            double current = Val(scaleText);
            std::vector<std::string> names;
            cat_.ChartSelectFromLL(state_.Root, centre, names);
            std::string here = Trim(h.ChartNumber);
            for (const std::string& name : names) {
                std::string number = NameChartNumber(name);
                if (number == here || name == "None found" || !IsInstalled(number)) continue;
                double scale = NameScale(name);
                double diff = out ? scale - current : current - scale;
                if (diff > 0 && (!found || diff < bestDiff)) {
                    found = true;
                    bestDiff = diff;
                    best = number;
                }
            }
        }
        if (!found) {
            dialogs_.MsgBox("There are no charts of a suitable scale curently installed.", mb::Information, "Chart Scale Out");
            return;
        }
        state_.ViewCentre = centre;
        if (NewChart(best)) display_.CentreOnPosition(centre);
    });
}

void Chart::ZoomOutChart() { ZoomChart(true); }
void Chart::ZoomInChart() { ZoomChart(false); }

bool Chart::OpenKeepingView(const std::string& chartNumber) {
    bool wasOpen = state_.IsOpen();
    LatLong centre = wasOpen ? display_.ViewCentre() : LatLong{};
    bool loRes = wasOpen && display_.ShowingLoRes();
    if (!NewChart(chartNumber)) return false;
    if (!loRes) display_.ShowHiRes();
    if (wasOpen) display_.CentreOnPosition(centre);  // off the new chart: its starting view
    return true;
}

bool Chart::OpenChartAt(double latSeconds, double lonSeconds) {
    bool ok = false;
    errors_.Guard("OpenChartAt", [&] {
        LatLong pos{lonSeconds, latSeconds};
        cat_.SetSubFolder(CatalogueSubFolder());
        std::vector<std::string> names;
        cat_.ChartSelectFromLL(state_.Root, pos, names);
        std::string best, first;
        double bestScale = 0;
        for (const std::string& name : names) {
            if (name == "None found") continue;
            std::string number = NameChartNumber(name);
            if (first.empty()) first = number;
            if (!IsInstalled(number)) continue;
            double scale = NameScale(name);
            if (best.empty() || scale < bestScale) {
                best = number;
                bestScale = scale;
            }
        }
        if (best.empty()) best = first;
        if (best.empty()) return;
        // Still the chart in view: only move there, keeping raster and zoom.
        bool same = state_.IsOpen() && Trim(state_.Header.ChartNumber) == Trim(best);
        if (same || OpenKeepingView(best)) {
            display_.CentreOnPosition(pos);
            ok = true;
        }
    });
    return ok;
}

void Chart::CloseChart() {
    lib_.CloseChart();
    state_.CurrentChartPath.clear();
    state_.HeaderPath.clear();
    state_.Header = ChartHeader{};
    display_.ClearView();
}

void Chart::QuickCheck() {
    if (!state_.IsOpen()) return;
    checks_.QuickCheck(cat_, state_.Root, state_.HeaderPath, state_.Header.ChartNumber);
}

WGS84Shift Chart::GetWGS84(int16_t plan) const {
    WGS84Shift s;
    errors_.Guard("GetWGS84", [&] {
        if (!state_.IsOpen() || plan < 0 || size_t(plan) >= state_.Header.Plans.size()) return;
        const ChartPlan& p = state_.Header.Plans[size_t(plan)];
        s.HasShift = p.HasShift;
        s.ShiftLat = p.ShiftLat;
        s.ShiftLong = p.ShiftLong;
        s.ShiftSourceLat = p.ShiftSourceLat;
        s.ShiftSourceLong = p.ShiftSourceLong;
    });
    return s;
}

ChartDetails Chart::Details(int16_t plan) const {
    ChartDetails d;
    if (!state_.IsOpen()) return d;
    const ChartHeader& h = state_.Header;
    if (plan < 0 || size_t(plan) >= h.Plans.size()) plan = std::max<int16_t>(0, state_.CurrentPlan);
    if (size_t(plan) >= h.Plans.size()) return d;
    const ChartPlan& p = h.Plans[size_t(plan)];
    d.Plan = plan;
    d.PlanCount = h.PlanCount;
    d.ChartNumber = Trim(h.ChartNumber);
    d.Title = Trim(h.Title);
    d.PlanTitle = Trim(p.Title);
    d.Country = CountryText(Trim(h.Country));
    d.EditionDate = EditionDateText(h.EditionDate);
    d.Scale = ScaleText(p);
    d.Datum = DatumText(Trim(p.HorizDatum));
    d.DepthUnits = DepthUnitText(Trim(p.DepthUnits));
    d.DepthDatum = TidalLevelText(FixedText(p.DepthDatum, 2));
    d.ShiftLat = ShiftLatText(p);
    d.ShiftLong = ShiftLongText(p);
    d.ShiftSource = p.HasShift ? "ARCS Dataset"
                               : "No shift data available, satellite positions cannot be accurately related to this chart.";
    d.SpecialWarnings = h.SpecialWarnings;
    return d;
}

std::string Chart::NotesText() const {
    std::string s;
    for (size_t i = 0; i < state_.Notes.size(); ++i) {
        if (Trim(state_.Notes[i]).empty()) continue;
        if (!s.empty()) s += "\r\n";
        s += (i == 0 ? std::string("Chart notes") : "Plan " + std::to_string(i) + " notes") + "\r\n" + state_.Notes[i];
    }
    return s;
}

}  // namespace ombra
