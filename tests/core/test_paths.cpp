#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>

#include "core/Paths.h"
#include "tests/support/TestSupport.h"

using namespace ombra;
using ombra::test::TempDir;

TEST(Paths, BackslashesAndDrives) {
    EXPECT_EQ(NativePath("C:\\Data\\Dat\\deviate.dat"), "/Data/Dat/deviate.dat");
    EXPECT_EQ(NativePath("/home/u\\\\Waypoint\\vst00000.way"), "/home/u/Waypoint/vst00000.way");
    EXPECT_EQ(NativePath("relative\\x"), "relative/x");
}

TEST(Paths, ExistingNamesAreFoundWhateverTheirCase) {
    TempDir d;
    std::filesystem::create_directories(d / "Dat");
    test::WriteFile(d / "Dat/Vessel.CSV", "x");
    EXPECT_EQ(ResolvePath(d.path() + "\\dat\\VESSEL.csv"), d / "Dat/Vessel.CSV");
    EXPECT_TRUE(FileExists(d.path() + "/DAT/vessel.csv"));
    EXPECT_TRUE(FolderExists(d.path() + "/dat"));
    // A missing tail keeps the case it was given, under the existing head.
    EXPECT_EQ(ResolvePath(d.path() + "/dat/New/File.txt"), d / "Dat/New/File.txt");
    EXPECT_TRUE(MakeFolder(d.path() + "\\DAT\\Sub\\Deeper"));
    EXPECT_TRUE(std::filesystem::is_directory(d / "Dat/Sub/Deeper"));
    EXPECT_FALSE(std::filesystem::exists(d / "DAT"));
}

TEST(Paths, AtomicSaveReplacesWholeAndLeavesNoLitter) {
    TempDir d;
    std::string f = d / "db.way";
    std::string err;
    ASSERT_TRUE(SaveFileAtomic(f, "old", &err)) << err;
    ASSERT_TRUE(SaveFileAtomic(f, std::string(1 << 20, 'n'), &err)) << err;
    EXPECT_EQ(test::ReadFile(f).size(), size_t(1 << 20));
    int files = 0;
    for (auto& e : std::filesystem::directory_iterator(d.path())) { (void)e; ++files; }
    EXPECT_EQ(files, 1);
    // A folder that does not exist: the save fails and says why.
    EXPECT_FALSE(SaveFileAtomic(d / "missing/x.way", "data", &err));
    EXPECT_FALSE(err.empty());
}

TEST(Paths, AKilledSaveLeavesTheOldOrTheNewFile) {
    TempDir d;
    std::string f = d / "big.way";
    std::string oldBytes(3 << 20, 'o'), newBytes(3 << 20, 'n');
    ASSERT_TRUE(SaveFileAtomic(f, oldBytes));
    for (int round = 0; round < 20; ++round) {
        pid_t pid = fork();
        if (pid == 0) {
            SaveFileAtomic(f, (round % 2) ? oldBytes : newBytes);
            _exit(0);
        }
        usleep(useconds_t(200 * (round + 1)));
        kill(pid, SIGKILL);
        int st;
        waitpid(pid, &st, 0);
        std::string now = test::ReadFile(f);
        ASSERT_TRUE(now == oldBytes || now == newBytes) << "torn file in round " << round;
    }
}

TEST(Paths, ReadWholeFileSaysWhyItFailed) {
    TempDir d;
    std::string err;
    EXPECT_FALSE(ReadWholeFile(d / "none", &err));
    EXPECT_NE(err.find("No such file"), std::string::npos);
    EXPECT_FALSE(ReadWholeFile(d.path(), &err));  // a folder is not a file
}

// The logic and the command-line tool stand without any window library.
TEST(Build, TheCommandLineToolLinksNoQt) {
    test::RunResult r = test::Run({"ldd", test::CliPath()});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(r.out.find("libQt"), std::string::npos) << r.out;
}
