// What the navigation objects draw, checked on a recording canvas: which
// pieces, with which pens and brushes, which labels, in which panels.
#include "core/Format.h"
#include "platform/fake/RecordingCanvas.h"
#include "tests/navobjects/NavFixture.h"

namespace ombra::test {
namespace {

struct Drawing : NavSet {
    int16_t AddWp(const LatLong& p, int16_t label, float range) {
        int16_t s = nav.waypoints.AddWaypoint(AddBy::Mouse, &p);
        nav.waypoints.At(s)->LabelMode = label;
        nav.waypoints.At(s)->AlarmRange = range;
        return s;
    }
    static std::vector<std::string> Texts(const RecordingCanvas& c) {
        std::vector<std::string> t;
        for (const auto& call : c.Of("Text")) t.push_back(call.text);
        return t;
    }
};

TEST_F(Drawing, NothingWithoutAChartADatabaseOrAWaypoint) {
    RecordingCanvas c;
    nav.waypoints.DrawWayPoints(c);
    EXPECT_TRUE(c.calls.empty());
    AddWp(DM(50, 10, -5, 10), 1, 0.5f);
    w.chart.open = false;
    nav.waypoints.DrawWayPoints(c);
    nav.routes.DrawRoutes(c);
    nav.boundaries.DrawBoundaries(c);
    EXPECT_TRUE(c.calls.empty());
    w.chart.open = true;
    nav.waypoints.CloseWaypointDB();
    nav.waypoints.DrawWayPoints(c);
    EXPECT_TRUE(c.calls.empty());
}

TEST_F(Drawing, WaypointRingSymbolAndLabelsInTheirPanel) {
    w.chart.inset = true;
    nav.PrepareNavPoints();
    LatLong main = DM(50, 30, -5, 30), inInset = DM(50, 10, -4, 45);
    AddWp(main, 3, -0.5f);               // ring shown, name and position
    AddWp(inInset, 1, -0.25f);           // in the inset, which lies over the main plan
    AddWp(DM(50, 40, -5, 40), 0, 0.0f);  // no ring, no label: a symbol only
    RecordingCanvas c;
    nav.waypoints.DrawWayPoints(c);

    std::vector<RecordingCanvas::Call> rings = c.Of("Ellipse");
    ASSERT_EQ(rings.size(), 2u);
    ChartPoint p = w.chart.Pixel(main);
    EXPECT_EQ(rings[0].points, (std::vector<ChartPoint>{{p.x - 5, p.y - 5}, {p.x + 5, p.y + 5}}));  // 0.5 NM, 10 px a mile
    EXPECT_EQ(rings[0].pen, (Pen{MakeRgb(255, 0, 0), 1, PenStyle::Solid}));
    EXPECT_EQ(rings[0].brush.style, BrushStyle::Null);
    const NavPoint& q = nav.waypoints.At(2)->Position;
    ASSERT_TRUE(q.In(1));
    EXPECT_FALSE(q.In(0));
    EXPECT_EQ(rings[1].points[1].x - rings[1].points[0].x, 20);  // 0.25 NM at the inset's 40 px a mile
    EXPECT_EQ(rings[1].points[0].x, q.Pixel[1].x - 10);

    std::vector<RecordingCanvas::Call> symbols = c.Of("Blit");
    ASSERT_EQ(symbols.size(), 3u);
    EXPECT_EQ(symbols[0].points, (std::vector<ChartPoint>{{p.x - 7, p.y - 7}, {p.x + 9, p.y + 9}}));
    EXPECT_EQ(symbols[1].points[0], (ChartPoint{q.Pixel[1].x - 7, q.Pixel[1].y - 7}));

    EXPECT_EQ(Texts(c), (std::vector<std::string>{"WP001", "50° 30.000 ´N", "5° 30.000 ´W", "WP002"}));
    EXPECT_EQ(c.Of("Text")[0].points[0], (ChartPoint{p.x + 11, p.y - 7}));
    EXPECT_EQ(c.Of("Text")[1].points[0], (ChartPoint{p.x + 11, p.y + 5}));

    // "Force Off" of the labels menu silences them all; "Force On" names the silent.
    w.chart.labelOverride = 2;
    c.calls.clear();
    nav.waypoints.DrawWayPoints(c);
    EXPECT_TRUE(c.Of("Text").empty());
    w.chart.labelOverride = 1;
    nav.waypoints.DrawWayPoints(c);
    EXPECT_EQ(Texts(c).back(), "WP003");
}

TEST_F(Drawing, TheActiveStripDiffersFromTheNormalOne) {
    for (int16_t i = 0; i < kSymbolCount; ++i) {
        const Image &a = nav.symbols.Cell(i, false), &b = nav.symbols.Cell(i, true);
        EXPECT_EQ(a.width, 16);
        EXPECT_NE(a.pixels, b.pixels) << kSymbolNames[i];
    }
    EXPECT_EQ(nav.symbols.Cell(99, false).pixels, nav.symbols.Cell(0, false).pixels);
}

TEST_F(Drawing, RoutesDrawRhumbAndGreatCircleLegsThenTheirPoints) {
    w.dialogs.texts.push_back("R001");
    int16_t r = nav.routes.NewRoute();
    for (int i = 0; i < 3; ++i) nav.routes.AddRoutePoint(r, DM(50, 10 + 10 * i, -5, 10 * i));
    Route& route = *nav.routes.At(r);
    route.Colour = 9;
    route.ShowLegText = true;
    nav.routes.SwapLegKind(r, 2);
    RecordingCanvas c;
    nav.routes.DrawRoutes(c);
    ASSERT_EQ(w.chart.legs.size(), 2u);
    EXPECT_EQ(w.chart.legs[0].kind, "RL");
    EXPECT_TRUE(w.chart.legs[0].labelWanted);
    EXPECT_EQ(w.chart.legs[1].kind, "GC");
    std::string gc = w.chart.legs[1].label;
    EXPECT_TRUE(gc.starts_with(Format(route.Legs[1].Course, "000") + " °T") && gc.ends_with(" GC")) << gc;
    std::vector<RecordingCanvas::Call> lines = c.Of("Line");
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0].pen, (Pen{MakeRgb(0, 0, 255), 2, PenStyle::Solid}));
    EXPECT_EQ(c.Of("Blit").size(), 3u);
    // The leg ahead of the vessel takes the active pen.
    nav.routes.ActiveRoute = r;
    nav.routes.ActivePoint = 3;
    RecordingCanvas active;
    nav.routes.DrawRoutes(active);
    EXPECT_EQ(active.Of("Line")[0].pen, lines[0].pen);
    EXPECT_NE(active.Of("Line")[1].pen, lines[1].pen);
    // Route icons forced off; a hidden route is not drawn at all.
    w.chart.iconsOff = true;
    c.calls.clear();
    nav.routes.DrawRoutes(c);
    EXPECT_TRUE(c.Of("Blit").empty());
    nav.routes.DisplayRoute(r);
    c.calls.clear();
    nav.routes.DrawRoutes(c);
    EXPECT_TRUE(c.calls.empty());
}

