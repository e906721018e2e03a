#include "navobjects/CommonDB.h"

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "core/ErrorReport.h"
#include "core/Format.h"
#include "core/GenFuncs.h"
#include "core/Paths.h"
#include "core/TextRecord.h"
#include "core/Val.h"
#include "navobjects/NavHost.h"
#include "platform/api/Dialogs.h"

namespace ombra {

const StoreKind kWaypointStore{"way", "Waypoint", "Waypoint", "Waypoint", "WPDB", "New Waypoint Database",
                               "No Waypoint database open"};
const StoreKind kRouteStore{"rte", "Routes", "Route", "Route", "RDB", "New Routes Database", "No Route database open"};
const StoreKind kBoundaryStore{"bdy", "Boundaries", "Boundary", "Alarm", "BDB", "New Boundaries Database",
                               "No Boundary database open"};

const StoreKind* StoreKindOf(const std::string& path) {
    if (path.size() < 3) return nullptr;
    std::string ext = LCase(path.substr(path.size() - 3));
    for (const StoreKind* k : {&kWaypointStore, &kRouteStore, &kBoundaryStore})
        if (ext == k->extension) return k;
    return nullptr;
}

namespace {

// The folder part of a path in either form, with its trailing separator.
std::string FolderPart(const std::string& path) {
    size_t at = path.find_last_of("\\/");
    return at == std::string::npos ? std::string() : path.substr(0, at + 1);
}

std::string FilePart(const std::string& path) {
    size_t at = path.find_last_of("\\/");
    return at == std::string::npos ? path : path.substr(at + 1);
}

// Reads one index line as its two values; false when it is not one.
bool ParseIndexLine(const std::string& line, DBEntry& e) {
    if (Trim(line).empty()) return false;
    try {
        TextRecordReader r(line);
        e.Name = r.ReadString();
        e.File = r.ReadString();
        return r.AtEnd();
    } catch (...) {
        return false;
    }
}

// The raw lines of a file, without their line ends.
std::vector<std::string> RawLines(const std::string& text) {
    std::vector<std::string> out;
    size_t b = 0;
    while (b < text.size()) {
        size_t e = text.find('\n', b);
        if (e == std::string::npos) e = text.size();
        std::string l = text.substr(b, e - b);
        if (!l.empty() && l.back() == '\r') l.pop_back();
        out.push_back(l);
        b = e + 1;
    }
    return out;
}

void MakeWritable(const std::string& native) {
    struct stat st;
    if (::stat(native.c_str(), &st) == 0) ::chmod(native.c_str(), st.st_mode | S_IWUSR);
}

}  // namespace

std::string IndexLine(const DBEntry& entry) {
    TextRecordWriter w;
    w.Str(entry.Name).Str(entry.File).EndLine();
    return w.Text();
}

std::vector<DBEntry> ReadIndex(const std::string& indexPath, int* badLine) {
    if (badLine) *badLine = 0;
    auto text = ReadWholeFile(ResolvePath(indexPath));
    if (!text) return {};
    return ParseIndexText(*text, badLine);
}

std::vector<DBEntry> ParseIndexText(const std::string& text, int* badLine) {
    std::vector<DBEntry> out;
    if (badLine) *badLine = 0;
    int n = 0;
    for (const std::string& line : RawLines(text)) {
        ++n;
        DBEntry e;
        if (ParseIndexLine(line, e)) out.push_back(e);
        else if (!Trim(line).empty() && badLine && *badLine == 0) *badLine = n;
    }
    return out;
}

bool AppendIndex(const std::string& indexPath, const DBEntry& entry) {
    std::string bytes = ReadWholeFile(ResolvePath(indexPath)).value_or("");
    if (!bytes.empty() && bytes.back() != '\n') bytes += "\r\n";
    bytes += IndexLine(entry);
    return SaveFileAtomic(indexPath, bytes);
}

bool RemoveFromIndex(const std::string& indexPath, const DBEntry& entry) {
    auto text = ReadWholeFile(ResolvePath(indexPath));
    if (!text) return false;
    std::string out;
    bool dropped = false;
    for (const std::string& line : RawLines(*text)) {
        DBEntry e;
        if (!dropped && ParseIndexLine(line, e) && e.Name == entry.Name && e.File == entry.File) {
            dropped = true;
            continue;
        }
        out += line + "\r\n";
    }
    return SaveFileAtomic(indexPath, out);
}

std::string CommonDB::NewDBFileName(const std::string& indexPath) { return FirstFreeDBFileName(indexPath); }

std::string FreeDBName(const std::string& indexPath, const std::string& wanted) {
    std::vector<DBEntry> entries = ReadIndex(indexPath);
    auto taken = [&](const std::string& n) {
        for (const DBEntry& e : entries)
            if (e.Name == n) return true;
        return false;
    };
    std::string name = wanted;
    for (int k = 2; taken(name); ++k) name = wanted + " (" + std::to_string(k) + ")";
    return name;
}

std::string FirstFreeDBFileName(const std::string& indexPath) {
    std::string folder = FolderPart(indexPath);
    std::string ext = indexPath.size() >= 3 ? indexPath.substr(indexPath.size() - 3) : "";
    // "vst?????.ext": count the data files there now.
    int count = 0;
    std::error_code ec;
    std::string native = ResolvePath(folder.empty() ? "." : folder);
    for (const auto& de : std::filesystem::directory_iterator(native, ec)) {
        std::string n = LCase(de.path().filename().string());
        if (n.size() == 12 && n.compare(0, 3, "vst") == 0 && n[8] == '.' && n.compare(9, 3, LCase(ext)) == 0) ++count;
    }
    for (int k = 1; k <= count + 1 && k < 99999; ++k) {
        std::string name = "vst" + Format(k, "00000") + "." + ext;
        if (!FileExists(folder + name)) return name;
    }
    return "vst" + Format(count + 1, "00000") + "." + ext;
}

bool CommonDB::DBNameIsFree(const std::string& indexPath, const std::string& name) {
    for (const DBEntry& e : ReadIndex(indexPath))
        if (e.Name == name) return false;
    return true;
}

bool CommonDB::SelectDB(const std::string& indexPath, DBEntry& result) {
    bool chosen = false;
    errors_.Guard("SelectDB", [&] {
        const StoreKind* k = StoreKindOf(indexPath);
        std::vector<DBEntry> entries = ReadIndex(indexPath);
        std::vector<std::string> names;
        for (const DBEntry& e : entries) names.push_back(e.Name);
        std::string title = std::string("Select ") + (k ? k->listWord : "") + " Database";
        int pick = host_.ListPick(title, names, "Select");
        if (pick < 0 || pick >= int(entries.size())) return;
        result = entries[size_t(pick)];
        chosen = true;
    });
    return chosen;
}

bool CommonDB::DeleteDB(const std::string& indexPath, const std::function<void(const DBEntry&)>& beforeRemove) {
    bool deleted = false;
    errors_.Guard("DeleteDB", [&] {
        const StoreKind* k = StoreKindOf(indexPath);
        std::vector<DBEntry> entries = ReadIndex(indexPath);
        std::vector<std::string> names;
        for (const DBEntry& e : entries) names.push_back(e.Name);
        std::string title = std::string("Delete ") + (k ? k->listWord : "") + " Database";
        int pick = host_.ListPick(title, names, "Delete");
        if (pick < 0 || pick >= int(entries.size())) return;
        if (!ConfirmDelete(DeleteKind::Other, dialogs_, productName_)) return;
        const DBEntry& e = entries[size_t(pick)];
        if (beforeRemove) beforeRemove(e);
        if (!RemoveFromIndex(indexPath, e)) RaiseFault(faults::PathFileAccess);
        std::string data = FolderPart(indexPath) + FilePart(e.File);
        if (FileExists(data)) {
            std::string native = ResolvePath(data);
            MakeWritable(native);
            ::unlink(native.c_str());
        }
        deleted = true;
    });
    return deleted;
}

bool CommonDB::ExportDBtoDisk(const std::string& dataFilePath) {
    bool done = false;
    errors_.Guard("ExportDBtoDisk", [&] {
        const StoreKind* k = StoreKindOf(dataFilePath);
        std::string folder = host_.ChooseFolder("Browse", "Select path for export.");
        if (folder.empty()) return;
        folder = WithTrailingSlash(folder);
        std::string ext = k ? k->extension : dataFilePath.substr(dataFilePath.size() - 3);
        if (FileExists(folder + "vst00000." + ext)) {
            dialogs_.MsgBox("Cannot export to a directory that contains an index file", mb::Exclamation, productName_);
            return;
        }
        std::string name = FilePart(dataFilePath);
        std::string target = folder + name;
        bool readOnly = false;
        if (FileExists(target)) {
            if (dialogs_.MsgBox(name + " already exists!\nDo you wish to overwrite it?", mb::YesNo | mb::Question,
                                productName_) != mb::Yes)
                return;
            std::string native = ResolvePath(target);
            readOnly = ::access(native.c_str(), W_OK) != 0;
            if (readOnly) MakeWritable(native);
            target = native;
        }
        host_.SetStatus("Exporting files");
        std::string why;
        auto bytes = ReadWholeFile(ResolvePath(dataFilePath), &why);
        if (!bytes) throw Fault(faults::FileNotFound, "File not found: " + NativePath(dataFilePath));
        if (!SaveFileAtomic(target, *bytes, &why)) throw Fault(faults::PathFileAccess, why + " (" + NativePath(target) + ")");
        if (readOnly) {
            std::string native = ResolvePath(target);
            struct stat st;
            if (::stat(native.c_str(), &st) == 0) ::chmod(native.c_str(), st.st_mode & ~mode_t(S_IWUSR | S_IWGRP | S_IWOTH));
        }
        host_.SetStatus("");
        dialogs_.MsgBox("Database Exported", mb::OKOnly, productName_);
        done = true;
    });
    return done;
}

bool CommonDB::ImportDBFromDisk(const std::string& folder, const std::string& extension, std::string* chosenOut) {
    bool ready = false;
    errors_.Guard("ImportDBFromDisk", [&] {
        const StoreKind* k = StoreKindOf(extension);
        std::string word = k ? k->word : "";
        std::string chosen =
            host_.ChooseFile("Browse", "Select " + word + " DB file for import.", word + " DB", "*." + extension);
        if (chosen.empty()) return;
        std::string temp = WithTrailingSlash(folder) + "vst99999." + extension;
        if (FileExists(temp)) {
            std::string native = ResolvePath(temp);
            MakeWritable(native);
            ::unlink(native.c_str());
        }
        std::string why;
        auto bytes = ReadWholeFile(ResolvePath(chosen), &why);
        if (!bytes) throw Fault(faults::FileNotFound, "File not found: " + NativePath(chosen));
        if (!SaveFileAtomic(temp, *bytes, &why)) throw Fault(faults::PathFileAccess, why + " (" + NativePath(temp) + ")");
        if (chosenOut) *chosenOut = chosen;
        ready = true;
    });
    return ready;
}

}  // namespace ombra
