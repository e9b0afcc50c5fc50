// Opens a URL in the user's default handler (browser, downloader, settings pane).
#pragma once

#include <QString>
#include <QUrl>

namespace orvane {

class UrlOpener {
public:
    virtual ~UrlOpener() = default;

    // False when no handler took the URL. Main thread only.
    virtual bool open(const QUrl& url) = 0;
};

class AlertPresenter;

// Opens url; where nothing takes it, an alert titled failureMessage shows the path (for a file) or
// the address, selectable, so that the user can open it by hand.
void openOrShow(UrlOpener& opener, AlertPresenter& alerts, const QUrl& url, const QString& failureMessage);

}  // namespace orvane
