// The companion on this display, held at one occupation, so that its cost can be measured:
// bench-desktop ball|nap|sit|stroll|speak SECONDS [unaware]. Prints processor time, wake-ups and
// memory of its own. An unaware one sees no battery, heat, network, camera, player, window, panel
// or icon: the difference is what noticing them costs.

#include <sys/resource.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <string>

#include "app/AppDelegate.h"
#include "desktop/LinuxComputer.h"
#include "sim/SimulatedComputer.h"

namespace {

using namespace quibbits;

/// Walks to and fro for ever.
void strollOn(Companion& creature, double from, double to) {
    creature.go({.to = {to, creature.pet().position().y}, .speed = 45},
                [&creature, from, to] { strollOn(creature, to, from); });
}

bool begin(Companion& creature, const std::string& mode) {
    creature.stop([] {});
    if (mode == "ball") {
        creature.stayIn();
    } else if (mode == "nap") {
        creature.pet().play(creature.a().sleep);
    } else if (mode == "sit") {
        creature.sit(1e6, [] {});
    } else if (mode == "stroll") {
        const Point at = creature.pet().position();
        strollOn(creature, at.x - 80, at.x + 80);
    } else if (mode == "speak") {
        creature.hook("hello");
    } else {
        return false;
    }
    return true;
}

double processorMilliseconds(const rusage& usage) {
    const auto ms = [](const timeval& t) {
        return static_cast<double>(t.tv_sec) * 1e3 + static_cast<double>(t.tv_usec) / 1e3;
    };
    return ms(usage.ru_utime) + ms(usage.ru_stime);
}

std::string proportionalSetSize() {
    std::ifstream in("/proc/self/smaps_rollup");
    for (std::string line; std::getline(in, line);) {
        if (line.starts_with("Pss:")) return line.substr(line.find_first_of("0123456789"));
    }
    return "unknown";
}

/// What an unaware companion has in place of the real sources: they tell nothing, and never change.
struct Blindfold {
    SimulatedMachine machine;
    SimulatedWindows windows;
    SimulatedDock dock;
    SimulatedFileBrowser fileBrowser;
    SimulatedVolumes volumes;
    SimulatedHotKeys hotKeys;

    Computer over(const Computer& c) {
        return {.runLoop = c.runLoop,
                .random = c.random,
                .defaults = c.defaults,
                .screens = c.screens,
                .pointer = c.pointer,
                .workspace = c.workspace,
                .windows = windows,
                .dock = dock,
                .fileBrowser = fileBrowser,
                .accessibility = c.accessibility,
                .machine = machine,
                .notifications = c.notifications,
                .statusItem = c.statusItem,
                .appearance = c.appearance,
                .session = c.session,
                .files = c.files,
                .volumes = volumes,
                .background = c.background,
                .hotKeys = hotKeys,
                .keyboard = c.keyboard,
                .resources = c.resources,
                .text = c.text};
    }
};

}  // namespace

int main(int argc, char** argv) {
    const bool unaware = argc == 4 && std::string_view(argv[3]) == "unaware";
    if (argc != 3 && !unaware) {
        std::fprintf(stderr, "Usage: bench-desktop ball|nap|sit|stroll|speak SECONDS [unaware]\n");
        return 2;
    }
    const std::string mode = argv[1];
    const double seconds = std::atof(argv[2]);
    auto [linux, failure] = LinuxComputer::start({.sheets = {QUIBBITS_SHEETS_DIR}});
    if (!linux) {
        std::fprintf(stderr, "%s\n", failure.c_str());
        return 1;
    }
    Random random(1);
    Blindfold blindfold;
    const Computer seeing = linux->computer(random);
    const Computer computer = unaware ? blindfold.over(seeing) : seeing;
    computer.defaults.set("pet.stage", std::string("sparrel"));
    computer.defaults.set("faces", mode == "speak");
    computer.defaults.set("chatter", mode == "speak");
    AppDelegate delegate(computer, linux->panels(), linux->windows());
    delegate.applicationDidFinishLaunching();
    Companion& creature = *delegate.party()[0];

    constexpr Seconds settling = 3;
    rusage before{};
    std::uint64_t wakesBefore = 0;
    computer.runLoop.after(settling, [&] {
        if (!begin(creature, mode)) std::exit(2);
    });
    computer.runLoop.after(2 * settling, [&] {
        getrusage(RUSAGE_SELF, &before);
        wakesBefore = linux->loop().wakes();
    });
    computer.runLoop.after(2 * settling + seconds, [&] {
        rusage after{};
        getrusage(RUSAGE_SELF, &after);
        const double perMinute = 60 / seconds;
        std::printf("%s%s: processor %.1f ms a minute, %.2f wake-ups a second, PSS %s\n",
                    mode.c_str(), unaware ? ", unaware" : "",
                    (processorMilliseconds(after) - processorMilliseconds(before)) * perMinute,
                    static_cast<double>(linux->loop().wakes() - wakesBefore) / seconds,
                    proportionalSetSize().c_str());
        linux->loop().quit();
    });
    linux->run();
    return 0;
}
