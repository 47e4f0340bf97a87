#pragma once
// A ring around whatever has the keyboard, while the keyboard is what the user works with: the
// first Tab or arrow brings it, the next click takes it away.

#include <QPointer>
#include <QWidget>

namespace quibbits::window {

class FocusRing final : public QWidget {
public:
    /// One for each window; belongs to it.
    explicit FocusRing(QWidget* window);

protected:
    bool eventFilter(QObject* object, QEvent* event) override;
    void paintEvent(QPaintEvent*) override;

private:
    void follow(QWidget* widget);
    void fit();

    QPointer<QWidget> followed_;
    QList<QPointer<QWidget>> around_;  // the followed widget and all that holds it
    bool byKeyboard_ = false;
};

}  // namespace quibbits::window
