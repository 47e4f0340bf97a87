#pragma once
// A text on the screen.

#include <QApplication>
#include <QEvent>
#include <QLabel>
#include <algorithm>
#include <string>
#include <utility>
#include <vector>

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
        forgetSizes();
        setFont(fontFor(style, parentWidget() ? parentWidget()->font() : font()));
        setInk();
    }
    /// The toolkit sets a text anew for each of these questions, several times over.
    QSize sizeHint() const override {
        const int width = std::min(wholeWidth(), longLine * fontMetrics().averageCharWidth());
        return {width, heightForWidth(width)};
    }
    QSize minimumSizeHint() const override {
        return textFormat() == Qt::PlainText
                   ? QSize(std::min(widestWord(), wholeWidth()), fontMetrics().height())
                   : QLabel::minimumSizeHint();
    }
    int heightForWidth(int width) const override {
        if (width >= wholeWidth()) return fontMetrics().height();
        for (const auto& [known, height] : heights_) {
            if (known == width) return height;
        }
        heights_.emplace_back(width, QLabel::heightForWidth(width));
        return heights_.back().second;
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
        forgetSizes();
        setVisible(!what.empty());
    }

protected:
    void changeEvent(QEvent* event) override {
        forgetSizes();
        QLabel::changeEvent(event);
        if (event->type() == QEvent::ApplicationPaletteChange ||
            event->type() == QEvent::PaletteChange) {
            setInk();
        }
    }

private:
    static constexpr int longLine = 80;  // letters
    static constexpr int untold = -1;

    int wholeWidth() const {
        if (wholeWidth_ == untold) {
            const bool isOneLine = textFormat() == Qt::PlainText && !text().contains('\n');
            wholeWidth_ = isOneLine ? fontMetrics().horizontalAdvance(text()) + 1 : QWIDGETSIZE_MAX;
        }
        return wholeWidth_;
    }
    int widestWord() const {
        if (widestWord_ != untold) return widestWord_;
        widestWord_ = 0;
        for (const QString& word : text().split(' ')) {
            widestWord_ = std::max(widestWord_, fontMetrics().horizontalAdvance(word));
        }
        return widestWord_;
    }
    void forgetSizes() {
        wholeWidth_ = widestWord_ = untold;
        heights_.clear();
    }
    void setInk() {
        const QColor ink = inkOf(QApplication::palette(), strengthOf(style_));
        if (palette().color(QPalette::Active, QPalette::WindowText) == ink) return;
        QPalette colors = palette();
        colors.setColor(QPalette::Active, QPalette::WindowText, ink);
        colors.setColor(QPalette::Inactive, QPalette::WindowText, ink);
        setPalette(colors);
    }

    views::TextStyle style_ = views::TextStyle::body;
    mutable int wholeWidth_ = untold;
    mutable int widestWord_ = untold;
    mutable std::vector<std::pair<int, int>> heights_;  // by width
};

}  // namespace quibbits::window
