#include "desktop/windows/Spawn.h"

#include <fcntl.h>
#include <linux/close_range.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "desktop/files/FileDescriptor.h"

namespace quibbits {
namespace {

// Between fork and exec only what is safe after a signal: another thread may hold any lock.

[[noreturn]] void become(char* const* arguments, int kept, int keptAs, int failure) {
    setsid();
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    close_range(3, ~0u, CLOSE_RANGE_CLOEXEC);
    if (kept >= 0 && kept != keptAs) {
        dup2(kept, keptAs);  // the copy stays open in the new program
    } else if (kept >= 0) {
        fcntl(kept, F_SETFD, 0);
    }
    execvp(arguments[0], arguments);
    const int error = errno;
    [[maybe_unused]] const auto written = write(failure, &error, sizeof error);
    _exit(127);
}

}  // namespace

bool spawnDetached(const std::vector<std::string>& command, int kept, int keptAs) {
    std::vector<std::string> texts = command;
    std::vector<char*> arguments;
    for (std::string& text : texts) arguments.push_back(text.data());
    arguments.push_back(nullptr);

    // A pipe that closes by itself when the program starts, and tells why when it does not.
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) return false;
    FileDescriptor result(ends[0]);
    FileDescriptor failure(fcntl(ends[1], F_DUPFD_CLOEXEC, keptAs + 1));
    close(ends[1]);

    const pid_t between = fork();
    if (between < 0) return false;
    if (between == 0) {
        // The child of a child that ends at once belongs to nobody who would have to wait for it.
        const pid_t last = fork();
        if (last == 0) become(arguments.data(), kept, keptAs, failure.get());
        const int error = errno;
        if (last < 0) [[maybe_unused]]
            const auto written = write(failure.get(), &error, sizeof error);
        _exit(0);
    }
    failure = FileDescriptor();
    while (waitpid(between, nullptr, 0) < 0 && errno == EINTR) {
    }
    int error = 0;
    ssize_t length = 0;
    do {
        length = read(result.get(), &error, sizeof error);
    } while (length < 0 && errno == EINTR);
    return length == 0;
}

}  // namespace quibbits
