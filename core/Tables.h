// Tables: the short codes of a chart's header in words.
//
// Each look-up is exact and case sensitive, and an unknown code gives "".
// The texts are kept as the chart producers' lists have them, odd spellings
// included ("Columbia", "Approx Lowest AstronomicalTide", "Afgooye , Somalia"),
// because they are shown to the navigator beside the chart's own notes.
//
//   CountryText("Pt") == "Portugal",  CountryText("PT") == ""
//   DatumText("WGD")  == "World Geodetic System 1984"
#pragma once
#include <string>
#include <string_view>

namespace ombra {

std::string DepthUnitText(std::string_view code);
std::string TidalLevelText(std::string_view code);
std::string CountryText(std::string_view code);
std::string DatumText(std::string_view code);

// Sizes of the tables, for the chart-details window's lists.
size_t CountryCount();
size_t DatumCount();
size_t TidalLevelCount();

}  // namespace ombra
