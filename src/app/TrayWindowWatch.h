// Notice that the tray icon's own window was shown, moved or resized: where an XEmbed tray holds it.
#pragma once

#include <QObject>

#include <functional>

namespace orvane {

// Qt draws a tray icon into a window of its own only for an XEmbed tray (X11 without a StatusNotifier
// host). A panel that restarts embeds that window again, possibly in another colour, and a panel that
// adds or removes icons moves it; neither changes the palette. Elsewhere no such window exists and
// onChange is never called. Main thread; a burst of events calls onChange once per event.
class TrayWindowWatch final : public QObject {
public:
    explicit TrayWindowWatch(std::function<void()> onChange);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::function<void()> onChange_;
};

}  // namespace orvane
