#include "aware/OpenOffers.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace quibbits {
namespace {

constexpr const char* openKey = "downloads.open";
constexpr std::size_t mostFiles = 1000;

/// A whole number of nothing but digits.
std::optional<std::size_t> countIn(const std::string& text) {
    std::size_t count = 0;
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, count);
    if (result.ec != std::errc{} || result.ptr != end) return std::nullopt;
    return count;
}

}  // namespace

// Saved as texts in a row: of each offer its title, its reason, how many files, and of each file
// the path and the print.

OpenOffers::OpenOffers(UserDefaults& defaults) : defaults_(defaults) {
    const auto saved = defaults_.object(openKey);
    const auto* texts = saved ? std::get_if<std::vector<std::string>>(&*saved) : nullptr;
    if (!texts) return;
    for (auto at = texts->begin(); texts->end() - at > 3;) {
        Offer offer{.find = {.title = at[0], .why = at[1]}};
        const auto count = countIn(at[2]);
        at += 3;
        const auto left = static_cast<std::size_t>(texts->end() - at);
        if (!count || *count == 0 || *count > left / 2) return;
        for (std::size_t i = 0; i < *count; ++i) {
            offer.find.paths.push_back(*at++);
            offer.prints.push_back(*at++);
        }
        offers_.push_back(std::move(offer));
    }
}

void OpenOffers::add(const Offer& offer) {
    offers_.push_back(offer);
    save();
}

void OpenOffers::close(const std::vector<std::string>& paths) {
    const auto closed = std::erase_if(offers_, [&](const Offer& offer) {
        const auto& own = offer.find.paths;
        return std::ranges::find_first_of(own, paths) != own.end();
    });
    if (closed > 0) save();
}

void OpenOffers::save() {
    std::size_t files = 0;
    auto first = offers_.end();
    while (first != offers_.begin() && files + std::prev(first)->prints.size() <= mostFiles) {
        files += (--first)->prints.size();
    }
    offers_.erase(offers_.begin(), first);
    if (offers_.empty()) return defaults_.remove(openKey);
    std::vector<std::string> texts;
    for (const auto& [find, prints] : offers_) {
        texts.insert(texts.end(), {find.title, find.why, std::to_string(prints.size())});
        for (std::size_t i = 0; i < prints.size(); ++i) {
            texts.insert(texts.end(), {find.paths[i], prints[i]});
        }
    }
    defaults_.set(openKey, std::move(texts));
}

}  // namespace quibbits
