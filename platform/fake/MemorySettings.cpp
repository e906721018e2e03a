#include "platform/fake/MemorySettings.h"

namespace ombra {

std::optional<std::string> MemorySettings::Read(const std::string& app, const std::string& section, const std::string& key) {
    auto it = values.find({app, section, key});
    if (it == values.end()) return std::nullopt;
    return it->second;
}

bool MemorySettings::Write(const std::string& app, const std::string& section, const std::string& key, const std::string& value) {
    values[{app, section, key}] = value;
    ++writes;
    return true;
}

}  // namespace ombra
