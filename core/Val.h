// Reading numbers out of text the way every file and setting of the plotter
// is read: the numeric prefix counts and what is not a number yields 0.
//
//   Val("4800")     == 4800
//   Val(" 12.5kts") == 12.5     (leading blanks skipped, the rest ignored)
//   Val("abc")      == 0
//   Val("&H1F")     == 31       (hexadecimal and octal prefixes as &H, &O)
//
// Val knows only the point as a decimal mark, whatever the locale: files
// written on one machine read the same on any other. Blanks inside the
// digits are skipped ("1 000" is 1000), as the old readers did.
#pragma once
#include <string>
#include <string_view>

namespace ombra {

double Val(std::string_view text);

// True when the whole text (blanks around it allowed) is one number: an
// optional sign, digits with at most one point, an optional exponent.
// "", ".", "-", "1e", "12a" are not numeric; "  -0.5 ", "1E3", ".5" are.
bool IsNumeric(std::string_view text);

// Blank trimming and case helpers used all over the text readers.
std::string Trim(std::string_view text);
std::string UCase(std::string_view text);
std::string LCase(std::string_view text);
// Replace every occurrence of `from` by `to`.
std::string Replace(std::string_view text, std::string_view from, std::string_view to);

// Shortest text that reads back as the same value through Val: "0.5", "12",
// "-3.25", "1e-07". The point is always the decimal mark. A double is
// written with at most 15 significant digits ("-3960" for
// -3960.0000000000005, "0.333333333333333" for 1/3), so it reads back to
// within half a unit of its 15th digit; a float always reads back exactly.
std::string NumberText(double value);
std::string NumberText(float value);

}  // namespace ombra
