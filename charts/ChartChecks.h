// ChartChecks: is the chart whole, and is it the issue the catalogue says?
//
// Before a chart opens, and on the navigator's command, the chart's file
// set is tested for presence, and the issue date on each text file's first
// line (columns 14-21) is compared with the catalogue record:
//   ".HDR", ".Pnn" and ".PAL"   the record's HeaderIssueDate
//   ".N00"                      its NotesIssueDate
//   ".Nnn" (n >= 1)             the plan record's IssueDate
// A chart with a wrong date may still be opened, but is marked out of date
// and says so in the warnings bar. The slower full validation hands the
// raster files to the chart library's CheckCRC.
//
// Results of DisplayChecks: 0 stop the open, 1 out of date, 2 up to date.
// The checks read files only; nothing is changed but the caller's
// OutOfDate flag.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "charts/ChartCat.h"

namespace ombra {

class ChartLibrary;
class Dialogs;
class ErrorReporter;

class ChartChecks {
public:
    ChartChecks(Dialogs& dialogs, ErrorReporter& errors, const std::string& productName)
        : dialogs_(dialogs), errors_(errors), productName_(productName) {}

    // `planCount` and `firstPlan` from the catalogue: plan 0 of a chart
    // that has no main plan has no plan file.
    bool ChartFilesPresent(const std::string& headerPath, int planCount, int firstPlan = 0);
    int16_t DisplayChecks(const std::string& headerPath, const ChartCatEntry& entry);
    // The command on the chart in view: its header path and number.
    void QuickCheck(ChartCat& cat, const std::string& root, const std::string& headerPath, const std::string& chartNumber);
    // Full validation of one chart's raster checksums; the status line gets
    // "Validating file checksums." first. Reports the result and returns it.
    bool ValidateChecksums(ChartLibrary& library, const std::string& headerPath, const std::string& chartNumber,
                           std::string& statusLine);
    // Every installed chart; "All installed charts have valid data." when
    // all pass.
    bool ValidateAll(ChartLibrary& library, const std::vector<std::pair<std::string, std::string>>& charts,
                     std::string& statusLine);

private:
    Dialogs& dialogs_;
    ErrorReporter& errors_;
    const std::string& productName_;
};

}  // namespace ombra
