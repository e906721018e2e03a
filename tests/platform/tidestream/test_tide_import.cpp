// Regions built by ombra-cli from XTide's harmonic database, as installed by
// the project's package list: at a current station's own position the
// region predicts that station's stream, as computed from the database's
// own constants, node factors and equilibrium arguments (leaving out the
// few constituents the model does not carry, which the build reports).
#include <gtest/gtest.h>

#include <cmath>
#include <array>
#include <cstring>
#include <filesystem>

#include <tcd.h>

#include "platform/tidestream/TcdImport.h"
#include "tests/platform/tidestream/TideRigs.h"

namespace ombra::test {
namespace {

const char* kTcd = "/usr/share/xtide/harmonics-dwf-20191229-free.tcd";
constexpr double kRad = 3.14159265358979323846 / 180.0;

// The station's speed along its flood direction, knots, at its own standard
// time, from the database alone.
double DatabaseStream(int record, int y, int mo, int d, int h, int mi) {
    TIDE_RECORD rec;
    EXPECT_GE(read_tide_record(record, &rec), 0);
    const double hours = (tide::DaysFromJ2000(y, mo, d, h, mi, 0) - tide::DaysFromJ2000(y, 1, 1, 0, 0, 0)) * 24;
    double v = rec.datum_offset;
    const DB_HEADER_PUBLIC hd = get_tide_db_header();
    const int year = y - hd.start_year;
    for (unsigned k = 0; k < hd.constituents; ++k) {
        if (rec.amplitude[k] <= 0 || !tide::FindConstituent(get_constituent(int(k)))) continue;
        const double arg = get_equilibrium(int(k), year) + get_speed(int(k)) * hours - rec.epoch[k];
        v += get_node_factor(int(k), year) * rec.amplitude[k] * std::cos(arg * kRad);
    }
    return v;
}

TEST(TideImport, RegionPredictsEachStationsOwnStream) {
    if (!std::filesystem::exists(kTcd)) GTEST_SKIP() << kTcd << " is absent: install xtide-data (tools/install-deps.sh)";
    TempDir dir;
    // Chesapeake Bay (one station, UTC-5), Puget Sound (UTC-8, depth bins).
    const struct {
        const char* box[4];
        const char* station;  // a name the region must hold
    } regions[] = {
        {{"36.5", "-77", "39.7", "-75.5"}, "Baltimore Harbor Approach"},
        {{"47", "-123", "48.5", "-122"}, "Agate Passage, south end (Depth 8.7ft)"},
    };
    int n = 0;
    for (const auto& reg : regions) {
        const std::string base = "Region0" + std::to_string(++n);
        const RunResult run = test::Run({CliPath(), "tide", "build-region", "--tcd", kTcd, "--box", reg.box[0],
                                   reg.box[1], reg.box[2], reg.box[3], "--out", dir / base});
        ASSERT_EQ(run.exitCode, 0) << run.err;
        std::string err;
        auto region = tide::ParseRegion(ReadFile(dir / (base + ".Hdr")), ReadFile(dir / (base + ".Hrm")), &err);
        ASSERT_TRUE(region) << err;
        StreamRig rig;
        rig.Path(dir.path());
        ASSERT_EQ(rig.Select(base), 0) << rig.stream.LastError();
        ASSERT_TRUE(open_tide_db(const_cast<char*>(kTcd)));
        bool sawStation = false;
        for (const tide::Station& st : region->stations) {
            sawStation |= st.name.find(reg.station) != std::string::npos;
            char name[ONELINER_LENGTH] = {};
            std::strncpy(name, st.name.c_str(), sizeof name - 1);
            const int record = find_station(name);
            ASSERT_GE(record, 0) << st.name;
            TIDE_RECORD rec;
            read_tide_record(record, &rec);
            const int z = rec.zone_offset;
            const int zoneMinutes = (z < 0 ? -1 : 1) * (std::abs(z) / 100 * 60 + std::abs(z) % 100);
            // The region's clock may differ from this station's standard time.
            const int shift = region->timeOffsetMinutes - zoneMinutes;
            for (const auto& t : {std::array<int, 5>{2024, 3, 10, 5, 0}, {2027, 8, 21, 14, 40}, {2033, 12, 2, 21, 15}}) {
                int h = t[3] * 60 + t[4] + shift;
                ASSERT_TRUE(h >= 0 && h < 24 * 60);
                const Prediction p = rig.At(st.lat, st.lon, t[0], t[1], t[2], h / 60, h % 60);
                ASSERT_EQ(p.result, 0) << st.name;
                const double along = p.east * std::sin(rec.max_direction * kRad) + p.north * std::cos(rec.max_direction * kRad);
                const double expected = DatabaseStream(record, t[0], t[1], t[2], t[3], t[4]) * 1852.0 / 3.6;
                EXPECT_NEAR(along, expected, 6.0) << st.name << " " << t[0] << " zone " << zoneMinutes << " nodes " << p.nodes;
                if (std::fabs(expected) > 50) {
                    EXPECT_NEAR(std::remainder(p.dir / 10.0 - rec.max_direction - (expected < 0 ? 180 : 0), 360.0), 0, 0.6)
                        << st.name;
                }
            }
        }
        close_tide_db();
        EXPECT_TRUE(sawStation) << reg.station;
    }
}

TEST(TideImport, BadRequestsFailWithAReason) {
    if (!std::filesystem::exists(kTcd)) GTEST_SKIP() << kTcd << " is absent: install xtide-data (tools/install-deps.sh)";
    TempDir dir;
    WriteFile(dir / "empty.tcd", "");  // stops libtcd itself with an assertion
    std::string cut = ReadFile(kTcd);
    WriteFile(dir / "cut.tcd", cut.substr(0, 5000));
    const struct {
        std::vector<std::string> args;
        int exitCode;
        const char* says;
    } cases[] = {
        {{"--tcd", kTcd, "--box", "10", "-40", "11", "-39", "--out", dir / "Region01"}, 1, "no tidal-current station"},
        {{"--tcd", kTcd, "--box", "11", "-40", "10", "-39", "--out", dir / "Region01"}, 1, "box"},
        {{"--tcd", dir / "none.tcd", "--box", "10", "-40", "11", "-39", "--out", dir / "Region01"}, 1, "cannot read"},
        {{"--tcd", dir / "empty.tcd", "--box", "10", "-40", "11", "-39", "--out", dir / "Region01"}, 1, "damaged"},
        {{"--tcd", dir / "cut.tcd", "--box", "-90", "-180", "90", "180", "--out", dir / "Region01"}, 1, "no tidal-current station"},
        {{"--tcd", kTcd, "--box", "10", "-40", "11", "--out", dir / "Region01"}, 2, "usage"},
        {{"--tcd", kTcd, "--box", "10", "-40", "11", "-39"}, 2, "usage"},
    };
    for (const auto& c : cases) {
        std::vector<std::string> argv = {CliPath(), "tide", "build-region"};
        argv.insert(argv.end(), c.args.begin(), c.args.end());
        const RunResult r = test::Run(argv);
        EXPECT_EQ(r.exitCode, c.exitCode) << c.says;
        EXPECT_NE(r.err.find(c.says), std::string::npos) << r.err;
    }
    EXPECT_FALSE(std::filesystem::exists(dir / "Region01.Hdr"));
}

TEST(TideImport, DepthIsReadFromTheBinsName) {
    const struct {
        const char* name;
        double feet;
    } cases[] = {
        {"Agate Passage, south end (Depth 25.1ft), Puget Sound", 25.1},
        {"Somewhere (depth 10 m)", 10 / 0.3048},
        {"Baltimore Harbor Approach (off Sandy Point), Maryland Current", 0},
        {"Depth unknown", 0},
    };
    for (const auto& c : cases) EXPECT_NEAR(tide::DepthInName(c.name), c.feet, 1e-9) << c.name;
}

}  // namespace
}  // namespace ombra::test
