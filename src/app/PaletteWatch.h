// Notice of a change of the application's palette or of the desktop's theme.
#pragma once

#include <QObject>

#include <functional>

namespace orvane {

// Calls onChange on the main thread at each such change; a theme change reaches every window, so
// one change may call it several times.
class PaletteWatch final : public QObject {
public:
    explicit PaletteWatch(std::function<void()> onChange);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::function<void()> onChange_;
};

}  // namespace orvane
