// Activation, the next point and de-activation, watched where the
// navigator sees them: the console's waypoint rows and the NMEA burst of
// the instruments, which read the ActiveLeg record this module writes.
#include "instruments/HeadlessHooks.h"
#include "instruments/Instruments.h"
#include "navmath/RLGC.h"
#include "navobjects/Activation.h"
#include "navobjects/Routes.h"
#include "navobjects/Symbols.h"
#include "navobjects/Waypoints.h"
#include "platform/comms/ScriptedComms.h"
#include "tests/navobjects/NavFixture.h"

namespace ombra::test {
namespace {

// The console refresh the program wires to ActiveLegChanged.
struct ConsoleHost : ScriptedHost {
    Instruments* ins = nullptr;
    void ActiveLegChanged() override {
        if (ins) ins->vessel.UpdateWaypointConsole();
    }
    bool VesselActive() override { return ins && ins->vessel.VesselActive(); }
    LatLong VesselPos() override { return ins ? ins->vessel.vessel.Pos : LatLong{}; }
};

struct Activating : ::testing::Test {
    NavWorld w;
    ConsoleHost host;
    NavContext ctx{w.reg, w.dialogs, w.errors, w.units, w.clock, w.events, w.chart, host, w.globals};
    ScriptedComms ports;
    HeadlessHooks hooks;
    HeadlessChart chartOps;
    Instruments ins{{w.reg, w.units, w.globals, w.clock, w.events, w.errors, ports, hooks, chartOps}};
    SymbolStrips symbols;
    Activation act{ctx, wp, rt, ins.leg};
    Waypoints wp{ctx, symbols, &act};
    Routes rt{ctx, symbols, &act};
    LatLong vessel = DM(50, 0, -5, 0);

