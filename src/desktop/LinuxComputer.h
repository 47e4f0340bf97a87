#pragma once
// The computer that the companion lives on: builds every backend for this desktop in the right
// order and hands out the interfaces. Owned by main, and outlives everything that is built on it.

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "desktop/EventRunLoop.h"
#include "layers/Panel.h"
#include "platform/Computer.h"
#include "views/ViewWindow.h"

namespace quibbits {

class LinuxComputer {
public:
    struct Places {
        std::string display;                        // empty for $DISPLAY
        std::filesystem::path defaults;             // empty for the usual place
        std::vector<std::filesystem::path> sheets;  // searched after the user's own
        std::filesystem::path system = "/sys";      // where the machine tells of itself
        std::filesystem::path devices = "/dev";     // where its cameras are
        std::string sessionBus;                     // addresses, empty for the usual ones
        std::string systemBus;
    };
    struct Result {
        std::unique_ptr<LinuxComputer> computer;
        std::string failure;  // in words for the user, when there is no computer
    };
    static Result start(Places places);
    ~LinuxComputer();
    LinuxComputer(const LinuxComputer&) = delete;
    LinuxComputer& operator=(const LinuxComputer&) = delete;

    EventRunLoop& loop();
    Panels& panels();
    /// The ordinary windows.
    views::ViewWindows& windows();
    /// Everything else that the core asks for. The source of chance is the caller's.
    Computer computer(Random& random);

    /// Runs until the loop is told to quit, a signal asks for the end or the display goes away;
    /// then everything that was to be saved is on the disk.
    void run();

private:
    struct Parts;
    explicit LinuxComputer(std::unique_ptr<Parts> parts);
    std::unique_ptr<Parts> parts_;
};

}  // namespace quibbits
