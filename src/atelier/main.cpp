// quibbits-atelier: draws every picture of the creatures.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "atelier/Animations.h"
#include "atelier/Atelier.h"
#include "atelier/Check.h"
#include "atelier/Contact.h"
#include "atelier/Icon.h"
#include "atelier/LineUp.h"
#include "atelier/Play.h"
#include "desktop/files/DiskResources.h"
#include "terminal/ProgressBar.h"

namespace {

using namespace quibbits::atelier;

constexpr int refused = 2;

constexpr std::string_view usage =
    "Draws the creatures' sprite sheets, descriptions and portraits.\n"
    "\n"
    "  quibbits-atelier --out DIR [FORM ...]         writes the sheets of these forms, or of all,\n"
    "                                                plain and shiny\n"
    "  quibbits-atelier --check DIR                  judges the sheets in a folder in words: what "
    "is\n"
    "                                                missing, and what does not fit\n"
    "  quibbits-atelier --contact DIR [FORM ...]     writes one enlarged overview a form\n"
    "  quibbits-atelier --strip FORM ANIMATION --out FILE\n"
    "                                                writes one animation's side view, enlarged\n"
    "  quibbits-atelier --play FORM ANIMATION --out FILE\n"
    "                                                writes it as an animated PNG, at true speed\n"
    "                                                and three times the size\n"
    "  quibbits-atelier --icons DIR                  writes the program's icon in eight sizes and\n"
    "                                                the one-coloured icon for trays in two\n"
    "  quibbits-atelier --line-up FILE [shiny]       writes all forms in a row, enlarged\n"
    "  quibbits-atelier --help                       shows this text\n";

void print(std::FILE* to, std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), to);
}

int refuse(const std::string& reason) {
    print(stderr, "quibbits-atelier: " + reason + "; --help lists what it understands\n");
    return refused;
}

int report(bool written, const std::string& where) {
    if (written) return 0;
    print(stderr, "quibbits-atelier: could not write " + where + "\n");
    return 1;
}

std::string formNames() {
    std::string names;
    for (const auto& form : forms()) names += (names.empty() ? "" : ", ") + std::string{form.name};
    return names;
}

int unknownForm(std::string_view name) {
    return refuse("no form is called '" + std::string{name} + "' (there are " + formNames() + ")");
}

/// `--out DIR` and `--contact DIR`, with the forms behind them.
int drawForms(std::span<const std::string> words) {
    if (words.size() < 2) return refuse(words[0] + " needs a folder");
    std::vector<Form> chosen;
    for (const auto& name : words.subspan(2)) {
        const auto* form = formNamed(name);
        if (form == nullptr) return unknownForm(name);
        chosen.push_back(*form);
    }
    if (chosen.empty()) chosen.assign(forms().begin(), forms().end());

    const std::filesystem::path folder = words[1];
    if (words[0] == "--out") {
        quibbits::ProgressBar bar("Drawing");
        return report(writeSet(folder, chosen, [&](double share) { bar.show(share); }), words[1]);
    }
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    for (const auto& form : chosen) {
        const auto path = folder / ("contact-" + std::string{form.name} + ".png");
        if (!writePng(path, contactSheet(form))) return report(false, path.string());
    }
    return 0;
}

/// `--strip FORM ANIMATION --out FILE` and `--play`, with the same words behind it.
int showAnimation(std::span<const std::string> words) {
    if (words.size() != 5 || words[3] != "--out") {
        return refuse(words[0] + " needs a form, an animation and --out FILE");
    }
    const auto* form = formNamed(words[1]);
    if (form == nullptr) return unknownForm(words[1]);
    const auto animations = animationsOf(form->build);
    const auto found = std::ranges::find(animations, words[2], &Animation::name);
    if (found == animations.end()) return refuse(words[1] + " has no animation '" + words[2] + "'");
    const bool written = words[0] == "--play" ? writeBytes(words[4], play(*form, *found))
                                              : writePng(words[4], strip(*form, *found));
    return report(written, words[4]);
}

/// `--check DIR`.
int checkSet(std::span<const std::string> words) {
    if (words.size() != 2) return refuse("--check needs a folder");
    const auto judgement = judge(words[1], quibbits::DiskResources::ownSheets());
    for (const auto& note : judgement.notes) print(stdout, "note: " + note + "\n");
    for (const auto& fault : judgement.faults) print(stdout, "fault: " + fault + "\n");
    const auto count = [](std::size_t number, const std::string& thing) {
        return std::to_string(number) + " " + thing + (number == 1 ? "" : "s");
    };
    print(stdout, count(judgement.animations, "animation") + ", " +
                      count(judgement.faults.size(), "fault") + "\n");
    return judgement.faults.empty() ? 0 : 1;
}

/// `--icons DIR`.
int drawIcons(std::span<const std::string> words) {
    if (words.size() != 2) return refuse("--icons needs a folder");
    return report(writeIcons(words[1]), words[1]);
}

/// `--line-up FILE [shiny]`.
int drawLineUp(std::span<const std::string> words) {
    const bool shiny = words.size() == 3 && words[2] == "shiny";
    if (words.size() != (shiny ? 3 : 2)) return refuse("--line-up needs a file");
    return report(writePng(words[1], lineUp(shiny ? Coat::shiny : Coat::plain)), words[1]);
}

}  // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> words(argv + 1, argv + argc);
    if (words.empty()) return refuse("nothing to do");
    if (words[0] == "--help") {
        print(stdout, usage);
        return 0;
    }
    if (words[0] == "--out" || words[0] == "--contact") return drawForms(words);
    if (words[0] == "--strip" || words[0] == "--play") return showAnimation(words);
    if (words[0] == "--check") return checkSet(words);
    if (words[0] == "--icons") return drawIcons(words);
    if (words[0] == "--line-up") return drawLineUp(words);
    return refuse("'" + words[0] + "' is not understood");
}
