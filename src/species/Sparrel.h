#pragma once
// The electric line: mizzle, sparrel, thrummet and its regional form. Adds no state of its own.

#include "creature/Companion.h"

namespace quibbits {

class Sparrel final : public Companion {
public:
    explicit Sparrel(const World& world);

    std::string sheetName(Stage stage, const std::optional<std::string>& form,
                          bool shiny) const override;
    Stage firstStage() const override { return Stage::mizzle; }
    std::string name() const override;
    Ability ability() const override;
    bool abilityOnCharge() const override { return true; }
    MoveNames known() const override;
    std::span<const Move> learnset() const override { return Growth::moves(); }
    MoveNames signatureMoves() const override { return {"Psychic", "Storm Fist"}; }
    bool canEvolve() const override;
    bool isCoralian() const override;
    bool floats() const override { return isCoralian(); }
    double pettingFriendship() const override;
    double paceBoost() const override;
    const VoiceTable& voice() const override;
    std::string cry() const override;
    std::optional<Item> evolveItem() const override;
    std::string evolutionName(Stage to, const std::optional<std::string>& form) const override;

protected:
    bool absorbsCharge(double minutes) override;
    void didLevelUp() override;
    void refreshMoves() override;
    bool startDemo(const std::string& word) override;
    void petted() override;
    bool use(Item item) override;
    void strikeFile(const std::string& path, std::optional<Point> place, Done next) override;
    void boast(Done next) override;
    void chargerPlugged() override;
    void celebrateHook() override;
    std::vector<std::string> unlockedMoves() const override;
};

}  // namespace quibbits
