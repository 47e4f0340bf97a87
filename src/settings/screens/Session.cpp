// What concerns the program and the desktop rather than the creatures: starting with it, the
// monitor to live on, and the services that the desktop has.

#include <algorithm>
#include <array>

#include "settings/screens/Screens.h"

namespace quibbits::screens {

using namespace views;

namespace {

struct ServiceWords {
    SessionService service;
    const char* title;
    const char* detail;  // what it is good for, or what to do without it
    const char* missing;
};

constexpr std::array services{
    ServiceWords{
        SessionService::tray, "Tray", "Holds the Homeball that opens the dial.",
        "Nothing shows the Homeball. Start Quibbits a second time to open the dial, or add "
        "a tray to your panel."},
    ServiceWords{SessionService::notifications, "Notification service",
                 "Shows what your Quibbit has to tell you.",
                 "Notifications are lost. Install one, such as your desktop's own or dunst."},
    ServiceWords{SessionService::accessibility, "Accessibility",
                 "Tells where the files on your desktop and in your file manager lie.",
                 "Off: desktop files are not climbed, and deleting is aimed less precisely. Turned "
                 "on, programs that are open take it up when they start again."},
};

View serviceFact(const ServiceWords& words, bool there) {
    return {.content = Fact{.title = words.title,
                            .detail = there ? words.detail : words.missing,
                            .value = there ? "Ready" : "Missing",
                            .valueSymbol = there ? "checkmark.circle.fill" : "circle"},
            .id = std::string("service ") + words.title};
}

std::optional<View> monitorSection(const Computer& computer) {
    const auto names = computer.screens.names();
    const std::string chosen = computer.defaults.string(chosenScreenKey).value_or("");
    if (names.size() < 2) return std::nullopt;
    Picker picker{.title = "Monitor", .choices = {{"", "Primary monitor"}}, .chosen = chosen};
    for (const std::string& name : names) picker.choices.push_back({name, name});
    if (!chosen.empty() && std::ranges::find(names, chosen) == names.end()) {
        picker.choices.push_back({chosen, chosen + " (not connected)"});
    }
    return View{.content = Section{.heading = "Where they live",
                                   .footer = "While that monitor is not connected they live on the "
                                             "primary one."},
                .id = "monitor",
                .children = {{.content = std::move(picker),
                              .id = std::string(storesPrefix) + std::string(chosenScreenKey)}}};
}

}  // namespace

std::optional<View> startSection(const Computer& computer) {
    const auto starts = computer.session.startsProgram();
    if (!starts) return std::nullopt;
    return View{.content = Section{},
                .id = "start",
                .children = {{.content = Toggle{.title = "Start when I log in",
                                                .detail = "Your Quibbit is there as soon as your "
                                                          "desktop is.",
                                                .isOn = *starts},
                              .id = std::string(startsWithSession)}}};
}

Views sessionSections(const Computer& computer) {
    Views sections;
    if (auto monitors = monitorSection(computer)) sections.push_back(*std::move(monitors));
    View offered{.content = Section{.heading = "What your desktop offers"}, .id = "services"};
    for (const ServiceWords& words : services) {
        if (const auto there = computer.session.has(words.service)) {
            offered.children.push_back(serviceFact(words, *there));
            if (*there || words.service != SessionService::accessibility) continue;
            offered.children.push_back({.content = Button{.title = "Turn Accessibility On"},
                                        .id = std::string(turnsOnAccessibility)});
        }
    }
    if (!offered.children.empty()) sections.push_back(std::move(offered));
    if (auto start = startSection(computer)) sections.push_back(*std::move(start));
    return sections;
}

bool changeSession(const Computer& computer, const Action& action) {
    if (action.id == turnsOnAccessibility) {
        computer.accessibility.askForTrust();
        return true;
    }
    if (action.id != startsWithSession) return false;
    if (const auto* starts = action.as<bool>()) computer.session.setStartsProgram(*starts);
    return true;
}

}  // namespace quibbits::screens
