// The world the navigation-object tests run in: fake platform services, a
// plain linear chart view standing in for the chart engine, and a host
// whose windows answer from a script and record what they were asked.
#pragma once
#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "navobjects/NavChart.h"
#include "navobjects/NavHost.h"
#include "navobjects/NavObjects.h"
#include "navobjects/NavStore.h"
#include "navobjects/Symbols.h"
#include "tests/support/Rig.h"
#include "tests/support/TestSupport.h"

namespace ombra::test {

// Panel 0 covers the world at `scale` seconds of arc a pixel from
// (originLong, originLat); panel 1, an inset at four times the detail, lies
// over it. The view shows chart pixels one to one.
class FakeChart : public NavChart {
public:
    bool open = true, inset = false, iconsOff = false;
    double originLong = -6.0 * 3600, originLat = 51.0 * 3600, scale = 6.0;  // 10 pixels a minute
    LatLong insetMin{-5.0 * 3600, 50.0 * 3600}, insetMax{-4.5 * 3600, 50.25 * 3600};
    int redraws = 0;
    int16_t labelOverride = 0;
    std::vector<LatLong> centred;
    struct Leg {
        std::string kind;  // "RL", "Plain", "GC"
        LatLong from, to;
        std::string label;
        bool labelWanted = false;
    };
    std::vector<Leg> legs;

    bool ChartOpen() override { return open; }
    void PrepareNavPoint(NavPoint& p) override;
    int16_t PanelCount() override { return inset ? 2 : 1; }
    ChartPoint ToScreen(ChartPoint c) override { return c; }
    double ScreenPixelsPerNM(int16_t panel) override { return panel == 1 ? 40.0 : 10.0; }
    bool ScreenToPosition(ChartPoint screen, LatLong& wgs84) override;
    void DrawRhumbLine(Canvas& c, const NavPoint& from, const NavPoint& to, bool labelWanted, int16_t courseMode,
                       double variation) override;
    void DrawPlainRhumbLine(Canvas& c, const NavPoint& from, const NavPoint& to, const std::string& label) override;
    void DrawGreatCircle(Canvas& c, const NavPoint& from, const NavPoint& to, double course, double distance,
                         const std::string& label) override;
    bool HitLeg(const NavPoint& from, const NavPoint& to, bool greatCircle, ChartPoint screen, float tolerance) override;
    void CentreOn(const LatLong& p) override { centred.push_back(p); }
    bool CanZoom() override { return open; }
    void Redraw() override { ++redraws; }
    Rgb LabelColour() override { return MakeRgb(0, 0, 0); }
    int16_t LabelOverride() override { return labelOverride; }
    bool RouteIconsOff() override { return iconsOff; }
    ChartPoint Pixel(const LatLong& p) const;  // panel 0's pixel of a position

private:
    void Piece(Canvas& c, const NavPoint& from, const NavPoint& to, const std::string& label);
};

class ScriptedHost : public NavHost {
public:
    std::deque<int> twoChoices;              // 1, 2 or 0
    std::deque<int> listPicks;               // row or -1
    std::deque<std::string> folders, files;  // chooser answers ("" cancels)
    std::function<bool(WaypointDialogRequest&)> waypointDialog;  // edits the request; OK or Cancel
    bool attachmentLoads = true;
    float variation = 0.0f;
    struct Asked {
        std::string kind, title, text;
        std::vector<std::string> items;
    };
    std::vector<Asked> asked;
    std::vector<std::string> status;
    std::vector<ChartPoint> cursorAt;

