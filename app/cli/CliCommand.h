// The subcommands of ombra-cli. Each group of commands lives in its own
// file (cmd_<group>.cpp) and registers itself with a static CliRegistration,
// so adding a command touches no other file.
//
//   static int RunCourse(const CliArgs& a, std::ostream& out, std::ostream& err);
//   static CliRegistration reg{{"course", "course rl|gc LAT1 LON1 LAT2 LON2", RunCourse}};
//
// A command returns the process exit code: 0 done, 1 bad input or failure
// (with a message on err), 2 a usage error.
#pragma once
#include <iosfwd>
#include <string>
#include <vector>

namespace ombra::cli {

using CliArgs = std::vector<std::string>;  // the arguments after the command's name

struct CliCommand {
    const char* name;
    const char* usage;
    int (*run)(const CliArgs& args, std::ostream& out, std::ostream& err);
};

std::vector<CliCommand>& Commands();

struct CliRegistration {
    explicit CliRegistration(CliCommand c) { Commands().push_back(c); }
};

}  // namespace ombra::cli
