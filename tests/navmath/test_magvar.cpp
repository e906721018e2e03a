// Magnetic variation: the shipped coefficient files against the IAGA table
// they were made from, the synthesis against GeographicLib's spherical
// harmonic engine and the official check value, the blending of epochs,
// the cache, and every kind of damaged file.
#include <gtest/gtest.h>

#include <GeographicLib/Geocentric.hpp>
#include <GeographicLib/SphericalHarmonic.hpp>
#include <cmath>
#include <filesystem>
#include <map>
#include <sstream>

#include "core/Format.h"
#include "navmath/MagVar.h"
#include "navmath/RLGC.h"
#include "platform/fake/ManualClock.h"
#include "platform/fake/ScriptedDialogs.h"
#include "plotter/VariationSource.h"
#include "tests/support/TestSupport.h"

using namespace ombra;
namespace fs = std::filesystem;

namespace {

const std::string kShipped = test::SourcePath("data/install/dat");

LatLong Degrees(double lat, double lon) { return {lon * 3600.0, lat * 3600.0}; }

// The IAGA table: per column (epoch text), per (g|h, n, m), the value.
struct IagaTable {
    std::vector<std::string> kinds, epochs;
    std::map<std::tuple<char, int, int>, std::vector<double>> rows;
};

IagaTable ReadIagaTable() {
    IagaTable t;
    std::istringstream in(test::ReadFile(test::SharedData("magnetic/igrf14coeffs.txt")));
    std::string line;
    while (std::getline(in, line)) {
        std::istringstream ls(line);
        std::string w;
        if (!(ls >> w) || w[0] == '#') continue;
        std::string a, b;
        ls >> a >> b;
        std::vector<std::string> rest;
        while (ls >> w) rest.push_back(w);
        if (w.empty()) continue;
        if (line.rfind("c/s", 0) == 0) {
            t.kinds = rest;
        } else if (line.rfind("g/h", 0) == 0) {
            t.epochs = rest;
        } else {
            std::vector<double> v;
            for (auto& s : rest) v.push_back(std::stod(s));
            t.rows[{line[0], std::stoi(a), std::stoi(b)}] = v;
        }
    }
    return t;
}

// Declination by GeographicLib's own spherical-harmonic engine from the same
// coefficients: the field is minus the gradient of the potential, turned
// from Earth-centred axes to east and north at the geodetic position.
double ReferenceDeclination(const MagModel& m, double latDeg, double lonDeg) {
    const int N = m.maxDegree;
    // Column by column (m), n within; the sine terms have no m = 0 column.
    std::vector<double> C((N + 1) * (N + 2) / 2, 0.0), S(N * (N + 1) / 2, 0.0);
    for (int n = 1; n <= N; ++n)
        for (int k = 0; k <= n; ++k) {
            const size_t idx = size_t(k * N - k * (k - 1) / 2 + n);
            C[idx] = m.g[size_t(GIndex(n, k))];
            if (k > 0) S[idx - size_t(N + 1)] = m.h[size_t(HIndex(n, k))];
        }
    GeographicLib::SphericalHarmonic harm(C, S, N, double(m.radius) * 1000.0, GeographicLib::SphericalHarmonic::SCHMIDT);
    double x, y, z;
    std::vector<double> M(9);
    GeographicLib::Geocentric::WGS84().Forward(latDeg, lonDeg, 0.0, x, y, z, M);
    double gx, gy, gz;
    harm(x, y, z, gx, gy, gz);
    const double bx = -gx, by = -gy, bz = -gz;
    const double east = M[0] * bx + M[3] * by + M[6] * bz;
    const double north = M[1] * bx + M[4] * by + M[7] * bz;
    return std::atan2(east, north) * kRadToDeg;
}

// A copy of the shipped files in a temporary folder.
struct DatCopy {
    test::TempDir dir;
    DatCopy() {
        for (const auto& e : fs::directory_iterator(kShipped)) fs::copy(e.path(), dir / e.path().filename().string());
    }
    std::string path() const { return dir.path(); }
};

struct Shipped {
    ManualClock clock;
    ScriptedDialogs dialogs;
    VariationSource mv{kShipped, clock, dialogs};
};

}  // namespace

