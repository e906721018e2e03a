// The clock of the plotter: the date and time now, as the ship's computer
// has it. Ages and cadences use seconds since midnight, which wrap to 0 at
// midnight; every user of it takes differences with care for that.
#pragma once
#include "platform/api/DateTime.h"

namespace ombra {

class Clock {
public:
    virtual ~Clock() = default;
    virtual DateTime Now() = 0;
    // Seconds since midnight, with the fraction of the second.
    double Timer() { return Now().SecondsOfDay(); }
    // Sleep, as start-up's pause for the splash screen; tests skip it.
    virtual void Sleep(int milliseconds) = 0;
};

// "Let the system process events once": modal dialogs and long work pump
// the event loop through this, so that a nested tick can arrive.
class Events {
public:
    virtual ~Events() = default;
    virtual void DoEvents() = 0;
};

}  // namespace ombra
