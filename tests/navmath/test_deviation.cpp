// The deviation card: its saw-tooth, the course forms, the file round
// trip and damaged files, and the curve as drawn on a recording canvas.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <sstream>

#include "core/ErrorReport.h"
#include "charts/DeviationCurve.h"
#include "navmath/Deviation.h"
#include "platform/fake/RecordingCanvas.h"
#include "platform/fake/ScriptedDialogs.h"
#include "tests/support/TestSupport.h"

using namespace ombra;
namespace fs = std::filesystem;

namespace {

const std::string kData = test::SourcePath("tests/data/navmath/deviation");

// The card of the data files: t[i] = 0.5 i - 3, so t[36] = 15 stands apart
// from t[0] = -3.
DeviationCard SteppedCard() {
    DeviationCard t{};
    for (int i = 0; i < kDeviationEntries; ++i) t[size_t(i)] = 0.5f * float(i) - 3.0f;
    return t;
}

struct Fixture {
    test::TempDir dir;
    ScriptedDialogs dialogs;
    std::string product = "Tarnel";
    ErrorReporter errors{dialogs, product};
    Deviation deviation{dir.path() + "\\", errors};
};

}  // namespace

TEST(DeviationFor, SawToothFromData) {
    const DeviationCard card = SteppedCard();
    std::istringstream in(test::ReadFile(kData + "/cases.txt"));
    std::string line;
    int cases = 0;
    while (std::getline(in, line)) {
        if (line.empty() || line[0] == '#') continue;
        std::istringstream ls(line);
        float heading, want;
        ASSERT_TRUE(bool(ls >> heading >> want)) << line;
        EXPECT_FLOAT_EQ(DeviationFor(card, heading), want) << line;
        ++cases;
    }
    EXPECT_GE(cases, 15);
    EXPECT_EQ(DeviationFor(card, NAN), 0.0f);
    EXPECT_FLOAT_EQ(DeviationFor(card, 1e9f), DeviationFor(card, std::fmod(1e9f, 360.0f)));
    // The module's own card answers the same.
    Fixture f;
    f.deviation.DeviationTable = card;
    for (float h = 0; h <= 360; h += 0.7f) EXPECT_EQ(f.deviation.DeviationFor(h), DeviationFor(card, h));
}

TEST(CourseForms, TrueMagneticCompass) {
    Fixture f;
    f.deviation.DeviationTable = SteppedCard();
    struct Case {
        double course;
        float variation;
        int16_t mode;
        double want;
        const char* mark;
    } cases[] = {
        {123.4, 5.0f, 0, 123.4, "°T"},
        {295.6, -4.5f, 1, 300, "°M"},         // 660.1 -> 660 -> 300
        {100.0, 3.5f, 1, 96, "°M"},           // 456.5 rounds to even 456
        {100.0, 4.5f, 1, 96, "°M"},           // 455.5 rounds to even 456
        {10.0, 15.0f, 1, 355, "°M"},
        {0.5, 0.0f, 1, 0, "°M"},              // 360.5 -> 360 -> 0
        {1.5, 0.0f, 1, 2, "°M"},
        {295.6, -4.5f, 2, 300 + 12.0, "°C"},  // t[30] = 12
        {10.0, 15.0f, 2, 355 + 6.0, "°C"},    // the saw-tooth at 355
        {0.0, 0.0f, 2, 0 - 3.0, "°C"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.course << " var " << c.variation << " mode " << c.mode);
        EXPECT_NEAR(f.deviation.CourseInMode(c.course, c.mode, c.variation), c.want, 1e-5);
        EXPECT_STREQ(CourseMark(c.mode), c.mark);
    }
    EXPECT_EQ(MagneticCourse(NAN, 0.0f), 0);
}

