#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "sim/VirtualRunLoop.h"
#include "support/EndingLoop.h"

namespace quibbits {
namespace {

TEST(AVirtualLoop, MayEndWhileWhatItsJobsHoldStillCancelsAndAddsOthers) {
    expectToEndWithBusyJobs([] { return std::make_unique<VirtualRunLoop>(Date{0}); });
}

TEST(AVirtualLoop, RunsARepeatingJobBehindWhatWasScheduledSinceItsLastRun) {
    VirtualRunLoop loop(Date{0});
    std::string order;
    const Timer repeating = loop.every(1, [&] { order += 'a'; });
    loop.at(2, [&] { order += 'b'; });
    loop.advance(1.5);
    loop.at(3, [&] { order += 'c'; });
    loop.at(2, [&] { order += 'd'; });
    loop.advance(2);
    EXPECT_EQ(order, "abadca") << "as on a real computer";
}

}  // namespace
}  // namespace quibbits
