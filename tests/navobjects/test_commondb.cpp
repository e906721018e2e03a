// What the three stores share: index files, file names, select, delete,
// export and import, with every text the user sees.
#include <gtest/gtest.h>
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
        for (auto& [n, p] : points) {
            int16_t s = wp.AddWaypoint(AddBy::Mouse, &p);
            wp.At(s)->Name = n;
        }
        wp.SaveWaypointDB();
    }
};

TEST_F(Common, InitMakesFoldersAndAnEmptyIndexOnce) {
    EXPECT_TRUE(FolderExists(w.Path("Waypoint")));
    EXPECT_EQ(ReadFile(F("vst00000.way")), "");
    WriteFile(F("vst00000.way"), "\"Kept\",\"vst00004.way\"\r\n");
    wp.InitWayPointData();
    EXPECT_EQ(ReadFile(F("vst00000.way")), "\"Kept\",\"vst00004.way\"\r\n");
    // A data root that does not exist yet is made too.
    NavWorld other;
    other.globals.UserDataPath = other.dir.path() + "/deep/er/";
    Waypoints w2(other.ctx, symbols);
    w2.InitWayPointData();
    EXPECT_TRUE(FileExists(other.dir.path() + "/deep/er/Waypoint/vst00000.way"));
}

TEST_F(Common, NewFileNameTakesTheFirstGap) {
    EXPECT_EQ(db.NewDBFileName(index), "vst00001.way");
    WriteFile(F("vst00001.way"), "x");
    WriteFile(F("vst00003.way"), "x");
    EXPECT_EQ(db.NewDBFileName(index), "vst00002.way");
    WriteFile(F("vst00002.way"), "x");
    EXPECT_EQ(db.NewDBFileName(index), "vst00004.way");
    // Other stores' files do not count.
    WriteFile(F("vst00004.rte"), "x");
    EXPECT_EQ(db.NewDBFileName(index), "vst00004.way");
}

TEST_F(Common, NamesAreExactAndMayHoldCommasAndQuotes) {
    Store("Say \"Hi\", then", {{"A", DM(50, 0, -5, 0)}});
    EXPECT_EQ(ReadFile(F("vst00000.way")), "\"Say \"\"Hi\"\", then\",\"vst00001.way\"\r\n");
    EXPECT_FALSE(db.DBNameIsFree(index, "Say \"Hi\", then"));
    EXPECT_TRUE(db.DBNameIsFree(index, "say \"hi\", then"));
    std::vector<DBEntry> e = ReadIndex(index);
    ASSERT_EQ(e.size(), 1u);
    EXPECT_EQ(e[0].Name, "Say \"Hi\", then");
    // The default name skips the ones taken.
    Store("WPDB1", {});
    w.dialogs.texts.push_back("\x18");
    wp.NewWaypointDB();
    EXPECT_EQ(w.dialogs.asked.back().kind, "InputBox");
    EXPECT_EQ(w.dialogs.asked.back().title, "New Waypoint Database");
    EXPECT_EQ(w.dialogs.asked.back().text, "Enter name of new database file.");
    // A taken name is refused and asked again.
    w.dialogs.texts = {"WPDB1", "  Fresh  "};
    wp.NewWaypointDB();
    EXPECT_EQ(wp.CurrentName, "Fresh");
    EXPECT_NE(std::find(w.Messages().begin(), w.Messages().end(), "The name entered already exists."), w.Messages().end());
    EXPECT_EQ(wp.ViewCaption(), "&View 'Fresh' Database");
}

TEST_F(Common, SelectOnAnEmptyIndexShowsAnEmptyListAndFails) {
    DBEntry e;
    EXPECT_FALSE(db.SelectDB(index, e));
    ASSERT_EQ(w.host.asked.size(), 1u);
    EXPECT_EQ(w.host.asked[0].title, "Select Waypoint Database");
    EXPECT_EQ(w.host.asked[0].text, "Select");
    EXPECT_TRUE(w.host.asked[0].items.empty());
    // The other stores' words.
    db.SelectDB(w.Path("Routes/vst00000.rte"), e);
    EXPECT_EQ(w.host.asked.back().title, "Select Route Database");
    db.SelectDB(w.Path("Boundaries/vst00000.bdy"), e);
    EXPECT_EQ(w.host.asked.back().title, "Select Alarm Database");
}

