// Geo: the value types of positions, chart pixels, colours and pixel blocks
// that the platform interfaces and every module speak in.
//
// Positions inside Ombra are held in seconds of arc (degrees x 3600), east and
// north positive, as two 64-bit floats with the longitude first. Text files
// write latitude first; only the in-memory order is fixed here. Chart pixels
// are 32-bit signed integers, x to the right and y down from the top-left.
//
//   LatLong p{-12.0 * 3600.0, 50.0 * 3600.0};   // 50°N 12°W
#pragma once
#include <cstddef>
#include <cstdint>
#include <vector>

namespace ombra {

struct LatLong {
    double Long = 0.0;  // seconds of arc, east positive
    double Lat = 0.0;   // seconds of arc, north positive
    friend bool operator==(const LatLong&, const LatLong&) = default;
};

struct ChartPoint {
    int32_t x = 0;
    int32_t y = 0;
    friend bool operator==(const ChartPoint&, const ChartPoint&) = default;
};

// An RGB colour as 0x00RRGGBB.
using Rgb = uint32_t;
constexpr Rgb MakeRgb(int r, int g, int b) {
    return (Rgb(r & 255) << 16) | (Rgb(g & 255) << 8) | Rgb(b & 255);
}

// A block of 32-bit pixels (0xAARRGGBB), row by row from the top. The chart
// engine renders into one of these; the window blits it.
struct Image {
    int width = 0;
    int height = 0;
    std::vector<uint32_t> pixels;
    Image() = default;
    Image(int w, int h, uint32_t fill = 0xFF000000u)
        : width(w), height(h), pixels(size_t(w) * size_t(h), fill) {}
    uint32_t& at(int x, int y) { return pixels[size_t(y) * size_t(width) + size_t(x)]; }
    uint32_t at(int x, int y) const { return pixels[size_t(y) * size_t(width) + size_t(x)]; }
};

}  // namespace ombra
