// Windows in a process of their own.

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>

#include "desktop/windows/ProcessWindows.h"
#include "desktop/windows/Spawn.h"
#include "wire/Channel.h"
#include "wire/ViewCodec.h"

namespace quibbits {
namespace {

class KnownLook final : public DesktopLook {
public:
    bool isDark() const override { return dark; }
    bool isKnown() const override { return known; }
    bool dark = false;
    bool known = true;
};

class ProcessWindowTest : public testing::Test {
protected:
    ProcessWindowTest() { setenv("QT_QPA_PLATFORM", "offscreen", 1); }

    std::unique_ptr<views::ViewWindow> open(const std::string& program) {
        ProcessWindows windows(loop_, program, look_);
        auto window =
            windows.open({.title = "Test", .size = {300, 200}}, {.content = views::Text{"Hello"}});
        window->onClose = [this] { ++closed_; };
        return window;
    }
    void letPass(Seconds seconds) {
        const Instant end = loop_.now() + seconds;
        while (loop_.now() < end) loop_.turn(end - loop_.now());
    }
    bool eventually(const std::function<bool()>& condition) {
        for (const Instant end = loop_.now() + 60; !condition();) {
            if (loop_.now() > end) return false;
            loop_.turn(0.02);
        }
        return true;
    }
    bool closesWithin(Seconds seconds) {
        const Instant end = loop_.now() + seconds;
        while (closed_ == 0 && loop_.now() < end) loop_.turn(0.1);
        return closed_ == 1;
    }

    EventRunLoop loop_;
    KnownLook look_;
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

/// A program of a few words in place of the one that shows windows.
class StandIn {
public:
    explicit StandIn(const std::string& script) {
        std::ofstream(program()) << "#!/bin/sh\n" << script << "\n";
        std::filesystem::permissions(program(), std::filesystem::perms::owner_all);
    }
    ~StandIn() { std::filesystem::remove_all(folder_); }
    std::filesystem::path program() const { return folder_ / "program"; }
    std::filesystem::path file(const char* name) const { return folder_ / name; }
    std::string contents(const char* name) const {
        std::stringstream text;
        text << std::ifstream(file(name)).rdbuf();
        return text.str();
    }

private:
    const std::filesystem::path folder_ = [] {
        std::string name = std::filesystem::temp_directory_path() / "stand-in-XXXXXX";
        return std::filesystem::path(mkdtemp(name.data()));
    }();
};

/// What it is told lies beside it, in a file called "told".
StandIn listener() {
    return StandIn("exec cat <&3 >$(dirname $0)/told");
}

/// Of this process, in bytes.
std::size_t residentMemory() {
    std::size_t all = 0;
    std::size_t resident = 0;
    std::ifstream("/proc/self/statm") >> all >> resident;
    return resident * static_cast<std::size_t>(getpagesize());
}

TEST_F(ProcessWindowTest, ReturnsTheMemoryOfWhatItShowed) {
    if (dlsym(RTLD_DEFAULT, "__asan_init")) GTEST_SKIP() << "its heap keeps what is freed";
    std::vector<std::unique_ptr<std::string>> others;  // that stay, between what goes
    const auto opened = [&] {
        auto window = open(program_);
        views::View page{.content = views::Form{}};
        for (int i = 0; i < 400; ++i) {
            const Image picture = Image::fromArgb(
                80, 80, std::vector<Argb>(6400, 0xff000000u + static_cast<Argb>(i)));
            page.children.push_back({.content = views::Picture{picture}});
            others.push_back(std::make_unique<std::string>(200, 'x'));
        }
        window->update(page);
        return window;
    };
    opened();
    letPass(1);
    const std::size_t before = residentMemory();
    auto window = opened();
    letPass(1);
    EXPECT_GT(residentMemory(), before + 5'000'000);
    window.reset();
    letPass(0.2);
    EXPECT_LT(residentMemory(), before + 1'000'000);
}

TEST_F(ProcessWindowTest, IsDarkFromTheFirstPictureAndFollowsTheDesktop) {
    const StandIn program = listener();
    look_.known = false;
    const auto window = open(program.program());
    letPass(0.3);
    EXPECT_EQ(program.contents("told"), "") << "nothing is shown before it is known";
    look_.known = look_.dark = true;
    look_.changed.emit();
    const auto isTold = [&](const char* what) {
        return eventually([&] { return program.contents("told").find(what) != std::string::npos; });
    };
    EXPECT_TRUE(isTold("\"tree\""));
    const std::string first = program.contents("told");
    EXPECT_LT(first.find("\"dark\":true"), first.find("\"tree\""));
    look_.dark = false;
    look_.changed.emit();
    EXPECT_TRUE(isTold("\"dark\":false"));
}

TEST_F(ProcessWindowTest, IsShownAtLastThoughNobodyTellsLightFromDark) {
    const StandIn program = listener();
    look_.known = false;
    const auto window = open(program.program());
    EXPECT_TRUE(
        eventually([&] { return program.contents("told").find("Hello") != std::string::npos; }));
}

TEST_F(ProcessWindowTest, KnowsWhetherItWasEverSeen) {
    const auto real = open(program_);
    EXPECT_TRUE(eventually([&] { return real->wasShown(); }));
    for (const char* program : {"/bin/true", "/nonexistent/quibbits-settings"}) {
        closed_ = 0;
        const auto window = open(program);
        EXPECT_TRUE(closesWithin(60));
        EXPECT_FALSE(window->wasShown()) << program;
    }
}

TEST_F(ProcessWindowTest, OneThatTalksNonsenseIsClosed) {
    const StandIn program("printf '\\377\\377\\377\\377\\377\\377\\377\\377' >&3; sleep 60");
    const auto window = open(program.program());
    EXPECT_TRUE(closesWithin(50));
}

TEST_F(ProcessWindowTest, OneThatDoesNotAnswerIsGivenUpWhenItIsWantedAgain) {
    const StandIn program("sleep 60");
    const auto window = open(program.program());
    for (int i = 0; i < 200; ++i) {
        window->update({.content = views::Text{std::string(10'000, 'x') + std::to_string(i)}});
    }
    letPass(0.5);
    EXPECT_EQ(closed_, 0);
    window->bringToFront();
    EXPECT_TRUE(closesWithin(50));
}

/// What a start of the real program says to whoever greets it with that, until it ends.
std::string answerTo(const Json& greeting) {
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) return "no sockets";
    const FileDescriptor ours(ends[0]);
    {
        const FileDescriptor theirs(ends[1]);
        const std::string program = std::string(QUIBBITS_BIN_DIR) + "/quibbits-settings";
        if (!spawnDetached({program}, theirs.get())) return "no program";
    }
    const std::string bytes = views::packed(greeting.dump());
    if (send(ours.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL) < 0) return "no hearing";
    const timeval patience{.tv_sec = 60, .tv_usec = 0};
    setsockopt(ours.get(), SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    std::string answer;
    std::array<char, 1024> part;
    ssize_t count = 0;
    while ((count = recv(ours.get(), part.data(), part.size(), 0)) > 0) {
        answer.append(part.data(), static_cast<std::size_t>(count));
    }
    return count == 0 ? answer : "it goes on";
}

TEST(TheWindowProgram, ShowsNothingForACompanionOfAnotherVersion) {
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    Json older;
    older.set("window", views::write(views::WindowSpec{.title = "Test", .size = {300, 200}}));
    Json newer = older;
    newer.set("protocol", views::protocolVersion + 1);
    EXPECT_EQ(answerTo(older), "");
    EXPECT_EQ(answerTo(newer), "");
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
