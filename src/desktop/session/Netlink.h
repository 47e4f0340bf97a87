#pragma once
// A socket to the kernel's own news, heard on the run loop.

#include <cstdint>
#include <functional>
#include <string_view>

#include "desktop/EventRunLoop.h"
#include "platform/Lifetime.h"

namespace quibbits::session {

class Netlink {
public:
    /// Hears one packet; an empty one stands for news that was lost.
    using Heard = std::function<void(std::string_view packet)>;

    /// Joins the protocol's multicast groups (a mask). Where the kernel refuses, nothing is heard.
    Netlink(EventRunLoop& loop, int protocol, std::uint32_t groups, Heard heard);
    Netlink(const Netlink&) = delete;
    Netlink& operator=(const Netlink&) = delete;

    bool isOpen() const { return static_cast<bool>(socket_); }
    bool send(std::string_view packet);

private:
    void receive();

    FileDescriptor socket_;
    Heard heard_;
    Subscription watch_;
    Lifetime lifetime_;
};

}  // namespace quibbits::session
