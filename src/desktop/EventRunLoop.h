#pragma once
// The run loop of the resident program: jobs by due time and file descriptors, on one thread. It
// sleeps in the kernel until the first job must run or a descriptor is ready, so a program with
// nothing to do never wakes. Made and run on the main thread, before any other thread starts.

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <unordered_map>
#include <vector>

#include "desktop/files/FileDescriptor.h"
#include "platform/JobQueue.h"
#include "platform/RunLoop.h"
#include "platform/Signal.h"

namespace quibbits {

class EventRunLoop final : public RunLoop {
public:
    EventRunLoop();
    ~EventRunLoop() override;
    EventRunLoop(const EventRunLoop&) = delete;
    EventRunLoop& operator=(const EventRunLoop&) = delete;

    Instant now() const override;
    Date date() const override;
    /// By the user's time zone as it is set at this moment.
    LocalTime localTime(Date date) const override;
    void post(Job job) override;

    /// Runs the job whenever the descriptor can be read or has ended, until the handle ends. One
    /// watch a descriptor; the descriptor must stay open as long as it is watched, and the loop
    /// must outlive the handle.
    [[nodiscard]] Subscription watch(int descriptor, Job ready);
    /// The same for writing.
    [[nodiscard]] Subscription watchWritable(int descriptor, Job ready);
    /// The same for urgent news alone, which the kernel's own files have where a change is to be
    /// told.
    [[nodiscard]] Subscription watchUrgent(int descriptor, Job ready);
    /// Runs the job each time the loop is about to wait: the place to send what is buffered and to
    /// take what was read ahead. What it posts still runs before the wait.
    [[nodiscard]] Subscription beforeWaiting(Job job);

    /// Runs jobs until quit.
    void run();
    /// Waits for the next thing, at most so long, and runs what is due. Tests turn it by hand.
    void turn(Seconds longestWait);
    /// Ends run after the job at hand. Safe from any thread.
    void quit();
    /// Drops all that is pending. What a job holds may cancel or add others at its end. For the end
    /// of the program, while what the jobs hold is still there.
    void dropJobs();
    /// Makes SIGTERM, SIGINT and SIGHUP end run as quit does. They stay blocked in this process,
    /// so a child process must unblock them.
    void quitOnSignals();

    /// How often the loop came back from waiting.
    std::uint64_t wakes() const { return wakes_; }

protected:
    std::uint64_t schedule(Schedule when, Job job) override;
    void cancel(std::uint64_t id) override { jobs_.cancel(id); }

private:
    struct Watch {
        int descriptor = -1;
        Job ready;
    };

    Subscription watchFor(int descriptor, std::uint32_t events, Job ready);
    void takePosted();
    void runDue();
    void waitFor(Seconds longest);

    FileDescriptor epoll_;
    FileDescriptor bell_;     // rung by other threads
    FileDescriptor signals_;  // none until quitOnSignals
    std::atomic<bool> quitting_{false};

    JobQueue jobs_;

    const std::thread::id thread_ = std::this_thread::get_id();
    std::mutex postedLock_;
    std::vector<Job> posted_;

    std::unordered_map<std::uint64_t, std::shared_ptr<Watch>> watches_;
    std::uint64_t lastWatch_ = 0;
    Signal<> aboutToWait_;
    Subscription bellWatch_;
    Subscription signalWatch_;
    std::uint64_t wakes_ = 0;
};

}  // namespace quibbits
