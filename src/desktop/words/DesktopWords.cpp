#include "desktop/words/DesktopWords.h"

#include <algorithm>
#include <array>

namespace quibbits::words {
namespace {

constexpr std::array table{
    // The switches.
    Row{"About every half hour it comes and asks you for a berry: drag one onto it from the menu "
        "bar dial.",
        "About every half hour it comes and asks you for a berry: drag one onto it from the dial "
        "in the tray."},
    Row{"Dances, twirls and rolls now and then while Apple Music or Spotify is playing.",
        "Dances, twirls and rolls now and then while a music player is playing."},
    Row{"Curls up when you leave the Mac for 5 minutes; wakes up glad when you're back.",
        "Curls up when you leave the computer for 5 minutes; wakes up glad when you're back."},
    Row{"Sweats and slows down when your Mac runs hot; faints if it overheats.",
        "Sweats and slows down when your computer runs hot; faints if it overheats."},
    Row{"Select files in Finder and press ⌥⌘⌫ (or ⌥-drop a file on a Quibbit): the one out on your "
        "desktop deletes them with its move (Sparrel's Thunderbolt) into the Trash. While on, this "
        "replaces Finder's own ⌥⌘⌫ \"Delete Immediately\", so files land in the Trash instead of "
        "being erased.",
        "Select files in your file manager and press Super+Alt+Backspace (or drop a file on a "
        "Quibbit with Alt held): the one out on your desktop deletes them with its move (Sparrel's "
        "Thunderbolt) into the Trash."},
    Row{"Your Mac", "Your computer"},

    // Quiet times: there are no automations, but everything can run a command.
    Row{"Set up once for each Focus you use (Do Not Disturb, Work, Fitness…):",
        "A keyboard shortcut, a timer or a script can begin and end it by a command:"},
    Row{"1. Shortcuts › Automation › New Automation › Focus › pick the Focus › “When Turning On” › "
        "Run Immediately.",
        ""},
    Row{"2. Add the “Open URLs” action with  quibbits://focus", "quibbits focus"},
    Row{"3. Make another for “When Turning Off” with  quibbits://unfocus", "quibbits unfocus"},
    Row{"Open Shortcuts", ""},

    // A creature's page.
    Row{"Something is moving inside! Click it in the menu bar dial to hatch it.",
        "Something is moving inside! Click it in the dial in the tray to hatch it."},
    Row{"Ready to evolve: drag the Storm Pebble from the menu bar dial onto it.",
        "Ready to evolve: drag the Storm Pebble from the dial in the tray onto it."},
    Row{"Ready to evolve: drag the Tether Loop from the menu bar dial onto it.",
        "Ready to evolve: drag the Tether Loop from the dial in the tray onto it."},
    Row{"While your Mac is charging, it soaks up the power: its energy refills and it doesn't get "
        "hungry.",
        "While your computer is charging, it soaks up the power: its energy refills and it doesn't "
        "get hungry."},
    Row{"While your Mac is charging, it surfs around 50 % faster.",
        "While your computer is charging, it surfs around 50 % faster."},
    Row{"Umbrool only. When your mouse sits untouched for a minute and a half, it grabs your "
        "cursor (a fake: the real one is just hidden), tugs it, and flies off with it. Touch the "
        "mouse or trackpad and it's yours again at once: \"Peek-a-boo!\"",
        "Umbrool only. When your mouse sits untouched for a minute and a half, it grabs your "
        "cursor (a fake: the real one is just hidden), tugs it, and flies off with it. Touch the "
        "mouse or touchpad and it's yours again at once: \"Peek-a-boo!\""},
    Row{"Tickles your Dock, tries to drag your window away by its corner (it's too heavy), or pats "
        "ghostly handprints across your screen that fade after a few seconds.",
        "Tickles your panel, tries to drag your window away by its corner (it's too heavy), or "
        "pats ghostly handprints across your screen that fade after a few seconds."},
    Row{"From 7 pm to 6 am, or whenever your Mac is in dark mode, it glows a faint purple and gets "
        "up to much more mischief (and naps less).",
        "From 7 pm to 6 am, or whenever your desktop is dark, it glows a faint purple and gets up "
        "to much more mischief (and naps less)."},
    Row{"Click the Egg in the menu bar dial.", "Click the Egg in the dial in the tray."},
    Row{"Select files in Finder and press ⌥⌘⌫: zaps them into the Trash.",
        "Select files in your file manager and press Super+Alt+Backspace: zaps them into the "
        "Trash."},

    // The welcome guide.
    Row{"The Homeball in your menu bar", "The Homeball in your tray"},
    Row{"The next pages set up what every Quibbit may do: where it can go, deleting files, "
        "feelings, and what it notices on your Mac. Everything can be changed later in Settings › "
        "General.",
        "The next pages set up what every Quibbit may do: where it can go, deleting files, "
        "feelings, and what it notices on your computer. Everything can be changed later in "
        "Settings › General."},
    Row{"To tell when you're watching YouTube, macOS asks once per browser whether Quibbits may "
        "read its address bar. Saying no just means they won't hide for YouTube in that browser.",
        "To tell when you're watching YouTube, Quibbits reads the title of your browser's window. "
        "What it reads stays on this computer."},
    Row{"They walk along the bottom of the screen, hop onto the Dock, climb your desktop files and "
        "come over to your cursor.",
        "They walk along the bottom of the screen, hop onto the panel, climb your desktop files "
        "and come over to your cursor."},
    Row{"To climb your desktop files, Quibbits asks Finder where they are. macOS asks you once.",
        "To climb your desktop files, Quibbits asks your file manager where they are."},
    Row{"Select files in Finder and press ⌥⌘⌫, or ⌥-drop them onto a Quibbit: the one out on your "
        "desktop deletes them with its own move, aimed at the file's icon.",
        "Select files in your file manager and press Super+Alt+Backspace, or drop them onto a "
        "Quibbit with Alt held: the one out on your desktop deletes them with its own move, aimed "
        "at the file's icon."},
    Row{"Lets it aim exactly at a file's icon in Finder windows and next to desktop widgets. "
        "Without it, it still deletes, just aimed less precisely. Turn on Quibbits in System "
        "Settings › Privacy & Security › Accessibility.",
        "Lets it aim exactly at a file's icon. Without it, it still deletes, just aimed less "
        "precisely. Turning it on makes your programs tell what they show; those that are open "
        "take it up when they start again."},
    Row{"Open Settings", "Turn On"},
    Row{"Ask Now", "Turn On"},
    Row{"Allowed", "Ready"},
    Row{"They have feelings, get hungry, and grow with real levels and friendship. Feed them "
        "berries from the menu bar dial. Turn these off for a pet that's always cheerful and never "
        "asks for anything.",
        "They have feelings, get hungry, and grow with real levels and friendship. Feed them "
        "berries from the dial in the tray. Turn these off for a pet that's always cheerful and "
        "never asks for anything."},
    Row{"macOS asks once whether Quibbits may show notifications.",
        "They come by your desktop's notification service, which decides how to show them."},
    Row{"Each Quibbit starts as an Egg in the menu bar dial. Click it to hatch. Here's who's "
        "coming:",
        "Each Quibbit starts as an Egg in the dial in the tray. Click it to hatch. Here's who's "
        "coming:"},

    // What is said and notified.
    Row{"Phew… your Mac's burning up.", "Phew… your computer's burning up."},
    Row{"Drag a berry onto it from the menu bar dial.",
        "Drag a berry onto it from the dial in the tray."},
};

bool isLeftOut(const std::string& original) {
    return !original.empty() && worded(original).empty();
}

bool isLeftOut(const views::View& view) {
    if (const auto* text = view.as<views::Text>()) return isLeftOut(text->text);
    if (const auto* button = view.as<views::Button>()) return isLeftOut(button->title);
    return false;
}

void leaveOut(views::View& tree) {
    std::erase_if(tree.children, [](const views::View& child) { return isLeftOut(child); });
    for (views::View& child : tree.children) leaveOut(child);
}

}  // namespace

std::span<const Row> rows() {
    return table;
}

std::string worded(const std::string& original) {
    const auto known = std::ranges::find(table, original, &Row::original);
    return known == table.end() ? original : std::string(known->here);
}

views::View worded(views::View tree) {
    leaveOut(tree);
    views::eachText(tree, [](std::string& text) { text = worded(text); });
    return tree;
}

Menu worded(Menu menu) {
    for (MenuItem& item : menu.items) item.title = worded(item.title);
    return menu;
}

NotificationRequest worded(NotificationRequest request) {
    request.title = worded(request.title);
    request.body = worded(request.body);
    return request;
}

}  // namespace quibbits::words
