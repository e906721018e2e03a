// The port windows' shared parts at work: what the port tester is given,
// what the gyro's choice enables, and what the dialogs hand back.
#include <gtest/gtest.h>

#include <QRadioButton>
#include <vector>

#include "instruments/InstrumentDialogs.h"
#include "tests/ui/UiFixture.h"
#include "ui/FrmComm.h"
#include "ui/FrmCommAutopilot.h"
#include "ui/FrmCommGyro.h"

using namespace ombra;

namespace {
struct Tested {
    int calls = 0;
    int16_t port = -1;
    int32_t baud = -1;
    std::function<void(int16_t, int32_t)> Hook() {
        return [this](int16_t p, int32_t b) {
            ++calls;
            port = p;
            baud = b;
        };
    }
};
}  // namespace

TEST(PortDialogs, TheTesterGetsThePortAndRateAsTyped) {
    test::App();
    struct Case { const char *port, *baud; int16_t wantPort; int32_t wantBaud; } cases[] = {
        {"3", "38400", 3, 38400},
        {"2 ", "4800 baud", 2, 4800},  // numbers are read from the front
        {"x", "fast", 0, 0},           // no number is 0, never a fault
        {"", "", 0, 0},
        {"7", "31250", 7, 31250},      // a rate off the list is kept as typed
    };
    for (const Case& c : cases) {
        GPSDialogValues g;
        Tested gps;
        FrmComm comm(nullptr, g, nullptr, gps.Hook());
        comm.TxtGPSPort->setText(c.port);
        comm.TxtGPSBaudRate->setCurrentText(c.baud);
        comm.ComTestPort->click();
        EXPECT_EQ(gps.calls, 1) << c.port;
        EXPECT_EQ(gps.port, c.wantPort) << c.port;
        EXPECT_EQ(gps.baud, c.wantBaud) << c.baud;
        EXPECT_EQ(comm.Values().BaudRate, c.baud);

        GyroDialogValues y;
        y.Choice = 2;
        Tested gyro;
        FrmCommGyro dlg(nullptr, y, gyro.Hook());
        dlg.TxtGyroPort->setText(c.port);
        dlg.TxtGyroBaudRate->setCurrentText(c.baud);
        dlg.ComTestPort->click();
        EXPECT_EQ(gyro.port, c.wantPort) << c.port;
        EXPECT_EQ(gyro.baud, c.wantBaud) << c.baud;
    }
    // Without a tester the button does nothing.
    FrmComm none(nullptr, GPSDialogValues{}, nullptr, nullptr);
    none.ComTestPort->click();
}

TEST(PortDialogs, OnlyAGyroOnItsOwnPortHasPortSettings) {
    test::App();
    struct Case { int choice; const char* click; bool portOn; int after; } cases[] = {
        {0, nullptr, false, 0},
        {1, nullptr, false, 1},
        {2, nullptr, true, 2},
        {0, "OptUseGyroPort", true, 2},
        {2, "OptNoGyro", false, 0},
        {2, "OptUseGPSPort", false, 1},
    };
    for (const Case& c : cases) {
        GyroDialogValues v;
        v.Choice = c.choice;
        v.Port = "4";
        v.Device = "/dev/ttyUSB1";
        v.BaudRate = "9600";
        FrmCommGyro dlg(nullptr, v, nullptr);
        if (c.click) dlg.findChild<QRadioButton*>(c.click)->click();
        for (QWidget* w : std::vector<QWidget*>{dlg.TxtGyroPort, dlg.TxtGyroDevice, dlg.TxtGyroBaudRate, dlg.ComTestPort})
            EXPECT_EQ(w->isEnabled(), c.portOn) << c.choice << " " << w->objectName().toStdString();
        GyroDialogValues out = dlg.Values();
        EXPECT_EQ(out.Choice, c.after);
        EXPECT_EQ(out.Port, "4");
        EXPECT_EQ(out.Device, "/dev/ttyUSB1");
        EXPECT_EQ(out.BaudRate, "9600");
    }
}

TEST(PortDialogs, OKAndCancelSetTheResultAndTheChoicesComeBack) {
    test::App();
    struct Case { int sentence; int apSentence; bool ok; } cases[] = {
        {0, 0, true}, {3, 2, true}, {2, 1, false}, {9, 7, true},  // out of range: no button ticked
    };
    for (const Case& c : cases) {
        GPSDialogValues g;
        g.PositionSentence = c.sentence;
        FrmComm comm(nullptr, g, nullptr, nullptr);
        AutopilotDialogValues a;
        a.APSentence = c.apSentence;
        FrmCommAutopilot ap(nullptr, a);
        (c.ok ? comm.ComOK : comm.ComCancel)->click();
        (c.ok ? ap.ComOK : ap.ComCancel)->click();
        EXPECT_EQ(comm.Result(), c.ok ? "OK" : "Cancel");
        EXPECT_EQ(ap.Result(), c.ok ? "OK" : "Cancel");
        // No sentence ticked reads as the first; no autopilot sentence as none.
        EXPECT_EQ(comm.Values().PositionSentence, c.sentence <= 3 ? c.sentence : 0);
        EXPECT_EQ(ap.Values().APSentence, c.apSentence <= 2 ? c.apSentence : 2);
    }
}
