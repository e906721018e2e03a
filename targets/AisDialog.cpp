#include "targets/AisDialog.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "core/Registry.h"
#include "instruments/CommSettings.h"
#include "instruments/InstrumentDialogs.h"
#include "targets/Ais.h"

namespace ombra {

namespace {

std::string Text(double v) {
    char buf[32];
    std::snprintf(buf, sizeof buf, "%g", v);
    return buf;
}

// A number typed in a box; false when there is none or it is negative.
bool Read(const std::string& text, double& out) {
    char* end = nullptr;
    double v = std::strtod(text.c_str(), &end);
    if (end == text.c_str() || !std::isfinite(v) || v < 0.0) return false;
    out = v;
    return true;
}

}  // namespace

AisDialogValues LoadAisDialog(const Registry& reg, const CommSettings& comm, const AisSettings& ais) {
    AisDialogValues v;
    v.Enable = comm.AISEnable;
    v.UseGPSPort = comm.AISUseGPSPort;
    v.Port = std::to_string(comm.AISPort);
    v.Device = PortDevice(reg, comm.AISPort);
    v.BaudRate = std::to_string(comm.AISBaudRate);
    v.Names = ais.Labels;
    v.Timeout = Text(comm.AISTimeout);
    v.CpaAlarm = ais.CpaAlarm;
    v.CpaRange = Text(ais.CpaRange);
    v.CpaTime = Text(ais.CpaTime);
    return v;
}

void SaveAisDialog(Registry& reg, CommSettings& comm, AisSettings& ais, const AisDialogValues& v) {
    comm.AISEnable = v.Enable;
    comm.AISUseGPSPort = v.UseGPSPort;
    double n = 0;
    if (!v.UseGPSPort) {
        if (Read(v.Port, n) && n <= 8) comm.AISPort = int16_t(n);
        if (Read(v.BaudRate, n) && n >= 1 && n <= 1e7) comm.AISBaudRate = comm.ARPABaudRate = int32_t(n);
        SavePortDevice(reg, comm.AISPort, v.Device);
    }
    if (Read(v.Timeout, n)) comm.AISTimeout = n;
    ais.Labels = v.Names;
    ais.CpaAlarm = v.CpaAlarm;
    if (Read(v.CpaRange, n)) ais.CpaRange = n;
    if (Read(v.CpaTime, n)) ais.CpaTime = n;
    reg.SaveSetting(Key::AISEnable, comm.AISEnable ? "True" : "False");
    reg.SaveSetting(Key::AISUseGPSPort, comm.AISUseGPSPort ? "True" : "False");
    reg.SaveSetting(Key::AISPort, std::to_string(comm.AISPort));
    reg.SaveSetting(Key::ARPABaudRate, std::to_string(comm.AISBaudRate));
    reg.SaveSetting(Key::AISTimeout, Text(comm.AISTimeout));
    ais.Save(reg);
}

}  // namespace ombra
