#pragma once
// What the user can hand to a creature: berries to eat and the two things that make one evolve.

#include <array>
#include <optional>
#include <string_view>

#include "rules/Nature.h"

namespace quibbits {

enum class Item { azurine, blushum, cinnet, hazzel, myrrow, sourling, stormPebble, tetherLoop };

inline constexpr std::array allItems{Item::azurine,     Item::blushum,   Item::cinnet,
                                     Item::hazzel,      Item::myrrow,    Item::sourling,
                                     Item::stormPebble, Item::tetherLoop};

std::string_view rawValue(Item item);
std::optional<Item> itemNamed(std::string_view raw);
/// For the user: "Storm Pebble".
std::string_view displayName(Item item);
bool isBerry(Item item);
/// The stat whose natures like the berry when they raise it and dislike it when they lower it;
/// none for what has no flavour.
std::optional<Nature::Stat> flavor(Item item);
/// The berry that a nature likes best; none for a nature that raises nothing.
std::optional<Item> favorite(const Nature& nature);

}  // namespace quibbits
