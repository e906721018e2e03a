#include "charts/ChartHeader.h"

#include <sys/stat.h>

#include <cctype>
#include <cstdio>
#include <cstring>

#include "core/ErrorReport.h"
#include "core/Format.h"
#include "core/Paths.h"
#include "core/Rounding.h"
#include "core/Val.h"

namespace ombra {

namespace {

constexpr size_t kMaxTextFileBytes = 4 << 20;

std::vector<std::string> Lines(std::string_view text, size_t most) {
    std::vector<std::string> out;
    size_t start = 0;
    while (start < text.size() && out.size() < most) {
        size_t e = text.find('\n', start);
        std::string_view l = text.substr(start, e == std::string_view::npos ? std::string_view::npos : e - start);
        if (!l.empty() && l.back() == '\r') l.remove_suffix(1);
        out.emplace_back(l);
        start = e == std::string_view::npos ? text.size() : e + 1;
    }
    return out;
}

}  // namespace

int16_t Int16Of(std::string_view s) {
    double v = Val(s);
    if (!(v >= -32768.5 && v <= 32767.5)) return 0;
    return int16_t(RoundEven(v));
}

std::string Columns(std::string_view line, size_t first, size_t last) {
    if (first < 1 || first > line.size() || last < first) return "";
    return std::string(line.substr(first - 1, last - first + 1));
}

std::string FixedText(std::string_view text, size_t length) {
    std::string s(text.substr(0, std::min(text.size(), length)));
    s.resize(length, ' ');
    return s;
}

std::string ChartHeaderPath(std::string_view chartNumber) {
    std::string number(chartNumber);
    while (!number.empty() && number.back() == ' ') number.pop_back();
    if (number.empty()) return "";
    std::string digits = number;
    if (!IsNumeric(number)) {
        digits.clear();
        for (char c : number)
            if (std::isdigit(static_cast<unsigned char>(c))) digits.push_back(c);
    }
    double v = Val(digits);
    if (!(v >= 0 && v < 1e15)) v = 0;
    std::string group = Format(v, "00000").substr(0, 3);
    return "raschts\\" + group + "\\" + number + "\\" + number + ".HDR";
}

std::string ChartFilePath(const std::string& headerPath, const std::string& ext3) {
    if (headerPath.size() < 3) return headerPath;
    return headerPath.substr(0, headerPath.size() - 3) + ext3;
}

std::string PlanExtension(char kind, int plan) { return std::string(1, kind) + Format(plan, "00"); }

void ParseHeaderText(std::string_view text, ChartHeader& h) {
    std::vector<std::string> l = Lines(text, 4);
    l.resize(4);
    const std::string& l1 = l[0];
    h.FileType = FixedText(Trim(Columns(l1, 1, 3)), 3);
    h.Country = FixedText(Trim(Columns(l1, 4, 5)), 2);
    h.ChartNumber = FixedText(Trim(Columns(l1, 6, 13)), 8);
    h.FileIssueDate = FixedText(Trim(Columns(l1, 14, 21)), 8);
    h.EditionDate = FixedText(Trim(Columns(l1, 22, 29)), 8);
    h.PlanCount = Int16Of(Columns(l1, 30, 31));
    h.FormatVersion = float(Val(Trim(Columns(l1, 32, 36))));
    h.Reserved1 = FixedText(Trim(Columns(l1, 37, 38)), 2);
    h.HeaderLineLength = int16_t(std::min<size_t>(l1.size() + 2, 32767));

    const std::string& l2 = l[1];
    h.Reference1 = FixedText(Trim(Columns(l2, 1, 9)), 9);
    h.Title = FixedText(Trim(Columns(l2, 10, 109)), 100);
    h.Flags1 = FixedText(Columns(l2, 110, 114), 5);
    h.Flags2 = FixedText(Columns(l2, 115, 116), 2);
    h.Flags3 = FixedText(Columns(l2, 117, 118), 2);
    h.ImageBlockA = Int16Of(Columns(l2, 119, 121));
    h.ImageBlockB = Int16Of(Columns(l2, 122, 125));
    h.LayoutA = Int16Of(Columns(l2, 126, 128));
    h.LayoutB = Int16Of(Columns(l2, 129, 131));
    h.LayoutC = Int16Of(Columns(l2, 132, 133));
    h.LayoutD = Int16Of(Columns(l2, 134, 135));
    h.ValueA = float(Val(Columns(l2, 136, 140)));
    h.ValueB = float(Val(Columns(l2, 141, 145)));
    h.ValueC = float(Val(Columns(l2, 146, 150)));

    const std::string& l3 = l[2];
    h.SpecialWarnings = l3.empty() ? "" : l3.substr(0, l3.size() - 1);

    const std::string& l4 = l[3];
    h.Reference2 = FixedText(Columns(l4, 1, 9), 9);
    h.Reference3 = FixedText(Columns(l4, 10, 17), 8);

    // Plans 0 .. PlanCount; a negative count leaves none.
    h.Plans.assign(h.PlanCount >= 0 ? size_t(h.PlanCount) + 1 : 0, ChartPlan{});
}

bool ReadHeaderFile(const std::string& path, ChartHeader& header, ErrorReporter& errors) {
    return errors.Guard("ReadHeaderFile", [&] {
        std::string p = ResolvePath(path);
        struct stat st;
        if (::stat(p.c_str(), &st) != 0 || !S_ISREG(st.st_mode)) RaiseFault(faults::FileNotFound);
        if (size_t(st.st_size) > kMaxTextFileBytes) RaiseFault(faults::InputPastEnd);
        std::string why;
        auto text = ReadWholeFile(p, &why);
        if (!text) RaiseFault(faults::PathFileAccess);
        ChartHeader h;
        ParseHeaderText(*text, h);
        // The catalogue's facts survive a new read of the file.
        h.FirstPlan = header.FirstPlan;
        h.PlanNames = header.PlanNames;
        h.OutOfDate = header.OutOfDate;
        header = std::move(h);
    });
}

std::string ChartFileLine(std::string_view type, std::string_view country, std::string_view number,
                          std::string_view issueDate, std::string_view rest) {
    return FixedText(type, 3) + FixedText(country, 2) + FixedText(number, 8) + FixedText(issueDate, 8) + std::string(rest);
}

std::string FormatHeaderText(const ChartHeader& h) {
    char buf[64];
    std::string l1 = ChartFileLine(h.FileType, h.Country, h.ChartNumber, h.FileIssueDate) + FixedText(h.EditionDate, 8);
    std::snprintf(buf, sizeof buf, "%02d", std::clamp<int>(h.PlanCount, 0, 99));
    l1 += buf;
    std::snprintf(buf, sizeof buf, "%-5.2f", double(h.FormatVersion));
    l1 += FixedText(buf, 5) + FixedText(h.Reserved1, 2);

    std::string l2 = FixedText(h.Reference1, 9) + FixedText(h.Title, 100) + FixedText(h.Flags1, 5) + FixedText(h.Flags2, 2) +
                     FixedText(h.Flags3, 2);
    auto num = [&](int v, int width) {
        std::snprintf(buf, sizeof buf, "%*d", width, v);
        return FixedText(buf, size_t(width));
    };
    // The shortest text of the value that fits the 5 columns.
    auto real = [&](float v) {
        for (int digits = 6; digits >= 1; --digits) {
            std::snprintf(buf, sizeof buf, "%.*g", digits, double(v));
            if (std::strlen(buf) <= 5) break;
        }
        return FixedText(buf, 5);
    };
    l2 += num(h.ImageBlockA, 3) + num(h.ImageBlockB, 4) + num(h.LayoutA, 3) + num(h.LayoutB, 3) + num(h.LayoutC, 2) +
          num(h.LayoutD, 2) + real(h.ValueA) + real(h.ValueB) + real(h.ValueC);
    std::string l3 = h.SpecialWarnings + ".";
    std::string l4 = FixedText(h.Reference2, 9) + FixedText(h.Reference3, 8);
    return l1 + "\r\n" + l2 + "\r\n" + l3 + "\r\n" + l4 + "\r\n";
}

std::string FileIssueDateOf(const std::string& path) {
    std::string p = ResolvePath(path);
    struct stat st;
    if (::stat(p.c_str(), &st) != 0 || !S_ISREG(st.st_mode)) return "";
    FILE* f = std::fopen(p.c_str(), "rb");
    if (!f) return "";
    char buf[256];
    size_t n = std::fread(buf, 1, sizeof buf, f);
    std::fclose(f);
    std::string_view head(buf, n);
    size_t e = head.find_first_of("\r\n");
    return Columns(head.substr(0, e), 14, 21);
}

std::string EditionDateText(std::string_view d) {
    std::string s = FixedText(d, 8);
    return s.substr(6, 2) + "/" + s.substr(4, 2) + "/" + s.substr(0, 4);
}

}  // namespace ombra
