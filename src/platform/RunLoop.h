#pragma once
// The clock and the main queue. Everything in the core that waits, waits through a RunLoop, so a
// creature's day runs in virtual time in a test. One thread runs it; only post may be called from
// another.

#include <cstdint>
#include <functional>
#include <memory>
#include <utility>

#include "platform/Date.h"

namespace quibbits {

/// A moment of a clock that never goes back, in seconds from an arbitrary start.
using Instant = double;

using Job = std::function<void()>;

class RunLoop;

/// A pending delayed or repeating job. Its end cancels the job; it must not outlive its RunLoop.
class Timer {
public:
    Timer() = default;
    Timer(RunLoop& loop, std::uint64_t id) : loop_(&loop), id_(id) {}
    Timer(Timer&& o) noexcept : loop_(std::exchange(o.loop_, nullptr)), id_(o.id_) {}
    Timer& operator=(Timer&& o) noexcept {
        if (this != &o) {
            cancel();
            loop_ = std::exchange(o.loop_, nullptr);
            id_ = o.id_;
        }
        return *this;
    }
    ~Timer() { cancel(); }
    void cancel();
    /// Armed and not cancelled. A one-shot timer that has fired still counts as armed.
    explicit operator bool() const { return loop_ != nullptr; }

private:
    RunLoop* loop_ = nullptr;
    std::uint64_t id_ = 0;
};

class RunLoop {
public:
    virtual ~RunLoop() = default;

    virtual Instant now() const = 0;
    virtual Date date() const = 0;
    /// A date before year 1 or after year 9999 counts as the first or last day between.
    virtual LocalTime localTime(Date date) const = 0;

    /// Runs the job on the loop's thread after everything already due. Safe from any thread.
    virtual void post(Job job) = 0;

    /// Runs the job once at the instant, or as soon as possible when that is past. Jobs that are
    /// due together run in the order in which they were scheduled; a repeating one is scheduled
    /// anew by each of its runs.
    void at(Instant due, Job job) { schedule({.due = due}, std::move(job)); }
    /// Runs the job once after a delay that nobody can cancel.
    void after(Seconds delay, Job job) { schedule({.due = now() + delay}, std::move(job)); }

    /// As after, cancelled when the handle ends. The loop may fire late by up to the tolerance, to
    /// wake less often.
    [[nodiscard]] Timer timer(Seconds delay, Job job, Seconds tolerance = 0) {
        return {*this, schedule({.due = now() + delay, .tolerance = tolerance}, std::move(job))};
    }
    /// Repeats from one interval ahead until the handle ends. A late run is not made up for.
    [[nodiscard]] Timer every(Seconds interval, Job job, Seconds tolerance = 0) {
        return {*this,
                schedule({.due = now() + interval, .interval = interval, .tolerance = tolerance},
                         std::move(job))};
    }

protected:
    struct Schedule {
        Instant due = 0;
        Seconds interval = 0;  // 0 runs once
        Seconds tolerance = 0;
    };
    virtual std::uint64_t schedule(Schedule when, Job job) = 0;
    virtual void cancel(std::uint64_t id) = 0;
    friend class Timer;
};

inline void Timer::cancel() {
    if (auto* loop = std::exchange(loop_, nullptr)) loop->cancel(id_);
}

}  // namespace quibbits
