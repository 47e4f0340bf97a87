#include "desktop/session/BusObject.h"

#include <systemd/sd-bus.h>

#include <utility>

namespace quibbits::session {

BusObject::BusObject(Bus& bus, Place place) : bus_(bus), place_(std::move(place)) {
    changes_ = bus_.match("type='signal',sender='" + place_.service + "',path='" + place_.path +
                              "',interface='org.freedesktop.DBus.Properties'"
                              ",member='PropertiesChanged',arg0='" +
                              place_.interface + "'",
                          [this](sd_bus_message* signal) { heardChange(signal); });
    owners_ =
        bus_.match("type='signal',sender='org.freedesktop.DBus',member='NameOwnerChanged',arg0='" +
                       place_.service + "'",
                   [this](sd_bus_message* signal) { heardOwner(signal); });
    returns_ = bus_.connected.subscribe([this] { ask(); });
    ends_ = bus_.lost.subscribe([this] { vanish(); });
    ask();
}

void BusObject::ask() {
    if (state_ == State::absent) state_ = State::asking;
    const std::string interface = place_.interface;
    question_ = bus_.call(
        {.destination = place_.service,
         .path = place_.path,
         .interface = "org.freedesktop.DBus.Properties",
         .member = "GetAll",
         .startsService = place_.startsService},
        [&](sd_bus_message* call) { return sd_bus_message_append(call, "s", interface.c_str()); },
        [this](sd_bus_message* reply, const Bus::Failure&) { take(reply); });
}

void BusObject::take(sd_bus_message* reply) {
    if (!reply) return vanish();
    properties_ = readDictionary(reply);
    state_ = State::present;
    tell();
}

void BusObject::vanish() {
    question_.reset();
    properties_.clear();
    if (std::exchange(state_, State::absent) != State::absent) tell();
}

void BusObject::heardChange(sd_bus_message* signal) {
    if (state_ != State::present) return;  // the answer on its way tells all
    readText(signal);                      // the interface
    for (auto& [name, value] : readDictionary(signal)) properties_[name] = value;
    for (const auto& name : readTexts(signal)) {
        if (properties_.contains(name)) return ask();
    }
    tell();
}

void BusObject::heardOwner(sd_bus_message* signal) {
    readText(signal);  // the service
    readText(signal);  // its former owner
    const auto owner = readText(signal);
    if (owner && !owner->empty()) {
        ask();
    } else {
        vanish();
    }
}

void BusObject::tell() {
    const auto listener = onChange;
    if (listener) listener();
}

}  // namespace quibbits::session
