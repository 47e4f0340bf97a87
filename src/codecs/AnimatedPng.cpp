#include "codecs/AnimatedPng.h"

#include <zlib.h>

#include <algorithm>
#include <cassert>
#include <string_view>

namespace quibbits {

namespace {

using Bytes = std::vector<unsigned char>;

constexpr int mostTicks = 0xffff;  // that the format can give one frame

void put(Bytes& out, std::uint32_t value, int bytes = 4) {
    for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8) {
        out.push_back(static_cast<unsigned char>(value >> shift));
    }
}

void putChunk(Bytes& file, std::string_view type, const Bytes& data) {
    put(file, static_cast<std::uint32_t>(data.size()));
    const std::size_t checked = file.size();
    file.insert(file.end(), type.begin(), type.end());
    file.insert(file.end(), data.begin(), data.end());
    const auto sum = crc32(0, file.data() + checked, static_cast<uInt>(file.size() - checked));
    put(file, static_cast<std::uint32_t>(sum));
}

Bytes deflated(const Bytes& raw) {
    uLongf size = compressBound(static_cast<uLong>(raw.size()));
    Bytes out(size);
    compress2(out.data(), &size, raw.data(), static_cast<uLong>(raw.size()), Z_BEST_COMPRESSION);
    out.resize(size);
    return out;
}

}  // namespace

AnimatedPngWriter::AnimatedPngWriter(PngInfo size, int framesPerSecond)
    : size_(size), framesPerSecond_(std::max(framesPerSecond, 1)) {}

void AnimatedPngWriter::add(std::span<const std::uint32_t> pixels) {
    assert(pixels.size() ==
           static_cast<std::size_t>(size_.width) * static_cast<std::size_t>(size_.height));
    const bool stays = !frames_.empty() && std::ranges::equal(pixels, last_);
    if (stays && frames_.back().ticks < mostTicks) {
        ++frames_.back().ticks;
        return;
    }
    frames_.push_back(encode(pixels));
    last_.assign(pixels.begin(), pixels.end());
}

AnimatedPngWriter::Frame AnimatedPngWriter::encode(std::span<const std::uint32_t> pixels) const {
    const auto width = static_cast<std::size_t>(size_.width);
    int left = 0, top = 0, right = size_.width, bottom = size_.height;
    if (!last_.empty()) {
        left = size_.width, top = size_.height, right = 0, bottom = 0;
        for (std::size_t i = 0; i < pixels.size(); ++i) {
            if (pixels[i] == last_[i]) continue;
            const int x = static_cast<int>(i % width);
            const int y = static_cast<int>(i / width);
            left = std::min(left, x);
            right = std::max(right, x + 1);
            top = std::min(top, y);
            bottom = std::max(bottom, y + 1);
        }
        if (right == 0) left = top = 0, right = bottom = 1;  // a frame is never empty
    }
    Bytes raw;
    for (int y = top; y < bottom; ++y) {
        raw.push_back(0);  // no filter: pixel art has long runs as it is
        for (int x = left; x < right; ++x) {
            put(raw,
                pixels[static_cast<std::size_t>(y) * width + static_cast<std::size_t>(x)] &
                    0xFFFFFFu,
                3);
        }
    }
    return {.size = {right - left, bottom - top}, .x = left, .y = top, .deflated = deflated(raw)};
}

std::vector<std::byte> AnimatedPngWriter::finish() const {
    if (frames_.empty()) return {};
    Bytes file{0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'};
    Bytes header;
    put(header, static_cast<std::uint32_t>(size_.width));
    put(header, static_cast<std::uint32_t>(size_.height));
    header.insert(header.end(), {8, 2, 0, 0, 0});  // 8 bits, RGB, not interlaced
    putChunk(file, "IHDR", header);
    Bytes control;
    put(control, static_cast<std::uint32_t>(frames_.size()));
    put(control, 0);  // plays for ever
    putChunk(file, "acTL", control);

    std::uint32_t sequence = 0;
    for (const Frame& frame : frames_) {
        Bytes place;
        put(place, sequence++);
        put(place, static_cast<std::uint32_t>(frame.size.width));
        put(place, static_cast<std::uint32_t>(frame.size.height));
        put(place, static_cast<std::uint32_t>(frame.x));
        put(place, static_cast<std::uint32_t>(frame.y));
        put(place, static_cast<std::uint32_t>(frame.ticks), 2);
        put(place, static_cast<std::uint32_t>(framesPerSecond_), 2);
        place.insert(place.end(), {0, 0});  // stays, and replaces what is beneath
        putChunk(file, "fcTL", place);

        const bool first = &frame == &frames_.front();
        Bytes data;
        if (!first) put(data, sequence++);
        data.insert(data.end(), frame.deflated.begin(), frame.deflated.end());
        putChunk(file, first ? "IDAT" : "fdAT", data);
    }
    putChunk(file, "IEND", {});

    std::vector<std::byte> bytes(file.size());
    std::ranges::transform(file, bytes.begin(), [](unsigned char c) { return std::byte{c}; });
    return bytes;
}

}  // namespace quibbits
