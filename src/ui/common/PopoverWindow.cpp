#include "ui/common/PopoverWindow.h"

#include <QGuiApplication>
#include <QScreen>

namespace orvane::ui {

PopoverWindow::PopoverWindow(QWindow* parent) : QQuickWindow(parent) {
    // A frameless tool window rather than a popup: it is activated like any window, so it gets the
    // keyboard, and losing activation (a click anywhere else) closes it. On X11 it also bypasses the
    // window manager, or panels list it as a window of its own (a tool window with a transient
    // parent still gets a taskbar entry); it then takes the keyboard focus itself.
    setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::X11BypassWindowManagerHint);
    // (Not activeChanged: a window counts as active while its transient parent is, so a click in
    // the window it belongs to would not close it.)
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, [this](QWindow* focus) {
        if (focus == this) wasActivated_ = true;
        else if (isVisible() && wasActivated_) {
            closedByDeactivation_.start();
            close();
        }
    });
    // The content is built as the popover opens, so its size settles after show(): follow it.
    connect(this, &QWindow::widthChanged, this, &PopoverWindow::placeAtAnchor);
    connect(this, &QWindow::heightChanged, this, &PopoverWindow::placeAtAnchor);
}

void PopoverWindow::setAnchorItem(QQuickItem* item) {
    if (anchorItem_ == item) return;
    anchorItem_ = item;
    emit anchorItemChanged();
}

void PopoverWindow::setEdge(Edge edge) {
    if (edge_ == edge) return;
    edge_ = edge;
    emit edgeChanged();
}

void PopoverWindow::openAtAnchor() {
    if (anchorItem_ && anchorItem_->window()) setTransientParent(anchorItem_->window());
    wasActivated_ = false;
    show();
    placeAtAnchor();
    requestActivate();
}

void PopoverWindow::toggle() {
    // A press elsewhere deactivates the popover before its click arrives; 300 ms covers that.
    if (isVisible()) close();
    else if (!closedByDeactivation_.isValid() || closedByDeactivation_.elapsed() > 300) openAtAnchor();
}

void PopoverWindow::placeAtAnchor() {
    if (anchorItem_ && anchorItem_->window()) {
        constexpr int gap = 6;
        QPoint topLeft;
        if (edge_ == Below) {
            const QPointF corner = anchorItem_->mapToGlobal(QPointF(anchorItem_->width(), anchorItem_->height() + gap));
            topLeft = QPoint(qRound(corner.x()) - width(), qRound(corner.y()));
        } else {
            const QPointF corner = anchorItem_->mapToGlobal(QPointF(0, -gap));
            topLeft = QPoint(qRound(corner.x()), qRound(corner.y()) - height());
        }
        if (QScreen* screen = anchorItem_->window()->screen()) {
            const QRect available = screen->availableGeometry();
            topLeft.setX(qBound(available.left(), topLeft.x(), qMax(available.left(), available.right() - width())));
            topLeft.setY(qBound(available.top(), topLeft.y(), qMax(available.top(), available.bottom() - height())));
        }
        setPosition(topLeft);
    }
}

void PopoverWindow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) {
        close();
        return;
    }
    QQuickWindow::keyPressEvent(event);
}

}  // namespace orvane::ui
