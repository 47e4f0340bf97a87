// A tree that was installed, and then moved.

#include <gmock/gmock.h>

#include <cstdlib>

#include "desktop/TemporaryFolder.h"

namespace quibbits {
namespace {

namespace fs = std::filesystem;

TEST(AnInstalledTree, FindsItsPicturesAndItsWordsWhereverItWasMoved) {
    const TemporaryFolder folder;
    const auto run = [&](const std::string& command) {
        return std::system((command + " >'" + (folder / "log").native() + "' 2>&1").c_str());
    };
    const auto first = folder / "first";
    const auto moved = folder / "moved place";
    ASSERT_EQ(run("cmake --install '" QUIBBITS_BIN_DIR "/..' --prefix '" + first.native() + "'"), 0)
        << contents(folder / "log");
    fs::rename(first, moved);
    for (const char* file :
         {"bin/quibbits", "bin/quibbits-atelier", "bin/quibbits-defaults",
          "libexec/quibbits/quibbits-settings", "share/applications/quibbits.desktop",
          "share/metainfo/com.quibbits.Quibbits.metainfo.xml", "share/man/man1/quibbits.1.gz",
          "share/bash-completion/completions/quibbits-sim", "share/doc/quibbits/copyright",
          "share/icons/hicolor/48x48/apps/quibbits.png"}) {
        EXPECT_TRUE(fs::exists(moved / file)) << file;
    }
    // A creature that says something is drawn as by the program that was not installed.
    write(folder / "scene.jsonl", R"({"at": 0, "event": "begin", "seed": 5}
{"at": 0, "event": "defaults", "set": {"onboarded": true, "pet.stage": "sparrel"}}
{"at": 0, "event": "screen", "width": 400, "height": 300}
{"at": 1, "event": "address", "url": "quibbits://hello"}
)");
    const auto film = [&](const fs::path& program, const std::string& name) {
        const auto file = folder / name;
        EXPECT_EQ(
            run("env XDG_DATA_HOME=/nowhere '" + program.native() + "' --fps 2 --for 2 --film '" +
                file.native() + "' '" + (folder / "scene.jsonl").native() + "'"),
            0)
            << contents(folder / "log");
        return contents(file);
    };
    const auto expected = film(QUIBBITS_BIN_DIR "/quibbits-sim", "built.png");
    EXPECT_GT(expected.size(), 1000u);
    EXPECT_TRUE(film(moved / "bin/quibbits-sim", "moved.png") == expected);
    fs::remove_all(moved / "share/quibbits");
    EXPECT_FALSE(film(moved / "bin/quibbits-sim", "blind.png") == expected);
}

}  // namespace
}  // namespace quibbits
