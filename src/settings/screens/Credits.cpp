// Who drew the creatures, from the list that lies beside their pictures.

#include "settings/screens/Credits.h"

#include <algorithm>

#include "platform/Text.h"
#include "settings/screens/Screens.h"

namespace quibbits::screens {

using namespace views;

namespace {

constexpr std::string_view listedLast = "Quibbits";
constexpr const char* licence = "https://opensource.org/license/mit";
constexpr std::string_view socialProfiles = "https://bsky.app/profile/";

/// The rows of an artist: the name, then what came from it.
Views artistRows(const Artist& artist) {
    View heading{
        .content = Line{},
        .id = "artist " + artist.name,
        .children = {{.content = Text{artist.name, TextStyle::headline}}, {.content = Spacer{}}}};
    if (const auto address = creditLink(artist.contact)) {
        heading.children.push_back(
            {.content = Link{artist.contact, *address}, .id = std::string(opensPrefix) + *address});
    } else if (!artist.contact.empty()) {
        heading.children.push_back({.content = Text{artist.contact, TextStyle::secondary}});
    }
    Views rows{std::move(heading)};
    for (std::size_t i = 0; i < artist.entries.size(); ++i) {
        const Credit& entry = artist.entries[i];
        std::string parts;
        for (const std::string& part : entry.parts) parts += (parts.empty() ? "" : ", ") + part;
        rows.push_back(
            {.content = Column{},
             .id = "entry " + artist.name + " " + std::to_string(i),
             .children = {{.content = Text{entry.set + " · " + entry.kind, TextStyle::medium}},
                          {.content = Text{parts, TextStyle::caption}},
                          {.content = Text{entry.license, TextStyle::faint}}}});
    }
    return rows;
}

}  // namespace

std::vector<Artist> artists(const std::vector<Credit>& credits) {
    std::vector<Artist> all;
    for (const Credit& credit : credits) {
        auto known = std::ranges::find(all, credit.artist, &Artist::name);
        if (known == all.end()) {
            all.push_back({.name = credit.artist, .contact = credit.contact});
            known = all.end() - 1;
        }
        known->entries.push_back(credit);
    }
    std::ranges::stable_sort(all, {}, [](const Artist& artist) {
        return std::pair(artist.name == listedLast, asciiLowercase(artist.name));
    });
    return all;
}

std::optional<std::string> creditLink(std::string_view contact) {
    constexpr std::string_view wrapping = "<> ";
    const auto first = contact.find_first_not_of(wrapping);
    if (first == std::string_view::npos) return std::nullopt;
    contact = contact.substr(first, contact.find_last_not_of(wrapping) - first + 1);
    if (contact.starts_with("http")) return std::string(contact);
    if (contact.starts_with('@') && contact.find('.') != std::string_view::npos) {
        return std::string(socialProfiles) + std::string(contact.substr(1));
    }
    return std::nullopt;
}

View credits(const Resources& resources) {
    View artistSection{.content = Section{.heading = "Artists"}, .id = "artists"};
    for (const Artist& artist : artists(resources.credits())) {
        for (View& row : artistRows(artist)) artistSection.children.push_back(std::move(row));
    }
    return {
        .content = Form{},
        .id = "credits",
        .children = {
            {.content = Section{},
             .id = "thanks",
             .children = {{.content = Text{.text = "All Quibbit sprites and portraits are drawn by "
                                                   "the Quibbits Atelier. Thank you to everyone "
                                                   "below who shaped them.",
                                           .strong = "Quibbits Atelier"}}}},
            std::move(artistSection),
            {.content = Section{.heading = "Also"},
             .id = "also",
             .children = {
                 {.content = Text{"Creature data (learnsets, growth rates, natures, Fieldbook "
                                  "text): written for Quibbits."}},
                 {.content = Text{"Egg, berries, Storm Pebble, Homeball, hearts and sparks: pixel "
                                  "art made for Quibbits."}},
                 {.content = Line{},
                  .children = {{.content =
                                    Text{"Code and art may be used and passed on under the"}},
                               {.content = Link{"MIT licence", licence},
                                .id = std::string(opensPrefix) + licence},
                               {.content = Spacer{}}}},
                 {.content = Text{"The creatures belong to the people of the Quibbits project.",
                                  TextStyle::caption}}}}}};
}

}  // namespace quibbits::screens
