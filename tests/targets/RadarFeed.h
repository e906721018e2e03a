// A plotter sailing near 50°N 5°W (tests/alarms/FixFeed.h) with ARPA input
// on port 2: TTM and OSD sentences go in through the port and the tick.
#pragma once
#include <string>

#include "plotter/WindowlessShell.h"
#include "tests/alarms/FixFeed.h"

namespace ombra::test {

struct RadarShell {
    WindowlessShell shell;
};

template <class ShellHolder = RadarShell>
struct RadarSailing : ShellHolder, Sailing {
    explicit RadarSailing(int delay = 20) : Sailing(this->shell) {
        Set("ARPAEnable", "1");
        Set("ARPAPort", "2");
        Set("ARPADelay", std::to_string(delay).c_str());
    }
    // "RATTM,nn,range,bearing,T,speed,course,T,cpa,tcpa,unit,name,status".
    static std::string Ttm(const std::string& number, const std::string& range, const std::string& unit,
                           const std::string& name, const std::string& status, const std::string& bearing = "045.0") {
        return "RATTM," + number + "," + range + "," + bearing + ",T,10.0,180.0,T,0.5,12.0," + unit + "," + name + "," +
               status + ",,103000.00,A";
    }
    void Radar(const std::string& body) { comms.Feed(2, Sentence(body)); }
    size_t Asked(const std::string& text) const {
        size_t n = 0;
        for (const auto& a : dialogs.asked) n += a.text.find(text) != std::string::npos;
        return n;
    }
};

}  // namespace ombra::test
