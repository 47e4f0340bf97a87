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
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string_view>
#include <vector>

namespace quibbits {
namespace {

constexpr std::size_t mostVisitors = 8;
constexpr Seconds patienceWithVisitors = 2;
constexpr int patienceWithTheFirst = 3000;  // milliseconds
constexpr int attempts = 20;                // to reach one that is just starting
constexpr std::string_view filePrefix = "quibbits";
constexpr useconds_t betweenAttempts = 50'000;
// Said at once to whoever says a line; behind it come the length of the answer, a line of its own,
// and the answer.
constexpr std::string_view heardYou = "ok\n";
constexpr std::size_t longestAnswer = std::size_t{1} << 20;

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
    return std::string(filePrefix) + name.substr(0, 60);
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

using Told = SingleInstance::Told;
using Outcome = SingleInstance::Outcome;

bool sendAll(int socket, std::string_view bytes) {
    while (!bytes.empty()) {
        const auto sent = send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent > 0) {
            bytes.remove_prefix(static_cast<std::size_t>(sent));
        } else if (errno != EINTR && (errno != EAGAIN || !waitUntil(socket, POLLOUT))) {
            return false;
        }
    }
    return true;
}

/// Everything that is said until the other end closes; nothing when that takes too long.
std::optional<std::string> everythingFrom(int socket) {
    std::string all;
    std::array<char, 4096> bytes;
    while (all.size() <= longestAnswer) {
        if (!waitUntil(socket, POLLIN)) return std::nullopt;
        const auto count = recv(socket, bytes.data(), bytes.size(), 0);
        if (count < 0 && (errno == EAGAIN || errno == EINTR)) continue;
        if (count <= 0) break;  // one that ends just then has said what it had to say
        all.append(bytes.data(), static_cast<std::size_t>(count));
    }
    return all;
}

/// The answer behind its length; nothing when it is cut short or there is none.
std::optional<std::string> answerIn(std::string_view text) {
    std::size_t length = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), length);
    if (error != std::errc{} || end == text.data() + text.size() || *end != '\n') return {};
    const std::string_view rest(end + 1, text.data() + text.size());
    if (rest.size() != length) return {};
    return std::string(rest);
}

/// Says the line and waits for what is said to it. Nothing when nobody listens there, or when who
/// listened is gone without having heard it.
std::optional<Told> say(const std::filesystem::path& place, const std::string& line) {
    const Told unanswered{.outcome = Outcome::unanswered, .answer = {}};
    const auto address = addressOf(place);
    const FileDescriptor socket = newSocket();
    if (!address || !socket) return unanswered;
    if (connect(socket.get(), reinterpret_cast<const sockaddr*>(&*address), sizeof *address) != 0) {
        return std::nullopt;
    }
    if (!isSameUser(socket.get())) return unanswered;
    if (!sendAll(socket.get(), line + "\n")) return unanswered;
    const auto heard = everythingFrom(socket.get());
    if (!heard) return unanswered;
    if (heard->empty()) return std::nullopt;
    if (!heard->starts_with(heardYou)) return unanswered;
    return Told{.outcome = Outcome::handedOver, .answer = answerIn(heard->substr(heardYou.size()))};
}

/// Whether a program holds the lock at this moment.
bool isHeld(const std::filesystem::path& lock) {
    const FileDescriptor file(open(lock.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW));
    return file && flock(file.get(), LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK;
}

/// What the files of those who run are named, without their endings.
std::vector<std::string> runningIn(const std::filesystem::path& folder) {
    std::vector<std::string> names;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
        const auto name = entry.path().stem().string();
        const bool isLock = entry.path().extension() == ".lock" && name.starts_with(filePrefix);
        if (isLock && isHeld(entry.path())) names.push_back(name);
    }
    return names;
}

bool isLine(std::string_view text) {
    return !text.empty() && text.size() <= SingleInstance::longestLine &&
           std::ranges::none_of(text, [](unsigned char c) { return c < ' ' || c == 0x7f; });
}

}  // namespace

std::filesystem::path SingleInstance::usualFolder() {
    if (const char* session = std::getenv("XDG_RUNTIME_DIR"); session && isOwn(session)) {
        return session;
    }
    // A timer or a login from elsewhere lacks the variable.
    const std::filesystem::path usual = "/run/user/" + std::to_string(geteuid());
    if (isOwn(usual)) return usual;
    const std::filesystem::path own = "/tmp/quibbits-" + std::to_string(geteuid());
    mkdir(own.c_str(), 0700);
    return isOwn(own) ? own : std::filesystem::path();
}

SingleInstance::Claim SingleInstance::claim(const std::filesystem::path& folder,
                                            const std::string& display, const std::string& line) {
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
        if (const auto told = say(place, line)) return {.outcome = told->outcome};
        usleep(betweenAttempts);  // it is about to listen, or about to end
    }
    return {.outcome = Outcome::unanswered};
}

Told SingleInstance::tell(const std::filesystem::path& folder, const std::string& display,
                          const std::string& line) {
    if (folder.empty() || !isOwn(folder)) return {.outcome = Outcome::nobody, .answer = {}};
    std::vector<std::string> names{fileNameOf(display)};
    if (display.empty()) names = runningIn(folder);
    if (names.size() > 1) return {};
    for (int attempt = 0; attempt < attempts && !names.empty(); ++attempt) {
        if (const auto told = say(folder / (names.front() + ".socket"), line)) return *told;
        if (!isHeld(folder / (names.front() + ".lock"))) break;
        usleep(betweenAttempts);
    }
    return {.outcome = Outcome::nobody, .answer = {}};
}

SingleInstance::~SingleInstance() {
    unlink(place_.c_str());  // while the lock still keeps others from making their own
}

void SingleInstance::listen(EventRunLoop& loop, Listener heard) {
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

/// Takes what a visitor says. After one line, at its end or with anything that is no line, it has
/// been heard.
void SingleInstance::read(int number) {
    const auto found = visitors_.find(number);
    if (found == visitors_.end()) return;
    Visitor& visitor = found->second;
    std::array<char, 4096> bytes;
    const auto count = recv(number, bytes.data(), bytes.size(), 0);
    if (count < 0 && (errno == EAGAIN || errno == EINTR)) return;
    if (count > 0) visitor.text.append(bytes.data(), static_cast<std::size_t>(count));
    const auto end = visitor.text.find('\n');
    if (count > 0 && end == std::string::npos && visitor.text.size() <= longestLine) return;
    const std::string line = end == std::string::npos ? "" : visitor.text.substr(0, end);
    visitor.readable.reset();
    const FileDescriptor socket = std::move(visitor.socket);
    visitors_.erase(found);
    const auto heard = heard_;
    if (!isLine(line) || !heard) return;
    send(socket.get(), heardYou.data(), heardYou.size(), MSG_NOSIGNAL);
    const std::string answer = heard(line);
    const std::string whole = std::to_string(answer.size()) + "\n" + answer;
    // What does not fit into the socket is cut, which the other end sees.
    send(socket.get(), whole.data(), whole.size(), MSG_NOSIGNAL);
}

}  // namespace quibbits
