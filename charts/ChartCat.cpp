#include "charts/ChartCat.h"

#include <sys/stat.h>

#include <cmath>
#include <cstdio>
#include <fstream>
#include <set>

#include "charts/ChartHeader.h"
#include "core/ErrorReport.h"
#include "core/Format.h"
#include "core/Paths.h"
#include "core/Rounding.h"
#include "core/Val.h"
#include "platform/api/Dialogs.h"

namespace ombra {

namespace {

constexpr size_t kMaxLine = 1 << 20;
constexpr size_t kMaxCells = 20000;
constexpr size_t kMaxPlanCells = 100;  // plan numbers have two digits

// Reads `count` lines from byte `offset` (from 0) of a file; false when the
// file is missing or the offset lies outside it. Lines end at LF (a CR
// before it is dropped) and are cut at kMaxLine.
bool ReadLinesAt(const std::string& path, int64_t offset, int count, std::vector<std::string>& lines) {
    lines.clear();
    std::string p = ResolvePath(path);
    std::ifstream f(p, std::ios::binary);
    if (!f) return false;
    f.seekg(0, std::ios::end);
    int64_t size = int64_t(f.tellg());
    if (offset < 0 || offset >= size) return false;
    f.seekg(offset);
    for (int i = 0; i < count; ++i) {
        std::string l;
        char c;
        bool any = false;
        while (f.get(c)) {
            any = true;
            if (c == '\n') break;
            if (l.size() < kMaxLine) l.push_back(c);
        }
        if (!l.empty() && l.back() == '\r') l.pop_back();
        if (!any && i > 0) break;
        lines.push_back(l);
    }
    return true;
}

bool InRing(const LatLong& p, const std::vector<LatLong>& ring) {
    if (ring.size() < 3) return false;
    auto unwrap = [&](double lon) {
        while (lon - p.Long > 648000.0) lon -= 1296000.0;
        while (lon - p.Long < -648000.0) lon += 1296000.0;
        return lon;
    };
    bool in = false;
    for (size_t i = 0, j = ring.size() - 1; i < ring.size(); j = i++) {
        double xi = unwrap(ring[i].Long), yi = ring[i].Lat, xj = unwrap(ring[j].Long), yj = ring[j].Lat;
        if ((yi > p.Lat) != (yj > p.Lat) && p.Long < (xj - xi) * (p.Lat - yi) / (yj - yi) + xi) in = !in;
    }
    return in;
}

double CellValue(std::string_view cell, size_t degDigits) {
    std::string deg = Columns(cell, 2, 1 + degDigits);
    std::string min = Columns(cell, 2 + degDigits, 3 + degDigits);
    std::string thou = Columns(cell, 4 + degDigits, 6 + degDigits);
    double v = Val(deg) * 3600.0 + (Val(min) + Val(thou) / 1000.0) * 60.0;
    return !cell.empty() && cell[0] == '-' ? -v : v;
}

std::string CellText(double seconds, int degDigits) {
    bool neg = seconds < 0;
    double thousandths = std::round(std::fabs(seconds) / 60.0 * 1000.0);  // of a minute
    if (!std::isfinite(thousandths)) thousandths = 0;
    long long t = (long long)thousandths;
    long long deg = t / 60000, rest = t % 60000;
    long long min = rest / 1000, th = rest % 1000;
    char buf[32];
    std::snprintf(buf, sizeof buf, "%c%0*lld%02lld%03lld", neg ? '-' : '+', degDigits, deg, min, th);
    return std::string(buf).substr(0, size_t(1 + degDigits + 5));
}

}  // namespace

double ParseLatCell(std::string_view c) { return CellValue(c, 2); }
double ParseLonCell(std::string_view c) { return CellValue(c, 3); }
std::string FormatLatCell(double s) { return CellText(s, 2); }
std::string FormatLonCell(double s) { return CellText(s, 3); }

std::vector<LatLong> ParseOutlineLine(std::string_view line) {
    std::vector<LatLong> out;
    size_t cells = size_t(RoundEven(double(line.size()) / 17.0));
    cells = std::min(cells, kMaxCells);
    for (size_t i = 0; i < cells; ++i) {
        std::string cell = Columns(line, i * 17 + 1, i * 17 + 17);
        out.push_back({ParseLonCell(Columns(cell, 9, 17)), ParseLatCell(Columns(cell, 1, 8))});
    }
    return out;
}

std::string FormatOutlineLine(const std::vector<LatLong>& outline) {
    std::string s;
    for (const LatLong& p : outline) s += FormatLatCell(p.Lat) + FormatLonCell(p.Long);
    return s;
}

namespace {

// A text field of a catalogue line: columns first to last (from 1), kept
// blank-padded to `width` characters.
template <class Record>
struct TextColumns {
    std::string Record::*field;
    size_t first, last, width;
};

template <class Record, size_t N>
void ReadTextColumns(std::string_view line, Record& r, const TextColumns<Record> (&columns)[N]) {
    for (const TextColumns<Record>& c : columns) r.*c.field = FixedText(Columns(line, c.first, c.last), c.width);
}

const TextColumns<ChartCatEntry> kChartLine1[] = {
    {&ChartCatEntry::Country, 1, 2, 2},           {&ChartCatEntry::ChartNumber, 3, 10, 8},
    {&ChartCatEntry::HeaderIssueDate, 11, 18, 8}, {&ChartCatEntry::EditionDate, 19, 26, 8},
    {&ChartCatEntry::NotesIssueDate, 27, 34, 8},  {&ChartCatEntry::IssueDate2, 35, 42, 8},
    {&ChartCatEntry::Code, 43, 47, 5},            {&ChartCatEntry::Title, 48, 147, 100},
    {&ChartCatEntry::LatestNM, 148, 156, 9},      {&ChartCatEntry::Scale, 159, 168, 10},
    {&ChartCatEntry::Value2, 169, 176, 10},       {&ChartCatEntry::Date3, 178, 185, 8},
    {&ChartCatEntry::Date4, 186, 193, 8},
};

const TextColumns<ChartCatPlan> kPlanLine1[] = {
    {&ChartCatPlan::PlanLabel, 1, 2, 2}, {&ChartCatPlan::ChartNumber, 3, 10, 8}, {&ChartCatPlan::IssueDate, 11, 18, 8},
    {&ChartCatPlan::Scale, 21, 28, 10},  {&ChartCatPlan::Title, 29, 128, 100},
};

}  // namespace

void ParseChartCatLine1(std::string_view l, ChartCatEntry& e) {
    ReadTextColumns(l, e, kChartLine1);
    e.PlanCount = Int16Of(Columns(l, 157, 158));
    std::string flag = Columns(l, 177, 177);
    e.Flag = IsNumeric(flag) ? Int16Of(flag) : 0;
}

void ParsePlanCatLine1(std::string_view l, ChartCatPlan& p) {
    ReadTextColumns(l, p, kPlanLine1);
    p.PlanNumber = Int16Of(Columns(l, 19, 20));
}

std::vector<int64_t> ParsePlanPointers(std::string_view line3) {
    std::vector<int64_t> out;
    size_t cells = std::min(size_t(RoundEven(double(line3.size()) / 9.0)), kMaxPlanCells);
    for (size_t i = 0; i < cells; ++i) {
        double v = Val(Columns(line3, i * 9 + 3, i * 9 + 9));
        out.push_back(v >= 0 && v < 1e15 ? int64_t(v) : -1);
    }
    return out;
}

std::vector<std::string> ParsePlanNames(std::string_view line4) {
    std::vector<std::string> out;
    size_t cells = std::min(size_t(RoundEven(double(line4.size()) / 9.0)), kMaxPlanCells);
    for (size_t i = 0; i < cells; ++i) out.push_back(FixedText(Columns(line4, i * 9 + 1, i * 9 + 9), 9));
    return out;
}

const std::vector<LatLong>* PlanOutlineOf(const ChartCatEntry& e, int plan) {
    if (plan == 0) return &e.Outline;
    for (const ChartCatPlan& p : e.Plans)
        if (p.PlanNumber == plan) return &p.Outline;
    if (plan >= 1 && size_t(plan) <= e.Plans.size()) return &e.Plans[size_t(plan) - 1].Outline;
    return nullptr;
}

GridCell GridCellOf(const LatLong& pos) {
    GridCell g;
    double lat = pos.Lat / 3600.0, lon = pos.Long / 3600.0;
    g.North = !(lat < 0);
    g.East = !(lon < 0);
    g.LatDegrees = int(std::min(std::fabs(std::trunc(lat)), 90.0));
    g.LonDegrees = int(std::min(std::fabs(std::trunc(lon)), 180.0));
    g.Quadrant = std::string(g.North ? "N" : "S") + (g.East ? "E" : "W");
    g.FileName = Format(g.LatDegrees, "00") + (g.North ? "N" : "S") + Format(g.LonDegrees, "000") + (g.East ? "E" : "W") + ".PTR";
    return g;
}

// ---------------------------------------------------------------------

std::string ChartCat::CatalogueFolder(const std::string& root) const {
    std::string f = WithTrailingSlash(root) + "ChartCat\\";
    if (!Trim(sub_).empty()) f += Trim(sub_) + "\\";
    return f;
}

int64_t ChartCat::FindChartPointer(const std::string& root, const std::string& chartNumber, bool reportMissing) {
    int64_t result = 0;
    errors_.Guard("FindChartPointer", [&] {
        std::string number = Trim(chartNumber);
        std::string ptr = CatalogueFolder(root) + "Chart.PTR";
        if (!FileExists(ptr)) {
            if (reportMissing) {
                ChartErrors.push_back("There is no catalogue information installed on your system!");
                if (host_) host_->ChartErrorsChanged();
            } else {
                dialogs_.MsgBox("There is no catalogue information installed on your system.", mb::Exclamation, productName_);
            }
            return;
        }
        std::ifstream f(ResolvePath(ptr), std::ios::binary);
        std::string line;
        std::string want = FixedText(number, 8);
        while (std::getline(f, line)) {
            if (!line.empty() && line.back() == '\r') line.pop_back();
            if (line.size() > kMaxLine) continue;
            if (FixedText(Columns(line, 1, 8), 8) == want) {
                std::string last = line.size() >= 8 ? line.substr(line.size() - 8) : line;
                double v = Val(last);
                result = v >= 0 && v < 1e15 ? int64_t(v) + 1 : 0;
                return;
            }
        }
        if (reportMissing) {
            ChartErrors.push_back("Chart " + number + " is not in your chart catalogue.");
            if (host_) host_->ChartErrorsChanged();
        } else {
            dialogs_.MsgBox("There is no record of chart " + number + " in the latest chart\ncatalogue installed on your hard drive.",
                            mb::Exclamation, productName_);
        }
    });
    return result;
}

bool ChartCat::ReadChartCatEntry(const std::string& root, int64_t offset, ChartCatEntry& entry, bool wantOutlines) {
    bool ok = false;
    errors_.Guard("ReadChartCatEntry", [&] {
        std::string folder = CatalogueFolder(root);
        std::string cat = folder + "Chart.CAT";
        if (!FileExists(cat)) {
            dialogs_.MsgBox("There is no catalogue information installed on your hard drive.", mb::Exclamation, productName_);
            return;
        }
        std::vector<std::string> lines;
        if (offset < 1 || !ReadLinesAt(cat, offset - 1, 4, lines)) RaiseFault(faults::InputPastEnd);
        lines.resize(4);
        ChartCatEntry e;
        ParseChartCatLine1(lines[0], e);
        e.FirstPlan = lines[1].size() == 1 ? 1 : 0;
        if (wantOutlines && e.FirstPlan == 0) e.Outline = ParseOutlineLine(lines[1]);
        std::string planCat = folder + "Plan.CAT";
        for (int64_t p : ParsePlanPointers(lines[2])) {
            std::vector<std::string> pl;
            if (p < 0 || !ReadLinesAt(planCat, p, 2, pl)) continue;
            pl.resize(2);
            ChartCatPlan cp;
            ParsePlanCatLine1(pl[0], cp);
            if (wantOutlines) cp.Outline = ParseOutlineLine(pl[1]);
            e.Plans.push_back(std::move(cp));
        }
        e.PlanNames = ParsePlanNames(lines[3]);
        entry = std::move(e);
        ok = true;
    });
    return ok;
}

std::string ChartCat::GetLatestNM(const std::string& root, const std::string& chartNumber) {
    int64_t at = FindChartPointer(root, chartNumber, true);
    if (at == 0) return "";
    ChartCatEntry e;
    if (!ReadChartCatEntry(root, at, e, false)) return "";
    return e.LatestNM;
}

void ChartCat::ChartSelectFromLL(const std::string& root, const LatLong& position, std::vector<std::string>& names) {
    names.clear();
    errors_.Guard("ChartSelectFromLL", [&] {
        GridCell cell = GridCellOf(position);
        std::string grid = CatalogueFolder(root) + cell.Quadrant + "\\" + cell.FileName;
        std::ifstream f(ResolvePath(grid), std::ios::binary);
        std::string line;
        std::set<int64_t> seen;  // a chart is read once, however often it is listed
        int guard = 0;
        while (f && std::getline(f, line) && ++guard < 100000) {
            if (!line.empty() && line.back() == '\r') line.pop_back();
            if (line.empty() || (line[0] != '1' && line[0] != '2')) continue;
            double off = Val(Columns(line, 10, 17));
            if (!(off >= 0 && off < 1e15) || !seen.insert(int64_t(off)).second) continue;
            ChartCatEntry e;
            if (!ReadChartCatEntry(root, int64_t(off) + 1, e, true)) continue;
            if (FixedText(Columns(line, 2, 9), 8) != e.ChartNumber) continue;
            bool holds = line[0] == '1' || InRing(position, e.Outline);
            for (size_t i = 0; i < e.Plans.size() && !holds; ++i) holds = InRing(position, e.Plans[i].Outline);
            if (holds) names.push_back(FixedText(Trim(e.ChartNumber), 8) + " " + Trim(e.Title) + ":" + Trim(e.Scale));
        }
    });
    if (names.empty()) names.push_back("None found");
}

bool ChartCat::GetChartCatChartManInfo(const std::string& root, const std::string& chartNumber, ChartManInfo& info) {
    bool ok = false;
    errors_.Guard("GetChartCatChartManInfo", [&] {
        int64_t at = FindChartPointer(root, chartNumber, true);
        ChartCatEntry e;
        if (at == 0 || !ReadChartCatEntry(root, at, e, false)) return;
        info.ChartNumber = Trim(e.ChartNumber);
        info.Title = Trim(e.Title);
        info.Scale = Trim(e.Scale);
        info.EditionDate = e.EditionDate;
        info.LatestNM = e.LatestNM;
        info.PlanCount = e.PlanCount;
        ok = true;
    });
    return ok;
}

std::string ReadCDInfo(const std::string& path) {
    std::ifstream f(ResolvePath(path), std::ios::binary);
    std::string line;
    if (!f || !std::getline(f, line)) return "";
    if (!line.empty() && line.back() == '\r') line.pop_back();
    return line.size() >= 13 ? line.substr(12, 4096) : "";
}

std::string NameChartNumber(const std::string& name) { return Trim(name.substr(0, std::min<size_t>(8, name.size()))); }

double NameScale(const std::string& name) {
    size_t c = name.rfind(':');
    if (c == std::string::npos) return 999999999.0;
    return Val(name.substr(c + 1));
}

}  // namespace ombra
