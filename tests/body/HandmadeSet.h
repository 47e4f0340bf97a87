#pragma once
// A sheet set that a test puts together by hand: pictures by name, and one description, entry by
// entry.

#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "body/Sheets.h"
#include "platform/Resources.h"

namespace quibbits {

class HandmadeSet final : public Resources {
public:
    struct Entry {
        std::string name;
        std::string height = "10";
        std::vector<std::string> durations{"4", "4"};
        std::string copyOf = {};
    };

    /// Adds an entry without a picture.
    HandmadeSet& describe(const Entry& entry) {
        open("Anim");
        element("Name", entry.name);
        if (!entry.height.empty()) element("FrameHeight", entry.height);
        for (const auto& duration : entry.durations) element("Duration", duration);
        if (!entry.copyOf.empty()) element("CopyOf", entry.copyOf);
        close("Anim");
        return *this;
    }
    /// Adds an entry with a picture of rows of its height, frames of 10 pixels wide.
    HandmadeSet& draw(const Entry& entry, int rows = 8) {
        std::string file = "set-" + entry.name;
        std::ranges::transform(file, file.begin(),
                               [](char c) { return c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c; });
        const int frames = std::max(static_cast<int>(entry.durations.size()), 1);
        pictures[file] = rowsOf(frames * 10, rows, std::max(std::stoi(entry.height), 1));
        return describe(entry);
    }
    /// A picture whose every pixel tells its row: opaque, row number + 1 as its blue.
    static Image rowsOf(int width, int rows, int height) {
        std::vector<Argb> pixels;
        for (int y = 0; y < rows * height; ++y) {
            pixels.insert(pixels.end(), static_cast<std::size_t>(width),
                          0xff000000u + static_cast<Argb>(y / height + 1));
        }
        return Image::fromArgb(width, rows * height, std::move(pixels));
    }

    std::optional<PixelSize> imageSize(std::string_view name) const override {
        const auto found = pictures.find(name);
        if (found == pictures.end()) return std::nullopt;
        return PixelSize{found->second.width(), found->second.height()};
    }
    Image imageRows(std::string_view name, int first, int count) const override {
        ++reads;
        const auto found = pictures.find(name);
        if (found == pictures.end() || broken) return {};
        return found->second.cropped(0, first, found->second.width(), count);
    }
    std::optional<std::vector<XmlEvent>> xml(std::string_view name) const override {
        if (name != "set-anim" || events.empty()) return std::nullopt;
        return events;
    }

    void open(const char* tag) { events.push_back({XmlEvent::Kind::startElement, tag}); }
    void text(const std::string& value) { events.push_back({XmlEvent::Kind::text, value}); }
    void close(const char* tag) { events.push_back({XmlEvent::Kind::endElement, tag}); }
    void element(const char* tag, const std::string& value) {
        open(tag);
        text(value);
        close(tag);
    }

    mutable int reads = 0;  // of pieces of pictures
    std::map<std::string, Image, std::less<>> pictures;
    std::vector<XmlEvent> events;
    bool broken = false;  // pictures have a size and cannot be decoded
};

/// The row that a strip was cut from, by the pictures of a HandmadeSet.
inline int rowShown(const Anim& anim) {
    return static_cast<int>(anim.image.at(0, 0) & 0xff) - 1;
}

}  // namespace quibbits
