// Stand-ins for the shell's outside world: scripted alerts, recorded URLs, a status bar recording its item,
// a handover channel that never finds another instance (tests emit its messages).
#pragma once

#include "app/AlertPresenter.h"
#include "app/StatusItem.h"
#include "app/UrlOpener.h"
#include "platform/InstanceChannel.h"

#include <vector>

namespace orvane::testing {

struct ScriptedAlertPresenter : AlertPresenter {
    int answer = secondButtonResponse;
    std::vector<Alert> shown;
    int present(const Alert& alert) override { return shown.push_back(alert), answer; }
};

// An alert's style, message and buttons: "warning: Message [First|Second]".
inline std::string summary(const AlertPresenter::Alert& alert) {
    const QString style = alert.style == AlertPresenter::Alert::Style::warning ? "warning" : "informational";
    return QStringLiteral("%1: %2 [%3]").arg(style, alert.message, alert.buttons.join('|')).toStdString();
}

struct RecordingUrlOpener : UrlOpener {
    std::vector<QUrl> opened;
    bool handles = true;  // false: no application takes URLs
    bool open(const QUrl& url) override { return opened.push_back(url), handles; }
};

struct LoneInstanceChannel : InstanceChannel {
    void activateOtherInstance() override {}
    bool postMessage(const QByteArray&) override { return false; }
    bool listen() override { return true; }
    void stopListening() override {}
};

// Records the item in the bar: its icon, its menu and the menu's opening handler.
class FakeStatusBar : public StatusBar {
public:
    struct Item : StatusItem {
        explicit Item(FakeStatusBar& bar) : bar(bar) { bar.current = this, ++bar.created; }
        ~Item() override { bar.current = bar.current == this ? nullptr : bar.current; }
        void setIcon(const QString& name, const QString&) override { iconName = name; }
        void setMenu(const std::vector<StatusMenuItem>& items) override { menu = items; }
        void setMenuWillOpen(std::function<void()> handler) override { menuWillOpen = std::move(handler); }
        FakeStatusBar& bar;
        QString iconName;
        std::vector<StatusMenuItem> menu;
        std::function<void()> menuWillOpen;
    };
    Item* current = nullptr;  // the item in the bar, or null
    int created = 0;          // items ever created

    bool isAvailable() const override { return true; }
    std::unique_ptr<StatusItem> createItem() override { return std::make_unique<Item>(*this); }
};

}  // namespace orvane::testing