TEST_F(Drawing, BoundariesSidesAndHatchOnlyWhereAllMarksShow) {
    w.dialogs.texts = {"BA001", "BA002", "BA003"};
    int16_t square = nav.boundaries.NewBoundary();
    for (auto p : {DM(50, 30, -5, 30), DM(50, 30, -5, 20), DM(50, 20, -5, 20), DM(50, 20, -5, 30)})
        nav.boundaries.AddBoundaryMark(square, p);
    nav.boundaries.EndNewBoundary(square);
    Boundary& b = *nav.boundaries.At(square);
    b.Filled = -1;
    b.Colour = 4;
    b.Pattern = 2;  // "Up Diagonal"
    int16_t line = nav.boundaries.NewBoundary(), dot = 0;
    for (auto p : {DM(50, 40, -5, 0), DM(50, 45, -5, 0)}) nav.boundaries.AddBoundaryMark(line, p);
    nav.boundaries.EndNewBoundary(line);
    nav.boundaries.AddBoundaryMark(dot = nav.boundaries.NewBoundary(), DM(50, 50, -5, 0));
    nav.boundaries.EndNewBoundary(dot);
    RecordingCanvas c;
    nav.boundaries.DrawBoundaries(c);
    ASSERT_EQ(w.chart.legs.size(), 5u);  // four sides, one line, none for a point
    for (const auto& l : w.chart.legs) EXPECT_FALSE(l.labelWanted);
    std::vector<RecordingCanvas::Call> fills = c.Of("Polygon");
    ASSERT_EQ(fills.size(), 1u);
    EXPECT_EQ(fills[0].points.size(), 4u);
    EXPECT_EQ(fills[0].brush, (Brush{MakeRgb(128, 0, 0), BrushStyle::BDiagonal}));
    EXPECT_EQ(c.Of("Blit").size(), 7u);
    // One mark moved into the inset: the ring spans two panels, unfilled.
    w.chart.inset = true;
    nav.PrepareNavPoints();
    nav.boundaries.DropBoundaryMark(square, 3, DM(50, 10, -4, 50));
    c.calls.clear();
    nav.boundaries.DrawBoundaries(c);
    EXPECT_TRUE(c.Of("Polygon").empty());
    for (int16_t k : {square, line, dot}) nav.boundaries.DisplayBoundary(k);  // hidden: nothing
    c.calls.clear();
    nav.boundaries.DrawBoundaries(c);
    EXPECT_TRUE(c.calls.empty());
}

