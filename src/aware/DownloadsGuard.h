#pragma once
// Watches the user's Downloads folder and finds files worth deleting: exact duplicates, very large
// new downloads, installers left lying about, disk images that were just ejected. Touches no file;
// each is offered until the user has answered, at most once a launch. Starts by itself and works as
// long as it lives.

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "aware/OpenOffers.h"
#include "platform/Files.h"
#include "platform/Lifetime.h"
#include "platform/RunLoop.h"
#include "platform/UserDefaults.h"
#include "platform/Volumes.h"
#include "platform/WorkQueue.h"

namespace quibbits {

/// One look after another at a folder. Remembers which names it has met: what lay there at the
/// first look is judged more mildly than what comes later.
class DownloadsScan {
public:
    DownloadsScan(const Files& files, std::string folder)
        : files_(files), folder_(std::move(folder)) {}

    /// What is to be offered, in order; some of it may have been offered before. Names that are
    /// still written to are passed over, and not remembered. Reads files.
    using Names = std::unordered_set<std::string>;
    std::vector<DownloadsFind> look(Date now, const Names& busy, const std::stop_token& stop);

    /// What a copy's name says that it is a copy of: "notes.txt" for "notes 2.txt", "notes(2).txt"
    /// and "notes (2).txt". Nothing for any other name.
    static std::optional<std::string> original(const std::string& name);
    /// Whether the name is that of a download that still goes on, or of a note about one.
    static bool isUnfinished(const std::string& name);
    /// The name of what a file's news are about: that of the download for a note about it.
    static std::string subject(const std::string& name);

private:
    struct Look;
    void judge(const FolderEntry& entry, Look& look);
    static bool hasNote(const std::string& name, const Look& look);
    std::string pathOf(const std::string& name) const { return folder_ + "/" + name; }

    const Files& files_;
    std::string folder_;
    /// The names met, with the sizes of those that came after the first look: one that has grown
    /// since is judged again, for a download may have paused. Nothing before the first look.
    using Seen = std::unordered_map<std::string, std::optional<std::uint64_t>>;
    std::optional<Seen> seen_;
};

class DownloadsGuard {
public:
    struct World {
        Files& files;
        Volumes& volumes;
        WorkQueue& background;
        RunLoop& loop;
        UserDefaults& defaults;
    };
    explicit DownloadsGuard(const World& world);

    /// On the main queue.
    std::function<void(const DownloadsFind& find)> onFind;

    /// Whether a file is still what was offered: neither changed nor another of its name.
    bool isAsOffered(const std::string& path) const;

    /// The user has answered the offer of these files, or has put it away: they are never offered
    /// again.
    void answered(const std::vector<std::string>& paths);

private:
    void changed(const std::string& name);
    void settleSoon();
    void settle();
    DownloadsScan::Names busyNames() const;
    void scan();
    void offer(DownloadsFind find);
    void present(OpenOffers::Offer offer);
    void offerAgain();
    void readImages();
    void unmounted(const std::string& place);
    bool isOn() const { return world_.defaults.boolean("downloadsGuard"); }

    World world_;
    const std::string folder_;
    std::shared_ptr<DownloadsScan> scan_;         // touched in the background only
    std::map<std::string, std::string> images_;   // disk images by the path they are mounted at
    std::vector<std::string> answered_;           // every path ever decided about, the latest last
    std::unordered_set<std::string> wasOffered_;  // in this run, or answered in an earlier one
    OpenOffers open_;
    bool hasOfferedAgain_ = false;
    std::map<std::string, std::string> prints_;  // of what was offered in this run
    std::map<std::string, Instant> changes_;     // the last one of each name not yet looked at
    Timer settling_;
    Timer seeding_;
    std::optional<Subscription> watch_;  // nothing where the folder cannot be watched
    std::vector<Subscription> subscriptions_;
    Lifetime lifetime_;
};

}  // namespace quibbits
