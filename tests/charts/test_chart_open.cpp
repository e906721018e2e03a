// Opening charts: the checks and their questions, the warnings, the plans
// and which of them holds a position, and the steps between scales.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <tuple>

#include "charts/CatalogueWriter.h"
#include "core/Paths.h"
#include "core/Val.h"
#include "tests/charts/ChartFixture.h"

namespace ombra::test {
namespace {

TEST(ChartChecks, PresenceDatesAndQuickCheck) {
    ChartWorld w;
    FixtureChart c = DefaultFixture();
    c.Plans.push_back({50.05, 49.95, -12.1, -11.9, 700, 500, 950, 760, "Inset", "12500", true, 3});
    ASSERT_TRUE(w.Install(c));
    std::string hdr = w.HeaderPath("1234A");
    ChartCatEntry e;
    ASSERT_TRUE(w.charts.Cat.ReadChartCatEntry(w.root.path(), w.charts.Cat.FindChartPointer(w.root.path(), "1234A", false), e, true));
    EXPECT_EQ(w.charts.Checks.DisplayChecks(hdr, e), 2);
    EXPECT_TRUE(w.Messages().empty());

    // A wrong date on plan 1's file asks; No stops, Yes marks out of date.
    SetIssueDate(ChartFilePath(hdr, "P01"), "19990101");
    w.dialogs.replies = {mb::No, mb::Yes};
    EXPECT_EQ(w.charts.Checks.DisplayChecks(hdr, e), 0);
    EXPECT_EQ(w.charts.Checks.DisplayChecks(hdr, e), 1);
    ASSERT_EQ(w.dialogs.asked.size(), 2u);
    EXPECT_EQ(w.dialogs.asked[0].text, "1234A.P01 has wrong File Issue date Do you want to continue ?");
    EXPECT_EQ(w.dialogs.asked[0].style, mb::YesNo | mb::Question);
    SetIssueDate(ChartFilePath(hdr, "P01"), "20240601");

    // The order of the comparison: the header before the palette.
    SetIssueDate(ChartFilePath(hdr, "PAL"), "19990101");
    SetIssueDate(hdr, "19990101");
    w.dialogs.replies = {mb::No};
    EXPECT_EQ(w.charts.Checks.DisplayChecks(hdr, e), 0);
    EXPECT_EQ(w.dialogs.asked.back().text, "1234A.HDR has wrong File Issue date Do you want to continue ?");
    SetIssueDate(hdr, "20240601");
    SetIssueDate(ChartFilePath(hdr, "PAL"), "20240601");

    // A missing palette stops at the presence test, naming the file.
    std::filesystem::rename(ChartFilePath(hdr, "PAL"), ChartFilePath(hdr, "XXX"));
    EXPECT_EQ(w.charts.Checks.DisplayChecks(hdr, e), 0);
    EXPECT_EQ(w.dialogs.asked.back().text, "1234A.PAL is missing.");
    EXPECT_EQ(w.dialogs.asked.back().style, mb::Exclamation);
    std::filesystem::rename(ChartFilePath(hdr, "XXX"), ChartFilePath(hdr, "PAL"));

    // Quick check on the chart in view.
    ASSERT_TRUE(w.charts.Charts.NewChart("1234A"));
    w.charts.Charts.QuickCheck();
    EXPECT_EQ(w.dialogs.asked.back().text, "Quick check of chart completed successfully");
    SetIssueDate(ChartFilePath(hdr, "N01"), "19990101");
    w.dialogs.replies = {mb::Yes};
    w.charts.Charts.QuickCheck();
    EXPECT_EQ(w.dialogs.asked.back().text, "Chart needs to be updated.");

    // Checksums.
    std::string line;
    EXPECT_TRUE(w.charts.Checks.ValidateChecksums(w.library, hdr, "1234A", line));
    EXPECT_EQ(line, "Validating file checksums.");
    EXPECT_EQ(w.dialogs.asked.back().text, "Chart 1234A data is valid.");
    std::string chr = ReadFile(ChartFilePath(hdr, "CHR"));
    chr[30] = char(chr[30] ^ 1);
    WriteFile(ChartFilePath(hdr, "CHR"), chr);
    EXPECT_FALSE(w.charts.Checks.ValidateChecksums(w.library, hdr, "1234A", line));
    EXPECT_EQ(w.dialogs.asked.back().text, "Chart 1234A data is invalid.\nReload from chart CD.");
}

TEST(NewChart, OpensWithItsStepsAndKeepsTheOldChartOnFailure) {
    ChartWorld w;
    w.charts.View.SetViewSize(400, 300);
    ASSERT_TRUE(w.Install(DefaultFixture()));
    EXPECT_FALSE(w.charts.Charts.NewChart("5555"));
    ASSERT_EQ(w.Messages().size(), 1u);
    EXPECT_EQ(w.Messages()[0], "Cannot find " + WithTrailingSlash(w.root.path()) + "raschts\\055\\5555\\5555.HDR");
    EXPECT_FALSE(w.charts.Charts.ChartIsOpen());

    int hourglass = 0;
    w.host.busy = [&](bool on) { hourglass += on ? 1 : -1; };
    ASSERT_TRUE(w.charts.Charts.NewChart("1234A"));
    EXPECT_EQ(hourglass, 0);
    EXPECT_EQ(w.registry.GetSetting(Key::LastChartNumber), "1234A   ");
    EXPECT_EQ(w.charts.View.PixelSize, 128);
    EXPECT_EQ(w.charts.View.DisplayedPlan, 0);
    // The low-resolution raster at pixel size 128 warns; the full one does not.
    EXPECT_TRUE(w.charts.View.WarningSet(2));
    EXPECT_EQ(w.charts.View.WarningTexts(), std::vector<std::string>{"Chart image is zoomed out: UNSAFE FOR NAVIGATION"});
    w.charts.View.ShowHiRes();
    EXPECT_EQ(w.charts.View.WarningCount(), 0);
    w.charts.View.PixelZoomIn();
    EXPECT_EQ(w.charts.View.WarningTexts(),
              std::vector<std::string>{"Chart Image Has Been Pixel Zoomed ( X 2 )  :  IT IS UNSAFE FOR NAVIGATION"});
    EXPECT_EQ(w.charts.View.ViewFactor(), 0.5f);
    w.charts.View.SetPixelSize(32);
    EXPECT_EQ(w.charts.View.WarningTexts()[0], "Chart Image Has Been Pixel Zoomed ( / 4 )  :  IT IS UNSAFE FOR NAVIGATION");
    w.charts.View.ShowLoRes();
    EXPECT_EQ(w.charts.View.ViewFactor(), 2.0f * 4);  // the low raster is half the size, shown at a quarter
    w.charts.View.ResetPixelZoom();
    EXPECT_TRUE(w.charts.View.WarningSet(2));
    EXPECT_FALSE(w.charts.View.WarningSet(4));

    // Status texts of the plan in view; a chart of one plan has no list.
    EXPECT_EQ(w.charts.View.ScaleCaption(), "Scale 1:50000");
    EXPECT_EQ(w.charts.View.DatumCaption(), "Datum: World Geodetic System 1984");
    EXPECT_EQ(w.charts.View.DepthUnitsCaption(), "METRES");
    w.charts.View.ShowPlansList();
    EXPECT_EQ(w.dialogs.asked.back().text, "There are no plans on this chart.");
    EXPECT_EQ(w.dialogs.asked.back().title, "Plans");

    // A refused open leaves the open chart as it was.
    FixtureChart other = DefaultFixture();
    other.Number = "77";
    ASSERT_TRUE(w.Install(other));
    std::filesystem::remove(ChartFilePath(w.HeaderPath("77"), "P00"));
    std::filesystem::remove(ChartFilePath(w.HeaderPath("77"), "N00"));
    EXPECT_FALSE(w.charts.Charts.NewChart("77"));
    EXPECT_EQ(Trim(w.charts.State.Header.ChartNumber), "1234A");
    EXPECT_TRUE(w.charts.Charts.ChartIsOpen());
}

TEST(NewChart, WrongIssueDateAnsweredYesOpensOutOfDate) {
    ChartWorld w;
    w.charts.View.SetViewSize(400, 300);
    ASSERT_TRUE(w.Install(DefaultFixture()));
    SetIssueDate(ChartFilePath(w.HeaderPath("1234A"), "N00"), "20200101");
    w.dialogs.replies = {mb::No};
    EXPECT_FALSE(w.charts.Charts.NewChart("1234A"));
    EXPECT_FALSE(w.charts.Charts.ChartIsOpen());
    w.dialogs.replies = {mb::Yes};
    ASSERT_TRUE(w.charts.Charts.NewChart("1234A"));
    EXPECT_TRUE(w.charts.State.Header.OutOfDate);
    auto texts = w.charts.View.WarningTexts();
    EXPECT_NE(std::find(texts.begin(), texts.end(), " This chart is not up to date: UNSAFE FOR NAVIGATION."), texts.end());
}

TEST(Warnings, CountingByCode) {
    ChartWorld w;
    w.charts.View.SetViewSize(200, 200);
    ASSERT_TRUE(w.Install(DefaultFixture()));
    ASSERT_TRUE(w.charts.Charts.NewChart("1234A"));
    std::ifstream f(std::string(OMBRA_TEST_DATA) + "/charts/warnings.txt");
    std::string line;
    int cases = 0;
    while (std::getline(f, line)) {
        if (line.empty() || line[0] == '#') continue;
        SCOPED_TRACE(line);
        size_t b1 = line.find('|'), b2 = line.find('|', b1 + 1);
        w.charts.View.ChartWarning(0);
        int layoutChanges = 0;
        int16_t last = 0;
        w.host.warnings = [&] {
            if ((last == 0) != (w.charts.View.WarningCount() == 0)) ++layoutChanges;
            last = w.charts.View.WarningCount();
        };
        std::istringstream codes(line.substr(0, b1));
        std::string c;
        while (codes >> c) {
            if (c.rfind("p=", 0) == 0) w.charts.View.PixelSize = int16_t(Val(c.substr(2)));
            else w.charts.View.ChartWarning(int16_t(Val(c)));
        }
        EXPECT_EQ(w.charts.View.WarningCount(), int(Val(line.substr(b1 + 1, b2 - b1 - 1))));
        std::istringstream set(line.substr(b2 + 1));
        const std::vector<int> want{std::istream_iterator<int>(set), std::istream_iterator<int>()};
        std::vector<int> got;
        for (int k : {1, 2, 4, 5})
            if (w.charts.View.WarningSet(k)) got.push_back(k);
        EXPECT_EQ(got, want);
        EXPECT_LE(layoutChanges, 2);
        ++cases;
    }
    EXPECT_GE(cases, 6);
    // The zoom factor's text follows the pixel size of the last setting.
    w.charts.View.PixelSize = 512;
    w.charts.View.ChartWarning(0);
    w.charts.View.ChartWarning(4);
    EXPECT_NE(w.charts.View.WarningTexts()[0].find("( X 4 )"), std::string::npos);
}

// Plan 1 inside the main plan; plan 2 inside plan 1, where plan 1's own
// pixels of its area lie, so that plan 2 covers them.
FixtureChart NestedPlans() {
    FixtureChart c = DefaultFixture();
    c.Plans[0].Shift = false;
    c.Plans.push_back({50.10, 49.90, -12.20, -11.80, 40, 40, 440, 440, "Plan one", "25000", true, 3});
    c.Plans.push_back({50.05, 49.95, -12.1, -11.9, 40, 40, 440, 440, "Plan two", "10000", true, 2});
    return c;
}

TEST(Plans, APositionCountsOnlyForTheMostDetailedPlan) {
    ChartWorld w;
    w.charts.View.SetViewSize(400, 300);
    FixtureChart c = NestedPlans();
    ASSERT_TRUE(w.Install(c));
    ASSERT_TRUE(w.charts.Charts.NewChart("1234A"));
    double x0, y0, x1, y1;
    ASSERT_TRUE(w.library.PositionToPixel(0, 1, LatLong{-12.1 * 3600, 50.05 * 3600}, x0, y0));
    ASSERT_TRUE(w.library.PositionToPixel(0, 1, LatLong{-11.9 * 3600, 49.95 * 3600}, x1, y1));
    // Place plan 2 where plan 1 maps its area, and install again.
    auto& p2 = c.Plans[2];
    std::tie(p2.X0, p2.Y0, p2.X1, p2.Y1) = std::make_tuple(int(std::lround(x0)), int(std::lround(y0)), int(std::lround(x1)), int(std::lround(y1)));
    ASSERT_TRUE(w.Install(c));
    ASSERT_TRUE(w.charts.Charts.NewChart("1234A"));

    NavPoint inner = w.charts.View.LocatePosition(LatLong{-12.0 * 3600, 50.0 * 3600});
    ASSERT_EQ(inner.InPlan.size(), 3u);
    EXPECT_TRUE(inner.In(0));   // plan 0's own pixel here lies outside plans 1 and 2
    EXPECT_FALSE(inner.In(1));  // under plan 2
    EXPECT_TRUE(inner.In(2));
    NavPoint mid = w.charts.View.LocatePosition(LatLong{-12.15 * 3600, 50.08 * 3600});
    EXPECT_TRUE(mid.In(1));
    EXPECT_FALSE(mid.In(2));
    EXPECT_NEAR(inner.Local.Lat, 50.0 * 3600, 5);
    EXPECT_EQ(w.charts.View.LocatePosition(LatLong{10 * 3600.0, 10 * 3600.0}).FirstPlanShown(), -1);

    // Plan outlines carry pixels once the chart is open.
    const auto& o = w.charts.State.Header.Plans[2].Outline;
    ASSERT_EQ(o.size(), 5u);
    EXPECT_NEAR(o[1].Pixel.x, x0, 1);

    // Selecting plan 0 (no shift) warns of WGS84; plan 1 (shift) does not.
    w.charts.View.SelectPlan(0);
    EXPECT_TRUE(w.charts.View.WarningSet(1));
    w.charts.View.SelectPlan(1);
    EXPECT_FALSE(w.charts.View.WarningSet(1));

    // The Plans command lists 0..2 and moves the view to the one picked.
    w.dialogs.picks = {2};
    w.charts.View.ShowPlansList();
    EXPECT_EQ(w.dialogs.asked.back().kind, "Pick");
    EXPECT_EQ(w.dialogs.asked.back().text, "Plans");
    EXPECT_EQ(w.charts.View.DisplayedPlan, 2);
    EXPECT_EQ(w.charts.View.ScaleCaption(), "Scale 1:10000");
}

TEST(Plans, ChartWithoutMainPlan) {
    ChartWorld w;
    w.charts.View.SetViewSize(400, 300);
    FixtureChart c = NestedPlans();
    c.Plans.resize(2);
    ASSERT_TRUE(w.Install(c));
    // The catalogue says: no main plan (a one-character border line), and
    // plan 0 has no file.
    std::string folder = w.charts.Cat.CatalogueFolder(w.root.path());
    ChartCatEntry e;
    ASSERT_TRUE(w.charts.Cat.ReadChartCatEntry(w.root.path(), w.charts.Cat.FindChartPointer(w.root.path(), "1234A", false), e, true));
    e.FirstPlan = 1;
    std::string why;
    ASSERT_TRUE(AddChartToCatalogue(folder, e, why)) << why;
    std::filesystem::remove(ChartFilePath(w.HeaderPath("1234A"), "P00"));

    ASSERT_TRUE(w.charts.Charts.NewChart("1234A")) << (w.Messages().empty() ? "" : w.Messages().back());
    const ChartHeader& h = w.charts.State.Header;
    EXPECT_EQ(h.FirstPlan, 1);
    EXPECT_EQ(h.Plans[0].Title, "TEST CHART");
    // Plan 0 is only a title: it never holds a position, and shows no WGS84 warning.
    NavPoint p = w.charts.View.LocatePosition(LatLong{-12.0 * 3600, 50.0 * 3600});
    EXPECT_FALSE(p.In(0));
    EXPECT_TRUE(p.In(1));
    w.charts.View.SelectPlan(0);
    EXPECT_FALSE(w.charts.View.WarningSet(1));
}

TEST(ScaleSteps, NextChartOutAndIn) {
    ChartWorld w;
    w.charts.View.SetViewSize(400, 300);
    struct {
        const char* number;
        const char* scale;
        double half;
    } charts[] = {{"100", "200000", 0.5}, {"200", "50000", 0.2}, {"300", "12500", 0.08}, {"400", "75000", 0.3}};
    for (auto& c : charts) {
        FixtureChart f = DefaultFixture();
        f.Number = c.number;
        f.Plans[0].Scale = c.scale;
        f.Plans[0].LatN = 50 + c.half;
        f.Plans[0].LatS = 50 - c.half;
        f.Plans[0].LonW = -12 - c.half;
        f.Plans[0].LonE = -12 + c.half;
        ASSERT_TRUE(w.Install(f));
    }
    ASSERT_TRUE(w.charts.Charts.NewChart("200"));
    w.charts.View.CentreOnPosition(LatLong{-12 * 3600.0, 50 * 3600.0});
    w.charts.Charts.ZoomOutChart();
    EXPECT_EQ(Trim(w.charts.State.Header.ChartNumber), "400");
    w.charts.Charts.ZoomOutChart();
    EXPECT_EQ(Trim(w.charts.State.Header.ChartNumber), "100");
    w.charts.Charts.ZoomInChart();
    EXPECT_EQ(Trim(w.charts.State.Header.ChartNumber), "400");
    // The centre is kept across the steps.
    LatLong c = w.charts.View.ViewCentre();
    EXPECT_NEAR(c.Lat, 50 * 3600.0, 20);
    EXPECT_NEAR(c.Long, -12 * 3600.0, 20);
    w.charts.Charts.ZoomInChart();
    w.charts.Charts.ZoomInChart();
    EXPECT_EQ(Trim(w.charts.State.Header.ChartNumber), "300");
    size_t asked = w.dialogs.asked.size();
    w.charts.Charts.ZoomInChart();
    ASSERT_EQ(w.dialogs.asked.size(), asked + 1);
    EXPECT_EQ(w.dialogs.asked.back().text, "There are no charts of a suitable scale curently installed.");
    EXPECT_EQ(w.dialogs.asked.back().title, "Chart Scale Out");
    // An uninstalled chart in the catalogue is passed over.
    std::filesystem::remove_all(std::filesystem::path(w.HeaderPath("100")).parent_path());
    ASSERT_TRUE(w.charts.Charts.NewChart("400"));
    w.charts.View.CentreOnPosition(LatLong{-12 * 3600.0, 50 * 3600.0});
    w.charts.Charts.ZoomOutChart();
    EXPECT_EQ(w.dialogs.asked.back().title, "Chart Scale Out");
    // Start-up's choice at a position: the smallest scale denominator.
    ASSERT_TRUE(w.charts.Charts.OpenChartAt(50 * 3600.0, -12 * 3600.0));
    EXPECT_EQ(Trim(w.charts.State.Header.ChartNumber), "300");
}

}  // namespace
}  // namespace ombra::test

