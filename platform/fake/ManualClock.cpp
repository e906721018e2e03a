#include "platform/fake/ManualClock.h"

#include <cmath>

namespace ombra {

void ManualClock::Sleep(int milliseconds) {
    sleptMs += milliseconds;
    Advance(milliseconds / 1000.0);
}

void ManualClock::Advance(double seconds) {
    now = DateTime::FromSerial(now.Serial() + seconds / 86400.0);
}

void ManualClock::SetTime(int hour, int minute, double second) {
    now.hour = hour;
    now.minute = minute;
    now.second = int(std::floor(second));
    now.millisecond = int(std::lround((second - std::floor(second)) * 1000.0));
}

}  // namespace ombra
