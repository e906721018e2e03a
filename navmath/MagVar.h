// MagVar: the magnetic variation (declination) at a position, from the
// International Geomagnetic Reference Field.
//
// What it answers. The angle from true north to the direction a compass
// needle settles in, at sea level, in degrees, EAST POSITIVE: 3.5 means
// magnetic north lies 3.5° east of true north, so a true course of 100°
// is a magnetic course of 96.5°. Every waypoint, route point and boundary
// mark keeps its own value (MagVar), and the vessel one (VesselVariation).
//
// The model. Files of Gauss coefficients g and h (nanotesla, Schmidt
// semi-normalised, reference radius 6371.2 km), one an epoch five years
// apart, in the dat folder of the install (AppDatPath):
//     DGRF45.DAT ... DGRF20.DAT   definitive models, 1945.0 to 2020.0
//     IGRF25.DAT                  the model of 2025.0
//     IGRF25S.DAT                 its secular variation, nT a year
// Each holds a title line (skipped), a line "maxDegree radius epoch", then
// one line "n m g h" for n = 1..maxDegree, m = 0..n. Between two epochs
// each coefficient is interpolated linearly in the year; after 2025.0 the
// secular variation carries the 2025 model forward. The model is good from
// 1945.0 to 2030.0: a year before is taken as 1945.0, a year after as
// 2030.0 (a ship's clock far off is not a reason to give no variation).
//
// The synthesis. The position is taken as geodetic on WGS84 at sea level
// and turned geocentric; the field's north (X) and east (Y) components are
// the usual sums over Schmidt quasi-normalised associated Legendre
// functions of the colatitude; declination = atan2(Y, X), rotated back to
// the geodetic north. At the geographic poles the direction of north is
// undefined; the value there is a limit taken a hair off the pole.
//
// Caching and errors. The caller gives the year (the plotter takes the whole
// year of its clock, "yyyy", so two dates of one year give the same value),
// and the model of that year is read once and kept, so a call costs one
// synthesis (well under a microsecond for degree 13). A model that cannot be
// read gives a variation of 0 until another year is asked for, and its error
// (MagVarError::CannotReadCoefficients) is returned by the one call that
// tried the files: the caller that shows it shows it once a year. The text
// and title the plotter shows are MagVarErrorText and kMagVarErrorTitle.
//
// Worked example (the IGRF-14 check value): at 53.16°S 70.91°W in 1950.0,
//   magVar.VariationForYear(LatLong{-70.91 * 3600, -53.16 * 3600}, 1950.0)  // 17.16 (east)
#pragma once
#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "core/Types.h"

namespace ombra {

// Room for the coefficients of degree 15: 135 g and 120 h.
constexpr int kCoefficientG = 144;
constexpr int kCoefficientH = 120;
constexpr int kMaxModelDegree = 15;

using CoefficientsG = std::array<float, kCoefficientG>;
using CoefficientsH = std::array<float, kCoefficientH>;

// Where g(n, m) and h(n, m) (m > 0) lie in the arrays: in file order,
// n = 1.., m = 0..n; h has no m = 0 entries.
constexpr int GIndex(int n, int m) { return n * (n + 1) / 2 - 1 + m; }
constexpr int HIndex(int n, int m) { return n * (n - 1) / 2 + m - 1; }

// The results of ReadCoefficients.
namespace coefficients {
constexpr int Ok = 0;
constexpr int CannotRead = -1;     // missing, unreadable, not a file
constexpr int WrongOrder = -2;     // a line's n or m is not the one expected
constexpr int BadHeader = -3;      // degree outside 1..15, radius not positive, year not a year, file too big
constexpr int NotANumber = -4;     // a value is not a number
constexpr int EndsEarly = -5;      // the file ends before its last coefficient
}  // namespace coefficients

// Reads one coefficient file. On success returns 0 with the arrays filled
// (entries beyond the degree zeroed); otherwise one of the codes above, and
// the outputs are not to be used. Never reads past the text it was given.
int ReadCoefficients(const std::string& fileName, int16_t& maxDegree, int16_t& year, CoefficientsG& gArray,
                     CoefficientsH& hArray, float* radius = nullptr);
// The same on the text of a file already read.
int ParseCoefficients(std::string_view text, int16_t& maxDegree, int16_t& year, CoefficientsG& gArray,
                      CoefficientsH& hArray, float* radius = nullptr);

// What a variation call can go wrong with.
enum class MagVarError {
    None = 0,
    CannotReadCoefficients,  // a coefficient file of the year is missing or damaged
};
// "Error reading coefficients file." for CannotReadCoefficients, "" for None.
const char* MagVarErrorText(MagVarError error);
// The title of the message that shows an error.
inline constexpr const char* kMagVarErrorTitle = "Magnetic Variation";

// A field model for one moment.
struct MagModel {
    int16_t maxDegree = 0;
    float radius = 6371.2f;  // km
    double year = 0.0;       // the moment it stands for, after limiting
    CoefficientsG g{};
    CoefficientsH h{};
};

// Declination in degrees, east positive, at a geodetic latitude and
// longitude in radians, at sea level.
double Declination(const MagModel& model, double latitude, double longitude);

class MagVar {
public:
    static constexpr int kFirstEpoch = 1945;
    static constexpr int kLastEpoch = 2025;
    static constexpr int kEpochStep = 5;
    static constexpr double kForecastYears = 5.0;  // the secular variation's reach after kLastEpoch

    // `datPath`: the folder of the coefficient files, in the program's form
    // ("...\dat\") or native.
    explicit MagVar(std::string datPath);
    // Points at another folder (once the start-up has fixed AppDatPath);
    // the cached model is dropped.
    void SetDatPath(std::string datPath);
    const std::string& DatPath() const { return datPath_; }

    // "DGRF50.DAT" for a definitive epoch, "IGRF25.DAT" for the last.
    static std::string CoefficientFileName(int epoch);
    // "IGRF25S.DAT".
    static std::string SecularVariationFileName();

    // Reads the files for `year` and interpolates. Returns 0, or the code of
    // the first file that failed (and `failedFile` names it). No message,
    // no cache: the plain loader.
    int LoadModel(double year, MagModel& result, std::string* failedFile = nullptr) const;

    // The variation at `position` for a (possibly fractional) year, cached
    // per year. 0 when the year's model cannot be read; `error`, when given,
    // is set to the error of the call that read the files and failed, and to
    // None on every other call (a year already known bad stays quiet).
    float VariationForYear(const LatLong& position, double year, MagVarError* error = nullptr) {
        return float(DeclinationForYear(position, year, error));
    }
    // The same before it is narrowed to the 32-bit float the plotter keeps.
    double DeclinationForYear(const LatLong& position, double year, MagVarError* error = nullptr);

    // The cached model for `year`, loading it if needed; nullptr when its
    // files cannot be read (`error` as for VariationForYear).
    const MagModel* ModelFor(double year, MagVarError* error = nullptr);
    // How many times files were read: one per year asked, once.
    int Loads() const { return loads_; }

private:
    std::string FilePath(const std::string& name) const;

    std::string datPath_;
    std::optional<MagModel> cached_;
    double cachedYear_ = 0.0;
    bool cachedFailed_ = false;
    bool haveCache_ = false;
    int loads_ = 0;
};

}  // namespace ombra