TEST(MagVarFiles, ShippedFilesHoldTheIagaTable) {
    const IagaTable t = ReadIagaTable();
    ASSERT_FALSE(t.epochs.empty());
    int files = 0;
    for (size_t col = 0; col < t.epochs.size(); ++col) {
        const bool sv = t.epochs[col].find('-') != std::string::npos;
        const int epoch = sv ? MagVar::kLastEpoch : int(std::stod(t.epochs[col]));
        if (epoch < MagVar::kFirstEpoch) continue;
        const std::string name = sv ? MagVar::SecularVariationFileName() : MagVar::CoefficientFileName(epoch);
        SCOPED_TRACE(name);
        EXPECT_EQ(name.substr(0, 4), sv ? "IGRF" : t.kinds[col]);
        EXPECT_EQ(name.substr(4, 2), Format(epoch % 100, "00"));
        int16_t degree = 0, year = 0;
        CoefficientsG g;
        CoefficientsH h;
        float radius = 0;
        ASSERT_EQ(ReadCoefficients(kShipped + "/" + name, degree, year, g, h, &radius), 0);
        EXPECT_EQ(year, epoch);
        EXPECT_EQ(radius, 6371.2f);
        EXPECT_EQ(degree, sv ? 8 : epoch < 2000 ? 10 : 13);
        for (const auto& [key, values] : t.rows) {
            const auto [gh, n, m] = key;
            const float want = float(values[col]);
            if (n > degree)
                EXPECT_EQ(want, 0.0f) << "a non-zero coefficient beyond the file's degree";
            else
                EXPECT_EQ(gh == 'g' ? g[size_t(GIndex(n, m))] : h[size_t(HIndex(n, m))], want) << gh << n << m;
        }
        ++files;
    }
    EXPECT_EQ(files, (MagVar::kLastEpoch - MagVar::kFirstEpoch) / MagVar::kEpochStep + 2);
    EXPECT_TRUE(fs::exists(kShipped + "/IGRF-NOTICE.txt"));
}

TEST(MagVarSynthesis, OfficialCheckValueAndGeographicLibSphericalHarmonics) {
    Shipped s;
    EXPECT_EQ(Format(s.mv.VariationForYear(Degrees(-53.16, -70.91), 1950.0), "0.00"), "17.16");
    for (double year : {1945.0, 1962.4, 2003.7, 2026.0, 2030.0}) {
        MagModel model;
        ASSERT_EQ(s.mv.Model().LoadModel(year, model), 0) << year;
        for (double lat = -89.5; lat <= 89.5; lat += 11.93)
            for (double lon = -179.0; lon < 180.0; lon += 23.7) {
                SCOPED_TRACE(testing::Message() << year << " at " << lat << " " << lon);
                const double ours = Declination(model, lat * kDegToRad, lon * kDegToRad);
                const double gap = std::fabs(ours - ReferenceDeclination(model, lat, lon));
                EXPECT_LT(std::min(gap, 360.0 - gap), 1e-7);
                EXPECT_NEAR(s.mv.VariationForYear(Degrees(lat, lon), year), ours, 1e-4);
            }
    }
    // At and beyond the poles there is still a number; no position, none.
    for (double lat : {90.0, -90.0, 90.5, -93.0}) EXPECT_TRUE(std::isfinite(s.mv.VariationForYear(Degrees(lat, 30.0), 2020.0))) << lat;
    EXPECT_EQ(s.mv.VariationForYear(LatLong{NAN, 0.0}, 2020.0), 0.0f);
    EXPECT_TRUE(s.dialogs.asked.empty());
}

