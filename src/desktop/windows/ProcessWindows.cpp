#include "desktop/windows/ProcessWindows.h"

#include <fcntl.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <set>
#include <utility>

#include "desktop/files/FileDescriptor.h"
#include "desktop/windows/Spawn.h"
#include "platform/Lifetime.h"
#include "wire/Channel.h"
#include "wire/ViewCodec.h"

namespace quibbits {
namespace {

using namespace views;

class ProcessWindow final : public ViewWindow {
public:
    ProcessWindow(EventRunLoop& loop, FileDescriptor channel)
        : loop_(loop), channel_(std::move(channel)) {
        readable_ = loop_.watch(channel_.get(), [this] { receive(); });
    }

    /// One that could not be started: closes a moment later.
    explicit ProcessWindow(EventRunLoop& loop) : loop_(loop) { closeSoon(); }

    void begin(const WindowSpec& spec, const View& tree) {
        Json message;
        message.set("window", write(spec));
        message.set("tree", written(tree));
        send(packed(message.dump()));
    }

    void update(View tree) override {
        Json message;
        message.set("tree", written(tree));
        send(packed(message.dump()));
    }

    void bringToFront() override {
        Json message;
        message.set("front", true);
        send(packed(message.dump()));
    }

private:
    /// The tree as JSON. Its pictures are sent before it, each once.
    Json written(const View& tree) {
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
            if (count < 0) return end();
            unsent_.erase(0, static_cast<std::size_t>(count));
        }
        if (unsent_.empty()) {
            writable_.reset();
            copy_ = FileDescriptor();
        } else if (!copy_) {
            waitForRoom();
        }
    }

    /// The loop takes one watch a descriptor, so room is watched for on a copy.
    void waitForRoom() {
        copy_ = FileDescriptor(fcntl(channel_.get(), F_DUPFD_CLOEXEC, 0));
        if (!copy_) return end();
        writable_ = loop_.watchWritable(
            copy_.get(), [this] { loop_.post(lifetime_.guard([this] { flush(); })); });
    }

    void receive() {
        std::array<char, 4096> bytes;
        const ssize_t count = recv(channel_.get(), bytes.data(), bytes.size(), MSG_DONTWAIT);
        if (count < 0 && (errno == EAGAIN || errno == EINTR)) return;
        if (count <= 0 || !unpacker_.add(bytes.data(), static_cast<std::size_t>(count))) {
            return end();
        }
        // From the queue: the window may be let go of in any of the calls.
        while (auto message = unpacker_.next()) {
            loop_.post(lifetime_.guard([this, message = *std::move(message)] { heed(message); }));
        }
    }

    void heed(const Message& message) {
        const auto* text = std::get_if<std::string>(&message);
        const auto json = text ? Json::parse(*text) : JsonResult{};
        const auto action = json ? readAction(*json.value) : std::nullopt;
        if (!action) return;
        if (const auto told = onAction) told(*action);
    }

    void end() {
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
    const auto own = std::filesystem::read_symlink("/proc/self/exe", error);
    const auto beside = own.parent_path() / name;
    return !error && std::filesystem::exists(beside, error) ? beside : name;
}

std::unique_ptr<ViewWindow> ProcessWindows::open(const WindowSpec& spec, View tree) {
    constexpr int childsEnd = 3;
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) {
        return std::make_unique<ProcessWindow>(loop_);
    }
    FileDescriptor ours(ends[0]);
    const FileDescriptor theirs(ends[1]);
    if (!spawnDetached({program_.native()}, theirs.get(), childsEnd)) {
        std::fprintf(stderr, "Quibbits: %s, which shows the settings, cannot be started\n",
                     program_.c_str());
        return std::make_unique<ProcessWindow>(loop_);
    }
    auto window = std::make_unique<ProcessWindow>(loop_, std::move(ours));
    window->begin(spec, tree);
    return window;
}

}  // namespace quibbits