namespace ombra::test {
namespace {

// A pixel size of 0 means "not set" and gives the one-to-one view; other
// values are kept within the pixel-zoom range.
TEST(ChartView, PixelSizeZeroIsOneToOneAndOthersStayInRange) {
    ChartWorld w;
    w.charts.View.SetViewSize(400, 300);
    ASSERT_TRUE(w.Install(DefaultFixture()));
    ASSERT_TRUE(w.charts.Charts.NewChart("1234A"));
    w.charts.View.ShowHiRes();
    struct Case {
        int16_t asked, kept;
        bool zoomWarning;
    };
    for (Case c : {Case{0, 128, false}, Case{256, 256, true}, Case{8, 16, true}, Case{2048, 1024, true},
                   Case{-5, 16, true}, Case{128, 128, false}}) {
        w.charts.View.SetPixelSize(c.asked);
        EXPECT_EQ(w.charts.View.PixelSize, c.kept) << c.asked;
        EXPECT_EQ(w.charts.View.WarningSet(4), c.zoomWarning) << c.asked;
    }
}

}  // namespace
}  // namespace ombra::test

namespace ombra::test {
namespace {

// The scale bar: a round length (1, 2 or 5 times a power of ten of nautical
// miles) whose pixels match the chart's pixels a mile at the view's zoom,
// filling at least two fifths of the room it is given.
TEST(ChartView, ScaleBarIsARoundLengthTrueToTheZoom) {
    ChartWorld w;
    w.charts.View.SetViewSize(400, 300);
    double nm = 0;
    int pixels = 0;
    EXPECT_FALSE(w.charts.View.ScaleBar(150, nm, pixels));  // no chart
    ASSERT_TRUE(w.Install(DefaultFixture()));
    ASSERT_TRUE(w.charts.Charts.NewChart("1234A"));
    struct Case {
        bool hiRes;
        int16_t pixelSize;
        int room;
    };
    for (Case c : {Case{true, 128, 150}, Case{true, 512, 150}, Case{true, 16, 150}, Case{false, 128, 150},
                   Case{true, 128, 40}, Case{false, 64, 300}}) {
        if (c.hiRes) w.charts.View.ShowHiRes();
        else w.charts.View.ShowLoRes();
        w.charts.View.SetPixelSize(c.pixelSize);
        ASSERT_TRUE(w.charts.View.ScaleBar(c.room, nm, pixels)) << c.pixelSize;
        double perNm = w.library.GetPixelsPerNM(w.charts.View.DisplayedPlan) / w.charts.View.ViewFactor();
        EXPECT_NEAR(pixels, nm * perNm, 1.0) << c.pixelSize;
        EXPECT_LE(pixels, c.room);
        EXPECT_GE(pixels, c.room * 2 / 5) << c.pixelSize << " " << nm;
        double mantissa = nm / std::pow(10.0, std::floor(std::log10(nm) + 1e-9));
        EXPECT_TRUE(std::abs(mantissa - 1) < 1e-6 || std::abs(mantissa - 2) < 1e-6 || std::abs(mantissa - 5) < 1e-6)
            << nm;
    }
}

}  // namespace
}  // namespace ombra::test

