#include "atelier/Portrait.h"

#include <cmath>

#include "atelier/Render.h"

namespace quibbits::atelier {
namespace {

constexpr double portraitYaw = -20;
constexpr double portraitTilt = 6;

struct Backdrop {
    std::uint32_t inner;
    std::uint32_t outer;
};

/// How a mood carries the head, the ears and the arms.
struct Bearing {
    double headPitch = 0, headRoll = 0, ear = 0, earSpread = 0;
    double armLeft = 12, armRight = 12, spreadLeft = 14, spreadRight = 14, bend = 0;
};

Backdrop backdropOf(Mood mood) {
    switch (mood) {
        case Mood::happy: return {0xff9ad0c2, 0xff7fbcb4};
        case Mood::joyous: return {0xffffd98a, 0xfff6bf6a};
        case Mood::angry: return {0xffd8705c, 0xffb8524c};
        case Mood::crying: return {0xff86a8d8, 0xff6a8cc4};
        case Mood::pain: return {0xffc894a8, 0xffa87890};
        case Mood::dizzy: return {0xffb8a0d4, 0xff9c84c0};
        case Mood::worried: return {0xffa8b8c8, 0xff8ca0b4};
        case Mood::surprised: return {0xfff4e08c, 0xffe4c86c};
        case Mood::sigh: return {0xffb4c4b4, 0xff9cb09c};
        case Mood::determined: return {0xfff0a468, 0xffdc8850};
        case Mood::inspired: return {0xffa4dcf0, 0xff84c4e4};
    }
    return {};
}

Bearing bearingOf(Mood mood) {
    constexpr Bearing cheering{.headPitch = -6,
                               .headRoll = 5,
                               .ear = -4,
                               .armLeft = 150,
                               .armRight = 150,
                               .spreadLeft = 30,
                               .spreadRight = 30};
    switch (mood) {
        case Mood::happy: return {};
        case Mood::joyous: return cheering;
        case Mood::angry: return {.headPitch = 8, .ear = 26};
        case Mood::crying: return {.headPitch = 10, .headRoll = -4, .ear = 38, .earSpread = 22};
        case Mood::pain: return {.headPitch = 4, .headRoll = -6, .ear = 34};
        case Mood::dizzy: return {.headRoll = 10, .ear = 20};
        case Mood::worried: return {.headPitch = 4, .headRoll = -4, .ear = 30, .earSpread = 22};
        case Mood::surprised: return {.headPitch = -6, .ear = -12};
        case Mood::sigh: return {.headPitch = 12, .headRoll = -3, .ear = 36, .earSpread = 22};
        case Mood::determined:
            return {.headPitch = 4, .ear = 6, .armRight = 110, .spreadRight = -10, .bend = 60};
        case Mood::inspired: {
            Bearing bearing = cheering;
            bearing.headPitch = -8;
            bearing.headRoll = 4;
            bearing.ear = -12;
            return bearing;
        }
    }
    return {};
}

Pose poseOf(Mood mood) {
    const Bearing b = bearingOf(mood);
    Pose pose;
    pose.phase = 0.5;
    pose.mouth = Mouth::flat;  // what the mouth does is typed, not modelled
    pose.headPitch = b.headPitch;
    pose.headRoll = b.headRoll;
    pose.ear = b.ear;
    pose.earSpread = b.earSpread;
    pose.armLeft = b.armLeft;
    pose.armRight = b.armRight;
    pose.spreadLeft = b.spreadLeft;
    pose.spreadRight = b.spreadRight;
    pose.bend = b.bend;
    return pose;
}

/// A sign beside the head: sparkles, a drop, a vein. Measured from the middle of the portrait.
void addSigns(Model& model, Mood mood) {
    const Stamp sparkle{{"..E..", "..E..", "EEEEE", "..E..", "..E.."}};
    const Stamp glint{{".E.", "EEE", ".E."}};
    const Stamp dot{{"E"}};
    const auto put = [&](int x, int y, Stamp stamp) {
        model.mote({.x = x, .y = y, .stamp = std::move(stamp)});
    };
    switch (mood) {
        case Mood::angry: put(11, 17, {{"Q.Q.", "QQ.Q", "..QQ", "Q.Q."}}); break;
        case Mood::worried:
        case Mood::pain: put(13, 12, {{".C.", ".C.", "CWC", "CCC", ".C."}}); break;
        case Mood::joyous:
            put(-18, 14, glint);
            put(14, 3, dot);
            put(-17, -2, dot);
            put(12, 16, sparkle);
            break;
        case Mood::inspired:
            put(-18, 16, sparkle);
            put(14, 14, glint);
            put(15, -4, dot);
            put(-18, -6, dot);
            break;
        case Mood::surprised: put(14, 17, {{"EE", "EE", "EE", "..", "EE"}}); break;
        case Mood::sigh: put(-19, -8, {{".EE..", "EEEE.", ".EEEE"}}); break;
        case Mood::dizzy:
            put(-16, 17, {{"E..", "EEE", ".E."}});
            put(13, 15, {{".E.", "EEE", "E.."}});
            break;
        default: break;
    }
}

/// A portrait's head never lies on its side, so its stamps stay upright.
Spot upright(Spot spot) {
    spot.quarters = 0;
    return spot;
}

int browLift(Mood mood, int eyeHeight) {
    const int gap = mood == Mood::angry || mood == Mood::determined ? 1
                    : mood == Mood::pain || mood == Mood::sigh      ? 3
                                                                    : 2;
    return eyeHeight / 2 + gap;
}

void layEye(Model& model, const Form& form, const Head& head, Mood mood, Side side) {
    const Ellipsoid skull{{}, head.radii};
    Spot spot = upright(
        spotOn(head.frame, skull, {head.eyeYaw * sideSign(side), head.eyeRise}, {.hidden = 0.05}));
    const auto distance = spot.facing < 0.75 ? Distance::far : Distance::near;
    const Stamp eye = portraitEye(mood, form.faceStyle, side, distance);
    lay(model, spot, eye);
    spot.y += browLift(mood, eye.height());
    lay(model, spot, portraitBrow(mood, side));
}

void layBlush(Model& model, const Form& form, const Head& head, Mood mood, Side side) {
    const bool furry = form.faceStyle == FaceStyle::furry;
    const bool pale = mood == Mood::angry || mood == Mood::sigh;
    if (pale || (!furry && form.faceStyle != FaceStyle::lantern)) return;
    const Vec3 r = head.radii;
    const Spot spot = upright(spotOn(head.frame, {{}, {r.x * 1.03, r.y, r.z * 1.03}},
                                     {56 * sideSign(side), head.eyeRise - 24}, {.hidden = 0.25}));
    lay(model, spot, {{"RRRR", ".RR."}});
}

void layFace(Model& model, const Form& form, const Head& head, Mood mood) {
    for (const Side side : {Side::left, Side::right}) {
        layBlush(model, form, head, mood, side);
        layEye(model, form, head, mood, side);
    }
    const Ellipsoid jaw = head.muzzle.value_or(Ellipsoid{{}, head.radii});
    if (head.muzzle) {
        lay(model, upright(spotOn(head.frame, jaw, {0, 34}, {.hidden = 0})), {{"NNN", ".N."}});
    }
    const Stamp mouth = portraitMouth(mood, form.faceStyle);
    Spot spot = upright(spotOn(head.frame, jaw, {0, head.mouthRise}, {.hidden = 0}));
    spot.y -= mouth.height() / 2 - 1;
    lay(model, spot, mouth);
}

}  // namespace

Drawing drawPortrait(const Form& form, Mood mood) {
    const Pose pose = poseOf(mood);
    const double scale = form.framing.scale;
    const Frame camera =
        Frame{}.pitched(portraitTilt).yawed(portraitYaw).scaled({scale, scale, scale});
    Model trial;
    const Vec3 head = form.shape(trial, {.root = camera}, pose).frame.origin;

    Model model;
    const Frame centred = Frame{camera.axes, {-head.x, -head.y, 0}}.snapped();
    layFace(model, form, form.shape(model, {.root = centred, .lean = Side::right}, pose), mood);
    addSigns(model, mood);

    Drawing drawing = render(model, {.width = portraitSize,
                                     .height = portraitSize,
                                     .originX = form.framing.headX,
                                     .originY = form.framing.headY});
    scatterMotes(model, portraitSize, drawing);
    return drawing;
}

Image paintPortrait(const Drawing& drawing, Mood mood, const Palette& palette) {
    constexpr double discRadius = 15;
    constexpr double ditherRadius = 17;
    const Backdrop backdrop = backdropOf(mood);
    Image image{portraitSize, portraitSize, {}};
    for (int y = 0; y < portraitSize; ++y) {
        for (int x = 0; x < portraitSize; ++x) {
            const double distance = std::hypot(x - 19.5, y - 16.0);
            const bool inside =
                distance < discRadius || (distance < ditherRadius && (x + y) % 2 != 0);
            const auto ink = drawing.at(x, y);
            image.argb.push_back(ink != noInk ? palette[ink]
                                 : inside     ? backdrop.inner
                                              : backdrop.outer);
        }
    }
    return image;
}

}  // namespace quibbits::atelier
