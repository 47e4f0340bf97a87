// The last decision, with everything that was weighed.

#include <algorithm>

#include "settings/screens/Screens.h"

namespace quibbits::screens {

using namespace views;

namespace {

constexpr Color green = Color::rgb(0x34a853);

constexpr const char* explanation =
    "Each time it finishes something, every option below gets a score: its considerations "
    "multiplied together. It picks the best (randomly among options within 15 % of the best), "
    "skips things it did recently, and leans towards carrying on with what it was doing. Being "
    "petted, picked up, fed or plugged in interrupts it right away.";

std::string considerations(const Option& option) {
    std::string line;
    for (const Reason& reason : option.reasons) {
        if (!line.empty()) line += " × ";
        line += std::string(reason.label) + " " + twoDigits(reason.value);
    }
    return line;
}

View optionRow(const Option& option, bool chosen) {
    return {.content = Column{},
            .id = "option " + std::string(rawValue(option.intent)),
            .children = {
                {.content = Fact{.symbol = chosen ? "checkmark.circle.fill" : "",
                                 .title = std::string(row(option.intent).label),
                                 .value = twoDigits(option.score),
                                 .strong = chosen}},
                {.content = Meter{.amount = std::min(option.score, 1.0),
                                  .tint = chosen ? green : Color::clear()},
                 .spoken = std::string(row(option.intent).label)},
                {.content = Text{considerations(option), TextStyle::caption}},
            }};
}

View rightNow(const Why& why, Date now) {
    View section{.content = Section{.heading = "Right now", .footer = explanation},
                 .id = "right now"};
    if (why.choice) {
        section.children.push_back(
            {.content = Fact{.title = std::string(row(*why.choice).label),
                             .value = "decided " + whole(now - why.at) + "s ago"}});
    } else {
        section.children.push_back(
            {.content = Text{"It hasn't decided anything yet (an Egg, in its ball, or busy).",
                             TextStyle::secondary}});
    }
    return section;
}

}  // namespace

View why(const PetControls& controls, Date now) {
    const Why why = controls.why();
    View needs{.content = Section{.heading = "How it feels"}, .id = "needs"};
    for (const auto& [name, value] : why.needs) {
        needs.children.push_back({.content = Meter{.title = name, .amount = value}});
    }
    View options{.content = Section{.heading = "Options, best first"}, .id = "options"};
    for (const Option& option : why.options) {
        options.children.push_back(optionRow(option, option.intent == why.choice));
    }
    return {.content = Form{},
            .id = "why",
            .children = {rightNow(why, now), std::move(needs), std::move(options)}};
}

}  // namespace quibbits::screens
