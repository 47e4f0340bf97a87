#pragma once
// Symbols, drawn as lines rather than taken from a font, so that they look alike on every desktop.

#include <QColor>
#include <QIcon>
#include <QPainter>
#include <QRectF>
#include <QWidget>
#include <string>
#include <string_view>

namespace quibbits::window {

/// As large as the room allows. A dot for a symbol that nobody knows.
void drawSymbol(QPainter& painter, const QRectF& room, std::string_view symbol, const QColor& ink);

bool isKnownSymbol(std::string_view symbol);

/// In the colour of texts, and of chosen texts where it is on.
QIcon symbolIcon(std::string_view symbol);

/// A symbol among widgets, in a colour of the palette.
class SymbolMark final : public QWidget {
public:
    SymbolMark(int size, QPalette::ColorRole ink, QWidget* parent);
    void show(const std::string& symbol);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QPalette::ColorRole ink_;
    std::string symbol_;
};

}  // namespace quibbits::window
