#include <charconv>

#include "body/Sheets.h"

namespace quibbits {

namespace {

/// The most entries of one set. The richest have some forty; a description that repeats itself
/// without end would fill the memory with copies.
constexpr std::size_t mostAnims = 1024;

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view space = " \t\r\n\f\v";
    const auto first = text.find_first_not_of(space);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(space) - first + 1);
}

/// A whole number that is not negative.
std::optional<int> number(std::string_view text) {
    int value = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc{} || stop != end || value < 0) return std::nullopt;
    return value;
}

}  // namespace

AnimData AnimData::read(const Resources& resources, std::string_view base) {
    const auto events = resources.xml(std::string(base) + "-anim");
    return events ? parse(*events) : AnimData{};
}

AnimData AnimData::parse(const std::vector<XmlEvent>& events) {
    AnimData data;
    std::string name;
    std::string text;
    Info current;
    for (const XmlEvent& event : events) {
        switch (event.kind) {
            case XmlEvent::Kind::startElement:
                text.clear();
                if (event.value == "Anim") current = {};
                break;
            case XmlEvent::Kind::text: text += event.value; break;
            case XmlEvent::Kind::endElement: {
                const auto value = trimmed(text);
                if (event.value == "Name") {
                    name = value;
                } else if (event.value == "FrameHeight") {
                    current.height = number(value).value_or(0);
                } else if (event.value == "Duration") {
                    current.durations.push_back(number(value).value_or(1));
                } else if (event.value == "CopyOf") {
                    current.copyOf = value;
                } else if (event.value == "Anim" && data.order.size() < mostAnims) {
                    const bool isNew = data.anims.insert_or_assign(name, current).second;
                    if (isNew) data.order.push_back(name);
                }
                break;
            }
        }
    }
    return data;
}

std::optional<AnimData::Resolved> AnimData::resolve(std::string_view name) const {
    const auto entry = anims.find(name);
    if (entry == anims.end()) return std::nullopt;
    const std::string& target = entry->second.copyOf.value_or(entry->first);
    const auto found = anims.find(target);
    if (found == anims.end()) return std::nullopt;
    return Resolved{found->first, &found->second};
}

}  // namespace quibbits
