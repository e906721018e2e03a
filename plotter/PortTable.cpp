#include "plotter/PortTable.h"

#include "core/Val.h"
#include "core/Registry.h"

namespace ombra {

static Key PortKey(int16_t port) { return Key(int16_t(Key::ComPort1) + port - 1); }

std::string PortTable::DeviceOf(int16_t port) {
    if (port < 1 || port > Count) return "";
    return reg_.GetSetting(PortKey(port));
}

}  // namespace ombra
