// The instrument windows under the offscreen platform: each built from its
// values and read back, the tester reading a port, the console panel
// showing the model's rows, and screenshots that show something.
#include <QApplication>
#include <QImage>
#include <QLabel>
#include <gtest/gtest.h>

#include "instruments/InstrumentDialogs.h"
#include "platform/comms/ScriptedComms.h"
#include "platform/fake/ManualClock.h"
#include "platform/fake/MemorySettings.h"
#include "platform/qt/QtServices.h"
#include "plotter/Plotter.h"
#include "tests/instruments/InstrumentsFixture.h"
#include "tests/support/TestSupport.h"
#include "ui/ConsolePanel.h"
#include "ui/FrmComm.h"
#include "ui/FrmCommAutopilot.h"
#include "ui/FrmCommGyro.h"
#include "ui/FrmCommTest.h"
#include "ui/FrmConsole.h"
#include "ui/FrmLostGPS.h"
#include "ui/FrmMain.h"
#include "ui/FrmSatInfo.h"
#include "ui/FrmVessel.h"
#include "ui/QtShell.h"
#include "tests/support/QtApp.h"

using namespace ombra;
using ombra::test::InstrumentsFixture;

namespace {

using ombra::test::App;

// The share of pixels that differ from the top-left one: a blank window is 0.
double Drawn(QWidget& w, const std::string& saveAs) {
    w.resize(w.sizeHint().expandedTo(QSize(200, 200)));
    QImage img = w.grab().toImage();
    img.save(QString::fromStdString(saveAs));
    if (img.isNull()) return 0.0;
    QRgb bg = img.pixel(0, 0);
    long differ = 0;
    for (int y = 0; y < img.height(); ++y)
        for (int x = 0; x < img.width(); ++x) differ += img.pixel(x, y) != bg;
    return double(differ) / double(img.width() * img.height());
}

}  // namespace

TEST(InstrumentWindows, GPSGyroAndAutopilotDialogsRoundTrip) {
    App();
    test::TempDir shots;
    GPSDialogValues g;
    g.Port = "3";
    g.Device = "tcp://127.0.0.1:10110";
    g.BaudRate = "38400";
    g.Delay = "15";
    g.WPMode = 2;
    g.PositionSentence = 3;
    g.AutoAdvance = true;
    int asked = 0;
    int16_t testedPort = 0;
    int32_t testedRate = 0;
    FrmComm comm(nullptr, g, [&] { return ++asked > 1; }, [&](int16_t p, int32_t r) { testedPort = p, testedRate = r; });
    GPSDialogValues back = comm.Values();
    EXPECT_EQ(back.Port, "3");
    EXPECT_EQ(back.Device, "tcp://127.0.0.1:10110");
    EXPECT_EQ(back.BaudRate, "38400");
    EXPECT_EQ(back.WPMode, 2);
    EXPECT_EQ(back.PositionSentence, 3);
    EXPECT_TRUE(back.AutoAdvance);
    // Ticking autopilot output asks first; "No" leaves the box clear.
    comm.ChkAutoPilot->click();
    EXPECT_FALSE(comm.ChkAutoPilot->isChecked());
    comm.ChkAutoPilot->click();
    EXPECT_TRUE(comm.ChkAutoPilot->isChecked());
    EXPECT_EQ(asked, 2);
    comm.ComTestPort->click();
    EXPECT_EQ(testedPort, 3);
    EXPECT_EQ(testedRate, 38400);
    EXPECT_NE(comm.findChild<QWidget*>("OptAIVDO"), nullptr);
    EXPECT_GT(Drawn(comm, shots / "FrmComm.png"), 0.05);

    GyroDialogValues gv;
    gv.Choice = 1;
    gv.Port = "4";
    FrmCommGyro gyro(nullptr, gv, nullptr);
    EXPECT_FALSE(gyro.TxtGyroPort->isEnabled());
    gyro.OptGyro->button(2)->click();
    EXPECT_TRUE(gyro.TxtGyroPort->isEnabled());
    EXPECT_EQ(gyro.Values().Choice, 2);

    FrmCommAutopilot ap(nullptr, AutopilotFromBits(511));
    EXPECT_EQ(AutopilotBits(ap.Values()), 511);
    ap.ChkForceNMEA15->click();
    ap.OptAPx->button(1)->click();
    EXPECT_EQ(AutopilotBits(ap.Values()), 511 - 256 + 512 + 2048);
    EXPECT_EQ(ap.windowTitle(), "Autopilot Settings");
}

TEST(InstrumentWindows, PortTesterShowsTheLines) {
    App();
    InstrumentsFixture f;
    f.ins.comm.TestPort = 6;
    f.ins.comm.TestBaudRate = 9600;
    {
        FrmCommTest tester(nullptr, f.ins.comm);
        ASSERT_TRUE(tester.Load());
        EXPECT_EQ(f.ports.opened[6], 9600);
        f.ports.Feed(6, "$GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*47\r\n");
        f.ports.Feed(6, "!AIVDM,1,1,,A,13u?etPv2;0n:dDPwUM1U1Cb069D,0*24\r\n");
        tester.Timer1_Timer();
        ASSERT_EQ(tester.Display->count(), 2);
        EXPECT_EQ(tester.Display->item(1)->text(), "!AIVDM,1,1,,A,13u?etPv2;0n:dDPwUM1U1Cb069D,0*24");
    }
    EXPECT_EQ(f.ports.ComPortStatus(6), 0);  // closed with the window
}

