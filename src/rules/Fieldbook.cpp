// What naturalists have written of each form.

#include <array>

#include "rules/Growth.h"

namespace quibbits {

namespace {

constexpr std::array mizzleEntries{
    FieldbookEntry{"Meadow Edition",
                   "The bud on its head collects dew and static. A storm makes it sneeze sparks."},
    FieldbookEntry{"Harbour Edition",
                   "It rolls more than it walks. Where it has slept, dust clings to the ceiling."},
    FieldbookEntry{"Attic Edition", "It hums to machines until one hums back, and then it stays."},
};

constexpr std::array sparrelEntries{
    FieldbookEntry{"Meadow Edition",
                   "It buries nuts by daylight and finds them at night by the glow of its tail."},
    FieldbookEntry{
        "Harbour Edition",
        "Every leap charges its brush a little. After a long chase it can light a lamp."},
    FieldbookEntry{
        "Attic Edition",
        "Leave it a tidy desk and it grows restless. Leave it a pile and it is at home."},
};

constexpr std::array thrummetEntries{
    FieldbookEntry{"Meadow Edition",
                   "Its forked tail rings like a tuning fork. Thunder answers in the same key."},
    FieldbookEntry{"Harbour Edition",
                   "It stamps before it strikes, so that its friends can step aside."},
    FieldbookEntry{"Attic Edition",
                   "Sailors set their clocks by its evening call, which is never a second late."},
};

constexpr std::array coralianEntries{
    FieldbookEntry{"Meadow Edition",
                   "Far from the sea it sleeps in puddles and wakes when somebody spills tea."},
    FieldbookEntry{"Harbour Edition",
                   "It rides currents, of water or of wire, and does not tell the two apart."},
    FieldbookEntry{"Attic Edition",
                   "Its antlers are coral and grow a ring for every friend it has made."},
    FieldbookEntry{"Coralis Edition",
                   "The drops around it are its thoughts. When it dreams, they change places."},
};

constexpr std::array wispulEntries{
    FieldbookEntry{"Meadow Edition",
                   "A scrap of evening fog that was afraid of the dark and came indoors."},
    FieldbookEntry{"Harbour Edition",
                   "It tastes what it is curious about. Windows are its favourite, above all clean "
                   "ones."},
    FieldbookEntry{"Attic Edition", "It blows out candles to see the faces that people make."},
};

constexpr std::array gloamerEntries{
    FieldbookEntry{"Meadow Edition",
                   "Its mittens are always cold. It gives them to sleepers, who dream of snow."},
    FieldbookEntry{"Harbour Edition",
                   "It hides behind the thing that you look for and is hurt if you find it first."},
    FieldbookEntry{"Attic Edition", "It laughs without a sound; only the curtains notice."},
};

constexpr std::array umbroolEntries{
    FieldbookEntry{"Meadow Edition",
                   "The lantern on its cap shines backwards, on where you have just been."},
    FieldbookEntry{"Harbour Edition",
                   "It collects shadows, wears them for a night and gives them back pressed."},
    FieldbookEntry{"Attic Edition",
                   "Every prank it plays it has first rehearsed on itself, and giggled."},
};

}  // namespace

Fieldbook Growth::fieldbook(Stage stage, bool coralis) {
    constexpr std::string_view electric = "Electric";
    constexpr std::string_view ghost = "Ghost / Poison";
    switch (stage) {
        case Stage::egg: return {"Egg", "", {}};
        case Stage::mizzle: return {"Dewbud Quibbit", electric, mizzleEntries};
        case Stage::sparrel: return {"Brushtail Quibbit", electric, sparrelEntries};
        case Stage::thrummet:
            if (coralis) return {"Reefsong Quibbit", "Electric / Psychic", coralianEntries};
            return {"Tuning Quibbit", electric, thrummetEntries};
        case Stage::wispul: return {"Fog Quibbit", ghost, wispulEntries};
        case Stage::gloamer: return {"Mitten Quibbit", ghost, gloamerEntries};
        case Stage::umbrool: return {"Lantern Quibbit", ghost, umbroolEntries};
    }
    return {};
}

}  // namespace quibbits