namespace ombra::test {
namespace {

// Choosing the chart for a position (the vessel's, at GPS on) keeps the
// chart in view, with its raster and zoom, when it is still the one to
// show, and only centres on the position.
TEST(ChartOpen, ChoosingTheChartInViewAgainKeepsTheView) {
    ChartWorld w;
    w.charts.View.SetViewSize(400, 300);
    ASSERT_TRUE(w.Install(DefaultFixture()));
    int opened = 0;
    w.host.opened = [&] { ++opened; };
    ASSERT_TRUE(w.charts.Charts.OpenChartAt(50 * 3600.0, -12 * 3600.0));
    EXPECT_EQ(opened, 1);
    w.charts.View.ShowHiRes();
    w.charts.View.PixelZoomIn();
    struct Case {
        double lat, lon;
    };
    for (Case c : {Case{50.05, -12.1}, Case{49.9, -11.8}, Case{50.0, -12.0}}) {
        ASSERT_TRUE(w.charts.Charts.OpenChartAt(c.lat * 3600.0, c.lon * 3600.0));
        EXPECT_EQ(opened, 1) << c.lat;
        EXPECT_FALSE(w.charts.View.ShowingLoRes()) << c.lat;
        EXPECT_EQ(w.charts.View.PixelSize, 256) << c.lat;
        LatLong at = w.charts.View.ViewCentre();
        EXPECT_NEAR(at.Lat, c.lat * 3600.0, 5) << c.lat;
        EXPECT_NEAR(at.Long, c.lon * 3600.0, 5) << c.lat;
    }
}

}  // namespace
}  // namespace ombra::test

