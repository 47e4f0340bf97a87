#include "EvenGrid.h"

#include <algorithm>

namespace quibbits::window {
namespace {

constexpr int gap = 10;

}  // namespace

EvenGrid::EvenGrid(QWidget* parent) : QLayout(parent) {
    setContentsMargins(0, 0, 0, 0);
}

EvenGrid::~EvenGrid() {
    while (QLayoutItem* each = EvenGrid::takeAt(0)) delete each;
}

void EvenGrid::setCellWidth(double width) {
    cellWidth_ = std::max(width, 20.0);
    invalidate();
}

QLayoutItem* EvenGrid::takeAt(int i) {
    return i >= 0 && i < items_.size() ? items_.takeAt(i) : nullptr;
}

/// The height follows from the width; that of a single column would scroll pages that fit.
QSize EvenGrid::minimumSize() const {
    return {static_cast<int>(cellWidth_), 0};
}

void EvenGrid::setGeometry(const QRect& rect) {
    QLayout::setGeometry(rect);
    arrange(rect, true);
}

int EvenGrid::arrange(const QRect& rect, bool moves) const {
    const int columns = std::max(1, static_cast<int>((rect.width() + gap) / (cellWidth_ + gap)));
    const int width = (rect.width() - gap * (columns - 1)) / columns;
    int y = rect.y();
    for (int first = 0; first < items_.size(); first += columns) {
        const int last = std::min<int>(first + columns, static_cast<int>(items_.size()));
        int height = 0;
        for (int i = first; i < last; ++i) {
            QLayoutItem* item = items_[i];
            height = std::max(height, item->hasHeightForWidth() ? item->heightForWidth(width)
                                                                : item->sizeHint().height());
        }
        for (int i = first; moves && i < last; ++i) {
            items_[i]->setGeometry({rect.x() + (i - first) * (width + gap), y, width, height});
        }
        y += height + gap;
    }
    return items_.isEmpty() ? 0 : y - gap - rect.y();
}

}  // namespace quibbits::window
