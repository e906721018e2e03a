// Rounding and narrowing as the plotter's arithmetic does it.
//
// Conversions to whole numbers round to nearest with ties to even (banker's
// rounding): 0.5 -> 0, 1.5 -> 2, 2.5 -> 2, -1.5 -> -2. A value that does not
// fit the 16-bit or 32-bit target raises the Overflow fault (6), which the
// procedure guard reports; nothing wraps silently.
#pragma once
#include <cstdint>

namespace ombra {

double RoundEven(double value);
int16_t CInt16(double value);   // rounds ties to even; Overflow outside -32768..32767
int32_t CLng32(double value);   // rounds ties to even; Overflow outside 32-bit

}  // namespace ombra
