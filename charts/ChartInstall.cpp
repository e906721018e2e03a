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

// A fresh, empty staging folder for chart `number`, beside the group folder
// its header path names; false with a message when it cannot be made.
bool MakeStage(const std::string& root, const std::string& number, std::string& stage, std::string& message) {
    std::string hdr = WithTrailingSlash(root) + ChartHeaderPath(number);
    stage = FolderOf(FolderOf(hdr)) + "\\." + number + ".new-" + std::to_string(::getpid());
    RemoveTree(stage);
    if (MakeFolder(stage)) return true;
    message = "Cannot create the folder " + stage;
    return false;
}

ChartHeader HeaderFor(const ImportedChart& chart, const std::string& number, const std::string& issueDate,
                      const std::string& edition, const std::string& specialWarnings) {
    ChartHeader h;
    h.FileType = "HDR";
    h.Country = FixedText(chart.Country, 2);
    h.ChartNumber = FixedText(number, 8);
    h.FileIssueDate = issueDate;
    h.EditionDate = edition;
    h.PlanCount = int16_t(int(chart.Plans.size()) - 1);
    h.FormatVersion = 1.0f;
    h.Reference1 = "OMBRA";
    h.Title = chart.Title;
    h.LayoutA = 1;
    h.SpecialWarnings = specialWarnings;
    h.Reference2 = FixedText(number, 9);
    h.Reference3 = "RASTER1";
    return h;
}

// The chart's catalogue entry without its plans.
ChartCatEntry EntryFor(const ImportedChart& chart, const std::string& number, const std::string& issueDate,
                       const std::string& edition, const std::string& code) {
    ChartCatEntry entry;
    entry.Country = chart.Country;
    entry.ChartNumber = number;
    entry.HeaderIssueDate = entry.NotesIssueDate = entry.IssueDate2 = issueDate;
    entry.EditionDate = edition;
    entry.Code = code;
    entry.Title = chart.Title;
    entry.PlanCount = int16_t(int(chart.Plans.size()) - 1);
    entry.Scale = chart.Plans.empty() ? "" : chart.Plans[0].Scale;
    entry.FirstPlan = 0;
    return entry;
}

// Plan p's record; a plan without a datum shift has "9999999" for it.
ChartPlan PlanRecordFor(const ImportedPlan& ip, int p) {
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
    return cp;
}

// Plan p's name, and its border and catalogue line: plan 0's border is the
// chart's own, the others each get a plan line.
void AddPlanToEntry(ChartCatEntry& entry, const ImportedPlan& ip, const std::string& number, const std::string& issueDate,
                    int p) {
    entry.PlanNames.push_back(FixedText(p == 0 ? number : number + "/" + std::to_string(p), 9));
    if (p == 0) {
        entry.Outline = ip.Outline;
        return;
    }
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

// The plan and notes files of every plan (the chart's notes with plan 0),
// each plan added to the catalogue entry; false with a message at the
// first file that cannot be written.
bool WritePlanFiles(const std::string& base, const ImportedChart& chart, const std::string& number,
                    const std::string& issueDate, ChartCatEntry& entry, std::string& msg) {
    for (int p = 0; p < int(chart.Plans.size()); ++p) {
        const ImportedPlan& ip = chart.Plans[size_t(p)];
        std::string planText = ChartFileLine("PLN", chart.Country, number, issueDate, "  Plan " + std::to_string(p)) + "\r\n" +
                               FormatPlanRecord(PlanRecordFor(ip, p)) + "\r\n" + ip.GeorefText;
        if (!Write(base + "." + PlanExtension('P', p), planText, msg)) return false;
        std::string notes = ChartFileLine("NTS", chart.Country, number, issueDate, "  Notes") + "\r\n";
        if (p == 0)
            for (const std::string& n : chart.Notes) notes += n + "\r\n";
        if (!Write(base + "." + PlanExtension('N', p), notes, msg)) return false;
        AddPlanToEntry(entry, ip, number, issueDate, p);
    }
    return true;
}

// Renames the staging folder into the chart's place: an installed set is
// moved aside first and deleted once the new one is in. On failure the
// staging folder is removed and the installed set left as it was.
bool MoveIntoPlace(const std::string& root, const std::string& stage, const std::string& number, std::string& message) {
    std::string finalDir = FolderOf(WithTrailingSlash(root) + ChartHeaderPath(number));
    std::string old = stage + ".old";
    std::error_code ec;
    std::string existing = ResolvePath(finalDir);
    if (FolderExists(existing)) {
        fs::rename(existing, ResolvePath(FolderOf(stage)) + "/" + fs::path(NativePath(old)).filename().string(), ec);
        if (ec) {
            RemoveTree(stage);
            message = "Cannot replace the installed chart " + number + ": " + ec.message();
            return false;
        }
    }
    fs::rename(ResolvePath(stage), ResolvePath(FolderOf(stage)) + "/" + number, ec);
    if (ec) {
        RemoveTree(stage);
        message = "Cannot install chart " + number + ": " + ec.message();
        return false;
    }
    RemoveTree(old);
    return true;
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
    std::string stage;
    if (!MakeStage(root, number, stage, r.Message)) return r;
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
    std::string stage;
    if (!MakeStage(root, number, stage, r.Message)) return r;
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
    const std::string edition = chart.EditionDate.empty() ? issueDate : chart.EditionDate;
    ChartCatEntry entry = EntryFor(chart, number, issueDate, edition, code);
    std::string msg;
    if (!Write(base + ".HDR", FormatHeaderText(HeaderFor(chart, number, issueDate, edition, specialWarnings)), msg) ||
        !WritePlanFiles(base, chart, number, issueDate, entry, msg)) {
        RemoveTree(stage);
        r.Message = msg;
        return r;
    }
    if (!MoveIntoPlace(root, stage, number, r.Message)) return r;
    std::string folder = cat_.CatalogueFolder(root);
    if (!AddChartToCatalogue(folder, entry, msg) || !RebuildGridFiles(folder, cat_, root, msg)) {
        r.Message = msg;
        return r;
    }
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
