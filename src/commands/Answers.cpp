#include "commands/Answers.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <utility>

#include "app/Address.h"
#include "codecs/Json.h"

namespace quibbits::commands {
namespace {

std::string twoDigits(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.2f", value);
    return text;
}

/// Characters, not bytes, so that columns stand below one another.
std::string padded(std::string text, std::size_t width) {
    const auto count = static_cast<std::size_t>(
        std::ranges::count_if(text, [](char c) { return (c & 0xc0) != 0x80; }));
    if (count < width) text.append(width - count, ' ');
    return text;
}

double brief(double value) {
    return std::round(value * 1000) / 1000;
}

Reply said(const Json& json) {
    return {.text = json.dump(2) + "\n"};
}

/// What it does now, in words for a sentence.
std::string doing(const Companion& creature) {
    if (creature.stage() == Stage::egg) return creature.presence().isBusy() ? "hatching" : "an egg";
    if (creature.presence().isBusy()) return "on its way";
    if (!creature.presence().isOut()) return "in its ball";
    if (creature.presence().isHeld()) return "held";
    if (creature.presence().isFainted()) return "fainted";
    if (creature.presence().isDozing()) return "asleep";
    const auto choice = creature.why().choice;
    return choice ? std::string(row(*choice).label) : "finding its feet";
}

std::string titled(const Companion& creature) {
    const auto& gender = creature.stage() == Stage::egg ? "" : creature.identity().gender;
    return creature.name() + (gender.empty() ? "" : " " + gender);
}

Json asJson(const Companion& creature) {
    return Json::Object{{"pet", creature.store()},
                        {"name", creature.name()},
                        {"stage", std::string(rawValue(creature.stage()))},
                        {"gender", creature.identity().gender},
                        {"level", creature.level()},
                        {"experience", brief(creature.identity().exp)},
                        {"friendship", brief(creature.needs().friendship)},
                        {"energy", brief(creature.needs().energy)},
                        {"hunger", brief(creature.needs().hunger)},
                        {"out", creature.presence().isOut()},
                        {"doing", doing(creature)}};
}

Json asJson(const Option& option) {
    Json::Array reasons;
    for (const Reason& reason : option.reasons) {
        reasons.emplace_back(
            Json::Object{{"label", std::string(reason.label)}, {"value", reason.value}});
    }
    return Json::Object{{"intent", std::string(rawValue(option.intent))},
                        {"label", std::string(row(option.intent).label)},
                        {"score", option.score},
                        {"reasons", std::move(reasons)}};
}

std::string whyText(const Companion& creature, const Why& why, Seconds ago) {
    std::string text = creature.name() + ": " + std::string(row(*why.choice).label) + ", decided " +
                       std::to_string(std::llround(std::max(ago, 0.0))) +
                       " s ago.\n\nHow it feels\n";
    for (const auto& [name, value] : why.needs) {
        text += "  " + padded(name, 30) + twoDigits(value) + "\n";
    }
    text += "\nWhat it could do, best first\n";
    for (const Option& option : why.options) {
        text += option.intent == why.choice ? "* " : "  ";
        text += padded(std::string(row(option.intent).label), 30) + twoDigits(option.score);
        const char* between = "   ";
        for (const Reason& reason : option.reasons) {
            text += between + std::string(reason.label) + " " + twoDigits(reason.value);
            between = " × ";
        }
        text += "\n";
    }
    return text;
}

}  // namespace

Reply Answers::answer(const std::string& line) {
    if (line.starts_with(ownScheme)) {
        delegate_.open({line});
        return {};
    }
    const auto words = wordsOf(line);
    if (words.empty()) return {.status = misused, .text = "that was not understood\n"};
    const std::string& word = words.front();
    const bool asJson = words.size() == 2 && words[1] == "--json";
    if (word == openLine) return open();
    if (word == dialLine) return openDial();
    if (word == settingsLine) return delegate_.showSettings(), Reply{};
    if (word == "strike") return strike({words.begin() + 1, words.end()});
    if (word == "party") return party(asJson);
    if (word == "why") return why(asJson);
    if (word == "status") return status(asJson);
    if (word == "quit") return quit();
    if (isForCreatures(word)) return hook(word);
    return {.status = misused, .text = "that was not understood\n"};
}

/// The settings, and where there is no tray to click the dial, too.
Reply Answers::open() {
    if (!computer_.statusItem.isShown()) openDial();
    delegate_.showSettings();
    return {};
}

Reply Answers::openDial() {
    if (const auto click = computer_.statusItem.onClick) click();
    return {};
}

Reply Answers::hook(const std::string& word) {
    // Before they hear it: what they do then changes the answer.
    const Companion* out = whoIsOut();
    const bool isFocus = word == "focus" || word == "unfocus";
    std::string silence;
    if (isFocused())
        silence = "focus mode is on: they sleep\n";
    else if (!out)
        silence = "nobody is out to hear it\n";
    else if (!out->presence().isAtHand())
        silence = out->name() + " is busy and did not hear it\n";
    delegate_.open({std::string(ownScheme) + "//" + word});
    if (isFocus || silence.empty()) return {};
    return {.status = failed, .text = silence};
}

Reply Answers::strike(const std::vector<std::string>& paths) {
    const auto stay = [](const std::string& why) {
        return Reply{.status = failed, .text = why + "; the files stay\n"};
    };
    const bool areAbsolute = std::ranges::all_of(
        paths, [](const std::string& path) { return path.starts_with('/') && path.size() > 1; });
    if (paths.empty() || !areAbsolute) return stay("that was not understood");
    if (!isOn(computer_.defaults, Setting::thunderbolt)) {
        return stay("striking files is switched off in the settings");
    }
    Companion* creature = delegate_.firstFree();
    if (creature && creature->canAttack()) {
        creature->zap(paths);
        return {};
    }
    const Companion* out = whoIsOut();
    if (!out) return stay("nobody is out who could strike");
    return stay(out->name() + " cannot strike now: it is " + doing(*out));
}

Reply Answers::quit() {
    if (delegate_.onTerminate) delegate_.onTerminate();
    return {};
}

Reply Answers::party(bool json) const {
    if (json) {
        Json::Array all;
        for (const auto& creature : delegate_.party()) all.push_back(asJson(*creature));
        return said(Json(std::move(all)));
    }
    std::string text;
    for (const auto& creature : delegate_.party()) {
        text += padded(titled(*creature), 16);
        if (creature->stage() != Stage::egg) {
            text +=
                padded("level " + std::to_string(creature->level()), 12) +
                padded("friendship " + std::to_string(std::llround(creature->needs().friendship)),
                       18);
        }
        text += doing(*creature) + "\n";
    }
    return {.text = text};
}

Reply Answers::why(bool json) const {
    const Companion* out = whoIsOut();
    if (!out) return {.status = failed, .text = "nobody is out who could have decided anything\n"};
    const Why why = out->why();
    if (!why.choice) {
        return {.status = failed, .text = out->name() + " has not decided anything yet\n"};
    }
    const Seconds ago = computer_.runLoop.date() - why.at;
    if (!json) return {.text = whyText(*out, why, ago)};
    Json::Object needs;
    for (const auto& [name, value] : why.needs) needs.emplace_back(name, value);
    Json::Array options;
    for (const Option& option : why.options) options.push_back(asJson(option));
    return said(Json::Object{{"pet", out->store()},
                             {"name", out->name()},
                             {"choice", std::string(rawValue(*why.choice))},
                             {"label", std::string(row(*why.choice).label)},
                             {"secondsAgo", brief(ago)},
                             {"needs", std::move(needs)},
                             {"options", std::move(options)}});
}

Reply Answers::status(bool json) const {
    const Companion* out = whoIsOut();
    if (json) {
        return said(Json::Object{{"running", true},
                                 {"version", about_.version},
                                 {"process", about_.process},
                                 {"display", about_.display},
                                 {"focus", isFocused()},
                                 {"out", out ? Json(out->store()) : Json()},
                                 {"doing", out ? Json(doing(*out)) : Json()}});
    }
    std::string text = "Quibbits " + about_.version + " runs as process " +
                       std::to_string(about_.process) + " on display " + about_.display + ".\n";
    text += out ? out->name() + " is out: " + doing(*out) + ".\n" : "Nobody is out.\n";
    if (isFocused()) text += "Focus mode is on.\n";
    return {.text = text};
}

const Companion* Answers::whoIsOut() const {
    const auto out = std::ranges::find_if(
        delegate_.party(), [](const auto& creature) { return creature->presence().isOut(); });
    return out == delegate_.party().end() ? nullptr : out->get();
}

bool Answers::isFocused() const {
    return std::ranges::any_of(delegate_.party(),
                               [](const auto& creature) { return creature->isQuiet(); });
}

}  // namespace quibbits::commands
