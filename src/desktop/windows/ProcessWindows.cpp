#include "desktop/windows/ProcessWindows.h"

#include <fcntl.h>
#include <malloc.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <set>
#include <utility>

#include "desktop/files/FileDescriptor.h"
#include "desktop/windows/Spawn.h"
#include "desktop/words/DesktopWords.h"
#include "platform/Lifetime.h"
#include "wire/Channel.h"
#include "wire/ViewCodec.h"

namespace quibbits {
namespace {

using namespace views;

constexpr Seconds lookPatience = 1;    // until a window is shown though nobody told light from dark
constexpr Seconds answerPatience = 3;  // for a process that is to bring its window to the front

/// Most of what a window showed lay in small pieces all over the heap, which the library keeps.
void giveMemoryBack() {
#ifdef __GLIBC__
    malloc_trim(0);
#endif
}

class ProcessWindow final : public ViewWindow {
public:
    ProcessWindow(EventRunLoop& loop, DesktopLook& look, FileDescriptor channel)
        : loop_(loop), look_(look), channel_(std::move(channel)) {
        readable_ = loop_.watch(channel_.get(), [this] { receive(); });
    }

    /// One that could not be started: closes a moment later.
    ProcessWindow(EventRunLoop& loop, DesktopLook& look) : loop_(loop), look_(look) { closeSoon(); }

    /// Whoever showed it lets go of its pictures first.
    ~ProcessWindow() override { loop_.post(giveMemoryBack); }
    ProcessWindow(const ProcessWindow&) = delete;
    ProcessWindow& operator=(const ProcessWindow&) = delete;

    /// The window is seen as soon as it is known whether it is to be dark.
    void begin(const WindowSpec& spec, View tree) {
        spec_ = spec;
        tree_ = std::move(tree);
        looks_ = look_.changed.subscribe([this] { lookChanged(); });
        if (look_.isKnown()) return show();
        patience_ = loop_.timer(lookPatience, [this] { show(); });
    }

    void update(View tree) override {
        if (tree == tree_) return;
        tree_ = std::move(tree);
        if (!isBegun_ || !unsent_.empty()) {
            isTreeWaiting_ = true;  // only the latest one is worth sending to somebody slow
        } else {
            sendTree();
        }
    }

    void bringToFront() override {
        if (!isBegun_) return;
        Json message;
        message.set("front", true);
        send(packed(message.dump()));
        if (!channel_ || patience_) return;
        patience_ = loop_.timer(answerPatience, [this] { end("does not answer"); });
    }

    bool wasShown() const override { return wasShown_; }

private:
    void show() {
        patience_.cancel();
        if (std::exchange(isBegun_, true)) return;
        Json message;
        message.set("protocol", protocolVersion);
        message.set("window", write(spec_));
        message.set("dark", look_.isDark());
        send(packed(message.dump()));
        sendTree();
    }

    void lookChanged() {
        if (!isBegun_) return show();
        Json message;
        message.set("dark", look_.isDark());
        send(packed(message.dump()));
    }

    void sendTree() {
        isTreeWaiting_ = false;
        Json message;
        message.set("tree", written(tree_));
        send(packed(message.dump()));
    }

    /// The tree in this desktop's words, as JSON. Its pictures are sent before it, each once.
    Json written(const View& original) {
        const View tree = words::worded(original);
        return write(tree, [this](const Image& image) {
            const std::uint64_t number = pictureNumber(image);
            if (number != 0 && known_.insert(number).second) {
                send(packed(NumberedPicture{number, image}));
            }
            return number;
        });
    }

    void send(const std::string& bytes) {
        if (!channel_) return;
        unsent_ += bytes;
        flush();
    }

