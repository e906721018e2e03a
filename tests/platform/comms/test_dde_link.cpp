// The data-source link over real loopback sockets: a whole conversation as
// the tick sees it, with garbage, overlong lines, too many sources and a
// source that never reads in between; and the address it listens on.
#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <ifaddrs.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <thread>

#include "platform/comms/DdeServer.h"

using namespace ombra;
using namespace std::chrono_literals;

namespace {

int Dial(uint32_t addressHostOrder, uint16_t port, int rcvbuf = 0) {
    int s = ::socket(AF_INET, SOCK_STREAM, 0);
    if (rcvbuf) ::setsockopt(s, SOL_SOCKET, SO_RCVBUF, &rcvbuf, sizeof rcvbuf);
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_port = htons(port);
    a.sin_addr.s_addr = htonl(addressHostOrder);
    if (::connect(s, reinterpret_cast<sockaddr*>(&a), sizeof a) != 0) {
        ::close(s);
        return -1;
    }
    return s;
}

struct Source {
    int fd;
    std::string pending;
    explicit Source(uint16_t port, int rcvbuf = 0) : fd(Dial(INADDR_LOOPBACK, port, rcvbuf)) {}
    ~Source() {
        if (fd >= 0) ::close(fd);
    }
    void Say(const std::string& text) { ASSERT_EQ(::send(fd, text.data(), text.size(), MSG_NOSIGNAL), ssize_t(text.size())); }
    // The next line the link sent; "" on silence, "<closed>" when it hung up.
    std::string Hear(std::chrono::milliseconds within = 3000ms) {
        auto end = std::chrono::steady_clock::now() + within;
        for (;;) {
            size_t lf = pending.find('\n');
            if (lf != std::string::npos) {
                std::string line = pending.substr(0, lf);
                pending.erase(0, lf + 1);
                return line;
            }
            auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
            if (left.count() <= 0) return "";
            pollfd p{fd, POLLIN, 0};
            if (::poll(&p, 1, int(left.count())) <= 0) continue;
            char buf[512];
            ssize_t n = ::recv(fd, buf, sizeof buf, 0);
            if (n <= 0) return "<closed>";
            pending.append(buf, size_t(n));
        }
    }
};

// Drains the link as the tick does, answering a new source with READY and
// BEGINTRANS with GO, until `want` commands arrived or the time is up.
struct Tick {
    explicit Tick(DdeServer& l) : link(l) {}
    DdeServer& link;
    std::vector<std::string> commands;
    int opened = 0, closed = 0;
    void Until(size_t want, std::chrono::milliseconds within = 3000ms) {
        auto end = std::chrono::steady_clock::now() + within;
        while (std::chrono::steady_clock::now() < end) {
            DdeEvent e;
            while (link.Poll(e)) {
                if (e.kind == DdeEvent::Kind::Opened) {
                    ++opened;
                    link.SetDataBuffer("READY");
                } else if (e.kind == DdeEvent::Kind::Closed) {
                    ++closed;
                } else {
                    commands.push_back(e.command);
                    if (e.command == "BEGINTRANS") link.SetDataBuffer("GO");
                }
            }
            if (want && commands.size() >= want) return;
            std::this_thread::sleep_for(5ms);
        }
    }
};

}  // namespace

