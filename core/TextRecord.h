// Text records: the line format of the plotter's own files (the three
// stores, tracks, deviation table, indexes).
//
// Values are written one after another, separated by commas, one record a
// line, CR LF at each line end:
//   strings  in double quotes; a quote inside a string is doubled ("")
//   numbers  bare, the point as decimal mark, shortest text that reads back
//            to the same value (a 32-bit float is written as a 32-bit float)
//   booleans #TRUE# or #FALSE#
//   dates    #yyyy-mm-dd# (with " hh:mm:ss" when there is a time)
//
//   "WP001",1,"North cardinal",180000.5,-43200,0,1,-0.5,1,0,""<CR><LF>
//
// Records are read back by counted fields: the reader does not care where a
// line ends, only how many values the caller asks for, so a record broken
// over lines by a hand edit still reads. The reader never reads past its
// buffer: asking for a value after the last one raises fault 62 ("Input past
// end of file") with the line number, which callers turn into a message
// that names the file and the line.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>

#include "core/Format.h"

namespace ombra {

class TextRecordWriter {
public:
    TextRecordWriter& Str(std::string_view s);
    TextRecordWriter& Num(double v);
    TextRecordWriter& Num(float v);
    TextRecordWriter& Num(int64_t v);
    TextRecordWriter& Num(int v) { return Num(int64_t(v)); }
    TextRecordWriter& Num(int16_t v) { return Num(int64_t(v)); }
    TextRecordWriter& Bool(bool b);
    TextRecordWriter& Date(const DateTime& d);
    TextRecordWriter& EndLine();
    const std::string& Text() const { return out_; }

private:
    void Sep();
    std::string out_;
    bool lineStarted_ = false;
};

class TextRecordReader {
public:
    explicit TextRecordReader(std::string_view text) : s_(text) {}

    // True when only blanks and line ends remain.
    bool AtEnd();
    // The next value as text: a quoted string unquoted, anything else trimmed.
    std::string ReadString();
    double ReadNumber();   // Val of the field; #TRUE# reads -1, #FALSE# 0
    float ReadFloat() { return float(ReadNumber()); }
    int16_t ReadInt16();   // rounds ties to even; Overflow when out of range
    bool ReadBool();       // #TRUE#, "True", non-zero numbers are true
    DateTime ReadDate();   // fault 13 when the field is not a date
    // The rest of the current line, raw (what Line Input reads).
    std::string ReadLine();
    // Whether the last value read was in quotes.
    bool LastWasQuoted() const { return lastQuoted_; }
    // 1-based line of the next value to be read.
    int Line() const { return line_; }
    // Where the last value read stood: its line, and whether a line end
    // (or the end of the text) came right after it rather than a comma.
    // Readers of line-shaped records use them to tell a short or long
    // line from a record that merely continues.
    int LastLine() const { return lastLine_; }
    bool LastEndedLine() const { return lastEndedLine_; }

private:
    std::string NextField();
    void SkipBlanks();
    std::string_view s_;
    size_t pos_ = 0;
    int line_ = 1;
    bool lastQuoted_ = false;
    int lastLine_ = 0;
    bool lastEndedLine_ = false;
};

}  // namespace ombra
