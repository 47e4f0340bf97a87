#include "Symbols.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainterPath>
#include <QPainterPathStroker>
#include <QPixmap>
#include <algorithm>
#include <array>
#include <optional>
#include <sstream>

namespace quibbits::window {
namespace {

// On a square of 16 by 16: M and L and C as in any path, O a circle (centre, radius), E an ellipse
// (centre, radii), R a rounded box (corner, size, radius), Z closes. What follows F is filled, what
// follows S is a line again, and what follows K is a line cut out of what is filled.
struct Symbol {
    std::string_view name;
    const char* path;
};

constexpr double side = 16;
constexpr double lineWidth = 1.4;

constexpr std::array symbols{
    Symbol{"arrow.up.circle", "O 8 8 6.5 M 8 11.2 L 8 4.8 M 5.4 7.4 L 8 4.8 L 10.6 7.4"},
    Symbol{"battery.100.bolt",
           "R 1.4 4.6 11.8 6.8 1.8 M 14.8 7 L 14.8 9 F M 7.9 5.4 L 4.4 8.5 L 6.9 8.5 L 6.3 10.8 "
           "L 9.8 7.5 L 7.3 7.5 Z"},
    Symbol{"bell.badge",
           "M 3 11.6 C 4.3 10.4 4.2 9 4.2 7.2 C 4.2 4.6 5.8 3 8 3 C 10.2 3 11.8 4.6 11.8 7.2 "
           "C 11.8 9 11.7 10.4 13 11.6 Z M 6.7 13.8 C 7.2 14.4 8.8 14.4 9.3 13.8 F O 12.4 3.4 2.1"},
    Symbol{"bolt", "M 9.2 1.6 L 3.6 9 L 7.4 9 L 6.8 14.4 L 12.4 6.9 L 8.5 6.9 Z"},
    Symbol{"bolt.circle",
           "O 8 8 6.6 F M 8.9 3.4 L 4.9 8.7 L 7.6 8.7 L 7.1 12.6 L 11.1 7.3 L 8.4 7.3 Z"},
    Symbol{"bolt.fill", "F M 9.4 1 L 3 9.3 L 7.2 9.3 L 6.6 15 L 13 6.7 L 8.8 6.7 Z"},
    Symbol{"book",
           "M 8 4.2 C 6.5 2.9 4 2.6 1.7 3 L 1.7 12.4 C 4 12 6.5 12.3 8 13.6 C 9.5 12.3 12 12 14.3 "
           "12.4 L 14.3 3 C 12 2.6 9.5 2.9 8 4.2 Z M 8 4.2 L 8 13.4"},
    Symbol{"book.closed", "R 3 1.8 10 12.4 1.6 M 5.8 1.8 L 5.8 14.2 M 8.2 5 L 10.8 5"},
    Symbol{
        "brain",
        "M 5 10.4 C 2.4 10.6 1 8.5 1.9 6.8 C 1.5 4.8 3.3 3.2 5 3.7 C 6 1.5 9.5 1.4 10.7 3.3 C 13 "
        "2.8 14.8 4.6 14.1 6.6 C 15.1 8.6 13.5 10.6 11.4 10.2 C 10 11.5 6.6 11.6 5 10.4 Z F O "
        "4.6 13 1.2 O 2.3 15 .8"},
    Symbol{"chart.line.uptrend.xyaxis",
           "M 2 2 L 2 14 L 14 14 M 4.6 10.6 L 7.2 7.6 L 9.4 9.3 L 13.4 4 M 10.4 3.8 L 13.6 3.8 "
           "L 13.6 7"},
    Symbol{"checkmark.circle.fill", "F O 8 8 7 K M 4.9 8.3 L 7.2 10.6 L 11.2 5.8"},
    Symbol{"chevron.right", "M 5.5 2.5 L 11 8 L 5.5 13.5"},
    Symbol{"circle", "O 8 8 6.3"},
    Symbol{"circle.circle", "O 8 8 6.5 F O 8 8 2.7"},
    Symbol{"circle.dotted.circle",
           "O 8 8 3.2 F O 8 1.7 .9 O 12.5 3.5 .9 O 14.3 8 .9 O 12.5 12.5 .9 O 8 14.3 .9 "
           "O 3.5 12.5 .9 O 1.7 8 .9 O 3.5 3.5 .9"},
    Symbol{"circle.grid.3x3.fill",
           "F O 3 3 1.7 O 8 3 1.7 O 13 3 1.7 O 3 8 1.7 O 8 8 1.7 O 13 8 1.7 O 3 13 1.7 "
           "O 8 13 1.7 O 13 13 1.7"},
    Symbol{"clock", "O 8 8 6.5 M 8 4.4 L 8 8 L 10.6 9.6"},
    Symbol{"cross.case",
           "R 1.7 4.8 12.6 9 1.8 M 5.6 4.6 L 5.6 2.4 L 10.4 2.4 L 10.4 4.6 M 8 7 L 8 11.6 "
           "M 5.7 9.3 L 10.3 9.3"},
    Symbol{"figure.walk",
           "F O 8.9 2.3 1.6 S M 8.5 5.5 L 7.5 9.2 L 9.9 11 L 10.6 14.4 M 7.5 9.2 L 6.8 11.6 "
           "L 4.6 14.3 M 4.6 8.4 L 5.7 6.2 L 8.5 5.5 L 9.9 7.7 L 11.9 8.3"},
    Symbol{"film.stack",
           "R 1.7 5.6 12.6 8.6 1.6 M 3.6 3.5 L 12.4 3.5 M 5.2 1.4 L 10.8 1.4 F M 6.6 7.5 L 10.4 "
           "9.9 L 6.6 12.3 Z"},
    Symbol{"gearshape",
           "O 8 8 2.2 O 8 8 4.9 M 8 1.2 L 8 2.8 M 8 13.2 L 8 14.8 M 1.2 8 L 2.8 8 M 13.2 8 L 14.8 "
           "8 M 3.2 3.2 L 4.3 4.3 M 12.8 3.2 L 11.7 4.3 M 3.2 12.8 L 4.3 11.7 M 12.8 12.8 L 11.7 "
           "11.7"},
    Symbol{"globe.asia.australia", "O 8 8 6.5 E 8 8 2.9 6.5 M 1.5 8 L 14.5 8"},
    Symbol{"heart",
           "M 8 13.7 C 2 9.6 1.6 6.8 1.8 5.4 C 2.2 2.6 6 1.8 8 4.6 C 10 1.8 13.8 2.6 14.2 5.4 "
           "C 14.4 6.8 14 9.6 8 13.7 Z"},
    Symbol{"laptopcomputer", "R 2.8 3 10.4 7.6 1.4 M 1.2 13 L 14.8 13"},
    Symbol{"leaf",
           "M 4.3 11.7 C 2 7 5.4 2.4 13.7 2.3 C 13.8 10.4 9.4 14 4.3 11.7 Z M 2.2 13.8 L 9 7"},
    Symbol{"link", "R 1.2 5.3 8 5.4 2.7 R 6.8 5.3 8 5.4 2.7"},
    Symbol{"lock", "R 3.2 7 9.6 7 1.6 M 5.2 7 L 5.2 4.9 C 5.2 1 10.8 1 10.8 4.9 L 10.8 7"},
    Symbol{"macwindow.on.rectangle",
           "R 4.8 5.8 9.6 8.2 1.4 M 4.8 8.5 L 14.4 8.5 M 2.9 10.2 C 2 10.2 1.6 9.7 1.6 8.9 "
           "L 1.6 3.2 C 1.6 2.3 2.1 1.8 3 1.8 L 10 1.8 C 10.9 1.8 11.3 2.4 11.3 3.2"},
    Symbol{"minus.circle", "O 8 8 6.5 M 5 8 L 11 8"},
    Symbol{"moon.stars.fill",
           "F M 9.6 14 C 4.8 14.4 1.6 10.8 2 6.9 C 2.2 4.4 3.8 2.4 6.1 1.7 C 5 6.4 8.2 10.4 13.2 "
           "9.8 C 12.6 12 11.3 13.6 9.6 14 Z M 11.6 1.2 L 12.4 3.4 L 14.6 4.2 L 12.4 5 L 11.6 7.2 "
           "L 10.8 5 L 8.6 4.2 L 10.8 3.4 Z"},
    Symbol{"oval.portrait", "E 8 8 4.8 6.4"},
    Symbol{"pause.circle", "O 8 8 6.5 M 6.2 5.6 L 6.2 10.4 M 9.8 5.6 L 9.8 10.4"},
    Symbol{"person.2",
           "O 5.8 5 2.5 M 1.3 13.6 C 1.3 8.4 10.3 8.4 10.3 13.6 M 10.2 2.7 C 12.9 2.4 13.4 6.6 "
           "10.9 7.3 M 12 9.6 C 13.9 10 14.8 11.6 14.8 13.6"},
    Symbol{"questionmark",
           "M 5 5.4 C 5 1.2 11.2 1.4 11 5.2 C 10.9 7.7 8 7.4 8 10.2 F O 8 13.4 1.1"},
    Symbol{"slider.horizontal.3",
           "M 1.6 3.4 L 14.4 3.4 M 1.6 8 L 14.4 8 M 1.6 12.6 L 14.4 12.6 F O 5 3.4 2 O 11 8 2 "
           "O 6.4 12.6 2"},
    Symbol{"sparkle",
           "M 8 1.5 C 8.6 5.6 10.4 7.4 14.5 8 C 10.4 8.6 8.6 10.4 8 14.5 C 7.4 10.4 5.6 8.6 1.5 8 "
           "C 5.6 7.4 7.4 5.6 8 1.5 Z"},
    Symbol{"sparkles",
           "F M 6.4 3 C 7 7 8.2 8.2 12.2 8.8 C 8.2 9.4 7 10.6 6.4 14.6 C 5.8 10.6 4.6 9.4 .6 8.8 "
           "C 4.6 8.2 5.8 7 6.4 3 Z M 12.4 .6 C 12.7 2.9 13.3 3.5 15.6 3.8 C 13.3 4.1 12.7 4.7 "
           "12.4 7 C 12.1 4.7 11.5 4.1 9.2 3.8 C 11.5 3.5 12.1 2.9 12.4 .6 Z"},
    Symbol{"theatermasks",
           "M 2.5 2.8 C 6 4.3 10 4.3 13.5 2.8 C 14 9 12 13.4 8 14.5 C 4 13.4 2 9 2.5 2.8 Z M 5.7 "
           "10 C 6.7 11.7 9.3 11.7 10.3 10 F O 5.8 7 1 O 10.2 7 1"},
    Symbol{"trash",
           "M 2.2 4.2 L 13.8 4.2 M 6 4.2 L 6.3 2 L 9.7 2 L 10 4.2 M 3.7 4.2 L 4.6 14.2 L 11.4 14.2 "
           "L 12.3 4.2 M 6.6 7 L 6.9 11.4 M 9.4 7 L 9.1 11.4"},
    Symbol{"wind",
           "M 1.6 6 L 9.6 6 C 12.4 6 12.2 2.2 9.6 2.3 C 8.4 2.3 7.8 3.1 7.8 3.8 M 1.6 8.7 L 12.4 "
           "8.7 C 15.2 8.7 15 12.2 12.5 12.1 M 1.6 11.4 L 7.4 11.4 C 9.9 11.4 9.7 14.5 7.6 14.4"},
};
static_assert(std::ranges::is_sorted(symbols, {}, &Symbol::name));

constexpr const char* unknown = "F O 8 8 1.8";

struct Shapes {
    QPainterPath lines;
    QPainterPath filled;
    QPainterPath cut;
};

Shapes shapesOf(const char* path) {
    Shapes shapes;
    QPainterPath* into = &shapes.lines;
    std::istringstream words(path);
    const auto number = [&words] {
        double value = 0;
        words >> value;
        return value;
    };
    const auto point = [&number] {
        const double x = number();
        return QPointF(x, number());
    };
    for (char command = 0; words >> command;) {
        switch (command) {
            case 'F': into = &shapes.filled; break;
            case 'S': into = &shapes.lines; break;
            case 'K': into = &shapes.cut; break;
            case 'M': into->moveTo(point()); break;
            case 'L': into->lineTo(point()); break;
            case 'C': {
                const QPointF first = point();
                const QPointF second = point();
                into->cubicTo(first, second, point());
                break;
            }
            case 'O': {
                const QPointF centre = point();
                const double radius = number();
                into->addEllipse(centre, radius, radius);
                break;
            }
            case 'E': {
                const QPointF centre = point();
                const double across = number();
                into->addEllipse(centre, across, number());
                break;
            }
            case 'R': {
                const QPointF corner = point();
                const QPointF size = point();
                const double radius = number();
                into->addRoundedRect(QRectF(corner, QSizeF(size.x(), size.y())), radius, radius);
                break;
            }
            case 'Z': into->closeSubpath(); break;
            default: break;
        }
    }
    return shapes;
}

const Symbol* find(std::string_view name) {
    const auto* found = std::ranges::lower_bound(symbols, name, {}, &Symbol::name);
    return found != symbols.end() && found->name == name ? found : nullptr;
}

class SymbolEngine final : public QIconEngine {
public:
    explicit SymbolEngine(std::string_view symbol) : symbol_(symbol) {}
    void paint(QPainter* painter, const QRect& room, QIcon::Mode mode,
               QIcon::State state) override {
        const bool isChosen = state == QIcon::On;
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        drawSymbol(*painter, room, symbol_,
                   QGuiApplication::palette().color(
                       group, isChosen ? QPalette::HighlightedText : QPalette::WindowText));
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap drawn(size);
        drawn.fill(Qt::transparent);
        QPainter painter(&drawn);
        paint(&painter, QRect({}, size), mode, state);
        return drawn;
    }
    QIconEngine* clone() const override { return new SymbolEngine(symbol_); }

private:
    std::string symbol_;
};

}  // namespace

void drawSymbol(QPainter& painter, const QRectF& room, std::string_view symbol, const QColor& ink) {
    if (symbol.empty()) return;
    const Symbol* known = find(symbol);
    Shapes shapes = shapesOf(known ? known->path : unknown);
    if (!shapes.cut.isEmpty()) {
        QPainterPathStroker stroker(
            QPen(ink, lineWidth * 1.2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        shapes.filled = shapes.filled.subtracted(stroker.createStroke(shapes.cut));
    }
    const double scale = std::min(room.width(), room.height()) / side;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(room.center());
    painter.scale(scale, scale);
    painter.translate(-side / 2, -side / 2);
    painter.fillPath(shapes.filled, ink);
    painter.strokePath(shapes.lines,
                       QPen(ink, lineWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.restore();
}

bool isKnownSymbol(std::string_view symbol) {
    return find(symbol) != nullptr;
}

QIcon symbolIcon(std::string_view symbol) {
    return symbol.empty() ? QIcon() : QIcon(new SymbolEngine(symbol));
}

SymbolMark::SymbolMark(int size, QPalette::ColorRole ink, QWidget* parent)
    : QWidget(parent), ink_(ink) {
    setFixedSize(size, size);
}

void SymbolMark::show(const std::string& symbol) {
    symbol_ = symbol;
    setVisible(!symbol.empty());
    update();
}

void SymbolMark::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    drawSymbol(painter, rect(), symbol_, palette().color(ink_));
}

}  // namespace quibbits::window
