// The rules that hold for every creature.

#include "settings/screens/Screens.h"

namespace quibbits::screens {

using namespace views;

namespace {

View focusSection(const UserDefaults& defaults) {
    const bool quiet = defaults.boolean("focus.on");
    const auto small = [](std::string text) {
        return View{.content = Text{std::move(text), TextStyle::caption, true}};
    };
    return {
        .content = Section{.heading = "Focus",
                           .footer = "While a Focus is on it sleeps and stays quiet: no greetings, "
                                     "asking for berries, break reminders or reactions to hooks. "
                                     "It wakes when the Focus ends."},
        .id = "focus section",
        .children = {
            {.content =
                 Fact{.title = "Right now", .value = quiet ? "Asleep: a Focus is on" : "Awake"}},
            {.content = Column{},
             .children =
                 {small("Set up once for each Focus you use (Do Not Disturb, Work, Fitness…):"),
                  small(
                      "1. Shortcuts › Automation › New Automation › Focus › pick the Focus › “When "
                      "Turning On” › Run Immediately."),
                  small("2. Add the “Open URLs” action with  quibbits://focus"),
                  small("3. Make another for “When Turning Off” with  "
                        "quibbits://unfocus")}},
            {.content = Line{},
             .children = {{.content = Button{.title = "Open Shortcuts"},
                           .id = std::string(opensPrefix) + "/System/Applications/Shortcuts.app"},
                          {.content = Button{.title = quiet ? "Wake It Up" : "Quiet Now"},
                           .id = std::string(turnsQuiet)},
                          {.content = Spacer{}}}}}};
}

}  // namespace

View general(const Computer& computer, const Installed& installed) {
    View form{.content = Form{}, .id = "general"};
    for (const SettingGroupRow& group : allSettingGroups()) {
        View section = groupSection(computer.defaults, group.group);
        if (group.group == SettingGroup::mac) {
            section.children.push_back(breakMinutes(computer.defaults));
        }
        form.children.push_back(std::move(section));
        if (group.group == SettingGroup::where) {
            form.children.push_back(behindApps(computer.defaults, installed));
        }
    }
    form.children.push_back(focusSection(computer.defaults));
    for (View& section : sessionSections(computer)) form.children.push_back(std::move(section));
    form.children.push_back({.content = Section{},
                             .id = "again",
                             .children = {{.content = Button{"Show the Welcome Guide Again…"},
                                           .id = std::string(showsWelcome)}}});
    return form;
}

}  // namespace quibbits::screens
