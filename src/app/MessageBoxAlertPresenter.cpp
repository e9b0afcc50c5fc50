#include "app/MessageBoxAlertPresenter.h"

#include <QAbstractButton>
#include <QMessageBox>
#include <QPushButton>

#include <vector>

namespace orvane {

int MessageBoxAlertPresenter::present(const Alert& alert) {
    QMessageBox box;
    box.setIcon(alert.style == Alert::Style::warning ? QMessageBox::Warning : QMessageBox::Information);
    box.setText(alert.message);
    box.setInformativeText(alert.informativeText);

    std::vector<QAbstractButton*> buttons;
    for (qsizetype i = 0; i < alert.buttons.size(); ++i) {
        // The roles let the style place the buttons as the desktop expects; the answer comes from the index.
        const auto role = i == 0 ? QMessageBox::AcceptRole : QMessageBox::RejectRole;
        buttons.push_back(box.addButton(alert.buttons[i], role));
    }
    if (buttons.empty()) return firstButtonResponse;  // QMessageBox then shows a lone "OK"
    box.setDefaultButton(static_cast<QPushButton*>(buttons.front()));
    box.setEscapeButton(buttons.back());

    box.exec();
    for (std::size_t i = 0; i < buttons.size(); ++i) {
        if (box.clickedButton() == buttons[i]) return firstButtonResponse + static_cast<int>(i);
    }
    return firstButtonResponse + static_cast<int>(buttons.size()) - 1;
}

}  // namespace orvane
