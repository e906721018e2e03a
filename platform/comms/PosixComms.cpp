#include "platform/comms/PosixComms.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <thread>
#include <vector>

namespace ombra {

bool BaudToSpeed(int32_t baud, unsigned& speed) {
    switch (baud) {
        case 1200: speed = B1200; return true;
        case 2400: speed = B2400; return true;
        case 4800: speed = B4800; return true;
        case 9600: speed = B9600; return true;
        case 19200: speed = B19200; return true;
        case 38400: speed = B38400; return true;
        case 57600: speed = B57600; return true;
        case 115200: speed = B115200; return true;
        case 230400: speed = B230400; return true;
        default: return false;
    }
}

namespace {

using SteadyClock = std::chrono::steady_clock;

// A serial device opened raw, 8N1, at the rate; -1 with `why` on failure.
int OpenSerial(const std::string& path, int32_t baud, std::string& why) {
    int fd = ::open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) {
        why = path + ": " + std::strerror(errno);
        return -1;
    }
    if (!::isatty(fd)) {
        why = path + ": not a serial device";
        ::close(fd);
        return -1;
    }
    // Another program (or another port number naming the same device) has it.
    if (::flock(fd, LOCK_EX | LOCK_NB) != 0) {
        why = path + ": in use";
        ::close(fd);
        return -1;
    }
    termios tio{};
    if (::tcgetattr(fd, &tio) != 0) {
        why = path + ": " + std::strerror(errno);
        ::close(fd);
        return -1;
    }
    ::cfmakeraw(&tio);
    tio.c_cflag &= ~(CSIZE | PARENB | CSTOPB | CRTSCTS);
    tio.c_cflag |= CS8 | CLOCAL | CREAD;
    tio.c_iflag &= ~(IXON | IXOFF | IXANY);
    tio.c_cc[VMIN] = 1;
    tio.c_cc[VTIME] = 0;
    unsigned speed = B4800;
    BaudToSpeed(baud, speed);  // an unusual rate falls back to NMEA's 4800
    ::cfsetispeed(&tio, speed_t(speed));
    ::cfsetospeed(&tio, speed_t(speed));
    if (::tcsetattr(fd, TCSANOW, &tio) != 0) {
        why = path + ": " + std::strerror(errno);
        ::close(fd);
        return -1;
    }
    ::ioctl(fd, TIOCEXCL);
    ::tcflush(fd, TCIFLUSH);
    return fd;
}

bool SetNonBlocking(int fd) {
    int fl = ::fcntl(fd, F_GETFL);
    return fl >= 0 && ::fcntl(fd, F_SETFL, fl | O_NONBLOCK) == 0;
}

}  // namespace

// One open port: its device, its queue and its thread.
struct PortSource {
    PortAddress addr;
    int32_t baud = 4800;
    LineQueue queue;
    int fd = -1;          // the device, owned by the thread once it runs
    int wake[2] = {-1, -1};
    std::atomic<bool> stop{false};
    std::atomic<bool> connected{false};
    std::mutex outMu;
    std::string out;
    uint64_t outDropped = 0;
    std::string gpsdLine;       // gpsd: the line being read
    bool gpsdDiscarding = false;  // gpsd: inside a line too long to be NMEA
    std::thread thread;

    explicit PortSource(size_t capacity) : queue(capacity) {}
    ~PortSource() {
        if (fd >= 0) ::close(fd);
        for (int w : wake)
            if (w >= 0) ::close(w);
    }

    void Wake() {
        char c = 1;
        [[maybe_unused]] ssize_t n = ::write(wake[1], &c, 1);
    }
    void DrainWake() {
        char buf[64];
        while (::read(wake[0], buf, sizeof buf) > 0) {
        }
    }
    // Sleeps up to `ms`, returning early when woken; false once stopping.
    bool Nap(int ms) {
        pollfd p{wake[0], POLLIN, 0};
        ::poll(&p, 1, ms);
        DrainWake();
        return !stop.load();
    }
    bool HasOutput() {
        std::lock_guard<std::mutex> lock(outMu);
        return !out.empty();
    }

