#include "tides/TideDisplay.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "core/Format.h"
#include "core/Paths.h"
#include "core/Registry.h"
#include "platform/tidestream/TcdImport.h"
#include "platform/tidestream/TideRegion.h"

namespace ombra {

namespace fs = std::filesystem;

namespace {

constexpr double kDegToRad = 0.017453292519944444;
constexpr const char* kInstallProc = "Install TideRegion";

std::string Upper(std::string s) {
    for (char& c : s) c = char(std::toupper(static_cast<unsigned char>(c)));
    return s;
}

bool EndsWithNoCase(const std::string& name, const std::string& ext) {
    return name.size() > ext.size() && Upper(name.substr(name.size() - ext.size())) == Upper(ext);
}

// The regular files of a folder whose names end in `ext` (any case), sorted.
std::vector<fs::path> FilesEndingIn(const std::string& folder, const std::string& ext) {
    std::vector<fs::path> out;
    std::error_code ec;
    for (fs::directory_iterator it(folder, ec), end; !ec && it != end; it.increment(ec)) {
        std::error_code fec;
        if (it->is_regular_file(fec) && EndsWithNoCase(it->path().filename().string(), ext)) out.push_back(it->path());
    }
    std::sort(out.begin(), out.end());
    return out;
}

// Copies a file through a temporary beside the target, so that a region is
// never left half-written.
bool CopyAtomically(const fs::path& from, const fs::path& to) {
    std::error_code ec;
    fs::path tmp = to;
    tmp += ".part";
    fs::copy_file(from, tmp, fs::copy_options::overwrite_existing, ec);
    if (!ec) fs::rename(tmp, to, ec);
    if (ec) fs::remove(tmp, ec);
    return !ec;
}

int Digits(const std::string& s, size_t& i, int maxDigits) {
    int v = 0, n = 0;
    while (i < s.size() && n < maxDigits && std::isdigit(static_cast<unsigned char>(s[i]))) {
        v = v * 10 + (s[i] - '0');
        ++i;
        ++n;
    }
    return n == 0 ? -1 : v;
}

std::string Trim(const std::string& s) {
    size_t a = s.find_first_not_of(" \t"), b = s.find_last_not_of(" \t");
    return a == std::string::npos ? std::string() : s.substr(a, b - a + 1);
}

}  // namespace

bool ParseTideDate(const std::string& text, double& serialDay) {
    const std::string s = Trim(text);
    size_t i = 0;
    const int d = Digits(s, i, 2);
    if (d < 0 || i >= s.size() || (s[i] != '/' && s[i] != '-' && s[i] != '.')) return false;
    const char sep = s[i++];
    const int m = Digits(s, i, 2);
    if (m < 0 || i >= s.size() || s[i] != sep) return false;
    ++i;
    const size_t yStart = i;
    const int y = Digits(s, i, 4);
    if (y < 0 || i != s.size() || i - yStart != 4) return false;
    if (!IsValidDate(y, m, d)) return false;
    DateTime t;
    t.year = y;
    t.month = m;
    t.day = d;
    serialDay = t.Serial();
    return true;
}

bool ParseTideClock(const std::string& text, double& dayFraction) {
    const std::string s = Trim(text);
    size_t i = 0;
    const int h = Digits(s, i, 2);
    if (h < 0 || i >= s.size() || s[i] != ':') return false;
    ++i;
    const size_t mStart = i;
    const int m = Digits(s, i, 2);
    if (m < 0 || i - mStart != 2) return false;
    int sec = 0;
    if (i < s.size()) {
        if (s[i] != ':') return false;
        ++i;
        const size_t sStart = i;
        sec = Digits(s, i, 2);
        if (sec < 0 || i - sStart != 2 || i != s.size()) return false;
    }
    if (h > 23 || m > 59 || sec > 59) return false;
    dayFraction = (h * 3600.0 + m * 60.0 + sec) / 86400.0;
    return true;
}

// ---- The stream grid ----------------------------------------------------------

void TideDisplay::ClearTideGrid() {
    cells_.clear();
    columns_ = rows_ = 0;
    gridKey_.clear();
}

void TideDisplay::RequestGrid(double when) {
    tides_.TideTime = when;
    requested_ = when;
    pending_ = true;
}

void TideDisplay::DrawLayer(Canvas& canvas) {
    if (pending_) {
        pending_ = false;
        // The console's vessel cycle sets the stream time to now each
        // second; the grid is for the time the navigator asked for.
        tides_.TideTime = requested_;
        CalcTideGrid(canvas);
    } else {
        DrawTideGrid(canvas);
    }
}

void TideDisplay::CalcTideGrid(Canvas& canvas) {
    ClearTideGrid();
    errors_.Guard("CalcTideGrid", [&] {
        const TideInstant t = SplitTideTime(tides_.TideTime);
        gridTime_ = tides_.TideTime;
        gridKey_ = host_.ViewKey();
        const int w = canvas.Width(), h = canvas.Height();
        columns_ = w >= 20 ? (w - 20) / kTideGridPitch + 2 : 0;
        rows_ = h >= 20 ? (h - 20) / kTideGridPitch + 2 : 0;
        TideStream& model = tides_.stream();
        int16_t selected = 0;
        int column = 0;
        for (int x = 0; x <= w - 20; x += kTideGridPitch) {
            ++column;
            int row = 0;
            for (int y = 0; y <= h - 20; y += kTideGridPitch) {
                ++row;
                const ChartPoint at{x + kTideGridPitch / 2, y + kTideGridPitch / 2};
                TideGridCell cell;
                if (!host_.ScreenToTidePoint(at.x, at.y, cell.pos)) continue;
                const int16_t region = tides_.FindTideRegion(cell.pos);
                if (region != selected) {
                    tides_.SelectRegion(region);
                    selected = region;
                }
                if (region == 0) continue;
                if (!host_.IsPointSea(cell.pos)) continue;
                int32_t points = 1, lat = ToTideUnits(cell.pos.Lat), lon = ToTideUnits(cell.pos.Long);
                int32_t out1 = 0, out2 = 0, out3 = 0, out4 = 0, out5 = 0;
                const int32_t result = model.WrapperDoPrediction(points, lat, lon, t.day, t.month, t.year, t.hour,
                                                                 t.minute, t.second, 0, out1, out2, out3, out4, out5);
                if (result >= 1 || out4 <= 0) continue;
                cell.column = column;
                cell.row = row;
                cell.chartPixel = host_.ScreenToChart(at);
                cell.screen = at;
                cell.screenOfChart = host_.ChartToScreen(cell.chartPixel);
                cell.Set = float(out5 / 10.0);
                cell.Drift = float(out4 * kTideMmsToKnots);
                cells_.push_back(cell);
                DrawTideArrow(canvas, cell, at);
            }
        }
    });
}

void TideDisplay::DrawTideGrid(Canvas& canvas) {
    if (cells_.empty()) return;
    if (host_.ViewKey() != gridKey_) {
        ClearTideGrid();
        return;
    }
    // Each arrow moves as far as its chart pixel has moved on the canvas, so
    // an unmoved chart draws every arrow where it was first drawn.
    for (const TideGridCell& cell : cells_) {
        const ChartPoint now = host_.ChartToScreen(cell.chartPixel);
        DrawTideArrow(canvas, cell, {cell.screen.x + now.x - cell.screenOfChart.x, cell.screen.y + now.y - cell.screenOfChart.y});
    }
}

void TideDisplay::DrawTideArrow(Canvas& canvas, const TideGridCell& cell, ChartPoint at) {
    if (cell.Drift == 0.0f) return;
    const double a = cell.Set * kDegToRad;
    const double dx = std::sin(a), dy = std::cos(a);
    const Rgb red = MakeRgb(255, 0, 0);
    canvas.SetPen({red, cell.Drift > 2.0f ? 2 : 1, PenStyle::Solid});
    const double tipX = at.x + dx * kTideArrowLength, tipY = at.y - dy * kTideArrowLength;
    const ChartPoint tip{int32_t(std::lround(tipX)), int32_t(std::lround(tipY))};
    canvas.Line(at, tip);
    // The head: two strokes back from the tip, a third of the shaft long,
    // thirty degrees either side of it.
    const double head = kTideArrowLength / 3.0;
    for (double side : {-30.0, 30.0}) {
        const double b = a + M_PI + side * kDegToRad;
        canvas.Line(tip, {int32_t(std::lround(tipX + std::sin(b) * head)), int32_t(std::lround(tipY - std::cos(b) * head))});
    }
    canvas.SetTextColour(red);
    canvas.Text({at.x + 3, at.y + 2}, Format(cell.Drift, "##0.00"));
}

// ---- One point ------------------------------------------------------------------

void TideDisplay::ShowTideAtPoint(const LatLong& pos) {
    tides_.TideTime = clock_.Now().Serial();
    float drift = 0.0f, set = 0.0f;
    if (!tides_.GetTide(pos, drift, set)) return;
    dialogs_.MsgBox("The Tidal Stream at this point now is " + Format(std::fabs(drift), "##0.0") + " Kts at " +
                        Format(set, "###0") + " Deg T",
                    mb::OKOnly, "Tidal Stream");
}

// ---- The console ----------------------------------------------------------------

bool TideDisplay::UseProudman() const { return registry_.IsTrue(Key::UseProudman); }
void TideDisplay::SetUseProudman(bool on) { registry_.SaveSetting(Key::UseProudman, BoolText(on)); }

bool TideDisplay::UpdateConsoleTide(const LatLong& pos, double& set, double& drift) {
    tides_.TideTime = clock_.Now().Serial();
    float d = 0.0f, s = 0.0f;
    if (tides_.GetTide(pos, d, s)) {
        consoleSet_ = s;
        consoleDrift_ = d;
        consoleKnown_ = true;
    }
    set = consoleSet_;
    drift = consoleDrift_;
    return consoleKnown_;
}

// ---- Regions ----------------------------------------------------------------------

bool TideDisplay::ShowTideStreamDialog() {
    if (tides_.TideRegionCount() > 0) return true;
    dialogs_.MsgBox("No Tidal Stream Data", mb::OKOnly | mb::Exclamation, "Tidal Stream Info");
    return false;
}

std::string TideDisplay::NextRegionName() const {
    const std::string folder = ResolvePath(tides_.TideDataPath());
    for (int n = 1; n < 1000; ++n) {
        char name[16];
        std::snprintf(name, sizeof name, n < 100 ? "Region%02d" : "Region%03d", n);
        bool taken = false;
        for (const TideRegion& r : tides_.TideRegions())
            if (Upper(r.Name) == Upper(name)) taken = true;
        if (!taken && !FileExists(folder + name + ".Hdr") && !FileExists(folder + name + ".Hrm")) return name;
    }
    return {};
}

bool TideDisplay::CopyRegions(const std::string& folder) {
    const std::vector<fs::path> headers = FilesEndingIn(folder, ".Hdr");
    if (headers.empty()) return false;
    const fs::path target = ResolvePath(tides_.TideDataPath());
    std::error_code ec;
    fs::create_directories(target, ec);
    host_.SetStatus("Copying Proudman files");
    std::vector<std::string> failed;
    for (const fs::path& hdr : headers) {
        const std::string name = hdr.filename().string();
        // The twin: the name up to and including its first "." and "Hrm".
        const std::string twin = name.substr(0, name.find('.') + 1) + "Hrm";
        fs::path twinPath;
        for (const fs::path& p : FilesEndingIn(folder, ".Hrm"))
            if (Upper(p.filename().string()) == Upper(twin)) twinPath = p;
        if (!CopyAtomically(hdr, target / name) || twinPath.empty() || !CopyAtomically(twinPath, target / twin))
            failed.push_back(name);
    }
    host_.SetStatus("");
    if (!failed.empty()) {
        std::string list;
        for (const std::string& f : failed) list += "\n" + f;
        errors_.ReportError(kInstallProc, "These regions could not be copied whole:" + list);
    }
    return true;
}

bool TideDisplay::ImportDatabases(const std::string& folder, const double* chartBox, std::string& report) {
    const std::vector<fs::path> databases = FilesEndingIn(folder, ".tcd");
    if (databases.empty()) return false;
    // The chart in view bounds the stations taken; with no chart, all.
    const tide::TcdBox box = chartBox ? tide::TcdBox{chartBox[0], chartBox[1], chartBox[2], chartBox[3]}
                                      : tide::TcdBox{-90.0, -180.0, 90.0, 180.0};
    const std::string target = ResolvePath(tides_.TideDataPath());
    MakeFolder(target);
    host_.SetStatus("Building tidal regions");
    bool any = false;
    for (const fs::path& db : databases) {
        const std::string name = NextRegionName();
        tide::TcdImportReport counts;
        std::string why;
        auto region = tide::RegionFromTcd(db.string(), box, name, 10.0, counts, &why);
        if (region && tide::SaveRegion(*region, target, name, &why)) {
            report += "\n" + name + ": " + std::to_string(counts.used) + " stations of " + db.filename().string();
            any = true;
            tides_.ListTideRegions();  // the next free name counts this one
        } else {
            report += "\n" + db.filename().string() + ": " + why;
        }
    }
    host_.SetStatus("");
    return any;
}

void TideDisplay::InstallTideSet(const double* chartBox) {
    errors_.Guard(kInstallProc, [&] {
        dialogs_.MsgBox("If your Proudman Tidal Data is on a removable disc\nYou should insert it now",
                        mb::OKOnly | mb::Information, "Install Tidal Data");
        const std::string folder =
            dialogs_.FolderName("Select the Disc and Folder for the Proudman Tidal Region(s).", "");
        if (folder.empty()) return;
        std::string report;
        const bool copied = CopyRegions(folder);
        const bool imported = !copied && ImportDatabases(folder, chartBox, report);
        if (!copied && !imported) {
            dialogs_.MsgBox("No Proudman Tidal Data was found" + report, mb::OKOnly | mb::Critical, "Install Tidal Data");
            return;
        }
        tides_.ListTideRegions();
        host_.TideRegionsChanged();
        dialogs_.MsgBox("Proudman Region(s) Installed" + report, mb::OKOnly | mb::Information, "Install Tidal Data");
    });
}

}  // namespace ombra
