// The instrument ports on this system: POSIX serial devices, a TCP client
// (a gpsd:// port is one that asks gpsd for NMEA on connecting),
// a UDP listener and recorded-log replay, all behind the Comms interface.
//
// Each open port has one thread of its own that does all of the port's
// input and output: it reads whatever arrives into the port's LineQueue
// (whole lines, bounded; see LineQueue.h) and writes what ComPortWrite
// queued. The tick only pops lines and appends bytes, under a mutex, so it
// never waits on a device.
//
// Going away and coming back:
//   - a serial device that vanishes (USB pulled, pty closed) is closed and
//     opened again by its path once a second until it reappears;
//   - a TCP peer that closes or never answered is dialled again every
//     second;
//   - a UDP listener just waits;
//   - a log replay starts again at its end (unless loop=0).
// Meanwhile ComPortStatus stays 1 and reads are silent, so the vessel's
// own timeouts decide what silence means. A partial sentence cut off by
// the loss is dropped, never delivered torn.
//
// Opening never waits on the network: a TCP port's host name is looked up
// by the port's own thread each time it dials (once a second until it
// answers), so a slow or absent name server holds that thread, never the
// caller. Opening fails (0) when the number has no device, a serial device
// is missing, not a terminal or held by another program (flock and
// TIOCEXCL), a TCP host name is malformed (HostNameCanResolve), a UDP port
// cannot be bound, or a log file cannot be read. LastOpenError says which,
// for the port test window. Closing a port joins its thread, which may be
// in the middle of a lookup.
#pragma once
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "platform/api/Comms.h"
#include "platform/comms/LineQueue.h"
#include "platform/comms/PortAddress.h"

namespace ombra {

struct PortSource;

class PosixComms : public Comms {
public:
    explicit PosixComms(PortDirectory& directory, size_t queueCapacity = 1024);
    ~PosixComms() override;
    PosixComms(const PosixComms&) = delete;
    PosixComms& operator=(const PosixComms&) = delete;

    int16_t OpenComPort(int16_t port, int32_t baudRate) override;
    void CloseComPort(int16_t port) override;
    int16_t ComPortStatus(int16_t port) override;
    int16_t ComPortRead(int16_t port, char* buffer, int16_t length) override;
    void ComPortWrite(int16_t port, const char* buffer, int16_t count) override;

    // Counters of an open port (zeros when closed), and whether its device
    // is connected at this moment.
    LineStats Stats(int16_t port);
    bool Connected(int16_t port);
    uint64_t WriteOverflow(int16_t port);
    const std::string& LastOpenError() const { return lastError_; }

    // Bytes a port may hold for writing before more are dropped: about
    // twenty seconds of output at 4800 baud.
    static constexpr size_t MaxPendingWrite = 10000;

private:
    std::shared_ptr<PortSource> Find(int16_t port);
    // Opens or checks the device of a new port; false with lastError_ set.
    bool PrepareSource(PortSource& src, int16_t port, const std::string& device);
    PortDirectory& dir_;
    size_t capacity_;
    std::mutex mu_;
    std::map<int16_t, std::shared_ptr<PortSource>> open_;
    std::string lastError_;
};

// Whether a TCP host could ever resolve, decided without asking a name
// server: a numeric IPv4 or IPv6 address, or a well-formed host name
// (labels of letters, digits and inner hyphens, at most 63 characters each
// and 253 in all) outside the reserved "invalid" top-level name.
bool HostNameCanResolve(const std::string& host);

// termios speed for a baud rate; false when the rate is not a standard one.
bool BaudToSpeed(int32_t baud, unsigned& speed);

}  // namespace ombra
