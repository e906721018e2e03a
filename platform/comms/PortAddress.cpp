#include "platform/comms/PortAddress.h"

#include <cstdlib>

#include "core/Paths.h"
#include "core/Val.h"

namespace ombra {

namespace {

bool StartsWith(std::string_view s, std::string_view p) { return s.substr(0, p.size()) == p; }

// "host:port" or ":port"; false when the port is not a number 1..65535.
bool SplitHostPort(std::string_view text, std::string& host, uint16_t& port) {
    size_t colon = text.rfind(':');
    if (colon == std::string_view::npos) return false;
    std::string_view p = text.substr(colon + 1);
    if (p.empty() || p.size() > 5) return false;
    for (char c : p)
        if (c < '0' || c > '9') return false;
    long n = std::strtol(std::string(p).c_str(), nullptr, 10);
    if (n < 1 || n > 65535) return false;
    host = std::string(text.substr(0, colon));
    if (host.size() >= 2 && host.front() == '[' && host.back() == ']') host = host.substr(1, host.size() - 2);
    port = uint16_t(n);
    return true;
}

}  // namespace

PortAddress ParsePortAddress(std::string_view raw, std::string_view baseFolder) {
    PortAddress s;
    std::string text = Trim(raw);
    std::string_view t = text;
    if (StartsWith(t, "tcp://")) {
        if (SplitHostPort(t.substr(6), s.host, s.port) && !s.host.empty()) s.kind = PortAddress::Kind::Tcp;
    } else if (StartsWith(t, "gpsd://")) {
        std::string_view rest = t.substr(7);
        if (!rest.empty() && rest.back() == '/') rest.remove_suffix(1);
        // A port of its own, or gpsd's: a bare name, or an IPv6 address in brackets.
        bool bracketed = rest.size() >= 2 && rest.front() == '[' && rest.back() == ']';
        if (!bracketed && rest.find(':') == std::string_view::npos) {
            s.host = std::string(rest);
            s.port = kGpsdPort;
        } else if (bracketed) {
            s.host = std::string(rest.substr(1, rest.size() - 2));
            s.port = kGpsdPort;
        } else if (!SplitHostPort(rest, s.host, s.port)) {
            s.host.clear();
        }
        if (!s.host.empty()) s.kind = PortAddress::Kind::Gpsd;
    } else if (StartsWith(t, "udp://")) {
        if (SplitHostPort(t.substr(6), s.host, s.port)) s.kind = PortAddress::Kind::Udp;
    } else if (StartsWith(t, "file://")) {
        std::string_view rest = t.substr(7);
        size_t q = rest.find('?');
        std::string_view path = rest.substr(0, q);
        if (q != std::string_view::npos) {
            std::string_view opts = rest.substr(q + 1);
            while (!opts.empty()) {
                size_t amp = opts.find('&');
                std::string_view kv = opts.substr(0, amp);
                if (StartsWith(kv, "rate=")) {
                    double r = Val(kv.substr(5));
                    if (r > 0.0 && r <= 1000.0) s.rate = r;
                } else if (StartsWith(kv, "loop=")) {
                    s.loop = Val(kv.substr(5)) != 0.0;
                }
                if (amp == std::string_view::npos) break;
                opts.remove_prefix(amp + 1);
            }
        }
        if (!path.empty()) {
            std::string p(path);
            bool absolute = p[0] == '/' || p[0] == '\\' || (p.size() > 1 && p[1] == ':');
            if (!absolute && !baseFolder.empty()) p = WithTrailingSlash(baseFolder) + p;
            s.path = ResolvePath(NativePath(p));
            s.kind = PortAddress::Kind::File;
        }
    } else if (StartsWith(t, "/")) {
        s.kind = PortAddress::Kind::Serial;
        s.path = text;
    }
    return s;
}

}  // namespace ombra
