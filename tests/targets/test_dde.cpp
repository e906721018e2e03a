// The data-source link's targets in a plotter without windows: the command
// parser over good and bad POSITION lines, and a whole conversation driven
// through the plotter's tick: the state machine, DataBuffer, the two
// questions, the console rows and the redraws of a transfer.
#include <gtest/gtest.h>

#include <cmath>

#include "platform/fake/ManualClock.h"
#include "platform/fake/MemorySettings.h"
#include "platform/fake/ScriptedDialogs.h"
#include "plotter/Plotter.h"
#include "plotter/WindowlessShell.h"
#include "tests/support/TestSupport.h"
#include "tests/targets/FakeLink.h"

using namespace ombra;

TEST(DdeParser, PositionFields) {
    struct Case {
        const char* command;
        bool ok;
        int slot;
        double lat, lon, speed, course;
        const char* name;
        bool error;
    };
    const Case cases[] = {
        {"POSITION,1,50.5,-1.25,6.5,270,FERRY,0", true, 1, 50.5, -1.25, 6.5, 270, "FERRY", false},
        {"POSITION,100,-33.9,151.2,0,0, PILOT ,extra,fields,1", true, 100, -33.9, 151.2, 0, 0, "PILOT", true},
        {"position,0,0,0,12,370,A,1", true, 0, 0, 0, 12, 10, "A", true},     // course brought inside 0..360
        {"POSITION,0,0,0,12,-90,A,0", true, 0, 0, 0, 12, 270, "A", false},
        {"POSITION,3,10,20,1,2,NAME1", true, 3, 10, 20, 1, 2, "NAME1", true},  // the last character decides
        {"POSITION,101,50,-1,6,270,X,0", false, 0, 0, 0, 0, 0, "", false},   // past the last slot
        {"POSITION,-1,50,-1,6,270,X,0", false, 0, 0, 0, 0, 0, "", false},
        {"POSITION,1.5,50,-1,6,270,X,0", false, 0, 0, 0, 0, 0, "", false},
        {"POSITION,1,91,-1,6,270,X,0", false, 0, 0, 0, 0, 0, "", false},
        {"POSITION,1,50,-181,6,270,X,0", false, 0, 0, 0, 0, 0, "", false},
        {"POSITION,1,50,-1,-6,270,X,0", false, 0, 0, 0, 0, 0, "", false},
        {"POSITION,1,50,-1,6,nan,X,0", false, 0, 0, 0, 0, 0, "", false},
        {"POSITION,1,5O,-1,6,270,X,0", false, 0, 0, 0, 0, 0, "", false},  // a letter O for a nought
        {"POSITION,1,50,-1,6,270,,0", false, 0, 0, 0, 0, 0, "", false},  // no name
        {"POSITION,1,50,-1,6,270", false, 0, 0, 0, 0, 0, "", false},
        {"POSITION", false, 0, 0, 0, 0, 0, "", false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.command);
        DdePosition p;
        ASSERT_EQ(ParseDdePosition(c.command, p), c.ok);
        if (!c.ok) continue;
        EXPECT_EQ(p.slot, c.slot);
        EXPECT_DOUBLE_EQ(p.lat, c.lat);
        EXPECT_DOUBLE_EQ(p.lon, c.lon);
        EXPECT_DOUBLE_EQ(p.speed, c.speed);
        EXPECT_NEAR(p.course, c.course, 1e-9);
        EXPECT_EQ(p.name, c.name);
        EXPECT_EQ(p.error, c.error);
    }
    EXPECT_EQ(DdeKeyword(" begintrans"), "BEGINTRANS");
    EXPECT_EQ(DdeKeyword("EndTrans,now"), "ENDTRANS");
}

namespace {

struct CountingShell : WindowlessShell {
    int redraws = 0;
    void ChartRedrawRequested() override { ++redraws; }
};

struct Harbour {
    test::TempDir dir;
    MemorySettings store;
    ScriptedDialogs dialogs;
    ManualClock clock;
    NoEvents events;
    CountingShell shell;
    test::FakeLink link;
    Plotter plotter{{store, dialogs, clock, events, shell, nullptr, nullptr, nullptr, &link}};
    Harbour() { clock.now = DateTime{2026, 11, 23, 10, 0, 0, 0}; }
    bool Start() { return plotter.Start("NOSPLASH", dir / "ombra", dir / "home", ""); }
    void Ticks(int n = 1) {
        for (int i = 0; i < n; ++i) {
            plotter.Tick();
            clock.Advance(0.1);
        }
    }
    std::vector<std::string> Asked(size_t from = 0) const {
        std::vector<std::string> texts;
        for (size_t i = from; i < dialogs.asked.size(); ++i) texts.push_back(dialogs.asked[i].text);
        return texts;
    }
};

}  // namespace

