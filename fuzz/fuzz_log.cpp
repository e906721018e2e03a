// The day's log reader on any bytes. Whatever it keeps must write back and
// read again whole, to the same day, byte for byte once written.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "logbook/LogFile.h"

using namespace ombra;

static void Check(bool ok) {
    if (!ok) std::abort();
}

static bool HasQuote(const DayLog& d) {
    auto q = [](const std::string& s) { return s.find('"') != std::string::npos; };
    const LogHeader& h = d.Header;
    for (const std::string* s : {&h.CurrentPort, &h.DestinationPort, &h.NumCrew, &h.EngineHours, &h.ETD, &h.Fuel, &h.Water})
        if (q(*s)) return true;
    for (const std::string& s : h.PortTide)
        if (q(s)) return true;
    for (const LogEntry& e : d.Entries)
        for (int f = 0; f < LogEntry::kFieldCount; ++f)
            if (q(e.Field(f))) return true;
    for (const Forecast& f : d.Forecasts)
        for (const std::string* s : {&f.Time, &f.SeaArea, &f.WindNow, &f.WindLater, &f.Weather, &f.Visibility})
            if (q(*s)) return true;
    return false;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    DayLog day;
    ReadLogText(text, day);
    Check(day.Entries.size() <= size && day.Forecasts.size() <= size);
    // A value holding a quote cannot come back whole: the format has no escape.
    if (HasQuote(day)) return 0;
    const std::string written = LogFileText(day);
    DayLog back;
    Check(ReadLogText(written, back).whole);
    Check(back.Entries.size() == day.Entries.size() && back.Forecasts.size() == day.Forecasts.size());
    Check(LogFileText(back) == written);
    return 0;
}
