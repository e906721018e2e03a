// Charts from the command line: installing, listing, mapping, drawing.
//
//   ombra-cli chart install FILE.KAP...            prints the number of each chart installed
//   ombra-cli chart remove NUMBER
//   ombra-cli chart list
//   ombra-cli chart info NUMBER
//   ombra-cli chart pixel NUMBER PLAN LAT LON      -> "x y", full-resolution pixel, (0, 0) top-left
//   ombra-cli chart position NUMBER PLAN X Y       -> "lat lon", decimal degrees, WGS84
//   ombra-cli chart render NUMBER --plan P --centre LAT LON --size WxH --out FILE.png
//   ombra-cli chart export NUMBER --plan P --out FILE.png|.ppm
//   ombra-cli chart verify NUMBER                  checks the raster checksums
//   ombra-cli chart make-demo                      installs demo chart 4000
//
// Every subcommand takes --root DIR, the chart root; by default it is the
// MainDataPath of the settings ($OMBRA_HOME/Vestrane.ini, else
// ~/.config/Vestrane/Vestrane.ini), and when that is empty the install
// folder ($OMBRA_HOME, else ~/.local/share/Vestrane). Positions are decimal
// degrees, north and east positive. "chart pixel --exact" prints the pixel
// with its fraction; "chart render" takes --pixel-size N (128 one to one),
// --lores, --palette 0|1|2 and --vessel LAT LON HEADING [SOG COG] with
// --predictor MINUTES. "chart export" writes the whole raster for plan 0
// and the plan's bounding box for an inset.
#include <cctype>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <iomanip>
#include <ostream>
#include <sstream>
#include <string>

#include "app/cli/CliCommand.h"
#include "charts/ChartHeader.h"
#include "charts/ChartModule.h"
#include "charts/DemoChart.h"
#include "core/ErrorReport.h"
#include "core/Paths.h"
#include "core/Registry.h"
#include "core/Units.h"
#include "core/Val.h"
#include "platform/api/Dialogs.h"
#include "platform/chartlib/ImageCanvas.h"
#include "platform/chartlib/ImageFile.h"
#include "platform/chartlib/OmbraChartLibrary.h"
#include "platform/fake/MemorySettings.h"

