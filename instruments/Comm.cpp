#include "instruments/Comm.h"

#include <algorithm>

#include "core/ErrorReport.h"
#include "instruments/NmeaText.h"
#include "platform/api/Clock.h"
#include "platform/api/Comms.h"
#include "platform/api/Dialogs.h"

namespace ombra {

namespace {

double Elapsed(double from, double now) {
    double d = now - from;
    return d < 0.0 ? d + 86400.0 : d;  // across midnight
}

// The AIS identifiers the GPS port knows, by the five characters after "!".
struct AisRoute {
    const char* id;
    bool (*allowed)(const CommSettings&);
    bool own;  // our own transponder: a position
};
const AisRoute kAisRoutes[] = {
    {"AIVDO", [](const CommSettings& s) { return s.NMEA_AIVDO; }, true},
    {"AIVDM", [](const CommSettings& s) { return s.AISUseGPSPort && s.AISEnable; }, false},
};

}  // namespace

bool Comm::PassesChecksum(const std::string& s) const { return !settings_.Checksums || ChecksumOK(s); }

bool Comm::ReadLine(int16_t port, std::string& line) {
    if (++linesThisRead_ > MaxLinesPerRead) return false;
    char buf[256];
    int16_t n = comms_.ComPortRead(port, buf, ReadLength);
    if (n <= 0) return false;
    line.assign(buf, size_t(std::min<int16_t>(n, ReadLength)));
    return true;
}

Comm::OpenResult Comm::TryOpen(int16_t port, int32_t baud) {
    if (port == 0) return OpenResult::NoPort;
    return comms_.OpenComPort(port, baud) == 0 ? OpenResult::Failed : OpenResult::Opened;
}

void Comm::ReportOpenFailure(OpenResult r, const char* name, CommDialog dialog, const char* checkName) {
    Dialogs& dlg = errors_.dialogs();
    if (r == OpenResult::NoPort) {
        dlg.MsgBox(std::string("No port selected for ") + name + " input!", mb::OKOnly | mb::Exclamation,
                   errors_.ProductName());
        hooks_.ShowCommDialog(dialog);
    } else if (r == OpenResult::Failed) {
        dlg.MsgBox(std::string("The ") + name + " serial port is already open or does not exist!\n" +
                       "Check no other programs are using the port, and that your " + checkName + " port\n" +
                       "does not match your mouse connection.",
                   mb::OKOnly | mb::Exclamation, errors_.ProductName());
    }
}

bool Comm::OpenInput(int16_t port, int32_t baud, const char* name, CommDialog dialog, const char* checkName) {
    OpenResult r = TryOpen(port, baud);
    ReportOpenFailure(r, name, dialog, checkName);
    return r == OpenResult::Opened;
}

bool Comm::OpenGPSPort() {
    bool ok = false;
    errors_.Guard("OpenGPSPort", [&] {
        ok = OpenInput(settings_.GPSPort, settings_.GPSBaudRate, "GPS", CommDialog::GPS, "GPS");
        if (ok && settings_.WPMode == 2) MagellanHandshakeOn();
    });
    return ok;
}

bool Comm::OpenAISPort() {
    bool ok = false;
    // The AIS message names the ARPA port in its middle line, as it always has.
    errors_.Guard("OpenAISPort", [&] { ok = OpenInput(settings_.AISPort, settings_.AISBaudRate, "AIS", CommDialog::AIS, "ARPA"); });
    return ok;
}

bool Comm::OpenARPAPort() {
    bool ok = false;
    errors_.Guard("OpenARPAPort", [&] { ok = OpenInput(settings_.ARPAPort, settings_.ARPABaudRate, "ARPA", CommDialog::ARPA, "ARPA"); });
    return ok;
}

bool Comm::OpenGyroPort() {
    bool ok = false;
    errors_.Guard("OpenGyroPort", [&] { ok = OpenInput(settings_.GyroPort, settings_.GyroBaudRate, "Gyro", CommDialog::Gyro, "Gyro"); });
    return ok;
}

void Comm::CloseGPSPort() {
    errors_.Guard("CloseGPSPort", [&] {
        if (comms_.ComPortStatus(settings_.GPSPort) == 1 && settings_.WPMode == 2) MagellanHandshakeOff();
        comms_.CloseComPort(settings_.GPSPort);
    });
}

bool Comm::StartGPS() {
    bool started = false;
    errors_.Guard("StartGPS", [&] {
        if (vessel_.VesselMode() != kModeNone) return;
        if (!OpenGPSPort()) return;
        connection_ = Connection{};
        connection_.gps = settings_.GPSPort;
        if (settings_.ARPAEnable && OpenARPAPort()) connection_.arpa = settings_.ARPAPort;
        if (settings_.GyroUseGyroPort && OpenGyroPort()) connection_.gyro = settings_.GyroPort;
        if (!settings_.AISUseGPSPort && settings_.AISEnable && OpenAISPort()) connection_.ais = settings_.AISPort;
        decoder_.ClearFix();
        hooks_.ClearArpaTargets();
        vessel_.SetVesselMode(kModeConnecting);
        hooks_.SetGPSMenuState(true);
        started = true;
    });
    return started;
}

void Comm::StopGPS() {
    errors_.Guard("StopGPS", [&] {
        hooks_.ClearActiveTargets();
        // The port the connection opened, whatever the setting says now.
        const Connection was = connection_;
        connection_ = Connection{};
        const int16_t gps = was.gps != 0 ? was.gps : settings_.GPSPort;
        if (comms_.ComPortStatus(gps) == 1 && settings_.WPMode == 2) MagellanHandshakeOff(gps);
        comms_.CloseComPort(gps);
        if (was.arpa != 0) comms_.CloseComPort(was.arpa);
        if (was.ais != 0) comms_.CloseComPort(was.ais);
        if (was.gyro != 0) comms_.CloseComPort(was.gyro);
        vessel_.SetVesselMode(kModeNone);
        hooks_.SetGPSMenuState(false);
    });
}

void Comm::Report(const DecodeResult& r) {
    for (const std::string& fault : r.faults) errors_.ReportError(r.decoder ? r.decoder : "Decode", fault);
    if (r.vtgMissing)
        errors_.dialogs().MsgBox("You are not recieving VTG sentences, your COG and SOG values are not accurate.",
                                 mb::OKOnly | mb::Critical, errors_.ProductName());
}

DecodeOutcome Comm::RouteNmea(const std::string& s, bool gyroPort) {
    DecodeOutcome out;
    const NmeaDecoder::Route* route = NmeaDecoder::FindRoute(std::string_view(s).substr(3, 3));
    if (!route || (gyroPort && !route->heading)) return out;
    out.known = true;
    if (!gyroPort && !route->allowed(settings_)) return out;
    // The one split of the sentence, as far as its decoder reads.
    NmeaFields fields = SplitFields(s, route->maxField);
    out.tooShort = fields.count < route->minField;
    Report(decoder_.Run(*route, fields, s));
    out.accepted = true;
    out.position = route->position && !gyroPort;
    return out;
}

bool Comm::HandleGPSSentence(const std::string& s, DecodeOutcome* outcome) {
    if (outcome) *outcome = DecodeOutcome{};
    if (s.size() <= 8) return false;
    if (s[0] == '$') {
        if (!PassesChecksum(s)) return false;
        if (vessel_.VesselMode() != kModeNone) {
            DecodeOutcome o = RouteNmea(s, false);
            if (outcome) *outcome = o;
            return o.accepted && o.position;
        }
        if (s.compare(0, 5, "$PMGN") == 0 && s.compare(5, 3, "CSM") == 0) {
            std::string reply = s.size() > 9 ? s.substr(9) : std::string();
            while (!reply.empty() && (reply.back() == '\r' || reply.back() == '\n')) reply.pop_back();
            CommsReply = reply;
        }
        return false;
    }
    if (s[0] == '!') {
        std::string_view id = std::string_view(s).substr(1, 5);
        for (const AisRoute& r : kAisRoutes) {
            if (id != r.id || !r.allowed(settings_)) continue;
            hooks_.DecodeAIS(s);
            if (!r.own) return false;
            OwnVesselReport own;
            if (!hooks_.GetOwnVessel(own)) return false;
            Report(decoder_.TakeOwnVessel(own));
            if (outcome) *outcome = DecodeOutcome{true, true, true};
            return true;
        }
    }
    return false;
}

bool Comm::ReadGPSPort() {
    bool position = false;
    linesThisRead_ = 0;
    errors_.Guard("ReadGPSPort", [&] {
        int16_t port = settings_.GPSPort;
        if (port == 0 || comms_.ComPortStatus(port) != 1) return;
        std::string line;
        while (ReadLine(port, line)) {
            events_.DoEvents();
            if (HandleGPSSentence(line)) {
                position = true;
                return;
            }
        }
    });
    return position;
}

void Comm::ReadGyroPort() {
    linesThisRead_ = 0;
    errors_.Guard("ReadGyroPort", [&] {
        int16_t port = settings_.GyroPort;
        if (port == 0 || comms_.ComPortStatus(port) != 1) return;
        std::string s;
        while (ReadLine(port, s)) {
            events_.DoEvents();
            if (s.size() < 7 || s[0] != '$' || !settings_.GyroUseGyroPort || !PassesChecksum(s)) continue;
            if (vessel_.VesselMode() == kModeNone) continue;
            RouteNmea(s, true);
        }
    });
}

void Comm::ReadAISPort() {
    linesThisRead_ = 0;
    errors_.Guard("ReadAISPort", [&] {
        int16_t port = settings_.AISPort;
        if (port == 0 || comms_.ComPortStatus(port) != 1) return;
        std::string s;
        while (ReadLine(port, s)) {
            events_.DoEvents();
            if (s.size() > 8 && s[0] == '!' && settings_.AISEnable) hooks_.DecodeAIS(s);
        }
    });
}

void Comm::ReadARPAPort() {
    linesThisRead_ = 0;
    errors_.Guard("ReadARPAPort", [&] {
        int16_t port = settings_.ARPAPort;
        if (port == 0 || comms_.ComPortStatus(port) != 1) return;
        std::string s;
        while (ReadLine(port, s)) {
            events_.DoEvents();
            if (s.size() <= 7 || s[0] != '$' || !PassesChecksum(s)) continue;
            std::string_view id = std::string_view(s).substr(3, 3);
            if (id == "TTM" || (id == "OSD" && settings_.GyroUseGPSPort)) hooks_.DecodeARPA(id, s);
        }
    });
}

bool Comm::OpenForOutput() {
    bool open = false;
    errors_.Guard("SendToPort", [&] {
        const int16_t port = settings_.GPSPort;
        if (port != 0 && comms_.ComPortStatus(port) == 1) {
            outputFailure_ = OutputFailure{};
            open = true;
            return;
        }
        const OpenResult r = TryOpen(port, settings_.GPSBaudRate);
        if (r == OpenResult::Opened) {
            outputFailure_ = OutputFailure{};
            if (settings_.WPMode == 2) MagellanHandshakeOn();
            open = true;
            return;
        }
        const OutputFailure now{true, port, settings_.GPSBaudRate, r};
        const OutputFailure& was = outputFailure_;
        if (!was.reported || was.port != now.port || was.baud != now.baud || was.result != now.result) {
            outputFailure_ = now;
            ReportOpenFailure(r, "GPS", CommDialog::GPS, "GPS");
        }
    });
    return open;
}

void Comm::SendToPort(const std::string& text, bool openIfClosed) {
    SendToPortNumber(settings_.GPSPort, text, openIfClosed);
}

void Comm::SendToPortNumber(int16_t port, const std::string& text, bool openIfClosed) {
    errors_.Guard("SendToPort", [&] {
        if (comms_.ComPortStatus(port) != 1) {
            if (!openIfClosed || port != settings_.GPSPort || !OpenForOutput()) return;
        }
        for (size_t at = 0; at < text.size(); at += 32000) {
            std::string_view piece = std::string_view(text).substr(at, 32000);
            comms_.ComPortWrite(port, piece.data(), int16_t(piece.size()));
        }
    });
}

void Comm::SendMagellan(const std::string& command, int16_t port) {
    SendToPortNumber(port, "$" + command + "*" + NmeaChecksum(command) + "\r\n\r\n");
}

bool Comm::WaitReply(double seconds) {
    double start = clock_.Timer();
    for (;;) {
        events_.DoEvents();
        linesThisRead_ = 0;
        std::string line;
        while (ReadLine(settings_.GPSPort, line)) {
            if (vessel_.VesselMode() == kModeNone) HandleGPSSentence(line);
        }
        if (!CommsReply.empty()) return true;
        if (Elapsed(start, clock_.Timer()) >= seconds) return false;
        clock_.Sleep(50);
    }
}

bool Comm::MagellanHandshakeOn() {
    const std::string command = "PMGNCMD,HANDON";
    const std::string sum = NmeaChecksum(command);
    double start = clock_.Timer();
    while (Elapsed(start, clock_.Timer()) < 20.0) {
        SendMagellan(command, settings_.GPSPort);
        CommsReply.clear();
        if (WaitReply(1.0)) {
            std::string reply = CommsReply;
            size_t star = reply.rfind('*');
            if (star != std::string::npos && star + 3 == reply.size() && star >= 2) reply.erase(star);
            if (reply.size() >= 2 && reply.substr(reply.size() - 2) == sum) return true;
        }
    }
    return false;
}

void Comm::MagellanHandshakeOff() { MagellanHandshakeOff(settings_.GPSPort); }

void Comm::MagellanHandshakeOff(int16_t port) {
    SendMagellan("PMGNCMD,HANDOFF", port);
    double start = clock_.Timer();
    while (Elapsed(start, clock_.Timer()) < 1.0) {
        events_.DoEvents();
        clock_.Sleep(50);
    }
    SendToPortNumber(port, "\r\n$$");
}

bool Comm::OpenTestPort() {
    Dialogs& dlg = errors_.dialogs();
    TestPortOpen = false;
    if (TestPort == 0) {
        dlg.MsgBox("No port selected for input test!", mb::OKOnly | mb::Exclamation, errors_.ProductName());
        return false;
    }
    if (comms_.OpenComPort(TestPort, TestBaudRate) == 0) {
        dlg.MsgBox(
            "The serial port is already open or does not exist!\n"
            "Check no other programs are using the port, and that your Serial port\n"
            "does not match your mouse connection.",
            mb::OKOnly | mb::Exclamation, errors_.ProductName());
        return false;
    }
    TestPortOpen = true;
    return true;
}

std::vector<std::string> Comm::ReadTestPort() {
    std::vector<std::string> lines;
    if (!TestPortOpen) return lines;
    linesThisRead_ = 0;
    std::string s;
    while (lines.size() < 500 && ReadLine(TestPort, s)) {
        while (!s.empty() && (s.back() == '\r' || s.back() == '\n')) s.pop_back();
        lines.push_back(s);
    }
    return lines;
}

void Comm::CloseTestPort() {
    if (TestPortOpen) comms_.CloseComPort(TestPort);
    TestPortOpen = false;
}

}  // namespace ombra
