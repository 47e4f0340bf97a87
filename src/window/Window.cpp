#include "Window.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QPointer>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QTimer>
#include <QWindow>
#include <algorithm>

#include "FocusRing.h"

namespace quibbits::window {
namespace {

// What a frame usually takes, until the window manager has made one.
constexpr QMargins usualFrame{4, 34, 4, 4};
constexpr int leastHeight = 300;

}  // namespace

QRect placeFor(QSize wanted, const QRect& room, const QMargins& frame) {
    const QSize most = room.marginsRemoved(frame).size();
    const QSize size = wanted.boundedTo(most);
    const QSize whole = size.grownBy(frame);
    const QPoint corner(room.x() + (room.width() - whole.width()) / 2,
                        room.y() + (room.height() - whole.height()) / 2);
    return {corner + QPoint(frame.left(), frame.top()), size};
}

Window::Window(Tell tell) : tree_(std::move(tell)) {
    box_ = new QVBoxLayout(this);
    box_->setContentsMargins(0, 0, 0, 0);
    new FocusRing(this);
}

void Window::begin(const views::WindowSpec& spec) {
    setWindowTitle(QString::fromStdString(spec.title));
    wanted_ = QSize(static_cast<int>(spec.size.width), static_cast<int>(spec.size.height));
    resizable_ = spec.resizable;
    if (!resizable_) {
        setWindowFlags(Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                       Qt::WindowCloseButtonHint);
    }
    const QRect place = placeFor(wanted_, screen()->availableGeometry(), usualFrame);
    if (resizable_) {
        setMinimumHeight(std::min(leastHeight, place.height()));
        setGeometry(place);
    } else {
        setFixedSize(place.size());
        move(place.topLeft() - QPoint(usualFrame.left(), usualFrame.top()));
    }
}

/// Where Tab would lead from here.
QWidget* Window::nextStop() const {
    QWidget* here = focusWidget();
    if (!here) return nullptr;
    const auto isStop = [](const QWidget* widget) {
        return (widget->focusPolicy() & Qt::TabFocus) != 0 && widget->isVisible() &&
               widget->isEnabled();
    };
    QWidget* next = here->nextInFocusChain();
    while (next != here && !isStop(next)) next = next->nextInFocusChain();
    return next == here ? nullptr : next;
}

void Window::showTree(views::View tree) {
    const QPointer<QWidget> next = nextStop();
    if (tree_.show(std::move(tree))) {
        box_->addWidget(tree_.top());
        tree_.top()->setVisible(true);
    }
    tree_.orderStops();
    // What had the keyboard may be gone, as a row that the user has just removed.
    if (!focusWidget() && next && next->window() == this) next->setFocus(Qt::OtherFocusReason);
    if (!isVisible()) bringToFront();
}

void Window::bringToFront() {
    setWindowState((windowState() & ~Qt::WindowMinimized) | Qt::WindowActive);
    const bool wasVisible = isVisible();
    show();
    raise();
    activateWindow();
    if (wasVisible && onShown) onShown();
}

void Window::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (event->spontaneous()) return;
    if (onShown) onShown();
    // The frame is known a moment later; no part of the window may lie off the screen then.
    for (const int later : {100, 400}) QTimer::singleShot(later, this, [this] { fitToScreen(); });
}

void Window::fitToScreen() {
    const QRect room = screen()->availableGeometry();
    const QRect outer = frameGeometry();
    if (room.contains(outer) || isMaximized() || isFullScreen()) return;
    const QRect inner = geometry();
    const QMargins frame(inner.left() - outer.left(), inner.top() - outer.top(),
                         outer.right() - inner.right(), outer.bottom() - inner.bottom());
    const QRect place = placeFor(inner.size(), room, frame);
    if (resizable_) {
        resize(place.size());
    } else {
        setFixedSize(place.size());
    }
    move(place.topLeft() - QPoint(frame.left(), frame.top()));
}

void Window::closeEvent(QCloseEvent* event) {
    if (onClosed) onClosed();
    event->accept();
}

/// Whatever page is seen, for keys that nothing else has taken.
bool Window::scrolls(int key) {
    for (auto* area : findChildren<QScrollArea*>()) {
        auto* bar = area->verticalScrollBar();
        if (!area->isVisible() || bar->maximum() == 0) continue;
        switch (key) {
            case Qt::Key_PageDown: bar->triggerAction(QScrollBar::SliderPageStepAdd); return true;
            case Qt::Key_PageUp: bar->triggerAction(QScrollBar::SliderPageStepSub); return true;
            case Qt::Key_Down: bar->triggerAction(QScrollBar::SliderSingleStepAdd); return true;
            case Qt::Key_Up: bar->triggerAction(QScrollBar::SliderSingleStepSub); return true;
            case Qt::Key_Home: bar->triggerAction(QScrollBar::SliderToMinimum); return true;
            case Qt::Key_End: bar->triggerAction(QScrollBar::SliderToMaximum); return true;
            default: return false;
        }
    }
    return false;
}

void Window::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) {
        close();
    } else if (!scrolls(event->key())) {
        QWidget::keyPressEvent(event);
    }
}

}  // namespace quibbits::window
