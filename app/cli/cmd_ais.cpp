// ombra-cli ais: AIS sentences to JSON, one object per message, in gpsd's
// scaled AIVDM form; and ais-targets: the target table after a log is read.
//
//   ombra-cli ais capture.nmea > messages.jsonl
//   some-receiver | ombra-cli ais -
//   ombra-cli ais-targets capture.nmea
//
// Lines that are not AIS sentences are skipped; sentences that fail their
// checksum or framing, or parts that never complete, print nothing (with
// -v, the reason goes to standard error). Reading never stops on bad input.
#include <fstream>
#include <iostream>
#include <string>

#include "app/cli/CliCommand.h"
#include "core/Format.h"
#include "platform/ais/AisDecoder.h"
#include "platform/ais/AisJson.h"
#include "platform/fake/ManualClock.h"

namespace ombra::cli {
namespace {

// Opens FILE, or standard input for "-"; false with a message on failure.
bool OpenInput(const std::string& name, std::ifstream& file, std::istream*& in, std::ostream& err) {
    if (name == "-") {
        in = &std::cin;
        return true;
    }
    file.open(name, std::ios::binary);
    if (!file) {
        err << "ombra-cli ais: cannot read '" << name << "'\n";
        return false;
    }
    in = &file;
    return true;
}

bool ParseArgs(const CliArgs& args, std::string& input, bool& verbose, std::ostream& err, const char* usage) {
    for (const std::string& a : args) {
        if (a == "-v" || a == "--verbose") {
            verbose = true;
        } else if (input.empty()) {
            input = a;
        } else {
            err << "usage: ombra-cli " << usage << "\n";
            return false;
        }
    }
    if (input.empty()) {
        err << "usage: ombra-cli " << usage << "\n";
        return false;
    }
    return true;
}

// The command's input: FILE or standard input, and the -v flag.
struct Input {
    std::string name;
    bool verbose = false;
    std::ifstream file;
    std::istream* in = nullptr;
};

// Reads the arguments and opens the input: 0, or the exit status (2 with
// the usage line for bad arguments, 1 when the file cannot be read).
int OpenArgs(const CliArgs& args, const char* usage, Input& input, std::ostream& err) {
    if (!ParseArgs(args, input.name, input.verbose, err, usage)) return 2;
    return OpenInput(input.name, input.file, input.in, err) ? 0 : 1;
}

int RunAis(const CliArgs& args, std::ostream& out, std::ostream& err) {
    Input input;
    if (int status = OpenArgs(args, "ais [-v] FILE|-", input, err)) return status;
    std::istream* in = input.in;
    const bool verbose = input.verbose;

    AisJsonStream stream;
    std::string line, json;
    size_t lineNo = 0;
    while (std::getline(*in, line)) {
        ++lineNo;
        json.clear();
        stream.Feed(line, json);
        out << json;
        if (verbose && !stream.LastProblem().empty())
            err << input.name << ":" << lineNo << ": " << stream.LastProblem() << "\n";
    }
    if (verbose) {
        const auto& c = stream.counts();
        err << c.sentences << " sentences, " << c.rejected << " rejected, " << c.messages << " messages, "
            << c.refused << " not decoded, " << c.printed << " printed\n";
    }
    return 0;
}

// The table as the console shows it, one target a block.
int RunAisTargets(const CliArgs& args, std::ostream& out, std::ostream& err) {
    Input input;
    if (int status = OpenArgs(args, "ais-targets FILE|-", input, err)) return status;
    std::istream* in = input.in;

    ManualClock clock;  // a log has no clock of its own: every line is heard "now"
    AisDecoder ais(clock);
    std::string line;
    while (std::getline(*in, line)) ais.DecodeAIS(line);
    for (int16_t i = 1; i <= ais.GetNoAisTargets(); ++i) {
        AisTarget t;
        if (!ais.GetAisTarget(i, t)) continue;
        out << "[" << i << "]" << (t.OwnVessel == 1 ? " own vessel" : "") << "\n";
        const auto row = [&](const char* label, const std::string& value) {
            if (!value.empty()) out << "  " << label << ": " << value << "\n";
        };
        row("MMSI", AisText(t.MMSI));
        row("IMO", AisText(t.IMO));
        row("Call Sign", AisText(t.CallSign));
        row("Name", AisText(t.Name));
        row("Type", AisText(t.Type));
        row("Status", AisText(t.Status));
        row("Lat", Format(t.Latitude, "0.000000"));
        row("Long", Format(t.Longitude, "0.000000"));
        row("Accuracy", AisText(t.Accuracy));
        row("Nav", AisText(t.Nav));
        row("Length", AisText(t.Length));
        row("Width", AisText(t.Width));
        row("COG", AisText(t.COG));
        row("SOG", AisText(t.SOG));
        row("Gyro", AisText(t.Gyro));
        row("ROT", AisText(t.ROT));
        row("Draft", AisText(t.Draft));
        row("Destination", AisText(t.Destination));
        row("ETA", AisText(t.ETA));
    }
    return 0;
}

CliRegistration regAis{{"ais", "ais [-v] FILE|-          AIS sentences to gpsd-style JSON, one object a message",
                        RunAis}};
CliRegistration regTargets{
    {"ais-targets", "ais-targets FILE|-       the AIS target table after reading FILE", RunAisTargets}};

}  // namespace
}  // namespace ombra::cli
