#include "desktop/session/Netlink.h"

#include <linux/netlink.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <utility>

namespace quibbits::session {
namespace {

constexpr int packetsAtOnce = 64;

FileDescriptor openSocket(int protocol, std::uint32_t groups) {
    FileDescriptor socket(::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC | SOCK_NONBLOCK, protocol));
    sockaddr_nl address{};
    address.nl_family = AF_NETLINK;
    address.nl_groups = groups;
    if (!socket ||
        bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        return {};
    }
    return socket;
}

}  // namespace

Netlink::Netlink(EventRunLoop& loop, int protocol, std::uint32_t groups, Heard heard)
    : socket_(openSocket(protocol, groups)), heard_(std::move(heard)) {
    if (socket_) watch_ = loop.watch(socket_.get(), [this] { receive(); });
}

bool Netlink::send(std::string_view packet) {
    sockaddr_nl kernel{};
    kernel.nl_family = AF_NETLINK;
    return socket_ && sendto(socket_.get(), packet.data(), packet.size(), MSG_DONTWAIT,
                             reinterpret_cast<const sockaddr*>(&kernel),
                             sizeof kernel) == static_cast<ssize_t>(packet.size());
}

void Netlink::receive() {
    const Heard heard = heard_;  // the listener may close the socket
    bool ended = false;
    auto alive = lifetime_.guard([] { return true; });
    alignas(nlmsghdr) std::array<char, 32768> bytes;
    for (int i = 0; i < packetsAtOnce && !ended; ++i) {
        sockaddr_nl sender{};
        iovec part{bytes.data(), bytes.size()};
        msghdr message{};
        message.msg_name = &sender;
        message.msg_namelen = sizeof sender;
        message.msg_iov = &part;
        message.msg_iovlen = 1;
        const ssize_t length = recvmsg(socket_.get(), &message, MSG_DONTWAIT);
        if (length < 0 && errno != ENOBUFS) return;
        if (length >= 0 && sender.nl_pid != 0) continue;  // not from the kernel
        const bool whole = length > 0 && (message.msg_flags & MSG_TRUNC) == 0;
        heard(whole ? std::string_view(bytes.data(), static_cast<std::size_t>(length))
                    : std::string_view());
        ended = !alive();
    }
}

}  // namespace quibbits::session
