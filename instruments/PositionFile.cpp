#include "instruments/PositionFile.h"

#include <sys/stat.h>

#include <cstdio>
#include <ctime>
#include <regex>

#include "core/ErrorReport.h"
#include "core/Fault.h"
#include "core/Format.h"
#include "core/Paths.h"
#include "core/Val.h"
#include "navmath/RLGC.h"
#include "platform/api/Clock.h"

namespace ombra {

bool ParseTimeOfDay(const std::string& text, double& seconds) {
    static const std::regex time(R"((\d{1,2}):(\d{2})(?::(\d{2}(?:\.\d+)?))?\s*([AaPp][Mm])?)");
    static const std::regex date(R"(\d{1,4}[/.-]\d{1,2}[/.-]\d{1,4})");
    std::smatch m;
    if (std::regex_search(text, m, time)) {
        double h = Val(m[1].str()), mi = Val(m[2].str()), s = m[3].matched ? Val(m[3].str()) : 0.0;
        if (m[4].matched) {
            bool pm = m[4].str()[0] == 'P' || m[4].str()[0] == 'p';
            if (h == 12.0) h = 0.0;
            if (pm) h += 12.0;
        }
        if (h > 23.0 || mi > 59.0 || s >= 61.0) return false;
        seconds = h * 3600.0 + mi * 60.0 + s;
        return true;
    }
    if (std::regex_search(text, m, date)) {
        seconds = 0.0;
        return true;
    }
    return false;
}

std::string FileStampText(const std::string& path) {
    struct stat st {};
    if (::stat(ResolvePath(path).c_str(), &st) != 0) return "";
    std::tm tm{};
    ::localtime_r(&st.st_mtim.tv_sec, &tm);
    DateTime dt{tm.tm_year + 1900, tm.tm_mon + 1, tm.tm_mday, tm.tm_hour, tm.tm_min, tm.tm_sec, 0};
    char ns[16];
    std::snprintf(ns, sizeof ns, ".%09ld", long(st.st_mtim.tv_nsec));
    return FormatDate(dt, "General Date") + ns + " " + std::to_string(long(st.st_size));
}

int16_t ReadPositionFile(const std::string& path, Clock& clock, ErrorReporter& errors, LatLong& base, float& start,
                         std::string& name, double& cog, double& sog) {
    int16_t result = 0;
    errors.Guard("ReadPositionFile", [&] {
        float time = float(clock.Timer());
        std::string id = "Vestrane";
        LatLong pos;
        bool LatSeen = false, LonSeen = false;
        std::string err;
        auto bytes = ReadWholeFile(path, &err);
        if (!bytes) RaiseFault(faults::FileNotFound);
        // Lines at LF (a CR before it is dropped); empty lines are skipped.
        size_t at = 0;
        while (at < bytes->size()) {
            size_t lf = bytes->find('\n', at);
            std::string line = bytes->substr(at, lf == std::string::npos ? std::string::npos : lf - at);
            at = lf == std::string::npos ? bytes->size() : lf + 1;
            while (!line.empty() && (line.back() == '\r')) line.pop_back();
            if (line.empty()) continue;
            std::string up = UCase(line);
            size_t k;
            if ((k = up.find("LATITUDE:")) != std::string::npos) {
                pos.Lat = Val(line.substr(k + 9)) * 3600.0;
                LatSeen = true;
            } else if ((k = up.find("LONGITUDE:")) != std::string::npos) {
                pos.Long = Val(line.substr(k + 10)) * 3600.0;
                LonSeen = true;
            } else if ((k = up.find("POS AGE:")) != std::string::npos) {
                double t = clock.Timer() - Val(line.substr(k + 8)) * 60.0;
                if (t < 0.0) t += 86400.0;
                time = float(t);
            } else if ((k = up.find("VESSEL ID:")) != std::string::npos) {
                std::string v = line.substr(k + 10);
                size_t first = v.find_first_not_of(" \t");
                id = first == std::string::npos ? std::string() : v.substr(first);
            } else if ((k = up.find("DATE/TIME:")) != std::string::npos) {
                double t;
                if (!ParseTimeOfDay(line.substr(k + 10), t)) RaiseFault(faults::TypeMismatch);
                time = float(t);
            }
        }
        if (!LatSeen || !LonSeen) return;
        if (id != name) {
            name = id;
            cog = 0.0;
            base = pos;
            start = time;
            result = 2;
            return;
        }
        double distance = 0.0;
        CourseDistanceRL(base, pos, cog, distance);
        if (time > start)
            sog = distance / ((double(time) - double(start)) / 3600.0);
        else
            sog = distance / ((double(time) - double(start) + 86400.0) / 3600.0);
        base = pos;
        start = time;
        result = 1;
    });
    return result;
}

}  // namespace ombra
