#pragma once
// Trees of views as messages between the companion and the process that shows its windows. Pictures
// travel once, each under a number made from its pixels; the trees only name them.

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "codecs/Json.h"
#include "platform/Image.h"
#include "views/ViewWindow.h"

namespace quibbits::views {

/// Told with the first message: two programs of different versions may not understand each other.
inline constexpr std::int64_t protocolVersion = 2;

/// The number of a picture: the same for the same pixels, 0 for no picture.
std::uint64_t pictureNumber(const Image& image);

/// `picture` gets every picture that the tree holds, and gives its number.
Json write(const View& tree, const std::function<std::uint64_t(const Image&)>& picture);
/// Nothing for what is no tree. A field that is absent or of another type keeps its default; a
/// picture that is not known is none.
std::optional<View> readView(const Json& json, const std::function<Image(std::uint64_t)>& picture);

Json write(const Action& action);
std::optional<Action> readAction(const Json& json);

Json write(const WindowSpec& spec);
WindowSpec readWindowSpec(const Json& json);

}  // namespace quibbits::views
