// Port addresses: what stands behind each port number.
//
// The navigator picks ports by number, as on the chart table's old PCs
// (COM1, COM2 ...). Each number maps to one device text, kept in the
// settings store under ComPort1..ComPort8 and editable in the port dialogs
// (the plotter's PortTable keeps them):
//
//   /dev/ttyUSB0                 a serial device (any absolute path to a
//                                terminal, a socat link in /tmp included):
//                                termios, the chosen baud rate, 8 data bits,
//                                no parity, 1 stop bit, raw
//   tcp://host:port              a TCP client, reconnecting when the peer goes
//   udp://:port                  a UDP listener for broadcast NMEA, on every
//   udp://127.0.0.1:port         address, or on the one address named
//   gpsd://host[:port]           a running gpsd (port 2947 unless named),
//                                asked for its NMEA; reconnecting like tcp://
//   file://path[?rate=N][&loop=0]  a recorded log replayed at its own pace:
//                                N position fixes a second (default 1),
//                                starting again at its end unless loop=0.
//                                A relative path is taken from the install
//                                folder, backslashes allowed ("Demo\a.nmea").
//
// A text that fits none of these (an empty one included) is "no device":
// opening it fails with the ordinary "does not exist" message.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>

namespace ombra {

// gpsd's own port, when a gpsd:// address names none.
inline constexpr uint16_t kGpsdPort = 2947;

struct PortAddress {
    enum class Kind { None, Serial, Tcp, Udp, File, Gpsd };
    Kind kind = Kind::None;
    std::string path;        // serial device or log file (native form)
    std::string host;        // tcp or gpsd host; udp bind address ("" = any)
    uint16_t port = 0;       // tcp, udp or gpsd port
    double rate = 1.0;       // file: position fixes a second
    bool loop = true;        // file: start again at the end
};

// Parses one device text; `baseFolder` anchors relative file paths.
PortAddress ParsePortAddress(std::string_view text, std::string_view baseFolder = "");

// Where the comms service asks what a port number means.
class PortDirectory {
public:
    virtual ~PortDirectory() = default;
    virtual std::string DeviceOf(int16_t port) = 0;  // "" for an unknown number
    virtual std::string BaseFolder() = 0;
};

}  // namespace ombra
