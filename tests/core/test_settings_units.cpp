#include <gtest/gtest.h>

#include <set>

#include "core/Options.h"
#include "core/Registry.h"
#include "core/Tables.h"
#include "core/Units.h"
#include "platform/fake/MemorySettings.h"
#include "tests/support/TestSupport.h"

using namespace ombra;

namespace {
struct Fixture {
    MemorySettings store;
    std::string product = "Tarnel";
    Registry reg{store, product};
};

const KeyInfo* ByName(const std::string& name) {
    size_t n;
    const KeyInfo* t = KeyTable(n);
    for (size_t i = 0; i < n; ++i)
        if (name == t[i].name) return &t[i];
    return nullptr;
}
}  // namespace

// The defaults themselves are checked where a user sees them: the settings
// windows on a first run (tests/ui/test_defaults_shown.cpp).
TEST(Registry, ReadingEveryKeyOnAFirstRunNeverWrites) {
    Fixture f;
    size_t n;
    const KeyInfo* t = KeyTable(n);
    for (size_t i = 0; i < n; ++i) f.reg.GetSetting(t[i].key);
    EXPECT_EQ(f.store.writes, 0);
}

TEST(Registry, StoredTextWinsAndBooleansAreExact) {
    Fixture f;
    f.store.Write("Vestrane", "Tarnel", "ZoomRect", "TRUE");
    f.store.Write("Vestrane", "Tarnel", "Checksums", "True ");
    f.store.Write("Vestrane", "Tarnel", "AutoStartupChart", "false");
    EXPECT_EQ(f.reg.GetSetting(Key::ZoomRect), "TRUE");
    EXPECT_FALSE(f.reg.IsTrue(Key::ZoomRect));         // "TRUE" is not "True"
    EXPECT_FALSE(f.reg.IsTrue(Key::Checksums));        // nor is "True " untrimmed
    EXPECT_TRUE(f.reg.IsTrue(Key::UnitsAngle));        // the default "True"
    EXPECT_FALSE(f.reg.IsFalse(Key::AutoStartupChart));  // a caller testing "False" reads "false" as true
    f.reg.SaveSetting(Key::GPSBaudRate, "38400");
    EXPECT_EQ(f.reg.GetNumber(Key::GPSBaudRate), 38400);
    EXPECT_EQ((f.store.values[{"Vestrane", "Tarnel", "GPSBaudRate"}]), "38400");
}

TEST(Registry, UnknownCodesReadEmptyAndWriteNothing) {
    Fixture f;
    EXPECT_EQ(f.reg.GetSetting(int16_t(-1)), "");
    EXPECT_EQ(f.reg.GetSetting(int16_t(Key::Count_)), "");
    EXPECT_EQ(f.reg.GetSetting(int16_t(32767)), "");
    f.reg.SaveSetting(int16_t(9999), "x");
    f.reg.SaveSetting(int16_t(-5), "x");
    EXPECT_EQ(f.store.writes, 0);
}

TEST(Registry, EbblineFolderLivesInItsOwnSectionAndDefaultsToTheInstallFolder) {
    Fixture f;
    f.reg.SetAppPath("/opt/vestrane\\");
    EXPECT_EQ(f.reg.GetSetting(Key::EbblineDir), "/opt/vestrane\\");
    f.store.Write("Vestrane", "Ebbline", "EbblineDir", "/tides/");
    EXPECT_EQ(f.reg.GetSetting(Key::EbblineDir), "/tides/");
    f.store.Write("Vestrane", "Tarnel", "EbblineDir", "/wrong/");
    EXPECT_EQ(f.reg.GetSetting(Key::EbblineDir), "/tides/");
}

TEST(Registry, AisAndArpaShareOneBaudRateKey) {
    // There is one stored rate for both ports: no key of the AIS port's own.
    EXPECT_EQ(ByName("AISBaudRate"), nullptr);
    Fixture f;
    f.reg.SaveSetting(Key::ARPABaudRate, "38400");  // what the AIS dialog writes
    EXPECT_EQ(f.reg.GetSetting(Key::ARPABaudRate), "38400");
}

TEST(Registry, KeysAreUniqueWithinTheirSection) {
    size_t n;
    const KeyInfo* t = KeyTable(n);
    std::set<std::string> seen;
    for (size_t i = 0; i < n; ++i) {
        EXPECT_EQ(int(t[i].key), int(i));
        std::string full = std::string(t[i].section ? t[i].section : "Tarnel") + "/" + t[i].name;
        EXPECT_TRUE(seen.insert(full).second) << full;
    }
}