    void flush() {
        while (!unsent_.empty()) {
            const ssize_t count =
                ::send(channel_.get(), unsent_.data(), unsent_.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
            if (count < 0 && errno == EINTR) continue;
            if (count < 0 && errno == EAGAIN) break;
            if (count < 0) return unsent_.clear();  // why, the other direction tells
            unsent_.erase(0, static_cast<std::size_t>(count));
        }
        if (unsent_.empty()) {
            writable_.reset();
            copy_ = FileDescriptor();
            if (isTreeWaiting_) sendTree();
        } else if (!copy_) {
            waitForRoom();
        }
    }

    /// The loop takes one watch a descriptor, so room is watched for on a copy.
    void waitForRoom() {
        copy_ = FileDescriptor(fcntl(channel_.get(), F_DUPFD_CLOEXEC, 0));
        if (!copy_) return end("cannot be told more");
        writable_ = loop_.watchWritable(
            copy_.get(), [this] { loop_.post(lifetime_.guard([this] { flush(); })); });
    }

    void receive() {
        std::array<char, 4096> bytes;
        const ssize_t count = recv(channel_.get(), bytes.data(), bytes.size(), MSG_DONTWAIT);
        if (count < 0 && (errno == EAGAIN || errno == EINTR)) return;
        if (count <= 0) return end(hasSaidGoodbye_ ? nullptr : "ended without a word");
        if (!unpacker_.add(bytes.data(), static_cast<std::size_t>(count))) {
            return end("talks nonsense");
        }
        // From the queue: the window may be let go of in any of the calls.
        while (auto message = unpacker_.next()) {
            if (isGoodbye(*message)) hasSaidGoodbye_ = true;
            loop_.post(lifetime_.guard([this, message = *std::move(message)] { heed(message); }));
        }
    }

    static bool isGoodbye(const Message& message) {
        const auto* text = std::get_if<std::string>(&message);
        const auto json = text ? Json::parse(*text) : JsonResult{};
        return json && json.value->find("closed");
    }

    void heed(const Message& message) {
        const auto* text = std::get_if<std::string>(&message);
        const auto json = text ? Json::parse(*text) : JsonResult{};
        if (!json) return;
        if (json.value->find("shown")) {
            wasShown_ = true;
            if (isBegun_) patience_.cancel();
        }
        const auto action = readAction(*json.value);
        if (!action) return;
        if (const auto told = onAction) told(*action);
    }

    /// With what is to be said of the process, unless its window was closed as windows are.
    void end(const char* trouble) {
        if (!channel_) return;
        if (trouble) {
            std::fprintf(stderr, "Quibbits: the program that shows \"%s\" %s\n",
                         spec_.title.c_str(), trouble);
        }
        patience_.cancel();
        looks_.reset();
        readable_.reset();
        writable_.reset();
        copy_ = FileDescriptor();
        channel_ = FileDescriptor();
        closeSoon();
    }

    void closeSoon() {
        loop_.post(lifetime_.guard([this] {
            if (const auto told = onClose) told();
        }));
    }

    EventRunLoop& loop_;
    DesktopLook& look_;
    WindowSpec spec_;
    View tree_;
    bool isBegun_ = false;
    bool isTreeWaiting_ = false;
    bool wasShown_ = false;
    bool hasSaidGoodbye_ = false;
    Timer patience_;
    Subscription looks_;
    FileDescriptor channel_;
    FileDescriptor copy_;
    Subscription readable_;
    Subscription writable_;
    Unpacker unpacker_;
    std::string unsent_;
    std::set<std::uint64_t> known_;  // pictures that the process has
    Lifetime lifetime_;
};

}  // namespace

std::filesystem::path ProcessWindows::usualProgram() {
    constexpr const char* name = "quibbits-settings";
    std::error_code error;
    const auto own = std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
    if (error) return name;
    for (const auto& place : {own / name, own.parent_path() / "libexec/quibbits" / name}) {
        if (std::filesystem::exists(place, error)) return place;
    }
    return name;
}

std::unique_ptr<ViewWindow> ProcessWindows::open(const WindowSpec& spec, View tree) {
    constexpr int childsEnd = 3;
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) {
        return std::make_unique<ProcessWindow>(loop_, look_);
    }
    FileDescriptor ours(ends[0]);
    const FileDescriptor theirs(ends[1]);
    if (!spawnDetached({program_.native()}, theirs.get(), childsEnd)) {
        std::fprintf(stderr, "Quibbits: %s, which shows the settings, cannot be started\n",
                     program_.c_str());
        return std::make_unique<ProcessWindow>(loop_, look_);
    }
    auto window = std::make_unique<ProcessWindow>(loop_, look_, std::move(ours));
    window->begin(spec, std::move(tree));
    return window;
}

}  // namespace quibbits
