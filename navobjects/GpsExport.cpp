#include "navobjects/GpsExport.h"

#include <cmath>

#include "core/Format.h"
#include "core/Val.h"
#include "navobjects/NavHost.h"
#include "platform/api/Clock.h"
#include "platform/api/Dialogs.h"

namespace ombra {

const char* const kGpsProblemMessage =
    "There is a communications problem with the GPS.\nPlease check your interface cable and port\nsettings, before "
    "trying again";

namespace {

bool IsDigits(const std::string& s) {
    if (s.empty()) return false;
    for (char c : s)
        if (c < '0' || c > '9') return false;
    return true;
}

// Degrees and minutes of |seconds| / 3600 as a 32-bit float.
std::string DegMin(double seconds, const char* degPicture, const char* minPicture) {
    float value = float(std::fabs(seconds) / 3600.0);
    float degrees = std::trunc(value);
    float minutes = (value - degrees) * 60.0f;
    return Replace(Format(double(degrees), degPicture) + Format(double(minutes), minPicture), ",", ".");
}

std::string Magellan(const std::string& name) { return UCase(name).substr(0, 6); }

}  // namespace

std::string FurunoName(const std::string& name) {
    size_t at = name.find(".WP");
    if (name.empty() || name[0] != 'R' || at == std::string::npos) return name;
    std::string stem = name.substr(0, at);
    std::string last2 = name.size() >= 2 ? name.substr(name.size() - 2) : name;
    if (IsDigits(last2)) return last2 + "W" + stem;
    return name.substr(name.size() - 1) + "W" + stem;
}

std::string WaypointSentenceBody(const Waypoint& wp, int16_t mode, int16_t prefixNumber) {
    const bool furuno = mode == 1, magellan = mode == 2, plain = !furuno && !magellan;
    const char* minutes = furuno ? "00.00" : "00.000";
    std::string s = furuno ? "PFEC,GPwpl," : magellan ? "PMGNWPL," : "GPWPL,";
    s += DegMin(wp.Position.Wgs84.Lat, "00", minutes) + (wp.Position.Wgs84.Lat >= 0.0 ? ",N," : ",S,");
    s += DegMin(wp.Position.Wgs84.Long, "000", minutes) + (wp.Position.Wgs84.Long >= 0.0 ? ",E," : ",W,");
    if (magellan) s += "0,M,";
    if (plain) {
        s += prefixNumber != 0 ? Format(double(prefixNumber) * 100.0 + wp.Number - 1, "0000") : Format(wp.Number, "0000");
    } else if (!wp.Name.empty()) {
        s += furuno ? FurunoName(wp.Name) : Magellan(wp.Name);
    } else {
        s += Format(wp.Number, "000000");
    }
    if (furuno) {
        s += ",A,,,,," + wp.Description + ",,@r";
    } else if (magellan) {
        s += "," + UCase(wp.Description.substr(0, 20)) + ",";
    } else if (!wp.Name.empty()) {
        std::string n = UCase(wp.Name);
        if (n.size() > 10) n = n.substr(0, 10);
        else n = std::string(10 - n.size(), ' ') + n;
        s += n + " " + UCase(wp.Description.substr(0, 10));
    } else if (!wp.Description.empty()) {
        s += " " + UCase(wp.Description.substr(0, 20));
    }
    return s;
}

std::vector<std::string> RouteSentenceBodies(const Route& r, int16_t mode) {
    std::vector<std::string> out;
    const size_t n = r.Points.size();
    const int total = int((n + 5) / 6);
    for (int m = 1; m <= total; ++m) {
        std::string s;
        if (mode == 1) s = "PFEC,GPrtc," + Format(total, "0") + "," + Format(m, "0") + "," + Format(r.Number, "00") + ",";
        else if (mode == 2) {
            s = "PMGNRTE," + Format(total, "0") + "," + Format(m, "0") + ",c," + Format(r.Number, "0");
            if (m == 1 && !r.Name.empty()) s += "," + Magellan(r.Name);
            s += ",";
        } else {
            s = "GPRTE," + Format(total, "0") + "," + Format(m, "0") + (mode == 3 ? ",c," : ",C,") + Format(r.Number, "00") + ",";
        }
        for (size_t i = size_t(m - 1) * 6; i < n && i < size_t(m) * 6; ++i) {
            const Waypoint& p = r.Points[i];
            std::string name;
            if (mode == 1) {
                name = FurunoName(p.Name.empty() ? Format(p.Number, "000000") : p.Name);
                if (name.size() < 6) name += std::string(6 - name.size(), ' ');
            } else if (mode == 2) {
                name = p.Name.empty() ? Format(p.Number, "000000") : Magellan(p.Name);
            } else {
                name = Format(double(r.Number) * 100.0 + double(i + 1) - 1.0, "0000");
            }
            s += name + ",";
        }
        if (mode != 1 && !s.empty() && s.back() == ',') s.pop_back();
        out.push_back(s);
    }
    if (mode == 1) out.push_back("PFEC,GPxfr,CTL,E");
    return out;
}

void GpsExport::Problem() { dialogs_.MsgBox(kGpsProblemMessage, mb::Exclamation, productName_); }

bool GpsExport::Open() {
    host_.SetStatus("Initialising GPS for Waypoint transfer.");
    if (link_.OpenPort()) return true;
    Problem();
    return false;
}

bool GpsExport::Send(const std::string& body, int16_t mode) {
    std::string sum = link_.ChecksumText(body);
    if (mode == 2) link_.ClearReply();
    link_.Write("$" + body + sum + "\r\n");
    if (mode != 2) return true;
    // The set answers with the checksum's last two characters.
    double start = clock_.Timer();
    std::string reply;
    for (;;) {
        events_.DoEvents();
        reply = link_.Reply();
        if (!reply.empty()) break;
        double waited = clock_.Timer() - start;
        if (waited < 0) waited += 86400.0;
        if (waited >= 5.0) break;
        clock_.Sleep(20);
    }
    std::string want = sum.size() >= 2 ? sum.substr(sum.size() - 2) : sum;
    return reply == want;
}

bool GpsExport::ExportPointToGPS(const Waypoint& wp, int16_t prefixNumber, int16_t mode) {
    return Send(WaypointSentenceBody(wp, mode, prefixNumber), mode);
}

bool GpsExport::ExportWaypointsToGPS(const std::vector<const Waypoint*>& points, int16_t mode) {
    if (!Open()) return false;
    bool ok = true;
    for (const Waypoint* wp : points) {
        if (!wp || !wp->Used()) continue;
        host_.SetStatus("Exporting Waypoint " + Format(wp->Number, "000") + " (" + wp->Name + ").");
        if (!ExportPointToGPS(*wp, 0, mode)) {
            ok = false;
            break;
        }
    }
    link_.ClosePort();
    if (!ok) Problem();
    host_.SetStatus("");
    return ok;
}

bool GpsExport::ExportRouteToGPS(const Route& r, int16_t mode) {
    if (!Open()) return false;
    bool ok = true;
    for (const Waypoint& p : r.Points) {
        host_.SetStatus("Exporting Waypoint " + Format(p.Number, "000") + " (" + p.Name + ").");
        if (!ExportPointToGPS(p, r.Number, mode)) {
            ok = false;
            break;
        }
    }
    if (ok) {
        std::vector<std::string> bodies = RouteSentenceBodies(r, mode);
        for (size_t m = 0; m < bodies.size(); ++m) {
            if (mode != 1) host_.SetStatus("Exporting Route message " + Format(double(m + 1), "000") + ".");
            bool last = mode == 1 && m + 1 == bodies.size();
            if (!Send(bodies[m], last ? int16_t(1) : mode)) {
                ok = false;
                break;
            }
        }
    }
    link_.ClosePort();
    if (!ok) Problem();
    host_.SetStatus("");
    return ok;
}

}  // namespace ombra
