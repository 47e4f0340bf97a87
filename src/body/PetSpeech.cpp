// The portrait bubble, the thought beside it and the speech panel beneath.

#include <algorithm>
#include <cmath>

#include "body/Pet.h"

namespace quibbits {

namespace {

constexpr Color panelBlue{0.29, 0.58, 0.97, 1.0};
constexpr Color panelNavy{0.05, 0.08, 0.2, 0.94};
constexpr Color speakerCyan{0.3, 0.85, 1.0, 1.0};

constexpr double headHeight = 26;  // art pixels from the foot point to above most heads
constexpr double aboveHead = 1;    // art pixels between a taller creature and its bubble
constexpr double fontSize = 12;
constexpr Size widestText{230, 300};
constexpr double thoughtSize = 30;

constexpr Seconds slowestLetter = 0.03;
constexpr Seconds longestTyping = 0.9;

/// The first count characters of all runs together.
StyledText beginning(const StyledText& whole, std::size_t count) {
    StyledText part = whole;
    for (TextRun& run : part.runs) {
        const std::size_t length = characterCount(run.text);
        run.text = firstCharacters(run.text, count);
        count -= std::min(count, length);
    }
    return part;
}

Seconds letterTime(std::size_t letters) {
    return std::min(longestTyping / static_cast<double>(std::max<std::size_t>(letters, 1)),
                    slowestLetter);
}

/// Where bubbles begin, in art pixels above the foot point.
double lowestBubble(const Pet::Expression& e) {
    return std::max(headHeight, e.tall + aboveHead);
}

}  // namespace

void Pet::showFace(const Expression& e) {
    const int turn = ++bubbleTurn_;
    const double side = e.image.width() * 1.5;
    const auto spoken = showDialog(e, turn);

    const Transaction still(engine_, Transaction::withoutActions());
    Point at{0, side / 2 + lowestBubble(e) * scale_};
    if (spoken) at = {spoken->panel.minX() + side / 2, spoken->panel.maxY() + side / 2 + 2};
    bubble_->change([&](LayerProperties& l) {
        l.content = Picture{e.image, Filter::nearest};
        l.bounds = {0, 0, side, side};
        l.position = at;
        l.cornerRadius = 5;
        l.masksToBounds = true;
        l.borderWidth = 2.5;
        l.borderColor = panelBlue;
        l.opacity = e.image ? 1 : 0;
    });
    bubbleLine_->change([&](LayerProperties& l) {
        l.bounds = {0, 0, side - 6, side - 6};
        l.position = {side / 2, side / 2};
        l.cornerRadius = 3;
        l.borderWidth = 1;
        l.borderColor = Color::white(0.9);
    });
    showThought(e.thought, {at.x + side / 2 - 2, at.y + side / 2 - 2});
    speech_ = {};
    for (const auto& layer : {bubble_, dialog_, thought_}) {
        if (layer->model().opacity > 0) speech_.bounds = speech_.bounds.united(layer->frame());
    }
    keepSpeechInSight(node_->model().position);

    SpringMotion pop{.from = 0.3, .to = 1.0, .damping = 11};
    const Seconds settled = pop.settlingDuration();
    bubble_->add({.keyPath = KeyPath::transformScale,
                  .motion = std::move(pop),
                  .timing = {.duration = settled}},
                 "pop");

    const Seconds shown = e.seconds + (spoken ? spoken->typing : 0);
    runLoop().after(shown, lifetime_.guard([this, turn] {
        if (bubbleTurn_ != turn) return;
        speech_ = {};
        for (const auto& layer : {bubble_, thought_, dialog_}) layer->setOpacity(0);
    }));
}

std::optional<Pet::Spoken> Pet::showDialog(const Expression& e, int turn) {
    const Transaction still(engine_, Transaction::withoutActions());
    if (!e.caption) {
        dialog_->setOpacity(0);
        return std::nullopt;
    }
    StyledText whole{.fontSize = fontSize, .weight = FontWeight::semibold};
    const std::string prefix = e.speaker ? *e.speaker + ": " : std::string();
    if (e.speaker) whole.runs.push_back({prefix, speakerCyan});
    whole.runs.push_back({text_.worded(*e.caption), Color::white()});

    const Size measured = text_.measure(whole, widestText);
    const double tw = std::ceil(measured.width);
    const double th = std::ceil(measured.height);
    const double width = tw + 28;
    const Rect panel{-width / 2, lowestBubble(e) * scale_ + 6, width, th + 26};

    dialog_->setFrame(panel);
    dialog_->change([&](LayerProperties& l) {
        l.background = panelNavy;
        l.cornerRadius = 7;
        l.borderWidth = 2.5;
        l.borderColor = panelBlue;
        l.opacity = 1;
    });
    dialogLine_->setFrame(Rect{0, 0, panel.width, panel.height}.inset(3.5));
    dialogLine_->change([&](LayerProperties& l) {
        l.cornerRadius = 4;
        l.borderWidth = 1;
        l.borderColor = Color::white(0.85);
    });
    caption_->setFrame({14, 14, tw + 2, th + 2});
    caption_->setContent(
        Text{.text = {.fontSize = fontSize, .weight = FontWeight::semibold}, .wrapped = true});
    dialogArrow_->setFrame({width / 2 - 6, 2, 12, 10});
    dialogArrow_->setContent(Text{.text = {.runs = {{"▼", Color::white()}}, .fontSize = 7},
                                  .alignment = TextAlignment::center});
    dialogArrow_->add({.keyPath = KeyPath::opacity,
                       .motion = BasicMotion{.from = 1.0, .to = 0.15},
                       .timing = {.duration = 0.5, .repeatCount = forever, .autoreverses = true}},
                      "blink");

    const std::size_t before = characterCount(prefix);
    typeOut(whole, before, letterTime(characterCount(*e.caption)), turn);
    return Spoken{panel, typingTime(*e.caption)};
}

Seconds Pet::typingTime(const std::string& caption) {
    const std::size_t letters = characterCount(caption);
    return letterTime(letters) * static_cast<double>(letters);
}

Vector Pet::shiftIntoSight(Rect bubble, Point from, Point to) const {
    constexpr double margin = 4;      // points kept free at the screen's edges
    constexpr double underFeet = 10;  // points between the feet and a bubble beneath them
    Vector shift;
    const Range across{screen().lo + margin, screen().hi - margin};
    if (across.width() >= bubble.width) {
        const auto right = [&](double x) { return std::max(across.lo - x - bubble.minX(), 0.0); };
        const auto left = [&](double x) { return std::min(across.hi - x - bubble.maxX(), 0.0); };
        const double in = right(std::min(from.x, to.x));
        const double back = left(std::max(from.x, to.x));
        const bool wholeWay = in == 0 || back == 0;
        shift.dx = wholeWay ? in + back : right(to.x) + left(to.x);
    }
    const double y = std::min(from.y, to.y);
    const double over = y + bubble.maxY() - (terrain_.skyline - margin);
    if (over <= 0) return shift;
    const double beneath = bubble.maxY() + underFeet;
    shift.dy = y + bubble.minY() - beneath >= margin ? -beneath : -over;
    return shift;
}

Vector Pet::keepSpeechInSight(Point to) {
    if (speech_.bounds.isEmpty()) return {};
    const Rect b = speech_.bounds;
    const double e = enlargement_;
    const Vector shift =
        shiftIntoSight({b.x * e, b.y * e, b.width * e, b.height * e}, position(), to) * (1 / e);
    const Vector by = shift - speech_.shift;
    if (by == Vector{}) return {};
    speech_.shift = shift;
    const Transaction still(engine_, Transaction::withoutActions());
    for (const auto& layer : {bubble_, dialog_, thought_}) {
        layer->setPosition(layer->model().position + by);
    }
    const double width = dialog_->model().bounds.width;
    const Range underPanel{10, width - 22};  // the arrow stays over the head as far as it can
    dialogArrow_->setFrame({underPanel.clamp(width / 2 - 6 - shift.dx), 2, 12, 10});
    return by;
}

void Pet::makeRoomFor(double size) {
    enlargement_ = size;
    keepSpeechInSight(node_->model().position);
}

void Pet::glideSpeech(Vector moved, Seconds motion) {
    const auto glide = [this](KeyPath along, double by, Seconds duration, const char* key) {
        if (std::abs(by) < 1) return;
        for (const auto& layer : {bubble_, dialog_, thought_}) {
            layer->add({.keyPath = along,
                        .motion = BasicMotion{.from = -by, .to = 0.0},
                        .curve = TimingFunction::easeInEaseOut(),
                        .timing = {.duration = duration},
                        .additive = true},
                       key);
        }
    };
    glide(KeyPath::positionX, moved.dx, 0.3, "shift");
    glide(KeyPath::positionY, moved.dy, motion, "lift");
}

void Pet::typeOut(const StyledText& whole, std::size_t prefix, Seconds step, int turn) {
    std::size_t length = 0;
    for (const TextRun& run : whole.runs) length += characterCount(run.text);
    for (std::size_t shown = prefix; shown <= length; ++shown) {
        const Seconds delay = step * static_cast<double>(shown - prefix);
        runLoop().after(delay, lifetime_.guard([this, whole, shown, turn] {
            if (bubbleTurn_ != turn) return;
            const Transaction still(engine_, Transaction::withoutActions());
            caption_->change([&](LayerProperties& l) {
                std::get<Text>(l.content).text = beginning(whole, shown);
            });
        }));
    }
}

void Pet::showThought(const Image& image, Point at) {
    const Transaction still(engine_, Transaction::withoutActions());
    thought_->removeAllSublayers();
    if (!image) {
        thought_->setOpacity(0);
        return;
    }
    thought_->change([&](LayerProperties& l) {
        l.bounds = {0, 0, thoughtSize, thoughtSize};
        l.position = at;
        l.cornerRadius = thoughtSize / 2;
        l.background = Color::white();
        l.borderWidth = 1.5;
        l.borderColor = Color::gray(0.1);
        l.opacity = 1;
    });
    constexpr double widestIcon = 20;
    const double factor = std::floor(widestIcon / std::max(image.width(), image.height()));
    thought_->addSublayer(
        engine_.makeLayer({.bounds = {0, 0, image.width() * factor, image.height() * factor},
                           .position = {thoughtSize / 2, thoughtSize / 2},
                           .content = Picture{image, Filter::nearest}}));
}

}  // namespace quibbits
