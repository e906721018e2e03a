#include "charts/ChartInstall.h"

#include <unistd.h>

#include <cctype>
#include <filesystem>

#include "charts/CatalogueWriter.h"
#include "charts/ChartHeader.h"
#include "core/Paths.h"
#include "core/Val.h"

namespace ombra {

namespace {

namespace fs = std::filesystem;

std::string FolderOf(const std::string& path) {
    size_t s = path.find_last_of("\\/");
    return s == std::string::npos ? "" : path.substr(0, s);
}

void RemoveTree(const std::string& path) {
    std::error_code ec;
    fs::remove_all(ResolvePath(path), ec);
}

// Removes a staging folder, and the group and "raschts" folders above it
// when the staging folder was all they held.
void RemoveStage(const std::string& stage) {
    RemoveTree(stage);
    std::error_code ec;
    fs::path p = fs::path(ResolvePath(FolderOf(stage)));
    for (int i = 0; i < 2 && fs::is_directory(p, ec) && fs::is_empty(p, ec); ++i) {
        fs::remove(p, ec);
        p = p.parent_path();
    }
}

bool Write(const std::string& path, const std::string& text, std::string& message) {
    std::string why;
    if (SaveFileAtomic(path, text, &why)) return true;
    message = "Cannot write " + path + ": " + why;
    return false;
}

}  // namespace

std::string ChartInstaller::CleanNumber(const std::string& number) {
    std::string out;
    for (char c : Trim(number))
        if (std::isalnum(static_cast<unsigned char>(c)) || c == '_' || c == '-') out.push_back(char(std::toupper(static_cast<unsigned char>(c))));
    if (out.size() > 8) out.resize(8);
    return out;
}

std::string ChartInstaller::NumberFromFileName(const std::string& path) {
    size_t s = path.find_last_of("\\/");
    std::string name = s == std::string::npos ? path : path.substr(s + 1);
    size_t dot = name.find_last_of('.');
    if (dot != std::string::npos && dot > 0) name.resize(dot);
    return CleanNumber(name);
}

InstallResult ChartInstaller::InstallKap(const std::string& root, const std::string& kapPath, const std::string& issueDate,
                                         const ImportProgress& progress) {
    InstallResult r;
    ImportedChart chart;
    std::string why;
    if (!lib_.InspectKap(kapPath, chart, why)) {
        r.Message = kapPath + ": " + why;
        return r;
    }
    std::string number = CleanNumber(chart.Number);
    if (number.empty()) number = NumberFromFileName(kapPath);
    if (number.empty()) {
        r.Message = kapPath + ": the chart has no number and none can be made from its file name.";
        return r;
    }
    std::string hdr = WithTrailingSlash(root) + ChartHeaderPath(number);
    std::string stage = FolderOf(FolderOf(hdr)) + "\\." + number + ".new-" + std::to_string(::getpid());
    RemoveTree(stage);
    if (!MakeFolder(stage)) {
        r.Message = "Cannot create the folder " + stage;
        return r;
    }
    ImportedChart full;
    full.Number = number;
    full.IssueDate = issueDate;
    if (!lib_.ImportKap(kapPath, stage + "\\" + number, full, why, progress)) {
        RemoveStage(stage);
        r.Message = kapPath + ": " + why;
        return r;
    }
    return Finish(root, stage, number, full, issueDate, "", "KAP  ");
}

InstallResult ChartInstaller::InstallImage(const std::string& root, const IndexedChartImage& image, ImportedChart meta,
                                           const std::string& issueDate, const std::string& specialWarnings) {
    InstallResult r;
    std::string number = CleanNumber(meta.Number);
    if (number.empty()) {
        r.Message = "The chart has no number.";
        return r;
    }
    std::string hdr = WithTrailingSlash(root) + ChartHeaderPath(number);
    std::string stage = FolderOf(FolderOf(hdr)) + "\\." + number + ".new-" + std::to_string(::getpid());
    RemoveTree(stage);
    if (!MakeFolder(stage)) {
        r.Message = "Cannot create the folder " + stage;
        return r;
    }
    meta.Number = number;
    meta.IssueDate = issueDate;
    std::string why;
    if (!lib_.ImportImage(image, stage + "\\" + number, meta, why)) {
        RemoveStage(stage);
        r.Message = why;
        return r;
    }
    return Finish(root, stage, number, meta, issueDate, specialWarnings, "OMBRA");
}

InstallResult ChartInstaller::Finish(const std::string& root, const std::string& stage, const std::string& number,
                                     const ImportedChart& chart, const std::string& issueDate,
                                     const std::string& specialWarnings, const std::string& code) {
    InstallResult r;
    r.Number = number;
    const std::string base = stage + "\\" + number;
    const int planCount = int(chart.Plans.size()) - 1;
    std::string edition = chart.EditionDate.empty() ? issueDate : chart.EditionDate;

    ChartHeader h;
    h.FileType = "HDR";
    h.Country = FixedText(chart.Country, 2);
    h.ChartNumber = FixedText(number, 8);
    h.FileIssueDate = issueDate;
    h.EditionDate = edition;
    h.PlanCount = int16_t(planCount);
    h.FormatVersion = 1.0f;
    h.Reference1 = "OMBRA";
    h.Title = chart.Title;
    h.LayoutA = 1;
    h.SpecialWarnings = specialWarnings;
    h.Reference2 = FixedText(number, 9);
    h.Reference3 = "RASTER1";
    std::string msg;
    bool ok = Write(base + ".HDR", FormatHeaderText(h), msg);

    ChartCatEntry entry;
    entry.Country = chart.Country;
    entry.ChartNumber = number;
    entry.HeaderIssueDate = entry.NotesIssueDate = entry.IssueDate2 = issueDate;
    entry.EditionDate = edition;
    entry.Code = code;
    entry.Title = chart.Title;
    entry.PlanCount = int16_t(planCount);
    entry.Scale = chart.Plans.empty() ? "" : chart.Plans[0].Scale;
    entry.FirstPlan = 0;
    for (int p = 0; ok && p <= planCount; ++p) {
        const ImportedPlan& ip = chart.Plans[size_t(p)];
        ChartPlan cp;
        cp.PlanNumberInFile = int16_t(std::min(p, 9));
        cp.Title = ip.Title;
        cp.Scale = ip.Scale;
        cp.HorizDatum = ip.HorizDatum;
        cp.DepthUnits = ip.DepthUnits;
        cp.DepthDatum = ip.DepthDatum;
        cp.ShiftLat = ip.ShiftLat.empty() ? "9999999" : ip.ShiftLat;
        cp.ShiftLong = ip.ShiftLong.empty() ? "9999999" : ip.ShiftLong;
        cp.ShiftSourceLat = cp.ShiftLat == "9999999" ? "" : "CHART";
        cp.ShiftSourceLong = cp.ShiftSourceLat;
        std::string planText = ChartFileLine("PLN", chart.Country, number, issueDate, "  Plan " + std::to_string(p)) + "\r\n" +
                               FormatPlanRecord(cp) + "\r\n" + ip.GeorefText;
        ok = ok && Write(base + "." + PlanExtension('P', p), planText, msg);
        std::string notes = ChartFileLine("NTS", chart.Country, number, issueDate, "  Notes") + "\r\n";
        if (p == 0)
            for (const std::string& n : chart.Notes) notes += n + "\r\n";
        ok = ok && Write(base + "." + PlanExtension('N', p), notes, msg);
        entry.PlanNames.push_back(FixedText(p == 0 ? number : number + "/" + std::to_string(p), 9));
        if (p == 0) {
            entry.Outline = ip.Outline;
        } else {
            ChartCatPlan pl;
            pl.PlanLabel = "P" + std::to_string(std::min(p, 9));
            pl.ChartNumber = number;
            pl.IssueDate = issueDate;
            pl.PlanNumber = int16_t(p);
            pl.Scale = ip.Scale;
            pl.Title = ip.Title;
            pl.Outline = ip.Outline;
            entry.Plans.push_back(pl);
        }
    }
    if (!ok) {
        RemoveTree(stage);
        r.Message = msg;
        return r;
    }
    // Into place: the old set aside, the new one in, the old one gone.
    std::string finalDir = FolderOf(WithTrailingSlash(root) + ChartHeaderPath(number));
    std::string finalNative = NativePath(finalDir);
    std::string old = stage + ".old";
    std::error_code ec;
    std::string existing = ResolvePath(finalDir);
    if (FolderExists(existing)) {
        fs::rename(existing, ResolvePath(FolderOf(stage)) + "/" + fs::path(NativePath(old)).filename().string(), ec);
        if (ec) {
            RemoveTree(stage);
            r.Message = "Cannot replace the installed chart " + number + ": " + ec.message();
            return r;
        }
    }
    fs::rename(ResolvePath(stage), ResolvePath(FolderOf(stage)) + "/" + number, ec);
    if (ec) {
        RemoveTree(stage);
        r.Message = "Cannot install chart " + number + ": " + ec.message();
        return r;
    }
    RemoveTree(old);
    std::string folder = cat_.CatalogueFolder(root);
    if (!AddChartToCatalogue(folder, entry, msg) || !RebuildGridFiles(folder, cat_, root, msg)) {
        r.Message = msg;
        return r;
    }
    (void)finalNative;
    r.Ok = true;
    return r;
}

bool ChartInstaller::RemoveChart(const std::string& root, const std::string& number, std::string& message) {
    std::string n = Trim(number);
    if (n.empty()) {
        message = "No chart number was given.";
        return false;
    }
    if (!RemoveChartFromCatalogue(cat_.CatalogueFolder(root), n, cat_, root, message)) return false;
    std::string dir = FolderOf(WithTrailingSlash(root) + ChartHeaderPath(n));
    RemoveTree(dir);
    return true;
}

std::vector<InstalledChart> ChartInstaller::ListCharts(const std::string& root) {
    std::vector<InstalledChart> out;
    for (const CatalogueLine& l : ReadChartPointers(cat_.CatalogueFolder(root))) {
        ChartCatEntry e;
        if (!cat_.ReadChartCatEntry(root, l.Offset + 1, e, false)) continue;
        InstalledChart c;
        c.Number = Trim(e.ChartNumber);
        c.Title = Trim(e.Title);
        c.Scale = Trim(e.Scale);
        c.EditionDate = e.EditionDate;
        c.PlanCount = e.PlanCount;
        c.FilesPresent = FileExists(WithTrailingSlash(root) + ChartHeaderPath(c.Number));
        out.push_back(c);
    }
    return out;
}

}  // namespace ombra
