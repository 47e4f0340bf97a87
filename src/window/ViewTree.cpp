#include "ViewTree.h"

#include <QApplication>
#include <algorithm>
#include <utility>

namespace quibbits::window {

using views::View;

namespace {

/// Whether a later view is the same thing as an earlier one, maybe changed.
bool isSame(const View& before, const View& after) {
    return before.content.index() == after.content.index() && before.id == after.id;
}

/// The view without its children.
View bare(const View& view) {
    return {
        .content = view.content, .id = view.id, .enabled = view.enabled, .opacity = view.opacity};
}

}  // namespace

bool ViewTree::show(View tree) {
    const bool stays = root_.item && isSame(root_.view, tree);
    if (stays) {
        update(root_, std::move(tree));
    } else {
        if (root_.item) discard(root_);
        root_ = make(std::move(tree));
    }
    return !stays;
}

void ViewTree::orderStops() const {
    if (!root_.item) return;
    QWidget* window = root_.item->window();
    QList<QWidget*> stops{window};
    inReadingOrder(root_, stops);
    stops.removeIf([window](QWidget* stop) { return stop->window() != window; });
    for (qsizetype i = 1; i < stops.size(); ++i) QWidget::setTabOrder(stops[i - 1], stops[i]);
}

/// What can have the keyboard: an item itself and its own widgets, then its children's.
void ViewTree::inReadingOrder(const Node& node, QList<QWidget*>& stops) {
    const auto isOwn = [&node](const QWidget* widget) {
        for (const QWidget* at = widget->parentWidget(); at; at = at->parentWidget()) {
            if (at == node.item) return true;
            if (dynamic_cast<const Item*>(at)) return false;
        }
        return false;
    };
    const auto add = [&stops](QWidget* widget) {
        if (widget->focusPolicy() != Qt::NoFocus && !widget->isWindow()) stops.push_back(widget);
    };
    add(node.item);
    for (QWidget* widget : node.item->findChildren<QWidget*>()) {
        if (!dynamic_cast<Item*>(widget) && isOwn(widget)) add(widget);
    }
    for (const Node& child : node.children) inReadingOrder(child, stops);
}

ViewTree::Node ViewTree::make(View view) const {
    Node node{.item = Item::make(view, tell_)};
    auto children = std::exchange(view.children, {});
    node.view = std::move(view);
    updateChildren(node, std::move(children));
    node.item->show(node.view);
    return node;
}

void ViewTree::update(Node& node, View view) const {
    auto children = std::exchange(view.children, {});
    const bool changed = !(bare(node.view) == view);
    node.view = std::move(view);
    updateChildren(node, std::move(children));
    if (changed) node.item->show(node.view);
}

void ViewTree::updateChildren(Node& node, std::vector<View> views) const {
    std::vector<Node> before = std::exchange(node.children, {});
    bool rearranged = before.size() != views.size();
    std::size_t expected = 0;
    for (View& view : views) {
        const auto known = std::ranges::find_if(
            before, [&](const Node& child) { return child.item && isSame(child.view, view); });
        if (known == before.end()) {
            node.children.push_back(make(std::move(view)));
            rearranged = true;
            continue;
        }
        rearranged |= static_cast<std::size_t>(known - before.begin()) != expected;
        expected = static_cast<std::size_t>(known - before.begin()) + 1;
        Node kept = std::move(*known);
        known->item = nullptr;
        update(kept, std::move(view));
        node.children.push_back(std::move(kept));
    }
    for (Node& left : before) {
        if (left.item) discard(left);
    }
    if (!rearranged) return;
    QList<Item*> items;
    for (const Node& child : node.children) items.push_back(child.item);
    node.item->place(items);
}

void ViewTree::discard(Node& node) {
    // The toolkit would hand the keyboard to a neighbour, as if the user had pressed Tab.
    QWidget* focused = QApplication::focusWidget();
    if (focused && (focused == node.item || node.item->isAncestorOf(focused)))
        focused->clearFocus();
    // Later: the item may be the one whose action brought this tree.
    node.item->hide();
    node.item->setParent(nullptr);
    node.item->deleteLater();
    node.item = nullptr;
}

}  // namespace quibbits::window
