#include "app/cli/replay/ReplayLog.h"

#include <cmath>

#include "instruments/NmeaText.h"

namespace ombra {

namespace {

constexpr size_t kMaxLine = 255;  // longer is not a sentence (the ports' rule)

bool Digits(std::string_view s) {
    if (s.empty()) return false;
    for (char c : s)
        if (c < '0' || c > '9') return false;
    return true;
}

// "hhmmss" with an optional fraction, a real time of day.
bool TimeOfDay(std::string_view f, double& seconds) {
    if (f.size() < 6 || !Digits(f.substr(0, 6))) return false;
    std::string_view frac;
    if (f.size() > 6) {
        if (f[6] != '.' || (f.size() > 7 && !Digits(f.substr(7)))) return false;
        frac = f.substr(7);
    }
    int h = (f[0] - '0') * 10 + (f[1] - '0');
    int m = (f[2] - '0') * 10 + (f[3] - '0');
    int s = (f[4] - '0') * 10 + (f[5] - '0');
    if (h > 23 || m > 59 || s > 60) return false;
    double part = 0.0, scale = 0.1;
    for (size_t i = 0; i < frac.size() && i < 6; ++i, scale /= 10) part += (frac[i] - '0') * scale;
    seconds = h * 3600.0 + m * 60.0 + std::min(s, 59) + part;
    return true;
}

// The n-th comma-separated field after the identifier (1-based), up to "*".
std::string_view Field(std::string_view s, int n) {
    size_t end = s.find_first_of("*\r\n");
    if (end != std::string_view::npos) s = s.substr(0, end);
    size_t at = 0;
    for (int i = 0; i < n; ++i) {
        at = s.find(',', at);
        if (at == std::string_view::npos) return {};
        ++at;
    }
    size_t stop = s.find(',', at);
    return s.substr(at, stop == std::string_view::npos ? std::string_view::npos : stop - at);
}

}  // namespace

bool SentenceTime(std::string_view line, double& secondsOfDay, double& date) {
    date = -1.0;
    if (line.size() < 10 || line.size() > kMaxLine || line[0] != '$') return false;
    std::string_view id = line.substr(3, 3);
    int timeField = id == "GGA" || id == "RMC" ? 1 : id == "GLL" ? 5 : 0;
    if (timeField == 0) return false;
    if (line.find('*') != std::string_view::npos && !ChecksumOK(line)) return false;
    if (!TimeOfDay(Field(line, timeField), secondsOfDay)) return false;
    if (id == "RMC") {
        double d = 0.0;
        std::string f(Field(line, 9));
        if (NmeaDate(f, d)) date = d;
    }
    return true;
}

ReplayLog::~ReplayLog() {
    if (f_) std::fclose(f_);
}

bool ReplayLog::Open(const std::string& path, std::string& why) {
    if (f_) std::fclose(f_);
    f_ = std::fopen(path.c_str(), "rb");
    if (!f_) {
        why = "cannot read the log " + path;
        return false;
    }
    // A folder opens on some systems and reads as an error.
    if (std::fgetc(f_) == EOF && std::ferror(f_)) {
        why = "cannot read the log " + path;
        std::fclose(f_);
        f_ = nullptr;
        return false;
    }
    Rewind();
    return true;
}

void ReplayLog::Rewind() {
    std::rewind(f_);
    len_ = pos_ = 0;
    eof_ = false;
    havePeek_ = false;
}

// One line, LF included; an overlong run is skipped up to its LF.
bool ReplayLog::ReadRaw(std::string& line) {
    line.clear();
    bool overlong = false;
    for (;;) {
        if (pos_ == len_) {
            if (eof_ || !f_) break;
            len_ = std::fread(buf_, 1, sizeof buf_, f_);
            pos_ = 0;
            if (len_ == 0) {
                eof_ = true;
                break;
            }
        }
        char c = buf_[pos_++];
        if (!overlong) line.push_back(c);
        if (line.size() > kMaxLine) {
            line.clear();
            overlong = true;
        }
        if (c == '\n') {
            if (!overlong) return true;
            overlong = false;  // the next line starts clean
            continue;
        }
    }
    return !line.empty();
}

double ReplayLog::DueOf(const std::string& line) {
    double tod = 0.0, date = 0.0;
    if (SentenceTime(line, tod, date)) {
        if (lastTod_ >= 0.0 && tod < lastTod_ - 43200.0) day_ += 1.0;
        lastTod_ = tod;
        double due = day_ + tod / 86400.0;
        if (due > lastDue_) lastDue_ = due;
    }
    return lastDue_ > 0.0 ? lastDue_ : startDue_;
}

bool ReplayLog::FindStart(LogStart& start, const DateTime& fallbackDay) {
    if (!f_) return false;
    Rewind();
    start = LogStart{};
    double firstTod = -1.0, lastTod = -1.0;
    double rmcDay = -1.0;
    int wraps = 0, wrapsAtRmc = 0;
    std::string line;
    double tod = 0.0, date = 0.0;
    long long fixes = 0;
    double span = 0.0;  // seconds from the first fix to the last
    while (ReadRaw(line)) {
        if (!SentenceTime(line, tod, date)) continue;
        if (firstTod < 0.0) firstTod = tod;
        if (lastTod >= 0.0 && tod < lastTod - 43200.0) ++wraps;
        double at = wraps * 86400.0 + tod - firstTod;
        if (at > span) span = at;
        lastTod = tod;
        ++fixes;
        if (rmcDay < 0.0 && date >= 0.0) {
            rmcDay = date;
            wrapsAtRmc = wraps;
        }
    }
    Rewind();
    if (firstTod < 0.0) return false;
    DateTime fallback = fallbackDay;
    fallback.hour = fallback.minute = fallback.second = fallback.millisecond = 0;
    double day = rmcDay >= 0.0 ? rmcDay - wrapsAtRmc : fallback.Serial();
    start.dated = rmcDay >= 0.0;
    start.fixes = fixes;
    start.when = DateTime::FromSerial(day + firstTod / 86400.0);
    startDue_ = start.when.Serial();
    start.lastDue = startDue_ + span / 86400.0;
    day_ = day;
    lastTod_ = -1.0;
    lastDue_ = 0.0;
    return true;
}

bool ReplayLog::PeekDue(double& due) {
    if (!havePeek_) {
        if (!ReadRaw(peek_.bytes)) return false;
        peek_.due = DueOf(peek_.bytes);
        havePeek_ = true;
    }
    due = peek_.due;
    return true;
}

bool ReplayLog::Next(LogLine& line) {
    double due = 0.0;
    if (!PeekDue(due)) return false;
    line = std::move(peek_);
    havePeek_ = false;
    return true;
}

}  // namespace ombra
