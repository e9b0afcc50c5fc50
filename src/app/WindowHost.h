// Hosts the application's QML windows on one QML engine that is created when the first window opens.
#pragma once

#include <QObject>
#include <QRect>
#include <QSize>
#include <QString>
#include <QUrl>

#include <functional>
#include <memory>

class QQmlEngine;
class QQuickView;

namespace orvane {

class UserDefaults;

struct WindowLayout {
    QString title;
    QSize contentSize;     // in points
    QUrl content;          // the root view
    QString autosaveName;  // the frame is remembered under this name across runs
};

// A window that is created once and kept: closing hides it, opening shows the same window (and
// the same view state) again.
class HostedWindow : public QObject {
    Q_OBJECT
public:
    HostedWindow(QQmlEngine& engine, const WindowLayout& layout, UserDefaults& defaults);
    ~HostedWindow() override;

    // Shows the window, brings it to the front and makes it the key window.
    void bringToFront();
    bool isVisible() const;
    QQuickView& view() { return *view_; }
    // Where the content failed to load: the QML errors, one per line; empty when it loaded.
    QString loadErrors() const;

private:
    void rememberFrame();

    WindowLayout layout_;
    UserDefaults& defaults_;
    std::unique_ptr<QQuickView> view_;
};

class WindowHost {
public:
    // prepareEngine runs once on the engine when it is created (the views' module, image providers).
    WindowHost(UserDefaults& defaults, std::function<void(QQmlEngine&)> prepareEngine);
    ~WindowHost();

    std::unique_ptr<HostedWindow> create(const WindowLayout& layout);
    bool hasEngine() const { return engine_ != nullptr; }

    // The key under which a window's frame is stored.
    static QString frameKey(const QString& autosaveName) { return QStringLiteral("NSWindow Frame ") + autosaveName; }

private:
    UserDefaults& defaults_;
    std::function<void(QQmlEngine&)> prepareEngine_;
    std::unique_ptr<QQmlEngine> engine_;
};

}  // namespace orvane
