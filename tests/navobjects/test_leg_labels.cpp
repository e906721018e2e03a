// Leg labels and course texts over the real chart view: the route window
// and the chart show one course for one leg, the View menu's label modes
// rule rhumb lines and great circles alike, ranges follow RangeDP, and a
// vector's label lies on the chart without a box.
#include <gtest/gtest.h>

#include <memory>

#include "core/Registry.h"
#include "platform/fake/RecordingCanvas.h"
#include "plotter/DisplayChart.h"
#include "navobjects/NavObjects.h"
#include "tests/charts/ChartFixture.h"
#include "tests/navobjects/NavFixture.h"

namespace ombra::test {
namespace {

// The test chart in a 1000 x 800 view, with the navigation objects drawn
// by the chart view's own leg routines, and a route due north along 12° W
// from 49°55' to 50°05' (true course exactly 000, 10 miles).
struct LabelWorld {
    ChartWorld cw;
    TempDir data;
    Globals globals;
    ManualClock clock;
    NoEvents events;
    ScriptedHost host;
    std::unique_ptr<DisplayChart> link;
    std::unique_ptr<NavContext> ctx;
    ActiveLeg leg;
    std::unique_ptr<NavObjects> nav;
    int16_t route = 0;

    // `variation` at the route's points, degrees east; `deviation` the card
    // everywhere.
    explicit LabelWorld(float variation, double deviation = 0.0) {
        EXPECT_TRUE(cw.Install(DefaultFixture()));
        cw.charts.View.SetViewSize(1000, 800);
        EXPECT_TRUE(cw.charts.Charts.NewChart("1234A"));
        cw.charts.View.ShowHiRes();
        cw.host.deviation = [deviation](double) { return deviation; };
        globals.UserDataPath = data.path() + "/";
        globals.VersionText = "0.1";
        host.variation = variation;
        host.deviation = deviation;
        link = std::make_unique<DisplayChart>(cw.charts.View, cw.charts.Legs, cw.library, cw.charts.State,
                                              &cw.charts.Charts);
        ctx = std::make_unique<NavContext>(
            NavContext{cw.registry, cw.dialogs, cw.errors, cw.units, clock, events, *link, host, globals});
        nav = std::make_unique<NavObjects>(*ctx, leg);
        RegisterNavLayers(cw.charts.View, *nav);
        nav->LoadNavObjects();
        cw.dialogs.texts = {"Routes", "R001"};
        nav->routes.NewRouteDB();
        route = nav->routes.NewRoute();
        nav->routes.AddRoutePoint(route, {-12 * 3600.0, (49 * 60 + 55) * 60.0});
        nav->routes.AddRoutePoint(route, {-12 * 3600.0, (50 * 60 + 5) * 60.0});
        nav->routes.AddRoutePoint(route, {(-12 * 60 + 10) * 60.0, (50 * 60 + 5) * 60.0});
        EXPECT_TRUE(cw.charts.View.CentreOnPosition({(-12 * 60 + 5) * 60.0, 50 * 3600.0}));
    }
    // The texts drawn on the chart that end with `suffix`.
    std::vector<std::string> Drawn(const char* suffix, int* boxes = nullptr) {
        RecordingCanvas c(1000, 800);
        cw.charts.View.RedrawNavCanvas(c);
        std::vector<std::string> out;
        for (const auto& call : c.Of("Text"))
            if (call.text.ends_with(suffix)) out.push_back(call.text);
        if (boxes) {
            *boxes = 0;
            for (const auto& call : c.Of("Rectangle")) *boxes += call.brush.style == BrushStyle::Solid;
        }
        return out;
    }
};

// The decimal places of the range in "045 °T 2.500 NM RL".
int RangePlaces(const std::string& label) {
    size_t nm = label.find(" NM"), dot = label.rfind('.', nm);
    return nm == std::string::npos || dot == std::string::npos ? -1 : int(nm - dot - 1);
}

// A leg whose magnetic course lies just short of a whole degree reads the
// same in the route window as on the chart, rhumb line or great circle.
TEST(LegLabels, TheRouteWindowAndTheChartShowOneCourse) {
    struct Case {
        float variation;
        int16_t angleUnit;
        double deviation;
        const char* course;  // the leg 000 °T as shown
    };
    for (Case c : {Case{0.4f, 1, 0.0, "000"}, Case{-0.6f, 1, 0.0, "001"}, Case{0.4f, 2, 2.0, "002"},
                   Case{0.0f, 0, 0.0, "000"}}) {
        SCOPED_TRACE(std::to_string(c.variation) + " mode " + std::to_string(c.angleUnit));
        LabelWorld w(c.variation, c.deviation);
        w.cw.units.AngleUnit = c.angleUnit;
        w.nav->routes.At(w.route)->ShowLegText = true;
        auto rows = w.nav->routes.LegRows(w.route);
        ASSERT_EQ(rows.size(), 2u);
        EXPECT_TRUE(rows[0].Bearing.starts_with(c.course)) << rows[0].Bearing;
        auto rl = w.Drawn(" RL");
        ASSERT_FALSE(rl.empty());
        EXPECT_TRUE(rl[0].starts_with(c.course)) << rl[0];
        w.nav->routes.SwapLegKind(w.route, 1);
        auto gc = w.Drawn(" GC");
        ASSERT_EQ(gc.size(), 1u);
        EXPECT_TRUE(gc[0].starts_with(c.course)) << gc[0];
    }
}

// View > Labels rules both kinds of leg; the ranges follow RangeDP; a
// vector's label is never boxed.
TEST(LegLabels, LabelModesRangePlacesAndVectorLabels) {
    struct Case {
        int16_t labelMode;  // 0 default, 1 force on, 2 force off
        bool showLegText;
        const char* rangeDP;
        size_t legLabels;   // of the two legs, one rhumb line, one great circle
    };
    for (Case c : {Case{0, true, "3", 2}, Case{0, false, "3", 0}, Case{1, false, "2", 2}, Case{2, true, "2", 0}}) {
        SCOPED_TRACE("mode " + std::to_string(c.labelMode) + " show " + std::to_string(c.showLegText));
        LabelWorld w(0.0f);
        w.cw.registry.SaveSetting(Key::RangeDP, c.rangeDP);
        w.cw.charts.Legs.LabelMode = c.labelMode;
        w.nav->routes.At(w.route)->ShowLegText = c.showLegText;
        w.nav->routes.SwapLegKind(w.route, 2);
        w.nav->vectors.Begin({(-12 * 60 + 10) * 60.0, (49 * 60 + 55) * 60.0}, false);
        w.nav->vectors.Finish({(-12 * 60 + 15) * 60.0, (49 * 60 + 55) * 60.0});
        int boxes = 0;
        auto rl = w.Drawn(" RL", &boxes);
        auto gc = w.Drawn(" GC");
        // The vector's own " RL" label comes on top of the legs'.
        size_t vectorLabels = c.labelMode == 2 ? 0 : 1;
        ASSERT_EQ(rl.size() + gc.size(), c.legLabels + vectorLabels);
        EXPECT_EQ(gc.size(), c.legLabels / 2);
        EXPECT_EQ(size_t(boxes), c.legLabels);  // one box a leg label, none for the vector
        for (const auto& label : rl.size() > vectorLabels ? rl : std::vector<std::string>{})
            EXPECT_EQ(RangePlaces(label), c.rangeDP[0] - '0') << label;
        for (const auto& label : gc) EXPECT_EQ(RangePlaces(label), c.rangeDP[0] - '0') << label;
    }
}

}  // namespace
}  // namespace ombra::test
