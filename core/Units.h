// Units: the user's choice of units, applied only where a value is shown
// or typed. Inside the plotter ranges are nautical miles, speeds knots and
// angles degrees true.
//
// Shown values are converted with 1852/1609.3 (statute miles) and
// 1852/1000 (kilometres); typed values come back with 0.8689525 and
// 0.5399568 as 32-bit floats. The two directions are deliberately not exact
// inverses, so a value shown, typed back and shown again may move in its
// last place, as it always has on this plotter.
//
// Contract:
//   - A unit code is 0, 1 or 2. A code out of range is treated as 0 by every
//     function here (nautical miles, knots, true), never as an error.
//   - Angles are never converted: ToDisplay and FromDisplay leave an angle
//     as it is; only its suffix follows AngleUnit.
//   - Formats are those of Format (core/Format.h): "0.00", "##0.0", ...
//   - LoadUnits reads the three keys and never writes; SaveUnits writes the
//     three keys and nothing else (UnitsVesselAngle is not the user's choice
//     of units and is left alone).
//
//   units.DistanceUnit = 1;  units.ToDisplay(UnitKind::Distance, 1.0f, "0.00") == "1.15"
#pragma once
#include <cstdint>
#include <string>
#include <string_view>

namespace ombra {

class Registry;

enum class UnitKind : int16_t { Distance = 0, Speed = 1, Angle = 2 };

class Units {
public:
    int16_t DistanceUnit = 0;  // 0 nautical miles, 1 statute miles, 2 kilometres
    int16_t SpeedUnit = 0;     // 0 knots, 1 MPH, 2 KPH
    int16_t AngleUnit = 0;     // 0 true, 1 magnetic, 2 compass

    // Reads the three keys; a text that matches no entry leaves the value 0.
    void LoadUnits(const Registry& reg);
    void SaveUnits(Registry& reg) const;

    // The suffix shown after a value: "NM", "M", "Km"; "Kts", "MPH", "K/H";
    // "°T", "°M", "°C" (UTF-8).
    std::string UnitText(UnitKind kind) const;
    // `value` (nautical miles, knots or degrees) in the chosen unit, formatted.
    std::string ToDisplay(UnitKind kind, float value, std::string_view format) const;
    // A value typed in the chosen unit, converted in place back to nautical
    // miles or knots.
    void FromDisplay(UnitKind kind, float& value) const;
    bool UnitsIsCompass() const { return AngleUnit == 2; }

    // The stored texts of each choice, in unit order; a unit out of range
    // gives the text of unit 0.
    static const char* DistanceKeyText(int unit);
    static const char* SpeedKeyText(int unit);
    static const char* AngleKeyText(int unit);
};

}  // namespace ombra
