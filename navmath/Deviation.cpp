#include "navmath/Deviation.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <system_error>

#include "core/ErrorReport.h"
#include "core/Fault.h"
#include "core/Paths.h"
#include "core/Rounding.h"
#include "core/TextRecord.h"
#include "core/Val.h"

namespace ombra {

namespace {
constexpr const char* kFileName = "deviate.dat";
// A card is a few hundred bytes; a file much larger is not one.
constexpr uintmax_t kMaxFileBytes = 1 << 16;
}  // namespace

float DeviationFor(const DeviationCard& table, float heading) {
    if (std::isnan(heading)) return 0.0f;
    float h = heading;
    if (h < 0.0f || h > 360.0f) {
        h = std::fmod(h, 360.0f);
        if (h < 0.0f) h += 360.0f;
    }
    const int i = int(RoundEven(h / 10.0f));             // the entry: a rounding, not a truncation
    const double f = (int(RoundEven(h)) % 10) / 10.0;    // the units of the whole heading
    const float difference = i >= 35 ? table[0] - table[size_t(i)] : table[size_t(i) + 1] - table[size_t(i)];
    return float(difference * f + table[size_t(i)]);
}

int32_t MagneticCourse(double trueCourse, float variation) {
    const double whole = RoundEven(trueCourse - variation + 360.0);
    if (!std::isfinite(whole)) return 0;
    const double m = std::fmod(whole, 360.0);
    return int32_t(m < 0 ? m + 360.0 : m);
}

double ShownCourse(double trueCourse, int16_t mode, double variation, double deviation) {
    if (mode != int16_t(CourseMode::Magnetic) && mode != int16_t(CourseMode::Compass)) return trueCourse;
    const int32_t magnetic = MagneticCourse(trueCourse, float(variation));
    if (mode == int16_t(CourseMode::Magnetic)) return magnetic;
    const double compass = std::fmod(magnetic + deviation + 360.0, 360.0);
    return std::isfinite(compass) ? compass : double(magnetic);
}

const char* CourseMark(int16_t mode) {
    switch (mode) {
        case int16_t(CourseMode::Magnetic): return "°M";
        case int16_t(CourseMode::Compass): return "°C";
        default: return "°T";
    }
}

Deviation::Deviation(std::string dataPath, ErrorReporter& errors) : dataPath_(std::move(dataPath)), errors_(errors) {}

std::string Deviation::FilePath() const {
    return dataPath_.empty() ? std::string(kFileName) : WithTrailingSlash(dataPath_) + kFileName;
}

double Deviation::CourseInMode(double trueCourse, int16_t mode, float variation) const {
    if (mode == int16_t(CourseMode::True)) return trueCourse;
    const int32_t magnetic = MagneticCourse(trueCourse, variation);
    if (mode == int16_t(CourseMode::Magnetic)) return magnetic;
    return magnetic + double(DeviationFor(float(magnetic)));
}

std::string Deviation::CardText(const DeviationCard& table) {
    TextRecordWriter w;
    for (float v : table) w.Num(v).EndLine();
    return w.Text();
}

int Deviation::ParseCard(std::string_view text, DeviationCard& card, std::string* error) {
    card.fill(0.0f);
    int filled = 0;
    try {
        TextRecordReader r(text);
        for (; filled < kDeviationEntries; ++filled) {
            const int line = r.Line();
            const std::string value = r.ReadString();
            const std::string where = " (line " + std::to_string(line) + ")";
            if (!IsNumeric(value)) throw Fault(faults::TypeMismatch, FaultDescription(faults::TypeMismatch) + where);
            const double v = Val(value);
            if (!(std::fabs(v) <= 3.4e38)) throw Fault(faults::Overflow, FaultDescription(faults::Overflow) + where);
            card[size_t(filled)] = float(v);
        }
    } catch (...) {
        if (error) *error = ErrorReporter::CurrentFaultDescription();
    }
    return filled;
}

bool Deviation::ReadDeviateDat() {
    const std::string path = FilePath();
    DeviationCard card{};
    if (!FileExists(path)) {
        DeviationTable = card;
        return true;
    }
    std::string why;
    std::error_code ec;
    if (std::filesystem::file_size(ResolvePath(path), ec) > kMaxFileBytes && !ec) {
        why = "not a deviation card (too large)";
    } else if (const auto text = ReadWholeFile(path, &why)) {
        if (ParseCard(*text, card, &why) == kDeviationEntries) {
            DeviationTable = card;
            return true;
        }
    } else {
        why = FaultDescription(faults::PathFileAccess) + " (" + why + ")";
    }
    // Keep what was read before the damage, so the card is not lost.
    DeviationTable = card;
    errors_.ReportError("ReadDeviateDat", std::string(kFileName) + ": " + why);
    return false;
}

bool Deviation::SaveDeviateDat() {
    std::string why;
    if (SaveFileAtomic(FilePath(), CardText(DeviationTable), &why)) return true;
    errors_.ReportError("SaveDeviateDat", std::string(kFileName) + ": " + why);
    return false;
}

}  // namespace ombra
