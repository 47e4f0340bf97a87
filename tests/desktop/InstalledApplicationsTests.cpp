#include <gtest/gtest.h>

#include <fstream>

#include "TemporaryFolder.h"
#include "desktop/files/InstalledApplications.h"

namespace quibbits {
namespace {

TEST(ADesktopFile, TellsWhatMenusShow) {
    const auto read = [](const std::string& text) { return readDesktopFile("org.Some.App", text); };
    EXPECT_EQ(read("[Desktop Entry]\nType=Application\nName = Some\nName[de]=Etwas\nIcon=some\r\n"),
              (InstalledApplication{"org.some.app", "Some", "some"}));
    EXPECT_EQ(read("[Desktop Entry]\nType=Application\nName=Some\nStartupWMClass=Other\n"
                   "[Desktop Action new]\nName=New window\nIcon=new\n"),
              (InstalledApplication{"other", "Some", ""}));
    const std::string caja = "[Desktop Entry]\nType=Application\nName=Caja\nExec=";
    EXPECT_EQ(readDesktopFile("caja-browser", caja + "/usr/bin/Caja --browser %U")->id, "caja");
    EXPECT_EQ(readDesktopFile("caja-browser", caja + "\"/opt/a/caja\" %U")->id, "caja");
    EXPECT_EQ(readDesktopFile("caja-browser", caja + "env X=1 caja")->id, "caja-browser");
    EXPECT_EQ(read(caja + "launcher")->id, "org.some.app");
    EXPECT_EQ(read("[Desktop Entry]\nType=Link\nName=Some\n"), std::nullopt);
    EXPECT_EQ(read("[Desktop Entry]\nType=Application\nName=Some\nNoDisplay=true\n"), std::nullopt);
    EXPECT_EQ(read("[Desktop Entry]\nType=Application\n"), std::nullopt);
    EXPECT_EQ(read("nonsense"), std::nullopt);
}

TEST(InstalledApplications, ComeByNameAndTheUsersOwnFirst) {
    const TemporaryFolder folder;
    const auto put = [&](const std::string& path, const std::string& name) {
        const auto file = folder.path() / path;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file) << "[Desktop Entry]\nType=Application\nName=" << name << "\n";
    };
    put("own/paint.desktop", "My Paint");
    put("all/paint.desktop", "Paint");
    put("all/kde/clock.desktop", "Clock");
    put("all/readme.txt", "No application");
    const auto all = installedApplications(
        {folder.path() / "own", folder.path() / "nowhere", folder.path() / "all"});
    ASSERT_EQ(all.size(), 2u);
    EXPECT_EQ(all[0], (InstalledApplication{"kde-clock", "Clock", ""}));
    EXPECT_EQ(all[1].name, "My Paint");
}

}  // namespace
}  // namespace quibbits
