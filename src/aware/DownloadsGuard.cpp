#include "aware/DownloadsGuard.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <string_view>
#include <utility>

#include "platform/ByteCount.h"
#include "platform/Text.h"

namespace quibbits {

namespace {

constexpr Seconds quietFor = 2;            // after the last change, before a look
constexpr Seconds firstLook = 10;          // after the launch
constexpr Seconds installerAge = 604'800;  // a week
constexpr std::uint64_t bigSize = 500'000'000;
constexpr std::size_t mostRemembered = 1000;
constexpr const char* offeredKey = "downloads.offered";

using Deliver = std::function<void(const std::vector<DownloadsFind>&)>;

/// A name before its extension, and the extension without its dot. A dot at the beginning or at the
/// end makes none, nor does one before a blank: "setup 1.2 (1)" has none.
struct NameParts {
    std::string stem;
    std::string extension;
};
NameParts partsOf(const std::string& name) {
    const auto dot = name.rfind('.');
    if (dot == std::string::npos || dot == 0 || dot + 1 == name.size() ||
        name.find(' ', dot) != std::string::npos) {
        return {name, {}};
    }
    return {name.substr(0, dot), name.substr(dot + 1)};
}

std::string extensionOf(const std::string& name) {
    return asciiLowercase(partsOf(name).extension);
}

template <std::size_t count>
bool isOneOf(const std::string& word, const std::array<std::string_view, count>& words) {
    return std::ranges::find(words, word) != words.end();
}

bool isInstaller(const std::string& name) {
    static constexpr std::array<std::string_view, 7> kinds{"dmg",      "pkg",        "deb", "rpm",
                                                           "appimage", "flatpakref", "run"};
    return isOneOf(extensionOf(name), kinds);
}

/// What browsers, fetchers and torrent programs put behind a name until it is whole.
constexpr std::array<std::string_view, 11> unfinishedKinds{
    "crdownload", "download", "part", "partial", "opdownload", "wkdownload",
    "aria2",      "!qb",      "!ut",  "bc!",     "ytdl"};

/// Where the digits at the end of the text begin.
std::size_t digitsAtEnd(std::string_view text) {
    const auto last = text.find_last_not_of("0123456789");
    return last == std::string_view::npos ? 0 : last + 1;
}

std::string standardized(const std::string& path) {
    const auto normal = std::filesystem::path(path).lexically_normal();
    return (normal.has_filename() ? normal : normal.parent_path()).native();
}

}  // namespace

/// What one look needs and gathers.
struct DownloadsScan::Look {
    Date now;
    const std::stop_token& stop;
    const Names& busy;
    bool seeded = false;  // an earlier look has met what lay there
    Seen names;
    std::map<std::string, std::uint64_t> sizes;
    std::vector<std::string> batch;  // names of the duplicates of a first look
    std::vector<DownloadsFind> finds;
};

std::optional<std::string> DownloadsScan::original(const std::string& name) {
    const auto [stem, extension] = partsOf(name);
    std::string_view before(stem);
    const bool bracketed = before.ends_with(')');
    if (bracketed) before.remove_suffix(1);
    const auto digits = digitsAtEnd(before);
    if (digits == before.size()) return std::nullopt;
    before = before.substr(0, digits);
    if (bracketed) {
        if (!before.ends_with('(')) return std::nullopt;
        before.remove_suffix(1);
    }
    const bool spaced = before.ends_with(' ');
    if (spaced) before.remove_suffix(1);
    if (before.empty() || !(bracketed || spaced)) return std::nullopt;
    return std::string(before) + (extension.empty() ? "" : "." + extension);
}

bool DownloadsScan::isUnfinished(const std::string& name) {
    return isOneOf(extensionOf(name), unfinishedKinds);
}

std::string DownloadsScan::subject(const std::string& name) {
    return isUnfinished(name) ? partsOf(name).stem : name;
}

std::vector<DownloadsFind> DownloadsScan::look(Date now, const Names& busy,
                                               const std::stop_token& stop) {
    const auto entries = files_.list(folder_);
    if (!entries) return {};
    Look look{.now = now, .stop = stop, .busy = busy, .seeded = seen_.has_value()};
    if (seen_) look.names = *seen_;
    for (const FolderEntry& entry : *entries) {
        if (entry.size) look.sizes[entry.name] = *entry.size;
    }
    for (const FolderEntry& entry : *entries) judge(entry, look);
    seen_ = std::move(look.names);

    if (look.batch.empty()) return std::move(look.finds);
    std::uint64_t total = 0;
    std::vector<std::string> paths;
    for (const std::string& name : look.batch) {
        total += look.sizes[name];
        paths.push_back(pathOf(name));
    }
    const std::size_t count = paths.size();
    look.finds.push_back({.paths = std::move(paths),
                          .title = count == 1 ? "Duplicate download"
                                              : std::to_string(count) + " duplicate downloads",
                          .why = "Exact copies of files already in Downloads (" +
                                 fileSizeText(total) + "). Thunderbolt them all?"});
    return std::move(look.finds);
}

/// Whether a note lies beside it that its download goes on, as some fetchers leave one.
bool DownloadsScan::hasNote(const std::string& name, const Look& look) {
    return look.sizes.contains(name + ".aria2") || look.sizes.contains(name + ".st");
}

void DownloadsScan::judge(const FolderEntry& entry, Look& look) {
    const std::string& name = entry.name;
    if (!entry.isRegularFile || isUnfinished(name)) return;
    // An empty file keeps the place of a download that has just begun.
    if (look.busy.contains(name) || entry.size == 0U || hasNote(name, look)) return;
    const std::uint64_t size = entry.size.value_or(0);
    const auto met = look.names.find(name);
    const bool known = met != look.names.end() && met->second.value_or(size) == size;
    if (!known) look.names[name] = look.seeded ? std::optional(size) : std::nullopt;

    if (isInstaller(name) && entry.created && look.now - *entry.created > installerAge) {
        look.finds.push_back({.paths = {pathOf(name)},
                              .title = "Old installer",
                              .why = name + " has been in Downloads for over a week (" +
                                     fileSizeText(size) + "). Zap it?"});
        return;
    }
    if (look.seeded && known) return;

    const auto source = original(name);
    const auto twin = source ? look.sizes.find(*source) : look.sizes.end();
    if (twin != look.sizes.end() && twin->second == size &&
        files_.contentsEqual(pathOf(name), pathOf(*source), look.stop)) {
        if (!look.seeded) {
            look.batch.push_back(name);
        } else {
            look.finds.push_back({.paths = {pathOf(name)},
                                  .title = "Duplicate download",
                                  .why = name + " is a copy of " + *source + ". Zap the copy?"});
        }
        return;
    }
    if (look.seeded && size >= bigSize) {
        look.finds.push_back(
            {.paths = {pathOf(name)},
             .title = "Big download",
             .why = name + " takes " + fileSizeText(size) + ". Zap it when you're done with it."});
    }
}

DownloadsGuard::DownloadsGuard(const World& world)
    : world_(world),
      folder_(standardized(world.files.downloadsFolder())),
      scan_(std::make_shared<DownloadsScan>(world.files, folder_)),
      open_(world.defaults) {
    const auto saved = world_.defaults.object(offeredKey);
    if (const auto* paths = saved ? std::get_if<std::vector<std::string>>(&*saved) : nullptr) {
        for (const std::string& path : *paths) {
            if (wasOffered_.insert(path).second) answered_.push_back(path);
        }
    }
    watch_ = world_.files.watch(folder_, [this](const std::string& name) { changed(name); });
    subscriptions_.push_back(world_.volumes.mounted.subscribe([this] { readImages(); }));
    subscriptions_.push_back(
        world_.volumes.unmounted.subscribe([this](const std::string& place) { unmounted(place); }));
    readImages();
    seeding_ = world_.loop.timer(firstLook, [this] { scan(); });
}

void DownloadsGuard::changed(const std::string& name) {
    changes_[DownloadsScan::subject(name)] = world_.loop.now();
    if (!settling_) settleSoon();
}

/// A look follows when the first of the changed names has been quiet for long enough.
void DownloadsGuard::settleSoon() {
    settling_.cancel();
    if (changes_.empty()) return;
    const auto first =
        std::ranges::min_element(changes_, {}, [](const auto& change) { return change.second; });
    settling_ = world_.loop.timer(std::max(first->second + quietFor - world_.loop.now(), 0.0),
                                  [this] { settle(); });
}

void DownloadsGuard::settle() {
    const auto busy = busyNames();
    const auto quiet =
        std::erase_if(changes_, [&](const auto& change) { return !busy.contains(change.first); });
    settleSoon();
    if (quiet > 0) scan();
}

/// A file that is written all the time must not put off the look at the others.
DownloadsScan::Names DownloadsGuard::busyNames() const {
    constexpr Seconds roundingError = 1e-6;
    const Instant now = world_.loop.now();
    DownloadsScan::Names busy;
    for (const auto& [name, at] : changes_) {
        if (now - at < quietFor - roundingError) busy.insert(name);
    }
    return busy;
}

void DownloadsGuard::scan() {
    if (!isOn()) return;
    offerAgain();
    const Deliver deliver = lifetime_.guard([this](const std::vector<DownloadsFind>& finds) {
        for (const DownloadsFind& find : finds) offer(find);
    });
    world_.background.post([loop = &world_.loop, now = world_.loop.date(), work = scan_,
                            busy = busyNames(), deliver](const std::stop_token& stop) {
        auto finds = work->look(now, busy, stop);
        if (finds.empty() || stop.stop_requested()) return;
        loop->post([deliver, finds = std::move(finds)] { deliver(finds); });
    });
}

void DownloadsGuard::offer(DownloadsFind find) {
    std::erase_if(find.paths,
                  [this](const std::string& path) { return !wasOffered_.insert(path).second; });
    if (!isOn() || find.paths.empty()) return;
    present({.find = std::move(find)});
}

/// Offers files, whose prints are of now unless they are told.
void DownloadsGuard::present(OpenOffers::Offer offer) {
    if (prints_.size() > mostRemembered) prints_.clear();
    const bool isNew = offer.prints.empty();
    for (std::size_t i = 0; i < offer.find.paths.size(); ++i) {
        const std::string& path = offer.find.paths[i];
        if (isNew) offer.prints.push_back(world_.files.fingerprint(path));
        prints_[path] = offer.prints[i];
    }
    if (isNew) open_.add(offer);
    if (onFind) onFind(offer.find);
}

/// What an earlier run has offered and nobody has answered. Where one of the files is gone or has
/// changed, the look at the folder judges the others anew.
void DownloadsGuard::offerAgain() {
    if (std::exchange(hasOfferedAgain_, true)) return;
    const auto unanswered = open_.all();
    for (const auto& offer : unanswered) {
        const auto& paths = offer.find.paths;
        bool holds = true;
        for (std::size_t i = 0; i < paths.size(); ++i) {
            holds = holds && !wasOffered_.contains(paths[i]) && !offer.prints[i].empty() &&
                    world_.files.fingerprint(paths[i]) == offer.prints[i];
        }
        if (!holds) {
            open_.close(paths);
            continue;
        }
        wasOffered_.insert(paths.begin(), paths.end());
        present(offer);
    }
}

bool DownloadsGuard::isAsOffered(const std::string& path) const {
    const auto now = world_.files.fingerprint(path);
    const auto offered = prints_.find(path);
    return !now.empty() && (offered == prints_.end() || offered->second == now);
}

void DownloadsGuard::answered(const std::vector<std::string>& paths) {
    if (paths.empty()) return;
    open_.close(paths);
    for (const std::string& path : paths) {
        wasOffered_.insert(path);
        if (std::ranges::find(answered_, path) == answered_.end()) answered_.push_back(path);
    }
    const auto count = std::min(answered_.size(), mostRemembered);
    world_.defaults.set(
        offeredKey, std::vector<std::string>(answered_.end() - static_cast<std::ptrdiff_t>(count),
                                             answered_.end()));
}

void DownloadsGuard::readImages() {
    const auto mounted = world_.volumes.images();
    if (!mounted) return;
    for (const auto& [place, image] : *mounted) images_[standardized(place)] = image;
}

void DownloadsGuard::unmounted(const std::string& place) {
    const auto row = images_.extract(standardized(place));
    if (!row) return;
    const std::string& image = row.mapped();
    const std::filesystem::path file(image);
    if (standardized(file.parent_path().native()) != folder_ || !world_.files.exists(image)) return;
    const std::string name = file.filename();
    const DownloadsFind find{
        .paths = {image},
        .title = "Installer left behind",
        .why = "You've ejected " + name + ". Done installing? Zap the installer."};
    const Job job = lifetime_.guard([this, find] { offer(find); });
    // Through the background, so that it keeps its place behind a look that is under way.
    world_.background.post([loop = &world_.loop, job](const std::stop_token&) { loop->post(job); });
}

}  // namespace quibbits
