// What a creature says and shows, as far as the settings let it.

#include <utility>

#include "creature/Companion.h"

namespace quibbits {

std::optional<std::string> Companion::line(Moment moment) const {
    return pickLine(voice(), moment, {.name = name(), .cry = cry()}, random());
}

Image Companion::image(Face face) const {
    return computer().resources.image(sheetName(stage(), identity_.form, identity_.shiny) +
                                      "-face-" + std::string(rawValue(face)));
}

void Companion::feel(Face face, const Bubble& bubble) {
    pet_.showFace({.image = image(face),
                   .caption = bubble.caption,
                   .speaker = bubble.speaker,
                   .thought = bubble.thought,
                   .seconds = bubble.seconds,
                   .tall = a().idle.height});
    if (listener_.onUtterance)
        listener_.onUtterance(*this, {face, bubble.caption, bubble.speaker, bubble.seconds});
    hasJustSaid_ = hasJustSaid_ || bubble.caption;
    if (std::exchange(hasJustShown_, true)) return;
    pet_.runLoop().post(pet_.lifetime().guard([this] { hasJustShown_ = hasJustSaid_ = false; }));
}

void Companion::feelIfShown(Face face, const Bubble& bubble) {
    if (isOn(Setting::faces)) feel(face, bubble);
}

void Companion::muse(Face face, const Bubble& bubble) {
    if (!hasJustShown_) feelIfShown(face, bubble);
}

void Companion::speak(const Speech& speech) {
    const auto words = isOn(Setting::chatter) ? line(speech.moment) : std::nullopt;
    if (words) {
        feel(speech.face, {.caption = words,
                           .speaker = name(),
                           .thought = speech.thought,
                           .seconds = speech.spoken});
    } else if (speech.otherwise || isOn(Setting::faces)) {
        feel(speech.face,
             {.caption = speech.otherwise, .thought = speech.thought, .seconds = speech.silent});
    }
}

}  // namespace quibbits
