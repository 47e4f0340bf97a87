#pragma once
// Personalities. A nature raises one stat and lowers another, which decides what a creature likes
// to eat, how fast it walks and how much it plays; neutral natures do neither.

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace quibbits {

struct Nature {
    enum class Stat { attack, defense, spAttack, spDefense, speed };

    std::string_view name;
    std::optional<Stat> up;
    std::optional<Stat> down;
    bool operator==(const Nature&) const = default;

    /// All 25, in the order of their table.
    static std::span<const Nature> all();
    static std::optional<Nature> named(std::string_view name);
    /// "Hardy": neither raises nor lowers anything.
    static Nature neutral();
    static std::string_view rawValue(Stat stat);

    /// Factor on every pace: 1.25, 1.0 or 0.8.
    double walkSpeed() const;
    /// 5, 3 or 2.
    int playfulness() const;
    bool isShy() const;
    bool isSleepy() const;
    /// The sentence that tells the user what the nature changes.
    std::string effect() const;
};

}  // namespace quibbits
