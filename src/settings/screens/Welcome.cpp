// The pages of the welcome guide: the house rules, what the desktop must allow, and who is coming.

#include <array>

#include "settings/screens/Screens.h"

namespace quibbits::screens {

using namespace views;

namespace {

struct Point {
    const char* icon;
    const char* title;
    const char* text;
};

View heading(std::string symbol, std::string title) {
    return {.content = Line{},
            .children = {{.content = Picture{.symbol = std::move(symbol), .size = 28}},
                         {.content = Text{std::move(title), TextStyle::title}},
                         {.content = Spacer{}}}};
}

View text(std::string words, TextStyle style = TextStyle::body) {
    return {.content = Text{std::move(words), style}};
}

/// A few of those who are to come.
View company(const Resources& resources) {
    View line{.content = Line{}, .id = "company", .children = {{.content = Spacer{}}}};
    struct Guest {
        Stage stage;
        double size;
    };
    for (const auto& [stage, size] :
         {Guest{Stage::mizzle, 64}, Guest{Stage::sparrel, 80}, Guest{Stage::thrummet, 96},
          Guest{Stage::umbrool, 96}, Guest{Stage::gloamer, 80}, Guest{Stage::wispul, 64}}) {
        line.children.push_back(
            {.content =
                 Picture{.image = portrait(resources, stage, false), .size = size, .round = true},
             .spoken = displayName(stage)});
    }
    line.children.push_back({.content = Spacer{}});
    return line;
}

Views welcomePage(const Resources& resources) {
    static constexpr std::array points{
        Point{"circle.circle", "The Homeball in your menu bar",
              "Click it for your party: send a Quibbit out, call it back, see how it's doing, "
              "drag a berry onto it. Right-click it for Settings and Quit."},
        Point{"slider.horizontal.3", "First, the house rules",
              "The next pages set up what every Quibbit may do: where it can go, deleting files, "
              "feelings, and what it notices on your Mac. Everything can be changed later in "
              "Settings › General."},
        Point{"sparkles", "Then, each Quibbit's own tricks",
              "What only one Quibbit does (Sparrel's Thunderbolt, Umbrool's pranks…) is explained "
              "on its own page in Settings."},
    };
    Views page{company(resources), text("Welcome to Quibbits", TextStyle::title),
               text("Quibbit that live on your desktop: they roam, play, nap, get hungry, grow "
                    "and evolve, and help tidy your files.")};
    for (const Point& each : points) page.push_back(fact(each.icon, each.title, each.text));
    return page;
}

struct Permission {
    const char* key;         // under which it is remembered that the question was put
    SessionService service;  // that it hangs on, where the desktop tells of its services
    const char* title;
    const char* why;
    const char* button;
};

constexpr Permission desktopFiles{
    "onboarding.finderAsked", SessionService::accessibility, "Desktop files",
    "To climb your desktop files, Quibbits asks Finder where they are. macOS asks you once.",
    "Ask Now"};
constexpr Permission accessibility{
    nullptr, SessionService::accessibility, "Accessibility (optional)",
    "Lets it aim exactly at a file's icon in Finder windows and next to desktop widgets. Without "
    "it, it still deletes, just aimed less precisely. Turn on Quibbits in System Settings › "
    "Privacy & Security › Accessibility.",
    "Open Settings"};
constexpr Permission notifications{
    "onboarding.notificationsAsked", SessionService::notifications, "Notifications",
    "macOS asks once whether Quibbits may show notifications.", "Ask Now"};

bool isGranted(const Computer& computer, const Permission& permission) {
    if (const auto there = computer.session.has(permission.service)) return *there;
    if (!permission.key) return computer.accessibility.isTrusted();
    return computer.defaults.boolean(permission.key);
}

/// A desktop that lacks the service of notifications cannot be asked for it.
bool canBeAsked(const Computer& computer, const Permission& permission) {
    return permission.service != SessionService::notifications ||
           !computer.session.has(permission.service);
}

View permissionRow(const Computer& computer, const Permission& permission) {
    Fact fact{.title = permission.title, .detail = permission.why, .strong = true};
    const bool granted = isGranted(computer, permission);
    if (granted) {
        fact.value = "Allowed";
        fact.valueSymbol = "checkmark.circle.fill";
    } else if (!canBeAsked(computer, permission)) {
        fact.value = "Missing";
        fact.valueSymbol = "circle";
    }
    View row{.content = Line{}, .children = {{.content = fact}}};
    if (fact.value.empty()) {
        row.children.push_back(
            {.content = Button{.title = permission.button}, .id = std::string(asksPermission)});
    }
    return {.content = Section{}, .id = "permission", .children = {std::move(row)}};
}

struct GroupPage {
    SettingGroup group;
    const char* icon;
    const char* text;
};

const GroupPage& pageOf(WelcomeStep step) {
    static constexpr std::array pages{
        GroupPage{SettingGroup::where, "macwindow.on.rectangle",
                  "Your Quibbit live on a see-through layer over your screen. You choose whether "
                  "they walk over your app windows or only on the desktop, and which apps they "
                  "always stay behind."},
        GroupPage{SettingGroup::moving, "figure.walk",
                  "They walk along the bottom of the screen, hop onto the Dock, climb your "
                  "desktop files and come over to your cursor."},
        GroupPage{SettingGroup::deleting, "trash",
                  "Select files in Finder and press ⌥⌘⌫, or ⌥-drop them onto a Quibbit: the one "
                  "out on your desktop deletes them with its own move, aimed at the file's icon."},
        GroupPage{SettingGroup::care, "heart",
                  "They have feelings, get hungry, and grow with real levels and friendship. Feed "
                  "them berries from the menu bar dial. Turn these off for a pet that's always "
                  "cheerful and never asks for anything."},
        GroupPage{SettingGroup::mac, "laptopcomputer",
                  "They notice what's going on around them: music playing, your camera turning "
                  "on, the battery, heat, Wi-Fi, and you stepping away."},
        GroupPage{SettingGroup::notifications, "bell.badge",
                  "A notification when a Quibbit levels up, gets hungry, its ability activates, "
                  "or is ready to evolve (with Evolve and Not Now right in it)."},
    };
    return pages[static_cast<std::size_t>(step) - 1];
}

/// What stands below the switches of a page.
Views extras(const Computer& computer, const Installed& installed, WelcomeStep step) {
    switch (step) {
        case WelcomeStep::where:
            return {behindApps(computer.defaults, installed),
                    {.content = Section{},
                     .id = "note",
                     .children = {text("To tell when you're watching YouTube, macOS asks once per "
                                       "browser whether Quibbits may read its address bar. Saying "
                                       "no just means they won't hide for YouTube in that browser.",
                                       TextStyle::secondary)}}};
        case WelcomeStep::moving: return {permissionRow(computer, desktopFiles)};
        case WelcomeStep::deleting: return {permissionRow(computer, accessibility)};
        case WelcomeStep::mac:
            return {{.content = Section{},
                     .id = "break",
                     .children = {breakMinutes(computer.defaults)}}};
        case WelcomeStep::notifications: return {permissionRow(computer, notifications)};
        default: return {};
    }
}

Views groupPage(const Computer& computer, const Installed& installed, WelcomeStep step) {
    const GroupPage& page = pageOf(step);
    const auto& group = allSettingGroups()[static_cast<std::size_t>(page.group)];
    Views all{heading(page.icon, std::string(group.title)), text(page.text),
              groupSection(computer.defaults, page.group, false)};
    for (View& extra : extras(computer, installed, step)) all.push_back(std::move(extra));
    return all;
}

Views partyPage(const Computer& computer) {
    Views page{heading("circle.grid.3x3.fill", "Meet your party"),
               text("Each Quibbit starts as an Egg in the menu bar dial. Click it to hatch. Here's "
                    "who's coming:")};
    for (const Roster& slot : roster) {
        std::string icon = "lock";
        if (slot.id == "pet") icon = "bolt.fill";
        if (slot.id == "umbrool") icon = "moon.stars.fill";
        page.push_back(fact(std::move(icon),
                            std::string(slot.name) + " · " + std::string(slot.type),
                            std::string(slot.blurb)));
    }
    page.push_back(
        text("You'll find each one's guide, stats and its own switches in Settings, "
             "under its name."));
    if (auto start = startSection(computer)) page.push_back(*std::move(start));
    return page;
}

Views pageFor(const Computer& computer, const Installed& installed, WelcomeStep step) {
    if (step == WelcomeStep::welcome) return welcomePage(computer.resources);
    if (step == WelcomeStep::party) return partyPage(computer);
    return groupPage(computer, installed, step);
}

View bar(WelcomeStep step) {
    View line{.content = Line{.balanced = true}, .id = "bar"};
    if (step == WelcomeStep::welcome) {
        line.children.push_back({.content = Spacer{}});
    } else {
        line.children.push_back({.content = Button{.title = "Back"}, .id = std::string(goesBack)});
    }
    std::string forward = "Next";
    if (step == WelcomeStep::welcome) forward = "Get Started";
    if (step == WelcomeStep::party) forward = "Open My Party";
    line.children.push_back(
        {.content = Dots{.count = welcomeSteps, .current = static_cast<std::int64_t>(step)}});
    line.children.push_back(
        {.content = Button{.title = std::move(forward), .role = ButtonRole::primary},
         .id = std::string(goesOn)});
    return line;
}

}  // namespace

View welcome(const Computer& computer, const Installed& installed, WelcomeStep step) {
    return {.content = Paged{},
            .id = "guide",
            .children = {{.content = Form{},
                          .id = "step " + std::to_string(static_cast<int>(step)),
                          .children = pageFor(computer, installed, step)},
                         bar(step)}};
}

void askPermission(const Computer& computer, WelcomeStep step) {
    switch (step) {
        case WelcomeStep::moving:
            if (computer.session.has(desktopFiles.service)) computer.accessibility.askForTrust();
            computer.fileBrowser.desktopIcons();  // asking is what makes the desktop answer
            computer.defaults.set(desktopFiles.key, true);
            break;
        case WelcomeStep::deleting: computer.accessibility.askForTrust(); break;
        case WelcomeStep::notifications: computer.defaults.set(notifications.key, true); break;
        default: break;
    }
}

}  // namespace quibbits::screens