TEST(DeviateDat, RoundTripIsThirtySevenLinesAndAtomic) {
    Fixture f;
    DeviationCard card = SteppedCard();
    card[7] = 1.1f;  // a float that has no short decimal twin in double
    f.deviation.DeviationTable = card;
    ASSERT_TRUE(f.deviation.SaveDeviateDat());
    const std::string text = test::ReadFile(f.dir / "deviate.dat");
    const auto lines = test::SplitLines(text);
    ASSERT_EQ(lines.size(), 37u);
    EXPECT_EQ(lines[7], "1.1");
    EXPECT_EQ(lines[36], "15");
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 37);
    EXPECT_EQ(std::count(text.begin(), text.end(), '\r'), 37);
    EXPECT_EQ(std::distance(fs::directory_iterator(f.dir.path()), fs::directory_iterator()), 1);  // no temporary left

    Deviation again(f.dir.path(), f.errors);
    again.DeviationTable.fill(99.0f);
    EXPECT_TRUE(again.ReadDeviateDat());
    EXPECT_EQ(again.DeviationTable, card);
    EXPECT_TRUE(f.dialogs.asked.empty());
}

TEST(DeviateDat, MissingFileLeavesTheCardAtZeroAndAnyCaseIsFound) {
    Fixture f;
    f.deviation.DeviationTable.fill(2.0f);
    EXPECT_TRUE(f.deviation.ReadDeviateDat());
    EXPECT_EQ(f.deviation.DeviationTable, DeviationCard{});
    test::WriteFile(f.dir / "Deviate.DAT", test::ReadFile(kData + "/lf.dat"));
    EXPECT_TRUE(f.deviation.ReadDeviateDat());
    EXPECT_EQ(f.deviation.DeviationTable, SteppedCard());
    EXPECT_TRUE(f.dialogs.asked.empty());
}

TEST(DeviateDat, DamagedFilesKeepWhatWasReadAndAreReported) {
    std::istringstream in(test::ReadFile(kData + "/files.txt"));
    std::string line;
    int tried = 0;
    while (std::getline(in, line)) {
        std::istringstream ls(line);
        std::string file, report;
        size_t kept = 0;
        if (!(ls >> file) || file[0] == '#') continue;
        ls >> kept >> std::ws;
        std::getline(ls, report);
        SCOPED_TRACE(file);
        Fixture f;
        const std::string bytes = test::ReadFile(kData + "/" + file);
        test::WriteFile(f.dir / "deviate.dat", bytes);
        f.deviation.DeviationTable.fill(42.0f);
        EXPECT_EQ(f.deviation.ReadDeviateDat(), report == "-");
        // The entries before the damage are the file's first numbers.
        std::istringstream values(bytes);
        std::string word;
        for (size_t i = 0; i < size_t(kDeviationEntries); ++i) {
            float want = 0.0f;
            if (i < kept) {
                ASSERT_TRUE(bool(values >> word));
                if (word.front() == '"') word = word.substr(1, word.size() - 2);
                want = std::strtof(word.c_str(), nullptr);
            }
            EXPECT_EQ(f.deviation.DeviationTable[i], want) << "entry " << i;
        }
        if (report == "-") {
            EXPECT_TRUE(f.dialogs.asked.empty());
        } else {
            ASSERT_EQ(f.dialogs.asked.size(), 1u);
            EXPECT_EQ(f.dialogs.asked[0].text, "Error in 'ReadDeviateDat'\n" + report);
            EXPECT_EQ(f.dialogs.asked[0].title, "Tarnel");
        }
        // The file itself is left as it was for the user to mend.
        EXPECT_EQ(test::ReadFile(f.dir / "deviate.dat"), bytes);
        ++tried;
    }
    EXPECT_GE(tried, 8);
}

