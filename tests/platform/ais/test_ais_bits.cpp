// Six-bit armour and field reading, at the edges: the last character's fill
// bits, signed fields, fields past the end of a short message, text cut at
// '@' and trimmed, and hexadecimal dumps of bit runs not on byte boundaries.
#include <gtest/gtest.h>

#include "platform/ais/AisBits.h"
#include "platform/ais/AisMessage.h"

namespace ombra {
namespace {

TEST(AisBits, ArmourAlphabetAndFill) {
    struct Case {
        const char* payload;
        int fill;
        bool ok;
        size_t bits;
        uint64_t first12;  // the first 12 bits
    };
    const Case cases[] = {
        {"00", 0, true, 12, 0x000},
        {"0w", 0, true, 12, 0x03F},   // 'w' is 63
        {"W`", 0, true, 12, 0x9E8},   // 'W' 39, '`' 40
        {"ww", 5, true, 7, 0xFE0},    // 7 bits left, the cut bits read as zeros
        {"X0", 0, false, 0, 0},       // 'X' lies between the two halves of the alphabet
        {"_0", 0, false, 0, 0},
        {"x0", 0, false, 0, 0},
        {"0/", 0, false, 0, 0},
        {"ww", 6, false, 0, 0},       // no more than 5 fill bits
        {"", 1, false, 0, 0},         // fill bits with nothing to cut
        {"", 0, true, 0, 0},
    };
    for (const Case& c : cases) {
        AisBits b;
        EXPECT_EQ(b.AppendArmoured(c.payload, c.fill), c.ok) << c.payload << "," << c.fill;
        EXPECT_EQ(b.size(), c.bits) << c.payload;
        EXPECT_EQ(b.Unsigned(0, 12), c.first12) << c.payload;
    }
}

TEST(AisBits, FieldsSignedAndPastTheEnd) {
    AisBits b;
    ASSERT_TRUE(b.AppendArmoured("15RTgt0PAso;90TKcjM8h6g208CQ", 0));
    ASSERT_EQ(b.size(), 168u);
    EXPECT_EQ(b.Unsigned(0, 6), 1u);
    EXPECT_EQ(b.Unsigned(8, 30), 371798000u);
    EXPECT_EQ(b.Signed(61, 28), -74037230);      // 123 23.7230 W in 1/10000 minute
    EXPECT_EQ(b.Signed(89, 27), 29028980);       // 48 22.8980 N
    EXPECT_EQ(b.Signed(42, 8), -127);            // turn: fast to port
    EXPECT_EQ(b.Unsigned(160, 16), b.Unsigned(160, 8) << 8);  // 8 bits past the end read as zeros
    EXPECT_EQ(b.Unsigned(168, 30), 0u);
    EXPECT_EQ(b.Unsigned(100000, 30), 0u);
    EXPECT_EQ(b.Signed(0, 0), 0);

    AisBits ones;
    ASSERT_TRUE(ones.AppendArmoured("wwwwwwwwwwww", 0));  // 72 one bits
    EXPECT_EQ(ones.Signed(0, 1), -1);
    EXPECT_EQ(ones.Signed(3, 64), -1);
    EXPECT_EQ(ones.Unsigned(0, 64), ~uint64_t(0));
    EXPECT_EQ(ones.Unsigned(5, 3), 7u);
}

TEST(AisBits, TextAndHex) {
    AisBits b;
    // "AB C  " then '@' then "Z": the text ends at '@', trailing blanks go.
    ASSERT_TRUE(b.AppendArmoured("12P3PP0J", 0));
    EXPECT_EQ(b.Text(0, 8), "AB C");
    EXPECT_EQ(b.Text(0, 8, false), "AB C  ");
    EXPECT_EQ(b.Text(6, 1), "B");
    EXPECT_EQ(b.Text(48, 5), "");  // past the end: '@' at once
    EXPECT_EQ(b.Hex(0, 16), "0428");
    EXPECT_EQ(b.Hex(0, 12), "0428");  // the last byte is completed with the bits that follow
    EXPECT_EQ(b.Hex(6, 12), "0a00");
    EXPECT_EQ(b.Hex(44, 8), "a0");    // 4 bits, then zeros past the end
    EXPECT_EQ(b.Hex(0, 0), "");
}

TEST(AisBits, JoiningKeepsTheBitString) {
    AisBits a, c, whole;
    ASSERT_TRUE(a.AppendArmoured("55?MbV02;H;s<HtKR20EHE:0@T4@Dn2222222216L961O5Gf0NSQEp6ClRp8", 0));
    ASSERT_TRUE(c.AppendArmoured("88888888880", 2));
    ASSERT_TRUE(whole.AppendArmoured(
        "55?MbV02;H;s<HtKR20EHE:0@T4@Dn2222222216L961O5Gf0NSQEp6ClRp888888888880", 2));
    ASSERT_TRUE(a.Append(c));
    EXPECT_EQ(a.size(), 424u);
    for (size_t i = 0; i < 424; i += 53) EXPECT_EQ(a.Unsigned(i, 53), whole.Unsigned(i, 53));
    EXPECT_EQ(a.Text(112, 20), "EVER DIADEM");
}

TEST(AisMessage, LengthLimitsByType) {
    // Type 1 from 163 bits (the radio state cut short) to 204; type 5 from 420.
    struct Case {
        const char* payload;
        int fill;
        AisRefusal want;
    };
    const Case cases[] = {
        {"13aIkM@P00PJ@qPNL=e@0?wJ28JO", 5, AisRefusal::None},         // 163 bits
        {"13aIkM@P00PJ@qPNL=e@0?wJ28JO", 0, AisRefusal::None},         // 168
        {"13aIkM@P00PJ@qPNL=e@0?wJ28J", 0, AisRefusal::TooShort},      // 162
        {"13aIkM@P00PJ@qPNL=e@0?wJ28JO0000000", 0, AisRefusal::TooLong},  // 210
        {"", 0, AisRefusal::TooShort},
        {"s3aIkM@P00PJ@qPNL=e@0?wJ28JO", 0, AisRefusal::UnknownType},  // type 59
    };
    for (const Case& c : cases) {
        AisBits b;
        ASSERT_TRUE(b.AppendArmoured(c.payload, c.fill));
        AisMessage m;
        EXPECT_EQ(DecodeAisMessage(b, false, m), c.want) << c.payload << "," << c.fill;
    }
    // Radio state of the short form: the 14 bits there are.
    AisBits b;
    ASSERT_TRUE(b.AppendArmoured("13aIkM@P00PJ@qPNL=e@0?wJ28JO", 5));
    AisMessage m;
    ASSERT_EQ(DecodeAisMessage(b, false, m), AisRefusal::None);
    EXPECT_EQ(m.Raw("radio"), 1076);
}

}  // namespace
}  // namespace ombra
