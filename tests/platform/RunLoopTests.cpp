#include <gtest/gtest.h>

#include <memory>

#include "sim/VirtualRunLoop.h"
#include "support/EndingLoop.h"

namespace quibbits {
namespace {

TEST(AVirtualLoop, MayEndWhileWhatItsJobsHoldStillCancelsAndAddsOthers) {
    expectToEndWithBusyJobs([] { return std::make_unique<VirtualRunLoop>(Date{0}); });
}

}  // namespace
}  // namespace quibbits
