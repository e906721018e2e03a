// GPS export: waypoints and routes sent to a GPS set over the serial port,
// in the dialect the setting WPMode names.
//
//   WPMode  dialect        head           minutes   names
//   1       Furuno style   "PFEC,GPwpl,"  "00.00"   route-point names renamed: R12.WP13 -> 13WR12
//   2       Magellan style "PMGNWPL,"     "00.000"  upper case, at most 6 characters
//   other   plain NMEA     "GPWPL,"       "00.000"  numbers: route 2's first point is 0200
//
// One waypoint sentence, latitude and longitude as degrees and minutes of
// |Lat| / 3600 taken as a 32-bit float (a decimal comma never reaches the
// receiver), then the name field and the dialect's tail:
//   $PFEC,GPwpl,5030.00,N,00115.00,W,NAB,A,,,,,Tower,,@r
//   $PMGNWPL,5030.000,N,00115.000,W,0,M,NAB,TOWER,*5C
//   $GPWPL,5030.000,N,00115.000,W,0001       NAB TOWER
// A Magellan set answers each sentence with the last two characters of its
// checksum; the sender waits up to 5 seconds for it, pumping events, and a
// time-out fails the transfer. The other sets are not waited for.
//
// Routes go after their points: Furuno "PFEC,GPrtc," sentences closed by
// "PFEC,GPxfr,CTL,E"; the others in messages of at most six point names,
// (PointCount + 5) / 6 of them: "PMGNRTE,2,1,c,3,CROSS,START,WP2" and
// "GPRTE,2,1,c,02,0200,0201".
//
// Any failure ends the transfer with the one message of the communications
// problem; the points sent so far stay in the set; nothing is changed in
// the stores.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "navobjects/Route.h"
#include "navobjects/Waypoint.h"

namespace ombra {

class Dialogs;
class Clock;
class Events;
class NavHost;

// The serial side of a transfer: the GPS port of the instruments.
class GpsLink {
public:
    virtual ~GpsLink() = default;
    // Opens the GPS port as for input; false when it cannot be opened.
    virtual bool OpenPort() = 0;
    // Closes it; in WPMode 2 the Magellan hand-off is sent first.
    virtual void ClosePort() = 0;
    virtual void Write(const std::string& text) = 0;
    // The last short reply of the set, and its emptying.
    virtual std::string Reply() = 0;
    virtual void ClearReply() = 0;
    // "*" and two hexadecimal digits of the body, or "" with checksums off.
    virtual std::string ChecksumText(const std::string& body) = 0;
};

// The Furuno renaming of generated route-point names.
std::string FurunoName(const std::string& name);
// The body of one waypoint sentence (without "$", checksum and line end).
std::string WaypointSentenceBody(const Waypoint& wp, int16_t wpMode, int16_t prefixNumber);
// The bodies of a route's messages (not its points).
std::vector<std::string> RouteSentenceBodies(const Route& route, int16_t wpMode);

extern const char* const kGpsProblemMessage;

class GpsExport {
public:
    GpsExport(GpsLink& link, Dialogs& dialogs, Clock& clock, Events& events, NavHost& host,
              const std::string& productName)
        : link_(link), dialogs_(dialogs), clock_(clock), events_(events), host_(host), productName_(productName) {}

    // One sentence out; true on success (in mode 2, on the set's reply).
    bool ExportPointToGPS(const Waypoint& wp, int16_t prefixNumber, int16_t wpMode);
    // The points given (one, or every used slot), in order.
    bool ExportWaypointsToGPS(const std::vector<const Waypoint*>& points, int16_t wpMode);
    bool ExportRouteToGPS(const Route& route, int16_t wpMode);

private:
    bool Send(const std::string& body, int16_t wpMode);
    bool Open();
    void Problem();
    GpsLink& link_;
    Dialogs& dialogs_;
    Clock& clock_;
    Events& events_;
    NavHost& host_;
    const std::string& productName_;
};

}  // namespace ombra
