// The instruments over real ports: a GPS on a pseudo-terminal at 4800 and
// 38400 baud, the NMEA burst read back from the line byte for byte, and
// network feeds on loopback that go away mid-stream.
#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <pty.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <map>
#include <thread>

#include "core/Format.h"
#include "core/Val.h"
#include "instruments/NmeaText.h"
#include "platform/comms/PosixComms.h"
#include "tests/instruments/InstrumentsFixture.h"

using namespace ombra;
using namespace std::chrono_literals;
using ombra::test::Sentence;

namespace {

class MapPorts : public PortDirectory {
public:
    std::map<int16_t, std::string> devices;
    std::string DeviceOf(int16_t port) override { return devices.count(port) ? devices[port] : ""; }
    std::string BaseFolder() override { return ""; }
};

// The instruments over real ports, with the settable clock.
struct LiveRig {
    MapPorts table;
    PosixComms comms{table};
    test::InstrumentsFixture f{"/nonexistent-ombra-app/", &comms};
    Instruments& ins = f.ins;
    ManualClock& clock = f.clock;
    Registry& reg = f.reg;

    LiveRig(const std::string& device, int32_t baud) {
        clock.SetTime(14, 5, 0);
        table.devices[1] = device;
        reg.SaveSetting(Key::GPSBaudRate, std::to_string(baud));
        f.Load();
    }
    // Ticks (read and cycle, as the main timer does) until a fix has been
    // decoded or the wall-clock deadline passes.
    bool TickUntilFix(std::chrono::milliseconds within = 3000ms) {
        auto end = std::chrono::steady_clock::now() + within;
        while (std::chrono::steady_clock::now() < end) {
            bool fix = ins.comm.ReadGPSPort();
            ins.vessel.UpdateVesselPos();
            if (fix) return true;
            std::this_thread::sleep_for(5ms);
        }
        return false;
    }
};

struct Pty {
    int master = -1, slave = -1;
    std::string path;
    Pty() {
        char name[256] = {};
        if (::openpty(&master, &slave, name, nullptr, nullptr) != 0) throw std::runtime_error("openpty");
        path = name;
    }
    ~Pty() {
        ::close(slave);
        ::close(master);
    }
    void Write(const std::string& s) const { ASSERT_EQ(::write(master, s.data(), s.size()), ssize_t(s.size())); }
    std::string Read(size_t n) const {
        std::string out;
        auto end = std::chrono::steady_clock::now() + 3000ms;
        while (out.size() < n && std::chrono::steady_clock::now() < end) {
            pollfd p{master, POLLIN, 0};
            if (::poll(&p, 1, 20) > 0) {
                char buf[1024];
                ssize_t r = ::read(master, buf, sizeof buf);
                if (r > 0) out.append(buf, size_t(r));
            }
        }
        return out;
    }
};

std::string GGA(const std::string& time, const std::string& lat, const std::string& lon) {
    return Sentence("GPGGA," + time + "," + lat + ",N," + lon + ",W,1,08,0.9,12.0,M,50.0,M,,");
}

}  // namespace

// Sentences written into the line reach the fix and move the vessel; the
// burst the plotter writes comes back off the line exactly as composed,
// with the default set, with bit 512, with checksums, and with a leg in
// the other hemispheres.
TEST(LivePorts, GPSOnAPseudoTerminal) {
    for (int32_t baud : {4800, 38400}) {
        SCOPED_TRACE(baud);
        Pty pty;
        LiveRig rig(pty.path, baud);
        ASSERT_TRUE(rig.ins.comm.StartGPS()) << rig.comms.LastOpenError();
        EXPECT_EQ(rig.ins.vessel.vessel.Mode, 3);

        pty.Write(GGA("140500", "5007.250", "01158.500"));
        ASSERT_TRUE(rig.TickUntilFix());
        Vessel& v = rig.ins.vessel.vessel;
        EXPECT_EQ(v.Mode, 2);
        EXPECT_NEAR(v.Pos.Lat, 50 * 3600.0 + 7.25 * 60.0, 1e-6);
        pty.Write(Sentence("GPVTG,084.0,T,,M,6.5,N,,K") + Sentence("GPRMC,140509,A,5007.260,N,01158.400,W,6.5,84.0,231126,,") +
                  GGA("140509", "5007.260", "01158.400"));
        rig.clock.Advance(9);
        ASSERT_TRUE(rig.TickUntilFix());  // the RMC: a position sentence, its position not taken
        ASSERT_TRUE(rig.TickUntilFix());  // the GGA
        EXPECT_NEAR(v.Pos.Lat, 50 * 3600.0 + 7.26 * 60.0, 1e-6);
        EXPECT_NEAR(v.Pos.Long, -(11 * 3600.0 + 58.4 * 60.0), 1e-6);
        EXPECT_EQ(v.COG, 84.0);
        EXPECT_EQ(v.SOG, 6.5);

        // The default burst: VTG, RMC, GLL and the GGA repeat.
        rig.ins.output.NmeaOutput(1);
        std::string want =
            "$GPVTG,84.0,T,84.0,M,6.5,N,12.0,K\r\n"
            "$GPRMC,140509,A,5007.260,N,01158.400,W,6.5,84.0,231126,0.0,E\r\n"
            "$GPGLL,5007.260,N,01158.400,W,140509,A\r\n"
            "$GPGGAA,140509,5007.260,N,01158.400,W,1,08,0.9,12.0,M,50.0,M,,\r\n";
        EXPECT_EQ(pty.Read(want.size()), want);

        // Bit 512 and checksums.
        rig.ins.settings.AutopilotSettings = 1 | 2 | 512 | 1024;
        rig.ins.output.NmeaOutput(1);
        std::string rmc = "GPRMC,140509,A,5007.26,N,01158.40,W,006.5,084.0,231126,000.0,E";
        std::string gll = "GPGLL,5007.26,N,01158.40,W";
        want = "$" + rmc + "*" + NmeaChecksum(rmc) + "\r\n$" + gll + "*" + NmeaChecksum(gll) + "\r\n";
        EXPECT_EQ(pty.Read(want.size()), want);

        // A leg to a point in the south-eastern quarter: the vessel's RMC
        // carries the point's letters.
        ActiveLeg& leg = rig.ins.leg;
        leg.Kind = 1;
        leg.Name = "SOUTH";
        leg.From = v.Pos;
        leg.To = LatLong{0.5 * 3600.0, -0.25 * 3600.0};
        rig.ins.vessel.UpdateVesselConsole();
        rig.ins.settings.AutopilotSettings = 1 | 16;
        rig.ins.output.NmeaOutput(1);
        const auto& row = rig.ins.console.LabWP;
        std::string rmb = "$GPRMB,A," + Format(Val(row[9]), "0.00") + "," + std::string(row[10][0] == 'R' ? "R" : "L") +
                          ",001,UTH,0015.000,S,00030.000,E," + Format(leg.DistanceTo, "0.0") + "," +
                          Format(leg.BearingTo, "0.0") + "," + Format(Val(row[5]), "0.00") + ",V\r\n";
        want = "$GPRMC,140509,A,5007.260,S,01158.400,E,6.5,84.0,231126,0.0,E\r\n" + rmb;
        EXPECT_EQ(pty.Read(want.size()), want);
        rig.ins.comm.StopGPS();
    }
}

