#include "app/WindowHost.h"

#include "platform/Diagnostics.h"
#include "store/UserDefaults.h"

#include <QGuiApplication>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QScreen>

namespace orvane {
namespace {

// Frames are stored as "x y width height".
std::optional<QRect> parseFrame(const QByteArray& text) {
    const QList<QByteArray> parts = text.simplified().split(' ');
    if (parts.size() != 4) return std::nullopt;
    int values[4];
    for (int i = 0; i < 4; ++i) {
        bool ok = false;
        values[i] = parts[i].toInt(&ok);
        if (!ok) return std::nullopt;
    }
    if (values[2] <= 0 || values[3] <= 0) return std::nullopt;
    return QRect(values[0], values[1], values[2], values[3]);
}

// Whether a screen still shows enough of the frame's top strip (where the title bar is) to grab it;
// after a change of monitors a saved frame may lie off every screen.
bool canBeGrabbed(const QRect& frame) {
    const QRect titleStrip(frame.topLeft(), QSize(frame.width(), 30));
    for (QScreen* screen : QGuiApplication::screens()) {
        const QRect shown = screen->availableGeometry() & titleStrip;
        if (shown.width() >= 60 && shown.height() >= 10) return true;
    }
    return false;
}

}  // namespace

HostedWindow::HostedWindow(QQmlEngine& engine, const WindowLayout& layout, UserDefaults& defaults)
    : layout_(layout), defaults_(defaults), view_(std::make_unique<QQuickView>(&engine, nullptr)) {
    view_->setTitle(layout.title);
    view_->setResizeMode(QQuickView::SizeRootObjectToView);
    view_->setFlags(Qt::Window | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint |
                    Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint);
    view_->setSource(layout.content);
    // The root view may ask for a minimum size; honour it.
    if (QQuickItem* root = view_->rootObject()) {
        const QVariant minimumWidth = root->property("minimumWidth"), minimumHeight = root->property("minimumHeight");
        if (minimumWidth.isValid() && minimumHeight.isValid()) view_->setMinimumSize(QSize(minimumWidth.toInt(), minimumHeight.toInt()));
    }
    // A frame saved by an earlier run takes the place of the centred one; one that no screen shows
    // any more keeps its size and is centred.
    std::optional<QRect> saved;
    if (const auto text = defaults_.data(WindowHost::frameKey(layout.autosaveName))) saved = parseFrame(*text);
    if (saved && canBeGrabbed(*saved)) {
        view_->setGeometry(*saved);
    } else if (QScreen* screen = view_->screen() ? view_->screen() : QGuiApplication::primaryScreen()) {
        const QRect available = screen->availableGeometry();
        QRect centred(QPoint(), (saved ? saved->size() : layout.contentSize).boundedTo(available.size()));
        centred.moveCenter(available.center());
        view_->setGeometry(centred);
    } else {
        view_->resize(layout.contentSize);
    }
    // Remembered when the window is closed (hidden) and when the application quits with it open.
    connect(view_.get(), &QWindow::visibleChanged, this, [this](bool visible) {
        if (!visible) rememberFrame();
    });
}

HostedWindow::~HostedWindow() {
    if (view_->isVisible()) rememberFrame();
}

void HostedWindow::bringToFront() {
    view_->show();
    view_->raise();
    view_->requestActivate();
}

bool HostedWindow::isVisible() const { return view_->isVisible(); }

QString HostedWindow::loadErrors() const {
    QStringList lines;
    for (const auto& error : view_->errors()) lines << error.toString();
    return lines.join(QLatin1Char('\n'));
}

void HostedWindow::rememberFrame() {
    const QRect frame = view_->geometry();
    const auto failure = defaults_.setData(WindowHost::frameKey(layout_.autosaveName),
        QStringLiteral("%1 %2 %3 %4").arg(frame.x()).arg(frame.y()).arg(frame.width()).arg(frame.height()).toUtf8());
    if (failure) diagnostics::printLine("Failed to save the window frame: " + failure->toStdString());
}

WindowHost::WindowHost(UserDefaults& defaults, std::function<void(QQmlEngine&)> prepareEngine)
    : defaults_(defaults), prepareEngine_(std::move(prepareEngine)) {}

WindowHost::~WindowHost() = default;

std::unique_ptr<HostedWindow> WindowHost::create(const WindowLayout& layout) {
    if (!engine_) {
        engine_ = std::make_unique<QQmlEngine>();
        if (prepareEngine_) prepareEngine_(*engine_);
    }
    return std::make_unique<HostedWindow>(*engine_, layout, defaults_);
}

}  // namespace orvane
