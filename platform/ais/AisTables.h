// The message tables of the AIS decoder: which fields each message type
// holds, where, and what their numbers mean. Internal to platform/ais.
//
// A table lists fields in the order they are reported, which is not always
// the order of their bits (a position is reported "lon" then "lat" even where
// the latitude is sent first). Lengths are in bits; a message outside its
// type's range is refused.
#pragma once
#include <cstdint>
#include <span>

#include "platform/ais/AisMessage.h"

namespace ombra::aistables {

// How a message type's fields after the common header are found.
enum class Layout : uint8_t {
    Table,        // `fields`, all of them
    Binary,       // type 6 / 8: `fields` are the header, then an application by DAC and FI
    Channel,      // type 22: area corners or two addressees, by the "addressed" bit
    StaticData,   // type 24: part A or part B
    SlotBinary,   // types 25 / 26: optional addressee and application id, then data
};

struct AisTypeDef {
    uint16_t minBits = 0;
    uint16_t maxBits = 0;  // 0: no upper bound
    Layout layout = Layout::Table;
    std::span<const AisFieldDef> fields;
};

// Indexed by message type; an entry with minBits 0 is a type not decoded.
std::span<const AisTypeDef> Types();

// A binary application of message type 6 or 8, keyed by DAC and FI.
struct Application {
    uint8_t messageType = 0;
    uint16_t dac = 0;
    uint8_t fid = 0;
    uint16_t exactBits = 0;  // the message must have this length; 0: any
    std::span<const AisFieldDef> fields;
    // A further test of plausibility on the decoded fields; false leaves the
    // message as opaque data.
    bool (*plausible)(const AisMessage& m) = nullptr;
};

std::span<const Application> Applications();

// Type 22 by its addressed bit, type 24 by its part number, and the data
// field of the opaque and slot-binary messages.
std::span<const AisFieldDef> ChannelArea();
std::span<const AisFieldDef> ChannelAddressed();
std::span<const AisFieldDef> ChannelTail();
std::span<const AisFieldDef> StaticPartA();
std::span<const AisFieldDef> StaticPartB();
std::span<const AisFieldDef> StaticPartBAuxiliary();
const AisFieldDef& OpaqueData(uint8_t messageType);  // the "data" of an unknown application

// Types 25 and 26: the addressee and application id are there only when
// their flags say so, and the data starts after whichever are; type 26
// ends in 20 bits of radio status.
struct SlotBinaryDefs {
    const AisFieldDef& addressed;
    const AisFieldDef& structured;
    const AisFieldDef& destMmsi;
    const AisFieldDef& appId;
    const AisFieldDef& data;
    const AisFieldDef& radio;
};
SlotBinaryDefs SlotBinary(int messageType, bool addressed, bool structured);

}  // namespace ombra::aistables
