// DdeLink: the link by which a data-source program feeds targets to the
// plotter. The source sends one command a line ("BEGINTRANS", "ENDTRANS",
// "POSITION,..."); the plotter answers through one text item, DataBuffer,
// which the source may read at any time ("READY" once the link is open,
// "GO" once a transfer has begun).
//
// The logic drains the link from the 100 ms tick, so nothing here blocks:
// the implementation listens and reads on a thread of its own and queues
// what arrives. Poll hands over one event a call, oldest first.
//
//   link.Listen(5533);
//   DdeEvent e;
//   while (link.Poll(e)) {
//       if (e.kind == DdeEvent::Kind::Opened) link.SetDataBuffer("READY");
//       else if (e.kind == DdeEvent::Kind::Execute) handle(e.command);
//   }
#pragma once
#include <cstdint>
#include <string>

namespace ombra {

struct DdeEvent {
    enum class Kind {
        Opened,   // a source connected
        Execute,  // a source sent `command` (one line, without its line end)
        Closed,   // a source went away; `sources` says how many remain
    };
    Kind kind = Kind::Execute;
    std::string command;
    int sources = 0;
};

class DdeLink {
public:
    virtual ~DdeLink() = default;
    // Starts listening for sources on `port` of this machine only; false
    // (with LastError) when the port cannot be had. Listening again on
    // another port closes the first.
    virtual bool Listen(uint16_t port) = 0;
    // Stops listening and drops every source.
    virtual void Stop() = 0;
    virtual bool Listening() const = 0;
    // The port in use (the one asked for, or the one the system chose for 0).
    virtual uint16_t Port() const = 0;
    virtual std::string LastError() const = 0;
    // The next event from the sources; false when none waits.
    virtual bool Poll(DdeEvent& event) = 0;
    // The text every source reads as DataBuffer; each connected source is
    // sent the new text too.
    virtual void SetDataBuffer(const std::string& text) = 0;
};

}  // namespace ombra
