import QtQuick
import Tandem.Settings

/// The photo library, and the square in which the user crops the photo that was taken.
SheetBody {
    id: body

    property string chosen: ""
    readonly property int radius: 12

    function take(photo: string) {
        if (!body.sheet.allowsEditing) {
            body.sheet.pickWhole(photo);
            return;
        }
        body.host.sceneChanged();
        body.chosen = photo;
        crop.forceActiveFocus();
    }

    Accessible.name: body.chosen === "" ? qsTr("Photos") : qsTr("Crop the photo")
    fills: true
    objectName: "photoSheet"
    preferredWidth: 640

    Rectangle {
        anchors.fill: parent
        color: body.theme.dark ? body.theme.card : body.theme.page
        radius: body.radius
    }

    PhotoGrid {
        anchors.fill: parent
        enabled: body.chosen === ""
        focus: body.chosen === ""
        radius: body.radius
        sheet: body.sheet
        theme: body.theme
        visible: body.chosen === ""

        onCancelled: body.sheet.cancel()
        onTaken: photo => body.take(photo)
    }

    CropView {
        id: crop

        anchors.fill: parent
        enabled: body.chosen !== ""
        focus: body.chosen !== ""
        host: body.host
        photo: body.chosen
        radius: body.radius
        sheet: body.sheet
        theme: body.theme
        visible: body.chosen !== ""

        onCancelled: body.chosen = ""
    }
}
