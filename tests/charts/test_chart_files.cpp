// The chart's own files: header paths, the header's columns, plan records
// and their shift texts, the catalogue's cells and records.
#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <map>

#include "charts/CatalogueWriter.h"
#include "charts/ChartCat.h"
#include "charts/ChartHeader.h"
#include "core/Format.h"
#include "core/Paths.h"
#include "core/Val.h"
#include "tests/charts/ChartFixture.h"

namespace ombra::test {
namespace {

std::string Data(const std::string& rel) { return std::string(OMBRA_TEST_DATA) + "/charts/" + rel; }

// "key=value" lines; a value between | marks keeps its blanks.
std::vector<std::pair<std::string, std::string>> Expected(const std::string& file) {
    std::ifstream f(Data(file));
    std::vector<std::pair<std::string, std::string>> out;
    std::string line;
    while (std::getline(f, line)) {
        if (line.empty() || line[0] == '#') continue;
        size_t eq = line.find('=');
        std::string v = line.substr(eq + 1);
        if (v.size() >= 2 && v.front() == '|' && v.back() == '|') v = v.substr(1, v.size() - 2);
        out.emplace_back(line.substr(0, eq), v);
    }
    return out;
}

std::string Text(const std::string& s) { return s; }
std::string Text(double v) { return NumberText(v); }
#define FIELD(obj, name) {#name, [&] { return Text(obj.name); }}

// Every key of the .expected file against the parsed field of that name.
void ExpectFields(const std::string& file, std::map<std::string, std::function<std::string()>> field) {
    for (auto& [key, value] : Expected(file)) {
        ASSERT_TRUE(field.count(key)) << key;
        EXPECT_EQ(field[key](), value) << key;
    }
}

TEST(ChartHeaderPath, NumbersToFolders) {
    std::ifstream f(Data("header_paths.txt"));
    int n = 0;
    for (std::string line; std::getline(f, line);) {
        if (line.empty() || line[0] == '#') continue;
        size_t bar = line.find('|');
        std::string number = line.substr(0, bar);
        while (!number.empty() && number.back() == ' ') number.pop_back();
        EXPECT_EQ(ChartHeaderPath(number), Trim(line.substr(bar + 1))) << "'" << number << "'";
        ++n;
    }
    EXPECT_GE(n, 7);
    // Trailing blanks of an 8-character number are trimmed, and the set's
    // other files replace the last three characters.
    EXPECT_EQ(ChartHeaderPath("4000    "), "raschts\\040\\4000\\4000.HDR");
    EXPECT_EQ(ChartFilePath("x\\4000.HDR", "P01"), "x\\4000.P01");
    EXPECT_EQ(PlanExtension('N', 7), "N07");
}

TEST(ChartHeader, ColumnsOfTheFourLinesAndWrittenBack) {
    for (const char* name : {"1234A", "SHORT"}) {
        SCOPED_TRACE(name);
        ChartHeader h;
        ParseHeaderText(ReadFile(Data(std::string("header/") + name + ".HDR")), h);
        ExpectFields(std::string("header/") + name + ".expected",
                     {FIELD(h, FileType), FIELD(h, Country), FIELD(h, ChartNumber), FIELD(h, FileIssueDate),
                      FIELD(h, EditionDate), FIELD(h, PlanCount), FIELD(h, FormatVersion), FIELD(h, Reserved1),
                      FIELD(h, Reference1), FIELD(h, Flags1), FIELD(h, Flags2), FIELD(h, Flags3), FIELD(h, ImageBlockA),
                      FIELD(h, ImageBlockB), FIELD(h, LayoutA), FIELD(h, LayoutB), FIELD(h, LayoutC), FIELD(h, LayoutD),
                      FIELD(h, ValueA), FIELD(h, ValueB), FIELD(h, ValueC), FIELD(h, SpecialWarnings), FIELD(h, Reference2),
                      FIELD(h, Reference3), FIELD(h, HeaderLineLength),
                      {"Title", [&] { return h.Title.substr(0, Trim(h.Title).size() ? Trim(h.Title).size() : 100); }},
                      {"Plans", [&] { return Text(double(h.Plans.size())); }}});
        EXPECT_EQ(h.Title.size(), 100u);
        // Written and read again, the header is the same.
        h.ValueC = 3.5f;
        ChartHeader back;
        ParseHeaderText(FormatHeaderText(h), back);
        EXPECT_EQ(back.ValueC, 3.5f);
        EXPECT_EQ(FormatHeaderText(back), FormatHeaderText(h));
    }
}

TEST(ChartHeader, MissingFileIsReportedUnderItsName) {
    ScriptedDialogs dialogs;
    std::string product = "Tarnel";
    ErrorReporter errors(dialogs, product);
    ChartHeader h;
    h.Title = "kept";
    EXPECT_FALSE(ReadHeaderFile("/nonexistent/raschts/012/1234A/1234A.HDR", h, errors));
    ASSERT_EQ(dialogs.asked.size(), 1u);
    EXPECT_NE(dialogs.asked[0].text.find("ReadHeaderFile"), std::string::npos);
    EXPECT_EQ(h.Title, "kept");
    // Found whatever the case of the names on disk.
    TempDir dir;
    WriteFile(dir / "raschts/012/1234a/1234a.hdr", ReadFile(Data("header/1234A.HDR")));
    EXPECT_TRUE(ReadHeaderFile(dir.path() + "\\raschts\\012\\1234A\\1234A.HDR", h, errors));
    EXPECT_EQ(Trim(h.ChartNumber), "1234A");
}

TEST(ChartPlan, RecordColumnsAndShiftTexts) {
    for (const char* name : {"plan1", "plan0"}) {
        SCOPED_TRACE(name);
        ChartPlan p;
        ParsePlanRecord(ReadFile(Data(std::string("header/") + name + ".rec")), p);
        ExpectFields(std::string("header/") + name + ".expected",
                     {FIELD(p, PlanNumberInFile), FIELD(p, PlanFlag), FIELD(p, Title), FIELD(p, Code), FIELD(p, Scale),
                      FIELD(p, Field4), FIELD(p, HorizDatum), FIELD(p, Flag1), FIELD(p, DepthUnits), FIELD(p, DepthDatum),
                      FIELD(p, Flag2), FIELD(p, Flag3), FIELD(p, ShiftLat), FIELD(p, ShiftLong), FIELD(p, ShiftSourceLat),
                      FIELD(p, ShiftSourceLong), FIELD(p, HasShift),
                      {"ShiftLatText", [&] { return ShiftLatText(p); }},
                      {"ShiftLongText", [&] { return ShiftLongText(p); }},
                      {"ScaleText", [&] { return ScaleText(p); }}});
        // A written record reads back.
        ChartPlan q;
        ParsePlanRecord(FormatPlanRecord(p), q);
        EXPECT_EQ(FormatPlanRecord(q), FormatPlanRecord(p));
        EXPECT_EQ(q.Title, p.Title);
    }
}

TEST(Catalogue, CoordinateCells) {
    struct Case {
        const char* cell;
        bool lat;
        double seconds;
    } cases[] = {{"+5000000", true, 180000},      {"-01200000", false, -43200},   {"+4957250", true, 49 * 3600 + 57.25 * 60},
                 {"-0000500", true, -30},         {"+17959999", false, 179 * 3600 + 59.999 * 60},
                 {"ABCDEFGH", true, 0},           {"+50", true, 180000},          {"", true, 0}};
    for (const Case& c : cases) EXPECT_NEAR(c.lat ? ParseLatCell(c.cell) : ParseLonCell(c.cell), c.seconds, 1e-6) << c.cell;
    for (double s : {0.0, 1.0, -1.0, 180000.06, -43200.0, 323999.94, -647999.94, 30.5})
        EXPECT_NEAR(ParseLonCell(FormatLonCell(s)), s, 0.031) << s;
    EXPECT_EQ(FormatLatCell(-(49 * 3600 + 57.25 * 60)), "-4957250");
    // An outline line of 17-character cells; a partial last cell counts when
    // the division rounds up.
    auto o = ParseOutlineLine("+5000000-01200000+4900000+00100000");
    ASSERT_EQ(o.size(), 2u);
    EXPECT_EQ(o[1].Long, 3600);
    EXPECT_EQ(ParseOutlineLine(std::string(26, '+')).size(), 2u);
    EXPECT_EQ(ParseOutlineLine(std::string(25, '+')).size(), 1u);
}

struct CatWorld {
    ScriptedDialogs dialogs;
    std::string product = "Tarnel";
    ErrorReporter errors{dialogs, product};
    ChartCat cat{dialogs, errors, product};
    std::string root = std::string(OMBRA_TEST_DATA) + "/charts/catalogue";
};

TEST(Catalogue, RecordsOfTheFixture) {
    CatWorld w;
    int64_t at = w.cat.FindChartPointer(w.root, "1234A", false);
    EXPECT_EQ(at, 1);
    ChartCatEntry e;
    ASSERT_TRUE(w.cat.ReadChartCatEntry(w.root, at, e, true));
    EXPECT_EQ(e.ChartNumber, "1234A   ");
    EXPECT_EQ(e.HeaderIssueDate, "20240601");
    EXPECT_EQ(e.NotesIssueDate, "20240602");
    EXPECT_EQ(e.LatestNM, "00122024 ");
    EXPECT_EQ(e.PlanCount, 2);
    EXPECT_EQ(Trim(e.Scale), "50000");
    EXPECT_EQ(e.Flag, 7);
    EXPECT_EQ(e.FirstPlan, 0);
    ASSERT_EQ(e.Outline.size(), 4u);
    EXPECT_EQ(e.Outline[0].Lat, 50 * 3600 + 600);
    ASSERT_EQ(e.Plans.size(), 2u);
    EXPECT_EQ(e.Plans[1].PlanNumber, 2);
    EXPECT_EQ(e.Plans[1].IssueDate, "20240604");
    EXPECT_EQ(Trim(e.Plans[1].Title), "Plan Two");
    ASSERT_EQ(e.PlanNames.size(), 3u);
    EXPECT_EQ(e.PlanNames[2], "1234A/2  ");
    EXPECT_EQ(w.cat.GetLatestNM(w.root, "1234A"), "00122024 ");
    // Without outlines asked, none are read.
    ASSERT_TRUE(w.cat.ReadChartCatEntry(w.root, at, e, false));
    EXPECT_TRUE(e.Outline.empty());

    // A border line one character long: no main plan, no outline.
    ASSERT_TRUE(w.cat.ReadChartCatEntry(w.root, w.cat.FindChartPointer(w.root, "777", false), e, true));
    EXPECT_EQ(e.FirstPlan, 1);
    EXPECT_TRUE(e.Outline.empty());
    EXPECT_EQ(e.Flag, 0);  // "x" is not numeric
    EXPECT_EQ(e.LatestNM, "        0");
    ASSERT_EQ(e.Plans.size(), 1u);
    EXPECT_LT(e.Plans[0].Outline[0].Lat, 0);
    EXPECT_GT(e.Plans[0].Outline[0].Long, 0);
    EXPECT_TRUE(w.dialogs.asked.empty());
}

TEST(Catalogue, MissingCatalogueAndChartMessages) {
    CatWorld w;
    TempDir empty;
    EXPECT_EQ(w.cat.FindChartPointer(empty.path(), "1234A", false), 0);
    EXPECT_EQ(w.cat.FindChartPointer(empty.path(), "1234A", true), 0);
    EXPECT_EQ(w.cat.FindChartPointer(w.root, "9999", false), 0);
    EXPECT_EQ(w.cat.FindChartPointer(w.root, "9999", true), 0);
    ChartCatEntry e;
    EXPECT_FALSE(w.cat.ReadChartCatEntry(empty.path(), 1, e, true));
    ASSERT_EQ(w.dialogs.asked.size(), 3u);
    EXPECT_EQ(w.dialogs.asked[0].text, "There is no catalogue information installed on your system.");
    EXPECT_EQ(w.dialogs.asked[1].text, "There is no record of chart 9999 in the latest chart\ncatalogue installed on your hard drive.");
    EXPECT_EQ(w.dialogs.asked[2].text, "There is no catalogue information installed on your hard drive.");
    EXPECT_EQ(w.cat.ChartErrors, (std::vector<std::string>{"There is no catalogue information installed on your system!",
                                                           "Chart 9999 is not in your chart catalogue."}));
    // An offset past the end of Chart.CAT is a fault reported by name.
    EXPECT_FALSE(w.cat.ReadChartCatEntry(w.root, 100000, e, true));
    EXPECT_NE(w.dialogs.asked.back().text.find("ReadChartCatEntry"), std::string::npos);
}

TEST(Catalogue, WrittenEntriesAreFoundByNumberAndPosition) {
    ChartWorld w;
    FixtureChart a = DefaultFixture();
    FixtureChart b = DefaultFixture();
    b.Number = "88";
    b.Plans[0].LatN = 50.5;
    b.Plans[0].LatS = 50.2;
    b.Plans[0].Scale = "75000";
    ASSERT_TRUE(w.Install(a));
    ASSERT_TRUE(w.Install(b));
    std::vector<std::string> names;
    w.charts.Cat.ChartSelectFromLL(w.root.path(), LatLong{-12 * 3600.0, 50 * 3600.0}, names);
    ASSERT_EQ(names.size(), 1u);
    EXPECT_EQ(names[0], "1234A    TEST CHART:50000");
    EXPECT_EQ(NameScale(names[0]), 50000);
    EXPECT_EQ(NameScale("1234A"), 999999999);
    w.charts.Cat.ChartSelectFromLL(w.root.path(), LatLong{-12 * 3600.0, 50.3 * 3600.0}, names);
    ASSERT_EQ(names.size(), 1u);
    EXPECT_EQ(NameChartNumber(names[0]), "88");
    w.charts.Cat.ChartSelectFromLL(w.root.path(), LatLong{10 * 3600.0, -20 * 3600.0}, names);
    EXPECT_EQ(names, std::vector<std::string>{"None found"});

    // The grid file of the cell the chart covers whole says so ("1").
    GridCell cell = GridCellOf(LatLong{-11.5 * 3600, 49.9 * 3600});
    EXPECT_EQ(cell.FileName, "49N011W.PTR");
    EXPECT_EQ(cell.Quadrant, "NW");

    // Installing 1234A again replaces its pointer; removing takes it out.
    ASSERT_TRUE(w.Install(a, "20250101"));
    auto ptrs = ReadChartPointers(w.charts.Cat.CatalogueFolder(w.root.path()));
    ASSERT_EQ(ptrs.size(), 2u);
    ChartCatEntry e;
    ASSERT_TRUE(w.charts.Cat.ReadChartCatEntry(w.root.path(), w.charts.Cat.FindChartPointer(w.root.path(), "1234A", true), e, false));
    EXPECT_EQ(e.HeaderIssueDate, "20250101");
    std::string why;
    ASSERT_TRUE(w.charts.Installer.RemoveChart(w.root.path(), "1234A", why)) << why;
    EXPECT_EQ(w.charts.Cat.FindChartPointer(w.root.path(), "1234A", true), 0);
    EXPECT_FALSE(FileExists(w.HeaderPath("1234A")));
    w.charts.Cat.ChartSelectFromLL(w.root.path(), LatLong{-12 * 3600.0, 50 * 3600.0}, names);
    EXPECT_EQ(names, std::vector<std::string>{"None found"});
    // What stays is still found, from the rebuilt catalogue.
    w.charts.Cat.ChartSelectFromLL(w.root.path(), LatLong{-12 * 3600.0, 50.3 * 3600.0}, names);
    EXPECT_EQ(NameChartNumber(names[0]), "88");
    EXPECT_FALSE(w.charts.Installer.RemoveChart(w.root.path(), "1234A", why));
}

TEST(Catalogue, ReadMeCdvText) {
    TempDir dir;
    WriteFile(dir / "ReadMe.CDV", "ARCS CD 123 CATSUB\r\nsecond line\r\n");
    EXPECT_EQ(ReadCDInfo(dir / "ReadMe.CDV"), "CATSUB");
    EXPECT_EQ(ReadCDInfo(dir / "missing.cdv"), "");
}

}  // namespace
}  // namespace ombra::test
