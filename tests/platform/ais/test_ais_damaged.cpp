// Damaged, truncated and out-of-order AIS input, from tests/data/ais/
// damaged.txt: every case is turned away for the reason it names, leaves no
// target and prints no JSON, and nothing crashes.
#include <gtest/gtest.h>

#include <map>
#include <sstream>

#include "platform/ais/AisDecoder.h"
#include "platform/ais/AisJson.h"
#include "platform/fake/ManualClock.h"
#include "tests/support/TestSupport.h"

namespace ombra::test {
namespace {

struct Case {
    std::string reason;
    std::string what;
    std::vector<std::string> lines;  // sentences, and "wait N"
};

std::vector<Case> ReadCases() {
    std::vector<Case> cases;
    std::istringstream in(ReadFile(std::string(OMBRA_TEST_DATA) + "/ais/damaged.txt"));
    std::string line;
    while (std::getline(in, line)) {
        if (line.empty() || line[0] == '#') continue;
        if (line.rfind("case ", 0) == 0) {
            const size_t space = line.find(' ', 5);
            cases.push_back({line.substr(5, space - 5), line.substr(space + 1), {}});
        } else if (!cases.empty()) {
            cases.back().lines.push_back(line);
        }
    }
    return cases;
}

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

TEST(AisDamaged, CommandLinePrintsNothingForAnyCase) {
    for (const Case& c : ReadCases()) {
        if (c.reason == "stale") continue;
        std::string input;
        for (const auto& line : c.lines) input += line + "\n";
        const RunResult r = test::Run({CliPath(), "ais", "-"}, input);
        EXPECT_EQ(r.exitCode, 0) << c.what;
        EXPECT_EQ(r.out, "") << c.what;
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

TEST(AisDamaged, BinaryNoiseNeitherCrashesNorMakesTargets) {
    // Lines of every byte value, some shaped like sentences.
    std::string noise;
    uint32_t x = 12345;
    for (int line = 0; line < 400; ++line) {
        noise += line % 3 ? "!AIVDM,1,1,,A," : "";
        const int len = int(x % 90);
        for (int k = 0; k < len; ++k) {
            x = x * 1103515245u + 12345u;
            const char c = char(x >> 24);
            noise.push_back(c == '\n' ? ' ' : c);
        }
        noise += "\n";
    }
    const RunResult r = test::Run({CliPath(), "ais", "-"}, noise);
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_EQ(r.out, "");
}

}  // namespace
}  // namespace ombra::test
