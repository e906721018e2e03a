// What routes and boundaries share as chains of points in slots, run over
// both stores: slots kept for life, points inserted, deleted and renamed,
// moved, dropped and edited, chains shown, hidden and centred on; and the
// one reader of the store files' header and records, over all three files.
#include <memory>
#include <ostream>

#include "navobjects/Boundaries.h"
#include "navobjects/Routes.h"
#include "tests/navobjects/NavFixture.h"

namespace ombra::test {
namespace {

// One store seen through the operations both kinds of chain have.
struct ChainProbe {
    virtual ~ChainProbe() = default;
    virtual int16_t New() = 0;
    virtual int16_t Add(int16_t c, const LatLong& p) = 0;
    virtual int16_t Insert(int16_t c, int16_t part, const LatLong& p) = 0;
    virtual bool DeletePoint(int16_t c, int16_t p) = 0;
    virtual bool Move(int16_t c, int16_t p) = 0;
    virtual void Drop(int16_t c, int16_t p, const LatLong& at) = 0;
    virtual bool Edit(int16_t c, int16_t p) = 0;
    virtual bool Delete(int16_t c) = 0;
    virtual void Toggle(int16_t c) = 0;
    virtual void CentreOn() = 0;
    virtual int16_t Count() = 0;
    virtual std::vector<std::string> Items() = 0;
    virtual bool Used(int16_t c) = 0;
    virtual int16_t Display(int16_t c) = 0;
    virtual int16_t StoredCount(int16_t c) = 0;  // PointCount / MarkCount
    virtual std::vector<Waypoint>& Points(int16_t c) = 0;
    virtual int16_t SelectedChain() = 0;
    virtual int16_t SelectedPoint() = 0;
    virtual std::string PointName(int16_t c, int16_t i) = 0;
};

struct RouteProbe : ChainProbe {
    Routes& s;
    explicit RouteProbe(Routes& r) : s(r) {}
    int16_t New() override { return s.NewRoute(); }
    int16_t Add(int16_t c, const LatLong& p) override { return s.AddRoutePoint(c, p); }
    int16_t Insert(int16_t c, int16_t part, const LatLong& p) override { return s.InsertRoutePoint(c, part, p); }
    bool DeletePoint(int16_t c, int16_t p) override { return s.DeleteRoutePoint(c, p); }
    bool Move(int16_t c, int16_t p) override { return s.MoveRoutePoint(c, p); }
    void Drop(int16_t c, int16_t p, const LatLong& at) override { s.DropRoutePoint(c, p, at); }
    bool Edit(int16_t c, int16_t p) override { return s.EditRoutePoint(c, p); }
    bool Delete(int16_t c) override { return s.DeleteRoute(c); }
    void Toggle(int16_t c) override { s.DisplayRoute(c); }
    void CentreOn() override { s.CentreOnRoute(); }
    int16_t Count() override { return s.Count(); }
    std::vector<std::string> Items() override { return s.CentreOnItems(); }
    bool Used(int16_t c) override { return s.At(c)->Used(); }
    int16_t Display(int16_t c) override { return s.At(c)->Display; }
    int16_t StoredCount(int16_t c) override { return s.At(c)->PointCount; }
    std::vector<Waypoint>& Points(int16_t c) override { return s.At(c)->Points; }
    int16_t SelectedChain() override { return s.SelectedRoute; }
    int16_t SelectedPoint() override { return s.SelectedPoint; }
    std::string PointName(int16_t c, int16_t i) override { return Routes::PointName(c, i); }
};

struct BoundaryProbe : ChainProbe {
    Boundaries& s;
    explicit BoundaryProbe(Boundaries& b) : s(b) {}
    int16_t New() override { return s.NewBoundary(); }
    int16_t Add(int16_t c, const LatLong& p) override { return s.AddBoundaryMark(c, p); }
    int16_t Insert(int16_t c, int16_t part, const LatLong& p) override { return s.InsertBoundaryMark(c, part, p); }
    bool DeletePoint(int16_t c, int16_t p) override { return s.DeleteBoundaryMark(c, p); }
    bool Move(int16_t c, int16_t p) override { return s.MoveBoundaryMark(c, p); }
    void Drop(int16_t c, int16_t p, const LatLong& at) override { s.DropBoundaryMark(c, p, at); }
    bool Edit(int16_t c, int16_t p) override { return s.EditBoundaryMark(c, p); }
    bool Delete(int16_t c) override { return s.DeleteBoundary(c); }
    void Toggle(int16_t c) override { s.DisplayBoundary(c); }
    void CentreOn() override { s.CentreOnBoundary(); }
    int16_t Count() override { return s.Count(); }
    std::vector<std::string> Items() override { return s.CentreOnItems(); }
    bool Used(int16_t c) override { return s.At(c)->Used(); }
    int16_t Display(int16_t c) override { return s.At(c)->Display; }
    int16_t StoredCount(int16_t c) override { return s.At(c)->MarkCount; }
    std::vector<Waypoint>& Points(int16_t c) override { return s.At(c)->Marks; }
    int16_t SelectedChain() override { return s.SelectedBoundary; }
    int16_t SelectedPoint() override { return s.SelectedMark; }
    std::string PointName(int16_t c, int16_t i) override { return Boundaries::MarkName(c, i); }
};

struct ChainKind {
    const char* kind;
    std::unique_ptr<ChainProbe> (*make)(NavObjects&);
    const char* firstPointName;  // point 1 of chain 1
    const char* slotCaption;     // the input box title of slot 2
    bool closed;                 // a point may follow the last
    const char* deleteQuestion;  // asked before a chain goes
    bool pointDeleteAsks;        // asked before a point goes
    const char* editCaption;     // the dialog of point 2
    const char* editLabel;
    const char* centreTitle;
};

void PrintTo(const ChainKind& k, std::ostream* os) { *os << k.kind; }

const ChainKind kKinds[] = {
    {"routes", [](NavObjects& n) -> std::unique_ptr<ChainProbe> { return std::make_unique<RouteProbe>(n.routes); },
     "R1.WP1", "Route:  002", false, "Confirm deletion of route.", false, "Edit Way Point", "Route: Alpha",
     "Select Route To Centre On"},
    {"boundaries",
     [](NavObjects& n) -> std::unique_ptr<ChainProbe> { return std::make_unique<BoundaryProbe>(n.boundaries); },
     "B1.BM1", "Boundary:  002", true, "Confirm deletion.", true, "Boundary Mark 2", "Boundary: Alpha",
     "Select Boundary To Centre On"},
};

struct Chains : NavSet, ::testing::WithParamInterface<ChainKind> {
    std::unique_ptr<ChainProbe> s;
    void SetUp() override {
        NavSet::SetUp();
        s = GetParam().make(nav);
    }
    // A chain named `name` with `n` points a minute of latitude apart.
    int16_t Make(const std::string& name, int n) {
        w.dialogs.texts.push_back(name);
        int16_t c = s->New();
        for (int i = 0; i < n; ++i) s->Add(c, DM(50, i, -5, 0));
        return c;
    }
    std::vector<std::string> Names(int16_t c) {
        std::vector<std::string> out;
        for (const Waypoint& p : s->Points(c)) out.push_back(p.Name + "#" + std::to_string(p.Number));
        return out;
    }
    bool Asked(const std::string& text) const { return Has(w.Messages(), text); }
};

TEST_P(Chains, SlotsAreKeptForLife) {
    ASSERT_EQ(Make("Alpha", 1), 1);
    ASSERT_EQ(Make("Bravo", 1), 2);
    ASSERT_EQ(Make("Charlie", 2), 3);
    // A chain that is not the last leaves its slot free: the others keep their numbers.
    EXPECT_TRUE(s->Delete(2));
    EXPECT_TRUE(Asked(GetParam().deleteQuestion));
    EXPECT_EQ(s->Count(), 3);
    EXPECT_FALSE(s->Used(2));
    EXPECT_EQ(s->Items(), (std::vector<std::string>{"0001 - Alpha", "0003 - Charlie"}));
    // The first free slot is taken next, and offered under its number.
    EXPECT_EQ(Make("Delta", 0), 2);
    EXPECT_EQ(w.dialogs.asked.back().title, GetParam().slotCaption);
    EXPECT_EQ(s->SelectedChain(), 2);
    EXPECT_EQ(s->Display(2), -1);
    // A chain without points is not offered to centre on.
    EXPECT_EQ(s->Items().size(), 2u);
    // The last slot goes with its chain.
    EXPECT_TRUE(s->Delete(3));
    EXPECT_EQ(s->Count(), 2);
    // A refused confirmation keeps the chain.
    w.dialogs.replies.push_back(mb::No);
    EXPECT_FALSE(s->Delete(1));
    EXPECT_TRUE(s->Used(1));
    // A cancelled or blank name makes nothing, and takes no slot.
    for (const char* answer : {"\x18", "   "}) {
        w.dialogs.texts.push_back(answer);
        EXPECT_EQ(s->New(), 0) << answer;
        EXPECT_EQ(s->Count(), 2);
    }
    EXPECT_FALSE(s->Delete(7));
    EXPECT_FALSE(s->Delete(0));
}

TEST_P(Chains, GeneratedNamesFollowTheirIndex) {
    int16_t c = Make("Alpha", 3);
    EXPECT_EQ(s->Points(c)[0].Name, GetParam().firstPointName);
    s->Points(c)[2].Name = "Bar";  // typed names stay as typed
    const std::string p1 = s->PointName(c, 1), p2 = s->PointName(c, 2), p3 = s->PointName(c, 3);
    EXPECT_EQ(s->Insert(c, 1, DM(50, 0.5, -5, 0)), 2);
    EXPECT_EQ(Names(c), (std::vector<std::string>{p1 + "#1", p2 + "#2", p3 + "#3", "Bar#4"}));
    EXPECT_EQ(s->Points(c)[1].Position.Wgs84, DM(50, 0.5, -5, 0));
    EXPECT_EQ(s->StoredCount(c), 4);
    EXPECT_TRUE(s->DeletePoint(c, 1));
    EXPECT_EQ(Asked("Confirm deletion."), GetParam().pointDeleteAsks);
    EXPECT_EQ(Names(c), (std::vector<std::string>{p1 + "#1", p2 + "#2", "Bar#3"}));
    EXPECT_EQ(s->StoredCount(c), 3);
    // Where a point may go: into a leg or side; after the last only when the chain closes.
    enum { Never, Always, IfClosed };
    struct {
        int16_t part;
        bool fromEnd;  // part counted from the number of points
        int accepted;
    } parts[] = {{0, false, Never}, {2, false, Always}, {0, true, IfClosed}, {1, true, Never}, {-1, false, Never}};
    for (const auto& p : parts) {
        size_t before = s->Points(c).size();
        int16_t part = int16_t(p.fromEnd ? int(before) + p.part : p.part);
        SCOPED_TRACE(part);
        bool accepted = p.accepted == Always || (p.accepted == IfClosed && GetParam().closed);
        int16_t got = s->Insert(c, part, DM(51, 0, -5, 0));
        EXPECT_EQ(got != 0, accepted);
        if (got) {
            EXPECT_EQ(got, part + 1);
            EXPECT_EQ(s->Points(c)[size_t(got - 1)].Name, s->PointName(c, got));
        }
        EXPECT_EQ(s->Points(c).size(), before + (accepted ? 1 : 0));
    }
    EXPECT_EQ(Names(c).back(), GetParam().closed ? s->PointName(c, 5) + "#5" : "Bar#4");
    // Taking the last point takes the chain.
    while (s->Count() > 0 && !s->Points(c).empty()) ASSERT_TRUE(s->DeletePoint(c, 1));
    EXPECT_EQ(s->Count(), 0);
    EXPECT_EQ(s->Add(c, DM(50, 0, -5, 0)), 0);
}

TEST_P(Chains, MoveDropAndEdit) {
    int16_t c = Make("Alpha", 3);
    w.host.variation = 2.5f;
    // A move puts the cursor on the point and selects it.
    EXPECT_TRUE(s->Move(c, 2));
    ASSERT_FALSE(w.host.cursorAt.empty());
    EXPECT_EQ(w.host.cursorAt.back(), w.chart.Pixel(DM(50, 1, -5, 0)));
    EXPECT_EQ(s->SelectedChain(), c);
    EXPECT_EQ(s->SelectedPoint(), 2);
    // The drop places it: variation and chart datum renewed, the selection cleared.
    s->Drop(c, 2, DM(50, 4, -4, 0));
    const Waypoint& p = s->Points(c)[1];
    EXPECT_EQ(p.Position.Wgs84, DM(50, 4, -4, 0));
    EXPECT_EQ(p.Position.Local, (LatLong{DM(50, 4, -4, 0).Long + 3.0, DM(50, 4, -4, 0).Lat - 2.0}));
    EXPECT_FLOAT_EQ(p.MagVar, 2.5f);
    EXPECT_EQ(s->SelectedPoint(), 0);
    // The edit dialog names the point and the chain; its record is kept but for the number.
    w.host.waypointDialog = [](WaypointDialogRequest& r) {
        r.Record.Name = "Typed";
        r.Record.Number = 99;
        r.Record.Position.Wgs84 = DM(49, 0, -3, 0);
        return true;
    };
    w.host.variation = -1.0f;
    EXPECT_TRUE(s->Edit(c, 2));
    EXPECT_EQ(w.host.asked.back().title, GetParam().editCaption);
    EXPECT_EQ(w.host.asked.back().text, GetParam().editLabel);
    EXPECT_EQ(p.Name, "Typed");
    EXPECT_EQ(p.Number, 2);
    EXPECT_FLOAT_EQ(p.MagVar, -1.0f);
    EXPECT_EQ(p.Position.Local.Long, DM(49, 0, -3, 0).Long + 3.0);
    w.host.waypointDialog = nullptr;  // cancelled
    EXPECT_FALSE(s->Edit(c, 2));
    EXPECT_EQ(p.Name, "Typed");
    // Points that are not there.
    for (int16_t bad : {0, 4}) {
        EXPECT_FALSE(s->Move(c, bad));
        EXPECT_FALSE(s->Edit(c, bad));
        EXPECT_FALSE(s->DeletePoint(c, bad));
        EXPECT_FALSE(s->Move(5, 1));
    }
    EXPECT_EQ(s->Points(c).size(), 3u);
}

TEST_P(Chains, DisplayAndCentreOn) {
    Make("Alpha", 2);
    int16_t b = Make("Bravo", 2);
    s->Points(b)[0].Position.Wgs84 = DM(48, 0, -2, 0);
    int redraws = w.chart.redraws;
    s->Toggle(b);
    EXPECT_EQ(s->Display(b), 0);
    EXPECT_GT(w.chart.redraws, redraws);
    s->Toggle(b);
    EXPECT_EQ(s->Display(b), -1);
    w.host.listPicks = {1, -1};
    s->CentreOn();
    EXPECT_EQ(w.host.asked.back().title, GetParam().centreTitle);
    EXPECT_EQ(w.host.asked.back().items, (std::vector<std::string>{"0001 - Alpha", "0002 - Bravo"}));
    s->CentreOn();  // cancelled
    EXPECT_EQ(w.chart.centred, (std::vector<LatLong>{DM(48, 0, -2, 0)}));
}

INSTANTIATE_TEST_SUITE_P(Stores, Chains, ::testing::ValuesIn(kKinds),
                         [](const ::testing::TestParamInfo<ChainKind>& i) { return std::string(i.param.kind); });

// The store files' reader: header, records, faults by line, the slot limit.
TEST(StoreFiles, OneReaderForEveryStore) {
    using Reader = size_t (*)(const std::string&, std::string&, ReadOutcome&);
    const Reader waypoints = [](const std::string& t, std::string& n, ReadOutcome& o) {
        std::vector<Waypoint> v;
        o = ReadWaypointFile(t, n, v);
        return v.size();
    };
    const Reader routes = [](const std::string& t, std::string& n, ReadOutcome& o) {
        std::vector<Route> v;
        o = ReadRouteFile(t, n, v);
        return v.size();
    };
    const Reader boundaries = [](const std::string& t, std::string& n, ReadOutcome& o) {
        std::vector<Boundary> v;
        o = ReadBoundaryFile(t, n, v);
        return v.size();
    };
    const std::string head = "\"Ver 2.19\"\r\n\"Home\"\r\n";
    const std::string wp = "\"WP1\",1,\"\",180000,-18000,0,1,0.5,1,0,\"\"\r\n";
    const std::string freeWp = "\"\",0,\"\",0,0,0,0,0,0,0,\"\"\r\n";
    const std::string freeRoute = "\"\",0,\"\",0,0,#FALSE#,0\r\n";
    const std::string freeBoundary = "\"\",0,\"\",0,0,0,0,0,0\r\n";
    auto times = [](const std::string& line, int n) {
        std::string s;
        for (int i = 0; i < n; ++i) s += line;
        return s;
    };
    struct {
        const char* what;
        Reader read;
        std::string text;
        const char* name;  // after reading; "-" untouched
        size_t kept;
        bool whole;
        int line;           // of the fault, when there is a record to name
        const char* fault;  // part of its text
    } cases[] = {
        {"waypoints whole", waypoints, head + wp + freeWp, "Home", 2, true, 0, ""},
        {"waypoints, no header", waypoints, wp, "-", 1, true, 0, ""},
        {"waypoints, a short line", waypoints, head + wp + "\"WP2\",2,\"\",1,2\r\n" + wp, "Home", 1, false, 4, ""},
        {"waypoints over the limit", waypoints, head + times(freeWp, 32768), "Home", 32767, false, 32769,
         "More than 32,767 waypoints"},
        {"routes over the limit", routes, head + times(freeRoute, 32768), "Home", 32767, false, 32769,
         "More than 32,767 routes"},
        {"boundaries over the limit", boundaries, head + times(freeBoundary, 32768), "Home", 32767, false, 32769,
         "More than 32,767 boundaries"},
        {"a route cut short is dropped", routes, head + freeRoute + "\"R2\",2,\"\",2,-1,#TRUE#,0\r\n" + wp, "Home", 1,
         false, 5, ""},
        {"a boundary's marks miscounted", boundaries, head + "\"B1\",1,\"\",-2,0,0,0,0,0\r\n", "Home", 0, false, 3,
         "negative number of marks"},
        {"empty: not even a header", boundaries, "", "-", 0, false, 0, ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        std::string name = "-";
        ReadOutcome out;
        EXPECT_EQ(c.read(c.text, name, out), c.kept);
        EXPECT_EQ(name, c.name);
        EXPECT_EQ(out.whole, c.whole);
        if (c.line > 0) {
            EXPECT_EQ(out.line, c.line) << out.fault;
        }
        EXPECT_TRUE(Has(out.fault, c.fault)) << out.fault;
    }
}

}  // namespace
}  // namespace ombra::test
