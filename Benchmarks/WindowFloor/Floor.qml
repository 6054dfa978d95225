import QtQuick

/// Fifteen plain rows, a switch and a slider in turn, and nothing else.
Column {
    id: floor

    readonly property int rowCount: 15
    readonly property int rowHeight: 44

    Repeater {
        model: floor.rowCount

        delegate: Item {
            id: row

            required property int index

            height: floor.rowHeight
            width: floor.width

            Text {
                text: "Row " + row.index
            }

            Rectangle {
                color: "green"
                height: row.index % 2 === 0 ? 31 : 4
                radius: height / 2
                width: row.index % 2 === 0 ? 51 : 200
                x: 150

                Rectangle {
                    color: "white"
                    height: 27
                    radius: 13.5
                    width: 27
                }
            }
        }
    }
}
