// Alerts as modal message boxes (QtWidgets): needs a QApplication.
#pragma once

#include "app/AlertPresenter.h"

namespace orvane {

class MessageBoxAlertPresenter : public AlertPresenter {
public:
    // Closing the box without a button (Escape, the window's close button) answers as the last button.
    int present(const Alert& alert) override;
};

}  // namespace orvane
