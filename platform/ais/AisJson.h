// AIS messages as JSON, one object a line, in the form gpsd's AIVDM JSON
// takes when scaled: the same keys ("mmsi", "shipname", "to_bow"...), the
// same units (degrees, knots, metres) and the same number of decimals, so
// scripts written for gpsdecode read Ombra's output unchanged.
//
//   {"class":"AIS","device":"stdin","type":1,"repeat":0,"mmsi":371798000,
//    "scaled":true,"status":0,"status_text":"Under way using engine",
//    "turn":"fastleft","speed":12.3,"accuracy":true,"lon":-123.3953833,
//    "lat":48.3816333,"course":224.0,"heading":215,...}
//
// Numbers are printed with a point whatever the locale. Coded values are
// followed by their words ("status_text"). Values "not available" are printed
// as sent (heading 511, speed 102.3), as gpsd does, except the rate of turn,
// which is a text: "n/a", "fastleft", "fastright", or degrees a minute with
// two decimals, negative to port.
//
// A Class B vessel sends its static data in two messages; like gpsd, the
// stream reports them as one object when part B follows a part A of the same
// MMSI, and reports neither alone.
#pragma once
#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/ais/AisMessage.h"
#include "platform/ais/AisReader.h"

namespace ombra {

// Appends one message as a JSON object, without a line end.
void AppendAisJson(const AisMessage& m, std::string& out, std::string_view device = "stdin");
std::string AisJson(const AisMessage& m);

class AisJsonStream {
public:
    // Feeds one line of text. Lines that are not AIS sentences are skipped;
    // each completed message appends its JSON and a newline to `out`.
    // Returns the number of objects appended.
    int Feed(std::string_view line, std::string& out);

    struct Counts {
        size_t sentences = 0;  // lines that were AIS sentences
        size_t rejected = 0;   // of those, refused by framing, checksum or joining
        size_t messages = 0;   // whole messages
        size_t refused = 0;    // messages of an unknown type or wrong length
        size_t printed = 0;    // JSON objects written
    };
    const Counts& counts() const { return counts_; }
    // Why the last line produced nothing, for diagnostics; empty when it did.
    const std::string& LastProblem() const { return problem_; }

private:
    struct PartA {
        uint32_t mmsi = 0;
        std::string shipname;
    };
    AisReader reader_;
    AisPayload payload_;
    AisMessage message_;
    std::array<PartA, 8> partA_{};  // recent 24A names waiting for their 24B
    size_t nextA_ = 0;
    Counts counts_;
    std::string problem_;
};

}  // namespace ombra
