#include "Look.h"

#include <QFileInfo>
#include <algorithm>

namespace quibbits::window {

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
    set(QPalette::Dark, "#b9b2c6", "#17151e");
    set(QPalette::WindowText, "#26222f", "#eeebf5");
    set(QPalette::Text, "#26222f", "#eeebf5");
    set(QPalette::ButtonText, "#26222f", "#eeebf5");
    set(QPalette::PlaceholderText, "#8b8497", "#8f89a0");
    set(QPalette::Highlight, "#6d4fd0", "#8c73e6");
    set(QPalette::HighlightedText, "#ffffff", "#ffffff");
    set(QPalette::Link, "#5a3fc0", "#b3a2f5");
    set(QPalette::ToolTipBase, "#ffffff", "#2b2836");
    set(QPalette::ToolTipText, "#26222f", "#eeebf5");
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        colors.setColor(QPalette::Disabled, role, QColor(dark ? "#6f6a7d" : "#aaa4b5"));
    }
    return colors;
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
