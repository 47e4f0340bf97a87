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
    if (root_.item && isSame(root_.view, tree)) {
        update(root_, std::move(tree));
        return false;
    }
    if (root_.item) discard(root_);
    root_ = make(std::move(tree));
    return true;
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
