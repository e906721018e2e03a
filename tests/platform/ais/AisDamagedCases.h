// The damaged-input cases of tests/data/ais/damaged.txt, read for the
// decoder tests and the command-line tests alike.
#pragma once
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/TestSupport.h"

namespace ombra::test {

struct Case {
    std::string reason;
    std::string what;
    std::vector<std::string> lines;  // sentences, and "wait N"
};

inline std::vector<Case> ReadCases() {
    std::vector<Case> cases;
    std::istringstream in(ReadFile(std::string(OMBRA_TEST_DATA) + "/ais/damaged.txt"));
    std::string line;
    while (std::getline(in, line)) {
        if (line.empty() || line[0] == '#') continue;
        if (line.rfind("case ", 0) == 0) {
            const size_t space = line.find(' ', 5);
            cases.push_back({line.substr(5, space - 5), line.substr(space + 1), {}});
        } else if (!cases.empty()) {
            cases.back().lines.push_back(line);
        }
    }
    return cases;
}

}  // namespace ombra::test
