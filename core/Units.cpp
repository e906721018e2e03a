#include "core/Units.h"

#include "core/Format.h"
#include "core/Registry.h"

namespace ombra {

namespace {
const char* const kDistanceKeys[] = {"NauticalMiles", "StatuteMiles", "Kilometres"};
const char* const kSpeedKeys[] = {"Knots", "MPH", "KPH"};
const char* const kAngleKeys[] = {"True", "Magnetic", "Compass"};
const char* const kDistanceSuffix[] = {"NM", "M", "Km"};
const char* const kSpeedSuffix[] = {"Kts", "MPH", "K/H"};
const char* const kAngleSuffix[] = {"°T", "°M", "°C"};

int16_t Match(const std::string& text, const char* const (&keys)[3]) {
    for (int16_t i = 0; i < 3; ++i)
        if (text == keys[i]) return i;
    return 0;
}

int16_t Clamp(int16_t u) { return (u >= 0 && u <= 2) ? u : 0; }
}  // namespace

const char* Units::DistanceKeyText(int unit) { return kDistanceKeys[Clamp(int16_t(unit))]; }
const char* Units::SpeedKeyText(int unit) { return kSpeedKeys[Clamp(int16_t(unit))]; }
const char* Units::AngleKeyText(int unit) { return kAngleKeys[Clamp(int16_t(unit))]; }

void Units::LoadUnits(const Registry& reg) {
    DistanceUnit = Match(reg.GetSetting(Key::UnitsDistance), kDistanceKeys);
    SpeedUnit = Match(reg.GetSetting(Key::UnitsSpeed), kSpeedKeys);
    AngleUnit = Match(reg.GetSetting(Key::UnitsAngle), kAngleKeys);
}

void Units::SaveUnits(Registry& reg) const {
    reg.SaveSetting(Key::UnitsDistance, DistanceKeyText(DistanceUnit));
    reg.SaveSetting(Key::UnitsSpeed, SpeedKeyText(SpeedUnit));
    reg.SaveSetting(Key::UnitsAngle, AngleKeyText(AngleUnit));
}

std::string Units::UnitText(UnitKind kind) const {
    switch (kind) {
        case UnitKind::Distance: return kDistanceSuffix[Clamp(DistanceUnit)];
        case UnitKind::Speed: return kSpeedSuffix[Clamp(SpeedUnit)];
        case UnitKind::Angle: return kAngleSuffix[Clamp(AngleUnit)];
    }
    return "";
}

std::string Units::ToDisplay(UnitKind kind, float value, std::string_view format) const {
    int16_t unit = kind == UnitKind::Distance ? DistanceUnit : kind == UnitKind::Speed ? SpeedUnit : 0;
    double v = value;
    if (unit == 1) v = value * (1852.0 / 1609.3);
    else if (unit == 2) v = value * (1852.0 / 1000.0);
    return Format(v, format);
}

void Units::FromDisplay(UnitKind kind, float& value) const {
    int16_t unit = kind == UnitKind::Distance ? DistanceUnit : kind == UnitKind::Speed ? SpeedUnit : 0;
    if (unit == 1) value = value * 0.8689525f;
    else if (unit == 2) value = value * 0.5399568f;
}

}  // namespace ombra
