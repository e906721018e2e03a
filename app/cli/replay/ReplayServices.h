// The services a replayed plotter runs over: the log as its GPS port, the
// autopilot line, questions answered from the command line, and a shell
// that tells what happens as one JSON object a line.
//
// Events, each with "time" (the replayed clock, ISO 8601 to the
// millisecond) and "event":
//   alarm         "form" (the window's caption), "text", "beep"
//   alarm_closed  "form"
//   activate      "kind" ("waypoint" or "route"), "name", "point", "index"
//   deactivate    the same, of the destination dropped
//   log_entry     "kind" (0..8) and the thirteen fields by their names
//   nmea_out      "port" (the device), "sentence" (as written, without CR LF)
//   mode          "mode" (0..5) and "name"
//   message       "title", "text", "answer": a message box or question,
//                 answered from --answer by its title, else by its default
//                 button
#pragma once
#include <array>
#include <cstdint>
#include <map>
#include <ostream>
#include <string>

#include "platform/api/Clock.h"
#include "platform/api/Comms.h"
#include "platform/api/Dialogs.h"
#include "platform/comms/LineQueue.h"
#include "plotter/WindowlessShell.h"

namespace ombra {

class Plotter;
class ReplayLog;

// One event line.
class EventLine {
public:
    EventLine(const DateTime& when, const char* event);
    EventLine& Add(const char* key, std::string_view value);
    EventLine& Add(const char* key, const char* value) { return Add(key, std::string_view(value)); }
    EventLine& Add(const char* key, const std::string& value) { return Add(key, std::string_view(value)); }
    EventLine& Add(const char* key, long long value);
    EventLine& Add(const char* key, bool value);
    // The line, with its LF.
    std::string Text() const { return text_ + "}\n"; }

private:
    std::string text_;
};

// JSON string text: control characters and bytes that are not UTF-8 are
// escaped (a stray byte as the Latin-1 character it would be).
void AppendJsonString(std::string& out, std::string_view s);
std::string IsoTime(const DateTime& t);

// Button captions of --answer, by window caption or box title.
using Answers = std::map<std::string, std::string>;

// Where the events go.
class EventSink {
public:
    EventSink(std::ostream& out, Clock& clock) : out_(out), clock_(clock) {}
    EventLine Event(const char* name) { return EventLine(clock_.Now(), name); }
    void Emit(const EventLine& line) { out_ << line.Text(); }

private:
    std::ostream& out_;
    Clock& clock_;
};

// The line the plotter's NMEA output goes to: a file, a pty or a serial
// device, opened once for writing. Every line written is told as an
// "nmea_out" event. A terminal gets each write at once; a file gets them in
// large pieces, all of them by the time the line is closed.
class AutopilotLine {
public:
    AutopilotLine(EventSink& events, std::string device) : events_(events), device_(std::move(device)) {}
    ~AutopilotLine();
    AutopilotLine(const AutopilotLine&) = delete;
    AutopilotLine& operator=(const AutopilotLine&) = delete;
    bool Open(int32_t baud, std::string& why);
    void Write(std::string_view bytes);

private:
    void Flush();
    EventSink& events_;
    std::string device_;
    int fd_ = -1;
    bool terminal_ = false;
    std::string pending_;  // a file's bytes not yet written
    std::string partial_;
};

// The ports: the GPS port reads the log as the replayed clock reaches each
// line; writes to it go to the autopilot line when there is one; every
// other port opens and stays silent.
class ReplayComms : public Comms {
public:
    ReplayComms(ReplayLog& log, int16_t gpsPort, AutopilotLine* autopilot)
        : log_(log), gpsPort_(gpsPort), autopilot_(autopilot) {}
    int16_t OpenComPort(int16_t port, int32_t baudRate) override;
    void CloseComPort(int16_t port) override;
    int16_t ComPortStatus(int16_t port) override;
    int16_t ComPortRead(int16_t port, char* buffer, int16_t length) override;
    void ComPortWrite(int16_t port, const char* buffer, int16_t count) override;

    // Hands the GPS port the lines due by `now` (a date-time serial). A
    // closed port misses them, as a real one would.
    void Deliver(double now);
    // True once every line of the log has been delivered and read.
    bool Drained() const { return logDone_ && queue_.Size() == 0; }
    long long Delivered() const { return delivered_; }

private:
    ReplayLog& log_;
    int16_t gpsPort_;
    AutopilotLine* autopilot_;
    LineQueue queue_{4096};
    std::array<bool, 256> open_{};
    bool logDone_ = false;
    long long delivered_ = 0;
};

// Message boxes and questions, answered without a window.
class ReplayDialogs : public Dialogs {
public:
    ReplayDialogs(EventSink& events, const Answers& answers) : events_(events), answers_(answers) {}
    int MsgBox(const std::string& text, int style, const std::string& title) override;
    bool InputBox(const std::string&, const std::string&, std::string&) override { return false; }
    int PickFromList(const std::string&, const std::vector<std::string>&, int) override { return -1; }
    std::string OpenFileName(const std::string&, const std::string&, const std::string&) override { return ""; }
    std::string SaveFileName(const std::string&, const std::string&, const std::string&) override { return ""; }
    std::string FolderName(const std::string&, const std::string&) override { return ""; }

private:
    EventSink& events_;
    const Answers& answers_;
};

// The navigation objects' windows of the replay: the database list picks
// the database asked for, and the active leg is watched.
class ReplayNavWindows : public NavHost {
public:
    ReplayNavWindows(EventSink& events, const Answers& answers) : events_(events), answers_(answers) {}
    void SetPlotter(Plotter* p) { plotter_ = p; }
    // The next database list answers with this name (-1 when absent).
    void PickNext(std::string name) { pick_ = std::move(name); }
    int ListPick(const std::string& title, const std::vector<std::string>& items, const std::string& button) override;
    int TwoChoice(const std::string& title, const std::string& text, const std::string& first,
                  const std::string& second) override;
    void ActiveLegChanged() override;

private:
    struct Destination {
        int16_t kind = 0;
        std::string name, point;
        int index = 0;
        bool operator==(const Destination&) const = default;
    };
    Destination Now() const;
    void Tell(const char* event, const Destination& d);
    EventSink& events_;
    const Answers& answers_;
    Plotter* plotter_ = nullptr;
    std::string pick_;
    Destination last_;
};

class ReplayShell : public WindowlessShell {
public:
    ReplayShell(EventSink& events, const Answers& answers)
        : events_(events), answers_(answers), nav_(events, answers) {}
    void SetPlotter(Plotter* p);
    ReplayNavWindows& navWindows() { return nav_; }
    // After each tick: the vessel's mode, told when it changed.
    void WatchMode();

    void CreateMainWindow(const std::string&) override { windowUp_ = true; }
    void EndProcess() override { windowUp_ = false; }
    NavHost* NavWindows() override { return windowUp_ ? &nav_ : nullptr; }

    std::string ShowAlarm(AlarmForm form, const std::string& caption, const std::string& text, bool beep) override;
    void HideAlarm(AlarmForm form) override;
    void LogEntryAdded(LogEntryKind kind, const LogEntry& entry) override;

private:
    EventSink& events_;
    const Answers& answers_;
    ReplayNavWindows nav_;
    Plotter* plotter_ = nullptr;
    bool windowUp_ = false;
    int mode_ = -1;
    std::array<std::string, 4> captions_;  // of the windows up; "" when down
};

}  // namespace ombra
