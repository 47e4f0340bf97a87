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

/// A kind of notification and the buttons that it carries. Not every desktop shows buttons.
struct NotificationCategory {
    std::string identifier;
    std::vector<NotificationAction> actions;
    std::string withoutButtons;  // said after the body where there are none: what to do instead
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
    /// No button was pressed and none will be: the user has put away a notification that has
    /// some, or it was shown without.
    static constexpr const char* closed = "closed";

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

/// The body of a notification where no buttons are shown.
inline std::string bodyWithoutButtons(const NotificationRequest& request,
                                      const NotificationCategory& category) {
    if (category.withoutButtons.empty()) return request.body;
    return request.body + (request.body.empty() ? "" : " ") + category.withoutButtons;
}

class Notifications {
public:
    virtual ~Notifications() = default;
    virtual void setCategories(std::vector<NotificationCategory> categories) = 0;
    /// Shows a notification. `done` is called once on the main queue, maybe later.
    virtual void send(NotificationRequest request,
                      std::function<void(const NotificationOutcome&)> done) = 0;
    /// Takes a shown notification back; an unknown identifier is ignored.
    virtual void removeDelivered(const std::string& identifier) = 0;
    /// Takes back all that have buttons, since nobody will hear which is pressed.
    virtual void removeOffers() = 0;

    std::function<void(const NotificationResponse&)> onResponse;
};

}  // namespace quibbits
