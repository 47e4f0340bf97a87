#pragma once
// Something that happens and may have several listeners, told in the order in which they joined.

#include <cstdint>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace quibbits {

/// Keeps a listener joined to a Signal; its end removes the listener. May outlive the Signal.
class Subscription {
public:
    Subscription() = default;
    explicit Subscription(std::function<void()> leave) : leave_(std::move(leave)) {}
    Subscription(Subscription&& other) noexcept : leave_(std::exchange(other.leave_, nullptr)) {}
    Subscription& operator=(Subscription&& other) noexcept {
        if (this != &other) {
            reset();
            leave_ = std::exchange(other.leave_, nullptr);
        }
        return *this;
    }
    ~Subscription() { reset(); }

    void reset() {
        if (auto leave = std::exchange(leave_, nullptr)) leave();
    }

private:
    std::function<void()> leave_;
};

template <typename... Args>
class Signal {
public:
    using Listener = std::function<void(Args...)>;

    [[nodiscard]] Subscription subscribe(Listener listener) {
        auto entry = std::make_shared<Listener>(std::move(listener));
        listeners_->push_back(entry);
        return Subscription([list = std::weak_ptr(listeners_), entry] {
            *entry = nullptr;  // a listener that leaves during emit is not called any more
            if (auto all = list.lock()) std::erase(*all, entry);
        });
    }

    /// Tells everyone who had joined when the call began.
    void emit(Args... args) const {
        const auto snapshot = *listeners_;
        for (const auto& entry : snapshot) {
            if (*entry) {
                const Listener call = *entry;
                call(args...);
            }
        }
    }

    bool hasListeners() const { return !listeners_->empty(); }

private:
    using List = std::vector<std::shared_ptr<Listener>>;
    std::shared_ptr<List> listeners_ = std::make_shared<List>();
};

}  // namespace quibbits
