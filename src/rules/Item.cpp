#include "rules/Item.h"

#include <algorithm>

namespace quibbits {

namespace {

struct ItemRow {
    Item item;
    std::string_view raw;
    std::string_view name;
    bool berry;
    std::optional<Nature::Stat> flavor;
};

constexpr std::array itemRows{
    ItemRow{Item::azurine, "azurine", "Azurine", true, std::nullopt},
    ItemRow{Item::blushum, "blushum", "Blushum", true, Nature::Stat::speed},       // sweet
    ItemRow{Item::cinnet, "cinnet", "Cinnet", true, Nature::Stat::attack},         // spicy
    ItemRow{Item::hazzel, "hazzel", "Hazzel", true, Nature::Stat::spAttack},       // dry
    ItemRow{Item::myrrow, "myrrow", "Myrrow", true, Nature::Stat::spDefense},      // bitter
    ItemRow{Item::sourling, "sourling", "Sourling", true, Nature::Stat::defense},  // sour
    ItemRow{Item::stormPebble, "stormPebble", "Storm Pebble", false, std::nullopt},
    ItemRow{Item::tetherLoop, "tetherLoop", "Tether Loop", false, std::nullopt},
};
static_assert(itemRows.size() == allItems.size());

const ItemRow& row(Item item) {
    return itemRows[static_cast<std::size_t>(item)];
}

}  // namespace

std::string_view rawValue(Item item) {
    return row(item).raw;
}

std::optional<Item> itemNamed(std::string_view raw) {
    const auto found = std::ranges::find(itemRows, raw, &ItemRow::raw);
    if (found == itemRows.end()) return std::nullopt;
    return found->item;
}

std::string_view displayName(Item item) {
    return row(item).name;
}

bool isBerry(Item item) {
    return row(item).berry;
}

std::optional<Nature::Stat> flavor(Item item) {
    return row(item).flavor;
}

std::optional<Item> favorite(const Nature& nature) {
    if (!nature.up) return std::nullopt;
    const auto found = std::ranges::find(itemRows, nature.up, &ItemRow::flavor);
    if (found == itemRows.end()) return std::nullopt;
    return found->item;
}

}  // namespace quibbits
