// What every test program runs in: a home of its own, one family of fonts and nothing of the user's
// session, so that a test finds the same on every machine, and touches nothing of whoever runs it.

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

extern char** environ;

namespace quibbits {
namespace {

namespace fs = std::filesystem;

bool isOfASession(std::string_view name) {
    for (const char* each :
         {"DISPLAY", "XAUTHORITY", "WAYLAND_DISPLAY", "LANG", "LANGUAGE", "TMPDIR"}) {
        if (name == each) return true;
    }
    for (const char* start : {"XDG_", "DBUS_", "LC_", "GTK_", "QT_", "DESKTOP_", "SESSION_"}) {
        if (name.starts_with(start)) return true;
    }
    return false;
}

class OwnEnvironment final : public testing::Environment {
public:
    void SetUp() override {
        std::vector<std::string> foreign;
        for (char** each = environ; each && *each; ++each) {
            const std::string_view pair(*each);
            const auto name = pair.substr(0, pair.find('='));
            if (isOfASession(name)) foreign.emplace_back(name);
        }
        for (const auto& name : foreign) unsetenv(name.c_str());

        std::string name = (fs::temp_directory_path() / "quibbits-home-XXXXXX").native();
        ASSERT_NE(mkdtemp(name.data()), nullptr);
        home_ = name;
        const auto run = home_ / "run";
        fs::create_directory(run);
        fs::permissions(run, fs::perms::owner_all);
        setenv("HOME", home_.c_str(), 1);
        setenv("XDG_RUNTIME_DIR", run.c_str(), 1);
        useOneFont();
        setenv("LC_ALL", "C.UTF-8", 1);
        setenv("TZ", "UTC0", 1);
        setenv("PATH", "/usr/local/bin:/usr/bin:/bin", 0);
    }
    void TearDown() override {
        std::error_code error;
        fs::remove_all(home_, error);
    }

private:
    void useOneFont() const {
        std::ofstream(home_ / "fonts.conf")
            << "<?xml version=\"1.0\"?><!DOCTYPE fontconfig SYSTEM \"fonts.dtd\"><fontconfig>"
               "<dir>/usr/share/fonts/truetype/dejavu</dir>"
               "<cachedir>/var/cache/fontconfig</cachedir>"
               "<cachedir prefix=\"xdg\">fontconfig</cachedir>"
               "<match target=\"pattern\"><edit name=\"family\" mode=\"prepend_first\">"
               "<string>DejaVu Sans</string></edit></match></fontconfig>";
        setenv("FONTCONFIG_FILE", (home_ / "fonts.conf").c_str(), 1);
    }

    fs::path home_;
};

const auto* const environment = testing::AddGlobalTestEnvironment(new OwnEnvironment);

}  // namespace
}  // namespace quibbits
