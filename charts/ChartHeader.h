// ChartHeader: the files of one chart and its text header.
//
// A chart lives in one folder under the chart root, named by its number:
//
//   raschts\GGG\NUMBER\NUMBER.HDR   header, 4 lines (this file)
//                      NUMBER.PAL   palette          NUMBER.CHR/.CHI  raster, full resolution
//                      NUMBER.Pnn   plan nn          NUMBER.LOR/.LOI  raster, low resolution
//                      NUMBER.Nnn   notes (00 the chart's, nn plan nn's)
//
// GGG is the first three digits of the number's digits formatted "00000":
// chart 2675 lies in 026, chart 1234A in 012 (its letter stays in the file
// names), chart 4000 in 040. Other files of the set are named by
// overwriting the last three characters of the ".HDR" path.
//
// Every text file of the set begins with a file line: type (3 characters),
// country (2), chart number (8), file issue date YYYYMMDD (columns 14-21),
// then whatever the type wants. The header's own line 1 continues with the
// edition date, the plan count and the format version; lines 2-4 are cut
// into fields by fixed columns (1-based), and columns past a line's end
// read as empty text or zero. Fixed-length texts are kept blank-padded to
// their length ("1234A" in an 8-character field is "1234A   ").
//
//   ChartHeaderPath("1234A") == "raschts\\012\\1234A\\1234A.HDR"
#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "charts/Plans.h"

namespace ombra {

class ErrorReporter;

struct ChartHeader {
    std::string FileType;        // 3
    std::string Country;         // 2
    std::string ChartNumber;     // 8
    std::string FileIssueDate;   // 8
    std::string EditionDate;     // 8
    int16_t PlanCount = 0;
    float FormatVersion = 0.0f;
    std::string Reserved1;       // 2
    std::string Reference1;      // 9
    std::string Reference2;      // 9
    std::string Reference3;      // 8
    std::string LibraryTag;      // 3, the chart library's working field
    std::string Title;           // 100
    std::string Flags1;          // 5
    std::string Flags2;          // 2
    std::string Flags3;          // 2
    int16_t ImageBlockA = 0, ImageBlockB = 0;
    int16_t LayoutA = 0, LayoutB = 0, LayoutC = 0, LayoutD = 0;
    float ValueA = 0.0f, ValueB = 0.0f, ValueC = 0.0f;
    std::string SpecialWarnings;
    std::vector<std::string> PlanNames;
    std::vector<ChartPlan> Plans;  // 0 .. PlanCount
    int16_t FirstPlan = 0;
    bool OutOfDate = false;
    int16_t HeaderLineLength = 0;
};

// Names of the chart set.

// The header path of a chart number, relative to the chart root, with "\\"
// between folders: "raschts\\GGG\\NUMBER\\NUMBER.HDR". Trailing blanks of
// the number are dropped; a number with no digits at all is grouped under
// "000". "" for an empty (or all blank) number. Never fails.
std::string ChartHeaderPath(std::string_view chartNumber);
// A path of the set from the ".HDR" path: its last three characters
// replaced by `ext3` ("CHR", "P01"). A path shorter than three characters
// comes back unchanged.
std::string ChartFilePath(const std::string& headerPath, const std::string& ext3);
// "P" or "N" (`kind`) and the plan number formatted "00": PlanExtension('P', 3)
// is "P03". Plans past 99 give three digits.
std::string PlanExtension(char kind, int plan);

// Fixed columns. Every function here takes any text and never fails.

// Text cut from 1-based columns first..last (inclusive); what lies past the
// line's end is left out, and "" comes back when `first` is 0, past the
// end, or after `last`.
std::string Columns(std::string_view line, size_t first, size_t last);
// The text blank-padded or cut to `length` characters.
std::string FixedText(std::string_view text, size_t length);
// The numeric value of a field as a 16-bit integer: the leading number of
// the text (blanks or letters read 0), rounded half to even; 0 when it is
// outside -32768..32767. A field is read, not judged: the value is kept.
int16_t Int16Of(std::string_view text);

// The header.

// Fills `header` from the text of a ".HDR" (its first four lines, each
// ending at LF with an optional CR). Missing lines and columns read as
// empty text or 0; Plans gets PlanCount + 1 blank plans (none when
// PlanCount is negative). The fields that do not come from the file
// (LibraryTag, PlanNames, FirstPlan, OutOfDate) are left as they are.
// No I/O and no messages: any text is accepted.
void ParseHeaderText(std::string_view text, ChartHeader& header);
// Reads the ".HDR" at `path` (program form, folders by "\\", any case) into
// `header`, keeping its catalogue facts (FirstPlan, PlanNames, OutOfDate).
// A missing, unreadable or oversized (over 4 MB) file is reported under
// "ReadHeaderFile" and gives false with `header` unchanged.
bool ReadHeaderFile(const std::string& path, ChartHeader& header, ErrorReporter& errors);
// The four lines of a header, each ending in CR LF, as chart installation
// writes them; numbers past their columns are clamped (PlanCount to 0..99).
// ParseHeaderText reads back the fields it wrote.
std::string FormatHeaderText(const ChartHeader& header);

// The file line that begins every text file of a set: type (3 columns),
// country (2), number (8), issue date (8), each blank-padded or cut, then
// `rest` as it is.
std::string ChartFileLine(std::string_view type, std::string_view country, std::string_view number,
                          std::string_view issueDate, std::string_view rest = "");
// Columns 14-21 of a text file's first line: its issue date, YYYYMMDD as
// written. "" when the file is missing or unreadable, or its line is shorter;
// only the first 256 bytes are read.
std::string FileIssueDateOf(const std::string& path);

// The edition date shown day, month, year: "20240601" -> "01/06/2024".
// A shorter text is blank-padded first, so a bad date gives blanks, not a
// failure.
std::string EditionDateText(std::string_view editionDate);

}  // namespace ombra
