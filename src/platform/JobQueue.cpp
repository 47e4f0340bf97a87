#include "platform/JobQueue.h"

#include <algorithm>
#include <cmath>

namespace quibbits {

std::uint64_t JobQueue::add(Entry entry) {
    const std::uint64_t id = ++lastSequence_;
    const Order order{entry.due, id};
    entries_.emplace(order, Pending{id, std::move(entry)});
    orders_.emplace(id, order);
    return id;
}

void JobQueue::cancel(std::uint64_t id) {
    if (running_ == id) running_ = 0;
    const auto found = orders_.find(id);
    if (found == orders_.end()) return;
    const auto node = entries_.extract(found->second);  // ends after the queue is whole again
    orders_.erase(found);
}

void JobQueue::clear() {
    while (!entries_.empty()) {
        const auto node = entries_.extract(entries_.begin());
        orders_.erase(node.mapped().id);
    }
}

std::optional<Instant> JobQueue::nextDue() const {
    if (entries_.empty()) return std::nullopt;
    return entries_.begin()->first.due;
}

std::optional<Instant> JobQueue::wakeBy() const {
    std::optional<Instant> latest;
    for (const auto& [order, pending] : entries_) {
        if (latest && order.due >= *latest) break;
        const Instant bound = order.due + pending.entry.tolerance;
        if (!latest || bound < *latest) latest = bound;
    }
    return latest;
}

void JobQueue::runFirst(const RunLoop& clock) {
    auto next = entries_.extract(entries_.begin());
    auto& [id, entry] = next.mapped();
    orders_.erase(id);
    running_ = id;
    entry.job();
    const bool goesOn = entry.interval > 0 && running_ == id;
    running_ = 0;
    if (!goesOn) return;
    const Instant due = next.key().due;
    const double missed = std::max(std::floor((clock.now() - due) / entry.interval), 0.0);
    next.key() = {due + entry.interval * (missed + 1), ++lastSequence_};
    orders_.emplace(id, next.key());
    entries_.insert(std::move(next));
}

}  // namespace quibbits
