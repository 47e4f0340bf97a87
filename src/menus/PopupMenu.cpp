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
constexpr double beforeShortcut = 28;  // between a title and its shortcut
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
constexpr double shortcutOpacity = 0.6;

// The release that belongs to the press which opened the menu chooses nothing.
constexpr double stillWithin = 4;  // points
constexpr Seconds quick = 0.3;

bool isSeparator(const MenuItem& item) {
    return item.title.empty();
}

std::string shortcutOf(const MenuItem& item) {
    if (item.key == 0) return {};
    const bool isLetter = item.key >= 'a' && item.key <= 'z';
    return std::string("Ctrl+") + static_cast<char>(isLetter ? item.key - 'a' + 'A' : item.key);
}

StyledText styled(const std::string& title, Color color) {
    return {.runs = {{title, color}}, .fontSize = fontSize, .weight = FontWeight::medium};
}

/// In one line, and a little more than the letters need.
Size sizeOf(const std::string& title, const TextMeasure& text) {
    const Size size = text.measure(styled(title, titleColor), {widest, rowHeight});
    return {std::ceil(size.width) + 2, std::ceil(size.height)};
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
    for (const auto& item : menu.items) {
        height += isSeparator(item) ? separatorHeight : rowHeight;
        if (isSeparator(item)) continue;
        double line = sizeOf(item.title, text).width + 2 * textInset;
        if (item.key != 0) line += beforeShortcut + sizeOf(shortcutOf(item), text).width;
        width = std::max(width, line);
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
        addRow(item, {body_.minX() + rim, top, width - 2 * rim, tall}, text);
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

void PopupMenu::addRow(const MenuItem& item, Rect frame, const TextMeasure& text) {
    Row row{.frame = frame,
            .title = item.title,
            .shortcut = shortcutOf(item),
            .key = item.key,
            .isEnabled = item.run && !isSeparator(item)};
    row.label = engine_.makeLayer();
    const Transaction still(engine_, Transaction::withoutActions());
    if (isSeparator(item)) {
        row.label->setFrame(
            {frame.minX() + textInset, std::floor(frame.midY()), frame.width - 2 * textInset, 1});
        row.label->change([](LayerProperties& l) { l.background = separatorColor; });
    } else {
        const Size title = sizeOf(row.title, text);
        const double left = frame.minX() + textInset;
        double right = frame.maxX() - textInset;
        if (!row.shortcut.empty()) {
            const Size size = sizeOf(row.shortcut, text);
            row.shortcutLabel = engine_.makeLayer({.opacity = shortcutOpacity});
            row.shortcutLabel->setFrame(
                {right - size.width, frame.midY() - size.height / 2, size.width, size.height});
            panel_->root().addSublayer(row.shortcutLabel);
            right -= size.width + beforeShortcut;
        }
        row.label->setFrame({left, frame.midY() - title.height / 2, right - left, title.height});
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
    if (row.shortcutLabel) row.shortcutLabel->setContent(Text{.text = styled(row.shortcut, color)});
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

void PopupMenu::typed(char character) {
    for (std::size_t line = 0; line < rows_.size(); ++line) {
        if (rows_[line].key == character && rows_[line].isEnabled) return end(line);
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
