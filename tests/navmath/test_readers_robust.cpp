// The two readers of outside files, the coefficient files and the
// deviation card, fed damaged copies of good files: flipped, cut, doubled
// and foreign bytes. Each must answer with a code or a count, never crash
// or read past its text, and never call a damaged file whole.
#include <gtest/gtest.h>

#include <random>

#include "navmath/Deviation.h"
#include "navmath/MagVar.h"
#include "tests/support/TestSupport.h"

using namespace ombra;

namespace {

// A damaged copy of `good`: one of several kinds of harm, by the seed.
std::string Damage(const std::string& good, std::mt19937& rng) {
    std::string s = good;
    auto pick = [&](size_t n) { return n == 0 ? size_t(0) : size_t(rng() % n); };
    const size_t at = pick(s.size());
    switch (rng() % 6) {
        case 0:  // flip a few bytes, or put separators and signs where digits were
            for (int i = 0, n = 1 + int(rng() % 8), sep = int(rng() % 2); i < n && !s.empty(); ++i)
                s[pick(s.size())] = sep ? ",.-+e \r\n\"#"[rng() % 10] : char(rng());
            break;
        case 1:  // cut anywhere
            s.resize(pick(s.size() + 1));
            break;
        case 2:  // lose a stretch from the middle
            if (!s.empty()) s.erase(at, pick(s.size() - at) + 1);
            break;
        case 3:  // repeat a stretch
            s.insert(at, s.substr(at, pick(200) + 1));
            break;
        case 4:  // foreign bytes
            s.resize(pick(4096));
            for (char& c : s) c = char(rng());
            break;
        default:  // long runs of digits
            s.insert(at, std::string(pick(400) + 1, '9'));
            break;
    }
    return s;
}

}  // namespace

TEST(ReadersSurviveDamage, CoefficientFiles) {
    const std::string good = test::ReadFile(test::SourcePath("data/install/dat/DGRF05.DAT"));
    int16_t degree = 0, year = 0;
    CoefficientsG g;
    CoefficientsH h;
    ASSERT_EQ(ParseCoefficients(good, degree, year, g, h), 0);
    ASSERT_EQ(degree, 13);
    const CoefficientsG goodG = g;
    std::mt19937 rng(20250105);
    int refused = 0;
    for (int round = 0; round < 4000; ++round) {
        const std::string bad = Damage(good, rng);
        float radius = -1;
        const int code = ParseCoefficients(bad, degree, year, g, h, &radius);
        ASSERT_TRUE(code == 0 || code == -2 || code == -3 || code == -4 || code == -5) << code;
        if (code == 0) {
            // Read whole: the header is sane and nothing beyond the degree.
            EXPECT_GE(degree, 1);
            EXPECT_LE(degree, kMaxModelDegree);
            EXPECT_GT(radius, 0.0f);
            for (int k = GIndex(degree + 1, 0); k < kCoefficientG; ++k) EXPECT_EQ(g[size_t(k)], 0.0f);
        } else {
            ++refused;
        }
    }
    EXPECT_GT(refused, 2000);
    // A file that loses its last line is never taken as whole.
    const std::string cut = good.substr(0, good.rfind("13 13"));
    EXPECT_EQ(ParseCoefficients(cut, degree, year, g, h), -5);
    EXPECT_EQ(ParseCoefficients(good, degree, year, g, h), 0);
    EXPECT_EQ(g, goodG);
}

TEST(ReadersSurviveDamage, DeviationCards) {
    DeviationCard card;
    for (int i = 0; i < kDeviationEntries; ++i) card[size_t(i)] = 0.25f * float(i) - 4.0f;
    const std::string good = Deviation::CardText(card);
    DeviationCard read;
    ASSERT_EQ(Deviation::ParseCard(good, read), kDeviationEntries);
    ASSERT_EQ(read, card);
    std::mt19937 rng(5400);
    for (int round = 0; round < 4000; ++round) {
        const std::string bad = Damage(good, rng);
        std::string error;
        const int n = Deviation::ParseCard(bad, read, &error);
        ASSERT_GE(n, 0);
        ASSERT_LE(n, kDeviationEntries);
        EXPECT_EQ(error.empty(), n == kDeviationEntries);
        for (int i = n; i < kDeviationEntries; ++i) EXPECT_EQ(read[size_t(i)], 0.0f);
        for (float v : read) EXPECT_TRUE(std::isfinite(v));
    }
}
