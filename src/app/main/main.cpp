// quibbits: the resident companion, and the words by which a command line speaks to it. A start
// while one runs on the same display hands over to it: without words it opens the settings, and the
// dial where there is no tray to click.

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "app/AppDelegate.h"
#include "commands/Answers.h"
#include "commands/CommandLine.h"
#include "desktop/LinuxComputer.h"
#include "desktop/SingleInstance.h"
#include "desktop/files/DiskResources.h"

namespace {

using namespace quibbits;

/// The chance of this run: never the same twice.
std::uint64_t freshSeed() {
    std::random_device device;
    return (std::uint64_t{device()} << 32) | device();
}

std::string display() {
    const char* name = std::getenv("DISPLAY");
    return name ? name : "";
}

int complain(const std::string& reason, int status) {
    std::fprintf(stderr, "quibbits: %s\n", reason.c_str());
    return status;
}

int print(const std::string& text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
    return std::fflush(stdout) == 0 ? commands::done : commands::failed;
}

/// Says the line to the one that runs, and shows what it answers.
int tell(const commands::Asked& asked) {
    const std::string& line = asked.lines.front();
    if (line.size() > SingleInstance::longestLine) {
        return complain("these are too many words at once", commands::failed);
    }
    const auto told = SingleInstance::tell(SingleInstance::usualFolder(), display(), line);
    switch (told.outcome) {
        case SingleInstance::Outcome::nobody:
            print(asked.text);
            return complain("it does not run", commands::notRunning);
        case SingleInstance::Outcome::unknown:
            return complain("several are running; tell which with DISPLAY", commands::failed);
        case SingleInstance::Outcome::unanswered:
            return complain("it is running and does not answer", commands::failed);
        default: break;
    }
    const auto reply = commands::unpack(told.answer.value_or(""));
    if (reply.status == commands::done) return print(reply.text);
    std::fprintf(stderr, "quibbits: %s", reply.text.c_str());
    return reply.status;
}

/// Lives on the desktop, from the lines that nobody else has taken to the end.
int live(std::unique_ptr<SingleInstance> instance, const std::vector<std::string>& lines) {
    auto [linux, failure] = LinuxComputer::start({.sheets = {DiskResources::ownSheets()}});
    if (!linux) return complain(failure, commands::failed);
    const auto mine = std::move(instance);  // gone before the loop
    Random random(freshSeed());
    const Computer computer = linux->computer(random);
    AppDelegate delegate(computer, linux->panels(), linux->windows());
    delegate.onTerminate = [loop = &linux->loop()] { loop->quit(); };
    delegate.applicationDidFinishLaunching();
    commands::Answers answers(
        delegate, computer,
        {.version = QUIBBITS_VERSION, .process = getpid(), .display = display()});
    for (const auto& line : lines) {
        if (line != commands::openLine) answers.answer(line);
    }
    if (mine) {
        mine->listen(linux->loop(),
                     [&](const std::string& line) { return commands::pack(answers.answer(line)); });
    }
    linux->run();
    delegate.applicationWillTerminate();
    return commands::done;
}

/// Hands the lines to the one that runs, in turn, or becomes it with those that are left.
int start(const std::vector<std::string>& lines) {
    using Outcome = SingleInstance::Outcome;
    const auto folder = SingleInstance::usualFolder();
    for (auto line = lines.begin(); line != lines.end(); ++line) {
        auto claim = SingleInstance::claim(folder, display(), *line);
        if (claim.outcome == Outcome::handedOver) continue;
        if (claim.outcome == Outcome::unanswered) {
            return complain("it is running already and does not answer", commands::failed);
        }
        return live(std::move(claim.instance), {line, lines.end()});
    }
    return commands::done;
}

}  // namespace

int main(int count, char** arguments) {
    std::error_code error;
    const auto asked =
        commands::read({arguments + 1, arguments + count}, std::filesystem::current_path(error));
    switch (asked.kind) {
        case commands::Asked::Kind::start: return start(asked.lines);
        case commands::Asked::Kind::tell: return tell(asked);
        case commands::Asked::Kind::print: return print(asked.text);
        case commands::Asked::Kind::refused: return complain(asked.text, commands::failed);
        case commands::Asked::Kind::mistake: break;
    }
    return complain(asked.text + "; see quibbits --help", commands::misused);
}
