// ChartInstall: getting charts onto this system and off it again.
//
// Installing a BSB/KAP chart:
//   1. The KAP's header is read: its number (NU=; a KAP without one is
//      numbered from its file name, letters and digits, at most 8), title,
//      scale, datums and reference points.
//   2. The chart library converts it into its own files (rasters, palette,
//      georeferencing) in a staging folder beside the chart's folder; the
//      plotter adds the header, the plan files and the notes there.
//   3. Only when the whole set is written is the staging folder renamed
//      into place (an older installation of the same number is moved aside
//      first and deleted after), and the catalogue gets the chart's entries.
// A bad or truncated chart file stops while its header is read or while
// it is converted, with a clear message, and leaves nothing installed
// changed: the staging folder is removed.
//
// The chart's main plan is plan 0 (PlanCount 0 for a single KAP); its file
// issue date is the installation date, which the catalogue records, so the
// chart checks pass on a freshly installed chart.
//
// Removing a chart takes it out of the catalogue first (so it is no longer
// found), then deletes its folder.
#pragma once
#include <string>
#include <vector>

#include "charts/ChartCat.h"
#include "platform/api/ChartLibrary.h"

namespace ombra {

struct InstallResult {
    bool Ok = false;
    std::string Number;   // trimmed chart number
    std::string Message;  // why not, when not
};

struct InstalledChart {
    std::string Number, Title, Scale, EditionDate;
    int16_t PlanCount = 0;
    bool FilesPresent = false;  // the header is where the number says
};

class ChartInstaller {
public:
    ChartInstaller(ChartLibrary& library, ChartCat& cat) : lib_(library), cat_(cat) {}

    // `issueDate` YYYYMMDD.
    InstallResult InstallKap(const std::string& root, const std::string& kapPath, const std::string& issueDate,
                             const ImportProgress& progress = {});
    // A chart the plotter drew itself. `meta` gives number, title, country,
    // and each plan's title, scale and codes; `specialWarnings` goes to the
    // header's line 3.
    InstallResult InstallImage(const std::string& root, const IndexedChartImage& image, ImportedChart meta,
                               const std::string& issueDate, const std::string& specialWarnings = "");
    bool RemoveChart(const std::string& root, const std::string& number, std::string& message);
    std::vector<InstalledChart> ListCharts(const std::string& root);

    // A chart number made from a file name: "/x/us5ma11m.kap" -> "US5MA11M".
    static std::string NumberFromFileName(const std::string& path);
    // Letters, digits, "_" and "-" only, at most 8 characters.
    static std::string CleanNumber(const std::string& number);

private:
    InstallResult Finish(const std::string& root, const std::string& stage, const std::string& number,
                         const ImportedChart& chart, const std::string& issueDate, const std::string& specialWarnings,
                         const std::string& code);

    ChartLibrary& lib_;
    ChartCat& cat_;
};

}  // namespace ombra
