#pragma once
// One companion a display. The first to start holds a lock and listens at a socket that only its
// user can reach; the next ones hand it one line, take its answer and are done. Both lie in the
// runtime directory and need no message bus. What a program that was killed left behind is taken
// over: the lock is the kernel's, and the socket is made anew.

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "desktop/EventRunLoop.h"

namespace quibbits {

class SingleInstance {
public:
    enum class Outcome {
        first,       // from now on lines come here
        handedOver,  // the first one has the line
        nobody,      // none runs, and this one shall not
        unanswered,  // there is a first one, and it does not answer
        unknown,     // no place of the user's own can be had: nobody can be told of this one
    };
    struct Claim;
    /// What the first one said to a line.
    struct Told {
        Outcome outcome = Outcome::unknown;
        std::optional<std::string> answer;  // nothing from one of an older build
    };
    /// How long a line may be, without its end.
    static constexpr std::size_t longestLine = std::size_t{1} << 20;

    /// The directory of the session, or one of the user's own in /tmp. Empty where there is none
    /// that nobody else can write to.
    static std::filesystem::path usualFolder();
    /// Becomes the first of the display, or hands the line to the one that is. Waits at most a few
    /// seconds for an answer.
    static Claim claim(const std::filesystem::path& folder, const std::string& display,
                       const std::string& line);
    /// Hands a line to the one that runs on the display, and never becomes the first. Without a
    /// display that is the only one that runs, wherever it is; `unknown` where there are several.
    static Told tell(const std::filesystem::path& folder, const std::string& display,
                     const std::string& line);
    ~SingleInstance();
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;

    /// What is said to a line; empty for nothing.
    using Listener = std::function<std::string(const std::string& line)>;
    /// Hears the lines, also those that came since the claim. The loop outlives this.
    void listen(EventRunLoop& loop, Listener heard);

private:
    struct Visitor {
        FileDescriptor socket;
        std::string text;
        Subscription readable;
        Timer deadline;
    };

    SingleInstance(FileDescriptor lock, FileDescriptor socket, std::filesystem::path place)
        : lock_(std::move(lock)), socket_(std::move(socket)), place_(std::move(place)) {}
    void admit();
    void read(int number);

    FileDescriptor lock_;
    FileDescriptor socket_;
    std::filesystem::path place_;  // the socket's
    EventRunLoop* loop_ = nullptr;
    Listener heard_;
    std::map<int, Visitor> visitors_;
    Subscription arrivals_;
};

struct SingleInstance::Claim {
    Outcome outcome = Outcome::unknown;
    std::unique_ptr<SingleInstance> instance = {};  // of the first
};

}  // namespace quibbits
