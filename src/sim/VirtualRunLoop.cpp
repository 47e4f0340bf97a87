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
    const std::uint64_t id = nextId_++;
    const Instant due = std::max(when.due, now_);
    jobs_.emplace(Key{due, id}, Entry{std::move(job), when.interval});
    dueOf_.emplace(id, due);
    return id;
}

void VirtualRunLoop::cancel(std::uint64_t id) {
    if (running_ == id) running_ = 0;
    const auto due = dueOf_.find(id);
    if (due == dueOf_.end()) return;
    const auto node = jobs_.extract(Key{due->second, id});  // a job's end may cancel others
    dueOf_.erase(due);
}

void VirtualRunLoop::dropJobs() {
    while (!jobs_.empty()) {
        const auto node = jobs_.extract(jobs_.begin());
        dueOf_.erase(node.key().id);
    }
}

std::optional<Instant> VirtualRunLoop::nextDue() const {
    if (jobs_.empty()) return std::nullopt;
    return jobs_.begin()->first.due;
}

void VirtualRunLoop::advanceTo(Instant instant) {
    while (!jobs_.empty() && jobs_.begin()->first.due <= instant) {
        auto node = jobs_.extract(jobs_.begin());
        const Key key = node.key();
        Entry entry = std::move(node.mapped());
        dueOf_.erase(key.id);
        now_ = key.due;
        if (now_ != lastWake_) {
            lastWake_ = now_;
            ++wakeUps_;
        }
        running_ = key.id;
        entry.job();
        const bool goesOn = entry.interval > 0 && running_ == key.id;
        running_ = 0;
        if (goesOn) {
            const Instant due = key.due + entry.interval;
            jobs_.emplace(Key{due, key.id}, std::move(entry));
            dueOf_.emplace(key.id, due);
        }
    }
    now_ = std::max(now_, instant);
}

}  // namespace quibbits
