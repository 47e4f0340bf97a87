#include "atelier/Moods.h"

#include <algorithm>

namespace quibbits::atelier {
namespace {

// Everything is typed for the left eye of the picture, its inner corner to the right.

Stamp furryEye(Mood mood) {
    switch (mood) {
        case Mood::happy:
        case Mood::worried:
            return {{".KKKK.", "KKKKKK", "KKKKKK", "KKKKKK", "KKKKkK", "KkkIkK", ".kIIk."}};
        case Mood::joyous: return {{"......", "..KK..", ".KKKK.", "KK..KK", "K....K", "......"}};
        case Mood::angry:
            return {{"K.....", "KKK...", "KKKKK.", "KKKKKK", "KKKKkK", "KkkIk.", ".kIk.."}};
        case Mood::crying:
            return {{".KKKK.", "KKKKKK", "KKKkkK", "KkkIIk", "kCCCCk", "CWCCCC", ".CC.CC"}};
        case Mood::pain: return {{"KK....", ".KKK..", "...KKK", ".KKK..", "KK...."}};
        case Mood::dizzy:
            return {{".KKKK.", "KSSSSK", "KSKKSK", "KSKSSK", "KSSKKK", ".KSSS.", "..KKK."}};
        case Mood::surprised:
            return {{"..KK..", ".KSSK.", "KSSSSK", "KSKKSK", "KSKKSK", ".KSSK.", "..KK.."}};
        case Mood::sigh: return {{"......", "......", "......", "KKKKKK", ".KKkK.", "..kk.."}};
        case Mood::determined:
            return {{"KK....", "KKKKK.", "KKKKKK", "KKKKKK", "KKKkkK", ".kIIk."}};
        case Mood::inspired:
            return {{".KKKK.", "KKKEKK", "KKEEEK", "KEEEEK", "KKEEEK", "KKEKEk", ".kIIk."}};
    }
    return {};
}

Stamp ghostEye(Mood mood, FaceStyle style) {
    switch (mood) {
        case Mood::happy:
            if (style == FaceStyle::slanted) {
                return {{"GG......", "GGGGG...", "GGGGGGG.", "GGGKKGGG", ".GGKKGGG", ".gGKKGg.",
                         "..gggg.."}};
            }
            return {{".GGGG.", "GGGGGG", "GGKKGG", "GGKKGG", "GGKKGG", "gGKKGg", ".gggg."}};
        case Mood::joyous:
            return {{"........", "..GGGG..", ".GGGGGG.", "GGG..GGG", "GG....GG", "........"}};
        case Mood::angry:
            return {{"G.......", "GGG.....", "GGGGG...", "GGGGKKG.", ".GGGKKGG", "..ggggg."}};
        case Mood::crying:
            return {{"..GGGG..", ".GGGGGG.", "GGGKKGGG", "GGGKKGGG", "gCCCCCCg", "CWCCCCCC",
                     ".CC..CC."}};
        case Mood::pain: return {{"GG......", ".GGGG...", "...GGGG.", ".GGGG...", "GG......"}};
        case Mood::dizzy:
            return {{"..GGGG..", ".GKKKKG.", "GKGGGGKG", "GKGKKGKG", "GKGKGGKG", "GGKGKKGG",
                     ".GGGGGG."}};
        case Mood::worried:
            return {{"...GGG..", "..GGGGG.", ".GGKKGGG", "GGGKKGGG", "GGGGGGg.", ".ggggg.."}};
        case Mood::surprised:
            return {{"..GGGG..", ".GGGGGG.", "GGGGGGGG", "GGGKKGGG", "GGGKKGGG", ".GGGGGG.",
                     "..gggg.."}};
        case Mood::sigh:
            return {{"........", "........", "........", "GGGGGGGG", ".gGKKGg.", "..gggg.."}};
        case Mood::determined:
            return {{"GGG.....", "GGGGGG..", "GGGKKGGG", "GGGKKGGG", ".ggggggg"}};
        case Mood::inspired:
            return {{"..GGGG..", ".GGGKGG.", "GGGKKKGG", "GGKKKKKG", "GGGKKKGG", ".GKKGKG.",
                     "..gggg.."}};
    }
    return {};
}

bool isLit(Mood mood) {
    switch (mood) {
        case Mood::joyous:
        case Mood::pain:
        case Mood::dizzy:
        case Mood::surprised:
        case Mood::sigh:
        case Mood::inspired: return false;
        default: return true;
    }
}

Stamp narrowed(Stamp stamp, std::size_t column) {
    for (auto& row : stamp.rows) row.erase(column, 1);
    return stamp;
}

/// A square highlight at the upper left of both eyes, wherever there is an eye to light.
void lightFurryEye(Stamp& eye, Mood mood) {
    const std::size_t top = mood == Mood::angry ? 3 : mood == Mood::determined ? 2 : 1;
    for (std::size_t y = top; y < top + 2; ++y) {
        for (const std::size_t x : {1U, 2U}) {
            if (eye.rows[y][x] != '.') eye.rows[y][x] = 'W';
        }
    }
}

void lightGhostEye(Stamp& eye) {
    for (auto& row : eye.rows) {
        const auto pupil = row.find("KK");
        if (pupil == std::string::npos) continue;
        row[pupil] = 'W';
        return;
    }
}

Stamp furryMouthOf(Mood mood) {
    switch (mood) {
        case Mood::happy: return {{"M.....M", ".MMMMM.", "..MTM.."}};
        case Mood::joyous:
        case Mood::inspired: return {{"M.....M", "MMMMMMM", "MMSSSMM", ".MTTTM.", "..MMM.."}};
        case Mood::angry: return {{".MMMMM.", "M.SMS.M", "M.....M"}};
        case Mood::crying: return {{"..MMM..", ".MMMMM.", "MMTTTMM", ".MMMMM."}};
        case Mood::pain: return {{".MMMMM.", "MSSMSSM", "MSSMSSM", ".MMMMM."}};
        case Mood::dizzy: return {{".M...M.", "M.M.M.M", "...M..."}};
        case Mood::worried: return {{"..MMM..", ".M...M.", "M......"}};
        case Mood::surprised: return {{".MM.", "MMMM", "MTTM", ".MM."}};
        case Mood::sigh: return {{".MM.", "M..M"}};
        case Mood::determined: return {{"......M", "MMMMMM.", "......."}};
    }
    return {};
}

Stamp wispMouthOf(Mood mood) {
    switch (mood) {
        case Mood::happy: return {{"D......D", ".DDDDDD.", ".DSDTTD.", "...DDD.."}};
        case Mood::joyous:
        case Mood::inspired: return {{"DDDDDDDD", "DSDDDDSD", ".DTTTTD.", "..DDDD.."}};
        case Mood::angry: return {{".DDDDDD.", "DSDDDDSD", "D......D"}};
        case Mood::crying: return {{"..DDDD..", ".DDDDDD.", "DDTTTTDD"}};
        case Mood::pain: return {{"DDDDDDD", "DSSDSSD", "DDDDDDD"}};
        case Mood::dizzy: return {{".D..D..", "D.DD.DD"}};
        case Mood::worried: return {{".DDDD.", "D....D"}};
        case Mood::surprised: return {{".DD.", "DDDD", "DTTD", ".DD."}};
        case Mood::sigh: return {{".DD.", "D..D"}};
        case Mood::determined: return {{"DDDDDDD", "..DSD.."}};
    }
    return {};
}

Stamp grinOf(Mood mood) {
    switch (mood) {
        case Mood::happy:
        case Mood::determined:
            return {{"D...............D", "DSD...........DSD", ".DSSDDDDDDDDDSSD.",
                     ".DSSSDSSSDSSSDSD.", "..DSSDSSSDSSSDD..", "...DDDSSSDSDDD...",
                     "......DDDDD......"}};
        case Mood::joyous:
        case Mood::inspired:
            return {{"DDDDDDDDDDDDDDD", "DSSSDSSSDSSSDSD", "DDSSDDDDDSSDDDD", ".DDDDTTTTTDDDD.",
                     "..DDTTTTTTTDD..", "...DDTTTTTDD...", ".....DDDDD....."}};
        case Mood::angry:
            return {{"...DDDDDDDD...", ".DDSSDSSDSSDD.", "DSSDSSDSSDSSSD", "DDDDDDDDDDDDDD",
                     "DSSSDSSDSSDSSD", ".DDDDDDDDDDDD."}};
        case Mood::crying:
            return {
                {"...DDDDDD...", "..DDDDDDDD..", ".DDTTTTTTDD.", "DDTTTTTTTTDD", "DDDDDDDDDDDD"}};
        case Mood::pain: return {{".DDDDDDDDDD.", "DSSDSSDSSDSD", "DSSDSSDSSDSD", ".DDDDDDDDDD."}};
        case Mood::dizzy: return {{".DD...DD...", "D..D.D..D.D", ".....D...D."}};
        case Mood::worried: return {{"..DDDDDD..", ".DSDSSDSD.", "D........D"}};
        case Mood::surprised: return {{"..DDDD..", ".DDDDDD.", ".DDTTDD.", ".DTTTTD.", "..DDDD.."}};
        case Mood::sigh: return {{"..DDDD..", "DD....DD"}};
    }
    return {};
}

Stamp tongueMouthOf(Mood mood) {
    switch (mood) {
        case Mood::happy:
        case Mood::determined:
            return {{"D.........D", "DDDDDDDDDDD", ".DSDDDDDSD.", "..DTTTTTD..", "...TTTTT...",
                     "...TTtTT...", "....TTT...."}};
        case Mood::joyous:
        case Mood::inspired:
            return {{"DDDDDDDDDDD", "DSSDDDDDSSD", "DDDDDDDDDDD", ".DTTTTTTTD.", "..TTTTtTT..",
                     "..TTTTtTT..", "...TTTTT..."}};
        case Mood::angry:
            return {{".DDDDDDDDD.", "DSSDSDSDSSD", "DDDDDDDDDDD", "DSDSDSDSDSD", ".DDDDDDDDD."}};
        case Mood::crying: return {{"..DDDDDD..", ".DDDDDDDD.", ".DTTTTTTD.", "DDDDDDDDDD"}};
        case Mood::pain: return {{"DDDDDDDDD", "DSDSDSDSD", "DDDDDDDDD"}};
        case Mood::dizzy: return {{".DD...DD.", "D..DDD..D", ".....TT..", ".....TT.."}};
        case Mood::worried: return {{"..DDDDD..", ".D.....D.", "D........"}};
        case Mood::surprised: return {{"..DDD..", ".DDDDD.", ".DTTTD.", "..DDD.."}};
        case Mood::sigh: return {{"..DDDD..", ".D....D."}};
    }
    return {};
}

}  // namespace

Stamp portraitEye(Mood mood, FaceStyle style, Side side, Distance distance) {
    const bool furry = style == FaceStyle::furry;
    Stamp eye = furry ? furryEye(mood) : ghostEye(mood, style);
    if (distance == Distance::far) {
        if (eye.width() == 6 && furry) eye = narrowed(eye, 3);
        if (eye.width() == 8) eye = narrowed(eye, 2);
    }
    eye = sided(std::move(eye), side);
    if (!isLit(mood)) return eye;
    if (furry) {
        lightFurryEye(eye, mood);
    } else {
        lightGhostEye(eye);
    }
    return eye;
}

Stamp portraitBrow(Mood mood, Side side) {
    Stamp brow;
    switch (mood) {
        case Mood::angry: brow = {{"BB......", ".BBB....", "...BBB..", ".....BB."}}; break;
        case Mood::determined: brow = {{"BBB....", ".BBBBB.", "....BBB"}}; break;
        case Mood::worried:
        case Mood::crying: brow = {{".....BB", "..BBBB.", "BBB...."}}; break;
        case Mood::surprised:
        case Mood::inspired: brow = {{".BBBB.", "B....B"}}; break;
        case Mood::pain: brow = {{"BB....", ".BBB..", "...BB."}}; break;
        case Mood::sigh: brow = {{"....BB", "BBBB.."}}; break;
        default: return {};
    }
    return sided(std::move(brow), side);
}

Stamp portraitMouth(Mood mood, FaceStyle style) {
    switch (style) {
        case FaceStyle::furry: return furryMouthOf(mood);
        case FaceStyle::lantern: return wispMouthOf(mood);
        case FaceStyle::slanted: return grinOf(mood);
        case FaceStyle::hooded: return tongueMouthOf(mood);
    }
    return {};
}

}  // namespace quibbits::atelier
