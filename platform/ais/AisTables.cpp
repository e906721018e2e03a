#include "platform/ais/AisTables.h"

#include <array>
#include <iterator>

namespace ombra::aistables {

namespace {

// Builders that keep each table row on one line.
constexpr AisFieldDef U(const char* key, uint16_t start, uint16_t width) {
    AisFieldDef f;
    f.key = key;
    f.start = start;
    f.width = width;
    return f;
}
constexpr AisFieldDef I(const char* key, uint16_t start, uint16_t width) {
    AisFieldDef f = U(key, start, width);
    f.kind = AisKind::Signed;
    f.isSigned = true;
    return f;
}
constexpr AisFieldDef B(const char* key, uint16_t start) {
    AisFieldDef f = U(key, start, 1);
    f.kind = AisKind::Bool;
    return f;
}
constexpr AisFieldDef Hide(const char* key, uint16_t start, uint16_t width) {
    AisFieldDef f = U(key, start, width);
    f.kind = AisKind::Hidden;
    return f;
}
// raw x scale + offset, shown with `decimals` places.
constexpr AisFieldDef Num(const char* key, uint16_t start, uint16_t width, double scale, uint8_t decimals,
                           double offset = 0.0, bool isSigned = false) {
    AisFieldDef f = U(key, start, width);
    f.kind = AisKind::Scaled;
    f.scale = scale;
    f.offset = offset;
    f.decimals = decimals;
    f.isSigned = isSigned;
    return f;
}
// A signed angle sent in 1/perDegree of a degree.
constexpr AisFieldDef Angle(const char* key, uint16_t start, uint16_t width, double perDegree, uint8_t decimals) {
    AisFieldDef f = Num(key, start, width, 1.0 / perDegree, decimals, 0.0, true);
    f.divisor = perDegree;
    return f;
}
constexpr AisFieldDef Txt(const char* key, uint16_t start, uint16_t chars) {
    AisFieldDef f = U(key, start, chars);
    f.kind = AisKind::Text;
    return f;
}
constexpr AisFieldDef TxtToEnd(const char* key, uint16_t start) {
    AisFieldDef f = U(key, start, 0);
    f.kind = AisKind::TextToEnd;
    return f;
}
constexpr AisFieldDef Coded(const char* key, uint16_t start, uint16_t width, AisLegend legend) {
    AisFieldDef f = U(key, start, width);
    f.legend = legend;
    return f;
}
constexpr AisFieldDef Word(const char* key, uint16_t start, uint16_t width, AisLegend legend) {
    AisFieldDef f = Coded(key, start, width, legend);
    f.kind = AisKind::LegendOnly;
    return f;
}
// A text built from the `fields` fields just before it.
constexpr AisFieldDef When(const char* key, uint16_t fields, const char* picture) {
    AisFieldDef f = U(key, 0, fields);
    f.kind = AisKind::Date;
    f.picture = picture;
    return f;
}
constexpr AisFieldDef Data(uint16_t start, uint16_t tailBits) {
    AisFieldDef f = U("data", start, tailBits);
    f.kind = AisKind::Hex;
    return f;
}
constexpr AisFieldDef As(AisKind kind, AisFieldDef f) {
    f.kind = kind;
    return f;
}
constexpr AisFieldDef Above(AisFieldDef f, uint16_t bits) {
    f.onlyAbove = bits;
    return f;
}
constexpr AisFieldDef Clip(AisFieldDef f) {
    f.clip = true;
    return f;
}
constexpr AisFieldDef Each(const char* key, const AisGroupDef& group) {
    AisFieldDef f = U(key, 0, 0);
    f.kind = AisKind::Group;
    f.group = &group;
    return f;
}

constexpr const char* kYmdHms = "%04u-%02u-%02uT%02u:%02u:%02uZ";
constexpr const char* kMdHm = "%02u-%02uT%02u:%02uZ";
constexpr const char* kDHm = "%02uT%02u:%02uZ";

// Types 1, 2, 3: Class A position report. A radio state cut short by a
// 163-bit message is read from the bits there are.
constexpr AisFieldDef kPositionA[] = {
    Coded("status", 38, 4, AisNavStatusText),
    As(AisKind::Turn, I("turn", 42, 8)),
    Num("speed", 50, 10, 0.1, 1),
    B("accuracy", 60),
    Angle("lon", 61, 28, 600000.0, 7),
    Angle("lat", 89, 27, 600000.0, 7),
    Num("course", 116, 12, 0.1, 1),
    U("heading", 128, 9),
    U("second", 137, 6),
    U("maneuver", 143, 2),
    B("raim", 148),
    Clip(U("radio", 149, 19)),
};

// Types 4 and 11: base station report, UTC and date response.
constexpr AisFieldDef kBaseStation[] = {
    Hide("year", 38, 14), Hide("month", 52, 4), Hide("day", 56, 5),
    Hide("hour", 61, 5), Hide("minute", 66, 6), Hide("second", 72, 6),
    When("timestamp", 6, kYmdHms),
    B("accuracy", 78),
    Angle("lon", 79, 28, 600000.0, 7),
    Angle("lat", 107, 27, 600000.0, 7),
    Coded("epfd", 134, 4, AisEpfdText),
    B("raim", 148),
    U("radio", 149, 19),
};

// Type 5: static and voyage related data.
constexpr AisFieldDef kStaticVoyage[] = {
    U("imo", 40, 30),
    U("ais_version", 38, 2),
    Txt("callsign", 70, 7),
    Txt("shipname", 112, 20),
    Coded("shiptype", 232, 8, AisShipTypeText),
    U("to_bow", 240, 9), U("to_stern", 249, 9), U("to_port", 258, 6), U("to_starboard", 264, 6),
    Coded("epfd", 270, 4, AisEpfdText),
    Hide("month", 274, 4), Hide("day", 278, 5), Hide("hour", 283, 5), Hide("minute", 288, 6),
    When("eta", 4, kMdHm),
    Num("draught", 294, 8, 0.1, 1),
    Txt("destination", 302, 20),
    U("dte", 422, 1),
};

// Type 6: addressed binary message, before its application.
constexpr AisFieldDef kAddressedBinary[] = {
    U("seqno", 38, 2), U("dest_mmsi", 40, 30), B("retransmit", 70), U("dac", 72, 10), U("fid", 82, 6),
};

// Types 7 and 13: acknowledgements of up to four messages.
constexpr AisFieldDef kAcknowledge[] = {
    U("mmsi1", 40, 30), U("mmsi2", 72, 30), U("mmsi3", 104, 30), U("mmsi4", 136, 30),
};

// Type 8: broadcast binary message, before its application.
constexpr AisFieldDef kBroadcastBinary[] = {U("dac", 40, 10), U("fid", 50, 6)};

// Type 9: SAR aircraft position report; speed in whole knots.
constexpr AisFieldDef kSarAircraft[] = {
    U("alt", 38, 12),
    U("speed", 50, 10),
    B("accuracy", 60),
    Angle("lon", 61, 28, 600000.0, 7),
    Angle("lat", 89, 27, 600000.0, 7),
    Num("course", 116, 12, 0.1, 1),
    U("second", 128, 6),
    U("regional", 134, 8),
    U("dte", 142, 1),
    Hide("assigned", 146, 1),
    B("raim", 147),
    U("radio", 148, 20),
};

constexpr AisFieldDef kUtcInquiry[] = {U("dest_mmsi", 40, 30)};

constexpr AisFieldDef kSafetyAddressed[] = {
    U("seqno", 38, 2), U("dest_mmsi", 40, 30), B("retransmit", 70), TxtToEnd("text", 72),
};

constexpr AisFieldDef kSafetyBroadcast[] = {TxtToEnd("text", 40)};

// Type 15: interrogation of one or two stations.
constexpr AisFieldDef kInterrogation[] = {
    U("mmsi1", 40, 30), U("type1_1", 70, 6), U("offset1_1", 76, 12),
    Above(U("type1_2", 90, 6), 90), Above(U("offset1_2", 96, 12), 90),
    Above(U("mmsi2", 110, 30), 110), Above(U("type2_1", 140, 6), 110), Above(U("offset2_1", 146, 12), 110),
};

// Type 16: assigned mode command, one or two stations.
constexpr AisFieldDef kAssignedMode[] = {
    U("mmsi1", 40, 30), U("offset1", 70, 12), U("increment1", 82, 10),
    Above(U("mmsi2", 92, 30), 143), Above(U("offset2", 122, 12), 143), Above(U("increment2", 134, 10), 143),
};

// Type 17: DGNSS broadcast; the reference station in 1/10 minute.
constexpr AisFieldDef kDgnss[] = {
    Angle("lon", 40, 18, 600.0, 1), Angle("lat", 58, 17, 600.0, 1), Data(80, 0),
};

// The fields of `head` and then those of `tail`, for types that begin alike.
template <size_t N, size_t M>
constexpr std::array<AisFieldDef, N + M> Join(const AisFieldDef (&head)[N], const AisFieldDef (&tail)[M]) {
    std::array<AisFieldDef, N + M> out{};
    for (size_t i = 0; i < N; ++i) out[i] = head[i];
    for (size_t i = 0; i < M; ++i) out[N + i] = tail[i];
    return out;
}

// Types 18 and 19: Class B position reports, alike up to the regional bits.
constexpr AisFieldDef kPositionBHead[] = {
    U("reserved", 38, 8),
    Num("speed", 46, 10, 0.1, 1),
    B("accuracy", 56),
    Angle("lon", 57, 28, 600000.0, 7),
    Angle("lat", 85, 27, 600000.0, 7),
    Num("course", 112, 12, 0.1, 1),
    U("heading", 124, 9),
    U("second", 133, 6),
};

// Type 18: Class B position report.
constexpr AisFieldDef kPositionBTail[] = {
    U("regional", 139, 2),
    B("cs", 141), B("display", 142), B("dsc", 143), B("band", 144), B("msg22", 145),
    Hide("assigned", 146, 1),
    B("raim", 147),
    U("radio", 148, 20),
};
constexpr auto kPositionB = Join(kPositionBHead, kPositionBTail);

// Type 19: extended Class B position report.
constexpr AisFieldDef kPositionBExtendedTail[] = {
    U("regional", 139, 4),
    Txt("shipname", 143, 20),
    Coded("shiptype", 263, 8, AisShipTypeText),
    U("to_bow", 271, 9), U("to_stern", 280, 9), U("to_port", 289, 6), U("to_starboard", 295, 6),
    Coded("epfd", 301, 4, AisEpfdText),
    B("raim", 305),
    U("dte", 306, 1),
    B("assigned", 307),
};
constexpr auto kPositionBExtended = Join(kPositionBHead, kPositionBExtendedTail);

// Type 20: data link management, four slot reservations.
constexpr AisFieldDef kLinkManagement[] = {
    U("offset1", 40, 12), U("number1", 52, 4), U("timeout1", 56, 3), U("increment1", 59, 11),
    U("offset2", 70, 12), U("number2", 82, 4), U("timeout2", 86, 3), U("increment2", 89, 11),
    U("offset3", 100, 12), U("number3", 112, 4), U("timeout3", 116, 3), U("increment3", 119, 11),
    U("offset4", 130, 12), U("number4", 142, 4), U("timeout4", 146, 3), U("increment4", 149, 11),
};

// Type 21: aid-to-navigation report.
constexpr AisFieldDef kAidToNavigation[] = {
    Coded("aid_type", 38, 5, AisAidTypeText),
    As(AisKind::AtonName, Txt("name", 43, 20)),
    Angle("lon", 164, 28, 600000.0, 7),
    Angle("lat", 192, 27, 600000.0, 7),
    B("accuracy", 163),
    U("to_bow", 219, 9), U("to_stern", 228, 9), U("to_port", 237, 6), U("to_starboard", 243, 6),
    Coded("epfd", 249, 4, AisEpfdText),
    U("second", 253, 6),
    U("regional", 260, 8),
    B("off_position", 259),
    B("raim", 268),
    B("virtual_aid", 269),
    Hide("assigned", 270, 1),
};

// Type 22: channel management; an area in 1/10 minute or two addressees.
constexpr AisFieldDef kChannelHead[] = {
    U("channel_a", 40, 12), U("channel_b", 52, 12), U("txrx", 64, 4), B("power", 68),
};
constexpr AisFieldDef kChannelArea[] = {
    As(AisKind::Quoted, Angle("ne_lon", 69, 18, 600.0, 6)), As(AisKind::Quoted, Angle("ne_lat", 87, 17, 600.0, 6)),
    As(AisKind::Quoted, Angle("sw_lon", 104, 18, 600.0, 6)), As(AisKind::Quoted, Angle("sw_lat", 122, 17, 600.0, 6)),
};
constexpr AisFieldDef kChannelAddressed[] = {U("dest1", 69, 30), U("dest2", 104, 30)};
constexpr AisFieldDef kChannelTail[] = {
    B("addressed", 139), B("band_a", 140), B("band_b", 141), U("zonesize", 142, 3),
};

// Type 23: group assignment command.
constexpr AisFieldDef kGroupAssignment[] = {
    As(AisKind::Quoted, Angle("ne_lon", 40, 18, 600.0, 6)), As(AisKind::Quoted, Angle("ne_lat", 58, 17, 600.0, 6)),
    As(AisKind::Quoted, Angle("sw_lon", 75, 18, 600.0, 6)), As(AisKind::Quoted, Angle("sw_lat", 93, 17, 600.0, 6)),
    Coded("stationtype", 110, 4, AisStationTypeText),
    Coded("shiptype", 114, 8, AisShipTypeText),
    Hide("txrx", 144, 2),
    U("interval", 146, 4),
    U("quiet", 150, 4),
};

// Type 24: Class B static data, part A (name) and part B (the rest). The
// vendor id is read whole as the seven characters of older transponders;
// newer ones carve the model and serial number out of its tail, so both are
// reported. An auxiliary craft (MMSI 98xxxxxxx) sends its mothership's MMSI
// where others send their dimensions.
constexpr AisFieldDef kStaticA[] = {Hide("partno", 38, 2), Txt("shipname", 40, 20)};
constexpr AisFieldDef kStaticB[] = {
    Hide("partno", 38, 2),
    Coded("shiptype", 40, 8, AisShipTypeText),
    Txt("vendorid", 48, 7), U("model", 66, 4), U("serial", 70, 20),
    Txt("callsign", 90, 7),
    U("to_bow", 132, 9), U("to_stern", 141, 9), U("to_port", 150, 6), U("to_starboard", 156, 6),
};
constexpr AisFieldDef kStaticBAuxiliary[] = {
    Hide("partno", 38, 2),
    Coded("shiptype", 40, 8, AisShipTypeText),
    Txt("vendorid", 48, 7), U("model", 66, 4), U("serial", 70, 20),
    Txt("callsign", 90, 7),
    U("mothership_mmsi", 132, 30),
};

// Type 27: long-range position report in 1/10 minute, speed in knots.
constexpr AisFieldDef kLongRange[] = {
    Coded("status", 40, 4, AisNavStatusText),
    B("accuracy", 38),
    Angle("lon", 44, 18, 600.0, 4),
    Angle("lat", 62, 17, 600.0, 4),
    U("speed", 79, 6),
    U("course", 85, 9),
    B("raim", 39),
    B("gnss", 94),
};

// ---- Binary applications (types 6 and 8), positions in 1/1000 minute ----

// DAC 235/250 FI 10: UK and Irish AtoN monitoring; voltages in 0.05 V.
constexpr AisFieldDef kAtonMonitoring[] = {
    B("off_pos", 131), B("alarm", 122), U("stat_ext", 123, 8),
    As(AisKind::ScaledIfSet, Num("ana_int", 88, 10, 0.05, 2)),
    As(AisKind::ScaledIfSet, Num("ana_ext1", 98, 10, 0.05, 2)),
    As(AisKind::ScaledIfSet, Num("ana_ext2", 108, 10, 0.05, 2)),
    Coded("racon", 118, 2, AisRaconText),
    Coded("light", 120, 2, AisLightText),
};

// DAC 1 FI 12 (IMO 236): dangerous cargo indication.
constexpr AisFieldDef kDangerousCargo[] = {
    Txt("lastport", 88, 5),
    Hide("lmonth", 118, 4), Hide("lday", 122, 5), Hide("lhour", 127, 5), Hide("lminute", 132, 6),
    When("departure", 4, kMdHm),
    Txt("nextport", 138, 5),
    Hide("nmonth", 168, 4), Hide("nday", 172, 5), Hide("nhour", 177, 5), Hide("nminute", 182, 6),
    When("eta", 4, kMdHm),
    Txt("dangerous", 188, 20),
    Txt("imdcat", 308, 4),
    U("unid", 332, 13), U("amount", 345, 10), U("unit", 355, 2),
};

// DAC 1 FI 14 (IMO 236) and FI 32 (IMO 289): tidal windows.
constexpr AisFieldDef kTidal236Fields[] = {
    Angle("lon", 27, 28, 60000.0, 6), Angle("lat", 0, 27, 60000.0, 6),
    U("from_hour", 55, 5), U("from_min", 60, 6), U("to_hour", 66, 5), U("to_min", 71, 6),
    U("cdir", 77, 9), Num("cspeed", 86, 7, 0.1, 1),
};
constexpr AisGroupDef kTidal236{97, 93, kTidal236Fields, uint8_t(std::size(kTidal236Fields))};
constexpr AisFieldDef kTidalWindow236[] = {U("month", 88, 4), U("day", 92, 5), Each("tidals", kTidal236)};

constexpr AisFieldDef kTidal289Fields[] = {
    Angle("lon", 0, 25, 60000.0, 6), Angle("lat", 25, 24, 60000.0, 6),
    U("from_hour", 49, 5), U("from_min", 54, 6), U("to_hour", 60, 5), U("to_min", 65, 6),
    U("cdir", 71, 9), Num("cspeed", 80, 8, 0.1, 1),
};
constexpr AisGroupDef kTidal289{97, 88, kTidal289Fields, uint8_t(std::size(kTidal289Fields))};
constexpr AisFieldDef kTidalWindow289[] = {U("month", 88, 4), U("day", 92, 5), Each("tidals", kTidal289)};

// DAC 1 FI 18 (IMO 289): clearance time to enter port.
constexpr AisFieldDef kClearance[] = {
    U("linkage", 88, 10),
    Hide("month", 98, 4), Hide("day", 102, 5), Hide("hour", 107, 5), Hide("minute", 112, 6),
    When("arrival", 4, kMdHm),
    Txt("portname", 118, 20), Txt("destination", 238, 5),
    Angle("lon", 268, 25, 60000.0, 6), Angle("lat", 293, 24, 60000.0, 6),
};

// DAC 1 FI 30 (IMO 289): text description, addressed.
constexpr AisFieldDef kTextDescription[] = {U("linkage", 88, 10), TxtToEnd("text", 98)};

// DAC 1 FI 11 (IMO 236): meteorological and hydrographic data. Offsets
// bring the unsigned codes to degrees C (-60), hPa (+800) and metres (-10).
constexpr AisFieldDef kMetHydro236[] = {
    Angle("lat", 56, 24, 60000.0, 6), Angle("lon", 80, 25, 60000.0, 6),
    Hide("day", 105, 5), Hide("hour", 110, 5), Hide("minute", 115, 6),
    When("timestamp", 3, kDHm),
    U("wspeed", 121, 7), U("wgust", 128, 7), U("wdir", 135, 9), U("wgustdir", 144, 9),
    U("humidity", 164, 7),
    Num("airtemp", 153, 11, 0.1, 1, -60.0),
    Num("dewpoint", 171, 10, 0.1, 1, -20.0),
    Num("pressure", 181, 9, 1.0, 0, 800.0),
    Word("pressuretend", 190, 2, AisTrendText),
    Num("visibility", 192, 8, 0.1, 1),
    Num("waterlevel", 200, 9, 0.1, 1, -10.0),
    Word("leveltrend", 209, 2, AisTrendText),
    Num("cspeed", 211, 8, 0.1, 1), U("cdir", 219, 9),
    Num("cspeed2", 228, 8, 0.1, 1), U("cdir2", 236, 9), U("cdepth2", 245, 5),
    Num("cspeed3", 250, 8, 0.1, 1), U("cdir3", 258, 9), U("cdepth3", 267, 5),
    Num("waveheight", 272, 8, 0.1, 1), U("waveperiod", 280, 6), U("wavedir", 286, 9),
    Num("swellheight", 295, 8, 0.1, 1), U("swellperiod", 303, 6), U("swelldir", 309, 9),
    U("seastate", 318, 4),
    Num("watertemp", 322, 10, 0.1, 1, -10.0),
    Coded("preciptype", 332, 3, AisPrecipitationText),
    Num("salinity", 335, 9, 0.1, 1),
    Coded("ice", 344, 2, AisIceText),
};

// DAC 1 FI 31 (IMO 289): meteorological and hydrographic data, with signed
// temperatures, pressure from 799 hPa and water level in centimetres.
constexpr AisFieldDef kMetHydro289[] = {
    Angle("lat", 81, 24, 60000.0, 6), Angle("lon", 56, 25, 60000.0, 6),
    B("accuracy", 105),
    Hide("day", 106, 5), Hide("hour", 111, 5), Hide("minute", 116, 6),
    When("timestamp", 3, kDHm),
    U("wspeed", 122, 7), U("wgust", 129, 7), U("wdir", 136, 9), U("wgustdir", 145, 9),
    U("humidity", 165, 7),
    Num("airtemp", 154, 11, 0.1, 1, 0.0, true),
    Num("dewpoint", 172, 10, 0.1, 1, 0.0, true),
    Num("pressure", 182, 9, 1.0, 0, 799.0),
    Word("pressuretend", 191, 2, AisTrendText),
    B("visgreater", 193),
    Num("visibility", 194, 7, 0.1, 1),
    Num("waterlevel", 201, 12, 0.01, 1, -10.0),
    Word("leveltrend", 213, 2, AisTrendText),
    Num("cspeed", 215, 8, 0.1, 1), U("cdir", 223, 9),
    Num("cspeed2", 232, 8, 0.1, 1), U("cdir2", 240, 9), U("cdepth2", 249, 5),
    Num("cspeed3", 254, 8, 0.1, 1), U("cdir3", 262, 9), U("cdepth3", 271, 5),
    Num("waveheight", 276, 8, 0.1, 1), U("waveperiod", 284, 6), U("wavedir", 290, 9),
    Num("swellheight", 299, 8, 0.1, 1), U("swellperiod", 307, 6), U("swelldir", 313, 9),
    U("seastate", 322, 4),
    Num("watertemp", 326, 10, 0.1, 1, 0.0, true),
    Word("preciptype", 336, 3, AisPrecipitationText),
    Num("salinity", 339, 9, 0.1, 1),
    Word("ice", 348, 2, AisIceText),
};

// DAC 200 FI 10: inland ship static and voyage data (lengths in dm).
constexpr AisFieldDef kInlandStatic[] = {
    Txt("vin", 56, 8),
    U("length", 104, 13), U("beam", 117, 10),
    Coded("shiptype", 127, 14, AisEriShipTypeText),
    Coded("hazard", 141, 3, AisHazardText),
    U("draught", 144, 11),
    Coded("loaded", 155, 2, AisLoadedText),
    B("speed_q", 157), B("course_q", 158), B("heading_q", 159),
};

// Blue cones beyond "4 B-Flag" and "Unknown" mean the bits are something else.
bool InlandPlausible(const AisMessage& m) { return m.Raw("hazard") <= 5; }

constexpr AisTypeDef kTypes[] = {
    /* 0 */ {},
    /* 1 */ {163, 204, Layout::Table, kPositionA},
    /* 2 */ {163, 204, Layout::Table, kPositionA},
    /* 3 */ {163, 204, Layout::Table, kPositionA},
    /* 4 */ {168, 0, Layout::Table, kBaseStation},
    /* 5 */ {420, 0, Layout::Table, kStaticVoyage},
    /* 6 */ {88, 1008, Layout::Binary, kAddressedBinary},
    /* 7 */ {72, 168, Layout::Table, kAcknowledge},
    /* 8 */ {56, 1008, Layout::Binary, kBroadcastBinary},
    /* 9 */ {168, 0, Layout::Table, kSarAircraft},
    /* 10 */ {72, 0, Layout::Table, kUtcInquiry},
    /* 11 */ {168, 0, Layout::Table, kBaseStation},
    /* 12 */ {72, 1008, Layout::Table, kSafetyAddressed},
    /* 13 */ {72, 168, Layout::Table, kAcknowledge},
    /* 14 */ {40, 1008, Layout::Table, kSafetyBroadcast},
    /* 15 */ {88, 168, Layout::Table, kInterrogation},
    /* 16 */ {96, 168, Layout::Table, kAssignedMode},
    /* 17 */ {80, 816, Layout::Table, kDgnss},
    /* 18 */ {168, 0, Layout::Table, kPositionB},
    /* 19 */ {312, 0, Layout::Table, kPositionBExtended},
    /* 20 */ {72, 186, Layout::Table, kLinkManagement},
    /* 21 */ {272, 368, Layout::Table, kAidToNavigation},
    /* 22 */ {168, 0, Layout::Channel, kChannelHead},
    /* 23 */ {160, 0, Layout::Table, kGroupAssignment},
    /* 24 */ {160, 0, Layout::StaticData, {}},
    /* 25 */ {40, 168, Layout::SlotBinary, {}},
    /* 26 */ {60, 1004, Layout::SlotBinary, {}},
    /* 27 */ {96, 168, Layout::Table, kLongRange},
};

constexpr Application kApplications[] = {
    {6, 235, 10, 136, kAtonMonitoring, nullptr},
    {6, 250, 10, 136, kAtonMonitoring, nullptr},
    {6, 1, 12, 0, kDangerousCargo, nullptr},
    {6, 1, 14, 0, kTidalWindow236, nullptr},
    {6, 1, 18, 0, kClearance, nullptr},
    {6, 1, 30, 0, kTextDescription, nullptr},
    {6, 1, 32, 0, kTidalWindow289, nullptr},
    {8, 1, 11, 0, kMetHydro236, nullptr},
    {8, 1, 31, 0, kMetHydro289, nullptr},
    {8, 200, 10, 168, kInlandStatic, InlandPlausible},
};

constexpr AisFieldDef kSlotAddressed = B("addressed", 38);
constexpr AisFieldDef kSlotStructured = B("structured", 39);
constexpr AisFieldDef kSlotDest = U("dest_mmsi", 40, 30);
constexpr AisFieldDef kSlotApp[2] = {U("app_id", 40, 16), U("app_id", 70, 16)};
// [type 26][addressed][structured]; type 26 leaves its 20 radio bits out.
constexpr AisFieldDef kSlotData[2][2][2] = {
    {{Data(40, 0), Data(56, 0)}, {Data(70, 0), Data(86, 0)}},
    {{Data(40, 20), Data(56, 20)}, {Data(70, 20), Data(86, 20)}},
};
constexpr AisFieldDef kSlotRadio = U("radio", 0, 20);

constexpr AisFieldDef kOpaque6 = Data(88, 0);
constexpr AisFieldDef kOpaque8 = Data(56, 0);

}  // namespace

std::span<const AisTypeDef> Types() { return kTypes; }
std::span<const Application> Applications() { return kApplications; }
std::span<const AisFieldDef> ChannelArea() { return kChannelArea; }
std::span<const AisFieldDef> ChannelAddressed() { return kChannelAddressed; }
std::span<const AisFieldDef> ChannelTail() { return kChannelTail; }
std::span<const AisFieldDef> StaticPartA() { return kStaticA; }
std::span<const AisFieldDef> StaticPartB() { return kStaticB; }
std::span<const AisFieldDef> StaticPartBAuxiliary() { return kStaticBAuxiliary; }
const AisFieldDef& OpaqueData(uint8_t messageType) { return messageType == 6 ? kOpaque6 : kOpaque8; }

SlotBinaryDefs SlotBinary(int messageType, bool addressed, bool structured) {
    return {kSlotAddressed, kSlotStructured, kSlotDest, kSlotApp[addressed],
            kSlotData[messageType == 26][addressed][structured], kSlotRadio};
}

}  // namespace ombra::aistables
