// The instrument dialogs' rules without a window: what OK stores, the bit
// set rebuilt from the controls, the vessel dialog's checks and the mode
// changes it asks about.
#include <gtest/gtest.h>

#include "instruments/InstrumentDialogs.h"
#include "tests/instruments/InstrumentsFixture.h"

using namespace ombra;
using ombra::test::InstrumentsFixture;

TEST(InstrumentDialogs, GPSSettingsRoundTrip) {
    InstrumentsFixture f;
    f.Load();
    GPSDialogValues v = LoadGPSDialog(f.reg, f.ins.settings);
    EXPECT_EQ(v.Port, "1");
    EXPECT_EQ(v.Device, "/dev/ttyS0");
    EXPECT_EQ(v.PositionSentence, 0);
    v.Port = "8";
    v.Device = "file:///tmp/demo.nmea?rate=5";
    v.BaudRate = "38400";
    v.PositionSentence = 2;
    v.Checksums = true;
    SaveGPSDialog(f.reg, f.ins.settings, v);
    const CommSettings& s = f.ins.settings;
    EXPECT_EQ(s.GPSPort, 8);
    EXPECT_EQ(s.GPSBaudRate, 38400);
    EXPECT_TRUE(s.NMEA_RMC);
    EXPECT_FALSE(s.NMEA_GGA);
    EXPECT_EQ(f.reg.GetSetting(Key::NMEA_GGA), "False");
    EXPECT_EQ(f.reg.GetSetting(Key::NMEA_RMC), "True");
    EXPECT_EQ(f.reg.GetSetting(Key::Checksums), "True");
    EXPECT_EQ(f.reg.GetSetting(Key::ComPort8), "file:///tmp/demo.nmea?rate=5");
    // What was stored is what a fresh start reads.
    CommSettings again;
    again.Load(f.reg);
    EXPECT_EQ(again.GPSPort, 8);
    EXPECT_TRUE(again.NMEA_RMC);
    EXPECT_TRUE(again.Checksums);
}

TEST(InstrumentDialogs, GyroChoiceIsExactlyOne) {
    InstrumentsFixture f;
    f.Load();
    GyroDialogValues v = LoadGyroDialog(f.reg, f.ins.settings);
    EXPECT_EQ(v.Choice, 1);  // GyroUseGPSPort by default
    for (int choice : {0, 1, 2}) {
        v.Choice = choice;
        SaveGyroDialog(f.reg, f.ins.settings, v);
        const CommSettings& s = f.ins.settings;
        EXPECT_EQ(int(s.GyroUseCOG) + int(s.GyroUseGPSPort) + int(s.GyroUseGyroPort), 1);
        EXPECT_EQ(LoadGyroDialog(f.reg, s).Choice, choice);
    }
}

TEST(InstrumentDialogs, AutopilotBitsRebuiltFromControls) {
    for (int32_t bits : {511, 0, 1 | 2048, 4096 | 1024 | 512 | 256, 8191 & ~2048}) {
        EXPECT_EQ(AutopilotBits(AutopilotFromBits(bits)), bits) << bits;
    }
    // Both autopilot sentences stored: the dialog shows APB, and OK keeps APB only.
    AutopilotDialogValues v = AutopilotFromBits(256 | 2048);
    EXPECT_EQ(v.APSentence, 0);
    EXPECT_EQ(AutopilotBits(v), 256);
    v.APSentence = 2;  // "None (No Autopilot "APx" Sentence)"
    EXPECT_EQ(AutopilotBits(v), 0);
}

TEST(InstrumentDialogs, VesselChecks) {
    struct Case {
        const char* predictor;
        const char* course;
        const char* set;
        const char* message;
    };
    const Case cases[] = {
        {"0", "10", "0", "Predictor interval from 1 to 60 minutes."},
        {"61", "10", "0", "Predictor interval from 1 to 60 minutes."},
        {"5", "361", "0", "Vessel course should be between 0 and 360 degrees."},
        {"5", "-1", "0", "Vessel course should be between 0 and 360 degrees."},
        {"5", "90", "400", "Tidal set should be between 0 and 360 degrees."},
        {"60", "360", "360", nullptr},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.predictor + std::string("/") + c.course + "/" + c.set);
        InstrumentsFixture f;
        f.Load();
        VesselDialogValues v = LoadVesselDialog(f.ins.vessel, f.units);
        v.PredictorTime = c.predictor;
        v.Course = c.course;
        v.TideSet = c.set;
        v.DR = true;
        bool ok = ApplyVesselDialog(f.ins.vessel, f.reg, f.units, f.hooks, f.dialogs, "Tarnel", v);
        EXPECT_EQ(ok, c.message == nullptr);
        if (c.message) {
            ASSERT_EQ(f.Messages().size(), 1u);
            EXPECT_EQ(f.Messages()[0], c.message);
            EXPECT_EQ(f.V().Mode, 0);
        } else {
            EXPECT_EQ(f.V().Mode, 1);
            EXPECT_EQ(f.reg.GetSetting(Key::VesselPredictorTime), "60");
        }
    }
}

// From GPS to dead reckoning: asked under "Mode Change"; No keeps GPS,
// Yes stops the GPS and reckons on from where the vessel is.
TEST(InstrumentDialogs, GPSToDeadReckoning) {
    InstrumentsFixture f;
    f.Load();
    f.ins.comm.StartGPS();
    f.V().Mode = 2;
    f.V().Pos = LatLong{-12.0 * 3600.0, 50.0 * 3600.0};
    VesselDialogValues v = LoadVesselDialog(f.ins.vessel, f.units);
    v.DR = true;
    v.Course = "270";
    v.Speed = "5";
    f.dialogs.replies = {mb::No, mb::Yes};
    EXPECT_FALSE(ApplyVesselDialog(f.ins.vessel, f.reg, f.units, f.hooks, f.dialogs, "Tarnel", v));
    EXPECT_EQ(f.V().Mode, 2);
    ASSERT_EQ(f.dialogs.asked.size(), 1u);
    EXPECT_EQ(f.dialogs.asked[0].text, "You are currently in GPS mode.\nConfirm change to dead reckoning mode.");
    EXPECT_EQ(f.dialogs.asked[0].title, "Mode Change");
    EXPECT_TRUE(ApplyVesselDialog(f.ins.vessel, f.reg, f.units, f.hooks, f.dialogs, "Tarnel", v));
    EXPECT_EQ(f.V().Mode, 1);
    EXPECT_EQ(f.ports.ComPortStatus(1), 0);
    EXPECT_EQ(f.V().DRBase, (LatLong{-12.0 * 3600.0, 50.0 * 3600.0}));
    EXPECT_EQ(f.V().COG, 270.0);
    EXPECT_EQ(f.V().SOG, 5.0);
    f.clock.Advance(60);
    f.ins.vessel.UpdateVesselPos();
    EXPECT_LT(f.V().Pos.Long, -12.0 * 3600.0);

    // FILE DR asks its own question.
    f.ins.vessel.SetVesselMode(5);
    f.dialogs.replies = {mb::No};
    EXPECT_FALSE(ApplyVesselDialog(f.ins.vessel, f.reg, f.units, f.hooks, f.dialogs, "Tarnel", v));
    EXPECT_EQ(f.dialogs.asked.back().text, "Do you wish to cancel FILE DR mode.");
    EXPECT_EQ(f.V().Mode, 5);
}
