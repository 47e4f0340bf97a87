#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "aware/GuardOn.h"
#include "platform/ByteCount.h"
#include "sim/SimulatedComputer.h"
#include "support/DrawnSheets.h"
#include "support/FlatText.h"

namespace quibbits {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr Seconds day = 86'400;
constexpr std::uint64_t big = 500'000'000;

class DownloadsGuardTest : public testing::Test {
protected:
    DownloadsGuardTest() { computer.defaults.set("downloadsGuard", true); }
    void launch() {
        guard.reset();
        finds.clear();
        guard = guardOn(computer);
        guard->onFind = [this](const DownloadsFind& find) {
            finds.push_back(find);
            times.push_back(computer.runLoop.now());
        };
    }
    /// Launches over what lies there and lets the first look pass.
    void seed() {
        launch();
        advance(10);
        finds.clear();
        times.clear();
    }
    static std::string in(const std::string& name) { return "/home/user/Downloads/" + name; }
    void put(const std::string& name, std::uint64_t size = 5, const std::string& contents = "",
             std::optional<Seconds> age = 0) {
        SimulatedFiles::Details details{.size = size, .contents = contents};
        if (age) details.created = computer.runLoop.date() - *age;
        computer.files.put(in(name), details);
    }
    void advance(Seconds seconds) { computer.runLoop.advance(seconds); }
    std::vector<std::string> titles() const {
        std::vector<std::string> all;
        for (const auto& find : finds) all.push_back(find.title);
        return all;
    }

