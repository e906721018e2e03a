// The navigation commands of ombra-cli, run as a separate program: the
// same answers as the library and the reference solvers, nine decimals,
// and a clear refusal (exit 2) of anything malformed.
#include <gtest/gtest.h>

#include <cmath>
#include <iterator>
#include <sstream>

#include "navmath/MagVar.h"
#include "navmath/RLGC.h"
#include "tests/support/TestSupport.h"

using namespace ombra;

namespace {

const std::string kDat = test::SourcePath("data/install/dat");

std::vector<double> Numbers(const std::string& out) {
    std::istringstream s(out);
    return {std::istream_iterator<double>(s), std::istream_iterator<double>()};
}

double AngleGap(double a, double b) {
    const double d = std::fabs(a - b);
    return std::min(d, 360.0 - d);
}

}  // namespace

TEST(NavmathCli, CoursePrintsTheLibraryAnswers) {
    // The library itself is checked against RhumbSolve and GeodSolve; here
    // the command must print the same numbers to nine decimals.
    const std::vector<std::vector<std::string>> legs = {
        {"50.05", "-12.1", "51.47", "-2.61"}, {"60", "170", "61", "-170"}, {"0", "0", "0.5", "179.5"},
        {"45", "0", "45", "0"}, {"-90", "0", "-80", "10"}};
    for (const auto& l : legs) {
        SCOPED_TRACE(l[0] + " " + l[1] + " " + l[2] + " " + l[3]);
        const LatLong from{std::stod(l[1]) * 3600, std::stod(l[0]) * 3600};
        const LatLong to{std::stod(l[3]) * 3600, std::stod(l[2]) * 3600};
        for (int16_t gc : {0, 1}) {
            auto r = test::Run({test::CliPath(), "course", gc ? "gc" : "rl", l[0], l[1], l[2], l[3]});
            ASSERT_EQ(r.exitCode, 0) << r.err;
            const auto got = Numbers(r.out);
            ASSERT_EQ(got.size(), 2u) << r.out;
            double course, distance;
            CourseDistance(gc, from, to, course, distance);
            EXPECT_LT(AngleGap(got[0], course), 1e-9);
            EXPECT_NEAR(got[1], distance, 1e-9);
        }
    }
}

TEST(NavmathCli, DeadReckonAndMagVarPrintTheLibraryAnswers) {
    auto dr = test::Run({test::CliPath(), "dr", "0", "10", "90", "60"});
    ASSERT_EQ(dr.exitCode, 0) << dr.err;
    EXPECT_EQ(dr.out, "0.000000000 11.000000000\n");

    dr = test::Run({test::CliPath(), "dr", "50.5", "-4.25", "233", "117.5"});
    const LatLong want = DeadReckon(LatLong{-4.25 * 3600, 50.5 * 3600}, 233.0, 117.5);
    const auto got = Numbers(dr.out);
    ASSERT_EQ(got.size(), 2u);
    EXPECT_NEAR(got[0], want.Lat / 3600, 1e-9);
    EXPECT_NEAR(got[1], want.Long / 3600, 1e-9);

    // The IGRF-14 check value.
    auto mv = test::Run({test::CliPath(), "magvar", "--dat", kDat, "-53.16", "-70.91", "1950"});
    ASSERT_EQ(mv.exitCode, 0) << mv.err;
    ASSERT_EQ(Numbers(mv.out).size(), 1u);
    EXPECT_NEAR(Numbers(mv.out)[0], 17.16, 0.005);
    // Nine decimals of the library's own value, not of its 32-bit copy.
    MagVar lib(kDat);
    auto solent = test::Run({test::CliPath(), "magvar", "--dat", kDat, "50.8", "-1.3", "2027.25"});
    ASSERT_EQ(Numbers(solent.out).size(), 1u);
    EXPECT_NEAR(Numbers(solent.out)[0], lib.DeclinationForYear(LatLong{-1.3 * 3600, 50.8 * 3600}, 2027.25), 1e-9);
}

TEST(NavmathCli, MalformedArgumentsAreRefusedWithExitTwo) {
    const std::vector<std::vector<std::string>> bad = {
        {"course"},
        {"course", "xx", "0", "0", "1", "1"},
        {"course", "rl", "0", "0", "1"},
        {"course", "gc", "91", "0", "1", "1"},
        {"course", "rl", "0", "181", "1", "1"},
        {"course", "rl", "0", "0", "nan", "1"},
        {"dr", "0", "10", "90"},
        {"dr", "-95", "10", "90", "60"},
        {"dr", "0", "10", "90", "inf"},
        {"magvar", "50", "-1"},
        {"magvar", "50", "-1", "1900"},
        {"magvar", "50", "-1", "2031"},
        {"magvar", "--dat"},
        {"magvar", "--dat", kDat, "95", "0", "2020"},
    };
    for (auto argv : bad) {
        const std::string shown = testing::PrintToString(argv);
        argv.insert(argv.begin(), test::CliPath());
        auto r = test::Run(argv);
        EXPECT_EQ(r.exitCode, 2) << shown;
        EXPECT_FALSE(r.err.empty()) << shown;
        EXPECT_TRUE(r.out.empty()) << shown;
    }
}

TEST(NavmathCli, MissingCoefficientFilesAreNamed) {
    test::TempDir empty;
    auto r = test::Run({test::CliPath(), "magvar", "--dat", empty.path(), "50", "-1", "2020"});
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_NE(r.err.find("Error reading coefficients file."), std::string::npos) << r.err;
    EXPECT_NE(r.err.find(empty.path()), std::string::npos) << r.err;
    EXPECT_TRUE(r.out.empty());
}
