// Test host: a recorder field at the top of a window, as in a sheet, with room for its picker.
import QtQuick
import QtQuick.Controls
import Orvane 1.0

Pane {
    property alias field: recorder.field
    padding: 16

    KeyRecorderView {
        id: recorder
        objectName: "recorderView"
        width: parent.width
    }
}