    int TwoChoice(const std::string& title, const std::string& text, const std::string& a, const std::string& b) override {
        asked.push_back({"TwoChoice", title, text, {a, b}});
        return Next(twoChoices, 0);
    }
    int ListPick(const std::string& title, const std::vector<std::string>& items, const std::string& button) override {
        asked.push_back({"List", title, button, items});
        return Next(listPicks, -1);
    }
    bool WaypointDialog(WaypointDialogRequest& r) override {
        asked.push_back({"WaypointDialog", r.Caption, r.DbLabel + " " + r.DbName, {}});
        return waypointDialog && waypointDialog(r);
    }
    std::string ChooseFolder(const std::string& title, const std::string& prompt) override {
        asked.push_back({"Folder", title, prompt, {}});
        return Next(folders, std::string());
    }
    std::string ChooseFile(const std::string& title, const std::string& prompt, const std::string& filterName,
                           const std::string& pattern) override {
        asked.push_back({"File", title, prompt, {filterName, pattern}});
        return Next(files, std::string());
    }
    bool ShowAttachment(const std::string& path) override {
        asked.push_back({"Attachment", path, "", {}});
        return attachmentLoads;
    }
    void SetStatus(const std::string& text) override { status.push_back(text); }
    void MenuCaptionsChanged() override {}
    void ListsChanged() override {}
    void SetCursorAt(ChartPoint p) override { cursorAt.push_back(p); }
    float Variation(const LatLong&) override { return variation; }
    bool VesselActive() override { return false; }
    LatLong vesselPos{};
    LatLong VesselPos() override { return vesselPos; }
    void ActiveLegChanged() override {}

private:
    template <class T>
    static T Next(std::deque<T>& q, T none) {
        if (q.empty()) return none;
        T r = q.front();
        q.pop_front();
        return r;
    }
};

// Everything a store is built with, over a temporary user data root.
struct NavWorld : FakePlatform {
    TempDir dir;
    FakeChart chart;
    ScriptedHost host;
    NavContext ctx{reg, dialogs, errors, units, clock, events, chart, host, globals};

    NavWorld() {
        globals.UserDataPath = dir.path() + "/";
        globals.VersionText = "0.1";
    }
    std::string Path(const std::string& rel) const { return dir.path() + "/" + rel; }
    std::vector<std::string> Messages() const;  // every message box's text
    std::vector<std::string> Errors() const;    // the error reports' texts
};

// What a store reports of the active point, to the functions a test sets.
struct RecordingWatch : ActivePointWatch {
    std::function<void(bool)> waypointDeleted, routeDeleted;
    std::function<void(float)> rangeChanged;
    void ActiveWaypointDeleted(bool noRedraw) override {
        if (waypointDeleted) waypointDeleted(noRedraw);
    }
    void ActiveRouteDeleted(bool noRedraw) override {
        if (routeDeleted) routeDeleted(noRedraw);
    }
    void ActiveRangeChanged(float range) override {
        if (rangeChanged) rangeChanged(range);
    }
};

// One store on a fresh world, its folder made; a store that reports its
// active point reports to `watch`.
template <class Store>
struct StoreTest : ::testing::Test {
    NavWorld w;
    SymbolStrips symbols;
    RecordingWatch watch;
    Store store = Make();
    Store Make() {
        if constexpr (std::is_constructible_v<Store, NavContext&, const SymbolStrips&, ActivePointWatch*>)
            return Store(w.ctx, symbols, &watch);
        else
            return Store(w.ctx, symbols);
    }
    void SetUp() override { store.InitData(); }
    // A file in the store's folder: "Routes/vst00001.rte".
    std::string FolderFile(const std::string& name) const {
        return w.Path(std::string(store.Kind().folder) + "/" + name);
    }
    // The bytes as the index's only database, `indexName`, selected.
    void OpenBytes(const std::string& bytes, const std::string& indexName) {
        const std::string ext = store.Kind().extension;
        WriteFile(FolderFile("vst00001." + ext), bytes);
        WriteFile(FolderFile("vst00000." + ext), "\"" + indexName + "\",\"vst00001." + ext + "\"\r\n");
        w.host.listPicks.push_back(0);
        ASSERT_TRUE(store.SelectDB());
    }
};

// All the stores, each with a database open: Marks, Routes and Areas.
struct NavSet : ::testing::Test {
    NavWorld w;
    ActiveLeg leg;
    NavObjects nav{w.ctx, leg};
    void SetUp() override {
        nav.LoadNavObjects();
        nav.LoadWaypoints();
        w.dialogs.texts = {"Marks", "Routes", "Areas"};
        nav.waypoints.NewWaypointDB();
        nav.routes.NewRouteDB();
        nav.boundaries.NewBoundaryDB();
    }
};

// A position from degrees and minutes, as the tests write them.
inline LatLong DM(int latDeg, double latMin, int lonDeg, double lonMin) {
    double lat = (std::abs(latDeg) * 60.0 + latMin) * 60.0 * (latDeg < 0 ? -1 : 1);
    double lon = (std::abs(lonDeg) * 60.0 + lonMin) * 60.0 * (lonDeg < 0 ? -1 : 1);
    return LatLong{lon, lat};
}

inline bool Has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }
inline bool Has(const std::vector<std::string>& list, const std::string& item) {
    return std::find(list.begin(), list.end(), item) != list.end();
}

// A file of the test data, read whole; and a table's lines, less blanks and comments.
std::string NavData(const std::string& rel);
std::vector<std::string> NavCases(const std::string& rel);

}  // namespace ombra::test
