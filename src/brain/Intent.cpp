#include "brain/Intent.h"

namespace quibbits {

namespace {

constexpr auto never = std::nullopt;

constexpr std::array<IntentRow, intentCount> rows{{
    {Intent::nap, "nap", "Napping", false, never},
    {Intent::rest, "rest", "Catching its breath", false, 30},
    {Intent::sit, "sit", "Sitting quietly", false, never},
    {Intent::askForBerry, "askForBerry", "Asking you for a berry", false, 90},
    {Intent::inspect, "inspect", "Checking out a new file", true, never},
    {Intent::explore, "explore", "Exploring the desktop files", true, 180},
    {Intent::patrol, "patrol", "Patrolling its territory", true, 20},
    {Intent::visit, "visit", "Coming over to you", true, 120},
    {Intent::play, "play", "Playing", true, 90},
    {Intent::dance, "dance", "Dancing to the music", true, 40},
    {Intent::chargeUp, "chargeUp", "Charging up", false, 120},
    {Intent::surfLaps, "surfLaps", "Surfing laps on the charge", true, 60},
    {Intent::levitate, "levitate", "Floating about", true, 120},
    {Intent::teleport, "teleport", "Teleporting to you", true, 120},
    {Intent::daydream, "daydream", "Daydreaming", false, 150},
    {Intent::yawn, "yawn", "Yawning and stretching", false, 240},
    {Intent::sniff, "sniff", "Sniffing around", true, 90},
    {Intent::hum, "hum", "Humming to itself", false, 240},
    {Intent::bask, "bask", "Basking in the sun", false, 600},
    {Intent::fly, "fly", "Flying about", true, 45},
    {Intent::phase, "phase", "Sinking into your window", true, 150},
    {Intent::lick, "lick", "Licking your screen", true, 300},
    {Intent::snatch, "snatch", "Stealing your cursor", true, 900},
    {Intent::clone, "clone", "Making shadow clones", true, 240},
    {Intent::shadowGag, "shadowGag", "Chasing its own shadow", true, 420},
    {Intent::prank, "prank", "Up to no good", true, 300},
}};

constexpr bool inOrder() {
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (static_cast<std::size_t>(rows[i].intent) != i) return false;
    }
    return true;
}
static_assert(inOrder());

}  // namespace

const std::array<IntentRow, intentCount>& allIntents() {
    return rows;
}
const IntentRow& row(Intent intent) {
    return rows[static_cast<std::size_t>(intent)];
}

}  // namespace quibbits
