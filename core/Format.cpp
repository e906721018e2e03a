#include "core/Format.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace ombra {

namespace {

struct Picture {
    std::string prefix, suffix;  // literals around the digit places
    int intZeros = 0;            // "0" places before the point
    int intPlaces = 0;           // all places before the point
    int fracZeros = 0;           // "0" places after the point
    int fracPlaces = 0;          // all places after the point
    bool point = false;
    bool grouping = false;
    std::string between;         // literals inside the digit run (rare)
};

Picture ParsePicture(std::string_view p) {
    Picture pic;
    size_t first = p.find_first_of("0#");
    if (first == std::string_view::npos) {
        pic.prefix = std::string(p);
        return pic;
    }
    size_t last = p.find_last_of("0#");
    // The point may follow the last digit place ("0." shows a bare point).
    size_t dot = p.find('.', first);
    if (dot != std::string_view::npos && dot > last) last = dot;
    pic.prefix = std::string(p.substr(0, first));
    pic.suffix = std::string(p.substr(last + 1));
    bool afterPoint = false;
    for (size_t i = first; i <= last; ++i) {
        char c = p[i];
        if (c == '.') {
            if (!afterPoint) { afterPoint = true; pic.point = true; }
        } else if (c == '0' || c == '#') {
            if (afterPoint) {
                ++pic.fracPlaces;
                if (c == '0') pic.fracZeros = pic.fracPlaces;
            } else {
                ++pic.intPlaces;
                if (c == '0' && pic.intZeros == 0) pic.intZeros = pic.intPlaces;  // placeholder, fixed below
            }
        } else if (c == ',' && !afterPoint) {
            pic.grouping = true;
        }
    }
    // Integer zeros count from the first "0" to the point.
    int places = 0, zerosFrom = -1;
    for (size_t i = first; i <= last && p[i] != '.'; ++i) {
        if (p[i] == '0' || p[i] == '#') {
            if (p[i] == '0' && zerosFrom < 0) zerosFrom = places;
            ++places;
        }
    }
    pic.intZeros = zerosFrom < 0 ? 0 : places - zerosFrom;
    return pic;
}

// Decimal digits of |value| rounded half away from zero to `frac` places,
// taken from the 15-significant-digit form of the double.
void DecimalDigits(double value, int frac, std::string& intPart, std::string& fracPart) {
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.14e", std::fabs(value));
    // buf: d.dddddddddddddde±XX
    std::string mant;
    mant.push_back(buf[0]);
    mant.append(buf + 2, buf + 16);
    int exp10 = std::atoi(buf + 17);
    // digits mant[0..14] with the point after position exp10.
    int pointPos = exp10 + 1;  // digits before the point
    std::string digits = mant;
    if (pointPos <= 0) {
        digits = std::string(size_t(-pointPos), '0') + digits;
        pointPos = 0;
    }
    if (int(digits.size()) < pointPos + frac + 1) digits.append(size_t(pointPos + frac + 1 - int(digits.size())), '0');
    // Round at pointPos + frac.
    int cut = pointPos + frac;
    bool up = digits[size_t(cut)] >= '5';
    digits.resize(size_t(cut));
    if (up) {
        int i = cut - 1;
        while (i >= 0) {
            if (digits[size_t(i)] == '9') { digits[size_t(i)] = '0'; --i; }
            else { ++digits[size_t(i)]; break; }
        }
        if (i < 0) { digits.insert(digits.begin(), '1'); ++pointPos; }
    }
    intPart = digits.substr(0, size_t(pointPos));
    fracPart = digits.substr(size_t(pointPos));
    size_t nz = intPart.find_first_not_of('0');
    intPart = nz == std::string::npos ? "" : intPart.substr(nz);
}

std::string FormatSection(double value, std::string_view section, bool withSign) {
    Picture pic = ParsePicture(section);
    if (pic.intPlaces == 0 && pic.fracPlaces == 0 && !pic.point) return pic.prefix;
    std::string ip, fp;
    DecimalDigits(value, pic.fracPlaces, ip, fp);
    // Trailing "#" places drop their zeros.
    while (int(fp.size()) > pic.fracZeros && !fp.empty() && fp.back() == '0') fp.pop_back();
    if (int(ip.size()) < pic.intZeros) ip = std::string(size_t(pic.intZeros - int(ip.size())), '0') + ip;
    if (pic.grouping && ip.size() > 3) {
        std::string g;
        int n = int(ip.size());
        for (int i = 0; i < n; ++i) {
            g.push_back(ip[size_t(i)]);
            if ((n - 1 - i) % 3 == 0 && i != n - 1) g.push_back(',');
        }
        ip = g;
    }
    bool nonZero = ip.find_first_not_of("0,") != std::string::npos || fp.find_first_not_of('0') != std::string::npos;
    std::string out;
    if (withSign && value < 0 && nonZero) out.push_back('-');
    out += pic.prefix;
    out += ip;
    if (pic.point) out.push_back('.');
    out += fp;
    out += pic.suffix;
    return out;
}

const std::array<const char*, 12> kMonths = {"January", "February", "March", "April", "May", "June",
                                            "July", "August", "September", "October", "November", "December"};
const std::array<const char*, 7> kDays = {"Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"};

std::string Two(int v) {
    char b[16];
    std::snprintf(b, sizeof b, "%02d", v);
    return b;
}

}  // namespace

