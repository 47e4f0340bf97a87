#include "desktop/session/SelectionWalk.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <utility>

namespace quibbits::session {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t mostObjects = 12'000;
constexpr std::size_t deepest = 24;
constexpr std::size_t labelDepth = 4;
constexpr double smallest = 2;  // pixels; what is out of sight has less

template <std::size_t count>
bool isOneOf(Role role, const std::array<Role, count>& roles) {
    return std::ranges::find(roles, role) != roles.end();
}

bool isView(Role role) {
    static constexpr std::array roles{Role::layeredPane, Role::list, Role::table, Role::tree,
                                      Role::treeTable};
    return isOneOf(role, roles);
}

bool isTable(Role role) {
    static constexpr std::array roles{Role::table, Role::tree, Role::treeTable};
    return isOneOf(role, roles);
}

}  // namespace

SelectionWalk::SelectionWalk(Bus& bus, ToPoints toPoints, Done done)
    : AccessibleWalk(bus, mostObjects), toPoints_(std::move(toPoints)), done_(std::move(done)) {
    fileManagers([this](const Object& application) {
        children(application, [this](const Object& window) { visitWindow(window); });
    });
}

void SelectionWalk::visitWindow(const Object& window) {
    statesOf(window, [this, window](AccessibleStates states) {
        if (!states.has(AccessibleState::active)) return;
        ++windows_;
        nameOf(window, [this](const std::string& title) { title_ = title; });
        children(window, [this](const Object& child) { visit(child); });
    });
}

void SelectionWalk::visit(const Object& object) {
    if (object.place.size() > deepest) return;
    roleOf(object, [this, object](Role role) {
        statesOf(object, [this, object, role](AccessibleStates states) {
            if (role == Role::toggleButton || role == Role::radioButton) {
                visitStep(object, states);  // those that do not fit in are hidden, yet count
            } else if (states.has(AccessibleState::showing)) {
                visitShown(object, role);
            }
        });
    });
}

void SelectionWalk::visitShown(const Object& object, Role role) {
    if (isView(role)) return visitView(object, role);
    if (role == Role::text || role == Role::entry) {
        return textOf(object, [this](const std::string& text) { fields_.push_back(text); });
    }
    children(object, [this](const Object& child) { visit(child); });
}

void SelectionWalk::visitStep(const Object& object, AccessibleStates states) {
    nameOf(object, [this, object, states](const std::string& name) {
        Place bar = object.place;
        bar.pop_back();
        bars_[bar][object.place.back()] = {name, states.has(AccessibleState::checked)};
    });
    children(object, [this](const Object& child) { visit(child); });
}

void SelectionWalk::visitView(const Object& object, Role role) {
    View& view = views_[object.place];  // stays where it is as long as the walk
    view.isTable = isTable(role);
    extentsOf(object, [&view](const Rect& frame) { view.frame = frame; });
    const auto rows = [this, &view, object] {
        children(object, [this, &view](const Object& row) { visitRow(view, row); });
    };
    if (view.isTable) return rows();
    selectedChildren(
        object,
        [rows](int count) {
            if (count == 0) rows();
        },
        [this, &view](const Object& item) {
            view.items[item.place].selected = true;
            visitItem(view, item);
        });
}

void SelectionWalk::visitRow(View& view, const Object& object) {
    statesOf(object, [this, &view, object](AccessibleStates states) {
        if (states.has(AccessibleState::expanded)) view.isUnfolded = true;
        if (!states.has(AccessibleState::selected)) return;
        view.items[object.place].selected = true;
        visitItem(view, object);
    });
}

/// The label of an item may lie a few levels down.
void SelectionWalk::visitItem(View& view, const Object& object) {
    Item& item = view.items[object.place];
    nameOf(object, [&item](const std::string& name) { item.name = name; });
    extentsOf(object, [&item](const Rect& frame) {
        if (frame.width >= smallest && frame.height >= smallest) item.frame = frame;
    });
    statesOf(object, [&view](AccessibleStates states) {
        if (states.has(AccessibleState::expanded)) view.isUnfolded = true;
    });
    const auto top =
        std::ranges::find_if(views_, [&](const auto& each) { return &each.second == &view; });
    if (object.place.size() - top->first.size() > labelDepth) return;
    children(object, [this, &view](const Object& child) { visitItem(view, child); });
}

void SelectionWalk::ended() {
    const auto done = std::move(done_);
    done(selection());  // this object may be gone now
}