    DrawnSheets sheets{{}};
    FlatText text;
    SimulatedComputer computer{{}, sheets, text};
    std::vector<DownloadsFind> finds;
    std::vector<Instant> times;
    std::unique_ptr<DownloadsGuard> guard;
};

TEST_F(DownloadsGuardTest, WhatLayThereIsNotBigAndItsCopiesAreOneQuestion) {
    put("film.mkv", 2 * big);
    put("a.txt", 300'000, "a");
    put("a 2.txt", 300'000, "a");
    put("a(3).txt", 300'000, "a");
    put("a (4).txt", 400'000, "a");  // another size
    put("b", 700'000, "b");
    put("b (1)", 700'000, "b");
    launch();
    advance(9.9);
    EXPECT_THAT(finds, IsEmpty());
    advance(0.1);
    const DownloadsFind all{
        .paths = {in("a 2.txt"), in("a(3).txt"), in("b (1)")},
        .title = "3 duplicate downloads",
        .why = "Exact copies of files already in Downloads (1.3 MB). Thunderbolt them all?"};
    EXPECT_THAT(finds, ElementsAre(all));
    guard->answered(all.paths);

    put("b (2)", 700'000, "b");
    launch();  // of four copies one is new; the question still counts all
    advance(10);
    ASSERT_EQ(finds.size(), 1u);
    EXPECT_THAT(finds[0].paths, ElementsAre(in("b (2)")));
    EXPECT_EQ(finds[0].title, "4 duplicate downloads");
    EXPECT_NE(finds[0].why.find("(2 MB)"), std::string::npos) << finds[0].why;
    guard->answered(finds[0].paths);
    launch();
    advance(10);
    EXPECT_THAT(finds, IsEmpty()) << "answered once, for ever";
}

TEST_F(DownloadsGuardTest, ASingleOldCopyIsADuplicateDownload) {
    put("a.txt", 5, "a");
    put("a 2.txt", 5, "a");
    launch();
    advance(10);
    EXPECT_THAT(titles(), ElementsAre("Duplicate download"));
}

TEST_F(DownloadsGuardTest, WhatComesLaterIsJudgedTwoSecondsAfterTheLastWrite) {
    put("notes.txt", 9, "n");
    seed();
    for (int i = 0; i < 5; ++i) {  // a big one grows
        put("film.mkv", big * static_cast<std::uint64_t>(i));
        advance(1.5);
    }
    EXPECT_THAT(finds, IsEmpty());
    put("film.mkv", 4 * big);
    advance(2);
    const DownloadsFind film{.paths = {in("film.mkv")},
                             .title = "Big download",
                             .why = "film.mkv takes 2 GB. Zap it when you're done with it."};
    EXPECT_THAT(finds, ElementsAre(film));
    EXPECT_THAT(times, ElementsAre(19.5));

    finds.clear();
    put("under.bin", big - 1);
    put("notes 2.txt", 9, "n");
    put("notes 3.txt", 9, "other");
    advance(2);
    const DownloadsFind copy{.paths = {in("notes 2.txt")},
                             .title = "Duplicate download",
                             .why = "notes 2.txt is a copy of notes.txt. Zap the copy?"};
    EXPECT_THAT(finds, ElementsAre(copy));
    put("exactly.bin", big);
    advance(2);
    EXPECT_EQ(titles().back(), "Big download");
}

TEST_F(DownloadsGuardTest, ADownloadThatGoesOnCountsOnlyWhenItHasItsName) {
    seed();
    for (const std::string ending : {"crdownload", "download", "PART", "partial"}) {
        put("film." + ending, 2 * big);
    }
    put("big.bin", big);
    for (int i = 0; i < 20; ++i) {
        advance(0.2);
        put("film.PART", 2 * big);
    }
    EXPECT_THAT(titles(), ElementsAre("Big download")) << "an endless download held up the look";
    computer.files.files.erase(in("film.PART"));
    put("film", 2 * big);
    advance(2);
    EXPECT_EQ(finds.back().paths.front(), in("film"));
}

TEST_F(DownloadsGuardTest, AnInstallerIsOldAfterMoreThanAWeekAndNothingElse) {
    put("week.pkg", 5, "", 7 * day - 10);  // a week to the second at the first look
    put("old.DMG", 2 * big, "", 8 * day);
    put("tool.dmg", 12'300'000, "t", 8 * day);
    put("tool (1).dmg", 12'300'000, "t", 8 * day);
    put("ageless.pkg", 5, "", std::nullopt);
    put("old.zip", 5, "", 30 * day);
    launch();
    advance(10);
    EXPECT_THAT(titles(), ElementsAre("Old installer", "Old installer", "Old installer"));
    EXPECT_EQ(finds[2].why, "tool.dmg has been in Downloads for over a week (12.3 MB). Zap it?");
    put("other.txt");
    advance(2);
    EXPECT_EQ(finds.back().paths.front(), in("week.pkg")) << "known files grow old too";
    EXPECT_EQ(finds.size(), 4u);
}

TEST_F(DownloadsGuardTest, AnEjectedImageIsOfferedWhenItStillLiesInDownloads) {
    const auto eject = [this](const std::string& image) {
        computer.volumes.mount(image, "/media/disk");
        advance(1);
        computer.volumes.unmount("/media/disk");
        advance(1);
    };
    put("app.dmg");
    put("sub/deep.dmg");
    computer.files.put("/home/user/else.dmg", {});
    seed();
    eject("/home/user/else.dmg");
    eject(in("sub/deep.dmg"));
    eject(in("gone.dmg"));
    computer.volumes.unmount("/media/stick");
    advance(1);
    EXPECT_THAT(finds, IsEmpty());
    eject(in("app.dmg"));
    const DownloadsFind left{.paths = {in("app.dmg")},
                             .title = "Installer left behind",
                             .why = "You've ejected app.dmg. Done installing? Zap the installer."};
    EXPECT_THAT(finds, ElementsAre(left));
    eject(in("app.dmg"));
    EXPECT_EQ(finds.size(), 1u);

    put("late.dmg");
    computer.volumes.mount(in("late.dmg"), "/media/late");
    launch();  // mounted before
    computer.volumes.mounts.reset();
    computer.volumes.mounted.emit();  // the system does not tell any more: what is known stays
    computer.volumes.unmount("/media/late/");
    advance(1);
    EXPECT_THAT(titles(), ElementsAre("Installer left behind"));
}

TEST_F(DownloadsGuardTest, SwitchedOffItOffersNothingAndTheFirstLookIsStillToCome) {
    computer.defaults.set("downloadsGuard", false);
    put("app.dmg");
    put("film.mkv", 2 * big);
    launch();
    computer.volumes.mount(in("app.dmg"), "/media/app");
    advance(20);
    computer.volumes.unmount("/media/app");
    advance(1);
    EXPECT_FALSE(computer.defaults.stored("downloads.offered"));
    computer.defaults.set("downloadsGuard", true);
    put("more.mkv", 2 * big);
    advance(2);
    EXPECT_THAT(finds, IsEmpty()) << "what lay there at the first look is not big";
    put("last.mkv", 2 * big);
    advance(2);
    EXPECT_THAT(titles(), ElementsAre("Big download"));

    computer.volumes.mount(in("app.dmg"), "/media/app");
    computer.volumes.unmount("/media/app");
    advance(1);
    EXPECT_EQ(finds.size(), 1u) << "passed over while switched off, it is not asked for again";
}

TEST_F(DownloadsGuardTest, FailuresAreQuiet) {
    computer.files.unreadable = {"/home/user/Downloads"};
    put("old.mkv", 2 * big);
    launch();
    advance(10);
    computer.files.unreadable = {in("a.txt"), in("broken.dmg")};
    put("a.txt", 5, "a");
    put("a 2.txt", 5, "a");
    put("broken.dmg", 5, "", 8 * day);
    advance(10);
    EXPECT_THAT(finds, IsEmpty()) << "a folder that could not be opened is not watched";
    launch();
    advance(10);
    EXPECT_THAT(finds, IsEmpty()) << "and what cannot be read is neither a copy nor an installer";
}

TEST_F(DownloadsGuardTest, OnlyWhatLooksLikeACopyIsCompared) {
    put("a.txt", 5, "a");
    put("b.txt", 5, "a");
    put("a 2.txt", 6, "a");
    seed();
    EXPECT_EQ(computer.files.comparisons, 0);
    put("a 3.txt", 5, "b");
    advance(2);
    put("c.txt", 5);
    advance(2);
    EXPECT_EQ(computer.files.comparisons, 1) << "known files are not read again";
}

TEST_F(DownloadsGuardTest, OfferedAgainWithTheirReasonsAreTheFilesThatNobodyDecidedAbout) {
    put("a.txt", 5, "a");
    put("a 2.txt", 5, "a");
    put("a 3.txt", 5, "a");
    seed();
    put("film.mkv", big);
    put("gone.mkv", big);
    advance(2);
    ASSERT_EQ(finds.size(), 2u);
    const DownloadsFind film = finds[0];
    computer.files.files.erase(in("gone.mkv"));
    computer.files.files.erase(in("a 2.txt"));
    launch();
    advance(9.9);
    EXPECT_THAT(finds, IsEmpty());
    advance(1);
    const DownloadsFind left{
        .paths = {in("a 3.txt")},
        .title = "Duplicate download",
        .why = "Exact copies of files already in Downloads (5 bytes). Thunderbolt them all?"};
    EXPECT_THAT(finds, ElementsAre(film, left)) << "of the two copies one is left";

    computer.defaults.set("downloadsGuard", false);
    launch();
    advance(20);
    EXPECT_THAT(finds, IsEmpty());
    computer.defaults.set("downloadsGuard", true);
    computer.defaults.set("downloads.open",
                          std::vector<std::string>{"t", "w", "9", in("a 3.txt")});  // broken
    launch();
    advance(20);
    EXPECT_THAT(finds, ElementsAre(left));
}

TEST_F(DownloadsGuardTest, TheLastThousandAnswersAreRemembered) {
    seed();
    for (int i = 0; i < 1005; ++i) put("film" + std::to_string(10'000 + i) + ".mkv", big);
    advance(2);
    EXPECT_EQ(finds.size(), 1005u);
    EXPECT_FALSE(computer.defaults.stored("downloads.offered")) << "nobody has answered";
    for (const auto& find : finds) guard->answered(find.paths);
    EXPECT_FALSE(computer.defaults.stored("downloads.open"));
    const auto saved =
        std::get<std::vector<std::string>>(*computer.defaults.stored("downloads.offered"));
    EXPECT_EQ(saved.size(), 1000u);
    EXPECT_EQ(saved.back(), in("film11004.mkv"));
}

TEST_F(DownloadsGuardTest, MayEndWhileALookIsUnderWay) {
    put("old.pkg", 5, "", 8 * day);
    launch();
    advance(9.99);
    computer.runLoop.after(0.01, [this] { guard.reset(); });  // the look is behind it in the queue
    advance(1);
    EXPECT_THAT(finds, IsEmpty());
    EXPECT_EQ(computer.runLoop.pendingJobs(), 0u);
}

TEST(ACopy, IsKnownByTheNumberAtItsEnd) {
    const std::pair<const char*, std::optional<std::string>> cases[] = {
        {"report 2.pdf", "report.pdf"},    {"report(2).pdf", "report.pdf"},
        {"report (12).pdf", "report.pdf"}, {"report2.pdf", std::nullopt},
        {"report ().pdf", std::nullopt},   {"report 2).pdf", std::nullopt},
        {"report (2.pdf", std::nullopt},   {"report (2) .pdf", std::nullopt},
        {"2.pdf", std::nullopt},           {" 2.pdf", std::nullopt},
        {"(1).zip", std::nullopt},         {" (1).zip", std::nullopt},
        {"archive (1)", "archive"},        {"report  2.pdf", "report .pdf"},
        {"a 2 (1).txt", "a 2.txt"},        {"photos 2.tar.gz", std::nullopt},
        {"setup 1.2 (1)", "setup 1.2"},    {"", std::nullopt},
    };
    for (const auto& [name, expected] : cases) {
        EXPECT_EQ(DownloadsScan::original(name), expected) << name;
    }
}

TEST(ASize, IsToldAsPeopleReadIt) {
    const std::pair<std::uint64_t, const char*> cases[] = {
        {0, "Zero KB"},
        {1, "1 byte"},
        {999, "999 bytes"},
        {1000, "1 KB"},
        {12'499, "12 KB"},
        {999'499, "999 KB"},
        {999'500, "1 MB"},
        {1'250'000, "1.3 MB"},
        {500'000'000, "500 MB"},
        {999'950'000, "1 GB"},
        {2'000'000'000, "2 GB"},
        {2'345'000'000, "2.35 GB"},
        {3'100'000'000, "3.1 GB"},
        {1'500'000'000'000, "1.5 TB"},
    };
    for (const auto& [bytes, expected] : cases) EXPECT_EQ(fileSizeText(bytes), expected) << bytes;
}

}  // namespace
}  // namespace quibbits
