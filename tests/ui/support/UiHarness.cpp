#include "UiHarness.h"

#include "platform/sim/SimLoginItem.h"
#include "ui/UiEngine.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QGuiApplication>
#include <QPainter>
#include <QQmlEngine>
#include <QTest>

namespace orvane::testing {

QQuickItem* childNamed(QQuickItem* item, const QString& name) {
    if (!item || item->objectName() == name) return item;
    for (QQuickItem* child : item->childItems())
        if (QQuickItem* found = childNamed(child, name)) return found;
    return nullptr;
}

int pixelsLike(QQuickItem* item, const QColor& colour) {
    const QImage shot = item->window()->grabWindow().copy(item->mapRectToScene(item->boundingRect()).toAlignedRect());
    int like = 0;
    for (int y = 0; y < shot.height(); ++y)
        for (int x = 0; x < shot.width(); ++x) {
            const QColor c = shot.pixelColor(x, y);
            like += std::abs(c.red() - colour.red()) < 60 && std::abs(c.green() - colour.green()) < 60 && std::abs(c.blue() - colour.blue()) < 60;
        }
    return like;
}

UiHarness::UiHarness() {
    simAccessibility().setTrusted(true);
    UserDefaults::installShared(UserDefaults::openFile(dir_.filePath(QStringLiteral("settings.ini"))));
    MappingStore::installShared(std::make_unique<MappingStore>(UserDefaults::shared(), HIDUtil(tool_.path())));
    EventTapManager::installShared(std::make_unique<EventTapManager>(simEventSystem(), MappingStore::shared()));
    // Never the user's real login items.
    LoginItem::installShared(std::make_unique<SimLoginItem>());
    settle();
    simEventSystem().takeDelivered();
}

UiHarness::~UiHarness() {
    view_.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EventTapManager::installShared(nullptr);
    MappingStore::installShared(nullptr);
    UserDefaults::installShared(nullptr);
    LoginItem::installShared(nullptr);
}

QQuickView* UiHarness::show(const QString& file, QSize size) {
    view_ = std::make_unique<QQuickView>();
    ui::prepareEngine(*view_->engine());
    view_->setResizeMode(QQuickView::SizeRootObjectToView);
    view_->resize(size);
    view_->setSource(ui::viewUrl(file));
    if (view_->status() != QQuickView::Ready) {
        for (const auto& error : view_->errors()) ADD_FAILURE() << error.toString().toStdString();
        return nullptr;
    }
    view_->show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(view_.get()));
    settle();
    return view_.get();
}

QQuickItem* UiHarness::find(const QString& objectName) const {
    if (!view_) return nullptr;
    // The content item holds the root object and the overlay with popups and sheets; popovers have
    // windows of their own.
    if (QQuickItem* found = childNamed(view_->contentItem(), objectName)) return found;
    for (QWindow* window : QGuiApplication::topLevelWindows()) {
        auto* quickWindow = qobject_cast<QQuickWindow*>(window);
        if (quickWindow && quickWindow != view_.get() && quickWindow->isVisible())
            if (QQuickItem* found = childNamed(quickWindow->contentItem(), objectName)) return found;
    }
    return nullptr;
}

QVariant UiHarness::read(const QString& objectName, const char* property) const {
    QQuickItem* item = find(objectName);
    return item ? item->property(property) : QVariant();
}

void UiHarness::click(QQuickItem* item, Mouse action) {
    ASSERT_TRUE(item);
    const QPoint centre = item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint();
    switch (action) {
    case Mouse::click: QTest::mouseClick(item->window(), Qt::LeftButton, Qt::NoModifier, centre); break;
    case Mouse::doubleClick: QTest::mouseDClick(item->window(), Qt::LeftButton, Qt::NoModifier, centre); break;
    case Mouse::hover: QTest::mouseMove(item->window(), centre); break;
    }
    settle();
}

void UiHarness::key(int key, Qt::KeyboardModifiers modifiers) {
    QWindow* focused = QGuiApplication::focusWindow();
    QTest::keyClick(focused ? focused : view_.get(), static_cast<Qt::Key>(key), modifiers);
    settle();
}

void UiHarness::settle() {
    for (int round = 0; round < 3; ++round) {
        QCoreApplication::processEvents();
        if (MappingStore* store = &MappingStore::shared()) store->waitForCapsLockDecisions();
        if (round == 1 && view_ && view_->isVisible()) view_->grabWindow();
    }
    QCoreApplication::processEvents();
}

QImage UiHarness::screenshot(const QString& name, QQuickItem* inWindowOf) {
    QQuickWindow* window = inWindowOf ? inWindowOf->window() : view_.get();
    if (!window) return {};
    settle();
    QImage image = window->grabWindow();
    std::vector<QQuickWindow*> shown{window};  // the main window with its open popovers over it
    QRect area = window->geometry();
    for (QWindow* other : QGuiApplication::topLevelWindows())
        if (auto* popover = qobject_cast<QQuickWindow*>(other); !inWindowOf && popover && popover != window && popover->isVisible())
            shown.push_back(popover), area |= popover->geometry();
    if (shown.size() > 1) {
        image = QImage(area.size(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        for (QQuickWindow* each : shown) painter.drawImage(each->geometry().topLeft() - area.topLeft(), each->grabWindow());
    }
    QDir().mkpath(QStringLiteral(ORVANE_SCREENSHOT_DIR));
    image.save(QStringLiteral(ORVANE_SCREENSHOT_DIR "/") + name + QStringLiteral(".png"));
    return image;
}

}  // namespace orvane::testing
