// Shows a modal alert and reports which button ended it.
#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

namespace orvane {

class AlertPresenter {
public:
    struct Alert {
        enum class Style { warning, informational };
        Style style = Style::informational;
        QString message;
        QString informativeText;
        // Shown after the text, each whole on a line of its own and selectable: commands to type,
        // a path or an address to open by hand.
        QStringList lines;
        // In order; the first is the default button.
        QStringList buttons;
    };

    // Responses follow the platform convention: the first button answers 1000, the second 1001, and so on.
    static constexpr int firstButtonResponse = 1000;
    static constexpr int secondButtonResponse = 1001;

    virtual ~AlertPresenter() = default;

    // Blocks until the user answers. Main thread only.
    virtual int present(const Alert& alert) = 0;

    // One alert at a time: runs show at once while no alert is on screen, else from the event loop
    // once the last one has closed and its answer was acted on. Main thread only.
    void whenFree(std::function<void()> show);

protected:
    // present() brackets the time its alert is on screen with these.
    void alertOpened() { ++onScreen_; }
    void alertClosed();

private:
    int onScreen_ = 0;
    std::vector<std::function<void()>> waiting_;
};

}  // namespace orvane
