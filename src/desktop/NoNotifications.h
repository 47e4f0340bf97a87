#pragma once
// Notifications where no service for them is connected: every request fails in so many words.

#include "platform/Notifications.h"
#include "platform/RunLoop.h"

namespace quibbits {

class NoNotifications final : public Notifications {
public:
    explicit NoNotifications(RunLoop& loop) : loop_(loop) {}
    void setCategories(std::vector<NotificationCategory>) override {}
    void send(NotificationRequest, std::function<void(const NotificationOutcome&)> done) override {
        if (!done) return;
        loop_.post([done = std::move(done)] {
            done({NotificationOutcome::Kind::notAllowed, "no notification service is connected"});
        });
    }
    void removeDelivered(const std::string&) override {}

private:
    RunLoop& loop_;
};

}  // namespace quibbits
