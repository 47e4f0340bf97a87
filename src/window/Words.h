#pragma once
// A text on the screen.

#include <QApplication>
#include <QEvent>
#include <QLabel>
#include <string>

#include "Look.h"
#include "views/View.h"

namespace quibbits::window {

inline QString text(const std::string& words) {
    return QString::fromStdString(words);
}

/// A label that wraps, in a style, and stays readable when the desktop turns dark.
class Words final : public QLabel {
public:
    Words(views::TextStyle style, QWidget* parent) : QLabel(parent) {
        setWordWrap(true);
        setTextFormat(Qt::PlainText);
        setStyle(style);
    }
    void setStyle(views::TextStyle style) {
        style_ = style;
        setFont(fontFor(style, parentWidget() ? parentWidget()->font() : font()));
        setInk();
    }
    void say(const std::string& what, const std::string& strong = {}) {
        const auto at = strong.empty() ? std::string::npos : what.find(strong);
        if (at == std::string::npos) {
            setTextFormat(Qt::PlainText);
            setText(window::text(what));
        } else {
            const auto piece = [&](std::size_t from, std::size_t count) {
                return window::text(what.substr(from, count)).toHtmlEscaped();
            };
            setTextFormat(Qt::RichText);
            setText(piece(0, at) + "<b>" + piece(at, strong.size()) + "</b>" +
                    piece(at + strong.size(), std::string::npos));
        }
        setVisible(!what.empty());
    }

protected:
    void changeEvent(QEvent* event) override {
        QLabel::changeEvent(event);
        if (event->type() == QEvent::ApplicationPaletteChange ||
            event->type() == QEvent::PaletteChange) {
            setInk();
        }
    }

private:
    void setInk() {
        const QColor ink = inkOf(QApplication::palette(), strengthOf(style_));
        if (palette().color(QPalette::Active, QPalette::WindowText) == ink) return;
        QPalette colors = palette();
        colors.setColor(QPalette::Active, QPalette::WindowText, ink);
        colors.setColor(QPalette::Inactive, QPalette::WindowText, ink);
        setPalette(colors);
    }

    views::TextStyle style_ = views::TextStyle::body;
};

}  // namespace quibbits::window
