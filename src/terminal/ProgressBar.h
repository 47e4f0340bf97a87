#pragma once
// A bar that shows how far something is, on a terminal in one line that is gone at the end, and
// anywhere else nothing at all: what is written into a file or a pipe stays clean.

#include <cstdio>
#include <string>

namespace quibbits {

class ProgressBar {
public:
    /// Usually on the standard error, so that what the program has to say stays apart.
    explicit ProgressBar(std::string title, std::FILE* to = stderr);
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    /// A share from 0 to 1. Cheap to call often: it writes when there is something new to see.
    void show(double share);

private:
    const std::string title_;
    std::FILE* const to_;
    const bool isTerminal_;
    int shown_ = -1;  // per cent
};

}  // namespace quibbits
