#include "sim/VirtualRunLoop.h"

#include <algorithm>
#include <chrono>
#include <cmath>

namespace quibbits {

using namespace std::chrono;

Date utcDate(const LocalTime& time, Seconds second) {
    const year_month_day day{year{time.year}, month{static_cast<unsigned>(time.month)},
                             std::chrono::day{static_cast<unsigned>(time.day)}};
    const auto days = sys_days{day}.time_since_epoch().count();
    return {static_cast<double>(days) * 86400 + time.hour * 3600 + time.minute * 60 + second};
}

LocalTime VirtualRunLoop::localTime(Date date) const {
    date = std::clamp(date, Date::distantPast(), Date::distantFuture());
    const auto total = static_cast<std::int64_t>(std::floor(date.secondsSince1970 + aheadOfUtc_));
    const auto days = floor<std::chrono::days>(sys_seconds{seconds{total}});
    const year_month_day day{days};
    const auto ofDay = total - duration_cast<seconds>(days.time_since_epoch()).count();
    return {.year = static_cast<int>(day.year()),
            .month = static_cast<int>(static_cast<unsigned>(day.month())),
            .day = static_cast<int>(static_cast<unsigned>(day.day())),
            .hour = static_cast<int>(ofDay / 3600),
            .minute = static_cast<int>(ofDay / 60 % 60)};
}

std::uint64_t VirtualRunLoop::schedule(Schedule when, Job job) {
    return jobs_.add(
        {.due = std::max(when.due, now_), .interval = when.interval, .job = std::move(job)});
}

void VirtualRunLoop::advanceTo(Instant instant) {
    for (auto due = nextDue(); due && *due <= instant; due = nextDue()) {
        now_ = *due;
        if (now_ != lastWake_) {
            lastWake_ = now_;
            ++wakeUps_;
        }
        jobs_.runFirst(*this);
    }
    now_ = std::max(now_, instant);
}

}  // namespace quibbits
