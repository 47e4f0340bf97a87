// Windows in a process of their own.

#include <gtest/gtest.h>

#include <cstdlib>

#include "desktop/windows/ProcessWindows.h"
#include "desktop/windows/Spawn.h"

namespace quibbits {
namespace {

class ProcessWindowTest : public testing::Test {
protected:
    ProcessWindowTest() { setenv("QT_QPA_PLATFORM", "offscreen", 1); }

    std::unique_ptr<views::ViewWindow> open(const std::string& program) {
        ProcessWindows windows(loop_, program);
        auto window =
            windows.open({.title = "Test", .size = {300, 200}}, {.content = views::Text{"Hello"}});
        window->onClose = [this] { ++closed_; };
        return window;
    }
    void letPass(Seconds seconds) {
        const Instant end = loop_.now() + seconds;
        while (loop_.now() < end) loop_.turn(end - loop_.now());
    }
    bool closesWithin(Seconds seconds) {
        const Instant end = loop_.now() + seconds;
        while (closed_ == 0 && loop_.now() < end) loop_.turn(0.1);
        return closed_ == 1;
    }

    EventRunLoop loop_;
    int closed_ = 0;
    const std::string program_ = std::string(QUIBBITS_BIN_DIR) + "/quibbits-settings";
};

TEST_F(ProcessWindowTest, StaysOpenThroughUpdatesOfAnySize) {
    const auto window = open(program_);
    views::View large{.content = views::Form{}};
    for (int i = 0; i < 20; ++i) {
        const Image picture = Image::fromArgb(
            300, 300, std::vector<Argb>(90'000, 0xff000000u + static_cast<Argb>(i)));
        large.children.push_back({.content = views::Picture{picture}});
    }
    window->update(large);  // more than a socket takes at once
    window->update({.content = views::Text{"Again"}});
    window->bringToFront();
    letPass(2);
    EXPECT_EQ(closed_, 0);
}

TEST_F(ProcessWindowTest, EndsWithItsProcessAndMayBeLetGoOfThen) {
    // One that ends at once, and one that cannot even start.
    for (const char* program : {"/bin/true", "/nonexistent/quibbits-settings"}) {
        closed_ = 0;
        auto window = open(program);
        window->onClose = [this, &window] {
            ++closed_;
            window.reset();
        };
        EXPECT_EQ(closed_, 0) << "never from within opening it";
        EXPECT_TRUE(closesWithin(60)) << program;
        EXPECT_EQ(window, nullptr);
        letPass(0.1);
    }
}

TEST(AStartedProgram, InheritsOneDescriptorAndNobodyWaitsForIt) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    FileDescriptor ours(ends[0]);
    FileDescriptor theirs(ends[1]);
    EXPECT_TRUE(spawnDetached({"sh", "-c", "echo $(ls /proc/self/fd | wc -l) >&3"}, theirs.get()));
    theirs = FileDescriptor();
    char text[16] = {};
    ASSERT_GT(read(ours.get(), text, sizeof text - 1), 0);
    // The standard ones, the inherited one, and the folder that is being listed.
    EXPECT_LE(std::atoi(text), 5);
    EXPECT_FALSE(spawnDetached({"/nonexistent/program"}));
}

}  // namespace
}  // namespace quibbits