TEST(Units, LoadingMatchesStoredTextsExactly) {
    struct Case { const char* dist; const char* speed; const char* angle; int d, s, a; } cases[] = {
        {"NauticalMiles", "Knots", "True", 0, 0, 0},
        {"StatuteMiles", "MPH", "Magnetic", 1, 1, 1},
        {"Kilometres", "KPH", "Compass", 2, 2, 2},
        {"Nautical Miles", "knots", "TRUE", 0, 0, 0},  // no match leaves 0
        {"Kilometers", "KPH ", "compass", 0, 0, 0},
    };
    for (auto& c : cases) {
        Fixture f;
        f.reg.SaveSetting(Key::UnitsDistance, c.dist);
        f.reg.SaveSetting(Key::UnitsSpeed, c.speed);
        f.reg.SaveSetting(Key::UnitsAngle, c.angle);
        Units u;
        u.DistanceUnit = u.SpeedUnit = u.AngleUnit = 9;
        u.LoadUnits(f.reg);
        EXPECT_EQ(u.DistanceUnit, c.d) << c.dist;
        EXPECT_EQ(u.SpeedUnit, c.s) << c.speed;
        EXPECT_EQ(u.AngleUnit, c.a) << c.angle;
        EXPECT_EQ(u.UnitsIsCompass(), c.a == 2);
    }
}

TEST(Units, ConversionsAndTheirNonInverseConstants) {
    Units u;
    struct Show { int unit; float v; const char* fmt; const char* want; } shows[] = {
        {0, 1.0f, "0.00", "1.00"},  {1, 1.0f, "0.00", "1.15"}, {2, 1.0f, "0.00", "1.85"},
        {1, 10.0f, "0.000", "11.508"}, {2, 0.5f, "0.000", "0.926"}, {0, 12.3456f, "##0.00", "12.35"},
    };
    for (auto& s : shows) {
        u.DistanceUnit = u.SpeedUnit = int16_t(s.unit);
        EXPECT_EQ(u.ToDisplay(UnitKind::Distance, s.v, s.fmt), s.want) << s.unit << " " << s.v;
        EXPECT_EQ(u.ToDisplay(UnitKind::Speed, s.v, s.fmt), s.want);
    }
    u.AngleUnit = 1;
    EXPECT_EQ(u.ToDisplay(UnitKind::Angle, 359.5f, "000"), "360");  // angles are not converted here
    // Typed values come back through the 32-bit constants.
    struct Back { int unit; float typed; float want; } backs[] = {
        {0, 5.0f, 5.0f}, {1, 1.0f, 0.8689525f}, {2, 1.0f, 0.5399568f}, {1, 11.508f, 11.508f * 0.8689525f},
    };
    for (auto& b : backs) {
        u.DistanceUnit = int16_t(b.unit);
        float v = b.typed;
        u.FromDisplay(UnitKind::Distance, v);
        EXPECT_EQ(v, b.want) << b.unit;
    }
    // Shown, typed back and shown again, a value may move in its last place.
    u.DistanceUnit = 1;
    float v = 1.0f;
    std::string shown = u.ToDisplay(UnitKind::Distance, v, "0.0000000");
    float typed = float(std::stod(shown));
    u.FromDisplay(UnitKind::Distance, typed);
    EXPECT_NE(typed, 1.0f);
    EXPECT_NEAR(typed, 1.0f, 1e-5f);
    struct Suffix { int unit; const char *d, *s, *a; } suffixes[] = {
        {0, "NM", "Kts", "°T"}, {1, "M", "MPH", "°M"}, {2, "Km", "K/H", "°C"}};
    for (auto& s : suffixes) {
        u.DistanceUnit = u.SpeedUnit = u.AngleUnit = int16_t(s.unit);
        EXPECT_EQ(u.UnitText(UnitKind::Distance), s.d);
        EXPECT_EQ(u.UnitText(UnitKind::Speed), s.s);
        EXPECT_EQ(u.UnitText(UnitKind::Angle), s.a);
    }
}

