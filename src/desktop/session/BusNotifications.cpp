#include "desktop/session/BusNotifications.h"

#include <systemd/sd-bus.h>

#include <algorithm>
#include <utility>

#include "desktop/session/BusValues.h"
#include "desktop/words/DesktopWords.h"

namespace quibbits::session {
namespace {

constexpr const char* service = "org.freedesktop.Notifications";
constexpr const char* path = "/org/freedesktop/Notifications";
constexpr const char* plainClick = "default";
constexpr std::size_t mostWaiting = 64;
constexpr std::size_t mostShown = 256;
constexpr std::uint8_t normalUrgency = 1;
constexpr std::int32_t usualTime = -1;

Bus::Call callOf(const char* member) {
    return {.destination = service, .path = path, .interface = service, .member = member};
}

std::string signalRule(const char* member) {
    return std::string("type='signal',sender='") + service + "',path='" + path + "',interface='" +
           service + "',member='" + member + "'";
}

/// The body as text, where the service reads it as markup.
std::string withoutMarkup(const std::string& text) {
    std::string plain;
    for (const char c : text) {
        switch (c) {
            case '&': plain += "&amp;"; break;
            case '<': plain += "&lt;"; break;
            case '>': plain += "&gt;"; break;
            default: plain += c;
        }
    }
    return plain;
}

/// A service that answered with an error of its own could have shown it; else there is none.
NotificationOutcome outcomeOf(const Bus::Failure& failure) {
    using Kind = NotificationOutcome::Kind;
    const std::string start = "org.freedesktop.DBus.Error.";
    const bool isNone =
        std::ranges::any_of(std::vector<std::string>{"ServiceUnknown", "NameHasNoOwner", "NoReply",
                                                     "Disconnected", "AccessDenied", "Timeout"},
                            [&](const auto& end) { return failure.name == start + end; }) ||
        failure.name.starts_with(start + "Spawn");
    return {isNone ? Kind::notAllowed : Kind::failed,
            failure.text.empty() ? failure.name : failure.text};
}

int appendFlag(sd_bus_message* call, const char* name) {
    return sd_bus_message_append(call, "{sv}", name, "b", 1);
}

}  // namespace

BusNotifications::BusNotifications(EventRunLoop& loop, Bus& session) : loop_(loop), bus_(session) {
    actions_ = bus_.match(signalRule("ActionInvoked"),
                          [this](sd_bus_message* signal) { heardAction(signal); });
    ends_ = bus_.match(signalRule("NotificationClosed"),
                       [this](sd_bus_message* signal) { heardEnd(signal); });
    owners_ = bus_.match(
        std::string(
            "type='signal',sender='org.freedesktop.DBus',member='NameOwnerChanged',arg0='") +
            service + "'",
        [this](sd_bus_message*) { forgetService(); });
    busEnds_ = bus_.lost.subscribe([this] { forgetService(); });
}

void BusNotifications::setCategories(std::vector<NotificationCategory> categories) {
    categories_.clear();
    for (auto& category : categories) {
        const std::string identifier = category.identifier;
        categories_[identifier] = std::move(category);
    }
}

void BusNotifications::send(NotificationRequest request, Done done) {
    if (waiting_.size() >= mostWaiting) {
        if (!done) return;
        loop_.post([done = std::move(done)] {
            done({NotificationOutcome::Kind::failed, "too many notifications are waiting"});
        });
        return;
    }
    waiting_.push_back({words::worded(std::move(request)), std::move(done)});
    loop_.post(lifetime_.guard([this] { next(); }));
}

void BusNotifications::next() {
    if (isBusy_ || waiting_.empty()) return;
    isBusy_ = true;
    if (abilities_) {
        show();
    } else {
        askAbilities();
    }
}

void BusNotifications::askAbilities() {
    question_ = bus_.call(
        callOf("GetCapabilities"), nullptr,
        [this](sd_bus_message* reply, const Bus::Failure& failure) {
            if (!reply) {
                return finish(bus_.isConnected()
                                  ? outcomeOf(failure)
                                  : NotificationOutcome{NotificationOutcome::Kind::notAllowed,
                                                        "no notification service is connected"});
            }
            const auto names = readTexts(reply);
            const auto has = [&](const char* name) {
                return std::ranges::find(names, name) != names.end();
            };
            abilities_ = {.actions = has("actions"), .markup = has("body-markup")};
            show();
        });
}

void BusNotifications::show() {
    question_ = bus_.call(
        callOf("Notify"), [this](sd_bus_message* call) { return fill(call); },
        [this](sd_bus_message* reply, const Bus::Failure& failure) {
            if (!reply) return finish(outcomeOf(failure));
            shown(reply);
        });
}

std::vector<NotificationAction> BusNotifications::actionsOf(
    const NotificationRequest& request) const {
    if (!abilities_ || !abilities_->actions) return {};
    std::vector<NotificationAction> actions{{.identifier = plainClick}};
    if (hasButtons(request)) {
        const auto& buttons = categories_.at(request.category).actions;
        actions.insert(actions.end(), buttons.begin(), buttons.end());
    }
    return actions;
}

/// Or would have, where the service shows them.
bool BusNotifications::hasButtons(const NotificationRequest& request) const {
    const auto category = categories_.find(request.category);
    return category != categories_.end() && !category->second.actions.empty();
}

int BusNotifications::fill(sd_bus_message* call) const {
    const auto& request = waiting_.front().request;
    const auto old = shown_.find(request.identifier);
    const std::uint32_t replaced = old == shown_.end() ? 0 : old->second.id;
    const std::string title = busText(request.title);
    const bool isMute = hasButtons(request) && !(abilities_ && abilities_->actions);
    std::string body = busText(
        isMute ? bodyWithoutButtons(request, categories_.at(request.category)) : request.body);
    if (abilities_ && abilities_->markup) body = withoutMarkup(body);

    int result =
        sd_bus_message_append(call, "susss", "Quibbits", replaced, "", title.c_str(), body.c_str());
    if (result >= 0) result = sd_bus_message_open_container(call, 'a', "s");
    for (const auto& action : actionsOf(request)) {
        if (result < 0) return result;
        result = sd_bus_message_append(call, "ss", busText(action.identifier).c_str(),
                                       busText(action.title).c_str());
    }
    if (result >= 0) result = sd_bus_message_close_container(call);
    if (result >= 0) result = sd_bus_message_open_container(call, 'a', "{sv}");
    if (result >= 0) result = sd_bus_message_append(call, "{sv}", "urgency", "y", normalUrgency);
    if (result >= 0) {
        result = request.sound
                     ? sd_bus_message_append(call, "{sv}", "sound-name", "s", "message-new-instant")
                     : appendFlag(call, "suppress-sound");
    }
    if (result >= 0) result = sd_bus_message_close_container(call);
    return result < 0 ? result : sd_bus_message_append(call, "i", usualTime);
}

void BusNotifications::shown(sd_bus_message* reply) {
    const auto id = readNumber(reply);
    const auto& [request, done, isWithdrawn] = waiting_.front();
    std::optional<NotificationResponse> end;
    if (!id || *id == 0) {
        return finish(
            {NotificationOutcome::Kind::failed, "the notification service gave no answer"});
    }
    if (isWithdrawn) {
        close(*id);
        shown_.erase(request.identifier);
    } else {
        if (shown_.size() >= mostShown) shown_.clear();  // a service that never tells of an end
        Shown entry{.id = *id, .pet = request.pet, .paths = request.paths};
        for (const auto& action : actionsOf(request)) entry.actions.push_back(action.identifier);
        if (hasButtons(request) && !entry.hasButtons()) {
            end = {NotificationResponse::closed, request.pet, request.paths};
        }
        shown_[request.identifier] = std::move(entry);
    }
    finish({});
    if (end) respond(*end);
}

void BusNotifications::finish(const NotificationOutcome& outcome) {
    const Done done = std::move(waiting_.front().done);
    waiting_.pop_front();
    isBusy_ = false;
    loop_.post(lifetime_.guard([this] { next(); }));
    if (done) done(outcome);
}

void BusNotifications::removeDelivered(const std::string& identifier) {
    for (auto& waiting : waiting_) {
        if (waiting.request.identifier == identifier) waiting.isWithdrawn = true;
    }
    const auto found = shown_.find(identifier);
    if (found == shown_.end()) return;
    close(found->second.id);
    shown_.erase(found);
}

void BusNotifications::removeOffers() {
    for (auto& waiting : waiting_) waiting.isWithdrawn |= hasButtons(waiting.request);
    std::erase_if(shown_, [this](const auto& entry) {
        if (!entry.second.hasButtons()) return false;
        close(entry.second.id);
        return true;
    });
}

void BusNotifications::close(std::uint32_t id) {
    bus_.tell(callOf("CloseNotification"),
              [id](sd_bus_message* call) { return sd_bus_message_append(call, "u", id); });
}

/// Another service has the name now, or none: its numbers and abilities mean nothing any more.
void BusNotifications::forgetService() {
    abilities_.reset();
    shown_.clear();
}

std::map<std::string, BusNotifications::Shown>::iterator BusNotifications::find(
    std::optional<std::uint32_t> id) {
    return std::ranges::find_if(shown_, [&](const auto& entry) { return entry.second.id == id; });
}

void BusNotifications::heardAction(sd_bus_message* signal) {
    const auto found = find(readNumber(signal));
    const auto action = readText(signal);
    if (found == shown_.end() || !action) return;
    Shown& entry = found->second;
    if (std::ranges::find(entry.actions, *action) == entry.actions.end()) return;
    entry.isAnswered |= *action != plainClick;
    respond({.action = *action, .pet = entry.pet, .paths = entry.paths});
}

void BusNotifications::heardEnd(sd_bus_message* signal) {
    constexpr std::uint32_t byTheUser = 2;
    const auto found = find(readNumber(signal));
    const auto reason = readNumber(signal);
    if (found == shown_.end()) return;
    const Shown entry = std::move(found->second);
    shown_.erase(found);
    if (reason != byTheUser || !entry.hasButtons() || entry.isAnswered) return;
    respond({NotificationResponse::closed, entry.pet, entry.paths});
}

void BusNotifications::respond(const NotificationResponse& response) const {
    const auto listener = onResponse;
    if (listener) listener(response);
}

}  // namespace quibbits::session
