#pragma once
// Everything that the core asks of a computer, real or simulated, in one record of references. All
// of it outlives the core.

#include "platform/Accessibility.h"
#include "platform/DesktopLook.h"
#include "platform/DesktopSession.h"
#include "platform/Dock.h"
#include "platform/FileBrowser.h"
#include "platform/Files.h"
#include "platform/HotKeys.h"
#include "platform/Keyboard.h"
#include "platform/Machine.h"
#include "platform/Notifications.h"
#include "platform/Pointer.h"
#include "platform/Random.h"
#include "platform/Resources.h"
#include "platform/RunLoop.h"
#include "platform/Screens.h"
#include "platform/StatusItem.h"
#include "platform/Text.h"
#include "platform/UserDefaults.h"
#include "platform/Volumes.h"
#include "platform/WindowList.h"
#include "platform/WorkQueue.h"
#include "platform/Workspace.h"

namespace quibbits {

struct Computer {
    RunLoop& runLoop;
    Random& random;
    UserDefaults& defaults;
    Screens& screens;
    Pointer& pointer;
    Workspace& workspace;
    WindowList& windows;
    Dock& dock;
    FileBrowser& fileBrowser;
    Accessibility& accessibility;
    Machine& machine;
    Notifications& notifications;
    StatusItem& statusItem;
    DesktopLook& appearance;
    DesktopSession& session;
    Files& files;
    Volumes& volumes;
    WorkQueue& background;
    HotKeys& hotKeys;
    Keyboard& keyboard;
    Resources& resources;
    TextMeasure& text;
};

}  // namespace quibbits
