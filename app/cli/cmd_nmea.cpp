// ombra-cli nmea: an instrument log read as the GPS port reads it, with the
// default settings and a connected vessel; after every sentence a decoder
// accepted, one JSON object on one line with the fix and heading records.
//
//   ombra-cli nmea passage.nmea
//   socat -u /dev/ttyUSB0,b4800,raw - | ombra-cli nmea -
//
//   {"Sentence":"GGA","Status":1,"Diff":false,"Time":"12:35:19","Date":"",
//    "Lat":173242.28,"Long":41460,"Course":0,"Speed":0,"Heading":0, ...}
//
// Lat and Long are seconds of arc (north and east positive), Course whole
// degrees true, Speed knots, Time the fix's UTC time of day and Date its
// UTC date ("" until an RMC gives one). Sentences are framed and routed
// exactly as on the port: "$" sentences by their three-letter identifier,
// "!AIVDO" through the AIS decoder (its Sentence is "VDO"). Lines longer
// than a port line (255 bytes) are dropped, as the port drops them. A fault
// inside a decoder is reported on standard error and reading goes on.
//
// ombra-cli nmea-demo [FILE] writes the demonstration passage (see
// instruments/DemoPassage.h) to FILE or standard output.
#include <cmath>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>

#include "plotter/AisBridge.h"
#include "app/cli/CliCommand.h"
#include "core/ErrorReport.h"
#include "core/Format.h"
#include "core/Paths.h"
#include "core/Registry.h"
#include "core/Startup.h"
#include "core/Units.h"
#include "core/Val.h"
#include "instruments/DemoPassage.h"
#include "instruments/HeadlessHooks.h"
#include "instruments/Instruments.h"
#include "platform/ais/AisDecoder.h"
#include "platform/comms/ScriptedComms.h"
#include "platform/fake/ManualClock.h"
#include "platform/fake/MemorySettings.h"
#include "platform/fake/ScriptedDialogs.h"

namespace ombra::cli {
namespace {

// Messages go to standard error instead of a window; every box gets its
// default answer.
class StderrDialogs : public ScriptedDialogs {
public:
    explicit StderrDialogs(std::ostream& err) : err_(err) {}
    int MsgBox(const std::string& text, int style, const std::string& title) override {
        std::string oneLine = Replace(text, "\n", " ");
        err_ << "ombra-cli nmea: " << oneLine << "\n";
        return ScriptedDialogs::MsgBox(text, style, title);
    }

private:
    std::ostream& err_;
};

// The AIS decoder behind the intake's AIS calls.
class CliHooks : public HeadlessHooks {
public:
    explicit CliHooks(AisDecoder& ais) : ais_(ais) {}
    void DecodeAIS(const std::string& s) override { ais_.DecodeAIS(s); }
    bool GetOwnVessel(OwnVesselReport& r) const override { return OwnVesselFromAis(ais_, r); }

private:
    AisDecoder& ais_;
};

std::string Num(double v) { return std::isfinite(v) ? NumberText(v) : "null"; }
std::string NumF(float v) { return std::isfinite(v) ? NumberText(v) : "null"; }

std::string TimeText(double serial) {
    if (!std::isfinite(serial)) return "";
    double s = serial * 86400.0;
    if (s < 0.0 || s >= 1e9) return Num(serial);
    long whole = long(std::floor(s + 1e-6));
    double frac = s - double(whole);
    char buf[48];
    if (frac > 0.005)
        std::snprintf(buf, sizeof buf, "%02ld:%02ld:%05.2f", whole / 3600, (whole / 60) % 60, double(whole % 60) + frac);
    else
        std::snprintf(buf, sizeof buf, "%02ld:%02ld:%02ld", whole / 3600, (whole / 60) % 60, whole % 60);
    return buf;
}

std::string DateText(double serial) {
    if (serial == 0.0 || !std::isfinite(serial) || std::fabs(serial) > 1e6) return "";
    DateTime d = DateTime::FromSerial(serial);
    char buf[32];
    std::snprintf(buf, sizeof buf, "%04d-%02d-%02d", d.year, d.month, d.day);
    return buf;
}

std::string FixJson(const std::string& id, const GPSFix& f, const HeadingData& h) {
    std::ostringstream o;
    o << "{\"Sentence\":\"" << id << "\",\"Status\":" << f.Status << ",\"Diff\":" << (f.Diff ? "true" : "false")
      << ",\"Time\":\"" << TimeText(f.Time) << "\",\"Date\":\"" << DateText(f.Date) << "\",\"Lat\":" << Num(f.Pos.Lat)
      << ",\"Long\":" << Num(f.Pos.Long) << ",\"Course\":" << f.Course << ",\"Speed\":" << NumF(f.Speed)
      << ",\"Heading\":" << NumF(h.Heading) << ",\"HeadingMag\":" << h.HeadingMag << ",\"Variation\":" << NumF(h.Variation)
      << ",\"Deviation\":" << NumF(h.Deviation) << ",\"WaterSpeed\":" << NumF(h.WaterSpeed)
      << ",\"WaterSpeedKmh\":" << NumF(h.WaterSpeedKmh) << "}";
    return o.str();
}

int RunNmea(const CliArgs& args, std::ostream& out, std::ostream& err) {
    if (args.size() != 1) {
        err << "usage: ombra-cli nmea FILE|-\n";
        return 2;
    }
    std::ifstream file;
    std::istream* in = &std::cin;
    if (args[0] != "-") {
        file.open(args[0], std::ios::binary);
        if (!file) {
            err << "ombra-cli nmea: cannot read '" << args[0] << "'\n";
            return 1;
        }
        in = &file;
    }
    MemorySettings store;
    Globals g;
    Registry reg(store, g.ProductName);
    Units units;
    ManualClock clock;
    NoEvents events;
    StderrDialogs dialogs(err);
    ErrorReporter errors(dialogs, g.ProductName);
    ScriptedComms ports;
    AisDecoder ais(clock);
    CliHooks hooks(ais);
    HeadlessChart chart;
    Instruments ins({reg, units, g, clock, events, errors, ports, hooks, chart});
    ins.LoadCommsSettings();
    ins.vessel.vessel.Mode = 2;  // connected: sentences are routed

    std::string line;
    while (std::getline(*in, line)) {
        if (!in->eof()) line.push_back('\n');
        if (line.size() > 255) continue;
        clock.Advance(0.1);
        DecodeOutcome o;
        ins.comm.HandleGPSSentence(line, &o);
        if (!o.accepted) continue;
        std::string id = line.size() >= 6 ? line.substr(3, 3) : line;
        out << FixJson(id, ins.decoder.Fix, ins.decoder.Heading) << "\n";
    }
    return 0;
}

int RunDemo(const CliArgs& args, std::ostream& out, std::ostream& err) {
    if (args.size() > 1) {
        err << "usage: ombra-cli nmea-demo [FILE]\n";
        return 2;
    }
    std::string text = DemoPassageLog();
    if (args.empty() || args[0] == "-") {
        out << text;
        return 0;
    }
    std::string why;
    if (!SaveFileAtomic(args[0], text, &why)) {
        err << "ombra-cli nmea-demo: " << why << "\n";
        return 1;
    }
    return 0;
}

CliRegistration regNmea{{"nmea", "nmea FILE|-   decode an instrument log, one JSON line per accepted sentence", RunNmea}};
CliRegistration regDemo{{"nmea-demo", "nmea-demo [FILE]   write the demonstration passage log", RunDemo}};

}  // namespace
}  // namespace ombra::cli
