// The alarm windows. Each is modeless and on top; the alarms module
// keeps its caption, message and answer, the window only shows them.
#pragma once

namespace ombra {

enum class AlarmForm {
    Arrival = 0,   // "Waypoint Arrival": Yes / No
    CrossTrack,    // "XTE Alarm": OK
    Anchor,        // "Anchor Alarm": OK
    Boundary,      // caption names the event ("Vessel Entry", ...): OK
    Cpa,           // "CPA Alarm": an AIS target closing within the limits: OK
};

}  // namespace ombra
