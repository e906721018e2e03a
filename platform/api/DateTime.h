// DateTime: a date and time of the ship's clock, as plain fields.
//
// No time zone: the clock is what the user set. The serial form counts days
// since 30/12/1899 with the time of day as the fraction; spans and arrival
// times are computed in it.
//
//   DateTime t{2026, 11, 23, 14, 5, 9};
//   t.Serial()          // 46349.587...
//   t.SecondsOfDay()    // 50709
//   t.DayOfWeek()       // 2 (Monday)
#pragma once
#include <cmath>

namespace ombra {

namespace calendar {

// Days from 1/1/1970 in the proleptic Gregorian calendar, after Howard
// Hinnant's civil-date algorithm, and back.
constexpr long long DaysFromCivil(int y, int m, int d) {
    y -= m <= 2;
    const long long era = (y >= 0 ? y : y - 399) / 400;
    const unsigned yoe = unsigned(y - era * 400);
    const unsigned doy = unsigned((153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1);
    const unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + (long long)doe - 719468;
}

constexpr void CivilFromDays(long long z, int& y, int& m, int& d) {
    z += 719468;
    const long long era = (z >= 0 ? z : z - 146096) / 146097;
    const unsigned doe = unsigned(z - era * 146097);
    const unsigned yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    const long long yy = (long long)yoe + era * 400;
    const unsigned doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const unsigned mp = (5 * doy + 2) / 153;
    d = int(doy - (153 * mp + 2) / 5 + 1);
    m = int(mp < 10 ? mp + 3 : mp - 9);
    y = int(yy + (m <= 2));
}

// Day 0 of the serial form: 30/12/1899.
constexpr long long kSerialEpoch = DaysFromCivil(1899, 12, 30);

}  // namespace calendar

struct DateTime {
    int year = 1899, month = 12, day = 30;
    int hour = 0, minute = 0, second = 0;
    int millisecond = 0;

    // Days since 30/12/1899 with the time of day as the fraction, the serial
    // form that spans and arrival times are computed in.
    double Serial() const {
        const double days = double(calendar::DaysFromCivil(year, month, day) - calendar::kSerialEpoch);
        const double frac = SecondsOfDay() / 86400.0;
        // The serial form of a date before the epoch keeps its time positive.
        return days >= 0 ? days + frac : days - frac;
    }
    static DateTime FromSerial(double serial) {
        double whole = std::trunc(serial);
        const double frac = std::fabs(serial - whole);
        long long ms = std::llround(frac * 86400000.0);
        if (ms >= 86400000LL) {
            ms -= 86400000LL;
            whole += serial >= 0 ? 1 : -1;
        }
        DateTime t;
        calendar::CivilFromDays((long long)whole + calendar::kSerialEpoch, t.year, t.month, t.day);
        t.hour = int(ms / 3600000);
        t.minute = int(ms / 60000 % 60);
        t.second = int(ms / 1000 % 60);
        t.millisecond = int(ms % 1000);
        return t;
    }
    // Seconds since midnight, the clock of every age and cadence.
    double SecondsOfDay() const { return hour * 3600.0 + minute * 60.0 + second + millisecond / 1000.0; }
    // 1 Sunday .. 7 Saturday.
    int DayOfWeek() const {
        const long long d = calendar::DaysFromCivil(year, month, day);  // 1/1/1970 was a Thursday
        return int(((d % 7) + 7 + 4) % 7) + 1;
    }
    friend bool operator==(const DateTime&, const DateTime&) = default;
};

}  // namespace ombra
