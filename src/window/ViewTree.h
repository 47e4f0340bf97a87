#pragma once
// Keeps the widgets of a window in step with the trees of views that it is given.

#include <memory>
#include <vector>

#include "Item.h"

namespace quibbits::window {

class ViewTree {
public:
    explicit ViewTree(Tell tell) : tell_(std::move(tell)) {}

    /// Makes the widgets show the tree, changing what differs. True when the widget at the top is a
    /// new one, which then has no parent yet.
    bool show(views::View tree);
    Item* top() const { return root_.item; }
    /// Lets Tab go through the widgets as a person reads them, not in the order in which they were
    /// made. Called after each tree, when the top has its window.
    void orderStops() const;

private:
    struct Node {
        views::View view;
        Item* item = nullptr;  // owned by its parent widget
        std::vector<Node> children;
    };
    Node make(views::View view) const;
    void update(Node& node, views::View view) const;
    void updateChildren(Node& node, std::vector<views::View> views) const;
    static void discard(Node& node);
    static void inReadingOrder(const Node& node, QList<QWidget*>& stops);

    Tell tell_;
    Node root_;
};

}  // namespace quibbits::window
