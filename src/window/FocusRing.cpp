#include "FocusRing.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollArea>

namespace quibbits::window {
namespace {

constexpr int outside = 3;  // of the widget, in points
constexpr double thickness = 2;
constexpr double roundness = 8;

bool isOfTheKeyboard(int key) {
    switch (key) {
        case Qt::Key_Tab:
        case Qt::Key_Backtab:
        case Qt::Key_Left:
        case Qt::Key_Right:
        case Qt::Key_Up:
        case Qt::Key_Down:
        case Qt::Key_Home:
        case Qt::Key_End: return true;
        default: return false;
    }
}

/// What scrolls the widget into sight, if anything does.
QScrollArea* scrollerOf(QWidget* widget) {
    for (QWidget* at = widget; at; at = at->parentWidget()) {
        if (auto* area = qobject_cast<QScrollArea*>(at)) return area;
    }
    return nullptr;
}

}  // namespace

FocusRing::FocusRing(QWidget* window) : QWidget(window) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    setObjectName("focus ring");
    hide();
    qApp->installEventFilter(this);
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
        follow(now && now->window() == parentWidget() ? now : nullptr);
    });
}

bool FocusRing::eventFilter(QObject* object, QEvent* event) {
    switch (event->type()) {
        case QEvent::KeyPress:
            if (!isOfTheKeyboard(static_cast<QKeyEvent*>(event)->key())) break;
            byKeyboard_ = true;
            fit();
            break;
        case QEvent::MouseButtonPress:
            byKeyboard_ = false;
            fit();
            break;
        case QEvent::Move:
        case QEvent::Resize:
        case QEvent::Show:
        case QEvent::Hide:
            if (isVisible() && around_.contains(qobject_cast<QWidget*>(object))) {
                QMetaObject::invokeMethod(
                    this, [this] { fit(); }, Qt::QueuedConnection);
            }
            break;
        default: break;
    }
    return false;
}

void FocusRing::follow(QWidget* widget) {
    followed_ = widget;
    around_.clear();
    for (QWidget* at = widget; at && at != parentWidget(); at = at->parentWidget()) {
        around_.push_back(at);
    }
    if (byKeyboard_ && widget) {
        if (auto* area = scrollerOf(widget)) area->ensureWidgetVisible(widget, 24, 24);
    }
    fit();
}

void FocusRing::fit() {
    const bool isSeen =
        byKeyboard_ && followed_ && followed_->isVisible() && !followed_->visibleRegion().isEmpty();
    setVisible(isSeen);
    if (!isSeen) return;
    const QPoint corner = followed_->mapTo(parentWidget(), QPoint(0, 0));
    setGeometry(QRect(corner, followed_->size()).adjusted(-outside, -outside, outside, outside));
    // Not over what the widget is scrolled under.
    const auto* area = scrollerOf(followed_);
    if (!area) {
        clearMask();
    } else {
        const auto* port = area->viewport();
        const QPoint top = port->mapTo(parentWidget(), QPoint(0, 0));
        setMask(QRegion(QRect(top, port->size()).translated(-pos())).intersected(rect()));
    }
    raise();
    update();
}

void FocusRing::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette().color(QPalette::Link), thickness));
    const double inset = thickness / 2;
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), roundness,
                            roundness);
}

}  // namespace quibbits::window