    void Lost() {
        if (fd >= 0) ::close(fd);
        fd = -1;
        connected = false;
        queue.DropPartial();
        gpsdLine.clear();
        gpsdDiscarding = false;
    }

    // (Re)establishes the device; false when it is not there yet.
    bool Reconnect() {
        std::string why;
        if (addr.kind == PortAddress::Kind::Serial) {
            fd = OpenSerial(addr.path, baud, why);
        } else if (addr.kind == PortAddress::Kind::Tcp) {
            fd = DialTcp();
        } else if (addr.kind == PortAddress::Kind::Gpsd) {
            fd = DialTcp();
            // Each new connection asks again: gpsd forgets a watch with its client.
            if (fd >= 0) {
                std::lock_guard<std::mutex> lock(outMu);
                out = kGpsdWatch;
            }
        }
        connected = fd >= 0;
        return fd >= 0;
    }

    int DialTcp() {
        addrinfo hints{};
        hints.ai_family = AF_UNSPEC;
        hints.ai_socktype = SOCK_STREAM;
        hints.ai_flags = AI_NUMERICSERV;
        addrinfo* res = nullptr;
        std::string port = std::to_string(addr.port);
        if (::getaddrinfo(addr.host.c_str(), port.c_str(), &hints, &res) != 0) return -1;
        int s = -1;
        for (addrinfo* a = res; a && s < 0 && !stop; a = a->ai_next) {
            s = ::socket(a->ai_family, a->ai_socktype | SOCK_CLOEXEC, a->ai_protocol);
            if (s < 0) continue;
            SetNonBlocking(s);
            if (::connect(s, a->ai_addr, a->ai_addrlen) != 0 && errno != EINPROGRESS) {
                ::close(s);
                s = -1;
                continue;
            }
            pollfd p[2] = {{s, POLLOUT, 0}, {wake[0], POLLIN, 0}};
            int err = ETIMEDOUT;
            if (::poll(p, 2, 2000) > 0 && (p[0].revents & (POLLOUT | POLLERR | POLLHUP))) {
                socklen_t len = sizeof err;
                ::getsockopt(s, SOL_SOCKET, SO_ERROR, &err, &len);
            }
            if (err != 0) {
                ::close(s);
                s = -1;
            }
        }
        ::freeaddrinfo(res);
        return s;
    }

    // gpsd answers in JSON lines (its version, devices, the watch) and then
    // passes on the receivers' sentences; only the sentences reach the queue.
    static constexpr const char* kGpsdWatch = "?WATCH={\"enable\":true,\"nmea\":true}\n";
    void FeedGpsd(const char* bytes, size_t n) {
        for (size_t i = 0; i < n; ++i) {
            char c = bytes[i];
            if (c == '\n') {
                if (!gpsdDiscarding && !gpsdLine.empty() && (gpsdLine[0] == '$' || gpsdLine[0] == '!')) {
                    gpsdLine.push_back('\n');
                    queue.Append(gpsdLine);
                }
                gpsdLine.clear();
                gpsdDiscarding = false;
            } else if (!gpsdDiscarding) {
                gpsdLine.push_back(c);
                // A JSON report may be long; a sentence never is. Neither is kept.
                if (gpsdLine.size() > LineQueue::MaxLine) {
                    gpsdLine.clear();
                    gpsdDiscarding = true;
                }
            }
        }
    }

    void WritePending() {
        std::lock_guard<std::mutex> lock(outMu);
        if (out.empty()) return;
        if (fd < 0 || addr.kind == PortAddress::Kind::Udp || addr.kind == PortAddress::Kind::File) {
            out.clear();  // nowhere to send it: output is not kept for a later peer
            return;
        }
        bool socket = addr.kind == PortAddress::Kind::Tcp || addr.kind == PortAddress::Kind::Gpsd;
        ssize_t n = socket ? ::send(fd, out.data(), out.size(), MSG_NOSIGNAL) : ::write(fd, out.data(), out.size());
        if (n > 0) out.erase(0, size_t(n));
    }

