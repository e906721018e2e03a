// libFuzzer target: every reader of a chart set's text files and of the
// catalogue. The first byte chooses the reader; the rest is the file.
// Catalogue files are written to a folder of their own and read back
// through ChartCat, so seeking by offsets is fuzzed too.
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "charts/ChartCat.h"
#include "charts/ChartHeader.h"
#include "charts/Plans.h"
#include "core/ErrorReport.h"
#include "platform/chartlib/BoatShape.h"
#include "platform/chartlib/Georef.h"
#include "platform/chartlib/PaletteFile.h"
#include "platform/chartlib/TiledRaster.h"
#include "platform/fake/ScriptedDialogs.h"

namespace {

void Write(const std::string& path, const std::string& bytes) {
    std::ofstream f(path, std::ios::binary | std::ios::trunc);
    f << bytes;
}

// Splits the input at the first two "\x1e" bytes into three files.
std::vector<std::string> Parts(const std::string& s) {
    std::vector<std::string> out;
    size_t start = 0;
    for (int i = 0; i < 2; ++i) {
        size_t e = s.find('\x1e', start);
        if (e == std::string::npos) break;
        out.push_back(s.substr(start, e - start));
        start = e + 1;
    }
    out.push_back(s.substr(start));
    out.resize(3);
    return out;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace ombra;
    if (size == 0) return 0;
    std::string text(reinterpret_cast<const char*>(data) + 1, size - 1);
    switch (data[0] % 8) {
    case 0: {
        ChartHeader h;
        ParseHeaderText(text, h);
        ChartHeader back;
        ParseHeaderText(FormatHeaderText(h), back);
        ChartHeaderPath(text.substr(0, 16));
        EditionDateText(h.EditionDate);
        break;
    }
    case 1: {
        ChartPlan p;
        ParsePlanRecord(text, p);
        ShiftLatText(p);
        ShiftLongText(p);
        ScaleText(p);
        ChartPlan q;
        ParsePlanRecord(FormatPlanRecord(p), q);
        break;
    }
    case 2: {
        ChartCatEntry e;
        ParseChartCatLine1(text, e);
        ParseOutlineLine(text);
        ParsePlanPointers(text);
        ParsePlanNames(text);
        ChartCatPlan cp;
        ParsePlanCatLine1(text, cp);
        break;
    }
    case 3: {
        std::vector<PaletteColour> pal;
        std::string why;
        chartlib::ParsePalette(text, pal, why);
        chartlib::BoatShape boat;
        if (chartlib::ParseBoatOutline(text, boat, why)) chartlib::BoatPolygon(boat, {0, 0}, 33, 2);
        break;
    }
    case 4: {
        chartlib::PlanGeoref g;
        std::string why;
        if (g.FromText(text, why)) {
            double x, y, lat, lon;
            for (double px : {-1e6, 0.0, 512.5, 1e9})
                if (g.ToPosition(px, px / 2, lat, lon)) g.ToPixel(lat, lon, x, y);
            g.PixelsPerNM();
        }
        break;
    }
    case 5: {
        chartlib::RasterHeader h;
        std::vector<chartlib::TileEntry> tiles;
        uint64_t rasterSize;
        std::string why;
        chartlib::ParseRasterIndex(text, h, tiles, rasterSize, why);
        break;
    }
    default: {
        // A catalogue of three files; questions by number and by position.
        static const std::string root = (std::filesystem::temp_directory_path() / ("ombra-fuzz-cat-" + std::to_string(::getpid()))).string();
        std::filesystem::create_directories(root + "/ChartCat/NW");
        auto parts = Parts(text);
        Write(root + "/ChartCat/Chart.PTR", parts[0]);
        Write(root + "/ChartCat/Chart.CAT", parts[1]);
        Write(root + "/ChartCat/Plan.CAT", parts[2]);
        Write(root + "/ChartCat/NW/50N012W.PTR", "2" + parts[0]);
        ScriptedDialogs dialogs;
        std::string product = "Tarnel";
        ErrorReporter errors(dialogs, product);
        ChartCat cat(dialogs, errors, product);
        std::string number = parts[0].substr(0, 8);
        int64_t at = cat.FindChartPointer(root, number, data[0] & 8);
        ChartCatEntry e;
        cat.ReadChartCatEntry(root, at, e, true);
        cat.ReadChartCatEntry(root, int64_t(data[0]) * 37 + 1, e, true);
        std::vector<std::string> names;
        cat.ChartSelectFromLL(root, LatLong{-12.5 * 3600, 50.5 * 3600}, names);
        ChartManInfo info;
        cat.GetChartCatChartManInfo(root, number, info);
        break;
    }
    }
    return 0;
}
