#include <gtest/gtest.h>

#include "codecs/Credits.h"

namespace quibbits {
namespace {

TEST(TheCreditList, IsReadWholeOrNotAtAll) {
    const std::string good = R"({"artist": "A", "contact": "@a.b", "set": "S", "kind": "K",
        "license": "L", "source": "O", "parts": ["x", "y"]})";
    const auto list = readCredits("[" + good + "," + good + "]");
    ASSERT_TRUE(list);
    ASSERT_EQ(list->size(), 2u);
    EXPECT_EQ(list->front(), (Credit{"A", "@a.b", "S", "K", "L", "O", {"x", "y"}}));
    EXPECT_EQ(readCredits("[]"), std::vector<Credit>{});

    for (const std::string bad :
         {R"({"artist": "A"})", R"({"artist": "A", "contact": "", "set": "", "kind": "",
            "license": "", "source": "", "parts": [1]})",
          R"({"artist": 7, "contact": "", "set": "", "kind": "", "license": "", "source": "",
            "parts": []})"}) {
        EXPECT_EQ(readCredits("[" + good + "," + bad + "]"), std::nullopt) << bad;
    }
    EXPECT_EQ(readCredits(good), std::nullopt) << "no list";
    EXPECT_EQ(readCredits("[" + good), std::nullopt) << "cut off";
}

}  // namespace
}  // namespace quibbits
