// Fields whose meaning hangs on another field or on a non-linear scale,
// from messages built bit by bit: the type 24 part B of a craft that
// belongs to a mothership, and the rate of turn over its whole range.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <string>
#include <vector>

#include "platform/ais/AisBits.h"
#include "platform/ais/AisDecoder.h"
#include "platform/ais/AisMessage.h"
#include "platform/fake/ManualClock.h"

namespace ombra::test {
namespace {

// A message as bits, fields written at their offsets, then armoured.
struct BitWriter {
    std::vector<bool> bits;
    explicit BitWriter(size_t n) : bits(n) {}
    BitWriter& Put(size_t start, size_t width, int64_t value) {
        for (size_t i = 0; i < width; ++i) bits[start + i] = (uint64_t(value) >> (width - 1 - i)) & 1u;
        return *this;
    }
    // The six-bit payload and its fill bits.
    std::string Payload(int& fill) const {
        std::string out;
        fill = int((6 - bits.size() % 6) % 6);
        for (size_t at = 0; at < bits.size(); at += 6) {
            unsigned v = 0;
            for (size_t i = 0; i < 6; ++i) v = (v << 1) | (at + i < bits.size() && bits[at + i] ? 1u : 0u);
            out += char(v < 40 ? v + 48 : v + 56);
        }
        return out;
    }
    AisBits Bits() const {
        int fill = 0;
        AisBits b;
        EXPECT_TRUE(b.AppendArmoured(Payload(fill), fill));
        return b;
    }
    std::string Sentence() const {
        int fill = 0;
        const std::string body = "AIVDM,1,1,,A," + Payload(fill) + "," + std::to_string(fill);
        unsigned char sum = 0;
        for (char c : body) sum ^= static_cast<unsigned char>(c);
        char hex[4];
        std::snprintf(hex, sizeof hex, "%02X", sum);
        return "!" + body + "*" + hex + "\r\n";
    }
};

// Type 24 part B: ship type, vendor, call sign, then either the hull's
// dimensions or, from an auxiliary craft, the mothership's MMSI.
BitWriter PartB(uint32_t mmsi, uint32_t tail30) {
    BitWriter w(168);
    w.Put(0, 6, 24).Put(8, 30, mmsi).Put(38, 2, 1).Put(40, 8, 37);
    w.Put(132, 30, tail30);
    return w;
}

}  // namespace

TEST(AisStaticPartB, AnAuxiliaryCraftCarriesItsMothershipNotDimensions) {
    // Bits 132-161 as a mothership MMSI 366123456, or, read as a hull,
    // to_bow 174 to_stern 297 to_port 39 to_starboard 0.
    const uint32_t tail = 366123456u;
    struct Case {
        uint32_t mmsi;
        bool auxiliary;
    } cases[] = {
        {980000000u, true}, {981234567u, true}, {989999999u, true},
        {979999999u, false}, {990000000u, false}, {366999999u, false}, {98123456u, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.mmsi);
        AisMessage m;
        ASSERT_EQ(DecodeAisMessage(PartB(c.mmsi, tail).Bits(), false, m), AisRefusal::None);
        EXPECT_EQ(m.part, 1);
        EXPECT_EQ(m.mmsi, c.mmsi);
        EXPECT_EQ(m.Find("mothership_mmsi") != nullptr, c.auxiliary);
        EXPECT_EQ(m.Find("to_bow") != nullptr, !c.auxiliary);
        if (c.auxiliary) {
            EXPECT_EQ(m.Raw("mothership_mmsi"), 366123456);
        } else {
            EXPECT_EQ(m.Raw("to_bow") + m.Raw("to_stern"), (tail >> 21) + ((tail >> 12) & 511));
            EXPECT_EQ(m.Raw("to_port"), (tail >> 6) & 63);
            EXPECT_EQ(m.Raw("to_starboard"), tail & 63);
        }
    }
}

// The target table: a craft of a mothership gets no length or width out of
// the mothership's number; a ship does.
TEST(AisStaticPartB, TheTargetOfAnAuxiliaryCraftHasNoDimensionsFromTheMMSI) {
    struct Case {
        uint32_t mmsi;
        bool sized;
    } cases[] = {{981234567u, false}, {366999999u, true}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.mmsi);
        ManualClock clock;
        clock.SetTime(12, 0, 0);
        AisDecoder ais(clock);
        BitWriter pos(168);  // a class A position so that the target is listed
        pos.Put(0, 6, 1).Put(8, 30, c.mmsi).Put(42, 8, -128).Put(61, 28, -600000).Put(89, 27, 30000000).Put(128, 9, 511);
        ais.DecodeAIS(pos.Sentence());
        ais.DecodeAIS(PartB(c.mmsi, 366123456u).Sentence());
        ASSERT_EQ(ais.GetNoAisTargets(), 1);
        AisTarget t;
        ASSERT_EQ(ais.GetAisTarget(1, t), 1);
        const std::string length(t.Length, sizeof t.Length);
        // Read as a hull, the mothership's number would be 174 + 297 m long.
        EXPECT_EQ(length.find("471") != std::string::npos, c.sized) << length;
    }
}

// Rate of turn: the indicator is 4.733 times the root of the rate in
// degrees a minute, signed (+ to starboard); 127 and -127 turn faster than
// it can show, -128 is "not available".
TEST(AisRateOfTurn, TheWholeRangeOfTheIndicator) {
    auto Turn = [](int raw) {
        ManualClock clock;
        clock.SetTime(12, 0, 0);
        AisDecoder ais(clock);
        BitWriter pos(168);
        pos.Put(0, 6, 1).Put(8, 30, 366000001).Put(42, 8, raw).Put(61, 28, -600000).Put(89, 27, 30000000).Put(128, 9, 511);
        ais.DecodeAIS(pos.Sentence());
        AisTarget t;
        if (ais.GetAisTarget(1, t) != 1) return std::string("no target");
        std::string text(t.ROT, sizeof t.ROT);
        while (!text.empty() && (text.back() == ' ' || text.back() == '\0')) text.pop_back();
        return text;
    };
    struct Case {
        int raw;
        const char* text;
    } cases[] = {
        {-128, "N/A"}, {127, "Fast R"}, {-127, "Fast L"}, {0, "0"},  {1, "0"},      {-1, "0"},
        {5, "+1"},     {-5, "-1"},      {10, "+4"},       {-10, "-4"}, {64, "+183"}, {126, "+709"},
        {-126, "-709"},
    };
    for (const Case& c : cases) EXPECT_EQ(Turn(c.raw), c.text) << c.raw;

    // Between the ends the shown rate never falls as the indicator rises,
    // and its sign is the indicator's.
    int last = -100000;
    for (int raw = -126; raw <= 126; ++raw) {
        const std::string s = Turn(raw);
        ASSERT_FALSE(s.empty()) << raw;
        const int v = std::atoi(s.c_str());
        EXPECT_GE(v, last) << raw << " " << s;
        if (v != 0) {
            EXPECT_EQ(v > 0, raw > 0) << raw;
        }
        last = v;
    }
}

}  // namespace ombra::test
