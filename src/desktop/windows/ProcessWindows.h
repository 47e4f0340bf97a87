#pragma once
// Ordinary windows, each shown by a process of its own that knows a widget toolkit, so that this
// program needs none. The process is given trees of views and sends back actions over an inherited
// pair of sockets that nobody else can reach; it ends with its window.

#include <filesystem>
#include <string>

#include "desktop/EventRunLoop.h"
#include "platform/DesktopLook.h"
#include "views/ViewWindow.h"

namespace quibbits {

class ProcessWindows final : public views::ViewWindows {
public:
    /// `program` shows the windows, dark ones when the desktop is dark; those that are open follow
    /// a change. The look outlives the windows.
    ProcessWindows(EventRunLoop& loop, std::filesystem::path program, DesktopLook& look)
        : loop_(loop), program_(std::move(program)), look_(look) {}

    /// The program that lies beside this one or was installed with it, else the one in $PATH.
    static std::filesystem::path usualProgram();

    std::unique_ptr<views::ViewWindow> open(const views::WindowSpec& spec,
                                            views::View tree) override;

private:
    EventRunLoop& loop_;
    std::filesystem::path program_;
    DesktopLook& look_;
};

}  // namespace quibbits
