#include "body/Steps.h"

#include <cassert>
#include <memory>

namespace quibbits {

namespace {

struct Chain {
    std::vector<Step> steps;
    Done then;
};

void advance(const std::shared_ptr<Chain>& chain, std::size_t next) {
    if (next == chain->steps.size()) {
        if (const Done then = std::move(chain->then)) then();
        return;
    }
    // A step may end its chain's owner, so it runs from the stack.
    assert(chain->steps[next] && "a step has called its completion twice");
    const Step step = std::move(chain->steps[next]);
    step([chain, next] { advance(chain, next + 1); });
}

}  // namespace

void run(std::vector<Step> steps, Done then) {
    advance(std::make_shared<Chain>(Chain{std::move(steps), std::move(then)}), 0);
}

}  // namespace quibbits