TEST(DdeLink, ConversationSurvivesGarbageOverlongBusyAndSlowSources) {
    DdeServer link;
    ASSERT_TRUE(link.Listen(0)) << link.LastError();
    Tick tick(link);
    Source source(link.Port());
    ASSERT_GE(source.fd, 0);
    tick.Until(0, 200ms);
    EXPECT_EQ(source.Hear(), "READY");
    source.Say("?\n");
    EXPECT_EQ(source.Hear(), "READY") << "reading DataBuffer needs no tick";

    source.Say("BEGINTRANS\r\n");
    tick.Until(1);
    EXPECT_EQ(source.Hear(), "GO");

    // Garbage is passed on as it came (the parser judges it); an overlong
    // line is refused whole and the next line is whole again.
    source.Say(std::string("\x01\xff#!,,,\n", 8));
    source.Say(std::string(DdeServer::MaxLine + 10, 'X') + "\n");
    EXPECT_EQ(source.Hear(), "ERROR line too long");
    source.Say("POSITION,1,50.5,-1.25,6.5,270,FERRY,0\n");
    tick.Until(3);
    ASSERT_EQ(tick.commands.size(), 3u);
    EXPECT_EQ(tick.commands[1], std::string("\x01\xff#!,,,", 7));
    EXPECT_EQ(tick.commands[2], "POSITION,1,50.5,-1.25,6.5,270,FERRY,0");
    EXPECT_EQ(link.Stats().overlong, 1u);

    // A source that asks and asks but never reads is dropped; the others
    // carry on.
    {
        Source slow(link.Port(), 4096);
        ASSERT_GE(slow.fd, 0);
        std::string asks;
        for (int i = 0; i < 2000; ++i) asks += "?\n";
        auto end = std::chrono::steady_clock::now() + 10s;
        while (link.Stats().slow == 0 && std::chrono::steady_clock::now() < end) {
            if (::send(slow.fd, asks.data(), asks.size(), MSG_NOSIGNAL | MSG_DONTWAIT) < 0 && errno != EAGAIN) break;
            tick.Until(0, 5ms);
        }
        EXPECT_EQ(link.Stats().slow, 1u);
    }
    tick.Until(0, 300ms);
    EXPECT_EQ(source.Hear(), "READY") << "the slow source's opening was told to every source";

    // Beyond MaxSources a source is turned away at once.
    std::vector<std::unique_ptr<Source>> more;
    for (size_t i = 1; i < DdeServer::MaxSources; ++i) more.push_back(std::make_unique<Source>(link.Port()));
    tick.Until(0, 300ms);
    Source extra(link.Port());
    EXPECT_EQ(extra.Hear(), "BUSY");
    EXPECT_EQ(extra.Hear(), "<closed>");
    EXPECT_EQ(link.Stats().refused, 1u);
    EXPECT_EQ(link.Sources(), DdeServer::MaxSources);
    more.clear();

    source.Say("POSITION,2,50.6,-1.30,0,0,BUOY,1\nENDTRANS\n");
    tick.Until(5);
    ASSERT_EQ(tick.commands.size(), 5u);
    EXPECT_EQ(tick.commands[4], "ENDTRANS");
    link.Stop();
    std::string heard;
    while ((heard = source.Hear()) == "READY") {
    }  // each source that joined was announced to all
    EXPECT_EQ(heard, "<closed>");
}

// The link listens on 127.0.0.1 and on no other address of this machine.
TEST(DdeLink, ListensOnLoopbackOnly) {
    DdeServer link;
    ASSERT_TRUE(link.Listen(0));
    ifaddrs* list = nullptr;
    ASSERT_EQ(::getifaddrs(&list), 0);
    int others = 0;
    for (ifaddrs* i = list; i; i = i->ifa_next) {
        if (!i->ifa_addr || i->ifa_addr->sa_family != AF_INET) continue;
        uint32_t a = ntohl(reinterpret_cast<sockaddr_in*>(i->ifa_addr)->sin_addr.s_addr);
        if ((a >> 24) == 127) continue;
        ++others;
        int s = Dial(a, link.Port());
        EXPECT_LT(s, 0) << "reachable on " << i->ifa_name;
        if (s >= 0) ::close(s);
    }
    ::freeifaddrs(list);
    int s = Dial(INADDR_LOOPBACK, link.Port());
    EXPECT_GE(s, 0);
    ::close(s);
    // Another loopback address is not the one bound either.
    s = Dial(0x7f000002, link.Port());
    EXPECT_LT(s, 0);
    if (s >= 0) ::close(s);
    if (others == 0) GTEST_LOG_(INFO) << "no other address on this machine to try";

    // A port held by someone else is refused with a reason.
    DdeServer second;
    EXPECT_FALSE(second.Listen(link.Port()));
    EXPECT_NE(second.LastError(), "");
}
