// Alerts as modal message boxes (QtWidgets): needs a QApplication.
#pragma once

#include "app/AlertPresenter.h"

namespace orvane {

class MessageBoxAlertPresenter : public AlertPresenter {
public:
    // The application's one presenter, so that its alerts take turns (see whenFree).
    static MessageBoxAlertPresenter& shared();

    // Closing the box without a button (Escape, the window's close button) answers as the last button.
    // The texts are selectable; the alert's lines never wrap.
    int present(const Alert& alert) override;
};

}  // namespace orvane
