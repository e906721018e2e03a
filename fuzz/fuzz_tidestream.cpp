// libFuzzer target: the tidal stream service over region files written from
// the input (header before the first NUL, harmonics after), selected and
// asked for a prediction at points and instants taken from the input too.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <string>
#include <unistd.h>

#include "platform/tidestream/HarmonicTideStream.h"

namespace {
const std::string& Folder() {
    static const std::string dir = [] {
        std::string d = "/tmp/fuzz-tide-" + std::to_string(getpid()) + "/";
        std::string cmd = "mkdir -p " + d;
        if (std::system(cmd.c_str()) != 0) __builtin_trap();
        return d;
    }();
    return dir;
}
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string all(reinterpret_cast<const char*>(data), size);
    const size_t cut = all.find('\0');
    std::ofstream(Folder() + "Region01.Hdr", std::ios::binary) << all.substr(0, cut);
    std::ofstream(Folder() + "Region01.Hrm", std::ios::binary)
        << (cut == std::string::npos ? std::string() : all.substr(cut + 1));
    ombra::HarmonicTideStream s;
    char path[100] = {}, hdr[100] = "Region01.Hdr", hrm[100] = "Region01.Hrm";
    std::strncpy(path, Folder().c_str(), 99);
    s.WrapperSetPath(path);
    const int32_t ok = s.WrapperSetDataFileName(hdr, hrm);
    int32_t e, w, n, so;
    s.WrapperModelDomain(e, w, n, so);
    // Points across and beyond the box, instants from the tail of the input.
    int32_t v[8] = {};
    if (size >= 32) std::memcpy(v, data + size - 32, 32);
    for (int i = 0; i < 9; ++i) {
        int32_t one = 1, lat = so + int32_t((int64_t(n) - so) * (i % 3) / 2) + v[0] % 5,
                lon = w + int32_t((int64_t(e) - w) * (i / 3) / 2) + v[1] % 5;
        int32_t o1, o2, o3, o4, o5;
        const int32_t r = s.WrapperDoPrediction(one, lat, lon, v[2], v[3], v[4], v[5], v[6], v[7], 0,
                                                o1, o2, o3, o4, o5);
        if (ok != 0 && r < 1) __builtin_trap();  // a refused region never predicts
        if (r == 0 && (o5 < 0 || o5 >= 3600 || o4 < 0)) __builtin_trap();
        const int32_t r2 = s.WrapperDoPrediction(one, lat, lon, 1 + (i % 28), 1 + i, 2025, i, 0, 0, 0,
                                                 o1, o2, o3, o4, o5);
        if (r2 == 0 && (o5 < 0 || o5 >= 3600 || o4 < 0)) __builtin_trap();
    }
    return 0;
}
