#pragma once
// Cells of one width, row by row, each row as high as its highest cell.

#include <QLayout>

namespace quibbits::window {

class EvenGrid final : public QLayout {
public:
    explicit EvenGrid(QWidget* parent);
    ~EvenGrid() override;
    void setCellWidth(double width);

    void addItem(QLayoutItem* item) override { items_.push_back(item); }
    int count() const override { return static_cast<int>(items_.size()); }
    QLayoutItem* itemAt(int i) const override { return items_.value(i); }
    QLayoutItem* takeAt(int i) override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override { return arrange({0, 0, width, 0}, false); }
    QSize sizeHint() const override { return minimumSize(); }
    QSize minimumSize() const override;
    void setGeometry(const QRect& rect) override;

private:
    int arrange(const QRect& rect, bool moves) const;

    double cellWidth_ = 200;
    QList<QLayoutItem*> items_;
};

}  // namespace quibbits::window
