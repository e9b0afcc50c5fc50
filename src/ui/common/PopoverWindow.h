// A popover in a window of its own, so it can reach past the edges of the window it belongs to.
#pragma once

#include <QElapsedTimer>
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
    Q_PROPERTY(Edge edge READ edge WRITE setEdge NOTIFY edgeChanged)

public:
    // Where the popover sits: below the anchor with right edges aligned, or above it with left
    // edges aligned (for an anchor at the bottom left of its window).
    enum Edge { Below, Above };
    Q_ENUM(Edge)

    explicit PopoverWindow(QWindow* parent = nullptr);

    QQuickItem* anchorItem() const { return anchorItem_; }
    void setAnchorItem(QQuickItem* item);
    Edge edge() const { return edge_; }
    void setEdge(Edge edge);

    // At the anchor's edge, kept on the anchor's screen.
    Q_INVOKABLE void openAtAnchor();
    // Opens, or closes when open. The click on the anchor that has just closed the popover (by
    // taking the activation from it) does not open it again.
    Q_INVOKABLE void toggle();

signals:
    void anchorItemChanged();
    void edgeChanged();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void placeAtAnchor();

    QQuickItem* anchorItem_ = nullptr;
    Edge edge_ = Below;
    bool wasActivated_ = false;  // closing on deactivation waits until it was active once
    QElapsedTimer closedByDeactivation_;
};

}  // namespace orvane::ui