TEST_F(Drawing, DividersAndVectorsLabelTheirMeasure) {
    LatLong a = DM(50, 0, -5, 0), b = DM(50, 30, -5, 0);
    nav.dividers.Begin(a);
    nav.dividers.Finish(b);
    nav.vectors.Begin(a, false);
    nav.vectors.Finish(DM(50, 0, -4, 0));
    nav.vectors.Begin(b, true);
    nav.vectors.Finish(DM(50, 30, -4, 0));
    RecordingCanvas c;
    nav.DrawDividerLayer(c);
    ASSERT_EQ(w.chart.legs.size(), 3u);
    EXPECT_EQ(w.chart.legs[0].kind, "GC");
    EXPECT_EQ(w.chart.legs[0].label, "000 °T 30.031 NM GC");
    EXPECT_EQ(w.chart.legs[1].kind, "Plain");
    // The vector writes its own label over the chart, not in the leg's box.
    EXPECT_TRUE(w.chart.legs[1].label.empty());
    std::string vectorLabel;
    for (const auto& t : c.Of("Text"))
        if (t.text.ends_with(" RL")) vectorLabel = t.text;
    EXPECT_TRUE(vectorLabel.starts_with("090 °T") && vectorLabel.ends_with(" RL")) << vectorLabel;
    EXPECT_EQ(w.chart.legs[2].kind, "GC");
    EXPECT_EQ(c.Of("Ellipse").size(), 6u);
    // Magnetic: the variation at the first end is taken off.
    w.units.AngleUnit = 1;
    w.host.variation = -3.0f;
    EXPECT_EQ(nav.dividers.Label(nav.dividers.List[0]), "003 °M 30.031 NM GC");
    // While a vector is moved, only it is drawn.
    nav.tools.Begin(ToolMoveRBL, 2);
    w.chart.legs.clear();
    nav.DrawDividerLayer(c);
    ASSERT_EQ(w.chart.legs.size(), 2u);  // the divider and vector 2
    EXPECT_EQ(w.chart.legs[1].kind, "GC");
}

TEST(SymbolFile, TheShippedStripsAreOmbrasOwnArt) {
    SymbolStrips built;
    std::string shipped = ReadFile(SourcePath("data/install/dat/WPSymbols.txt"));
    EXPECT_EQ(shipped, built.Text());
    SymbolStrips read;
    std::string why;
    ASSERT_TRUE(read.Parse(shipped, &why)) << why;
    for (int16_t i = 0; i < kSymbolCount; ++i) {
        EXPECT_EQ(read.Cell(i, false).pixels, built.Cell(i, false).pixels) << kSymbolNames[i];
        EXPECT_EQ(read.Cell(i, true).pixels, built.Cell(i, true).pixels) << kSymbolNames[i];
    }
}

TEST(SymbolFile, ADamagedFileIsNotUsedAndSaysWhere) {
    std::string text = SymbolStrips().Text();
    struct {
        std::string bytes;
        const char* where;
    } cases[] = {
        {"", "line 1"},
        {text.substr(0, text.size() / 2), "a row is 592 codes"},
        {text.substr(0, text.find("strip active") + 13), "the strip ends early"},
        {std::string(text).replace(text.find("strip active"), 12, "strip passive"), "strip active"},
        {std::string(text).replace(text.find("colour ") + 9, 1, "z"), "hexadecimal"},
    };
    for (const auto& c : cases) {
        SymbolStrips s;
        Image before = s.Cell(3, false);
        std::string why;
        EXPECT_FALSE(s.Parse(c.bytes, &why));
        EXPECT_NE(why.find(c.where), std::string::npos) << why;
        EXPECT_EQ(s.Cell(3, false).pixels, before.pixels);
    }
    NavWorld w;
    w.globals.AppPath = w.dir.path() + "/";
    WriteFile(w.Path("dat/WPSymbols.txt"), "OMBRA-SYMBOLS 1\nsize 16 count 99\n");
    ActiveLeg leg;
    NavObjects nav(w.ctx, leg);
    nav.LoadWaypoints();
    EXPECT_NE(nav.SymbolFileProblem.find("WPSymbols.txt: line 2"), std::string::npos) << nav.SymbolFileProblem;
}

}  // namespace
}  // namespace ombra::test
