// The dial without a mouse.

#include <gtest/gtest.h>

#include "FakeParty.h"
#include "dial/PartyDial.h"
#include "support/LivingCreature.h"

namespace quibbits {
namespace {

class TheDialByKeys : public ::testing::Test {
protected:
    TheDialByKeys() {
        dial_.emplace(c_.computer(), c_.panels(), party_.members());
        dial_->onGive = [this](Item item) { given_.push_back(item); };
        c_.statusItem.onClick();
        c_.runLoop.advance(1);
    }
    void press(std::vector<WalkingKey> keys) {
        for (const WalkingKey key : keys) {
            EXPECT_TRUE(c_.keyboard.press(key));
            c_.runLoop.advance(0.1);
        }
    }
    std::string plate() const {
        return std::get<Text>(dial_->view()->nameLayer().model().content).text.runs.front().text;
    }

    Desk desk_;
    SimulatedComputer& c_ = desk_.computer;
    FakeParty party_{{{.stats = sparrelStats(), .isOut = true}, {.stats = eggStats()}}};
    std::optional<PartyDial> dial_;
    std::vector<Item> given_;
};

TEST_F(TheDialByKeys, ArrowsWalkAndReturnChooses) {
    press({WalkingKey::right});
    EXPECT_EQ(plate(), "Sparrel");
    press({WalkingKey::right});
    EXPECT_EQ(plate(), "Egg");
    press({WalkingKey::right});
    EXPECT_EQ(plate(), "Empty slot");
    press({WalkingKey::choose});
    EXPECT_TRUE(dial_->isOpen()) << "an empty slot does nothing";
    press({WalkingKey::left, WalkingKey::choose});
    EXPECT_EQ(party_.creatures[1].toggles.size(), 1u);
    EXPECT_FALSE(dial_->isOpen());
    EXPECT_FALSE(c_.keyboard.isTaken()) << "and other programs have the keys again";
}

TEST_F(TheDialByKeys, AnItemIsHandedOver) {
    press({WalkingKey::down, WalkingKey::right});
    EXPECT_EQ(dial_->view()->pickedItem(), 1u);
    EXPECT_EQ(plate(), displayName(dial_->view()->items()[1].item));
    press({WalkingKey::up});
    EXPECT_EQ(plate(), "Sparrel");
    press({WalkingKey::down, WalkingKey::choose});
    EXPECT_EQ(given_, std::vector<Item>{Item::azurine});
    EXPECT_FALSE(dial_->isOpen());
}

TEST_F(TheDialByKeys, EscapeOrAnyOtherKeyClosesIt) {
    press({WalkingKey::leave});
    EXPECT_FALSE(dial_->isOpen());
    c_.statusItem.onClick();
    press({WalkingKey::other});
    EXPECT_FALSE(dial_->isOpen());
    EXPECT_FALSE(c_.keyboard.isTaken());
}

TEST_F(TheDialByKeys, APointerThatRestsDoesNotTakeTheLightAway) {
    press({WalkingKey::right});
    c_.runLoop.advance(1);
    EXPECT_EQ(dial_->view()->hovered(), 0);
    c_.movePointer(c_.pointer.place + Vector{1, 0});
    c_.runLoop.advance(0.1);
    EXPECT_EQ(dial_->view()->hovered(), std::nullopt) << "one that moves does";
}

/// From the first start to a fed creature and a changed rule, no mouse touched.
TEST(APersonWithoutAMouse, HatchesAnEggFeedsItAndChangesASwitch) {
    LivingCreature life({.stage = "egg", .defaults = {{"onboarded", true}, {"pet.hunger", 0.9}}});
    const auto press = [&](WalkingKey key) {
        life.computer.keyboard.press(key);
        life.advance(0.3);
    };
    life.computer.statusItem.onClick();  // as a launcher or a tray's own keys do
    press(WalkingKey::right);
    press(WalkingKey::choose);
    life.advance(40);
    ASSERT_EQ(life.creature().stage(), Stage::mizzle);
    const double before = life.creature().needs().hunger;
    for (int tries = 0; tries < 30 && life.creature().needs().hunger >= before; ++tries) {
        life.computer.statusItem.onClick();
        press(WalkingKey::down);
        press(WalkingKey::choose);
        life.advance(20);
    }
    EXPECT_LT(life.creature().needs().hunger, before);
    life.app->showSettings();
    auto* window = life.computer.viewWindows.titled("Quibbits");
    window->act("sidebar", std::string("general"));
    window->act("default:music", false);
    EXPECT_FALSE(isOn(life.computer.defaults, Setting::music));
}

}  // namespace
}  // namespace quibbits
