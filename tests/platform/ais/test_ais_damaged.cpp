// Damaged, truncated and out-of-order AIS input, from tests/data/ais/
// damaged.txt: every case is turned away for the reason it names, leaves no
// target and prints no JSON, and nothing crashes.
#include <gtest/gtest.h>

#include <map>

#include "platform/ais/AisDecoder.h"
#include "platform/ais/AisJson.h"
#include "platform/fake/ManualClock.h"
#include "tests/platform/ais/AisDamagedCases.h"

namespace ombra::test {
namespace {

// What the decoder says of the case's last sentence, in the data file's words.
std::string Outcome(const AisDecoder& ais, size_t messagesBefore) {
    static const std::map<AisReject, std::string> rejects = {
        {AisReject::None, "accepted"},
        {AisReject::NotAis, "not-ais"},
        {AisReject::NoChecksum, "no-checksum"},
        {AisReject::BadChecksum, "bad-checksum"},
        {AisReject::BadFields, "bad-fields"},
        {AisReject::BadPartCount, "bad-part-count"},
        {AisReject::BadSequence, "bad-sequence"},
        {AisReject::BadPayload, "bad-payload"},
        {AisReject::BadFill, "bad-fill"},
        {AisReject::OutOfOrder, "out-of-order"},
        {AisReject::Stale, "stale"},
    };
    if (ais.LastReject() != AisReject::None) return rejects.at(ais.LastReject());
    if (ais.counts().messages == messagesBefore) return "pending";
    switch (ais.LastRefusal()) {
    case AisRefusal::TooShort: return "refused-too-short";
    case AisRefusal::TooLong: return "refused-too-long";
    case AisRefusal::UnknownType: return "refused-unknown-type";
    case AisRefusal::None: return "decoded";
    }
    return "?";
}

TEST(AisDamaged, EveryCaseIsTurnedAwayForItsReason) {
    const auto cases = ReadCases();
    ASSERT_GE(cases.size(), 40u);
    for (const Case& c : cases) {
        SCOPED_TRACE(c.reason + ": " + c.what);
        ManualClock clock;
        AisDecoder ais(clock);
        AisJsonStream stream;
        std::string json;
        size_t messagesBefore = 0;
        for (const std::string& line : c.lines) {
            if (line.rfind("wait ", 0) == 0) {
                clock.Advance(std::stod(line.substr(5)));
                continue;
            }
            messagesBefore = ais.counts().messages;
            ais.DecodeAIS(line);
            stream.Feed(line, json);
        }
        EXPECT_EQ(Outcome(ais, messagesBefore), c.reason);
        for (int16_t i = 1; i <= ais.GetNoAisTargets(); ++i) {
            AisTarget t;
            EXPECT_EQ(ais.GetAisTarget(i, t), 0) << "target " << i;
        }
        AisTarget own;
        EXPECT_EQ(ais.GetOwnVessel(own), 0);
        // A file replayed has no clock, so parts never go stale there.
        if (c.reason != "stale") {
            EXPECT_EQ(json, "");
        }
    }
}

TEST(AisDamaged, GoodMessageAfterDamageStillDecodes) {
    // Damage must not poison what follows: after every case, a good type 1
    // decodes into a target.
    for (const Case& c : ReadCases()) {
        ManualClock clock;
        AisDecoder ais(clock);
        for (const auto& line : c.lines)
            if (line.rfind("wait ", 0) != 0) ais.DecodeAIS(line);
        ais.DecodeAIS("!AIVDM,1,1,,A,15RTgt0PAso;90TKcjM8h6g208CQ,0*4A");
        AisTarget t;
        bool found = false;
        for (int16_t i = 1; i <= ais.GetNoAisTargets(); ++i)
            if (ais.GetAisTarget(i, t) && AisText(t.MMSI) == "371798000") found = true;
        EXPECT_TRUE(found) << c.what;
    }
}

}  // namespace
}  // namespace ombra::test
