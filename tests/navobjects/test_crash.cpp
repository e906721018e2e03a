// A save cut off at any moment leaves a database that opens whole: the old
// file or the new one, never a torn one. A child process saves a
// 32,767-waypoint database over and over, two versions in turn, and is
// killed at a random moment, a thousand times. Nineteen rounds in twenty the child
// writes the store's two texts through the store's atomic write; every
// twentieth it runs the store's whole save, serialising included.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <random>

#include "core/Format.h"
#include "core/Paths.h"
#include "navobjects/Symbols.h"
#include "navobjects/Waypoints.h"
#include "tests/navobjects/NavFixture.h"

namespace ombra::test {
namespace {

TEST(CrashDuringSave, TheFileIsAlwaysTheOldOrTheNew) {
    NavWorld w;
    SymbolStrips symbols;
    Waypoints wp(w.ctx, symbols);
    wp.InitWayPointData();
    w.dialogs.texts.push_back("Big");
    wp.NewWaypointDB();
    wp.List.resize(32767);
    for (int i = 0; i < 32767; ++i) {
        Waypoint& x = wp.List[size_t(i)];
        x.Number = int16_t(i + 1);
        x.Name = "WP" + Format(i + 1, "00000");
        x.Description = "Mark " + std::to_string(i) + ", \"checked\"";
        x.Position.Wgs84 = LatLong{-18000.0 + i * 0.37, 180000.0 + i * 0.21};
        x.Icon = int16_t(i % 37);
        x.LabelMode = 1;
        x.AlarmRange = -0.25f;
        x.DatumFlag = 1;
    }
    ASSERT_TRUE(wp.SaveWaypointDB());
    const std::string path = w.Path("Waypoint/vst00001.way");
    const std::string versionA = ReadFile(path);
    wp.List[0].Description = "changed";
    ASSERT_TRUE(wp.SaveWaypointDB());
    const std::string versionB = ReadFile(path);
    ASSERT_NE(versionA, versionB);
    ASSERT_GT(versionA.size(), 2'000'000u);

    // How long a save takes here: the kill moments spread over it.
    auto micros = [](auto&& f) {
        auto t0 = std::chrono::steady_clock::now();
        f();
        return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - t0).count();
    };
    double storeSave = micros([&] { wp.SaveWaypointDB(); });
    double write = micros([&] { SaveFileAtomic(path, versionB); });
    std::mt19937 rng(20261123);
    // A save in a freshly forked child runs slower than the warm one timed
    // here (its pages are copied on first touch, and the machine may be
    // busy), so the moments reach over several saves: some rounds then end
    // after a whole save and some in the middle of one.
    std::uniform_int_distribution<int> storeDelay(0, int(storeSave * 4.0) + 1), writeDelay(0, int(write * 4.0) + 1);

    int oldSeen = 0, newSeen = 0;
    for (int round = 0; round < 1000; ++round) {
        const bool whole = round % 20 == 0;
        pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            for (int k = 0;; ++k) {
                if (whole) {
                    wp.List[0].Description = (k % 2) ? "changed" : "Mark 0, \"checked\"";
                    wp.SaveWaypointDB();
                } else {
                    SaveFileAtomic(path, (k % 2) ? versionB : versionA);
                }
            }
        }
        ::usleep(useconds_t(whole ? storeDelay(rng) : writeDelay(rng)));
        ::kill(child, SIGKILL);
        int status = 0;
        ::waitpid(child, &status, 0);
        std::string now = ReadWholeFile(path).value_or("");
        bool isOld = now == versionA, isNew = now == versionB;
        ASSERT_TRUE(isOld || isNew) << "round " << round << ": a torn file of " << now.size() << " bytes";
        oldSeen += isOld;
        newSeen += isNew;
        if (round % 100 == 0) {
            std::string name;
            std::vector<Waypoint> back;
            ASSERT_TRUE(ReadWaypointFile(now, name, back).whole);
            ASSERT_EQ(back.size(), 32767u);
        }
        RemoveStaleSaves(w.Path("Waypoint"));
    }
    EXPECT_GT(oldSeen, 0);
    EXPECT_GT(newSeen, 0);
    // The cut-off saves left no temporary files once swept.
    for (const auto& de : std::filesystem::directory_iterator(w.Path("Waypoint")))
        EXPECT_EQ(de.path().filename().string().find(".tmp-"), std::string::npos) << de.path();
}

}  // namespace
}  // namespace ombra::test
