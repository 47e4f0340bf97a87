#include <gtest/gtest.h>

#include <fstream>

#include "TemporaryFolder.h"
#include "desktop/files/Browsers.h"

namespace quibbits {
namespace {

TEST(ABrowser, IsKnownByItsNameInEveryEditionAndPackaging) {
    for (const char* name : {"firefox",
                             "firefox-esr",
                             "org.mozilla.firefox",
                             "Firefox-nightly",
                             "firefox-aurora",
                             "firefox_firefox",
                             "librewolf",
                             "Waterfox",
                             "floorp",
                             "zen",
                             "zen-alpha",
                             "Tor Browser",
                             "Mullvad Browser",
                             "chromium",
                             "Chromium-browser",
                             "org.chromium.Chromium",
                             "google-chrome",
                             "Google-chrome-beta",
                             "com.google.Chrome",
                             "brave-browser-nightly",
                             "microsoft-edge-dev",
                             "vivaldi-stable",
                             "vivaldi-snapshot",
                             "opera-beta",
                             "org.gnome.Epiphany",
                             "epiphany",
                             "org.kde.falkon",
                             "konqueror",
                             "qutebrowser"}) {
        EXPECT_TRUE(soundsLikeBrowser(name)) << name;
    }
    for (const char* name : {"", "thunar", "caja-browser", "zenity", "gimp", "operator",
                             "file "
                             "browser",
                             "org.gnome.Music", "foxit-reader", "code"}) {
        EXPECT_FALSE(soundsLikeBrowser(name)) << name;
    }
}

TEST(ABrowser, ThatNobodyHasHeardOfIsKnownByItsDesktopFile) {
    const TemporaryFolder folder;
    const auto put = [&](const std::string& id, const std::string& categories) {
        std::ofstream(folder.path() / (id + ".desktop"))
            << "[Desktop Entry]\nType=Application\nName=N\nExec=" << id
            << "\nCategories=" << categories << "\n";
    };
    put("surfboard", "GTK;Network;WebBrowser;");
    put("org.some.Netscope", "WebBrowser");
    put("wallet", "Network;NotAWebBrowser;");
    Browsers browsers({folder.path()});
    EXPECT_TRUE(browsers.contains("surfboard"));
    EXPECT_TRUE(browsers.contains("org.some.netscope"));
    EXPECT_FALSE(browsers.contains("wallet"));
    EXPECT_FALSE(browsers.contains(""));
    EXPECT_TRUE(browsers.contains("firefox")) << "installed or not";
}

}  // namespace
}  // namespace quibbits
