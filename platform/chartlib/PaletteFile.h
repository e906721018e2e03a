// PaletteFile: a chart's ".PAL", its colours in the three lights.
//
// The file is text. Its first line is the file line of every text file of a
// chart set (type "PAL", country, chart number, issue date at columns
// 14-21); then one line a colour:
//
//   PALGB4000    20240601  Ombra palette
//   0,FFFFFF,B4B4B4,3C0000,S
//   1,F5DFA6,6E6446,201808,L
//
// index (0..255), day, twilight and night colours as RRGGBB, and the kind
// of the colour: S sea, L land, - anything else (lines, text, symbols),
// which answers IsPointSea. Palette modes: 0 day, 1 twilight, 2 night.
// Missing indices paint black. A line that cannot be read makes the whole
// file unreadable: a chart is not drawn in guessed colours.
#pragma once
#include <string>
#include <string_view>
#include <vector>

#include "platform/api/ChartLibrary.h"

namespace ombra::chartlib {

// The first line of a chart set's text file: type (3), country (2),
// chart number (8), issue date YYYYMMDD (8), then free text.
std::string ChartFileLine(const std::string& type, const std::string& country, const std::string& number,
                          const std::string& issueDate, const std::string& rest);

std::string PaletteText(const std::string& fileLine, const std::vector<PaletteColour>& colours);
bool ParsePalette(std::string_view text, std::vector<PaletteColour>& colours, std::string& error);

// A colour in a light: mode 0 day, 1 twilight, 2 night.
inline Rgb ColourIn(const PaletteColour& c, int mode) { return mode == 1 ? c.Twilight : mode == 2 ? c.Night : c.Day; }
// The colour dimmed to a fraction of its brightness.
Rgb Dim(Rgb c, double f);
// Sea, land or other by the colour alone (for charts that do not say).
char GuessKind(Rgb day);

}  // namespace ombra::chartlib
