#include "desktop/BackgroundThread.h"

#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <utility>

namespace quibbits {
namespace {

constexpr int niceness = 10;

/// Gives way to everything that somebody waits for. Linux has priorities by thread.
void lowerPriority() {
    setpriority(PRIO_PROCESS, static_cast<id_t>(syscall(SYS_gettid)), niceness);
}

}  // namespace

BackgroundThread::~BackgroundThread() {
    {
        const std::lock_guard held(lock_);
        waiting_.clear();
    }
    thread_.request_stop();
}

void BackgroundThread::post(Work work) {
    const std::lock_guard held(lock_);
    waiting_.push_back(std::move(work));
    if (std::exchange(running_, true)) return;
    thread_ = std::jthread([this](const std::stop_token& stop) { run(stop); });
}

void BackgroundThread::run(const std::stop_token& stop) {
    lowerPriority();
    for (;;) {
        Work work;
        {
            const std::lock_guard held(lock_);
            if (waiting_.empty() || stop.stop_requested()) {
                running_ = false;
                return;
            }
            work = std::move(waiting_.front());
            waiting_.pop_front();
        }
        work(stop);
    }
}

}  // namespace quibbits