    void RunDevice() {
        char buf[4096];
        while (!stop) {
            if (fd < 0 && !Reconnect()) {
                WritePending();  // drops what cannot go anywhere
                if (!Nap(1000)) break;
                continue;
            }
            bool udp = addr.kind == PortAddress::Kind::Udp;
            pollfd p[2] = {{fd, short(POLLIN | (HasOutput() && !udp ? POLLOUT : 0)), 0}, {wake[0], POLLIN, 0}};
            int r = ::poll(p, 2, 1000);
            if (r < 0) {
                if (errno == EINTR) continue;
                break;
            }
            if (p[1].revents) DrainWake();
            if (stop) break;
            if (udp) {
                if (p[0].revents & POLLIN) {
                    ssize_t n = ::recv(fd, buf, sizeof buf, 0);
                    if (n > 0) {
                        queue.Append(std::string_view(buf, size_t(n)));
                        queue.EndPartial();  // a datagram ends its last line
                    }
                }
                WritePending();
                continue;
            }
            if (p[0].revents & POLLIN) {
                ssize_t n = ::read(fd, buf, sizeof buf);
                if (n > 0 && addr.kind == PortAddress::Kind::Gpsd) {
                    FeedGpsd(buf, size_t(n));
                } else if (n > 0) {
                    queue.Append(std::string_view(buf, size_t(n)));
                } else if (n == 0 || (errno != EAGAIN && errno != EINTR)) {
                    Lost();
                    continue;
                }
            } else if (p[0].revents & (POLLHUP | POLLERR | POLLNVAL)) {
                Lost();
                if (!Nap(200)) break;
                continue;
            }
            if (p[0].revents & POLLOUT) WritePending();
        }
        // Let the last words (the Magellan sign-off) leave before closing.
        auto until = SteadyClock::now() + std::chrono::milliseconds(500);
        while (fd >= 0 && HasOutput() && SteadyClock::now() < until) {
            pollfd p{fd, POLLOUT, 0};
            if (::poll(&p, 1, 50) > 0 && (p.revents & POLLOUT)) WritePending();
            if (p.revents & (POLLHUP | POLLERR)) break;
        }
        if (fd >= 0 && addr.kind == PortAddress::Kind::Serial) ::tcdrain(fd);
    }

    // Replays a log: lines as they stand, waiting between position fixes.
    void RunFile() {
        const auto interval = std::chrono::duration<double>(1.0 / addr.rate);
        std::string pace;  // the identifier that marks each new fix
        auto last = SteadyClock::now();
        bool first = true;
        int sinceWait = 0;
        auto waitTurn = [&]() -> bool {
            auto due = last + std::chrono::duration_cast<SteadyClock::duration>(interval);
            while (!stop) {
                auto now = SteadyClock::now();
                if (now >= due) break;
                int ms = int(std::chrono::duration_cast<std::chrono::milliseconds>(due - now).count()) + 1;
                Nap(std::min(ms, 1000));
            }
            last = SteadyClock::now();
            sinceWait = 0;
            return !stop;
        };
        while (!stop) {
            FILE* f = std::fopen(addr.path.c_str(), "rb");
            if (!f) {
                connected = false;
                if (!Nap(1000)) return;
                continue;
            }
            connected = true;
            std::string line;
            char buf[4096];
            bool overlong = false;
            auto emit = [&]() -> bool {
                if (overlong || line.empty()) return true;
                // A fix starts with the first position identifier the log uses.
                if (line.size() > 6 && (line[0] == '$')) {
                    std::string id = line.substr(3, 3);
                    if (pace.empty() && (id == "GGA" || id == "RMC" || id == "GLL")) pace = id;
                    if (!pace.empty() && id == pace) {
                        if (!first && !waitTurn()) return false;
                        first = false;
                        last = SteadyClock::now();
                    }
                }
                // A log with no position sentence still goes at a walking pace.
                if (++sinceWait >= 200 && !waitTurn()) return false;
                queue.Append(line);
                if (line.back() != '\n') queue.EndPartial();
                return true;
            };
            size_t n;
            bool go = true;
            while (go && (n = std::fread(buf, 1, sizeof buf, f)) > 0) {
                for (size_t i = 0; i < n && go; ++i) {
                    if (!overlong) line.push_back(buf[i]);
                    if (line.size() > LineQueue::MaxLine) {
                        line.clear();
                        overlong = true;
                    }
                    if (buf[i] == '\n') {
                        go = emit();
                        line.clear();
                        overlong = false;
                    }
                }
            }
            if (go) emit();
            std::fclose(f);
            if (!go || !addr.loop) break;
            if (!waitTurn()) return;
            first = true;
        }
        while (!stop) Nap(1000);
    }

