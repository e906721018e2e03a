// A clock that stands still until a test moves it; Sleep only advances it.
#pragma once
#include "platform/api/Clock.h"

namespace ombra {

class ManualClock : public Clock {
public:
    DateTime Now() override { return now; }
    void Sleep(int milliseconds) override;
    // Moves the clock on, across midnight when it gets there.
    void Advance(double seconds);
    void SetTime(int hour, int minute, double second);
    DateTime now{2026, 11, 23, 12, 0, 0, 0};
    int sleptMs = 0;
};

class NoEvents : public Events {
public:
    void DoEvents() override { ++calls; }
    int calls = 0;
};

}  // namespace ombra
