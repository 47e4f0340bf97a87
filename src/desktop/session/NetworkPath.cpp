#include "desktop/session/NetworkPath.h"

#include <linux/if.h>
#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

namespace quibbits::session {
namespace {

// A new connection changes several routes at once.
constexpr Seconds settling = 0.2;
constexpr Seconds managerPatience = 0.5;

/// NetworkManager's numbers of connectivity.
enum class Connectivity { unknown = 0, none = 1, portal = 2, limited = 3, full = 4 };

bool isUsableDefault(const rtmsg& route) {
    return route.rtm_dst_len == 0 && route.rtm_type == RTN_UNICAST &&
           (route.rtm_family == AF_INET || route.rtm_family == AF_INET6) &&
           (route.rtm_flags & (RTNH_F_DEAD | RTNH_F_LINKDOWN | RTM_F_CLONED)) == 0;
}

template <typename Body>
std::optional<Body> bodyOf(const nlmsghdr& header, const char* message) {
    if (header.nlmsg_len < NLMSG_LENGTH(sizeof(Body))) return std::nullopt;
    Body body;
    std::memcpy(&body, message + NLMSG_HDRLEN, sizeof body);
    return body;
}

}  // namespace

NetworkPath::NetworkPath(EventRunLoop& loop, Bus& system)
    : loop_(loop),
      kernel_(loop, NETLINK_ROUTE, RTMGRP_IPV4_ROUTE | RTMGRP_IPV6_ROUTE | RTMGRP_LINK,
              [this](std::string_view packet) { heard(packet); }),
      manager_(system, {.service = "org.freedesktop.NetworkManager",
                        .path = "/org/freedesktop/NetworkManager",
                        .interface = "org.freedesktop.NetworkManager"}) {
    manager_.onChange = [this] { report(); };
    patience_ = loop_.timer(managerPatience, [this] {
        patience_.cancel();
        report();
    });
    askRoutes();
}

void NetworkPath::askRoutes() {
    if (asking_) {
        isStale_ = true;
        return;
    }
    struct {
        nlmsghdr header;
        rtmsg body;
    } question{};
    question.header.nlmsg_len = sizeof question;
    question.header.nlmsg_type = RTM_GETROUTE;
    question.header.nlmsg_flags = NLM_F_REQUEST | NLM_F_DUMP;
    question.body.rtm_family = AF_UNSPEC;
    std::array<char, sizeof question> packet;
    std::memcpy(packet.data(), &question, sizeof question);
    found_ = false;
    isStale_ = false;
    asking_ = kernel_.send({packet.data(), packet.size()});
}

/// A packet holds whole messages: what changed, or a part of the answer about all routes.
void NetworkPath::heard(std::string_view packet) {
    bool changed = packet.empty();
    if (packet.empty()) asking_ = false;  // the rest of an answer may be lost too
    while (packet.size() >= sizeof(nlmsghdr)) {
        nlmsghdr header;
        std::memcpy(&header, packet.data(), sizeof header);
        if (header.nlmsg_len < sizeof header || header.nlmsg_len > packet.size()) break;
        const bool isAnswer = (header.nlmsg_flags & NLM_F_MULTI) != 0;
        if ((header.nlmsg_flags & NLM_F_DUMP_INTR) != 0) isStale_ = true;
        if (header.nlmsg_type == NLMSG_DONE || header.nlmsg_type == NLMSG_ERROR) {
            if (std::exchange(asking_, false)) heardRoutes(found_);
        } else if (header.nlmsg_type == RTM_NEWROUTE || header.nlmsg_type == RTM_DELROUTE) {
            const auto route = bodyOf<rtmsg>(header, packet.data());
            if (isAnswer) {
                if (route && isUsableDefault(*route)) found_ = true;
            } else if (route && route->rtm_dst_len == 0) {
                changed = true;
            }
        } else if (header.nlmsg_type == RTM_NEWLINK) {
            // A link that goes down takes its routes along without a word of them.
            if (const auto link = bodyOf<ifinfomsg>(header, packet.data())) {
                const unsigned carries = link->ifi_flags & (IFF_UP | IFF_RUNNING);
                const auto [known, isNew] = links_.try_emplace(link->ifi_index, carries);
                if (isNew || std::exchange(known->second, carries) != carries) changed = true;
            }
        } else if (header.nlmsg_type == RTM_DELLINK) {
            if (const auto link = bodyOf<ifinfomsg>(header, packet.data())) {
                links_.erase(link->ifi_index);
                changed = true;
            }
        }
        packet.remove_prefix(std::min<std::size_t>(NLMSG_ALIGN(header.nlmsg_len), packet.size()));
    }
    if (changed) settle_ = loop_.timer(settling, [this] { askRoutes(); });
}

void NetworkPath::heardRoutes(bool reachable) {
    if (isStale_) return askRoutes();
    routes_ = reachable;
    report();
}

/// Where the manager checks and cannot reach what it checks with, there may be a way all the same,
/// and beside it interfaces that it has nothing to do with.
bool NetworkPath::leadsNowhere() const {
    if (manager_.state() != BusObject::State::present) return false;
    const auto word = valueOf<std::int64_t>(manager_.properties(), "Connectivity");
    const auto own = valueOf<std::string>(manager_.properties(), "PrimaryConnection");
    return word == static_cast<int>(Connectivity::none) && own && *own != "/";
}

void NetworkPath::report() {
    // The first report waits for both, or a slow manager would look like a change.
    if (!satisfied_ && patience_ && manager_.state() == BusObject::State::asking) return;
    if (!routes_) return;
    const bool now = *routes_ && !leadsNowhere();
    if (now == satisfied_) return;
    satisfied_ = now;
    if (onReport) onReport(now);
}

}  // namespace quibbits::session
