#include "instruments/CommSettings.h"

#include "core/Registry.h"
#include "core/Rounding.h"
#include "core/Val.h"

namespace ombra {

bool SettingFlag(const std::string& text) {
    std::string t = Trim(text);
    if (t == "True") return true;
    return IsNumeric(t) && Val(t) != 0.0;
}

namespace {
int16_t Int16Of(const Registry& reg, Key k, int16_t fallback) {
    double v = reg.GetNumber(k);
    return v >= -32768.0 && v <= 32767.0 ? int16_t(RoundEven(v)) : fallback;
}
int32_t Int32Of(const Registry& reg, Key k, int32_t fallback) {
    double v = reg.GetNumber(k);
    return v >= -2147483648.0 && v <= 2147483647.0 ? int32_t(RoundEven(v)) : fallback;
}
}  // namespace

void CommSettings::Load(const Registry& reg) {
    GPSPort = Int16Of(reg, Key::GPSPort, 0);
    GPSBaudRate = Int32Of(reg, Key::GPSBaudRate, 4800);
    GPSDelay = Int32Of(reg, Key::GPSDelay, 20);
    DiffGPS = SettingFlag(reg.GetSetting(Key::DiffGPS));
    Checksums = SettingFlag(reg.GetSetting(Key::Checksums));
    WPMode = Int16Of(reg, Key::WPMode, 0);
    // The loader only ever sets a choice true.
    if (SettingFlag(reg.GetSetting(Key::NMEA_GGA))) NMEA_GGA = true;
    if (SettingFlag(reg.GetSetting(Key::NMEA_GLL))) NMEA_GLL = true;
    if (SettingFlag(reg.GetSetting(Key::NMEA_RMC))) NMEA_RMC = true;
    if (SettingFlag(reg.GetSetting(Key::NMEA_AIVDO))) NMEA_AIVDO = true;
    AISPort = Int16Of(reg, Key::AISPort, 0);
    AISEnable = SettingFlag(reg.GetSetting(Key::AISEnable));
    AISUseGPSPort = SettingFlag(reg.GetSetting(Key::AISUseGPSPort));
    AISTimeout = reg.GetNumber(Key::AISTimeout);
    ARPAPort = Int16Of(reg, Key::ARPAPort, 0);
    ARPABaudRate = Int32Of(reg, Key::ARPABaudRate, 4800);
    AISBaudRate = ARPABaudRate;  // one stored rate for both
    ARPADelay = Int32Of(reg, Key::ARPADelay, 20);
    ARPAEnable = SettingFlag(reg.GetSetting(Key::ARPAEnable));
    GyroPort = Int16Of(reg, Key::GyroPort, 0);
    GyroBaudRate = Int32Of(reg, Key::GyroBaudRate, 4800);
    if (SettingFlag(reg.GetSetting(Key::GyroUseCOG))) GyroUseCOG = true;
    if (SettingFlag(reg.GetSetting(Key::GyroUseGPSPort))) GyroUseGPSPort = true;
    if (SettingFlag(reg.GetSetting(Key::GyroUseGyroPort))) GyroUseGyroPort = true;
    AutopilotActive = SettingFlag(reg.GetSetting(Key::AutopilotActive));
    AutopilotAdvance = SettingFlag(reg.GetSetting(Key::AutopilotAdvance));
    AutopilotSettings = Int32Of(reg, Key::AutopilotSettings, 511);
}

}  // namespace ombra
