#include "navobjects/Waypoint.h"

#include "core/Fault.h"
#include "core/Val.h"

namespace ombra {

const char* const kWaypointLabelModes[4] = {"No Label", "Name Only", "Position Only", "Name & Position"};

void RecordLine::Check() {
    // Called after each value: the first value fixes the record's line;
    // a line end before the last value, or none after it, is a broken line.
    --left_;
    if (line_ == 0) {
        line_ = r_.LastLine();
        if (track_) *track_ = line_;
    }
    if (left_ > 0 && r_.LastEndedLine())
        throw Fault(faults::InputPastEnd, "Line " + std::to_string(line_) + " has too few values");
    if (left_ == 0 && !r_.LastEndedLine())
        throw Fault(faults::InputPastEnd, "Line " + std::to_string(line_) + " has too many values");
}

std::string RecordLine::Str() {
    std::string s = r_.ReadString();
    Check();
    return s;
}
double RecordLine::Num() {
    double v = r_.ReadNumber();
    Check();
    return v;
}
int16_t RecordLine::Int16() {
    int16_t v = r_.ReadInt16();
    Check();
    return v;
}
bool RecordLine::Bool() {
    bool v = r_.ReadBool();
    Check();
    return v;
}

void WriteWaypointFields(TextRecordWriter& w, const Waypoint& wp) {
    w.Str(wp.Name)
        .Num(wp.Number)
        .Str(wp.Description)
        .Num(wp.Position.Wgs84.Lat)
        .Num(wp.Position.Wgs84.Long)
        .Num(wp.Icon)
        .Num(wp.LabelMode)
        .Num(wp.AlarmRange)
        .Num(wp.DatumFlag)
        .Num(wp.Reserved)
        .Str(wp.Attachment);
}

void ReadWaypointFields(RecordLine& line, Waypoint& wp) {
    wp.Name = line.Str();
    wp.Number = line.Int16();
    wp.Description = line.Str();
    wp.Position.Wgs84.Lat = line.Num();
    wp.Position.Wgs84.Long = line.Num();
    wp.Icon = line.Int16();
    wp.LabelMode = line.Int16();
    wp.AlarmRange = line.Float();
    wp.DatumFlag = line.Int16();
    wp.Reserved = line.Int16();
    wp.Attachment = line.Str();
}

std::string StoreVersionText(const std::string& programVersion) {
    if (ClassifyStoreHeader("Ver " + programVersion) == StoreForm::Current) return programVersion;
    return "2.19";
}

StoreForm ClassifyStoreHeader(const std::string& first) {
    size_t at = first.find("Ver");
    if (at == std::string::npos) return StoreForm::NoHeader;
    double version = Val(std::string_view(first).substr(at + 3));
    if (first.size() < 8 || !(version > 2.17)) return StoreForm::Old;
    if (version == 2.18) return StoreForm::V218;
    return StoreForm::Current;
}

}  // namespace ombra
