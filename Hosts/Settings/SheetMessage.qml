import QtQuick
import Tandem.Settings

/// The title and the message of a sheet, scrolled where they are higher than the room that the choices leave them.
ScrollArea {
    id: message

    required property SheetModel sheet
    required property Theme theme
    required property real room

    /// As much is always seen, so that there is something to scroll.
    readonly property real lowest: 60
    readonly property real pageShare: 0.9

    function turnPage(direction: int) {
        message.scrollBy(direction * message.pageShare * message.height);
    }

    contentHeight: texts.implicitHeight
    height: Math.min(texts.implicitHeight, Math.max(message.lowest, message.room))

    SheetText {
        id: texts

        message: message.sheet.message
        theme: message.theme
        title: message.sheet.title
        width: message.width
    }

    ScrollMark {
        target: message
        theme: message.theme
    }
}
