// The ports through real devices: pseudo-terminals for serial lines,
// loopback sockets for TCP and UDP, real files for log replay.
#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <pty.h>
#include <sys/socket.h>
#include <termios.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <map>
#include <thread>

#include "platform/comms/LineQueue.h"
#include "platform/comms/PosixComms.h"
#include "tests/support/TestSupport.h"

using namespace ombra;
using namespace std::chrono_literals;

namespace {

class MapPorts : public PortDirectory {
public:
    std::map<int16_t, std::string> devices;
    std::string base;
    std::string DeviceOf(int16_t port) override { return devices.count(port) ? devices[port] : ""; }
    std::string BaseFolder() override { return base; }
};

struct Pty {
    int master = -1;
    int slave = -1;
    std::string path;
    Pty() {
        char name[256] = {};
        if (::openpty(&master, &slave, name, nullptr, nullptr) != 0) throw std::runtime_error("openpty");
        path = name;
        // Keep the slave open here too, as a line with a device on it would:
        // otherwise the first close by the program hangs the line up.
    }
    ~Pty() { Close(); }
    void Close() {
        if (slave >= 0) ::close(slave);
        if (master >= 0) ::close(master);
        master = slave = -1;
    }
    void Write(const std::string& s) const { ASSERT_EQ(::write(master, s.data(), s.size()), ssize_t(s.size())); }
    // Reads what the program wrote, until `n` bytes or the deadline.
    std::string Read(size_t n, std::chrono::milliseconds within = 3000ms) const {
        std::string out;
        auto end = std::chrono::steady_clock::now() + within;
        while (out.size() < n && std::chrono::steady_clock::now() < end) {
            pollfd p{master, POLLIN, 0};
            if (::poll(&p, 1, 20) > 0) {
                char buf[512];
                ssize_t r = ::read(master, buf, sizeof buf);
                if (r > 0) out.append(buf, size_t(r));
            }
        }
        return out;
    }
};

// The next line from the port, polling as the tick would.
std::string NextLine(Comms& c, int16_t port, std::chrono::milliseconds within = 3000ms) {
    auto end = std::chrono::steady_clock::now() + within;
    char buf[256];
    while (std::chrono::steady_clock::now() < end) {
        int16_t n = c.ComPortRead(port, buf, 255);
        if (n > 0) return std::string(buf, size_t(n));
        std::this_thread::sleep_for(5ms);
    }
    return "";
}

uint16_t BoundPort(int fd) {
    sockaddr_in a{};
    socklen_t len = sizeof a;
    ::getsockname(fd, reinterpret_cast<sockaddr*>(&a), &len);
    return ntohs(a.sin_port);
}

int LoopbackListener() {
    int s = ::socket(AF_INET, SOCK_STREAM, 0);
    int one = 1;
    ::setsockopt(s, SOL_SOCKET, SO_REUSEADDR, &one, sizeof one);
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    a.sin_port = 0;
    if (::bind(s, reinterpret_cast<sockaddr*>(&a), sizeof a) != 0 || ::listen(s, 4) != 0) throw std::runtime_error("listen");
    return s;
}

int AcceptWithin(int listener, std::chrono::milliseconds within) {
    pollfd p{listener, POLLIN, 0};
    if (::poll(&p, 1, int(within.count())) <= 0) return -1;
    return ::accept(listener, nullptr, nullptr);
}

const std::string kGGA = "$GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*47\r\n";
const std::string kRMC = "$GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W*6A\r\n";

}  // namespace

