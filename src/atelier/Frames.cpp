#include "atelier/Frames.h"

#include <algorithm>
#include <cmath>

#include "atelier/Effects.h"

namespace quibbits::atelier {
namespace {

/// From this direction on, creatures face the left of the picture.
constexpr int firstLeftward = 5;
constexpr int facingLeft = 6;

constexpr double betweenDirections = 360.0 / directionCount;

/// How far a view from the side is turned towards the viewer.
double sideTurnFor(const Form& form, int direction) {
    return direction == facingRight ? -form.sideTurn : direction == facingLeft ? form.sideTurn : 0;
}

Frame cameraFor(const Form& form, int direction) {
    return Frame{}
        .pitched(form.cameraTilt)
        .yawed(direction * betweenDirections + sideTurnFor(form, direction));
}

/// Turns a frame in the plane of the picture, about a point above the foot point.
Frame tilted(const Frame& foot, double angle, double pivot) {
    const Frame turn = Frame{{}, {foot.origin.x, foot.origin.y, 0}}
                           .moved({0, pivot, 0})
                           .rolled(angle)
                           .moved({0, -pivot, 0});
    return {turn.axes * foot.axes, turn.at({0, 0, foot.origin.z})};
}

Frame rootFor(const Form& form, int direction, const Pose& pose) {
    Frame root = cameraFor(form, direction).moved({pose.x, pose.y, pose.z}).snapped();
    root.origin.y -= pose.sunk;
    if (pose.tilt != 0) {
        root = tilted(root, direction >= firstLeftward ? -pose.tilt : pose.tilt, pose.pivot);
    }
    const double widening = 1 / std::sqrt(pose.squash);
    return root.moved({0, pose.pivot, 0})
        .yawed(pose.yaw)
        .pitched(pose.pitch)
        .rolled(pose.roll)
        .moved({0, -pose.pivot, 0})
        .scaled({widening, pose.squash, widening});
}

/// How far the head is turned towards the viewer. A creature that spins about itself has it turned
/// as the directions it passes do.
double faceTurnFor(const Form& form, int direction, const Pose& pose) {
    const double steps = direction + pose.yaw / betweenDirections;
    const double from = std::floor(steps);
    const auto turnAt = [&](int step) {
        const int wrapped = (step % directionCount + directionCount) % directionCount;
        return form.headTurn[static_cast<std::size_t>(wrapped)];
    };
    const int step = static_cast<int>(from);
    const double turn = turnAt(step) + (turnAt(step + 1) - turnAt(step)) * (steps - from);
    return turn > 0 ? turn + pose.face : turn < 0 ? turn - pose.face : 0;
}

Model modelOf(const Form& form, int direction, const Pose& pose) {
    Model model;
    const Stage stage{rootFor(form, direction, pose), faceTurnFor(form, direction, pose),
                      direction >= firstLeftward ? Side::right : Side::left,
                      -sideTurnFor(form, direction)};
    const Head head = form.shape(model, stage, pose);
    form.face(model, head, pose);
    const Frame foot = cameraFor(form, direction).moved({pose.x, pose.y, pose.z});
    addEffect(model, form, foot, pose);
    return model;
}

void shiftDown(Drawing& drawing, int rows) {
    Drawing shifted(drawing.width, drawing.height, drawing.originX, drawing.originY);
    for (int y = 0; y < drawing.height; ++y) {
        if (y - rows < 0 || y - rows >= drawing.height) continue;
        for (int x = 0; x < drawing.width; ++x) shifted.at(x, y) = drawing.at(x, y - rows);
    }
    shifted.originY += rows;
    drawing = std::move(shifted);
}

/// Cuts off what has gone into the ground.
void bury(Drawing& drawing) {
    for (int y = groundRow + 1; y < drawing.height; ++y) {
        for (int x = 0; x < drawing.width; ++x) drawing.at(x, y) = noInk;
    }
}

bool seenFromTheSide(int direction) {
    return direction == facingRight || direction == facingLeft;
}

/// Seen from the front, a foot that swings towards the viewer lies lower in the picture. So only
/// the side views of standing frames are set down one by one; the others share their direction's
/// shift.
bool setDownByItself(const Form& form, int direction, const Pose& pose) {
    if (pose.footing == Footing::lying) return true;
    const bool stands = (form.build & walking) != 0 && pose.y <= 0 && pose.sunk == 0;
    return stands && seenFromTheSide(direction);
}

}  // namespace

int lowestRow(const Drawing& drawing) {
    for (int y = drawing.height - 1; y >= 0; --y) {
        for (int x = 0; x < drawing.width; ++x) {
            if (drawing.at(x, y) != noInk) return y;
        }
    }
    return -1;
}

GroundShift groundShiftOf(const Form& form) {
    const auto animations = animationsOf(form.build);
    const auto& idle = *std::ranges::find(animations, "Idle", &Animation::name);
    GroundShift shift{};
    for (int direction = 0; direction < directionCount; ++direction) {
        int lowest = 0;
        for (int frame = 0; frame < idle.frameCount(); ++frame) {
            const auto model = modelOf(form, direction, poseOf(form.build, idle, frame));
            lowest = std::max(lowest, lowestRow(render(model, frameCanvas)));
        }
        shift[static_cast<std::size_t>(direction)] = groundRow - lowest;
    }
    return shift;
}

Strip drawStrip(const Form& form, const GroundShift& shift, const Animation& animation,
                int direction) {
    std::vector<Model> models;
    Strip strip;
    int lowest = 0;
    for (int frame = 0; frame < animation.frameCount(); ++frame) {
        const Pose pose = poseOf(form.build, animation, frame);
        models.push_back(modelOf(form, direction, pose));
        auto& drawing = strip.emplace_back(render(models.back(), frameCanvas));
        shiftDown(drawing, setDownByItself(form, direction, pose)
                               ? groundRow - lowestRow(drawing)
                               : shift[static_cast<std::size_t>(direction)]);
        if (pose.sunk > 0) bury(drawing);
        lowest = std::max(lowest, lowestRow(drawing));
    }
    for (std::size_t frame = 0; frame < strip.size(); ++frame) {
        shiftDown(strip[frame], groundRow - lowest);
        scatterMotes(models[frame], groundRow + 1, strip[frame]);
    }
    return strip;
}

DrawnAnimation drawAnimation(const Form& form, const GroundShift& shift,
                             const Animation& animation) {
    DrawnAnimation drawn;
    for (int direction = 0; direction < directionCount; ++direction) {
        drawn[static_cast<std::size_t>(direction)] = drawStrip(form, shift, animation, direction);
    }
    return drawn;
}

}  // namespace quibbits::atelier
