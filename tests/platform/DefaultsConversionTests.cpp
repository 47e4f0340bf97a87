#include <gtest/gtest.h>

#include <limits>

#include "sim/SimulatedComputer.h"

namespace quibbits {
namespace {

using Whole = std::numeric_limits<std::int64_t>;

DefaultsValue text(const char* value) {
    return std::string(value);
}

TEST(Defaults, ConvertWhatIsStoredToWhatIsAskedFor) {
    struct Row {
        DefaultsValue stored;
        bool boolean;
        std::int64_t integer;
        double real;
        std::optional<std::string> string;
    };
    for (const auto& row : std::vector<Row>{
             {true, true, 1, 1, "1"},
             {false, false, 0, 0, "0"},
             {std::int64_t{-7}, true, -7, -7, "-7"},
             {std::int64_t{0}, false, 0, 0, "0"},
             {Whole::max(), true, Whole::max(), 9223372036854775807.0, "9223372036854775807"},
             {2.75, true, 2, 2.75, "2.75"},
             {-2.75, true, -2, -2.75, "-2.75"},
             {1e300, true, Whole::max(), 1e300, "1e+300"},
             {-1e300, true, Whole::min(), -1e300, "-1e+300"},
             {0.0, false, 0, 0, "0"},
             {text("YES"), true, 0, 0, "YES"},
             {text("true"), true, 0, 0, "true"},
             {text("no"), false, 0, 0, "no"},
             {text("false"), false, 0, 0, "false"},
             {text(" +007 dwarfs"), true, 7, 7, " +007 dwarfs"},
             {text("-3.9e1x"), true, -39, -39, "-3.9e1x"},
             {text("000"), false, 0, 0, "000"},
             {text("0y"), true, 0, 0, "0y"},
             {text("+-5"), false, 0, 0, "+-5"},
             {text(""), false, 0, 0, ""},
             {text("   "), false, 0, 0, "   "},
             {text("nan"), false, 0, 0, "nan"},
             {text("inf"), false, 0, 0, "inf"},
             {text("½"), false, 0, 0, "½"},
             {text("1e999"), true, 0, 0, "1e999"},
             {text("99999999999999999999"), true, Whole::max(), 1e20, "99999999999999999999"},
             {Date{5}, false, 0, 0, std::nullopt},
             {std::vector<std::string>{"1"}, false, 0, 0, std::nullopt},
         }) {
        SimulatedDefaults defaults;
        defaults.set("key", row.stored);
        const auto shown = testing::PrintToString(row.string.value_or("no text"));
        EXPECT_EQ(defaults.boolean("key"), row.boolean) << shown;
        EXPECT_EQ(defaults.integer("key"), row.integer) << shown;
        EXPECT_DOUBLE_EQ(defaults.real("key"), row.real) << shown;
        EXPECT_EQ(defaults.string("key"), row.string) << shown;
    }
}

TEST(Defaults, AskedForOneTypeOnlyTakeNoOther) {
    SimulatedDefaults defaults;
    defaults.set("flag", true);
    defaults.set("whole", std::int64_t{3});
    defaults.set("real", 0.5);
    defaults.set("text", std::string("3"));
    defaults.set("date", Date{9});
    for (const char* key : {"flag", "whole", "real", "text", "date"}) {
        const std::string name = key;
        EXPECT_EQ(defaults.onlyBoolean(key).has_value(), name == "flag") << key;
        EXPECT_EQ(defaults.onlyNumber(key).has_value(), name == "whole" || name == "real") << key;
        EXPECT_EQ(defaults.onlyString(key).has_value(), name == "text") << key;
        EXPECT_EQ(defaults.onlyDate(key).has_value(), name == "date") << key;
    }
    EXPECT_EQ(defaults.onlyNumber("whole"), 3.0);
}

}  // namespace
}  // namespace quibbits
