// Comm: which port carries what, when ports open and close, and how one
// line read from a port becomes one sentence for the decoders.
//
// Four inputs: GPS (which also takes headings and AIS when the settings
// say so), gyro, AIS and ARPA; output goes out on the GPS port. Every read
// procedure runs once a tick and drains its port (at most MaxLinesPerRead
// lines), pumping events once per sentence; a position sentence ends the
// GPS read early so that the vessel moves on every fix.
//
// Framing on the GPS port, in order:
//   "$" and longer than 8 characters    NMEA: checksum test when Checksums
//                                       is on; then, with the vessel in a
//                                       mode, routed by the three letters
//                                       at positions 4-6 (talker ignored):
//                                       split once into fields as far as
//                                       the route's decoder reads, and
//                                       decoded (NmeaDecoder.h); with the
//                                       vessel off, only a Magellan
//                                       "$PMGNCSM" reply is kept
//   "!" and longer than 8 characters    AIS: "AIVDO" is our own transponder
//                                       (a position when NMEA_AIVDO);
//                                       "AIVDM" goes to the AIS decoder when
//                                       AIS shares this port
//   anything else                       dropped without a word
//
// Bad input: any bytes at all may arrive; a line is cut at ReadLength
// (255) characters, and a sentence failing any test is dropped silently.
// What a decoder finds wrong (a number too large for its field, VTG
// missing for five minutes) is shown by Report, under the decoder's name,
// on the sentence that found it. A port that cannot be opened gets one
// warning box naming the input, and the vessel mode stays as it was. The
// NMEA output opens the GPS port at most once a burst, and says that it
// cannot only the first time: again only once the port, its rate or the
// kind of failure has changed, or the port has opened in between.
//
// A connection closes the ports it opened, by the numbers they had when
// they opened: a setting changed meanwhile cannot strand a port.
//
// Ownership: Comm keeps references to everything it is built with; they
// must outlive it. It owns no port: the Comms implementation does, and
// Comm only opens and closes them by number.
//
//   comm.StartGPS();               // opens the ports, vessel -> Connecting
//   bool newFix = comm.ReadGPSPort();
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "instruments/CommSettings.h"
#include "instruments/InstrumentHooks.h"
#include "instruments/NmeaDecoder.h"

namespace ombra {

class Comms;
class Clock;
class Events;
class ErrorReporter;

// The vessel modes (what each means: Vessel.h).
constexpr int16_t kModeNone = 0;
constexpr int16_t kModeDR = 1;
constexpr int16_t kModeGPS = 2;
constexpr int16_t kModeConnecting = 3;
constexpr int16_t kModeGPSLost = 4;
constexpr int16_t kModeFileDR = 5;

// The vessel as the intake sees it: its mode, and the way to change it.
class VesselModeControl {
public:
    virtual ~VesselModeControl() = default;
    virtual int16_t VesselMode() const = 0;
    virtual void SetVesselMode(int16_t mode) = 0;
};

class Comm {
public:
    Comm(Comms& comms, CommSettings& settings, NmeaDecoder& decoder, VesselModeControl& vessel, InstrumentHooks& hooks,
         Clock& clock, Events& events, ErrorReporter& errors)
        : comms_(comms), settings_(settings), decoder_(decoder), vessel_(vessel), hooks_(hooks), clock_(clock),
          events_(events), errors_(errors) {}

    bool StartGPS();
    void StopGPS();
    // True from a StartGPS that opened the GPS port to the StopGPS after it:
    // the port settings are not to be changed meanwhile.
    bool Connected() const { return connection_.gps != 0; }

    bool OpenGPSPort();
    bool OpenAISPort();
    bool OpenARPAPort();
    bool OpenGyroPort();
    // Closes the GPS port, with the Magellan sign-off first when WPMode is 2.
    void CloseGPSPort();

    bool ReadGPSPort();
    void ReadGyroPort();
    void ReadAISPort();
    void ReadARPAPort();

    // One line as the GPS port delivers it (any bytes). True when it was a
    // position sentence; `outcome` (if given) tells what the routing made
    // of it.
    bool HandleGPSSentence(const std::string& s, DecodeOutcome* outcome = nullptr);

    // Tells the user what a decoder found: each fault under the decoder's
    // name, then the VTG warning.
    void Report(const DecodeResult& r);

    // Writes text on the GPS port, opening it first when asked to (as
    // OpenForOutput does).
    void SendToPort(const std::string& text, bool openIfClosed = false);
    // Makes sure the GPS port is open for output: one attempt to open it
    // when it is closed, its failure reported only when it differs from
    // the last one reported (see above). True when the port is open.
    bool OpenForOutput();

    // The Magellan link handshake (WPMode 2). HandshakeOn is true once the
    // GPS answered with the checksum of what was sent.
    bool MagellanHandshakeOn();
    void MagellanHandshakeOff();

    // The port tester (FrmCommTest): TestPort and TestBaudRate are set by
    // a dialog's "Test Port Settings"; the window opens, polls and closes.
    bool OpenTestPort();
    std::vector<std::string> ReadTestPort();
    void CloseTestPort();

    std::string CommsReply;
    int16_t TestPort = 0;
    bool TestPortOpen = false;
    int32_t TestBaudRate = 4800;

    CommSettings& Settings() { return settings_; }
    Comms& Ports() { return comms_; }

    static constexpr int16_t ReadLength = 255;
    // At most this many lines are taken from one port in one tick: far more
    // than any instrument sends (40,000 lines a second), but a flood on a
    // network port cannot hold the window's thread.
    static constexpr int MaxLinesPerRead = 4096;

private:
    // How opening a port ended.
    enum class OpenResult { Opened, NoPort, Failed };
    OpenResult TryOpen(int16_t port, int32_t baud);
    void ReportOpenFailure(OpenResult r, const char* name, CommDialog dialog, const char* checkName);
    bool OpenInput(int16_t port, int32_t baud, const char* name, CommDialog dialog, const char* checkName);
    bool ReadLine(int16_t port, std::string& line);
    int linesThisRead_ = 0;
    bool PassesChecksum(const std::string& s) const;
    // Routes a checked "$" sentence by the identifier at characters 4-6:
    // split once, as far as its decoder reads, then decoded. The gyro port
    // takes the heading sentences only, whatever the settings.
    DecodeOutcome RouteNmea(const std::string& s, bool gyroPort);
    // Waits up to `seconds` with events running, reading the GPS port for a
    // handshake reply; true when one came.
    bool WaitReply(double seconds);
    void SendMagellan(const std::string& command, int16_t port);
    void MagellanHandshakeOff(int16_t port);
    void SendToPortNumber(int16_t port, const std::string& text, bool openIfClosed = false);

    Comms& comms_;
    CommSettings& settings_;
    NmeaDecoder& decoder_;
    VesselModeControl& vessel_;
    InstrumentHooks& hooks_;
    Clock& clock_;
    Events& events_;
    ErrorReporter& errors_;
    // The ports a connection opened, by number (0: not opened).
    struct Connection {
        int16_t gps = 0, arpa = 0, gyro = 0, ais = 0;
    } connection_;
    // The last output-open failure reported, so that the next identical
    // one goes unsaid.
    struct OutputFailure {
        bool reported = false;
        int16_t port = 0;
        int32_t baud = 0;
        OpenResult result = OpenResult::Opened;
    } outputFailure_;
};

}  // namespace ombra
