// CatalogueWriter: putting charts into the catalogue and taking them out.
//
// Adding a chart appends its plan records to Plan.CAT and its record to
// Chart.CAT, then rewrites Chart.PTR with the chart's line (replacing an
// older one of the same number) and rebuilds the grid files. Each file is
// replaced atomically, and in that order, so that a crash leaves either the
// old catalogue or the new one readable: records are only ever appended
// before a pointer names them. Removing a chart rebuilds the catalogue from
// the charts that remain, which also drops the records that earlier
// replacements left unreferenced.
//
// Grid files: for each whole degree of latitude and longitude that a
// chart's outlines (the chart's and its plans') reach into, the file of
// that cell (ChartCat.h) gets a line
//     kind (1 character) | chart number (8) | offset in Chart.CAT (8)
// kind "1" when the chart's outline covers the whole cell, so no outline
// test is needed, and "2" when it covers part of it. A file begins with a
// kind "0" line naming its cell.
#pragma once
#include <string>
#include <vector>

#include "charts/ChartCat.h"

namespace ombra {

// The four lines of a Chart.CAT record (CR LF after each), given the byte
// offsets of its plans' records in Plan.CAT.
std::string FormatChartCatRecord(const ChartCatEntry& entry, const std::vector<int64_t>& planOffsets);
std::string FormatPlanCatRecord(const ChartCatPlan& plan);

struct CatalogueLine {
    std::string ChartNumber;  // trimmed
    int64_t Offset = 0;       // from 0
};
// The lines of Chart.PTR; empty when there is none.
std::vector<CatalogueLine> ReadChartPointers(const std::string& catalogueFolder);

// `catalogueFolder` is the folder of Chart.PTR (program form or native).
bool AddChartToCatalogue(const std::string& catalogueFolder, const ChartCatEntry& entry, std::string& error);
bool RemoveChartFromCatalogue(const std::string& catalogueFolder, const std::string& chartNumber, ChartCat& cat,
                              const std::string& root, std::string& error);
// Rewrites every grid file from the charts of Chart.PTR.
bool RebuildGridFiles(const std::string& catalogueFolder, ChartCat& cat, const std::string& root, std::string& error);

}  // namespace ombra
