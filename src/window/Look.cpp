#include "Look.h"

#include <QApplication>
#include <QFileInfo>
#include <QGraphicsOpacityEffect>
#include <QWidget>
#include <algorithm>

namespace quibbits::window {
namespace {

constexpr const char* sheet = R"(
QFrame#section { background: palette(base); border: 1px solid palette(mid); border-radius: 9px; }
QFrame#sidebar { background: palette(base); border: none; border-right: 1px solid palette(mid); }
QFrame#hairline { background: palette(mid); border: none; }
QScrollArea, QScrollArea > QWidget > QWidget { background: transparent; }
QScrollBar:vertical { width: 10px; background: transparent; margin: 2px; }
QScrollBar::handle:vertical { background: palette(dark); border-radius: 3px; min-height: 30px; }
QScrollBar::add-line, QScrollBar::sub-line { height: 0; }
QScrollBar::add-page, QScrollBar::sub-page { background: transparent; }
QPushButton, QComboBox, QToolButton#step { padding: 5px 14px; border-radius: 7px;
    border: 1px solid palette(mid); background: palette(button); color: palette(button-text); }
QToolButton#step { padding: 0; font-weight: 600; }
QPushButton:hover, QComboBox:hover, QToolButton#step:hover { border-color: palette(highlight); }
QPushButton:pressed, QToolButton#step:pressed { background: palette(midlight); }
QPushButton:disabled, QComboBox:disabled, QToolButton#step:disabled {
    color: palette(placeholder-text); }
QPushButton, QToolButton, QComboBox, QTabBar, QListWidget { outline: none; }
QPushButton:flat { border: none; background: transparent; padding: 2px 6px; }
QPushButton#primary { background: palette(highlight); color: palette(highlighted-text);
    border-color: palette(highlight); }
QPushButton#destructive { color: %1; }
QToolButton#segment { padding: 5px 14px; border: 1px solid palette(mid); margin-left: -1px;
    background: palette(button); color: palette(button-text); }
QToolButton#segment[end="first"] { margin-left: 0;
    border-top-left-radius: 7px; border-bottom-left-radius: 7px; }
QToolButton#segment[end="last"] { border-top-right-radius: 7px; border-bottom-right-radius: 7px; }
QToolButton#segment:checked { background: palette(highlight); color: palette(highlighted-text);
    border-color: palette(highlight); }
QComboBox { padding-right: 30px; }
QComboBox::drop-down { border: none; width: 26px; }
QComboBox::down-arrow { image: none; }
QComboBox QAbstractItemView, QListWidget { background: palette(base);
    border: 1px solid palette(mid); border-radius: 7px; padding: 4px; outline: none;
    selection-background-color: palette(highlight);
    selection-color: palette(highlighted-text); }
QComboBox QAbstractItemView::item, QListWidget::item { padding: 5px 8px; border-radius: 5px;
    color: palette(text); }
QComboBox QAbstractItemView::item:selected, QListWidget::item:selected {
    background: palette(highlight); color: palette(highlighted-text); }
QListWidget::item:hover:!selected { background: palette(midlight); }
QLineEdit { padding: 5px 8px; border: 1px solid palette(mid); border-radius: 7px;
    background: palette(base); color: palette(text); }
QTabBar { qproperty-drawBase: 0; }
QTabBar::tab { padding: 7px 18px; margin: 0 2px; border-radius: 7px; border: none;
    color: palette(window-text); }
QTabBar::tab:selected { background: palette(highlight); color: palette(highlighted-text); }
QTabBar::tab:hover:!selected { background: palette(midlight); }
QToolTip { background: palette(base); color: palette(text); border: 1px solid palette(mid);
    padding: 4px; }
)";

}  // namespace