namespace ombra::test {
namespace {

// A chart opened before its window has a size is centred where it was
// asked to be once the window gets one.
TEST(ChartView, APlaceChosenBeforeTheWindowHasASizeIsCentredOnceItHasOne) {
    ChartWorld w;
    ASSERT_TRUE(w.Install(DefaultFixture()));
    ASSERT_TRUE(w.charts.Charts.NewChart("1234A"));
    w.charts.View.ShowHiRes();
    LatLong place{-12.1 * 3600.0, 50.05 * 3600.0};
    ASSERT_TRUE(w.charts.View.CentreOnPosition(place));
    w.charts.View.SetViewSize(400, 300);
    LatLong at = w.charts.View.ViewCentre();
    EXPECT_NEAR(at.Lat, place.Lat, 5);
    EXPECT_NEAR(at.Long, place.Long, 5);
    w.charts.View.SetViewSize(600, 200);  // later sizes keep the centre as before
    at = w.charts.View.ViewCentre();
    EXPECT_NEAR(at.Lat, place.Lat, 5);
    EXPECT_NEAR(at.Long, place.Long, 5);
}

// Opening a chart from the Chart Manager or at start-up: the first chart
// shows its readable full raster; a later one keeps the raster chosen and
// the place in view when it covers it.
TEST(ChartOpen, OpeningKeepsTheViewOrStartsReadable) {
    ChartWorld w;
    w.charts.View.SetViewSize(400, 300);
    FixtureChart other;
    other.Number = "2000";
    other.Plans.push_back({50.05, 49.95, -12.1, -11.9, 0, 0, other.Width, other.Height, "Close", "25000"});
    FixtureChart away;
    away.Number = "3000";
    away.Plans.push_back({40.5, 40.0, -10.0, -9.0, 0, 0, away.Width, away.Height, "Away", "50000"});
    ASSERT_TRUE(w.Install(DefaultFixture()));
    ASSERT_TRUE(w.Install(other));
    ASSERT_TRUE(w.Install(away));
    ASSERT_TRUE(w.charts.Charts.OpenKeepingView("1234A"));
    EXPECT_FALSE(w.charts.View.ShowingLoRes());
    EXPECT_FALSE(w.charts.View.WarningSet(2));
    LatLong place{-12.0 * 3600.0, 50.0 * 3600.0};
    ASSERT_TRUE(w.charts.View.CentreOnPosition(place));
    struct Step {
        const char* number;
        bool loResBefore, loResAfter, samePlace;
    };
    for (Step s : {Step{"2000", false, false, true}, Step{"1234A", true, true, true}, Step{"3000", false, false, false}}) {
        if (s.loResBefore) w.charts.View.ShowLoRes();
        else w.charts.View.ShowHiRes();
        ASSERT_TRUE(w.charts.Charts.OpenKeepingView(s.number)) << s.number;
        EXPECT_EQ(Trim(w.charts.State.Header.ChartNumber), s.number);
        EXPECT_EQ(w.charts.View.ShowingLoRes(), s.loResAfter) << s.number;
        LatLong at = w.charts.View.ViewCentre();
        bool same = std::abs(at.Lat - place.Lat) < 10 && std::abs(at.Long - place.Long) < 10;
        EXPECT_EQ(same, s.samePlace) << s.number;
    }
}

}  // namespace
}  // namespace ombra::test

