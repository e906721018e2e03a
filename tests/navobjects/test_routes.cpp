// The route store: the four readers and the writer, and route editing.
#include <sstream>

#include "navmath/RLGC.h"
#include "navobjects/Routes.h"
#include "navobjects/Symbols.h"
#include "platform/fake/RecordingCanvas.h"
#include "tests/navobjects/NavFixture.h"

namespace ombra::test {
namespace {

struct RouteStore : StoreTest<Routes> {
    Routes& rt = store;
    void Open(const std::string& dataFile) { OpenBytes(NavData("routes/" + dataFile), "Index name"); }
    // A database with one route of `n` points a minute of latitude apart.
    int16_t MakeRoute(int n) {
        w.dialogs.texts = {"Edits", "R001"};
        rt.NewRouteDB();
        int16_t r = rt.NewRoute();
        for (int i = 0; i < n; ++i) rt.AddRoutePoint(r, DM(50, i, -5, 0));
        return r;
    }
    std::vector<std::string> Names(int16_t r) {
        std::vector<std::string> out;
        for (const Waypoint& p : rt.At(r)->Points) out.push_back(p.Name + "#" + std::to_string(p.Number));
        return out;
    }
};

TEST_F(RouteStore, EveryFormReads) {
    const char* formNames[] = {"none", "old", "2.18", "current"};
    std::vector<std::string> cases = NavCases("routes/cases.txt");
    EXPECT_EQ(cases.size(), 5u);
    for (const std::string& line : cases) {
        std::istringstream f(line);
        std::string file, form, name, flags;
        int routes = 0, whole = 0, points = 0, colour = 0;
        f >> file >> form >> name >> routes >> whole >> points >> flags >> colour;
        SCOPED_TRACE(file);
        std::string dbName = "-";
        std::vector<Route> list;
        StoreForm got;
        ReadOutcome r = ReadRouteFile(NavData("routes/" + file), dbName, list, &got);
        EXPECT_EQ(formNames[int(got)], form);
        EXPECT_EQ(dbName, name);
        ASSERT_EQ(int(list.size()), routes);
        EXPECT_EQ(r.whole, whole == 1) << r.fault;
        ASSERT_FALSE(list.empty());
        EXPECT_EQ(int(list[0].Points.size()), points);
        std::string seen;
        for (const RouteLeg& l : list[0].Legs) seen += (seen.empty() ? "" : ",") + std::to_string(l.IsGreatCircle);
        EXPECT_EQ(seen, flags);
        EXPECT_EQ(list[0].Colour, colour);
    }
}

TEST_F(RouteStore, A218FileIsResavedInThePresentForm) {
    Open("v218.rte");
    EXPECT_EQ(rt.CurrentName, "Channel");
    ASSERT_EQ(rt.Count(), 3);
    // Legs are computed, never read: the GC leg by its flag.
    const Route& r1 = *rt.At(1);
    double c, d;
    CourseDistanceGC(r1.Points[1].Position.Wgs84, r1.Points[2].Position.Wgs84, c, d);
    EXPECT_DOUBLE_EQ(r1.Legs[1].Distance, d);
    EXPECT_DOUBLE_EQ(r1.Legs[1].Course, c);
    EXPECT_EQ(r1.Legs[2].Distance, 0.0);
    ASSERT_TRUE(rt.SaveRouteDB());
    EXPECT_EQ(ReadFile(FolderFile("vst00001.rte")), NavData("routes/v218-resaved.rte"));
    EXPECT_TRUE(w.Errors().empty());
}

TEST_F(RouteStore, ACutFileKeepsTheWholeRoutesBeforeTheFault) {
    Open("present-cut.rte");
    EXPECT_EQ(rt.Count(), 1);
    ASSERT_EQ(w.Errors().size(), 1u);
    EXPECT_TRUE(Has(w.Errors()[0], "Error in 'OpenRouteDB'"));
    EXPECT_TRUE(Has(w.Errors()[0], "vst00001.rte, line 7.")) << w.Errors()[0];
    w.dialogs.replies.push_back(mb::No);
    EXPECT_FALSE(rt.SaveRouteDB());
    EXPECT_EQ(ReadFile(FolderFile("vst00001.rte")), NavData("routes/present-cut.rte"));
}

TEST_F(RouteStore, NewRouteNamesAndDropsAnEmptyRoute) {
    w.dialogs.texts = {"Edits", "\x18", "Night passage"};
    rt.NewRouteDB();
    EXPECT_EQ(rt.NewRoute(), 0);  // cancelled
    EXPECT_EQ(w.dialogs.asked.back().title, "Route:  001");
    EXPECT_EQ(rt.Count(), 0);
    int16_t r = rt.NewRoute();
    ASSERT_EQ(r, 1);
    EXPECT_EQ(rt.At(r)->Name, "Night passage");
    EXPECT_EQ(rt.At(r)->Display, -1);
    rt.EndNewRoute(r);
    EXPECT_EQ(rt.Count(), 0);
    // One point: one unused leg, and only its symbol is drawn.
    w.dialogs.texts = {"R002"};
    r = rt.NewRoute();
    rt.AddRoutePoint(r, DM(50, 0, -5, 0));
    EXPECT_EQ(rt.At(r)->Legs.size(), 1u);
    RecordingCanvas c;
    rt.DrawRoutes(c);
    EXPECT_TRUE(w.chart.legs.empty());
    EXPECT_EQ(c.Of("Blit").size(), 1u);
}

TEST_F(RouteStore, InsertDeleteAndReverseKeepNamesAndLegs) {
    int16_t r = MakeRoute(3);
    Route& route = *rt.At(r);
    route.Points[2].Name = "Bar";  // typed names stay
    rt.SwapLegKind(r, 2);          // leg 2-3 becomes GC
    ASSERT_EQ(route.Legs[1].IsGreatCircle, -1);
    // Inserting into leg 2 splits it: the new leg takes its flag.
    EXPECT_EQ(rt.InsertRoutePoint(r, 2, DM(50, 1.5, -5, 0)), 3);
    EXPECT_EQ(Names(r), (std::vector<std::string>{"R1.WP1#1", "R1.WP2#2", "R1.WP3#3", "Bar#4"}));
    EXPECT_EQ(route.Legs[2].IsGreatCircle, -1);
    EXPECT_NEAR(route.Legs[1].Distance, 0.5, 0.01);
    EXPECT_NEAR(route.Legs[2].Distance, 0.5, 0.01);
    EXPECT_NEAR(route.TotalDistance(), 2.0, 0.01);
    // Deleting point 1 moves the rest down; generated names follow.
    EXPECT_TRUE(rt.DeleteRoutePoint(r, 1));
    EXPECT_EQ(Names(r), (std::vector<std::string>{"R1.WP1#1", "R1.WP2#2", "Bar#3"}));
    EXPECT_EQ(route.PointCount, 3);
    // Reversing turns points and flags round; legs are computed again.
    rt.ReverseRoute(r);
    EXPECT_EQ(Names(r), (std::vector<std::string>{"Bar#1", "R1.WP2#2", "R1.WP1#3"}));
    EXPECT_EQ(route.Legs[0].IsGreatCircle, -1);
    EXPECT_EQ(route.Legs[1].IsGreatCircle, -1);
    EXPECT_NEAR(route.Legs[0].Course, 180.0, 1e-9);
    for (int i = 0; i < 3; ++i) rt.DeleteRoutePoint(r, 1);
    EXPECT_EQ(rt.Count(), 0);  // deleting every point removes the route
}

TEST_F(RouteStore, TheActivePointIsGuarded) {
    int16_t r = MakeRoute(3);
    rt.ActiveRoute = r;
    rt.ActivePoint = 2;
    EXPECT_FALSE(rt.DeleteRoutePoint(r, 2));
    EXPECT_EQ(w.Messages().back(), "You must de-activate a route point before deleting it.");
    EXPECT_FALSE(rt.MoveRoutePoint(r, 2));
    EXPECT_EQ(w.Messages().back(), "An active waypoint cannot be moved.\nYou must de-activate it first.");
    // A point before it may go: the active index follows its point.
    EXPECT_TRUE(rt.DeleteRoutePoint(r, 1));
    EXPECT_EQ(rt.ActivePoint, 1);
    EXPECT_EQ(rt.At(r)->Points[0].Name, "R1.WP1");
    EXPECT_TRUE(rt.MoveRoutePoint(r, 2));
    rt.DropRoutePoint(r, 2, DM(50, 5, -5, 0));
    EXPECT_NEAR(rt.At(r)->Legs[0].Distance, 4.0, 0.02);
}

TEST_F(RouteStore, ListsAndLegRows) {
    int16_t r = MakeRoute(3);
    w.units.AngleUnit = 1;
    w.host.variation = -4.0f;
    rt.At(r)->Points[0].MagVar = -4.0f;
    rt.AddRoutePoint(r, DM(50, 2, -4, 58));
    std::vector<RouteLegRow> legs = rt.LegRows(r);
    ASSERT_EQ(legs.size(), 3u);
    EXPECT_EQ(legs[0].Leg, "1 - 2");
    EXPECT_EQ(legs[0].Kind, "RL");
    EXPECT_EQ(legs[0].Bearing, "004°M");   // 000 true, 4 W variation
    EXPECT_EQ(legs[0].Range, "1.001 NM");  // a minute of latitude at 50°N on WGS84
    ASSERT_EQ(rt.Rows().size(), 1u);
    EXPECT_EQ(rt.Rows()[0].Display, "Yes");
    rt.DisplayRoute(r);
    EXPECT_EQ(rt.Rows()[0].Display, "No");
    w.host.listPicks.push_back(0);
    rt.CentreOnRoute();
    EXPECT_EQ(w.host.asked.back().items, (std::vector<std::string>{"0001 - R001"}));
    EXPECT_EQ(w.chart.centred, (std::vector<LatLong>{DM(50, 0, -5, 0)}));
}

}  // namespace
}  // namespace ombra::test
