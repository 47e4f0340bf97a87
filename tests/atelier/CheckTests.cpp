#include <gmock/gmock.h>

#include "atelier/Atelier.h"
#include "atelier/Check.h"
#include "body/Sheets.h"
#include "desktop/TemporaryFolder.h"
#include "desktop/files/DiskResources.h"

namespace quibbits::atelier {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const fs::path example = fs::path(QUIBBITS_SOURCE_DIR) / "examples/own-pictures";

/// A picture of frames side by side in one row, each a block that stands so many pixels above the
/// lower edge; below 0 the frame is empty.
Image row(std::vector<int> lifts, int height = 20) {
    constexpr int width = 10;
    const int all = width * static_cast<int>(lifts.size());
    Image image{all, height, std::vector<std::uint32_t>(static_cast<std::size_t>(all * height))};
    for (std::size_t i = 0; i < lifts.size(); ++i) {
        for (int y = 4; lifts[i] >= 0 && y < height - lifts[i]; ++y) {
            const auto x = i * width + 4;
            image.argb[static_cast<std::size_t>(y * all) + x] = 0xff336699;
        }
    }
    return image;
}

std::string entry(const std::string& name, int height, int frames) {
    std::string text =
        "<Anim><Name>" + name + "</Name><FrameHeight>" + std::to_string(height) + "</FrameHeight>";
    for (int i = 0; i < frames; ++i) text += "<Duration>6</Duration>";
    return text + "</Anim>";
}

struct CheckTest : testing::Test {
    /// A folder with a faultless Sparrel of two animations.
    CheckTest() { set(entry("Idle", 20, 2) + entry("Walk", 20, 2)); }
    void set(const std::string& entries) {
        write(folder / "sparrel-anim.xml", "<AnimData>" + entries + "</AnimData>");
        writePng(folder / "sparrel-idle.png", row({0, 1}));
        writePng(folder / "sparrel-walk.png", row({0, 5}));
    }
    std::vector<std::string> faults() const { return judge(folder.path(), {}).faults; }
    TemporaryFolder folder;
};

TEST_F(CheckTest, AFewGoodPicturesAreFaultlessAndWhatStandsInIsNoted) {
    const auto judgement = judge(folder.path(), {});
    EXPECT_THAT(judgement.faults, IsEmpty());
    EXPECT_EQ(judgement.animations, 2u);
    EXPECT_THAT(judgement.notes, testing::Contains(HasSubstr("has no Eat")));
}

TEST_F(CheckTest, EveryKindOfFaultIsNamedWithItsFile) {
    struct Case {
        const char* what;
        std::function<void()> spoil;
        std::string said;
    };
    const auto png = [&](const std::string& name, const Image& image) {
        writePng(folder / name, image);
    };
    const Case cases[] = {
        {"a missing picture", [&] { fs::remove(folder / "sparrel-walk.png"); },
         "sparrel-walk.png: is missing"},
        {"no Idle",
         [&] {
             set(entry("Walk", 20, 2));
             fs::remove(folder / "sparrel-idle.png");
         },
         "has no \"Idle\""},
        {"a broken description", [&] { write(folder / "sparrel-anim.xml", "<AnimData><Anim>"); },
         "is no whole XML"},
        {"no timing", [&] { set(entry("Idle", 20, 2) + entry("Walk", 20, 0)); },
         "Walk: has no \"Duration\""},
        {"a width that does not divide", [&] { set(entry("Idle", 20, 3) + entry("Walk", 20, 2)); },
         "20 pixels wide"},
        {"rows that do not divide", [&] { set(entry("Idle", 7, 2) + entry("Walk", 20, 2)); },
         "20 pixels high"},
        {"too many rows",
         [&] {
             png("sparrel-walk.png", row({0, 0}, 180));
         },
         "9 rows"},
        {"no picture", [&] { write(folder / "sparrel-walk.png", "not a picture"); }, "is no PNG"},
        {"nothing to see",
         [&] {
             png("sparrel-walk.png", row({-1, -1}));
         },
         "shows nothing"},
        {"an empty frame",
         [&] {
             png("sparrel-idle.png", row({0, -1}));
         },
         "frame 2 is empty"},
        {"hovering feet",
         [&] {
             png("sparrel-idle.png", row({0, 3}));
         },
         "frame 2 hovers 3 pixels"},
        {"a jump at waking",
         [&] {
             set(entry("Idle", 20, 2) + entry("Walk", 20, 2) + entry("Wake", 20, 1));
             png("sparrel-wake.png", row({2}));
         },
         "2 pixels off the feet of Idle"},
        {"borrowing from nobody",
         [&] {
             set(entry("Idle", 20, 2) + entry("Walk", 20, 2) +
                 "<Anim><Name>Hop</Name><CopyOf>Leap</CopyOf></Anim>");
         },
         "borrows from Leap"},
        {"an unknown creature", [&] { write(folder / "dragon-idle.png", ""); },
         "dragon-idle.png: belongs to no creature"},
        {"an unknown animation", [&] { png("sparrel-fly.png", row({0})); },
         "sparrel-fly.png: is no animation"},
        {"a portrait of another size",
         [&] {
             png("sparrel-face-happy.png", row({0, 0}));
         },
         "portraits are 40 by 40"},
        {"an unknown mood", [&] { png("sparrel-face-hungry.png", row({0})); }, "is no mood"},
        {"broken credits", [&] { write(folder / "credits.json", "[{}]"); },
         "credits.json: is no list"},
    };
    for (const auto& [what, spoil, said] : cases) {
        for (const auto& file : fs::directory_iterator(folder.path())) fs::remove(file);
        set(entry("Idle", 20, 2) + entry("Walk", 20, 2));
        spoil();
        EXPECT_THAT(faults(), ElementsAre(HasSubstr(said))) << what;
    }
}

TEST_F(CheckTest, OnePictureAloneIsJudgedByTheBuiltInDescription) {
    const TemporaryFolder own;
    writePng(own / "sparrel-walk.png", row({0, 5}));
    EXPECT_EQ(judge(own.path(), folder.path()), (Judgement{.animations = 1}));
    writePng(own / "sparrel-walk.png", row({0, 5}, 21));
    EXPECT_THAT(judge(own.path(), folder.path()).faults, ElementsAre(HasSubstr("21 pixels high")));
    EXPECT_THAT(judge(own.path(), {}).faults, ElementsAre(HasSubstr("no timing")));
}

TEST(TheCheck, FindsNoFaultInTheBuiltInSet) {
    const auto judgement = judge(QUIBBITS_SHEETS_DIR, {});
    EXPECT_THAT(judgement.faults, IsEmpty());
    EXPECT_GT(judgement.animations, 300u);
}

TEST(TheCheck, FindsNoFolderAndAnEmptyOneFaulty) {
    const TemporaryFolder folder;
    EXPECT_THAT(judge(folder.path(), {}).faults, ElementsAre(HasSubstr("holds no sheet")));
    EXPECT_THAT(judge(folder / "missing", {}).faults, ElementsAre(HasSubstr("cannot be read")));
}

TEST(TheExampleOfOwnPictures, IsFaultlessAndReplacesOnlyWhatItHolds) {
    EXPECT_THAT(judge(example, QUIBBITS_SHEETS_DIR).faults, IsEmpty());
    const DiskResources builtIn({QUIBBITS_SHEETS_DIR});
    const DiskResources both({example, QUIBBITS_SHEETS_DIR});
    const Sheets before(builtIn, "sparrel", {});
    const Sheets after(both, "sparrel", {});
    const auto same = [](const quibbits::Image& a, const quibbits::Image& b) {
        if (a.width() != b.width() || a.height() != b.height()) return false;
        for (int y = 0; y < a.height(); ++y) {
            for (int x = 0; x < a.width(); ++x) {
                if (a.at(x, y) != b.at(x, y)) return false;
            }
        }
        return true;
    };
    EXPECT_FALSE(same(after.idle.image, before.idle.image));
    EXPECT_FALSE(same(after.walk.image, before.walk.image));
    EXPECT_TRUE(same(after.eat.image, before.eat.image));
    EXPECT_EQ(after.idle.feet, before.idle.feet);
    EXPECT_EQ(after.walk.duration, before.walk.duration);
}

}  // namespace
}  // namespace quibbits::atelier
