// The program's own icon: a sparrel's face, typed pixel by pixel for the small sizes.
#pragma once

#include <filesystem>
#include <vector>

#include "atelier/Sheet.h"

namespace quibbits::atelier {

constexpr int iconSizes[] = {16, 22, 24, 32, 48, 64, 128, 256};
constexpr int symbolicSizes[] = {16, 22};

/// The face in one of `iconSizes`. Larger sizes repeat the pixels of smaller ones.
Image icon(int size);

/// The face in one of `symbolicSizes`: one colour, with holes for the eyes and the nose.
Image symbolicIcon(int size);

/// Writes them all: quibbits-SIZE.png, quibbits-symbolic-SIZE.png, and the larger symbolic one as
/// quibbits-symbolic.png. False when a file cannot be written.
bool writeIcons(const std::filesystem::path& folder);

}  // namespace quibbits::atelier
