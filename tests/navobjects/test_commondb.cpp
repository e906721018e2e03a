// What the three stores share: index files, file names, select, delete,
// export and import, with the texts the user sees.
#include <sys/stat.h>

#include "core/Paths.h"
#include "navobjects/CommonDB.h"
#include "navobjects/Symbols.h"
#include "navobjects/Waypoints.h"
#include "tests/navobjects/NavFixture.h"

namespace ombra::test {
namespace {

struct Common : ::testing::Test {
    NavWorld w;
    SymbolStrips symbols;
    Waypoints wp{w.ctx, symbols};
    CommonDB db{w.dialogs, w.errors, w.host, w.globals.ProductName};
    std::string index;
    void SetUp() override {
        wp.InitWayPointData();
        index = wp.IndexPath;
    }
    std::string F(const std::string& name) const { return w.Path("Waypoint/" + name); }
    void Store(const std::string& name, const std::vector<std::pair<std::string, LatLong>>& points) {
        w.dialogs.texts.push_back(name);
        wp.NewWaypointDB();
        for (auto& [n, p] : points) wp.At(wp.AddWaypoint(AddBy::Mouse, &p))->Name = n;
        wp.SaveWaypointDB();
    }
    // Export of the first database into `folder`, answering a question with `reply`.
    void Export(const std::string& folder, int reply = -1) {
        w.host.listPicks.push_back(0);
        w.host.folders.push_back(folder);
        if (reply >= 0) w.dialogs.replies.push_back(reply);
        wp.ExportWaypointDB();
    }
};

TEST_F(Common, InitMakesFoldersAndAnEmptyIndexOnce) {
    EXPECT_EQ(ReadFile(F("vst00000.way")), "");
    WriteFile(F("vst00000.way"), "\"Kept\",\"vst00004.way\"\r\n");
    wp.InitWayPointData();
    EXPECT_EQ(ReadFile(F("vst00000.way")), "\"Kept\",\"vst00004.way\"\r\n");
    // A data root that does not exist yet is made too.
    NavWorld other;
    other.globals.UserDataPath = other.dir.path() + "/deep/er/";
    Waypoints(other.ctx, symbols).InitWayPointData();
    EXPECT_TRUE(FileExists(other.dir.path() + "/deep/er/Waypoint/vst00000.way"));
}

TEST_F(Common, NewFileNameTakesTheFirstGap) {
    struct {
        const char* add;
        const char* next;
    } steps[] = {{nullptr, "vst00001.way"},
                 {"vst00001.way", "vst00002.way"},
                 {"vst00003.way", "vst00002.way"},
                 {"vst00002.way", "vst00004.way"},
                 {"vst00004.rte", "vst00004.way"}};  // other stores' files do not count
    for (const auto& s : steps) {
        if (s.add) WriteFile(F(s.add), "x");
        EXPECT_EQ(db.NewDBFileName(index), s.next) << (s.add ? s.add : "");
    }
}

TEST_F(Common, NamesAreExactAndMayHoldCommasAndQuotes) {
    Store("Say \"Hi\", then", {{"A", DM(50, 0, -5, 0)}});
    EXPECT_EQ(ReadFile(F("vst00000.way")), "\"Say \"\"Hi\"\", then\",\"vst00001.way\"\r\n");
    EXPECT_FALSE(db.DBNameIsFree(index, "Say \"Hi\", then"));
    EXPECT_TRUE(db.DBNameIsFree(index, "say \"hi\", then"));
    ASSERT_EQ(ReadIndex(index).size(), 1u);
    EXPECT_EQ(ReadIndex(index)[0].Name, "Say \"Hi\", then");
    // A taken name is refused and asked again; the answer is trimmed.
    Store("WPDB1", {});
    w.dialogs.texts = {"WPDB1", "  Fresh  "};
    wp.NewWaypointDB();
    EXPECT_EQ(w.dialogs.asked.back().title, "New Waypoint Database");
    EXPECT_EQ(wp.CurrentName, "Fresh");
    EXPECT_TRUE(Has(w.Messages(), "The name entered already exists."));
    EXPECT_EQ(wp.ViewCaption(), "&View 'Fresh' Database");
}

TEST_F(Common, SelectOnAnEmptyIndexShowsAnEmptyListInTheStoresWords) {
    DBEntry e;
    EXPECT_FALSE(db.SelectDB(index, e));
    ASSERT_EQ(w.host.asked.size(), 1u);
    EXPECT_EQ(w.host.asked[0].title, "Select Waypoint Database");
    EXPECT_TRUE(w.host.asked[0].items.empty());
    db.SelectDB(w.Path("Routes/vst00000.rte"), e);
    EXPECT_EQ(w.host.asked.back().title, "Select Route Database");
    db.SelectDB(w.Path("Boundaries/vst00000.bdy"), e);
    EXPECT_EQ(w.host.asked.back().title, "Select Alarm Database");
}

TEST_F(Common, DeleteRemovesOneLineAndItsFileKeepingTheRest) {
    Store("One", {{"A", DM(50, 0, -5, 0)}});
    Store("Two", {{"B", DM(50, 1, -5, 0)}});
    // An unreadable line in the index is kept as it stands.
    WriteFile(F("vst00000.way"), ReadFile(F("vst00000.way")) + "garbage without quotes\r\n");
    wp.CloseWaypointDB();
    w.host.listPicks.push_back(0);
    w.dialogs.replies.push_back(mb::Yes);
    wp.DeleteWaypointDB();
    EXPECT_EQ(w.host.asked.back().title, "Delete Waypoint Database");
    EXPECT_EQ(w.dialogs.asked.back().text, "Confirm deletion.");
    EXPECT_EQ(ReadFile(F("vst00000.way")), "\"Two\",\"vst00002.way\"\r\ngarbage without quotes\r\n");
    EXPECT_FALSE(FileExists(F("vst00001.way")));
    EXPECT_TRUE(FileExists(F("vst00002.way")));
    // Deleting the open database closes it first.
    w.host.listPicks = {0, 0};
    ASSERT_TRUE(wp.SelectWaypointDB());
    w.dialogs.replies.push_back(mb::Yes);
    wp.DeleteWaypointDB();
    EXPECT_FALSE(wp.IsOpen());
    EXPECT_FALSE(FileExists(F("vst00002.way")));
    // No: nothing changes.
    Store("Three", {});
    w.host.listPicks.push_back(0);
    w.dialogs.replies.push_back(mb::No);
    wp.DeleteWaypointDB();
    EXPECT_EQ(ReadIndex(index).size(), 1u);
}

TEST_F(Common, ExportRefusesAStoreFolderAndAsksBeforeOverwriting) {
    Store("Out", {{"A", DM(50, 0, -5, 0)}});
    std::string data = ReadFile(F("vst00001.way")), copy = w.Path("usb/vst00001.way");
    Export(w.Path("Waypoint"));  // the store's own folder: refused by its index file
    EXPECT_EQ(w.host.asked.back().text, "Select path for export.");
    EXPECT_EQ(w.Messages().back(), "Cannot export to a directory that contains an index file");
    MakeFolder(w.Path("usb"));
    Export(w.Path("usb"));
    EXPECT_EQ(w.Messages().back(), "Database Exported");
    EXPECT_EQ(ReadFile(copy), data);
    EXPECT_TRUE(Has(w.host.status, "Exporting files"));
    // Again, over a read-only copy: asked, overwritten, read-only again.
    WriteFile(copy, "old");
    ::chmod(copy.c_str(), 0444);
    Export(w.Path("usb"), mb::Yes);
    EXPECT_EQ(w.Messages()[w.Messages().size() - 2], "vst00001.way already exists!\nDo you wish to overwrite it?");
    EXPECT_EQ(ReadFile(copy), data);
    struct stat st;
    ASSERT_EQ(::stat(copy.c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 0222, 0u);
    // No leaves the copy alone.
    ::chmod(copy.c_str(), 0644);
    WriteFile(copy, "mine");
    Export(w.Path("usb"), mb::No);
    EXPECT_EQ(ReadFile(copy), "mine");
}

TEST_F(Common, ImportWithANameClashReplacesOrRenames) {
    Store("Solent", {{"A", DM(50, 0, -1, 0)}});
    std::string file = w.Path("usb/from-friend.way");
    WriteFile(file, "\"Ver 2.19\"\r\n\"Solent\"\r\n\"Friend\",1,\"\",180000,-3600,0,1,0.5,1,0,\"\"\r\n");
    auto import = [&](int reply, std::deque<std::string> texts) {
        w.host.files.push_back(file);
        if (reply >= 0) w.dialogs.replies.push_back(reply);
        w.dialogs.texts = texts;
        wp.ImportWaypointDB();
    };
    import(mb::No, {"  Solent (friend) "});  // renamed
    EXPECT_EQ(w.host.asked.back().items[1], "*.way");
    EXPECT_EQ(w.dialogs.asked[w.dialogs.asked.size() - 2].text,
              "A Waypoint Database called \"Solent\" already exists.\n\nDo you wish to replace the existing Waypoint Database?");
    EXPECT_EQ(wp.CurrentName, "Solent (friend)");
    EXPECT_EQ(wp.At(1)->Name, "Friend");
    EXPECT_EQ(ReadFile(F("vst00000.way")), "\"Solent\",\"vst00001.way\"\r\n\"Solent (friend)\",\"vst00002.way\"\r\n");
    // Replaced: the old file goes and the new data takes its free name.
    import(mb::Yes, {});
    EXPECT_EQ(wp.CurrentName, "Solent");
    EXPECT_TRUE(Has(ReadFile(F("vst00001.way")), "\"Friend\""));
    EXPECT_EQ(ReadFile(F("vst00000.way")), "\"Solent (friend)\",\"vst00002.way\"\r\n\"Solent\",\"vst00001.way\"\r\n");
    // An empty alternative ends the import with nothing added.
    import(mb::No, {""});
    EXPECT_FALSE(wp.IsOpen());
    EXPECT_EQ(ReadIndex(index).size(), 2u);
    EXPECT_FALSE(FileExists(F("vst99999.way")));
    // A file of the oldest form is named after itself.
    file = w.Path("usb/Channel marks.way");
    WriteFile(file, NavData("waypoints/old-form.way"));
    import(-1, {});
    EXPECT_EQ(wp.CurrentName, "Channel marks");
    EXPECT_EQ(wp.Rows(false).size(), 2u);
}

}  // namespace
}  // namespace ombra::test
