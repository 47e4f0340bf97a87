// What the disk and the kernel tell: folders and what changes in them, files side by side, work
// beside the main thread.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <set>
#include <thread>

#include "TemporaryFolder.h"
#include "desktop/BackgroundThread.h"
#include "desktop/FolderWatch.h"
#include "desktop/files/DiskFiles.h"

namespace quibbits {
namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr Seconds patience = 60;

void turnFor(EventRunLoop& loop, Seconds time) {
    for (const Instant end = loop.now() + time; loop.now() < end;) loop.turn(0.01);
}

bool eventually(EventRunLoop& loop, const std::function<bool()>& condition) {
    for (const Instant end = loop.now() + patience; !condition();) {
        if (loop.now() > end) return false;
        loop.turn(0.01);
    }
    return true;
}

TEST(AFolderWatch, TellsWhatAppearsIsWrittenMovedAndGone) {
    TemporaryFolder folder;
    write(folder / "there.txt", "1");
    EventRunLoop loop;
    std::set<std::string> names;
    auto watch =
        watchFolder(loop, folder.path(), [&](const std::string& name) { names.insert(name); });
    ASSERT_TRUE(watch);
    const auto after = [&](std::size_t count, auto act) {
        names.clear();
        act();
        EXPECT_TRUE(eventually(loop, [&] { return names.size() >= count; }));
        turnFor(loop, 0.7);
        return names;
    };
    EXPECT_THAT(after(1, [&] { write(folder / "new.txt", "1"); }), ElementsAre("new.txt"));
    EXPECT_THAT(after(1, [&] { write(folder / "there.txt", "22"); }), ElementsAre("there.txt"));
    EXPECT_THAT(after(2, [&] { fs::rename(folder / "new.txt", folder / "a"); }),
                ElementsAre("a", "new.txt"));
    EXPECT_THAT(after(1, [&] { fs::remove(folder / "a"); }), ElementsAre("a"));
    EXPECT_THAT(after(0, [&] { contents(folder / "there.txt"); }), IsEmpty()) << "only read";
    watch.reset();
    EXPECT_THAT(after(0, [&] { write(folder / "b", ""); }), IsEmpty());
    EXPECT_FALSE(watchFolder(loop, folder / "missing", [](auto&) {}));
    EXPECT_FALSE(watchFolder(loop, folder / "b", [](auto&) {})) << "a file is no folder";
}

TEST(AFolderWatch, LooksTwiceASecondAtAFileThatIsWrittenAllTheTime) {
    TemporaryFolder folder;
    EventRunLoop loop;
    int told = 0;
    const auto watch = watchFolder(loop, folder.path(), [&](auto&) { ++told; });
    std::ofstream file(folder / "growing.bin");
    const auto writing = loop.every(0.005, [&] { file << "more" << std::flush; });
    const Instant start = loop.now();
    EXPECT_TRUE(eventually(loop, [&] { return told >= 3; }));
    EXPECT_LE(told, (loop.now() - start) * 2 + 2);
}

TEST(AFolderWatch, MayEndInItsOwnNews) {
    TemporaryFolder folder;
    EventRunLoop loop;
    std::optional<Subscription> watch;
    int told = 0;
    watch = watchFolder(loop, folder.path(), [&](auto&) {
        ++told;
        watch.reset();
    });
    write(folder / "a", "");
    EXPECT_TRUE(eventually(loop, [&] { return told == 1; }));
    write(folder / "b", "");
    turnFor(loop, 0.7);
    EXPECT_EQ(told, 1);
}

TEST(AListing, TellsKindSizeAndAgeOfWhatIsNotHidden) {
    TemporaryFolder folder;
    const DiskFiles files(folder / "trash");
    write(folder / "in/b.txt", "hello");
    write(folder / "in/.hidden", "");
    fs::create_directory(folder / "in/a folder.pkg");
    fs::create_symlink(folder / "in/b.txt", folder / "in/c");
    mkfifo((folder / "in/d").c_str(), 0600);
    const auto list = files.list(folder / "in");
    ASSERT_TRUE(list);
    std::vector<std::string> regular;
    for (const auto& entry : *list) {
        if (entry.isRegularFile) regular.push_back(entry.name);
    }
    EXPECT_EQ(list->size(), 4u);
    EXPECT_THAT(regular, ElementsAre("b.txt"));
    EXPECT_EQ((*list)[1].size, 5u);
    const auto now =
        std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
    if (const auto created = (*list)[1].created) {  // not every file system tells
        EXPECT_NEAR(created->secondsSince1970, now, 60);
    }
    EXPECT_FALSE(files.list(folder / "missing"));
}

TEST(AComparison, ReadsBothFilesToTheEnd) {
    TemporaryFolder folder;
    const DiskFiles files(folder / "trash");
    const std::string large(700'000, 'x');
    auto other = large;
    other.back() = 'y';
    for (const auto& [name, bytes] : std::map<std::string, std::string>{
             {"a", large}, {"b", large}, {"c", other}, {"d", large + "x"}, {"e", ""}, {"f", ""}}) {
        write(folder / name, bytes);
    }
    fs::create_symlink(folder / "a", folder / "link");
    mkfifo((folder / "pipe").c_str(), 0600);
    const auto equal = [&](const char* one, const char* two, std::stop_token stop = {}) {
        return files.contentsEqual(folder / one, folder / two, std::move(stop));
    };
    EXPECT_TRUE(equal("a", "b"));
    EXPECT_TRUE(equal("e", "f"));
    for (const char* different : {"c", "d", "e", "link", "pipe", "missing", "."}) {
        EXPECT_FALSE(equal("a", different)) << different;
    }
    std::stop_source stop;
    stop.request_stop();
    EXPECT_FALSE(equal("a", "b", stop.get_token()));
}

TEST(ABackgroundThread, RunsJobsInOrderBesideTheMainThread) {
    EventRunLoop loop;
    std::vector<int> order;
    const auto main = std::this_thread::get_id();
    std::atomic<bool> elsewhere{true};
    {
        BackgroundThread background;
        for (int round = 0; round < 3; ++round) {
            for (int i = 0; i < 50; ++i) {
                background.post([&, i, round](const std::stop_token&) {
                    if (std::this_thread::get_id() == main) elsewhere = false;
                    loop.post([&, i, round] { order.push_back(round * 50 + i); });
                });
            }
            turnFor(loop, 0.05);  // the thread ends and another begins
        }
        EXPECT_TRUE(eventually(loop, [&] { return order.size() >= 150; }));
    }
    EXPECT_TRUE(elsewhere);
    ASSERT_EQ(order.size(), 150u);
    EXPECT_TRUE(std::ranges::is_sorted(order));
}

TEST(ABackgroundThread, EndsWithTheJobAtHandAndDropsTheRest) {
    std::atomic<bool> started{false};
    std::atomic<bool> stopped{false};
    std::atomic<bool> next{false};
    {
        BackgroundThread background;
        background.post([&](const std::stop_token& stop) {
            started = true;
            while (!stop.stop_requested()) std::this_thread::yield();
            stopped = true;
        });
        background.post([&](const std::stop_token&) { next = true; });
        while (!started) std::this_thread::yield();
    }
    EXPECT_TRUE(stopped);
    EXPECT_FALSE(next);
}

}  // namespace
}  // namespace quibbits
