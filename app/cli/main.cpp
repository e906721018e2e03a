// ombra-cli: the plotter's logic from the command line, for navigators'
// scripts and for tests. No window, no Qt GUI.
#include <algorithm>
#include <cstring>
#include <iostream>

#include "app/cli/CliCommand.h"

namespace ombra::cli {
std::vector<CliCommand>& Commands() {
    static std::vector<CliCommand> all;
    return all;
}
}  // namespace ombra::cli

int main(int argc, char** argv) {
    using namespace ombra::cli;
    std::ios::sync_with_stdio(false);
    auto& cmds = Commands();
    std::sort(cmds.begin(), cmds.end(), [](const CliCommand& a, const CliCommand& b) { return std::strcmp(a.name, b.name) < 0; });
    if (argc < 2 || !std::strcmp(argv[1], "--help") || !std::strcmp(argv[1], "help")) {
        std::ostream& o = argc < 2 ? std::cerr : std::cout;
        o << "usage: ombra-cli COMMAND [ARGS...]\ncommands:\n";
        for (auto& c : cmds) o << "  " << c.usage << "\n";
        return argc < 2 ? 2 : 0;
    }
    for (auto& c : cmds) {
        if (!std::strcmp(c.name, argv[1])) {
            CliArgs args(argv + 2, argv + argc);
            try {
                return c.run(args, std::cout, std::cerr);
            } catch (const std::exception& e) {
                std::cerr << "ombra-cli " << c.name << ": " << e.what() << "\n";
                return 1;
            }
        }
    }
    std::cerr << "ombra-cli: unknown command '" << argv[1] << "' (try ombra-cli --help)\n";
    return 2;
}
