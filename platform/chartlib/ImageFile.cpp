#include "platform/chartlib/ImageFile.h"

#include <zlib.h>

#include <cctype>

#include "core/Paths.h"

namespace ombra::chartlib {

namespace {
void Be32(std::string& s, uint32_t v) {
    for (int i = 3; i >= 0; --i) s.push_back(char((v >> (8 * i)) & 0xff));
}
void Chunk(std::string& out, const char* type, const std::string& data) {
    Be32(out, uint32_t(data.size()));
    std::string body(type, 4);
    body += data;
    out += body;
    Be32(out, uint32_t(::crc32(0L, reinterpret_cast<const Bytef*>(body.data()), uInt(body.size()))));
}
}  // namespace

std::string EncodePng(const Image& img) {
    std::string raw;
    raw.reserve(size_t(img.height) * (size_t(img.width) * 3 + 1));
    for (int y = 0; y < img.height; ++y) {
        raw.push_back(0);  // no filter
        for (int x = 0; x < img.width; ++x) {
            uint32_t p = img.at(x, y);
            raw.push_back(char((p >> 16) & 255));
            raw.push_back(char((p >> 8) & 255));
            raw.push_back(char(p & 255));
        }
    }
    uLongf len = ::compressBound(uLong(raw.size()));
    std::string z(len, '\0');
    ::compress2(reinterpret_cast<Bytef*>(z.data()), &len, reinterpret_cast<const Bytef*>(raw.data()), uLong(raw.size()), 6);
    z.resize(len);
    std::string out("\x89PNG\r\n\x1a\n", 8);
    std::string ihdr;
    Be32(ihdr, uint32_t(img.width));
    Be32(ihdr, uint32_t(img.height));
    ihdr += std::string("\x08\x02\x00\x00\x00", 5);  // 8 bits, RGB, deflate, no filter, no interlace
    Chunk(out, "IHDR", ihdr);
    Chunk(out, "IDAT", z);
    Chunk(out, "IEND", "");
    return out;
}

std::string EncodePpm(const Image& img) {
    std::string out = "P6\n" + std::to_string(img.width) + " " + std::to_string(img.height) + "\n255\n";
    out.reserve(out.size() + size_t(img.width) * size_t(img.height) * 3);
    for (uint32_t p : img.pixels) {
        out.push_back(char((p >> 16) & 255));
        out.push_back(char((p >> 8) & 255));
        out.push_back(char(p & 255));
    }
    return out;
}

bool WriteImageFile(const std::string& path, const Image& image, std::string& error) {
    std::string lower;
    for (char c : path) lower.push_back(char(std::tolower(static_cast<unsigned char>(c))));
    std::string bytes;
    if (lower.size() >= 4 && lower.compare(lower.size() - 4, 4, ".png") == 0) bytes = EncodePng(image);
    else if (lower.size() >= 4 && lower.compare(lower.size() - 4, 4, ".ppm") == 0) bytes = EncodePpm(image);
    else {
        error = "the picture's name must end in .png or .ppm";
        return false;
    }
    return SaveFileAtomic(path, bytes, &error);
}

bool DecodePpm(const std::string& b, Image& image) {
    size_t pos = 0;
    auto token = [&](std::string& t) {
        t.clear();
        while (pos < b.size()) {
            if (b[pos] == '#') {
                while (pos < b.size() && b[pos] != '\n') ++pos;
            } else if (std::isspace(static_cast<unsigned char>(b[pos]))) {
                ++pos;
            } else {
                break;
            }
        }
        while (pos < b.size() && !std::isspace(static_cast<unsigned char>(b[pos]))) t.push_back(b[pos++]);
        return !t.empty();
    };
    std::string magic, w, h, mx;
    if (!token(magic) || magic != "P6" || !token(w) || !token(h) || !token(mx) || mx != "255") return false;
    ++pos;
    long width = std::strtol(w.c_str(), nullptr, 10), height = std::strtol(h.c_str(), nullptr, 10);
    if (width <= 0 || height <= 0 || width > 100000 || height > 100000) return false;
    if (b.size() - pos < size_t(width) * size_t(height) * 3) return false;
    image = Image(int(width), int(height));
    for (size_t i = 0; i < image.pixels.size(); ++i) {
        const unsigned char* p = reinterpret_cast<const unsigned char*>(b.data() + pos + i * 3);
        image.pixels[i] = 0xFF000000u | (uint32_t(p[0]) << 16) | (uint32_t(p[1]) << 8) | p[2];
    }
    return true;
}

}  // namespace ombra::chartlib
