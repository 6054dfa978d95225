import QtQuick
import Tandem.Settings

/// A card of a sheet, its parts one below the other.
Rectangle {
    id: card

    required property Theme theme
    default property alias parts: column.data

    clip: true
    color: card.theme.dark ? "#2c2c2e" : "#ffffff"
    implicitHeight: column.implicitHeight

    Column {
        id: column

        width: parent.width
    }
}
