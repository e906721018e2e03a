// ombra-cli passage over the demo route and a tide region in the home's
// data folder.
#include <gtest/gtest.h>

#include <filesystem>
#include <regex>

#include "tests/tides/PassageRig.h"

namespace ombra::test {
namespace {

std::vector<double> Numbers(const std::string& json, const std::string& key) {
    std::vector<double> out;
    const std::regex re("\"" + key + "\":(-?[0-9.]+)");
    for (std::sregex_iterator it(json.begin(), json.end(), re), end; it != end; ++it) out.push_back(std::stod((*it)[1]));
    return out;
}

TEST(PassageCli, PlansTheRouteWithAndWithoutTheStreamAndListsTheBestDepartures) {
    TempDir home;
    ASSERT_EQ(test::Run({CliPath(), "nav-demo", "--data", home.path()}).exitCode, 0);
    tide::RegionData region = UniformGrid({"Z0"}, {Towards(90, 0.6)});
    region.south = 49.5, region.north = 50.5, region.west = -12.5, region.east = -11.5;
    std::filesystem::create_directories(home / "Dat");
    std::string why;
    ASSERT_TRUE(tide::SaveRegion(region, home / "Dat", "Region01", &why)) << why;
    const std::vector<std::string> plan = {CliPath(), "passage", "--home", home.path(), "--route", "round island",
                                           "--speed", "5", "--depart", "2026-06-01 10:00"};

    auto still = plan;
    still.push_back("--no-tides");
    const RunResult off = test::Run(still);
    ASSERT_EQ(off.exitCode, 0) << off.err;
    const auto course = Numbers(off.out, "course"), cts = Numbers(off.out, "cts");
    ASSERT_EQ(course.size(), 11u) << off.out;
    EXPECT_EQ(cts, course);
    EXPECT_NE(off.out.find("\"tidal_gain\":0.0"), std::string::npos) << off.out;

    const RunResult on = test::Run(plan);
    ASSERT_EQ(on.exitCode, 0) << on.err;
    const auto set = Numbers(on.out, "tide_set"), drift = Numbers(on.out, "tide_drift");
    ASSERT_EQ(set.size(), 11u) << on.out;
    for (size_t i = 0; i < set.size(); ++i) {
        EXPECT_EQ(set[i], 90) << i;
        EXPECT_NEAR(drift[i], 0.6 * 1.944, 0.15) << i << ": short legs count one tenth more of time than of stream";
    }
    EXPECT_NE(Numbers(on.out, "cts"), course) << "a cross stream turns the courses to steer";

    auto best = plan;
    best.push_back("--best");
    const RunResult rows = test::Run(best);
    ASSERT_EQ(rows.exitCode, 0) << rows.err;
    EXPECT_EQ(Numbers(rows.out, "row").size(), 24u);
    EXPECT_NE(rows.out.find("\"best_row\":0}"), std::string::npos) << "a steady stream: every row alike";

    auto missing = plan;
    missing[5] = "no such route";
    EXPECT_EQ(test::Run(missing).exitCode, 2);
}

}  // namespace
}  // namespace ombra::test
