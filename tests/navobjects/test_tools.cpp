// The mouse tools: CurrentTool and its prompt, what clicks do, how a tool
// ends, which object a click finds, and the pop-up commands.
#include "tests/navobjects/NavFixture.h"

namespace ombra::test {
namespace {

struct Tools : NavSet {
    ChartPoint At(const LatLong& p) { return w.chart.Pixel(p); }
    int16_t Tool() const { return w.globals.CurrentTool; }
    std::vector<std::string> Captions(const Hit& h) {
        std::vector<std::string> c;
        for (const PopupEntry& e : nav.tools.Popup(h)) c.push_back(e.Caption);
        return c;
    }
};

TEST_F(Tools, BeginSetsTheToolAndItsPromptAndEndClearsThem) {
    for (int16_t tool : {ToolDragChart, ToolRoute, ToolVessel}) {
        nav.tools.Begin(tool);
        EXPECT_EQ(Tool(), tool);
        EXPECT_FALSE(w.host.status.back().empty());
    }
    EXPECT_EQ(w.host.status.back(), "Single Click on chart to place Vessel");
    EXPECT_EQ(ToolVessel, 8);  // the value the vessel's drag is tested by
    nav.tools.End();
    EXPECT_EQ(Tool(), 0);
    EXPECT_EQ(w.host.status.back(), "");
}

TEST_F(Tools, RouteToolPlacesPointsUntilADoubleClick) {
    w.dialogs.texts = {"R001", "R002", "BA001"};
    nav.tools.CreateRoute();
    ASSERT_EQ(Tool(), ToolRoute);
    for (int i = 0; i < 3; ++i) EXPECT_TRUE(nav.tools.Click(At(DM(50, 10 * i, -5, 0))));
    EXPECT_TRUE(nav.tools.DoubleClick(At(DM(50, 20, -5, 0))));
    EXPECT_EQ(Tool(), 0);
    ASSERT_EQ(nav.routes.Count(), 1);
    ASSERT_EQ(nav.routes.At(1)->Points.size(), 3u);
    EXPECT_EQ(nav.routes.At(1)->Points[1].Position.Wgs84, DM(50, 10, -5, 0));
    nav.tools.CreateRoute();  // ended before its first point: gone
    nav.tools.End();
    EXPECT_EQ(nav.routes.Count(), 1);
    // Choosing another tool ends the first.
    nav.tools.CreateBoundary();
    nav.tools.Click(At(DM(50, 0, -4, 0)));
    nav.tools.NewWaypointByMouse();
    EXPECT_EQ(nav.boundaries.EditingBoundary, 0);
    EXPECT_EQ(nav.boundaries.At(1)->Marks.size(), 1u);
    nav.tools.Click(At(DM(50, 5, -4, 0)));
    EXPECT_EQ(Tool(), 0);
    EXPECT_EQ(nav.waypoints.At(1)->Position.Wgs84, DM(50, 5, -4, 0));
}

TEST_F(Tools, DividersFollowTheCursorAndAHalfPlacedOneIsDropped) {
    nav.tools.StartDividers();
    nav.tools.Click(At(DM(50, 0, -5, 0)));
    nav.tools.Move(At(DM(50, 7, -5, 0)));
    ASSERT_EQ(nav.dividers.List.size(), 1u);
    EXPECT_EQ(nav.dividers.List[0].B.Wgs84, DM(50, 7, -5, 0));
    nav.tools.Click(At(DM(50, 9, -5, 0)));
    EXPECT_EQ(Tool(), 0);
    EXPECT_EQ(nav.dividers.List[0].State, 2);
    EXPECT_EQ(nav.dividers.List[0].B.Wgs84, DM(50, 9, -5, 0));
    nav.tools.StartRBL();
    nav.tools.Click(At(DM(50, 0, -5, 0)));
    nav.tools.End();
    EXPECT_TRUE(nav.vectors.List.empty());
}

TEST_F(Tools, HitPrecedenceFollowsTheLayers) {
    LatLong p = DM(50, 10, -5, 0);
    nav.waypoints.AddWaypoint(AddBy::Mouse, &p);
    w.dialogs.texts.push_back("R001");
    int16_t r = nav.routes.NewRoute();
    nav.routes.AddRoutePoint(r, p);
    nav.routes.AddRoutePoint(r, DM(50, 20, -5, 0));
    ChartPoint s = At(p), mid = At(DM(50, 15, -5, 0));
    Hit h = nav.tools.HitTest({s.x + 3, s.y + 3});
    EXPECT_EQ(h.Kind, HitKind::RoutePoint);  // the route lies over the waypoint
    EXPECT_EQ(h.Index, r);
    EXPECT_EQ(h.Part, 1);
    nav.routes.DisplayRoute(r);
    EXPECT_EQ(nav.tools.HitTest(s).Kind, HitKind::Waypoint);
    nav.routes.DisplayRoute(r);
    h = nav.tools.HitTest({mid.x + 3, mid.y});
    EXPECT_EQ(h.Kind, HitKind::RouteLeg);
    EXPECT_EQ(h.Part, 1);
    EXPECT_EQ(nav.tools.HitTest({mid.x + 6, mid.y}).Kind, HitKind::None);
    nav.dividers.Begin(DM(50, 15, -5, 1));
    nav.dividers.Finish(DM(50, 15, -4, 59));
    EXPECT_EQ(nav.tools.HitTest(mid).Kind, HitKind::Divider);
}

TEST_F(Tools, PopupCommandsOnAWaypointAndALeg) {
    LatLong p = DM(50, 10, -5, 0);
    nav.waypoints.AddWaypoint(AddBy::Mouse, &p);
    Hit h = nav.tools.HitTest(At(p));
    ASSERT_EQ(h.Kind, HitKind::Waypoint);
    EXPECT_EQ(Captions(h), (std::vector<std::string>{"&Properties", "&Activate", "&Move", "&Delete", "Add to &Route",
                                                     "Set A&ttachment..."}));
    nav.tools.RunPopup(h, "move");
    EXPECT_EQ(Tool(), ToolMoveWaypoint);
    nav.tools.Click(At(DM(50, 12, -5, 0)));
    EXPECT_EQ(Tool(), 0);
    EXPECT_EQ(nav.waypoints.At(1)->Position.Wgs84, DM(50, 12, -5, 0));
    // An attachment adds the viewer, which says so when the bitmap fails.
    w.host.files.push_back("/charts/pier.bmp");
    h = nav.tools.HitTest(At(DM(50, 12, -5, 0)));
    nav.tools.RunPopup(h, "attach");
    EXPECT_EQ(w.host.asked.back().items, (std::vector<std::string>{"BMP", "*.bmp"}));
    EXPECT_EQ(Captions(h).back(), "&View Attachment");
    w.host.attachmentLoads = false;
    nav.tools.RunPopup(h, "viewattachment");
    EXPECT_EQ(w.Messages().back(), "An error occurred trying to load the attachment");
    // Into a route: a copy at the end of the route chosen.
    w.dialogs.texts.push_back("R001");
    int16_t r = nav.routes.NewRoute();
    nav.routes.AddRoutePoint(r, DM(50, 0, -5, 0));
    nav.routes.SelectedRoute = 0;
    w.host.listPicks.push_back(0);
    nav.tools.RunPopup(h, "addtoroute");
    ASSERT_EQ(nav.routes.At(r)->Points.size(), 2u);
    EXPECT_EQ(nav.routes.At(r)->Points[1].Name, "WP001");
    EXPECT_EQ(nav.routes.At(r)->Points[1].Number, 2);
    // A leg: insert a point where the click was.
    Hit leg = nav.tools.HitTest(At(DM(50, 6, -5, 0)));
    ASSERT_EQ(leg.Kind, HitKind::RouteLeg);
    EXPECT_EQ(Captions(leg)[4], "&Insert Route Point");
    nav.tools.RunPopup(leg, "insert");
    ASSERT_EQ(nav.routes.At(r)->Points.size(), 3u);
    EXPECT_EQ(nav.routes.At(r)->Points[1].Position.Wgs84, DM(50, 6, -5, 0));
    EXPECT_EQ(nav.routes.At(r)->Points[1].Name, "R1.WP2");
}

}  // namespace
}  // namespace ombra::test