TEST(InstrumentWindows, ConsolePanelPaintsTheModel) {
    App();
    test::TempDir shots;
    InstrumentsFixture f;
    f.Load();
    f.ins.vessel.SetVesselMode(1);
    f.V().DRBase = LatLong{-12.0 * 3600.0, 50.0 * 3600.0};
    f.V().DRStart = float(f.clock.Timer());
    f.V().COG = 45.0;
    f.V().SOG = 6.0;
    f.ins.vessel.UpdateVesselPos();
    ConsolePanel panel(nullptr, f.ins.console);
    panel.Refresh();
    EXPECT_EQ(panel.GenLabel49->text(), "DR");
    auto* lat = panel.findChild<QLabel*>("LabVessel_0");
    ASSERT_NE(lat, nullptr);
    EXPECT_EQ(S(lat->text()), f.ins.console.LabVessel[0]);
    EXPECT_EQ(lat->text().left(3), QString::fromUtf8("50°"));
    auto* rng = panel.findChild<QLabel*>("LabWP_4");
    ASSERT_NE(rng, nullptr);
    EXPECT_EQ(rng->text(), "N/A");
    EXPECT_EQ(panel.findChild<QGroupBox*>("FrameWaypoint")->title(), "No Active Waypoint");
    f.ins.console.ShowVessel[0] = false;
    panel.Refresh();
    EXPECT_TRUE(lat->isHidden());
    EXPECT_GT(Drawn(panel, shots / "ConsolePanel.png"), 0.01);

    // The console options write back into the model.
    FrmConsole options(nullptr, f.ins.console);
    auto* box = options.findChild<QCheckBox*>("ChkVessel_0");
    ASSERT_NE(box, nullptr);
    EXPECT_FALSE(box->isChecked());
    box->setChecked(true);
    options.findChild<QCheckBox*>("ChkWaypoint_9")->setChecked(false);
    options.Apply(f.ins.console);
    EXPECT_TRUE(f.ins.console.ShowVessel[0]);
    EXPECT_FALSE(f.ins.console.ShowWP[9]);
    EXPECT_FALSE(f.ins.console.ShowWP[10]);  // the side mark goes with its row
}

TEST(InstrumentWindows, SatelliteWindowLostGPSAndVessel) {
    App();
    test::TempDir shots;
    InstrumentsFixture f;
    f.Decode("$GPGSV,3,1,11,03,03,111,00,04,15,270,38,06,01,010,00,13,06,292,45*74\r\n");
    FrmSatInfo sats(nullptr, f.ins.decoder.Sats, f.ins.decoder.GGA);
    sats.resize(380, 520);
    EXPECT_GT(Drawn(sats, shots / "FrmSatInfo.png"), 0.01);

    FrmLostGPS lost(nullptr);
    lost.ShowNotice();
    EXPECT_TRUE(lost.isVisible());
    lost.ComOK->click();
    EXPECT_FALSE(lost.isVisible());

    f.Load();
    VesselDialogValues v = LoadVesselDialog(f.ins.vessel, f.units);
    int applied = 0;
    FrmVessel vessel(nullptr, v, [&](const VesselDialogValues& got) {
        ++applied;
        return got.PredictorTime == "10";
    });
    vessel.TxtPredictorTime->setText("99");
    vessel.ComOK->click();
    EXPECT_EQ(applied, 1);
    EXPECT_EQ(vessel.result(), QDialog::Rejected);  // refused: stays open
    vessel.TxtPredictorTime->setText("10");
    vessel.ComOK->click();
    EXPECT_EQ(vessel.result(), QDialog::Accepted);
    EXPECT_EQ(vessel.Values().Name, "Vestrane");
}

// While the GPS is connected its port settings and the gyro's cannot be
// opened from the menu: a port changed under a connection would leave the
// old one open. Off line they come back.
TEST(InstrumentWindows, PortSettingsWaitWhileTheGPSIsConnected) {
    App();
    test::TempDir dir;
    MemorySettings store;
    store.Write("Vestrane", "Tarnel", "AutoStartupGPS", "2");
    store.Write("Vestrane", "Tarnel", "GPSPort", "1");
    QtDialogs dialogs{true};
    ManualClock clock;
    NoEvents events;
    ScriptedComms comms;
    QtShell shell{dialogs, true};
    Plotter plotter{{store, dialogs, clock, events, shell, &comms}};
    shell.SetPlotter(&plotter);
    ASSERT_TRUE(plotter.Start("NOSPLASH", dir / "ombra", dir / "home", dir / "none"));
    FrmMain* m = shell.Main();
    ASSERT_NE(m, nullptr);
    ASSERT_TRUE(plotter.instruments().comm.Connected());
    struct Case {
        const char* action;
        bool connected, off;
    } cases[] = {
        {"MGPSSettings", false, true}, {"MGyroSettings", false, true}, {"MGPSOn", false, true},
        {"MGPSOff", true, false},      {"MAutopilotSettings", true, true},
    };
    for (const Case& c : cases) EXPECT_EQ(m->Action(c.action)->isEnabled(), c.connected) << c.action;
    plotter.StopGPS();
    EXPECT_TRUE(comms.opened.empty());
    for (const Case& c : cases) EXPECT_EQ(m->Action(c.action)->isEnabled(), c.off) << c.action;
}
