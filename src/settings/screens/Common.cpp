#include <algorithm>
#include <array>
#include <cstdio>

#include "body/Pixels.h"
#include "settings/screens/Screens.h"

namespace quibbits::screens {

using namespace views;

View settingToggle(const UserDefaults& defaults, Setting setting) {
    const SettingRow& one = row(setting);
    return {.content = Toggle{.title = std::string(one.title),
                              .detail = std::string(one.detail),
                              .isOn = isOn(defaults, setting)},
            .id = std::string(storesPrefix) + std::string(one.key)};
}

View groupSection(const UserDefaults& defaults, SettingGroup group, bool titled) {
    const SettingGroupRow& one = allSettingGroups()[static_cast<std::size_t>(group)];
    View section{.content = Section{.heading = titled ? std::string(one.title) : "",
                                    .footer = std::string(one.footnote)},
                 .id = "group " + std::string(one.title)};
    for (const Setting setting : settingsOf(group)) {
        section.children.push_back(settingToggle(defaults, setting));
    }
    return section;
}

View breakMinutes(const UserDefaults& defaults) {
    const std::int64_t minutes = defaults.integer("breakMinutes");
    return {.content = Stepper{.title = "Remind me after " + std::to_string(minutes) + " minutes",
                               .value = minutes,
                               .lowest = 15,
                               .highest = 180,
                               .step = 15},
            .id = std::string(storesPrefix) + "breakMinutes",
            .enabled = isOn(defaults, Setting::breakReminder)};
}

View behindApps(const UserDefaults& defaults, const Installed& installed) {
    const bool enabled = isOn(defaults, Setting::overApps);
    View section{
        .content = Section{.heading = "Stays behind these apps"},
        .id = "behind these",
        .children = {{.content =
                          Text{"While one of these is in front, your Quibbit stays behind its "
                               "windows, as it does for full-screen windows, videos and "
                               "YouTube.",
                               TextStyle::secondary}}},
        .enabled = enabled};
    for (const std::string& id : Settings::behindApps(defaults)) {
        const auto known = std::ranges::find(installed, id, &InstalledApplication::id);
        const bool isKnown = known != installed.end();
        section.children.push_back(
            {.content = Line{},
             .id = "row " + id,
             .children = {
                 {.content = views::Application{.name = isKnown ? known->name : id,
                                                .icon = isKnown ? known->icon : ""}},
                 {.content = Spacer{}},
                 {.content =
                      Button{.title = "", .symbol = "minus.circle", .role = ButtonRole::borderless},
                  .id = std::string(leavesPrefix) + id,
                  .spoken = "Remove " + (isKnown ? known->name : id)}}});
    }
    Chooser chooser{.title = "Add App…"};
    for (const InstalledApplication& each : installed) {
        chooser.entries.push_back({.id = each.id, .title = each.name, .icon = each.icon});
    }
    section.children.push_back(
        {.content = std::move(chooser), .id = std::string(addsApplications)});
    return section;
}

Image portrait(const Resources& resources, Stage stage, bool coralis) {
    if (stage == Stage::egg) return Pixels::eggPortrait();
    return resources.image(std::string(rawValue(stage)) + (coralis ? "-coralis" : "") +
                           "-face-happy");
}

View fact(std::string symbol, std::string title, std::string detail, std::string value) {
    return {.content = Fact{.symbol = std::move(symbol),
                            .title = std::move(title),
                            .detail = std::move(detail),
                            .value = std::move(value),
                            .strong = true}};
}

std::string level(int number) {
    return "Lv " + std::to_string(number);
}

std::string formName(Stage stage, bool coralis) {
    return coralis ? "Coralian " + displayName(stage) : displayName(stage);
}

std::string growthRateName(GrowthRate rate) {
    static constexpr std::array names{"Erratic",     "Fast", "Medium Fast",
                                      "Medium Slow", "Slow", "Fluctuating"};
    static_assert(names.size() == growthRateCount);
    return names[static_cast<std::size_t>(rate)];
}

std::string whole(double number) {
    return std::to_string(static_cast<std::int64_t>(number));
}

std::string grouped(double number) {
    std::string digits = whole(number);
    const std::size_t sign = digits.starts_with('-') ? 1 : 0;
    for (std::size_t at = digits.size(); at > sign + 3;) {
        at -= 3;
        digits.insert(at, ",");
    }
    return digits;
}

std::string twoDigits(double number) {
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%.2f", number);
    return text.data();
}

}  // namespace quibbits::screens
