#include "platform/ais/AisDecoder.h"

#include <algorithm>

#include "core/Format.h"

namespace ombra {

namespace {

// Reports of a moving station's own position: these, from our own
// transponder, are what a fix is.
bool IsPositionReport(int type) {
    return type == 1 || type == 2 || type == 3 || type == 18 || type == 19 || type == 27;
}

}  // namespace

void AisDecoder::DecodeAIS(std::string_view sentence) {
    const double now = NowSeconds();
    const AisReader::Status status = reader_.Feed(sentence, now, payload_);
    if (status == AisReader::Status::Rejected && reader_.LastReject() == AisReject::NotAis) return;
    ++counts_.sentences;
    if (status == AisReader::Status::Rejected) ++counts_.rejected;
    if (status != AisReader::Status::Message) return;
    ++counts_.messages;
    lastRefusal_ = DecodeAisMessage(payload_.bits, payload_.own, message_);
    if (lastRefusal_ != AisRefusal::None) {
        ++counts_.refused;
        return;
    }

    const std::string heardAt = FormatDate(clock_.Now(), "Long Time");
    Slot* slot = SlotFor(message_.mmsi);
    AisApplied applied;
    if (slot) {
        applied = ApplyAisMessage(message_, slot->record, heardAt);
    } else {
        AisTarget fresh = BlankAisTarget();
        applied = ApplyAisMessage(message_, fresh, heardAt);
        if (!applied.describes) return;  // not about a station: nothing to keep
        if (free_.empty() && slots_.size() >= kMaxTargets) return;
        size_t index;
        if (!free_.empty()) {
            index = free_.front();
            free_.pop_front();
        } else {
            index = slots_.size();
            slots_.emplace_back();
        }
        slot = &slots_[index];
        *slot = Slot{};
        slot->used = true;
        slot->mmsi = message_.mmsi;
        slot->record = fresh;
        byMmsi_[message_.mmsi] = index;
    }
    if (!applied.describes) return;
    slot->heard = now;
    slot->hasPosition = slot->hasPosition || applied.position;
    if (!message_.own) return;

    slot->record.OwnVessel = 1;
    if (!ownKnown_) own_ = BlankAisTarget();
    const AisApplied ownApplied = ApplyAisMessage(message_, own_, heardAt);
    own_.OwnVessel = 1;
    ownKnown_ = true;
    if (IsPositionReport(message_.type)) {
        own_.Spare = int16_t(!ownApplied.position ? 0 : message_.Raw("accuracy") ? 2 : 1);
        ownFresh_ = true;
    }
}

AisDecoder::Slot* AisDecoder::SlotFor(uint32_t mmsi) {
    const auto it = byMmsi_.find(mmsi);
    return it == byMmsi_.end() ? nullptr : &slots_[it->second];
}

const AisDecoder::Slot* AisDecoder::At(int16_t index) const {
    if (index < 1 || size_t(index) > slots_.size()) return nullptr;
    const Slot& s = slots_[size_t(index) - 1];
    return s.used ? &s : nullptr;
}

int16_t AisDecoder::GetNoAisTargets() const { return int16_t(slots_.size()); }

int16_t AisDecoder::GetAisTarget(int16_t index, AisTarget& target) const {
    const Slot* s = At(index);
    if (!s || !s->hasPosition) return 0;
    target = s->record;
    return 1;
}

double AisDecoder::GetAisTargetLatitude(int16_t index) const {
    const Slot* s = At(index);
    return s && s->hasPosition ? s->record.Latitude : 0.0;
}

double AisDecoder::GetAisTargetLongitude(int16_t index) const {
    const Slot* s = At(index);
    return s && s->hasPosition ? s->record.Longitude : 0.0;
}

double AisDecoder::GetAisTargetHeading(int16_t index) const {
    const Slot* s = At(index);
    return s ? s->record.Heading : -1.0;
}

int16_t AisDecoder::IsOwnVessel(int16_t index) const {
    const Slot* s = At(index);
    return s ? s->record.OwnVessel : 0;
}

void AisDecoder::AisTimeout(double timeoutSeconds) {
    const double now = NowSeconds();
    for (size_t i = 0; i < slots_.size(); ++i) {
        Slot& s = slots_[i];
        if (!s.used) continue;
        if (s.heard > now) s.heard = now;  // the clock was set back
        if (now - s.heard < timeoutSeconds) continue;
        s.used = false;
        byMmsi_.erase(s.mmsi);
        free_.push_back(i);
    }
    // Empty slots at the end are given up, so the count shrinks again.
    while (!slots_.empty() && !slots_.back().used) slots_.pop_back();
    std::erase_if(free_, [&](size_t i) { return i >= slots_.size(); });
}

void AisDecoder::ClearAis() {
    slots_.clear();
    byMmsi_.clear();
    free_.clear();
    reader_.Clear();
    ownKnown_ = ownFresh_ = false;
    own_ = AisTarget{};
}

int16_t AisDecoder::GetOwnVessel(AisTarget& target) {
    if (!ownKnown_) return 0;
    target = own_;
    const bool fresh = ownFresh_;
    ownFresh_ = false;
    return fresh ? 1 : 0;
}

}  // namespace ombra
