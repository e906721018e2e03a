// PortTable: the port numbers 1..8 of the settings store (ComPort1 ..
// ComPort8) as the comms service reads them.
//
// A number outside 1..8 stands for no device (""); a device text is kept
// trimmed. The base folder anchors relative file:// logs and follows the
// install folder once start-up has fixed it.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/comms/PortAddress.h"

namespace ombra {

class Registry;

class PortTable : public PortDirectory {
public:
    static constexpr int16_t Count = 8;
    PortTable(Registry& reg, std::string baseFolder) : reg_(reg), base_(std::move(baseFolder)) {}
    std::string DeviceOf(int16_t port) override;
    std::string BaseFolder() override { return base_; }
    void SetBaseFolder(std::string folder) { base_ = std::move(folder); }

private:
    Registry& reg_;
    std::string base_;
};

}  // namespace ombra
