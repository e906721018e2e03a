// libFuzzer target: regions from a .tcd harmonic database, the file written
// from the input (libtcd reads only from a named file), every station in the
// world asked for.
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <string>
#include <unistd.h>

#include "platform/tidestream/TcdImport.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const std::string path = "/tmp/fuzz-tcd-" + std::to_string(getpid()) + ".tcd";
    std::ofstream(path, std::ios::binary | std::ios::trunc).write(reinterpret_cast<const char*>(data), std::streamsize(size));
    ombra::tide::TcdImportReport report;
    std::string error;
    auto r = ombra::tide::RegionFromTcd(path, {-90, -180, 90, 180}, "Fuzz", 10, report, &error);
    if (!r && error.empty()) __builtin_trap();  // a refusal always says why
    return 0;
}
