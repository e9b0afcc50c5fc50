// Stand-ins for the application shell's outside world: alerts answered by script, URLs recorded,
// a status bar that records its item's icon and menu.
#pragma once

#include "app/AlertPresenter.h"
#include "app/StatusItem.h"
#include "app/UrlOpener.h"

#include <vector>

namespace orvane::testing {

struct ScriptedAlertPresenter : AlertPresenter {
    int answer = secondButtonResponse;
    std::vector<Alert> shown;
    int present(const Alert& alert) override {
        shown.push_back(alert);
        return answer;
    }
};

struct RecordingUrlOpener : UrlOpener {
    std::vector<QUrl> opened;
    bool open(const QUrl& url) override {
        opened.push_back(url);
        return true;
    }
};

struct RecordedStatusItem {
    QString iconName;
    QString iconDescription;
    std::vector<StatusMenuItem> menu;
    std::function<void()> menuWillOpen;
    bool removed = false;
};

class FakeStatusBar : public StatusBar {
public:
    // Every item ever created, oldest first; removed ones stay with removed = true.
    std::vector<std::shared_ptr<RecordedStatusItem>> items;
    bool available = true;

    bool isAvailable() const override { return available; }
    std::unique_ptr<StatusItem> createItem() override {
        auto record = std::make_shared<RecordedStatusItem>();
        items.push_back(record);
        return std::make_unique<Item>(record);
    }
    // The item currently in the bar, or null.
    RecordedStatusItem* current() const {
        return !items.empty() && !items.back()->removed ? items.back().get() : nullptr;
    }

private:
    struct Item : StatusItem {
        explicit Item(std::shared_ptr<RecordedStatusItem> record) : record(std::move(record)) {}
        ~Item() override { record->removed = true; }
        void setIcon(const QString& name, const QString& description) override {
            record->iconName = name;
            record->iconDescription = description;
        }
        void setMenu(const std::vector<StatusMenuItem>& menu) override { record->menu = menu; }
        void setMenuWillOpen(std::function<void()> handler) override { record->menuWillOpen = std::move(handler); }
        std::shared_ptr<RecordedStatusItem> record;
    };
};

}  // namespace orvane::testing
