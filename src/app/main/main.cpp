// quibbits: the resident companion.

#include <cstdio>
#include <random>

#include "app/AppDelegate.h"
#include "desktop/LinuxComputer.h"

namespace {

using namespace quibbits;

/// The chance of this run: never the same twice.
std::uint64_t freshSeed() {
    std::random_device device;
    return (std::uint64_t{device()} << 32) | device();
}

}  // namespace

int main() {
    auto [linux, failure] = LinuxComputer::start({.sheets = {QUIBBITS_SHEETS_DIR}});
    if (!linux) {
        std::fprintf(stderr, "Quibbits: %s\n", failure.c_str());
        return 1;
    }
    Random random(freshSeed());
    AppDelegate delegate(linux->computer(random), linux->panels());
    delegate.applicationDidFinishLaunching();
    linux->run();
    delegate.applicationWillTerminate();
    return 0;
}
