#pragma once
// Work beside the main thread: one job after another, in order, at a low priority. A job touches
// nothing that the main thread touches; it hands its result back with RunLoop::post.

#include <functional>
#include <stop_token>

namespace quibbits {

/// A job asks its token now and then and returns soon after it was told to stop, which happens at
/// the end of the program only.
using Work = std::function<void(const std::stop_token&)>;

class WorkQueue {
public:
    virtual ~WorkQueue() = default;
    virtual void post(Work work) = 0;
};

}  // namespace quibbits
