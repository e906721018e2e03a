#include "core/Tables.h"

namespace ombra {

namespace {
struct CodeText {
    const char* code;
    const char* text;
};
#include "core/TablesData.inc"

static const CodeText kDepthUnits[] = {
    {"1", "METRES"}, {"2", "Fathoms/feet"}, {"3", "Fathoms/fractions"},
    {"4", "Fathoms"}, {"5", "FEET"}, {"6", "No depths"},
};

template <size_t N>
std::string Lookup(const CodeText (&table)[N], std::string_view code) {
    for (const CodeText& e : table)
        if (code == e.code) return e.text;
    return "";
}
}  // namespace

std::string DepthUnitText(std::string_view code) { return Lookup(kDepthUnits, code); }
std::string TidalLevelText(std::string_view code) { return Lookup(kTidalLevels, code); }
std::string CountryText(std::string_view code) { return Lookup(kCountries, code); }
std::string DatumText(std::string_view code) { return Lookup(kDatums, code); }
size_t CountryCount() { return sizeof kCountries / sizeof kCountries[0]; }
size_t DatumCount() { return sizeof kDatums / sizeof kDatums[0]; }
size_t TidalLevelCount() { return sizeof kTidalLevels / sizeof kTidalLevels[0]; }

}  // namespace ombra
