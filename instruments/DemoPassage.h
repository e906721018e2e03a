// The demonstration passage: an instrument log, as a recorder on the chart
// table would have taken it, of a motor vessel circling the island of the
// demonstration chart, with some AIS and radar traffic about her.
//
// The island stands near 50°00'N 12°00'W with its harbour on the south-east
// side. The vessel keeps 4 to 4.5 nautical miles off its centre, clockwise,
// at 16 knots, so one lap takes about an hour and a half and ends where it
// began: a replay that starts again at the end (file:// ports do) shows a
// vessel going round and round. Each second gives GGA, RMC, VTG and HDT;
// four AIS stations report as real ones would: three Class A ships (type 1
// position reports every 10 s, type 5 static and voyage data, two
// sentences, every 6 minutes) and a Class B yacht (type 18 every 30 s); her
// radar tracks two more targets (ARPA TTM every 3 s, own heading in OSD). All
// stay in open water inside 49°50'N..50°10'N, 12°20'W..11°40'W, at least
// 3 miles from the island's centre. Every sentence carries its checksum.
//
// The log is made, not recorded: the same text every time, so it can be
// checked in and regenerated (ombra-cli nmea-demo FILE).
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "core/Types.h"

namespace ombra {

// The whole log, CR LF line ends.
std::string DemoPassageLog();

// The passage itself: the log starts at 10:00:00 UTC on 23 November 2026,
// one fix a second for DemoPassageSeconds() seconds (one lap); the vessel's
// position `seconds` after the start, as the log's fixes give it.
int DemoPassageSeconds();
LatLong DemoPassagePosition(double seconds);

// Six-bit armoured AIS payload of `bits` (a string of '0' and '1'), and the
// fill bits added to reach a whole character.
std::string ArmourAis(const std::string& bits, int& fill);
// The "!AIVDM" sentences carrying one message, 60 characters a part.
std::vector<std::string> AivdmSentences(const std::string& bits, int sequence, char channel);

}  // namespace ombra
