#pragma once
// Whether the machine reaches the network: while the kernel has a default route that can be used,
// and NetworkManager does not say of a connection of its own that it leads nowhere. Told by both as
// it changes; nothing is polled.

#include <functional>
#include <map>
#include <optional>
#include <string_view>

#include "desktop/session/Bus.h"
#include "desktop/session/BusObject.h"
#include "desktop/session/Netlink.h"

namespace quibbits::session {

class NetworkPath {
public:
    NetworkPath(EventRunLoop& loop, Bus& system);

    /// None until the first report, which comes within half a second.
    std::optional<bool> satisfied() const { return satisfied_; }

    std::function<void(bool)> onReport;

private:
    void askRoutes();
    void heard(std::string_view packet);
    void heardRoutes(bool reachable);
    void report();
    bool leadsNowhere() const;

    EventRunLoop& loop_;
    Netlink kernel_;
    BusObject manager_;
    std::map<int, unsigned> links_;  // what each interface last told of itself
    std::optional<bool> routes_;     // there is a default route that can be used
    bool asking_ = false;
    bool found_ = false;  // by the answer so far
    bool isStale_ = false;
    std::optional<bool> satisfied_;
    Timer patience_;  // with a manager that is slow to answer
    Timer settle_;
};

}  // namespace quibbits::session
