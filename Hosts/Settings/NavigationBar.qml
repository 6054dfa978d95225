import QtQuick
import Tandem.Settings

/// The bar above a page, in the page's colour: back button, title or title picture, share button.
FocusScope {
    id: bar

    required property PageModel page
    required property Theme theme

    readonly property color ink: bar.page.barTextColor
    readonly property int margin: 8
    readonly property int lowest: 44
    readonly property real backWidth: bar.page.first ? 0 : back.width
    /// How wide the back button may be with its text: the title comes first where there is not room for both.
    readonly property real roomForBack: (bar.width - Math.min(title.implicitWidth, bar.width / 2)) / 2 - 2 * bar.margin
    readonly property real shareWidth: share.visible ? share.width : bar.margin
    readonly property real leftWidth: bar.theme.mirrored ? bar.shareWidth : bar.backWidth
    readonly property real rightWidth: bar.theme.mirrored ? bar.backWidth : bar.shareWidth

    implicitHeight: Math.max(bar.lowest, title.implicitHeight + 2 * bar.margin)

    Rectangle {
        anchors.fill: parent
        color: bar.page.barColor
    }

    // The first page has none.
    Loader {
        id: back

        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.top: parent.top

        Component.onCompleted: {
            if (!bar.page.first)
                back.setSource("BackButton.qml", {
                        "bar": bar,
                        "page": bar.page,
                        "theme": bar.theme
                    });
        }
    }

    Text {
        id: title

        Accessible.ignored: !bar.enabled || !title.visible
        Accessible.name: bar.page.title
        Accessible.role: Accessible.Heading
        anchors.verticalCenter: parent.verticalCenter
        color: bar.ink
        elide: Text.ElideRight
        // A page with a picture in the place of its title does not load the bold font for nothing.
        font: bar.theme.font(17, title.visible)
        // The bar has one line; a long title at a large text size is drawn smaller rather than cut.
        fontSizeMode: Text.HorizontalFit
        horizontalAlignment: Text.AlignHCenter
        minimumPixelSize: 12
        // What is not seen need not be measured.
        text: title.visible ? bar.page.title : ""
        verticalAlignment: Text.AlignVCenter
        visible: !bar.page.titlePicture.present
        width: Math.min(implicitWidth, bar.width - bar.leftWidth - bar.rightWidth)
        // In the middle of the bar, or else as near to it as the buttons allow.
        x: Math.max(bar.leftWidth, Math.min((bar.width - width) / 2, bar.width - bar.rightWidth - width))
    }

    PictureItem {
        id: titlePicture

        Accessible.ignored: !bar.enabled || !titlePicture.visible
        Accessible.name: bar.page.title
        Accessible.role: Accessible.Heading
        anchors.centerIn: parent
        height: Math.min(implicitHeight, bar.height - bar.margin)
        picture: bar.page.titlePicture
        tint: bar.ink
        visible: bar.page.titlePicture.present

        NumberAnimation on opacity  {
            duration: bar.page.titleFade
            easing.type: Easing.InOutQuad
            from: 0
            running: bar.page.titleFade > 0
            to: 1
        }
    }

    BarButton {
        id: share

        anchors.bottom: parent.bottom
        anchors.right: parent.right
        anchors.top: parent.top
        color: bar.ink
        name: bar.page.rightName
        shape: Glyph.Share
        theme: bar.theme
        visible: bar.page.rightName !== ""

        onActivated: bar.page.pressRight()
    }
}
