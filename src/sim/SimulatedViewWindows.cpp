#include "sim/SimulatedViewWindows.h"

#include <algorithm>
#include <utility>

namespace quibbits {

namespace {

/// Whether a view and everything around it can be used.
bool isEnabled(const views::View& tree, std::string_view id) {
    if (tree.id == id) return tree.enabled;
    return std::ranges::any_of(tree.children, [&](const views::View& child) {
        return tree.enabled && views::find(child, id) && isEnabled(child, id);
    });
}

}  // namespace

SimulatedViewWindow::SimulatedViewWindow(SimulatedViewWindows& windows, views::WindowSpec s,
                                         views::View first)
    : spec(std::move(s)), tree(std::move(first)), windows_(windows) {
    windows_.all_.push_back(this);
}

SimulatedViewWindow::~SimulatedViewWindow() {
    std::erase(windows_.all_, this);
}

void SimulatedViewWindow::update(views::View next) {
    ++updates;
    tree = std::move(next);
}

bool SimulatedViewWindow::act(const std::string& id, views::Action::Value value) {
    if (!isEnabled(tree, id)) return false;
    if (const auto told = onAction) told({.id = id, .value = std::move(value)});
    return true;
}

void SimulatedViewWindow::close() {
    if (const auto told = onClose) told();
}

std::unique_ptr<views::ViewWindow> SimulatedViewWindows::open(const views::WindowSpec& spec,
                                                              views::View tree) {
    return std::make_unique<SimulatedViewWindow>(*this, spec, std::move(tree));
}

SimulatedViewWindow* SimulatedViewWindows::titled(const std::string& title) const {
    const auto found = std::ranges::find_if(
        all_, [&](const SimulatedViewWindow* window) { return window->spec.title == title; });
    return found == all_.end() ? nullptr : *found;
}

}  // namespace quibbits
