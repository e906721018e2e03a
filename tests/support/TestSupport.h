// Helpers shared by the tests: temporary folders that clean up after
// themselves, reading and writing files, running the command-line tool.
#pragma once
#include <string>
#include <vector>

namespace ombra::test {

class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;
    const std::string& path() const { return path_; }
    std::string operator/(const std::string& name) const { return path_ + "/" + name; }

private:
    std::string path_;
};

std::string ReadFile(const std::string& path);
void WriteFile(const std::string& path, const std::string& bytes);
std::vector<std::string> SplitLines(const std::string& text);

struct RunResult {
    int exitCode = -1;
    std::string out;
    std::string err;
};
// Runs a program with arguments (no shell), feeding `input` on its stdin.
RunResult Run(const std::vector<std::string>& argv, const std::string& input = "");
// The ombra-cli built beside the tests.
std::string CliPath();
std::string SharedData(const std::string& rel);
std::string SourcePath(const std::string& rel);

}  // namespace ombra::test