std::string Format(double value, std::string_view picture) {
    if (!std::isfinite(value)) value = 0.0;
    size_t semi = picture.find(';');
    if (semi != std::string_view::npos && value < 0) {
        std::string_view neg = picture.substr(semi + 1);
        size_t semi2 = neg.find(';');
        if (semi2 != std::string_view::npos) neg = neg.substr(0, semi2);
        if (!neg.empty()) return FormatSection(-value, neg, false);
    }
    std::string_view pos = semi == std::string_view::npos ? picture : picture.substr(0, semi);
    if (picture.empty()) {
        char b[64];
        std::snprintf(b, sizeof b, "%.15g", value);
        return b;
    }
    return FormatSection(value, pos, true);
}

bool IsValidDate(int year, int month, int day) {
    if (year < 100 || year > 9999 || month < 1 || month > 12 || day < 1) return false;
    static const int dim[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    int max = dim[month - 1];
    bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    if (month == 2 && leap) max = 29;
    return day <= max;
}

std::string FormatDate(const DateTime& t, std::string_view format) {
    if (format == "Short Date") return FormatDate(t, "dd/mm/yyyy");
    if (format == "Medium Date") return FormatDate(t, "dd-mmm-yy");
    if (format == "Long Date") return FormatDate(t, "d mmmm yyyy");
    if (format == "Short Time") return FormatDate(t, "hh:nn");
    if (format == "Medium Time") return FormatDate(t, "hh:nn AM/PM");
    if (format == "Long Time") return FormatDate(t, "hh:nn:ss");
    if (format == "General Date") {
        if (t.hour == 0 && t.minute == 0 && t.second == 0) return FormatDate(t, "dd/mm/yyyy");
        return FormatDate(t, "dd/mm/yyyy hh:nn:ss");
    }
    bool ampm = false;
    for (size_t i = 0; i + 4 < format.size() + 1; ++i)
        if (format.substr(i, 5) == "AM/PM" || format.substr(i, 5) == "am/pm") ampm = true;

    std::string out;
    bool lastWasHour = false;
    size_t i = 0;
    auto run = [&](char c) {
        size_t n = 0;
        while (i + n < format.size() && (format[i + n] == c || format[i + n] == char(c ^ 0x20))) ++n;
        return n;
    };
    while (i < format.size()) {
        char c = format[i];
        char lc = char(c | 0x20);
        if (format.substr(i, 5) == "AM/PM" || format.substr(i, 5) == "am/pm") {
            bool pm = t.hour >= 12;
            out += (format[i] == 'A') ? (pm ? "PM" : "AM") : (pm ? "pm" : "am");
            i += 5;
            continue;
        }
        if (lc == 'd' && std::isalpha(static_cast<unsigned char>(c))) {
            size_t n = run('d');
            if (n == 1) out += std::to_string(t.day);
            else if (n == 2) out += Two(t.day);
            else if (n == 3) out += std::string(kDays[size_t(t.DayOfWeek() - 1)]).substr(0, 3);
            else out += kDays[size_t(t.DayOfWeek() - 1)];
            i += n;
            lastWasHour = false;
        } else if (lc == 'm' && std::isalpha(static_cast<unsigned char>(c))) {
            size_t n = run('m');
            if (lastWasHour && n <= 2) {
                out += n == 1 ? std::to_string(t.minute) : Two(t.minute);
            } else if (n == 1) out += std::to_string(t.month);
            else if (n == 2) out += Two(t.month);
            else if (n == 3) out += std::string(kMonths[size_t(t.month - 1)]).substr(0, 3);
            else out += kMonths[size_t(t.month - 1)];
            i += n;
            lastWasHour = false;
        } else if (lc == 'y' && std::isalpha(static_cast<unsigned char>(c))) {
            size_t n = run('y');
            out += n <= 2 ? Two(t.year % 100) : std::to_string(t.year);
            i += n;
        } else if (lc == 'h' && std::isalpha(static_cast<unsigned char>(c))) {
            size_t n = run('h');
            int h = t.hour;
            if (ampm) { h %= 12; if (h == 0) h = 12; }
            out += n == 1 ? std::to_string(h) : Two(h);
            i += n;
            lastWasHour = true;
            continue;
        } else if (lc == 'n' && std::isalpha(static_cast<unsigned char>(c))) {
            size_t n = run('n');
            out += n == 1 ? std::to_string(t.minute) : Two(t.minute);
            i += n;
        } else if (lc == 's' && std::isalpha(static_cast<unsigned char>(c))) {
            size_t n = run('s');
            out += n == 1 ? std::to_string(t.second) : Two(t.second);
            i += n;
        } else {
            out.push_back(c);
            ++i;
            if (c != ':' && c != ' ') lastWasHour = false;
            continue;
        }
        if (!(lc == 'h')) lastWasHour = lastWasHour && false;
    }
    return out;
}

std::string DateLiteral(const DateTime& t) {
    char b[48];
    if (t.hour == 0 && t.minute == 0 && t.second == 0)
        std::snprintf(b, sizeof b, "#%04d-%02d-%02d#", t.year, t.month, t.day);
    else
        std::snprintf(b, sizeof b, "#%04d-%02d-%02d %02d:%02d:%02d#", t.year, t.month, t.day, t.hour, t.minute, t.second);
    return b;
}

bool ParseDateLiteral(std::string_view s, DateTime& out) {
    if (!s.empty() && s.front() == '#') s.remove_prefix(1);
    if (!s.empty() && s.back() == '#') s.remove_suffix(1);
    int y, mo, d, h = 0, mi = 0, se = 0;
    std::string str(s);
    int n = 0;
    if (std::sscanf(str.c_str(), "%4d-%2d-%2d%n", &y, &mo, &d, &n) != 3) return false;
    if (size_t(n) < str.size()) {
        int n2 = 0;
        if (std::sscanf(str.c_str() + n, " %2d:%2d:%2d%n", &h, &mi, &se, &n2) != 3) return false;
        if (size_t(n + n2) != str.size()) return false;
    }
    if (!IsValidDate(y, mo, d) || h > 23 || mi > 59 || se > 59 || h < 0 || mi < 0 || se < 0) return false;
    out = DateTime{y, mo, d, h, mi, se, 0};
    return true;
}

}  // namespace ombra
