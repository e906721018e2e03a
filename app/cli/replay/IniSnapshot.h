// The settings file of a home folder, read once, without Qt: what the
// program's own INI store (QSettings in IniFormat) would read from it.
//
// A replay or a tool uses the navigator's settings but must not change
// them: writes are kept in memory and never reach the file.
//
// The text is read as QSettings reads it:
//   [Tarnel]                 a section; keys before any section are [General]
//   Key=value                spaces around key and value dropped
//   Key="a, b ; c"           quotes keep commas, semicolons and outer spaces
//   Key=C:\\dir\\f           escapes: \\ \" \t \n \r \a \b \f \v \0 \xhh;
//                            any other escaped character is dropped with
//                            its backslash
//   Key=x ; note             an unquoted ";" starts a comment
//   Key=a,b                  an unquoted "," makes a list, which reads as ""
//   Key=@String(x)           "x"; "@@" stands for one "@"
//   Coast%20Linestyle=0      "%hh" in section and key names
// Any bytes at all may stand in the file; a line that is not one of these
// is skipped.
#pragma once
#include <map>
#include <string>
#include <string_view>

#include "platform/api/SettingsBackend.h"

namespace ombra {

class IniSnapshot : public SettingsBackend {
public:
    // Reads the file; a missing file is an empty store (a fresh install).
    // False with `why` when it exists and cannot be read.
    bool Load(const std::string& path, std::string& why);
    void LoadText(std::string_view text);

    std::optional<std::string> Read(const std::string& app, const std::string& section, const std::string& key) override;
    bool Write(const std::string& app, const std::string& section, const std::string& key, const std::string& value) override;

    // The value as the program would read it; "" when missing.
    std::string Get(const std::string& section, const std::string& key) const;

private:
    std::map<std::string, std::string> values_;  // "Section/Key"
};

// One value's text as QSettings reads it (see above).
std::string IniValue(std::string_view raw);

}  // namespace ombra
