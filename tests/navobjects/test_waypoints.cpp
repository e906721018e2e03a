// The waypoint store: its file byte for byte, free slots, the old form,
// damaged files, and the commands that add, edit, delete and move.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "core/Paths.h"
#include "navobjects/CommonWP.h"
#include "navobjects/Symbols.h"
#include "navobjects/Waypoints.h"
#include "tests/navobjects/NavFixture.h"

namespace ombra::test {
namespace {

struct WaypointStore : ::testing::Test {
    NavWorld w;
    SymbolStrips symbols;
    Waypoints wp{w.ctx, symbols};
    void SetUp() override { wp.InitWayPointData(); }
    // A new database by name, through the menu's input box.
    void NewDb(const std::string& name) {
        w.dialogs.texts.push_back(name);
        wp.NewWaypointDB();
        ASSERT_EQ(wp.CurrentName, name);
    }
    std::string FolderFile(const std::string& name) const { return w.Path("Waypoint/" + name); }
};

TEST_F(WaypointStore, FreeSlotIsWrittenAndReusedWithItsNumber) {
    NewDb("Harbour");
    for (int i = 0; i < 5; ++i) {
        LatLong p{-18000.0 + 60 * i, 180000.0 + 60 * i};
        EXPECT_EQ(wp.AddWaypoint(AddBy::Mouse, &p), i + 1);
    }
    // WP002 edited through the dialog: typed position, a description with a
    // comma and quotes, a symbol, both labels and a shown range.
    w.host.waypointDialog = [&](WaypointDialogRequest& r) {
        WaypointFields f = FieldsOf(r.Record, w.units);
        f.Description = "Pier \"A\", north end";
        f.LatText = "50 01.5 N";
        f.LonText = "4 59.25 W";
        f.PositionEdited = true;
        f.Icon = 5;
        f.LabelMode = 3;
        f.RangeText = "0,25";
        f.ShowRange = true;
        return AcceptFields(f, r.Record, w.units, w.dialogs, w.globals.ProductName);
    };
    ASSERT_TRUE(wp.EditWaypoint(2));
    w.dialogs.replies.push_back(mb::Yes);
    ASSERT_TRUE(wp.DeleteWaypoint(3));
    ASSERT_TRUE(wp.SaveWaypointDB());

    EXPECT_EQ(ReadFile(FolderFile("vst00001.way")), NavData("waypoints/free-slot.way"));
    EXPECT_EQ(ReadFile(FolderFile("vst00000.way")), NavData("waypoints/free-slot.idx"));

    // Read back: four rows 1, 2, 4, 5; the next waypoint takes slot 3.
    wp.CloseWaypointDB();
    w.host.listPicks.push_back(0);
    ASSERT_TRUE(wp.SelectWaypointDB());
    EXPECT_EQ(wp.CurrentName, "Harbour");
    EXPECT_EQ(wp.Count(), 5);
    std::vector<std::string> nos;
    for (const WaypointRow& r : wp.Rows(false)) nos.push_back(r.No);
    EXPECT_EQ(nos, (std::vector<std::string>{"001", "002", "004", "005"}));
    EXPECT_EQ(wp.Rows(false)[1].Latitude, "50° 01.500 ´N");
    LatLong p{-17000, 181000};
    EXPECT_EQ(wp.AddWaypoint(AddBy::Mouse, &p), 3);
    EXPECT_EQ(wp.At(3)->Name, "WP003");
    EXPECT_TRUE(w.Errors().empty());
}

TEST_F(WaypointStore, DeletingTheLastSlotShrinksTheArray) {
    NewDb("Shrink");
    LatLong p{0, 0};
    for (int i = 0; i < 3; ++i) wp.AddWaypoint(AddBy::Mouse, &p);
    w.dialogs.replies = {mb::Yes, mb::Yes};
    wp.DeleteWaypoint(3);
    EXPECT_EQ(wp.Count(), 2);
    wp.DeleteWaypoint(1);
    EXPECT_EQ(wp.Count(), 2);  // slot 1 freed, not dropped
    EXPECT_FALSE(wp.At(1)->Used());
    EXPECT_EQ(wp.AddWaypoint(AddBy::Mouse, &p), 1);
    EXPECT_EQ(wp.AddWaypoint(AddBy::Mouse, &p), 3);
    // A refused confirmation deletes nothing.
    w.dialogs.replies = {mb::No};
    EXPECT_FALSE(wp.DeleteWaypoint(3));
    EXPECT_EQ(wp.Count(), 3);
}

TEST_F(WaypointStore, OldFormKeepsTheIndexName) {
    WriteFile(FolderFile("vst00001.way"), NavData("waypoints/old-form.way"));
    WriteFile(FolderFile("vst00000.way"), "\"Approaches\",\"vst00001.way\"\r\n");
    w.host.listPicks.push_back(0);
    ASSERT_TRUE(wp.SelectWaypointDB());
    EXPECT_EQ(wp.CurrentName, "Approaches");
    ASSERT_EQ(wp.Count(), 2);
    EXPECT_EQ(wp.At(1)->Name, "Bell buoy");
    EXPECT_DOUBLE_EQ(wp.At(1)->Position.Wgs84.Lat, 181800.5);
    EXPECT_DOUBLE_EQ(wp.At(1)->Position.Wgs84.Long, -15120.25);
    EXPECT_EQ(wp.At(2)->Icon, 16);
    EXPECT_FLOAT_EQ(wp.At(2)->AlarmRange, -0.2f);
    EXPECT_TRUE(w.Errors().empty());
    // Saved again, it takes the header of the present form.
    ASSERT_TRUE(wp.SaveWaypointDB());
    std::string saved = ReadFile(FolderFile("vst00001.way"));
    EXPECT_EQ(saved.substr(0, 26), "\"Ver 2.19\"\r\n\"Approaches\"\r\n");
}

// Each damaged file opens with a message that names the file and the line,
// keeps what was read, and is not overwritten unless the user agrees.
TEST_F(WaypointStore, DamagedFilesOpenWithWhatWasRead) {
    std::istringstream cases(NavData("damaged/cases.txt"));
    std::string line;
    int tried = 0;
    while (std::getline(cases, line)) {
        if (line.empty() || line[0] == '#') continue;
        std::istringstream f(line);
        std::string file, word;
        int whole = 0, count = 0, at = 0;
        f >> file >> whole >> count >> at >> word;
        SCOPED_TRACE(file);
        ++tried;
        NavWorld world;
        Waypoints store(world.ctx, symbols);
        store.InitWayPointData();
        std::string original = NavData("damaged/" + file);
        std::string path = world.Path("Waypoint/vst00001.way");
        WriteFile(path, original);
        WriteFile(world.Path("Waypoint/vst00000.way"), "\"Damaged\",\"vst00001.way\"\r\n");
        world.host.listPicks.push_back(0);
        ASSERT_TRUE(store.SelectWaypointDB());
        int used = 0;
        for (const Waypoint& x : store.List) used += x.Used();
        EXPECT_EQ(used, count);
        EXPECT_EQ(store.Damaged(), whole == 0);
        std::vector<std::string> errors = world.Errors();
        if (whole) {
            EXPECT_TRUE(errors.empty());
            continue;
        }
        ASSERT_EQ(errors.size(), 1u);
        EXPECT_NE(errors[0].find("Error in 'OpenWaypointDB'"), std::string::npos) << errors[0];
        EXPECT_NE(errors[0].find(path), std::string::npos) << errors[0];
        EXPECT_NE(errors[0].find("line " + std::to_string(at) + "."), std::string::npos) << errors[0];
        EXPECT_NE(errors[0].find(word), std::string::npos) << errors[0];
        // A save is refused: the file stays as it was.
        world.dialogs.replies.push_back(mb::No);
        EXPECT_FALSE(store.SaveWaypointDB());
        EXPECT_EQ(ReadFile(path), original);
        EXPECT_NE(world.Messages().back().find("could not be read whole"), std::string::npos);
        // Agreed, the records read are written in the present form.
        world.dialogs.replies.push_back(mb::Yes);
        EXPECT_TRUE(store.SaveWaypointDB());
        std::string name, saved = ReadFile(path);
        std::vector<Waypoint> back;
        EXPECT_TRUE(ReadWaypointFile(saved, name, back).whole);
        EXPECT_EQ(int(back.size()), store.Count());
        EXPECT_FALSE(store.Damaged());
    }
    EXPECT_GE(tried, 10);
}

TEST_F(WaypointStore, NoDatabaseOpenAsksToOpenOrCreate) {
    LatLong p{0, 0};
    // Closed dialog: nothing is added.
    EXPECT_EQ(wp.AddWaypoint(AddBy::Mouse, &p), 0);
    ASSERT_EQ(w.host.asked.size(), 1u);
    EXPECT_EQ(w.host.asked[0].title, "No Waypoint database open");
    EXPECT_EQ(w.host.asked[0].text, "Open existing database file or create a new one?");
    EXPECT_EQ(w.host.asked[0].items, (std::vector<std::string>{"Open Existing", "Create New"}));
    // "Create New" with the proposed name.
    w.host.twoChoices.push_back(2);
    w.dialogs.texts.push_back("WPDB1");
    EXPECT_EQ(wp.AddWaypoint(AddBy::Mouse, &p), 1);
    EXPECT_EQ(wp.CurrentName, "WPDB1");
}

TEST_F(WaypointStore, KeyboardAndGpsUseTheDialogAndCancelUndoesTheSlot) {
    NewDb("Dialog");
    LatLong p{100, 200};
    wp.AddWaypoint(AddBy::Mouse, &p);
    wp.AddWaypoint(AddBy::Mouse, &p);
    w.dialogs.replies.push_back(mb::Yes);
    wp.DeleteWaypoint(1);
    // Cancel on a reused slot clears it; on a new slot drops it.
    w.host.waypointDialog = [](WaypointDialogRequest&) { return false; };
    EXPECT_EQ(wp.AddWaypoint(AddBy::Keyboard), 0);
    EXPECT_EQ(wp.Count(), 2);
    EXPECT_FALSE(wp.At(1)->Used());
    wp.List.back().Number = 2;
    w.dialogs.replies.push_back(mb::Yes);
    wp.DeleteWaypoint(1);
    // By GPS the vessel's position is filled in and kept in full precision.
    LatLong vessel{-15120.123456789, 181800.987654321};
    wp.VesselPosition = [&] { return vessel; };
    WaypointDialogRequest seen;
    w.host.waypointDialog = [&](WaypointDialogRequest& r) {
        seen = r;
        WaypointFields f = FieldsOf(r.Record, w.units);
        return AcceptFields(f, r.Record, w.units, w.dialogs, w.globals.ProductName);
    };
    int16_t slot = wp.AddWaypoint(AddBy::GPS);
    EXPECT_EQ(slot, 1);
    EXPECT_EQ(seen.Caption, "New Waypoint");
    EXPECT_EQ(seen.DbLabel, "Database:");
    EXPECT_EQ(seen.DbName, "Dialog");
    EXPECT_EQ(wp.At(slot)->Position.Wgs84, vessel);
    EXPECT_EQ(wp.At(slot)->Name, "WP001");
    EXPECT_EQ(wp.At(slot)->DatumFlag, 1);
}

TEST_F(WaypointStore, DialogFieldRules) {
    struct Case {
        const char* range;
        bool show;
        float before;
        float after;
    } cases[] = {
        {"0.5", false, 1.0f, 0.5f},     {"0,75", true, 1.0f, -0.75f},  {"-1", true, 0.3f, 0.3f},
        {"abc", false, -0.3f, -0.3f},   {"", true, 0.2f, 0.2f},        {"0", false, -0.5f, 0.0f},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.range);
        Waypoint rec;
        rec.AlarmRange = c.before;
        WaypointFields f = FieldsOf(rec, w.units);
        EXPECT_EQ(f.ShowRange, c.before < 0);
        f.RangeText = c.range;
        f.ShowRange = c.show;
        ASSERT_TRUE(AcceptFields(f, rec, w.units, w.dialogs, w.globals.ProductName));
        EXPECT_FLOAT_EQ(rec.AlarmRange, c.after);
    }
    // Statute miles: 1 shown as 1.151; 2 typed back is 1.737905 NM.
    w.units.DistanceUnit = 1;
    Waypoint rec;
    rec.AlarmRange = -1.0f;
    WaypointFields f = FieldsOf(rec, w.units);
    EXPECT_EQ(f.RangeText, "1.151");
    f.RangeText = "2";
    AcceptFields(f, rec, w.units, w.dialogs, w.globals.ProductName);
    EXPECT_NEAR(rec.AlarmRange, -1.737905f, 1e-6);
    // A bad position keeps the dialog open and the record as it was.
    f.LatText = "north";
    f.PositionEdited = true;
    rec.Position.Wgs84 = {1, 2};
    EXPECT_FALSE(AcceptFields(f, rec, w.units, w.dialogs, w.globals.ProductName));
    EXPECT_EQ(rec.Position.Wgs84, (LatLong{1, 2}));
    EXPECT_NE(w.Messages().back().find("Invalid Latitude and/or Longitude"), std::string::npos);
}

TEST_F(WaypointStore, ActiveWaypointCannotBeMovedAndDeletionDeactivates) {
    NewDb("Active");
    LatLong p = DM(50, 10, -5, 0);
    wp.AddWaypoint(AddBy::Mouse, &p);
    wp.AddWaypoint(AddBy::Mouse, &p);
    wp.ActiveIndex = 1;
    wp.Selected = 1;
    EXPECT_FALSE(wp.MoveWaypoint(1));
    EXPECT_EQ(w.Messages().back(), "An active waypoint cannot be moved.\nYou must de-activate it first.");
    EXPECT_EQ(wp.Selected, 0);
    // Another may move: the cursor is put on it, and the click drops it.
    EXPECT_TRUE(wp.MoveWaypoint(2));
    ASSERT_EQ(w.host.cursorAt.size(), 1u);
    EXPECT_EQ(w.host.cursorAt[0], w.chart.Pixel(p));
    w.host.variation = -3.5f;
    LatLong q = DM(50, 12, -5, 1);
    wp.DropWaypoint(2, q);
    EXPECT_EQ(wp.At(2)->Position.Wgs84, q);
    EXPECT_FLOAT_EQ(wp.At(2)->MagVar, -3.5f);
    EXPECT_EQ(wp.At(2)->Position.Pixel[0], w.chart.Pixel(q));
    // Deleting the destination de-activates it first.
    bool deactivated = false;
    wp.OnDeactivate = [&](bool) {
        deactivated = true;
        wp.ActiveIndex = 0;
    };
    w.dialogs.replies.push_back(mb::Yes);
    wp.DeleteWaypoint(1);
    EXPECT_TRUE(deactivated);
    EXPECT_EQ(w.dialogs.asked.back().text, "Confirm deletion of waypoint.");
}

TEST_F(WaypointStore, CentreOnListAndRows) {
    NewDb("Centre");
    LatLong a = DM(50, 1, -5, 0), b = DM(50, 2, -5, 0);
    wp.AddWaypoint(AddBy::Mouse, &a);
    wp.AddWaypoint(AddBy::Mouse, &b);
    w.host.listPicks.push_back(1);
    wp.CentreOnWaypoint();
    EXPECT_EQ(w.host.asked.back().title, "Select Waypoint To Centre On");
    EXPECT_EQ(w.host.asked.back().items, (std::vector<std::string>{"0001 - WP001", "0002 - WP002"}));
    ASSERT_EQ(w.chart.centred.size(), 1u);
    EXPECT_EQ(w.chart.centred[0], b);
    // The chart datum column shows the chart's own LatLong.
    EXPECT_EQ(wp.Rows(true)[0].Latitude, "50° 00.967 ´N");
}

}  // namespace
}  // namespace ombra::test
