// Waypoints and routes sent to a GPS in the three dialects, and the
// Magellan reply wait.
#include <sstream>

#include "navobjects/GpsExport.h"
#include "tests/navobjects/NavFixture.h"

namespace ombra::test {
namespace {

TEST(GpsSentences, WaypointBodiesByDialect) {
    std::vector<std::string> cases = NavCases("gps/waypoints.txt");
    EXPECT_EQ(cases.size(), 9u);
    for (const std::string& line : cases) {
        std::vector<std::string> f;
        std::istringstream in(line + "|");  // the last field may be empty
        for (std::string x; std::getline(in, x, '|');) f.push_back(x);
        ASSERT_EQ(f.size(), 8u) << line;
        Waypoint w;
        w.Number = int16_t(std::stoi(f[2]));
        w.Name = f[3];
        w.Description = f[4];
        w.Position.Wgs84 = LatLong{std::stod(f[6]), std::stod(f[5])};
        EXPECT_EQ(WaypointSentenceBody(w, int16_t(std::stoi(f[0])), int16_t(std::stoi(f[1]))), f[7]) << line;
    }
}

TEST(GpsSentences, FurunoRenaming) {
    for (auto [in, out] : {std::pair{"R12.WP13", "13WR12"}, {"R12.WP3", "3WR12"}, {"R3.WPX", "XWR3"},
                           {"Rocks", "Rocks"}, {"W12.WP3", "W12.WP3"}})
        EXPECT_EQ(FurunoName(in), out);
}

Route SevenPoints() {
    Route r;
    r.Name = "Cross";
    r.Number = 3;
    for (int i = 1; i <= 7; ++i) {
        Waypoint p;
        p.Number = int16_t(i);
        p.Name = "R3.WP" + std::to_string(i);
        p.Position.Wgs84 = LatLong{-3600.0, 180000.0 + i};
        r.Points.push_back(p);
    }
    r.Points[0].Name = "Start line";
    r.Legs.resize(7);
    r.PointCount = 7;
    return r;
}

TEST(GpsSentences, RouteMessagesOfSixNames) {
    Route r = SevenPoints();
    EXPECT_EQ(RouteSentenceBodies(r, 2),
              (std::vector<std::string>{"PMGNRTE,2,1,c,3,CROSS,START ,R3.WP2,R3.WP3,R3.WP4,R3.WP5,R3.WP6",
                                        "PMGNRTE,2,2,c,3,R3.WP7"}));
    EXPECT_EQ(RouteSentenceBodies(r, 3),
              (std::vector<std::string>{"GPRTE,2,1,c,03,0300,0301,0302,0303,0304,0305", "GPRTE,2,2,c,03,0306"}));
    EXPECT_EQ(RouteSentenceBodies(r, 0)[1], "GPRTE,2,2,C,03,0306");
    EXPECT_EQ(RouteSentenceBodies(r, 1),
              (std::vector<std::string>{"PFEC,GPrtc,2,1,03,Start line,2WR3  ,3WR3  ,4WR3  ,5WR3  ,6WR3  ,",
                                        "PFEC,GPrtc,2,2,03,7WR3  ,", "PFEC,GPxfr,CTL,E"}));
}

// A set on the port: it records what is written and answers as told.
struct FakeSet : GpsLink {
    bool opens = true, checksums = true;
    std::vector<std::string> written;
    int closes = 0;
    std::string reply;
    bool answers = true;  // to a Magellan sentence, when the sender pumps events
    bool OpenPort() override { return opens; }
    void ClosePort() override { ++closes; }
    void Write(const std::string& t) override { written.push_back(t); }
    std::string Reply() override { return reply; }
    void ClearReply() override { reply.clear(); }
    std::string ChecksumText(const std::string& body) override {
        if (!checksums) return "";
        unsigned x = 0;
        for (char c : body) x ^= unsigned(static_cast<unsigned char>(c));
        char buf[4];
        std::snprintf(buf, sizeof buf, "*%02X", x);
        return buf;
    }
};

struct Answering : NoEvents {
    FakeSet* set = nullptr;
    void DoEvents() override {
        NoEvents::DoEvents();
        if (set && set->answers && !set->written.empty()) {
            std::string last = set->written.back();
            set->reply = last.substr(last.size() - 4, 2);  // "...*5C\r\n"
        }
    }
};

TEST(GpsTransfer, MagellanWaitsForTheChecksumReply) {
    NavWorld w;
    FakeSet set;
    Answering events;
    events.set = &set;
    GpsExport gps(set, w.dialogs, w.clock, events, w.host, w.globals.ProductName);
    Route r = SevenPoints();
    ASSERT_TRUE(gps.ExportRouteToGPS(r, 2));
    ASSERT_EQ(set.written.size(), 9u);  // seven points, two messages
    EXPECT_EQ(set.written[7].substr(0, 19), "$PMGNRTE,2,1,c,3,CR");
    EXPECT_EQ(set.written[8].substr(set.written[8].size() - 2), "\r\n");
    EXPECT_EQ(set.closes, 1);
    EXPECT_EQ(w.host.status[0], "Initialising GPS for Waypoint transfer.");
    EXPECT_TRUE(Has(w.host.status, "Exporting Waypoint 007 (R3.WP7)."));
    EXPECT_TRUE(Has(w.host.status, "Exporting Route message 002."));
    EXPECT_TRUE(w.Messages().empty());
    // Silent set: five seconds, then the one message; the rest is not sent.
    set.answers = false;
    set.written.clear();
    double before = w.clock.Timer();
    EXPECT_FALSE(gps.ExportRouteToGPS(r, 2));
    EXPECT_EQ(set.written.size(), 1u);
    EXPECT_NEAR(w.clock.Timer() - before, 5.0, 0.05);
    ASSERT_FALSE(w.Messages().empty());
    EXPECT_EQ(w.Messages().back(), kGpsProblemMessage);
    // A wrong reply fails too.
    set.written.clear();
    set.reply = "00";
    EXPECT_FALSE(gps.ExportPointToGPS(r.Points[0], 0, 2));
}

TEST(GpsTransfer, AClosedPortEndsAtOnceAndOtherSetsAreNotWaitedFor) {
    NavWorld w;
    FakeSet set;
    GpsExport gps(set, w.dialogs, w.clock, w.events, w.host, w.globals.ProductName);
    set.opens = false;
    Waypoint a;
    a.Number = 1;
    a.Name = "A";
    EXPECT_FALSE(gps.ExportWaypointsToGPS({&a}, 3));
    EXPECT_TRUE(set.written.empty());
    ASSERT_FALSE(w.Messages().empty());
    EXPECT_EQ(w.Messages().back(), kGpsProblemMessage);
    EXPECT_EQ(w.dialogs.asked.back().style, mb::Exclamation);
    set.opens = true;
    set.checksums = false;
    Waypoint freeSlot;
    double before = w.clock.Timer();
    EXPECT_TRUE(gps.ExportWaypointsToGPS({&a, &freeSlot, &a}, 3));
    ASSERT_EQ(set.written.size(), 2u);  // the free slot is skipped
    EXPECT_EQ(set.written[0], "$GPWPL,0000.000,N,00000.000,E,0001         A \r\n");
    EXPECT_EQ(w.clock.Timer(), before);
}

}  // namespace
}  // namespace ombra::test
