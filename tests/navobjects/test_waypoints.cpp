// The waypoint store: its file byte for byte, free slots, the old form,
// damaged files, and the commands that add, edit, delete and move.
#include <sstream>

#include "core/Paths.h"
#include "navobjects/CommonWP.h"
#include "navobjects/Symbols.h"
#include "navobjects/Waypoints.h"
#include "tests/navobjects/NavFixture.h"

namespace ombra::test {
namespace {

struct WaypointStore : StoreTest<Waypoints> {
    Waypoints& wp = store;
    void NewDb(const std::string& name) {  // through the menu's input box
        w.dialogs.texts.push_back(name);
        wp.NewWaypointDB();
        ASSERT_EQ(wp.CurrentName, name);
    }
    int16_t Add(LatLong p) { return wp.AddWaypoint(AddBy::Mouse, &p); }
    bool Accept(WaypointFields& f, Waypoint& rec) {
        return AcceptFields(f, rec, w.units, w.dialogs, w.globals.ProductName);
    }
};

// Open a data file as database "name" of a fresh store.
void OpenAs(NavWorld& world, Waypoints& store, const std::string& bytes, const std::string& name) {
    WriteFile(world.Path("Waypoint/vst00001.way"), bytes);
    WriteFile(world.Path("Waypoint/vst00000.way"), "\"" + name + "\",\"vst00001.way\"\r\n");
    world.host.listPicks.push_back(0);
    ASSERT_TRUE(store.SelectWaypointDB());
}

TEST_F(WaypointStore, FreeSlotIsWrittenAndReusedWithItsNumber) {
    NewDb("Harbour");
    for (int i = 0; i < 5; ++i) EXPECT_EQ(Add({-18000.0 + 60 * i, 180000.0 + 60 * i}), i + 1);
    // WP002 edited through the dialog: typed position, a description with a
    // comma and quotes, a symbol, both labels and a shown range.
    w.host.waypointDialog = [&](WaypointDialogRequest& r) {
        WaypointFields f = FieldsOf(r.Record, w.units);
        f.Description = "Pier \"A\", north end";
        f.LatText = "50 01.5 N";
        f.LonText = "4 59.25 W";
        f.PositionEdited = f.ShowRange = true;
        f.Icon = 5;
        f.LabelMode = 3;
        f.RangeText = "0,25";
        return Accept(f, r.Record);
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
    ASSERT_EQ(nos, (std::vector<std::string>{"001", "002", "004", "005"}));
    EXPECT_EQ(wp.Rows(false)[1].Latitude, "50° 01.500 ´N");
    EXPECT_EQ(Add({-17000, 181000}), 3);
    EXPECT_EQ(wp.At(3)->Name, "WP003");
    EXPECT_TRUE(w.Errors().empty());
}

TEST_F(WaypointStore, DeletingTheLastSlotShrinksTheArray) {
    NewDb("Shrink");
    for (int i = 0; i < 3; ++i) Add({0, 0});
    w.dialogs.replies = {mb::Yes, mb::Yes, mb::No};
    wp.DeleteWaypoint(3);
    EXPECT_EQ(wp.Count(), 2);
    wp.DeleteWaypoint(1);
    EXPECT_EQ(wp.Count(), 2);  // slot 1 freed, not dropped
    EXPECT_EQ(Add({0, 0}), 1);
    EXPECT_EQ(Add({0, 0}), 3);
    EXPECT_FALSE(wp.DeleteWaypoint(3));  // a refused confirmation deletes nothing
    EXPECT_EQ(wp.Count(), 3);
}

TEST_F(WaypointStore, OldFormKeepsTheIndexName) {
    OpenAs(w, wp, NavData("waypoints/old-form.way"), "Approaches");
    EXPECT_EQ(wp.CurrentName, "Approaches");
    ASSERT_EQ(wp.Count(), 2);
    EXPECT_EQ(wp.At(1)->Name, "Bell buoy");
    EXPECT_DOUBLE_EQ(wp.At(1)->Position.Wgs84.Lat, 181800.5);
    EXPECT_DOUBLE_EQ(wp.At(1)->Position.Wgs84.Long, -15120.25);
    EXPECT_EQ(wp.At(2)->Icon, 16);
    EXPECT_FLOAT_EQ(wp.At(2)->AlarmRange, -0.2f);
    EXPECT_TRUE(w.Errors().empty());
    ASSERT_TRUE(wp.SaveWaypointDB());  // saved again in the present form
    EXPECT_EQ(ReadFile(FolderFile("vst00001.way")).substr(0, 26), "\"Ver 2.19\"\r\n\"Approaches\"\r\n");
}

// Each damaged file opens with a message that names the file and the line,
// keeps what was read, and is not overwritten unless the user agrees.
TEST_F(WaypointStore, DamagedFilesOpenWithWhatWasRead) {
    std::vector<std::string> cases = NavCases("damaged/cases.txt");
    EXPECT_GE(cases.size(), 10u);
    for (const std::string& line : cases) {
        std::istringstream f(line);
        std::string file, word;
        int whole = 0, count = 0, at = 0;
        f >> file >> whole >> count >> at >> word;
        SCOPED_TRACE(file);
        NavWorld world;
        Waypoints store(world.ctx, symbols);
        store.InitWayPointData();
        std::string original = NavData("damaged/" + file), path = world.Path("Waypoint/vst00001.way");
        OpenAs(world, store, original, "Damaged");
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
        for (const std::string& part : {std::string("Error in 'OpenWaypointDB'"), path,
                                        "line " + std::to_string(at) + ".", word})
            EXPECT_TRUE(Has(errors[0], part)) << errors[0] << " lacks " << part;
        // A refused save leaves the file as it was; agreed, the records read
        // are written in the present form.
        world.dialogs.replies = {mb::No, mb::Yes};
        EXPECT_FALSE(store.SaveWaypointDB());
        EXPECT_EQ(ReadFile(path), original);
        EXPECT_TRUE(Has(world.Messages().back(), "could not be read whole"));
        EXPECT_TRUE(store.SaveWaypointDB());
        std::string name;
        std::vector<Waypoint> back;
        EXPECT_TRUE(ReadWaypointFile(ReadFile(path), name, back).whole);
        EXPECT_EQ(int(back.size()), store.Count());
        EXPECT_FALSE(store.Damaged());
    }
}

TEST_F(WaypointStore, NoDatabaseOpenAsksToOpenOrCreate) {
    EXPECT_EQ(Add({0, 0}), 0);  // dialog closed: nothing added
    ASSERT_EQ(w.host.asked.size(), 1u);
    EXPECT_EQ(w.host.asked[0].title, "No Waypoint database open");
    EXPECT_EQ(w.host.asked[0].items, (std::vector<std::string>{"Open Existing", "Create New"}));
    w.host.twoChoices.push_back(2);
    w.dialogs.texts.push_back("WPDB1");
    EXPECT_EQ(Add({0, 0}), 1);
    EXPECT_EQ(wp.CurrentName, "WPDB1");
}

TEST_F(WaypointStore, KeyboardAndGpsUseTheDialogAndCancelUndoesTheSlot) {
    NewDb("Dialog");
    Add({100, 200});
    Add({100, 200});
    w.dialogs.replies = {mb::Yes, mb::Yes};
    wp.DeleteWaypoint(1);
    // Cancel on a reused slot clears it; on a new slot drops it.
    w.host.waypointDialog = [](WaypointDialogRequest&) { return false; };
    EXPECT_EQ(wp.AddWaypoint(AddBy::Keyboard), 0);
    EXPECT_EQ(wp.Count(), 2);
    EXPECT_FALSE(wp.At(1)->Used());
    wp.List.back().Number = 2;
    wp.DeleteWaypoint(1);
    // By GPS the vessel's position is filled in and kept in full precision.
    LatLong vessel{-15120.123456789, 181800.987654321};
    w.host.vesselPos = vessel;
    WaypointDialogRequest seen;
    w.host.waypointDialog = [&](WaypointDialogRequest& r) {
        seen = r;
        WaypointFields f = FieldsOf(r.Record, w.units);
        return Accept(f, r.Record);
    };
    EXPECT_EQ(wp.AddWaypoint(AddBy::GPS), 1);
    EXPECT_EQ(seen.Caption, "New Waypoint");
    EXPECT_EQ(seen.DbName, "Dialog");
    EXPECT_EQ(wp.At(1)->Position.Wgs84, vessel);
    EXPECT_EQ(wp.At(1)->Name, "WP001");
    EXPECT_EQ(wp.At(1)->DatumFlag, 1);
}

TEST_F(WaypointStore, DialogFieldRules) {
    struct {
        const char* range;
        bool show;
        float before, after;
    } cases[] = {
        {"0.5", false, 1.0f, 0.5f}, {"0,75", true, 1.0f, -0.75f}, {"-1", true, 0.3f, 0.3f},
        {"abc", false, -0.3f, -0.3f}, {"", true, 0.2f, 0.2f}, {"0", false, -0.5f, 0.0f},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.range);
        Waypoint rec;
        rec.AlarmRange = c.before;
        WaypointFields f = FieldsOf(rec, w.units);
        EXPECT_EQ(f.ShowRange, c.before < 0);
        f.RangeText = c.range;
        f.ShowRange = c.show;
        ASSERT_TRUE(Accept(f, rec));
        EXPECT_FLOAT_EQ(rec.AlarmRange, c.after);
    }
    // Statute miles: 1 shown as 1.151; 2 typed back is 1.737905 NM.
    w.units.DistanceUnit = 1;
    Waypoint rec;
    rec.AlarmRange = -1.0f;
    WaypointFields f = FieldsOf(rec, w.units);
    EXPECT_EQ(f.RangeText, "1.151");
    f.RangeText = "2";
    Accept(f, rec);
    EXPECT_NEAR(rec.AlarmRange, -1.737905f, 1e-6);
    // A bad position keeps the dialog open and the record as it was.
    f.LatText = "north";
    f.PositionEdited = true;
    rec.Position.Wgs84 = {1, 2};
    EXPECT_FALSE(Accept(f, rec));
    EXPECT_EQ(rec.Position.Wgs84, (LatLong{1, 2}));
    EXPECT_TRUE(Has(w.Messages().back(), "Invalid Latitude and/or Longitude"));
}

TEST_F(WaypointStore, ActiveWaypointCannotBeMovedAndDeletionDeactivates) {
    NewDb("Active");
    LatLong p = DM(50, 10, -5, 0), q = DM(50, 12, -5, 1);
    Add(p);
    Add(p);
    wp.ActiveIndex = wp.Selected = 1;
    EXPECT_FALSE(wp.MoveWaypoint(1));
    EXPECT_EQ(w.Messages().back(), "An active waypoint cannot be moved.\nYou must de-activate it first.");
    EXPECT_EQ(wp.Selected, 0);
    // Another may move: the cursor is put on it, and the click drops it.
    EXPECT_TRUE(wp.MoveWaypoint(2));
    EXPECT_EQ(w.host.cursorAt, (std::vector<ChartPoint>{w.chart.Pixel(p)}));
    w.host.variation = -3.5f;
    wp.DropWaypoint(2, q);
    EXPECT_EQ(wp.At(2)->Position.Wgs84, q);
    EXPECT_FLOAT_EQ(wp.At(2)->MagVar, -3.5f);
    EXPECT_EQ(wp.At(2)->Position.Pixel[0], w.chart.Pixel(q));
    // Deleting the destination de-activates it first.
    bool deactivated = false;
    watch.waypointDeleted = [&](bool) { deactivated = true, wp.ActiveIndex = 0; };
    w.dialogs.replies.push_back(mb::Yes);
    wp.DeleteWaypoint(1);
    EXPECT_TRUE(deactivated);
    EXPECT_EQ(w.dialogs.asked.back().text, "Confirm deletion of waypoint.");
}

TEST_F(WaypointStore, CentreOnListAndRows) {
    NewDb("Centre");
    Add(DM(50, 1, -5, 0));
    Add(DM(50, 2, -5, 0));
    w.host.listPicks.push_back(1);
    wp.CentreOnWaypoint();
    EXPECT_EQ(w.host.asked.back().items, (std::vector<std::string>{"0001 - WP001", "0002 - WP002"}));
    EXPECT_EQ(w.chart.centred, (std::vector<LatLong>{DM(50, 2, -5, 0)}));
    ASSERT_FALSE(wp.Rows(true).empty());
    EXPECT_EQ(wp.Rows(true)[0].Latitude, "50° 00.967 ´N");  // the chart datum column
}

}  // namespace
}  // namespace ombra::test
