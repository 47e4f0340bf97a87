#pragma once
// The desktop's notifications through org.freedesktop.Notifications, whichever service has that
// name. Requests go out one after the other, so that a later one can replace the one before.

#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "desktop/session/Bus.h"
#include "platform/Notifications.h"

namespace quibbits::session {

class BusNotifications final : public Notifications {
public:
    BusNotifications(EventRunLoop& loop, Bus& session);

    void setCategories(std::vector<NotificationCategory> categories) override;
    /// Without a service the outcome is notAllowed, with the bus's words.
    void send(NotificationRequest request,
              std::function<void(const NotificationOutcome&)> done) override;
    void removeDelivered(const std::string& identifier) override;
    void removeOffers() override;

private:
    using Done = std::function<void(const NotificationOutcome&)>;
    struct Waiting {
        NotificationRequest request;
        Done done;
        bool isWithdrawn = false;
    };
    struct Shown {
        std::uint32_t id = 0;  // the service's
        std::string pet;
        std::vector<std::string> paths;
        std::vector<std::string> actions;
        bool isAnswered = false;
        bool hasButtons() const { return actions.size() > 1; }  // beside the plain click
    };
    /// What the service at hand can do.
    struct Abilities {
        bool actions = false;
        bool markup = false;
    };

    void next();
    void askAbilities();
    void show();
    int fill(sd_bus_message* call) const;
    void shown(sd_bus_message* reply);
    void finish(const NotificationOutcome& outcome);
    void forgetService();
    void heardAction(sd_bus_message* signal);
    void heardEnd(sd_bus_message* signal);
    void respond(const NotificationResponse& response) const;
    bool hasButtons(const NotificationRequest& request) const;
    std::vector<NotificationAction> actionsOf(const NotificationRequest& request) const;
    std::map<std::string, Shown>::iterator find(std::optional<std::uint32_t> id);
    void close(std::uint32_t id);

    EventRunLoop& loop_;
    Bus& bus_;
    std::map<std::string, NotificationCategory> categories_;
    std::deque<Waiting> waiting_;  // the first is under way
    bool isBusy_ = false;
    std::optional<Abilities> abilities_;
    std::map<std::string, Shown> shown_;  // by the request's identifier
    Subscription question_;
    Subscription actions_;
    Subscription ends_;
    Subscription owners_;
    Subscription busEnds_;
    Lifetime lifetime_;
};

}  // namespace quibbits::session
