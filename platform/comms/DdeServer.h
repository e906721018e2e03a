// DdeServer: the data-source link on this system, a line protocol over a
// TCP socket bound to the loopback address (127.0.0.1) and nothing else,
// so only programs on this machine can feed targets. docs/dde-link.md
// describes the conversation.
//
// One thread accepts sources and reads them; the tick drains what they
// sent through Poll. A source's line is an Execute event, except "?",
// which the thread answers at once with the current DataBuffer text. Each
// SetDataBuffer is sent to every source as a line.
//
// Bounds, so that no source can harm the plotter:
//   - at most MaxSources at once: one more is told "BUSY" and closed;
//   - a line longer than MaxLine is thrown away up to its line end, and
//     the source is told "ERROR line too long";
//   - a source that does not read what it is sent, once MaxPendingOut
//     bytes wait for it, is dropped;
//   - at most MaxQueued events wait for the tick; beyond that commands
//     are dropped and counted (Dropped).
#pragma once
#include <atomic>
#include <cstdint>
#include <deque>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "platform/api/DdeLink.h"

namespace ombra {

class DdeServer : public DdeLink {
public:
    static constexpr size_t MaxLine = 4096;
    static constexpr size_t MaxSources = 4;
    static constexpr size_t MaxPendingOut = 16384;
    static constexpr size_t MaxQueued = 1024;

    DdeServer() = default;
    ~DdeServer() override;
    DdeServer(const DdeServer&) = delete;
    DdeServer& operator=(const DdeServer&) = delete;

    bool Listen(uint16_t port) override;
    void Stop() override;
    bool Listening() const override { return listenFd_ >= 0; }
    uint16_t Port() const override { return port_; }
    std::string LastError() const override;
    bool Poll(DdeEvent& event) override;
    void SetDataBuffer(const std::string& text) override;

    // How many sources are connected, and the counters of refusals.
    size_t Sources();
    struct Counters {
        uint64_t refused = 0;   // sources turned away, the limit reached
        uint64_t overlong = 0;  // lines thrown away for their length
        uint64_t slow = 0;      // sources dropped for not reading
        uint64_t dropped = 0;   // commands lost with the queue full
    };
    Counters Stats();

private:
    struct Source {
        int fd = -1;
        std::string in;
        bool discarding = false;  // inside an overlong line, up to its end
        bool slow = false;        // let too much wait unread: to be dropped
        std::string out;
    };
    void Run();
    void Accept();
    // Reads what a source sent; false when it is gone.
    bool ReadSource(Source& s);
    void Line(Source& s, std::string line);
    void Push(DdeEvent e);
    void Send(Source& s, const std::string& line);
    void Wake();

    int listenFd_ = -1;
    int wake_[2] = {-1, -1};
    uint16_t port_ = 0;
    std::atomic<bool> stop_{false};
    std::thread thread_;
    mutable std::mutex mu_;  // everything below
    std::vector<Source> sources_;
    std::deque<DdeEvent> events_;
    std::string dataBuffer_;
    std::string error_;
    Counters counters_;
};

}  // namespace ombra
