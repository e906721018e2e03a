#include "platform/ais/AisMessage.h"

#include <algorithm>
#include <span>

#include "platform/ais/AisTables.h"

namespace ombra {

using namespace aistables;

namespace {

// The most elements a repeated group may report; the longest message holds
// about ten tidal windows.
constexpr size_t kMaxGroupItems = 16;
// The aid-to-navigation name continues here when its first 20 characters are full.
constexpr size_t kAtonNameExtension = 272;

// Formats `parts` by a picture of "%u", "%0Nu" and literal characters.
std::string DateText(const char* picture, std::span<const AisValue> parts) {
    std::string out;
    size_t next = 0;
    for (const char* p = picture; *p; ++p) {
        if (*p != '%') {
            out.push_back(*p);
            continue;
        }
        size_t width = 0;
        while (p[1] >= '0' && p[1] <= '9') width = width * 10 + size_t(*++p - '0');
        if (p[1] == 'u') ++p;
        const std::string digits = next < parts.size() ? std::to_string(parts[next++].raw) : "0";
        if (digits.size() < width) out.append(width - digits.size(), '0');
        out += digits;
    }
    return out;
}

void ReadFields(const AisBits& b, std::span<const AisFieldDef> defs, size_t base, std::vector<AisValue>& out);

AisValue ReadField(const AisBits& b, const AisFieldDef& f, size_t base, const std::vector<AisValue>& before) {
    const size_t len = b.size();
    const size_t start = base + f.start;
    AisValue v;
    v.def = &f;
    switch (f.kind) {
    case AisKind::Text:
        v.text = b.Text(start, f.width);
        break;
    case AisKind::TextToEnd:
        v.text = len > start ? b.Text(start, (len - start) / 6) : std::string();
        break;
    case AisKind::AtonName:
        v.text = b.Text(start, f.width, false);
        if (v.text.size() == f.width && len > kAtonNameExtension)
            v.text += b.Text(kAtonNameExtension, (len - kAtonNameExtension) / 6, false);
        while (!v.text.empty() && v.text.back() == ' ') v.text.pop_back();
        break;
    case AisKind::Hex: {
        const size_t count = len > start + f.width ? len - start - f.width : 0;
        v.text = std::to_string(count) + ":" + b.Hex(start, count);
        break;
    }
    case AisKind::Date: {
        const size_t n = std::min<size_t>(f.width, before.size());
        v.text = DateText(f.picture, std::span<const AisValue>(before).last(n));
        break;
    }
    case AisKind::Group:
        for (size_t u = 0; u < kMaxGroupItems && base + f.group->base + f.group->step * u <= len; ++u) {
            v.items.emplace_back();
            ReadFields(b, std::span(f.group->fields, f.group->count), base + f.group->base + f.group->step * u,
                       v.items.back());
        }
        break;
    default: {
        if (f.onlyAbove && len <= f.onlyAbove) break;
        size_t width = f.width;
        if (f.clip && start + width > len) width = len > start ? len - start : 0;
        v.raw = f.isSigned ? b.Signed(start, width) : int64_t(b.Unsigned(start, width));
        break;
    }
    }
    return v;
}

void ReadFields(const AisBits& b, std::span<const AisFieldDef> defs, size_t base, std::vector<AisValue>& out) {
    for (const AisFieldDef& f : defs) out.push_back(ReadField(b, f, base, out));
}

void ReadBinaryApplication(const AisBits& b, AisMessage& m) {
    const int64_t dac = m.Raw("dac"), fid = m.Raw("fid");
    for (const Application& app : Applications()) {
        if (app.messageType != m.type || app.dac != dac || app.fid != fid) continue;
        if (app.exactBits && b.size() != app.exactBits) break;
        const size_t mark = m.values.size();
        ReadFields(b, app.fields, 0, m.values);
        if (!app.plausible || app.plausible(m)) return;
        m.values.resize(mark);
        break;
    }
    m.values.push_back(ReadField(b, OpaqueData(uint8_t(m.type)), 0, m.values));
}

AisRefusal ReadSlotBinary(const AisBits& b, AisMessage& m) {
    const bool addressed = b.Unsigned(38, 1), structured = b.Unsigned(39, 1);
    const size_t radioBits = m.type == 26 ? 20 : 0;
    if (b.size() < 40 + 30 * size_t(addressed) + 16 * size_t(structured) + radioBits) return AisRefusal::TooShort;
    const SlotBinaryDefs s = SlotBinary(m.type, addressed, structured);
    m.values.push_back(ReadField(b, s.addressed, 0, m.values));
    m.values.push_back(ReadField(b, s.structured, 0, m.values));
    m.values.push_back(ReadField(b, s.destMmsi, 0, m.values));
    if (!addressed) m.values.back().raw = 0;
    m.values.push_back(ReadField(b, s.appId, 0, m.values));
    if (!structured) m.values.back().raw = 0;
    m.values.push_back(ReadField(b, s.data, 0, m.values));
    if (radioBits) {
        AisValue radio;
        radio.def = &s.radio;
        radio.raw = int64_t(b.Unsigned(b.size() - radioBits, radioBits));
        m.values.push_back(radio);
    }
    return AisRefusal::None;
}

}  // namespace

const char* AisRefusalText(AisRefusal why) {
    switch (why) {
    case AisRefusal::None: return "decoded";
    case AisRefusal::UnknownType: return "message type not decoded";
    case AisRefusal::TooShort: return "message too short for its type";
    case AisRefusal::TooLong: return "message too long for its type";
    }
    return "refused";
}

const AisValue* AisMessage::Find(std::string_view key) const {
    for (const AisValue& v : values)
        if (v.Key() == key) return &v;
    return nullptr;
}

int64_t AisMessage::Raw(std::string_view key, int64_t otherwise) const {
    const AisValue* v = Find(key);
    return v ? v->raw : otherwise;
}

std::string AisMessage::Text(std::string_view key) const {
    const AisValue* v = Find(key);
    return v ? v->text : std::string();
}

AisRefusal DecodeAisMessage(const AisBits& bits, bool own, AisMessage& out) {
    out.values.clear();
    out.own = own;
    out.bits = bits.size();
    out.part = -1;
    if (bits.size() < 38) return AisRefusal::TooShort;
    out.type = int(bits.Unsigned(0, 6));
    out.repeat = int(bits.Unsigned(6, 2));
    out.mmsi = uint32_t(bits.Unsigned(8, 30));
    const auto types = Types();
    if (size_t(out.type) >= types.size() || types[out.type].minBits == 0) return AisRefusal::UnknownType;
    const AisTypeDef& t = types[out.type];
    if (bits.size() < t.minBits) return AisRefusal::TooShort;
    if (t.maxBits && bits.size() > t.maxBits) return AisRefusal::TooLong;

    switch (t.layout) {
    case Layout::Table:
        ReadFields(bits, t.fields, 0, out.values);
        break;
    case Layout::Binary:
        ReadFields(bits, t.fields, 0, out.values);
        ReadBinaryApplication(bits, out);
        break;
    case Layout::Channel:
        ReadFields(bits, t.fields, 0, out.values);
        ReadFields(bits, bits.Unsigned(139, 1) ? ChannelAddressed() : ChannelArea(), 0, out.values);
        ReadFields(bits, ChannelTail(), 0, out.values);
        break;
    case Layout::StaticData:
        out.part = int(bits.Unsigned(38, 2));
        if (out.part == 0) {
            if (bits.size() > 168) return AisRefusal::TooLong;
            ReadFields(bits, StaticPartA(), 0, out.values);
        } else if (out.part == 1) {
            if (bits.size() < 168) return AisRefusal::TooShort;
            const bool auxiliary = out.mmsi / 10000000u == 98u;  // a craft of a mothership
            ReadFields(bits, auxiliary ? StaticPartBAuxiliary() : StaticPartB(), 0, out.values);
        } else {
            return AisRefusal::UnknownType;
        }
        break;
    case Layout::SlotBinary:
        return ReadSlotBinary(bits, out);
    }
    return AisRefusal::None;
}

}  // namespace ombra
