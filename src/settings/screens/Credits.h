#pragma once
// The artists of the creatures, as the credits page lists them.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Resources.h"

namespace quibbits::screens {

struct Artist {
    std::string name;
    std::string contact;  // of the first entry
    std::vector<Credit> entries;
};

/// One record an artist, by name without regard to case, the artist called Quibbits last.
std::vector<Artist> artists(const std::vector<Credit>& credits);
/// The address behind a contact: a web address, or a handle of a social network.
std::optional<std::string> creditLink(std::string_view contact);

}  // namespace quibbits::screens
