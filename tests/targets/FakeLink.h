// A data-source link the test plays the source of: events are queued by
// the test, DataBuffer and the listening port are recorded.
#pragma once
#include <deque>
#include <string>

#include "platform/api/DdeLink.h"

namespace ombra::test {

class FakeLink : public DdeLink {
public:
    bool Listen(uint16_t port) override {
        listening = false;  // as the real link: the old port goes first
        if (port == busyPort) return false;
        listening = true;
        port_ = port;
        return true;
    }
    void Stop() override { listening = false; }
    bool Listening() const override { return listening; }
    uint16_t Port() const override { return listening ? port_ : 0; }
    std::string LastError() const override { return "in use"; }
    bool Poll(DdeEvent& e) override {
        if (events.empty()) return false;
        e = events.front();
        events.pop_front();
        return true;
    }
    void SetDataBuffer(const std::string& text) override { dataBuffer = text; }

    void Open(int sources = 1) { events.push_back({DdeEvent::Kind::Opened, {}, sources}); }
    void Send(const std::string& command) { events.push_back({DdeEvent::Kind::Execute, command, 1}); }
    void Close(int left = 0) { events.push_back({DdeEvent::Kind::Closed, {}, left}); }

    std::deque<DdeEvent> events;
    std::string dataBuffer;
    bool listening = false;
    uint16_t busyPort = 0;

private:
    uint16_t port_ = 0;
};

}  // namespace ombra::test
