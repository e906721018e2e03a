#include "app/cli/replay/ReplayServices.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include "app/cli/replay/ReplayLog.h"
#include "core/Val.h"
#include "platform/comms/PosixComms.h"
#include "platform/fake/ScriptedDialogs.h"
#include "plotter/Plotter.h"

namespace ombra {

// ---- Event lines ---------------------------------------------------------------

namespace {

// The length of a well-formed UTF-8 sequence starting at s[i], 0 if none.
size_t Utf8Length(std::string_view s, size_t i) {
    unsigned char c = (unsigned char)s[i];
    size_t n = c >= 0xF0 && c <= 0xF4 ? 4 : c >= 0xE0 ? 3 : c >= 0xC2 && c < 0xE0 ? 2 : 0;
    if (n == 0 || i + n > s.size()) return 0;
    for (size_t k = 1; k < n; ++k)
        if (((unsigned char)s[i + k] & 0xC0) != 0x80) return 0;
    unsigned char c1 = (unsigned char)s[i + 1];
    if ((c == 0xE0 && c1 < 0xA0) || (c == 0xED && c1 >= 0xA0) || (c == 0xF0 && c1 < 0x90) || (c == 0xF4 && c1 >= 0x90))
        return 0;  // overlong forms, surrogates, beyond U+10FFFF
    return n;
}

}  // namespace

void AppendJsonString(std::string& out, std::string_view s) {
    out.push_back('"');
    for (size_t i = 0; i < s.size();) {
        unsigned char c = (unsigned char)s[i];
        if (c == '"' || c == '\\') {
            out.push_back('\\');
            out.push_back(char(c));
        } else if (c == '\n') {
            out += "\\n";
        } else if (c == '\r') {
            out += "\\r";
        } else if (c == '\t') {
            out += "\\t";
        } else if (c < 0x20 || c == 0x7F) {
            char b[8];
            std::snprintf(b, sizeof b, "\\u%04x", c);
            out += b;
        } else if (c >= 0x80) {
            size_t n = Utf8Length(s, i);
            if (n) {
                out.append(s.substr(i, n));
                i += n;
                continue;
            }
            char b[8];
            std::snprintf(b, sizeof b, "\\u%04x", c);
            out += b;
        } else {
            out.push_back(char(c));
        }
        ++i;
    }
    out.push_back('"');
}

std::string IsoTime(const DateTime& t) {
    char b[40];
    std::snprintf(b, sizeof b, "%04d-%02d-%02dT%02d:%02d:%02d.%03d", t.year, t.month, t.day, t.hour, t.minute, t.second,
                  t.millisecond);
    return b;
}

EventLine::EventLine(const DateTime& when, const char* event) {
    text_ = "{\"time\":\"" + IsoTime(when) + "\",\"event\":";
    AppendJsonString(text_, event);
}

EventLine& EventLine::Add(const char* key, std::string_view value) {
    text_.push_back(',');
    AppendJsonString(text_, key);
    text_.push_back(':');
    AppendJsonString(text_, value);
    return *this;
}

EventLine& EventLine::Add(const char* key, long long value) {
    text_.push_back(',');
    AppendJsonString(text_, key);
    text_ += ":" + std::to_string(value);
    return *this;
}

EventLine& EventLine::Add(const char* key, bool value) {
    text_.push_back(',');
    AppendJsonString(text_, key);
    text_ += value ? ":true" : ":false";
    return *this;
}

// ---- The autopilot line --------------------------------------------------------

AutopilotLine::~AutopilotLine() {
    Flush();
    if (fd_ >= 0) ::close(fd_);
}

void AutopilotLine::Flush() {
    // A full terminal buffer drops what does not fit, as a port does.
    size_t at = 0;
    while (fd_ >= 0 && at < pending_.size()) {
        ssize_t n = ::write(fd_, pending_.data() + at, pending_.size() - at);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) break;
        at += size_t(n);
    }
    pending_.clear();
}

