// The eyes and mouths of the darker ghosts. Their heads are dark, so every stroke is light.
#include <algorithm>

#include "atelier/Stamps.h"

namespace quibbits::atelier {
namespace {

Stamp lightened(Stamp stamp) {
    for (auto& row : stamp.rows) std::ranges::replace(row, 'K', 'G');
    return stamp;
}

/// Narrow eyes that slant towards the middle.
Stamp slantedOpen(Turn turn) {
    switch (turn) {
        case Turn::facing: return {{"GG...", "GGGG.", "GGKWG", ".gKKg"}};
        case Turn::halfway: return {{"GG..", "GGGG", "GGKW", ".gKK"}};
        case Turn::aside: return {{"G.", "GG", "KG"}};
    }
    return {};
}

Stamp slantedAngry(Turn turn) {
    if (turn == Turn::facing) return {{"G....", "GGG..", ".GGKG", "...gg"}};
    return {{"G..", "GG.", "gKG"}};
}

Stamp bellOpen(Turn turn) {
    switch (turn) {
        case Turn::facing: return {{".GG.", "GGGG", "GWKG", "GKKg", ".gg."}};
        case Turn::halfway: return {{"GG.", "GGG", "WKG", "KKg", "gg."}};
        case Turn::aside: return {{"GG", "GG", "WK", "KK", "gg"}};
    }
    return {};
}

/// A grin from ear to ear, typed from the front and for a head turned to the right.
Stamp grin(Turn turn) {
    switch (turn) {
        case Turn::facing:
            return {{"D...........D", "DSD.......DSD", ".DSSDDDDDSSD.", "..DSSSDSSSD..",
                     "...DDSSSDD...", ".....DDD....."}};
        case Turn::halfway: return {{"D.......D", "DSD...DSD", ".DSSSSSD.", "..DDDDD.."}};
        case Turn::aside: return {{"D....", "DSD..", ".DSSS", "..DDD"}};
    }
    return {};
}

/// Teeth along the upper edge: two fangs in the dark would look like eyes behind a mask.
Stamp wideOpen(Turn turn) {
    switch (turn) {
        case Turn::facing:
            return {{"DDDDDDDDD", "DSSSSSSSD", ".DDDDDDD.", "..DTTTD..", "...DDD..."}};
        case Turn::halfway: return {{"DDDDDDD", "DSSSSSD", ".DTTTD.", "..DDD.."}};
        case Turn::aside: return {{"DDD", "DSS", ".DT"}};
    }
    return {};
}

Stamp tongueOut(Turn turn) {
    switch (turn) {
        case Turn::facing: return {{"DDDDDDDDD", "DTTTTTTTD", ".DTTTTTD."}};
        case Turn::halfway: return {{"DDDDDDD", "DTTTTTD", ".TTTTT."}};
        case Turn::aside: return {{"DDDD", "DTTT"}};
    }
    return {};
}

Stamp pressed(Turn turn) {
    switch (turn) {
        case Turn::facing: return {{".DDDDD.", "D.....D"}};
        case Turn::halfway: return {{"DDDD"}};
        case Turn::aside: return {{"DD"}};
    }
    return {};
}

/// Its corners turn up: with a straight upper edge it would look like a band across the face.
Stamp tongueTeeth(Turn turn) {
    switch (turn) {
        case Turn::facing: return {{"D.....D", "DSDDDSD", ".DTTTD.", "..TTT.."}};
        case Turn::halfway: return {{"D....D", "DSDDSD", ".DTTTD", "..TTT."}};
        case Turn::aside: return {{"D...", "DSDD", ".DTT"}};
    }
    return {};
}

/// Lips that tremble.
Stamp trembling(Turn turn) {
    switch (turn) {
        case Turn::facing: return {{".DD..DD", "D..DD.."}};
        case Turn::halfway: return {{".DD.D", "D..D."}};
        case Turn::aside: return {{".D", "D."}};
    }
    return {};
}

Stamp cryingOut(Turn turn) {
    return turn == Turn::aside ? Stamp{{"DD", "DD", "DT"}}
                               : Stamp{{".DDD.", "DDDDD", "DDDDD", ".DTD."}};
}

}  // namespace

Stamp duskEye(Eyes eyes, Turn turn, Side side) {
    switch (eyes) {
        case Eyes::open: return sided(slantedOpen(turn), side);
        case Eyes::angry: return sided(slantedAngry(turn), side);
        case Eyes::wide:
            return turn == Turn::facing ? Stamp{{".GGG.", "GGGGG", "GGKGG", ".ggg."}}
                                        : Stamp{{"GG", "GG", "KG", "gg"}};
        case Eyes::half:
            return turn == Turn::facing ? Stamp{{"....", "GGGG", "gKKg"}}
                                        : Stamp{{"..", "GG", "GK"}};
        default: return lightened(furryEye(eyes, turn, side));
    }
}

Stamp bellEye(Eyes eyes, Turn turn, Side side) {
    switch (eyes) {
        case Eyes::open: return sided(bellOpen(turn), side);
        case Eyes::wide:
            return turn == Turn::facing ? Stamp{{".GG.", "GGGG", "GKGG", ".gg."}}
                                        : Stamp{{"GG", "GK", "gg"}};
        case Eyes::half:
        case Eyes::angry: return wispEye(eyes, turn, side);
        default: return lightened(furryEye(eyes, turn, side));
    }
}

Stamp duskMouth(Mouth mouth, Turn turn, Side towards, double tongue) {
    const auto turnedRight = [&](Stamp stamp) {
        return towards == Side::right ? stamp : mirrored(std::move(stamp));
    };
    if (tongue > 0.05) return tongueOut(turn);
    switch (mouth) {
        case Mouth::smile:
        case Mouth::grin: return turnedRight(grin(turn));
        case Mouth::open: return wideOpen(turn);
        case Mouth::round: return cryingOut(turn);
        case Mouth::wavy: return trembling(turn);
        default: return pressed(turn);
    }
}

Stamp bellMouth(Mouth mouth, Turn turn, Side towards) {
    if (mouth == Mouth::flat) return turn == Turn::facing ? Stamp{{".DDDDD."}} : Stamp{{"DDD"}};
    if (mouth == Mouth::wavy) return trembling(turn);
    if (mouth == Mouth::round) return cryingOut(turn);
    const Stamp stamp = tongueTeeth(turn);
    return turn == Turn::aside && towards == Side::left ? mirrored(stamp) : stamp;
}

}  // namespace quibbits::atelier
