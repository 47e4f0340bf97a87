#include <fcntl.h>
#include <gmock/gmock.h>
#include <stdlib.h>
#include <unistd.h>

#include <array>

#include "terminal/ProgressBar.h"

namespace quibbits {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

/// A terminal, or a pipe, and what was written to it.
struct Screen {
    enum class Kind { terminal, pipe };
    explicit Screen(Kind kind) {
        int written = -1;
        if (kind == Kind::terminal) {
            read_ = posix_openpt(O_RDWR | O_NOCTTY);
            grantpt(read_);
            unlockpt(read_);
            written = open(ptsname(read_), O_RDWR | O_NOCTTY);
        } else {
            int ends[2];
            if (pipe(ends) == 0) read_ = ends[0], written = ends[1];
        }
        fcntl(read_, F_SETFL, O_NONBLOCK);
        out = fdopen(written, "w");
    }
    ~Screen() {
        std::fclose(out);
        close(read_);
    }
    std::string text() const {
        std::string all;
        std::array<char, 4096> bytes;
        for (ssize_t n; (n = read(read_, bytes.data(), bytes.size())) > 0;) {
            all.append(bytes.data(), static_cast<std::size_t>(n));
        }
        return all;
    }
    std::FILE* out = nullptr;

private:
    int read_ = -1;
};

TEST(AProgressBar, GrowsOnATerminalAndLeavesNothingBehind) {
    const Screen screen(Screen::Kind::terminal);
    {
        ProgressBar bar("Drawing", screen.out);
        EXPECT_THAT(screen.text(), IsEmpty()) << "before there is anything to tell";
        bar.show(0.5);
        EXPECT_THAT(screen.text(), HasSubstr("Drawing [####################...................."));
        bar.show(0.5001);
        EXPECT_THAT(screen.text(), IsEmpty()) << "nothing new to see";
        bar.show(7);
        EXPECT_THAT(screen.text(), HasSubstr("100 %"));
    }
    EXPECT_EQ(screen.text(), "\r\033[K");
}

TEST(AProgressBar, IsNotSeenInAPipe) {
    const Screen screen(Screen::Kind::pipe);
    {
        ProgressBar bar("Drawing", screen.out);
        bar.show(0.5);
    }
    EXPECT_THAT(screen.text(), IsEmpty());
}

}  // namespace
}  // namespace quibbits
