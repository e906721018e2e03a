#include "platform/comms/ScriptedComms.h"

#include <algorithm>
#include <cstring>

namespace ombra {

int16_t ScriptedComms::OpenComPort(int16_t port, int32_t baudRate) {
    ++opens[port];
    if (port < 1 || missing.count(port) || opened.count(port)) return 0;
    opened[port] = baudRate;
    return 1;
}

void ScriptedComms::CloseComPort(int16_t port) {
    ++closes[port];
    opened.erase(port);
}

int16_t ScriptedComms::ComPortStatus(int16_t port) { return opened.count(port) ? 1 : 0; }

int16_t ScriptedComms::ComPortRead(int16_t port, char* buffer, int16_t length) {
    ++reads;
    if (!opened.count(port) || length <= 0) return 0;
    auto& q = lines[port];
    if (q.empty()) return 0;
    std::string line = q.front();
    q.pop_front();
    size_t n = std::min(line.size(), size_t(length));
    std::memcpy(buffer, line.data(), n);
    return int16_t(n);
}

void ScriptedComms::ComPortWrite(int16_t port, const char* buffer, int16_t count) {
    if (!opened.count(port) || count <= 0) return;
    std::string bytes(buffer, size_t(count));
    written[port] += bytes;
    if (onWrite) onWrite(*this, port, bytes);
}

std::string ScriptedComms::Written(int16_t port) const {
    auto it = written.find(port);
    return it == written.end() ? std::string() : it->second;
}

}  // namespace ombra
