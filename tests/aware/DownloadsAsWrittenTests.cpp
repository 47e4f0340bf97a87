// Downloads as the programs that fetch them write them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "aware/GuardOn.h"
#include "sim/SimulatedComputer.h"
#include "support/DrawnSheets.h"
#include "support/FlatText.h"

namespace quibbits {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint64_t big = 500'000'000;
constexpr std::uint64_t huge = 2 * big;

class Downloads : public testing::Test {
protected:
    Downloads() {
        computer.defaults.set("downloadsGuard", true);
        guard = guardOn(computer);
        guard->onFind = [this](const DownloadsFind& find) {
            found.push_back(find.paths.front().substr(folder.size()));
            times.push_back(computer.runLoop.now());
        };
        advance(10);
    }
    void put(const std::string& name, std::uint64_t size, const std::string& contents = "") {
        computer.files.put(folder + name, {.size = size, .contents = contents});
    }
    void rename(const std::string& from, const std::string& to) {
        const auto details = computer.files.details[folder + from];
        computer.files.files.erase(folder + from);
        put(to, details.size, details.contents);
    }
    void advance(Seconds seconds) { computer.runLoop.advance(seconds); }

    const std::string folder = "/home/user/Downloads/";
    DrawnSheets sheets{{}};
    FlatText text;
    SimulatedComputer computer{{}, sheets, text};
    std::unique_ptr<DownloadsGuard> guard;
    std::vector<std::string> found;
    std::vector<Instant> times;
};

TEST_F(Downloads, WithAnEmptyFileThatKeepsTheirPlaceAreJudgedWhenTheyTakeIt) {
    put("film.iso", 0);
    put("film.Ab12.iso.part", 10);
    put("other.iso", 0);
    put("other(1).iso", 0);
    for (int i = 1; i < 20; ++i) {
        advance(1);
        put("film.Ab12.iso.part", huge / 20 * static_cast<std::uint64_t>(i));
    }
    advance(5);
    EXPECT_THAT(found, IsEmpty()) << "nor are two that have just begun copies of each other";
    rename("film.Ab12.iso.part", "film.iso");
    advance(1.9);
    EXPECT_THAT(found, IsEmpty());
    advance(0.1);
    EXPECT_THAT(found, ElementsAre("film.iso"));
}

TEST_F(Downloads, BesideAFileThatIsWrittenAllTheTimeDoNotWaitForIt) {
    const Instant start = computer.runLoop.now();
    for (int i = 0; i < 60; ++i) {
        put("recording.mkv", huge + static_cast<std::uint64_t>(i));
        if (i == 10) put("film.mkv", big);
        advance(0.5);
    }
    EXPECT_THAT(found, ElementsAre("film.mkv"));
    EXPECT_THAT(times, ElementsAre(start + 7));
    advance(2);
    EXPECT_THAT(found, ElementsAre("film.mkv", "recording.mkv"));
}

TEST_F(Downloads, ThatPauseAreJudgedAgainWhenTheyHaveGrown) {
    put("image.iso", big / 2);
    advance(60);
    put("image.iso", huge);
    advance(2);
    EXPECT_THAT(found, ElementsAre("image.iso"));
}

TEST_F(Downloads, OfFullSizeFromTheBeginningAreWholeWhenTheNoteBesideThemGoes) {
    put("disk.img", huge);
    put("disk.img.aria2", 300);
    advance(30);
    EXPECT_THAT(found, IsEmpty());
    computer.files.moveToTrash(folder + "disk.img.aria2");
    advance(2);
    EXPECT_THAT(found, ElementsAre("disk.img"));
    for (const char* name : {"a.iso.!qB", "b.iso.wkdownload", "c.iso.opdownload"}) put(name, huge);
    advance(5);
    EXPECT_THAT(found, ElementsAre("disk.img"));
    rename("a.iso.!qB", "a.iso");
    advance(2);
    EXPECT_THAT(found, ElementsAre("disk.img", "a.iso"));
}

TEST_F(Downloads, ThatInstallProgramsGrowOldWhateverTheSystemTheyAreFor) {
    const Date old = computer.runLoop.date() - 8 * 86'400;
    const std::vector<std::string> names{"a.deb", "b.rpm", "c.AppImage", "d.flatpakref",
                                         "e.run", "f.dmg", "g.pkg",      "h.tar.gz"};
    for (const auto& name : names) {
        computer.files.put(folder + name, {.size = 5, .contents = name, .created = old});
    }
    advance(2);
    EXPECT_EQ(found, std::vector(names.begin(), names.end() - 1));
}

TEST_F(Downloads, AreAsOfferedUntilTheyChangeOrGo) {
    for (const char* name : {"same.mkv", "written.mkv", "gone.mkv"}) put(name, huge, "old");
    advance(2);
    ASSERT_EQ(found.size(), 3u);
    put("written.mkv", huge, "new");
    computer.files.moveToTrash(folder + "gone.mkv");
    EXPECT_TRUE(guard->isAsOffered(folder + "same.mkv"));
    EXPECT_FALSE(guard->isAsOffered(folder + "written.mkv"));
    EXPECT_FALSE(guard->isAsOffered(folder + "gone.mkv"));
}

}  // namespace
}  // namespace quibbits