    void Run() {
        if (addr.kind == PortAddress::Kind::File)
            RunFile();
        else
            RunDevice();
    }
};

PosixComms::PosixComms(PortDirectory& directory, size_t queueCapacity) : dir_(directory), capacity_(queueCapacity) {}

PosixComms::~PosixComms() {
    std::vector<int16_t> ports;
    {
        std::lock_guard<std::mutex> lock(mu_);
        for (auto& kv : open_) ports.push_back(kv.first);
    }
    for (int16_t p : ports) CloseComPort(p);
}

std::shared_ptr<PortSource> PosixComms::Find(int16_t port) {
    std::lock_guard<std::mutex> lock(mu_);
    auto it = open_.find(port);
    return it == open_.end() ? nullptr : it->second;
}

namespace {

// A UDP listener bound to the address's port; -1 with `why` on failure.
int BindUdp(const PortAddress& addr, std::string& why) {
    addrinfo hints{};
    hints.ai_family = AF_INET;
    hints.ai_socktype = SOCK_DGRAM;
    hints.ai_flags = AI_NUMERICSERV | AI_PASSIVE;
    addrinfo* res = nullptr;
    const char* host = addr.host.empty() ? nullptr : addr.host.c_str();
    if (::getaddrinfo(host, std::to_string(addr.port).c_str(), &hints, &res) != 0 || !res) {
        why = addr.host + ": unknown address";
        return -1;
    }
    int s = ::socket(res->ai_family, res->ai_socktype | SOCK_CLOEXEC, res->ai_protocol);
    int one = 1;
    if (s >= 0) {
        ::setsockopt(s, SOL_SOCKET, SO_REUSEADDR, &one, sizeof one);
        ::setsockopt(s, SOL_SOCKET, SO_BROADCAST, &one, sizeof one);
    }
    if (s < 0 || ::bind(s, res->ai_addr, res->ai_addrlen) != 0) {
        why = "udp port " + std::to_string(addr.port) + ": " + std::strerror(errno);
        if (s >= 0) ::close(s);
        ::freeaddrinfo(res);
        return -1;
    }
    ::freeaddrinfo(res);
    SetNonBlocking(s);
    return s;
}

}  // namespace

bool HostNameCanResolve(const std::string& host) {
    unsigned char buf[sizeof(in6_addr)];
    if (::inet_pton(AF_INET, host.c_str(), buf) == 1 || ::inet_pton(AF_INET6, host.c_str(), buf) == 1) return true;
    std::string name = host;
    if (!name.empty() && name.back() == '.') name.pop_back();  // written from the root
    if (name.empty() || name.size() > 253) return false;
    std::string label;
    for (size_t start = 0; start <= name.size();) {
        size_t dot = std::min(name.find('.', start), name.size());
        label = name.substr(start, dot - start);
        if (label.empty() || label.size() > 63 || label.front() == '-' || label.back() == '-') return false;
        for (char c : label)
            if (!std::isalnum(static_cast<unsigned char>(c)) && c != '-') return false;
        start = dot + 1;
    }
    // The reserved top-level name that never resolves.
    for (char& c : label) c = char(std::tolower(static_cast<unsigned char>(c)));
    return label != "invalid";
}

