#pragma once
// Watches the user's Downloads folder and finds files worth deleting: exact duplicates, very large
// new downloads, installers left lying about, disk images that were just ejected. Touches no file;
// each is offered once, ever. Starts by itself and works as long as it lives.

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "platform/Files.h"
#include "platform/Lifetime.h"
#include "platform/RunLoop.h"
#include "platform/UserDefaults.h"
#include "platform/Volumes.h"
#include "platform/WorkQueue.h"

namespace quibbits {

/// Files that may go, and why.
struct DownloadsFind {
    std::vector<std::string> paths;
    std::string title;
    std::string why;
    bool operator==(const DownloadsFind&) const = default;
};

/// One look after another at a folder. Remembers which names it has met: what lay there at the
/// first look is judged more mildly than what comes later.
class DownloadsScan {
public:
    DownloadsScan(const Files& files, std::string folder)
        : files_(files), folder_(std::move(folder)) {}

    /// What is to be offered, in order; some of it may have been offered before. Reads files.
    std::vector<DownloadsFind> look(Date now, const std::stop_token& stop);

    /// What a copy's name says that it is a copy of: "notes.txt" for "notes 2.txt", "notes(2).txt"
    /// and "notes (2).txt". Nothing for any other name.
    static std::optional<std::string> original(const std::string& name);
    /// Whether the name is that of a download that still goes on.
    static bool isUnfinished(const std::string& name);

private:
    struct Look;
    void judge(const FolderEntry& entry, Look& look);
    std::string pathOf(const std::string& name) const { return folder_ + "/" + name; }

    const Files& files_;
    std::string folder_;
    std::optional<std::unordered_set<std::string>> seen_;  // nothing before the first look
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

private:
    void changed(const std::string& name);
    void scan();
    void offer(DownloadsFind find);
    void remember();
    void readImages();
    void unmounted(const std::string& place);
    bool isOn() const { return world_.defaults.boolean("downloadsGuard"); }

    World world_;
    const std::string folder_;
    std::shared_ptr<DownloadsScan> scan_;        // touched in the background only
    std::map<std::string, std::string> images_;  // disk images by the path they are mounted at
    std::vector<std::string> offered_;           // every path ever offered, the latest last
    std::unordered_set<std::string> wasOffered_;
    Timer settling_;
    Timer seeding_;
    std::optional<Subscription> watch_;  // nothing where the folder cannot be watched
    std::vector<Subscription> subscriptions_;
    Lifetime lifetime_;
};

}  // namespace quibbits
