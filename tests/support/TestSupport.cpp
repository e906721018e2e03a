#include "tests/support/TestSupport.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace ombra::test {

TempDir::TempDir() {
    std::string tmpl = (std::filesystem::temp_directory_path() / "ombra-test-XXXXXX").string();
    std::vector<char> buf(tmpl.begin(), tmpl.end());
    buf.push_back('\0');
    if (!::mkdtemp(buf.data())) throw std::runtime_error("mkdtemp failed");
    path_ = buf.data();
}

TempDir::~TempDir() {
    std::error_code ec;
    std::filesystem::remove_all(path_, ec);
}

std::string ReadFile(const std::string& path) {
    std::ifstream f(path, std::ios::binary);
    std::ostringstream ss;
    ss << f.rdbuf();
    return ss.str();
}

void WriteFile(const std::string& path, const std::string& bytes) {
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream f(path, std::ios::binary | std::ios::trunc);
    f << bytes;
}

std::vector<std::string> SplitLines(const std::string& text) {
    std::vector<std::string> out;
    std::string cur;
    for (char c : text) {
        if (c == '\n') {
            if (!cur.empty() && cur.back() == '\r') cur.pop_back();
            out.push_back(cur);
            cur.clear();
        } else {
            cur.push_back(c);
        }
    }
    if (!cur.empty()) out.push_back(cur);
    return out;
}

RunResult Run(const std::vector<std::string>& argv, const std::string& input) {
    int in[2], out[2], err[2];
    if (::pipe(in) || ::pipe(out) || ::pipe(err)) throw std::runtime_error("pipe failed");
    pid_t pid = ::fork();
    if (pid == 0) {
        ::dup2(in[0], 0);
        ::dup2(out[1], 1);
        ::dup2(err[1], 2);
        for (int fd : {in[0], in[1], out[0], out[1], err[0], err[1]}) ::close(fd);
        std::vector<char*> args;
        for (auto& a : argv) args.push_back(const_cast<char*>(a.c_str()));
        args.push_back(nullptr);
        ::execvp(args[0], args.data());
        _exit(127);
    }
    ::close(in[0]);
    ::close(out[1]);
    ::close(err[1]);
    RunResult r;
    size_t written = 0;
    bool inOpen = true;
    if (input.empty()) { ::close(in[1]); inOpen = false; }
    bool outOpen = true, errOpen = true;
    char buf[65536];
    while (outOpen || errOpen) {
        pollfd fds[3];
        int n = 0;
        if (outOpen) fds[n++] = {out[0], POLLIN, 0};
        if (errOpen) fds[n++] = {err[0], POLLIN, 0};
        if (inOpen) fds[n++] = {in[1], POLLOUT, 0};
        if (::poll(fds, nfds_t(n), 60000) <= 0) break;
        for (int i = 0; i < n; ++i) {
            if (!fds[i].revents) continue;
            if (fds[i].fd == in[1]) {
                ssize_t w = ::write(in[1], input.data() + written, input.size() - written);
                if (w > 0) written += size_t(w);
                if (w < 0 || written >= input.size()) { ::close(in[1]); inOpen = false; }
                continue;
            }
            ssize_t k = ::read(fds[i].fd, buf, sizeof buf);
            if (k <= 0) {
                if (fds[i].fd == out[0]) outOpen = false; else errOpen = false;
                continue;
            }
            (fds[i].fd == out[0] ? r.out : r.err).append(buf, size_t(k));
        }
    }
    if (inOpen) ::close(in[1]);
    ::close(out[0]);
    ::close(err[0]);
    int status = 0;
    ::waitpid(pid, &status, 0);
    r.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return r;
}

std::string CliPath() {
    const char* e = std::getenv("OMBRA_CLI");
    if (e && *e) return e;
    return std::string(OMBRA_BINARY_DIR) + "/app/ombra-cli";
}

std::string SharedData(const std::string& rel) { return std::string(OMBRA_SHARED_DATA) + "/" + rel; }
std::string SourcePath(const std::string& rel) { return std::string(OMBRA_SOURCE_DIR) + "/" + rel; }

}  // namespace ombra::test
