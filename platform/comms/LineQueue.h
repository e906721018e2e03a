// A bounded queue of whole lines between a port's reader thread and the
// tick that drains it.
//
// Bytes arrive in whatever pieces the device gives; Append cuts them into
// lines at LF (the CR before it, and the LF, stay in the line, as the
// decoders expect them). The queue holds at most `capacity` lines: when the
// tick falls behind a flood, the oldest line is dropped and counted, so
// memory stays bounded and the newest position is never the one lost. A
// run of more than MaxLine bytes without an LF is not a sentence; it is
// dropped whole and counted, up to the next LF.
//
//   LineQueue q(4);
//   q.Append("$GPGGA,1\r\n$GPV");   // one line queued, "$GPV" waits for its end
//   q.Pop(line);                    // line == "$GPGGA,1\r\n"
#pragma once
#include <cstddef>
#include <cstdint>
#include <deque>
#include <mutex>
#include <string>
#include <string_view>

namespace ombra {

struct LineStats {
    uint64_t lines = 0;      // lines queued since the port opened
    uint64_t overflow = 0;   // lines dropped because the queue was full
    uint64_t overlong = 0;   // runs longer than MaxLine dropped
};

class LineQueue {
public:
    static constexpr size_t MaxLine = 255;
    explicit LineQueue(size_t capacity = 1024) : capacity_(capacity ? capacity : 1) {}

    // Reader side: bytes as they come.
    void Append(std::string_view bytes);
    // Ends a partial line without its LF (a datagram or a file's last line).
    void EndPartial();
    // Forgets a partial line (the source went away mid-sentence: a torn
    // sentence must not reach a decoder that runs without checksums).
    void DropPartial();
    // Tick side: the oldest whole line; false when none waits.
    bool Pop(std::string& line);
    void Clear();
    size_t Size() const;
    LineStats Stats() const;

private:
    void PushLocked(std::string&& line);
    mutable std::mutex mu_;
    std::deque<std::string> lines_;
    std::string partial_;
    bool discarding_ = false;  // inside an overlong run, until its LF
    size_t capacity_;
    LineStats stats_;
};

}  // namespace ombra
