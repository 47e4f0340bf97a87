#include "dial/DialView.h"

#include <algorithm>
#include <utility>

#include "body/Pixels.h"

namespace quibbits {

namespace {

using DialShape::plate;

// There is nothing behind the panel to blur, so the backdrop is dark enough to be read on anything.
constexpr Color backdrop{30 / 255.0, 30 / 255.0, 34 / 255.0, 0.92};
constexpr Shadow backdropShadow{
    .color = Color::black(), .offset = {0, -4}, .radius = 9, .opacity = 0.5};

constexpr Color accent{1.0, 0.85, 0.3, 1.0};
constexpr Color calmBorder = Color::white(0.16);
constexpr Seconds refreshTime = 0.18;
constexpr double hoverScale = 1.16;

constexpr double portraitScale = 1.3;
constexpr double portraitRoom = 38;  // for the visible part of the figure, within the disc
constexpr int visibleAlpha = 26;     // of 255
constexpr double inBallOpacity = 0.45;
constexpr Rect ballBadge{31, -1, 16, 16};

constexpr Rect nameFrame{plate.x, plate.y + plate.height / 2 + 2, plate.width, 18};
constexpr Rect statusFrame{plate.x, plate.y + plate.height / 2 - 13, plate.width, 14};
// Between the slots that reach into the plate from both sides.
constexpr double statusRoom = 94;  // also when one of them is lit and larger
constexpr Rect foldedStatusFrame{plate.x + 30, plate.y, plate.width - 60, 25};

Animation spring(double from, double to, double damping, double velocity) {
    SpringMotion motion{.from = from, .to = to, .damping = damping, .initialVelocity = velocity};
    const Seconds settled = motion.settlingDuration();
    return {.keyPath = KeyPath::transformScale,
            .motion = std::move(motion),
            .timing = {.duration = settled}};
}

/// The part of the first frame that something is drawn in, in pixels from the frame's upper left
/// corner with y downwards; the whole frame when nothing is.
Rect figure(const Anim& anim) {
    const Rect whole{0, 0, anim.frameSize.width, anim.frameSize.height};
    const int left = static_cast<int>(anim.frames.front().x * anim.image.width());
    Rect seen;
    for (int y = 0; y < static_cast<int>(whole.height); ++y) {
        for (int x = 0; x < static_cast<int>(whole.width); ++x) {
            const Argb alpha = anim.image.at(left + x, y) >> 24;
            if (alpha >= visibleAlpha) seen = seen.united({double(x), double(y), 1, 1});
        }
    }
    return seen.isEmpty() ? whole : seen;
}

bool isInBall(const PartyMember& member, const PetStats& stats) {
    return !member.isOut() && stats.stage != Stage::egg;
}

}  // namespace

DialView::DialView(LayerEngine& engine, const TextMeasure& ruler, std::vector<PartyMember> party,
                   DialShape::Ends ends)
    : engine_(engine), ruler_(ruler), party_(std::move(party)), layer_(engine.makeLayer()) {
    const Transaction still(engine_, Transaction::withoutActions());
    const Rect all{0, 0, DialShape::size.width, DialShape::size.height};
    layer_->setFrame(all);
    const Path outline = DialShape::outline(ends);
    buildBackdrop(outline);
    content_ = add(*layer_, {.bounds = all, .position = all.center()});
    add(*content_, {.bounds = all,
                    .position = all.center(),
                    .content = Shape{.path = outline,
                                     .fill = Color::black(0.22),
                                     .stroke = Color::white(0.14),
                                     .lineWidth = 1}});
    for (int i = 0; i < DialShape::slotCount; ++i) {
        slots_[static_cast<std::size_t>(i)] = makeSlot(i);
    }
    name_ = add(*content_, {});
    status_ = add(*content_, {});
    build();
    refresh(Refresh::atOnce);
}

DialView::~DialView() = default;

// What is drawn.

LayerRef DialView::add(Layer& parent, LayerProperties values) {
    LayerRef layer = engine_.makeLayer(std::move(values));
    parent.addSublayer(layer);
    return layer;
}

void DialView::setText(Layer& layer, const Label& label) {
    FittedText text = fitted(label, ruler_);
    layer.setFrame(text.frame);
    layer.setContent(std::move(text.text));
}

void DialView::addText(Layer& parent, const Label& label) {
    setText(*add(parent, {}), label);
}

void DialView::buildBackdrop(const Path& outline) {
    const Rect all = layer_->model().bounds;
    add(*layer_, {.bounds = all,
                  .position = all.center(),
                  .content = Shape{.path = outline, .fill = backdrop},
                  .shadow = backdropShadow});
}

DialView::Slot DialView::makeSlot(int index) {
    constexpr Rect square{0, 0, DialShape::slotSide, DialShape::slotSide};
    constexpr Point center{DialShape::slotSide / 2, DialShape::slotSide / 2};
    const bool taken = isMember(index);
    const Gradient shine = taken ? Gradient{.colors = {Color::white(0.2), Color::white(0.06)}}
                                 : Gradient{.colors = {Color::clear(), Color::clear()}};
    Slot slot;
    slot.container = add(*content_, {.bounds = square, .position = DialShape::slotCenter(index)});
    slot.disc = add(*slot.container, {.bounds = square,
                                      .position = center,
                                      .content = shine,
                                      .cornerRadius = DialShape::slotSide / 2,
                                      .borderWidth = taken ? 1.0 : 0.0,
                                      .masksToBounds = true});
    if (taken) {
        addPortrait(party_[static_cast<std::size_t>(index)], slot);
    } else {
        add(*slot.disc, {.bounds = square,
                         .position = center,
                         .content = Shape{.path = Path::ellipse(square.inset(1)),
                                          .fill = Color::clear(),
                                          .stroke = Color::white(0.22),
                                          .lineWidth = 1,
                                          .dash = {3, 4}}});
    }
    return slot;
}

void DialView::addPortrait(const PartyMember& member, const Slot& slot) {
    const Anim anim = member.portrait();
    const bool inBall = isInBall(member, member.stats());
    if (!anim.frames.empty()) {
        const Size frame = anim.frameSize;
        const Rect seen = figure(anim);
        const double scale =
            std::min(portraitScale, portraitRoom / std::max(seen.width, seen.height));
        const Vector off{seen.midX() - frame.width / 2, frame.height / 2 - seen.midY()};
        add(*slot.disc, {.bounds = {0, 0, frame.width * scale, frame.height * scale},
                         .position = slot.disc->model().bounds.center() - off * scale,
                         .opacity = inBall ? inBallOpacity : 1.0,
                         .content = Picture{anim.image, Filter::nearest},
                         .contentsRect = anim.frames.front()});
    }
    if (!inBall) return;
    add(*slot.container, {.bounds = {0, 0, ballBadge.width, ballBadge.height},
                          .position = ballBadge.center(),
                          .content = Picture{Pixels::homeball(), Filter::nearest}});
}

DialView::PlateText DialView::plateText() const {
    if (pickedItem_) {
        return {std::string(displayName(items_[*pickedItem_].item)), "Return hands it over"};
    }
    if (hovered_ && !isMember(*hovered_)) return {"Empty slot", "More Quibbit soon"};
    if (hovered_) {
        const PartyMember& member = party_[static_cast<std::size_t>(*hovered_)];
        const PetStats stats = member.stats();
        if (stats.stage == Stage::egg) return {stats.name, "Something's moving · click to hatch"};
        if (member.isOut()) return {stats.name, "Out · click to return"};
        return {stats.name, "In its ball · click to send out"};
    }
    if (!party_.empty() && party_.front().stats().stage == Stage::egg) {
        return {"Party", std::to_string(party_.size()) + " of 6"};
    }
    return {"Party", "Drag a berry onto it"};
}

void DialView::refresh(Refresh how) {
    const bool animated = how == Refresh::animated;
    for (int i = 0; i < DialShape::slotCount && isMember(i); ++i) {
        const Slot& slot = slotLayers(i);
        const bool lit = hovered_ == i;
        {
            const Transaction fade(engine_, animated
                                                ? Transaction::Settings{.duration = refreshTime}
                                                : Transaction::withoutActions());
            slot.disc->change([&](LayerProperties& l) {
                l.borderWidth = lit ? 2 : 1;
                l.borderColor = lit ? accent : calmBorder;
            });
        }
        scale(*slot.container, lit ? hoverScale : 1.0, how);
    }
    const Transaction still(engine_, Transaction::withoutActions());
    for (std::size_t i = 0; i < items_.size(); ++i) {
        items_[i].tile->change([&](LayerProperties& l) {
            l.borderWidth = pickedItem_ == i ? 2 : 0;
            l.borderColor = accent;
        });
    }
    const PlateText text = plateText();
    setText(*name_, {.text = text.name,
                     .fontSize = 14,
                     .weight = FontWeight::semibold,
                     .alignment = TextAlignment::center,
                     .frame = nameFrame});
    setText(*status_, {.text = text.status,
                       .fontSize = 10.5,
                       .color = Color::white(0.62),
                       .alignment = TextAlignment::center,
                       .frame = statusFrame,
                       .room = statusRoom,
                       .fold = Label::Fold{" · ", "\n", foldedStatusFrame}});
}

void DialView::scale(Layer& container, double to, Refresh how) {
    if (container.model().transform.scaleX == to) return;
    const double from = container.presentation().transform.scaleX;
    const Transaction still(engine_, Transaction::withoutActions());
    container.setTransform(Transform::scaled(to, to));
    if (how == Refresh::animated) container.add(spring(from, to, 14, 6), "hover");
}

void DialView::appear() {
    constexpr const char* key = "appear";
    layer_->add({.keyPath = KeyPath::opacity,
                 .motion = BasicMotion{.from = 0.0},
                 .timing = {.duration = 0.16}},
                key);
    for (int i = 0; i < DialShape::slotCount; ++i) {
        Animation pop = spring(0.4, 1, 12, 0);
        pop.timing.beginDelay = 0.03 * i;
        pop.timing.fill = FillMode::backwards;
        slotLayers(i).container->add(std::move(pop), key);
    }
}

// The mouse.

void DialView::hover(Point at) {
    if (std::exchange(lastPointer_, at) == at) return;
    const auto now = DialShape::slot(at);
    if (now == hovered_ && !pickedItem_) return;
    hovered_ = now;
    pickedItem_.reset();
    refresh(Refresh::animated);
}

// The keys.

void DialView::walk(WalkingKey key) {
    switch (key) {
        case WalkingKey::left: walkAlong(-1); break;
        case WalkingKey::right: walkAlong(1); break;
        case WalkingKey::down:
            if (items_.empty() || pickedItem_) return;
            pickedItem_ = 0;
            hovered_.reset();
            break;
        case WalkingKey::up:
            if (!pickedItem_ && hovered_) return;
            pickedItem_.reset();
            hovered_ = 0;
            break;
        case WalkingKey::choose: return choose();
        default: return;
    }
    refresh(Refresh::animated);
}

void DialView::walkAlong(int by) {
    const auto next = [by](int at, int count) { return (at + by + count) % count; };
    if (pickedItem_) {
        pickedItem_ = static_cast<std::size_t>(
            next(static_cast<int>(*pickedItem_), static_cast<int>(items_.size())));
    } else if (hovered_) {
        hovered_ = next(*hovered_, DialShape::slotCount);
    } else {
        hovered_ = by > 0 ? 0 : DialShape::slotCount - 1;
    }
}

void DialView::choose() {
    if (pickedItem_) {
        if (onGive) onGive(items_[*pickedItem_].item);
    } else if (hovered_ && isMember(*hovered_)) {
        if (onPick) onPick(*hovered_);
    }
}

void DialView::mouseUp(Point at) {
    pressedAt_.reset();
    const auto index = DialShape::slot(at);
    if (index && isMember(*index) && onPick) onPick(*index);
}

void DialView::mouseDragged() {
    if (!pressedAt_) return;
    const auto under = std::ranges::find_if(
        items_, [this](const TrayItem& item) { return item.rect.contains(*pressedAt_); });
    if (under == items_.end()) return;
    pressedAt_.reset();
    if (!onItemDragBegan) return;
    onItemDragBegan({.item = std::string(rawValue(under->item)),
                     .image = Pixels::scaled(Pixels::item(under->item), 4),
                     .size = {32, 32},
                     .onMove =
                         [tell = onDrag](Point at) {
                             if (tell) tell(at);
                         },
                     .onEnd =
                         [tell = onDrag] {
                             if (tell) tell(std::nullopt);
                         }});
}

}  // namespace quibbits
