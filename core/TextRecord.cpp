#include "core/TextRecord.h"

#include "core/Fault.h"
#include "core/Rounding.h"
#include "core/Val.h"

namespace ombra {

void TextRecordWriter::Sep() {
    if (lineStarted_) out_.push_back(',');
    lineStarted_ = true;
}

TextRecordWriter& TextRecordWriter::Str(std::string_view s) {
    Sep();
    out_.push_back('"');
    for (char c : s) {
        if (c == '"') out_.push_back('"');
        out_.push_back(c);
    }
    out_.push_back('"');
    return *this;
}

TextRecordWriter& TextRecordWriter::Num(double v) { Sep(); out_ += NumberText(v); return *this; }
TextRecordWriter& TextRecordWriter::Num(float v) { Sep(); out_ += NumberText(v); return *this; }
TextRecordWriter& TextRecordWriter::Num(int64_t v) { Sep(); out_ += std::to_string(v); return *this; }
TextRecordWriter& TextRecordWriter::Bool(bool b) { Sep(); out_ += b ? "#TRUE#" : "#FALSE#"; return *this; }
TextRecordWriter& TextRecordWriter::Date(const DateTime& d) { Sep(); out_ += DateLiteral(d); return *this; }

TextRecordWriter& TextRecordWriter::EndLine() {
    out_ += "\r\n";
    lineStarted_ = false;
    return *this;
}

void TextRecordReader::SkipBlanks() {
    while (pos_ < s_.size() && (s_[pos_] == ' ' || s_[pos_] == '\t')) ++pos_;
}

bool TextRecordReader::AtEnd() {
    size_t p = pos_;
    while (p < s_.size() && (s_[p] == ' ' || s_[p] == '\t' || s_[p] == '\r' || s_[p] == '\n' || s_[p] == '\x1a')) ++p;
    return p >= s_.size();
}

std::string TextRecordReader::NextField() {
    // Line ends before a value are separators, like commas.
    while (pos_ < s_.size()) {
        SkipBlanks();
        if (pos_ < s_.size() && (s_[pos_] == '\r' || s_[pos_] == '\n')) {
            if (s_[pos_] == '\r' && pos_ + 1 < s_.size() && s_[pos_ + 1] == '\n') ++pos_;
            ++pos_;
            ++line_;
            continue;
        }
        break;
    }
    if (pos_ >= s_.size() || s_[pos_] == '\x1a') {
        throw Fault(faults::InputPastEnd, "Input past end of file (line " + std::to_string(line_) + ")");
    }
    std::string out;
    lastLine_ = line_;
    if (s_[pos_] == '"') {
        lastQuoted_ = true;
        ++pos_;
        while (pos_ < s_.size()) {
            char c = s_[pos_];
            if (c == '"') {
                if (pos_ + 1 < s_.size() && s_[pos_ + 1] == '"') { out.push_back('"'); pos_ += 2; continue; }
                ++pos_;
                break;
            }
            if (c == '\n') ++line_;
            out.push_back(c);
            ++pos_;
        }
        // Anything between the closing quote and the separator is dropped.
        while (pos_ < s_.size() && s_[pos_] != ',' && s_[pos_] != '\r' && s_[pos_] != '\n') ++pos_;
    } else {
        lastQuoted_ = false;
        size_t b = pos_;
        while (pos_ < s_.size() && s_[pos_] != ',' && s_[pos_] != '\r' && s_[pos_] != '\n') ++pos_;
        out = Trim(s_.substr(b, pos_ - b));
    }
    lastEndedLine_ = !(pos_ < s_.size() && s_[pos_] == ',');
    if (pos_ < s_.size() && s_[pos_] == ',') {
        ++pos_;
    } else if (pos_ < s_.size()) {
        if (s_[pos_] == '\r' && pos_ + 1 < s_.size() && s_[pos_ + 1] == '\n') ++pos_;
        ++pos_;
        ++line_;
    }
    return out;
}

std::string TextRecordReader::ReadString() { return NextField(); }

double TextRecordReader::ReadNumber() {
    std::string f = NextField();
    if (!lastQuoted_) {
        std::string u = UCase(f);
        if (u == "#TRUE#") return -1.0;
        if (u == "#FALSE#" || u == "#NULL#") return 0.0;
    }
    return Val(f);
}

int16_t TextRecordReader::ReadInt16() { return CInt16(ReadNumber()); }

bool TextRecordReader::ReadBool() {
    std::string f = NextField();
    std::string u = UCase(Trim(f));
    if (u == "#TRUE#" || u == "TRUE") return true;
    if (u == "#FALSE#" || u == "FALSE" || u.empty()) return false;
    if (IsNumeric(u)) return Val(u) != 0.0;
    throw Fault(faults::TypeMismatch, "Type mismatch (line " + std::to_string(line_) + ")");
}

DateTime TextRecordReader::ReadDate() {
    std::string f = NextField();
    DateTime d;
    if (!ParseDateLiteral(Trim(f), d))
        throw Fault(faults::TypeMismatch, "Type mismatch (line " + std::to_string(line_) + ")");
    return d;
}

std::string TextRecordReader::ReadLine() {
    if (pos_ >= s_.size()) throw Fault(faults::InputPastEnd, "Input past end of file (line " + std::to_string(line_) + ")");
    size_t b = pos_;
    while (pos_ < s_.size() && s_[pos_] != '\r' && s_[pos_] != '\n') ++pos_;
    std::string out(s_.substr(b, pos_ - b));
    if (pos_ < s_.size()) {
        if (s_[pos_] == '\r' && pos_ + 1 < s_.size() && s_[pos_ + 1] == '\n') ++pos_;
        ++pos_;
        ++line_;
    }
    return out;
}

}  // namespace ombra