TEST(MagVarModel, EpochsBlendLinearlyAndTheForecastFollowsTheSecularVariation) {
    Shipped s;
    const IagaTable t = ReadIagaTable();
    auto coefficient = [&](char gh, int n, int m, const std::string& epoch) {
        return t.rows.at({gh, n, m})[size_t(std::find(t.epochs.begin(), t.epochs.end(), epoch) - t.epochs.begin())];
    };
    struct Case {
        double year;
        std::string e1, e2;  // blend of these, or the 2025 model plus years of change
        double weight;
        bool forecast;
        int degree;
    } cases[] = {
        {1952.5, "1950.0", "1955.0", 0.5, false, 10},
        {1954.0, "1950.0", "1955.0", 0.8, false, 10},
        {1997.5, "1995.0", "2000.0", 0.5, false, 13},
        {2024.9, "2020.0", "2025.0", 0.98, false, 13},
        {2027.5, "2025.0", "2025-30", 2.5, true, 13},
        {2045.0, "2025.0", "2025-30", 5.0, true, 13},  // held at 2030
        {1900.0, "1945.0", "1950.0", 0.0, false, 10},  // held at 1945
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.year);
        MagModel m;
        ASSERT_EQ(s.mv.Model().LoadModel(c.year, m), 0);
        EXPECT_EQ(m.maxDegree, c.degree);
        for (const auto& [key, values] : t.rows) {
            const auto [gh, n, k] = key;
            const double a = coefficient(gh, n, k, c.e1), b = coefficient(gh, n, k, c.e2);
            const double want = c.forecast ? a + c.weight * b : a + c.weight * (b - a);
            const float got = gh == 'g' ? m.g[size_t(GIndex(n, k))] : m.h[size_t(HIndex(n, k))];
            EXPECT_NEAR(got, want, std::fabs(want) * 1e-6 + 1e-6) << gh << n << k;
        }
    }
}

TEST(MagVarModel, OneLoadAYearAndOnlyTheYearCounts) {
    DatCopy dat;
    ManualClock clock;
    ScriptedDialogs dialogs;
    VariationSource mv(dat.path(), clock, dialogs);
    const LatLong solent = Degrees(50.8, -1.3);
    clock.now = DateTime{2026, 1, 1, 0, 0, 1};
    const float january = mv.MagneticVariation(solent);
    clock.now = DateTime{2026, 12, 31, 23, 59, 59};
    EXPECT_EQ(mv.MagneticVariation(solent), january);
    EXPECT_FLOAT_EQ(january, mv.VariationForYear(solent, 2026.0));
    // Once loaded, the year's model no longer needs its files.
    fs::remove_all(dat.path());
    EXPECT_EQ(mv.MagneticVariation(solent), january);
    EXPECT_EQ(mv.Loads(), 1);
    EXPECT_TRUE(dialogs.asked.empty());
    // A new year reads again (and here finds nothing, once).
    clock.now = DateTime{2027, 1, 1};
    EXPECT_EQ(mv.MagneticVariation(solent), 0.0f);
    EXPECT_EQ(mv.MagneticVariation(solent), 0.0f);
    EXPECT_EQ(mv.Loads(), 2);
    EXPECT_EQ(dialogs.asked.size(), 1u);
    // Another folder drops the cache and reads there; a year drifts little.
    mv.SetDatPath(kShipped);
    EXPECT_NE(mv.MagneticVariation(solent), january);
    EXPECT_NEAR(mv.MagneticVariation(solent), january, 0.5);
    EXPECT_EQ(mv.Loads(), 3);
}