bool PosixComms::PrepareSource(PortSource& src, int16_t port, const std::string& device) {
    const PortAddress& addr = src.addr;
    switch (addr.kind) {
        case PortAddress::Kind::None:
            lastError_ = "port " + std::to_string(port) + " has no device (\"" + device + "\")";
            return false;
        case PortAddress::Kind::Serial:
            src.fd = OpenSerial(addr.path, src.baud, lastError_);
            src.connected = src.fd >= 0;
            return src.fd >= 0;
        case PortAddress::Kind::Tcp:
        case PortAddress::Kind::Gpsd:
            // Looking the name up may take seconds: the port's own thread
            // does it, on each dial. Here only a name that can never resolve
            // is refused.
            if (!HostNameCanResolve(addr.host)) {
                lastError_ = addr.host + ": unknown host";
                return false;
            }
            return true;
        case PortAddress::Kind::Udp:
            src.fd = BindUdp(addr, lastError_);
            src.connected = src.fd >= 0;
            return src.fd >= 0;
        case PortAddress::Kind::File:
            if (::access(addr.path.c_str(), R_OK) != 0) {
                lastError_ = addr.path + ": " + std::strerror(errno);
                return false;
            }
            return true;
    }
    return false;
}

int16_t PosixComms::OpenComPort(int16_t port, int32_t baudRate) {
    lastError_.clear();
    if (port < 1) {
        lastError_ = "no port";
        return 0;
    }
    if (Find(port)) {
        lastError_ = "port " + std::to_string(port) + " is already open";
        return 0;
    }
    std::string device = dir_.DeviceOf(port);
    auto src = std::make_shared<PortSource>(capacity_);
    src->addr = ParsePortAddress(device, dir_.BaseFolder());
    src->baud = baudRate;
    if (!PrepareSource(*src, port, device)) return 0;
    if (::pipe2(src->wake, O_CLOEXEC | O_NONBLOCK) != 0) {
        lastError_ = std::strerror(errno);
        return 0;
    }
    PortSource* raw = src.get();
    src->thread = std::thread([raw] { raw->Run(); });
    std::lock_guard<std::mutex> lock(mu_);
    open_[port] = std::move(src);
    return 1;
}

void PosixComms::CloseComPort(int16_t port) {
    std::shared_ptr<PortSource> src;
    {
        std::lock_guard<std::mutex> lock(mu_);
        auto it = open_.find(port);
        if (it == open_.end()) return;
        src = it->second;
        open_.erase(it);
    }
    src->stop = true;
    src->Wake();
    if (src->thread.joinable()) src->thread.join();
}

int16_t PosixComms::ComPortStatus(int16_t port) { return Find(port) ? 1 : 0; }

int16_t PosixComms::ComPortRead(int16_t port, char* buffer, int16_t length) {
    auto src = Find(port);
    if (!src || !buffer || length <= 0) return 0;
    std::string line;
    if (!src->queue.Pop(line)) return 0;
    size_t n = std::min(line.size(), size_t(length));
    std::memcpy(buffer, line.data(), n);
    return int16_t(n);
}

void PosixComms::ComPortWrite(int16_t port, const char* buffer, int16_t count) {
    auto src = Find(port);
    if (!src || !buffer || count <= 0) return;
    if (src->addr.kind == PortAddress::Kind::Gpsd) return;  // gpsd takes commands, not sentences
    {
        std::lock_guard<std::mutex> lock(src->outMu);
        if (src->out.size() + size_t(count) > MaxPendingWrite) {
            src->outDropped += uint64_t(count);
            return;
        }
        src->out.append(buffer, size_t(count));
    }
    src->Wake();
}

LineStats PosixComms::Stats(int16_t port) {
    auto src = Find(port);
    return src ? src->queue.Stats() : LineStats{};
}

bool PosixComms::Connected(int16_t port) {
    auto src = Find(port);
    return src && src->connected;
}

uint64_t PosixComms::WriteOverflow(int16_t port) {
    auto src = Find(port);
    if (!src) return 0;
    std::lock_guard<std::mutex> lock(src->outMu);
    return src->outDropped;
}

}  // namespace ombra
