// The instrument settings as the intake, the decoders and the vessel use
// them, read from the settings store once at start-up and again after a
// port dialog's OK.
//
// Ports are numbers of the port table (0 = none). AIS and ARPA share one
// stored baud rate, ARPABaudRate, so the two always read the same. Of the
// position sentences (NMEA_GGA, NMEA_GLL, NMEA_RMC, NMEA_AIVDO) the dialog
// keeps exactly one; of the gyro choices likewise, but the loader only ever
// sets a choice true, so a store holding several "True" keeps them all.
#pragma once
#include <cstdint>
#include <string>

namespace ombra {

class Registry;

struct CommSettings {
    int16_t GPSPort = 1, AISPort = 2, ARPAPort = 2, GyroPort = 2;
    int32_t GPSBaudRate = 4800, AISBaudRate = 4800, ARPABaudRate = 4800, GyroBaudRate = 4800;
    int32_t GPSDelay = 20, ARPADelay = 20;
    bool Checksums = false;
    bool AISEnable = false, ARPAEnable = false, AISUseGPSPort = false;
    bool GyroUseCOG = false, GyroUseGPSPort = false, GyroUseGyroPort = false;
    bool NMEA_GGA = false, NMEA_GLL = false, NMEA_RMC = false, NMEA_AIVDO = false;
    int16_t WPMode = 0;
    double AISTimeout = 300.0;
    int32_t AutopilotSettings = 511;
    bool AutopilotActive = false;
    bool AutopilotAdvance = false;
    bool DiffGPS = false;

    void Load(const Registry& reg);
};

// A stored flag as the old settings hold them: "True", or a non-zero number.
bool SettingFlag(const std::string& text);

}  // namespace ombra
