// ombra-cli ais against gpsd's AIVDM regression corpus: every message of
// every type, every field, compared as JSON values. Numbers agree within
// half a unit of the last decimal gpsd printed.
#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "tests/platform/ais/AisDamagedCases.h"
#include "tests/platform/ais/JsonLite.h"
#include "tests/support/TestSupport.h"

namespace ombra::test {
namespace {

// Where Ombra knowingly differs from the gpsd that wrote the corpus.
struct Deviation {
    int type;
    const char* key;
    const char* why;
};
const Deviation kDeviations[] = {
    // gpsd keeps a radio field for type 26 but never decodes it, printing 0;
    // Ombra reports the 20 bits of communication state the message ends in.
    {26, "radio", "gpsd does not decode the type 26 radio status"},
};

const Deviation* DeviationFor(int type, const std::string& key) {
    for (const Deviation& d : kDeviations)
        if (d.type == type && key == d.key) return &d;
    return nullptr;
}

// Compares two JSON values; appends what differs to `diffs`.
void Compare(const Json& want, const Json& got, const std::string& path, std::vector<std::string>& diffs) {
    if (want.kind != got.kind) {
        diffs.push_back(path + ": kind differs");
        return;
    }
    switch (want.kind) {
    case Json::Kind::Number: {
        const double tolerance = 0.5 * std::pow(10.0, -want.Decimals()) + 1e-9;
        if (std::fabs(want.number - got.number) > tolerance)
            diffs.push_back(path + ": " + want.text + " != " + got.text);
        break;
    }
    case Json::Kind::String:
        if (want.text != got.text) diffs.push_back(path + ": \"" + want.text + "\" != \"" + got.text + "\"");
        break;
    case Json::Kind::Bool:
        if (want.boolean != got.boolean) diffs.push_back(path + ": boolean differs");
        break;
    case Json::Kind::Array:
        if (want.items.size() != got.items.size()) {
            diffs.push_back(path + ": array length differs");
            break;
        }
        for (size_t i = 0; i < want.items.size(); ++i)
            Compare(want.items[i], got.items[i], path + "[" + std::to_string(i) + "]", diffs);
        break;
    case Json::Kind::Object:
        for (const auto& [key, value] : want.members) {
            const Json* g = got.Member(key);
            if (!g) diffs.push_back(path + "." + key + ": missing");
            else Compare(value, *g, path + "." + key, diffs);
        }
        for (const auto& [key, value] : got.members)
            if (!want.Member(key)) diffs.push_back(path + "." + key + ": not in gpsd's output");
        break;
    case Json::Kind::Null:
        break;
    }
}

std::vector<std::string> NonEmpty(const std::vector<std::string>& lines) {
    std::vector<std::string> out;
    for (const auto& l : lines)
        if (!l.empty()) out.push_back(l);
    return out;
}

TEST(AisCli, MatchesGpsdCorpusFieldByField) {
    const RunResult r = test::Run({CliPath(), "ais", SharedData("ais/sample.aivdm")});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    const auto got = NonEmpty(SplitLines(r.out));
    const auto want = NonEmpty(SplitLines(ReadFile(SharedData("ais/sample.aivdm.expected.jsonl"))));
    ASSERT_EQ(got.size(), want.size());

    std::map<int, int> typesSeen;
    for (size_t i = 0; i < want.size(); ++i) {
        const Json w = JsonReader::Parse(want[i]);
        const Json g = JsonReader::Parse(got[i]);
        const int type = int(w.Member("type")->number);
        ++typesSeen[type];
        Json wTrimmed = w, gTrimmed = g;
        for (const Deviation& d : kDeviations) {
            if (d.type != type) continue;
            // A deviating field must still be there, as a number.
            const Json* dv = g.Member(d.key);
            ASSERT_TRUE(dv && dv->kind == Json::Kind::Number) << "message " << i << ": " << d.key;
            std::erase_if(wTrimmed.members, [&](auto& m) { return DeviationFor(type, m.first) != nullptr; });
            std::erase_if(gTrimmed.members, [&](auto& m) { return DeviationFor(type, m.first) != nullptr; });
        }
        std::vector<std::string> diffs;
        Compare(wTrimmed, gTrimmed, "", diffs);
        std::ostringstream what;
        for (const auto& d : diffs) what << "\n  " << d;
        EXPECT_TRUE(diffs.empty()) << "message " << i + 1 << " (type " << type << "):" << what.str();
    }
    // The corpus holds every type decoded here but 28+; make sure none went missing.
    for (int type : {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24, 25,
                     26, 27})
        EXPECT_GT(typesSeen[type], 0) << "type " << type;
}

TEST(AisCli, StandardInputGivesTheSameAsAFile) {
    const std::string corpus = ReadFile(SharedData("ais/sample.aivdm"));
    const RunResult fromFile = test::Run({CliPath(), "ais", SharedData("ais/sample.aivdm")});
    const RunResult fromStdin = test::Run({CliPath(), "ais", "-"}, corpus);
    ASSERT_NE(fromFile.out, "");
    EXPECT_EQ(fromStdin.exitCode, 0);
    EXPECT_EQ(fromStdin.out, fromFile.out);
}

TEST(AisCli, BadArgumentsAndMissingFiles) {
    EXPECT_EQ(test::Run({CliPath(), "ais"}).exitCode, 2);
    EXPECT_EQ(test::Run({CliPath(), "ais", "a", "b"}).exitCode, 2);
    const RunResult missing = test::Run({CliPath(), "ais", "/nonexistent/ais.log"});
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_NE(missing.err.find("cannot read"), std::string::npos);
}

TEST(AisCli, TargetTableOfTheCorpus) {
    // The corpus read as a receiver would: targets by MMSI with their texts.
    const RunResult r = test::Run({CliPath(), "ais-targets", SharedData("ais/sample.aivdm")});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    // EVER DIADEM sends only static data in the corpus: no position, no target.
    EXPECT_EQ(r.out.find("EVER DIADEM"), std::string::npos);
    EXPECT_NE(r.out.find("  MMSI: 003669702\n  Type: Base station\n"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("  Name: CHINA ROSE MURPHY EXPRES\n  Type: Cardinal Mark N\n"), std::string::npos);
}

TEST(AisCliDamaged, CommandLinePrintsNothingForAnyCase) {
    for (const Case& c : ReadCases()) {
        if (c.reason == "stale") continue;
        std::string input;
        for (const auto& line : c.lines) input += line + "\n";
        const RunResult r = test::Run({CliPath(), "ais", "-"}, input);
        EXPECT_EQ(r.exitCode, 0) << c.what;
        EXPECT_EQ(r.out, "") << c.what;
    }
}

TEST(AisCliDamaged, BinaryNoiseNeitherCrashesNorMakesTargets) {
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
