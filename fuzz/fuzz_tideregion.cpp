// libFuzzer target: the tide region reader, header and harmonics together,
// and a prediction on whatever it accepts. The input is split at its first
// NUL byte: the header before, the harmonics after.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/tidestream/TideRegion.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view all(reinterpret_cast<const char*>(data), size);
    const size_t cut = all.find('\0');
    const std::string_view header = all.substr(0, cut);
    const std::string_view harmonics = cut == std::string_view::npos ? std::string_view() : all.substr(cut + 1);
    std::string error;
    auto r = ombra::tide::ParseRegion(header, harmonics, &error);
    if (!r) {
        if (error.empty()) __builtin_trap();  // a refusal always says why
        return 0;
    }
    // What the reader accepts holds together.
    if (r->sea.size() != r->NodeCount() || r->harmonics.size() != r->NodeCount() * r->constituents.size())
        __builtin_trap();
    for (const auto& h : r->harmonics)
        if (!std::isfinite(h.eastAmp) || !std::isfinite(h.northPhase)) __builtin_trap();
    return 0;
}
