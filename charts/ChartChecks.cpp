#include "charts/ChartChecks.h"

#include "charts/ChartHeader.h"
#include "core/ErrorReport.h"
#include "core/Paths.h"
#include "core/Val.h"
#include "platform/api/ChartLibrary.h"
#include "platform/api/Dialogs.h"

namespace ombra {

namespace {
std::string FileName(const std::string& path) {
    size_t s = path.find_last_of("\\/");
    return s == std::string::npos ? path : path.substr(s + 1);
}
}  // namespace

bool ChartChecks::ChartFilesPresent(const std::string& headerPath, int planCount, int firstPlan) {
    std::vector<std::string> names;
    for (const char* e : {"HDR", "LOI", "LOR", "CHI", "CHR", "PAL"}) names.push_back(ChartFilePath(headerPath, e));
    for (int p = 0; p <= std::max(0, std::min(planCount, 99)); ++p) {
        names.push_back(ChartFilePath(headerPath, PlanExtension('N', p)));
        if (p >= firstPlan) names.push_back(ChartFilePath(headerPath, PlanExtension('P', p)));
    }
    for (const std::string& n : names) {
        if (!FileExists(n)) {
            dialogs_.MsgBox(FileName(n) + " is missing.", mb::Exclamation, productName_);
            return false;
        }
    }
    return true;
}

int16_t ChartChecks::DisplayChecks(const std::string& headerPath, const ChartCatEntry& entry) {
    int16_t result = 0;
    errors_.Guard("DisplayChecks", [&] {
        int planCount = std::clamp<int>(entry.PlanCount, 0, 99);
        if (!ChartFilesPresent(headerPath, planCount, entry.FirstPlan)) return;
        // The files in the order they are compared, with the date each should bear.
        std::vector<std::pair<std::string, std::string>> files;
        files.emplace_back(ChartFilePath(headerPath, "HDR"), entry.HeaderIssueDate);
        for (int p = entry.FirstPlan; p <= planCount; ++p)
            files.emplace_back(ChartFilePath(headerPath, PlanExtension('P', p)), entry.HeaderIssueDate);
        files.emplace_back(ChartFilePath(headerPath, "PAL"), entry.HeaderIssueDate);
        files.emplace_back(ChartFilePath(headerPath, "N00"), entry.NotesIssueDate);
        for (int p = 1; p <= planCount; ++p) {
            std::string want;
            for (const ChartCatPlan& cp : entry.Plans)
                if (cp.PlanNumber == p) want = cp.IssueDate;
            if (want.empty() && size_t(p) <= entry.Plans.size()) want = entry.Plans[size_t(p) - 1].IssueDate;
            files.emplace_back(ChartFilePath(headerPath, PlanExtension('N', p)), want);
        }
        result = 2;
        for (auto& [path, want] : files) {
            if (FixedText(FileIssueDateOf(path), 8) == FixedText(want, 8)) continue;
            int reply = dialogs_.MsgBox(FileName(path) + " has wrong File Issue date Do you want to continue ?",
                                        mb::YesNo | mb::Question, productName_);
            result = reply == mb::Yes ? 1 : 0;
            return;
        }
    });
    return result;
}

void ChartChecks::QuickCheck(ChartCat& cat, const std::string& root, const std::string& headerPath,
                             const std::string& chartNumber) {
    if (Trim(chartNumber).empty()) return;
    int64_t at = cat.FindChartPointer(root, chartNumber, false);
    if (at == 0) return;
    ChartCatEntry e;
    if (!cat.ReadChartCatEntry(root, at, e, false)) return;
    int16_t r = DisplayChecks(headerPath, e);
    if (r == 1) dialogs_.MsgBox("Chart needs to be updated.", mb::Exclamation, productName_);
    else if (r == 2) dialogs_.MsgBox("Quick check of chart completed successfully", mb::Exclamation, productName_);
}

bool ChartChecks::ValidateChecksums(ChartLibrary& library, const std::string& headerPath, const std::string& chartNumber,
                                    std::string& statusLine) {
    statusLine = "Validating file checksums.";
    bool ok = true;
    for (const char* e : {"CHI", "LOI"})
        if (!library.CheckCRC(ChartFilePath(headerPath, e))) ok = false;
    std::string number = Trim(chartNumber);
    if (ok) dialogs_.MsgBox("Chart " + number + " data is valid.", mb::Information, productName_);
    else dialogs_.MsgBox("Chart " + number + " data is invalid.\nReload from chart CD.", mb::Exclamation, productName_);
    return ok;
}

bool ChartChecks::ValidateAll(ChartLibrary& library, const std::vector<std::pair<std::string, std::string>>& charts,
                              std::string& statusLine) {
    statusLine = "Validating file checksums.";
    bool all = true;
    for (auto& [number, headerPath] : charts) {
        bool ok = library.CheckCRC(ChartFilePath(headerPath, "CHI")) && library.CheckCRC(ChartFilePath(headerPath, "LOI"));
        if (!ok) {
            all = false;
            dialogs_.MsgBox("Chart " + Trim(number) + " data is invalid.\nReload from chart CD.", mb::Exclamation, productName_);
        }
    }
    if (all) dialogs_.MsgBox("All installed charts have valid data.", mb::Information, productName_);
    return all;
}

}  // namespace ombra
