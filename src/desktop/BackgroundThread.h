#pragma once
// The queue of work beside the main thread. Its thread exists only while there is work, so an idle
// program has none, and runs at a low priority.

#include <deque>
#include <mutex>
#include <thread>

#include "platform/WorkQueue.h"

namespace quibbits {

class BackgroundThread final : public WorkQueue {
public:
    BackgroundThread() = default;
    /// Tells the job at hand to stop, waits for it and drops the others.
    ~BackgroundThread() override;
    BackgroundThread(const BackgroundThread&) = delete;
    BackgroundThread& operator=(const BackgroundThread&) = delete;

    void post(Work work) override;

private:
    void run(const std::stop_token& stop);

    std::mutex lock_;
    std::deque<Work> waiting_;
    bool running_ = false;  // a thread takes what is waiting
    std::jthread thread_;
};

}  // namespace quibbits
