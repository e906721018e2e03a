// ombra-cli nav-demo --data DIR: writes the demonstration's waypoint,
// route and boundary databases ("Demo Island", see
// app/cli/replay/DemoStores.h) into the data root DIR, through the stores'
// own writers. A database already there by that name is kept.
#include <iostream>

#include "app/cli/CliCommand.h"
#include "app/cli/replay/DemoStores.h"

namespace ombra::cli {
namespace {

int RunNavDemo(const CliArgs& a, std::ostream& out, std::ostream& err) {
    if (a.size() != 2 || a[0] != "--data") {
        err << "usage: ombra-cli nav-demo --data DIR\n";
        return 2;
    }
    std::string why;
    std::vector<std::string> written;
    if (!WriteDemoStores(a[1], why, &written)) {
        err << "ombra-cli nav-demo: " << why << "\n";
        return 1;
    }
    for (const std::string& w : written) out << "written: " << w << "\n";
    return 0;
}

CliRegistration reg{{"nav-demo", "nav-demo --data DIR   write the demo waypoint, route and boundary databases",
                     RunNavDemo}};

}  // namespace
}  // namespace ombra::cli
