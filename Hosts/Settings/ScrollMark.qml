import QtQuick
import Tandem.Settings

/// Shows, while something is scrolled, how much there is and where it stands.
Rectangle {
    id: mark

    required property Flickable target
    required property Theme theme

    readonly property int margin: 3

    anchors.right: parent.right
    anchors.rightMargin: mark.margin
    color: mark.theme.accessory
    height: mark.target.visibleArea.heightRatio * mark.target.height
    parent: mark.target
    radius: mark.width / 2
    visible: mark.target.moving && mark.target.visibleArea.heightRatio < 1
    width: 3
    y: mark.target.visibleArea.yPosition * mark.target.height
}
