#include "platform/ais/AisJson.h"

#include <charconv>
#include <cmath>

namespace ombra {

namespace {

void AppendInt(std::string& out, int64_t v) {
    char buf[24];
    const auto r = std::to_chars(buf, buf + sizeof buf, v);
    out.append(buf, r.ptr);
}

void AppendFixed(std::string& out, double v, int decimals) {
    char buf[64];
    const auto r = std::to_chars(buf, buf + sizeof buf, v, std::chars_format::fixed, decimals);
    out.append(buf, r.ptr);
}

void AppendString(std::string& out, std::string_view s) {
    out.push_back('"');
    for (char c : s) {
        const unsigned char u = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            out.push_back('\\');
            out.push_back(c);
        } else if (u < 0x20) {
            static constexpr char kHex[] = "0123456789abcdef";
            out += "\\u00";
            out.push_back(kHex[u >> 4]);
            out.push_back(kHex[u & 15]);
        } else {
            out.push_back(c);
        }
    }
    out.push_back('"');
}

void AppendKey(std::string& out, std::string_view key) {
    out.push_back(',');
    out.push_back('"');
    out += key;
    out += "\":";
}

void AppendTurn(std::string& out, int64_t raw) {
    if (raw == -128) {
        out += "\"n/a\"";
    } else if (raw == -127) {
        out += "\"fastleft\"";
    } else if (raw == 127) {
        out += "\"fastright\"";
    } else {
        const double r = double(raw) / 4.733;
        out.push_back('"');
        AppendFixed(out, raw < 0 ? -r * r : r * r, 2);
        out.push_back('"');
    }
}

void AppendValues(const std::vector<AisValue>& values, std::string& out);

void AppendValue(const AisValue& v, std::string& out) {
    const AisFieldDef& f = *v.def;
    if (f.kind == AisKind::Hidden) return;
    AppendKey(out, f.key);
    switch (f.kind) {
    case AisKind::Unsigned:
    case AisKind::Signed:
    case AisKind::Hidden:
        AppendInt(out, v.raw);
        break;
    case AisKind::Bool:
        out += v.raw ? "true" : "false";
        break;
    case AisKind::Scaled:
        AppendFixed(out, v.Number(), f.decimals);
        break;
    case AisKind::Quoted:
        out.push_back('"');
        AppendFixed(out, v.Number(), f.decimals);
        out.push_back('"');
        break;
    case AisKind::ScaledIfSet:
        if (v.raw == 0)
            AppendInt(out, 0);
        else
            AppendFixed(out, v.Number(), f.decimals);
        break;
    case AisKind::Turn:
        AppendTurn(out, v.raw);
        break;
    case AisKind::LegendOnly:
        AppendString(out, f.legend(unsigned(v.raw)));
        return;
    case AisKind::Text:
    case AisKind::TextToEnd:
    case AisKind::AtonName:
    case AisKind::Hex:
    case AisKind::Date:
        AppendString(out, v.text);
        break;
    case AisKind::Group:
        out.push_back('[');
        for (size_t i = 0; i < v.items.size(); ++i) {
            if (i) out.push_back(',');
            const size_t mark = out.size();
            AppendValues(v.items[i], out);
            if (out.size() > mark)
                out[mark] = '{';  // the first value wrote a separating comma
            else
                out.push_back('{');
            out.push_back('}');
        }
        out.push_back(']');
        break;
    }
    if (f.legend) {
        out += ",\"";
        out += f.key;
        out += "_text\":";
        AppendString(out, f.legend(unsigned(v.raw)));
    }
}

void AppendValues(const std::vector<AisValue>& values, std::string& out) {
    for (const AisValue& v : values) AppendValue(v, out);
}

void AppendHead(const AisMessage& m, std::string& out, std::string_view device) {
    out += "{\"class\":\"AIS\"";
    if (!device.empty()) {
        out += ",\"device\":";
        AppendString(out, device);
    }
    out += ",\"type\":";
    AppendInt(out, m.type);
    out += ",\"repeat\":";
    AppendInt(out, m.repeat);
    out += ",\"mmsi\":";
    AppendInt(out, m.mmsi);
    out += ",\"scaled\":true";
}

}  // namespace

void AppendAisJson(const AisMessage& m, std::string& out, std::string_view device) {
    AppendHead(m, out, device);
    AppendValues(m.values, out);
    out.push_back('}');
}

std::string AisJson(const AisMessage& m) {
    std::string out;
    AppendAisJson(m, out);
    return out;
}

int AisJsonStream::Feed(std::string_view line, std::string& out) {
    problem_.clear();
    while (!line.empty() && (line.back() == '\n' || line.back() == '\r')) line.remove_suffix(1);
    const AisReader::Status status = reader_.Feed(line, 0.0, payload_);
    if (status == AisReader::Status::Rejected && reader_.LastReject() == AisReject::NotAis) return 0;
    ++counts_.sentences;
    if (status == AisReader::Status::Rejected) {
        ++counts_.rejected;
        problem_ = AisRejectText(reader_.LastReject());
        return 0;
    }
    if (status == AisReader::Status::Pending) return 0;
    ++counts_.messages;
    const AisRefusal refusal = DecodeAisMessage(payload_.bits, payload_.own, message_);
    if (refusal != AisRefusal::None) {
        ++counts_.refused;
        problem_ = AisRefusalText(refusal);
        return 0;
    }
    if (message_.type == 24) {
        if (message_.part == 0) {
            PartA* slot = nullptr;
            for (PartA& a : partA_)
                if (a.mmsi == message_.mmsi) slot = &a;
            if (!slot) {
                slot = &partA_[nextA_];
                nextA_ = (nextA_ + 1) % partA_.size();
            }
            slot->mmsi = message_.mmsi;
            slot->shipname = message_.Text("shipname");
            problem_ = "static data part A waits for its part B";
            return 0;
        }
        PartA* match = nullptr;
        for (PartA& a : partA_)
            if (a.mmsi == message_.mmsi && a.mmsi != 0) match = &a;
        if (!match) {
            problem_ = "static data part B without its part A";
            return 0;
        }
        AppendHead(message_, out, "stdin");
        out += ",\"shipname\":";
        AppendString(out, match->shipname);
        AppendValues(message_.values, out);
        out += "}\n";
        match->mmsi = 0;  // a repeated part B must not match again
        ++counts_.printed;
        return 1;
    }
    AppendAisJson(message_, out);
    out.push_back('\n');
    ++counts_.printed;
    return 1;
}

}  // namespace ombra
