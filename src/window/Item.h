#pragma once
// One view on the screen. A ViewTree makes an item for every view, keeps it as long as later trees
// have a view of the same kind and identity there, and tells it what changed.

#include <QList>
#include <QWidget>
#include <functional>
#include <memory>

#include "views/View.h"

namespace quibbits::window {

using Tell = std::function<void(const views::Action&)>;

/// Where words begin beside a symbol.
constexpr int besideSymbols = 30;

class Item : public QWidget {
public:
    /// The item for a view's kind, still empty.
    static Item* make(const views::View& view, Tell tell);

    /// Shows what the view says, its children apart.
    virtual void show(const views::View& view) = 0;
    /// Arranges the children's items, which this becomes the parent of.
    virtual void place(const QList<Item*>& children);

    /// Whether it is to have the height that is left, as what scrolls does.
    virtual bool takesRoom() const { return false; }
    /// Whether it begins with a symbol, to the right of which its words stand.
    virtual bool hasSymbol() const { return false; }
    /// Its words begin where those of its neighbours do that have symbols, or at the edge.
    virtual void alignWithSymbols(bool) {}
    /// Puts what it shows into its middle.
    virtual void centre() {}
    /// Whether it is to be seen among its neighbours at all.
    virtual bool isShownInPlace() const { return true; }

protected:
    explicit Item(Tell tell) : tell_(std::move(tell)) {}
    void act(views::Action::Value value = {}) const {
        tell_({.id = id_, .value = std::move(value)});
    }
    void keepIdentity(const views::View& view) { id_ = view.id; }

private:
    Tell tell_;
    std::string id_;
};

}  // namespace quibbits::window
