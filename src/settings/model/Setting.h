#pragma once
// The user's choices: 16 switches that hold for all creatures, and a few other preferences. All
// live in the user defaults and are read at the moment of use, so a change counts from the next
// read.

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "platform/UserDefaults.h"

namespace quibbits {

enum class Setting {
    relationship,
    faces,
    greetings,
    hunger,
    exploreFiles,
    music,
    awayNaps,
    hideOnCamera,
    heat,
    wifi,
    thunderbolt,
    breakReminder,
    overApps,
    notifications,
    downloadsGuard,
    chatter,
};

/// A section of the switches, in the order in which the sections are shown.
enum class SettingGroup { where, moving, deleting, care, mac, notifications };

struct SettingRow {
    Setting setting;
    std::string_view key;
    std::string_view title;
    bool initially;
    SettingGroup group;
    std::string_view detail;
};

struct SettingGroupRow {
    SettingGroup group;
    std::string_view title;
    std::string_view footnote;  // empty for none
};

inline constexpr std::size_t settingCount = 16;

/// Every switch, in their order.
const std::array<SettingRow, settingCount>& allSettings();
const SettingRow& row(Setting setting);
const std::array<SettingGroupRow, 6>& allSettingGroups();
/// The switches of a section, in the order of all of them.
std::vector<Setting> settingsOf(SettingGroup group);

/// The switch as it stands now.
bool isOn(const UserDefaults& defaults, Setting setting);

namespace Settings {

/// Makes the defaults known and carries the routine switches of earlier versions over to their
/// present names. Called once, before anything else is built.
void registerDefaults(UserDefaults& defaults);

/// The applications to stay behind, in the user's order.
std::vector<std::string> behindApps(const UserDefaults& defaults);
void setBehindApps(UserDefaults& defaults, const std::vector<std::string>& ids);
/// Adds identifiers at the end, leaving out empty ones and those already there.
void addBehindApps(UserDefaults& defaults, const std::vector<std::string>& ids);
void removeBehindApp(UserDefaults& defaults, std::string_view id);

}  // namespace Settings

}  // namespace quibbits