bool AutopilotLine::Open(int32_t baud, std::string& why) {
    // A terminal (serial device or pty) is written as it stands; anything
    // else is a file, started afresh.
    int fd = ::open(device_.c_str(), O_WRONLY | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (fd >= 0 && !::isatty(fd)) {
        ::close(fd);
        fd = -1;
    }
    terminal_ = fd >= 0;
    if (fd >= 0) {
        termios tio{};
        if (::tcgetattr(fd, &tio) == 0) {
            ::cfmakeraw(&tio);
            unsigned speed = B4800;
            BaudToSpeed(baud, speed);
            ::cfsetospeed(&tio, speed_t(speed));
            ::cfsetispeed(&tio, speed_t(speed));
            ::tcsetattr(fd, TCSANOW, &tio);
        }
    } else {
        fd = ::open(device_.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    }
    if (fd < 0) {
        why = device_ + ": " + std::strerror(errno);
        return false;
    }
    fd_ = fd;
    return true;
}

void AutopilotLine::Write(std::string_view bytes) {
    pending_.append(bytes);
    if (terminal_ || pending_.size() >= 65536) Flush();
    partial_.append(bytes);
    size_t start = 0;
    for (size_t lf; (lf = partial_.find('\n', start)) != std::string::npos; start = lf + 1) {
        std::string_view line(partial_.data() + start, lf - start);
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        if (!line.empty()) events_.Emit(events_.Event("nmea_out").Add("port", device_).Add("sentence", line));
    }
    partial_.erase(0, start);
    if (partial_.size() > 4096) partial_.clear();  // never a sentence
}

// ---- The ports -----------------------------------------------------------------

int16_t ReplayComms::OpenComPort(int16_t port, int32_t) {
    if (port < 1 || port > 255) return 0;
    open_[size_t(port)] = true;
    return 1;
}

void ReplayComms::CloseComPort(int16_t port) {
    if (port < 1 || port > 255) return;
    open_[size_t(port)] = false;
    if (port == gpsPort_) queue_.Clear();
}

int16_t ReplayComms::ComPortStatus(int16_t port) { return port >= 1 && port <= 255 && open_[size_t(port)] ? 1 : 0; }

static int16_t ComPortReadLine(LineQueue& q, char* buffer, int16_t length) {
    std::string line;
    if (length <= 0 || !q.Pop(line)) return 0;
    size_t n = std::min(line.size(), size_t(length));
    std::memcpy(buffer, line.data(), n);
    return int16_t(n);
}

int16_t ReplayComms::ComPortRead(int16_t port, char* buffer, int16_t length) {
    if (port != gpsPort_ || !ComPortStatus(port)) return 0;
    return ComPortReadLine(queue_, buffer, length);
}

void ReplayComms::ComPortWrite(int16_t port, const char* buffer, int16_t count) {
    if (port != gpsPort_ || !ComPortStatus(port) || !autopilot_ || count <= 0) return;
    autopilot_->Write(std::string_view(buffer, size_t(count)));
}

void ReplayComms::Deliver(double now) {
    // Half a millisecond of slack: the clock keeps whole milliseconds.
    const double due = now + 0.0005 / 86400.0;
    double next = 0.0;
    LogLine line;
    // The queue is never overfilled: lines wait in the log for the tick.
    while (queue_.Size() < 1024 && log_.PeekDue(next) && next <= due) {
        log_.Next(line);
        ++delivered_;
        if (!ComPortStatus(gpsPort_)) continue;
        queue_.Append(line.bytes);
        if (line.bytes.back() != '\n') queue_.EndPartial();
    }
    if (!log_.PeekDue(next)) logDone_ = true;
}

// ---- Questions -----------------------------------------------------------------

namespace {

struct Button {
    const char* caption;
    int reply;
};
const Button kButtons[] = {{"OK", mb::OK},       {"Cancel", mb::Cancel}, {"Abort", mb::Abort}, {"Retry", mb::Retry},
                           {"Ignore", mb::Ignore}, {"Yes", mb::Yes},       {"No", mb::No}};

// The buttons a box of this style shows.
bool HasButton(int style, int reply) {
    switch (style & 15) {
        case mb::OKOnly: return reply == mb::OK;
        case mb::OKCancel: return reply == mb::OK || reply == mb::Cancel;
        case mb::AbortRetryIgnore: return reply == mb::Abort || reply == mb::Retry || reply == mb::Ignore;
        case mb::YesNoCancel: return reply == mb::Yes || reply == mb::No || reply == mb::Cancel;
        case mb::YesNo: return reply == mb::Yes || reply == mb::No;
        case mb::RetryCancel: return reply == mb::Retry || reply == mb::Cancel;
        default: return reply == mb::OK;
    }
}

const char* CaptionOf(int reply) {
    for (const Button& b : kButtons)
        if (b.reply == reply) return b.caption;
    return "";
}

}  // namespace

int ReplayDialogs::MsgBox(const std::string& text, int style, const std::string& title) {
    int reply = ScriptedDialogs::DefaultReply(style);
    auto it = answers_.find(title);
    if (it != answers_.end()) {
        for (const Button& b : kButtons)
            if (UCase(it->second) == UCase(b.caption) && HasButton(style, b.reply)) reply = b.reply;
    }
    events_.Emit(events_.Event("message").Add("title", title).Add("text", text).Add("answer", CaptionOf(reply)));
    return reply;
}

// ---- The navigation objects' windows ---------------------------------------------

int ReplayNavWindows::ListPick(const std::string&, const std::vector<std::string>& items, const std::string&) {
    std::string wanted = std::move(pick_);
    pick_.clear();
    for (size_t i = 0; i < items.size(); ++i)
        if (items[i] == wanted) return int(i);
    return -1;
}

int ReplayNavWindows::TwoChoice(const std::string& title, const std::string& text, const std::string& first,
                                const std::string& second) {
    int choice = 0;
    auto it = answers_.find(title);
    if (it != answers_.end()) choice = it->second == first ? 1 : it->second == second ? 2 : 0;
    events_.Emit(events_.Event("message")
                     .Add("title", title)
                     .Add("text", text)
                     .Add("answer", choice == 1 ? first : choice == 2 ? second : std::string()));
    return choice;
}

ReplayNavWindows::Destination ReplayNavWindows::Now() const {
    Destination d;
    if (!plotter_) return d;
    NavObjects& nav = plotter_->nav();
    const ActiveLeg& leg = nav.activation.Leg();
    d.kind = leg.Kind;
    if (leg.Kind == 1) {
        d.name = leg.Name;
        d.point = leg.Name;
        d.index = nav.waypoints.ActiveIndex;
    } else if (leg.Kind == 2) {
        const Route* r = nav.routes.At(nav.routes.ActiveRoute);
        d.name = r ? r->Name : std::string();
        d.point = leg.Name;
        d.index = nav.routes.ActivePoint;
    }
    return d;
}

void ReplayNavWindows::Tell(const char* event, const Destination& d) {
    events_.Emit(events_.Event(event)
                     .Add("kind", d.kind == 1 ? "waypoint" : "route")
                     .Add("name", d.name)
                     .Add("point", d.point)
                     .Add("index", (long long)d.index));
}

void ReplayNavWindows::ActiveLegChanged() {
    Destination now = Now();
    if (now == last_) return;  // a range edited, nothing new
    if (last_.kind != 0 && (now.kind == 0 || now.kind != last_.kind)) Tell("deactivate", last_);
    if (now.kind != 0) Tell("activate", now);
    last_ = now;
}

// ---- The shell -----------------------------------------------------------------

void ReplayShell::SetPlotter(Plotter* p) {
    plotter_ = p;
    nav_.SetPlotter(p);
}

void ReplayShell::WatchMode() {
    if (!plotter_) return;
    static const char* const kNames[] = {"None", "DR", "GPS", "Connecting", "GPS Lost", "File DR"};
    int mode = plotter_->instruments().vessel.vessel.Mode;
    if (mode == mode_) return;
    mode_ = mode;
    events_.Emit(events_.Event("mode").Add("mode", (long long)mode).Add("name", mode >= 0 && mode <= 5 ? kNames[mode] : "?"));
}

std::string ReplayShell::ShowAlarm(AlarmForm form, const std::string& caption, const std::string& text, bool beep) {
    size_t i = size_t(form);
    if (i < captions_.size()) captions_[i] = caption;
    events_.Emit(events_.Event("alarm").Add("form", caption).Add("text", text).Add("beep", beep));
    auto it = answers_.find(caption);
    return it == answers_.end() ? std::string() : it->second;
}

void ReplayShell::HideAlarm(AlarmForm form) {
    size_t i = size_t(form);
    if (i >= captions_.size() || captions_[i].empty()) return;  // not up
    events_.Emit(events_.Event("alarm_closed").Add("form", captions_[i]));
    captions_[i].clear();
}

void ReplayShell::LogEntryAdded(LogEntryKind kind, const LogEntry& entry) {
    EventLine line = events_.Event("log_entry");
    line.Add("kind", (long long)kind);
    for (int f = 0; f < LogEntry::kFieldCount; ++f)
        line.Add(std::string(kLogEntryFieldNames[size_t(f)]).c_str(), entry.Field(f));
    events_.Emit(line);
}

}  // namespace ombra
