#include "menus/ToolTip.h"

#include <cmath>

#include "layers/LayerEngine.h"

namespace quibbits {
namespace {

constexpr double fontSize = 12;
constexpr double widest = 300;
constexpr double inset = 8;   // between the edge and the words
constexpr double beside = 6;  // between the subject and the tip
constexpr Color ground{30 / 255.0, 30 / 255.0, 34 / 255.0, 0.95};

}  // namespace

ToolTip::ToolTip(Panels& panels, const TextMeasure& ruler, const std::string& words,
                 const Place& place) {
    const StyledText text{.runs = {{ruler.worded(words), Color::white(0.96)}},
                          .fontSize = fontSize,
                          .weight = FontWeight::medium};
    const Size size = ruler.measure(text, {widest, widest});
    const Rect room{inset, inset / 2, std::ceil(size.width) + 2, std::ceil(size.height)};
    Rect frame{0, 0, room.width + 2 * inset, room.height + inset};
    const bool isHigh = place.subject.midY() > place.bounds.midY();
    frame.x = Range{place.bounds.minX(), place.bounds.maxX() - frame.width}.clamp(
        place.subject.midX() - frame.width / 2);
    frame.y = isHigh ? place.subject.minY() - beside - frame.height : place.subject.maxY() + beside;
    frame.y = Range{place.bounds.minY(), place.bounds.maxY() - frame.height}.clamp(frame.y);

    panel_ = panels.makePanel({.frame = frame, .level = PanelLevel::menu});
    LayerEngine& engine = panels.layers();
    const Transaction still(engine, Transaction::withoutActions());
    const Rect all{0, 0, frame.width, frame.height};
    const auto body = engine.makeLayer({.bounds = all,
                                        .position = all.center(),
                                        .background = ground,
                                        .cornerRadius = 6,
                                        .borderWidth = 1,
                                        .borderColor = Color::white(0.14)});
    panel_->root().addSublayer(body);
    const auto label = engine.makeLayer();
    label->setFrame(room);
    label->setContent(Text{.text = text});
    panel_->root().addSublayer(label);
    panel_->orderFront();
}

}  // namespace quibbits
