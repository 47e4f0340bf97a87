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
    const std::uint64_t id = ++lastSequence_;
    const Order order{std::max(when.due, now_), id};
    jobs_.emplace(order, Pending{id, when.interval, std::move(job)});
    orders_.emplace(id, order);
    return id;
}

void VirtualRunLoop::cancel(std::uint64_t id) {
    if (running_ == id) running_ = 0;
    const auto found = orders_.find(id);
    if (found == orders_.end()) return;
    const auto node = jobs_.extract(found->second);  // a job's end may cancel others
    orders_.erase(found);
}

void VirtualRunLoop::dropJobs() {
    while (!jobs_.empty()) {
        const auto node = jobs_.extract(jobs_.begin());
        orders_.erase(node.mapped().id);
    }
}

std::optional<Instant> VirtualRunLoop::nextDue() const {
    if (jobs_.empty()) return std::nullopt;
    return jobs_.begin()->first.due;
}

void VirtualRunLoop::advanceTo(Instant instant) {
    while (!jobs_.empty() && jobs_.begin()->first.due <= instant) {
        auto next = jobs_.extract(jobs_.begin());
        auto& pending = next.mapped();
        orders_.erase(pending.id);
        now_ = next.key().due;
        if (now_ != lastWake_) {
            lastWake_ = now_;
            ++wakeUps_;
        }
        running_ = pending.id;
        pending.job();
        const bool goesOn = pending.interval > 0 && running_ == pending.id;
        running_ = 0;
        if (!goesOn) continue;
        next.key() = {now_ + pending.interval, ++lastSequence_};
        orders_.emplace(pending.id, next.key());
        jobs_.insert(std::move(next));
    }
    now_ = std::max(now_, instant);
}

}  // namespace quibbits
