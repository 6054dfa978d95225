import QtQuick
import Tandem.Settings

/// Leads from a page to the one that opened it.
BarButton {
    id: back

    required property NavigationBar bar
    required property PageModel page

    color: back.page.barTextColor
    maximumWidth: back.bar.roomForBack
    name: back.page.backTitle === "" ? qsTr("Back") : qsTr("Back to %1").arg(back.page.backTitle)
    picture: back.page.leftPicture
    shape: Glyph.Back
    text: back.page.leftPicture.present ? "" : back.page.backTitle

    onActivated: back.page.pressLeft()
}
