// An in-memory settings store for tests and headless tools.
#pragma once
#include <map>
#include <tuple>

#include "platform/api/SettingsBackend.h"

namespace ombra {

class MemorySettings : public SettingsBackend {
public:
    std::optional<std::string> Read(const std::string& app, const std::string& section, const std::string& key) override;
    bool Write(const std::string& app, const std::string& section, const std::string& key, const std::string& value) override;
    // Everything written, by (application, section, key).
    std::map<std::tuple<std::string, std::string, std::string>, std::string> values;
    int writes = 0;
};

}  // namespace ombra
