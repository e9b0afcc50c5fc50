// A popover in a window of its own, so it can reach past the edges of the window it belongs to.
#pragma once

#include <QQuickItem>
#include <QQuickWindow>
#include <QtQml/qqmlregistration.h>

namespace orvane::ui {

// Shown next to an anchor item; closes on Escape or when another window (or the desktop) is
// clicked, writing nothing.
class PopoverWindow : public QQuickWindow {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QQuickItem* anchorItem READ anchorItem WRITE setAnchorItem NOTIFY anchorItemChanged)

public:
    explicit PopoverWindow(QWindow* parent = nullptr);

    QQuickItem* anchorItem() const { return anchorItem_; }
    void setAnchorItem(QQuickItem* item);

    // Below the anchor, right edges aligned, kept on the anchor's screen.
    Q_INVOKABLE void openBelowAnchor();

signals:
    void anchorItemChanged();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void placeBelowAnchor();

    QQuickItem* anchorItem_ = nullptr;
    bool wasActivated_ = false;  // closing on deactivation waits until it was active once
};

}  // namespace orvane::ui
