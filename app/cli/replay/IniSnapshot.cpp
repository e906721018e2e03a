#include "app/cli/replay/IniSnapshot.h"

#include <fstream>
#include <sstream>
#include <sys/stat.h>

namespace ombra {

namespace {

std::string_view TrimBlanks(std::string_view s) {
    size_t a = 0, b = s.size();
    while (a < b && (s[a] == ' ' || s[a] == '\t' || s[a] == '\r')) ++a;
    while (b > a && (s[b - 1] == ' ' || s[b - 1] == '\t' || s[b - 1] == '\r')) --b;
    return s.substr(a, b - a);
}

int HexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

// "%hh" decoded in a section or key name.
std::string Unpercent(std::string_view s) {
    std::string out;
    for (size_t i = 0; i < s.size(); ++i) {
        if (s[i] == '%' && i + 2 < s.size() && HexDigit(s[i + 1]) >= 0 && HexDigit(s[i + 2]) >= 0) {
            out.push_back(char(HexDigit(s[i + 1]) * 16 + HexDigit(s[i + 2])));
            i += 2;
        } else {
            out.push_back(s[i]);
        }
    }
    return out;
}

}  // namespace

std::string IniValue(std::string_view raw) {
    std::string out;
    bool quoted = false, list = false;
    // Blanks outside quotes count only between other characters.
    std::string pendingBlanks;
    size_t i = 0;
    raw = TrimBlanks(raw);
    while (i < raw.size()) {
        char c = raw[i];
        if (!quoted && c == ';') break;
        if (!quoted && c == ',') {
            list = true;
            pendingBlanks.clear();
            ++i;
            continue;
        }
        if (!quoted && (c == ' ' || c == '\t')) {
            pendingBlanks.push_back(c);
            ++i;
            continue;
        }
        if (!pendingBlanks.empty()) {
            if (!out.empty()) out += pendingBlanks;
            pendingBlanks.clear();
        }
        if (c == '"') {
            quoted = !quoted;
            ++i;
            continue;
        }
        if (c == '\\' && i + 1 < raw.size()) {
            char e = raw[i + 1];
            i += 2;
            switch (e) {
                case '\\': out.push_back('\\'); break;
                case '"': out.push_back('"'); break;
                case '\'': out.push_back('\''); break;
                case '?': out.push_back('?'); break;
                case 'a': out.push_back('\a'); break;
                case 'b': out.push_back('\b'); break;
                case 'f': out.push_back('\f'); break;
                case 'n': out.push_back('\n'); break;
                case 'r': out.push_back('\r'); break;
                case 't': out.push_back('\t'); break;
                case 'v': out.push_back('\v'); break;
                case 'x': {
                    int v = 0, n = 0;
                    while (i < raw.size() && n < 4 && HexDigit(raw[i]) >= 0) v = v * 16 + HexDigit(raw[i++]), ++n;
                    if (v < 256) out.push_back(char(v));
                    break;
                }
                case '0': case '1': case '2': case '3': case '4': case '5': case '6': case '7': {
                    int v = e - '0', n = 1;
                    while (i < raw.size() && n < 3 && raw[i] >= '0' && raw[i] <= '7') v = v * 8 + (raw[i++] - '0'), ++n;
                    if (v < 256) out.push_back(char(v));
                    break;
                }
                default: break;  // an unknown escape is dropped whole
            }
            continue;
        }
        if (c == '\\') {  // a lone backslash at the very end
            ++i;
            continue;
        }
        out.push_back(c);
        ++i;
    }
    if (list) return {};
    if (out.rfind("@@", 0) == 0) return out.substr(1);
    if (!out.empty() && out[0] == '@') {
        for (std::string_view form : {"@String(", "@ByteArray("}) {
            if (out.rfind(form, 0) == 0 && out.back() == ')') return out.substr(form.size(), out.size() - form.size() - 1);
        }
        return {};  // a variant of another type holds no text
    }
    return out;
}

void IniSnapshot::LoadText(std::string_view text) {
    std::string section = "General";
    size_t at = 0;
    std::string joined;
    while (at < text.size()) {
        size_t end = text.find('\n', at);
        if (end == std::string_view::npos) end = text.size();
        std::string_view piece = TrimBlanks(text.substr(at, end - at));
        at = end + 1;
        // A backslash at the end of a line carries the value on to the next.
        size_t slashes = 0;
        while (slashes < piece.size() && piece[piece.size() - 1 - slashes] == '\\') ++slashes;
        if (slashes % 2 == 1 && at < text.size()) {
            joined.append(piece.substr(0, piece.size() - 1));
            continue;
        }
        joined.append(piece);
        std::string current = std::move(joined);
        joined.clear();
        std::string_view line = current;
        if (line.empty() || line[0] == ';' || line[0] == '#') continue;
        if (line[0] == '[') {
            size_t close = line.find(']');
            if (close == std::string_view::npos) continue;
            section = Unpercent(TrimBlanks(line.substr(1, close - 1)));
            continue;
        }
        size_t eq = line.find('=');
        if (eq == std::string_view::npos) continue;
        std::string key = Unpercent(TrimBlanks(line.substr(0, eq)));
        if (key.empty()) continue;
        std::string full = section == "General" ? key : section + "/" + key;
        // Of two equal keys the later one counts.
        values_[full] = IniValue(line.substr(eq + 1));
    }
}

bool IniSnapshot::Load(const std::string& path, std::string& why) {
    struct stat st {};
    if (::stat(path.c_str(), &st) != 0) return true;  // none yet: defaults
    if (!S_ISREG(st.st_mode)) {
        why = path + " is not a file";
        return false;
    }
    std::ifstream f(path, std::ios::binary);
    if (!f) {
        why = path + " cannot be read";
        return false;
    }
    std::ostringstream text;
    text << f.rdbuf();
    LoadText(text.str());
    return true;
}

std::optional<std::string> IniSnapshot::Read(const std::string&, const std::string& section, const std::string& key) {
    auto it = values_.find(section == "General" ? key : section + "/" + key);
    if (it == values_.end()) return std::nullopt;
    return it->second;
}

bool IniSnapshot::Write(const std::string&, const std::string& section, const std::string& key, const std::string& value) {
    values_[section == "General" ? key : section + "/" + key] = value;
    return true;
}

std::string IniSnapshot::Get(const std::string& section, const std::string& key) const {
    auto it = values_.find(section == "General" ? key : section + "/" + key);
    return it == values_.end() ? std::string() : it->second;
}

}  // namespace ombra
