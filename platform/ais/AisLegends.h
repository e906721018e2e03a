// The words for AIS code values: navigational status, ship and cargo type,
// position fixing device, aid-to-navigation type and the smaller tables of
// the binary applications. The texts are those gpsd prints beside the
// numbers ("status_text", "shiptype_text"...), so a decoded message reads
// the same in Ombra's output and in gpsd's; a code outside a table gets the
// table's word for "reserved" or "unknown", never an empty string.
//
//   AisNavStatusText(5)  == "Moored"
//   AisShipTypeText(70)  == "Cargo - all ships of this type"
//   AisEpfdText(1)       == "GPS"
#pragma once

namespace ombra {

using AisLegend = const char* (*)(unsigned code);

const char* AisNavStatusText(unsigned code);     // 4 bits, types 1-3 and 27
const char* AisShipTypeText(unsigned code);      // 8 bits, types 5, 19, 23, 24
const char* AisEpfdText(unsigned code);          // 4 bits, position fixing device
const char* AisAidTypeText(unsigned code);       // 5 bits, type 21
const char* AisStationTypeText(unsigned code);   // 4 bits, type 23
const char* AisRaconText(unsigned code);         // 2 bits, UK/IE AtoN monitoring
const char* AisLightText(unsigned code);         // 2 bits, UK/IE AtoN monitoring
const char* AisTrendText(unsigned code);         // 2 bits, pressure and water level tendency
const char* AisPrecipitationText(unsigned code); // 3 bits, WMO 306 code table 4.201
const char* AisIceText(unsigned code);           // 2 bits
const char* AisHazardText(unsigned code);        // 3 bits, inland: blue cones
const char* AisLoadedText(unsigned code);        // 2 bits, inland: loaded or not
const char* AisEriShipTypeText(unsigned code);   // 14 bits, inland ERI classification

}  // namespace ombra
