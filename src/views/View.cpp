#include "views/View.h"

#include <concepts>

#include "platform/Overloaded.h"

namespace quibbits::views {
namespace {

template <typename T, typename Kind>
concept Like = std::same_as<std::remove_const_t<T>, Kind>;

/// The tree may be constant or not, and so are the texts.
template <typename Tree, typename Use>
void visitTexts(Tree& view, const Use& use) {
    const auto each = [&use](auto&... pieces) { (use(pieces), ...); };
    std::visit(
        Overloaded{[&](Like<Section> auto& v) { each(v.heading); },
                   [&](Like<Disclosure> auto& v) { each(v.title); },
                   [&](Like<Tab> auto& v) { each(v.title); },
                   [&](Like<SidebarRow> auto& v) { each(v.title); },
                   [&](Like<Text> auto& v) { each(v.text); },
                   [&](Like<Fact> auto& v) { each(v.title, v.detail, v.value); },
                   [&](Like<Meter> auto& v) { each(v.title, v.value); },
                   [&](Like<Toggle> auto& v) { each(v.title, v.detail); },
                   [&](Like<Stepper> auto& v) { each(v.title); },
                   [&](Like<Picker> auto& v) {
                       each(v.title);
                       for (auto& choice : v.choices) each(choice.title);
                   },
                   [&](Like<Button> auto& v) { each(v.title); },
                   [&](Like<Chooser> auto& v) { each(v.title); },
                   [&](Like<Link> auto& v) { each(v.title); },
                   [&](Like<Application> auto& v) { each(v.name); },
                   [&](Like<Alert> auto& v) { each(v.title, v.message, v.button); }, [](auto&) {}},
        view.content);
    for (auto& child : view.children) visitTexts(child, use);
    if (auto* section = std::get_if<Section>(&view.content)) each(section->footer);
}

}  // namespace

const View* find(const View& tree, std::string_view id) {
    if (tree.id == id) return &tree;
    for (const View& child : tree.children) {
        if (const View* found = find(child, id)) return found;
    }
    return nullptr;
}

std::vector<std::string> texts(const View& tree) {
    std::vector<std::string> all;
    visitTexts(tree, [&all](const std::string& text) {
        if (!text.empty()) all.push_back(text);
    });
    return all;
}

void eachText(View& tree, const std::function<void(std::string&)>& use) {
    visitTexts(tree, use);
}

}  // namespace quibbits::views
