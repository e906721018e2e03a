#include <gtest/gtest.h>

#include <cmath>

#include "core/Format.h"
#include "core/Rounding.h"
#include "core/Val.h"
#include "core/Fault.h"

using namespace ombra;

TEST(Val, NumericPrefixRule) {
    struct Case { const char* text; double want; } cases[] = {
        {"4800", 4800}, {" 12.5kts", 12.5}, {"abc", 0}, {"", 0}, {"-0.5", -0.5}, {"+3", 3},
        {".5", 0.5}, {"1 000", 1000}, {"1e3", 1000}, {"1e", 1}, {"2.5E-1x", 0.25}, {"&H1F", 31},
        {"&O17", 15}, {"12,5", 12}, {"--1", 0}, {"1.2.3", 1.2}, {"1d2", 100}, {"\t7\r\n", 7},
        {"1e999", 0},
    };
    for (auto& c : cases) EXPECT_DOUBLE_EQ(Val(c.text), c.want) << '"' << c.text << '"';
}

TEST(Val, IsNumeric) {
    struct Case { const char* text; bool want; } cases[] = {
        {"", false}, {".", false}, {"-", false}, {"1e", false}, {"12a", false}, {"  -0.5 ", true},
        {"1E3", true}, {".5", true}, {"5.", true}, {"1 2", false}, {"+7", true}, {"e5", false},
    };
    for (auto& c : cases) EXPECT_EQ(IsNumeric(c.text), c.want) << '"' << c.text << '"';
}

TEST(Val, NumberTextReadsBackExactly) {
    for (double v : {0.0, 0.5, -3.25, 1e-7, 180000.123456789, 648000.0, -0.1}) {
        EXPECT_EQ(Val(NumberText(v)), v) << NumberText(v);
    }
    // At most 15 significant digits: arithmetic tails go, and what needs
    // more reads back within half a unit of its 15th digit.
    struct Case {
        double value;
        const char* text;
    } cases[] = {
        {-3960.0000000000005, "-3960"},
        {0.1 + 0.2, "0.3"},
        {1.0 / 3.0, "0.333333333333333"},
        {-15120.123456789, "-15120.123456789"},
        {181800.987654321, "181800.987654321"},
        {1.0000000000000002e-7, "1e-07"},
        {123456789012345678.0, "1.23456789012346e+17"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(NumberText(c.value), c.text);
        EXPECT_NEAR(Val(NumberText(c.value)), c.value, std::fabs(c.value) * 5e-15) << c.text;
    }
    for (float v : {0.5f, 0.3f, -12.7f, 1e-7f}) {
        EXPECT_EQ(float(Val(NumberText(v))), v) << NumberText(v);
    }
    EXPECT_EQ(NumberText(0.3f), "0.3");  // a float is written as a float, not as 0.30000001192...
}

TEST(Format, Pictures) {
    struct Case { double v; const char* pic; const char* want; } cases[] = {
        {1.5, "0", "2"},           {2.5, "0", "3"},          {7.25, "00.000", "07.250"},
        {3.0, "##0.00", "3.00"},   {123.456, "##0.00", "123.46"}, {2.675, "0.00", "2.68"},
        {-0.001, "0.00", "0.00"},  {-1.5, "0.0", "-1.5"},    {0.0, "#.##", "."},
        {1234567.0, "#,##0", "1,234,567"}, {5.0, "0°", "5°"}, {59.9996, "00.000", "60.000"},
        {0.05, "0.0", "0.1"},      {1.0, "000", "001"},      {-5.0, "0;(0)", "(5)"},
        {12.0, "#", "12"},         {0.4, "#", ""},           {1.15078, "0.00", "1.15"},
        {9.995, "0.00", "10.00"},  {1e-20, "0.000", "0.000"}, {359.96, "000", "360"},
    };
    for (auto& c : cases) EXPECT_EQ(Format(c.v, c.pic), c.want) << c.v << " " << c.pic;
}

TEST(Format, NamedDateFormats) {
    DateTime t{2026, 11, 3, 14, 5, 9, 0};
    struct Case { const char* fmt; const char* want; } cases[] = {
        {"Short Date", "03/11/2026"}, {"Medium Date", "03-Nov-26"}, {"Long Date", "3 November 2026"},
        {"Short Time", "14:05"},      {"Medium Time", "02:05 PM"},  {"Long Time", "14:05:09"},
        {"General Date", "03/11/2026 14:05:09"}, {"dd/mm/yy hh:nn", "03/11/26 14:05"},
        {"dddd d mmm yyyy", "Tuesday 3 Nov 2026"}, {"hh:mm", "14:05"},
    };
    for (auto& c : cases) EXPECT_EQ(FormatDate(t, c.fmt), c.want) << c.fmt;
    EXPECT_EQ(FormatDate(DateTime{2026, 1, 2, 0, 0, 0, 0}, "General Date"), "02/01/2026");
}

TEST(Format, SerialDatesRoundTripAcrossMidnightAndLeapDays) {
    EXPECT_DOUBLE_EQ((DateTime{1899, 12, 30, 0, 0, 0, 0}).Serial(), 0.0);
    EXPECT_DOUBLE_EQ((DateTime{2000, 1, 1, 12, 0, 0, 0}).Serial(), 36526.5);
    DateTime t{2024, 2, 28, 23, 59, 59, 500};
    DateTime u = DateTime::FromSerial(t.Serial() + 1.0 / 86400.0);
    EXPECT_EQ(u, (DateTime{2024, 2, 29, 0, 0, 0, 500}));
    EXPECT_FALSE(IsValidDate(2023, 2, 29));
    EXPECT_TRUE(IsValidDate(2000, 2, 29));
    EXPECT_FALSE(IsValidDate(1900, 2, 29));
}

TEST(Rounding, TiesToEvenAndOverflow) {
    struct Case { double v; int want; } cases[] = {{0.5, 0}, {1.5, 2}, {2.5, 2}, {-1.5, -2}, {-2.5, -2}, {2.4999, 2}, {32767.4, 32767}};
    for (auto& c : cases) EXPECT_EQ(CInt16(c.v), c.want) << c.v;
    EXPECT_THROW(CInt16(32767.5), Fault);  // rounds to 32768
    EXPECT_EQ(CInt16(-32768.5), -32768);   // ties to even stays in range
    EXPECT_THROW(CInt16(NAN), Fault);
    try {
        CInt16(40000);
    } catch (const Fault& f) {
        EXPECT_EQ(f.Number(), 6);
        EXPECT_STREQ(f.what(), "Overflow");
    }
}
