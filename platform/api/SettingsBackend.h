// The per-user store behind the settings: text values addressed by
// application, section and key. The program's store is an INI file in the
// user's configuration folder (or under $OMBRA_HOME); tests use memory.
#pragma once
#include <optional>
#include <string>

namespace ombra {

class SettingsBackend {
public:
    virtual ~SettingsBackend() = default;
    // The stored text, or nothing when the key was never written.
    virtual std::optional<std::string> Read(const std::string& app, const std::string& section, const std::string& key) = 0;
    // Stores the text; false when the store could not be written.
    virtual bool Write(const std::string& app, const std::string& section, const std::string& key, const std::string& value) = 0;
};

}  // namespace ombra
