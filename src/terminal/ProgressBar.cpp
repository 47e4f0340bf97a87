#include "terminal/ProgressBar.h"

#include <unistd.h>

#include <algorithm>
#include <utility>

namespace quibbits {
namespace {

constexpr int cells = 40;
constexpr const char* emptyLine = "\r\033[K";

}  // namespace

ProgressBar::ProgressBar(std::string title, std::FILE* to)
    : title_(std::move(title)), to_(to), isTerminal_(isatty(fileno(to)) == 1) {}

ProgressBar::~ProgressBar() {
    if (shown_ < 0) return;
    std::fputs(emptyLine, to_);
    std::fflush(to_);
}

void ProgressBar::show(double share) {
    const int percent = static_cast<int>(std::clamp(share, 0.0, 1.0) * 100);
    if (!isTerminal_ || percent == shown_) return;
    shown_ = percent;
    const int full = percent * cells / 100;
    const std::string bar = std::string(static_cast<std::size_t>(full), '#') +
                            std::string(static_cast<std::size_t>(cells - full), '.');
    std::fprintf(to_, "%s%s [%s] %d %%", emptyLine, title_.c_str(), bar.c_str(), percent);
    std::fflush(to_);
}

}  // namespace quibbits
