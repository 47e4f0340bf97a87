#pragma once
// Chains of steps: the one way in which anything happens one after another.

#include <functional>
#include <vector>

namespace quibbits {

/// What a step calls when it has finished.
using Done = std::function<void()>;
/// Part of a routine: starts something and calls its closure, once, when that has ended. A step
/// that is cut off never calls it, which ends its whole chain.
using Step = std::function<void(Done)>;

/// Runs the steps strictly one after another and then `then`; with no steps, `then` at once.
void run(std::vector<Step> steps, Done then);

}  // namespace quibbits