// Lines are cut at LF and keep their CR LF; pieces are joined; a flood keeps
// the newest lines; an overlong run is dropped up to its LF.
TEST(LineQueue, FramingFloodAndOverlong) {
    LineQueue q(4);
    q.Append("$GPGGA,1");
    q.Append("23\r\n$GPV");
    std::string line;
    ASSERT_TRUE(q.Pop(line));
    EXPECT_EQ(line, "$GPGGA,123\r\n");
    EXPECT_FALSE(q.Pop(line));  // "$GPV" is not a line yet
    q.DropPartial();
    for (int i = 0; i < 10; ++i) q.Append("L" + std::to_string(i) + "\n");
    EXPECT_EQ(q.Size(), 4u);
    EXPECT_EQ(q.Stats().overflow, 6u);
    ASSERT_TRUE(q.Pop(line));
    EXPECT_EQ(line, "L6\n");
    q.Clear();
    q.Append(std::string(300, 'x'));
    q.Append(std::string(10, 'y') + "\n$GPHDT,1.0,T\r\n");
    EXPECT_EQ(q.Stats().overlong, 1u);
    ASSERT_TRUE(q.Pop(line));
    EXPECT_EQ(line, "$GPHDT,1.0,T\r\n");
    q.Append("tail without end");
    q.EndPartial();
    ASSERT_TRUE(q.Pop(line));
    EXPECT_EQ(line, "tail without end");
}

