#pragma once
// What a run loop still has to run: jobs in the order of their due time and then of their
// scheduling. Whoever runs it knows the time. A job, and what it holds when it ends, may add and
// cancel others, and a repeating one may cancel itself.

#include <cstdint>
#include <map>
#include <optional>
#include <unordered_map>

#include "platform/RunLoop.h"

namespace quibbits {

class JobQueue {
public:
    struct Entry {
        Instant due = 0;
        Seconds interval = 0;   // 0 runs once
        Seconds tolerance = 0;  // by which it may be late
        Job job;
    };
    JobQueue() = default;
    ~JobQueue() { clear(); }
    JobQueue(const JobQueue&) = delete;
    JobQueue& operator=(const JobQueue&) = delete;

    /// By its identifier it can be cancelled.
    std::uint64_t add(Entry entry);
    void cancel(std::uint64_t id);
    /// Drops everything, also what is added by what ends.
    void clear();

    std::size_t size() const { return entries_.size(); }
    /// When the first is due; nothing without any.
    std::optional<Instant> nextDue() const;
    /// The latest instant at which somebody must run it, so that nothing is later than it may be.
    std::optional<Instant> wakeBy() const;
    /// Runs the first. A repeating one is put back, at the first of its times that is still to
    /// come; the clock is asked when the job has ended.
    void runFirst(const RunLoop& clock);

private:
    struct Order {
        Instant due = 0;
        std::uint64_t sequence = 0;
        auto operator<=>(const Order&) const = default;
    };
    struct Pending {
        std::uint64_t id = 0;
        Entry entry;
    };
    std::map<Order, Pending> entries_;
    std::unordered_map<std::uint64_t, Order> orders_;  // by id, of everything pending
    std::uint64_t lastSequence_ = 0;
    std::uint64_t running_ = 0;  // 0 between jobs, and once it has cancelled itself
};

}  // namespace quibbits
