#include "settings/model/Setting.h"

#include <algorithm>

namespace quibbits {

namespace {

using enum Setting;
using Group = SettingGroup;

constexpr std::array<SettingRow, settingCount> rows{{
    {relationship, "relationship", "Feelings & friendship", true, Group::care,
     "Affection and friendship XP; cries when dropped too much. Off: always cheerful."},
    {faces, "faces", "Emotion portraits", true, Group::care,
     "Shows a portrait bubble when it feels something."},
    {greetings, "greetings", "Greets your cursor", true, Group::moving,
     "Turns to you with hearts when your cursor comes close."},
    {hunger, "hunger", "Gets hungry", true, Group::care,
     "About every half hour it comes and asks you for a berry: drag one onto it from the menu bar "
     "dial."},
    {exploreFiles, "exploreFiles", "Climbs desktop files", true, Group::moving,
     "Now and then climbs onto the files on your desktop."},
    {music, "music", "Dances to music", true, Group::mac,
     "Dances, twirls and rolls now and then while Apple Music or Spotify is playing."},
    {awayNaps, "awayNaps", "Naps while you're away", true, Group::mac,
     "Curls up when you leave the Mac for 5 minutes; wakes up glad when you're back."},
    {hideOnCamera, "hideOnCamera", "Hides during video calls", true, Group::mac,
     "Goes back into its Homeball while your camera is on, and comes back out after."},
    {heat, "heat", "Feels the heat", true, Group::mac,
     "Sweats and slows down when your Mac runs hot; faints if it overheats."},
    {wifi, "wifi", "Notices Wi-Fi drops", true, Group::mac,
     "Looks worried when you lose the internet, cheers up when it's back."},
    {thunderbolt, "thunderbolt", "Delete animation", true, Group::deleting,
     "Select files in Finder and press ⌥⌘⌫ (or ⌥-drop a file on a Quibbit): the one out on your "
     "desktop deletes them with its move (Sparrel's Thunderbolt) into the Trash. While on, this "
     "replaces Finder's own ⌥⌘⌫ \"Delete Immediately\", so files land in the Trash instead of "
     "being "
     "erased."},
    {breakReminder, "breakReminder", "Break reminders", false, Group::mac,
     "After a long stretch of non-stop use it stretches and suggests a break."},
    {overApps, "overApps", "Walks over your apps", true, Group::where,
     "Stays in front of app windows. Goes behind them for full-screen windows and videos, YouTube, "
     "and the apps listed below. Off: only on the desktop."},
    {Setting::notifications, "notifications", "Notifications", true, Group::notifications,
     "Tells you when it levels up, gets hungry, its ability activates, or is ready to evolve "
     "(Evolve or Not Now right from the notification)."},
    {downloadsGuard, "downloadsGuard", "Downloads guard", true, Group::deleting,
     "Spots big downloads, duplicate copies and installers you're done with, and offers to delete "
     "them into the Trash (a notification: Delete or Keep). Asks once per file."},
    {chatter, "chatter", "Talks to you", true, Group::care,
     "Says what it's thinking in a little speech bubble, in its own voice: \"What's that? What's "
     "that?\" when your cursor comes close, \"Oh, it's you! ♥\" when it sees it's you, \"I'm "
     "full!\" "
     "after a berry."},
}};

constexpr std::array<SettingGroupRow, 6> groups{{
    {Group::where, "Where they can go",
     "They always stay behind full-screen windows, videos and YouTube, whatever you pick here."},
    {Group::moving, "Moving around", ""},
    {Group::deleting, "Deleting files",
     "Nothing is ever erased: every delete goes to the Trash, where you can get it back."},
    {Group::care, "Care and feelings", ""},
    {Group::mac, "Your Mac", ""},
    {Group::notifications, "Notifications", ""},
}};

constexpr bool inOrder() {
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (static_cast<std::size_t>(rows[i].setting) != i) return false;
    }
    return true;
}
static_assert(inOrder());

constexpr std::int64_t initialBreakMinutes = 60;

/// Routines that earlier versions knew by other names.
struct Renamed {
    std::string_view before;
    std::string_view now;
};
constexpr std::array renamedMoves{
    Renamed{"move.Stretch", "move.DeepBreath"},
    Renamed{"move.Twirl", "move.Rotate"},
    Renamed{"move.Somersault", "move.Tumble"},
    Renamed{"move.Dance", "move.Double"},
};

constexpr std::string_view behindAppsKey = "behindApps";

}  // namespace

const std::array<SettingRow, settingCount>& allSettings() {
    return rows;
}
const SettingRow& row(Setting setting) {
    return rows[static_cast<std::size_t>(setting)];
}
const std::array<SettingGroupRow, 6>& allSettingGroups() {
    return groups;
}

std::vector<Setting> settingsOf(SettingGroup group) {
    std::vector<Setting> members;
    for (const auto& r : rows) {
        if (r.group == group) members.push_back(r.setting);
    }
    return members;
}

bool isOn(const UserDefaults& defaults, Setting setting) {
    return defaults.boolean(row(setting).key);
}

void Settings::registerDefaults(UserDefaults& defaults) {
    std::map<std::string, DefaultsValue> values;
    for (const auto& r : rows) values.emplace(r.key, r.initially);
    values.emplace("breakMinutes", initialBreakMinutes);
    defaults.registerDefaults(std::move(values));

    for (const auto& [before, now] : renamedMoves) {
        if (!defaults.stored(before)) continue;
        if (!defaults.stored(now)) defaults.set(now, defaults.boolean(before));
        defaults.remove(before);
    }
}

std::vector<std::string> Settings::behindApps(const UserDefaults& defaults) {
    const std::string joined = defaults.string(behindAppsKey).value_or("");
    std::vector<std::string> ids;
    for (std::size_t at = 0; at < joined.size();) {
        const std::size_t end = std::min(joined.find('\n', at), joined.size());
        if (end > at) ids.push_back(joined.substr(at, end - at));
        at = end + 1;
    }
    return ids;
}

void Settings::setBehindApps(UserDefaults& defaults, const std::vector<std::string>& ids) {
    std::string joined;
    for (const auto& id : ids) {
        if (!joined.empty()) joined += '\n';
        joined += id;
    }
    defaults.set(behindAppsKey, joined);
}

void Settings::addBehindApps(UserDefaults& defaults, const std::vector<std::string>& ids) {
    auto list = behindApps(defaults);
    for (const auto& id : ids) {
        if (!id.empty() && std::ranges::find(list, id) == list.end()) list.push_back(id);
    }
    setBehindApps(defaults, list);
}

void Settings::removeBehindApp(UserDefaults& defaults, std::string_view id) {
    auto list = behindApps(defaults);
    std::erase(list, id);
    setBehindApps(defaults, list);
}

}  // namespace quibbits
