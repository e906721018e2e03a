#include "instruments/NmeaText.h"

#include "core/Format.h"
#include "core/Rounding.h"
#include "core/Val.h"

namespace ombra {

std::string NmeaChecksum(std::string_view body) {
    unsigned x = 0;
    for (unsigned char c : body) x ^= c;
    static const char hex[] = "0123456789ABCDEF";
    return {hex[(x >> 4) & 15], hex[x & 15]};
}

bool ChecksumOK(std::string_view s) {
    size_t star = s.find('*');
    if (star == std::string_view::npos || star == 0) return false;
    // Bytes from the second character up to the one before the "*".
    std::string_view body = s.substr(1, star - 1);
    std::string_view given = s.substr(star + 1, 2);
    return given == NmeaChecksum(body);
}

NmeaFields SplitFields(std::string_view s, int maxIndex) {
    NmeaFields out;
    if (maxIndex < 0) maxIndex = 0;
    out.f.assign(size_t(maxIndex) + 1, std::string());
    size_t start = 0;
    int n = 0;
    while (n <= maxIndex) {
        size_t pos = std::string_view::npos;
        for (char d : {',', '*', '\r', '\n'}) {
            pos = s.find(d, start);
            if (pos != std::string_view::npos) break;
        }
        if (pos == std::string_view::npos) break;
        out.f[size_t(n)] = std::string(s.substr(start, pos - start));
        out.count = n;
        ++n;
        start = pos + 1;
    }
    return out;
}

double NmeaLatLong(const std::string& value, const std::string& hemisphere) {
    double v = Val(value);
    int32_t whole = CLng32(v);
    int16_t degrees = CInt16(double(whole - whole % 100) / 100.0);
    double minutes = v - degrees * 100.0;
    double seconds = degrees * 3600.0 + minutes * 60.0;
    if (hemisphere == "S" || hemisphere == "W") seconds = -seconds;
    return seconds;
}

bool NmeaTime(const std::string& field, double& serial) {
    if (field.size() < 6 || !IsNumeric(field)) return false;
    double h = Val(field.substr(0, 2));
    double m = Val(field.substr(2, 2));
    double s = Val(field.substr(4));
    serial = (h * 3600.0 + m * 60.0 + s) / 86400.0;
    return true;
}

bool NmeaDate(const std::string& field, double& serial) {
    if (field.size() != 6) return false;
    for (char c : field)
        if (c < '0' || c > '9') return false;
    int d = std::stoi(field.substr(0, 2));
    int mo = std::stoi(field.substr(2, 2));
    int y = std::stoi(field.substr(4, 2));
    y += y < 80 ? 2000 : 1900;
    if (!IsValidDate(y, mo, d)) return false;
    DateTime dt;
    dt.year = y;
    dt.month = mo;
    dt.day = d;
    dt.hour = dt.minute = dt.second = 0;
    serial = dt.Serial();
    return true;
}

}  // namespace ombra
