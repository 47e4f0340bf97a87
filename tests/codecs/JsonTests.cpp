#include <gtest/gtest.h>

#include <limits>

#include "codecs/Json.h"

namespace quibbits {
namespace {

TEST(Json, AFileThatIsReadAndWrittenKeepsItsOrderAndTheTypesOfItsValues) {
    const std::string text =
        R"({"zebra":1,"apple":2.0,"list":[true,null,"\u00e9\n"],"most":9223372036854775807,"e":{}})";
    const auto parsed = Json::parse(text);
    ASSERT_TRUE(parsed) << parsed.error.message;
    const Json& json = *parsed.value;
    EXPECT_TRUE(json.find("zebra")->as<std::int64_t>());
    EXPECT_TRUE(json.find("apple")->as<double>());
    EXPECT_EQ(*json.find("most")->as<std::int64_t>(), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(
        json.dump(),
        R"({"zebra":1,"apple":2.0,"list":[true,null,"é\n"],"most":9223372036854775807,"e":{}})");
    EXPECT_EQ(*Json::parse(json.dump(2)).value, json);
}

TEST(Json, AMistakeIsAnAnswerWithItsPlace) {
    for (const auto& [text, position] :
         std::vector<std::pair<std::string, std::size_t>>{{"", 1},
                                                          {"{\"a\":}", 6},
                                                          {"[1,2", 5},
                                                          {"[1] 2", 5},
                                                          {"\"\xff\"", 2},
                                                          {"[1e999]", 7}}) {
        const auto parsed = Json::parse(text);
        EXPECT_FALSE(parsed) << text;
        EXPECT_FALSE(parsed.error.message.empty());
        EXPECT_NEAR(static_cast<double>(parsed.error.position), static_cast<double>(position), 1)
            << text << ": " << parsed.error.message;
    }
}

TEST(Json, WhatIsTooDeepOrTooLargeIsRefused) {
    const auto nested = [](std::size_t depth) {
        return std::string(depth, '[') + std::string(depth, ']');
    };
    EXPECT_TRUE(Json::parse(nested(jsonMostDepth)));
    EXPECT_FALSE(Json::parse(nested(jsonMostDepth + 1)));
    EXPECT_FALSE(Json::parse(nested(1'000'000)));
    EXPECT_FALSE(Json::parse(std::string(jsonMostBytes, ' ') + "1"));
}

TEST(Json, OfAKeyThatStandsTwiceTheLaterValueCounts) {
    const auto parsed = Json::parse(R"({"a":1,"b":2,"a":3,"c":4,"b":5})");
    ASSERT_TRUE(parsed);
    EXPECT_EQ(parsed.value->dump(), R"({"a":3,"b":5,"c":4})");
}

TEST(Json, MembersAreChangedInTheirPlace) {
    Json json = *Json::parse(R"({"a":1,"b":2,"c":3})").value;
    json.set("b", "two");
    json.set("d", Json::Array{1, 2.5});
    EXPECT_TRUE(json.erase("a"));
    EXPECT_FALSE(json.erase("a"));
    EXPECT_EQ(json.dump(), R"({"b":"two","c":3,"d":[1,2.5]})");
}

TEST(Json, BytesThatAreNoTextAreReplacedWhenWritten) {
    EXPECT_TRUE(Json::parse(Json("name\xff.txt").dump()));
    EXPECT_EQ(Json(std::numeric_limits<double>::infinity()).dump(), "null");
}

}  // namespace
}  // namespace quibbits