TEST(DeviateDat, AFailedSaveIsReportedAndTheOldFileStands) {
    Fixture f;
    test::WriteFile(f.dir / "blocker", "a file where the folder should be");
    Deviation d(f.dir / "blocker", f.errors);
    d.DeviationTable = SteppedCard();
    EXPECT_FALSE(d.SaveDeviateDat());
    ASSERT_EQ(f.dialogs.asked.size(), 1u);
    EXPECT_EQ(f.dialogs.asked[0].text.rfind("Error in 'SaveDeviateDat'\ndeviate.dat: ", 0), 0u) << f.dialogs.asked[0].text;
    EXPECT_EQ(test::ReadFile(f.dir / "blocker"), "a file where the folder should be");
}

TEST(DeviationCurve, LayoutPassesThroughEveryEntry) {
    DeviationCard card{};
    card[9] = 4.0f;     // 90°: 4 W, the largest, at the top
    card[27] = -2.5f;   // 270°: 2.5 E, below the line
    const auto L = LayoutDeviationCurve(card, 400, 260);
    EXPECT_EQ(L.fullScale, 4.0f);
    ASSERT_EQ(L.points.size(), 37u);
    ASSERT_EQ(L.bezier.size(), 1u + 36u * 3u);
    for (size_t i = 0; i < L.points.size(); ++i) {
        EXPECT_EQ(L.bezier[i * 3], L.points[i]) << "entry " << i;
        EXPECT_EQ(L.points[i].x, L.X(i * 10.0));
    }
    EXPECT_EQ(L.points[0].x, L.plot.left);
    EXPECT_EQ(L.points[36].x, L.plot.right);
    EXPECT_EQ(L.points[0].y, L.zeroY);
    EXPECT_EQ(L.points[9].y, L.plot.top);  // west up, at full scale
    EXPECT_NEAR(L.points[27].y - L.zeroY, (L.plot.bottom - L.plot.top) / 2.0 * 2.5 / 4.0, 1.0);
    // Control points sit within their span, and a flat stretch stays flat.
    for (size_t s = 0; s < 36; ++s) {
        EXPECT_GE(L.bezier[s * 3 + 1].x, L.bezier[s * 3].x);
        EXPECT_LE(L.bezier[s * 3 + 1].x, L.bezier[s * 3 + 2].x);
        EXPECT_LE(L.bezier[s * 3 + 2].x, L.bezier[s * 3 + 3].x);
    }
    for (size_t s = 13; s < 23; ++s) EXPECT_EQ(L.bezier[s * 3 + 1].y, L.zeroY) << "span " << s;
    EXPECT_GT(L.plot.left, 0);
    EXPECT_LT(L.plot.right, 400);
    EXPECT_LT(L.plot.bottom, 260);
    // A card with NaNs or absurd entries still lies inside the plot.
    DeviationCard wild{};
    wild[3] = NAN;
    wild[4] = 1e30f;
    const auto W = LayoutDeviationCurve(wild, 300, 200);
    for (const auto& p : W.points) {
        EXPECT_GE(p.y, W.plot.top);
        EXPECT_LE(p.y, W.plot.bottom);
    }
}

TEST(DeviationCurve, DrawnWithItsLabelsAndOneBezier) {
    RecordingCanvas canvas(400, 260);
    DrawDeviationCurve(canvas, SteppedCard());
    const auto beziers = canvas.Of("PolyBezier");
    ASSERT_EQ(beziers.size(), 1u);
    EXPECT_EQ(beziers[0].points, LayoutDeviationCurve(SteppedCard(), 400, 260).bezier);
    std::vector<std::string> texts;
    for (const auto& t : canvas.Of("Text")) {
        texts.push_back(t.text);
        ASSERT_FALSE(t.points.empty());
        EXPECT_GE(std::min(t.points[0].x, t.points[0].y), 0) << t.text;
        EXPECT_LE(t.points[0].x + canvas.TextWidth(t.text), 400) << t.text;
        EXPECT_LE(t.points[0].y + canvas.TextHeight(), 260) << t.text;
    }
    for (const char* want : {"0", "90°", "180°", "270°", "360°", "Deviation", "Heading", "15°", "-15°"})
        EXPECT_NE(std::find(texts.begin(), texts.end(), want), texts.end()) << want;
}
