// The region reader: what it writes it reads back, and every damaged or
// inconsistent pair is refused with a message that says what is wrong.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>

#include "tests/platform/tidestream/TideRigs.h"

namespace ombra::test {
namespace {

tide::RegionData Sample() {
    auto r = UniformGrid({"M2", "S2"}, {{0.5f, 10, 0.25f, 100}, {0.1f, 200, 0.05f, 300}}, 3, 4);
    r.sea[5] = 0;
    r.timeOffsetMinutes = -60;
    return r;
}

TEST(TideRegion, GridAndStationRegionsReadBackAsWritten) {
    tide::RegionData st;
    st.name = "Two stations";
    st.south = 10;
    st.west = 20;
    st.north = 11;
    st.east = 21;
    st.constituents = {"K1"};
    st.layout = tide::Layout::Stations;
    st.radiusNm = 7.5;
    st.stations = {{10.5, 20.5, "Alpha narrows"}, {10.25, 20.75, ""}};
    st.sea = {1, 1};
    st.harmonics = {{1, 2, 3, 4}, {5, 6, 7, 8}};
    for (const tide::RegionData& in : {Sample(), st}) {
        std::string err;
        auto out = tide::ParseRegion(tide::HeaderText(in), tide::HarmonicsBytes(in), &err);
        ASSERT_TRUE(out) << err;
        EXPECT_EQ(out->name, in.name);
        EXPECT_EQ(out->constituents, in.constituents);
        EXPECT_EQ(out->timeOffsetMinutes, in.timeOffsetMinutes);
        EXPECT_EQ(out->NodeCount(), in.NodeCount());
        EXPECT_EQ(out->sea, in.sea);
        EXPECT_DOUBLE_EQ(out->north, in.north);
        EXPECT_DOUBLE_EQ(out->radiusNm, in.radiusNm);
        ASSERT_EQ(out->stations.size(), in.stations.size());
        for (size_t i = 0; i < in.stations.size(); ++i) EXPECT_EQ(out->stations[i].name, in.stations[i].name);
        ASSERT_EQ(out->harmonics.size(), in.harmonics.size());
        for (size_t i = 0; i < in.harmonics.size(); ++i) {
            EXPECT_EQ(out->harmonics[i].eastAmp, in.harmonics[i].eastAmp);
            EXPECT_EQ(out->harmonics[i].northPhase, in.harmonics[i].northPhase);
        }
    }
}

void Replace(std::string& s, const std::string& from, const std::string& to) {
    const size_t at = s.find(from);
    ASSERT_NE(at, std::string::npos) << from;
    s.replace(at, from.size(), to);
}

void PutFloat(std::string& s, size_t at, float f) { std::memcpy(&s[at], &f, 4); }

TEST(TideRegion, DamagedOrInconsistentPairsAreRefusedWithAReason) {
    // Record layout: 20-byte head, then per node 4 bytes of flags and 16 per constituent.
    const size_t node0 = 20, firstAmp = node0 + 4;
    const struct {
        const char* what;
        std::function<void(std::string& hdr, std::string& hrm)> damage;
        const char* reason;  // a word the message must hold
    } cases[] = {
        {"empty header", [](auto& h, auto&) { h.clear(); }, "empty"},
        {"foreign header", [](auto& h, auto&) { h[0] = 'X'; }, "not a tide region"},
        {"no name", [](auto& h, auto&) { Replace(h, "Name=Test", "Name= "); }, "Name"},
        {"inverted box", [](auto& h, auto&) { Replace(h, "Box=50 -2 51 -1", "Box=51 -2 50 -1"); }, "Box"},
        {"box off the earth", [](auto& h, auto&) { Replace(h, "Box=50 -2 51 -1", "Box=50 -2 91 -1"); }, "Box"},
        {"box not numbers", [](auto& h, auto&) { Replace(h, "Box=50 -2 51 -1", "Box=50 -2 5x1 -1"); }, "Box"},
        {"unknown constituent", [](auto& h, auto&) { Replace(h, "S2", "ZZ9"); }, "unknown constituent"},
        {"constituent twice", [](auto& h, auto&) { Replace(h, "S2", "m2"); }, "twice"},
        {"grid of one row", [](auto& h, auto&) { Replace(h, "Grid=3 4", "Grid=1 12"); }, "Grid"},
        {"grid beyond the limit", [](auto& h, auto&) { Replace(h, "Grid=3 4", "Grid=4000 4000"); }, "Grid"},
        {"station in a grid", [](auto& h, auto&) { h += "Station=50.5 -1.5 A\n"; }, "Station"},
        {"stations without radius", [](auto& h, auto&) { Replace(h, "Layout=Grid\nGrid=3 4", "Layout=Stations\nStation=50.5 -1.5 A"); }, "Radius"},
        {"unknown key", [](auto& h, auto&) { h += "Depth=4\n"; }, "unknown key"},
        {"absurd time offset", [](auto& h, auto&) { Replace(h, "TimeOffset=-60", "TimeOffset=9999"); }, "TimeOffset"},
        {"empty harmonics", [](auto&, auto& m) { m.clear(); }, "not a tide harmonics"},
        {"foreign harmonics", [](auto&, auto& m) { m[3] = 'x'; }, "not a tide harmonics"},
        {"unknown version", [](auto&, auto& m) { m[8] = 2; }, "version"},
        {"node count differs", [](auto&, auto& m) { m[12] = 11; }, "the header says"},
        {"constituent count differs", [](auto&, auto& m) { m[16] = 3; }, "the header says"},
        {"truncated", [](auto&, auto& m) { m.resize(m.size() - 1); }, "truncated"},
        {"padded", [](auto&, auto& m) { m.push_back(0); }, "truncated or padded"},
        {"unknown node flags", [](auto&, auto& m) { m[node0] = 7; }, "flags"},
        {"negative amplitude", [=](auto&, auto& m) { PutFloat(m, firstAmp, -1.0f); }, "out of range"},
        {"NaN amplitude", [=](auto&, auto& m) { PutFloat(m, firstAmp, std::nanf("")); }, "out of range"},
        {"infinite phase", [=](auto&, auto& m) { PutFloat(m, firstAmp + 4, INFINITY); }, "out of range"},
        {"amplitude of 30 m/s", [=](auto&, auto& m) { PutFloat(m, firstAmp + 8, 30.0f); }, "out of range"},
    };
    for (const auto& c : cases) {
        std::string hdr = tide::HeaderText(Sample()), hrm = tide::HarmonicsBytes(Sample());
        ASSERT_TRUE(tide::ParseRegion(hdr, hrm, nullptr)) << "the sample itself must be good";
        c.damage(hdr, hrm);
        std::string err;
        EXPECT_FALSE(tide::ParseRegion(hdr, hrm, &err)) << c.what;
        EXPECT_NE(err.find(c.reason), std::string::npos) << c.what << ": \"" << err << "\"";
    }
}

}  // namespace
}  // namespace ombra::test
