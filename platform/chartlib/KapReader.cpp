#include "platform/chartlib/KapReader.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "core/Paths.h"
#include "core/Val.h"

namespace ombra::chartlib {

namespace {

constexpr size_t kMaxHeaderBytes = 1 << 20;  // a real header is a few kilobytes
constexpr int kMaxColours = 127;

bool StartsWithKey(std::string_view s, size_t at) {
    // "XX=" or "XXX=" with capitals or digits, the first a capital.
    size_t n = 0;
    while (at + n < s.size() && n < 4 && (std::isupper(static_cast<unsigned char>(s[at + n])) ||
                                          (n > 0 && std::isdigit(static_cast<unsigned char>(s[at + n])))))
        ++n;
    return n >= 2 && n <= 3 && at + n < s.size() && s[at + n] == '=';
}

std::vector<std::string> SplitCommas(std::string_view s) {
    std::vector<std::string> out;
    size_t start = 0;
    while (true) {
        size_t c = s.find(',', start);
        out.emplace_back(Trim(s.substr(start, c == std::string_view::npos ? std::string_view::npos : c - start)));
        if (c == std::string_view::npos) break;
        start = c + 1;
    }
    return out;
}

// A whole number from header text, held within [lo, hi] (not a number: lo).
int IntField(std::string_view text, int lo, int hi) {
    double v = Val(text);
    if (!(v >= lo)) return lo;
    if (v > hi) return hi;
    return int(v);
}

// "mm/dd/yyyy", "yyyy-mm-dd", "dd/mm/yyyy" when the first number passes 12:
// YYYYMMDD, or "" when the text is no date.
std::string DateText(const std::string& s) {
    int a = 0, b = 0, c = 0;
    char sep1 = 0, sep2 = 0;
    if (std::sscanf(s.c_str(), "%d%c%d%c%d", &a, &sep1, &b, &sep2, &c) != 5) return "";
    int y, m, d;
    if (a > 31) { y = a; m = b; d = c; }
    else if (a > 12) { d = a; m = b; y = c; }
    else { m = a; d = b; y = c; }
    if (y < 100) y += y < 50 ? 2000 : 1900;
    if (y < 1800 || y > 2999 || m < 1 || m > 12 || d < 1 || d > 31) return "";
    char buf[16];
    std::snprintf(buf, sizeof buf, "%04d%02d%02d", y, m, d);
    return buf;
}

}  // namespace

std::string KapField(std::string_view line, std::string_view key) {
    size_t slash = line.find('/');
    size_t at = slash == std::string_view::npos ? 0 : slash + 1;
    while (at < line.size()) {
        if (line.compare(at, key.size(), key) == 0 && at + key.size() < line.size() && line[at + key.size()] == '=' &&
            (at == slash + 1 || line[at - 1] == ',')) {
            size_t v = at + key.size() + 1;
            size_t e = v;
            while (e < line.size()) {
                if (line[e] == ',' && StartsWithKey(line, e + 1)) break;
                ++e;
            }
            return Trim(line.substr(v, e - v));
        }
        size_t c = line.find(',', at);
        if (c == std::string_view::npos) break;
        at = c + 1;
    }
    return "";
}

bool KapReader::Fail(std::string message) {
    error_ = std::move(message);
    return false;
}

bool KapReader::OpenFile(const std::string& path, const KapLimits& limits) {
    std::error_code ec;
    std::string p = ResolvePath(path);
    auto size = std::filesystem::file_size(p, ec);
    if (ec) return Fail("Cannot read " + path + ": " + ec.message());
    if (size > limits.MaxFileBytes) return Fail(path + " is too large for a chart file");
    std::string why;
    auto bytes = ReadWholeFile(p, &why);
    if (!bytes) return Fail("Cannot read " + path + ": " + why);
    return Open(std::move(*bytes), limits);
}

bool KapReader::Open(std::string bytes, const KapLimits& limits) {
    h_ = KapHeader{};
    error_.clear();
    rowOffsets_.clear();
    nextRow_ = 0;
    data_ = std::move(bytes);
    if (data_.size() > limits.MaxFileBytes) return Fail("The file is too large for a chart file.");

    size_t probe = std::min<size_t>(data_.size(), 1000);
    std::string_view head(data_.data(), probe);
    if (head.find("BSB/") == std::string_view::npos && head.find("NOS/") == std::string_view::npos)
        return Fail("This is not a BSB/KAP chart file (no BSB/ line in its header).");

    size_t end = data_.find('\x1a');
    if (end == std::string::npos || end > kMaxHeaderBytes)
        return Fail("The chart file's header has no end mark; the file is damaged or truncated.");
    if (!ParseHeader(end)) return false;

    if (h_.Width <= 0 || h_.Height <= 0) return Fail("The chart file does not give its size (BSB/RA=).");
    if (h_.Width > limits.MaxSide || h_.Height > limits.MaxSide ||
        int64_t(h_.Width) * int64_t(h_.Height) > limits.MaxPixels)
        return Fail("The chart file claims a raster of " + std::to_string(h_.Width) + " x " + std::to_string(h_.Height) +
                    " pixels, more than a chart can have.");
    if (h_.ColourCount == 0) return Fail("The chart file has no colour table (RGB/).");

    // Past the header: 0x1A 0x00, perhaps after a few stray bytes, then the
    // number of bits of colour.
    size_t p = end;
    int skipped = 0;
    while (true) {
        if (p + 1 >= data_.size()) return Fail("The chart file ends before its raster begins; it is truncated.");
        if (data_[p] == '\x1a' && data_[p + 1] == '\0') break;
        if (++skipped >= 100) return Fail("The chart file's raster cannot be found after its header.");
        ++p;
    }
    p += 2;
    if (p >= data_.size()) return Fail("The chart file ends before its raster begins; it is truncated.");
    int bits = static_cast<unsigned char>(data_[p]);
    if (skipped > 0 && bits >= '1' && bits <= '8') bits -= '0';
    if (bits < 1 || bits > 7) return Fail("The chart file gives " + std::to_string(bits) + " bits of colour; 1 to 7 are possible.");
    h_.ColourBits = bits;
    firstRow_ = p + 1;
    pos_ = firstRow_;
    rowEnd_ = data_.size();
    ReadIndex();
    return true;
}

namespace {

// Logical header lines: CR, LF or both end a line; a line that begins with
// a blank continues the one before, joined by a comma; a NUL ends the text.
std::vector<std::string> HeaderLines(std::string_view text) {
    std::vector<std::string> lines;
    std::string cur;
    bool haveLine = false;
    const size_t end = text.size();
    for (size_t i = 0; i < end; ++i) {
        char c = text[i];
        if (c == '\r' || c == '\n') {
            if (i + 1 < end && (text[i + 1] == '\r' || text[i + 1] == '\n') && text[i + 1] != c) ++i;
            if (i + 1 < end && text[i + 1] == ' ') {
                while (i + 1 < end && text[i + 1] == ' ') ++i;
                cur.push_back(',');
                continue;
            }
            lines.push_back(cur);
            cur.clear();
            haveLine = false;
            continue;
        }
        if (c == '\0') break;
        cur.push_back(c);
        haveLine = true;
    }
    if (haveLine || !cur.empty()) lines.push_back(cur);
    return lines;
}

// The readers of the header records. Each gets the whole logical line
// ("KNP/SC=25000,GD=WGS84,..."), whose first four characters are the tag
// and its slash; false, with `error` set, refuses the file.
using RecordReader = bool (*)(KapHeader& h, const std::string& line, std::string& error);

std::string_view AfterTag(const std::string& line) { return std::string_view(line).substr(4); }

// RA= gives width and height; the older NOS/ form has two numbers before
// them when it has four.
void ReadChartLine(KapHeader& h, const std::string& line, bool nos) {
    h.Name = KapField(line, "NA");
    h.Number = KapField(line, "NU");
    auto ra = SplitCommas(KapField(line, "RA"));
    const size_t first = nos && ra.size() >= 4 ? 2 : 0;
    if (ra.size() < first + 2) return;
    h.Width = IntField(ra[first], -1, 1000000000);
    h.Height = IntField(ra[first + 1], -1, 1000000000);
}

// "RGB/n,r,g,b": colour n of a palette; a line of fewer fields is passed over.
bool ReadColour(std::vector<int64_t>& table, const std::string& line, std::string& error) {
    auto f = SplitCommas(AfterTag(line));
    if (f.size() < 4) return true;
    int idx = IntField(f[0], -1, kMaxColours + 1);
    if (idx < 0 || idx > kMaxColours) {
        error = "The chart file's colour table has an entry " + f[0] + " out of range.";
        return false;
    }
    if (table.size() < size_t(idx) + 1) table.resize(size_t(idx) + 1, -1);
    auto ch = [](const std::string& s) { return IntField(s, 0, 255); };
    table[size_t(idx)] = int64_t(MakeRgb(ch(f[1]), ch(f[2]), ch(f[3])));
    return true;
}

// "WPX/order,c0,c1,...": at most ten coefficients; not numeric fields are left out.
void ReadPolynomial(const std::string& line, int& order, std::vector<double>& coeffs) {
    auto f = SplitCommas(AfterTag(line));
    if (f.empty() || !IsNumeric(f[0])) return;
    order = IntField(f[0], 0, 100);
    coeffs.clear();
    for (size_t i = 1; i < f.size() && coeffs.size() < 10; ++i)
        if (IsNumeric(f[i])) coeffs.push_back(Val(f[i]));
}

struct RecordRow {
    std::string_view tag;
    RecordReader read;
};

const RecordRow kRecords[] = {
    {"VER", [](KapHeader& h, const std::string& line, std::string&) {
         h.Version = Trim(AfterTag(line));
         return true;
     }},
    {"BSB", [](KapHeader& h, const std::string& line, std::string&) {
         ReadChartLine(h, line, false);
         return true;
     }},
    {"NOS", [](KapHeader& h, const std::string& line, std::string&) {
         ReadChartLine(h, line, true);
         return true;
     }},
    {"KNP", [](KapHeader& h, const std::string& line, std::string&) {
         h.Scale = KapField(line, "SC");
         h.Datum = KapField(line, "GD");
         h.Projection = KapField(line, "PR");
         h.ProjectionParameter = KapField(line, "PP");
         h.DepthUnits = KapField(line, "UN");
         h.SoundingDatum = KapField(line, "SD");
         return true;
     }},
    {"KNQ", [](KapHeader& h, const std::string& line, std::string&) {
         h.P2 = KapField(line, "P2");
         h.P3 = KapField(line, "P3");
         return true;
     }},
    {"CED", [](KapHeader& h, const std::string& line, std::string&) {
         h.EditionDate = KapField(line, "ED");
         return true;
     }},
    {"RGB", [](KapHeader& h, const std::string& line, std::string& e) { return ReadColour(h.Rgb, line, e); }},
    {"DAY", [](KapHeader& h, const std::string& line, std::string& e) { return ReadColour(h.Day, line, e); }},
    {"DSK", [](KapHeader& h, const std::string& line, std::string& e) { return ReadColour(h.Dusk, line, e); }},
    {"NGT", [](KapHeader& h, const std::string& line, std::string& e) { return ReadColour(h.Night, line, e); }},
    {"REF", [](KapHeader& h, const std::string& line, std::string&) {
         auto f = SplitCommas(AfterTag(line));
         if (f.size() >= 5) h.Refs.push_back({Val(f[1]), Val(f[2]), Val(f[3]), Val(f[4])});
         return true;
     }},
    {"PLY", [](KapHeader& h, const std::string& line, std::string&) {
         auto f = SplitCommas(AfterTag(line));
         if (f.size() >= 3) h.Outline.emplace_back(Val(f[1]), Val(f[2]));
         return true;
     }},
    {"DTM", [](KapHeader& h, const std::string& line, std::string&) {
         auto f = SplitCommas(AfterTag(line));
         if (f.size() < 2) return true;
         h.HasDtm = true;
         h.DtmLat = Val(f[0]);
         h.DtmLon = Val(f[1]);
         return true;
     }},
    {"IFM", [](KapHeader& h, const std::string& line, std::string&) {
         h.Ifm = IntField(AfterTag(line), 0, 255);
         return true;
     }},
    {"WPX", [](KapHeader& h, const std::string& line, std::string&) {
         ReadPolynomial(line, h.WpxOrder, h.Wpx);
         return true;
     }},
    {"WPY", [](KapHeader& h, const std::string& line, std::string&) {
         ReadPolynomial(line, h.WpyOrder, h.Wpy);
         return true;
     }},
    {"PWX", [](KapHeader& h, const std::string& line, std::string&) {
         ReadPolynomial(line, h.PwxOrder, h.Pwx);
         return true;
     }},
    {"PWY", [](KapHeader& h, const std::string& line, std::string&) {
         ReadPolynomial(line, h.PwyOrder, h.Pwy);
         return true;
     }},
};

// The reader of a line's record, or null for a comment, a line with no
// tag, or a tag this reader does not use.
RecordReader ReaderFor(const std::string& line) {
    if (line.size() < 4 || line[3] != '/') return nullptr;
    const std::string tag = UCase(line.substr(0, 3));
    for (const RecordRow& row : kRecords)
        if (row.tag == tag) return row.read;
    return nullptr;
}

}  // namespace

bool KapReader::ParseHeader(size_t headerEnd) {
    h_.Lines = HeaderLines(std::string_view(data_.data(), headerEnd));
    std::string error;
    for (const std::string& line : h_.Lines) {
        if (line.empty()) continue;
        if (line[0] == '!') {
            h_.Comments.push_back(Trim(std::string_view(line).substr(1)));
            continue;
        }
        RecordReader read = ReaderFor(line);
        if (read && !read(h_, line, error)) return Fail(error);
    }
    for (size_t i = 1; i < h_.Rgb.size(); ++i)
        if (h_.Rgb[i] >= 0) h_.ColourCount = int(i);
    h_.EditionDate = DateText(h_.EditionDate);
    return true;
}

// The row index at the end of the file: one 32-bit big-endian offset a
// row, then the offset of the index itself. It is used only when every
// entry is sound; otherwise rows are read one after the other.
bool KapReader::ReadIndex() {
    if (data_.size() < 4) return false;
    auto be32 = [&](size_t at) {
        const unsigned char* b = reinterpret_cast<const unsigned char*>(data_.data() + at);
        return (uint32_t(b[0]) << 24) | (uint32_t(b[1]) << 16) | (uint32_t(b[2]) << 8) | uint32_t(b[3]);
    };
    size_t fileLen = data_.size();
    size_t indexAt = be32(fileLen - 4);
    // Some charts' index lacks its last row, and so does their raster.
    if (h_.Height > 1 && indexAt + 4 * size_t(h_.Height - 1) == fileLen - 4) h_.Height -= 1;
    if (indexAt <= firstRow_ || indexAt + 4 * size_t(h_.Height) > fileLen - 4) return false;
    std::vector<uint32_t> offsets(size_t(h_.Height));
    for (int i = 0; i < h_.Height; ++i) {
        offsets[size_t(i)] = be32(indexAt + 4 * size_t(i));
        if (offsets[size_t(i)] < firstRow_ || offsets[size_t(i)] >= indexAt) return false;
        if (i > 0 && offsets[size_t(i)] < offsets[size_t(i) - 1]) return false;
        size_t at = offsets[size_t(i)];
        if (!ReadRowMarker(at, i, false)) return false;
    }
    rowOffsets_ = std::move(offsets);
    rowEnd_ = indexAt;
    return true;
}

// Reads a row number at `pos` and checks it is the row's (counted from 0
// or from 1: both are in use). Extra zero bytes before it are skipped.
bool KapReader::ReadRowMarker(size_t& pos, int row, bool verbose) {
    int64_t marker = 0;
    unsigned char b;
    do {
        if (pos >= data_.size()) return verbose ? Fail("The chart file ends inside row " + std::to_string(row) + "; it is truncated.") : false;
        b = static_cast<unsigned char>(data_[pos++]);
        while (row != 0 && marker == 0 && b == 0) {
            if (pos >= data_.size())
                return verbose ? Fail("The chart file ends inside row " + std::to_string(row) + "; it is truncated.") : false;
            b = static_cast<unsigned char>(data_[pos++]);
        }
        marker = marker * 128 + (b & 0x7f);
        if (marker > INT_MAX / 128) return verbose ? Fail("Row " + std::to_string(row) + " of the chart file has a damaged row number.") : false;
    } while (b & 0x80);
    if (marker != row && marker != row + 1)
        return verbose ? Fail("Row " + std::to_string(row) + " of the chart file is out of place (it is marked " +
                              std::to_string(marker) + "); the file is damaged.")
                       : false;
    return true;
}

bool KapReader::NextRow(uint8_t* out) {
    const int row = nextRow_;
    if (row >= h_.Height) return Fail("No rows are left in the chart file.");
    const int width = h_.Width;
    const bool indexed = !rowOffsets_.empty();
    size_t pos = indexed ? rowOffsets_[size_t(row)] : pos_;
    if (!ReadRowMarker(pos, row, true)) return false;

    const int bits = h_.ColourBits;
    const int shift = 7 - bits;
    const unsigned valueMask = ((1u << bits) - 1u) << shift;
    const unsigned countMask = (1u << shift) - 1u;
    // Where this row's bytes must end: the next row's start when the index
    // says so, else the end of the row data.
    const size_t limit = indexed && row + 1 < h_.Height ? rowOffsets_[size_t(row) + 1] : rowEnd_;

    int x = 0;
    bool more = true;
    while (more) {
        while (true) {
            if (pos >= data_.size()) return Fail("The chart file ends inside row " + std::to_string(row) + "; it is truncated.");
            unsigned b = static_cast<unsigned char>(data_[pos++]);
            if (b == 0) break;
            unsigned value = (b & valueMask) >> shift;
            int64_t count = b & countMask;
            while (b & 0x80) {
                if (pos >= data_.size())
                    return Fail("The chart file ends inside row " + std::to_string(row) + "; it is truncated.");
                b = static_cast<unsigned char>(data_[pos++]);
                count = count * 128 + (b & 0x7f);
                if (count > INT_MAX) return Fail("Row " + std::to_string(row) + " of the chart file has a damaged run.");
            }
            if (x + count + 1 > width) count = width - x - 1;
            uint8_t v = value > 0 ? uint8_t(value - 1) : 0;
            for (int64_t i = 0; i <= count; ++i) out[x++] = v;
        }
        if (x == width - 1) {
            out[x++] = 0;  // the row one pixel short that some charts have
            break;
        }
        more = false;
        if (x < width && row + 1 < h_.Height) {
            if (indexed) {
                more = pos < limit;  // more runs of this row follow a stray end mark
            } else {
                size_t probe = pos;
                more = !ReadRowMarker(probe, row + 1, false) && pos < rowEnd_;
            }
        } else if (x < width) {
            more = pos < limit;
        }
    }
    while (x < width) out[x++] = 0;
    if (!indexed) pos_ = pos;
    ++nextRow_;
    return true;
}

}  // namespace ombra::chartlib