namespace ombra::cli {
namespace {

constexpr int kUsage = 2;
const std::string kProduct = "Tarnel";

// Message boxes go to stderr; questions take their default button.
class CliDialogs : public Dialogs {
public:
    explicit CliDialogs(std::ostream& err) : err_(err) {}
    int MsgBox(const std::string& text, int style, const std::string&) override {
        err_ << text << "\n";
        int buttons = style & 15;
        if (buttons == mb::YesNo || buttons == mb::YesNoCancel) return (style & mb::DefaultButton2) ? mb::No : mb::Yes;
        return mb::OK;
    }
    bool InputBox(const std::string&, const std::string&, std::string&) override { return false; }
    int PickFromList(const std::string&, const std::vector<std::string>&, int) override { return -1; }
    std::string OpenFileName(const std::string&, const std::string&, const std::string&) override { return ""; }
    std::string SaveFileName(const std::string&, const std::string&, const std::string&) override { return ""; }
    std::string FolderName(const std::string&, const std::string&) override { return ""; }

private:
    std::ostream& err_;
};

std::string Today() {
    std::time_t t = std::time(nullptr);
    std::tm tm{};
    localtime_r(&t, &tm);
    char b[16];
    std::strftime(b, sizeof b, "%Y%m%d", &tm);
    return b;
}

std::string InstallFolder() {
    if (const char* home = std::getenv("OMBRA_HOME"); home && *home) return home;
    if (const char* xdg = std::getenv("XDG_DATA_HOME"); xdg && *xdg) return std::string(xdg) + "/Vestrane";
    const char* h = std::getenv("HOME");
    return std::string(h ? h : ".") + "/.local/share/Vestrane";
}

// MainDataPath from the settings file, as QSettings writes INI files.
std::string SettingsRoot() {
    std::string ini;
    if (const char* home = std::getenv("OMBRA_HOME"); home && *home) ini = std::string(home) + "/Vestrane.ini";
    else if (const char* h = std::getenv("HOME"); h && *h) ini = std::string(h) + "/.config/Vestrane/Vestrane.ini";
    std::ifstream f(ini);
    std::string line, section;
    while (std::getline(f, line)) {
        std::string t = Trim(line);
        if (!t.empty() && t.front() == '[') section = t;
        else if (section == "[Tarnel]" && t.rfind("MainDataPath=", 0) == 0) {
            std::string v = t.substr(13);
            if (v.size() >= 2 && v.front() == '"' && v.back() == '"') v = v.substr(1, v.size() - 2);
            return Replace(v, "\\\\", "\\");
        }
    }
    return "";
}

struct Options {
    std::vector<std::string> positional;
    std::string root, date, out;
    int plan = 0;
    bool hasPlan = false, exact = false, lores = false;
    bool hasCentre = false;
    double centreLat = 0, centreLon = 0;
    int width = 800, height = 600;
    int pixelSize = 128, palette = 0;
    bool hasVessel = false, predictor = false;
    double vLat = 0, vLon = 0, vHeading = 0, vSog = 0, vCog = 0, predictorMinutes = 6;
};

bool Number(const std::string& s, double& v) {
    if (!IsNumeric(s)) return false;
    v = Val(s);
    return std::isfinite(v);
}

// The options, one row each. `values` must follow the option; the reader
// gets them from args[first] on, may take more (raising `used`), and false
// refuses them with "wants". When the values are short the message is
// "needs N values", followed by "wants" for the rows marked so.
using OptionReader = bool (*)(const CliArgs& args, size_t first, Options& o, size_t& used);

struct OptionRow {
    std::string_view name;
    size_t values;
    const char* wants;
    bool wantsWhenShort;
    OptionReader read;
};

// A number within [lo, hi].
bool NumberIn(const std::string& s, double lo, double hi, double& v) { return Number(s, v) && v >= lo && v <= hi; }

bool ReadCentre(const CliArgs& a, size_t i, Options& o, size_t&) {
    double la, lo;
    if (!Number(a[i], la) || !Number(a[i + 1], lo) || std::fabs(la) > 90 || std::fabs(lo) > 180) return false;
    o.centreLat = la;
    o.centreLon = lo;
    o.hasCentre = true;
    return true;
}

// LAT LON HEADING, then SOG and COG when two numbers follow (COG is the
// heading without them).
bool ReadVessel(const CliArgs& a, size_t i, Options& o, size_t& used) {
    if (!Number(a[i], o.vLat) || !Number(a[i + 1], o.vLon) || !Number(a[i + 2], o.vHeading)) return false;
    o.hasVessel = true;
    o.vCog = o.vHeading;
    if (i + 4 < a.size() && Number(a[i + 3], o.vSog) && Number(a[i + 4], o.vCog)) used += 2;
    return true;
}

const OptionRow kOptions[] = {
    {"--root", 1, "", false, [](const CliArgs& a, size_t i, Options& o, size_t&) {
         o.root = a[i];
         return true;
     }},
    {"--date", 1, "--date wants YYYYMMDD", false, [](const CliArgs& a, size_t i, Options& o, size_t&) {
         o.date = a[i];
         return o.date.size() == 8 && IsNumeric(o.date);
     }},
    {"--out", 1, "", false, [](const CliArgs& a, size_t i, Options& o, size_t&) {
         o.out = a[i];
         return true;
     }},
    {"--plan", 1, "--plan wants a plan number", true, [](const CliArgs& a, size_t i, Options& o, size_t&) {
         double v;
         if (!NumberIn(a[i], 0, 99, v)) return false;
         o.plan = int(v);
         o.hasPlan = true;
         return true;
     }},
    {"--centre", 2, "--centre wants LAT LON in degrees", true, ReadCentre},
    {"--center", 2, "--centre wants LAT LON in degrees", true, ReadCentre},
    {"--size", 1, "--size wants WxH, each 1 to 8000", false, [](const CliArgs& a, size_t i, Options& o, size_t&) {
         int w = 0, h = 0;
         char x = 0;
         if (std::sscanf(a[i].c_str(), "%d%c%d", &w, &x, &h) != 3 || (x != 'x' && x != 'X') || w <= 0 || h <= 0 || w > 8000 ||
             h > 8000)
             return false;
         o.width = w;
         o.height = h;
         return true;
     }},
    {"--pixel-size", 1, "--pixel-size wants 16 to 1024", true, [](const CliArgs& a, size_t i, Options& o, size_t&) {
         double v;
         if (!NumberIn(a[i], 16, 1024, v)) return false;
         o.pixelSize = int(v);
         return true;
     }},
    {"--palette", 1, "--palette wants 0, 1 or 2", true, [](const CliArgs& a, size_t i, Options& o, size_t&) {
         double v;
         if (!NumberIn(a[i], 0, 2, v)) return false;
         o.palette = int(v);
         return true;
     }},
    {"--vessel", 3, "--vessel wants LAT LON HEADING [SOG COG]", true, ReadVessel},
    {"--predictor", 1, "--predictor wants minutes", true, [](const CliArgs& a, size_t i, Options& o, size_t&) {
         if (!Number(a[i], o.predictorMinutes)) return false;
         o.predictor = true;
         return true;
     }},
    {"--exact", 0, "", false, [](const CliArgs&, size_t, Options& o, size_t&) {
         o.exact = true;
         return true;
     }},
    {"--lores", 0, "", false, [](const CliArgs&, size_t, Options& o, size_t&) {
         o.lores = true;
         return true;
     }},
};

const OptionRow* FindOption(const std::string& name) {
    for (const OptionRow& row : kOptions)
        if (row.name == name) return &row;
    return nullptr;
}

// Reads the option at args[i] and its values; `i` moves to the last value taken.
bool ReadOption(const OptionRow& row, const CliArgs& args, size_t& i, Options& o, std::ostream& err) {
    const std::string& name = args[i];
    if (i + row.values >= args.size()) {
        err << "ombra-cli chart: " << name << " needs " << row.values << " value" << (row.values > 1 ? "s" : "") << "\n";
        if (row.wantsWhenShort) err << "ombra-cli chart: " << row.wants << "\n";
        return false;
    }
    size_t used = row.values;
    if (!row.read(args, i + 1, o, used)) {
        err << "ombra-cli chart: " << row.wants << "\n";
        return false;
    }
    i += used;
    return true;
}

bool ParseOptions(const CliArgs& args, Options& o, std::ostream& err) {
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        if (const OptionRow* row = FindOption(a)) {
            if (!ReadOption(*row, args, i, o, err)) return false;
        } else if (a.size() > 2 && a.rfind("--", 0) == 0) {
            err << "ombra-cli chart: unknown option " << a << "\n";
            return false;
        } else {
            o.positional.push_back(a);
        }
    }
    if (o.root.empty()) o.root = SettingsRoot();
    if (o.root.empty()) o.root = InstallFolder();
    if (o.date.empty()) o.date = Today();
    return true;
}

// The engine with one chart open, without the checks of NewChart: for the
// questions about pixels and positions.
bool OpenForQuery(chartlib::OmbraChartLibrary& lib, const std::string& root, const std::string& number, ChartHeader& h,
                  std::ostream& err) {
    std::string hdr = WithTrailingSlash(root) + ChartHeaderPath(number);
    if (ChartHeaderPath(number).empty() || !FileExists(hdr)) {
        err << "ombra-cli chart: chart " << Trim(number) << " is not installed under " << root << "\n";
        return false;
    }
    auto text = ReadWholeFile(hdr);
    if (!text) {
        err << "ombra-cli chart: cannot read " << hdr << "\n";
        return false;
    }
    ParseHeaderText(*text, h);
    int16_t layout[5] = {h.PlanCount, h.LayoutA, h.LayoutB, h.LayoutC, h.LayoutD};
    if (lib.OpenChart(hdr, layout, h.Reference3, h.LibraryTag) != 0) {
        err << "ombra-cli chart: chart " << Trim(number) << " cannot be opened: " << lib.LastError() << "\n";
        return false;
    }
    lib.ReadChart(ChartFilePath(hdr, "CHR"), 0);
    return true;
}

// The engine, the catalogue and the installer for one command; messages
// go to stderr.
struct InstallKit {
    explicit InstallKit(std::ostream& err)
        : dialogs(err), errors(dialogs, kProduct), cat(dialogs, errors, kProduct), installer(lib, cat) {}
    CliDialogs dialogs;
    ErrorReporter errors;
    chartlib::OmbraChartLibrary lib;
    ChartCat cat;
    ChartInstaller installer;
};

class FixedVessel : public VesselSource {
public:
    VesselView v;
    bool GetVesselView(VesselView& out) override {
        out = v;
        return true;
    }
};

int Install(Options& o, std::ostream& out, std::ostream& err) {
    if (o.positional.empty()) {
        err << "usage: ombra-cli chart install FILE.KAP... [--root DIR] [--date YYYYMMDD]\n";
        return kUsage;
    }
    InstallKit kit(err);
    int failures = 0;
    for (const std::string& kap : o.positional) {
        InstallResult r = kit.installer.InstallKap(o.root, kap, o.date);
        if (r.Ok) out << r.Number << "\n";
        else {
            err << r.Message << "\n";
            ++failures;
        }
    }
    return failures ? 1 : 0;
}

int Remove(Options& o, std::ostream& out, std::ostream& err) {
    if (o.positional.size() != 1) {
        err << "usage: ombra-cli chart remove NUMBER [--root DIR]\n";
        return kUsage;
    }
    InstallKit kit(err);
    std::string message;
    if (!kit.installer.RemoveChart(o.root, o.positional[0], message)) {
        err << message << "\n";
        return 1;
    }
    out << "Removed chart " << Trim(o.positional[0]) << "\n";
    return 0;
}

int List(Options& o, std::ostream& out, std::ostream& err) {
    InstallKit kit(err);
    for (const InstalledChart& c : kit.installer.ListCharts(o.root))
        out << std::left << std::setw(9) << c.Number << std::setw(11) << ("1:" + c.Scale) << c.PlanCount + 1 << " plan"
            << (c.PlanCount ? "s " : "  ") << c.Title << (c.FilesPresent ? "" : "  (files missing)") << "\n";
    return 0;
}

int Info(Options& o, std::ostream& out, std::ostream& err) {
    if (o.positional.size() != 1) {
        err << "usage: ombra-cli chart info NUMBER [--root DIR]\n";
        return kUsage;
    }
    chartlib::OmbraChartLibrary lib;
    ChartHeader h;
    if (!OpenForQuery(lib, o.root, o.positional[0], h, err)) return 1;
    std::string hdr = WithTrailingSlash(o.root) + ChartHeaderPath(o.positional[0]);
    ChartRasterInfo ri = lib.RasterInfo();
    out << "Chart " << Trim(h.ChartNumber) << ": " << Trim(h.Title) << "\n";
    out << "Header " << NativePath(hdr) << "\n";
    out << "Issue " << h.FileIssueDate << "  Edition " << EditionDateText(h.EditionDate) << "\n";
    out << "Raster " << ri.Width << " x " << ri.Height << " pixels\n";
    if (!Trim(h.SpecialWarnings).empty()) out << "Special warnings: " << h.SpecialWarnings << "\n";
    for (int p = 0; p <= h.PlanCount; ++p) {
        std::string text = lib.DecryptPlanFile(ChartFilePath(hdr, PlanExtension('P', p)));
        if (text.empty()) {
            out << "Plan " << p << ": no plan file\n";
            continue;
        }
        ChartPlan cp;
        ParsePlanRecord(text, cp);
        const chartlib::PlanGeoref* g = lib.Georef(int16_t(p));
        out << "Plan " << p << ": " << cp.Title << "  " << ScaleText(cp) << "  datum " << Trim(cp.HorizDatum) << "  shift "
            << (cp.HasShift ? Trim(cp.ShiftLat) + " " + Trim(cp.ShiftLong) : std::string("none")) << "\n";
        if (g) {
            const char* kinds[] = {"Mercator", "transverse Mercator", "Lambert conformal conic", "polyconic", "polynomial"};
            out << "  " << kinds[int(g->Kind())] << ", " << g->Refs().size() << " reference points, largest miss "
                << std::fixed << std::setprecision(3) << g->MaxRefError() << " px, " << std::setprecision(2)
                << g->PixelsPerNM() << " px/NM" << (g->UsesCorrection() ? ", corrected" : "") << "\n";
            out.unsetf(std::ios::floatfield);
        }
    }
    return 0;
}

// "pixel" and "position": NUMBER PLAN A B, the chart opened, then `answer`
// maps (A, B) on the plan and prints it, or returns false when it cannot.
using PlanQuery = bool (*)(chartlib::OmbraChartLibrary& lib, const Options& o, int16_t plan, double a, double b,
                           std::ostream& out);

int RunPlanQuery(Options& o, const char* usage, const char* what, PlanQuery answer, std::ostream& out, std::ostream& err) {
    double plan, a, b;
    if (o.positional.size() != 4 || !Number(o.positional[1], plan) || !Number(o.positional[2], a) ||
        !Number(o.positional[3], b)) {
        err << "usage: ombra-cli chart " << usage << "\n";
        return kUsage;
    }
    chartlib::OmbraChartLibrary lib;
    ChartHeader h;
    if (!OpenForQuery(lib, o.root, o.positional[0], h, err)) return 1;
    if (!answer(lib, o, int16_t(plan), a, b, out)) {
        err << "ombra-cli chart: the " << what << " cannot be mapped on plan " << int(plan) << "\n";
        return 1;
    }
    return 0;
}

bool PrintPixel(chartlib::OmbraChartLibrary& lib, const Options& o, int16_t plan, double lat, double lon, std::ostream& out) {
    double x, y;
    if (!lib.PositionToPixel(1, plan, LatLong{lon * 3600.0, lat * 3600.0}, x, y)) return false;
    if (o.exact) out << std::fixed << std::setprecision(4) << x << " " << y << "\n";
    else out << std::lround(x) << " " << std::lround(y) << "\n";
    return true;
}

bool PrintPosition(chartlib::OmbraChartLibrary& lib, const Options&, int16_t plan, double x, double y, std::ostream& out) {
    LatLong pos;
    if (!lib.PixelToPosition(1, plan, x, y, pos)) return false;
    out << std::fixed << std::setprecision(8) << pos.Lat / 3600.0 << " " << pos.Long / 3600.0 << "\n";
    return true;
}

int Pixel(Options& o, std::ostream& out, std::ostream& err) {
    return RunPlanQuery(o, "pixel NUMBER PLAN LAT LON [--exact] [--root DIR]", "position", PrintPixel, out, err);
}

int Position(Options& o, std::ostream& out, std::ostream& err) {
    return RunPlanQuery(o, "position NUMBER PLAN X Y [--root DIR]", "pixel", PrintPosition, out, err);
}

int Render(Options& o, std::ostream& out, std::ostream& err) {
    if (o.positional.size() != 1 || o.out.empty()) {
        err << "usage: ombra-cli chart render NUMBER --plan P --centre LAT LON --size WxH --out FILE.png\n";
        return kUsage;
    }
    CliDialogs dialogs(err);
    ErrorReporter errors(dialogs, kProduct);
    MemorySettings settings;
    Registry registry(settings, kProduct);
    Units units;
    chartlib::OmbraChartLibrary lib;
    WindowlessChartHost host;
    ChartModule charts(lib, dialogs, errors, registry, kProduct, units, host);
    charts.SetRoot(o.root);
    charts.View.SetViewSize(o.width, o.height);
    charts.View.PaletteMode = int16_t(o.palette);
    lib.ModifySystemPalette(int16_t(o.palette));
    FixedVessel vessel;
    if (o.hasVessel) {
        vessel.v.Active = true;
        vessel.v.Pos = {o.vLon * 3600.0, o.vLat * 3600.0};
        vessel.v.Heading = o.vHeading;
        vessel.v.COG = o.vCog;
        vessel.v.SOG = o.vSog;
        vessel.v.Predictor = o.predictor;
        vessel.v.PredictorTime = float(o.predictorMinutes);
        charts.View.SetVesselSource(&vessel);
    }
    if (!charts.Charts.NewChart(o.positional[0])) {
        err << "ombra-cli chart: chart " << Trim(o.positional[0]) << " cannot be opened\n";
        return 1;
    }
    if (o.lores) charts.View.ShowLoRes();
    else charts.View.ShowHiRes();
    charts.View.SetPixelSize(int16_t(o.pixelSize));
    if (o.hasCentre) {
        double x, y;
        if (!lib.PositionToPixel(1, int16_t(o.plan), LatLong{o.centreLon * 3600.0, o.centreLat * 3600.0}, x, y)) {
            err << "ombra-cli chart: the centre cannot be mapped on plan " << o.plan << "\n";
            return 1;
        }
        charts.View.CentreOnPixel(x, y);
    } else if (o.hasPlan) {
        charts.View.MoveToPlan(int16_t(o.plan));
    }
    Image img(o.width, o.height);
    chartlib::ImageCanvas canvas(img);
    charts.View.RedrawNavCanvas(canvas);
    std::string why;
    if (!chartlib::WriteImageFile(o.out, img, why)) {
        err << "ombra-cli chart: " << why << "\n";
        return 1;
    }
    for (const std::string& w : charts.View.WarningTexts()) out << "Warning: " << Trim(w) << "\n";
    return 0;
}

int Export(Options& o, std::ostream& out, std::ostream& err) {
    if (o.positional.size() != 1 || o.out.empty()) {
        err << "usage: ombra-cli chart export NUMBER --plan P --out FILE.png|.ppm [--root DIR]\n";
        return kUsage;
    }
    chartlib::OmbraChartLibrary lib;
    ChartHeader h;
    if (!OpenForQuery(lib, o.root, o.positional[0], h, err)) return 1;
    Image full;
    if (!lib.ExportFullRaster(full, 0)) {
        err << "ombra-cli chart: the raster of chart " << Trim(o.positional[0]) << " is damaged\n";
        return 1;
    }
    Image img = full;
    if (o.plan > 0) {
        const chartlib::PlanGeoref* g = lib.Georef(int16_t(o.plan));
        if (!g) {
            err << "ombra-cli chart: the chart has no plan " << o.plan << "\n";
            return 1;
        }
        double x0 = 1e18, y0 = 1e18, x1 = -1e18, y1 = -1e18;
        for (auto& q : g->Outline()) {
            double x, y;
            if (!g->ToPixel(q.first, q.second, x, y)) continue;
            x0 = std::min(x0, x);
            y0 = std::min(y0, y);
            x1 = std::max(x1, x);
            y1 = std::max(y1, y);
        }
        int l = std::clamp(int(std::floor(x0)), 0, full.width), t = std::clamp(int(std::floor(y0)), 0, full.height);
        int r = std::clamp(int(std::ceil(x1)), l, full.width), b = std::clamp(int(std::ceil(y1)), t, full.height);
        if (r <= l || b <= t) {
            err << "ombra-cli chart: plan " << o.plan << " lies outside the raster\n";
            return 1;
        }
        img = Image(r - l, b - t);
        for (int y = t; y < b; ++y)
            for (int x = l; x < r; ++x) img.at(x - l, y - t) = full.at(x, y);
    }
    std::string why;
    if (!chartlib::WriteImageFile(o.out, img, why)) {
        err << "ombra-cli chart: " << why << "\n";
        return 1;
    }
    out << img.width << " x " << img.height << "\n";
    return 0;
}

int Verify(Options& o, std::ostream& out, std::ostream& err) {
    if (o.positional.size() != 1) {
        err << "usage: ombra-cli chart verify NUMBER [--root DIR]\n";
        return kUsage;
    }
    chartlib::OmbraChartLibrary lib;
    std::string hdr = WithTrailingSlash(o.root) + ChartHeaderPath(o.positional[0]);
    bool ok = lib.CheckCRC(ChartFilePath(hdr, "CHI")) && lib.CheckCRC(ChartFilePath(hdr, "LOI"));
    if (ok) out << "Chart " << Trim(o.positional[0]) << " data is valid.\n";
    else err << "Chart " << Trim(o.positional[0]) << " data is invalid.\n";
    return ok ? 0 : 1;
}

int MakeDemo(Options& o, std::ostream& out, std::ostream& err) {
    InstallKit kit(err);
    DemoChart demo;
    Image img(demo.Width(), demo.Height());
    demo.PaintBase(img);
    chartlib::ImageCanvas canvas(img);
    demo.PaintOverlay(canvas);
    IndexedChartImage indexed;
    std::string why;
    if (!demo.ToIndexed(img, indexed, why)) {
        err << "ombra-cli chart make-demo: " << why << "\n";
        return 1;
    }
    InstallResult r = kit.installer.InstallImage(o.root, indexed, demo.Metadata(), o.date, demo.SpecialWarnings());
    if (!r.Ok) {
        err << r.Message << "\n";
        return 1;
    }
    out << r.Number << "\n";
    return 0;
}

int RunChart(const CliArgs& args, std::ostream& out, std::ostream& err) {
    if (args.empty()) {
        err << "usage: ombra-cli chart install|remove|list|info|pixel|position|render|export|verify|make-demo ...\n";
        return kUsage;
    }
    Options o;
    if (!ParseOptions(CliArgs(args.begin() + 1, args.end()), o, err)) return kUsage;
    const std::string& sub = args[0];
    if (sub == "install") return Install(o, out, err);
    if (sub == "remove") return Remove(o, out, err);
    if (sub == "list") return List(o, out, err);
    if (sub == "info") return Info(o, out, err);
    if (sub == "pixel") return Pixel(o, out, err);
    if (sub == "position") return Position(o, out, err);
    if (sub == "render") return Render(o, out, err);
    if (sub == "export") return Export(o, out, err);
    if (sub == "verify") return Verify(o, out, err);
    if (sub == "make-demo") return MakeDemo(o, out, err);
    err << "ombra-cli chart: unknown subcommand '" << sub << "'\n";
    return kUsage;
}

CliRegistration reg{{"chart", "chart install|remove|list|info|pixel|position|render|export|verify|make-demo [--root DIR] ...",
                     RunChart}};

}  // namespace
}  // namespace ombra::cli
