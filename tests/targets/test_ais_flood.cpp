// AIS under a flood: 10,000 position reports a second from 2,000 vessels
// through a UDP port on loopback while the plotter ticks every 100 ms and
// the chart is redrawn after each tick. Every vessel that reached the
// decoder stays in the table, memory stays bounded and the tick keeps its
// rhythm. The run lasts OMBRA_AIS_FLOOD_SECONDS (5 by default, so it fits
// the ordinary test run; 60 for the full figure) and prints its figures.
#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <thread>

#include "platform/chartlib/ImageCanvas.h"
#include "platform/fake/ManualClock.h"
#include "platform/fake/MemorySettings.h"
#include "platform/fake/ScriptedDialogs.h"
#include "plotter/Plotter.h"
#include "plotter/WindowlessShell.h"
#include "tests/charts/ChartFixture.h"
#include "tests/support/TestSupport.h"
#include "tests/targets/AisTraffic.h"

using namespace ombra;
using Wall = std::chrono::steady_clock;

namespace {

long PeakKb() {
    std::ifstream f("/proc/self/status");
    std::string key;
    long kb = 0;
    while (f >> key) {
        if (key == "VmHWM:") {
            f >> kb;
            return kb;
        }
        f.ignore(4096, '\n');
    }
    return 0;
}

// A UDP port on loopback nobody holds now.
uint16_t FreeUdpPort() {
    int s = ::socket(AF_INET, SOCK_DGRAM, 0);
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    ::bind(s, reinterpret_cast<sockaddr*>(&a), sizeof a);
    socklen_t len = sizeof a;
    ::getsockname(s, reinterpret_cast<sockaddr*>(&a), &len);
    ::close(s);
    return ntohs(a.sin_port);
}

}  // namespace

TEST(AisFlood, TenThousandSentencesASecondOverUdpWhileTheChartRedraws) {
    const char* env = std::getenv("OMBRA_AIS_FLOOD_SECONDS");
    const int seconds = env ? std::max(1, std::atoi(env)) : 5;
    constexpr int kRate = 10000, kVessels = 2000;

    test::TempDir dir;
    MemorySettings store;
    ScriptedDialogs dialogs;
    ManualClock clock;
    NoEvents events;
    WindowlessShell shell;
    clock.now = DateTime{2026, 11, 23, 10, 0, 0, 0};
    const uint16_t port = FreeUdpPort();
    auto set = [&](const char* k, const std::string& v) { store.Write("Vestrane", "Tarnel", k, v); };
    set("AutoStartupGPS", "2");
    set("GPSPort", "1");
    set("ComPort1", std::string("file://") + OMBRA_SOURCE_DIR + "/data/demo/ombra-demo.nmea");
    set("ComPort2", "udp://127.0.0.1:" + std::to_string(port));
    set("AISPort", "2");
    set("AISEnable", "True");
    set("AISLabels", "True");
    Plotter plotter({store, dialogs, clock, events, shell});
    ASSERT_TRUE(plotter.Start("NOSPLASH", dir / "ombra", dir / "home", ""));
    ChartModule& charts = plotter.charts();
    std::string why;
    ASSERT_TRUE(test::InstallFixtureChart(charts, charts.Root(), test::DefaultFixture(), "20240601", &why)) << why;
    ASSERT_TRUE(charts.Charts.NewChart("1234A"));
    charts.View.SetViewSize(1000, 800);
    Image img(1000, 800);
    chartlib::ImageCanvas canvas(img);

    const auto vessels = test::ScatterVessels(kVessels, 49.85, 50.15, -12.3, -11.7);
    std::vector<std::string> lines;
    for (const auto& v : vessels) lines.push_back(test::PositionSentence(v, 0));
    const long peakBefore = PeakKb();

    std::atomic<bool> stop{false};
    std::atomic<long> sent{0};
    std::thread sender([&] {
        int s = ::socket(AF_INET, SOCK_DGRAM, 0);
        sockaddr_in to{};
        to.sin_family = AF_INET;
        to.sin_port = htons(port);
        to.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        auto next = Wall::now();
        size_t i = 0;
        while (!stop) {
            for (int k = 0; k < kRate / 1000; ++k, ++i) {
                const std::string& l = lines[i % lines.size()];
                if (::sendto(s, l.data(), l.size(), 0, reinterpret_cast<sockaddr*>(&to), sizeof to) > 0) ++sent;
            }
            next += std::chrono::milliseconds(1);
            std::this_thread::sleep_until(next);
        }
        ::close(s);
    });

    double worstTick = 0, worstRedraw = 0, worstGap = 0;
    long ticks = 0;
    const auto start = Wall::now();
    auto due = start, last = start;
    while (Wall::now() - start < std::chrono::seconds(seconds)) {
        std::this_thread::sleep_until(due);
        auto t0 = Wall::now();
        worstGap = std::max(worstGap, std::chrono::duration<double, std::milli>(t0 - last).count());
        last = t0;
        plotter.Tick();
        clock.Advance(0.1);
        auto t1 = Wall::now();
        charts.View.RedrawNavCanvas(canvas);
        auto t2 = Wall::now();
        worstTick = std::max(worstTick, std::chrono::duration<double, std::milli>(t1 - t0).count());
        worstRedraw = std::max(worstRedraw, std::chrono::duration<double, std::milli>(t2 - t1).count());
        ++ticks;
        due += std::chrono::milliseconds(100);
    }
    stop = true;
    sender.join();
    // What is still queued reaches the decoder at the next tick.
    plotter.Tick();

    const size_t inTable = plotter.aisTargets().Rows(AisSort::Slot).size();
    const long peakAfter = PeakKb();
    std::printf("AIS flood: %d s, %ld sentences sent (%.0f/s), %ld ticks, worst tick %.1f ms, worst redraw %.1f ms, "
                "worst gap between ticks %.1f ms, %zu of %d vessels in the table (lost %d), peak RSS %ld kB (+%ld kB)\n",
                seconds, sent.load(), double(sent.load()) / seconds, ticks, worstTick, worstRedraw, worstGap, inTable,
                kVessels, kVessels - int(inTable), peakAfter, peakAfter - peakBefore);
    EXPECT_GE(sent.load(), long(kRate) * seconds * 8 / 10);
    EXPECT_EQ(inTable, size_t(kVessels)) << "every vessel is sent many times: each reached the decoder";
    EXPECT_LT(peakAfter - peakBefore, 200 * 1024) << "memory bounded";
    EXPECT_LT(worstTick, 1000.0);
}