TEST(DdeConversation, StatesDataBufferQuestionsAndConsole) {
    Harbour h;
    ASSERT_TRUE(h.Start());
    Dde& dde = h.plotter.dde();
    EXPECT_FALSE(h.link.listening) << "the link is off line until the navigator puts it on";
    EXPECT_EQ(dde.LinkState(), Dde::State::Closed);

    h.link.Open();
    h.link.Send("POSITION,1,50.5,-1.25,6.5,270,FERRY,0");  // before a transfer: ignored
    h.Ticks();
    EXPECT_EQ(h.link.dataBuffer, "READY");
    EXPECT_EQ(dde.LinkState(), Dde::State::Ready);
    EXPECT_TRUE(dde.NamedTargets().empty());

    size_t asked = h.dialogs.asked.size();
    h.link.Send("BeginTrans");
    h.Ticks();
    EXPECT_EQ(h.link.dataBuffer, "GO");
    EXPECT_EQ(dde.LinkState(), Dde::State::Running);
    EXPECT_EQ(h.Asked(asked), std::vector<std::string>{"    DDE Data source has requested communication.\n"
                                                       "Data will be available when you have loaded a chart."});
    EXPECT_EQ(h.dialogs.asked.back().title, "Tarnel DDE");

    h.link.Send("POSITION,0,50.5,-1.25,6.5,270,FERRY,0");
    h.link.Send("POSITION,7,50.25,-1.5,12,45.5,PILOT,0");
    h.Ticks();
    ASSERT_EQ(dde.NamedTargets(), (std::vector<int>{0, 7}));
    EXPECT_EQ(dde.TargetCount(), 8);
    const DdeTarget& ferry = dde.Targets()[0];
    EXPECT_DOUBLE_EQ(ferry.Point.Lat, 50.5 * 3600.0);
    EXPECT_DOUBLE_EQ(ferry.Point.Long, -1.25 * 3600.0);
    const auto& rows = h.plotter.instruments().console.LabDDE;
    EXPECT_EQ(rows[0], "FERRY");
    EXPECT_EQ(rows[2], "6.5");
    EXPECT_EQ(rows[3], "270.0");
    EXPECT_NE(rows[1].find("50"), std::string::npos);

    // The error digit: asked once while it stays raised; a yes zooms to it.
    asked = h.dialogs.asked.size();
    h.dialogs.replies = {mb::Yes};
    h.link.Send("POSITION,7,50.25,-1.5,12,45.5,PILOT,1");
    h.link.Send("POSITION,7,50.26,-1.5,12,45.5,PILOT,1");
    h.Ticks();
    EXPECT_EQ(h.Asked(asked), std::vector<std::string>{"'PILOT' has reported an error!\nZoom to target?"});
    EXPECT_TRUE(dde.Targets()[7].Error);
    h.link.Send("POSITION,7,50.27,-1.5,12,45.5,PILOT,0");
    h.link.Send("POSITION,7,50.28,-1.5,12,45.5,PILOT,1");
    h.dialogs.replies = {mb::No};
    h.Ticks();
    EXPECT_EQ(h.Asked(asked).size(), 2u) << "cleared, then raised again: asked again";

    // Parse failures: a question every ten; "no" ends the transfer.
    asked = h.dialogs.asked.size();
    for (int i = 0; i < Dde::kParseFailuresToAsk - 1; ++i) h.link.Send(i % 2 ? "POSITION,1,x" : "\x01garbage");
    h.Ticks();
    EXPECT_EQ(h.Asked(asked).size(), 0u);
    h.dialogs.replies = {mb::No};
    h.link.Send("POSITION,200,50,-1,6,270,FAR,0");
    h.Ticks();
    EXPECT_EQ(h.Asked(asked), std::vector<std::string>{"A number of errors have occurred during DDE parsing.\n"
                                                       "                Keep trying?"});
    EXPECT_FALSE(dde.Enabled());
    h.link.Send("POSITION,2,50,-1,6,270,LATE,0");
    h.Ticks();
    EXPECT_TRUE(dde.Targets()[2].Name.empty()) << "a stopped transfer places nothing";

    asked = h.dialogs.asked.size();
    h.link.Send("ENDTRANS");
    h.Ticks();
    EXPECT_EQ(h.Asked(asked), std::vector<std::string>{"The DDE link has been closed down by the data source."});
    EXPECT_EQ(dde.LinkState(), Dde::State::Ready);
    EXPECT_EQ(dde.NamedTargets().size(), 2u) << "the table stays";
    h.link.Close(0);
    h.Ticks();
    EXPECT_EQ(dde.LinkState(), Dde::State::Closed);
}

// During a transfer the chart is redrawn every update interval, and not
// otherwise; with parse errors unticked no question is asked.
TEST(DdeConversation, RedrawsOnTheIntervalAndQuietParseErrors) {
    Harbour h;
    h.store.Write("Vestrane", "Tarnel", "DDEInterval", "2");
    h.store.Write("Vestrane", "Tarnel", "DDEParseErrors", "False");
    ASSERT_TRUE(h.Start());
    h.Ticks(30);
    const int idle = h.shell.redraws;
    h.link.Open();
    h.link.Send("BEGINTRANS");
    h.dialogs.replies = {mb::OK};
    h.Ticks();
    int start = h.shell.redraws;
    h.Ticks(60);  // six seconds: three more intervals
    EXPECT_EQ(h.shell.redraws - start, 3);
    EXPECT_GT(start, idle);
    size_t asked = h.dialogs.asked.size();
    for (int i = 0; i < 3 * Dde::kParseFailuresToAsk; ++i) h.link.Send("POSITION,bad");
    h.Ticks();
    EXPECT_EQ(h.dialogs.asked.size(), asked);
    EXPECT_TRUE(h.plotter.dde().Enabled());
    h.link.Send("ENDTRANS");
    h.Ticks();
    start = h.shell.redraws;
    h.Ticks(60);
    EXPECT_EQ(h.shell.redraws, start);
}