TEST(MagVarModel, AnUnreadableYearReturnsItsErrorFromTheCallThatReadTheFiles) {
    DatCopy dat;
    fs::remove(dat.path() + "/DGRF50.DAT");
    MagVar mv(dat.path());
    const LatLong where = Degrees(-20.0, 57.5);
    struct Step {
        double year;
        MagVarError error;  // what the call returns
        bool variation;     // whether it gives a variation (not 0)
        int loads;          // reads of the files so far
    } steps[] = {
        {1952.0, MagVarError::CannotReadCoefficients, false, 1},
        {1952.0, MagVarError::None, false, 1},  // the same bad year again: quiet
        {1953.5, MagVarError::CannotReadCoefficients, false, 2},  // another year needing the file
        {2026.0, MagVarError::None, true, 3},
        {2026.0, MagVarError::None, true, 3},
        {1952.0, MagVarError::CannotReadCoefficients, false, 4},  // asked anew after another year
    };
    for (const auto& step : steps) {
        SCOPED_TRACE(step.year);
        MagVarError error = MagVarError::CannotReadCoefficients;  // overwritten either way
        const float v = mv.VariationForYear(where, step.year, &error);
        EXPECT_EQ(error, step.error);
        EXPECT_EQ(v != 0.0f, step.variation);
        EXPECT_EQ(mv.Loads(), step.loads);
    }
    EXPECT_EQ(mv.ModelFor(1952.0), nullptr);
    EXPECT_STREQ(MagVarErrorText(MagVarError::CannotReadCoefficients), "Error reading coefficients file.");
    EXPECT_STREQ(MagVarErrorText(MagVarError::None), "");
    EXPECT_STREQ(kMagVarErrorTitle, "Magnetic Variation");
}

TEST(MagVarFiles, DamagedFilesGiveTheMessageAndNoVariation) {
    const std::string data = test::SourcePath("tests/data/navmath/damaged");
    std::istringstream cases(test::ReadFile(data + "/cases.txt"));
    Shipped pristine;
    const LatLong where = Degrees(-20.0, 57.5);
    const float good = pristine.mv.VariationForYear(where, 1952.0);
    ASSERT_NE(good, 0.0f);
    int tried = 0;
    for (std::string line; std::getline(cases, line);) {
        std::istringstream ls(line);
        std::string file, outcome;
        int code = 99;
        if (!(ls >> file) || file[0] == '#') continue;
        ls >> code >> outcome;
        SCOPED_TRACE(file);
        DatCopy dat;
        const std::string target = dat.path() + "/DGRF50.DAT";
        fs::remove(target);
        if (file == "(folder)")
            fs::create_directory(target);
        else if (file != "(missing)")
            fs::copy_file(data + "/" + file, target);

        int16_t degree = 0, year = 0;
        CoefficientsG g;
        CoefficientsH h;
        EXPECT_EQ(ReadCoefficients(target, degree, year, g, h), code);

        ScriptedDialogs dialogs;
        VariationSource mv(dat.path(), pristine.clock, dialogs);
        const float v = mv.VariationForYear(where, 1952.0);
        mv.VariationForYear(where, 1952.0);  // the same year again: no second message
        EXPECT_EQ(v, outcome == "ok" ? good : 0.0f);
        ASSERT_EQ(dialogs.asked.size(), outcome == "ok" ? 0u : 1u);
        if (outcome != "ok") {
            EXPECT_EQ(dialogs.asked[0].kind, "MsgBox");
            EXPECT_EQ(dialogs.asked[0].text, "Error reading coefficients file.");
            EXPECT_EQ(dialogs.asked[0].title, "Magnetic Variation");
            // Other years do not need the damaged file.
            EXPECT_EQ(mv.VariationForYear(where, 2026.0), pristine.mv.VariationForYear(where, 2026.0));
        }
        ++tried;
    }
    EXPECT_GE(tried, 20);
}

TEST(MagVarFiles, FolderInTheProgramsOwnFormAndAnyCase) {
    ManualClock clock;
    ScriptedDialogs dialogs;
    test::TempDir d;
    fs::create_directories(d / "Dat");
    for (const auto& e : fs::directory_iterator(kShipped)) {
        std::string lower = e.path().filename().string();
        std::transform(lower.begin(), lower.end(), lower.begin(), ::tolower);
        fs::copy(e.path(), d / ("Dat/" + lower));
    }
    VariationSource mv(d.path() + "\\dat\\", clock, dialogs);
    EXPECT_NE(mv.VariationForYear(Degrees(10, 10), 2010.0), 0.0f);
    EXPECT_TRUE(dialogs.asked.empty());
}
