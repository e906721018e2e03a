// ombra-cli arpa: the radar's ARPA sentences as the plotter takes them, one
// JSON object for each TTM or OSD it accepts, the sentence first and then
// what it left in the table:
//
//   $RATTM,03,2.0,045.0,T,10.0,180.0,T,0.5,12.0,K,,T,,103000.00,A*hh
//   {"sentence":"$RATTM,...","slot":2,"Name":"T#03","Range":1.0799136,...,"Stale":false}
//   $RAOSD,212.5,A,210.0,P,12.0,P,,,N*hh
//   {"sentence":"$RAOSD,...","ArpaHeading":212.5}
//
// Distances and speeds are in nautical miles and knots whatever unit the
// radar sent. Sentences must carry a right checksum; other sentences, a TTM
// with a target number that is not a number and an OSD that is not valid
// print nothing. A target number outside 1..101 is reported on standard
// error. Reading never stops on bad input.
#include <fstream>
#include <iostream>
#include <string>

#include "app/cli/CliCommand.h"
#include "core/ErrorReport.h"
#include "core/Val.h"
#include "instruments/Console.h"
#include "platform/fake/ManualClock.h"
#include "platform/fake/ScriptedDialogs.h"
#include "targets/Arpa.h"
#include "targets/TargetPlotHost.h"

namespace ombra::cli {
namespace {

// No vessel, no chart, no windows: the table alone.
class TableOnly : public TargetPlotHost {
public:
    bool OwnPosition(LatLong&) override { return false; }
    std::string PositionText(const LatLong&) override { return {}; }
    std::string AngleText(double) override { return {}; }
    std::string DistanceText(double, const char*) override { return {}; }
    std::string SpeedText(double, const char*) override { return {}; }
    void ConsoleChanged() override {}
    void Redraw() override {}
    int ListPick(const std::string&, const std::vector<std::string>&) override { return -1; }
    void CentreChartOn(const LatLong&) override {}
};

void JsonText(std::string& out, const std::string& text) {
    out += '"';
    for (unsigned char c : text) {
        if (c == '"' || c == '\\') {
            out += '\\';
            out += char(c);
        } else if (c < 0x20 || c >= 0x7f) {
            static const char* hex = "0123456789abcdef";
            out += "\\u00";
            out += hex[c >> 4];
            out += hex[c & 15];
        } else {
            out += char(c);
        }
    }
    out += '"';
}

std::string TrimEnd(std::string line) {
    while (!line.empty() && (line.back() == '\r' || line.back() == '\n')) line.pop_back();
    return line;
}

std::string TargetJson(const std::string& sentence, int slot, const ArpaTarget& t) {
    std::string j = "{\"sentence\":";
    JsonText(j, sentence);
    j += ",\"slot\":" + std::to_string(slot) + ",\"Name\":";
    JsonText(j, t.Name);
    auto number = [&](const char* key, float v) { j += std::string(",\"") + key + "\":" + NumberText(v); };
    auto text = [&](const char* key, const std::string& v) {
        j += std::string(",\"") + key + "\":";
        JsonText(j, v);
    };
    number("Range", t.Range);
    number("Bearing", t.Bearing);
    text("BearingRef", t.BearingRef);
    number("Speed", t.Speed);
    number("Course", t.Course);
    text("CourseRef", t.CourseRef);
    number("CPA", t.CPA);
    number("TCPA", t.TCPA);
    j += ",\"Acquiring\":" + std::to_string(t.Acquiring);
    j += std::string(",\"Stale\":") + (t.Stale ? "true" : "false") + "}\n";
    return j;
}

int RunArpa(const CliArgs& args, std::ostream& out, std::ostream& err) {
    if (args.size() != 1) {
        err << "usage: ombra-cli arpa FILE|-\n";
        return 2;
    }
    std::ifstream file;
    std::istream* in = &std::cin;
    if (args[0] != "-") {
        file.open(args[0], std::ios::binary);
        if (!file) {
            err << "ombra-cli arpa: cannot read '" << args[0] << "'\n";
            return 1;
        }
        in = &file;
    }
    ManualClock clock;
    ScriptedDialogs dialogs;
    ErrorReporter errors(dialogs, "ombra-cli");
    Console console;
    TableOnly host;
    Arpa arpa(host, errors, clock, console);
    arpa.Settings.Enable = true;
    arpa.Settings.Delay = 0;

    std::string line;
    size_t lineNo = 0;
    while (std::getline(*in, line)) {
        ++lineNo;
        const std::string sentence = TrimEnd(line);
        const size_t reported = dialogs.asked.size();
        int slot = -1;
        const ArpaTaken taken = arpa.ArpaPoll(sentence, true, &slot);
        if (dialogs.asked.size() != reported) err << args[0] << ":" << lineNo << ": target number out of range\n";
        if (taken == ArpaTaken::Target) {
            out << TargetJson(sentence, slot, arpa.Targets[size_t(slot)]);
        } else if (taken == ArpaTaken::Heading) {
            std::string j = "{\"sentence\":";
            JsonText(j, sentence);
            out << j << ",\"ArpaHeading\":" << NumberText(arpa.ArpaHeading) << "}\n";
        }
    }
    return 0;
}

CliRegistration regArpa{{"arpa", "arpa FILE|-              ARPA TTM/OSD sentences to JSON, with the target table's slot",
                         RunArpa}};

}  // namespace
}  // namespace ombra::cli
