// Number and date text, in one place for the whole program.
//
// Number formats use the picture characters of the old plotter:
//   "0"  a digit that is always shown (leading or trailing zero),
//   "#"  a digit shown only when significant,
//   "."  the decimal point (always a point, whatever the locale),
//   ","  between digit places: group thousands,
//   anything else is copied as it stands ("0°", "00.000 ´").
// A second section after ";" is used for negative values (without the sign).
// Values are rounded half away from zero on their 15-digit decimal form, so
// Format(2.675, "0.00") is "2.68" as a navigator reading a table expects.
//
//   Format(1.5, "0")        == "2"
//   Format(7.25, "00.000")  == "07.250"
//   Format(3.0, "##0.00")   == "3.00"
//   Format(-0.001, "0.00")  == "0.00"     (no negative zero is shown)
//
// Dates are DateTime values (platform/api/DateTime.h): plain fields, no time
// zone, the ship's clock is what the user set. Named formats follow British conventions:
//   "Short Date"  23/11/2026        "Short Time"  14:05
//   "Medium Date" 23-Nov-26         "Medium Time" 02:05 PM
//   "Long Date"   23 November 2026  "Long Time"   14:05:09
//   "General Date" 23/11/2026 14:05:09 (date alone at midnight)
// Other date formats are pictures of d dd ddd dddd m mm mmm mmmm yy yyyy
// h hh n nn s ss and AM/PM; "m" after an hour means minutes.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/api/DateTime.h"  // DateTime, the clock's value type

namespace ombra {

std::string Format(double value, std::string_view picture);

bool IsValidDate(int year, int month, int day);

std::string FormatDate(const DateTime& when, std::string_view format);

// "#yyyy-mm-dd#" or "#yyyy-mm-dd hh:mm:ss#" as text records write a date.
std::string DateLiteral(const DateTime& when);
// Reads a date literal with or without the hashes; false when it is not one.
bool ParseDateLiteral(std::string_view text, DateTime& out);

}  // namespace ombra
