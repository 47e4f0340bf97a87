#include "menus/PopupMenu.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace quibbits {
namespace {

constexpr double fontSize = 13;
constexpr double rowHeight = 24;
constexpr double separatorHeight = 11;
constexpr double rim = 5;          // between the menu's edge and its rows
constexpr double textInset = 10;   // between a row's edge and its title
constexpr double narrowest = 150;  // of the rows
constexpr double widest = 420;
constexpr double roundness = 10;
constexpr double room = 22;   // around the menu, for its shadow
constexpr double beside = 4;  // least distance to the edge of the screen

constexpr Color ground{30 / 255.0, 30 / 255.0, 34 / 255.0, 0.95};
constexpr Color edge = Color::white(0.14);
constexpr Color separatorColor = Color::white(0.13);
constexpr Color accent{1.0, 217 / 255.0, 77 / 255.0, 1.0};
constexpr Color titleColor = Color::white(0.96);
constexpr Color pickedTitle{30 / 255.0, 26 / 255.0, 10 / 255.0, 1.0};
constexpr Color disabledTitle = Color::white(0.4);

// The release that belongs to the press which opened the menu chooses nothing.
constexpr double stillWithin = 4;  // points
constexpr Seconds quick = 0.3;

bool isSeparator(const MenuItem& item) {
    return item.title.empty();
}

StyledText styled(const std::string& title, Color color) {
    return {.runs = {{title, color}}, .fontSize = fontSize, .weight = FontWeight::medium};
}

}  // namespace

PopupMenu::PopupMenu(Panels& panels, const TextMeasure& text, const Menu& menu, Place place)
    : panels_(panels),
      engine_(panels.layers()),
      start_(place.pointer),
      opened_(panels.layers().now()) {
    build(menu, text);
    this->place(place, body_.size());
    panel_->setIgnoresMouse(false);
}

PopupMenu::~PopupMenu() = default;

// Building.

void PopupMenu::build(const Menu& menu, const TextMeasure& text) {
    double width = narrowest;
    double height = 2 * rim;
    double textHeight = 0;
    for (const auto& item : menu.items) {
        height += isSeparator(item) ? separatorHeight : rowHeight;
        if (isSeparator(item)) continue;
        const Size size = text.measure(styled(item.title, titleColor), {widest, rowHeight});
        width = std::max(width, std::ceil(size.width) + 2 + 2 * textInset);
        textHeight = std::max(textHeight, std::ceil(size.height));
    }
    width = std::min(width, widest) + 2 * rim;
    body_ = {room, room, width, height};
    panel_ = panels_.makePanel(
        {.frame = {0, 0, width + 2 * room, height + 2 * room}, .level = PanelLevel::menu});
    addBody(body_);
    double top = body_.maxY() - rim;
    for (const auto& item : menu.items) {
        const double tall = isSeparator(item) ? separatorHeight : rowHeight;
        top -= tall;
        addRow(item, {body_.minX() + rim, top, width - 2 * rim, tall}, textHeight);
    }
}

void PopupMenu::addBody(Rect body) {
    const auto shade = engine_.makeLayer(
        {.bounds = {0, 0, body.width, body.height},
         .position = body.center(),
         .background = ground,
         .cornerRadius = roundness,
         .borderWidth = 1,
         .borderColor = edge,
         .shadow = {.color = Color::black(), .offset = {0, -4}, .radius = 8, .opacity = 0.4}});
    panel_->root().addSublayer(shade);
    highlight_ =
        engine_.makeLayer({.hidden = true, .background = accent, .cornerRadius = roundness - rim});
    panel_->root().addSublayer(highlight_);
}

void PopupMenu::addRow(const MenuItem& item, Rect frame, double textHeight) {
    Row row{.frame = frame, .title = item.title, .isEnabled = item.run && !isSeparator(item)};
    row.label = engine_.makeLayer();
    const Transaction still(engine_, Transaction::withoutActions());
    if (isSeparator(item)) {
        row.label->setFrame(
            {frame.minX() + textInset, std::floor(frame.midY()), frame.width - 2 * textInset, 1});
        row.label->change([](LayerProperties& l) { l.background = separatorColor; });
    } else {
        row.label->setFrame({frame.minX() + textInset, frame.midY() - textHeight / 2,
                             frame.width - 2 * textInset, textHeight});
        paintTitle(row, false);
    }
    panel_->root().addSublayer(row.label);
    rows_.push_back(std::move(row));
}

