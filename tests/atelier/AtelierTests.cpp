#include <gtest/gtest.h>
#include <unistd.h>

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
#include "atelier/Icon.h"
#include "atelier/LineUp.h"
#include "atelier/Play.h"
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

TEST_P(EachForm, LyingAndLeapingUseThatGroundFromEveryDirection) {
    auto& studio = studioOf(GetParam());
    for (const auto* name : {"Idle", "Sleep", "LeapForth", "Faint"}) {
        for (const auto& strip : studio.fromAllSides(name)) {
            int lowest = -1;
            for (const auto& drawing : strip) lowest = std::max(lowest, lowestRow(drawing));
            EXPECT_EQ(lowest, groundRow) << name;
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

bool isEye(Ink ink) {
    constexpr std::string_view letters = "KWIGg";
    return std::ranges::any_of(letters, [&](char letter) { return ink == inkOf(letter); });
}

/// The patches of eye ink that hang together, corners included.
int eyesIn(const Drawing& drawing) {
    int eyes = 0;
    std::set<std::pair<int, int>> left;
    for (int y = 0; y < drawing.height; ++y) {
        for (int x = 0; x < drawing.width; ++x) {
            if (isEye(drawing.at(x, y))) left.insert({x, y});
        }
    }
    while (!left.empty()) {
        ++eyes;
        std::vector<std::pair<int, int>> open{*left.begin()};
        left.erase(left.begin());
        while (!open.empty()) {
            const auto [x, y] = open.back();
            open.pop_back();
            for (int step = 0; step < 9; ++step) {
                const std::pair next{x + step % 3 - 1, y + step / 3 - 1};
                if (left.erase(next) > 0) open.push_back(next);
            }
        }
    }
    return eyes;
}

TEST_P(EachForm, BothEyesAreSeenFromTheSide) {
    for (const int direction : {facingRight, 6}) {
        EXPECT_EQ(eyesIn(studioOf(GetParam()).strip("Idle", direction).front()), 2);
    }
}

// Who spins or sinks may lose its face for a moment; nobody else does, not even who rolls.
TEST_P(EachForm, TheFaceIsSeenInEveryFrameFromTheSide) {
    constexpr std::string_view spinning[] = {"Rotate", "Twirl", "Sink"};
    auto& studio = studioOf(GetParam());
    for (const auto& a : studio.animations) {
        if (std::ranges::count(spinning, a.name) > 0) continue;
        int frame = 0;
        for (const auto& drawing : studio.strip(a.name)) {
            EXPECT_GE(std::ranges::count_if(drawing.inks, isEye), 3)
                << a.name << ", frame " << frame;
            ++frame;
        }
    }
}

int rowOfEyes(const Drawing& drawing) {
    const auto first = std::ranges::find_if(drawing.inks, isEye);
    return static_cast<int>(first - drawing.inks.begin()) / drawing.width;
}

// Seen from above, the far foot stands higher in the picture than the near one.
TEST(Walks, DoNotLimp) {
    for (const auto* name : {"mizzle", "sparrel", "thrummet"}) {
        const auto& walk = studioOf(name).strip("Walk");
        const std::size_t step = walk.size() / 2;
        for (std::size_t frame = 0; frame < step; ++frame) {
            EXPECT_NEAR(rowOfEyes(walk[frame]), rowOfEyes(walk[frame + step]), 1)
                << name << ", frame " << frame;
        }
    }
}

int highestRow(const Drawing& drawing) {
    const auto first = std::ranges::find_if(drawing.inks, [](Ink ink) { return ink != noInk; });
    return static_cast<int>(first - drawing.inks.begin()) / drawing.width;
}

TEST_P(EachForm, WhoSleepsLiesLowWithItsEyesShut) {
    auto& studio = studioOf(GetParam());
    const int standing = groundRow - highestRow(studio.strip("Idle").front());
    for (const auto& drawing : studio.strip("Sleep")) {
        EXPECT_LT(groundRow - highestRow(drawing), standing * 0.95);
        EXPECT_EQ(std::ranges::count(drawing.inks, inkOf('W')), 0) << "an open eye has a glint";
    }
}

TEST_P(EachForm, ASleeperSinksAsItBreathesOut) {
    const auto& sleep = studioOf(GetParam()).strip("Sleep");
    EXPECT_LT(highestRow(sleep[0]), highestRow(sleep[2]));
}

TEST(Forms, AreToldApartByTheirOutlinesAlone) {
    const auto outlineOf = [](const Form& form) -> const std::vector<Ink>& {
        return studioOf(form.name).strip("Idle").front().inks;
    };
    for (const auto& one : forms()) {
        for (const auto& other : forms()) {
            if (&one == &other) continue;
            int both = 0;
            int either = 0;
            const auto& a = outlineOf(one);
            const auto& b = outlineOf(other);
            for (std::size_t at = 0; at < a.size(); ++at) {
                both += a[at] != noInk && b[at] != noInk ? 1 : 0;
                either += a[at] != noInk || b[at] != noInk ? 1 : 0;
            }
            EXPECT_LT(both, either * 0.75) << one.name << " and " << other.name;
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
    const auto folder =
        std::filesystem::path(testing::TempDir()) / ("atelier-set-" + std::to_string(getpid()));
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

/// How much higher the right one of two glowing eyes begins than the left one.
int eyeSlope(const Drawing& drawing) {
    std::map<int, int> tops;  // by column
    for (int x = 0; x < drawing.width; ++x) {
        for (int y = 0; y < drawing.height && !tops.contains(x); ++y) {
            if (drawing.at(x, y) == inkOf('G')) tops[x] = y;
        }
    }
    if (tops.empty()) return 1000;
    // The widest gap between columns parts the eyes.
    auto right = std::next(tops.begin());
    int widest = 0;
    for (auto at = std::next(tops.begin()); at != tops.end(); ++at) {
        const int gap = at->first - std::prev(at)->first;
        if (gap > widest) right = at;
        widest = std::max(widest, gap);
    }
    const auto highest = [](auto from, auto to) {
        return std::min_element(from, to, [](auto& a, auto& b) { return a.second < b.second; })
            ->second;
    };
    return highest(tops.begin(), right) - highest(right, tops.end());
}

TEST(Ghosts, HaveEyesThatDoNotJumpAgainstEachOther) {
    for (const std::string_view name : {"wispul", "gloamer", "umbrool"}) {
        for (const std::string_view moving : {"Walk", "Float"}) {
            for (const int direction : {facingViewer, facingRight, 6}) {
                const auto& strip = studioOf(name).strip(moving, direction);
                const int slope = eyeSlope(strip.front());
                EXPECT_LE(std::abs(slope), 2) << name << ", " << moving;
                for (const auto& drawing : strip) {
                    EXPECT_EQ(eyeSlope(drawing), slope) << name << ", " << moving;
                }
            }
        }
    }
}

bool isOf(Ink ink, Material material) {
    const Ink first = inkOf(material, Tint::deep);
    return ink >= first && ink < first + tintCount;
}

TEST(Ghosts, HoldTheirHandsAsOthersHoldTheirArms) {
    auto& studio = studioOf("gloamer");
    const auto highestMitten = [](const Drawing& drawing) {
        const auto found =
            std::ranges::find_if(drawing.inks, [](Ink ink) { return isOf(ink, Material::paw); });
        return static_cast<int>(found - drawing.inks.begin()) / drawing.width;
    };
    const int atRest = highestMitten(studio.strip("Idle").front());
    EXPECT_LT(highestMitten(studio.strip("Pose")[2]), atRest - 6);
}

TEST(Ghosts, DoNotLoseTheirTongueWhileTheyBlink) {
    for (const auto& drawing : studioOf("gloamer").strip("Idle")) {
        const auto isTongue = [](Ink ink) { return isOf(ink, Material::skin); };
        EXPECT_GT(std::ranges::count_if(drawing.inks, isTongue), 4);
    }
}

/// The parts of an animated PNG that tell its time: every frame's share of a second, added up.
double secondsOf(std::span<const std::byte> file) {
    const auto number = [&](std::size_t at, int bytes) {
        unsigned value = 0;
        for (int i = 0; i < bytes; ++i) {
            value = value << 8 | std::to_integer<unsigned>(file[at + static_cast<std::size_t>(i)]);
        }
        return value;
    };
    double seconds = 0;
    for (std::size_t at = 8; at + 12 <= file.size(); at += 12 + number(at, 4)) {
        const bool timing = number(at + 4, 4) == 0x6663544c;  // fcTL
        if (timing) seconds += static_cast<double>(number(at + 28, 2)) / number(at + 30, 2);
    }
    return seconds;
}

TEST(Playing, TakesAsLongAsTheAnimationAndIsThreeTimesItsSize) {
    auto& studio = studioOf("mizzle");
    for (const std::string_view name : {"Nod", "Sleep"}) {
        const auto& played = animation(studio.animations, name);
        int ticks = 0;
        for (const int each : played.ticks) ticks += each;
        const auto file = play(studio.form, played);
        EXPECT_NEAR(secondsOf(file), ticks / 60.0, 0.001) << name;
        const CellBox box = boxAround(studio.fromAllSides(name));
        EXPECT_EQ(pngInfo(file), (PngInfo{box.width() * 3, box.height * 3})) << name;
    }
}

TEST(LineUps, HaveEveryFormOnOneGround) {
    const Image plain = lineUp(Coat::plain);
    const Image shiny = lineUp(Coat::shiny);
    ASSERT_EQ(plain.argb.size(), shiny.argb.size());
    EXPECT_EQ(std::ranges::count(plain.argb, 0U), 0) << "a hole in the backdrop";
    // Columns in which the coats differ are columns with a creature; gaps part the creatures.
    int creatures = 0;
    bool inside = false;
    for (int x = 0; x < plain.width; ++x) {
        bool differs = false;
        for (int y = 0; y < plain.height; ++y) {
            const auto at = static_cast<std::size_t>(y * plain.width + x);
            differs = differs || plain.argb[at] != shiny.argb[at];
        }
        if (differs && !inside) ++creatures;
        inside = differs;
    }
    EXPECT_GE(creatures, static_cast<int>(forms().size()));
}

TEST(Icons, LookTheSameEnlargedAndHaveEyesThatAreLitFromOneSide) {
    for (const int size : iconSizes) {
        const Image image = icon(size);
        ASSERT_EQ(image.argb.size(), static_cast<std::size_t>(size * size));
        EXPECT_EQ(image.argb.front(), 0U) << "a corner of " << size;
        EXPECT_LE(std::set(image.argb.begin(), image.argb.end()).size(), 18U) << size;
        // Every glint in the lower half, where the eyes are, has more of its eye on its right.
        const auto darkFrom = [&](int at, int step) {
            int count = 0;
            while (image.argb[static_cast<std::size_t>(at += step)] == 0xff2b1830) ++count;
            return count;
        };
        int glints = 0;
        for (int at = size * size / 2; at < size * size; ++at) {
            if (image.argb[static_cast<std::size_t>(at)] != 0xffffffff) continue;
            if (image.argb[static_cast<std::size_t>(at - 1)] == 0xffffffff) continue;
            int last = at;
            while (image.argb[static_cast<std::size_t>(last + 1)] == 0xffffffff) ++last;
            EXPECT_LE(darkFrom(at, -1), darkFrom(last, 1)) << size;
            EXPECT_GT(darkFrom(last, 1), 0) << size;
            ++glints;
        }
        EXPECT_GE(glints, 2) << size;
    }
    const Image small = icon(32);
    const Image large = icon(128);
    for (int y = 0; y < 128; ++y) {
        for (int x = 0; x < 128; ++x) {
            ASSERT_EQ(large.argb[static_cast<std::size_t>(y * 128 + x)],
                      small.argb[static_cast<std::size_t>(y / 4 * 32 + x / 4)]);
        }
    }
}

TEST(Icons, ForTraysHaveOneColourAndEyesToSeeThrough) {
    for (const int size : symbolicSizes) {
        const Image image = symbolicIcon(size);
        const std::set colours(image.argb.begin(), image.argb.end());
        EXPECT_EQ(colours.size(), 2U);
        EXPECT_TRUE(colours.contains(0U));
        // A hole is clear with the colour somewhere on both sides of it.
        int holes = 0;
        for (int y = size / 2; y < size * 3 / 4; ++y) {
            const auto* row = image.argb.data() + static_cast<std::ptrdiff_t>(y) * size;
            const auto* first = std::find_if(row, row + size, [](auto c) { return c != 0; });
            const auto* last = row + size;
            while (last > first && *(last - 1) == 0) --last;
            holes += static_cast<int>(std::count(first, last, 0U));
        }
        EXPECT_GE(holes, 8) << size;
    }
}

}  // namespace
}  // namespace quibbits::atelier