// A TCP feed: the far end closes mid-stream; the program runs on, and
// after GPSDelay of the clock the vessel is lost. The feed coming back
// (the port dials again) brings the vessel back.
TEST(LivePorts, TcpFeedGoesAwayThenGPSLost) {
    int listener = ::socket(AF_INET, SOCK_STREAM, 0);
    int one = 1;
    ::setsockopt(listener, SOL_SOCKET, SO_REUSEADDR, &one, sizeof one);
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    ASSERT_EQ(::bind(listener, reinterpret_cast<sockaddr*>(&a), sizeof a), 0);
    ASSERT_EQ(::listen(listener, 4), 0);
    socklen_t len = sizeof a;
    ::getsockname(listener, reinterpret_cast<sockaddr*>(&a), &len);
    LiveRig rig("tcp://127.0.0.1:" + std::to_string(ntohs(a.sin_port)), 4800);
    ASSERT_TRUE(rig.ins.comm.StartGPS());
    pollfd p{listener, POLLIN, 0};
    ASSERT_GT(::poll(&p, 1, 3000), 0);
    int peer = ::accept(listener, nullptr, nullptr);
    std::string fix = GGA("140500", "5007.250", "01158.500");
    ::send(peer, fix.data(), fix.size(), 0);
    ASSERT_TRUE(rig.TickUntilFix());
    EXPECT_EQ(rig.ins.vessel.vessel.Mode, 2);
    ::send(peer, "$GPGGA,1405", 11, 0);
    ::close(peer);
    for (int s = 1; s <= 19; ++s) {
        rig.clock.Advance(1);
        EXPECT_FALSE(rig.TickUntilFix(20ms));
        EXPECT_EQ(rig.ins.vessel.vessel.Mode, 2) << s;
    }
    rig.clock.Advance(1);
    rig.TickUntilFix(20ms);
    EXPECT_EQ(rig.ins.vessel.vessel.Mode, 4);
    EXPECT_EQ(rig.ins.console.StatusText, "No GPS Signal");
    EXPECT_EQ(rig.comms.ComPortStatus(1), 1);

    ASSERT_GT(::poll(&p, 1, 5000), 0);
    peer = ::accept(listener, nullptr, nullptr);
    fix = GGA("140530", "5007.300", "01158.500");
    ::send(peer, fix.data(), fix.size(), 0);
    ASSERT_TRUE(rig.TickUntilFix());
    EXPECT_EQ(rig.ins.vessel.vessel.Mode, 2);
    ::close(peer);
    ::close(listener);
    rig.ins.comm.StopGPS();
}

// Broadcast NMEA on UDP (bound to loopback here): fixes arrive and move
// the vessel; when they stop the vessel is lost after GPSDelay.
TEST(LivePorts, UdpFeedStopsThenGPSLost) {
    int probe = ::socket(AF_INET, SOCK_DGRAM, 0);
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    ::bind(probe, reinterpret_cast<sockaddr*>(&a), sizeof a);
    socklen_t len = sizeof a;
    ::getsockname(probe, reinterpret_cast<sockaddr*>(&a), &len);
    ::close(probe);
    LiveRig rig("udp://127.0.0.1:" + std::to_string(ntohs(a.sin_port)), 4800);
    rig.reg.SaveSetting(Key::GPSDelay, "5");
    rig.ins.LoadCommsSettings();
    ASSERT_TRUE(rig.ins.comm.StartGPS()) << rig.comms.LastOpenError();
    int tx = ::socket(AF_INET, SOCK_DGRAM, 0);
    std::string fix = GGA("140500", "5007.250", "01158.500") + Sentence("GPVTG,010.0,T,,M,5.0,N,,K");
    ::sendto(tx, fix.data(), fix.size(), 0, reinterpret_cast<sockaddr*>(&a), sizeof a);
    ASSERT_TRUE(rig.TickUntilFix());
    rig.TickUntilFix(50ms);
    EXPECT_EQ(rig.ins.vessel.vessel.SOG, 5.0);
    rig.clock.Advance(5);
    rig.TickUntilFix(20ms);
    EXPECT_EQ(rig.ins.vessel.vessel.Mode, 4);
    ::close(tx);
}
