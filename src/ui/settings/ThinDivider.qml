// A one-pixel horizontal rule across a column layout.
import QtQuick
import QtQuick.Layouts

Rectangle {
    Layout.fillWidth: true
    implicitHeight: 1
    color: palette.mid
}
