#pragma once
// What the windows look like: colours for light and dark, fonts by a text's weight in the page, and
// pictures as the toolkit has them.

#include <QFont>
#include <QIcon>
#include <QImage>
#include <QPalette>

#include "platform/Color.h"
#include "platform/Image.h"
#include "views/View.h"

namespace quibbits::window {

QPalette palette(bool dark);
/// The colour of what cannot be undone.
QColor warningInk(bool dark);
/// The style sheet of all windows.
QString lookSheet(bool dark);
/// Gives a window that look, and all that belongs to it.
void wear(QWidget& window, bool dark);

QFont fontFor(views::TextStyle style, const QFont& base);
/// How strongly a text of the style stands out, 0 to 1.
double strengthOf(views::TextStyle style);
/// The palette's text colour at a strength.
QColor inkOf(const QPalette& palette, double strength);
QColor toColor(const Color& color);
/// An icon by its name in the desktop's theme, or by its path; empty when there is none.
QIcon iconNamed(const std::string& name);
QImage toImage(const Image& image);
/// Without its colours.
QImage drained(QImage image);

/// Lets what lies behind a widget shine through it.
void fade(QWidget& widget, double opacity);
/// Pixel art in another size, in device pixels: enlarged to sharp squares, then averaged where the
/// factor is not whole, so that no column is wider than its neighbour.
QImage resized(const QImage& art, QSize size);

}  // namespace quibbits::window
