// Dde: the targets a data-source program sends over the link (DdeLink).
//
// The conversation: when a source connects, DataBuffer reads "READY" and
// the link is Ready; "BEGINTRANS" makes it "GO" and the link Running, and
// from then on "POSITION" commands place targets; "ENDTRANS" tells the
// navigator that the source has closed the transfer and the link is Ready
// again (the targets stay on the chart). A POSITION outside a transfer is
// ignored. When the last source goes away the link is Closed.
//
//   POSITION,<slot 0..100>,<lat deg>,<lon deg>,<speed kn>,<course deg>,<name>[,...],<error digit>
//
// The last character of the command is the error digit: "1" raises the
// target's error (the navigator is asked, once, whether to zoom to it),
// anything else clears it. Fields between the name and the digit are
// skipped. A POSITION that cannot be read is counted; every
// kParseFailuresToAsk of them, with "Parse Errors" ticked, the navigator is
// asked whether to keep trying, and a "no" stops the transfer.
//
// Service runs on each tick: it drains the link, and every "Update
// Interval" seconds of a transfer redraws the chart (tmrUpdateDDE).
// Questions are modal and pump events: a tick arriving inside one finds
// the module busy and returns.
#pragma once
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "core/ErrorReport.h"
#include "core/Registry.h"
#include "navobjects/NavChart.h"
#include "platform/api/Canvas.h"
#include "platform/api/DdeLink.h"
#include "platform/api/Geo.h"

namespace ombra {

struct DdeTarget {
    std::string Name;  // "" = a free slot
    double Speed = 0.0;   // knots
    double Course = 0.0;  // degrees true
    LatLong Point;        // seconds of arc
    bool Error = false;   // the source reported an error, asked about once until cleared
};

// What the options window (FrmCommDDE) edits.
struct DdeSettings {
    double Interval = 5.0;  // seconds between redraws during a transfer
    bool Labels = true;
    bool Predictors = false;
    double PTime = 10.0;  // predictor length, minutes
    bool ParseErrors = true;
    int ActiveTarget = 0;  // the slot the console shows
    uint16_t Port = 5533;
};

// What the module asks of the program around it.
class DdeHost {
public:
    virtual ~DdeHost() = default;
    virtual bool ChartLoaded() = 0;
    virtual void Message(const std::string& title, const std::string& text) = 0;
    virtual bool AskYesNo(const std::string& title, const std::string& text) = 0;
    virtual void ZoomTo(const LatLong& pos) = 0;
    virtual void Redraw() = 0;
    virtual void ConsoleChanged() = 0;
};

class Dde {
public:
    static constexpr int kSlots = 101;
    static constexpr int kParseFailuresToAsk = 10;
    enum class State { Closed, Ready, Running };

    Dde(Registry& registry, DdeLink& link, DdeHost& host, ErrorReporter& errors, const std::string& productName);

    void LoadSettings();
    // The options window's OK: stored, and the link moved to a new port.
    bool ApplySettings(const DdeSettings& settings);
    const DdeSettings& Settings() const { return settings_; }

    // DDE > Online: the link listens (or stops). False, with a message to
    // the navigator, when the port cannot be had.
    bool SetOnline(bool on);
    bool Online() const { return link_.Listening(); }

    // The link's events.
    void LinkOpen();
    void LinkExecute(const std::string& command);
    void LinkClosed(int sourcesLeft);

    // One tick at `now` seconds since midnight.
    void Service(double now);

    // The chart layer: every named target, its predictor and its label.
    void Draw(Canvas& canvas, NavChart& chart) const;
    // The console's four rows for the active target.
    void ConsoleRows(std::array<std::string, 4>& rows) const;
    // Targets whose symbol is within `radius` pixels of a point of the view.
    std::vector<int> TargetsNear(NavChart& chart, ChartPoint screen, int radius) const;
    // The slots in use, in order.
    std::vector<int> NamedTargets() const;
    // Makes `slot` the console's target and shows it on the chart.
    void SelectTarget(int slot);

    State LinkState() const { return state_; }
    bool Enabled() const { return enabled_; }
    int TargetCount() const { return targetCount_; }
    int ParseFailures() const { return parseFailures_; }
    const std::array<DdeTarget, kSlots>& Targets() const { return targets_; }

private:
    bool Position(const std::string& command);
    void ParseFailed();
    std::string Title() const { return productName_ + " DDE"; }

    Registry& registry_;
    DdeLink& link_;
    DdeHost& host_;
    ErrorReporter& errors_;
    std::string productName_;
    DdeSettings settings_;
    std::array<DdeTarget, kSlots> targets_{};
    State state_ = State::Closed;
    bool enabled_ = false;
    int targetCount_ = 0;   // the highest slot seen, plus one
    int parseFailures_ = 0;  // since the last question
    double lastRedraw_ = -1.0;
    bool busy_ = false;
};

// The command parser on its own, for the module and for the fuzzer:
// false when the POSITION fields cannot be read.
struct DdePosition {
    int slot = 0;
    double lat = 0.0, lon = 0.0, speed = 0.0, course = 0.0;  // degrees, knots
    std::string name;
    bool error = false;
};
bool ParseDdePosition(const std::string& command, DdePosition& out);
// The keyword of a command, upper-cased: the text up to the first ",".
std::string DdeKeyword(const std::string& command);

}  // namespace ombra
