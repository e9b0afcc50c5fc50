#include "app/MessageBoxAlertPresenter.h"

#include <QAbstractButton>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>

#include <vector>

namespace orvane {

namespace {

// The text's paragraphs, then each line whole (a command is never broken inside a word or an option).
QString informativeHtml(const AlertPresenter::Alert& alert) {
    QString html;
    for (const QString& paragraph : alert.informativeText.split(QStringLiteral("\n\n"), Qt::SkipEmptyParts))
        html += QStringLiteral("<p>") + paragraph.toHtmlEscaped().replace(QLatin1Char('\n'), QStringLiteral("<br>")) + QStringLiteral("</p>");
    for (const QString& line : alert.lines)
        html += QStringLiteral("<pre>") + line.toHtmlEscaped() + QStringLiteral("</pre>");
    return html;
}

}  // namespace

MessageBoxAlertPresenter& MessageBoxAlertPresenter::shared() {
    static MessageBoxAlertPresenter presenter;
    return presenter;
}

int MessageBoxAlertPresenter::present(const Alert& alert) {
    QMessageBox box;
    box.setIcon(alert.style == Alert::Style::warning ? QMessageBox::Warning : QMessageBox::Information);
    box.setText(alert.message);
    box.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    box.setInformativeText(informativeHtml(alert));
    if (auto* informative = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_informativelabel"))) {
        informative->setTextFormat(Qt::RichText);
        informative->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    }

    std::vector<QAbstractButton*> buttons;
    for (qsizetype i = 0; i < alert.buttons.size(); ++i) {
        // The roles let the style place the buttons as the desktop expects; the answer comes from the index.
        const auto role = i == 0 ? QMessageBox::AcceptRole : QMessageBox::RejectRole;
        buttons.push_back(box.addButton(alert.buttons[i], role));
    }
    if (buttons.empty()) return firstButtonResponse;  // QMessageBox then shows a lone "OK"
    box.setDefaultButton(static_cast<QPushButton*>(buttons.front()));
    box.setEscapeButton(buttons.back());

    alertOpened();
    box.exec();
    alertClosed();
    for (std::size_t i = 0; i < buttons.size(); ++i) {
        if (box.clickedButton() == buttons[i]) return firstButtonResponse + static_cast<int>(i);
    }
    return firstButtonResponse + static_cast<int>(buttons.size()) - 1;
}

}  // namespace orvane
