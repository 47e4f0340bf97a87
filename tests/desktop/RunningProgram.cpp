#include "RunningProgram.h"

#include <spawn.h>
#include <sys/wait.h>

#include <csignal>
#include <string_view>

extern char** environ;

namespace quibbits {

RunningProgram::RunningProgram(const std::string& display, const std::filesystem::path& folder,
                               std::vector<std::string> under) {
    const auto run = folder / "run";
    std::filesystem::create_directories(run);
    std::filesystem::permissions(run, std::filesystem::perms::owner_all);
    std::vector<std::string> values{"DISPLAY=" + display, "HOME=" + (folder / "home").native(),
                                    "XDG_CONFIG_HOME=" + (folder / "config").native(),
                                    "XDG_DATA_HOME=" + (folder / "data").native(),
                                    "XDG_RUNTIME_DIR=" + run.native()};
    for (char** each = environ; *each; ++each) {
        const std::string_view value(*each);
        const auto name = value.substr(0, value.find('='));
        if (name != "DISPLAY" && name != "HOME" && name != "WAYLAND_DISPLAY" &&
            !name.starts_with("XDG_") && !name.starts_with("DBUS_")) {
            values.emplace_back(value);
        }
    }
    std::vector<char*> environment;
    for (auto& value : values) environment.push_back(value.data());
    environment.push_back(nullptr);

    under.push_back(QUIBBITS_BIN_DIR "/quibbits");
    std::vector<char*> words;
    for (auto& word : under) words.push_back(word.data());
    words.push_back(nullptr);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t none;
    sigemptyset(&none);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
    if (posix_spawnp(&process_, words.front(), nullptr, &attributes, words.data(),
                     environment.data())) {
        process_ = 0;
    }
    posix_spawnattr_destroy(&attributes);
}

RunningProgram::~RunningProgram() {
    signal(SIGKILL);
    if (process_ > 0) waitpid(process_, nullptr, 0);
}

void RunningProgram::signal(int number) const {
    if (process_ > 0) kill(process_, number);
}

std::optional<int> RunningProgram::ending() {
    if (process_ > 0 && waitpid(process_, &status_, WNOHANG) == process_) process_ = -1;
    return process_ < 0 ? std::optional(status_) : std::nullopt;
}

}  // namespace quibbits
