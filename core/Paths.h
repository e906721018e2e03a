// Paths and files.
//
// The plotter's folders and file names are written with backslashes
// ("Dat\Vessel.CSV", "Waypoint\vst00000.way"), as its users and older data
// name them. On this system a backslash becomes "/" and every folder name
// is kept. Names are matched without regard to case when the file already
// exists ("Dat\" and "dat\" are one folder), so data copied from another
// machine is found whatever the case of its names; a name that does not
// exist yet is created as written.
//
//   NativePath("C:\\Data\\Dat\\deviate.dat") == "/Data/Dat/deviate.dat"  (a drive letter is dropped)
//   ResolvePath("/home/u/.ombra/dat/VESSEL.csv")  -> "/home/u/.ombra/Dat/Vessel.CSV" if that exists
#pragma once
#include <optional>
#include <string>
#include <string_view>

namespace ombra {

std::string NativePath(std::string_view path);
// The native path with each existing component found case-insensitively.
std::string ResolvePath(std::string_view path);
bool FileExists(std::string_view path);      // a regular file, any case
bool FolderExists(std::string_view path);    // a folder, any case
// Creates the folder and its parents; true when it exists afterwards.
bool MakeFolder(std::string_view path);
// The whole file, or nothing when it cannot be read. `error` gets the reason.
std::optional<std::string> ReadWholeFile(std::string_view path, std::string* error = nullptr);
// Ensures a trailing separator on a folder path kept in the program's form.
std::string WithTrailingSlash(std::string_view path);

// Writes `bytes` to `path` so that a crash or power cut leaves the old file
// or the new one whole, never a torn one: a temporary file beside the
// target is written, flushed to disk and renamed over it, and the folder is
// flushed. On failure the old file is untouched, the temporary file is
// removed, and `error` says why.
bool SaveFileAtomic(std::string_view path, std::string_view bytes, std::string* error = nullptr);

}  // namespace ombra
