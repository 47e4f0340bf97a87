#pragma once
// The user's defaults in one JSON file, shared with every other program that keeps to the same
// lock. Changes are seen by reads at once and go to the disk together, once a turn of the run loop:
// under the lock the file is read again, the changed keys are merged in, and a whole new file takes
// the place of the old one. So a kill at any moment leaves the old file or the new one, and two
// writers never undo each other. What the disk refuses holds in memory and is tried again.

#include <filesystem>
#include <functional>

#include "codecs/Json.h"
#include "platform/Lifetime.h"
#include "platform/RunLoop.h"
#include "platform/UserDefaults.h"

namespace quibbits {

class DefaultsFile final : public UserDefaults {
public:
    /// Watches the names in a folder, as Files::watch does.
    using Watcher = std::function<std::optional<Subscription>(
        const std::string& folder, std::function<void(const std::string& name)> changed)>;

    /// `later` runs a job after the present one, as RunLoop::post does. Without it nothing is
    /// written before flush or the end. Without a watcher nobody is ever told of changes.
    explicit DefaultsFile(std::filesystem::path file, std::function<void(Job)> later = {},
                          Watcher watcher = {});
    ~DefaultsFile() override;
    DefaultsFile(const DefaultsFile&) = delete;
    DefaultsFile& operator=(const DefaultsFile&) = delete;

    /// quibbits/defaults.json in $XDG_CONFIG_HOME, or in ~/.config.
    static std::filesystem::path usualPlace();

    std::optional<DefaultsValue> object(std::string_view key) const override;
    std::optional<DefaultsValue> stored(std::string_view key) const override;
    void set(std::string_view key, DefaultsValue value) override;
    void remove(std::string_view key) override;
    void registerDefaults(std::map<std::string, DefaultsValue> values) override;
    Subscription whenChanged(std::function<void()> tell) override;

    /// Every stored key in the file's order.
    std::vector<std::pair<std::string, DefaultsValue>> all() const;
    /// Writes what is not written yet. False when something had to stay in memory.
    bool flush();
    /// Why the last flush failed, in words for the user; empty when it did not.
    const std::string& failure() const { return failure_; }

private:
    /// What tells one state of the file from another.
    struct Stamp {
        std::uint64_t inode = 0;  // 0 while there is no file
        std::int64_t size = 0;
        std::int64_t seconds = 0;
        std::int64_t nanoseconds = 0;
        bool operator==(const Stamp&) const = default;
    };
    enum class State { missing, good, broken, unreadable };

    Stamp stampNow() const;
    void refresh() const;
    void readAgain() const;
    void change(std::string_view key, std::optional<DefaultsValue> value);
    bool writeMerged();
    bool replaceFile(const std::string& text);
    bool setAside() const;
    bool fail(const std::string& what);

    std::filesystem::path file_;
    std::function<void(Job)> later_;
    Watcher watcher_;
    std::map<std::string, DefaultsValue, std::less<>> registered_;
    std::map<std::string, std::optional<DefaultsValue>, std::less<>> unwritten_;  // none removes
    bool flushComing_ = false;
    std::string failure_;

    // The file as it was last read. A file that breaks while the program runs leaves the last good
    // contents here, so that the next write brings them back.
    mutable Json contents_{Json::Object{}};
    mutable Stamp stamp_;
    mutable State state_ = State::missing;
    Lifetime alive_;
};

/// How a value stands in the file, and back. What no value looks like gives nothing.
std::optional<Json> jsonFromDefaults(const DefaultsValue& value);
std::optional<DefaultsValue> defaultsFromJson(const Json& json);

}  // namespace quibbits
