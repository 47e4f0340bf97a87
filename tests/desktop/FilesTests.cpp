#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <map>

#include "TemporaryFolder.h"
#include "body/Sheets.h"
#include "codecs/Png.h"
#include "desktop/files/DiskFiles.h"
#include "desktop/files/DiskResources.h"
#include "desktop/files/UserFolders.h"
#include "desktop/files/WholeFile.h"

namespace quibbits {
namespace {

namespace fs = std::filesystem;

TEST(TheDesktopFolder, IsTheOneThatTheUsersListNames) {
    TemporaryFolder folder;
    const std::string home = getenv("HOME");
    setenv("HOME", "/home/somebody", 1);
    setenv("XDG_CONFIG_HOME", (folder / "config").c_str(), 1);
    EXPECT_EQ(desktopFolder(), "/home/somebody/Desktop");
    for (const auto& [list, found] : std::map<std::string, std::string>{
             {"# a list\nXDG_DESKTOP_DIR=\"$HOME/Schreibtisch\"\n", "/home/somebody/Schreibtisch"},
             {"XDG_MUSIC_DIR=\"$HOME/m\"\nXDG_DESKTOP_DIR=\"/srv/desk\"", "/srv/desk"},
             {"XDG_DESKTOP_DIR=\"relative\"", "/home/somebody/Desktop"},
             {"XDG_DESKTOP_DIR=\"", "/home/somebody/Desktop"},
         }) {
        write(folder / "config/user-dirs.dirs", list);
        EXPECT_EQ(desktopFolder(), found) << list;
    }
    unsetenv("XDG_CONFIG_HOME");
    setenv("HOME", home.c_str(), 1);
}

TEST(TheDesktopFolder, IsTheHomeOfWhoHasNoOtherAndNeverEndsInASlash) {
    TemporaryFolder folder;
    setenv("XDG_CONFIG_HOME", (folder / "config").c_str(), 1);
    write(folder / "config/user-dirs.dirs", "XDG_DESKTOP_DIR=\"$HOME/\"\n");
    std::string home = getenv("HOME");
    while (home.ends_with('/')) home.pop_back();
    EXPECT_EQ(DiskFiles(folder / "Trash").desktopFolder(), home);
    unsetenv("XDG_CONFIG_HOME");
}

TEST(AWholeFile, ThatCannotTakeItsPlaceLeavesNothingBeside) {
    TemporaryFolder folder;
    fs::create_directories(folder / "taken/by a folder");
    EXPECT_FALSE(writeWholeFile(folder / "taken", "text"));
    EXPECT_EQ(std::distance(fs::directory_iterator(folder / ""), {}), 1);
}

struct TrashTest : testing::Test {
    TemporaryFolder folder;
    fs::path trash = folder / "data/Trash";
    DiskFiles files{trash};
};

TEST_F(TrashTest, AFileGoesToTheTrashWithANoteOfItsOrigin) {
    const auto file = folder / "my notes ü%.txt";
    write(file, "hello");
    EXPECT_TRUE(files.moveToTrash(file));
    EXPECT_FALSE(files.exists(file));
    EXPECT_EQ(contents(trash / "files/my notes ü%.txt"), "hello");
    const auto note = contents(trash / "info/my notes ü%.txt.trashinfo");
    EXPECT_TRUE(note.starts_with("[Trash Info]\nPath=/")) << note;
    EXPECT_NE(note.find("/my%20notes%20%C3%BC%25.txt\nDeletionDate=20"), std::string::npos) << note;
}

TEST_F(TrashTest, NamesThatClashAreNumbered) {
    for (const char* text : {"one", "two", "three"}) {
        write(folder / "a.txt", text);
        EXPECT_TRUE(files.moveToTrash(folder / "a.txt"));
    }
    EXPECT_EQ(contents(trash / "files/a.txt"), "one");
    EXPECT_EQ(contents(trash / "files/a.2.txt"), "two");
    EXPECT_EQ(contents(trash / "files/a.3.txt"), "three");

    write(trash / "files/orphan", "kept");  // without a note of its own
    write(folder / "orphan", "new");
    EXPECT_TRUE(files.moveToTrash(folder / "orphan"));
    EXPECT_EQ(contents(trash / "files/orphan"), "kept");
    EXPECT_FALSE(fs::exists(trash / "info/orphan.trashinfo"));
    EXPECT_EQ(contents(trash / "files/orphan.2"), "new");
}

TEST_F(TrashTest, AFolderGoesWholeAndALinkGoesItself) {
    write(folder / "photos/a/b.txt", "deep");
    fs::create_symlink(folder / "photos", folder / "link");
    fs::create_symlink(folder / "nowhere", folder / "dangling");
    EXPECT_TRUE(files.moveToTrash(folder / "link"));
    EXPECT_TRUE(files.moveToTrash(folder / "dangling"));
    EXPECT_EQ(contents(folder / "photos/a/b.txt"), "deep");
    EXPECT_TRUE(fs::is_symlink(trash / "files/link"));
    EXPECT_TRUE(files.moveToTrash((folder / "photos").native() + "/"));
    EXPECT_EQ(contents(trash / "files/photos/a/b.txt"), "deep");
}

TEST_F(TrashTest, WhatCannotBeMovedStaysWithoutANote) {
    EXPECT_FALSE(files.moveToTrash(folder / "missing"));
    EXPECT_FALSE(files.moveToTrash("relative"));
    EXPECT_FALSE(files.moveToTrash("/"));
    EXPECT_FALSE(files.moveToTrash(""));
    EXPECT_FALSE(files.moveToTrash("/proc/version"));
    EXPECT_TRUE(fs::exists("/proc/version"));
    EXPECT_TRUE(!fs::exists(trash / "info") || fs::is_empty(trash / "info"));
}

TEST_F(TrashTest, AnotherVolumeHasATrashOfItsOwn) {
    const auto volume = folder / "stick";
    fs::create_directories(volume);
    if (mount("tmpfs", volume.c_str(), "tmpfs", 0, "size=1m") != 0) {
        GTEST_SKIP() << "needs the right to mount a file system";
    }
    const auto own = volume / (".Trash-" + std::to_string(getuid()));
    write(volume / "sub/a.txt", "one");
    EXPECT_TRUE(files.moveToTrash(volume / "sub/a.txt"));
    EXPECT_EQ(contents(own / "files/a.txt"), "one");
    EXPECT_NE(contents(own / "info/a.txt.trashinfo").find("Path=sub/a.txt\n"), std::string::npos);

    const auto shared = volume / ".Trash" / std::to_string(getuid());
    fs::create_directory(volume / ".Trash");
    write(volume / "b.txt", "two");
    EXPECT_TRUE(files.moveToTrash(volume / "b.txt"));
    EXPECT_EQ(contents(own / "files/b.txt"), "two") << "a shared trash without the sticky bit";
    chmod((volume / ".Trash").c_str(), 01777);
    write(volume / "c.txt", "three");
    EXPECT_TRUE(files.moveToTrash(volume / "c.txt"));
    EXPECT_EQ(contents(shared / "files/c.txt"), "three");

    mount(nullptr, volume.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr);
    EXPECT_FALSE(files.moveToTrash(volume / "sub"));
    umount2(volume.c_str(), MNT_DETACH);
}

struct ResourcesTest : testing::Test {
    TemporaryFolder user;
    TemporaryFolder installed;
    DiskResources resources{{user.path(), installed.path()}};

