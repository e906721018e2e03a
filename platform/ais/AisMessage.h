// One decoded AIS message: its type, repeat indicator, MMSI and a list of
// named fields, each read from the message's bits by a table.
//
// Every message type is described as data, a list of fields in the order
// they are reported, each with its bit offset, width and how its number is
// meant:
//
//   {"speed",  50, 10, Scaled, 0.1 knot, 1 decimal}
//   {"lon",    61, 28, signed, Scaled 1/600000 degree, 7 decimals}
//   {"heading",128, 9, Unsigned}          511 = not available
//
// The same table drives decoding, the JSON text (AisJson.h) and the target
// table (AisDecoder.h), so a field is described once. The field names are
// gpsd's AIVDM JSON names ("mmsi", "shipname", "to_bow"...), which are also
// the names navigators meet in other AIS tools.
//
// Units as sent: positions in 1/10000 minute (types 1-4, 9, 11, 18, 19, 21),
// 1/1000 minute (binary applications) or 1/10 minute (types 17, 22, 23, 27);
// speed in 0.1 knot (1023 not available, 1022 for 102.2 knots or more);
// course in 0.1 degree (3600 not available); heading in degrees (511 not
// available). Raw values are kept as sent, so a reader can tell "not
// available" from a real zero.
//
// A message that is too short or too long for its type, or of a type not
// decoded here, is refused with a reason; the table is keyed by message
// type, and the binary applications of types 6 and 8 by DAC and FI.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ais/AisBits.h"
#include "platform/ais/AisLegends.h"

namespace ombra {

enum class AisKind : uint8_t {
    Unsigned,     // an integer as sent
    Signed,       // a two's-complement integer
    Bool,         // one bit: true/false
    Scaled,       // raw x scale + offset, shown with `decimals` places
    Quoted,       // as Scaled, shown as a text ("-73.500000")
    ScaledIfSet,  // as Scaled, but a zero stays the bare integer 0
    Turn,         // rate-of-turn indicator: -128 n/a, +-127 fast, else +-(raw/4.733)^2 degrees a minute
    Text,         // `width` six-bit characters
    TextToEnd,    // six-bit characters from `start` to the end of the message
    AtonName,     // the aid-to-navigation name: 20 characters, then its extension after bit 272
    LegendOnly,   // the legend's word for the code, in place of the number
    Hex,          // the bits from `start` to the end, less `width` trailing bits, as "count:hex"
    Date,         // a text from the `width` fields before it, by `picture`
    Hidden,       // decoded and kept, not shown
    Group,        // a repeated group of fields (`group`), shown as a list of objects
};

struct AisGroupDef;

struct AisFieldDef {
    const char* key = "";
    uint16_t start = 0;
    uint16_t width = 0;
    AisKind kind = AisKind::Unsigned;
    bool isSigned = false;
    double scale = 1.0;
    double divisor = 0.0;            // when set, the value is raw / divisor (angles: 600000 a degree)
    double offset = 0.0;
    uint8_t decimals = 0;
    AisLegend legend = nullptr;      // shown as "<key>_text" after the number
    uint16_t onlyAbove = 0;          // the field is 0 unless the message is longer than this
    bool clip = false;               // past the end, read the bits there are as a narrower field
    const char* picture = nullptr;   // Date: "%04u-%02u-%02uT%02u:%02u:%02uZ"
    const AisGroupDef* group = nullptr;
};

// Repeated elements of `step` bits from `base`, while an element starts
// within the message.
struct AisGroupDef {
    uint16_t base = 0;
    uint16_t step = 0;
    const AisFieldDef* fields = nullptr;
    uint8_t count = 0;
};

struct AisValue {
    const AisFieldDef* def = nullptr;
    int64_t raw = 0;     // the number as sent (0 for texts)
    std::string text;    // Text, TextToEnd, AtonName, Hex, Date
    std::vector<std::vector<AisValue>> items;  // Group

    std::string_view Key() const { return def->key; }
    // The number as meant: raw x scale (or raw / divisor) + offset.
    double Number() const {
        return (def->divisor != 0.0 ? double(raw) / def->divisor : double(raw) * def->scale) + def->offset;
    }
};

struct AisMessage {
    int type = 0;
    int repeat = 0;
    uint32_t mmsi = 0;
    bool own = false;    // from our own transponder (VDO)
    size_t bits = 0;     // length of the message in bits
    int part = -1;       // type 24: 0 for part A, 1 for part B
    std::vector<AisValue> values;

    const AisValue* Find(std::string_view key) const;
    // The raw number of a field, or `otherwise` when the message has none.
    int64_t Raw(std::string_view key, int64_t otherwise = 0) const;
    std::string Text(std::string_view key) const;
};

enum class AisRefusal {
    None,
    UnknownType,  // a type not decoded here (0, 28..63) or a type 24 part C/D
    TooShort,
    TooLong,
};

const char* AisRefusalText(AisRefusal why);

// Decodes a whole message. On refusal `out` is left partly filled and must
// not be used.
AisRefusal DecodeAisMessage(const AisBits& bits, bool own, AisMessage& out);

}  // namespace ombra
