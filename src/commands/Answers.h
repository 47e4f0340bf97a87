#pragma once
// What the companion that runs does and says when a command line speaks to it. Owned by main; it
// reads the party and hands words on, and holds nothing itself.

#include <functional>
#include <string>

#include "app/AppDelegate.h"
#include "commands/CommandLine.h"

namespace quibbits::commands {

class Answers {
public:
    /// What only the process itself knows.
    struct About {
        std::string version;
        std::int64_t process = 0;
        std::string display;
    };
    Answers(AppDelegate& delegate, const Computer& computer, About about)
        : delegate_(delegate), computer_(computer), about_(std::move(about)) {}

    /// Does what a line asks for and says what is to be said. Files are only ever given to a
    /// creature that strikes them; where none can they stay.
    Reply answer(const std::string& line);

private:
    Reply open();
    Reply openDial();
    Reply hook(const std::string& word);
    Reply strike(const std::vector<std::string>& paths);
    Reply quit();
    Reply party(bool asJson) const;
    Reply why(bool asJson) const;
    Reply status(bool asJson) const;

    const Companion* whoIsOut() const;
    bool isFocused() const;

    AppDelegate& delegate_;
    const Computer& computer_;
    const About about_;
};

}  // namespace quibbits::commands
