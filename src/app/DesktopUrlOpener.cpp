#include "app/DesktopUrlOpener.h"

#include <QDesktopServices>

namespace orvane {

bool DesktopUrlOpener::open(const QUrl& url) { return QDesktopServices::openUrl(url); }

}  // namespace orvane
