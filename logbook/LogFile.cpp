#include "logbook/LogFile.h"

#include <cmath>
#include <cstdio>

#include "core/Fault.h"
#include "core/Format.h"
#include "core/Rounding.h"
#include "core/Val.h"

namespace ombra {

namespace {

// Writes values the way the log has always been written: strings quoted
// as they are, no escape.
class LogWriter {
public:
    LogWriter& Str(const std::string& s) {
        Sep();
        out_ += '"';
        out_ += s;
        out_ += '"';
        return *this;
    }
    LogWriter& Int(long long v) {
        Sep();
        out_ += std::to_string(v);
        return *this;
    }
    LogWriter& Date(const DateTime& d) {
        Sep();
        char buf[32];
        std::snprintf(buf, sizeof buf, "#%04d-%02d-%02d#", d.year, d.month, d.day);
        out_ += buf;
        return *this;
    }
    LogWriter& End() {
        out_ += "\r\n";
        started_ = false;
        return *this;
    }
    std::string& Text() { return out_; }

private:
    void Sep() {
        if (started_) out_ += ',';
        started_ = true;
    }
    std::string out_;
    bool started_ = false;
};

// Counted fields, as the log's reader takes them.
class LogReader {
public:
    explicit LogReader(std::string_view s) : s_(s) {}

    std::string Str() { return Next(); }

    int16_t Int16() {
        double v = Val(Next());
        if (!std::isfinite(v) || v < -32768.5 || v >= 32767.5) Throw(faults::Overflow);
        return CInt16(v);
    }

    int32_t Int32() {
        double v = Val(Next());
        if (!std::isfinite(v) || v < -2147483648.5 || v >= 2147483647.5) Throw(faults::Overflow);
        return int32_t(std::nearbyint(v));
    }

    DateTime Date() {
        std::string f = Next();
        DateTime d;
        if (!ParseDateLiteral(Trim(f), d)) Throw(faults::TypeMismatch);
        d.hour = d.minute = d.second = d.millisecond = 0;
        return d;
    }

    // The line of the value read last (or being read).
    int Line() const { return valueLine_; }

    [[noreturn]] void Throw(int number) {
        throw Fault(number, FaultDescription(number) + " (line " + std::to_string(valueLine_) + ")");
    }

private:
    bool LineEnd(size_t p) const { return p < s_.size() && (s_[p] == '\r' || s_[p] == '\n'); }
    // Steps over one line end (CR LF, LF or a lone CR).
    void EatLineEnd() {
        if (s_[pos_] == '\r' && pos_ + 1 < s_.size() && s_[pos_ + 1] == '\n') ++pos_;
        ++pos_;
        ++line_;
    }

    std::string Next() {
        // Blanks and line ends before a value only separate.
        while (pos_ < s_.size()) {
            if (s_[pos_] == ' ' || s_[pos_] == '\t') {
                ++pos_;
            } else if (LineEnd(pos_)) {
                EatLineEnd();
            } else {
                break;
            }
        }
        valueLine_ = line_;
        if (pos_ >= s_.size() || s_[pos_] == '\x1a') Throw(faults::InputPastEnd);
        std::string out;
        if (s_[pos_] == '"') {
            // To the next quote, whatever lies between; nothing escapes it.
            ++pos_;
            size_t b = pos_;
            while (pos_ < s_.size() && s_[pos_] != '"') {
                if (s_[pos_] == '\n' || (s_[pos_] == '\r' && !(pos_ + 1 < s_.size() && s_[pos_ + 1] == '\n'))) ++line_;
                ++pos_;
            }
            out.assign(s_.substr(b, pos_ - b));
            if (pos_ < s_.size()) ++pos_;
            // What follows the closing quote up to the separator is dropped.
            while (pos_ < s_.size() && s_[pos_] != ',' && !LineEnd(pos_)) ++pos_;
        } else {
            size_t b = pos_;
            while (pos_ < s_.size() && s_[pos_] != ',' && !LineEnd(pos_)) ++pos_;
            out = Trim(s_.substr(b, pos_ - b));
        }
        if (pos_ < s_.size()) {
            if (s_[pos_] == ',') ++pos_;
            else EatLineEnd();
        }
        return out;
    }

