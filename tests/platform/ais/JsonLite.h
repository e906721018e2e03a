// A small JSON reader for the tests: enough to read one object a line as
// gpsd and ombra-cli print them, keeping each number's text so that a
// comparison can use the precision it was printed with.
#pragma once
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ombra::test {

struct Json {
    enum class Kind { Null, Bool, Number, String, Array, Object } kind = Kind::Null;
    bool boolean = false;
    double number = 0;
    std::string text;  // String: the value; Number: as printed
    std::vector<Json> items;
    std::vector<std::pair<std::string, Json>> members;

    const Json* Member(std::string_view key) const {
        for (const auto& [k, v] : members)
            if (k == key) return &v;
        return nullptr;
    }
    // Decimal places the number was printed with.
    int Decimals() const {
        const size_t dot = text.find('.');
        if (dot == std::string::npos) return 0;
        size_t end = text.find_first_of("eE", dot);
        if (end == std::string::npos) end = text.size();
        return int(end - dot - 1);
    }
};

class JsonReader {
public:
    static Json Parse(std::string_view s) {
        JsonReader r(s);
        Json v = r.Value();
        r.Blank();
        if (r.i_ != s.size()) throw std::runtime_error("trailing text after JSON value");
        return v;
    }

private:
    explicit JsonReader(std::string_view s) : s_(s) {}
    void Blank() {
        while (i_ < s_.size() && (s_[i_] == ' ' || s_[i_] == '\t' || s_[i_] == '\r' || s_[i_] == '\n')) ++i_;
    }
    char Peek() {
        Blank();
        if (i_ >= s_.size()) throw std::runtime_error("JSON ends early");
        return s_[i_];
    }
    void Expect(char c) {
        if (Peek() != c) throw std::runtime_error(std::string("JSON: expected ") + c);
        ++i_;
    }
    bool Word(std::string_view w) {
        if (s_.substr(i_, w.size()) != w) return false;
        i_ += w.size();
        return true;
    }
    std::string String() {
        Expect('"');
        std::string out;
        while (i_ < s_.size() && s_[i_] != '"') {
            char c = s_[i_++];
            if (c == '\\') {
                if (i_ >= s_.size()) break;
                c = s_[i_++];
                if (c == 'u') {
                    out.push_back(char(std::stoi(std::string(s_.substr(i_, 4)), nullptr, 16)));
                    i_ += 4;
                    continue;
                }
                if (c == 'n') c = '\n';
                if (c == 't') c = '\t';
            }
            out.push_back(c);
        }
        Expect('"');
        return out;
    }
    Json Value() {
        Json v;
        const char c = Peek();
        if (c == '{') {
            v.kind = Json::Kind::Object;
            ++i_;
            if (Peek() == '}') { ++i_; return v; }
            while (true) {
                std::string key = String();
                Expect(':');
                v.members.emplace_back(std::move(key), Value());
                if (Peek() == ',') { ++i_; continue; }
                Expect('}');
                return v;
            }
        }
        if (c == '[') {
            v.kind = Json::Kind::Array;
            ++i_;
            if (Peek() == ']') { ++i_; return v; }
            while (true) {
                v.items.push_back(Value());
                if (Peek() == ',') { ++i_; continue; }
                Expect(']');
                return v;
            }
        }
        if (c == '"') {
            v.kind = Json::Kind::String;
            v.text = String();
            return v;
        }
        if (Word("true")) { v.kind = Json::Kind::Bool; v.boolean = true; return v; }
        if (Word("false")) { v.kind = Json::Kind::Bool; return v; }
        if (Word("null")) return v;
        const size_t from = i_;
        while (i_ < s_.size() && std::string_view("+-0123456789.eE").find(s_[i_]) != std::string_view::npos) ++i_;
        if (from == i_) throw std::runtime_error("JSON: unexpected character");
        v.kind = Json::Kind::Number;
        v.text = std::string(s_.substr(from, i_ - from));
        v.number = std::stod(v.text);
        return v;
    }
    std::string_view s_;
    size_t i_ = 0;
};

}  // namespace ombra::test
