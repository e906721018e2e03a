// The AIS target table, driven by the scenarios in tests/data/ais/targets/:
// ageing, updates of one MMSI, static data merging into position targets,
// the own vessel from AIVDO, and the console texts. Each scenario is a
// script of sentences, clock moves and expectations:
//
//   at 12:00:00             the clock, same day     wait 30      seconds on
//   !AIVDM,...              DecodeAIS               timeout 300  AisTimeout
//   clear                   ClearAis                count 3      GetNoAisTargets
//   target 2 Name="X" ...   GetAisTarget(2) gives a target with these fields
//   no-target 2             GetAisTarget(2) gives 0
//   own Spare=2 ...         GetOwnVessel gives a new fix with these fields
//   own-unchanged ...       GetOwnVessel gives no new fix; the record has these fields
//   no-own                  GetOwnVessel gives 0 and fills nothing
//
// Text after " #" is a comment.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <filesystem>
#include <sstream>

#include "platform/ais/AisDecoder.h"
#include "platform/fake/ManualClock.h"
#include "tests/support/TestSupport.h"

namespace ombra::test {
namespace {

// Splits "Name=\"SEA WITCH\" Latitude=50.5" into field, value pairs.
std::vector<std::pair<std::string, std::string>> Fields(std::istringstream& in) {
    std::vector<std::pair<std::string, std::string>> out;
    std::string rest;
    std::getline(in, rest);
    size_t i = 0;
    while (i < rest.size()) {
        while (i < rest.size() && rest[i] == ' ') ++i;
        if (i >= rest.size()) break;
        const size_t eq = rest.find('=', i);
        if (eq == std::string::npos) throw std::runtime_error("field without '=': " + rest.substr(i));
        std::string name = rest.substr(i, eq - i), value;
        i = eq + 1;
        if (i < rest.size() && rest[i] == '"') {
            const size_t close = rest.find('"', i + 1);
            value = rest.substr(i + 1, close - i - 1);
            i = close + 1;
        } else {
            const size_t end = std::min(rest.find(' ', i), rest.size());
            value = rest.substr(i, end - i);
            i = end;
        }
        out.emplace_back(name, value);
    }
    return out;
}

// Checks one field of a record; an empty string when it matches.
std::string Check(const AisTarget& t, const std::string& field, const std::string& want) {
    struct Number {
        const char* name;
        double value;
    };
    const Number numbers[] = {{"Latitude", t.Latitude}, {"Longitude", t.Longitude}, {"Speed", t.Speed},
                              {"Course", t.Course},     {"Heading", t.Heading},     {"OwnVessel", double(t.OwnVessel)},
                              {"Spare", double(t.Spare)}};
    for (const Number& n : numbers) {
        if (field != n.name) continue;
        if (std::fabs(n.value - std::stod(want)) <= 5e-8) return "";
        return field + " is " + std::to_string(n.value) + ", want " + want;
    }
    struct Text {
        const char* name;
        std::string value;
    };
    const Text texts[] = {
        {"MMSI", AisText(t.MMSI)},         {"IMO", AisText(t.IMO)},
        {"CallSign", AisText(t.CallSign)}, {"Name", AisText(t.Name)},
        {"Type", AisText(t.Type)},         {"Status", AisText(t.Status)},
        {"Update", AisText(t.Update)},     {"Accuracy", AisText(t.Accuracy)},
        {"Nav", AisText(t.Nav)},           {"Length", AisText(t.Length)},
        {"Width", AisText(t.Width)},       {"SOG", AisText(t.SOG)},
        {"COG", AisText(t.COG)},           {"Gyro", AisText(t.Gyro)},
        {"ROT", AisText(t.ROT)},           {"Draft", AisText(t.Draft)},
        {"Destination", AisText(t.Destination)}, {"ETA", AisText(t.ETA)},
    };
    for (const Text& x : texts) {
        if (field != x.name) continue;
        return x.value == want ? "" : field + " is \"" + x.value + "\", want \"" + want + "\"";
    }
    return "no field " + field;
}

void RunScenario(const std::string& path) {
    ManualClock clock;
    AisDecoder ais(clock);
    std::istringstream file(ReadFile(path));
    std::string line;
    int lineNo = 0;
    while (std::getline(file, line)) {
        ++lineNo;
        if (const size_t hash = line.find(" #"); hash != std::string::npos) line.erase(hash);
        while (!line.empty() && (line.back() == ' ' || line.back() == '\r')) line.pop_back();
        if (line.empty() || line[0] == '#') continue;
        SCOPED_TRACE(path + ":" + std::to_string(lineNo) + ": " + line);
        if (line[0] == '!') {
            ais.DecodeAIS(line);
            continue;
        }
        std::istringstream in(line);
        std::string verb;
        in >> verb;
        if (verb == "at") {
            int h = 0, m = 0, s = 0;
            char c1, c2;
            in >> h >> c1 >> m >> c2 >> s;
            clock.SetTime(h, m, s);
        } else if (verb == "wait") {
            double seconds;
            in >> seconds;
            clock.Advance(seconds);
        } else if (verb == "timeout") {
            double seconds;
            in >> seconds;
            ais.AisTimeout(seconds);
        } else if (verb == "clear") {
            ais.ClearAis();
        } else if (verb == "count") {
            int n;
            in >> n;
            EXPECT_EQ(ais.GetNoAisTargets(), n);
        } else if (verb == "target" || verb == "no-target") {
            int index;
            in >> index;
            AisTarget t = BlankAisTarget();
            const int16_t got = ais.GetAisTarget(int16_t(index), t);
            if (verb == "no-target") {
                EXPECT_EQ(got, 0);
                continue;
            }
            ASSERT_NE(got, 0);
            EXPECT_EQ(ais.IsOwnVessel(int16_t(index)), t.OwnVessel);
            EXPECT_EQ(ais.GetAisTargetLatitude(int16_t(index)), t.Latitude);
            EXPECT_EQ(ais.GetAisTargetLongitude(int16_t(index)), t.Longitude);
            EXPECT_EQ(ais.GetAisTargetHeading(int16_t(index)), t.Heading);
            for (const auto& [field, want] : Fields(in)) EXPECT_EQ(Check(t, field, want), "");
        } else if (verb == "own" || verb == "own-unchanged" || verb == "no-own") {
            AisTarget t;
            std::memset(&t, 'x', sizeof t);
            const int16_t got = ais.GetOwnVessel(t);
            EXPECT_EQ(got, verb == "own" ? 1 : 0);
            if (verb == "no-own") {
                EXPECT_EQ(AisText(t.MMSI), std::string(16, 'x'));  // nothing was filled
                continue;
            }
            for (const auto& [field, want] : Fields(in)) EXPECT_EQ(Check(t, field, want), "");
        } else {
            FAIL() << "unknown verb " << verb;
        }
    }
}

TEST(AisTargets, Scenarios) {
    const std::filesystem::path dir = std::string(OMBRA_TEST_DATA) + "/ais/targets";
    int scenarios = 0;
    for (const auto& entry : std::filesystem::directory_iterator(dir)) {
        if (entry.path().extension() != ".scn") continue;
        ++scenarios;
        RunScenario(entry.path().string());
    }
    EXPECT_GE(scenarios, 7);
}

TEST(AisTargets, RecordTextsAreFixedFieldsPaddedWithBlanks) {
    AisTarget t = BlankAisTarget();
    SetAisText(t.CallSign, "ABCDEFGHIJ");  // 8 bytes: cut
    EXPECT_EQ(std::string(t.CallSign, 8), "ABCDEFGH");
    EXPECT_EQ(AisText(t.CallSign), "ABCDEFGH");
    SetAisText(t.Name, "SEA");
    EXPECT_EQ(std::string(t.Name, 24), "SEA" + std::string(21, ' '));
    // Readers of the record trim blanks and NULs, whichever pads it.
    std::memcpy(t.Nav, "  GPS\0\0\0\0\0\0\0\0\0\0\0", 16);
    EXPECT_EQ(AisText(t.Nav), "GPS");
}

}  // namespace
}  // namespace ombra::test
