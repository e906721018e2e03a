#include "core/Val.h"

#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdlib>

namespace ombra {

namespace {
bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }
}  // namespace

double Val(std::string_view text) {
    // Blanks are not significant anywhere in the number, so drop them first.
    std::string s;
    s.reserve(text.size());
    for (char c : text)
        if (!IsBlank(c)) s.push_back(c);

    size_t i = 0;
    if (s.size() >= 2 && s[0] == '&') {
        int base = 0;
        char p = char(std::toupper(static_cast<unsigned char>(s[1])));
        if (p == 'H') base = 16;
        else if (p == 'O') base = 8;
        if (base) {
            long long v = 0;
            size_t j = 2;
            int digits = 0;
            for (; j < s.size() && digits < 16; ++j, ++digits) {
                int d;
                char c = s[j];
                if (c >= '0' && c <= '9') d = c - '0';
                else if (base == 16 && std::isxdigit(static_cast<unsigned char>(c)))
                    d = std::toupper(static_cast<unsigned char>(c)) - 'A' + 10;
                else break;
                if (d >= base) break;
                v = v * base + d;
            }
            return double(v);
        }
    }

    std::string num;
    if (i < s.size() && (s[i] == '+' || s[i] == '-')) num.push_back(s[i++]);
    bool digits = false;
    while (i < s.size() && std::isdigit(static_cast<unsigned char>(s[i]))) {
        num.push_back(s[i++]);
        digits = true;
    }
    if (i < s.size() && s[i] == '.') {
        num.push_back(s[i++]);
        while (i < s.size() && std::isdigit(static_cast<unsigned char>(s[i]))) {
            num.push_back(s[i++]);
            digits = true;
        }
    }
    if (!digits) return 0.0;
    if (i < s.size() && (s[i] == 'e' || s[i] == 'E' || s[i] == 'd' || s[i] == 'D')) {
        size_t j = i + 1;
        std::string ex = "e";
        if (j < s.size() && (s[j] == '+' || s[j] == '-')) ex.push_back(s[j++]);
        size_t k = j;
        while (k < s.size() && std::isdigit(static_cast<unsigned char>(s[k]))) ex.push_back(s[k++]);
        if (k > j) num += ex;
    }
    double v = std::strtod(num.c_str(), nullptr);  // C locale: the program never calls setlocale
    if (!std::isfinite(v)) return 0.0;
    return v;
}

bool IsNumeric(std::string_view text) {
    size_t b = 0, e = text.size();
    while (b < e && IsBlank(text[b])) ++b;
    while (e > b && IsBlank(text[e - 1])) --e;
    if (b == e) return false;
    size_t i = b;
    if (text[i] == '+' || text[i] == '-') ++i;
    bool digits = false;
    while (i < e && std::isdigit(static_cast<unsigned char>(text[i]))) { ++i; digits = true; }
    if (i < e && text[i] == '.') {
        ++i;
        while (i < e && std::isdigit(static_cast<unsigned char>(text[i]))) { ++i; digits = true; }
    }
    if (!digits) return false;
    if (i < e && (text[i] == 'e' || text[i] == 'E' || text[i] == 'd' || text[i] == 'D')) {
        ++i;
        if (i < e && (text[i] == '+' || text[i] == '-')) ++i;
        bool ed = false;
        while (i < e && std::isdigit(static_cast<unsigned char>(text[i]))) { ++i; ed = true; }
        if (!ed) return false;
    }
    return i == e;
}

std::string Trim(std::string_view text) {
    size_t b = 0, e = text.size();
    while (b < e && (text[b] == ' ' || text[b] == '\t')) ++b;
    while (e > b && (text[e - 1] == ' ' || text[e - 1] == '\t')) --e;
    return std::string(text.substr(b, e - b));
}

std::string UCase(std::string_view text) {
    std::string s(text);
    for (char& c : s) c = char(std::toupper(static_cast<unsigned char>(c)));
    return s;
}

std::string LCase(std::string_view text) {
    std::string s(text);
    for (char& c : s) c = char(std::tolower(static_cast<unsigned char>(c)));
    return s;
}

std::string Replace(std::string_view text, std::string_view from, std::string_view to) {
    if (from.empty()) return std::string(text);
    std::string out;
    size_t pos = 0;
    while (true) {
        size_t f = text.find(from, pos);
        if (f == std::string_view::npos) break;
        out.append(text.substr(pos, f - pos));
        out.append(to);
        pos = f + from.size();
    }
    out.append(text.substr(pos));
    return out;
}

template <typename T>
static std::string ShortestText(T value) {
    if (!std::isfinite(value)) return "0";
    if (value == 0) return "0";
    char buf[64];
    auto r = std::to_chars(buf, buf + sizeof buf, value);
    return std::string(buf, r.ptr);
}

// The digits of a number's text that carry its value: leading zeros, the
// sign, the point and the exponent do not count.
static int SignificantDigits(std::string_view text) {
    int n = 0;
    bool leading = true;
    for (char c : text) {
        if (c == 'e' || c == 'E') break;
        if (c < '0' || c > '9') continue;
        if (leading && c == '0') continue;
        leading = false;
        ++n;
    }
    return n;
}

std::string NumberText(double value) {
    std::string shortest = ShortestText(value);
    if (SignificantDigits(shortest) <= 15) return shortest;
    // Arithmetic leaves tails like -3960.0000000000005 for -3960; 15
    // significant digits hold a position in seconds of arc to far below a
    // millimetre, and a person reading the file sees the value meant.
    char buf[64];
    auto r = std::to_chars(buf, buf + sizeof buf, value, std::chars_format::general, 15);
    return std::string(buf, r.ptr);
}
std::string NumberText(float value) { return ShortestText(value); }

}  // namespace ombra
