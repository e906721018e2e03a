#include "platform/ais/AisLegends.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <string>

namespace ombra {

namespace {

template <size_t N>
const char* Pick(const char* const (&names)[N], unsigned code, const char* other) {
    return code < N ? names[code] : other;
}

// The hundred ship and cargo types, built once: eight of the decades share a
// pattern of "all ships", hazard categories A-D, reserved and "no
// additional information".
struct ShipTypes {
    std::array<std::string, 100> text;
    ShipTypes() {
        for (auto& t : text) t = "Reserved for future use";
        text[0] = "Not available";
        auto decade = [&](int base, const std::string& name, const char* last) {
            text[base] = name + " - all ships of this type";
            const char* cat = "ABCD";
            for (int k = 0; k < 4; ++k) text[base + 1 + k] = name + " - Hazardous category " + cat[k];
            for (int k = 5; k < 9; ++k) text[base + k] = name + " - Reserved for future use";
            text[base + 9] = last ? name + " - " + last : name + " - Reserved for future use";
        };
        decade(20, "Wing in ground (WIG)", nullptr);
        decade(40, "High speed craft (HSC)", "No additional information");
        decade(60, "Passenger", "No additional information");
        decade(70, "Cargo", "No additional information");
        decade(80, "Tanker", "No additional information");
        decade(90, "Other Type", "No additional information");
        const char* thirties[] = {"Fishing", "Towing", "Towing: length exceeds 200m or breadth exceeds 25m",
                                  "Dredging or underwater ops", "Diving ops", "Military ops", "Sailing",
                                  "Pleasure Craft", "Reserved", "Reserved"};
        const char* fifties[] = {"Pilot Vessel", "Search and Rescue vessel", "Tug", "Port Tender",
                                 "Anti-pollution equipment", "Law Enforcement", "Spare - Local Vessel",
                                 "Spare - Local Vessel", "Medical Transport", "Ship according to RR Resolution No. 18"};
        for (int k = 0; k < 10; ++k) {
            text[30 + k] = thirties[k];
            text[50 + k] = fifties[k];
        }
    }
};

}  // namespace

const char* AisNavStatusText(unsigned code) {
    static const char* const names[] = {
        "Under way using engine", "At anchor", "Not under command", "Restricted maneuverability",
        "Constrained by her draught", "Moored", "Aground", "Engaged in fishing", "Under way sailing",
        "Reserved for HSC", "Reserved for WIG", "Power-driven towing astern", "Power-driven pushing ahead",
        "Reserved", "AIS-SART is active", "Not defined"};
    return Pick(names, code, "Not defined");
}

const char* AisShipTypeText(unsigned code) {
    static const ShipTypes types;
    if (code < 100) return types.text[code].c_str();
    return code < 200 ? "Reserved for regional use" : "Reserved for future use";
}

const char* AisEpfdText(unsigned code) {
    static const char* const names[] = {
        "Undefined", "GPS", "GLONASS", "Combined GPS/GLONASS", "Loran-C", "Chayka",
        "Integrated navigation system", "Surveyed", "Galileo", "Reserved (9)", "Reserved (10)",
        "Reserved (11)", "Reserved (12)", "Reserved (13)", "Reserved (14)", "Internal GNSS"};
    return Pick(names, code, "Undefined");
}

const char* AisAidTypeText(unsigned code) {
    static const char* const names[] = {
        "Unspecified", "Reference point", "RACON", "Fixed offshore structure", "Spare, Reserved for future use.",
        "Light, without sectors", "Light, with sectors", "Leading Light Front", "Leading Light Rear",
        "Beacon, Cardinal N", "Beacon, Cardinal E", "Beacon, Cardinal S", "Beacon, Cardinal W",
        "Beacon, Port hand", "Beacon, Starboard hand", "Beacon, Preferred Channel port hand",
        "Beacon, Preferred Channel starboard hand", "Beacon, Isolated danger", "Beacon, Safe water",
        "Beacon, Special mark", "Cardinal Mark N", "Cardinal Mark E", "Cardinal Mark S", "Cardinal Mark W",
        "Port hand Mark", "Starboard hand Mark", "Preferred Channel Port hand", "Preferred Channel Starboard hand",
        "Isolated danger", "Safe Water", "Special Mark", "Light Vessel / LANBY / Rigs"};
    return Pick(names, code, "Unspecified");
}

const char* AisStationTypeText(unsigned code) {
    static const char* const names[] = {
        "All types of mobiles", "Reserved for future use", "All types of Class B mobile stations",
        "SAR airborne mobile station", "Aid to Navigation station", "Class B shipborne mobile station",
        "Regional use and inland waterways", "Regional use and inland waterways",
        "Regional use and inland waterways", "Regional use and inland waterways"};
    return Pick(names, code, "Reserved for future use");
}

const char* AisRaconText(unsigned code) {
    static const char* const names[] = {"No RACON installed", "RACON not monitored", "RACON operational",
                                        "RACON ERROR"};
    return Pick(names, code, "RACON ERROR");
}

const char* AisLightText(unsigned code) {
    static const char* const names[] = {"No light or no monitoring", "Light ON", "Light OFF", "Light ERROR"};
    return Pick(names, code, "Light ERROR");
}

const char* AisTrendText(unsigned code) {
    static const char* const names[] = {"steady", "increasing", "decreasing", "N/A"};
    return Pick(names, code, "N/A");
}

const char* AisPrecipitationText(unsigned code) {
    static const char* const names[] = {"reserved", "rain", "thunderstorm", "freezing rain",
                                        "mixed/ice", "snow", "reserved", "N/A"};
    return Pick(names, code, "N/A");
}

const char* AisIceText(unsigned code) {
    static const char* const names[] = {"no", "yes", "reserved", "N/A"};
    return Pick(names, code, "N/A");
}

const char* AisHazardText(unsigned code) {
    static const char* const names[] = {"0 blue cones/lights", "1 blue cone/light", "2 blue cones/lights",
                                        "3 blue cones/lights", "4 B-Flag", "Unknown"};
    return Pick(names, code, "Unknown");
}

const char* AisLoadedText(unsigned code) {
    static const char* const names[] = {"N/A", "Unloaded", "Loaded", "Unknown"};
    return Pick(names, code, "Unknown");
}

const char* AisEriShipTypeText(unsigned code) {
    struct Eri {
        unsigned code;
        const char* text;
    };
    // The ERI classification of inland vessels and convoys, in code order.
    static const Eri table[] = {
        {1500, "General cargo Vessel maritime"}, {1510, "Unit carrier maritime"},
        {1520, "Bulk carrier maritime"}, {1530, "Tanker"}, {1540, "Liquified gas tanker"},
        {1850, "Pleasure craft, longer than 20 metres"}, {1900, "Fast ship"}, {1910, "Hydrofoil"},
        {8000, "Vessel, type unknown"}, {8010, "Motor freighter"}, {8020, "Motor tanker"},
        {8021, "Motor tanker, liquid cargo, type N"}, {8022, "Motor tanker, liquid cargo, type C"},
        {8023, "Motor tanker, dry cargo as if liquid (e.g. cement)"}, {8030, "Container vessel"},
        {8040, "Gas tanker"}, {8050, "Motor freighter, tug"}, {8060, "Motor tanker, tug"},
        {8070, "Motor freighter with one or more ships alongside"}, {8080, "Motor freighter with tanker"},
        {8090, "Motor freighter pushing one or more freighters"},
        {8100, "Motor freighter pushing at least one tank-ship"}, {8110, "Tug, freighter"},
        {8120, "Tug, tanker"}, {8130, "Tug freighter, coupled"}, {8140, "Tug, freighter/tanker, coupled"},
        {8150, "Freightbarge"}, {8160, "Tankbarge"}, {8161, "Tankbarge, liquid cargo, type N"},
        {8162, "Tankbarge, liquid cargo, type C"}, {8163, "Tankbarge, dry cargo as if liquid (e.g. cement)"},
        {8170, "Freightbarge with containers"}, {8180, "Tankbarge, gas"},
        {8210, "Pushtow, one cargo barge"}, {8220, "Pushtow, two cargo barges"},
        {8230, "Pushtow, three cargo barges"}, {8240, "Pushtow, four cargo barges"},
        {8250, "Pushtow, five cargo barges"}, {8260, "Pushtow, six cargo barges"},
        {8270, "Pushtow, seven cargo barges"}, {8280, "Pushtow, eight cargo barges"},
        {8290, "Pushtow, nine or more barges"}, {8310, "Pushtow, one tank/gas barge"},
        {8320, "Pushtow, two barges at least one tanker or gas barge"}, {8400, "Tug, single"},
        {8410, "Tug, one or more tows"}, {8420, "Tug, assisting a vessel or linked combination"},
        {8430, "Pushboat, single"}, {8440, "Passenger ship, ferry, cruise ship, red cross ship"},
        {8441, "Ferry"}, {8442, "Red cross ship"}, {8443, "Cruise ship"},
        {8444, "Passenger ship without accommodation"}, {8450, "Service vessel, police patrol, port service"},
        {8460, "Vessel, work maintenance craft, floating derrick, cable-ship, buoy-ship, dredge"},
        {8470, "Object, towed, not otherwise specified"}, {8480, "Fishing boat"}, {8490, "Bunkership"},
        {8500, "Barge, tanker, chemical"}, {8510, "Object, not otherwise specified"}};
    const auto it = std::lower_bound(std::begin(table), std::end(table), code,
                                     [](const Eri& e, unsigned c) { return e.code < c; });
    return it != std::end(table) && it->code == code ? it->text : "Unknown";
}

}  // namespace ombra
