// A button filled with the accent colour: the default or most important action of its area.
import QtQuick
import QtQuick.Controls
import Orvane 1.0

Button {
    id: control
    highlighted: true
    palette.button: enabled ? activeColors.highlight : disabledColors.button
    palette.buttonText: enabled ? activeColors.highlightedText : disabledColors.buttonText

    SystemPalette { id: activeColors; colorGroup: SystemPalette.Active }
    SystemPalette { id: disabledColors; colorGroup: SystemPalette.Disabled }
    FocusRing {}
}
