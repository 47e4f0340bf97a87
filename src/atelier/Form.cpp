#include "atelier/Form.h"

#include <algorithm>

namespace quibbits::atelier {

std::span<const Form> forms() {
    static const std::array all{mizzle(), sparrel(), thrummet(), coralis(),
                                wispul(), gloamer(), umbrool()};
    return all;
}

const Form* formNamed(std::string_view name) {
    const auto all = forms();
    const auto found = std::ranges::find(all, name, &Form::name);
    return found == all.end() ? nullptr : &*found;
}

}  // namespace quibbits::atelier
