// Deviation: the vessel's compass deviation card, and a course in its three
// forms (true, magnetic, compass).
//
// The card. One correction for every 10 degrees of magnetic heading, 37
// entries (0°, 10°, ... 360°) of 32-bit floats; entry 36 stands for 360° and
// may be set apart from entry 0. Degrees, WEST POSITIVE, as the card's
// form asks ("enter + for W or - for E"): compass = magnetic + deviation.
//
// Between entries the correction follows a saw-tooth, not a straight line:
// the entry is picked by ROUNDING the heading to tens (ties to even), and
// the fraction is the units digit of the whole heading over ten. So from
// 5° on the blend starts from the entry above and runs on towards the one
// after it:
//     h = 344  ->  t[34] + 0.4 (t[35] - t[34])
//     h = 346  ->  t[35] + 0.6 (t[0]  - t[35])    (35 and 36 blend towards 0)
//     h = 355  ->  t[36] + 0.5 (t[0]  - t[36])    (35.5 rounds to even 36)
// Compasses have been corrected by this card for years; it is kept as is.
//
// A course in its forms: true; magnetic = true - variation (east positive)
// + 360, as a whole number modulo 360, marked "°M"; compass = magnetic +
// DeviationFor(magnetic), marked "°C"; true is marked "°T". Example, with
// variation 4.5° W (-4.5) and a card giving +2 at 300°: true 295.6 ->
// magnetic round(660.1) mod 360 = 300 °M -> compass 302 °C.
//
// The file "deviate.dat" (in the user's data folder): 37 lines of one number
// each, in card order, CR LF. A missing file leaves the card at zero; a
// damaged one keeps what was read before the damage and is reported.
#pragma once
#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "core/Types.h"

namespace ombra {

class ErrorReporter;

constexpr int kDeviationEntries = 37;
using DeviationCard = std::array<float, kDeviationEntries>;

// The correction for magnetic heading `heading` (degrees) by the card's
// saw-tooth. A heading outside 0..360 is first brought into 0..360; a NaN
// heading has no deviation.
float DeviationFor(const DeviationCard& table, float heading);

// The magnetic form of a true course: (course - variation + 360) rounded to
// a whole number (ties to even), modulo 360.
int32_t MagneticCourse(double trueCourse, float variation);

// A true course as every course text shows it (leg labels, the route
// window's bearings, dividers): mode 0 true as given; 1 magnetic by
// MagneticCourse; 2 compass, that magnetic course plus `deviation` (the
// card's value at it), folded into 0..360. One conversion, so that a leg
// reads the same on the chart and in its list.
double ShownCourse(double trueCourse, int16_t mode, double variation, double deviation);

// The course modes of the settings UnitsAngle and UnitsVesselAngle.
enum class CourseMode : int16_t { True = 0, Magnetic = 1, Compass = 2 };
// "°T", "°M" or "°C"; an unknown mode is true.
const char* CourseMark(int16_t mode);

class Deviation {
public:
    // `dataPath`: the folder of "deviate.dat", in the program's form or
    // native. `errors` reports a damaged or unwritable file.
    Deviation(std::string dataPath, ErrorReporter& errors);
    // The folder of "deviate.dat", once the start-up has fixed it.
    void SetDataPath(std::string dataPath) { dataPath_ = std::move(dataPath); }

    // The card in use.
    DeviationCard DeviationTable{};

    // Reads the card at start-up. A missing file leaves it at zero and is
    // not an error; a damaged file keeps the entries before the damage, the
    // rest zero, and is reported under "ReadDeviateDat". False on damage.
    bool ReadDeviateDat();
    // Writes the whole card, atomically. False (reported under
    // "SaveDeviateDat") when it cannot be written; the old file then stands.
    bool SaveDeviateDat();

    float DeviationFor(float heading) const { return ombra::DeviationFor(DeviationTable, heading); }
    // The course shown in a mode: true as given, magnetic by MagneticCourse,
    // compass = magnetic + deviation at that magnetic course.
    double CourseInMode(double trueCourse, int16_t mode, float variation) const;

    std::string FilePath() const;
    // The text of the file for a card.
    static std::string CardText(const DeviationCard& table);
    // Reads a card from the text of a file: the entries before the first
    // damage are filled, the rest zeroed. Returns how many were read (37 for
    // a whole card); `error` then says what was wrong and on which line.
    static int ParseCard(std::string_view text, DeviationCard& card, std::string* error = nullptr);

private:
    std::string dataPath_;
    ErrorReporter& errors_;
};

}  // namespace ombra
