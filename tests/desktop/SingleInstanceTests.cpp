#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>
#include <thread>

#include "TemporaryFolder.h"
#include "desktop/SingleInstance.h"

namespace quibbits {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Outcome = SingleInstance::Outcome;

struct SingleInstanceTest : testing::Test {
    void beFirst(const std::string& display = ":7") {
        auto claim = SingleInstance::claim(folder.path(), display, "open");
        ASSERT_EQ(claim.outcome, Outcome::first);
        instance = std::move(claim.instance);
        instance->listen(loop, [this](const std::string& word) {
            words.push_back(word);
            return reply;
        });
    }
    /// What another program does, on a thread of its own while the first one lives.
    template <typename Work>
    auto elsewhere(Work work) {
        std::optional<decltype(work())> result;
        std::thread second([&] {
            auto made = work();
            loop.post([&, made] { result = made; });
        });
        const Instant end = loop.now() + 60;
        while (!result && loop.now() < end) loop.turn(0.05);
        second.join();
        return result.value_or(decltype(work()){});
    }
    Outcome startAgain(const std::string& word, const std::string& display = ":7") {
        return elsewhere([&] {
                   return std::optional(
                       SingleInstance::claim(folder.path(), display, word).outcome);
               })
            .value_or(Outcome::unknown);
    }
    SingleInstance::Told tell(const std::string& line, const std::string& display = ":7") {
        return elsewhere([&] { return SingleInstance::tell(folder.path(), display, line); });
    }
    std::filesystem::path socketPlace() const { return folder / "quibbits_7.socket"; }
    FileDescriptor connect() const {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::strncpy(address.sun_path, socketPlace().c_str(), sizeof address.sun_path - 1);
        FileDescriptor made(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
        EXPECT_EQ(::connect(made.get(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
        return made;
    }
    static void say(const FileDescriptor& visitor, const std::string& text) {
        EXPECT_EQ(send(visitor.get(), text.data(), text.size(), MSG_NOSIGNAL),
                  static_cast<ssize_t>(text.size()));
    }
    void turnFor(Seconds time) {
        for (const Instant end = loop.now() + time; loop.now() < end;) loop.turn(0.02);
    }

    TemporaryFolder folder;
    EventRunLoop loop;
    std::unique_ptr<SingleInstance> instance;
    std::vector<std::string> words;
    std::string reply;
};

TEST_F(SingleInstanceTest, TheSecondHandsItsWordToTheFirst) {
    beFirst();
    EXPECT_EQ(startAgain("open"), Outcome::handedOver);
    EXPECT_EQ(startAgain("quibbits://celebrate", ":7.0"), Outcome::handedOver);
    EXPECT_EQ(startAgain("quibbits://grüße an alle"), Outcome::handedOver);
    EXPECT_THAT(words, ElementsAre("open", "quibbits://celebrate", "quibbits://grüße an alle"));
    EXPECT_EQ(startAgain("open", ":8"), Outcome::first) << "another display";
    struct stat status {};
    ASSERT_EQ(stat(socketPlace().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600U);
    instance.reset();
    beFirst();
}

TEST_F(SingleInstanceTest, WhatAKilledOneLeftBehindIsTakenOver) {
    beFirst();
    const auto copy = folder / "copy";
    std::filesystem::rename(socketPlace(), copy);
    instance.reset();  // its lock is gone, as at a kill
    std::filesystem::rename(copy, socketPlace());
    beFirst();
    EXPECT_EQ(startAgain("open"), Outcome::handedOver);
    EXPECT_THAT(words, ElementsAre("open"));
}

TEST_F(SingleInstanceTest, OneThatHangsIsToldApart) {
    auto claim = SingleInstance::claim(folder.path(), ":7", "open");
    ASSERT_EQ(claim.outcome, Outcome::first);
    EXPECT_EQ(startAgain("open"), Outcome::unanswered) << "nobody listens at its socket";
}

TEST_F(SingleInstanceTest, BadVisitorsHarmNothing) {
    beFirst();
    std::vector<FileDescriptor> visitors;
    for (const std::string& text :
         {std::string("\n"), std::string("tab\t\n"), std::string("\x01\x02\xff\n"),
          std::string("no end"), std::string("tab\t\nopen\n")}) {
        visitors.push_back(connect());
        say(visitors.back(), text);
        turnFor(0.05);
    }
    visitors.push_back(connect());
    visitors.back() = {};  // gone without a word
    turnFor(0.05);
    EXPECT_THAT(words, IsEmpty());
    EXPECT_EQ(startAgain("open"), Outcome::handedOver);

    for (int i = 0; i < 20; ++i) {
        visitors.push_back(connect());
        turnFor(0.01);
    }
    // Those who hang are sent away.
    const Instant end = loop.now() + 60;
    auto outcome = Outcome::unanswered;
    while (outcome == Outcome::unanswered && loop.now() < end) outcome = startAgain("open");
    EXPECT_EQ(outcome, Outcome::handedOver);
    const auto slow = connect();
    say(slow, "op");
    turnFor(0.1);
    say(slow, "en\n");
    while (words.size() < 3 && loop.now() < end) loop.turn(0.02);
    EXPECT_THAT(words, ElementsAre("open", "open", "open"));
}

TEST_F(SingleInstanceTest, APlaceThatOthersCanWriteToIsNotUsed) {
    std::filesystem::permissions(folder.path(), std::filesystem::perms::all);
    EXPECT_EQ(SingleInstance::claim(folder.path(), ":7", "open").outcome, Outcome::unknown);
    EXPECT_EQ(SingleInstance::claim({}, ":7", "open").outcome, Outcome::unknown);
    EXPECT_EQ(SingleInstance::claim(folder / "missing", ":7", "open").outcome, Outcome::unknown);
    std::filesystem::permissions(folder.path(), std::filesystem::perms::owner_all);
    write(folder / "elsewhere", "");
    std::filesystem::create_symlink(folder / "elsewhere", folder / "quibbits_7.lock");
    EXPECT_EQ(SingleInstance::claim(folder.path(), ":7", "open").outcome, Outcome::unknown);
}

}  // namespace
}  // namespace quibbits
