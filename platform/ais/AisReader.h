// From NMEA "!" sentences to whole AIS messages.
//
// One AIS message travels in one to nine sentences:
//
//   !AIVDM,2,1,1,A,55?MbV02;H;s<HtKR20EHE:0@T4@Dn22222222...,0*1C
//   !AIVDM,2,2,1,A,88888888880,2*25
//          | | | | |                                    |  checksum
//          | | | | payload in six-bit armour            fill bits
//          | | | radio channel (A, B, 1, 2 or empty)
//          | | sequence id joining the parts (empty for a single sentence)
//          | part number, then the count of parts
//   talker + VDM (heard from others) or VDO (our own transponder)
//
// Framing: the sentence starts with '!' (an IEC 61162-450 tag block
// "\...\" before it is skipped), has exactly seven fields and a checksum
// "*hh" that is the XOR of every character between '!' and '*'. Text after
// the checksum (receiver timestamps, signal levels) is ignored. A sentence
// that fails any test is rejected whole and says why.
//
// Joining: parts are keyed by own/other, sequence id and channel, so two
// messages interleaved on channels A and B assemble side by side. A part
// that is not the one expected next, a part of a different count, or a
// first part arriving again drops what was pending under its key; pending
// parts older than kStaleSeconds are dropped unheard. Only the last part
// may carry fill bits. Times are any monotonic seconds the caller keeps;
// a caller that passes the same time always (a file being replayed) never
// sees a part go stale.
#pragma once
#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/ais/AisBits.h"

namespace ombra {

// One sentence taken apart. The payload views the caller's text.
struct AisFragment {
    bool own = false;   // VDO: a report of our own vessel
    int count = 0;      // parts in the message, 1..9
    int number = 0;     // this part, 1..count
    int sequence = -1;  // 0..9, -1 when the field is empty
    char channel = 0;   // 'A', 'B', '1', '2' ..., 0 when empty
    std::string_view payload;
    int fill = 0;       // fill bits, 0..5
};

enum class AisReject {
    None,
    NotAis,           // not a "!xxVDM" or "!xxVDO" sentence
    NoChecksum,
    BadChecksum,
    BadFields,        // not seven fields
    BadPartCount,     // count or part number not 1..9, part beyond count
    BadSequence,      // sequence id neither empty nor one digit
    BadPayload,       // a character outside the armour alphabet, or too long
    BadFill,          // fill bits not 0..5, more than the payload, or on a part before the last
    OutOfOrder,       // a later part with no matching earlier part pending
    Stale,            // the earlier parts had gone stale
};

const char* AisRejectText(AisReject reason);

// Splits one sentence into its fields. The line may end in CR, LF or junk
// after the checksum.
AisReject ParseAisSentence(std::string_view line, AisFragment& out);

// A whole message, its bits and whether it came from our own transponder.
struct AisPayload {
    AisBits bits;
    bool own = false;
};

class AisReader {
public:
    static constexpr double kStaleSeconds = 10.0;
    static constexpr size_t kMaxPending = 16;  // messages being joined at once

    enum class Status { Message, Pending, Rejected };

    // Feeds one sentence heard at `now` seconds. Message: `out` holds a
    // whole message. Pending: a part was kept. Rejected: see LastReject().
    Status Feed(std::string_view sentence, double now, AisPayload& out);
    AisReject LastReject() const { return last_; }
    // Forgets every pending part.
    void Clear() { pending_.clear(); }
    size_t PendingCount() const { return pending_.size(); }

private:
    struct Pending {
        bool own = false;
        int sequence = -1;
        char channel = 0;
        int count = 0;
        int next = 0;        // the part number expected next
        double started = 0;  // when the first part was heard
        AisBits bits;
    };
    Status Reject(AisReject why) { last_ = why; return Status::Rejected; }
    std::vector<Pending> pending_;
    AisReject last_ = AisReject::None;
};

}  // namespace ombra
