#pragma once
// The desktop's notifications.

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace quibbits {

struct NotificationAction {
    std::string identifier;
    std::string title;
    bool destructive = false;
    bool operator==(const NotificationAction&) const = default;
};

/// A kind of notification and the buttons that it carries.
struct NotificationCategory {
    std::string identifier;
    std::vector<NotificationAction> actions;
    bool operator==(const NotificationCategory&) const = default;
};

struct NotificationRequest {
    std::string identifier;  // a later request with the same identifier replaces this one
    std::string title;
    std::string body;
    std::string category;  // empty for none
    bool sound = false;
    std::string pet;                 // store id of the sender
    std::vector<std::string> paths;  // the files on offer, if any
    bool operator==(const NotificationRequest&) const = default;
};

/// The user's answer to a notification: a button's identifier, or another word for a plain click.
struct NotificationResponse {
    std::string action;
    std::string pet;
    std::vector<std::string> paths;
};

/// What became of a request.
struct NotificationOutcome {
    enum class Kind { shown, notAllowed, failed };
    Kind kind = Kind::shown;
    std::string error;  // in the system's words, unless it was shown
};

class Notifications {
public:
    virtual ~Notifications() = default;
    virtual void setCategories(std::vector<NotificationCategory> categories) = 0;
    /// Shows a notification. `done` is called once on the main queue, maybe later.
    virtual void send(NotificationRequest request,
                      std::function<void(const NotificationOutcome&)> done) = 0;
    /// Takes a shown notification back; an unknown identifier is ignored.
    virtual void removeDelivered(const std::string& identifier) = 0;

    std::function<void(const NotificationResponse&)> onResponse;
};

}  // namespace quibbits
