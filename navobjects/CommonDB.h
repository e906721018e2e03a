// CommonDB: what the three object stores (waypoints, routes, boundaries)
// share: named databases, one text file each, listed in an index file.
//
// Each store has one folder under the user data root and one extension;
// the extension's last three letters select the store in every routine
// here, as they always have:
//
//   store       folder           index         temporary import   list word
//   waypoints   "\Waypoint\"     vst00000.way  vst99999.way       "Waypoint"
//   routes      "\Routes\"       vst00000.rte  vst99999.rte       "Route"
//   boundaries  "\Boundaries\"   vst00000.bdy  vst99999.bdy       "Alarm"
//
// The index holds one text-record line a database: its name, then its
// 12-character file name, both quoted:
//
//   "Solent marks","vst00001.way"<CR><LF>
//   "Say ""Hi"", then","vst00003.way"<CR><LF>     (quotes doubled, commas legal)
//
// Data files are vst00001 upward; vst99999 is kept for the file being
// imported and never enters an index.
//
// Index files are edited line by line: a line that cannot be read is kept
// as it stands when another line is added or removed, so a damaged index
// loses nothing more by being used. Every write is atomic.
#pragma once
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace ombra {

class Dialogs;
class ErrorReporter;
class NavHost;

struct StoreKind {
    const char* extension;     // "way"
    const char* folder;        // "Waypoint"
    const char* word;          // "Waypoint", "Route", "Boundary": import texts
    const char* listWord;      // "Waypoint", "Route", "Alarm": select and delete captions
    const char* prefix;        // default name prefix of a new database: "WPDB"
    const char* newTitle;      // "New Waypoint Database"
    const char* noneOpenTitle; // "No Waypoint database open"
};

// The store of a path by its last three letters (any case); nullptr when none.
const StoreKind* StoreKindOf(const std::string& path);
extern const StoreKind kWaypointStore, kRouteStore, kBoundaryStore;

struct DBEntry {
    std::string Name;  // the database name
    std::string File;  // "vst00001.way"
};

// Reads an index: its entries in order. Lines that are not two values are
// skipped; `badLine` (if given) gets the first of them (0: none).
std::vector<DBEntry> ReadIndex(const std::string& indexPath, int* badLine = nullptr);
// The same, from the index's text.
std::vector<DBEntry> ParseIndexText(const std::string& text, int* badLine = nullptr);
// Adds one line at the end of the index; false when it cannot be written.
bool AppendIndex(const std::string& indexPath, const DBEntry& entry);
// Drops the first line that reads as `entry` (name and file); other lines,
// even unreadable ones, stay as they are.
bool RemoveFromIndex(const std::string& indexPath, const DBEntry& entry);
// The 12-character name of the first free data file beside an index.
std::string FirstFreeDBFileName(const std::string& indexPath);
// `wanted` if no database has that name, else `wanted (2)`, `wanted (3)` ...
std::string FreeDBName(const std::string& indexPath, const std::string& wanted);
// The index line of an entry, CR LF included.
std::string IndexLine(const DBEntry& entry);

class CommonDB {
public:
    CommonDB(Dialogs& dialogs, ErrorReporter& errors, NavHost& host, const std::string& productName)
        : dialogs_(dialogs), errors_(errors), host_(host), productName_(productName) {}

    // The 12-character name of the first free data file beside the index.
    std::string NewDBFileName(const std::string& indexPath);
    // False when some index line has exactly this name (case-sensitive).
    bool DBNameIsFree(const std::string& indexPath, const std::string& name);
    // The list dialog; true with the chosen pair.
    bool SelectDB(const std::string& indexPath, DBEntry& result);
    // The list dialog, confirmation, index line and data file removed.
    // `beforeRemove` runs once the user has confirmed: the store closes
    // itself there when the chosen database is the open one.
    bool DeleteDB(const std::string& indexPath, const std::function<void(const DBEntry&)>& beforeRemove = {});
    // Copies a data file (a full path) into a folder the user chooses.
    bool ExportDBtoDisk(const std::string& dataFilePath);
    // Copies a file the user chooses into `folder` as vst99999.<ext>; true
    // when there is one to load. `chosen` gets the file's own path.
    bool ImportDBFromDisk(const std::string& folder, const std::string& extension, std::string* chosen = nullptr);

    // "The name entered already exists." and friends need these.
    Dialogs& dialogs() { return dialogs_; }
    ErrorReporter& errors() { return errors_; }
    NavHost& host() { return host_; }
    const std::string& ProductName() const { return productName_; }

private:
    Dialogs& dialogs_;
    ErrorReporter& errors_;
    NavHost& host_;
    const std::string& productName_;
};

}  // namespace ombra
