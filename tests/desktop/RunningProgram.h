#pragma once
// The companion as a child process, in a home of its own and without a message bus.

#include <sys/types.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace quibbits {

class RunningProgram {
public:
    /// Its configuration, data and runtime folders are made below the given one. It may run under
    /// another program, such as one that traces it.
    RunningProgram(const std::string& display, const std::filesystem::path& folder,
                   std::vector<std::string> under = {});
    ~RunningProgram();
    RunningProgram(const RunningProgram&) = delete;
    RunningProgram& operator=(const RunningProgram&) = delete;

    void signal(int number) const;
    /// How it ended, as waitpid tells; nothing while it runs.
    std::optional<int> ending();

private:
    pid_t process_ = 0;
    int status_ = 0;
};

}  // namespace quibbits