QPalette palette(bool dark) {
    QPalette colors;
    const auto set = [&](QPalette::ColorRole role, const char* light, const char* night) {
        colors.setColor(role, QColor(dark ? night : light));
    };
    set(QPalette::Window, "#f3f1f7", "#211f2a");
    set(QPalette::Base, "#ffffff", "#2b2836");
    set(QPalette::AlternateBase, "#f8f6fb", "#312e3d");
    set(QPalette::Button, "#fbfaff", "#383447");
    set(QPalette::Mid, "#ddd8e6", "#423e52");
    set(QPalette::Midlight, "#e8e4ef", "#3a3648");
    set(QPalette::Dark, "#8a829c", "#787290");
    set(QPalette::WindowText, "#26222f", "#eeebf5");
    set(QPalette::Text, "#26222f", "#eeebf5");
    set(QPalette::ButtonText, "#26222f", "#eeebf5");
    set(QPalette::PlaceholderText, "#837b91", "#9a94ab");
    set(QPalette::Highlight, "#6d4fd0", "#7a5fd9");
    set(QPalette::HighlightedText, "#ffffff", "#ffffff");
    set(QPalette::Link, "#5a3fc0", "#b3a2f5");
    set(QPalette::ToolTipBase, "#ffffff", "#2b2836");
    set(QPalette::ToolTipText, "#26222f", "#eeebf5");
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        colors.setColor(QPalette::Disabled, role, QColor(dark ? "#8a8599" : "#8f889b"));
    }
    return colors;
}

QColor warningInk(bool dark) {
    return QColor(dark ? "#ff9184" : "#c0392b");
}

QString lookSheet(bool dark) {
    return QString(sheet).arg(warningInk(dark).name());
}

/// The sheet names the palette's colours, so it goes on anew. It is the window's rather than the
/// program's, which would have every item dressed again each time it gets another parent.
void wear(QWidget& window, bool dark) {
    QApplication::setPalette(palette(dark));
    window.setStyleSheet(lookSheet(dark));
}

QFont fontFor(views::TextStyle style, const QFont& base) {
    QFont font = base;
    const auto sized = [&](double factor) { font.setPointSizeF(base.pointSizeF() * factor); };
    switch (style) {
        case views::TextStyle::title:
            sized(1.45);
            font.setWeight(QFont::DemiBold);
            break;
        case views::TextStyle::headline: font.setWeight(QFont::DemiBold); break;
        case views::TextStyle::medium: font.setWeight(QFont::Medium); break;
        case views::TextStyle::secondary: sized(0.95); break;
        case views::TextStyle::caption: sized(0.88); break;
        case views::TextStyle::faint: sized(0.82); break;
        case views::TextStyle::body: break;
    }
    return font;
}

double strengthOf(views::TextStyle style) {
    switch (style) {
        case views::TextStyle::secondary:
        case views::TextStyle::caption: return 0.72;
        case views::TextStyle::faint: return 0.58;
        default: return 1;
    }
}

QColor inkOf(const QPalette& palette, double strength) {
    const QColor ink = palette.color(QPalette::WindowText);
    const QColor paper = palette.color(QPalette::Base);
    const auto between = [&](int a, int b) { return static_cast<int>(b + (a - b) * strength); };
    return {between(ink.red(), paper.red()), between(ink.green(), paper.green()),
            between(ink.blue(), paper.blue())};
}

QColor toColor(const Color& color) {
    return QColor::fromRgbF(static_cast<float>(color.red), static_cast<float>(color.green),
                            static_cast<float>(color.blue), static_cast<float>(color.alpha));
}

QIcon iconNamed(const std::string& name) {
    const QString wanted = QString::fromStdString(name);
    if (!name.starts_with('/')) return QIcon::fromTheme(wanted);
    return QFileInfo::exists(wanted) ? QIcon(wanted) : QIcon();
}

QImage toImage(const Image& image) {
    if (!image) return {};
    QImage copy(image.width(), image.height(), QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < image.height(); ++y) {
        auto* row = reinterpret_cast<QRgb*>(copy.scanLine(y));
        for (int x = 0; x < image.width(); ++x) row[x] = image.at(x, y);
    }
    return copy;
}

QImage resized(const QImage& art, QSize size) {
    if (art.isNull() || size.isEmpty()) return {};
    const auto up = [](int wanted, int has) { return std::max((wanted + has - 1) / has, 1); };
    const int factor = std::max(up(size.width(), art.width()), up(size.height(), art.height()));
    const QImage sharp = art.scaled(art.size() * factor);
    return sharp.size() == size
               ? sharp
               : sharp.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

void fade(QWidget& widget, double opacity) {
    QGraphicsOpacityEffect* effect = nullptr;
    if (opacity < 1) {
        effect = new QGraphicsOpacityEffect(&widget);
        effect->setOpacity(opacity);
    }
    widget.setGraphicsEffect(effect);  // the former one goes
}

QImage drained(QImage image) {
    for (int y = 0; y < image.height(); ++y) {
        auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const int level = qGray(row[x]);
            row[x] = qRgba(level, level, level, qAlpha(row[x]));
        }
    }
    return image;
}

}  // namespace quibbits::window
