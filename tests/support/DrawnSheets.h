#pragma once
// Sheet sets made in memory: every base has the animations that were asked for, each with eight
// rows of small frames, so that a test needs no file.

#include <map>
#include <string>
#include <vector>

#include "platform/Resources.h"

namespace quibbits {

class DrawnSheets final : public Resources {
public:
    struct Drawing {
        std::string name;
        std::vector<int> ticks{6, 6, 6, 6};
    };
    static constexpr int frameSide = 20;
    static constexpr int rows = 8;

    explicit DrawnSheets(std::vector<Drawing> drawings) : drawings_(std::move(drawings)) {}

    /// Everything that a walking creature plays, two thirds of a second each.
    static DrawnSheets ofWalker() { return withAlso({}); }
    /// And what the ghosts have beside it.
    static DrawnSheets ofTrickster() {
        return withAlso(
            {"Lick", "Pull", "Swing", "Strike", "TumbleBack", "Cringe", "Sink", "Head"});
    }

private:
    static DrawnSheets withAlso(const std::vector<const char*>& more) {
        std::vector<Drawing> list;
        for (const char* name : more) list.push_back({name, {10, 10, 10, 10}});
        for (const char* name : {"Walk", "Idle", "Sleep", "Hop", "Charge", "Shock", "Pose", "Hurt",
                                 "HitGround", "Eat", "Faint", "Wake", "Nod", "LeapForth", "Tumble",
                                 "Rotate", "Pain", "DeepBreath", "Double"}) {
            list.push_back({name, {10, 10, 10, 10}});
        }
        return DrawnSheets(std::move(list));
    }

public:
    std::optional<PixelSize> imageSize(std::string_view name) const override {
        if (const Drawing* drawing = find(name)) {
            return PixelSize{frameSide * static_cast<int>(drawing->ticks.size()), frameSide * rows};
        }
        if (name.find("-face-") != std::string_view::npos) return PixelSize{40, 40};
        return std::nullopt;
    }

    Image imageRows(std::string_view name, int first, int count) const override {
        const auto size = imageSize(name);
        if (!size) return {};
        const int height = std::min(count, size->height - first);
        if (height <= 0) return {};
        const auto pixels = static_cast<std::size_t>(size->width * height);
        return Image::fromArgb(size->width, height, std::vector<Argb>(pixels, 0xff336699u));
    }

    std::optional<std::vector<XmlEvent>> xml(std::string_view name) const override {
        if (!name.ends_with("-anim")) return std::nullopt;
        std::vector<XmlEvent> events;
        const auto element = [&](const char* tag, const std::string& text) {
            events.push_back({XmlEvent::Kind::startElement, tag});
            events.push_back({XmlEvent::Kind::text, text});
            events.push_back({XmlEvent::Kind::endElement, tag});
        };
        for (const Drawing& drawing : drawings_) {
            events.push_back({XmlEvent::Kind::startElement, "Anim"});
            element("Name", drawing.name);
            element("FrameHeight", std::to_string(frameSide));
            for (const int tick : drawing.ticks) element("Duration", std::to_string(tick));
            events.push_back({XmlEvent::Kind::endElement, "Anim"});
        }
        return events;
    }

private:
    const Drawing* find(std::string_view image) const {
        for (const Drawing& drawing : drawings_) {
            std::string tail = "-" + drawing.name;
            for (char& c : tail) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
            if (image.ends_with(tail)) return &drawing;
        }
        return nullptr;
    }

    std::vector<Drawing> drawings_;
};

}  // namespace quibbits
