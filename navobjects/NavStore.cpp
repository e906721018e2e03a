#include "navobjects/NavStore.h"

#include <unistd.h>

#include <filesystem>

#include "core/ErrorReport.h"
#include "core/Fault.h"
#include "core/Format.h"
#include "core/Paths.h"
#include "core/Startup.h"
#include "core/Val.h"
#include "navobjects/NavChart.h"
#include "navobjects/NavHost.h"
#include "navobjects/Waypoint.h"
#include "platform/api/Dialogs.h"

namespace ombra {

ReadOutcome ReadStoreFile(const std::string& text, std::string& name, const char* word,
                          const StoreRecordReader& readRecord, StoreForm* formOut) {
    constexpr size_t kMaxRecords = 32767;
    TextRecordReader r(text);
    int at = 0;  // the line of the record being read
    try {
        std::string first;
        {
            TextRecordReader peek(text);
            first = peek.ReadString();
        }
        StoreForm form = ClassifyStoreHeader(first);
        if (formOut) *formOut = form;
        if (form != StoreForm::NoHeader) {
            r.ReadString();
            name = r.ReadString();
        }
        for (size_t held = 0; !r.AtEnd(); ++held) {
            if (held >= kMaxRecords)
                throw Fault(faults::Overflow,
                            "More than 32,767 " + std::string(word) + " (line " + std::to_string(r.Line()) + ")");
            readRecord(r, form, &at);
        }
    } catch (const std::exception& e) {
        return {false, at > 0 ? at : (r.LastLine() > 0 ? r.LastLine() : r.Line()), e.what()};
    }
    return {};
}

NavStore::NavStore(NavContext& ctx, const StoreKind& kind, const char* initName, const char* openName,
                   const char* saveName)
    : ctx_(ctx),
      common_(ctx.dialogs, ctx.errors, ctx.host, ctx.globals.ProductName),
      kind_(kind),
      initName_(initName),
      openName_(openName),
      saveName_(saveName) {}

std::string NavStore::CurrentPath() const { return CurrentFile.empty() ? std::string() : Folder + CurrentFile; }

std::string NavStore::HeaderVersion() const { return "Ver " + StoreVersionText(ctx_.globals.VersionText); }

std::string NavStore::ViewCaption() const {
    return IsOpen() ? "&View '" + CurrentName + "' Database" : std::string("&View Current Database");
}

LatLong KeyboardStart(NavContext& ctx) {
    return ctx.host.VesselActive() ? ctx.host.VesselPos() : ctx.chart.ViewCentre();
}

void NavStore::ClearAll() {
    ClearRecords();
    CurrentFile.clear();
    CurrentName.clear();
    damagedFile_.clear();
    damagedLine_ = 0;
}

void NavStore::Refresh() {
    ctx_.host.MenuCaptionsChanged();
    ctx_.host.ListsChanged();
    ctx_.chart.Redraw();
}

void RemoveStaleSaves(const std::string& folder) {
    std::error_code ec;
    for (const auto& de : std::filesystem::directory_iterator(ResolvePath(folder), ec)) {
        std::string n = de.path().filename().string();
        // ".vst00001.way.tmp-Ab12Cd": a save that never reached its rename.
        if (n.size() > 18 && n[0] == '.' && LCase(n.substr(1, 3)) == "vst" && n.find(".tmp-") != std::string::npos)
            std::filesystem::remove(de.path(), ec);
    }
}

void NavStore::InitData() {
    ClearAll();
    ctx_.errors.Guard(initName_, [&] {
        std::string root = ctx_.globals.UserDataPath;
        while (!root.empty() && (root.back() == '\\' || root.back() == '/')) root.pop_back();
        Folder = root + "\\" + kind_.folder + "\\";
        if (!MakeFolder(Folder)) RaiseFault(faults::PathNotFound);
        IndexPath = Folder + "vst00000." + kind_.extension;
        RemoveStaleSaves(Folder);
        if (!FileExists(IndexPath)) {
            std::string why;
            if (!SaveFileAtomic(IndexPath, "", &why))
                throw Fault(faults::PathFileAccess, why + " (" + NativePath(IndexPath) + ")");
        }
    });
}

void NavStore::OpenDB() {
    ctx_.errors.Guard(openName_, [&] {
        ClearRecords();
        damagedFile_.clear();
        damagedLine_ = 0;
        std::string path = CurrentPath();
        std::string why;
        auto text = ReadWholeFile(ResolvePath(path), &why);
        if (!text) throw Fault(faults::FileNotFound, "File not found: " + NativePath(path));
        ReadOutcome r = Parse(*text);
        AfterLoad();
        if (!r.whole) {
            damagedFile_ = CurrentFile;
            damagedLine_ = r.line;
            ctx_.errors.ReportError(openName_, r.fault + "\nFile: " + NativePath(ResolvePath(path)) + ", line " +
                                                   std::to_string(r.line) + ".\nThe " + std::to_string(RecordCount()) +
                                                   " " + RecordWord() +
                                                   " read before that line are kept. The file will not be "
                                                   "overwritten unless you agree when it is saved.");
        }
    });
}

bool NavStore::SaveDB() {
    if (!IsOpen()) return true;
    bool saved = false;
    ctx_.errors.Guard(saveName_, [&] {
        bool fresh = CurrentFile.empty();
        if (!fresh && Damaged() && damagedFile_ == CurrentFile) {
            std::string text = "The file " + NativePath(ResolvePath(CurrentPath())) +
                               " could not be read whole when it was opened (line " + std::to_string(damagedLine_) +
                               ").\nSaving replaces it with the " + std::to_string(RecordCount()) + " " + RecordWord() +
                               " now held.\n\nDo you wish to replace the file?";
            if (ctx_.dialogs.MsgBox(text, mb::YesNo | mb::Exclamation | mb::DefaultButton2,
                                    ctx_.globals.ProductName) != mb::Yes)
                return;
        }
        if (fresh) CurrentFile = common_.NewDBFileName(IndexPath);
        std::string why;
        if (!SaveFileAtomic(CurrentPath(), Serialise(), &why)) {
            std::string path = NativePath(CurrentPath());
            if (fresh) CurrentFile.clear();
            throw Fault(faults::PathFileAccess, why + " (" + path + ")");
        }
        if (fresh && !AppendIndex(IndexPath, {CurrentName, CurrentFile}))
            throw Fault(faults::PathFileAccess, "The index " + NativePath(IndexPath) + " cannot be written");
        damagedFile_.clear();
        damagedLine_ = 0;
        saved = true;
    });
    return saved;
}

void NavStore::CloseDB() {
    SaveDB();
    ClearAll();
    Refresh();
}

bool NavStore::AskName(std::string& name) {
    int n = 1;
    while (!common_.DBNameIsFree(IndexPath, kind_.prefix + Format(n, "0"))) ++n;
    std::string value = kind_.prefix + Format(n, "0");
    if (!ctx_.dialogs.InputBox("Enter name of new database file.", kind_.newTitle, value)) return false;
    name = Trim(value);
    return !name.empty();
}

void NavStore::NewDB() {
    SaveDB();
    for (;;) {
        std::string name;
        if (!AskName(name)) return;
        if (common_.DBNameIsFree(IndexPath, name)) {
            ClearAll();
            CurrentName = name;
            Refresh();
            return;
        }
        ctx_.dialogs.MsgBox("The name entered already exists.", mb::Exclamation, ctx_.globals.ProductName);
    }
}

bool NavStore::SelectDB() {
    SaveDB();
    DBEntry e;
    if (!common_.SelectDB(IndexPath, e)) return false;
    ClearAll();
    CurrentName = e.Name;
    CurrentFile = e.File;
    ctx_.host.MenuCaptionsChanged();
    OpenDB();
    Refresh();
    return true;
}

void NavStore::DeleteDB() {
    SaveDB();
    bool closed = false;
    common_.DeleteDB(IndexPath, [&](const DBEntry& e) {
        if (IsOpen() && e.File == CurrentFile && e.Name == CurrentName) {
            ClearAll();
            closed = true;
        }
    });
    if (closed) Refresh();
}

void NavStore::ExportDB() {
    SaveDB();
    DBEntry e;
    if (!common_.SelectDB(IndexPath, e)) return;
    common_.ExportDBtoDisk(Folder + e.File);
}

void NavStore::ImportDB() {
    std::string chosen;
    if (!common_.ImportDBFromDisk(Folder, kind_.extension, &chosen)) return;
    SaveDB();
    ClearAll();
    std::string temp = std::string("vst99999.") + kind_.extension;
    CurrentFile = temp;
    OpenDB();
    auto dropTemp = [&] {
        std::string native = ResolvePath(Folder + temp);
        ::unlink(native.c_str());
    };
    std::string name = CurrentName;
    if (name.empty()) {
        // A file of the oldest form names no database: the file's own name does.
        size_t slash = chosen.find_last_of("\\/");
        name = chosen.substr(slash == std::string::npos ? 0 : slash + 1);
        size_t dot = name.find_last_of('.');
        if (dot != std::string::npos && dot > 0) name.erase(dot);
    }
    const std::string word = kind_.word;
    while (!common_.DBNameIsFree(IndexPath, name)) {
        std::string q = "A " + word + " Database called \"" + name + "\" already exists.\n\nDo you wish to replace the existing " +
                        word + " Database?";
        if (ctx_.dialogs.MsgBox(q, mb::YesNo | mb::Question, word + " Database Import") == mb::Yes) {
            for (const DBEntry& e : ReadIndex(IndexPath)) {
                if (e.Name != name) continue;
                std::string native = ResolvePath(Folder + e.File);
                if (FileExists(Folder + e.File)) ::unlink(native.c_str());
                RemoveFromIndex(IndexPath, e);
            }
            break;
        }
        std::string alt;
        if (!ctx_.dialogs.InputBox("Enter an alternative " + word + " Database name", ctx_.globals.ProductName, alt) ||
            Trim(alt).empty()) {
            ClearAll();
            dropTemp();
            Refresh();
            return;
        }
        name = Trim(alt);
    }
    CurrentName = name;
    CurrentFile.clear();
    SaveDB();
    dropTemp();
    Refresh();
}

bool NavStore::EnsureOpen() {
    if (IsOpen()) return true;
    int choice = ctx_.host.TwoChoice(kind_.noneOpenTitle, "Open existing database file or create a new one?",
                                     "Open Existing", "Create New");
    if (choice == 1) SelectDB();
    else if (choice == 2) NewDB();
    return IsOpen();
}

}  // namespace ombra
