#include "charts/Plans.h"

#include <cstdio>

#include "charts/ChartHeader.h"
#include "core/ErrorReport.h"
#include "core/Format.h"
#include "core/Val.h"
#include "platform/api/ChartLibrary.h"

namespace ombra {

void ParsePlanRecord(std::string_view record, ChartPlan& p) {
    size_t e = record.find_first_of("\r\n");
    std::string_view r = record.substr(0, e);
    p.PlanNumberInFile = Int16Of(Columns(r, 1, 1));
    p.PlanFlag = Int16Of(Columns(r, 2, 2));
    p.Title = Trim(Columns(r, 3, 102));
    p.Code = FixedText(Columns(r, 103, 104), 2);
    p.Field7 = FixedText(Columns(r, 105, 134), 30);
    p.Field5 = FixedText(Columns(r, 135, 147), 13);
    p.Field6 = FixedText(Columns(r, 148, 159), 12);
    p.Scale = FixedText(Columns(r, 160, 167), 10);
    p.Field1 = FixedText(Columns(r, 168, 179), 12);
    p.Field2 = FixedText(Columns(r, 180, 191), 12);
    p.Field3 = FixedText(Columns(r, 192, 203), 12);
    p.Field4 = FixedText(Columns(r, 204, 215), 12);
    p.HorizDatum = FixedText(Columns(r, 216, 218), 3);
    p.Flag1 = FixedText(Columns(r, 219, 219), 1);
    p.DepthUnits = FixedText(Columns(r, 220, 220), 1);
    p.DepthDatum = FixedText(Columns(r, 221, 222), 2);
    p.Flag2 = FixedText(Columns(r, 223, 223), 1);
    p.Flag3 = FixedText(Columns(r, 224, 225), 2);
    p.ShiftLat = FixedText(Columns(r, 226, 232), 7);
    p.ShiftLong = FixedText(Columns(r, 233, 239), 7);
    p.ShiftSourceLat = FixedText(Columns(r, 240, 245), 6);
    p.ShiftSourceLong = FixedText(Columns(r, 246, 251), 6);
    p.HasShift = p.ShiftLat != "9999999";
}

std::string FormatPlanRecord(const ChartPlan& p) {
    char n[8];
    std::snprintf(n, sizeof n, "%d", std::clamp<int>(p.PlanNumberInFile, 0, 9));
    char f[8];
    std::snprintf(f, sizeof f, "%d", std::clamp<int>(p.PlanFlag, 0, 9));
    std::string scale = Trim(p.Scale);
    // The scale field is 8 columns, right-aligned.
    std::string s8 = scale.size() >= 8 ? scale.substr(0, 8) : std::string(8 - scale.size(), ' ') + scale;
    return std::string(n) + f + FixedText(p.Title, 100) + FixedText(p.Code, 2) + FixedText(p.Field7, 30) +
           FixedText(p.Field5, 13) + FixedText(p.Field6, 12) + s8 + FixedText(p.Field1, 12) + FixedText(p.Field2, 12) +
           FixedText(p.Field3, 12) + FixedText(p.Field4, 12) + FixedText(p.HorizDatum, 3) + FixedText(p.Flag1, 1) +
           FixedText(p.DepthUnits, 1) + FixedText(p.DepthDatum, 2) + FixedText(p.Flag2, 1) + FixedText(p.Flag3, 2) +
           FixedText(p.ShiftLat, 7) + FixedText(p.ShiftLong, 7) + FixedText(p.ShiftSourceLat, 6) +
           FixedText(p.ShiftSourceLong, 6);
}

bool ReadPlanFiles(const std::string& headerPath, ChartHeader& header, ChartLibrary& library, ErrorReporter& errors) {
    return errors.Guard("ReadPlanFiles", [&] {
        int first = 0;
        if (header.FirstPlan != 0) {
            if (!header.Plans.empty()) header.Plans[0].Title = Trim(header.Title);
            first = 1;
        }
        std::string base = headerPath.size() >= 3 ? headerPath.substr(0, headerPath.size() - 3) : headerPath;
        for (size_t p = size_t(first); p < header.Plans.size(); ++p) {
            std::string text = library.DecryptPlanFile(base + PlanExtension('P', int(p)));
            if (text.empty()) continue;
            ParsePlanRecord(text, header.Plans[p]);
        }
    });
}

std::string ShiftLatText(const ChartPlan& p) {
    if (!p.HasShift) return "N/A";
    std::string v = Trim(p.ShiftLat.size() > 1 ? p.ShiftLat.substr(1) : "");
    return v + (p.ShiftLat.rfind('+', 0) == 0 ? " minutes of latitude North" : " minutes of latitude South");
}

std::string ShiftLongText(const ChartPlan& p) {
    if (!p.HasShift) return "N/A";
    std::string v = Trim(p.ShiftLong.size() > 1 ? p.ShiftLong.substr(1) : "");
    return v + (p.ShiftLong.rfind('+', 0) == 0 ? " minutes of longitude East" : " minutes of longitude West");
}

double PlanScale(const ChartPlan& p) { return IsNumeric(p.Scale) ? Val(p.Scale) : 0.0; }

std::string ScaleText(const ChartPlan& p) { return "1:" + Format(PlanScale(p), "#########"); }

}  // namespace ombra
