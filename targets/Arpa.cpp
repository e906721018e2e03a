#include "targets/Arpa.h"

#include <algorithm>
#include <cmath>

#include "core/Angles.h"
#include "core/ErrorReport.h"
#include "core/Format.h"
#include "core/Registry.h"
#include "core/Val.h"
#include "instruments/CommSettings.h"
#include "instruments/Console.h"
#include "instruments/InstrumentDialogs.h"
#include "instruments/NmeaText.h"
#include "navmath/RLGC.h"
#include "navobjects/NavChart.h"
#include "platform/api/Canvas.h"
#include "platform/api/ChartLibrary.h"
#include "platform/api/Clock.h"
#include "platform/api/Dialogs.h"
#include "targets/TargetDrawing.h"
#include "targets/TargetPlotHost.h"

namespace ombra {

namespace {
constexpr double kSecondsToRadians = 0.017453292519944444 / 3600.0;
constexpr double kMetresPerMile = 1852.0;
constexpr int32_t kSecondsPerDay = 86400;
}  // namespace

float ArpaToNautical(float value, const std::string& unit) {
    if (unit == "S") return value * 0.8689525127410889f;
    if (unit == "K") return value * 0.53995680809021f;
    return value;
}

Arpa::Arpa(TargetPlotHost& host, ErrorReporter& errors, Clock& clock, Console& console)
    : host_(host), errors_(errors), clock_(clock), console_(console) {}

void Arpa::LoadSettings(const Registry& reg) {
    Settings.Enable = SettingFlag(reg.GetSetting(Key::ARPAEnable));
    Settings.Labels = SettingFlag(reg.GetSetting(Key::ARPALabels));
    const double delay = reg.GetNumber(Key::ARPADelay);
    Settings.Delay = delay >= 0.0 && delay <= kSecondsPerDay ? int32_t(delay) : 20;
}

ArpaDialogValues LoadArpaDialog(const Registry& reg, const CommSettings& comm, const ArpaSettings& arpa) {
    ArpaDialogValues v;
    v.Enable = arpa.Enable;
    v.Port = std::to_string(comm.ARPAPort);
    v.Device = PortDevice(reg, comm.ARPAPort);
    v.BaudRate = std::to_string(comm.ARPABaudRate);
    v.Delay = std::to_string(arpa.Delay);
    v.Names = arpa.Labels;
    return v;
}

void SaveArpaDialog(Registry& reg, CommSettings& comm, ArpaSettings& arpa, const ArpaDialogValues& v) {
    const double port = Val(v.Port), rate = Val(v.BaudRate), delay = Val(v.Delay);
    comm.ARPAPort = port >= 0.0 && port <= 255.0 ? int16_t(std::lround(port)) : 0;
    comm.ARPABaudRate = rate >= 1200.0 && rate <= 57600.0 ? int32_t(std::lround(rate)) : 4800;
    comm.AISBaudRate = comm.ARPABaudRate;
    arpa.Delay = IsNumeric(v.Delay) && delay >= 0.0 && delay <= kSecondsPerDay ? int32_t(std::lround(delay)) : 20;
    comm.ARPADelay = arpa.Delay;
    comm.ARPAEnable = arpa.Enable = v.Enable;
    arpa.Labels = v.Names;
    reg.SaveSetting(Key::ARPAPort, std::to_string(comm.ARPAPort));
    reg.SaveSetting(Key::ARPABaudRate, std::to_string(comm.ARPABaudRate));
    SavePortDevice(reg, comm.ARPAPort, v.Device);
    // The module's own keys.
    reg.SaveSetting(Key::ARPAEnable, arpa.Enable ? "1" : "0");
    reg.SaveSetting(Key::ARPALabels, arpa.Labels ? "1" : "0");
    reg.SaveSetting(Key::ARPADelay, std::to_string(arpa.Delay));
}

ArpaTaken Arpa::ArpaPoll(const std::string& sentence, bool checksums, int* slot) {
    if (slot) *slot = -1;
    if (sentence.size() < 6 || sentence[0] != '$') return ArpaTaken::Nothing;
    if (checksums && !ChecksumOK(sentence)) return ArpaTaken::Nothing;
    const std::string_view id = std::string_view(sentence).substr(3, 3);
    if (id == "TTM") {
        const int s = DecodeTTM(sentence);
        if (slot) *slot = s;
        return s >= 0 ? ArpaTaken::Target : ArpaTaken::Nothing;
    }
    if (id == "OSD" && Settings.Enable) return DecodeOSD(sentence) ? ArpaTaken::Heading : ArpaTaken::Nothing;
    return ArpaTaken::Nothing;
}

bool Arpa::DecodeOSD(const std::string& sentence) {
    const NmeaFields f = SplitFields(sentence, 10);
    if (f[2] != "A") return false;
    ArpaHeading = Val(f[1]);
    return true;
}

int Arpa::DecodeTTM(const std::string& sentence) {
    const NmeaFields f = SplitFields(sentence, 16);
    if (!IsNumeric(f[1])) return -1;
    const double number = Val(f[1]);
    // Out of range (target 0, or past 101): the sentence is lost, and said so.
    if (!(number >= 0.5 && number < kSlots + 0.5)) {
        errors_.ReportError("DecodeTTM", "Subscript out of range");
        return -1;
    }
    const int slot = int(std::lround(number)) - 1;
    ArpaTarget& t = Targets[size_t(slot)];
    ArpaCount = std::max<int16_t>(ArpaCount, int16_t(slot));

    const std::string& status = f[12];
    if (status == "L" || status.empty()) {
        t.Name.clear();
        t.Stale = true;
        UpdateArpaConsole();
        return slot;
    }
    t.Acquiring = status == "Q" ? 1 : 0;

    const std::string radarName = Trim(f[11]);
    if (!t.Name.empty()) {
        if (t.Name.compare(0, 2, "T#") == 0 && !radarName.empty()) t.Name = radarName;
    } else if (!radarName.empty()) {
        t.Name = radarName;
    } else {
        t.Name = "T#" + Format(number, "00");
    }
    UpdateArpaConsole();

    const std::string& unit = f[10];
    t.Range = ArpaToNautical(float(Val(f[2])), unit);
    t.Speed = ArpaToNautical(float(Val(f[5])), unit);
    t.CPA = ArpaToNautical(float(Val(f[8])), unit);
    t.Bearing = float(Val(f[3]));
    t.BearingRef = f[4];
    t.Course = float(Val(f[6]));
    t.CourseRef = f[7];
    t.TCPA = float(Val(f[9]));

    t.Stale = false;
    ArpaTimedOut = false;
    receiving_ = true;
    ArpaLastData = int32_t(std::lround(clock_.Timer()));
    return slot;
}

bool Arpa::PlaceArpaTarget(int slot) {
    if (slot < 0 || slot >= kSlots) return false;
    LatLong own;
    if (!host_.OwnPosition(own)) return false;
    ArpaTarget& t = Targets[size_t(slot)];
    const LatLong from{own.Long * kSecondsToRadians, own.Lat * kSecondsToRadians};
    LatLong to;
    GeodesicDirect(from, float(double(t.Range) * kMetresPerMile), float(double(t.Bearing) * kDegToRad), to);
    t.Point.Wgs84 = {to.Long / kSecondsToRadians, to.Lat / kSecondsToRadians};
    return true;
}

void Arpa::DrawArpaObjects(Canvas& canvas, NavChart& chart, ChartLibrary& library) {
    errors_.Guard("Draw ARPA Object", [&] {
        if (!chart.ChartOpen()) return;
        for (int slot = 0; slot <= ArpaCount && slot < kSlots; ++slot) {
            ArpaTarget& t = Targets[size_t(slot)];
            if (t.Name.empty() || !PlaceArpaTarget(slot)) continue;
            chart.PrepareNavPoint(t.Point);
            DrawTargetSymbol(canvas, chart, library, t.Point, t.Course, 1, kColour,
                             Settings.Labels ? t.Name : std::string());
        }
        UpdateArpaConsole();
    });
}

void Arpa::UpdateArpaConsole() {
    auto& rows = console_.LabARPA;
    const bool shown = ActiveTarget >= 0 && ActiveTarget < kSlots && !Targets[size_t(ActiveTarget)].Name.empty() &&
                       !Targets[size_t(ActiveTarget)].Stale;
    if (!shown) {
        rows.fill("N/A");
        host_.ConsoleChanged();
        return;
    }
    ArpaTarget& t = Targets[size_t(ActiveTarget)];
    rows[0] = t.Name;
    rows[1] = PlaceArpaTarget(ActiveTarget) ? host_.PositionText(t.Point.Wgs84) : "N/A";
    rows[2] = host_.DistanceText(t.Range, "##0.00");
    rows[3] = t.BearingRef == "R" ? Format(t.Bearing, "000.0") + " R" : host_.AngleText(t.Bearing);
    rows[4] = host_.SpeedText(t.Speed, "##0.0");
    rows[5] = t.CourseRef == "R" ? Format(t.Course, "000.0") + " R" : host_.AngleText(t.Course);
    rows[6] = host_.AngleText(ArpaHeading);
    host_.ConsoleChanged();
}

std::vector<std::string> Arpa::TargetRows() const {
    std::vector<std::string> rows;
    for (int slot = 0; slot < kSlots; ++slot)
        if (!Targets[size_t(slot)].Name.empty()) rows.push_back(Targets[size_t(slot)].Name + " - " + Format(slot, "0000"));
    return rows;
}

void Arpa::CentreOnArpaTarget() {
    errors_.Guard("CentreOnArpaTarget", [&] {
        const std::vector<std::string> rows = TargetRows();
        const int pick = host_.ListPick("Select ARPA Target To Centre On", rows);
        if (pick < 0 || size_t(pick) >= rows.size()) return;
        // The slot is the row's last four characters.
        const std::string& row = rows[size_t(pick)];
        const int slot = int(Val(row.substr(row.size() - 4)));
        if (slot < 0 || slot >= kSlots || !PlaceArpaTarget(slot)) return;
        ActiveTarget = slot;
        UpdateArpaConsole();
        host_.CentreChartOn(Targets[size_t(slot)].Point.Wgs84);
    });
}

void Arpa::ClearArpaTargets() {
    for (int slot = 0; slot < kSlots; ++slot) Targets[size_t(slot)] = ArpaTarget{};
    ActiveTarget = -1;
    receiving_ = false;
    ArpaTimedOut = false;
    console_.LabARPA.fill("N/A");
}

bool Arpa::CheckTimeout() {
    if (!Settings.Enable || Settings.Delay <= 0 || !receiving_ || ArpaTimedOut) return false;
    const int32_t now = int32_t(std::lround(clock_.Timer()));
    const int32_t age = ((now - ArpaLastData) % kSecondsPerDay + kSecondsPerDay) % kSecondsPerDay;
    if (age < Settings.Delay) return false;
    for (ArpaTarget& t : Targets)
        if (!t.Name.empty()) t.Stale = true;
    ArpaTimedOut = true;
    receiving_ = false;
    console_.LabARPA.fill("N/A");
    host_.ConsoleChanged();
    errors_.dialogs().MsgBox(kTimeoutMessage, mb::OKOnly | mb::Exclamation, errors_.ProductName());
    host_.Redraw();
    return true;
}

}  // namespace ombra
