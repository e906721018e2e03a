// CommGpsLink: the instruments' GPS port as the GPS export sees it.
//
// The port is opened and closed by Comm (which sends the Magellan hand-on
// and hand-off itself in WPMode 2), sentences go out through SendToPort,
// and the Magellan set's "$PMGNCSM,5C*hh" replies are read from the port
// while the export waits, kept by Comm as its CommsReply ("5C*hh"), of
// which the export compares the two characters before the "*".
//
//   CommGpsLink link(instruments.comm);
//   GpsExport gps(link, dialogs, clock, events, host, productName);
#pragma once
#include "instruments/Comm.h"
#include "navobjects/GpsExport.h"

namespace ombra {

class CommGpsLink : public GpsLink {
public:
    explicit CommGpsLink(Comm& comm) : comm_(comm) {}
    bool OpenPort() override { return comm_.OpenGPSPort(); }
    void ClosePort() override { comm_.CloseGPSPort(); }
    void Write(const std::string& text) override { comm_.SendToPort(text); }
    std::string Reply() override;
    void ClearReply() override { comm_.CommsReply.clear(); }
    std::string ChecksumText(const std::string& body) override;

private:
    Comm& comm_;
};

}  // namespace ombra
