#include <gtest/gtest.h>

#include "core/Fault.h"
#include "core/TextRecord.h"

using namespace ombra;

TEST(TextRecord, WritesTheLineFormat) {
    TextRecordWriter w;
    w.Str("WP001").Num(1).Str("North, \"cardinal\"").Num(180000.5).Num(-43200.0).Num(-0.5f).Bool(true).Bool(false)
        .Date(DateTime{2026, 11, 23, 0, 0, 0, 0}).EndLine();
    w.Str("").Num(0).EndLine();
    EXPECT_EQ(w.Text(),
              "\"WP001\",1,\"North, \"\"cardinal\"\"\",180000.5,-43200,-0.5,#TRUE#,#FALSE#,#2026-11-23#\r\n"
              "\"\",0\r\n");
}

TEST(TextRecord, RoundTripsAwkwardStrings) {
    const char* strings[] = {"", "plain", "comma, inside", "\"quoted\"", "a \"\" b", "trailing ", " leading",
                             "ümlaut °´", ",", "\"", "line\rbreak?"};
    TextRecordWriter w;
    for (auto s : strings) w.Str(s).Num(1.25).EndLine();
    TextRecordReader r(w.Text());
    for (auto s : strings) {
        EXPECT_EQ(r.ReadString(), s);
        EXPECT_EQ(r.ReadNumber(), 1.25);
    }
    EXPECT_TRUE(r.AtEnd());
}

TEST(TextRecord, ReadsByCountedFieldsWhateverTheLineBreaks) {
    // Values split over lines and LF-only ends read the same as one CR LF line.
    TextRecordReader r("\"A\",1\n2,#TRUE#\r\n  \"B\" , 3.5 ,#2020-02-29 10:11:12#\r\n");
    EXPECT_EQ(r.ReadString(), "A");
    EXPECT_EQ(r.ReadNumber(), 1);
    EXPECT_EQ(r.Line(), 2);  // the next value stands on line 2
    EXPECT_EQ(r.ReadInt16(), 2);
    EXPECT_TRUE(r.ReadBool());
    EXPECT_EQ(r.ReadString(), "B");
    EXPECT_EQ(r.ReadFloat(), 3.5f);
    EXPECT_EQ(r.ReadDate(), (DateTime{2020, 2, 29, 10, 11, 12, 0}));
    EXPECT_TRUE(r.AtEnd());
    try {
        r.ReadString();
        FAIL() << "read past the end";
    } catch (const Fault& f) {
        EXPECT_EQ(f.Number(), 62);
        EXPECT_NE(std::string(f.what()).find("line 4"), std::string::npos) << f.what();
    }
}

TEST(TextRecord, BadValuesFaultInsteadOfGuessing) {
    TextRecordReader r("\"x\",#2021-02-30#,40000,maybe\r\n");
    EXPECT_THROW(r.ReadBool(), Fault);     // a quoted word is not a boolean
    EXPECT_THROW(r.ReadDate(), Fault);     // no 30th of February
    EXPECT_THROW(r.ReadInt16(), Fault);    // overflow
    EXPECT_THROW(r.ReadBool(), Fault);
    TextRecordReader unterminated("\"never closed, 1, 2");
    EXPECT_EQ(unterminated.ReadString(), "never closed, 1, 2");
    EXPECT_TRUE(unterminated.AtEnd());
}

TEST(TextRecord, LineInputAndEmptyFields) {
    TextRecordReader r("\"Ver 0.1\"\r\n,,\"x\"\r\n");
    EXPECT_EQ(r.ReadLine(), "\"Ver 0.1\"");
    EXPECT_EQ(r.ReadString(), "");
    EXPECT_EQ(r.ReadNumber(), 0);
    EXPECT_EQ(r.ReadString(), "x");
}
