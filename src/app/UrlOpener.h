// Opens a URL in the user's default handler (browser, downloader, settings pane).
#pragma once

#include <QUrl>

namespace orvane {

class UrlOpener {
public:
    virtual ~UrlOpener() = default;

    // False when no handler took the URL. Main thread only.
    virtual bool open(const QUrl& url) = 0;
};

}  // namespace orvane
