#pragma once
// The ghost line: wispul, gloamer, umbrool.

#include "creature/Companion.h"

namespace quibbits {

class Umbrool final : public Companion {
public:
    explicit Umbrool(const World& world);

    AnimRoles animRoles() const override;
    std::string sheetName(Stage stage, const std::optional<std::string>& form,
                          bool shiny) const override;
    Stage firstStage() const override { return Stage::wispul; }
    Ability ability() const override;
    MoveNames known() const override { return UmbroolLine::known(stage, level()); }
    std::span<const Move> learnset() const override { return UmbroolLine::moves(); }
    MoveNames signatureMoves() const override { return {"Gloom Jab"}; }
    bool canEvolve() const override { return stage == Stage::gloamer; }
    bool floats() const override { return true; }
    std::optional<Nibble> nibble() const override;
    const VoiceTable& voice() const override;
    std::string cry() const override;
    std::optional<Item> evolveItem() const override;

protected:
    bool use(Item item) override;
    std::vector<std::string> playful() const override;
};

}  // namespace quibbits
