#pragma once
// A run loop on virtual time: nothing waits, a day passes as fast as its jobs run. Jobs run in the
// order of their due time and then of their scheduling, so advancing in pieces is the same as
// advancing at once.

#include <cstdint>
#include <map>
#include <optional>
#include <unordered_map>

#include "platform/RunLoop.h"

namespace quibbits {

class VirtualRunLoop final : public RunLoop {
public:
    /// The wall clock's date at instant 0, and how far local time is ahead of UTC.
    explicit VirtualRunLoop(Date begin, Seconds aheadOfUtc = 0)
        : begin_(begin), aheadOfUtc_(aheadOfUtc) {}
    ~VirtualRunLoop() override { dropJobs(); }
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
    void dropJobs();
    /// Moves the wall clock without any time passing, as a sleep or the user does.
    void shiftClock(Seconds by) { shift_ += by; }

    std::size_t pendingJobs() const { return jobs_.size(); }
    /// How many times a real loop would have woken up: distinct instants with a job.
    std::uint64_t wakeUps() const { return wakeUps_; }
    std::optional<Instant> nextDue() const;

protected:
    std::uint64_t schedule(Schedule when, Job job) override;
    void cancel(std::uint64_t id) override;

private:
    struct Order {
        Instant due = 0;
        std::uint64_t sequence = 0;
        auto operator<=>(const Order&) const = default;
    };
    struct Pending {
        std::uint64_t id = 0;
        Seconds interval = 0;
        Job job;
    };
    Date begin_;
    Seconds aheadOfUtc_;
    Seconds shift_ = 0;
    Instant now_ = 0;
    std::uint64_t lastSequence_ = 0;
    std::map<Order, Pending> jobs_;
    std::unordered_map<std::uint64_t, Order> orders_;  // by id, of everything pending
    std::uint64_t wakeUps_ = 0;
    Instant lastWake_ = -1;
    std::uint64_t running_ = 0;  // a repeating job that may cancel itself
};

/// A date from its calendar parts, in UTC.
Date utcDate(const LocalTime& time, Seconds second = 0);

}  // namespace quibbits
