#include "instruments/Console.h"

#include <cmath>

#include "core/Angles.h"
#include "core/Registry.h"
#include "instruments/CommSettings.h"

namespace ombra {

namespace {

// Each row's key; a key may show more than one row (a position is two).
struct RowKey {
    int row;
    Key key;
};
const RowKey kVesselKeys[] = {{0, Key::ConsoleVesselPoistion}, {1, Key::ConsoleVesselPoistion}, {2, Key::ConsoleVesselCourse},
                              {3, Key::ConsoleVesselSpeed},    {4, Key::ConsoleVesselCOG},      {5, Key::ConsoleVesselSOG},
                              {6, Key::ConsoleVesselHDG}};
const RowKey kCursorKeys[] = {{0, Key::ConsoleCursorPosition}, {1, Key::ConsoleCursorPosition}, {2, Key::ConsoleCursorBearing},
                              {3, Key::ConsoleCursorRange}};
const RowKey kWPKeys[] = {{0, Key::ConsoleWaypointName},     {1, Key::ConsoleWaypointPosition}, {2, Key::ConsoleWaypointPosition},
                          {3, Key::ConsoleWaypointBearing},  {4, Key::ConsoleWaypointRange},    {5, Key::ConsoleWaypointVMG},
                          {6, Key::ConsoleWaypointTTG},      {7, Key::ConsoleWaypointETATime},  {8, Key::ConsoleWaypointETADate},
                          {9, Key::ConsoleWaypointXTE},      {10, Key::ConsoleWaypointXTE},     {11, Key::ConsoleWaypointSteer}};
const RowKey kTideKeys[] = {{0, Key::ConsoleTideSet}, {1, Key::ConsoleTideDrift}};
const RowKey kAISKeys[] = {{0, Key::ConsoleAISID},        {1, Key::ConsoleAISID},       {2, Key::ConsoleAISCallSign},
                           {3, Key::ConsoleAISName},      {4, Key::ConsoleAISType},     {5, Key::ConsoleAISStatus},
                           {6, Key::ConsoleAISUpdate},    {7, Key::ConsoleAISPosition}, {8, Key::ConsoleAISPosition},
                           {9, Key::ConsoleAISAccuracy},  {10, Key::ConsoleAISGpsType}, {11, Key::ConsoleAISSize},
                           {12, Key::ConsoleAISSize},     {13, Key::ConsoleAISCog},     {14, Key::ConsoleAISSog},
                           {15, Key::ConsoleAISGyro},     {16, Key::ConsoleAISGyro},    {17, Key::ConsoleAISSize},
                           {18, Key::ConsoleAISEta},      {19, Key::ConsoleAISEta},
                           {20, Key::ConsoleAISCpa},      {21, Key::ConsoleAISCpa}};
const RowKey kARPAKeys[] = {{0, Key::ConsoleARPAName},  {1, Key::ConsoleARPAPosition}, {2, Key::ConsoleARPARange},
                            {3, Key::ConsoleARPABearing}, {4, Key::ConsoleARPASpeed},  {5, Key::ConsoleARPACourse},
                            {6, Key::ConsoleARPAHeading}};
const RowKey kDDEKeys[] = {{0, Key::ConsoleDDEName}, {1, Key::ConsoleDDEPosition}, {2, Key::ConsoleDDESpeed}, {3, Key::ConsoleDDECourse}};

template <size_t N, size_t M>
void LoadRows(const Registry& reg, const RowKey (&keys)[M], std::array<bool, N>& show) {
    for (const RowKey& k : keys) show[size_t(k.row)] = reg.GetSetting(k.key) != "False";
}
template <size_t N, size_t M>
void SaveRows(Registry& reg, const RowKey (&keys)[M], const std::array<bool, N>& show) {
    for (const RowKey& k : keys) reg.SaveSetting(k.key, BoolText(show[size_t(k.row)]));
}
}  // namespace

Console::Console() {
    ShowVessel.fill(true);
    ShowCursor.fill(true);
    ShowWP.fill(true);
    ShowTide.fill(true);
    ShowAIS.fill(true);
    ShowARPA.fill(true);
    ShowDDE.fill(true);
    AllNotAvailable();
    LabAIS.fill("N/A");
    LabARPA.fill("N/A");
    LabTarget.fill("N/A");
    LabDDE.fill("N/A");
}

void Console::LoadConsoleSettings(const Registry& reg) {
    Visible = reg.GetSetting(Key::ConsoleVisible) != "False";
    LoadRows(reg, kVesselKeys, ShowVessel);
    LoadRows(reg, kCursorKeys, ShowCursor);
    LoadRows(reg, kWPKeys, ShowWP);
    LoadRows(reg, kTideKeys, ShowTide);
    LoadRows(reg, kAISKeys, ShowAIS);
    LoadRows(reg, kARPAKeys, ShowARPA);
    LoadRows(reg, kDDEKeys, ShowDDE);
}

void Console::SaveConsoleSettings(Registry& reg) const {
    reg.SaveSetting(Key::ConsoleVisible, BoolText(Visible));
    SaveRows(reg, kVesselKeys, ShowVessel);
    SaveRows(reg, kCursorKeys, ShowCursor);
    SaveRows(reg, kWPKeys, ShowWP);
    SaveRows(reg, kTideKeys, ShowTide);
    SaveRows(reg, kAISKeys, ShowAIS);
    SaveRows(reg, kARPAKeys, ShowARPA);
    SaveRows(reg, kDDEKeys, ShowDDE);
}

void Console::AllNotAvailable() {
    LabVessel.fill("N/A");
    LabCursor.fill("N/A");
    LabTide.fill("N/A");
    WaypointNotAvailable();
}

void Console::WaypointNotAvailable() {
    LabWP.fill("N/A");
    WPFrameCaption = "No Active Waypoint";
}

const std::vector<ConsoleFrameRows>& Console::Frames() {
    static const std::vector<ConsoleFrameRows> frames = {
        {"Navigation Status", {"", ""}},
        {"Vessel", {"Lat", "Long", "Course", "Speed", "COG", "SOG", "Hdg"}},
        {"Vessel - Cursor", {"Lat", "Long", "Brg", "Rng"}},
        {"Active Waypoint", {"Name", "Lat", "Long", "Brg", "Rng", "VMG", "TTG", "ETA", "", "XTE", "", "Steer"}},
        {"Tide", {"Set", "Drift"}},
        {"AIS - Active Target", {"MMSI", "IMO", "Call Sign", "Name", "Type", "Status", "Update", "Lat", "Long", "Accuracy",
                                 "Nav", "Length", "Width", "COG", "SOG", "Gyro", "ROT", "Draft", "Destination", "ETA",
                                 "CPA", "TCPA"}},
        {"ARPA - Active Target", {"Name", "Position", "Range", "Bearing", "Speed", "Course", "Heading"}},
        {"Tracking - Active Target", {"Name", "Position", "Speed", "Course"}},
        {"ActiveTarget (DDE)", {"Name", "Position", "Speed", "Course"}},
    };
    return frames;
}

CrossTrack CrossTrackOf(double legCourse, double bearingTo, double distanceTo) {
    CrossTrack x;
    const double A = double(float(legCourse));
    const double B = bearingTo;
    const double X = std::fabs(A - B);
    if (A == B) {
        x.angle = 0.0;
        x.mark = ">><<";
    } else if (X < 180.0 && A < B) {
        x.angle = X;
        x.mark = "R>>";
    } else if (X >= 180.0 && A > B) {
        x.angle = 360.0 - X;
        x.mark = "R>>";
    } else if (X < 180.0 && A > B) {
        x.angle = X;
        x.mark = "L<<";
    } else {
        x.angle = A + 360.0 - B;
        x.mark = "L<<";
    }
    x.distance = std::fabs(std::sin(x.angle * kDegToRad) * distanceTo);
    if (x.distance < 0.005) x.mark = ">><<";
    return x;
}

bool CourseToSteer(double track, double speed, double set, double drift, double& course) {
    if (!(speed > 0.0)) return false;
    // The stream's component across the track must be cancelled by the
    // vessel's; what is left along the track must still carry her forward.
    double across = drift * std::sin((set - track) * kDegToRad);
    double s = -across / speed;
    if (s < -1.0 || s > 1.0) return false;
    double off = std::asin(s) / kDegToRad;
    double made = speed * std::cos(off * kDegToRad) + drift * std::cos((set - track) * kDegToRad);
    if (!(made > 0.0)) return false;
    course = std::fmod(track + off + 360.0, 360.0);
    return true;
}

}  // namespace ombra
