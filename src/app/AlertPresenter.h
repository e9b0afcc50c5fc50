// Shows a modal alert and reports which button ended it.
#pragma once

#include <QString>
#include <QStringList>

namespace orvane {

class AlertPresenter {
public:
    struct Alert {
        enum class Style { warning, informational };
        Style style = Style::informational;
        QString message;
        QString informativeText;
        // In order; the first is the default button.
        QStringList buttons;
    };

    // Responses follow the platform convention: the first button answers 1000, the second 1001, and so on.
    static constexpr int firstButtonResponse = 1000;
    static constexpr int secondButtonResponse = 1001;

    virtual ~AlertPresenter() = default;

    // Blocks until the user answers. Main thread only.
    virtual int present(const Alert& alert) = 0;
};

}  // namespace orvane
