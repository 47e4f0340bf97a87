#pragma once
// Lets the user delete the file manager's selected files with one key press that a creature acts
// out. The key is held only while the file manager is in front. Touches no file: what is selected,
// and where it is drawn, goes to onStrike.

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/Accessibility.h"
#include "platform/FileBrowser.h"
#include "platform/HotKeys.h"
#include "platform/Lifetime.h"
#include "platform/RunLoop.h"
#include "platform/UserDefaults.h"
#include "platform/Workspace.h"

namespace quibbits {

class ThunderboltKey {
public:
    struct World {
        HotKeys& hotKeys;
        Workspace& workspace;
        FileBrowser& fileBrowser;
        Accessibility& accessibility;
        RunLoop& loop;
        const UserDefaults& defaults;
    };
    /// Where files are drawn, by their paths, in global points.
    using Spots = std::map<std::string, Point>;

    explicit ThunderboltKey(const World& world);

    /// Command-Option-Delete.
    static HotKey combination();
    /// Where the window shows the files; one that is not found is absent. A name may lack its
    /// extension in the window, and then stands for the first file that it fits.
    static Spots spots(const std::vector<std::string>& paths, const AccessibleWindow& window);

    /// At least one path, and points for as many as were found.
    std::function<void(const std::vector<std::string>& paths, const Spots& points)> onStrike;
    /// The key was pressed, and nobody may tell what is selected. Once; nobody's settings are
    /// changed for them.
    std::function<void()> onUntrusted;

private:
    /// Takes or gives back the key.
    void update();
    void pressed();
    /// What was selected when the key was pressed, as far as that can be told: an answer that comes
    /// late, or with something else in front, is dropped.
    void strike(const FileSelection& selection);
    bool isOn() const { return world_.defaults.boolean("thunderbolt"); }

    World world_;
    std::optional<Subscription> hotKey_;  // while the key is held
    struct Press {
        Application front;
        Instant at = 0;
    };
    std::optional<Press> press_;  // while it is being answered
    bool toldUntrusted_ = false;
    Subscription activation_;
    Lifetime lifetime_;
};

}  // namespace quibbits
