#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <string>

#include "atelier/Atelier.h"
#include "atelier/Portrait.h"
#include "codecs/Png.h"

namespace quibbits::atelier {
namespace {

const Animation& animation(const std::vector<Animation>& all, std::string_view name) {
    return *std::ranges::find(all, name, &Animation::name);
}

/// One form and what has been drawn of it: drawing is what takes the time, so nothing is drawn
/// twice.
class Studio {
public:
    explicit Studio(const Form& drawn)
        : form{drawn}, animations{animationsOf(drawn.build)}, shift_{groundShiftOf(drawn)} {}

    const Strip& strip(std::string_view name, int direction = facingRight) {
        const auto [entry, isNew] = strips_.try_emplace({std::string{name}, direction});
        if (isNew) entry->second = drawStrip(form, shift_, animation(animations, name), direction);
        return entry->second;
    }
    DrawnAnimation fromAllSides(std::string_view name) {
        DrawnAnimation drawn;
        for (int i = 0; i < directionCount; ++i)
            drawn[static_cast<std::size_t>(i)] = strip(name, i);
        return drawn;
    }

    const Form& form;
    std::vector<Animation> animations;

private:
    GroundShift shift_;
    std::map<std::pair<std::string, int>, Strip> strips_;
};

Studio& studioOf(std::string_view name) {
    static std::map<std::string, Studio, std::less<>> studios;
    const auto found = studios.find(name);
    if (found != studios.end()) return found->second;
    return studios.try_emplace(std::string{name}, *formNamed(name)).first->second;
}

class EachForm : public testing::TestWithParam<std::string_view> {};

INSTANTIATE_TEST_SUITE_P(
    Forms, EachForm,
    [] {
        std::vector<std::string_view> names;
        for (const auto& form : forms()) names.push_back(form.name);
        return testing::ValuesIn(names);
    }(),
    [](const auto& entry) {
        std::string name{entry.param};
        std::erase(name, '-');
        return name;
    });

TEST_P(EachForm, EveryAnimationStandsOnTheSameGround) {
    auto& studio = studioOf(GetParam());
    for (const auto& a : studio.animations) {
        for (const int direction : {facingViewer, facingRight}) {
            int lowest = -1;
            for (const auto& drawing : studio.strip(a.name, direction)) {
                lowest = std::max(lowest, lowestRow(drawing));
            }
            EXPECT_EQ(lowest, groundRow) << a.name;
        }
    }
}

TEST_P(EachForm, AWalkerOrASleeperNeverLeavesTheGround) {
    auto& studio = studioOf(GetParam());
    const bool floats = (studio.form.build & floating) != 0;
    for (const auto& a : studio.animations) {
        const bool stands = a.name == "Idle" || a.name == "Walk" || a.name == "Eat";
        if (a.name != "Sleep" && (floats || !stands)) continue;
        for (const auto& drawing : studio.strip(a.name)) {
            EXPECT_EQ(lowestRow(drawing), groundRow) << a.name;
        }
    }
}

TEST_P(EachForm, NothingIsCutAtTheEdgeOfACell) {
    auto& studio = studioOf(GetParam());
    for (const auto& a : studio.animations) {
        const bool wide = a.name == "Attack" || a.name == "Shock" || a.name == "LeapForth";
        DrawnAnimation drawn;
        if (wide) drawn = studio.fromAllSides(a.name);
        drawn[facingViewer] = studio.strip(a.name, facingViewer);
        drawn[facingRight] = studio.strip(a.name, facingRight);
        const CellBox box = boxAround(drawn);
        EXPECT_EQ(box.height % 2, 0);
        EXPECT_LT(box.reach, frameCanvas.originX) << a.name << " leaves the canvas";
        EXPECT_GT(box.top, 0) << a.name << " leaves the canvas";
        for (const auto& drawing : drawn[facingRight]) {
            for (int y = 0; y < drawing.height; ++y) {
                for (int x = 0; x < drawing.width; ++x) {
                    if (drawing.at(x, y) == noInk) continue;
                    ASSERT_LT(std::abs(x - drawing.originX), box.reach) << a.name;
                    ASSERT_GT(y, box.top) << a.name;
                    ASSERT_LT(y, box.top + box.height - 1) << a.name;
                }
            }
        }
    }
}

TEST_P(EachForm, ASheetHasFewColoursAndTheShinyOneHasOthers) {
    auto& studio = studioOf(GetParam());
    const Paints paints = studio.form.paints();
    for (const std::string_view name : {"Idle", "Attack", "Shock"}) {
        const auto drawn = studio.fromAllSides(name);
        const CellBox box = boxAround(drawn);
        const Image plain = layOut(drawn, box, paints.plain);
        const Image shiny = layOut(drawn, box, paints.shiny);
        EXPECT_LE(std::set(plain.argb.begin(), plain.argb.end()).size(), 64U) << name;
        int inked = 0;
        int different = 0;
        for (std::size_t at = 0; at < plain.argb.size(); ++at) {
            ASSERT_EQ(plain.argb[at] == 0, shiny.argb[at] == 0) << name;
            if (plain.argb[at] == 0) continue;
            ++inked;
            if (plain.argb[at] != shiny.argb[at]) ++different;
        }
        EXPECT_GT(different * 2, inked) << name;
    }
}

TEST_P(EachForm, EveryInkHasAColourInBothPaints) {
    auto& studio = studioOf(GetParam());
    const Paints paints = studio.form.paints();
    const auto check = [&](const Drawing& drawing) {
        for (const Ink ink : drawing.inks) {
            if (ink == noInk) continue;
            ASSERT_NE(paints.plain[ink], 0U) << "ink " << int{ink};
            ASSERT_NE(paints.shiny[ink], 0U) << "ink " << int{ink};
        }
    };
    for (const auto& a : studio.animations) std::ranges::for_each(studio.strip(a.name), check);
    for (const auto& entry : moods) check(drawPortrait(studio.form, entry.mood));
}

TEST_P(EachForm, EyesAreSeenFromTheFrontAndTheSides) {
    auto& studio = studioOf(GetParam());
    for (const int direction : {0, 1, 2, 6, 7}) {
        for (const auto& drawing : studio.strip("Idle", direction)) {
            const auto dark = std::ranges::count(drawing.inks, inkOf('K'));
            const auto glowing = std::ranges::count(drawing.inks, inkOf('G'));
            EXPECT_GT(dark + glowing, 0) << "from direction " << direction;
        }
    }
}

TEST_P(EachForm, TheSameDrawingIsMadeTwice) {
    auto& studio = studioOf(GetParam());
    const auto& nod = animation(studio.animations, "Nod");
    EXPECT_EQ(drawStrip(studio.form, groundShiftOf(studio.form), nod, facingRight),
              studio.strip("Nod"));
}

TEST(Animations, AreThoseThatEachBuildCanDo) {
    const auto has = [](Builds build, std::string_view name) {
        const auto all = animationsOf(build);
        return std::ranges::count(all, name, &Animation::name) == 1;
    };
    for (const Builds build : {ball, squirrel, tall, swimmer, wisp, bell, dusk}) {
        for (const auto* name :
             {"Walk", "Idle", "Sleep", "Hop", "Charge", "Faint", "Wake", "Double"})
            EXPECT_TRUE(has(build, name)) << name;
        EXPECT_EQ(has(build, "Lick"), (build & ghosts) != 0);
        EXPECT_EQ(has(build, "Eat"), build != wisp && build != bell && build != swimmer);
        EXPECT_EQ(has(build, "Pull"), build == dusk);
    }
}

TEST(Sheets, ARowIsFilledByItsFramesAndDescribedByTheirTimes) {
    auto& studio = studioOf("mizzle");
    const auto& nod = animation(studio.animations, "Nod");
    const auto drawn = studio.fromAllSides("Nod");
    const CellBox box = boxAround(drawn);
    const Image sheet = layOut(drawn, box, studio.form.paints().plain);
    EXPECT_EQ(sheet.width, nod.frameCount() * box.width());
    EXPECT_EQ(sheet.height, directionCount * box.height);
    const auto xml = describe({{"Nod", box.height, nod.ticks}});
    EXPECT_NE(xml.find("<Name>Nod</Name>"), std::string::npos);
    EXPECT_NE(xml.find("<FrameHeight>" + std::to_string(box.height) + "</FrameHeight>"),
              std::string::npos);
    EXPECT_NE(xml.find("<Duration>6</Duration><Duration>6</Duration><Duration>8</Duration>"),
              std::string::npos);
}

std::string textOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// What stands between `<tag>` and `</tag>`, every time it occurs.
std::vector<std::string> elements(const std::string& xml, const std::string& tag) {
    std::vector<std::string> found;
    const std::string open = "<" + tag + ">";
    for (auto at = xml.find(open); at != std::string::npos; at = xml.find(open, at + 1)) {
        const auto start = at + open.size();
        found.push_back(xml.substr(start, xml.find("</" + tag + ">", start) - start));
    }
    return found;
}

TEST(Set, EverySheetFitsItsDescription) {
    const auto folder = std::filesystem::path(testing::TempDir()) / "atelier-set";
    ASSERT_TRUE(writeSet(folder, std::array{*formNamed("mizzle")}));
    std::map<std::string, std::string> heights;
    for (const auto& entry : elements(textOf(folder / "mizzle-shiny-anim.xml"), "Anim")) {
        const auto name = elements(entry, "Name").at(0);
        heights[name] = elements(entry, "FrameHeight").at(0);
        std::string file = "mizzle-shiny-" + name + ".png";
        std::ranges::transform(file, file.begin(),
                               [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
        const std::string bytes = textOf(folder / file);
        const auto size = pngInfo(std::as_bytes(std::span(bytes)));
        ASSERT_TRUE(size) << file;
        EXPECT_EQ(size->height, directionCount * std::stoi(heights[name])) << file;
        EXPECT_EQ(size->width % static_cast<int>(elements(entry, "Duration").size()), 0) << file;
    }
    EXPECT_GE(heights.size(), 28U);
    EXPECT_EQ(heights["Idle"], heights["Wake"]) << "who wakes would jump";
    for (const auto& entry : moods) {
        const std::string file = "mizzle-face-" + std::string{entry.name} + ".png";
        const std::string bytes = textOf(folder / file);
        EXPECT_EQ(pngInfo(std::as_bytes(std::span(bytes))), (PngInfo{portraitSize, portraitSize}));
    }
    std::filesystem::remove_all(folder);
}

// When the berry is bitten it hangs so many pixels before the foot point and above the ground.
TEST(Tongues, ReachTheBerry) {
    struct Case {
        std::string_view form;
        int x, y, ticks;
    };
    for (const auto& [form, x, y, ticks] : {Case{"wispul", 26, 4, 21}, {"gloamer", 23, 6, 17}}) {
        auto& studio = studioOf(form);
        const auto& lick = animation(studio.animations, "Lick");
        std::size_t frame = 0;
        for (int left = ticks - lick.ticks[0]; left > 0; left -= lick.ticks[++frame]) continue;
        const auto& bite = studio.strip("Lick")[frame];
        int farthest = 0;
        for (int row = groundRow + 1 - y - 3; row <= groundRow + 1 - y + 2; ++row) {
            for (int column = 0; column < bite.width; ++column) {
                if (bite.at(column, row) == noInk) continue;
                farthest = std::max(farthest, column - bite.originX);
            }
        }
        EXPECT_NEAR(farthest, x, 2) << form;
    }
}

}  // namespace
}  // namespace quibbits::atelier
