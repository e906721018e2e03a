// What the "AIS Settings" dialog (FrmCommAIS) shows and what its OK does,
// without a window: the Qt form fills its controls from these values and
// hands them back.
//
// AIS comes from a port of its own or, with "Use AIS data from GPS port",
// from the GPS port's "!" sentences (the port and speed rows then do not
// apply). The speed is the one stored for the AIS and ARPA port. A changed
// port is used when the GPS is next started; everything else at once.
#pragma once
#include <string>

namespace ombra {

struct AisSettings;
struct CommSettings;
class Registry;

struct AisDialogValues {
    bool Enable = false;      // ChkAISEnable
    bool UseGPSPort = false;  // ChkAISUseGPSPort
    std::string Port, Device, BaudRate;
    bool Names = false;       // ChkAISNames
    std::string Timeout;      // TxtTargetTimeout, seconds
    bool CpaAlarm = false;    // ChkCpaAlarm
    std::string CpaRange;     // TxtCpaRange, NM
    std::string CpaTime;      // TxtCpaTime, minutes
};

AisDialogValues LoadAisDialog(const Registry& reg, const CommSettings& comm, const AisSettings& ais);
// Stores the values; numbers that do not read keep what was there.
void SaveAisDialog(Registry& reg, CommSettings& comm, AisSettings& ais, const AisDialogValues& v);

}  // namespace ombra
