// quibbits: the resident companion. A second start on the same display opens the first one's
// settings, and its dial where there is no tray to click; "quibbits dial" opens the dial, for a key
// of the desktop or a launcher; an address such as quibbits://celebrate is handed on.

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "app/AppDelegate.h"
#include "desktop/LinuxComputer.h"
#include "desktop/SingleInstance.h"

namespace {

using namespace quibbits;

constexpr const char* openSettings = "open";
constexpr const char* openDial = "dial";

/// The chance of this run: never the same twice.
std::uint64_t freshSeed() {
    std::random_device device;
    return (std::uint64_t{device()} << 32) | device();
}

/// An installed program's pictures lie beside it; one that was only built uses those of its build.
std::vector<std::filesystem::path> sheetFolders() {
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    return {program.parent_path() / "../share/quibbits/sheets", QUIBBITS_SHEETS_DIR};
}

/// What a start asks for: one line of text for the one that runs.
std::optional<std::string> wish(int count, char** arguments) {
    if (count == 1) return openSettings;
    const std::string_view word = count == 2 ? arguments[1] : "";
    if (word == openDial || word.starts_with(AppDelegate::ownScheme)) {
        return arguments[1];
    }
    return std::nullopt;
}

/// Does what this start or a later one asks for.
void fulfil(const std::string& wish, AppDelegate& delegate, const StatusItem& icon) {
    if (wish.starts_with(AppDelegate::ownScheme)) {
        delegate.open({wish});
    } else if (wish == openSettings) {
        if (!icon.isShown() && icon.onClick) icon.onClick();
        delegate.showSettings();
    } else if (wish == openDial && icon.onClick) {
        icon.onClick();
    }
}

}  // namespace

int main(int count, char** arguments) {
    const auto asked = wish(count, arguments);
    if (!asked) {
        std::fputs("Usage: quibbits [dial | quibbits://WORD]\n", stderr);
        return 2;
    }
    const char* display = std::getenv("DISPLAY");
    using Outcome = SingleInstance::Outcome;
    auto claim =
        SingleInstance::claim(SingleInstance::usualFolder(), display ? display : "", *asked);
    if (claim.outcome == Outcome::handedOver) return 0;
    if (claim.outcome == Outcome::unanswered) {
        std::fputs("Quibbits: it is running already and does not answer\n", stderr);
        return 1;
    }

    auto [linux, failure] = LinuxComputer::start({.sheets = sheetFolders()});
    if (!linux) {
        std::fprintf(stderr, "Quibbits: %s\n", failure.c_str());
        return 1;
    }
    const auto instance = std::move(claim.instance);  // gone before the loop
    Random random(freshSeed());
    const Computer computer = linux->computer(random);
    AppDelegate delegate(computer, linux->panels(), linux->windows());
    delegate.onTerminate = [loop = &linux->loop()] { loop->quit(); };
    delegate.applicationDidFinishLaunching();
    if (*asked != openSettings) fulfil(*asked, delegate, computer.statusItem);
    if (instance) {
        instance->listen(linux->loop(), [&](const std::string& wish) {
            fulfil(wish, delegate, computer.statusItem);
        });
    }
    linux->run();
    delegate.applicationWillTerminate();
    return 0;
}
