#include "desktop/files/DefaultsFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <thread>

#include "desktop/files/FileDescriptor.h"
#include "desktop/files/UserFolders.h"
#include "desktop/files/WholeFile.h"

namespace quibbits {
namespace {

namespace fs = std::filesystem;

constexpr int lockTries = 50;
constexpr std::chrono::milliseconds betweenLockTries{5};

/// The lock that every writer of the file holds while it reads, merges and renames.
class WriteLock {
public:
    explicit WriteLock(const fs::path& file)
        : descriptor_(open((file.native() + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600)) {
        if (!descriptor_) return;
        for (int i = 0; i < lockTries && !held_; ++i) {
            if (i > 0) std::this_thread::sleep_for(betweenLockTries);
            held_ = flock(descriptor_.get(), LOCK_EX | LOCK_NB) == 0;
        }
        if (!held_) errno = EWOULDBLOCK;
    }
    explicit operator bool() const { return held_; }

private:
    FileDescriptor descriptor_;
    bool held_ = false;
};

/// Dotfile managers keep the real file elsewhere and link to it; the link stays.
fs::path realFile(const fs::path& file) {
    std::error_code error;
    const auto real = fs::canonical(file, error);
    return error ? file : real;
}

/// Whether a number as it is written is beyond all that can be stored.
bool isBoundless(std::string_view number) {
    double value = 0;
    const auto read = std::from_chars(number.data(), number.data() + number.size(), value);
    const auto power = number.find_first_of("eE");
    const bool isTiny = power != number.npos && number.substr(power + 1).starts_with('-');
    return read.ec == std::errc::result_out_of_range && !isTiny;
}

/// The text with nothing in place of numbers without bound: one of them, typed by hand, must not
/// cost all the other values.
std::string withoutBoundlessNumbers(const std::string& text) {
    constexpr std::string_view ofNumbers = "0123456789+-.eE";
    std::string kept;
    for (std::size_t at = 0; at < text.size();) {
        std::size_t end = at + 1;
        if (text[at] == '"') {
            while (end < text.size() && text[end] != '"') end += text[end] == '\\' ? 2 : 1;
            end = std::min(end + 1, text.size());
        } else if (text[at] == '-' || (text[at] >= '0' && text[at] <= '9')) {
            end = std::min(text.find_first_not_of(ofNumbers, at), text.size());
        }
        const std::string_view token = std::string_view(text).substr(at, end - at);
        kept += isBoundless(token) ? "null" : token;
        at = end;
    }
    return kept;
}

}  // namespace

std::optional<Json> jsonFromDefaults(const DefaultsValue& value) {
    struct Convert {
        std::optional<Json> operator()(bool v) const { return v; }
        std::optional<Json> operator()(std::int64_t v) const { return v; }
        std::optional<Json> operator()(double v) const {
            return std::isfinite(v) ? std::optional<Json>(v) : std::nullopt;
        }
        std::optional<Json> operator()(const std::string& v) const { return v; }
        std::optional<Json> operator()(Date v) const {
            if (!std::isfinite(v.secondsSince1970)) return std::nullopt;
            return Json(Json::Object{{"date", v.secondsSince1970}});
        }
        std::optional<Json> operator()(const std::vector<std::string>& v) const {
            return Json(Json::Array(v.begin(), v.end()));
        }
    };
    return std::visit(Convert{}, value);
}

std::optional<DefaultsValue> defaultsFromJson(const Json& json) {
    if (const auto* v = json.as<bool>()) return *v;
    if (const auto* v = json.as<std::int64_t>()) return *v;
    if (const auto* v = json.as<double>()) return *v;
    if (const auto* v = json.as<std::string>()) return *v;
    if (const auto* date = json.find("date")) {
        if (const auto seconds = date->number()) return Date{*seconds};
    }
    if (const auto* list = json.as<Json::Array>()) {
        std::vector<std::string> texts;
        for (const auto& item : *list) {
            const auto* text = item.as<std::string>();
            if (!text) return std::nullopt;
            texts.push_back(*text);
        }
        return texts;
    }
    return std::nullopt;
}

fs::path DefaultsFile::usualPlace() {
    return configFolder() / "quibbits/defaults.json";
}

DefaultsFile::DefaultsFile(fs::path file, std::function<void(Job)> later, Watcher watcher)
    : file_(std::move(file)), later_(std::move(later)), watcher_(std::move(watcher)) {
    readAgain();
}

DefaultsFile::~DefaultsFile() {
    flush();
}

std::optional<DefaultsValue> DefaultsFile::object(std::string_view key) const {
    if (auto value = stored(key)) return value;
    const auto found = registered_.find(key);
    return found == registered_.end() ? std::nullopt : std::optional(found->second);
}

std::optional<DefaultsValue> DefaultsFile::stored(std::string_view key) const {
    if (const auto found = unwritten_.find(key); found != unwritten_.end()) return found->second;
    refresh();
    const Json* json = contents_.find(key);
    return json ? defaultsFromJson(*json) : std::nullopt;
}

void DefaultsFile::set(std::string_view key, DefaultsValue value) {
    if (stored(key) == value) return;
    change(key, std::move(value));
}

void DefaultsFile::remove(std::string_view key) {
    refresh();
    if (unwritten_.contains(key) || contents_.find(key)) change(key, std::nullopt);
}

void DefaultsFile::registerDefaults(std::map<std::string, DefaultsValue> values) {
    for (auto& [key, value] : values) registered_[key] = std::move(value);
}

/// Every writer, this one included, puts a whole new file into the folder.
Subscription DefaultsFile::whenChanged(std::function<void()> tell) {
    if (!watcher_) return {};
    const fs::path real = realFile(file_);
    std::error_code error;
    fs::create_directories(real.parent_path(), error);
    auto watch = watcher_(
        real.parent_path().native(),
        [name = real.filename().native(), tell = std::move(tell)](const std::string& changed) {
            if (changed.empty() || changed == name) tell();
        });
    return watch ? *std::move(watch) : Subscription();
}

std::vector<std::pair<std::string, DefaultsValue>> DefaultsFile::all() const {
    refresh();
    Json merged = contents_;
    for (const auto& [key, value] : unwritten_) {
        const auto json = value ? jsonFromDefaults(*value) : std::nullopt;
        if (json) {
            merged.set(key, *json);
        } else {
            merged.erase(key);
        }
    }
    std::vector<std::pair<std::string, DefaultsValue>> values;
    for (const auto& [key, json] : *merged.as<Json::Object>()) {
        if (auto value = defaultsFromJson(json)) values.emplace_back(key, std::move(*value));
    }
    return values;
}

void DefaultsFile::change(std::string_view key, std::optional<DefaultsValue> value) {
    unwritten_.insert_or_assign(std::string(key), std::move(value));
    if (!later_ || flushComing_) return;
    flushComing_ = true;
    later_(alive_.guard([this] {
        flushComing_ = false;
        flush();
    }));
}

DefaultsFile::Stamp DefaultsFile::stampNow() const {
    struct stat info {};
    if (stat(file_.c_str(), &info) != 0) return {};
    return {info.st_ino, info.st_size, info.st_mtim.tv_sec, info.st_mtim.tv_nsec};
}

void DefaultsFile::refresh() const {
    if (stampNow() != stamp_) readAgain();
}

void DefaultsFile::readAgain() const {
    stamp_ = stampNow();
    const auto text = readWholeFile(file_, jsonMostBytes);
    if (!text) {
        const bool gone = stamp_ == Stamp{} && errno == ENOENT;
        state_ = gone ? State::missing : State::unreadable;
        if (gone) contents_ = Json::Object{};
        return;
    }
    if (text->find_first_not_of(" \t\r\n") == std::string::npos) {
        contents_ = Json::Object{};
        state_ = State::good;
        return;
    }
    auto parsed = Json::parse(*text);
    if (!parsed) parsed = Json::parse(withoutBoundlessNumbers(*text));
    const bool good = parsed && parsed.value->as<Json::Object>();
    state_ = good ? State::good : State::broken;
    if (good) contents_ = std::move(*parsed.value);
}

bool DefaultsFile::flush() {
    if (unwritten_.empty()) return true;
    failure_.clear();
    return writeMerged();
}

bool DefaultsFile::writeMerged() {
    std::error_code error;
    fs::create_directories(file_.parent_path(), error);
    const WriteLock lock(file_);
    if (!lock) return fail("cannot lock " + file_.native() + ".lock");
    readAgain();
    if (state_ == State::unreadable) return fail("cannot read " + file_.native());

    Json merged = contents_;
    for (const auto& [key, value] : unwritten_) {
        if (!value) {
            merged.erase(key);
        } else if (auto json = jsonFromDefaults(*value)) {
            merged.set(key, std::move(*json));
        }
    }
    if (state_ != State::good || merged != contents_) {
        if (state_ == State::broken && !setAside())
            return fail("cannot set aside " + file_.native());
        if (!replaceFile(merged.dump(2) + "\n")) return fail("cannot write " + file_.native());
    }
    contents_ = std::move(merged);
    state_ = State::good;
    stamp_ = stampNow();
    // A number that is not finite has no place in the file and stays in memory.
    std::erase_if(unwritten_, [](const auto& entry) {
        return !entry.second || jsonFromDefaults(*entry.second);
    });
    return true;
}

bool DefaultsFile::replaceFile(const std::string& text) {
    return writeWholeFile(realFile(file_), text);
}

bool DefaultsFile::setAside() const {
    for (int number = 1; number < 1000; ++number) {
        const auto aside = file_.native() + ".broken-" + std::to_string(number);
        if (renameat2(AT_FDCWD, file_.c_str(), AT_FDCWD, aside.c_str(), RENAME_NOREPLACE) == 0) {
            return true;
        }
        if (errno != EEXIST) return false;
    }
    return false;
}

bool DefaultsFile::fail(const std::string& what) {
    failure_ = what + ": " + std::strerror(errno);
    return false;
}

}  // namespace quibbits
