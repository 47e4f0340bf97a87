#pragma once
// The pages of the settings window and of the welcome guide: functions from records to trees of
// views. What an action means stands in SettingsWindow and Onboarding.

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "party/PetStats.h"
#include "platform/Computer.h"
#include "rules/Roster.h"
#include "settings/model/Setting.h"
#include "views/View.h"

namespace quibbits::screens {

using views::View;
using views::Views;
using Installed = std::vector<InstalledApplication>;

// Identities. An identity that begins with `storesPrefix` stands for the user default behind it:
// whatever value its action carries is stored under that key.
inline constexpr std::string_view storesPrefix = "default:";
inline constexpr std::string_view opensPrefix = "open:";     // an address
inline constexpr std::string_view playsPrefix = "play:";     // an animation
inline constexpr std::string_view creaturePrefix = "pet:";   // a card of the party
inline constexpr std::string_view leavesPrefix = "behind:";  // an application to strike off
inline constexpr std::string_view addsApplications = "add applications";
inline constexpr std::string_view choosesPage = "sidebar";
inline constexpr std::string_view choosesTab = "tab";
inline constexpr std::string_view choosesGuidePage = "guide";
inline constexpr std::string_view choosesForm = "form";
inline constexpr std::string_view startsOver = "start over";
inline constexpr std::string_view confirmsStartOver = "confirm";
inline constexpr std::string_view showsWelcome = "welcome";
inline constexpr std::string_view turnsQuiet = "quiet";  // or wakes
inline constexpr std::string_view goesBack = "back";
inline constexpr std::string_view goesOn = "next";
inline constexpr std::string_view asksPermission = "ask";
inline constexpr std::string_view startsWithSession = "starts with session";
inline constexpr std::string_view turnsOnAccessibility = "turn accessibility on";

/// A page of the settings window.
struct Page {
    enum class Kind { quibbit, party, general, credits };
    Kind kind = Kind::party;
    std::string creature;  // its store id, for a creature's page
    bool operator==(const Page&) const = default;

    /// "party", "general" and "credits" are pages; any other word is a creature's.
    static Page named(const std::string& word);
    std::string name() const;
};

/// A part of the guide.
enum class GuidePage { evolution, growth, traits, moves };
std::optional<GuidePage> guidePageNamed(std::string_view name);

/// What the user has opened on one creature's page.
struct QuibbitState {
    std::int64_t tab = 0;
    GuidePage guide = GuidePage::evolution;
    bool confirmsRestart = false;
    std::optional<std::string> form;  // of the moves; none for the creature's own
};

/// Moving pictures of animations, made once: cutting them out is slow.
struct Previews {
    std::map<std::string, views::Preview> known;
    bool isWhole = true;  // none was left for a later tree
};

// The settings window ---------------------------------------------------------------------------

struct SettingsState {
    std::optional<Page> page;
    QuibbitState quibbit;
    Installed installed;  // while the general page is shown
};
View settings(const Computer& computer, const std::vector<PetControls>& party,
              const SettingsState& state, Previews& previews);

View partyGrid(const std::vector<PetControls>& party);
View quibbit(const Computer& computer, const PetControls& controls, const QuibbitState& state,
             Previews& previews);
View general(const Computer& computer, const Installed& installed);
View credits(const Resources& resources);
View guide(const Computer& computer, const PetControls& controls, const QuibbitState& state);
Views evolutionPage(const Computer& computer, const PetControls& controls,
                    const QuibbitState& state);
View why(const PetControls& controls, Date now);

/// Every direction of an animation in turn.
views::Preview preview(const std::vector<Anim>& directions);

// The welcome guide -----------------------------------------------------------------------------

enum class WelcomeStep { welcome, where, moving, deleting, care, mac, notifications, party };
inline constexpr int welcomeSteps = 8;
View welcome(const Computer& computer, const Installed& installed, WelcomeStep step);
/// Puts the question of the step's page to the desktop.
void askPermission(const Computer& computer, WelcomeStep step);

// What several screens show ---------------------------------------------------------------------

View settingToggle(const UserDefaults& defaults, Setting setting);
/// A section with the switches of a group and the group's footnote.
View groupSection(const UserDefaults& defaults, SettingGroup group, bool titled = true);
View breakMinutes(const UserDefaults& defaults);
View behindApps(const UserDefaults& defaults, const Installed& installed);

/// The switch to start with the desktop; none where that cannot be chosen.
std::optional<View> startSection(const Computer& computer);
/// The same, the choice of a monitor and the services, as far as the computer tells of them.
Views sessionSections(const Computer& computer);
/// Does what an action of these sections says; false for any other action.
bool changeSession(const Computer& computer, const views::Action& action);

/// The portrait of a form for lists, by its sheets' name.
Image portrait(const Resources& resources, Stage stage, bool coralis);
/// "Sparrel", or "Coralian Thrummet".
/// A symbol, a bold title over a detail, and maybe a value.
View fact(std::string symbol, std::string title, std::string detail, std::string value = {});
std::string level(int number);
std::string formName(Stage stage, bool coralis);
std::string growthRateName(GrowthRate rate);
/// 1250000 as "1,250,000".
std::string grouped(double number);
/// The whole part of a number.
std::string whole(double number);
/// With two digits behind the point.
std::string twoDigits(double number);

}  // namespace quibbits::screens