    void SetUp() override {
        host.ins = &ins;
        ins.LoadCommsSettings();
        ins.vessel.LoadVesselSettings();
        wp.InitWayPointData();
        rt.InitRoutesData();
        w.dialogs.texts = {"Marks", "Passage", "R001"};
        wp.NewWaypointDB();
        rt.NewRouteDB();
        int16_t r = rt.NewRoute();
        for (int i = 1; i <= 3; ++i) rt.AddRoutePoint(r, DM(50, 10 * i, -5, 5 * i));
        LatLong a = DM(49, 50, -5, 10), b = DM(50, 20, -4, 40);
        wp.AddWaypoint(AddBy::Mouse, &a);
        wp.AddWaypoint(AddBy::Mouse, &b);
        wp.At(2)->AlarmRange = -0.4f;
    }
    void VesselOn() {
        ins.vessel.vessel.Mode = 1;  // dead reckoning: an active vessel
        ins.vessel.vessel.Pos = vessel;
    }
    std::string Burst() { return ins.output.BuildBurst(1); }
    const Console& C() const { return ins.console; }
};

TEST_F(Activating, NoVesselNoActivation) {
    size_t asked = w.dialogs.asked.size();
    EXPECT_FALSE(act.ActivateWaypoint(2));
    EXPECT_EQ(w.dialogs.asked.size(), asked);
    EXPECT_FALSE(act.ActivateRoute(1, 0));
    EXPECT_EQ(w.Messages().back(), "You have no active vessel. Routes cannot be activated.");
    EXPECT_EQ(ins.leg.Kind, 0);
    EXPECT_EQ(C().WPFrameCaption, "No Active Waypoint");
}

TEST_F(Activating, AWaypointShowsOnTheConsoleAndInTheBurst) {
    VesselOn();
    wp.At(2)->Name = "WP017";
    ASSERT_TRUE(act.ActivateWaypoint(2));
    EXPECT_EQ(wp.ActiveIndex, 2);
    const ActiveLeg& leg = ins.leg;  // what the console and the burst are made from
    EXPECT_EQ(leg.Kind, 1);
    EXPECT_EQ(leg.Name, "WP017");
    EXPECT_EQ(leg.FromName, "");
    EXPECT_EQ(leg.From, vessel);
    EXPECT_FLOAT_EQ(leg.AlarmRange, 0.4f);
    EXPECT_NE(leg.Armed, 0);
    double c, d;
    CourseDistanceRL(vessel, DM(50, 20, -4, 40), c, d);
    EXPECT_DOUBLE_EQ(leg.BearingTo, c);
    EXPECT_DOUBLE_EQ(leg.DistanceTo, d);
    EXPECT_EQ(C().WPFrameCaption, "Active Waypoint");
    EXPECT_EQ(C().LabWP[0], "WP017");
    EXPECT_EQ(C().LabWP[1], "50° 20.000 ´N");
    EXPECT_EQ(C().LabWP[4].substr(C().LabWP[4].size() - 6), " NM RL");
    std::string burst = Burst();
    // RMB: from the vessel ("001") to waypoint 017 at its position.
    EXPECT_TRUE(Has(burst, "$GPRMB,") && Has(burst, ",001,017,5020.000,N,00440.000,W,")) << burst;
    act.UpdateActiveRange(-0.7f);  // its range edited: the leg has it at once
    EXPECT_FLOAT_EQ(ins.leg.AlarmRange, 0.7f);
    // Deleted, it is de-activated first.
    w.dialogs.replies.push_back(mb::Yes);
    wp.DeleteWaypoint(2);
    EXPECT_EQ(ins.leg.Kind, 0);
    EXPECT_EQ(wp.ActiveIndex, 0);
    EXPECT_EQ(C().LabWP[0], "N/A");
}

TEST_F(Activating, ARouteDropsTheWaypointWithOneRedraw) {
    VesselOn();
    act.ActivateWaypoint(1);
    int redraws = w.chart.redraws;
    ASSERT_TRUE(act.ActivateRoute(1, 0));
    EXPECT_EQ(w.chart.redraws, redraws + 1);
    EXPECT_EQ(wp.ActiveIndex, 0);
    EXPECT_EQ(rt.ActiveRoute, 1);
    EXPECT_EQ(rt.ActivePoint, 1);
    EXPECT_EQ(ins.leg.Kind, 2);
    EXPECT_EQ(ins.leg.Name, "WP1");
    // The route's next points, along its own legs.
    EXPECT_TRUE(act.NextPointExists());
    ASSERT_TRUE(act.NextRoutePoint());
    EXPECT_EQ(rt.ActivePoint, 2);
    EXPECT_EQ(ins.leg.Name, "WP2");
    EXPECT_EQ(ins.leg.FromName, "WP1");
    EXPECT_EQ(ins.leg.From, DM(50, 10, -5, 5));
    EXPECT_DOUBLE_EQ(ins.leg.LegCourse, rt.At(1)->Legs[0].Course);
    EXPECT_EQ(C().LabWP[0], "WP2");
    EXPECT_TRUE(Has(Burst(), ",5020.000,N,00510.000,W,")) << Burst();  // RMB: to point 2
    // The vessel on the planned track's line is on track: the cross-track
    // error is measured from the route's leg, not from where it was.
    ins.vessel.vessel.Pos = DM(50, 15, -5, 7.5);
    ins.vessel.UpdateVesselConsole();
    EXPECT_LT(std::stod(C().LabWP[9]), 0.02);
    ASSERT_TRUE(act.NextRoutePoint());
    EXPECT_FALSE(act.NextPointExists());
    EXPECT_FALSE(act.NextRoutePoint());
    EXPECT_EQ(rt.ActivePoint, 3);
    // De-activated: the rows and the burst lose the leg.
    act.DeactivateRoute(false);
    EXPECT_EQ(ins.leg.Kind, 0);
    EXPECT_EQ(rt.ActiveRoute, 0);
    EXPECT_EQ(C().WPFrameCaption, "No Active Waypoint");
    EXPECT_EQ(C().LabWP[0], "N/A");
    EXPECT_EQ(Burst().find("$GPRMB"), std::string::npos);
}

TEST_F(Activating, ALaterPointByHandStartsFromTheVessel) {
    VesselOn();
    ASSERT_TRUE(act.ActivateRoute(1, 3));
    EXPECT_EQ(rt.ActivePoint, 3);
    EXPECT_EQ(ins.leg.Name, "WP3");
    EXPECT_EQ(ins.leg.FromName, "");
    EXPECT_EQ(ins.leg.From, vessel);
    double c, d;
    CourseDistanceRL(vessel, DM(50, 30, -5, 15), c, d);
    EXPECT_DOUBLE_EQ(ins.leg.LegCourse, c);
    // Deleting the route de-activates it first.
    w.dialogs.replies.push_back(mb::Yes);
    EXPECT_TRUE(rt.DeleteRoute(1));
    EXPECT_EQ(ins.leg.Kind, 0);
    EXPECT_EQ(C().WPFrameCaption, "No Active Waypoint");
}

}  // namespace
}  // namespace ombra::test
