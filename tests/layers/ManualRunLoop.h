#pragma once
// A run loop that a test turns by hand, in virtual time.

#include <algorithm>
#include <deque>
#include <vector>

#include "platform/RunLoop.h"

namespace quibbits {

class ManualRunLoop : public RunLoop {
public:
    Instant now() const override { return now_; }
    Date date() const override { return {now_}; }
    LocalTime localTime(Date) const override { return {}; }
    void post(Job job) override { entries_.push_back({++last_, now_, 0, std::move(job)}); }

    /// Runs everything that falls due up to the instant, each job at its own time.
    void runUntil(Instant end) {
        while (true) {
            const auto next = std::ranges::min_element(entries_, [](const auto& a, const auto& b) {
                return std::pair(a.due, a.id) < std::pair(b.due, b.id);
            });
            if (next == entries_.end() || next->due > end) break;
            Entry entry = std::move(*next);
            entries_.erase(next);
            now_ = std::max(now_, entry.due);
            if (entry.interval > 0) {
                entries_.push_back({entry.id, now_ + entry.interval, entry.interval, entry.job});
            }
            entry.job();
        }
        now_ = end;
    }
    /// Runs what is due at this moment.
    void turn() { runUntil(now_); }

protected:
    std::uint64_t schedule(Schedule when, Job job) override {
        entries_.push_back({++last_, std::max(now_, when.due), when.interval, std::move(job)});
        return last_;
    }
    void cancel(std::uint64_t id) override {
        std::erase_if(entries_, [&](const Entry& e) { return e.id == id; });
    }

private:
    struct Entry {
        std::uint64_t id;
        Instant due;
        Seconds interval;
        Job job;
    };
    std::deque<Entry> entries_;
    Instant now_ = 100;
    std::uint64_t last_ = 0;
};

}  // namespace quibbits