/// Hangs the menu from its corner, stands it on the corner where there is no room beneath, and
/// moves it inside the bounds.
void PopupMenu::place(const Place& place, Size size) {
    const Rect bounds = place.bounds.inset(beside);
    Rect at{place.corner.x, place.corner.y - size.height, size.width, size.height};
    if (at.minY() < bounds.minY() && place.corner.y + size.height <= bounds.maxY()) {
        at.y = place.corner.y;
    }
    at.x = Range{bounds.minX(), bounds.maxX() - size.width}.clamp(at.x);
    at.y = Range{bounds.minY(), bounds.maxY() - size.height}.clamp(at.y);
    panel_->setFrame({at.x - room, at.y - room, size.width + 2 * room, size.height + 2 * room});
}

// What is picked.

void PopupMenu::pick(std::optional<std::size_t> line) {
    if (line && !rows_[*line].isEnabled) line.reset();
    if (line == picked_) return;
    const Transaction still(engine_, Transaction::withoutActions());
    if (picked_) paintTitle(rows_[*picked_], false);
    picked_ = line;
    highlight_->setHidden(!line);
    if (!line) return;
    highlight_->setFrame(rows_[*line].frame);
    paintTitle(rows_[*line], true);
}

void PopupMenu::paintTitle(const Row& row, bool isPicked) {
    const Color color = !row.isEnabled ? disabledTitle : isPicked ? pickedTitle : titleColor;
    row.label->setContent(Text{.text = styled(row.title, color), .truncated = true});
}

/// To the next line that can be chosen, round and round.
void PopupMenu::step(int by) {
    const auto count = static_cast<int>(rows_.size());
    int at = picked_ ? static_cast<int>(*picked_) : by > 0 ? -1 : count;
    for (int tries = 0; tries < count; ++tries) {
        at = (at + by + count) % count;
        if (rows_[static_cast<std::size_t>(at)].isEnabled) {
            return pick(static_cast<std::size_t>(at));
        }
    }
}

// What the user does.

void PopupMenu::pointerMoved(Point at) {
    if (!hasMoved_ && distance(at, start_) < stillWithin) return;  // the menu came to the pointer
    hasMoved_ = true;
    pick(lineAt(at));
}

void PopupMenu::pressed(Point at) {
    if (!body_.contains(inPanel(at))) return end(std::nullopt);
    hasMoved_ = wasPressed_ = true;
    pick(lineAt(at));
}

void PopupMenu::released(Point at) {
    const bool wentFar = distance(at, start_) >= stillWithin;
    if (!body_.contains(inPanel(at))) {
        // Pressed, drawn out and let go; a mere click that opened the menu leaves it open.
        if (wasPressed_ || (wentFar && engine_.now() - opened_ >= quick)) end(std::nullopt);
        return;
    }
    const auto line = lineAt(at);
    const bool isMeant =
        std::exchange(wasPressed_, false) || wentFar || engine_.now() - opened_ >= quick;
    if (line && rows_[*line].isEnabled && isMeant) end(line);
}

void PopupMenu::key(MenuKey key) {
    switch (key) {
        case MenuKey::up: return step(-1);
        case MenuKey::down: return step(1);
        case MenuKey::first: pick(std::nullopt); return step(1);
        case MenuKey::last: pick(std::nullopt); return step(-1);
        case MenuKey::choose:
            if (picked_) end(picked_);
            return;
        case MenuKey::cancel: return end(std::nullopt);
    }
}

void PopupMenu::end(std::optional<std::size_t> line) {
    if (std::exchange(isOver_, true)) return;
    const auto tell = std::move(onEnd);
    if (tell) tell(line);
}

// Places.

Point PopupMenu::inPanel(Point global) const {
    return global - Vector{panel_->frame().x, panel_->frame().y};
}

Rect PopupMenu::frame() const {
    return body_.offset({panel_->frame().x, panel_->frame().y});
}

Rect PopupMenu::frameOf(std::size_t line) const {
    return rows_[line].frame.offset({panel_->frame().x, panel_->frame().y});
}

std::optional<std::size_t> PopupMenu::lineAt(Point global) const {
    const auto found = std::ranges::find_if(
        rows_, [at = inPanel(global)](const Row& row) { return row.frame.contains(at); });
    if (found == rows_.end()) return std::nullopt;
    return static_cast<std::size_t>(found - rows_.begin());
}

}  // namespace quibbits
