// quibbits: the resident companion. A second start on the same display opens the first one's
// settings, and its dial where there is no tray to click; "quibbits dial" opens the dial, for a key
// of the desktop or a launcher; addresses such as quibbits://celebrate are handed on.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "app/Address.h"
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

/// What a start asks for, in turn: each a line of text for the one that runs. Nothing is a mistake.
std::vector<std::string> wishes(int count, char** arguments) {
    if (count == 1) return {openSettings};
    std::vector<std::string> all(arguments + 1, arguments + count);
    const bool areAddresses = std::ranges::all_of(
        all, [](const std::string& each) { return each.starts_with(ownScheme); });
    const bool isDial = all.size() == 1 && all.front() == openDial;
    return areAddresses || isDial ? all : std::vector<std::string>{};
}

/// Does what this start or a later one asks for.
void fulfil(const std::string& wish, AppDelegate& delegate, const StatusItem& icon) {
    if (wish.starts_with(ownScheme)) {
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
    const auto asked = wishes(count, arguments);
    if (asked.empty()) {
        std::fputs("Usage: quibbits [dial | quibbits://WORD...]\n", stderr);
        return 2;
    }
    const char* display = std::getenv("DISPLAY");
    using Outcome = SingleInstance::Outcome;
    const auto folder = SingleInstance::usualFolder();
    auto wish = asked.begin();
    auto claim = SingleInstance::claim(folder, display ? display : "", *wish);
    while (claim.outcome == Outcome::handedOver) {
        if (++wish == asked.end()) return 0;
        claim = SingleInstance::claim(folder, display ? display : "", *wish);
    }
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
    for (; wish != asked.end(); ++wish) {
        if (*wish != openSettings) fulfil(*wish, delegate, computer.statusItem);
    }
    if (instance) {
        instance->listen(linux->loop(), [&](const std::string& later) {
            fulfil(later, delegate, computer.statusItem);
        });
    }
    linux->run();
    delegate.applicationWillTerminate();
    return 0;
}