/// A side pane shows places in a view of its own; the files have the larger one.
const SelectionWalk::View* SelectionWalk::largestView() const {
    const View* largest = nullptr;
    const auto area = [](const View& view) { return view.frame.width * view.frame.height; };
    for (const auto& [place, view] : views_) {
        if (!largest || area(view) > area(*largest)) largest = &view;
    }
    return largest;
}

/// From a row of buttons "/", "home", "somebody", one of which is pressed, in either order.
std::optional<std::string> SelectionWalk::folderOfBar() const {
    for (const auto& [place, steps] : bars_) {
        std::vector<Step> way;
        for (const auto& [index, step] : steps) way.push_back(step);
        if (way.back().name == "/") std::ranges::reverse(way);
        const auto isHere = [](const Step& step) { return step.isHere; };
        if (way.front().name != "/" || std::ranges::count_if(way, isHere) != 1) continue;
        fs::path folder("/");
        const auto here = std::ranges::find_if(way, isHere);
        for (auto step = way.begin() + 1; step <= here; ++step) {
            if (step->name.empty() || step->name.find('/') != std::string::npos) {
                return std::nullopt;
            }
            folder /= step->name;
        }
        return folder.native();
    }
    return std::nullopt;
}

std::optional<std::string> SelectionWalk::folder() const {
    if (auto folder = folderOfBar()) return folder;
    // A location that somebody is just typing is not where the window is: its title tells.
    for (const std::string& field : fields_) {
        if (!field.starts_with('/')) continue;
        fs::path folder = fs::path(field).lexically_normal();
        if (!folder.has_filename()) folder = folder.parent_path();
        if (title_ == folder.filename() || title_ == folder) return folder.native();
    }
    return std::nullopt;
}

FileSelection SelectionWalk::selection() const {
    FileSelection selection;
    if (windows_ == 0) return selection;
    selection.window.emplace();
    auto& elements = selection.window->elements;
    elements.push_back({.title = title_});
    const View* view = largestView();
    const auto where = folder();
    if (windows_ > 1 || wasCut() || hasMissed() || !view || view->isUnfolded || !where)
        return selection;

    // The items as elements, each after the one that holds it.
    std::map<Place, ElementIndex> indices;
    std::vector<ElementIndex> selected;
    for (const auto& [place, item] : view->items) {
        indices[place] = elements.size();
        elements.push_back({.title = item.name});
        if (item.frame) elements.back().frame = toPoints_(*item.frame);
        Place parent = place;
        parent.pop_back();
        const auto holder = indices.find(parent);
        elements[holder == indices.end() ? 0 : holder->second].children.push_back(
            indices.at(place));
        if (item.selected) selected.push_back(indices.at(place));
    }
    // The label of an item, wherever it has it.
    const auto labelOf = [&](ElementIndex top) {
        std::vector<ElementIndex> waiting{top};
        while (!waiting.empty()) {
            const ElementIndex at = waiting.back();
            waiting.pop_back();
            if (!elements[at].title.empty()) return elements[at].title;
            const auto& inside = elements[at].children;
            waiting.insert(waiting.end(), inside.rbegin(), inside.rend());
        }
        return std::string();
    };
    if (view->isTable) {
        // A row has its name in the first cell that has one; the others tell sizes and dates.
        std::map<double, ElementIndex> rows;
        for (const ElementIndex cell : selected) {
            const auto& frame = elements[cell].frame;
            if (labelOf(cell).empty()) continue;
            if (!frame) return selection;  // out of sight: which row it is of cannot be told
            const auto [row, isNew] = rows.emplace(-frame->midY(), cell);
            if (!isNew && frame->minX() < elements[row->second].frame->minX()) row->second = cell;
        }
        selected.clear();
        for (const auto& [y, cell] : rows) selected.push_back(cell);
        elements[0].selectedRows = selected;
    } else {
        elements[0].selectedChildren = selected;
    }
    for (const ElementIndex item : selected) {
        const std::string name = labelOf(item);
        const fs::path path = fs::path(*where) / name;
        std::error_code error;
        const bool plain = !name.empty() && name.find('/') == std::string::npos;
        if (!plain || !fs::exists(fs::symlink_status(path, error))) {
            selection.paths.clear();
            return selection;
        }
        selection.paths.push_back(path.native());
    }
    return selection;
}

}  // namespace quibbits::session
