// The AIS decoder and its table of targets: the AIS side of the serial
// library, as the plotter calls it once per sentence and once per tick.
//
//   AisDecoder ais(clock);
//   ais.DecodeAIS("!AIVDM,1,1,,A,15RTgt0PAso;90TKcjM8h6g208CQ,0*4A");
//   ais.GetNoAisTargets()            == 1
//   AisTarget t; ais.GetAisTarget(1, t) != 0
//   AisText(t.MMSI)                  == "371798000", t.Latitude == 48.3816333..
//   ais.AisTimeout(300);             // forget targets silent for 5 minutes
//
// The table is keyed by MMSI: a position report, a static and voyage report
// (type 5), Class B static data (type 24, parts A and B) or an AtoN report
// all update the one record of their station, in whatever order they come.
//
// Indices run 1..GetNoAisTargets() and a station keeps its index for as long
// as it stays in the table, so an index held by the console keeps meaning
// the same station. When a station times out its slot is left empty
// (GetAisTarget returns 0 for it) and slots are reused oldest-emptied first,
// so the slot of a target just lost is the last to be given to a newcomer.
// A station heard only through static data, with no position yet, also
// gives 0: there is nothing to draw or centre on.
//
// Time comes from the Clock given, never the system clock. Ages are taken on
// the full date and time, so midnight is no edge; a clock set back counts
// the targets as heard now.
//
// Our own transponder's reports (AIVDO) update a record marked OwnVessel = 1
// in the table, and the own-vessel record read by GetOwnVessel.
//
// Nothing here throws on bad input: a sentence that does not frame, fails
// its checksum, arrives out of order or decodes to nothing sensible leaves
// the table as it was.
#pragma once
#include <cstdint>
#include <deque>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/ais/AisMessage.h"
#include "platform/ais/AisReader.h"
#include "platform/ais/AisTarget.h"
#include "platform/api/Clock.h"

namespace ombra {

class AisDecoder {
public:
    // The most targets the 16-bit count can number.
    static constexpr size_t kMaxTargets = 32767;

    explicit AisDecoder(Clock& clock) : clock_(clock) {}

    // Takes one "!" sentence (VDM or VDO) with its checksum; joins the parts
    // of multi-sentence messages and updates the table.
    void DecodeAIS(std::string_view sentence);

    // The number of slots, 1..count are valid indices.
    int16_t GetNoAisTargets() const;
    // Copies the target at `index` (1-based); 0 when there is no such target
    // or it has no position yet, otherwise 1.
    int16_t GetAisTarget(int16_t index, AisTarget& target) const;
    // Single values of the target at `index`; 0 when there is none (heading
    // -1).
    double GetAisTargetLatitude(int16_t index) const;
    double GetAisTargetLongitude(int16_t index) const;
    double GetAisTargetHeading(int16_t index) const;
    // 1 when the target at `index` is our own vessel.
    int16_t IsOwnVessel(int16_t index) const;

    // Removes the targets not heard within `timeoutSeconds`; 0 removes them all.
    void AisTimeout(double timeoutSeconds);
    // Empties the table (the own-vessel record and pending parts too).
    void ClearAis();

    // Our own vessel as its transponder reports it (AIVDO). Fills `target`
    // when any own report has been decoded, and returns 1 only when a new
    // own position report has been decoded since the last call, so that one
    // report stamps one fix; otherwise 0. The fix quality is in `Spare`
    // (see AisTarget.h).
    int16_t GetOwnVessel(AisTarget& target);

    // Counters for diagnostics.
    struct Counts {
        size_t sentences = 0, rejected = 0, messages = 0, refused = 0;
    };
    const Counts& counts() const { return counts_; }
    // Why the last sentence was turned away, and why the last whole message
    // was not decoded (None when it was).
    AisReject LastReject() const { return reader_.LastReject(); }
    AisRefusal LastRefusal() const { return lastRefusal_; }

private:
    struct Slot {
        bool used = false;
        bool hasPosition = false;
        uint32_t mmsi = 0;
        double heard = 0;  // seconds, on the serial date-time scale
        AisTarget record{};
    };
    double NowSeconds() const { return clock_.Now().Serial() * 86400.0; }
    const Slot* At(int16_t index) const;
    Slot* SlotFor(uint32_t mmsi);

    Clock& clock_;
    AisReader reader_;
    AisPayload payload_;
    AisMessage message_;
    std::vector<Slot> slots_;
    std::unordered_map<uint32_t, size_t> byMmsi_;
    std::deque<size_t> free_;  // emptied slots, oldest first
    AisTarget own_{};
    bool ownKnown_ = false;
    bool ownFresh_ = false;
    Counts counts_;
    AisRefusal lastRefusal_ = AisRefusal::None;
};

}  // namespace ombra
