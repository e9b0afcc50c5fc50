#include "app/DesktopUrlOpener.h"

#include "app/AlertPresenter.h"

#include <QDesktopServices>

namespace orvane {

bool DesktopUrlOpener::open(const QUrl& url) { return QDesktopServices::openUrl(url); }

void openOrShow(UrlOpener& opener, AlertPresenter& alerts, const QUrl& url, const QString& failureMessage) {
    if (opener.open(url)) return;
    AlertPresenter::Alert alert;
    alert.style = AlertPresenter::Alert::Style::warning;
    alert.message = failureMessage;
    alert.informativeText = QStringLiteral("Nothing on this computer opened it. You can open it yourself:");
    alert.lines = {url.isLocalFile() ? url.toLocalFile() : url.toString()};
    alert.buttons = {QStringLiteral("OK")};
    alerts.present(alert);
}

}  // namespace orvane
