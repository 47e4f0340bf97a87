#pragma once
// The window itself: as large as it was asked to be, as far as the screen has room, with a tree of
// views in it.

#include <QVBoxLayout>
#include <QWidget>
#include <functional>

#include "ViewTree.h"
#include "views/ViewWindow.h"

namespace quibbits::window {

/// Where a window of a size goes in the middle of the free part of a screen, smaller where it must
/// be, with its frame around it.
QRect placeFor(QSize wanted, const QRect& room, const QMargins& frame);

class Window final : public QWidget {
public:
    explicit Window(Tell tell);

    void begin(const views::WindowSpec& spec);
    void showTree(views::View tree);
    void bringToFront();

    /// It is on the screen, for the first time or again.
    std::function<void()> onShown;
    /// The user closed it.
    std::function<void()> onClosed;

protected:
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void fitToScreen();
    QWidget* nextStop() const;
    bool scrolls(int key);

    ViewTree tree_;
    QVBoxLayout* box_;
    bool resizable_ = false;
    QSize wanted_;
};

}  // namespace quibbits::window
