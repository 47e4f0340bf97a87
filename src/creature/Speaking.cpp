// What a creature says and shows, as far as the settings let it.

#include "creature/Companion.h"

namespace quibbits {

namespace {

constexpr Seconds spokenFor = 3.0;

}  // namespace

std::optional<std::string> Companion::line(Moment moment) const {
    return pickLine(voice(), moment, {.name = name(), .cry = cry()}, random());
}

Image Companion::image(Face face) const {
    return computer().resources.image(sheetName(stage, form, shiny) + "-face-" +
                                      std::string(rawValue(face)));
}

void Companion::feel(Face face, const Bubble& bubble) {
    pet_.showFace({.image = image(face),
                   .caption = bubble.caption,
                   .speaker = bubble.speaker,
                   .thought = bubble.thought,
                   .seconds = bubble.seconds});
    if (onUtterance) onUtterance(*this, {face, bubble.caption, bubble.speaker, bubble.seconds});
}

void Companion::feelIfShown(Face face, const Bubble& bubble) {
    if (isOn(Setting::faces)) feel(face, bubble);
}

void Companion::speak(Moment moment, Face face, const Image& thought, Seconds base) {
    const auto words = isOn(Setting::chatter) ? line(moment) : std::nullopt;
    if (words) {
        feel(face, {.caption = words, .speaker = name(), .thought = thought, .seconds = spokenFor});
    } else {
        feelIfShown(face, {.thought = thought, .seconds = base});
    }
}

Companion::Bubble Companion::lineOr(Moment moment, std::string caption, Seconds spoken,
                                    Seconds silent) const {
    if (isOn(Setting::chatter)) {
        if (auto words = line(moment)) {
            return {.caption = std::move(words), .speaker = name(), .seconds = spoken};
        }
    }
    return {.caption = std::move(caption), .seconds = silent};
}

}  // namespace quibbits
