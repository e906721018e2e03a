// Comms: the instrument ports, as the logic sees them.
//
// A port is a small number (1, 2, ...) that the navigator picks in the
// port dialogs; 0 means "no port". What stands behind a number is the port
// table's business (platform/comms/PortAddress.h): a serial device, a TCP
// feed, a UDP listener or a recorded log replayed at its own pace.
//
// The logic polls ports from the 100 ms tick, so nothing here may block:
// every open port is read in the background into a queue of whole lines,
// and ComPortRead hands over one line a call, with its CR LF as received.
// Text is 8-bit, byte for byte: no character set is assumed.
//
//   if (comms.OpenComPort(1, 4800) == 0) { ...in use or missing... }
//   char buf[256];
//   int16_t n;
//   while ((n = comms.ComPortRead(1, buf, 255)) > 0) handle(std::string(buf, n));
//
// A device that goes away (a USB receiver pulled out, a TCP peer gone)
// does not close the port: reads go silent, the vessel's timeouts act on
// that silence, and the source is picked up again when it comes back.
#pragma once
#include <cstdint>

namespace ombra {

class Comms {
public:
    virtual ~Comms() = default;
    // Non-zero on success; 0 when the port is in use, unknown or missing.
    virtual int16_t OpenComPort(int16_t port, int32_t baudRate) = 0;
    virtual void CloseComPort(int16_t port) = 0;
    // 1 while the port is open.
    virtual int16_t ComPortStatus(int16_t port) = 0;
    // Copies the next whole line (at most `length` bytes) into `buffer`;
    // the count of bytes, or 0 when nothing waits. Never blocks.
    virtual int16_t ComPortRead(int16_t port, char* buffer, int16_t length) = 0;
    // Queues `count` bytes for the port; a closed or failed port drops them.
    virtual void ComPortWrite(int16_t port, const char* buffer, int16_t count) = 0;
};

}  // namespace ombra
