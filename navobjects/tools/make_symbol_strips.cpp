// Writes the waypoint symbol strips Ombra draws (navobjects/Symbols.cpp)
// as the text file shipped in the install folder:
//   ombra-make-symbols data/install/dat/WPSymbols.txt
// and, with --ppm, the two strips as one PPM picture to look at.
#include <cstdio>
#include <fstream>
#include <iostream>
#include <string>

#include "core/Paths.h"
#include "navobjects/Symbols.h"

int main(int argc, char** argv) {
    if (argc < 2) {
        std::cerr << "usage: ombra-make-symbols OUT.txt [--ppm OUT.ppm]\n";
        return 2;
    }
    ombra::SymbolStrips strips;
    std::string why;
    if (!ombra::SaveFileAtomic(argv[1], strips.Text(), &why)) {
        std::cerr << argv[1] << ": " << why << "\n";
        return 1;
    }
    if (argc == 4 && std::string(argv[2]) == "--ppm") {
        std::ofstream ppm(argv[3], std::ios::binary);
        const int scale = 4, w = ombra::kSymbolSize * ombra::kSymbolCount, h = ombra::kSymbolSize * 2;
        ppm << "P6\n" << w * scale << " " << h * scale << "\n255\n";
        for (int y = 0; y < h * scale; ++y) {
            const ombra::Image strip = strips.Strip(y / scale >= ombra::kSymbolSize);
            for (int x = 0; x < w * scale; ++x) {
                uint32_t p = strip.at(x / scale, (y / scale) % ombra::kSymbolSize);
                bool clear = (p >> 24) == 0;
                unsigned char rgb[3] = {clear ? (unsigned char)200 : (unsigned char)(p >> 16),
                                        clear ? (unsigned char)220 : (unsigned char)(p >> 8),
                                        clear ? (unsigned char)240 : (unsigned char)p};
                ppm.write(reinterpret_cast<char*>(rgb), 3);
            }
        }
    }
    return 0;
}