    std::string_view s_;
    size_t pos_ = 0;
    int line_ = 1;
    int valueLine_ = 1;
};

}  // namespace

std::string LogFileText(const DayLog& day) {
    const LogHeader& h = day.Header;
    LogWriter w;
    w.Date(h.LogDate).Str(h.CurrentPort).Str(h.DestinationPort).End();
    w.Str(h.NumCrew).Str(h.EngineHours).Str(h.ETD).Str(h.Fuel).Str(h.Water).End();
    w.Int(h.AutoLog).Int(h.AutoInterval).End();
    for (int i = 0; i < 5; ++i) w.Str(h.PortTide[size_t(i)]);
    w.End();
    for (int i = 5; i < 10; ++i) w.Str(h.PortTide[size_t(i)]);
    w.End();
    w.Int((long long)day.Entries.size()).Int((long long)day.Forecasts.size()).End();
    for (const LogEntry& e : day.Entries) {
        for (int f = 0; f < LogEntry::kFieldCount; ++f) {
            w.Str(e.Field(f));
            if (f == 2 || f == 5 || f == 8 || f == 12) w.End();
        }
    }
    for (const Forecast& f : day.Forecasts)
        for (const std::string* s : {&f.Time, &f.SeaArea, &f.WindNow, &f.WindLater, &f.Weather, &f.Visibility})
            w.Str(*s).End();
    return std::move(w.Text());
}

LogReadOutcome ReadLogText(std::string_view text, DayLog& day) {
    day = DayLog{};
    LogReader r(text);
    LogHeader& h = day.Header;
    try {
        h.LogDate = r.Date();
        h.CurrentPort = r.Str();
        h.DestinationPort = r.Str();
        h.NumCrew = r.Str();
        h.EngineHours = r.Str();
        h.ETD = r.Str();
        h.Fuel = r.Str();
        h.Water = r.Str();
        h.AutoLog = r.Int16();
        h.AutoInterval = r.Int32();
        for (std::string& p : h.PortTide) p = r.Str();
        const int16_t entries = r.Int16();
        const int16_t forecasts = r.Int16();
        if (entries < 0 || forecasts < 0) r.Throw(faults::SubscriptOutOfRange);
        // The lists grow as values arrive, so a count larger than the file
        // costs nothing before the read runs out.
        for (int i = 0; i < entries; ++i) {
            LogEntry& e = day.Entries.emplace_back();
            for (int f = 0; f < LogEntry::kFieldCount; ++f) e.Field(f) = r.Str();
        }
        for (int i = 0; i < forecasts; ++i) {
            Forecast& f = day.Forecasts.emplace_back();
            for (std::string* s : {&f.Time, &f.SeaArea, &f.WindNow, &f.WindLater, &f.Weather, &f.Visibility})
                *s = r.Str();
        }
    } catch (const Fault& f) {
        return {false, r.Line(), f.what()};
    }
    return {};
}

std::string LogBaseName(const DateTime& d) {
    char buf[32];
    std::snprintf(buf, sizeof buf, "%04d%02d%02d", d.year, d.month, d.day);
    return buf;
}

bool LogDateFromName(std::string_view name, DateTime& day) {
    if (name.size() < 8) return false;
    int v[3] = {0, 0, 0};
    const int widths[3] = {4, 2, 2};
    size_t at = 0;
    for (int k = 0; k < 3; ++k)
        for (int i = 0; i < widths[k]; ++i, ++at) {
            char c = name[at];
            if (c < '0' || c > '9') return false;
            v[k] = v[k] * 10 + (c - '0');
        }
    if (!IsValidDate(v[0], v[1], v[2])) return false;
    day = DateTime{v[0], v[1], v[2], 0, 0, 0, 0};
    return true;
}

}  // namespace ombra
