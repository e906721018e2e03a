#include "platform/comms/DdeServer.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace ombra {

DdeServer::~DdeServer() { Stop(); }

bool DdeServer::Listen(uint16_t port) {
    Stop();
    int s = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (s < 0) {
        std::lock_guard<std::mutex> lock(mu_);
        error_ = std::strerror(errno);
        return false;
    }
    int one = 1;
    ::setsockopt(s, SOL_SOCKET, SO_REUSEADDR, &one, sizeof one);
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_port = htons(port);
    a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);  // this machine only, never any other address
    if (::bind(s, reinterpret_cast<sockaddr*>(&a), sizeof a) != 0 || ::listen(s, 8) != 0 ||
        ::pipe2(wake_, O_CLOEXEC | O_NONBLOCK) != 0) {
        std::lock_guard<std::mutex> lock(mu_);
        error_ = "127.0.0.1:" + std::to_string(port) + ": " + std::strerror(errno);
        ::close(s);
        return false;
    }
    socklen_t len = sizeof a;
    ::getsockname(s, reinterpret_cast<sockaddr*>(&a), &len);
    port_ = ntohs(a.sin_port);
    listenFd_ = s;
    stop_ = false;
    {
        std::lock_guard<std::mutex> lock(mu_);
        error_.clear();
    }
    thread_ = std::thread([this] { Run(); });
    return true;
}

void DdeServer::Stop() {
    if (listenFd_ < 0) return;
    stop_ = true;
    Wake();
    if (thread_.joinable()) thread_.join();
    std::lock_guard<std::mutex> lock(mu_);
    for (Source& s : sources_) ::close(s.fd);
    sources_.clear();
    events_.clear();  // nothing of these sources reaches a later session
    ::close(listenFd_);
    listenFd_ = -1;
    for (int& w : wake_) {
        ::close(w);
        w = -1;
    }
    port_ = 0;
}

std::string DdeServer::LastError() const {
    std::lock_guard<std::mutex> lock(mu_);
    return error_;
}

bool DdeServer::Poll(DdeEvent& event) {
    std::lock_guard<std::mutex> lock(mu_);
    if (events_.empty()) return false;
    event = std::move(events_.front());
    events_.pop_front();
    return true;
}

void DdeServer::SetDataBuffer(const std::string& text) {
    {
        std::lock_guard<std::mutex> lock(mu_);
        dataBuffer_ = text;
        for (Source& s : sources_) Send(s, text);
    }
    Wake();
}

size_t DdeServer::Sources() {
    std::lock_guard<std::mutex> lock(mu_);
    return sources_.size();
}

DdeServer::Counters DdeServer::Stats() {
    std::lock_guard<std::mutex> lock(mu_);
    return counters_;
}

void DdeServer::Wake() {
    if (wake_[1] < 0) return;
    char c = 1;
    [[maybe_unused]] ssize_t n = ::write(wake_[1], &c, 1);
}

// Under mu_. A source that lets too much wait unread is marked; its next
// turn in Run drops it.
void DdeServer::Send(Source& s, const std::string& line) {
    if (s.fd < 0 || s.slow) return;
    if (s.out.size() + line.size() + 1 > MaxPendingOut) {
        s.slow = true;
        s.out.clear();
        Wake();
        return;
    }
    s.out += line;
    s.out += '\n';
}

void DdeServer::Push(DdeEvent e) {
    if (events_.size() >= MaxQueued) {
        ++counters_.dropped;
        return;
    }
    events_.push_back(std::move(e));
}

void DdeServer::Accept() {
    for (;;) {
        int fd = ::accept4(listenFd_, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
        if (fd < 0) return;
        std::lock_guard<std::mutex> lock(mu_);
        if (sources_.size() >= MaxSources) {
            static const char busy[] = "BUSY\n";
            [[maybe_unused]] ssize_t n = ::send(fd, busy, sizeof busy - 1, MSG_NOSIGNAL);
            ::close(fd);
            ++counters_.refused;
            continue;
        }
        // A small send buffer, so that a source that never reads is found
        // out after kilobytes, not megabytes.
        int size = int(MaxPendingOut);
        ::setsockopt(fd, SOL_SOCKET, SO_SNDBUF, &size, sizeof size);
        sources_.push_back({fd, {}, false, false, {}});
        Push({DdeEvent::Kind::Opened, {}, int(sources_.size())});
    }
}

// Under mu_.
void DdeServer::Line(Source& s, std::string line) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (line.empty()) return;
    if (line == "?") {
        Send(s, dataBuffer_);
        return;
    }
    Push({DdeEvent::Kind::Execute, std::move(line), int(sources_.size())});
}

// Under mu_.
bool DdeServer::ReadSource(Source& s) {
    char buf[4096];
    for (;;) {
        ssize_t n = ::recv(s.fd, buf, sizeof buf, 0);
        if (n == 0) return false;
        if (n < 0) return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR;
        for (ssize_t i = 0; i < n; ++i) {
            char c = buf[i];
            if (c == '\n') {
                if (!s.discarding) Line(s, std::move(s.in));
                s.in.clear();
                s.discarding = false;
                continue;
            }
            if (s.discarding) continue;
            s.in.push_back(c);
            if (s.in.size() > MaxLine) {
                s.in.clear();
                s.discarding = true;
                ++counters_.overlong;
                Send(s, "ERROR line too long");
            }
        }
        if (s.slow) return false;
    }
}

void DdeServer::Run() {
    std::vector<pollfd> fds;
    while (!stop_) {
        fds.clear();
        fds.push_back({wake_[0], POLLIN, 0});
        fds.push_back({listenFd_, POLLIN, 0});
        {
            std::lock_guard<std::mutex> lock(mu_);
            for (const Source& s : sources_) fds.push_back({s.fd, short(POLLIN | (s.out.empty() ? 0 : POLLOUT)), 0});
        }
        if (::poll(fds.data(), fds.size(), 1000) < 0 && errno != EINTR) break;
        if (stop_) break;
        if (fds[0].revents) {
            char buf[64];
            while (::read(wake_[0], buf, sizeof buf) > 0) {
            }
        }
        if (fds[1].revents & POLLIN) Accept();
        std::lock_guard<std::mutex> lock(mu_);
        // Sources joined by Accept are not in fds yet: they are served next turn.
        for (size_t i = 0; i + 2 < fds.size() && i < sources_.size(); ++i) {
            Source& s = sources_[i];
            const short re = fds[i + 2].revents;
            bool alive = !s.slow;
            if (alive && (re & (POLLIN | POLLHUP | POLLERR))) alive = ReadSource(s);
            if (alive && !s.out.empty()) {
                ssize_t n = ::send(s.fd, s.out.data(), s.out.size(), MSG_NOSIGNAL);
                if (n > 0) s.out.erase(0, size_t(n));
                else if (n < 0 && errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR) alive = false;
            }
            if (!alive) {
                if (s.slow) ++counters_.slow;
                ::close(s.fd);
                s.fd = -1;
            }
        }
        size_t before = sources_.size();
        std::erase_if(sources_, [](const Source& s) { return s.fd < 0; });
        for (size_t k = sources_.size(); k < before; ++k)
            Push({DdeEvent::Kind::Closed, {}, int(sources_.size())});
    }
}

}  // namespace ombra