namespace ombra::test {
namespace {

// The zoomed-out raster sits in the middle of a view it does not fill; one
// larger than the view keeps the place at the centre.
TEST(ChartView, ZoomedOutRasterSitsCentredInALargerView) {
    struct Case {
        int width, height;
        ChartPoint topLeft, bottomRight;  // the raster's corners on the screen; x -1: not fitted
    };
    for (Case c : {Case{800, 600, {150, 100}, {650, 500}}, Case{520, 700, {10, 150}, {510, 550}},
                   Case{400, 300, {-1, -1}, {-1, -1}}}) {
        ChartWorld w;
        w.charts.View.SetViewSize(c.width, c.height);
        ASSERT_TRUE(w.Install(DefaultFixture()));
        ASSERT_TRUE(w.charts.Charts.NewChart("1234A"));
        w.charts.View.ShowHiRes();
        LatLong place{-12.1 * 3600.0, 50.05 * 3600.0};
        ASSERT_TRUE(w.charts.View.CentreOnPosition(place));
        w.charts.View.ShowLoRes();
        ASSERT_EQ(w.charts.View.ViewFactor(), 2.0f);
        if (c.topLeft.x < 0) {
            LatLong at = w.charts.View.ViewCentre();
            EXPECT_NEAR(at.Lat, place.Lat, 10);
            EXPECT_NEAR(at.Long, place.Long, 10);
            continue;
        }
        ChartPoint tl = w.charts.View.ChartToScreen({0, 0}), br = w.charts.View.ChartToScreen({1000, 800});
        EXPECT_EQ(tl.x, c.topLeft.x) << c.width;
        EXPECT_EQ(tl.y, c.topLeft.y) << c.width;
        EXPECT_EQ(br.x, c.bottomRight.x) << c.width;
        EXPECT_EQ(br.y, c.bottomRight.y) << c.width;
    }
}

}  // namespace
}  // namespace ombra::test
