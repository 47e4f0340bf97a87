#include "views/View.h"

#include "platform/Overloaded.h"

namespace quibbits::views {
namespace {

void collect(const View& view, std::vector<std::string>& texts) {
    const auto add = [&texts](const auto&... pieces) {
        const auto one = [&texts](const std::string& text) {
            if (!text.empty()) texts.push_back(text);
        };
        (one(pieces), ...);
    };
    std::string after;  // stands below the children
    std::visit(
        Overloaded{[&](const Section& v) {
                       add(v.heading);
                       after = v.footer;
                   },
                   [&](const Disclosure& v) { add(v.title); }, [&](const Tab& v) { add(v.title); },
                   [&](const SidebarRow& v) { add(v.title); }, [&](const Text& v) { add(v.text); },
                   [&](const Fact& v) { add(v.title, v.detail, v.value); },
                   [&](const Meter& v) { add(v.title, v.value); },
                   [&](const Toggle& v) { add(v.title, v.detail); },
                   [&](const Stepper& v) { add(v.title); },
                   [&](const Picker& v) {
                       add(v.title);
                       for (const auto& choice : v.choices) add(choice.title);
                   },
                   [&](const Button& v) { add(v.title); }, [&](const Chooser& v) { add(v.title); },
                   [&](const Link& v) { add(v.title); }, [&](const Application& v) { add(v.name); },
                   [&](const Alert& v) { add(v.title, v.message, v.button); }, [](const auto&) {}},
        view.content);
    for (const View& child : view.children) collect(child, texts);
    add(after);
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
    collect(tree, all);
    return all;
}

}  // namespace quibbits::views
