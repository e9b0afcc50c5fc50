// The process-wide login item, HID tool and desktop words on macOS.
#include "platform/DesktopWords.h"
#include "platform/HidTool.h"
#include "platform/PrivateInstance.h"
#include "platform/SharedInstance.h"
#include "platform/mac/AppServiceLoginItem.h"
#include "platform/sim/SimLoginItem.h"

namespace orvane {

// The system keeps one login item per bundle, the user's own: a private instance's lives in memory.
LoginItem& LoginItem::shared() {
    return SharedInstance<LoginItem>::get([]() -> std::unique_ptr<LoginItem> {
        if (!privateInstanceName().isEmpty()) return std::make_unique<SimLoginItem>();
        return std::make_unique<AppServiceLoginItem>();
    });
}

void LoginItem::installShared(std::unique_ptr<LoginItem> item) { SharedInstance<LoginItem>::install(std::move(item)); }

QString hidToolPath() { return QStringLiteral("/usr/bin/hidutil"); }

const DesktopWords& DesktopWords::shared() {
    static const DesktopWords words = mac();
    return words;
}

}  // namespace orvane
