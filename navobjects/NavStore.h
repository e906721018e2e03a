// NavStore: the life of one object store (waypoints, routes, boundaries):
// which database is open, and the steps that are the same in the three:
// new, select, save, close, delete, import and export.
//
// A store is open while its database name is non-empty. A new database has
// a name and no file until its first save, which takes the first free file
// name and adds the pair to the index. Saves happen when the user asks,
// before another database is opened, before a select or a delete, and at
// shutdown; a closed store skips them.
//
// Nothing is lost. Every save replaces the file atomically (core/Paths.h:
// SaveFileAtomic), so a crash leaves the old file or the new one. A file
// that could not be read whole when it was opened, because it was damaged
// or cut short, is reported by file and line, keeps the records read before
// the fault, and is never overwritten by a save unless the user agrees: the
// save asks first, and a refusal leaves the file as it is on disk.
//
// A store supplies its record format through the virtual steps below;
// Waypoints, Routes and Boundaries are the three.
#pragma once
#include <cstdint>
#include <functional>
#include <string>

#include "core/Types.h"
#include "navobjects/CommonDB.h"

namespace ombra {

class Registry;
class Dialogs;
class ErrorReporter;
class Units;
class Clock;
class Events;
class NavChart;
class NavHost;
struct Globals;
class TextRecordReader;
enum class StoreForm;

// What every module of the navigation objects is built with.
struct NavContext {
    Registry& reg;
    Dialogs& dialogs;
    ErrorReporter& errors;
    Units& units;
    Clock& clock;
    Events& events;
    NavChart& chart;
    NavHost& host;
    Globals& globals;  // UserDataPath, VersionText, ProductName, CurrentTool
};

// The outcome of reading a store file.
struct ReadOutcome {
    bool whole = true;      // false: the reading stopped at a fault
    int line = 0;           // the line of the fault
    std::string fault;      // the fault's description
};

// Reads a store file: the header (the version line and the database name
// into `name`, unless the file is of the oldest form, which has neither),
// then `readRecord` once a record until the text ends; `at` is kept at the
// line of the record being read, so a fault names it. Records read before
// a fault are kept; more than 32,767 records is a fault, `word` naming them
// ("waypoints"). `form` gets the header's form.
using StoreRecordReader = std::function<void(TextRecordReader& r, StoreForm form, int* at)>;
ReadOutcome ReadStoreFile(const std::string& text, std::string& name, const char* word,
                          const StoreRecordReader& readRecord, StoreForm* form = nullptr);

// Where a point typed in by keyboard starts: at the vessel while it is
// active, else at the centre of the chart in view, so that the navigator
// edits a nearby position instead of typing one from 0° N 0° E.
LatLong KeyboardStart(NavContext& ctx);

// Removes the temporary files of saves that were cut off before their
// rename (a crash, a power cut) from a store folder; the data files they
// were meant to replace are whole.
void RemoveStaleSaves(const std::string& folder);

class NavStore {
public:
    // `procs`: the names under which faults are reported: init, open, save.
    NavStore(NavContext& ctx, const StoreKind& kind, const char* initName, const char* openName, const char* saveName);
    virtual ~NavStore() = default;

    std::string CurrentFile;   // "vst00001.way", or "" before the first save
    std::string CurrentName;   // "" when no database is open
    std::string Folder;        // "<data root>\Waypoint\"
    std::string IndexPath;     // Folder + "vst00000.way"

    bool IsOpen() const { return !CurrentName.empty(); }
    const StoreKind& Kind() const { return kind_; }

    // The folder (and the data root) made if missing, the index created empty.
    void InitData();
    // Reads CurrentFile into the records; a fault is reported by file and line.
    void OpenDB();
    // Writes the records; true when saved or when there is nothing to save.
    bool SaveDB();
    // Saves, then clears the state.
    void CloseDB();
    // The menu entries of the database menus.
    void NewDB();
    bool SelectDB();
    void DeleteDB();
    void ImportDB();
    void ExportDB();
    // With no database open, "Open existing database file or create a new
    // one?"; true when one is open afterwards.
    bool EnsureOpen();

    // "&View 'Solent' Database", or "&View Current Database" when closed.
    std::string ViewCaption() const;
    // The full path of the current data file ("" before the first save).
    std::string CurrentPath() const;

    // Set when the open file could not be read whole: its name and line.
    bool Damaged() const { return !damagedFile_.empty(); }
    int DamagedLine() const { return damagedLine_; }

    // Clears every record and the open state (the store's Clear...).
    virtual void ClearAll();

protected:
    virtual void ClearRecords() = 0;
    // The whole file for the records.
    virtual std::string Serialise() = 0;
    // Fills the records from a file's text; on a fault keeps what was read
    // and says where. Sets CurrentName from the header when there is one.
    virtual ReadOutcome Parse(const std::string& text) = 0;
    // After a read: variation and chart pixels of every point.
    virtual void AfterLoad() {}
    // How many records are held, and their word ("waypoints").
    virtual int RecordCount() const = 0;
    virtual const char* RecordWord() const = 0;
    // Refreshes of the windows and the chart after a change of database.
    void Refresh();
    std::string HeaderVersion() const;

    NavContext& ctx_;
    CommonDB common_;

private:
    bool AskName(std::string& name);
    const StoreKind& kind_;
    const char* initName_;
    const char* openName_;
    const char* saveName_;
    std::string damagedFile_;
    int damagedLine_ = 0;
};

}  // namespace ombra
