// A Comms for tests: ports whose lines a test feeds, whose writes it reads
// back, and which it can make fail to open or fall silent. Nothing runs in
// the background, so a test drives the intake tick by tick.
//
//   ScriptedComms c;
//   c.Feed(1, "$GPGGA,...*hh\r\n");
//   c.OpenComPort(1, 4800);     // 1
//   ... ReadGPSPort() ...
//   c.Written(1)                // everything the program sent
#pragma once
#include <deque>
#include <map>
#include <set>
#include <string>

#include "platform/api/Comms.h"

namespace ombra {

class ScriptedComms : public Comms {
public:
    int16_t OpenComPort(int16_t port, int32_t baudRate) override;
    void CloseComPort(int16_t port) override;
    int16_t ComPortStatus(int16_t port) override;
    int16_t ComPortRead(int16_t port, char* buffer, int16_t length) override;
    void ComPortWrite(int16_t port, const char* buffer, int16_t count) override;

    // Queues a line for the port (kept while the port is closed too).
    void Feed(int16_t port, const std::string& line) { lines[port].push_back(line); }
    std::string Written(int16_t port) const;

    std::set<int16_t> missing;              // ports that fail to open
    std::map<int16_t, int32_t> opened;      // open ports and their rates
    std::map<int16_t, std::deque<std::string>> lines;
    std::map<int16_t, std::string> written;
    std::map<int16_t, int> opens, closes;   // calls, by port
    int reads = 0;
    // Called on every write, so a test can answer a handshake.
    void (*onWrite)(ScriptedComms& self, int16_t port, const std::string& bytes) = nullptr;
};

}  // namespace ombra
