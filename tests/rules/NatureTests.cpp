#include <gtest/gtest.h>

#include <set>
#include <vector>

#include "rules/Item.h"
#include "rules/Nature.h"

namespace quibbits {
namespace {

TEST(Natures, SayWhatTheyChange) {
    struct Row {
        const char* name;
        double walkSpeed;
        int playfulness;
        const char* effect;
    };
    for (const auto& [name, walkSpeed, playfulness, effect] : std::vector<Row>{
             {"Hardy", 1.0, 3, "No particular quirks."},
             {"Modest", 1.0, 3, "No particular quirks."},
             {"Timid", 1.25, 5,
              "Walks faster, plays more, shy with your cursor until friendship is high."},
             {"Jolly", 1.25, 5, "Walks faster, plays more."},
             {"Brave", 0.8, 5, "Walks slower, plays more, naps more."},
             {"Quiet", 0.8, 3, "Walks slower, naps more."},
             {"Relaxed", 0.8, 2, "Walks slower, plays less, naps more."},
             {"Sassy", 0.8, 2, "Walks slower, plays less, naps more."},
             {"Lax", 1.0, 2, "Plays less, naps more."},
             {"Calm", 1.0, 2, "Plays less."},
             {"Adamant", 1.0, 5, "Plays more."},
             {"Bashful", 1.0, 3, "Shy with your cursor until friendship is high."},
         }) {
        const auto nature = Nature::named(name);
        ASSERT_TRUE(nature) << name;
        EXPECT_EQ(nature->walkSpeed(), walkSpeed) << name;
        EXPECT_EQ(nature->playfulness(), playfulness) << name;
        EXPECT_EQ(nature->effect(), effect);
    }
}

TEST(Berries, EachSuitTheNaturesOfOneStat) {
    std::set<Nature::Stat> liked;
    int berries = 0;
    for (const Item item : allItems) {
        EXPECT_EQ(itemNamed(rawValue(item)), item);
        if (isBerry(item)) ++berries;
        if (const auto stat = flavor(item)) {
            EXPECT_TRUE(isBerry(item)) << rawValue(item);
            EXPECT_TRUE(liked.insert(*stat).second) << rawValue(item);
        }
    }
    EXPECT_EQ(berries, 6);
    EXPECT_EQ(liked.size(), 5u);
    for (const Nature& nature : Nature::all()) {
        const auto best = favorite(nature);
        EXPECT_EQ(best.has_value(), nature.up.has_value()) << nature.name;
        if (!best) continue;
        EXPECT_EQ(flavor(*best), nature.up) << nature.name;
    }
    EXPECT_EQ(favorite(*Nature::named("Jolly")), Item::blushum);
    EXPECT_EQ(favorite(*Nature::named("Modest")), Item::hazzel);
    for (const char* nonsense : {"", "Azurine", "com.quibbits.item"}) {
        EXPECT_EQ(itemNamed(nonsense), std::nullopt) << nonsense;
    }
}

}  // namespace
}  // namespace quibbits
