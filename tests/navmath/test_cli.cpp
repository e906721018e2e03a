// The navigation commands of ombra-cli, run as a separate program: the
// same answers as the library and the reference solvers, nine decimals,
// and a clear refusal (exit 2) of anything malformed.
#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "navmath/RLGC.h"
#include "tests/support/TestSupport.h"

using namespace ombra;

namespace {

const std::string kDat = test::SourcePath("data/install/dat");

std::vector<double> Numbers(const std::string& out) {
    std::istringstream s(out);
    std::vector<double> v;
    double x;
    while (s >> x) v.push_back(x);
    return v;
}

double AngleGap(double a, double b) {
    const double d = std::fabs(a - b);
    return std::min(d, 360.0 - d);
}

}  // namespace

TEST(NavmathCli, CourseAgreesWithTheSolvers) {
    std::istringstream in(test::ReadFile(test::SourcePath("tests/data/navmath/course_cases.txt")));
    std::string line, input;
    std::vector<std::vector<std::string>> legs;
    while (std::getline(in, line)) {
        if (line.empty() || line[0] == '#') continue;
        std::istringstream ls(line);
        std::vector<std::string> leg(4);
        ls >> leg[0] >> leg[1] >> leg[2] >> leg[3];
        legs.push_back(leg);
        input += leg[0] + " " + leg[1] + " " + leg[2] + " " + leg[3] + "\n";
    }
    const auto rl = test::SplitLines(test::Run({"RhumbSolve", "-i", "-p", "9"}, input).out);
    const auto gc = test::SplitLines(test::Run({"GeodSolve", "-i", "-p", "9"}, input).out);
    ASSERT_EQ(rl.size(), legs.size());
    ASSERT_EQ(gc.size(), legs.size());
    for (size_t i = 0; i < legs.size(); ++i) {
        const auto& l = legs[i];
        SCOPED_TRACE(l[0] + " " + l[1] + " " + l[2] + " " + l[3]);
        for (const char* kind : {"rl", "gc"}) {
            auto r = test::Run({test::CliPath(), "course", kind, l[0], l[1], l[2], l[3]});
            ASSERT_EQ(r.exitCode, 0) << r.err;
            const auto ours = Numbers(r.out);
            ASSERT_EQ(ours.size(), 2u) << r.out;
            const bool isRl = kind[0] == 'r';
            const auto ref = Numbers(isRl ? rl[i] : gc[i]);
            const double refDistance = (isRl ? ref[1] : ref[2]) / 1852.0;
            double refCourse = ref[0] < 0 ? ref[0] + 360.0 : ref[0];
            EXPECT_NEAR(ours[1], refDistance, 0.001 / 1852.0) << kind;
            if (refDistance == 0.0)
                EXPECT_EQ(ours[0], 0.0) << kind;
            else
                EXPECT_LT(AngleGap(ours[0], refCourse), 1e-9) << kind;
        }
    }
}

TEST(NavmathCli, DeadReckonAndMagVarPrintTheLibraryAnswers) {
    auto dr = test::Run({test::CliPath(), "dr", "0", "10", "90", "60"});
    ASSERT_EQ(dr.exitCode, 0) << dr.err;
    EXPECT_EQ(dr.out, "0.000000000 11.000000000\n");

    dr = test::Run({test::CliPath(), "dr", "50.5", "-4.25", "233", "117.5"});
    ASSERT_EQ(dr.exitCode, 0) << dr.err;
    const LatLong want = DeadReckon(LatLong{-4.25 * 3600, 50.5 * 3600}, 233.0, 117.5);
    const auto got = Numbers(dr.out);
    ASSERT_EQ(got.size(), 2u);
    EXPECT_NEAR(got[0], want.Lat / 3600, 1e-9);
    EXPECT_NEAR(got[1], want.Long / 3600, 1e-9);

    // The IGRF-14 check value, with a whole and a fractional year.
    auto mv = test::Run({test::CliPath(), "magvar", "--dat", kDat, "-53.16", "-70.91", "1950"});
    ASSERT_EQ(mv.exitCode, 0) << mv.err;
    ASSERT_EQ(Numbers(mv.out).size(), 1u);
    EXPECT_NEAR(Numbers(mv.out)[0], 17.16, 0.005);
    auto early = test::Run({test::CliPath(), "magvar", "--dat", kDat, "-53.16", "-70.91", "1950.0"});
    EXPECT_EQ(early.out, mv.out);
    auto later = test::Run({test::CliPath(), "magvar", "--dat", kDat, "-53.16", "-70.91", "1952.5"});
    ASSERT_EQ(later.exitCode, 0);
    EXPECT_NE(later.out, mv.out);
}

TEST(NavmathCli, MalformedArgumentsAreRefusedWithExitTwo) {
    const std::vector<std::vector<std::string>> bad = {
        {"course"},
        {"course", "xx", "0", "0", "1", "1"},
        {"course", "rl", "0", "0", "1"},
        {"course", "rl", "0", "0", "1", "1", "2"},
        {"course", "gc", "north", "0", "1", "1"},
        {"course", "gc", "91", "0", "1", "1"},
        {"course", "rl", "0", "181", "1", "1"},
        {"course", "rl", "0", "0", "1e", "1"},
        {"course", "rl", "0", "0", "nan", "1"},
        {"course", "rl", "0", "0", "", "1"},
        {"dr", "0", "10", "90"},
        {"dr", "0", "10", "ninety", "60"},
        {"dr", "-95", "10", "90", "60"},
        {"dr", "0", "10", "90", "inf"},
        {"magvar", "50", "-1"},
        {"magvar", "50", "-1", "1900"},
        {"magvar", "50", "-1", "2031"},
        {"magvar", "50", "-1", "year"},
        {"magvar", "--dat"},
        {"magvar", "--dat", kDat, "95", "0", "2020"},
    };
    for (const auto& args : bad) {
        std::vector<std::string> argv{test::CliPath()};
        argv.insert(argv.end(), args.begin(), args.end());
        std::string shown;
        for (const auto& a : args) shown += a + " ";
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
