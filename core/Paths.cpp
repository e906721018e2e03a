#include "core/Paths.h"

#include <dirent.h>
#include <fcntl.h>
#include <strings.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <vector>

namespace ombra {

std::string NativePath(std::string_view path) {
    std::string p(path);
    for (char& c : p)
        if (c == '\\') c = '/';
    // "c:/Program Files/..." -> "/Program Files/..."
    if (p.size() >= 2 && p[1] == ':' && std::isalpha(static_cast<unsigned char>(p[0]))) p.erase(0, 2);
    // Collapse doubled separators that joining "dir\" + "\name" gives.
    std::string out;
    for (char c : p) {
        if (c == '/' && !out.empty() && out.back() == '/') continue;
        out.push_back(c);
    }
    return out;
}

namespace {
bool Exists(const std::string& p) {
    struct stat st;
    return ::stat(p.c_str(), &st) == 0;
}

// Finds `name` in folder `dir` whatever its case; empty when absent.
std::string FindEntry(const std::string& dir, const std::string& name) {
    DIR* d = ::opendir(dir.empty() ? "." : dir.c_str());
    if (!d) return {};
    std::string found;
    while (dirent* e = ::readdir(d)) {
        if (::strcasecmp(e->d_name, name.c_str()) == 0) {
            found = e->d_name;
            if (found == name) break;  // an exact match wins over a case-folded one
        }
    }
    ::closedir(d);
    return found;
}
}  // namespace

std::string ResolvePath(std::string_view path) {
    std::string p = NativePath(path);
    if (p.empty() || Exists(p)) return p;
    std::vector<std::string> parts;
    size_t start = 0;
    bool absolute = p[0] == '/';
    while (start <= p.size()) {
        size_t e = p.find('/', start);
        if (e == std::string::npos) e = p.size();
        if (e > start) parts.push_back(p.substr(start, e - start));
        start = e + 1;
    }
    std::string cur = absolute ? "/" : "";
    bool trailing = p.back() == '/';
    bool stillExisting = true;
    for (size_t i = 0; i < parts.size(); ++i) {
        std::string next = parts[i];
        if (stillExisting && next != "." && next != "..") {
            std::string dir = cur.empty() ? "." : cur;
            if (!Exists(cur + next)) {
                std::string f = FindEntry(dir, next);
                if (!f.empty()) next = f;
                else stillExisting = false;
            }
        }
        cur += next;
        if (i + 1 < parts.size() || trailing) cur += "/";
    }
    return cur;
}

bool FileExists(std::string_view path) {
    struct stat st;
    std::string p = ResolvePath(path);
    return ::stat(p.c_str(), &st) == 0 && S_ISREG(st.st_mode);
}

bool FolderExists(std::string_view path) {
    struct stat st;
    std::string p = ResolvePath(path);
    return ::stat(p.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

bool MakeFolder(std::string_view path) {
    std::string p = ResolvePath(path);
    while (p.size() > 1 && p.back() == '/') p.pop_back();
    if (p.empty()) return false;
    if (FolderExists(p)) return true;
    size_t slash = p.find_last_of('/');
    if (slash != std::string::npos && slash > 0) {
        if (!MakeFolder(p.substr(0, slash))) return false;
        p = ResolvePath(p);  // the parent may have resolved to another case
    }
    if (::mkdir(p.c_str(), 0755) == 0 || errno == EEXIST) return FolderExists(p);
    return false;
}

std::optional<std::string> ReadWholeFile(std::string_view path, std::string* error) {
    std::string p = ResolvePath(path);
    int fd = ::open(p.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
        if (error) *error = std::strerror(errno);
        return std::nullopt;
    }
    struct stat st;
    if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
        if (error) *error = "not a regular file";
        ::close(fd);
        return std::nullopt;
    }
    std::string out;
    char buf[65536];
    while (true) {
        ssize_t n = ::read(fd, buf, sizeof buf);
        if (n < 0) {
            if (errno == EINTR) continue;
            if (error) *error = std::strerror(errno);
            ::close(fd);
            return std::nullopt;
        }
        if (n == 0) break;
        out.append(buf, size_t(n));
    }
    ::close(fd);
    return out;
}

std::string WithTrailingSlash(std::string_view path) {
    std::string p(path);
    if (p.empty() || (p.back() != '/' && p.back() != '\\')) p.push_back('\\');
    return p;
}

bool SaveFileAtomic(std::string_view path, std::string_view bytes, std::string* error) {
    std::string target = ResolvePath(path);
    size_t slash = target.find_last_of('/');
    std::string dir = slash == std::string::npos ? "." : (slash == 0 ? "/" : target.substr(0, slash));
    std::string name = slash == std::string::npos ? target : target.substr(slash + 1);
    std::string tmpl = (dir == "/" ? "" : dir) + "/." + name + ".tmp-XXXXXX";
    std::vector<char> t(tmpl.begin(), tmpl.end());
    t.push_back('\0');
    int fd = ::mkstemp(t.data());
    auto fail = [&](const char* what) {
        if (error) *error = std::string(what) + ": " + std::strerror(errno);
        return false;
    };
    if (fd < 0) return fail("cannot create a temporary file");
    std::string tmp(t.data());
    // Keep the permissions of the file being replaced (mkstemp makes 0600).
    struct stat st;
    if (::stat(target.c_str(), &st) == 0) ::fchmod(fd, st.st_mode & 07777);
    else ::fchmod(fd, 0644);
    size_t done = 0;
    while (done < bytes.size()) {
        ssize_t n = ::write(fd, bytes.data() + done, bytes.size() - done);
        if (n < 0) {
            if (errno == EINTR) continue;
            int e = errno;
            ::close(fd);
            ::unlink(tmp.c_str());
            errno = e;
            return fail("cannot write");
        }
        done += size_t(n);
    }
    if (::fsync(fd) != 0) {
        int e = errno;
        ::close(fd);
        ::unlink(tmp.c_str());
        errno = e;
        return fail("cannot flush");
    }
    ::close(fd);
    if (::rename(tmp.c_str(), target.c_str()) != 0) {
        int e = errno;
        ::unlink(tmp.c_str());
        errno = e;
        return fail("cannot replace the file");
    }
    int dfd = ::open(dir.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (dfd >= 0) {
        ::fsync(dfd);
        ::close(dfd);
    }
    return true;
}

}  // namespace ombra
