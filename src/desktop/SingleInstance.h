#pragma once
// One companion a display. The first to start holds a lock and listens at a socket that only its
// user can reach; the next ones hand it one short word and are done. Both lie in the runtime
// directory and need no message bus. What a program that was killed left behind is taken over:
// the lock is the kernel's, and the socket is made anew.

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>

#include "desktop/EventRunLoop.h"

namespace quibbits {

class SingleInstance {
public:
    enum class Outcome {
        first,       // from now on words come here
        handedOver,  // the first one has the word
        unanswered,  // there is a first one, and it does not answer
        unknown,     // no place of the user's own can be had: nobody can be told of this one
    };
    struct Claim;

    /// The directory of the session, or one of the user's own in /tmp. Empty where there is none
    /// that nobody else can write to.
    static std::filesystem::path usualFolder();
    /// Becomes the first of the display, or hands the word to the one that is. A word is up to 200
    /// bytes of one line. Waits at most a few seconds for an answer.
    static Claim claim(const std::filesystem::path& folder, const std::string& display,
                       const std::string& word);
    ~SingleInstance();
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;

    /// Hears the words, also those that came since the claim. The loop outlives this.
    void listen(EventRunLoop& loop, std::function<void(const std::string&)> heard);

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
    std::function<void(const std::string&)> heard_;
    std::map<int, Visitor> visitors_;
    Subscription arrivals_;
};

struct SingleInstance::Claim {
    Outcome outcome = Outcome::unknown;
    std::unique_ptr<SingleInstance> instance;  // of the first
};

}  // namespace quibbits
