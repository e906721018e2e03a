// The KAP reader on damaged files: a clear message or a correct read,
// never a crash, and an import that fails leaves nothing behind.
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <sstream>
#include <map>
#include <fstream>

#include "core/Format.h"
#include "core/Val.h"
#include "platform/chartlib/KapReader.h"
#include "platform/chartlib/OmbraChartLibrary.h"
#include "tests/platform/chartlib/KapWriter.h"
#include "tests/support/TestSupport.h"

namespace ombra::test {
namespace {

using chartlib::KapReader;

struct Damage {
    std::string action, argument, message;
};

std::vector<Damage> DamageTable() {
    std::ifstream f(std::string(OMBRA_TEST_DATA) + "/charts/kap_damage.txt");
    std::vector<Damage> out;
    std::string line;
    while (std::getline(f, line)) {
        if (line.empty() || line[0] == '#') continue;
        std::vector<std::string> col;
        size_t s = 0;
        while (true) {
            size_t b = line.find('|', s);
            col.push_back(Trim(line.substr(s, b == std::string::npos ? std::string::npos : b - s)));
            if (b == std::string::npos) break;
            s = b + 1;
        }
        col.resize(3);
        out.push_back({col[0], col[1], col[2]});
    }
    return out;
}

// Every row decoded; the first failure's message, or "" when all read.
std::string ReadAll(const std::string& bytes, std::vector<uint8_t>* pixels = nullptr) {
    KapReader r;
    if (!r.Open(bytes)) return r.Error().empty() ? "(no message)" : r.Error();
    std::vector<uint8_t> row(size_t(r.Header().Width));
    for (int y = 0; y < r.Header().Height; ++y) {
        if (!r.NextRow(row.data())) return r.Error().empty() ? "(no message)" : r.Error();
        if (pixels) pixels->insert(pixels->end(), row.begin(), row.end());
    }
    return "";
}

std::string Apply(const Damage& d, std::string b) {
    size_t end = b.find('\x1a');
    size_t raster = end + 3;
    auto replaceLine = [&](const std::string& prefix, const std::string& with) {
        size_t at = b.find(prefix);
        size_t e = b.find("\r\n", at);
        b.replace(at, e - at, with);
    };
    if (d.action == "cut") {
        size_t at = 0;
        if (d.argument == "header_end") at = end;
        else if (d.argument.rfind("raster+", 0) == 0) at = raster + size_t(Val(d.argument.substr(7)));
        else if (d.argument.rfind("end-", 0) == 0) at = b.size() - size_t(Val(d.argument.substr(4)));
        else at = size_t(Val(d.argument));
        return b.substr(0, at);
    }
    if (d.argument.rfind("bits=", 0) == 0) b[end + 2] = char(Val(d.argument.substr(5)));
    else if (d.argument.rfind("ra=", 0) == 0) {
        size_t at = b.find("RA=");
        size_t e = b.find(",DU", at);
        b.replace(at, e - at, "RA=" + d.argument.substr(3));
    } else if (d.argument == "no_rgb") {
        size_t at;
        while ((at = b.find("RGB/")) != std::string::npos) b[at] = 'X';
    } else if (d.argument == "no_bsb") {
        replaceLine("BSB/", "XXX/NA=NONE");
    } else if (d.argument.rfind("marker=", 0) == 0) {
        b[raster] = char(Val(d.argument.substr(7)));
    } else if (d.argument == "index=garbage") {
        for (size_t i = b.size() - 40; i < b.size() - 4; ++i) b[i] = char(0xEE);
    } else if (d.argument == "run=huge") {
        // The first run of row 1 claims millions of pixels: clipped to the row.
        b.insert(raster + 1, "\x9f\xff\xff\x7f");
    }
    return b;
}

TEST(KapReader, DamagedFilesGiveMessagesNotCrashes) {
    KapShape shape;
    std::string good = WriteKap(shape);
    std::vector<uint8_t> goodPixels;
    ASSERT_EQ(ReadAll(good, &goodPixels), "");
    auto table = DamageTable();
    ASSERT_GE(table.size(), 10u);
    for (const Damage& d : table) {
        SCOPED_TRACE(d.action + " " + d.argument);
        std::string bad = Apply(d, good);
        std::vector<uint8_t> pixels;
        std::string msg = ReadAll(bad, &pixels);
        if (d.message.empty()) {
            EXPECT_EQ(msg, "");
            if (d.argument != "run=huge") {
                EXPECT_EQ(pixels, goodPixels);
            }
        } else {
            EXPECT_NE(msg.find(d.message), std::string::npos) << msg;
        }
    }
}

TEST(KapReader, EveryTruncationFailsCleanlyOrReadsWhole) {
    KapShape shape;
    shape.Width = 60;
    shape.Height = 20;
    std::string good = WriteKap(shape);
    std::vector<uint8_t> goodPixels;
    ASSERT_EQ(ReadAll(good, &goodPixels), "");
    for (size_t cut = 0; cut < good.size(); cut += 7) {
        std::vector<uint8_t> pixels;
        std::string msg = ReadAll(good.substr(0, cut), &pixels);
        if (msg.empty()) {
            EXPECT_EQ(pixels, goodPixels) << "cut at " << cut;
        }
    }
}

TEST(KapReader, HeaderFieldsAndContinuations) {
    KapShape shape;
    shape.Continuation = true;
    KapReader r;
    ASSERT_TRUE(r.Open(WriteKap(shape))) << r.Error();
    const auto& h = r.Header();
    EXPECT_EQ(h.Name, "TEST CHART");
    EXPECT_EQ(h.Number, "7001");
    EXPECT_EQ(h.Width, 300);
    EXPECT_EQ(h.Height, 200);
    EXPECT_EQ(h.Scale, "25000");
    EXPECT_EQ(h.Datum, "WGS84");
    EXPECT_EQ(h.Projection, "MERCATOR");
    EXPECT_EQ(h.DepthUnits, "METERS");  // from the continued KNP line
    EXPECT_EQ(h.SoundingDatum, "LOWEST ASTRONOMICAL TIDE");
    EXPECT_EQ(h.EditionDate, "20230615");
    EXPECT_EQ(h.ColourCount, 15);
    EXPECT_EQ(h.Refs.size(), 7u);
    EXPECT_EQ(h.Outline.size(), 4u);
    EXPECT_TRUE(h.HasDtm);
    EXPECT_EQ(h.ColourBits, 4);
    // A title with a comma keeps it; RA= keeps both numbers.
    EXPECT_EQ(chartlib::KapField("BSB/NA=BAY, NORTH PART,NU=12,RA=10,20,DU=254", "NA"), "BAY, NORTH PART");
    EXPECT_EQ(chartlib::KapField("BSB/NA=BAY, NORTH PART,NU=12,RA=10,20,DU=254", "RA"), "10,20");
    EXPECT_EQ(chartlib::KapField("BSB/NA=X,NU=,RA=1,1", "NU"), "");
}

// The header of a small chart with `lines` added at its end (later
// records override earlier ones).
std::string WithHeaderLines(const std::string& lines) {
    KapShape shape;
    shape.Dtm = false;
    std::string b = WriteKap(shape);
    b.insert(b.find('\x1a'), lines);
    return b;
}

// Fields of a header as text, by the names the table below uses.
std::string HeaderField(const chartlib::KapHeader& h, const std::string& name) {
    auto list = [](const std::vector<double>& v) {
        std::string s;
        for (double d : v) s += (s.empty() ? "" : ",") + Format(d, "0.0##");
        return s;
    };
    auto colour = [](const std::vector<int64_t>& t, size_t i) {
        if (i >= t.size() || t[i] < 0) return std::string("-");
        return std::to_string((t[i] >> 16) & 255) + "." + std::to_string((t[i] >> 8) & 255) + "." + std::to_string(t[i] & 255);
    };
    const std::map<std::string, std::function<std::string()>> fields = {
        {"name", [&] { return h.Name; }},
        {"number", [&] { return h.Number; }},
        {"size", [&] { return std::to_string(h.Width) + "x" + std::to_string(h.Height); }},
        {"version", [&] { return h.Version; }},
        {"knp", [&] { return h.Scale + "|" + h.Datum + "|" + h.Projection + "|" + h.ProjectionParameter + "|" + h.DepthUnits; }},
        {"knq", [&] { return h.P2 + "|" + h.P3; }},
        {"day2", [&] { return colour(h.Day, 2); }},
        {"day3", [&] { return colour(h.Day, 3); }},
        {"dusk2", [&] { return colour(h.Dusk, 2); }},
        {"night3", [&] { return colour(h.Night, 3); }},
        {"rgb3", [&] { return colour(h.Rgb, 3); }},
        {"rgb20", [&] { return colour(h.Rgb, 20); }},
        {"colours", [&] { return std::to_string(h.ColourCount); }},
        {"wpx", [&] { return std::to_string(h.WpxOrder) + ":" + list(h.Wpx); }},
        {"wpy", [&] { return std::to_string(h.WpyOrder) + ":" + list(h.Wpy); }},
        {"pwx", [&] { return std::to_string(h.PwxOrder) + ":" + list(h.Pwx); }},
        {"pwy", [&] { return std::to_string(h.PwyOrder) + ":" + list(h.Pwy); }},
        {"dtm", [&] { return h.HasDtm ? Format(h.DtmLat, "0.0") + "," + Format(h.DtmLon, "0.0") : "none"; }},
        {"ifm", [&] { return std::to_string(h.Ifm); }},
        {"edition", [&] { return h.EditionDate; }},
        {"comment", [&] { return h.Comments.empty() ? "" : h.Comments.back(); }},
        {"refs", [&] { return std::to_string(h.Refs.size()) + "," + std::to_string(h.Outline.size()); }},
        {"lastref", [&] { return Format(h.Refs.back().lat, "0.00") + "," + Format(h.Refs.back().lon, "0.00"); }},
    };
    auto f = fields.find(name);
    return f == fields.end() ? "(no field " + name + ")" : f->second();
}

TEST(KapReader, EachHeaderRecordFillsItsFields) {
    struct Case {
        const char* lines;   // added at the end of the header
        const char* fields;  // names for HeaderField, blank-separated
        std::string want;    // their texts, blank-separated
    } cases[] = {
        {"NOS/NA=OLD,RA=1,2,120,80", "name size", "OLD 120x80"},
        {"NOS/RA=120,80", "size", "120x80"},
        {"bsb/NA=LOWER CASE,NU=12,RA=90,60", "name number size", "LOWER CASE 12 90x60"},
        {"VER/ 3.07 ", "version", "3.07"},
        {"KNP/SC=12500,GD=NAD83,PR=LAMBERT CONFORMAL CONIC,PP=-96", "knp", "12500|NAD83|LAMBERT CONFORMAL CONIC|-96|"},
        {"KNQ/P1=UNKNOWN,P2=33.5,P3=45", "knq", "33.5|45"},
        {"DAY/2,0,0,255\r\nDSK/2,0,255,0\r\nNGT/3,255,0,0", "day2 dusk2 night3 day3", "0.0.255 0.255.0 255.0.0 -"},
        {"RGB/3,300,-5,x", "rgb3", "255.0.0"},
        {"RGB/40,1,2,3", "colours", "40"},
        {"RGB/20,1,2", "rgb20 colours", "- 15"},
        {"WPX/2,1.5,x,2.5\r\nPWY/1,4,5,6", "wpx pwy", "2:1.5,2.5 1:4.0,5.0,6.0"},
        {"WPY/x,1,2", "wpy", "-1:"},
        {"PWX/3,1,2,3,4,5,6,7,8,9,10,11,12", "pwx", "3:1.0,2.0,3.0,4.0,5.0,6.0,7.0,8.0,9.0,10.0"},
        {"DTM/1.5", "dtm", "none"},
        {"DTM/1.5,-2", "dtm", "1.5,-2.0"},
        {"IFM/999", "ifm", "255"},
        {"CED/SE=5,ED=25/12/99", "edition", "19991225"},
        {"CED/ED=2020-13-01", "edition", ""},
        {"!  a note  ", "comment", "a note"},
        {"REF/9,1,2,3\r\nPLY/9,50", "refs", "7,4"},
        {"REF/8,10,20,50.5,-12.25", "lastref", "50.50,-12.25"},
        {"XYZ/NA=IGNORED\r\nBSBX/NA=IGNORED", "name", "TEST CHART"},
    };
    for (const Case& c : cases) {
        KapReader r;
        ASSERT_TRUE(r.Open(WithHeaderLines(std::string(c.lines) + "\r\n"))) << c.lines << ": " << r.Error();
        std::string got;
        std::istringstream names(c.fields);
        for (std::string name; names >> name;) got += (got.empty() ? "" : " ") + HeaderField(r.Header(), name);
        EXPECT_EQ(got, c.want) << c.lines;
    }
}

TEST(KapReader, HeaderRecordsThatRefuseTheFile) {
    struct Case {
        const char* line;
        std::string message;
    } cases[] = {
        {"RGB/128,1,2,3", "The chart file's colour table has an entry 128 out of range."},
        {"DAY/200,1,2,3", "The chart file's colour table has an entry 200 out of range."},
        {"NGT/-1,1,2,3", "The chart file's colour table has an entry -1 out of range."},
        {"BSB/RA=-5,7", "The chart file does not give its size (BSB/RA=)."},
        {"NOS/RA=1,2,0,80", "The chart file does not give its size (BSB/RA=)."},
    };
    for (const Case& c : cases) {
        KapReader r;
        EXPECT_FALSE(r.Open(WithHeaderLines(std::string(c.line) + "\r\n"))) << c.line;
        EXPECT_EQ(r.Error(), c.message) << c.line;
    }
}

TEST(KapReader, RowOnePixelShortIsCompletedWithZero) {
    KapShape shape;
    shape.Width = 8;
    shape.Height = 2;
    shape.Index = false;
    shape.Pixel = [](int, int) { return 3; };
    std::string b = WriteKap(shape);
    // Each row is a marker, one run byte (colour 3, count 7: eight pixels)
    // and the end mark; make the runs seven pixels long.
    size_t raster = b.find('\x1a') + 3;
    ASSERT_EQ(uint8_t(b[raster + 1]), (3 << 3) | 7);
    b[raster + 1] = char((3 << 3) | 6);
    b[raster + 4] = char((3 << 3) | 6);
    std::vector<uint8_t> px;
    ASSERT_EQ(ReadAll(b, &px), "");
    for (int row = 0; row < 2; ++row) {
        for (int x = 0; x < 7; ++x) EXPECT_EQ(px[size_t(row * 8 + x)], 2);  // colour 3 is index 2
        EXPECT_EQ(px[size_t(row * 8 + 7)], 0);
    }
}

TEST(KapReader, SizeClaimsAreRefusedBeforeAllocation) {
    KapShape shape;
    std::string b = WriteKap(shape);
    size_t at = b.find("RA=");
    b.replace(at, b.find(",DU", at) - at, "RA=40000,40000");
    chartlib::KapLimits small;
    small.MaxPixels = 1 << 20;
    KapReader r;
    EXPECT_FALSE(r.Open(b, small));
    EXPECT_NE(r.Error().find("more than a chart can have"), std::string::npos);
}

TEST(KapImport, AFailedImportLeavesNothing) {
    TempDir dir;
    KapShape shape;
    std::string good = WriteKap(shape);
    std::string kap = dir / "BAD.KAP";
    WriteFile(kap, good.substr(0, good.find('\x1a') + 200));
    chartlib::OmbraChartLibrary lib;
    ImportedChart chart;
    std::string why;
    EXPECT_FALSE(lib.ImportKap(kap, dir / "OUT", chart, why, {}));
    EXPECT_NE(why.find("truncated"), std::string::npos) << why;
    int files = 0;
    for (auto& e : std::filesystem::directory_iterator(dir.path())) files += e.path().filename().string().rfind("OUT", 0) == 0;
    EXPECT_EQ(files, 0);
    // A cancelled import says so and leaves nothing either.
    WriteFile(kap, good);
    EXPECT_FALSE(lib.ImportKap(kap, dir / "OUT", chart, why, [](double) { return false; }));
    EXPECT_EQ(why, "The installation was cancelled.");
    EXPECT_FALSE(std::filesystem::exists(dir / "OUT.CHR"));
}

}  // namespace
}  // namespace ombra::test
