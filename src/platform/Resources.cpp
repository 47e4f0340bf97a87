#include "platform/Resources.h"

namespace quibbits {

Image Resources::image(std::string_view name) const {
    const auto size = imageSize(name);
    return size ? imageRows(name, 0, size->height) : Image{};
}

}  // namespace quibbits
