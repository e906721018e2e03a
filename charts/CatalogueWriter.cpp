#include "charts/CatalogueWriter.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>

#include "charts/ChartHeader.h"
#include "core/Format.h"
#include "core/Paths.h"
#include "core/Val.h"

namespace ombra {

namespace {

constexpr long kMaxCellsPerChart = 20000;

std::string Num(long long v, int width) {
    char b[32];
    std::snprintf(b, sizeof b, "%0*lld", width, v);
    return b;
}

bool Save(const std::string& path, const std::string& bytes, std::string& error) {
    std::string why;
    if (SaveFileAtomic(path, bytes, &why)) return true;
    error = "Cannot write " + path + ": " + why;
    return false;
}

std::string ReadAll(const std::string& path) {
    auto t = ReadWholeFile(path);
    return t ? *t : std::string();
}

bool InRing(double x, double y, const std::vector<std::pair<double, double>>& ring) {
    bool in = false;
    for (size_t i = 0, j = ring.size() - 1; i < ring.size(); j = i++) {
        double xi = ring[i].first, yi = ring[i].second, xj = ring[j].first, yj = ring[j].second;
        if ((yi > y) != (yj > y) && x < (xj - xi) * (y - yi) / (yj - yi) + xi) in = !in;
    }
    return in;
}

bool SegmentsMeet(double ax, double ay, double bx, double by, double cx, double cy, double dx, double dy) {
    auto orient = [](double px, double py, double qx, double qy, double rx, double ry) {
        double v = (qx - px) * (ry - py) - (qy - py) * (rx - px);
        return v > 0 ? 1 : v < 0 ? -1 : 0;
    };
    int o1 = orient(ax, ay, bx, by, cx, cy), o2 = orient(ax, ay, bx, by, dx, dy);
    int o3 = orient(cx, cy, dx, dy, ax, ay), o4 = orient(cx, cy, dx, dy, bx, by);
    return o1 != o2 && o3 != o4;
}

// Whether the ring (degrees, x = lon) covers the whole rectangle.
bool Covers(const std::vector<std::pair<double, double>>& ring, double x0, double y0, double x1, double y1) {
    if (ring.size() < 3) return false;
    double cx[4] = {x0, x1, x1, x0}, cy[4] = {y0, y0, y1, y1};
    for (int k = 0; k < 4; ++k)
        if (!InRing(cx[k], cy[k], ring)) return false;
    for (size_t i = 0, j = ring.size() - 1; i < ring.size(); j = i++) {
        for (int k = 0; k < 4; ++k)
            if (SegmentsMeet(ring[j].first, ring[j].second, ring[i].first, ring[i].second, cx[k], cy[k], cx[(k + 1) % 4],
                             cy[(k + 1) % 4]))
                return false;
        if (ring[i].first > x0 && ring[i].first < x1 && ring[i].second > y0 && ring[i].second < y1) return false;
    }
    return true;
}

}  // namespace

std::string FormatChartCatRecord(const ChartCatEntry& e, const std::vector<int64_t>& planOffsets) {
    std::string scale = Trim(e.Scale);
    std::string l1 = FixedText(e.Country, 2) + FixedText(Trim(e.ChartNumber), 8) + FixedText(e.HeaderIssueDate, 8) +
                     FixedText(e.EditionDate, 8) + FixedText(e.NotesIssueDate, 8) + FixedText(e.IssueDate2, 8) +
                     FixedText(e.Code, 5) + FixedText(Trim(e.Title), 100) + FixedText(e.LatestNM, 9) +
                     Num(std::clamp<int>(e.PlanCount, 0, 99), 2) + FixedText(scale, 10) + FixedText(e.Value2, 8) +
                     Num(std::clamp<int>(e.Flag, 0, 9), 1) + FixedText(e.Date3, 8) + FixedText(e.Date4, 8);
    std::string l2 = e.FirstPlan != 0 ? "-" : FormatOutlineLine(e.Outline);
    std::string l3;
    for (size_t i = 0; i < planOffsets.size(); ++i) {
        int number = i < e.Plans.size() ? e.Plans[i].PlanNumber : int(i) + 1;
        l3 += Num(std::clamp(number, 0, 99), 2) + Num(std::clamp<long long>(planOffsets[i], 0, 9999999), 7);
    }
    std::string l4;
    for (const std::string& n : e.PlanNames) l4 += FixedText(n, 9);
    return l1 + "\r\n" + l2 + "\r\n" + l3 + "\r\n" + l4 + "\r\n";
}

std::string FormatPlanCatRecord(const ChartCatPlan& p) {
    std::string l1 = FixedText(p.PlanLabel, 2) + FixedText(Trim(p.ChartNumber), 8) + FixedText(p.IssueDate, 8) +
                     Num(std::clamp<int>(p.PlanNumber, 0, 99), 2) + FixedText(Trim(p.Scale), 8) + FixedText(Trim(p.Title), 100);
    return l1 + "\r\n" + FormatOutlineLine(p.Outline) + "\r\n";
}

std::vector<CatalogueLine> ReadChartPointers(const std::string& folder) {
    std::vector<CatalogueLine> out;
    std::ifstream f(ResolvePath(folder + "Chart.PTR"), std::ios::binary);
    std::string line;
    while (f && std::getline(f, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (line.size() < 9 || line.size() > 4096) continue;
        double v = Val(line.substr(line.size() - 8));
        if (!(v >= 0 && v < 1e15)) continue;
        out.push_back({Trim(line.substr(0, 8)), int64_t(v)});
    }
    return out;
}

bool AddChartToCatalogue(const std::string& folder, const ChartCatEntry& entry, std::string& error) {
    if (!MakeFolder(folder)) {
        error = "Cannot create the catalogue folder " + folder;
        return false;
    }
    std::string planCat = ReadAll(folder + "Plan.CAT");
    std::string chartCat = ReadAll(folder + "Chart.CAT");
    std::vector<int64_t> planOffsets;
    for (const ChartCatPlan& p : entry.Plans) {
        planOffsets.push_back(int64_t(planCat.size()));
        planCat += FormatPlanCatRecord(p);
    }
    int64_t offset = int64_t(chartCat.size());
    chartCat += FormatChartCatRecord(entry, planOffsets);
    std::string number = Trim(entry.ChartNumber);
    std::string ptr;
    for (const CatalogueLine& l : ReadChartPointers(folder))
        if (l.ChartNumber != number) ptr += FixedText(l.ChartNumber, 8) + Num(l.Offset, 8) + "\r\n";
    ptr += FixedText(number, 8) + Num(offset, 8) + "\r\n";
    return Save(folder + "Plan.CAT", planCat, error) && Save(folder + "Chart.CAT", chartCat, error) &&
           Save(folder + "Chart.PTR", ptr, error);
}

bool RemoveChartFromCatalogue(const std::string& folder, const std::string& chartNumber, ChartCat& cat, const std::string& root,
                              std::string& error) {
    std::string number = Trim(chartNumber);
    std::vector<ChartCatEntry> keep;
    bool found = false;
    for (const CatalogueLine& l : ReadChartPointers(folder)) {
        if (l.ChartNumber == number) {
            found = true;
            continue;
        }
        ChartCatEntry e;
        if (cat.ReadChartCatEntry(root, l.Offset + 1, e, true)) keep.push_back(std::move(e));
    }
    if (!found) {
        error = "Chart " + number + " is not in your chart catalogue.";
        return false;
    }
    std::string planCat, chartCat, ptr;
    for (const ChartCatEntry& e : keep) {
        std::vector<int64_t> planOffsets;
        for (const ChartCatPlan& p : e.Plans) {
            planOffsets.push_back(int64_t(planCat.size()));
            planCat += FormatPlanCatRecord(p);
        }
        ptr += FixedText(Trim(e.ChartNumber), 8) + Num(int64_t(chartCat.size()), 8) + "\r\n";
        chartCat += FormatChartCatRecord(e, planOffsets);
    }
    if (!Save(folder + "Plan.CAT", planCat, error) || !Save(folder + "Chart.CAT", chartCat, error) ||
        !Save(folder + "Chart.PTR", ptr, error))
        return false;
    return RebuildGridFiles(folder, cat, root, error);
}

bool RebuildGridFiles(const std::string& folder, ChartCat& cat, const std::string& root, std::string& error) {
    std::map<std::string, std::string> files;  // "NW\50N012W.PTR" -> text
    for (const CatalogueLine& l : ReadChartPointers(folder)) {
        ChartCatEntry e;
        if (!cat.ReadChartCatEntry(root, l.Offset + 1, e, true)) continue;
        std::vector<const std::vector<LatLong>*> rings{&e.Outline};
        for (const ChartCatPlan& p : e.Plans) rings.push_back(&p.Outline);
        // Degrees, longitudes kept continuous from the first point.
        double ref = 0;
        bool haveRef = false;
        double minX = 1e9, maxX = -1e9, minY = 1e9, maxY = -1e9;
        std::vector<std::vector<std::pair<double, double>>> deg;
        for (auto* r : rings) {
            std::vector<std::pair<double, double>> d;
            for (const LatLong& p : *r) {
                double lon = p.Long / 3600.0, lat = p.Lat / 3600.0;
                if (!haveRef) {
                    ref = lon;
                    haveRef = true;
                }
                while (lon - ref > 180) lon -= 360;
                while (lon - ref < -180) lon += 360;
                d.emplace_back(lon, lat);
                minX = std::min(minX, lon);
                maxX = std::max(maxX, lon);
                minY = std::min(minY, lat);
                maxY = std::max(maxY, lat);
            }
            deg.push_back(std::move(d));
        }
        if (!haveRef) continue;
        long x0 = long(std::floor(minX)), x1 = long(std::floor(maxX)), y0 = long(std::floor(std::max(minY, -90.0))),
             y1 = long(std::floor(std::min(maxY, 89.999)));
        if ((x1 - x0 + 1) * (y1 - y0 + 1) > kMaxCellsPerChart) continue;
        for (long y = y0; y <= y1; ++y)
            for (long x = x0; x <= x1; ++x) {
                double sx = x + 0.5;
                while (sx > 180) sx -= 360;
                while (sx < -180) sx += 360;
                GridCell c = GridCellOf(LatLong{sx * 3600.0, (y + 0.5) * 3600.0});
                bool whole = false;
                for (auto& d : deg) whole = whole || Covers(d, double(x), double(y), double(x + 1), double(y + 1));
                std::string key = c.Quadrant + "\\" + c.FileName;
                std::string& text = files[key];
                if (text.empty()) text = "0" + c.FileName.substr(0, c.FileName.size() - 4) + " Ombra chart grid\r\n";
                text += std::string(whole ? "1" : "2") + FixedText(Trim(e.ChartNumber), 8) + Num(l.Offset, 8) + "\r\n";
            }
    }
    for (const char* q : {"NE", "NW", "SE", "SW"}) {
        std::string qf = folder + q + "\\";
        if (!MakeFolder(qf)) {
            error = "Cannot create the grid folder " + qf;
            return false;
        }
        std::error_code ec;
        for (auto& ent : std::filesystem::directory_iterator(ResolvePath(qf), ec)) {
            std::string name = ent.path().filename().string();
            if (UCase(name).size() > 4 && UCase(name).substr(name.size() - 4) == ".PTR" && !files.count(std::string(q) + "\\" + name))
                std::filesystem::remove(ent.path(), ec);
        }
    }
    for (auto& [key, text] : files)
        if (!Save(folder + key, text, error)) return false;
    return true;
}

}  // namespace ombra
