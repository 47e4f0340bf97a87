// Small typed pictures: eyes, mouths, marks. Everything that a ray cast would turn into noise.
//
// A stamp is typed as rows of letters; '.' and ' ' are clear, a letter is an ink. Stamps of eyes
// are typed for the left eye of the picture; the right one is the mirror image, but for its
// highlight.
#pragma once

#include <string>
#include <vector>

#include "atelier/Pose.h"

namespace quibbits::atelier {

struct Stamp {
    std::vector<std::string> rows;

    [[nodiscard]] bool empty() const { return rows.empty(); }
    [[nodiscard]] int width() const;
    [[nodiscard]] int height() const { return static_cast<int>(rows.size()); }
};

enum class Side { left, right };  ///< of the picture

/// How much of a feature the turn of the head leaves to be seen.
enum class Turn { facing, halfway, aside };

Stamp mirrored(Stamp stamp);
/// What is typed for the left side, on that side.
Stamp sided(Stamp left, Side side);
/// Turned by quarters of a circle to the left.
Stamp turned(Stamp stamp, int quarters);

Stamp furryEye(Eyes eyes, Turn turn, Side side);
Stamp wispEye(Eyes eyes, Turn turn, Side side);
Stamp duskEye(Eyes eyes, Turn turn, Side side);
Stamp bellEye(Eyes eyes, Turn turn, Side side);
Stamp furryMouth(Mouth mouth, Turn turn);
Stamp wispMouth(Mouth mouth, Turn turn, double tongue);
/// The side says towards which side of the picture the mouth is turned.
Stamp duskMouth(Mouth mouth, Turn turn, Side towards, double tongue);
Stamp bellMouth(Mouth mouth, Turn turn, Side towards);

/// Closed strokes have no body: seen from far aside they would only poke out of the outline.
bool isStroke(Eyes eyes);

}  // namespace quibbits::atelier
