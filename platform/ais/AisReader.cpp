#include "platform/ais/AisReader.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace ombra {

const char* AisRejectText(AisReject reason) {
    switch (reason) {
    case AisReject::None: return "accepted";
    case AisReject::NotAis: return "not an AIS sentence";
    case AisReject::NoChecksum: return "no checksum";
    case AisReject::BadChecksum: return "checksum does not match";
    case AisReject::BadFields: return "wrong number of fields";
    case AisReject::BadPartCount: return "bad part count or part number";
    case AisReject::BadSequence: return "bad sequence id";
    case AisReject::BadPayload: return "bad payload";
    case AisReject::BadFill: return "bad fill bits";
    case AisReject::OutOfOrder: return "part out of order or without its first part";
    case AisReject::Stale: return "earlier parts had gone stale";
    }
    return "rejected";
}

namespace {

int HexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return -1;
}

// A field of one digit within [lo, hi], or -1.
int OneDigit(std::string_view f, int lo, int hi) {
    if (f.size() != 1 || f[0] < '0' || f[0] > '9') return -1;
    const int v = f[0] - '0';
    return v >= lo && v <= hi ? v : -1;
}

}  // namespace

AisReject ParseAisSentence(std::string_view line, AisFragment& out) {
    // An IEC 61162-450 tag block "\s:xx,c:nnn*hh\" may precede the sentence.
    if (!line.empty() && line.front() == '\\') {
        const size_t close = line.find('\\', 1);
        if (close == std::string_view::npos) return AisReject::NotAis;
        line.remove_prefix(close + 1);
    }
    if (line.empty() || line.front() != '!') return AisReject::NotAis;
    const size_t addrEnd = line.find_first_of(",*");
    if (addrEnd != 6) return AisReject::NotAis;
    const std::string_view sentence = line.substr(3, 3);
    if (sentence != "VDM" && sentence != "VDO") return AisReject::NotAis;

    const size_t star = line.find('*');
    if (star == std::string_view::npos || star + 3 > line.size()) return AisReject::NoChecksum;
    const int hi = HexDigit(line[star + 1]), lo = HexDigit(line[star + 2]);
    if (hi < 0 || lo < 0) return AisReject::NoChecksum;
    unsigned sum = 0;
    for (size_t i = 1; i < star; ++i) sum ^= static_cast<unsigned char>(line[i]);
    if (sum != unsigned(hi * 16 + lo)) return AisReject::BadChecksum;

    std::array<std::string_view, 7> f;
    size_t n = 0, from = 1;
    const std::string_view body = line.substr(0, star);
    while (true) {
        const size_t comma = body.find(',', from);
        const size_t to = comma == std::string_view::npos ? body.size() : comma;
        if (n == f.size()) return AisReject::BadFields;
        f[n++] = body.substr(from, to - from);
        if (comma == std::string_view::npos) break;
        from = comma + 1;
    }
    if (n != f.size()) return AisReject::BadFields;

    AisFragment r;
    r.own = sentence == "VDO";
    r.count = OneDigit(f[1], 1, 9);
    r.number = OneDigit(f[2], 1, 9);
    if (r.count < 0 || r.number < 0 || r.number > r.count) return AisReject::BadPartCount;
    if (!f[3].empty() && (r.sequence = OneDigit(f[3], 0, 9)) < 0) return AisReject::BadSequence;
    if (f[4].size() > 1) return AisReject::BadFields;
    r.channel = f[4].empty() ? 0 : f[4][0];
    r.payload = f[5];
    r.fill = OneDigit(f[6], 0, 5);
    if (r.fill < 0) return AisReject::BadFill;
    out = r;
    return AisReject::None;
}

AisReader::Status AisReader::Feed(std::string_view sentence, double now, AisPayload& out) {
    AisFragment f;
    const AisReject parsed = ParseAisSentence(sentence, f);
    if (parsed != AisReject::None) return Reject(parsed);

    // Only the last part may end short of a whole character.
    if (f.number != f.count && f.fill != 0) return Reject(AisReject::BadFill);
    AisBits part;
    if (!part.AppendArmoured(f.payload, f.fill)) {
        const bool fillTooBig = size_t(f.fill) > f.payload.size() * 6;
        return Reject(fillTooBig ? AisReject::BadFill : AisReject::BadPayload);
    }

    auto stale = [&](const Pending& p) { return std::fabs(now - p.started) > kStaleSeconds; };
    auto mine = std::find_if(pending_.begin(), pending_.end(), [&](const Pending& p) {
        return p.own == f.own && p.sequence == f.sequence && p.channel == f.channel;
    });
    bool mineWentStale = false;
    if (mine != pending_.end() && f.count > 1 && (f.number == 1 || stale(*mine))) {
        mineWentStale = f.number != 1;
        pending_.erase(mine);  // a new first part replaces what was pending
    }
    std::erase_if(pending_, stale);

    if (f.count == 1) {
        out.bits = part;
        out.own = f.own;
        last_ = AisReject::None;
        return Status::Message;
    }
    mine = std::find_if(pending_.begin(), pending_.end(), [&](const Pending& p) {
        return p.own == f.own && p.sequence == f.sequence && p.channel == f.channel;
    });
    if (f.number == 1) {
        if (pending_.size() >= kMaxPending) {
            auto oldest = std::min_element(pending_.begin(), pending_.end(),
                                           [](const Pending& a, const Pending& b) { return a.started < b.started; });
            pending_.erase(oldest);
        }
        Pending p;
        p.own = f.own;
        p.sequence = f.sequence;
        p.channel = f.channel;
        p.count = f.count;
        p.next = 2;
        p.started = now;
        p.bits = part;
        pending_.push_back(p);
        last_ = AisReject::None;
        return Status::Pending;
    }
    if (mine == pending_.end()) return Reject(mineWentStale ? AisReject::Stale : AisReject::OutOfOrder);
    if (mine->count != f.count || mine->next != f.number || !mine->bits.Append(part)) {
        const bool tooLong = mine->count == f.count && mine->next == f.number;
        pending_.erase(mine);
        return Reject(tooLong ? AisReject::BadPayload : AisReject::OutOfOrder);
    }
    if (f.number < f.count) {
        ++mine->next;
        last_ = AisReject::None;
        return Status::Pending;
    }
    out.bits = mine->bits;
    out.own = f.own;
    pending_.erase(mine);
    last_ = AisReject::None;
    return Status::Message;
}

}  // namespace ombra
