#pragma once
// The fields of every kind of view, each named once: writing and reading both go through these.

#include <concepts>
#include <string_view>
#include <type_traits>

#include "views/View.h"

namespace quibbits::views {

/// A kind of view, to be read from or to be filled.
template <typename T, typename Kind>
concept Like = std::same_as<std::remove_const_t<T>, Kind>;

template <typename T>
concept Plain = Like<T, Form> || Like<T, Paged> || Like<T, Spacer>;

template <Plain T, typename Visit>
void fields(T&, Visit&&) {}

template <Like<Column> T, typename Visit>
void fields(T& v, Visit&& visit) {
    visit("centredWidth", v.centredWidth);
}
template <Like<Line> T, typename Visit>
void fields(T& v, Visit&& visit) {
    visit("balanced", v.balanced);
}
template <Like<Grid> T, typename Visit>
void fields(T& v, Visit&& visit) {
    visit("cellWidth", v.cellWidth);
}
template <Like<Section> T, typename Visit>
void fields(T& v, Visit&& visit) {
    visit("heading", v.heading);
    visit("footer", v.footer);
}
template <Like<Disclosure> T, typename Visit>
void fields(T& v, Visit&& visit) {
    visit("title", v.title);
}
template <Like<Card> T, typename Visit>
void fields(T& v, Visit&& visit) {
    visit("opens", v.opens);
}
template <Like<TabView> T, typename Visit>
void fields(T& v, Visit&& visit) {
    visit("chosen", v.chosen);
}
template <Like<Tab> T, typename Visit>
void fields(T& v, Visit&& visit) {
    visit("title", v.title);
    visit("symbol", v.symbol);
}
template <Like<Split> T, typename Visit>
void fields(T& v, Visit&& visit) {
    visit("chosen", v.chosen);
}
template <Like<SidebarRow> T, typename Visit>
void fields(T& v, Visit&& visit) {
    visit("title", v.title);
    visit("symbol", v.symbol);
    visit("picture", v.picture);
    visit("startsGroup", v.startsGroup);
}
template <Like<Text> T, typename Visit>
void fields(T& v, Visit&& visit) {
    visit("text", v.text);
    visit("style", v.style);
    visit("selectable", v.selectable);
    visit("strong", v.strong);
    visit("mostLines", v.mostLines);
    visit("leastLines", v.leastLines);
}
template <Like<Fact> T, typename Visit>
void fields(T& v, Visit&& visit) {
    visit("symbol", v.symbol);
    visit("title", v.title);
    visit("detail", v.detail);
    visit("value", v.value);
    visit("strong", v.strong);
    visit("valueSymbol", v.valueSymbol);
}
template <Like<Picture> T, typename Visit>
void fields(T& v, Visit&& visit) {
    visit("image", v.image);
    visit("symbol", v.symbol);
    visit("size", v.size);
    visit("round", v.round);
    visit("drained", v.drained);
}
template <Like<Meter> T, typename Visit>
void fields(T& v, Visit&& visit) {
    visit("title", v.title);
    visit("value", v.value);
    visit("amount", v.amount);
    visit("tint", v.tint);
}
template <Like<Toggle> T, typename Visit>
void fields(T& v, Visit&& visit) {
    visit("title", v.title);
    visit("detail", v.detail);
    visit("isOn", v.isOn);
}
template <Like<Stepper> T, typename Visit>
void fields(T& v, Visit&& visit) {
    visit("title", v.title);
    visit("value", v.value);
    visit("lowest", v.lowest);
    visit("highest", v.highest);
    visit("step", v.step);
}
template <Like<Picker::Choice> T, typename Visit>
void fields(T& v, Visit&& visit) {
    visit("id", v.id);
    visit("title", v.title);
}
template <Like<Picker> T, typename Visit>
void fields(T& v, Visit&& visit) {
    visit("title", v.title);
    visit("choices", v.choices);
    visit("chosen", v.chosen);
    visit("segmented", v.segmented);
}
template <Like<Button> T, typename Visit>
void fields(T& v, Visit&& visit) {
    visit("title", v.title);
    visit("symbol", v.symbol);
    visit("role", v.role);
}
template <Like<Chooser::Entry> T, typename Visit>
void fields(T& v, Visit&& visit) {
    visit("id", v.id);
    visit("title", v.title);
    visit("icon", v.icon);
}
template <Like<Chooser> T, typename Visit>
void fields(T& v, Visit&& visit) {
    visit("title", v.title);
    visit("entries", v.entries);
}
template <Like<Link> T, typename Visit>
void fields(T& v, Visit&& visit) {
    visit("title", v.title);
    visit("address", v.address);
}
template <Like<Application> T, typename Visit>
void fields(T& v, Visit&& visit) {
    visit("name", v.name);
    visit("icon", v.icon);
}
template <Like<Alert> T, typename Visit>
void fields(T& v, Visit&& visit) {
    visit("title", v.title);
    visit("message", v.message);
    visit("button", v.button);
    visit("destructive", v.destructive);
}
template <Like<Dots> T, typename Visit>
void fields(T& v, Visit&& visit) {
    visit("count", v.count);
    visit("current", v.current);
}
template <Like<Preview::Frame> T, typename Visit>
void fields(T& v, Visit&& visit) {
    visit("image", v.image);
    visit("part", v.part);
}
template <Like<Preview> T, typename Visit>
void fields(T& v, Visit&& visit) {
    visit("size", v.size);
    visit("place", v.place);
    visit("images", v.images);
    visit("frames", v.frames);
    visit("frameTime", v.frameTime);
}
template <Like<View> T, typename Visit>
void fields(T& v, Visit&& visit) {
    visit("content", v.content);
    visit("id", v.id);
    visit("children", v.children);
    visit("enabled", v.enabled);
    visit("opacity", v.opacity);
    visit("spoken", v.spoken);
}

}  // namespace quibbits::views
