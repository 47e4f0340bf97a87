#include "desktop/SingleInstance.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string_view>

namespace quibbits {
namespace {

constexpr std::size_t longestWord = 200;
constexpr std::size_t mostVisitors = 8;
constexpr Seconds patienceWithVisitors = 2;
constexpr int patienceWithTheFirst = 3000;  // milliseconds
constexpr int attempts = 20;                // to reach one that is just starting
constexpr useconds_t betweenAttempts = 50'000;
constexpr std::string_view answer = "ok\n";

/// A directory of this user that nobody else can write to.
bool isOwn(const std::filesystem::path& folder) {
    struct stat status {};
    return lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
           status.st_uid == geteuid() && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

/// The display without its screen, as a part of a file's name.
std::string fileNameOf(const std::string& display) {
    const auto colon = display.rfind(':');
    const auto dot = colon == std::string::npos ? colon : display.find('.', colon);
    std::string name = display.substr(0, dot);
    for (char& c : name) {
        const bool plain = (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') ||
                           (c >= 'A' && c <= 'Z') || c == '-' || c == '_' || c == '.';
        if (!plain) c = '_';
    }
    return "quibbits" + name.substr(0, 60);
}

std::optional<sockaddr_un> addressOf(const std::filesystem::path& place) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const auto& path = place.native();
    if (path.size() >= sizeof address.sun_path) return std::nullopt;
    std::memcpy(address.sun_path, path.c_str(), path.size());
    return address;
}

bool isSameUser(int socket) {
    ucred other{};
    socklen_t length = sizeof other;
    return getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &other, &length) == 0 &&
           other.uid == geteuid();
}

FileDescriptor newSocket() {
    return FileDescriptor(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
}

FileDescriptor listenAt(const std::filesystem::path& place) {
    const auto address = addressOf(place);
    FileDescriptor socket = newSocket();
    if (!address || !socket) return {};
    unlink(place.c_str());  // of one that was killed
    const mode_t before = umask(0177);
    const bool bound =
        bind(socket.get(), reinterpret_cast<const sockaddr*>(&*address), sizeof *address) == 0;
    umask(before);
    if (!bound || ::listen(socket.get(), static_cast<int>(mostVisitors)) != 0) return {};
    return socket;
}

bool waitUntil(int socket, short events) {
    pollfd wanted{.fd = socket, .events = events, .revents = 0};
    return poll(&wanted, 1, patienceWithTheFirst) == 1;
}

/// Says the word and waits until it was heard. Nothing when nobody listens there.
std::optional<bool> tell(const std::filesystem::path& place, const std::string& word) {
    const auto address = addressOf(place);
    const FileDescriptor socket = newSocket();
    if (!address || !socket) return false;
    if (connect(socket.get(), reinterpret_cast<const sockaddr*>(&*address), sizeof *address) != 0) {
        return std::nullopt;
    }
    if (!isSameUser(socket.get())) return false;
    const std::string line = word.substr(0, longestWord) + "\n";
    if (send(socket.get(), line.data(), line.size(), MSG_NOSIGNAL) !=
        static_cast<ssize_t>(line.size())) {
        return false;
    }
    std::array<char, answer.size()> heard{};
    if (!waitUntil(socket.get(), POLLIN)) return false;
    return recv(socket.get(), heard.data(), heard.size(), 0) ==
               static_cast<ssize_t>(answer.size()) &&
           std::string_view(heard.data(), heard.size()) == answer;
}

bool isWord(std::string_view text) {
    return !text.empty() && text.size() <= longestWord &&
           std::ranges::none_of(text, [](unsigned char c) { return c < ' ' || c == 0x7f; });
}

}  // namespace

std::filesystem::path SingleInstance::usualFolder() {
    if (const char* session = std::getenv("XDG_RUNTIME_DIR"); session && isOwn(session)) {
        return session;
    }
    const std::filesystem::path own = "/tmp/quibbits-" + std::to_string(geteuid());
    mkdir(own.c_str(), 0700);
    return isOwn(own) ? own : std::filesystem::path();
}

SingleInstance::Claim SingleInstance::claim(const std::filesystem::path& folder,
                                            const std::string& display, const std::string& word) {
    if (folder.empty() || !isOwn(folder)) return {};
    const std::string name = fileNameOf(display);
    const auto place = folder / (name + ".socket");
    const auto lockPlace = folder / (name + ".lock");
    FileDescriptor lock(open(lockPlace.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (!lock) return {};
    for (int attempt = 0; attempt < attempts; ++attempt) {
        if (flock(lock.get(), LOCK_EX | LOCK_NB) == 0) {
            FileDescriptor socket = listenAt(place);
            if (!socket) return {};
            return {.outcome = Outcome::first,
                    .instance = std::unique_ptr<SingleInstance>(
                        new SingleInstance(std::move(lock), std::move(socket), place))};
        }
        if (errno != EWOULDBLOCK) return {};
        if (const auto told = tell(place, word)) {
            return {.outcome = *told ? Outcome::handedOver : Outcome::unanswered, .instance = {}};
        }
        usleep(betweenAttempts);  // it is about to listen, or about to end
    }
    return {.outcome = Outcome::unanswered, .instance = {}};
}

SingleInstance::~SingleInstance() {
    unlink(place_.c_str());  // while the lock still keeps others from making their own
}

void SingleInstance::listen(EventRunLoop& loop, std::function<void(const std::string&)> heard) {
    loop_ = &loop;
    heard_ = std::move(heard);
    arrivals_ = loop.watch(socket_.get(), [this] { admit(); });
}

void SingleInstance::admit() {
    FileDescriptor socket(accept4(socket_.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
    if (!socket || !isSameUser(socket.get()) || visitors_.size() >= mostVisitors) return;
    const int number = socket.get();
    Visitor& visitor = visitors_[number];
    visitor.socket = std::move(socket);
    visitor.readable = loop_->watch(number, [this, number] { read(number); });
    visitor.deadline =
        loop_->timer(patienceWithVisitors, [this, number] { visitors_.erase(number); });
}

/// Takes what a visitor says. After one line, at its end or with anything that is no word, it has
/// been heard.
void SingleInstance::read(int number) {
    const auto found = visitors_.find(number);
    if (found == visitors_.end()) return;
    Visitor& visitor = found->second;
    std::array<char, longestWord + 1> bytes{};
    const auto count = recv(number, bytes.data(), bytes.size(), 0);
    if (count < 0 && (errno == EAGAIN || errno == EINTR)) return;
    if (count > 0) visitor.text.append(bytes.data(), static_cast<std::size_t>(count));
    const auto end = visitor.text.find('\n');
    if (count > 0 && end == std::string::npos && visitor.text.size() <= longestWord) return;
    const std::string word = end == std::string::npos ? "" : visitor.text.substr(0, end);
    const bool isHeard = isWord(word);
    if (isHeard) send(number, answer.data(), answer.size(), MSG_NOSIGNAL);
    visitor.readable.reset();
    visitors_.erase(found);
    const auto heard = heard_;
    if (isHeard && heard) heard(word);
}

}  // namespace quibbits
