// URL opening through the desktop's services (QDesktopServices): needs a QGuiApplication.
#pragma once

#include "app/UrlOpener.h"

namespace orvane {

class DesktopUrlOpener : public UrlOpener {
public:
    bool open(const QUrl& url) override;
};

}  // namespace orvane
