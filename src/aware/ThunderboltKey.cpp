#include "aware/ThunderboltKey.h"

#include <algorithm>
#include <deque>
#include <filesystem>
#include <utility>

#include "aware/AX.h"

namespace quibbits {

namespace {

constexpr Seconds longestAnswer = 3;  // until the selection may be another one
constexpr std::size_t mostElements = 3000;
constexpr int labelDepth = 4;
constexpr double rowShape = 3;      // times as wide as high: a row of a list, no icon
constexpr double leftOfLabel = 10;  // points, where a row has its icon

/// Everything selected in the window, the outer first.
std::vector<ElementIndex> selectedIn(const AccessibleWindow& window) {
    std::vector<ElementIndex> selected;
    if (window.elements.empty()) return selected;
    std::deque<ElementIndex> queue{0};
    for (std::size_t taken = 0; taken < mostElements && !queue.empty(); ++taken) {
        const AccessibleElement& element = window.elements.at(queue.front());
        queue.pop_front();
        const auto& own = element.selectedRows ? *element.selectedRows : element.selectedChildren;
        selected.insert(selected.end(), own.begin(), own.end());
        queue.insert(queue.end(), element.children.begin(), element.children.end());
    }
    return selected;
}

bool isCalled(const std::string& path, const std::string& name) {
    const std::filesystem::path file(path);
    return file.filename() == name || file.stem() == name;
}

}  // namespace

ThunderboltKey::ThunderboltKey(const World& world) : world_(world) {
    activation_ = world_.workspace.activated.subscribe([this] { update(); });
    update();
}

HotKey ThunderboltKey::combination() {
    return {.key = Key::deleteBackwards, .modifiers = {.command = true, .option = true}};
}

void ThunderboltKey::update() {
    const auto front = world_.workspace.frontmost();
    if (!front || !world_.fileBrowser.isFileManager(front->id) || !isOn()) return hotKey_.reset();
    if (hotKey_) return;
    hotKey_ = world_.hotKeys.hold(
        combination(), [this] { world_.loop.post(lifetime_.guard([this] { pressed(); })); });
}

void ThunderboltKey::pressed() {
    const auto front = world_.workspace.frontmost();
    if (!isOn() || press_ || !front) return;
    press_ = {*front, world_.loop.now()};
    world_.fileBrowser.readSelection(
        lifetime_.guard([this](const FileSelection& selection) { strike(selection); }));
}

void ThunderboltKey::strike(const FileSelection& selection) {
    const auto press = std::exchange(press_, std::nullopt);
    const bool isLate = !press || world_.loop.now() - press->at > longestAnswer;
    if (isLate || !isOn() || world_.workspace.frontmost() != press->front) return;
    const bool isBlind = !selection.isKnown && !world_.accessibility.isTrusted();
    if (isBlind && !std::exchange(toldUntrusted_, true) && onUntrusted) onUntrusted();
    if (selection.paths.empty() || !onStrike) return;
    onStrike(selection.paths,
             selection.window ? spots(selection.paths, *selection.window) : Spots{});
}

ThunderboltKey::Spots ThunderboltKey::spots(const std::vector<std::string>& paths,
                                            const AccessibleWindow& window) {
    Spots found;
    for (const ElementIndex element : selectedIn(window)) {
        const auto label = AX::named(window, element, labelDepth);
        if (!label) continue;
        const auto path = std::ranges::find_if(
            paths, [&](const std::string& each) { return isCalled(each, label->second); });
        if (path == paths.end()) continue;
        const auto& frame = window.elements[element].frame;
        const auto& text = window.elements[label->first].frame;
        if (!frame || !text) continue;
        const bool isIcon = frame->width < rowShape * frame->height;
        found[*path] = isIcon ? frame->center() : Point{text->minX() - leftOfLabel, text->midY()};
    }
    return found;
}

}  // namespace quibbits
