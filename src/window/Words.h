#pragma once
// A text on the screen.

#include <QLabel>
#include <string>

#include "Look.h"
#include "views/View.h"

namespace quibbits::window {

inline QString text(const std::string& words) {
    return QString::fromStdString(words);
}

/// A label that wraps, in a style.
class Words final : public QLabel {
public:
    Words(views::TextStyle style, QWidget* parent) : QLabel(parent) {
        setWordWrap(true);
        setTextFormat(Qt::PlainText);
        setStyle(style);
    }
    void setStyle(views::TextStyle style) {
        setFont(fontFor(style, parentWidget() ? parentWidget()->font() : font()));
        QPalette colors = parentWidget() ? parentWidget()->palette() : palette();
        const QColor ink = inkOf(colors, strengthOf(style));
        colors.setColor(QPalette::Active, QPalette::WindowText, ink);
        colors.setColor(QPalette::Inactive, QPalette::WindowText, ink);
        setPalette(colors);
    }
    void say(const std::string& what) {
        setText(QString::fromStdString(what));
        setVisible(!what.empty());
    }
};

}  // namespace quibbits::window
