#pragma once
// The properties of one object of a service, followed as they change, for as long as the service is
// there.

#include <functional>
#include <string>

#include "desktop/session/Bus.h"
#include "desktop/session/BusValues.h"

namespace quibbits::session {

class BusObject {
public:
    struct Place {
        std::string service;
        std::string path;
        std::string interface;
        bool startsService = false;  // the bus may start the service for the first question
    };
    enum class State { asking, absent, present };

    BusObject(Bus& bus, Place place);

    State state() const { return state_; }
    const BusDictionary& properties() const { return properties_; }

    /// The state or the properties may have changed. Not called from within the constructor.
    std::function<void()> onChange;

private:
    void ask();
    void vanish();
    void take(sd_bus_message* reply);
    void heardChange(sd_bus_message* signal);
    void heardOwner(sd_bus_message* signal);
    void tell();

    Bus& bus_;
    Place place_;
    State state_ = State::asking;
    BusDictionary properties_;
    Subscription question_;
    Subscription changes_;
    Subscription owners_;
    Subscription returns_;
    Subscription ends_;
};

}  // namespace quibbits::session