    static std::string picture(int width, int height, std::uint32_t color) {
        const std::vector<std::uint32_t> pixels(static_cast<std::size_t>(width * height), color);
        const auto bytes = encodePng({width, height}, pixels);
        return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
    }
};

TEST_F(ResourcesTest, ASetOfTheUsersOwnStandsBeforeTheInstalledOne) {
    write(installed / "a.png", picture(4, 6, 0xff0000ff));
    write(installed / "a.xml", "<old><a/></old>");
    EXPECT_EQ(resources.imageRows("a", 2, 100).height(), 4);
    EXPECT_EQ(resources.imageRows("a", 0, 1).at(0, 0), 0xff0000ffu);
    EXPECT_EQ(resources.xml("a")->front().value, "old");
    write(user / "a.png", picture(8, 3, 0xff00ff00));
    write(user / "a.xml", "<new><a/></new>");
    EXPECT_EQ(resources.imageSize("a")->width, 8);
    EXPECT_EQ(resources.image("a").at(7, 2), 0xff00ff00u);
    EXPECT_EQ(resources.xml("a")->front().value, "new");
    EXPECT_LT(resources.image("a").storedBytes(), 8u * 3 * 4) << "no palette was kept";
}

TEST_F(ResourcesTest, ABrokenPictureOfTheUsersGivesWayToTheInstalledOne) {
    write(installed / "a.png", picture(4, 6, 0xff0000ff));
    auto broken = picture(8, 3, 0xff00ff00);
    write(user / "a.png", broken.substr(0, broken.size() - 20));
    EXPECT_EQ(resources.imageSize("a")->width, 4);
    EXPECT_EQ(resources.image("a").width(), 4);

    broken.replace(broken.size() / 2, 12, 12, '\x55');
    write(user / "b.png", broken);
    write(installed / "b.png", picture(4, 6, 0xff0000ff));
    EXPECT_EQ(resources.imageRows("b", 0, 3).width(), 4);
    EXPECT_EQ(resources.imageSize("b")->width, 4);
}

TEST_F(ResourcesTest, OfABrokenDescriptionOfTheUsersEveryWholeEntryCounts) {
    const auto entry = [](const std::string& name, int height) {
        return "<Anim><Name>" + name + "</Name><FrameHeight>" + std::to_string(height) +
               "</FrameHeight></Anim>";
    };
    const auto heights = [&] {
        std::map<std::string, int> found;
        const auto data = AnimData::read(resources, "cat");
        for (const auto& name : data.order) found[name] = data.resolve(name)->info->height;
        return found;
    };
    write(installed / "cat-anim.xml", "<A>" + entry("Walk", 1) + entry("Idle", 2) + "</A>");
    EXPECT_EQ(heights(), (std::map<std::string, int>{{"Idle", 2}, {"Walk", 1}}));
    write(user / "cat-anim.xml", "<A>" + entry("Walk", 7) + "<Anim><Name>Idle</Name><Frame");
    EXPECT_EQ(heights(), (std::map<std::string, int>{{"Idle", 2}, {"Walk", 7}}));
    for (const char* empty : {"", "<A/>", "no markup"}) {
        write(user / "cat-anim.xml", empty);
        EXPECT_EQ(heights().size(), 2u) << empty;
    }
    write(user / "cat-anim.xml", "<A>" + entry("Walk", 7) + "</A>");
    EXPECT_EQ(heights().size(), 1u) << "whole, it replaces the other";
}

TEST_F(ResourcesTest, OnlyPlainNamesAreLookedUp) {
    write(user / "sub/a.png", picture(1, 1, 0xffffffff));
    write(user / ".a.png", picture(1, 1, 0xffffffff));
    for (const char* name : {"", ".a", "sub/a", "../a", "missing"}) {
        EXPECT_FALSE(resources.imageSize(name)) << name;
        EXPECT_FALSE(resources.image(name)) << name;
        EXPECT_FALSE(resources.xml(name)) << name;
    }
    EXPECT_FALSE(resources.imageRows("a", -1, 2));
}

}  // namespace
}  // namespace quibbits
