#include "core/GenFuncs.h"

#include <cmath>

#include "core/Format.h"
#include "core/Val.h"
#include "platform/api/Dialogs.h"

namespace ombra {

const char* const kInvalidLatLongMessage =
    "Invalid Latitude and/or Longitude\n\nCorrect Format:\n\n51 28.57 N\n2 36.6 W\n\n"
    "i.e Degrees space minutes space N, S, E, or W.";

namespace {

std::string OneText(double value, const char* pos, const char* neg) {
    double a = std::fabs(value) / 3600.0;
    double deg = std::floor(a);
    double min = (a - deg) * 60.0;
    return Format(deg, "0") + "° " + Format(min, "00.000") + " ´" + (value < 0.0 ? neg : pos);
}

// Reads one coordinate; `hemi` holds the accepted letters, positive first.
bool ParseOne(std::string& text, char posUpper, char negUpper, double& out) {
    std::string s = Trim(text);
    s = Replace(s, "°", " ");
    s = Replace(s, "´", " ");
    s = Replace(s, "'", " ");
    s = Replace(s, ",", ".");
    s = Trim(s);
    // Runs of blanks count as one, so "51° 28.57´ N" reads like "51 28.57 N".
    std::string c;
    for (char ch : s) {
        if (ch == ' ' && !c.empty() && c.back() == ' ') continue;
        c.push_back(ch);
    }
    s = c;
    auto isHemi = [&](char ch) {
        char u = char(std::toupper(static_cast<unsigned char>(ch)));
        return u == posUpper || u == negUpper;
    };
    char hemi = 0;
    if (s.size() >= 3 && isHemi(s[s.size() - 3]) && s.substr(s.size() - 2) == " *") hemi = s[s.size() - 3];
    else if (!s.empty() && isHemi(s.back())) hemi = s.back();
    if (!hemi) return false;
    size_t b1 = s.find(' ');
    if (b1 == std::string::npos) return false;
    size_t b2 = s.find(' ', b1 + 1);
    if (b2 == std::string::npos) return false;
    std::string deg = s.substr(0, b1);
    std::string min = s.substr(b1 + 1, b2 - b1 - 1);
    if (!IsNumeric(deg) || !IsNumeric(min)) return false;
    double m = Val(min);
    if (m < 0.0 || m >= 60.0) return false;
    double v = Val(deg) * 3600.0 + m * 60.0;
    if (std::toupper(static_cast<unsigned char>(hemi)) == negUpper) v = -v;
    out = v;
    return true;
}

}  // namespace

void LatLongText(std::string& latText, std::string& lonText, const LatLong* pos, int16_t DatumMode,
                 int16_t DatumValid, bool shiftAvailable) {
    if (!pos) {
        latText = "0° 00.000 ´N";
        lonText = "0° 00.000 ´E";
    } else {
        latText = OneText(pos->Lat, "N", "S");
        lonText = OneText(pos->Long, "E", "W");
    }
    if ((DatumMode == 1 && DatumValid == 0) || (DatumMode == 0 && !shiftAvailable)) {
        latText += " *";
        lonText += " *";
    }
}

bool ParseLatLong(std::string& latText, std::string& lonText, Dialogs& dialogs, const std::string& productName) {
    double lat = 0, lon = 0;
    if (!ParseOne(latText, 'N', 'S', lat) || !ParseOne(lonText, 'E', 'W', lon)) {
        dialogs.MsgBox(kInvalidLatLongMessage, mb::OKOnly | mb::Exclamation, productName);
        return false;
    }
    latText = NumberText(lat);
    lonText = NumberText(lon);
    return true;
}

bool ConfirmDelete(DeleteKind kind, Dialogs& dialogs, const std::string& productName) {
    const char* text = kind == DeleteKind::Route      ? "Confirm deletion of route."
                       : kind == DeleteKind::Waypoint ? "Confirm deletion of waypoint."
                                                      : "Confirm deletion.";
    return dialogs.MsgBox(text, mb::YesNo | mb::Question, productName) == mb::Yes;
}

bool ConfirmMove(MoveKind kind, Dialogs& dialogs, const std::string& productName) {
    const char* what = kind == MoveKind::BoundaryMark ? "Boundary Mark."
                       : kind == MoveKind::Waypoint   ? "Waypoint."
                                                      : "Vessel.";
    return dialogs.MsgBox(std::string("Do you wish to move this ") + what, mb::YesNo | mb::Question, productName) ==
           mb::Yes;
}

}  // namespace ombra
