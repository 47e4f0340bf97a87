#include "brain/Brain.h"

#include <algorithm>
#include <initializer_list>

#include "brain/Scores.h"

namespace quibbits {

namespace {

/// The terms that recur in the scores of one snapshot, and the list that they fill.
class Scoring {
public:
    explicit Scoring(const Mind& snapshot)
        : mind(snapshot),
          e(snapshot.energy),
          h(snapshot.hunger),
          f(snapshot.friendship),
          b3(0.3 + 0.7 * snapshot.boredom),
          b35(0.35 + 0.65 * snapshot.boredom),
          b4(0.4 + 0.6 * snapshot.boredom) {
        constexpr std::size_t longestList = 22;
        options.reserve(longestList);
    }

    void everybody();
    void plain();
    void coralian();
    void ghost();

    std::vector<Option> options;

private:
    void add(Intent intent, double base, std::initializer_list<Reason> reasons) {
        Option& option = options.emplace_back();
        option.intent = intent;
        option.score = base;
        for (const Reason& reason : reasons) apply(option, reason.label, reason.value);
    }
    static void apply(Option& option, std::string_view label, double value) {
        option.score *= value;
        option.reasons.add(label, value);
    }
    void ghostHour();

    const Mind& mind;
    const double e;
    const double h;
    const double f;
    const double b3;
    const double b35;
    const double b4;
};

void Scoring::everybody() {
    const double sleepy = mind.nature.isSleepy() ? 1.25 : 1.0;
    const double shy = mind.nature.isShy() ? 0.25 : 0.5;
    const double weary = std::max(fall(e, 0.35, 0.05), mind.night ? fall(e, 0.65, 0.30) : 0);

    add(Intent::nap, sleepy, {{"tired", weary}, {"low battery", mind.lowBattery ? 1.2 : 1.0}});
    add(Intent::rest, sleepy * 0.75,
        {{"a bit tired", fall(e, 0.55, 0.25)}, {"low battery", mind.lowBattery ? 1.4 : 1.0}});
    add(Intent::sit, 1.0, {{"calm", fall(e, 0.75, 0.45) * 0.25 + 0.18}});
    add(Intent::askForBerry, 1.0, {{"hungry", mind.hungerOn ? rise(h, 0.6, 0.9) : 0}});
    add(Intent::inspect, 0.95, {{"new file!", flag(mind.newFile)}, {"awake", rise(e, 0.15, 0.35)}});
    add(Intent::explore, mind.coralian ? 0.45 : 0.6,
        {{"files to explore", flag(mind.filesToExplore)},
         {"energetic", rise(e, 0.5, 0.8)},
         {"bored", b3}});
    add(Intent::patrol, mind.coralian ? 0.3 : 0.65, {{"energy", rise(e, 0.3, 0.6)}, {"bored", b3}});
    add(Intent::visit, shy,
        {{"cursor nearby", flag(mind.cursorReachable)},
         {"awake", rise(e, 0.15, 0.35)},
         {"wants you", 0.3 + 0.7 * std::max(mind.neglect, rise(f, 0.5, 0.9))}});
    add(Intent::play, (mind.coralian ? 0.55 : 0.85) * mind.nature.playfulness() / 3,
        {{"knows playful moves", flag(mind.canPlay)},
         {"energetic", rise(e, 0.45, 0.7)},
         {"likes you", mind.caring ? rise(f, 0.3, 0.6) : 1.0},
         {"bored", b3}});
    add(Intent::dance, 0.85, {{"music on", flag(mind.music)}, {"energy", rise(e, 0.25, 0.5)}});
    add(Intent::daydream, 0.5,
        {{"calm", rise(e, 0.3, 0.6)}, {"quiet moment", 0.4 + 0.6 * (1 - mind.boredom)}});
    add(Intent::yawn, sleepy * 0.7,
        {{"getting sleepy", fall(e, 0.55, 0.35) * rise(e, 0.15, 0.25)}});
    add(Intent::sniff, 0.45, {{"energy", rise(e, 0.35, 0.6)}, {"bored", b3}});
    add(Intent::hum, 0.4,
        {{"likes you", rise(f, 0.5, 0.85)},
         {"awake", rise(e, 0.15, 0.35)},
         {"no music on", mind.music ? 0 : 1.0}});
    add(Intent::bask, 0.5,
        {{"sunny daytime", flag(mind.daytime)},
         {"relaxed", rise(e, 0.3, 0.6) * fall(e, 1.0, 0.85)}});
}

void Scoring::plain() {
    add(Intent::chargeUp, 0.45,
        {{"charging", flag(mind.charging)}, {"knows Charge Orb", flag(mind.knowsChargeOrb)}});
}

void Scoring::coralian() {
    add(Intent::levitate, 0.9,
        {{"open air", flag(mind.openAir)}, {"energy", rise(e, 0.35, 0.6)}, {"bored", b4}});
    add(Intent::teleport, 0.4,
        {{"knows Psychic", flag(mind.knowsPsychic)},
         {"cursor nearby", flag(mind.cursorReachable)},
         {"likes you", 0.3 + 0.7 * rise(f, 0.3, 0.8)}});
    add(Intent::surfLaps, 0.6,
        {{"charging (Current Rider)", flag(mind.charging)}, {"energy", rise(e, 0.3, 0.6)}});
}

void Scoring::ghost() {
    add(Intent::fly, 0.95, {{"Levitate", 1.0}, {"energy", rise(e, 0.3, 0.55)}, {"bored", b35}});
    add(Intent::phase, 0.8,
        {{"your window to haunt", flag(mind.windowToHaunt)},
         {"energy", rise(e, 0.3, 0.55)},
         {"bored", b4}});
    add(Intent::lick, 0.6,
        {{"knows Lick", flag(mind.canLick)}, {"energy", rise(e, 0.3, 0.55)}, {"bored", b3}});
    add(Intent::snatch, 1.3,
        {{"cursor left alone", flag(mind.cursorLeftAlone)}, {"awake", rise(e, 0.2, 0.4)}});
    add(Intent::clone, 0.55,
        {{"shadow tricks", flag(mind.shadowTricks)},
         {"energy", rise(e, 0.35, 0.6)},
         {"bored", b3}});
    add(Intent::shadowGag, 0.45,
        {{"shadow tricks", flag(mind.shadowTricks)},
         {"energy", rise(e, 0.3, 0.55)},
         {"bored", b3}});
    add(Intent::prank, 0.65,
        {{"pranks", flag(mind.canPrank)}, {"energy", rise(e, 0.3, 0.55)}, {"bored", b3}});
    if (mind.ghostHour) ghostHour();
}

void Scoring::ghostHour() {
    for (Option& option : options) {
        switch (option.intent) {
            case Intent::fly:
            case Intent::phase:
            case Intent::lick:
            case Intent::clone:
            case Intent::shadowGag:
            case Intent::prank: apply(option, "ghost hour", 1.4); break;
            case Intent::nap:
            case Intent::rest:
            case Intent::yawn:
            case Intent::bask: apply(option, "ghost hour", 0.6); break;
            default: break;
        }
    }
}

bool keepsGoing(Intent intent) {
    return intent == Intent::nap || intent == Intent::sit || intent == Intent::inspect;
}

}  // namespace

std::vector<Option> Brain::score(const Mind& mind) {
    Scoring scoring(mind);
    scoring.everybody();
    if (mind.coralian)
        scoring.coralian();
    else if (mind.ghost)
        scoring.ghost();
    else
        scoring.plain();
    return std::move(scoring.options);
}

Intent Brain::decide(const Mind& mind, When now, Random& random) {
    options = score(mind);
    for (Option& option : options) {
        const auto coolDown = row(option.intent).coolDown;
        const auto done = lastDone.find(option.intent);
        if (coolDown && done != lastDone.end()) {
            const double factor = std::min((now.instant - done->second) / *coolDown, 1.0);
            option.score *= factor;
            option.reasons.add("done recently", factor);
        }
        if (keepsGoing(option.intent) && option.intent == choice) {
            option.score *= 1.1;
            option.reasons.add("keeps going", 1.1);
        }
    }
    std::ranges::stable_sort(options, std::ranges::greater{}, &Option::score);

    constexpr double closeToBest = 0.85;
    const double threshold = options.empty() ? 0 : closeToBest * options.front().score;
    const auto inPool = [&](const Option& o) { return o.score >= threshold && o.score > 0; };
    double total = 0;
    for (const Option& option : options) {
        if (inPool(option)) total += option.score;
    }
    double draw = random.below(std::max(total, 1e-9));

    // The pool is the head of the sorted list; its first option stands in when rounding lets the
    // walk run out.
    Intent chosen = Intent::sit;
    if (!options.empty() && inPool(options.front())) chosen = options.front().intent;
    for (const Option& option : options) {
        if (!inPool(option)) break;
        if (draw < option.score) {
            chosen = option.intent;
            break;
        }
        draw -= option.score;
    }

    choice = chosen;
    decidedAt = now.date;
    lastDone[chosen] = now.instant;
    return chosen;
}

}  // namespace quibbits
