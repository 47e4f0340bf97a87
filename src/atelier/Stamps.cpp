#include "atelier/Stamps.h"

#include <algorithm>

namespace quibbits::atelier {
namespace {

/// Rows of equal length, so that they can be mirrored and turned.
Stamp squared(Stamp stamp) {
    const auto width = static_cast<std::size_t>(stamp.width());
    for (auto& row : stamp.rows) row.resize(width, '.');
    return stamp;
}

/// Open eyes keep their highlight at the upper left on both sides: one lamp lights both.
Stamp relit(Stamp stamp, Side side) {
    if (side == Side::left) return stamp;
    for (auto& row : stamp.rows) {
        const auto white = row.find('W');
        const auto first = row.find_first_not_of(".Gg");
        if (white != std::string::npos) std::swap(row[white], row[first]);
    }
    return stamp;
}

Stamp furryEyeFacing(Eyes eyes) {
    switch (eyes) {
        case Eyes::open: return {{"KKK", "WKK", "KKK", ".I."}};
        case Eyes::wide: return {{"KKK", "WKK", "WKK", "KKK", "KKK"}};
        case Eyes::closed: return {{"....", "K..K", ".KK.", "...."}};
        case Eyes::happy: return {{"...", ".K.", "K.K", "..."}};
        case Eyes::half: return {{"...", "KKK", "WKI", ".K."}};
        case Eyes::angry: return {{"K..", "KKK", "WKI", ".KK"}};
        case Eyes::hurt: return {{"...", "K..", ".KK", "K.."}};
        case Eyes::dizzy: return {{"...", "K.K", ".K.", "K.K"}};
    }
    return {};
}

Stamp furryEyeAside(Eyes eyes) {
    switch (eyes) {
        case Eyes::open: return {{"KK", "WK", "KK", "KI"}};
        case Eyes::wide: return {{"KK", "WK", "WK", "KK", "KK"}};
        case Eyes::closed: return {{"..", "..", "KK", ".."}};
        case Eyes::happy: return {{"..", "KK", "..", ".."}};
        case Eyes::half:
        case Eyes::angry: return {{"..", "KK", "WK", "KK"}};
        case Eyes::hurt:
        case Eyes::dizzy: return {{"..", "K.", ".K", "K."}};
    }
    return {};
}

Stamp wispEyeOpen(Turn turn) {
    switch (turn) {
        case Turn::facing: return {{".GG.", "GWKG", "GKKG", "GKKG", ".gg."}};
        case Turn::halfway: return {{"GG.", "WKG", "KKG", "KKG", "gg."}};
        case Turn::aside: return {{"GG", "WK", "KK", "KK", "gg"}};
    }
    return {};
}

Stamp wispEyeWide(Turn turn) {
    if (turn == Turn::facing) return {{".GG.", "GGGG", "GKGG", "GGGG", ".gg."}};
    return {{"GG", "GK", "GG", "gg"}};
}

Stamp wispEyeNarrowed(Turn turn, Eyes eyes) {
    if (turn != Turn::facing) return {{"..", "GG", "KG", "gg"}};
    if (eyes == Eyes::angry) return {{"G...", "GGG.", "GKKG", ".gg."}};
    return {{"....", "GGGG", "GKKG", ".gg."}};
}

}  // namespace

int Stamp::width() const {
    std::size_t widest = 0;
    for (const auto& row : rows) widest = std::max(widest, row.size());
    return static_cast<int>(widest);
}

Stamp mirrored(Stamp stamp) {
    stamp = squared(std::move(stamp));
    for (auto& row : stamp.rows) std::ranges::reverse(row);
    return stamp;
}

Stamp sided(Stamp left, Side side) {
    return side == Side::left ? left : mirrored(std::move(left));
}

Stamp turned(Stamp stamp, int quarters) {
    stamp = squared(std::move(stamp));
    for (int turn = quarters & 3; turn > 0; --turn) {
        const auto width = static_cast<std::size_t>(stamp.width());
        Stamp next{{width, std::string(stamp.rows.size(), '.')}};
        for (std::size_t y = 0; y < stamp.rows.size(); ++y) {
            for (std::size_t x = 0; x < width; ++x) next.rows[width - 1 - x][y] = stamp.rows[y][x];
        }
        stamp = std::move(next);
    }
    return stamp;
}

bool isStroke(Eyes eyes) {
    return eyes == Eyes::closed || eyes == Eyes::happy || eyes == Eyes::hurt || eyes == Eyes::dizzy;
}

Stamp furryEye(Eyes eyes, Turn turn, Side side) {
    const bool facing = turn == Turn::facing;
    return relit(sided(facing ? furryEyeFacing(eyes) : furryEyeAside(eyes), side), side);
}

Stamp wispEye(Eyes eyes, Turn turn, Side side) {
    switch (eyes) {
        case Eyes::open: return relit(sided(wispEyeOpen(turn), side), side);
        case Eyes::wide: return wispEyeWide(turn);
        case Eyes::half:
        case Eyes::angry: return sided(wispEyeNarrowed(turn, eyes), side);
        default: return furryEye(eyes, turn, side);
    }
}

Stamp furryMouth(Mouth mouth, Turn turn) {
    const bool facing = turn == Turn::facing;
    switch (mouth) {
        case Mouth::smile: return facing ? Stamp{{"m.m", ".m."}} : Stamp{{"mm"}};
        case Mouth::open: return facing ? Stamp{{"MMM", "MTM", ".M."}} : Stamp{{"MM", "MT"}};
        case Mouth::round: return facing ? Stamp{{"MM", "MM"}} : Stamp{{"M", "M"}};
        case Mouth::flat: return facing ? Stamp{{"MM"}} : Stamp{{"M"}};
        case Mouth::grin: return facing ? Stamp{{"MMMM", ".MM."}} : Stamp{{"MM"}};
        case Mouth::wavy: return facing ? Stamp{{".MM.", "M..M"}} : Stamp{{"MM.", "..M"}};
        case Mouth::chewing: return facing ? Stamp{{".M."}} : Stamp{{"M"}};
    }
    return {};
}

Stamp wispMouth(Mouth mouth, Turn turn, double tongue) {
    const bool facing = turn == Turn::facing;
    if (tongue > 0.05) return facing ? Stamp{{"MMMM", "MTTM"}} : Stamp{{"MM", "TT"}};
    switch (mouth) {
        case Mouth::smile: return facing ? Stamp{{"M..M", ".MMW"}} : Stamp{{"M..", ".MM"}};
        case Mouth::open: return facing ? Stamp{{"MMMM", "MTTM", ".MM."}} : Stamp{{"MMM", "MTT"}};
        case Mouth::round: return facing ? Stamp{{".M.", "MMM", "MMM"}} : Stamp{{"MM", "MM", "MM"}};
        case Mouth::wavy: return facing ? Stamp{{"M.M.", ".M.M"}} : Stamp{{"MM"}};
        default: return furryMouth(mouth, turn);
    }
}

}  // namespace quibbits::atelier