TEST(Tables, LookupsAreExactAndCaseSensitive) {
    struct Case { std::string (*fn)(std::string_view); const char* code; const char* want; } cases[] = {
        {DepthUnitText, "1", "METRES"},        {DepthUnitText, "6", "No depths"},   {DepthUnitText, "7", ""},
        {DepthUnitText, "01", ""},             {TidalLevelText, "00", "Unspecified"},
        {TidalLevelText, "11", "Approx Lowest AstronomicalTide"}, {TidalLevelText, "99", "Special or Multiple"},
        {TidalLevelText, "31", ""},            {TidalLevelText, "0", ""},
        {CountryText, "Pt", "Portugal"},       {CountryText, "PT", ""},             {CountryText, "zr", "Zaire"},
        {CountryText, "ZR", ""},               {CountryText, "KP", "Republic of Korea"},
        {CountryText, "KR", "D.P.R. of Korea"}, {CountryText, "CO", "Columbia"},
        {CountryText, "TT", "Trinidad & Tobago"}, {CountryText, "GB", "United Kingdom"},
        {DatumText, "WGD", "World Geodetic System 1984"}, {DatumText, "AFG", "Afgooye , Somalia"},
        {DatumText, "PLN", "Pico de la Nieves,Gran Canaria"}, {DatumText, "IST", "ISTS 073 Astro'69 Diego Garcia"},
        {DatumText, "XXX", "OSI & OGB"},       {DatumText, "wgd", ""},              {DatumText, "", ""},
        {DatumText, "HTN", "Hu -Tzu - Shan, Taiwan"},
    };
    for (auto& c : cases) EXPECT_EQ(c.fn(c.code), c.want) << c.code;
    EXPECT_EQ(CountryCount(), 72u);
    EXPECT_EQ(DatumCount(), 171u);
    EXPECT_EQ(TidalLevelCount(), 32u);
}

TEST(Options, AlarmRangesAreStoredInNauticalMilesWhateverTheMark) {
    struct Case { int unit; const char* typed; const char* stored; } cases[] = {
        {0, "0,5", "0.5"}, {0, "0.3", "0.3"}, {0, " 1,25 ", "1.25"}, {1, "1", "0.8689525"},
        {2, "1,0", "0.5399568"}, {0, "abc", "0"},
    };
    for (auto& c : cases) {
        Fixture f;
        Units units;
        OptionsValues v = LoadOptions(f.reg, units);
        v.DistanceUnit = int16_t(c.unit);
        v.WPAlarmRangeText = c.typed;
        v.XTEAlarmRangeText = c.typed;
        SaveOptions(f.reg, units, v);
        EXPECT_EQ(f.reg.GetSetting(Key::WaypointAlarmRange), c.stored) << c.typed;
        EXPECT_EQ(f.reg.GetSetting(Key::XTEAlarmRange), c.stored) << c.typed;
        EXPECT_EQ(units.DistanceUnit, c.unit);
        EXPECT_EQ(f.reg.GetSetting(Key::UnitsDistance), Units::DistanceKeyText(c.unit));
    }
}

TEST(Options, LoadShowsStoredRangesInTheCurrentUnitAndSavesEveryGroup) {
    Fixture f;
    f.reg.SaveSetting(Key::UnitsDistance, "Kilometres");
    f.reg.SaveSetting(Key::WaypointAlarmRange, "1");
    f.reg.SaveSetting(Key::CoDist3, "True");
    f.reg.SaveSetting(Key::RangeDP, "2");
    Units units;
    units.LoadUnits(f.reg);
    OptionsValues v = LoadOptions(f.reg, units);
    EXPECT_EQ(v.WPAlarmRangeText, "1.85");
    EXPECT_EQ(v.XTEAlarmRangeText, "0.56");
    EXPECT_TRUE(v.GreatCircle[2]);
    EXPECT_FALSE(v.GreatCircle[0]);
    EXPECT_EQ(v.RangeDP, 2);
    v.GreatCircle[0] = true;
    v.ShowZoomRect = false;
    v.GPSStartOpt = 2;
    v.AutoChart = true;
    v.AutoscrollText = "2,5";
    SaveOptions(f.reg, units, v);
    EXPECT_EQ(f.reg.GetSetting(Key::CoDist1), "True");
    EXPECT_EQ(f.reg.GetSetting(Key::ZoomRect), "False");
    EXPECT_EQ(f.reg.GetSetting(Key::AutoStartupGPS), "2");
    EXPECT_EQ(f.reg.GetSetting(Key::AutoStartupChart), "True");
    EXPECT_EQ(f.reg.GetSetting(Key::AutoscrollTime), "2.5");
    EXPECT_EQ(f.reg.GetSetting(Key::RangeDP), "2");
    // Shown again in kilometres, the stored nautical miles come back near the typed value.
    EXPECT_EQ(LoadOptions(f.reg, units).WPAlarmRangeText, "1.85");
    EXPECT_STREQ(LoadDisplayOptions(f.reg).RangeFormat(), "0.00");
}
