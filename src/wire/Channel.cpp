#include "wire/Channel.h"

#include <cstring>
#include <utility>
#include <vector>

namespace quibbits::views {
namespace {

// A message is its kind, the length of what follows, and that. Both ends are the same machine, so
// numbers stand as they lie in memory.
struct Head {
    std::uint32_t kind = 0;
    std::uint32_t length = 0;
};
struct PictureHead {
    std::uint64_t number = 0;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
};
constexpr std::uint32_t jsonKind = 0x4e4f534a;     // "JSON"
constexpr std::uint32_t pictureKind = 0x54434950;  // "PICT"
constexpr std::uint32_t longest = 32u << 20;
constexpr std::uint32_t widest = 8192;

template <typename T>
void append(std::string& bytes, const T& value) {
    const std::size_t at = bytes.size();
    bytes.resize(at + sizeof value);
    std::memcpy(bytes.data() + at, &value, sizeof value);
}

std::optional<NumberedPicture> unpackPicture(const char* bytes, std::size_t count) {
    PictureHead head;
    if (count < sizeof head) return std::nullopt;
    std::memcpy(&head, bytes, sizeof head);
    const std::uint64_t area = std::uint64_t{head.width} * head.height;
    if (head.width == 0 || head.height == 0 || head.width > widest || head.height > widest ||
        count - sizeof head != area * sizeof(Argb)) {
        return std::nullopt;
    }
    std::vector<Argb> pixels(area);
    std::memcpy(pixels.data(), bytes + sizeof head, area * sizeof(Argb));
    return NumberedPicture{
        head.number, Image::fromArgb(static_cast<int>(head.width), static_cast<int>(head.height),
                                     std::move(pixels))};
}

}  // namespace

std::string packed(const std::string& json) {
    std::string bytes;
    append(bytes, Head{jsonKind, static_cast<std::uint32_t>(json.size())});
    return bytes + json;
}

std::string packed(const NumberedPicture& picture) {
    const Image& image = picture.image;
    const auto width = static_cast<std::uint32_t>(image.width());
    const auto height = static_cast<std::uint32_t>(image.height());
    std::string bytes;
    append(bytes, Head{pictureKind,
                       static_cast<std::uint32_t>(sizeof(PictureHead) +
                                                  std::size_t{width} * height * sizeof(Argb))});
    append(bytes, PictureHead{picture.number, width, height});
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) append(bytes, image.at(x, y));
    }
    return bytes;
}

bool Unpacker::add(const char* bytes, std::size_t count) {
    if (broken_) return false;
    pending_.append(bytes, count);
    std::size_t at = 0;
    while (pending_.size() - at >= sizeof(Head)) {
        Head head;
        std::memcpy(&head, pending_.data() + at, sizeof head);
        broken_ = head.length > longest || (head.kind != jsonKind && head.kind != pictureKind);
        if (broken_ || pending_.size() - at - sizeof head < head.length) break;
        const char* const body = pending_.data() + at + sizeof head;
        if (head.kind == jsonKind) {
            messages_.emplace_back(std::string(body, head.length));
        } else if (auto picture = unpackPicture(body, head.length)) {
            messages_.emplace_back(*std::move(picture));
        } else {
            broken_ = true;
            break;
        }
        at += sizeof head + head.length;
    }
    pending_.erase(0, at);
    return !broken_;
}

std::optional<Message> Unpacker::next() {
    if (messages_.empty()) return std::nullopt;
    Message message = std::move(messages_.front());
    messages_.pop_front();
    return message;
}

}  // namespace quibbits::views
