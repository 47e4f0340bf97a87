#pragma once
// A run loop on virtual time: nothing waits, a day passes as fast as its jobs run. Jobs run in the
// order of their due time and then of their scheduling, so advancing in pieces is the same as
// advancing at once.

#include <cstdint>
#include <optional>

#include "platform/JobQueue.h"
#include "platform/RunLoop.h"

namespace quibbits {

class VirtualRunLoop final : public RunLoop {
public:
    /// The wall clock's date at instant 0, and how far local time is ahead of UTC.
    explicit VirtualRunLoop(Date begin, Seconds aheadOfUtc = 0)
        : begin_(begin), aheadOfUtc_(aheadOfUtc) {}
    VirtualRunLoop(const VirtualRunLoop&) = delete;
    VirtualRunLoop& operator=(const VirtualRunLoop&) = delete;

    Instant now() const override { return now_; }
    Date date() const override { return begin_ + now_ + shift_; }
    LocalTime localTime(Date date) const override;
    void post(Job job) override { schedule({.due = now_}, std::move(job)); }

    /// Runs everything that is due up to the instant, itself included.
    void advanceTo(Instant instant);
    void advance(Seconds by) { advanceTo(now_ + by); }
    /// Drops all that is pending. What a job holds may cancel or add others at its end.
    void dropJobs() { jobs_.clear(); }
    /// Moves the wall clock without any time passing, as a sleep or the user does.
    void shiftClock(Seconds by) { shift_ += by; }

    std::size_t pendingJobs() const { return jobs_.size(); }
    /// How many times a real loop would have woken up: distinct instants with a job.
    std::uint64_t wakeUps() const { return wakeUps_; }
    std::optional<Instant> nextDue() const { return jobs_.nextDue(); }

protected:
    std::uint64_t schedule(Schedule when, Job job) override;
    void cancel(std::uint64_t id) override { jobs_.cancel(id); }

private:
    Date begin_;
    Seconds aheadOfUtc_;
    Seconds shift_ = 0;
    Instant now_ = 0;
    JobQueue jobs_;
    std::uint64_t wakeUps_ = 0;
    Instant lastWake_ = -1;
};

/// A date from its calendar parts, in UTC.
Date utcDate(const LocalTime& time, Seconds second = 0);

}  // namespace quibbits
