// Fuzzing the data-source link's commands: whatever lines a source sends,
// in whatever order, the keyword test, the POSITION parser, the target
// table, the two questions and the console rows must not crash, read out
// of bounds or hit undefined behaviour.
//
// The first byte chooses the answers to the questions and whether parse
// errors are questioned; the rest is cut into command lines at LF. A
// source opens the link and begins a transfer before them, so that
// POSITION lines are parsed rather than ignored.
#include <cstddef>
#include <cstdint>
#include <string>

#include "targets/Dde.h"
#include "tests/support/Rig.h"

namespace {

using namespace ombra;

class NullLink : public DdeLink {
public:
    bool Listen(uint16_t) override { return false; }
    void Stop() override {}
    bool Listening() const override { return false; }
    uint16_t Port() const override { return 0; }
    std::string LastError() const override { return {}; }
    bool Poll(DdeEvent&) override { return false; }
    void SetDataBuffer(const std::string& text) override { buffer = text; }
    std::string buffer;
};

class Host : public DdeHost {
public:
    uint8_t answers = 0;
    bool ChartLoaded() override { return answers & 1; }
    void Message(const std::string&, const std::string&) override {}
    bool AskYesNo(const std::string&, const std::string&) override {
        answers = uint8_t((answers >> 1) | (answers << 7));
        return answers & 1;
    }
    void ZoomTo(const LatLong& pos) override { last = pos; }
    void Redraw() override {}
    void ConsoleChanged() override {}
    LatLong last;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 1) return 0;
    test::FakePlatform platform;
    NullLink link;
    Host host;
    host.answers = data[0];
    platform.reg.SaveSetting(Key::DDEParseErrors, (data[0] & 0x80) ? "True" : "False");
    Dde dde(platform.reg, link, host, platform.errors, "Tarnel");
    dde.LoadSettings();
    dde.LinkOpen();
    dde.LinkExecute("BEGINTRANS");
    std::string line;
    std::array<std::string, 4> rows;
    auto run = [&] {
        DdePosition p;
        ParseDdePosition(line, p);
        dde.LinkExecute(line);
        dde.ConsoleRows(rows);
        line.clear();
    };
    for (size_t i = 1; i < size; ++i) {
        if (data[i] == '\n') run();
        else line.push_back(char(data[i]));
    }
    run();
    for (int slot : dde.NamedTargets()) dde.SelectTarget(slot);
    dde.Service(0.0);
    return 0;
}
