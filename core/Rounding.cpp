#include "core/Rounding.h"

#include <cmath>

#include "core/Fault.h"

namespace ombra {

double RoundEven(double value) {
    if (!std::isfinite(value)) return value;
    return std::nearbyint(value);  // default rounding mode: to nearest, ties to even
}

int16_t CInt16(double value) {
    double r = RoundEven(value);
    if (!(r >= -32768.0 && r <= 32767.0)) RaiseFault(faults::Overflow);
    return int16_t(r);
}

int32_t CLng32(double value) {
    double r = RoundEven(value);
    if (!(r >= -2147483648.0 && r <= 2147483647.0)) RaiseFault(faults::Overflow);
    return int32_t(r);
}


}  // namespace ombra
