import QtQuick
import Tandem.Settings

/// One choice of a sheet.
TextButton {
    id: choice

    required property SheetModel sheet
    required property int index
    required property string modelData

    readonly property bool cancels: choice.sheet.isCancel(choice.index)

    bold: choice.cancels
    color: choice.sheet.isDestructive(choice.index) ? choice.theme.destructive : choice.theme.tint
    separated: true
    text: choice.modelData

    onActivated: choice.sheet.choose(choice.index)
}