TEST_F(Common, DeleteRemovesOneLineAndItsFileKeepingTheRest) {
    Store("One", {{"A", DM(50, 0, -5, 0)}});
    Store("Two", {{"B", DM(50, 1, -5, 0)}});
    // An unreadable line in the index is kept as it stands.
    std::string idx = ReadFile(F("vst00000.way"));
    WriteFile(F("vst00000.way"), idx + "garbage without quotes\r\n");
    wp.CloseWaypointDB();
    w.host.listPicks.push_back(0);
    w.dialogs.replies.push_back(mb::Yes);
    wp.DeleteWaypointDB();
    EXPECT_EQ(w.host.asked.back().title, "Delete Waypoint Database");
    EXPECT_EQ(w.host.asked.back().text, "Delete");
    EXPECT_EQ(w.dialogs.asked.back().text, "Confirm deletion.");
    EXPECT_EQ(ReadFile(F("vst00000.way")), "\"Two\",\"vst00002.way\"\r\ngarbage without quotes\r\n");
    EXPECT_FALSE(FileExists(F("vst00001.way")));
    EXPECT_TRUE(FileExists(F("vst00002.way")));
    // Deleting the open database closes it first.
    w.host.listPicks.push_back(0);
    ASSERT_TRUE(wp.SelectWaypointDB());
    w.host.listPicks.push_back(0);
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
    std::string data = ReadFile(F("vst00001.way"));
    // Into the store's own folder: refused by its index file.
    w.host.listPicks.push_back(0);
    w.host.folders.push_back(w.Path("Waypoint"));
    wp.ExportWaypointDB();
    EXPECT_EQ(w.host.asked.back().title, "Browse");
    EXPECT_EQ(w.host.asked.back().text, "Select path for export.");
    EXPECT_EQ(w.Messages().back(), "Cannot export to a directory that contains an index file");
    // Into a plain folder.
    MakeFolder(w.Path("usb"));
    w.host.listPicks.push_back(0);
    w.host.folders.push_back(w.Path("usb"));
    wp.ExportWaypointDB();
    EXPECT_EQ(w.Messages().back(), "Database Exported");
    EXPECT_EQ(ReadFile(w.Path("usb/vst00001.way")), data);
    EXPECT_NE(std::find(w.host.status.begin(), w.host.status.end(), "Exporting files"), w.host.status.end());
    // Again, over a read-only copy: asked, overwritten, read-only again.
    WriteFile(w.Path("usb/vst00001.way"), "old");
    ::chmod(w.Path("usb/vst00001.way").c_str(), 0444);
    w.host.listPicks.push_back(0);
    w.host.folders.push_back(w.Path("usb"));
    w.dialogs.replies.push_back(mb::Yes);
    wp.ExportWaypointDB();
    EXPECT_EQ(w.Messages()[w.Messages().size() - 2], "vst00001.way already exists!\nDo you wish to overwrite it?");
    EXPECT_EQ(ReadFile(w.Path("usb/vst00001.way")), data);
    struct stat st;
    ASSERT_EQ(::stat(w.Path("usb/vst00001.way").c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 0222, 0u);
    // No leaves the copy alone.
    ::chmod(w.Path("usb/vst00001.way").c_str(), 0644);
    WriteFile(w.Path("usb/vst00001.way"), "mine");
    w.host.listPicks.push_back(0);
    w.host.folders.push_back(w.Path("usb"));
    w.dialogs.replies.push_back(mb::No);
    wp.ExportWaypointDB();
    EXPECT_EQ(ReadFile(w.Path("usb/vst00001.way")), "mine");
}

TEST_F(Common, ImportWithANameClashReplacesOrRenames) {
    Store("Solent", {{"A", DM(50, 0, -1, 0)}});
    MakeFolder(w.Path("usb"));
    WriteFile(w.Path("usb/from-friend.way"),
              "\"Ver 2.19\"\r\n\"Solent\"\r\n\"Friend\",1,\"\",180000,-3600,0,1,0.5,1,0,\"\"\r\n");
    // Renamed.
    w.host.files.push_back(w.Path("usb/from-friend.way"));
    w.dialogs.replies.push_back(mb::No);
    w.dialogs.texts.push_back("  Solent (friend) ");
    wp.ImportWaypointDB();
    EXPECT_EQ(w.host.asked.back().title, "Browse");
    EXPECT_EQ(w.host.asked.back().text, "Select Waypoint DB file for import.");
    EXPECT_EQ(w.host.asked.back().items[1], "*.way");
    const auto& q = w.dialogs.asked[w.dialogs.asked.size() - 2];
    EXPECT_EQ(q.title, "Waypoint Database Import");
    EXPECT_EQ(q.text, "A Waypoint Database called \"Solent\" already exists.\n\nDo you wish to replace the existing Waypoint Database?");
    EXPECT_EQ(w.dialogs.asked.back().text, "Enter an alternative Waypoint Database name");
    EXPECT_EQ(wp.CurrentName, "Solent (friend)");
    EXPECT_EQ(wp.At(1)->Name, "Friend");
    EXPECT_FALSE(FileExists(F("vst99999.way")));
    EXPECT_EQ(ReadFile(F("vst00000.way")),
              "\"Solent\",\"vst00001.way\"\r\n\"Solent (friend)\",\"vst00002.way\"\r\n");
    // Replaced: the old file goes and the new one takes the name.
    w.host.files.push_back(w.Path("usb/from-friend.way"));
    w.dialogs.replies.push_back(mb::Yes);
    wp.ImportWaypointDB();
    EXPECT_EQ(wp.CurrentName, "Solent");
    // (its file name is free again, so the new data takes it)
    EXPECT_NE(ReadFile(F("vst00001.way")).find("\"Friend\""), std::string::npos);
    EXPECT_EQ(ReadFile(F("vst00000.way")),
              "\"Solent (friend)\",\"vst00002.way\"\r\n\"Solent\",\"vst00001.way\"\r\n");
    // An empty alternative ends the import with nothing added.
    w.host.files.push_back(w.Path("usb/from-friend.way"));
    w.dialogs.replies.push_back(mb::No);
    w.dialogs.texts.push_back("");
    wp.ImportWaypointDB();
    EXPECT_FALSE(wp.IsOpen());
    EXPECT_EQ(ReadIndex(index).size(), 2u);
    EXPECT_FALSE(FileExists(F("vst99999.way")));
    // A file of the oldest form is named after itself.
    WriteFile(w.Path("usb/Channel marks.way"), NavData("waypoints/old-form.way"));
    w.host.files.push_back(w.Path("usb/Channel marks.way"));
    wp.ImportWaypointDB();
    EXPECT_EQ(wp.CurrentName, "Channel marks");
    EXPECT_EQ(wp.Rows(false).size(), 2u);
}

}  // namespace
}  // namespace ombra::test