TEST(PortTable, DeviceTexts) {
    struct Case {
        const char* text;
        PortAddress::Kind kind;
        const char* host;
        int port;
        const char* path;
        double rate;
        bool loop;
    };
    const Case cases[] = {
        {"/dev/ttyUSB0", PortAddress::Kind::Serial, "", 0, "/dev/ttyUSB0", 1, true},
        {"  /dev/ttyS1 ", PortAddress::Kind::Serial, "", 0, "/dev/ttyS1", 1, true},
        {"tcp://127.0.0.1:10110", PortAddress::Kind::Tcp, "127.0.0.1", 10110, "", 1, true},
        {"tcp://[::1]:2000", PortAddress::Kind::Tcp, "::1", 2000, "", 1, true},
        {"tcp://:2000", PortAddress::Kind::None, "", 0, "", 1, true},  // a client needs a host
        {"udp://:10110", PortAddress::Kind::Udp, "", 10110, "", 1, true},
        {"udp://127.0.0.1:5000", PortAddress::Kind::Udp, "127.0.0.1", 5000, "", 1, true},
        {"udp://:0", PortAddress::Kind::None, "", 0, "", 1, true},
        {"udp://:70000", PortAddress::Kind::None, "", 0, "", 1, true},
        {"tcp://host:12ab", PortAddress::Kind::None, "", 0, "", 1, true},
        {"file:///var/log/a.nmea?rate=10&loop=0", PortAddress::Kind::File, "", 0, "/var/log/a.nmea", 10, false},
        {"file:///x.nmea?rate=-3", PortAddress::Kind::File, "", 0, "/x.nmea", 1, true},
        {"file://Demo\\run.nmea", PortAddress::Kind::File, "", 0, "/base/Demo/run.nmea", 1, true},
        {"file://", PortAddress::Kind::None, "", 0, "", 1, true},
        {"gpsd://localhost", PortAddress::Kind::Gpsd, "localhost", 2947, "", 1, true},
        {"gpsd://127.0.0.1:3000/", PortAddress::Kind::Gpsd, "127.0.0.1", 3000, "", 1, true},
        {"gpsd://[::1]", PortAddress::Kind::Gpsd, "::1", 2947, "", 1, true},
        {"gpsd://[::1]:4000", PortAddress::Kind::Gpsd, "::1", 4000, "", 1, true},
        {"gpsd://", PortAddress::Kind::None, "", 0, "", 1, true},
        {"gpsd://host:0", PortAddress::Kind::None, "", 0, "", 1, true},
        {"COM1", PortAddress::Kind::None, "", 0, "", 1, true},
        {"", PortAddress::Kind::None, "", 0, "", 1, true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        PortAddress s = ParsePortAddress(c.text, "/base");
        EXPECT_EQ(s.kind, c.kind);
        if (s.kind == PortAddress::Kind::None) continue;
        EXPECT_EQ(s.host, c.host);
        EXPECT_EQ(s.port, c.port);
        EXPECT_EQ(s.path, c.path);
        EXPECT_DOUBLE_EQ(s.rate, c.rate);
        EXPECT_EQ(s.loop, c.loop);
    }
}

// A pseudo-terminal at each rate: the line settings are applied, sentences
// written in pieces arrive whole, and writes reach the far end byte for byte.
TEST(SerialPort, PtyAtBothRates) {
    for (int32_t baud : {4800, 38400}) {
        SCOPED_TRACE(baud);
        Pty pty;
        MapPorts ports;
        ports.devices[3] = pty.path;
        PosixComms comms(ports);
        ASSERT_EQ(comms.OpenComPort(3, baud), 1) << comms.LastOpenError();
        EXPECT_EQ(comms.ComPortStatus(3), 1);
        termios tio{};
        ASSERT_EQ(::tcgetattr(pty.slave, &tio), 0);
        unsigned want = 0;
        ASSERT_TRUE(BaudToSpeed(baud, want));
        EXPECT_EQ(::cfgetospeed(&tio), speed_t(want));
        EXPECT_EQ(tio.c_cflag & CSIZE, unsigned(CS8));
        EXPECT_EQ(tio.c_cflag & (PARENB | CSTOPB), 0u);
        EXPECT_EQ(tio.c_lflag & (ICANON | ECHO), 0u);

        pty.Write(kGGA.substr(0, 20));
        std::this_thread::sleep_for(20ms);
        pty.Write(kGGA.substr(20) + kRMC);
        EXPECT_EQ(NextLine(comms, 3), kGGA);
        EXPECT_EQ(NextLine(comms, 3), kRMC);

        std::string burst = "$GPXTE,A,A,0.00,L,N\r\n$GPBOD,0.0,T,0.0,M,002,001\r\n";
        comms.ComPortWrite(3, burst.data(), int16_t(burst.size()));
        EXPECT_EQ(pty.Read(burst.size()), burst);
        // The same port cannot be opened twice, nor its device under another number.
        EXPECT_EQ(comms.OpenComPort(3, baud), 0);
        ports.devices[4] = pty.path;
        EXPECT_EQ(comms.OpenComPort(4, baud), 0);
        comms.CloseComPort(3);
        EXPECT_EQ(comms.ComPortStatus(3), 0);
        EXPECT_EQ(comms.ComPortRead(3, nullptr, 255), 0);
    }
}

TEST(SerialPort, MissingDeviceAndUnknownNumberFailToOpen) {
    test::TempDir dir;
    test::WriteFile(dir / "plain", "not a tty");
    MapPorts ports;
    ports.devices[1] = "/dev/ttyOMBRA-none";
    ports.devices[2] = dir / "plain";
    PosixComms comms(ports);
    EXPECT_EQ(comms.OpenComPort(1, 4800), 0);
    EXPECT_NE(comms.LastOpenError().find("ttyOMBRA-none"), std::string::npos);
    EXPECT_EQ(comms.OpenComPort(2, 4800), 0);
    EXPECT_EQ(comms.OpenComPort(5, 4800), 0);  // no device for 5
    EXPECT_EQ(comms.OpenComPort(0, 4800), 0);
}

// A device that vanishes reads as silence with the port still open; when a
// device appears again under the same name the port picks it up by itself.
TEST(SerialPort, VanishingDeviceIsSilenceThenComesBack) {
    test::TempDir dir;
    std::string link = dir / "gps";
    auto pty1 = std::make_unique<Pty>();
    std::filesystem::create_symlink(pty1->path, link);
    MapPorts ports;
    ports.devices[1] = link;
    PosixComms comms(ports);
    ASSERT_EQ(comms.OpenComPort(1, 4800), 1) << comms.LastOpenError();
    pty1->Write(kGGA);
    EXPECT_EQ(NextLine(comms, 1), kGGA);

    pty1->Write("$GPGGA,torn");  // cut off by the loss: never delivered
    std::this_thread::sleep_for(50ms);
    pty1.reset();
    std::this_thread::sleep_for(300ms);
    EXPECT_EQ(comms.ComPortStatus(1), 1);
    EXPECT_EQ(NextLine(comms, 1, 300ms), "");

    Pty pty2;
    std::filesystem::remove(link);
    std::filesystem::create_symlink(pty2.path, link);
    auto end = std::chrono::steady_clock::now() + 5s;
    while (!comms.Connected(1) && std::chrono::steady_clock::now() < end) std::this_thread::sleep_for(20ms);
    ASSERT_TRUE(comms.Connected(1));
    pty2.Write(kRMC);
    EXPECT_EQ(NextLine(comms, 1), kRMC);
    // And closing and opening again by hand works too.
    comms.CloseComPort(1);
    ASSERT_EQ(comms.OpenComPort(1, 38400), 1);
    pty2.Write(kGGA);
    EXPECT_EQ(NextLine(comms, 1), kGGA);
}

// A flood bigger than the queue keeps memory bounded and the newest lines.
TEST(SerialPort, FloodIsCountedNotFatal) {
    Pty pty;
    MapPorts ports;
    ports.devices[1] = pty.path;
    PosixComms comms(ports, 64);
    ASSERT_EQ(comms.OpenComPort(1, 38400), 1);
    std::string flood;
    for (int i = 0; i < 2000; ++i) flood += "$GPHDT," + std::to_string(i) + ".0,T\r\n";
    std::thread writer([&] { pty.Write(flood); });
    writer.join();
    auto end = std::chrono::steady_clock::now() + 5s;
    while (comms.Stats(1).lines + 0 < 2000 && std::chrono::steady_clock::now() < end) std::this_thread::sleep_for(10ms);
    LineStats st = comms.Stats(1);
    EXPECT_EQ(st.lines, 2000u);
    EXPECT_EQ(st.overflow, 2000u - 64u);
    std::string last;
    for (std::string l; !(l = NextLine(comms, 1, 50ms)).empty();) last = l;
    EXPECT_EQ(last, "$GPHDT,1999.0,T\r\n");
}

// A TCP feed on loopback: lines arrive; when the peer goes away the port
// stays open and dials again; the program's writes reach the peer.
TEST(NetworkPort, TcpClientReconnects) {
    int listener = LoopbackListener();
    MapPorts ports;
    ports.devices[6] = "tcp://127.0.0.1:" + std::to_string(BoundPort(listener));
    PosixComms comms(ports);
    ASSERT_EQ(comms.OpenComPort(6, 4800), 1);
    int peer = AcceptWithin(listener, 3000ms);
    ASSERT_GE(peer, 0);
    std::string two = kGGA + kRMC;
    ASSERT_EQ(::send(peer, two.data(), two.size(), 0), ssize_t(two.size()));
    EXPECT_EQ(NextLine(comms, 6), kGGA);
    EXPECT_EQ(NextLine(comms, 6), kRMC);
    std::string out = "$GPAPB,A\r\n";
    comms.ComPortWrite(6, out.data(), int16_t(out.size()));
    char buf[64] = {};
    pollfd p{peer, POLLIN, 0};
    ASSERT_GT(::poll(&p, 1, 3000), 0);
    EXPECT_EQ(std::string(buf, size_t(::recv(peer, buf, sizeof buf, 0))), out);

    ::send(peer, "$GPGGA,half", 11, 0);
    ::close(peer);  // the far end goes away mid-stream
    EXPECT_EQ(NextLine(comms, 6, 300ms), "");
    EXPECT_EQ(comms.ComPortStatus(6), 1);
    int again = AcceptWithin(listener, 5000ms);
    ASSERT_GE(again, 0);
    ::send(again, kGGA.data(), kGGA.size(), 0);
    EXPECT_EQ(NextLine(comms, 6), kGGA);
    ::close(again);
    ::close(listener);
    comms.CloseComPort(6);
}

// A fake gpsd on loopback: the port asks for NMEA on every connection,
// passes the sentences on and keeps gpsd's own JSON reports (short or
// long) and the plotter's output away from both sides.
TEST(NetworkPort, GpsdWatchedForNmeaAndRedialled) {
    int listener = LoopbackListener();
    MapPorts ports;
    ports.devices[7] = "gpsd://127.0.0.1:" + std::to_string(BoundPort(listener));
    PosixComms comms(ports);
    ASSERT_EQ(comms.OpenComPort(7, 4800), 1);
    const std::string watch = "?WATCH={\"enable\":true,\"nmea\":true}\n";
    auto readWatch = [&](int peer) {
        std::string got;
        auto end = std::chrono::steady_clock::now() + 3000ms;
        while (got.size() < watch.size() && std::chrono::steady_clock::now() < end) {
            pollfd p{peer, POLLIN, 0};
            if (::poll(&p, 1, 50) <= 0) continue;
            char buf[256];
            ssize_t n = ::recv(peer, buf, sizeof buf, 0);
            if (n <= 0) break;
            got.append(buf, size_t(n));
        }
        return got;
    };
    for (int connection = 0; connection < 2; ++connection) {
        SCOPED_TRACE(connection);
        int peer = AcceptWithin(listener, 5000ms);
        ASSERT_GE(peer, 0);
        EXPECT_EQ(readWatch(peer), watch);
        std::string talk = "{\"class\":\"VERSION\",\"release\":\"3.25\"}\r\n{\"class\":\"DEVICES\",\"devices\":[" +
                           std::string(600, ' ') + "]}\r\n" + kGGA + "!AIVDM,1,1,,A,15M67FC000G?ufbE`FepT@3n00Sa,0*5C\r\n";
        ASSERT_EQ(::send(peer, talk.data(), talk.size(), 0), ssize_t(talk.size()));
        EXPECT_EQ(NextLine(comms, 7), kGGA);
        EXPECT_EQ(NextLine(comms, 7), "!AIVDM,1,1,,A,15M67FC000G?ufbE`FepT@3n00Sa,0*5C\r\n");
        comms.ComPortWrite(7, "$GPAPB,A\r\n", 10);
        EXPECT_EQ(NextLine(comms, 7, 200ms), "");
        pollfd p{peer, POLLIN, 0};
        EXPECT_EQ(::poll(&p, 1, 200), 0) << "nothing but the watch reaches gpsd";
        ::close(peer);  // gpsd restarts: the port dials again and asks again
    }
    ::close(listener);
    comms.CloseComPort(7);
}

TEST(NetworkPort, TcpUnknownHostFailsToOpen) {
    MapPorts ports;
    ports.devices[6] = "tcp://no-such-host.invalid:10110";
    PosixComms comms(ports);
    EXPECT_EQ(comms.OpenComPort(6, 4800), 0);
}

// Only a name that can never resolve is refused when the port opens; the
// rest is left to the lookup on the port's thread.
TEST(NetworkPort, HostNamesRefusedWithoutALookup) {
    struct Case {
        const char* host;
        bool canResolve;
    };
    const Case cases[] = {
        {"127.0.0.1", true},        {"::1", true},           {"localhost", true},    {"gps.boat.lan.", true},
        {"a-b.example", true},      {"", false},             {"bad_host", false},    {"a..b", false},
        {"-lead.example", false},   {"trail-.example", false}, {".", false},         {"x.invalid", false},
        {"X.INVALID.", false},      {"space host", false},   {"999.1.1.1.invalid", false},
    };
    for (const Case& c : cases) EXPECT_EQ(HostNameCanResolve(c.host), c.canResolve) << "'" << c.host << "'";
    EXPECT_FALSE(HostNameCanResolve(std::string(64, 'a') + ".example"));
    EXPECT_TRUE(HostNameCanResolve(std::string(63, 'a') + ".example"));
}

// Opening a named host returns at once, with nobody listening yet; the
// port's thread looks the name up and dials until the peer is there.
TEST(NetworkPort, TcpNameLookedUpByThePortThread) {
    int listener = LoopbackListener();
    MapPorts ports;
    ports.devices[6] = "tcp://localhost:" + std::to_string(BoundPort(listener));
    PosixComms comms(ports);
    auto before = std::chrono::steady_clock::now();
    ASSERT_EQ(comms.OpenComPort(6, 4800), 1) << comms.LastOpenError();
    EXPECT_LT(std::chrono::steady_clock::now() - before, 100ms);
    int peer = AcceptWithin(listener, 5000ms);
    ASSERT_GE(peer, 0);
    ::send(peer, kGGA.data(), kGGA.size(), 0);
    EXPECT_EQ(NextLine(comms, 6), kGGA);
    ::close(peer);
    ::close(listener);
    comms.CloseComPort(6);
}

// Datagrams on loopback: several lines in one, and a last line without LF.
TEST(NetworkPort, UdpListener) {
    int probe = ::socket(AF_INET, SOCK_DGRAM, 0);
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    ::bind(probe, reinterpret_cast<sockaddr*>(&a), sizeof a);
    uint16_t port = BoundPort(probe);
    ::close(probe);
    MapPorts ports;
    ports.devices[7] = "udp://127.0.0.1:" + std::to_string(port);
    PosixComms comms(ports);
    ASSERT_EQ(comms.OpenComPort(7, 4800), 1) << comms.LastOpenError();
    EXPECT_EQ(comms.OpenComPort(7, 4800), 0);
    int tx = ::socket(AF_INET, SOCK_DGRAM, 0);
    a.sin_port = htons(port);
    std::string dgram = kGGA + "!AIVDM,1,1,,A,13u?etPv2;0n:dDPwUM1U1Cb069D,0*24";
    ASSERT_EQ(::sendto(tx, dgram.data(), dgram.size(), 0, reinterpret_cast<sockaddr*>(&a), sizeof a), ssize_t(dgram.size()));
    EXPECT_EQ(NextLine(comms, 7), kGGA);
    EXPECT_EQ(NextLine(comms, 7), "!AIVDM,1,1,,A,13u?etPv2;0n:dDPwUM1U1Cb069D,0*24");
    ::close(tx);
}

// A recorded log replays in order, a fix at a time, and stops at its end
// when asked not to loop; a missing file does not open.
TEST(FilePort, ReplaysLogInOrder) {
    test::TempDir dir;
    std::string log;
    for (int i = 0; i < 3; ++i) log += "$GPGGA," + std::to_string(i) + "\r\n$GPHDT,1.0,T\r\n";
    log += "$GPGGA,last-no-newline";
    test::WriteFile(dir / "run.nmea", log);
    MapPorts ports;
    ports.base = dir.path();
    ports.devices[8] = "file://run.nmea?rate=50&loop=0";
    ports.devices[2] = "file://none.nmea";
    PosixComms comms(ports);
    EXPECT_EQ(comms.OpenComPort(2, 4800), 0);
    ASSERT_EQ(comms.OpenComPort(8, 4800), 1) << comms.LastOpenError();
    std::vector<std::string> got;
    for (std::string l; !(l = NextLine(comms, 8, 1000ms)).empty();) got.push_back(l);
    ASSERT_EQ(got.size(), 7u);
    EXPECT_EQ(got[0], "$GPGGA,0\r\n");
    EXPECT_EQ(got[3], "$GPHDT,1.0,T\r\n");
    EXPECT_EQ(got[6], "$GPGGA,last-no-newline");
}
