#include "plotter/CommGpsLink.h"

#include "instruments/NmeaText.h"
#include "platform/api/Comms.h"

namespace ombra {

std::string CommGpsLink::Reply() {
    // Whatever the set has said since: its lines go through the intake.
    char buf[Comm::ReadLength + 1];
    int16_t n;
    while ((n = comm_.Ports().ComPortRead(comm_.Settings().GPSPort, buf, Comm::ReadLength)) > 0)
        comm_.HandleGPSSentence(std::string(buf, size_t(n)));
    std::string reply = comm_.CommsReply;
    size_t star = reply.rfind('*');
    if (star != std::string::npos) reply.erase(star);
    return reply;
}

std::string CommGpsLink::ChecksumText(const std::string& body) {
    return comm_.Settings().Checksums ? "*" + NmeaChecksum(body) : std::string();
}

}  // namespace ombra
