// One of our monochrome icons, drawn in the given colour (the text colour unless told otherwise).
import QtQuick

Image {
    property string name
    property color color: palette.text
    property real size: 16

    width: size
    height: size
    sourceSize.width: Math.ceil(size * Screen.devicePixelRatio)
    sourceSize.height: Math.ceil(size * Screen.devicePixelRatio)
    source: name ? "image://icon/" + name + "/" + color : ""
    fillMode: Image.PreserveAspectFit
    smooth: true
}
