#pragma once
// Wall-clock dates. What elapses is measured with RunLoop::now instead, which no clock change
// moves.

#include <limits>

#include "platform/Geometry.h"

namespace quibbits {

/// A moment of the wall clock, in seconds since 1970 UTC.
struct Date {
    double secondsSince1970 = 0;
    auto operator<=>(const Date&) const = default;

    static constexpr Date distantPast() { return {-62135769600.0}; }    // the first day of year 1
    static constexpr Date distantFuture() { return {253402214400.0}; }  // the last of year 9999
};

inline Seconds operator-(Date a, Date b) {
    return a.secondsSince1970 - b.secondsSince1970;
}
inline Date operator+(Date d, Seconds s) {
    return {d.secondsSince1970 + s};
}
inline Date operator-(Date d, Seconds s) {
    return {d.secondsSince1970 - s};
}

/// A date as a calendar on the wall shows it, in the user's time zone.
struct LocalTime {
    int year = 1970;
    int month = 1;  // 1 to 12
    int day = 1;    // 1 to 31
    int hour = 0;   // 0 to 23
    int minute = 0;
    bool operator==(const LocalTime&) const = default;
};

}  // namespace quibbits
