// The own vessel from the AIS decoder's last AIVDO, in the form the
// instruments' intake takes it. One report stamps one fix: the decoder
// answers true once a new position report.
#pragma once
#include "instruments/NmeaRecords.h"
#include "platform/ais/AisDecoder.h"

namespace ombra {

inline bool OwnVesselFromAis(AisDecoder& ais, OwnVesselReport& r) {
    AisTarget t{};
    if (ais.GetOwnVessel(t) == 0) return false;
    r.Latitude = t.Latitude;
    r.Longitude = t.Longitude;
    r.Speed = t.Speed;
    r.Course = t.Course;
    r.Heading = t.Heading;
    r.FixQuality = t.Spare;
    return true;
}

}  // namespace ombra
